#pragma once

#include "online/UpdateIndex.h"

#include <QDialog>

class QLabel;
class QListWidget;
class QProgressBar;
class QPushButton;

namespace minutor {

class Fetcher;
class UpdateDownload;
struct Services;

// "Neue Tarife gefunden": the tariffs of the new batches, all marked; the
// marked ones are fetched with "Jetzt herunterladen". "Diesmal nicht" and a
// cancel during the download write no "Update.cfg", so the same tariffs are
// offered again at the next check.
class AutoupdateDialog : public QDialog {
  Q_OBJECT

 public:
  AutoupdateDialog(Services& services, Fetcher& fetcher, QList<UpdateEntry> entries, int letzteSerie,
                   QWidget* parent = nullptr);

  void reject() override;

 signals:
  // Every marked tariff was tried and "Update.cfg" written.
  void downloaded();

 private:
  void OnDownload();

  Services& services_;
  Fetcher& fetcher_;
  QList<UpdateEntry> entries_;  // the addresses behind the shown names
  int letzteSerie_;
  UpdateDownload* download_ = nullptr;
  QListWidget* list2_ = nullptr;
  QWidget* picture1_ = nullptr;
  QLabel* label4_ = nullptr;
  QProgressBar* picture2_ = nullptr;
};

}  // namespace minutor
