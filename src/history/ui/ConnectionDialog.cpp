#include "history/ui/ConnectionDialog.h"

#include "desk/OverviewFiles.h"
#include "detection/RemoteAccess.h"
#include "frame/Clock.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "history/ManualCost.h"
#include "tariffs/TariffNames.h"

#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace minutor {

namespace {

const char* const kCaptions[] = {"Datum",           "Startzeit",    "Dauer",
                                 "Kosten",          "Einheiten",    "Empfangene Bytes",
                                 "Gesendete Bytes", "Bytes gesamt", "Kommentar"};

}  // namespace

ConnectionDialog::ConnectionDialog(const Services& services, RemoteAccess* remote, const QString& fileName,
                                   QWidget* parent)
    : QDialog(parent), services_(services), fileName_(fileName) {
  const bool change = !fileName.isEmpty();
  setObjectName(change ? QStringLiteral("ChangeConnection") : QStringLiteral("NewConnection"));
  setWindowTitle(change ? QStringLiteral("Verbindung ändern") : QStringLiteral("Neue Verbindung"));
  auto* layout = new QVBoxLayout(this);
  if (!change) {
    auto* intro = new QLabel(
        QStringLiteral(
            "Hier können Sie eine getätigte Verbindung manuell nachtragen. Geben Sie zuerst Datum, "
            "Startzeit und Dauer ein, dann geben Sie den Tarif an. Minutor wird dann versuchen "
            "automatisch die theoretisch angefallenen Kosten zu berechnen. Sollte dies nicht gelingen, "
            "korrigieren Sie bitte diese Angaben."),
        this);
    intro->setWordWrap(true);
    layout->addWidget(intro);
  }
  auto* form = new QFormLayout;
  for (size_t i = 0; i < fields_.size(); ++i) {
    fields_[i] = new QLineEdit(this);
    fields_[i]->setObjectName(QStringLiteral("Text1_%1").arg(i));
    fields_[i]->installEventFilter(this);
  }
  const auto combo = [this](const char* name, bool editable) {
    auto* box = new QComboBox(this);
    box->setObjectName(QString::fromUtf8(name));
    box->setEditable(editable);
    return box;
  };
  dialUp_ = combo("comDFÜ", true);
  provider_ = combo("comAnbieter", false);
  tariff_ = combo("comTarif", false);
  user_ = combo("comUser", false);
  for (int i = 0; i < 8; ++i) {
    form->addRow(QString::fromUtf8(kCaptions[i]), fields_[static_cast<size_t>(i)]);
  }
  form->addRow(QStringLiteral("DFÜ-Verbindung"), dialUp_);
  form->addRow(QStringLiteral("Anbieter"), provider_);
  form->addRow(QStringLiteral("Tarif"), tariff_);
  form->addRow(QStringLiteral("Benutzer"), user_);
  form->addRow(QString::fromUtf8(kCaptions[8]), fields_[8]);
  layout->addLayout(form);

  auto* buttons = new QHBoxLayout;
  auto* save = new QPushButton(QStringLiteral("&Speichern"), this);
  save->setObjectName(QStringLiteral("Command1_0"));
  auto* cancel = new QPushButton(QStringLiteral("A&bbrechen"), this);
  cancel->setObjectName(QStringLiteral("Command1_1"));
  buttons->addStretch();
  buttons->addWidget(save);
  buttons->addWidget(cancel);
  layout->addLayout(buttons);
  connect(save, &QPushButton::clicked, this, &ConnectionDialog::Save);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

  user_->addItems(GetUserNames(services_.dir));
  provider_->addItems(GetAnbieterListe(services_.dir));
  if (remote != nullptr) {
    dialUp_->addItems(remote->GetEntries());
  }
  connect(provider_, &QComboBox::currentIndexChanged, this, &ConnectionDialog::SetTarif);
  connect(tariff_, &QComboBox::activated, this, &ConnectionDialog::TariffClicked);
  SetTarif();

  if (change) {
    const auto record = ReadManualRecord(services_.dir, fileName);
    if (!record) {
      services_.prompter.Message(
          QStringLiteral("Die Verbindung \"%1\" kann nicht gelesen werden.").arg(fileName),
          Prompter::Icon::Warning);
      QTimer::singleShot(0, this, &QDialog::reject);
      return;
    }
    Load(*record);
  } else {
    fields_[0]->setText(NormaliseDate(services_.clock.Now().date()));
    for (int i = 4; i < 8; ++i) {
      fields_[static_cast<size_t>(i)]->setText(QStringLiteral("0"));
    }
  }
}

