#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QTreeWidget;
class QTreeWidgetItem;

namespace minutor {

class Fetcher;
struct Services;

// "Tarifliste": providers and their tariffs in a tree, the details of the
// chosen tariff, the buttons that make, change and delete tariffs, and the
// settings of the automatic tariff update with its check on demand.
class TariffCataloguePanel : public QWidget {
  Q_OBJECT

 public:
  // What a row stands for, as the icon in front of it shows.
  enum Kind { ProviderOpen = 2, ProviderClosed = 3, Manual = 4, Fetched = 5 };

  TariffCataloguePanel(Services& services, Fetcher& fetcher, QWidget* parent = nullptr);

  // Builds the tree and the total anew, all providers closed.
  void GetTarife();

  // The buttons "Tarif erstellen", "Tarif ändern" and "Tarif löschen".
  void NewTarif();
  void ChangeTarif();
  void DeleteTarif();
  // ">>> jetzt prüfen".
  void CheckForUpdatesNow();

 signals:
  // New tariffs came from the update server.
  void tariffsDownloaded();
  // The server's index names a newer program revision.
  void newerRevisionFound();

 private:
  void BuildControls();
  QWidget* BuildDetails();
  QWidget* BuildAutoupdate();
  void LoadAutoupdate();
  void SaveAutoupdate();
  void Expand(QTreeWidgetItem* item);
  void SetOpen(QTreeWidgetItem* provider, bool open);
  void ShowTarif(QTreeWidgetItem* item);
  void ShowContextMenu(const QPoint& at);
  QString FileOf(const QTreeWidgetItem* item) const;

  Services& services_;
  Fetcher& fetcher_;
  bool loading_ = false;  // the autoupdate box fills from its file
  bool checking_ = false;
  QTreeWidget* lstTarife_ = nullptr;
  QList<QLabel*> lblTarif_;  // by index, 0 to 12
  QList<QLabel*> captions_;  // Label1 beside lblTarif(0) and lblTarif(12)
  QCheckBox* check3_ = nullptr;
  QComboBox* comAutoupdate_ = nullptr;
  QLabel* lblLink_ = nullptr;
};

}  // namespace minutor
