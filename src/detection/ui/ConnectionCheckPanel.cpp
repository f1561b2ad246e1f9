#include "detection/ui/ConnectionCheckPanel.h"

#include "detection/ConCheck.h"
#include "detection/Probes.h"
#include "frame/AppState.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/ui/WrappingCheckBox.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFont>
#include <QFontMetrics>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace minutor {

namespace {

QLabel* Explanation(const QString& text, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setWordWrap(true);
  return label;
}

// The interval sentence keeps its gap of blanks, and the list lies over it.
// "Alle <interval> Sekunden überprüfen ob eine Internetverbindung gestartet
// wurde.": the selection box stands in the sentence, whose rest breaks into
// lines beside it where the panel is narrow.
QWidget* IntervalSentence(QComboBox* combo, QWidget* parent) {
  auto* sentence = new QWidget(parent);
  sentence->setObjectName(QStringLiteral("lblInterval"));
  auto* lead = new QLabel(QStringLiteral("Alle"), sentence);
  lead->setObjectName(QStringLiteral("lblIntervalLead"));
  auto* rest =
      new QLabel(QStringLiteral("Sekunden überprüfen ob eine Internetverbindung gestartet wurde."), sentence);
  rest->setObjectName(QStringLiteral("lblIntervalRest"));
  rest->setWordWrap(true);
  auto* row = new QHBoxLayout(sentence);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(lead, 0, Qt::AlignVCenter);
  row->addWidget(combo, 0, Qt::AlignVCenter);
  row->addWidget(rest, 1);
  return sentence;
}

}  // namespace

ConnectionCheckPanel::ConnectionCheckPanel(Services& services, QWidget* parent)
    : QWidget(parent), services_(services) {
  setObjectName(QStringLiteral("ConnectionCheck"));
  setWindowTitle(QStringLiteral("Überwachung"));
  BuildControls();
  LoadSettings();
}

void ConnectionCheckPanel::SetPlatform(const BusServices* bus, TapiLine* line) {
  bus_ = bus;
  line_ = line;
}

