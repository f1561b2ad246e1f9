#include "tariffs/ui/TarifEditor.h"

#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/NumberText.h"
#include "tariffs/EditorRules.h"
#include "tariffs/TariffFile.h"
#include "tariffs/TariffLines.h"
#include "tariffs/TariffNames.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace minutor {

namespace {

QString Indexed(const char* name, int index) {
  return QString::fromLatin1(name) + QLatin1Char('_') + QString::number(index);
}

}  // namespace

TarifEditor::TarifEditor(Services& services, Mode mode, QWidget* parent)
    : QDialog(parent), services_(services), mode_(mode) {
  setObjectName(mode == Mode::NewTarif ? QStringLiteral("NewTarif") : QStringLiteral("ChangeTarif"));
  setWindowTitle(QStringLiteral("Tarifdaten"));
  setModal(true);
  BuildControls();
  FillAnbieter();
  OnVolumenToggled(false);
}

void TarifEditor::BuildControls() {
  auto* heading =
      new QLabel(mode_ == Mode::NewTarif ? QStringLiteral("Neuer Tarif") : QStringLiteral("Tarif ändern"));
  QFont bold = heading->font();
  bold.setBold(true);
  heading->setFont(bold);
  auto* note =
      new QLabel(QStringLiteral("Von Hand erstellte Tarife werden getrennt verwaltet und beim Tarifupdate "
                                "nicht überschrieben, auch wenn "
                                "ein neuer Tarif den gleichen Namen trägt."));
  note->setWordWrap(true);

  comAnbieter_ = new QComboBox;
  comAnbieter_->setObjectName(QStringLiteral("comAnbieter"));
  comAnbieter_->setEditable(true);
  for (int i = 0; i <= 9; ++i) {
    if (i == 3) {
      text1_.append(nullptr);
      continue;
    }
    auto* edit = new QLineEdit;
    edit->setObjectName(Indexed("Text1", i));
    text1_.append(edit);
  }
  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("Anbieter"), comAnbieter_);
  form->addRow(QStringLiteral("Tarif"), text1_[0]);
  form->addRow(QStringLiteral("Grundgebühr"), text1_[1]);
  form->addRow(QStringLiteral("Mindestumsatz"), text1_[2]);
  freiCaption_ = new QLabel;
  freiCaption_->setObjectName(QStringLiteral("Label2_4"));
  form->addRow(freiCaption_, text1_[4]);
  taktCaption_ = new QLabel;
  taktCaption_->setObjectName(QStringLiteral("Label2_5"));
  form->addRow(taktCaption_, text1_[5]);
  form->addRow(QStringLiteral("Verbindungsgrundgebühr"), text1_[6]);

  const QStringList checks{QStringLiteral("Anmeldung nötig"),
                           QStringLiteral("Bundesweit verfügbar"),
                           QStringLiteral("Kanalbündelung möglich"),
                           QStringLiteral("Flatrate"),
                           QStringLiteral("Abrechnung nach übertragenen Daten (Volumen)"),
                           QString(),
                           QStringLiteral("Wochenende")};
  auto* boxes = new QVBoxLayout;
  for (int i = 0; i < checks.size(); ++i) {
    if (checks[i].isEmpty()) {
      check1_.append(nullptr);
      continue;
    }
    auto* box = new QCheckBox(checks[i]);
    box->setObjectName(Indexed("Check1", i));
    check1_.append(box);
    if (i < 5) {
      boxes->addWidget(box);
    }
  }

  picture1_ = new QWidget;
  picture1_->setObjectName(QStringLiteral("Picture1"));
  volumenkosten_ = new QLineEdit;
  volumenkosten_->setObjectName(QStringLiteral("Text2_0"));
  volumeneinheit_ = new QLineEdit;
  volumeneinheit_->setObjectName(QStringLiteral("Text2_1"));
  auto* volume = new QHBoxLayout(picture1_);
  volume->setContentsMargins(0, 0, 0, 0);
  volume->addWidget(new QLabel(QStringLiteral("Kosten")));
  volume->addWidget(volumenkosten_);
  volume->addWidget(new QLabel(QStringLiteral(" pro")));
  volume->addWidget(volumeneinheit_);
  volume->addWidget(new QLabel(QStringLiteral("Megabyte")));

  auto* zone = new QHBoxLayout;
  zone->addWidget(new QLabel(QStringLiteral("Von")));
  zone->addWidget(text1_[7]);
  zone->addWidget(new QLabel(QStringLiteral("bis")));
  zone->addWidget(text1_[8]);
  zone->addWidget(new QLabel(QStringLiteral("Uhr, Kosten:")));
  zone->addWidget(text1_[9]);
  zone->addWidget(new QLabel(services_.state.Waehrung + QStringLiteral("/Minute")));
  zone->addWidget(check1_[6]);
  list1_ = new QListWidget;
  list1_->setObjectName(QStringLiteral("List1"));
  for (int i = 0; i < 2; ++i) {
    auto* button = new QPushButton(i == 0 ? QStringLiteral("Hinzufügen") : QStringLiteral("Löschen"));
    button->setObjectName(Indexed("Command2", i));
    command2_.append(button);
  }
  auto* zoneButtons = new QHBoxLayout;
  zoneButtons->addWidget(command2_[0]);
  zoneButtons->addWidget(command2_[1]);
  zoneButtons->addStretch();
  auto* hint =
      new QLabel(QStringLiteral("Gilt für den ganzen Tag der selbe Tarif, geben Sie von 0 Uhr bis 0 Uhr an. "
                                "Bei Volumenabrechnung ist nur "
                                "eine ganz- tägige Zone zulässig."));
  hint->setWordWrap(true);

  auto* save = new QPushButton(QStringLiteral("&Speichern"));
  save->setObjectName(QStringLiteral("Command1_0"));
  save->setDefault(true);
  auto* cancel = new QPushButton(QStringLiteral("&Abbrechen"));
  cancel->setObjectName(QStringLiteral("Command1_1"));
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(save);
  buttons->addWidget(cancel);

  auto* top = new QVBoxLayout(this);
  top->addWidget(heading);
  top->addWidget(note);
  top->addLayout(form);
  top->addLayout(boxes);
  top->addWidget(picture1_);
  top->addLayout(zone);
  top->addWidget(list1_);
  top->addLayout(zoneButtons);
  top->addWidget(hint);
  top->addLayout(buttons);

  for (int i : {1, 2, 6, 9}) {
    connect(text1_[i], &QLineEdit::editingFinished, this,
            [edit = text1_[i]] { edit->setText(BereinigeBetrag(edit->text())); });
  }
  for (QLineEdit* edit : {volumenkosten_, volumeneinheit_}) {
    connect(edit, &QLineEdit::editingFinished, this,
            [edit] { edit->setText(BereinigeBetrag(edit->text())); });
  }
  for (int i : {4, 7, 8}) {
    connect(text1_[i], &QLineEdit::editingFinished, this,
            [edit = text1_[i]] { edit->setText(BereinigeGanzzahl(edit->text())); });
  }
  connect(text1_[5], &QLineEdit::editingFinished, this,
          [edit = text1_[5]] { edit->setText(BereinigeTakt(edit->text())); });
  connect(check1_[4], &QCheckBox::toggled, this, &TarifEditor::OnVolumenToggled);
  connect(command2_[0], &QPushButton::clicked, this, &TarifEditor::OnAddZone);
  connect(command2_[1], &QPushButton::clicked, this, &TarifEditor::OnDeleteZone);
  connect(save, &QPushButton::clicked, this, &TarifEditor::OnSave);
  connect(cancel, &QPushButton::clicked, this, &TarifEditor::reject);
}

