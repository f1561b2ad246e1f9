#include "history/ui/ChartPanel.h"

#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "frame/datadir/DataDir.h"
#include "history/ChartSettings.h"
#include "history/ChartValues.h"
#include "history/ui/ChartView.h"
#include "tariffs/TariffNames.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

namespace minutor {

namespace {

constexpr int kFirstYear = 2001;
constexpr int kLastYear = 2030;
constexpr int kFirstMeasureButton = 3;
constexpr int kFirstTimeMeasureButton = 5;
const QColor kChosen(192, 0, 0);

const std::array<const char*, 8> kButtonCaptions = {"Linien",   "Balken", "Kreis",  "Anbieter",
                                                    "Benutzer", "Dauer",  "Kosten", "Transfer"};
const std::array<ChartMeasure, 5> kButtonMeasures = {ChartMeasure::Anbieter, ChartMeasure::Benutzer,
                                                     ChartMeasure::Dauer, ChartMeasure::Kosten,
                                                     ChartMeasure::Transfer};

bool IsPie(ChartMeasure measure) {
  return measure == ChartMeasure::Anbieter || measure == ChartMeasure::Benutzer;
}

int ButtonOf(ChartMeasure measure) {
  for (std::size_t i = 0; i < kButtonMeasures.size(); ++i) {
    if (kButtonMeasures[i] == measure) {
      return kFirstMeasureButton + static_cast<int>(i);
    }
  }
  return kFirstTimeMeasureButton;
}

void SelectText(QComboBox* box, const QString& text) {
  const int index = box->findText(text, Qt::MatchFixedString);
  if (index >= 0) {
    box->setCurrentIndex(index);
  }
}

}  // namespace

ChartPanel::ChartPanel(Services& services, QWidget* parent) : QWidget(parent), services_(services) {
  setObjectName(QStringLiteral("Chart"));
  BuildControls();
  Start();
}

ChartPanel::~ChartPanel() = default;

void ChartPanel::BuildControls() {
  auto combo = [this](const char* name) {
    auto* box = new QComboBox(this);
    box->setObjectName(QString::fromUtf8(name));
    // Long names mustn't widen the panel beyond the frame.
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(6);
    return box;
  };
  comZeitraum_ = combo("comZeitraum");
  comZeitraum_->addItems({QStringLiteral("Januar"), QStringLiteral("Februar"), QStringLiteral("März"),
                          QStringLiteral("April"), QStringLiteral("Mai"), QStringLiteral("Juni"),
                          QStringLiteral("Juli"), QStringLiteral("August"), QStringLiteral("September"),
                          QStringLiteral("Oktober"), QStringLiteral("November"), QStringLiteral("Dezember")});
  comJahr_ = combo("comJahr");
  for (int year = kFirstYear; year <= kLastYear; ++year) {
    comJahr_->addItem(QString::number(year));
  }
  comUser_ = combo("comUser");
  comAnbieter_ = combo("comAnbieter");
  comTarif_ = combo("comTarif");

  view_ = new ChartView(this);
  AxisX_ = new QLabel(this);
  AxisX_->setObjectName(QStringLiteral("AxisX"));
  AxisY_ = new QLabel(this);
  AxisY_->setObjectName(QStringLiteral("AxisY"));
  Label3_ = new QLabel(QStringLiteral("Berechne Diagramm..."), view_);
  Label3_->setObjectName(QStringLiteral("Label3"));
  Label3_->setAlignment(Qt::AlignCenter);
  Label3_->setStyleSheet(QStringLiteral("background: white; border: 1px solid #808080; padding: 6px;"));
  // The notice stays in the middle of the surface, whatever size it gets.
  auto* overlay = new QGridLayout(view_);
  overlay->addWidget(Label3_, 0, 0, Qt::AlignCenter);

  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    auto* button = new QToolButton(this);
    button->setObjectName(QStringLiteral("Label2(%1)").arg(i));
    button->setText(QString::fromUtf8(kButtonCaptions[i]));
    button->setAutoRaise(true);
    connect(button, &QToolButton::clicked, this, [this, i] { ClickButton(static_cast<int>(i)); });
    buttons_[i] = button;
  }