void ConnectionCheckPanel::BuildControls() {
  const std::array<QString, 4> captions = {
      QStringLiteral("IP Methode (erkennt Verbindungen, die per Modem (incl. DSL) aufgebaut werden)"),
      QStringLiteral("Internet Explorer Methode (Modem/DSL)"),
      QStringLiteral("TAPI Methode (erkennt Verbindungen, die per Modem (incl. DSL) aufgebaut werden)"),
      QStringLiteral("LAN und Proxy Verbindungen erkennen."),
  };
  auto* group = new QGroupBox(QStringLiteral("Überwachungsmethoden"), this);
  for (int i = 0; i < 4; ++i) {
    Check1_[i] = new WrappingCheckBox(captions[i], group);
    Check1_[i]->setObjectName(QStringLiteral("Check1(%1)").arg(i));
    connect(Check1_[i], &QCheckBox::clicked, this, [this, i] { OnMethodClicked(i); });
  }
  auto* restart = new QLabel(QStringLiteral("Änderung erfordert Minutor-Neustart!"), group);
  QFont small = restart->font();
  small.setItalic(true);
  restart->setFont(small);

  comInterval_ = new QComboBox;
  comInterval_->setObjectName(QStringLiteral("comInterval"));
  for (int seconds = 1; seconds <= 10; ++seconds) {
    comInterval_->addItem(QString::number(seconds));
  }
  IgnoredIPs_ = new QLineEdit(group);
  IgnoredIPs_->setObjectName(QStringLiteral("IgnoredIPs"));
  Command1_ = new QPushButton(QStringLiteral("Hinweise..."), group);
  Command1_->setObjectName(QStringLiteral("Command1"));

  auto* lan = new QHBoxLayout;
  lan->addSpacing(20);
  restart->setWordWrap(true);
  lan->addWidget(Check1_[ConCheckBoxes::LAN], 3);
  lan->addWidget(restart, 2, Qt::AlignTop);
  auto* ignored = new QHBoxLayout;
  ignored->addWidget(IgnoredIPs_, 1);
  ignored->addWidget(Command1_);

  // The explanation of each method would fill more than the frame: it is
  // the box's tooltip and opens from the link beside it.
  auto method = [this, group](int index, const QString& explanation) {
    Check1_[index]->setToolTip(explanation);
    auto* more = new QLabel(QStringLiteral("<a href=\"mehr\">&gt;&gt; mehr</a>"), group);
    more->setObjectName(QStringLiteral("lblMehr(%1)").arg(index));
    more->setToolTip(explanation);
    connect(more, &QLabel::linkActivated, this, [this, explanation] {
      services_.prompter.Message(explanation, Prompter::Icon::Information, windowTitle());
    });
    auto* row = new QHBoxLayout;
    row->addWidget(Check1_[index], 1);
    row->addWidget(more, 0, Qt::AlignTop);
    return row;
  };

  auto* methods = new QVBoxLayout(group);
  methods->setContentsMargins(6, 4, 6, 4);
  methods->setSpacing(3);
  methods->addWidget(Explanation(
      QStringLiteral(
          "Minutor kann Internet Verbindungen auf folgende 3 Arten automatisch erkennen und den "
          "Zählvorgang starten. Sie können alle 3 gleichzeitig aktivieren, aber um die Resourcen Ihres "
          "Computers zu schonen, sollte(n) nur die nötige(n) aktiviert sein."),
      group));
  methods->addLayout(method(
      ConCheckBoxes::TAPI,
      QStringLiteral("Nutzt die Windows TAPI Schnittstelle zur Verbindungserkennung. Das DFÜ-Netzwerk sowie "
                     "spezielle Terminal/Fax Software macht von dieser Schnittstelle gebrauch.")));
  methods->addLayout(
      method(ConCheckBoxes::IE,
             QStringLiteral(
                 "Nutzt die Verbindungserkennung des Internet Explorers. Dazu muß dieser natürlich auf dem "
                 "System installiert sein. Die LAN/Proxy Variante erkennt manche LAN und Proxy Internet "
                 "Verbindungen, sollte allerdings nicht auf Computern mit direkter Internetverbindung "
                 "eingesetzt werden. ES IST IMMER NUR EINE VON BEIDEN METHODEN ZU AKTIVIEREN!")));
  methods->addLayout(lan);
  methods->addLayout(
      method(ConCheckBoxes::IP,
             QStringLiteral(
                 "Beim Zustandekommen einer Internetverbindung wird Ihrem Computer automatisch vom Anbieter "
                 "eine IP Nummer zugewiesen, sozusagen die Empfängeradresse Ihres Computers. Bei dieser "
                 "Methode beginnt der Zählvorgang sobald eine IP Nummer zugewiesen wurde.")));
  methods->addWidget(
      Explanation(QStringLiteral("Zu ignorierende IPs (z.B. im LAN zugewiesene IPs):"), group));
  methods->addLayout(ignored);

  auto* important =
      new QLabel(QStringLiteral("WICHTIG: Minutor muss vor Verbindungsaufbau gestartet werden."), this);
  important->setWordWrap(true);
  QFont bold = important->font();
  bold.setBold(true);
  important->setFont(bold);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->setSpacing(4);
  layout->addWidget(group);
  layout->addWidget(IntervalSentence(comInterval_, this));
  layout->addWidget(important);
  layout->addStretch(1);

  connect(comInterval_, &QComboBox::currentIndexChanged, this, [this] {
    if (!loading_) {
      SaveSettings();
    }
  });
  connect(IgnoredIPs_, &QLineEdit::editingFinished, this,
          [this] { WriteIgnoredIPsLine(services_.dir, IgnoredIPs_->text()); });
  connect(Command1_, &QPushButton::clicked, this,
          [this] { services_.prompter.Message(IgnoredIPsHint(), Prompter::Icon::None); });
}

void ConnectionCheckPanel::LoadSettings() {
  loading_ = true;
  ShowBoxes(ReadConCheckBoxes(services_.dir));
  IgnoredIPs_->setText(ReadIgnoredIPsLine(services_.dir));
  loading_ = false;
}

ConCheckBoxes ConnectionCheckPanel::Boxes() const {
  ConCheckBoxes boxes;
  for (int i = 0; i < 4; ++i) {
    boxes.Check1[i] = Check1_[i]->isChecked();
  }
  boxes.Interval = comInterval_->currentIndex() + 1;
  return boxes;
}

void ConnectionCheckPanel::ShowBoxes(const ConCheckBoxes& boxes) {
  for (int i = 0; i < 4; ++i) {
    const QSignalBlocker blocker(Check1_[i]);
    Check1_[i]->setChecked(boxes.Check1[i]);
  }
  const QSignalBlocker blocker(comInterval_);
  comInterval_->setCurrentIndex(boxes.Interval - 1);
}

void ConnectionCheckPanel::SaveSettings() {
  ConCheckBoxes boxes = Boxes();
  minutor::SaveSettings(boxes, services_.state, services_.dir, bus_, services_.prompter);
  ShowBoxes(boxes);
  emit intervalChanged(services_.state.CheckInterval * 1000);
}

void ConnectionCheckPanel::OnMethodClicked(int index) {
  if (loading_) {
    return;
  }
  SaveSettings();
  // Only the TAPI method watches something of its own that has to be opened
  // or closed; the others are asked at each poll.
  if (index == ConCheckBoxes::TAPI && line_ != nullptr) {
    if (Check1_[index]->isChecked()) {
      StartTapi(services_.state, *line_, services_.prompter);
    } else {
      line_->Close();
    }
  }
}

}  // namespace minutor
