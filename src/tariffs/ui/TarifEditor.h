#pragma once

#include "tariffs/Tarif.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace minutor {

struct Services;

// "Tarifdaten": NewTarif makes a tariff by hand, ChangeTarif edits one. Both
// write only ".tel" files; fetched ".atl" tariffs are changed by way of a
// ".tel" copy that the catalogue makes first.
class TarifEditor : public QDialog {
  Q_OBJECT

 public:
  enum class Mode { NewTarif, ChangeTarif };

  TarifEditor(Services& services, Mode mode, QWidget* parent = nullptr);

  // ChangeTarif: the file edited, and whether it is a template copy that
  // Cancel removes again.
  void SetDatei(const QString& file, bool vorlage);
  // Fills the fields from the file; false (and the dialog is rejected) when
  // the name is too short to be one or the file can't be read.
  bool LoadTarif();

  void reject() override;

 signals:
  // A tariff was written: the catalogue builds its tree anew.
  void saved();

 private:
  void BuildControls();
  void FillAnbieter();
  void OnVolumenToggled(bool on);
  void OnAddZone();
  void OnDeleteZone();
  void OnSave();

  Services& services_;
  Mode mode_;
  QString datei_;
  bool vorlage_ = false;
  Tarif carried_;  // the lines the dialog doesn't show, kept as read

  QComboBox* comAnbieter_ = nullptr;
  QList<QLineEdit*> text1_;   // by index; 3 is null
  QList<QCheckBox*> check1_;  // 0-4 and 6; 5 is null
  QLineEdit* volumenkosten_ = nullptr;
  QLineEdit* volumeneinheit_ = nullptr;
  QWidget* picture1_ = nullptr;
  QLabel* freiCaption_ = nullptr;
  QLabel* taktCaption_ = nullptr;
  QListWidget* list1_ = nullptr;
  QList<QPushButton*> command2_;
};

}  // namespace minutor