  // Two choices a row leave the frame's width to the chart at larger fonts.
  auto* filters = new QGridLayout;
  filters->setVerticalSpacing(2);
  filters->addWidget(new QLabel(QStringLiteral("Monat:"), this), 0, 0);
  filters->addWidget(comZeitraum_, 0, 1);
  filters->addWidget(new QLabel(QStringLiteral("Jahr:"), this), 0, 2);
  filters->addWidget(comJahr_, 0, 3);
  filters->addWidget(new QLabel(QStringLiteral("Benutzer:"), this), 1, 0);
  filters->addWidget(comUser_, 1, 1);
  filters->addWidget(new QLabel(QStringLiteral("Anbieter:"), this), 1, 2);
  filters->addWidget(comAnbieter_, 1, 3);
  filters->addWidget(new QLabel(QStringLiteral("Tarif:"), this), 2, 0);
  filters->addWidget(comTarif_, 2, 1, 1, 3);
  filters->setColumnStretch(1, 1);
  filters->setColumnStretch(3, 1);

  auto* axes = new QHBoxLayout;
  axes->addWidget(AxisX_);
  axes->addStretch(1);
  axes->addWidget(AxisY_);

  auto* styleRow = new QHBoxLayout;
  auto* measureRow = new QHBoxLayout;
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    (i < kFirstMeasureButton ? styleRow : measureRow)->addWidget(buttons_[i]);
  }
  styleRow->addStretch(1);
  measureRow->addStretch(1);

  // The chart's surface takes nearly the whole width of the frame.
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->setSpacing(4);
  layout->addLayout(filters);
  layout->addWidget(view_, 1, Qt::AlignHCenter);
  layout->addLayout(axes);
  layout->addLayout(styleRow);
  layout->addLayout(measureRow);

  connect(comZeitraum_, &QComboBox::activated, this, &ChartPanel::RedrawAndSave);
  connect(comJahr_, &QComboBox::activated, this, &ChartPanel::RedrawAndSave);
  connect(comUser_, &QComboBox::activated, this, &ChartPanel::RedrawAndSave);
  connect(comTarif_, &QComboBox::activated, this, &ChartPanel::RedrawAndSave);
  connect(comAnbieter_, &QComboBox::activated, this, [this] {
    SetTarif();
    RedrawAndSave();
  });
}

void ChartPanel::Start() {
  loading_ = true;
  comUser_->addItems(GetUsers(services_.dir));
  comUser_->setCurrentIndex(
      std::max(0, comUser_->findText(services_.state.ActiveUser, Qt::MatchFixedString)));
  GetTarife();

  const QDate today = services_.clock.Now().date();
  comZeitraum_->setCurrentIndex(today.month() - 1);
  // Past the last year of the list no year is chosen.
  comJahr_->setCurrentIndex(today.year() >= kFirstYear && today.year() <= kLastYear ? today.year() % 100 - 1
                                                                                    : -1);

  const ChartSettings saved = ChartSettings::Load(services_.dir);
  if (saved.monthIndex >= 0 && saved.monthIndex < comZeitraum_->count()) {
    comZeitraum_->setCurrentIndex(saved.monthIndex);
  }
  if (saved.yearIndex >= 0 && saved.yearIndex < comJahr_->count()) {
    comJahr_->setCurrentIndex(saved.yearIndex);
  }
  SelectText(comUser_, saved.user);
  SelectText(comAnbieter_, saved.provider);
  SetTarif();
  SelectText(comTarif_, saved.tariff);

  // A measure or style out of its range, or a pie measure saved with a time
  // style, falls back to what fits.
  measure_ = saved.measure >= 1 && saved.measure <= 5 ? static_cast<ChartMeasure>(saved.measure)
                                                      : ChartMeasure::Dauer;
  style_ = saved.style >= 1 && saved.style <= 3 ? static_cast<ChartStyle>(saved.style) : ChartStyle::Balken;
  if (IsPie(measure_)) {
    style_ = ChartStyle::Kreis;
  } else {
    if (style_ == ChartStyle::Kreis) {
      style_ = ChartStyle::Balken;
    }
    lastTimeStyle_ = style_;
  }
  loading_ = false;
  MarkButtons();
  DrawDiagramm();
}

void ChartPanel::GetTarife() {
  comAnbieter_->clear();
  comAnbieter_->addItem(kAlle);
  comAnbieter_->addItems(GetAnbieterListe(services_.dir));
  comAnbieter_->setCurrentIndex(0);
  SetTarif();
}

