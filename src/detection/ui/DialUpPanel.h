#pragma once

#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace minutor {

class RemoteAccess;
struct Services;

// "DFÜ Einstellungen": each dial-up entry of the system gets the tariff it is
// metered with, and the dial-in data come either from the system's entry or
// from the program's own enciphered copy. Every change is saved at once.
class DialUpPanel : public QWidget {
  Q_OBJECT

 public:
  // Without remote access the entry list stays empty.
  DialUpPanel(Services& services, RemoteAccess* remote, QWidget* parent = nullptr);

 public slots:
  // Fills comDFÜ anew from the system; the entry that was selected stays
  // selected while it exists, else the first one is.
  void ListEntries();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void BuildControls();
  void GetTarife();
  void SetTarif();
  void OnEntryClicked();
  void ShowSystemData();
  void LoadEntry();
  void SaveEntry();
  void LoadEntryTarif();
  void OnTarifClicked();
  void ShowPrice();
  void SaveEntryTarif();
  void OnOption(bool fromSystem, bool save);
  void OnLink(int index);
  void StartEditor(const QStringList& arguments);
  QString Entry() const;

  Services& services_;
  RemoteAccess* remote_;
  // Set while the controls fill from the files, so that filling saves nothing.
  bool Laden = false;
  // The connection editor was started; the entries are listed anew once the
  // user comes back to this window from it.
  bool editorStarted_ = false;
  bool editorHadFocus_ = false;

  QComboBox* comDFUe_ = nullptr;
  QRadioButton* Option1_ = nullptr;
  QRadioButton* Option2_ = nullptr;
  QLineEdit* txtEinwahlnummer_ = nullptr;
  QLineEdit* txtBenutzername_ = nullptr;
  QLineEdit* txtPasswort_ = nullptr;
  QLabel* lblNoFiles_ = nullptr;
  QComboBox* comAnbieter_ = nullptr;
  QComboBox* comTarif_ = nullptr;
  QLabel* lblKosten_ = nullptr;
};

}  // namespace minutor