void TarifEditor::FillAnbieter() {
  comAnbieter_->addItems(GetAnbieterListe(services_.dir));
  comAnbieter_->setCurrentIndex(-1);
  comAnbieter_->setEditText(QString());
}

void TarifEditor::OnVolumenToggled(bool on) {
  for (QWidget* control : QList<QWidget*>{text1_[5], text1_[7], text1_[8], text1_[9], check1_[6], list1_,
                                          command2_[0], command2_[1]}) {
    control->setEnabled(!on);
  }
  picture1_->setVisible(on);
  freiCaption_->setText(on ? QStringLiteral("Freitransfer") : QStringLiteral("Freiminuten"));
  taktCaption_->setText(on ? QStringLiteral("Megabyte") : QStringLiteral("Takt (1.Min/Rest)"));
}

void TarifEditor::OnAddZone() {
  if (text1_[7]->text().isEmpty() || text1_[8]->text().isEmpty() || text1_[9]->text().isEmpty()) {
    services_.prompter.Message(
        QStringLiteral("Bitte füllen Sie die Felder 'Von', 'Bis' und 'Kosten' korrekt aus."),
        Prompter::Icon::Information);
    return;
  }
  if (check1_[4]->isChecked()) {
    return;
  }
  list1_->addItem(ZonenEintrag(static_cast<int>(LeadingNumber(text1_[7]->text())),
                               static_cast<int>(LeadingNumber(text1_[8]->text())), text1_[9]->text(),
                               check1_[6]->isChecked()));
}

void TarifEditor::OnDeleteZone() {
  QListWidgetItem* item = list1_->currentItem();
  if (item == nullptr || !item->isSelected()) {
    services_.prompter.Message(QStringLiteral("Kein Eintrag in der Liste zum Löschen ausgewählt."),
                               Prompter::Icon::Information);
    return;
  }
  delete item;
}

void TarifEditor::SetDatei(const QString& file, bool vorlage) {
  datei_ = file;
  vorlage_ = vorlage;
}