void ChartPanel::SetTarif() {
  const QString provider = comAnbieter_->currentText();
  if (provider == kAlle) {
    // The old tariffs stay in the list; "[Alle]" above them counts.
    if (comTarif_->count() == 0) {
      comTarif_->addItem(kAlle);
    }
    comTarif_->setCurrentIndex(0);
  } else {
    comTarif_->clear();
    comTarif_->addItem(kAlle);
    for (const TarifEintrag& entry : GetTarifListe(services_.dir, provider)) {
      comTarif_->addItem(entry.Label);
    }
    comTarif_->setCurrentIndex(0);
  }
  comTarif_->setEnabled(!IsPie(measure_) && provider != kAlle);
}

void ChartPanel::ClickButton(int index) {
  if (index < 0 || index >= static_cast<int>(buttons_.size()) ||
      !buttons_[static_cast<std::size_t>(index)]->isEnabled()) {
    return;
  }
  ApplyChoice(index);
  RedrawAndSave();
}

void ChartPanel::ApplyChoice(int index) {
  if (index < kFirstMeasureButton) {
    style_ = static_cast<ChartStyle>(index + 1);
    if (style_ != ChartStyle::Kreis) {
      lastTimeStyle_ = style_;
    }
  } else {
    measure_ = kButtonMeasures[static_cast<std::size_t>(index - kFirstMeasureButton)];
    style_ = IsPie(measure_) ? ChartStyle::Kreis : lastTimeStyle_;
  }
  MarkButtons();
}

void ChartPanel::MarkButtons() {
  const int styleButton = static_cast<int>(style_) - 1;
  const int measureButton = ButtonOf(measure_);
  for (int i = 0; i < static_cast<int>(buttons_.size()); ++i) {
    QToolButton* button = buttons_[static_cast<std::size_t>(i)];
    const bool chosen = i == styleButton || i == measureButton;
    QFont font = button->font();
    font.setBold(chosen);
    button->setFont(font);
    QPalette palette = button->palette();
    palette.setColor(QPalette::ButtonText, chosen ? kChosen : QColor(Qt::black));
    button->setPalette(palette);
  }
  // Pies count every record of the month: the filters and the time styles
  // have no say then.
  const bool pie = IsPie(measure_);
  comUser_->setEnabled(!pie);
  comAnbieter_->setEnabled(!pie);
  comTarif_->setEnabled(!pie && comAnbieter_->currentText() != kAlle);
  buttons_[0]->setEnabled(!pie);
  buttons_[1]->setEnabled(!pie);
  buttons_[2]->setEnabled(pie);
}

bool ChartPanel::IsCalculating() const { return !Label3_->isHidden(); }

void ChartPanel::RedrawAndSave() {
  if (loading_) {
    return;
  }
  DrawDiagramm();
  ChartSettings settings;
  settings.monthIndex = comZeitraum_->currentIndex();
  settings.yearIndex = comJahr_->currentIndex();
  settings.user = comUser_->currentText();
  settings.provider = comAnbieter_->currentText();
  settings.tariff = comTarif_->currentText();
  settings.measure = static_cast<int>(measure_);
  settings.style = static_cast<int>(style_);
  settings.Save(services_.dir);
}

void ChartPanel::DrawDiagramm() {
  Label3_->show();
  Label3_->raise();
  ChartQuery query;
  query.month = comZeitraum_->currentIndex() + 1;
  query.year = comJahr_->currentIndex() >= 0 ? kFirstYear + comJahr_->currentIndex() : 0;
  query.filter.user = comUser_->currentText();
  query.filter.provider = comAnbieter_->currentText();
  query.filter.tariff = comTarif_->currentText();
  const DataDir dir = services_.dir;
  const ChartMeasure measure = measure_;
  const ChartStyle style = style_;
  const QString currency = services_.state.Waehrung;

  draw_.Start(
      [dir, query, measure, style, currency](const std::atomic<bool>& cancel, const auto&) {
        return minutor::DrawDiagramm(GatherChartData(dir, query, measure, &cancel), measure, style, currency);
      },
      [this](const ChartPicture& picture) {
        view_->SetPicture(picture);
        AxisX_->setText(picture.axisX);
        AxisY_->setText(picture.axisY);
        Label3_->hide();
        emit drawn();
      });
}

}  // namespace minutor
