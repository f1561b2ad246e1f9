#pragma once

#include "desk/OverviewSelection.h"
#include "frame/ui/FittingText.h"

#include <QWidget>

#include <array>

class QCheckBox;
class QComboBox;
class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

namespace minutor {

class RemoteAccess;
struct Services;

// The home panel, "Übersicht": the dial-up entry to dial and the cheapest
// one, provider, tariff and user for the next
// connection, the present price and free allowance, the switches for
// monitoring, holiday and channel bundling, the note, and the button that
// starts a recording by hand.
class OverviewPanel : public QWidget {
  Q_OBJECT

 public:
  // Loads itself: the note, the lists and the last selections.
  explicit OverviewPanel(Services& services, QWidget* parent = nullptr);

  // The entries to offer and dial come from here; the entry of the last
  // selection is shown again and the cheapest entry is found. Without it
  // the panel lists no entries and dials nothing.
  void SetRemoteAccess(RemoteAccess* remote);

  // Shows the monitoring switch as the caller has already set and saved it.
  void SetMonitoringChecked(bool on);

  // Reads providers, tariffs and users afresh, keeping the selections that
  // still exist, and recomputes price and allowance for the present moment.
  void Refresh();

 signals:
  // The user asked to record now; the recording is one started by hand.
  void startRequested();
  // The user chose another active user on this panel.
  void activeUserChanged(const QString& name);

 private:
  void BuildControls();
  void LoadNote();
  void ShowSelection();
  void OnEntryChosen(int index);
  void OnDialClicked();
  void OnProviderChosen(int index);
  void OnTariffChosen(int index);
  void OnUserChosen(int index);
  void OnHolidayClicked(bool on);
  void OnMonitoringClicked(bool on);
  void OnNoteChanged();

  Services& services_;
  RemoteAccess* remote_ = nullptr;
  OverviewSelection selection_;
  // Set while the note fills from its file, so that filling doesn't write it back.
  bool noteLoading_ = false;

  QComboBox* comDFUe_ = nullptr;
  QPushButton* Command1_ = nullptr;
  FittingLabel* lblOverview10_ = nullptr;  // the cheapest entry
  QComboBox* comAnbieter_ = nullptr;
  QComboBox* comTarif_ = nullptr;
  QLabel* lblOverview0_ = nullptr;  // the price
  QLabel* Label1_36_ = nullptr;     // the free allowance: caption, value, bar, percentage
  QLabel* lblOverview1_ = nullptr;
  QProgressBar* barOverview1_ = nullptr;
  QLabel* lblOverview9_ = nullptr;
  QComboBox* comOverviewUser_ = nullptr;
  // The budget rests of day, month and period: rest, bar, percentage.
  std::array<QLabel*, 3> lblBudgetRest_{};
  std::array<QProgressBar*, 3> barBudget_{};
  std::array<QLabel*, 3> lblBudgetPercent_{};
  // At each rest's row end: the day it runs out at the last week's pace.
  std::array<ShorteningLabel*, 3> lblBudgetProjection_{};
  QLabel* lblPeriod_ = nullptr;
  QCheckBox* Check1_ = nullptr;
  QCheckBox* chkFeiertag_ = nullptr;
  QCheckBox* chkKanalbuendelung_ = nullptr;
  QPushButton* cmdStart_ = nullptr;
  QPlainTextEdit* Notiz_ = nullptr;
};

}  // namespace minutor
