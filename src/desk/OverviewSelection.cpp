#include "desk/OverviewSelection.h"

#include "desk/CheapestEntry.h"
#include "detection/RemoteAccess.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/StartUp.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/Names.h"
#include "tariffs/PriceTexts.h"
#include "users/TimeLeft.h"
#include "users/UserAccounts.h"
#include "users/UserFile.h"

#include <QDir>
#include <QFileInfo>

namespace minutor {

namespace {

// Whether a stored tariff is there but can't be read: its folder can't be
// listed, or something other than a readable file has its name. A tariff
// that is simply gone is not that.
bool IsTariffUnreadable(const DataDir& dir, const QString& file) {
  if (!IsSafeFileName(file)) {
    return false;
  }
  const QFileInfo folder(dir.Resolve(QStringLiteral("Tarife")));
  if (folder.exists() && !(folder.isDir() && QDir(folder.filePath()).isReadable())) {
    return true;
  }
  const QFileInfo tariff(dir.Resolve(QStringLiteral("Tarife/") + file));
  return tariff.exists() && !(tariff.isFile() && tariff.isReadable());
}

int IndexOf(const QStringList& list, const QString& text, Qt::CaseSensitivity cs = Qt::CaseSensitive) {
  if (text.isEmpty()) {
    return -1;
  }
  for (int i = 0; i < list.size(); ++i) {
    if (list[i].compare(text, cs) == 0) {
      return i;
    }
  }
  return -1;
}

}  // namespace

OverviewSelection::OverviewSelection(Services& services, QString logonName)
    : services_(services), logonName_(std::move(logonName)) {
  allowance_.caption = QStringLiteral("Verbleibende kostenfreie Zeit:");
  cheapestText_ = CheapestEntryText(services_.dir, {}, {}, false, services_.state.Waehrung);
}

// The lists are filled and their selections set without running the
// handlers of a choice, so that nothing is computed or written on the way.
void OverviewSelection::Load(const OverviewConfig& wanted) {
  entry_ = wanted.entry;
  if (entriesKnown_) {
    entryIndex_ = IndexOf(entries_, entry_);
    entry_ = entryIndex_ >= 0 ? entries_[entryIndex_] : QString();
  }

  providers_ = GetAnbieterListe(services_.dir);
  providerIndex_ = IndexOf(providers_, wanted.provider);
  ListTariffs();
  bool found = false;
  for (int i = 0; i < tariffs_.size() && !found; ++i) {
    if (tariffs_[i].Label == wanted.tariff) {
      tariffIndex_ = i;
      found = true;
    }
  }
  // A failed read never costs the user the stored choice.
  if (!found && !wanted.tariff.isEmpty() &&
      IsTariffUnreadable(services_.dir, GetTarifDatei(wanted.provider, wanted.tariff))) {
    unreadTariff_ = std::pair{wanted.provider, wanted.tariff};
    providerIndex_ = -1;
    tariffs_.clear();
    tariffIndex_ = -1;
  }

  ShowUserAtLoad(wanted.user);
  ApplyMonitoringLock();

  if (tariffIndex_ >= 0) {
    ApplyTariff();
  }
  ShowBudget();
  Save();
}

OverviewConfig OverviewSelection::Current() const {
  OverviewConfig config;
  config.entry = entry_;
  config.user = userIndex_ >= 0 ? users_[userIndex_] : services_.state.ActiveUser;
  if (unreadTariff_) {
    config.provider = unreadTariff_->first;
    config.tariff = unreadTariff_->second;
  }
  if (providerIndex_ >= 0) {
    config.provider = providers_[providerIndex_];
  }
  if (tariffIndex_ >= 0) {
    config.tariff = tariffs_[tariffIndex_].Label;
  }
  return config;
}

void OverviewSelection::SetEntries(const QStringList& entries) {
  entries_ = entries;
  entriesKnown_ = true;
  entryIndex_ = IndexOf(entries_, entry_);
  entry_ = entryIndex_ >= 0 ? entries_[entryIndex_] : QString();
  const AppState& state = services_.state;
  cheapestText_ =
      CheapestEntryText(services_.dir, entries_, services_.clock.Now(), state.FeiertagAktiv, state.Waehrung);
  Save();
}

void OverviewSelection::ChooseEntry(int index) {
  if (index < 0 || index >= entries_.size()) {
    return;
  }
  entryIndex_ = index;
  entry_ = entries_[index];
  const QString file = QStringLiteral("DialUp/") + entry_ + QStringLiteral(".trf");
  const auto lines = IsUsableEntryName(entry_) ? services_.dir.ReadLines(file) : std::nullopt;
  if (lines && lines->size() >= 2) {
    const int provider = IndexOf(providers_, FromAnsi(lines->at(0)));
    const QString label = FromAnsi(lines->at(1));
    if (provider >= 0) {
      const QList<TarifEintrag> tariffs = GetTarifListe(services_.dir, providers_[provider]);
      for (int i = 0; i < tariffs.size(); ++i) {
        if (tariffs[i].Label == label) {
          providerIndex_ = provider;
          tariffs_ = tariffs;
          tariffIndex_ = i;
          unreadTariff_.reset();
          ApplyTariff();
          break;
        }
      }
    }
  }
  Save();
}

void OverviewSelection::ChooseProvider(int index) {
  if (index < 0 || index >= providers_.size()) {
    return;
  }
  providerIndex_ = index;
  unreadTariff_.reset();
  ListTariffs();
  if (tariffIndex_ >= 0) {
    ApplyTariff();
  }
  Save();
}

void OverviewSelection::ChooseTariff(int index) {
  if (index < 0 || index >= tariffs_.size()) {
    return;
  }
  tariffIndex_ = index;
  unreadTariff_.reset();
  ApplyTariff();
  Save();
}

bool OverviewSelection::ChooseUser(int index, bool panelVisible) {
  if (index < 0 || index >= users_.size()) {
    return false;
  }
  const QString& name = users_[index];
  AppState& state = services_.state;
  if (panelVisible && name != state.ActiveUser && !AskUserPassword(services_, name)) {
    return false;
  }
  userIndex_ = index;
  state.ActiveUser = name;
  ShowBudget();
  Save();
  ApplyMonitoringLock();
  return true;
}

void OverviewSelection::ShowBudget() {
  budget_.reset();
  projections_ = {};
  periodText_.clear();
  const QString& user = services_.state.ActiveUser;
  if (user.isEmpty()) {
    return;
  }
  const QDate today = services_.clock.Now().date();
  const auto rests = GetBudget(services_.dir, user, today);
  if (!rests) {
    services_.prompter.Message(kBudgetFilesDamaged, Prompter::Icon::Warning);
    return;
  }
  std::array<OverviewBudgetLine, 3> lines;
  const auto projections = ProjectBudgets(*rests, today);
  for (std::size_t i = 0; i < 3; ++i) {
    lines[i] = OverviewBudgetShows(rests->amounts[i], rests->rests[i], services_.state.Waehrung);
    projections_[i] = BudgetProjectionShows(projections[i], services_.state.Waehrung);
  }
  budget_ = lines;
  periodText_ = QStringLiteral("Zeitraum: ") + NormaliseDate(rests->periodFrom) + QStringLiteral(" - ") +
                NormaliseDate(rests->periodTo);
}

QString OverviewSelection::DialRefusal() {
  AppState& state = services_.state;
  if (budget_ && IsBudgetExceeded(*budget_) && state.NoDialOnBudget) {
    return QStringLiteral(
        "Das Einwählen wurde Ihnen in den Benutzereinstellungen verboten (Ihr Budget ist überschritten).");
  }
  // The month limit has no text of its own.
  if (GetTimeLeft(services_.dir, state, services_.clock.Now().date()) &&
      (state.DayLimitOn || state.MonthLimitOn)) {
    return QStringLiteral(
        "Das Einwählen wurde Ihnen in den Benutzereinstellungen verboten (Ihr tägliches Zeitlimit ist "
        "überschritten).");
  }
  return {};
}

void OverviewSelection::SetHoliday(bool on, bool panelVisible) {
  AppState& state = services_.state;
  state.FeiertagAktiv = on;
  if (panelVisible && tariffIndex_ >= 0) {
    priceText_ = AktuellerPreisNachFeiertagText(services_.dir, TariffFile(), services_.clock.Now(), on,
                                                state.Waehrung);
  }
}

void OverviewSelection::SetChannelBundling(bool on) { services_.state.KanalbuendelungAktiv = on; }

void OverviewSelection::SetMonitoring(bool on) {
  services_.state.MonitoringOn = on;
  SaveMonitoring(services_.dir, on);
}

QString OverviewSelection::TariffFile() const {
  if (providerIndex_ < 0 || tariffIndex_ < 0) {
    return {};
  }
  // Built from the label, so that a file found under a provider of another
  // case is still named after the provider shown.
  return GetTarifDatei(providers_[providerIndex_], tariffs_[tariffIndex_].Label);
}

void OverviewSelection::ListTariffs() {
  tariffs_.clear();
  if (providerIndex_ >= 0) {
    tariffs_ = GetTarifListe(services_.dir, providers_[providerIndex_]);
  }
  tariffIndex_ = tariffs_.isEmpty() ? -1 : 0;
}

void OverviewSelection::ApplyTariff() {
  AppState& state = services_.state;
  const QString file = TariffFile();
  const QDateTime now = services_.clock.Now();
  state.AktuellerTarif = file;
  priceText_ = AktuellerPreisText(services_.dir, file, now, state.FeiertagAktiv, state.Waehrung);
  allowance_ = ComputeFreeAllowance(services_.dir, file, now.date());
  state.Restfrei = allowance_.restfrei;
  state.RestfreiTarif = file;
}

void OverviewSelection::ShowUserAtLoad(const QString& wanted) {
  users_ = GetUserNames(services_.dir);
  QString& active = services_.state.ActiveUser;
  if (!active.isEmpty()) {
    // A user whose file went away shows as none rather than as someone else.
    userIndex_ = IndexOf(users_, active, Qt::CaseInsensitive);
    return;
  }
  userIndex_ = IndexOf(users_, kSupervisor, Qt::CaseInsensitive);
  if (const int last = IndexOf(users_, wanted); last >= 0) {
    userIndex_ = last;
  }
  if (!logonName_.isEmpty() && IsLogonLinked(services_.dir)) {
    for (int i = static_cast<int>(users_.size()) - 1; i >= 0; --i) {
      if (users_[i] == logonName_) {
        userIndex_ = i;
        break;
      }
    }
  }
  if (userIndex_ >= 0) {
    active = users_[userIndex_];
  }
}

bool OverviewSelection::MonitoringLocked() const { return services_.state.NoMonitoringSettings; }

void OverviewSelection::ApplyMonitoringLock() {
  AppState& state = services_.state;
  // A user without a file leaves the rights of the one before in force.
  if (const auto forbidden = MonitoringSwitchForbidden(services_.dir, state.ActiveUser)) {
    state.NoMonitoringSettings = *forbidden;
  }
  if (state.NoMonitoringSettings && !state.MonitoringOn) {
    SetMonitoring(true);
  }
}

void OverviewSelection::Save() const { WriteOverviewConfig(services_.dir, Current()); }

}  // namespace minutor