void ConnectionDialog::Load(const ManualRecord& record) {
  fields_[0]->setText(record.date);
  fields_[1]->setText(record.start);
  fields_[2]->setText(record.duration);
  fields_[3]->setText(record.cost);
  fields_[4]->setText(record.units);
  fields_[5]->setText(record.bytesIn);
  fields_[6]->setText(record.bytesOut);
  fields_[7]->setText(record.bytesTotal);
  fields_[8]->setText(record.comment);
  dialUp_->setCurrentText(record.dfue);
  provider_->setCurrentIndex(provider_->findText(record.provider));
  tariff_->setCurrentIndex(tariff_->findText(record.tariff));
  user_->setCurrentIndex(user_->findText(record.user));
}

void ConnectionDialog::SetTarif() {
  tariff_->clear();
  for (const TarifEintrag& entry : GetTarifListe(services_.dir, provider_->currentText())) {
    tariff_->addItem(entry.Label);
  }
  // A new connection takes the provider's first tariff and its estimate; a
  // record being loaded keeps the tariff it names.
  if (tariff_->count() > 0 && (fileName_.isEmpty() || isVisible())) {
    tariff_->setCurrentIndex(0);
    TariffClicked();
  }
}

void ConnectionDialog::TariffClicked() {
  tariffTouched_ = true;
  // The duration is read as a time of day here: 24 hours or more keep the
  // cost as it stands.
  if (const auto seconds = DurationAsTimeOfDay(fields_[2]->text())) {
    Recompute(*seconds);
  }
}

void ConnectionDialog::Recompute(qint64 seconds) {
  ManualRecord record;
  record.provider = provider_->currentText();
  record.tariff = tariff_->currentText();
  const auto estimate = ComputeManualCost(services_.dir, GetTarifDatei(record.provider, record.tariff),
                                          fields_[0]->text(), fields_[1]->text(), seconds);
  if (!estimate) {
    return;
  }
  fields_[3]->setText(FixedText(static_cast<double>(estimate->cost) / 100, 2));
  if (estimate->units) {
    fields_[4]->setText(QString::number(*estimate->units));
  }
}

bool ConnectionDialog::eventFilter(QObject* watched, QEvent* event) {
  const auto found = std::find(fields_.begin(), fields_.end(), watched);
  if (found == fields_.end()) {
    return QDialog::eventFilter(watched, event);
  }
  const int index = static_cast<int>(found - fields_.begin());
  if (event->type() == QEvent::FocusIn && index < 3) {
    QTimer::singleShot(0, *found, &QLineEdit::selectAll);
  } else if (event->type() == QEvent::FocusOut && index < 8) {
    (*found)->setText(NormaliseEntryField(index, (*found)->text()));
    if (index < 3 && (fileName_.isEmpty() || tariffTouched_)) {
      Recompute(DurationToSeconds(fields_[2]->text()));
    }
  }
  return QDialog::eventFilter(watched, event);
}

ManualRecord ConnectionDialog::Fields() const {
  ManualRecord r;
  r.date = fields_[0]->text();
  r.start = fields_[1]->text();
  r.duration = fields_[2]->text();
  r.cost = fields_[3]->text();
  r.units = fields_[4]->text();
  r.bytesIn = fields_[5]->text();
  r.bytesOut = fields_[6]->text();
  r.bytesTotal = fields_[7]->text();
  r.comment = fields_[8]->text();
  r.dfue = dialUp_->currentText();
  r.provider = provider_->currentText();
  r.tariff = tariff_->currentText();
  r.user = user_->currentText();
  return r;
}

void ConnectionDialog::Save() {
  const ManualRecord record = Fields();
  if (const auto problem = CheckManualRecord(record)) {
    services_.prompter.Message(*problem, Prompter::Icon::Warning);
    return;
  }
  const ManualSaveResult saved = SaveManualRecord(services_.dir, record, fileName_);
  if (!saved.error.isEmpty()) {
    services_.prompter.Message(saved.error, Prompter::Icon::Critical);
    return;
  }
  savedFile_ = saved.fileName;
  accept();
}

}  // namespace minutor
