#pragma once

#include "history/ListConfig.h"
#include "history/ListSelection.h"
#include "history/ConnectionList.h"
#include "history/NewestRun.h"

#include <QWidget>

#include <array>

class QComboBox;
class QLabel;
class QTableView;
class QToolButton;

namespace minutor {

class ConnectionListModel;
class RemoteAccess;
struct ListResult;
struct Services;

// "Verbindungsliste": every recorded connection that passes the period,
// user, provider and tariff filters, with the totals of the rows shown, and
// the doors to entering, changing, deleting and colouring records.
class ListPanel : public QWidget {
  Q_OBJECT

 public:
  // The buttons below the list, by their index.
  enum Button { kErstellen, kBearbeiten, kLoeschen, kDrucken, kExportieren, kDifferenzieren, kNettokosten };

  ListPanel(const Services& services, RemoteAccess* remote, QWidget* parent = nullptr);
  ~ListPanel() override;

  // The whole reload, after every filter change and from outside when a
  // record has been written.
  void GetConnections();

  QTableView* Grid() const { return grid_; }
  ConnectionListModel* Model() const { return model_; }
  QToolButton* ButtonAt(int index) const { return buttons_[static_cast<size_t>(index)]; }
  QComboBox* PeriodCombo() const { return period_; }
  QComboBox* UserCombo() const { return user_; }
  QComboBox* ProviderCombo() const { return provider_; }
  QComboBox* TariffCombo() const { return tariff_; }
  QLabel* TotalDuration() const { return totalDuration_; }
  QLabel* TotalCost() const { return totalCost_; }
  bool IsLoading() const;
  // The rows shown, in the grid's order, with the filters they were read by.
  ListSelection Selection() const;

 signals:
  // A reload has put its rows on screen.
  void listLoaded();

 private:
  void BuildUi();
  void GetTarife();
  void SetTarif();
  void FilterChanged();
  void PeriodChanged();
  void CustomPeriod();
  void ApplyConfig(const ListConfig& config);
  void SaveListCfg();
  void ShowLoaded(const ListResult& result);
  void HeaderClicked(int section);
  void ButtonClicked(int index);
  void EditSelected();
  void DeleteSelected();
  void SetNet(bool net);

  const Services& services_;
  RemoteAccess* remote_;
  NewestRun<ListResult> load_;
  ConnectionListModel* model_ = nullptr;
  QTableView* grid_ = nullptr;
  QComboBox* period_ = nullptr;
  QComboBox* user_ = nullptr;
  QComboBox* provider_ = nullptr;
  QComboBox* tariff_ = nullptr;
  QLabel* totalDuration_ = nullptr;
  QLabel* totalCost_ = nullptr;
  QLabel* loadingNote_ = nullptr;
  std::array<QToolButton*, 7> buttons_{};
  ListSort sort_ = SortByHeader(kColumnDatum);
  ListSort loadSort_;  // the sort the load in flight hands its rows over in
  bool loading_ = true;
  bool net_ = false;
};

}  // namespace minutor
