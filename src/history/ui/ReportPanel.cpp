#include "history/ui/ReportPanel.h"

#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "frame/datadir/DataDir.h"
#include "history/RecordFilter.h"
#include "history/ReportRun.h"
#include "history/ui/TariffComparisonView.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace minutor {

namespace {

QLabel* Wrapping(const QString& text, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setWordWrap(true);
  return label;
}

}  // namespace

ReportPanel::ReportPanel(Services& services, QWidget* parent) : QWidget(parent), services_(services) {
  setObjectName(QStringLiteral("Report"));
  BuildControls();
  comZeitraum_->addItems(ReportPeriodItems());
  comZeitraum_->setCurrentIndex(0);
  comUser_->addItems(GetUsers(services_.dir));
  comUser_->setCurrentIndex(0);
  BuildReport();
}

ReportPanel::~ReportPanel() = default;

void ReportPanel::BuildControls() {
  comZeitraum_ = new QComboBox(this);
  comZeitraum_->setObjectName(QStringLiteral("comZeitraum"));
  comUser_ = new QComboBox(this);
  comUser_->setObjectName(QStringLiteral("comUser"));
  auto total = [this](const char* name) {
    auto* label = new QLabel(this);
    label->setObjectName(QString::fromUtf8(name));
    return label;
  };
  lblGesamtKosten_ = total("lblGesamtKosten");
  lblGesamtDauer_ = total("lblGesamtDauer");
  lblGesamtTransfer_ = total("lblGesamtTransfer");
  busy_ = new QLabel(QStringLiteral("Berechne Analyse..."), this);
  busy_->setObjectName(QStringLiteral("lblBusy"));

  auto* choices = new QGridLayout;
  choices->addWidget(new QLabel(QStringLiteral("Zeitraum:"), this), 0, 0);
  choices->addWidget(comZeitraum_, 0, 1);
  choices->addWidget(new QLabel(QStringLiteral("Benutzer:"), this), 1, 0);
  choices->addWidget(comUser_, 1, 1);
  choices->setColumnStretch(1, 1);

  auto* totals = new QGridLayout;
  totals->addWidget(new QLabel(QStringLiteral("Verbindungskosten gesamt:"), this), 0, 0);
  totals->addWidget(lblGesamtKosten_, 0, 1);
  totals->addWidget(new QLabel(QStringLiteral("Verbindungsdauer gesamt:"), this), 1, 0);
  totals->addWidget(lblGesamtDauer_, 1, 1);
  totals->addWidget(new QLabel(QStringLiteral("Transfer gesamt:"), this), 2, 0);
  totals->addWidget(lblGesamtTransfer_, 2, 1);
  totals->setColumnStretch(1, 1);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(
      Wrapping(QStringLiteral("Hier erhalten Sie einen kleinen Überblick über Ihr durchschnittliches "
                              "Surfverhalten. Das kann insbesondere bei der Tarifwahl hilfreich sein."),
               this));
  layout->addLayout(choices);
  layout->addWidget(busy_);
  for (std::size_t i = 0; i < Label2_.size(); ++i) {
    Label2_[i] = Wrapping(QString(), this);
    Label2_[i]->setObjectName(QStringLiteral("Label2(%1)").arg(i));
    layout->addWidget(Label2_[i]);
  }
  layout->addLayout(totals);
  comparison_ = new TariffComparisonView(services_, this);
  layout->addWidget(comparison_, 1);

  connect(comZeitraum_, &QComboBox::activated, this, &ReportPanel::BuildReport);
  connect(comUser_, &QComboBox::activated, this, &ReportPanel::BuildReport);
}

bool ReportPanel::IsCalculating() const { return !busy_->isHidden(); }

void ReportPanel::BuildReport() {
  busy_->show();
  const DataDir dir = services_.dir;
  const QString period = comZeitraum_->currentText();
  const QString user = comUser_->currentText();
  const QDate today = services_.clock.Now().date();
  const QString currency = services_.state.Waehrung;
  comparison_->SetSelection(period, user);

  build_.Start(
      [dir, period, user, today, currency](const std::atomic<bool>& cancel, const auto&) {
        return minutor::BuildReport(dir, period, user, today, currency, &cancel);
      },
      [this](const ReportTexts& texts) { Show(texts); });
}

void ReportPanel::Show(const ReportTexts& texts) {
  for (std::size_t i = 0; i < Label2_.size(); ++i) {
    Label2_[i]->setText(texts.sentences[i]);
  }
  lblGesamtKosten_->setText(texts.kosten);
  lblGesamtDauer_->setText(texts.dauer);
  lblGesamtTransfer_->setText(texts.transfer);
  busy_->hide();
  emit built();
}

}  // namespace minutor
