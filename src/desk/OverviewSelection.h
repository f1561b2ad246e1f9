#pragma once

#include <optional>
#include <utility>

#include "desk/FreeAllowance.h"
#include "desk/OverviewFiles.h"
#include "tariffs/TariffNames.h"
#include "users/Budget.h"
#include "users/BudgetProjection.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace minutor {

struct Services;

// What the Overview offers and what the user chose there: providers, their
// tariffs and the users, with the price line and the free allowance that
// follow from the chosen tariff. Every change of a selection is written to
// "Config/Overview.cfg" at once.
class OverviewSelection {
 public:
  // `logonName` is the desktop login, which picks the user when the
  // installation links the two and the program has no user yet.
  OverviewSelection(Services& services, QString logonName);

  // Fills the lists afresh and selects what `wanted` names, where it still
  // exists; then the chosen tariff becomes the current one, its price and
  // free allowance are computed, and the selections are written.
  //
  // The user shown is the program's active user. Only when the program has
  // none yet is it the login's user where the installation links the two,
  // else the user of `wanted`, else "Supervisor"; that user then becomes the
  // active one.
  void Load(const OverviewConfig& wanted);

  // The selections as "Config/Overview.cfg" holds them. Until the entries
  // are known the dial-up entry is kept as read.
  OverviewConfig Current() const;

  // The dial-up entries, in the system's order. The entry of the last
  // selection is shown where it is listed; the cheapest entry is found for
  // the present moment and stays so; the selections are written.
  void SetEntries(const QStringList& entries);
  const QStringList& Entries() const { return entries_; }
  int EntryIndex() const { return entryIndex_; }
  // The entry to dial: the one shown, or the one read while no list is known.
  const QString& Entry() const { return entry_; }
  // "Aktuell günstigster Eintrag:"; the text for none before SetEntries.
  const QString& CheapestText() const { return cheapestText_; }

  // Shows the entry and, when "DialUp/<entry>.trf" names a provider and one
  // of its tariffs that exist, those two, which become the current tariff.
  // Anything else in the file leaves provider and tariff as they were.
  void ChooseEntry(int index);

  const QStringList& Providers() const { return providers_; }
  int ProviderIndex() const { return providerIndex_; }
  const QList<TarifEintrag>& Tariffs() const { return tariffs_; }
  int TariffIndex() const { return tariffIndex_; }
  const QStringList& Users() const { return users_; }
  int UserIndex() const { return userIndex_; }

  // Lists the provider's tariffs and chooses the first. A provider without
  // tariffs leaves the current tariff, its price and allowance as they were.
  void ChooseProvider(int index);
  void ChooseTariff(int index);

  // Makes the user the active one. While the panel is on screen another
  // user's password is asked first; refused, the former user stays (false).
  bool ChooseUser(int index, bool panelVisible);

  // The rests of the active user's budget, as of the last load or choice of
  // user: day, month and the defined period. Nothing when the budget files
  // are damaged (the user was told) or there is no user.
  const std::optional<std::array<OverviewBudgetLine, 3>>& Budget() const { return budget_; }
  // Beside each rest: when it runs out at the last week's pace and what is
  // left per day; empty texts where there is nothing to project.
  const std::array<BudgetProjectionLine, 3>& Projections() const { return projections_; }
  // "Zeitraum: 1.1.2002 - 31.1.2002"
  const QString& PeriodText() const { return periodText_; }

  // Why dialling from this panel is refused now: an exceeded budget for a
  // user who may not dial then, or too little time left under a limit.
  // Empty when the entry may be dialled.
  QString DialRefusal();

  // The holiday switch. On screen and with a tariff chosen, the price line is
  // redrawn, always "pro Minute"; the current tariff and the free allowance
  // stay as they are.
  void SetHoliday(bool on, bool panelVisible);
  void SetChannelBundling(bool on);

  // The monitoring switch, written to "Config/Monitoring.cfg".
  void SetMonitoring(bool on);

  // The active user may not switch monitoring off; it is kept on for him.
  bool MonitoringLocked() const;

  // "0,035 € pro Minute"; " pro Minute" before any tariff was chosen.
  const QString& PriceText() const { return priceText_; }
  const FreeAllowance& Allowance() const { return allowance_; }

 private:
  QString TariffFile() const;
  void ListTariffs();
  void ApplyTariff();
  void ShowUserAtLoad(const QString& wanted);
  void ApplyMonitoringLock();
  void ShowBudget();
  void Save() const;

  Services& services_;
  QString logonName_;
  QString entry_;
  QStringList entries_;
  int entryIndex_ = -1;
  bool entriesKnown_ = false;
  QString cheapestText_;
  QStringList providers_;
  int providerIndex_ = -1;
  QList<TarifEintrag> tariffs_;
  int tariffIndex_ = -1;
  QStringList users_;
  int userIndex_ = -1;
  QString priceText_ = QStringLiteral(" pro Minute");
  FreeAllowance allowance_;
  // The stored provider and tariff when the tariff couldn't be read at the
  // load: they stay in the file until the user chooses another.
  std::optional<std::pair<QString, QString>> unreadTariff_;
  std::optional<std::array<OverviewBudgetLine, 3>> budget_;
  std::array<BudgetProjectionLine, 3> projections_;
  QString periodText_;
};

}  // namespace minutor
