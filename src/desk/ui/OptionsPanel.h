#pragma once

#include "desk/OptionsFile.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;

namespace minutor {

class RemoteAccess;
struct Services;

// "Sonstiges": the currency, the programs started with a dialled connection,
// the start flags, autostart and the guard against unmarked dial-up entries.
// Every change is saved at once.
class OptionsPanel : public QWidget {
  Q_OBJECT

 public:
  // Loads itself from the files. Without remote access the entry lists stay empty.
  OptionsPanel(Services& services, RemoteAccess* remote, QWidget* parent = nullptr);

  // Adds a program to the list shown and saves it; what "Programm
  // hinzufügen" does with the file the user picked.
  void AddProgram(const QString& path);

 private:
  void BuildControls();
  void Load();
  void LoadPrograms();
  void SaveOptions();
  void SavePrograms();
  void SaveDenyList();
  void ShowExample();
  void ShowGuardList();
  void OnAutostartClicked(bool on);
  void OnSameProgramsClicked();
  void OnAddClicked();
  void OnRemoveClicked();

  Services& services_;
  RemoteAccess* remote_;
  // Set while the controls fill from the files, so that filling saves nothing.
  bool loading_ = false;

  QComboBox* currency_ = nullptr;  // Combo1(0)
  QLabel* example_ = nullptr;
  QCheckBox* samePrograms_ = nullptr;  // Check1
  QComboBox* entry_ = nullptr;         // Combo1(1)
  QListWidget* programs_ = nullptr;    // List1
  QPushButton* add_ = nullptr;
  QPushButton* remove_ = nullptr;
  QCheckBox* hideToTray_ = nullptr;      // Check2(0)
  QCheckBox* startMinimized_ = nullptr;  // Check2(1)
  QCheckBox* autostart_ = nullptr;       // Check2(2)
  QCheckBox* onlyMarked_ = nullptr;      // Check2(3)
  QListWidget* guardList_ = nullptr;     // List2
};

}  // namespace minutor
