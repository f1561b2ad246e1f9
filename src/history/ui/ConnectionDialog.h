#pragma once

#include "history/ManualRecord.h"

#include <QDialog>

#include <array>

class QComboBox;
class QLineEdit;

namespace minutor {

class RemoteAccess;
struct Services;

// "Neue Verbindung" and its twin for changing a recorded connection: the
// record's fields, with a cost estimate from date, start, duration and
// tariff.
class ConnectionDialog : public QDialog {
  Q_OBJECT

 public:
  // With an empty `fileName` a new connection is entered; otherwise that
  // record is changed.
  ConnectionDialog(const Services& services, RemoteAccess* remote, const QString& fileName,
                   QWidget* parent = nullptr);

  QLineEdit* Field(int index) const { return fields_[static_cast<size_t>(index)]; }
  QComboBox* Provider() const { return provider_; }
  QComboBox* Tariff() const { return tariff_; }
  QComboBox* User() const { return user_; }
  QComboBox* DialUp() const { return dialUp_; }

  // The name of the record written by the last save.
  const QString& SavedFile() const { return savedFile_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void SetTarif();
  void TariffClicked();
  void Recompute(qint64 seconds);
  void Save();
  ManualRecord Fields() const;
  void Load(const ManualRecord& record);

  const Services& services_;
  QString fileName_;
  QString savedFile_;
  std::array<QLineEdit*, 9> fields_{};
  QComboBox* dialUp_ = nullptr;
  QComboBox* provider_ = nullptr;
  QComboBox* tariff_ = nullptr;
  QComboBox* user_ = nullptr;
  // Changing a record keeps its cost until the tariff has once been chosen.
  bool tariffTouched_ = false;
};

}  // namespace minutor
