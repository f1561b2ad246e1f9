#include "history/ui/TariffComparisonView.h"

#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "history/TariffComparison.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include <cmath>

namespace minutor {

namespace {

QTableWidgetItem* Cell(const QString& text, bool number) {
  auto* item = new QTableWidgetItem(text);
  if (number) {
    item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  }
  return item;
}

}  // namespace

TariffComparisonView::TariffComparisonView(Services& services, QWidget* parent)
    : QGroupBox(QStringLiteral("Was hätte es gekostet?"), parent), services_(services) {
  setObjectName(QStringLiteral("Vergleich"));
  auto* explanation =
      new QLabel(QStringLiteral("Jede Verbindung des Zeitraums und Benutzers wird mit jedem Tarif des "
                                "Tarifkatalogs so berechnet, wie die Aufzeichnung sie berechnet hätte "
                                "(ohne Feiertag und Kanalbündelung)."),
                 this);
  explanation->setWordWrap(true);
  cmdVergleichen_ = new QPushButton(QStringLiteral("Vergleichen"), this);
  cmdVergleichen_->setObjectName(QStringLiteral("cmdVergleichen"));
  cmdAbbrechen_ = new QPushButton(QStringLiteral("Abbrechen"), this);
  cmdAbbrechen_->setObjectName(QStringLiteral("cmdAbbrechen"));
  progress_ = new QProgressBar(this);
  progress_->setRange(0, 100);
  lblVergleich_ = new QLabel(this);
  lblVergleich_->setObjectName(QStringLiteral("lblVergleich"));
  lblVergleich_->setWordWrap(true);
  tblVergleich_ = new QTableWidget(0, 3, this);
  tblVergleich_->setObjectName(QStringLiteral("tblVergleich"));
  tblVergleich_->setHorizontalHeaderLabels(
      {QStringLiteral("Tarif"), QStringLiteral("Kosten"), QStringLiteral("Differenz")});
  tblVergleich_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
  tblVergleich_->verticalHeader()->hide();
  tblVergleich_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  tblVergleich_->setSelectionBehavior(QAbstractItemView::SelectRows);

  auto* buttons = new QHBoxLayout;
  buttons->addWidget(cmdVergleichen_);
  buttons->addWidget(cmdAbbrechen_);
  buttons->addWidget(progress_, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(explanation);
  layout->addLayout(buttons);
  layout->addWidget(lblVergleich_);
  layout->addWidget(tblVergleich_, 1);

  connect(cmdVergleichen_, &QPushButton::clicked, this, &TariffComparisonView::Compare);
  connect(cmdAbbrechen_, &QPushButton::clicked, this, &TariffComparisonView::Cancel);
  SetRunning(false);
}

TariffComparisonView::~TariffComparisonView() = default;

bool TariffComparisonView::IsComparing() const { return cmdAbbrechen_->isEnabled(); }

void TariffComparisonView::SetSelection(const QString& period, const QString& user) {
  if (period == period_ && user == user_) {
    return;
  }
  period_ = period;
  user_ = user;
  if (IsComparing()) {
    Cancel();
  }
  tblVergleich_->setRowCount(0);
  lblVergleich_->clear();
}

void TariffComparisonView::SetRunning(bool running) {
  cmdVergleichen_->setEnabled(!running);
  cmdAbbrechen_->setEnabled(running);
  progress_->setVisible(running);
}

void TariffComparisonView::Compare() {
  tblVergleich_->setRowCount(0);
  lblVergleich_->setText(QStringLiteral("Berechne die Kosten mit jedem Tarif..."));
  progress_->setValue(0);
  SetRunning(true);

  const DataDir dir = services_.dir;
  const QString period = period_;
  const QString user = user_;
  const QDate today = services_.clock.Now().date();
  compare_.Start(
      [dir, period, user, today](const std::atomic<bool>& cancel, const std::function<void(int)>& progress) {
        return CompareTariffs(dir, period, user, today, &cancel, progress);
      },
      [this](const TariffComparison& comparison) { Show(comparison); },
      [this](int percent) { progress_->setValue(percent); });
}

void TariffComparisonView::Cancel() {
  // What the worker still finds is dropped.
  compare_.Drop();
  SetRunning(false);
  lblVergleich_->setText(QStringLiteral("Der Vergleich wurde abgebrochen."));
  emit finished();
}

void TariffComparisonView::Show(const TariffComparison& comparison) {
  SetRunning(false);
  const QString waehrung = QLatin1Char(' ') + services_.state.Waehrung;
  if (comparison.connections == 0) {
    lblVergleich_->setText(
        QStringLiteral("Im gewählten Zeitraum gibt es keine Verbindungen zu vergleichen."));
  } else if (comparison.tariffs.isEmpty()) {
    lblVergleich_->setText(
        QStringLiteral("Es sind keine Tarife vorhanden, mit denen verglichen werden kann."));
  } else {
    lblVergleich_->setText(QStringLiteral("Tatsächliche Kosten von %1 Verbindungen: %2")
                               .arg(comparison.connections)
                               .arg(FixedText(comparison.actual, 2) + waehrung));
  }
  tblVergleich_->setRowCount(static_cast<int>(comparison.tariffs.size()));
  for (int row = 0; row < tblVergleich_->rowCount(); ++row) {
    const TariffCost& tariff = comparison.tariffs.at(row);
    // Whole cents, so that sums that differ in their last bits show no "-0,00".
    double difference = std::round((tariff.cost - comparison.actual) * 100) / 100;
    if (difference == 0) {
      difference = 0;
    }
    const QString sign = difference > 0 ? QStringLiteral("+") : QString();
    tblVergleich_->setItem(row, 0, Cell(tariff.file, false));
    tblVergleich_->setItem(row, 1, Cell(FixedText(tariff.cost, 2) + waehrung, true));
    tblVergleich_->setItem(row, 2, Cell(sign + FixedText(difference, 2) + waehrung, true));
  }
  tblVergleich_->resizeColumnsToContents();
  tblVergleich_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
  emit finished();
}

}  // namespace minutor
