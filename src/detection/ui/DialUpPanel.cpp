#include "detection/ui/DialUpPanel.h"

#include "detection/DialUpFiles.h"
#include "detection/RemoteAccess.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/datadir/NumberText.h"
#include "tariffs/RateLookup.h"
#include "tariffs/TariffNames.h"

#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QRadioButton>
#include <QStandardPaths>
#include <QVBoxLayout>

namespace minutor {

namespace {

const QString kTitle = QStringLiteral("DFÜ Einstellungen");

QLabel* Link(const QString& text, const QString& name, QWidget* parent) {
  auto* label =
      new QLabel(QStringLiteral("<a href=\"#\">") + text.toHtmlEscaped() + QStringLiteral("</a>"), parent);
  label->setObjectName(name);
  label->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
  return label;
}

// Combos that must be able to show a provider or tariff that is no longer in
// their lists, as an old assignment names it.
QComboBox* TextCombo(const QString& name, QWidget* parent) {
  auto* combo = new QComboBox(parent);
  combo->setObjectName(name);
  combo->setEditable(true);
  combo->lineEdit()->setReadOnly(true);
  combo->setInsertPolicy(QComboBox::NoInsert);
  return combo;
}

QLineEdit* Field(const QString& name, QWidget* parent) {
  auto* field = new QLineEdit(parent);
  field->setObjectName(name);
  return field;
}

}  // namespace

DialUpPanel::DialUpPanel(Services& services, RemoteAccess* remote, QWidget* parent)
    : QWidget(parent), services_(services), remote_(remote) {
  setObjectName(QStringLiteral("DialUp"));
  setWindowTitle(kTitle);
  BuildControls();
  GetTarife();
  SetTarif();
  ListEntries();
  const bool fromSystem = LoadDialDataFromSystem(services_.dir);
  (fromSystem ? Option1_ : Option2_)->setChecked(true);
  OnOption(fromSystem, false);
}

void DialUpPanel::BuildControls() {
  auto* intro = new QLabel(
      QStringLiteral(
          "Hier werden Einstellungen zum Windows DFÜ Netzwerk festgelegt. Jedem Eintrag sollte ein "
          "entsprechender Tarif zugeordnet sein, so daß Minutor automatisch den richtigen Tarif wählt, "
          "wenn es eine DFÜ Verbindung erkennt."),
      this);
  intro->setWordWrap(true);

  comDFUe_ = new QComboBox(this);
  comDFUe_->setObjectName(QStringLiteral("comDFÜ"));
  connect(comDFUe_, &QComboBox::activated, this, [this] { OnEntryClicked(); });
  auto* entryRow = new QFormLayout;
  entryRow->addRow(QStringLiteral("Eintrag:"), comDFUe_);

  auto* links = new QHBoxLayout;
  const QStringList linkTexts = {QStringLiteral(">>> Neuen Eintrag erstellen"),
                                 QStringLiteral(">>> Eintrag modifizieren")};
  for (int i = 0; i < linkTexts.size(); ++i) {
    auto* link = Link(linkTexts[i], QStringLiteral("lblLink(%1)").arg(i), this);
    connect(link, &QLabel::linkActivated, this, [this, i] { OnLink(i); });
    links->addWidget(link);
  }
  links->addStretch();

  lblNoFiles_ = new QLabel(
      QStringLiteral("Der Name dieses Eintrags taugt nicht als Dateiname: für ihn wird nichts gespeichert."),
      this);
  lblNoFiles_->setObjectName(QStringLiteral("lblNoFiles"));
  lblNoFiles_->setWordWrap(true);
  lblNoFiles_->hide();

  Option1_ = new QRadioButton(QStringLiteral("Einwahldaten vom DFÜ Netzwerk beziehen"), this);
  Option1_->setChecked(true);
  Option1_->setObjectName(QStringLiteral("Option1"));
  Option2_ = new QRadioButton(QStringLiteral("Einwahldaten selbst verwalten"), this);
  Option2_->setObjectName(QStringLiteral("Option2"));
  connect(Option1_, &QRadioButton::clicked, this, [this] { OnOption(true, true); });
  connect(Option2_, &QRadioButton::clicked, this, [this] { OnOption(false, true); });

  txtEinwahlnummer_ = Field(QStringLiteral("txtEinwahlnummer"), this);
  txtBenutzername_ = Field(QStringLiteral("txtBenutzername"), this);
  txtPasswort_ = Field(QStringLiteral("txtPasswort"), this);
  txtPasswort_->setEchoMode(QLineEdit::Password);
  for (QLineEdit* field : {txtEinwahlnummer_, txtBenutzername_, txtPasswort_}) {
    connect(field, &QLineEdit::textEdited, this, [this] { SaveEntry(); });
  }
  auto* fields = new QFormLayout;
  fields->addRow(QStringLiteral("Einwahlnummer:"), txtEinwahlnummer_);
  fields->addRow(QStringLiteral("Benutzername:"), txtBenutzername_);
  fields->addRow(QStringLiteral("Passwort:"), txtPasswort_);
  auto* hints = Link(QStringLiteral(">>> Hinweise"), QStringLiteral("lblHilfe"), this);
  connect(hints, &QLabel::linkActivated, this, [this] {
    services_.prompter.Message(
        QStringLiteral(
            "Es wird empfohlen die Einwahldaten vom DFÜ Netzwerk zu beziehen. Wollen Sie jedoch das "
            "Passwort speichern, obwohl Windows dies nicht zuläßt, dann können Sie die Einwahldaten "
            "manuell eingeben. Diese Daten werden verschlüsselt gespeichert. Kelbra Data übernimmt "
            "jedoch keine Verantwortung für eventuelle Schäden durch Passwortdiebstahl, die Speicherung "
            "der Daten erfolgt also auf eigene Gefahr."),
        Prompter::Icon::Information, kTitle);
  });

  auto* group = new QGroupBox(QStringLiteral("Tarifzuordnung:"), this);
  comAnbieter_ = TextCombo(QStringLiteral("comAnbieter"), group);
  comTarif_ = TextCombo(QStringLiteral("comTarif"), group);
  // A provider alone selects its first tariff, and that selection counts as
  // a click on it: what the boxes show is what is stored.
  connect(comAnbieter_, &QComboBox::activated, this, [this] {
    SetTarif();
    OnTarifClicked();
  });
  connect(comTarif_, &QComboBox::activated, this, [this] { OnTarifClicked(); });
  lblKosten_ = new QLabel(group);
  lblKosten_->setObjectName(QStringLiteral("lblKosten"));
  auto* tariffs = new QFormLayout(group);
  tariffs->addRow(QStringLiteral("Anbieter:"), comAnbieter_);
  tariffs->addRow(QStringLiteral("Tarif:"), comTarif_);
  tariffs->addRow(QStringLiteral("Aktuelle Kosten:"), lblKosten_);

  // Tight spacing: at 120 dpi the panel fills the frame.
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->setSpacing(4);
  layout->addWidget(intro);
  layout->addLayout(entryRow);
  layout->addLayout(links);
  layout->addWidget(lblNoFiles_);
  layout->addWidget(Option1_);
  auto* ownData = new QHBoxLayout;
  ownData->addWidget(Option2_, 1);
  ownData->addWidget(hints);
  layout->addLayout(ownData);
  layout->addLayout(fields);
  layout->addWidget(group);
  layout->addStretch();
}

QString DialUpPanel::Entry() const { return comDFUe_->currentText(); }

void DialUpPanel::GetTarife() {
  comAnbieter_->clear();
  comAnbieter_->addItem(KeineZuordnung());
  comAnbieter_->addItems(GetAnbieterListe(services_.dir));
  comAnbieter_->setCurrentIndex(0);
}

void DialUpPanel::SetTarif() {
  const QString anbieter = comAnbieter_->currentText();
  comTarif_->clear();
  if (anbieter == KeineZuordnung()) {
    comTarif_->addItem(KeineZuordnung());
  } else {
    for (const TarifEintrag& tarif : GetTarifListe(services_.dir, anbieter)) {
      comTarif_->addItem(tarif.Label);
    }
  }
  comTarif_->setCurrentIndex(0);
}

void DialUpPanel::ListEntries() {
  const QString selected = Entry();
  comDFUe_->clear();
  if (remote_ != nullptr) {
    comDFUe_->addItems(GetDFUe(*remote_));
  }
  comDFUe_->setCurrentIndex(
      std::max(0, comDFUe_->findText(selected, Qt::MatchFixedString | Qt::MatchCaseSensitive)));
  OnEntryClicked();
}

void DialUpPanel::OnEntryClicked() {
  const QString entry = Entry();
  const bool usable = IsUsableEntryName(entry);
  lblNoFiles_->setVisible(!entry.isEmpty() && !usable);
  if (Option1_->isChecked()) {
    ShowSystemData();
  }
  LoadEntry();
  LoadEntryTarif();
}

void DialUpPanel::ShowSystemData() {
  const QString entry = Entry();
  if (entry.isEmpty()) {
    return;
  }
  const std::optional<RasDialParams> params =
      remote_ != nullptr ? remote_->GetDialParams(entry) : std::optional<RasDialParams>();
  txtEinwahlnummer_->setText(params ? params->Telefon : QString());
  txtBenutzername_->setText(params ? params->Benutzer : QString());
  txtPasswort_->setText(params ? params->Passwort : QString());
}

void DialUpPanel::LoadEntry() {
  const QString entry = Entry();
  if (!Option2_->isChecked() || entry.isEmpty()) {
    return;
  }
  const std::optional<EntryDialData> data = minutor::LoadEntry(services_.dir, entry);
  Laden = true;
  txtEinwahlnummer_->setText(data ? data->Einwahlnummer : QString());
  txtBenutzername_->setText(data ? data->Benutzername : QString());
  txtPasswort_->setText(data ? data->Passwort : QString());
  Laden = false;
}

void DialUpPanel::SaveEntry() {
  if (Laden || !Option2_->isChecked()) {
    return;
  }
  minutor::SaveEntry(services_.dir, Entry(),
                     {txtEinwahlnummer_->text(), txtBenutzername_->text(), txtPasswort_->text()});
}

void DialUpPanel::LoadEntryTarif() {
  Laden = true;
  comAnbieter_->setCurrentIndex(0);
  SetTarif();
  if (const auto lines = minutor::LoadEntryTarif(services_.dir, Entry())) {
    // A provider or tariff that has gone shows as it was written; the lists
    // stay as they are.
    const int provider =
        comAnbieter_->findText(lines->anbieter, Qt::MatchFixedString | Qt::MatchCaseSensitive);
    if (provider >= 0) {
      comAnbieter_->setCurrentIndex(provider);
      SetTarif();
    } else {
      comAnbieter_->setEditText(lines->anbieter);
    }
    const int tarif = comTarif_->findText(lines->tarif, Qt::MatchFixedString | Qt::MatchCaseSensitive);
    if (tarif >= 0) {
      comTarif_->setCurrentIndex(tarif);
    } else {
      comTarif_->setEditText(lines->tarif);
    }
  }
  ShowPrice();
  Laden = false;
}

void DialUpPanel::OnTarifClicked() {
  ShowPrice();
  SaveEntryTarif();
}

void DialUpPanel::ShowPrice() {
  const QString label = comTarif_->currentText();
  if (!label.startsWith(QLatin1Char('A')) && !label.startsWith(QLatin1Char('M'))) {
    lblKosten_->clear();
    return;
  }
  const QString file = GetTarifDatei(comAnbieter_->currentText(), label);
  const double price =
      GetTarifPreis(services_.dir, file, services_.clock.Now(), services_.state.FeiertagAktiv) / 100.0;
  lblKosten_->setText(FixedText(price, 3) + QLatin1Char(' ') + services_.state.Waehrung);
}

void DialUpPanel::SaveEntryTarif() {
  if (Laden || Entry().isEmpty()) {
    return;
  }
  minutor::SaveEntryTarif(services_.dir, Entry(), {comAnbieter_->currentText(), comTarif_->currentText()});
}

void DialUpPanel::OnOption(bool fromSystem, bool save) {
  for (QLineEdit* field : {txtEinwahlnummer_, txtBenutzername_, txtPasswort_}) {
    field->setEnabled(!fromSystem);
  }
  if (fromSystem) {
    ShowSystemData();
  } else {
    LoadEntry();
  }
  if (save) {
    SaveDialDataFromSystem(services_.dir, fromSystem);
  }
}

void DialUpPanel::OnLink(int index) {
  const QString entry = Entry();
  const RemoteAccess::EditorRef ref =
      remote_ != nullptr && !entry.isEmpty() ? remote_->EntryEditorId(entry) : RemoteAccess::EditorRef();
  if (index == 0) {
    StartEditor(NewEntryEditorArguments(ref.type));
    return;
  }
  if (entry.isEmpty()) {
    services_.prompter.Message(QStringLiteral("Es ist kein Eintrag ausgewählt."), Prompter::Icon::Information,
                               kTitle);
  } else if (ref.uuid.isEmpty()) {
    services_.prompter.Message(
        QStringLiteral("Den Eintrag '") + entry +
            QStringLiteral("' kann Minutor nicht zum Bearbeiten öffnen. Bitte ändern Sie "
                           "ihn in den Netzwerkeinstellungen Ihres Systems."),
        Prompter::Icon::Information, kTitle);
  } else {
    StartEditor(EditEntryEditorArguments(ref.uuid));
  }
}

void DialUpPanel::StartEditor(const QStringList& arguments) {
  const QString program = QStandardPaths::findExecutable(ConnectionEditorProgram());
  if (program.isEmpty()) {
    services_.prompter.Message(
        QStringLiteral("Der Verbindungseditor (nm-connection-editor) ist nicht installiert. Bitte legen Sie "
                       "DFÜ Einträge in den Netzwerkeinstellungen Ihres Systems an und ändern Sie sie dort."),
        Prompter::Icon::Warning, kTitle);
    return;
  }
  if (!QProcess::startDetached(program, arguments)) {
    services_.prompter.Message(QStringLiteral("Der Verbindungseditor konnte nicht gestartet werden."),
                               Prompter::Icon::Warning, kTitle);
    return;
  }
  editorStarted_ = true;
  editorHadFocus_ = false;
}

void DialUpPanel::changeEvent(QEvent* event) {
  // The editor runs on its own, so its end isn't seen; coming back to this
  // window after it took the focus is when the user is done with it.
  if (event->type() == QEvent::ActivationChange && editorStarted_) {
    if (!isActiveWindow()) {
      editorHadFocus_ = true;
    } else if (editorHadFocus_) {
      editorStarted_ = false;
      ListEntries();
    }
  }
  QWidget::changeEvent(event);
}

}  // namespace minutor