bool TarifEditor::LoadTarif() {
  const auto tarif = datei_.size() < 5 ? std::nullopt : ReadTarif(services_.dir, datei_);
  if (!tarif) {
    reject();
    return false;
  }
  carried_ = *tarif;
  comAnbieter_->setEditText(tarif->Anbieter);
  text1_[0]->setText(tarif->Tarifname);
  text1_[1]->setText(GeneralText(tarif->Grundgebuehr));
  text1_[2]->setText(GeneralText(tarif->Mindestumsatz));
  text1_[5]->setText(tarif->Takt);
  text1_[6]->setText(GeneralText(tarif->Gespraechsgrundgebuehr));
  check1_[0]->setChecked(tarif->Anmeldung == QLatin1String("nötig"));
  check1_[1]->setChecked(tarif->Region == QLatin1String("bundesweit"));
  check1_[2]->setChecked(tarif->Kanalbuendelung);
  check1_[3]->setChecked(tarif->Flatrate);
  check1_[4]->setChecked(tarif->Volumenabrechnung);
  text1_[4]->setText(GeneralText(tarif->Volumenabrechnung ? tarif->Volumengrenze : tarif->Freiminuten));
  volumenkosten_->setText(GeneralText(tarif->Volumenkosten / 100.0f));
  volumeneinheit_->setText(GeneralText(tarif->Volumeneinheit));
  for (const Tarifzone& zone : tarif->Zonen) {
    list1_->addItem(ZonenEintrag(zone.Von, zone.Bis, GeneralText(zone.Pfennig / 100.0f), zone.Wochenende));
  }
  return true;
}

void TarifEditor::OnSave() {
  const QString anbieter = comAnbieter_->currentText();
  const QString tarifname = text1_[0]->text();
  QStringList zonen;
  for (int i = 0; i < list1_->count(); ++i) {
    zonen.append(list1_->item(i)->text());
  }
  const bool volumen = check1_[4]->isChecked();
  if (QString refusal = TarifFehler(anbieter, tarifname, {}, volumen); !refusal.isEmpty()) {
    services_.prompter.Message(refusal, Prompter::Icon::Warning);
    return;
  }
  for (QLineEdit* edit : {text1_[1], text1_[2], text1_[4], text1_[6], volumenkosten_}) {
    if (edit->text().isEmpty()) {
      edit->setText(QStringLiteral("0"));
    }
  }
  if (text1_[5]->text().isEmpty()) {
    text1_[5]->setText(QStringLiteral("60/60"));
  }
  if (volumeneinheit_->text().isEmpty()) {
    volumeneinheit_->setText(QStringLiteral("1"));
  }
  if (QString refusal = TarifFehler(anbieter, tarifname, zonen, volumen); !refusal.isEmpty()) {
    services_.prompter.Message(refusal, Prompter::Icon::Warning);
    return;
  }

  Tarif tarif = carried_;
  if (mode_ == Mode::NewTarif) {
    tarif = Tarif{};
    tarif.Gueltigkeit = NormaliseDate(services_.clock.Now().date());
  }
  tarif.Anbieter = anbieter;
  tarif.Tarifname = tarifname;
  tarif.Herkunft = TarifHerkunft::Manuell;
  tarif.Grundgebuehr = ParseBetrag(text1_[1]->text());
  tarif.Mindestumsatz = ParseBetrag(text1_[2]->text());
  tarif.Freiminuten = volumen ? 0.0 : LeadingNumber(text1_[4]->text());
  tarif.Volumengrenze = volumen ? LeadingNumber(text1_[4]->text()) : 0.0;
  tarif.Takt = text1_[5]->text();
  tarif.Gespraechsgrundgebuehr = ParseBetrag(text1_[6]->text());
  tarif.Anmeldung = check1_[0]->isChecked() ? QStringLiteral("nötig") : QStringLiteral("nicht nötig");
  tarif.Region = check1_[1]->isChecked() ? QStringLiteral("bundesweit") : QStringLiteral("regional");
  tarif.Kanalbuendelung = check1_[2]->isChecked();
  tarif.Flatrate = check1_[3]->isChecked();
  tarif.Volumenabrechnung = volumen;
  tarif.Volumenkosten = PfennigAusBetrag(volumenkosten_->text());
  tarif.Volumeneinheit = ParseBetrag(volumeneinheit_->text());
  tarif.Zonen.clear();
  if (!volumen) {
    for (const QString& zone : zonen) {
      tarif.Zonen.append(ZoneAusEintrag(zone));
    }
  }
  // The new file is written before the old one goes, so that a failed write
  // loses nothing.
  if (!WriteTarif(services_.dir, tarif)) {
    services_.prompter.Message(QStringLiteral("Der Tarif konnte nicht gespeichert werden."),
                               Prompter::Icon::Critical);
    return;
  }
  const QString written = TelDateiname(anbieter, tarifname);
  if (mode_ == Mode::ChangeTarif && !datei_.isEmpty() &&
      services_.dir.Resolve(TarifPfad(datei_)) != services_.dir.Resolve(TarifPfad(written))) {
    services_.dir.Remove(TarifPfad(datei_));
  }
  emit saved();
  accept();
}

void TarifEditor::reject() {
  if (mode_ == Mode::ChangeTarif && vorlage_ && services_.dir.FileExists(TarifPfad(datei_))) {
    services_.dir.Remove(TarifPfad(datei_));
  }
  QDialog::reject();
}

}  // namespace minutor
