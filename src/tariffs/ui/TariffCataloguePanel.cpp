#include "tariffs/ui/TariffCataloguePanel.h"

#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "online/UpdateCheck.h"
#include "online/UpdateFiles.h"
#include "online/ui/AutoupdateDialog.h"
#include "tariffs/Catalogue.h"
#include "tariffs/TariffLines.h"
#include "tariffs/TariffNames.h"
#include "tariffs/ui/TarifEditor.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace minutor {

namespace {

constexpr int kKindRole = Qt::UserRole;
constexpr int kProviderRole = Qt::UserRole + 1;  // the provider of a tariff row, "" in a provider's

int KindOf(const QTreeWidgetItem* item) { return item == nullptr ? 0 : item->data(0, kKindRole).toInt(); }

QIcon KindIcon(int kind) {
  const QStyle::StandardPixmap pixmaps[] = {QStyle::SP_DirOpenIcon, QStyle::SP_DirClosedIcon,
                                            QStyle::SP_FileIcon, QStyle::SP_DriveNetIcon};
  return QApplication::style()->standardIcon(pixmaps[kind - TariffCataloguePanel::ProviderOpen]);
}

void SetKind(QTreeWidgetItem* item, int kind) {
  item->setData(0, kKindRole, kind);
  item->setIcon(0, KindIcon(kind));
}

}  // namespace

TariffCataloguePanel::TariffCataloguePanel(Services& services, Fetcher& fetcher, QWidget* parent)
    : QWidget(parent), services_(services), fetcher_(fetcher) {
  setObjectName(QStringLiteral("Tarife"));
  setWindowTitle(QStringLiteral("Tarifliste"));
  BuildControls();
  LoadAutoupdate();
  GetTarife();
}

void TariffCataloguePanel::BuildControls() {
  lstTarife_ = new QTreeWidget;
  lstTarife_->setObjectName(QStringLiteral("lstTarife"));
  lstTarife_->setHeaderHidden(true);
  lstTarife_->setColumnCount(1);
  lstTarife_->setExpandsOnDoubleClick(false);
  lstTarife_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(lstTarife_, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) { Expand(item); });
  connect(lstTarife_, &QTreeWidget::itemExpanded, this,
          [](QTreeWidgetItem* item) { SetKind(item, ProviderOpen); });
  connect(lstTarife_, &QTreeWidget::itemCollapsed, this,
          [](QTreeWidgetItem* item) { SetKind(item, ProviderClosed); });
  connect(lstTarife_, &QTreeWidget::currentItemChanged, this,
          [this](QTreeWidgetItem* item) { ShowTarif(item); });
  connect(lstTarife_, &QTreeWidget::customContextMenuRequested, this, &TariffCataloguePanel::ShowContextMenu);

  // The legend stands in two lines: the panel has little room beside the side bar.
  auto* legend = new QGridLayout;
  for (const auto& [kind, text] : {std::pair{int{Manual}, QStringLiteral("Manuell hinzugefügt")},
                                   std::pair{int{Fetched}, QStringLiteral("Automatisch hinzugefügt")}}) {
    auto* icon = new QLabel;
    icon->setPixmap(KindIcon(kind).pixmap(16, 16));
    const int row = legend->rowCount();
    legend->addWidget(icon, row, 0);
    auto* caption = new QLabel(text);
    caption->setWordWrap(true);
    legend->addWidget(caption, row, 1);
  }
  legend->setColumnStretch(1, 1);

  const QStringList captions{QStringLiteral("Tarif erstellen"), QStringLiteral("Tarif ändern"),
                             QStringLiteral("Tarif löschen")};
  const QList<void (TariffCataloguePanel::*)()> actions{&TariffCataloguePanel::NewTarif,
                                                        &TariffCataloguePanel::ChangeTarif,
                                                        &TariffCataloguePanel::DeleteTarif};
  auto* buttons = new QGridLayout;
  for (int i = 0; i < captions.size(); ++i) {
    auto* button = new QPushButton(captions[i]);
    button->setObjectName(QStringLiteral("Command1_%1").arg(i));
    connect(button, &QPushButton::clicked, this, actions[i]);
    buttons->addWidget(button, i, 0);
  }

  // The buttons stand under the list, so that the details have the whole
  // height of the window beside it.
  auto* left = new QVBoxLayout;
  left->addWidget(lstTarife_, 1);
  left->addLayout(legend);
  left->addLayout(buttons);
  auto* right = new QVBoxLayout;
  right->addWidget(BuildDetails());
  right->addWidget(BuildAutoupdate());
  right->addStretch();
  auto* top = new QGridLayout(this);
  top->setContentsMargins(4, 4, 4, 4);
  top->setSpacing(4);
  top->addLayout(left, 0, 0);
  top->addLayout(right, 0, 1);
  top->setColumnStretch(0, 1);
  top->setColumnStretch(1, 1);
}

QWidget* TariffCataloguePanel::BuildDetails() {
  auto* box = new QGroupBox(QStringLiteral("Details"));
  auto* grid = new QGridLayout(box);
  for (int i = 0; i <= 12; ++i) {
    auto* label = new QLabel;
    label->setObjectName(QStringLiteral("lblTarif_%1").arg(i));
    label->setWordWrap(true);
    lblTarif_.append(label);
  }
  lblTarif_[5]->setText(QStringLiteral("Tarif auswählen"));
  lblTarif_[6]->setText(QStringLiteral("um Details anzuzeigen"));
  QFont bold = lblTarif_[5]->font();
  bold.setBold(true);
  lblTarif_[5]->setFont(bold);
  grid->addWidget(lblTarif_[5], 0, 0, 1, 2);
  grid->addWidget(lblTarif_[6], 1, 0, 1, 2);
  const QList<std::pair<int, QString>> rows{
      {0, QStringLiteral("Kosten/Min (jetzt):")}, {1, QStringLiteral("Taktung:")},
      {12, QStringLiteral("Freiminuten:")},       {2, QStringLiteral("Anmeldung:")},
      {3, QStringLiteral("Verfügbarkeit:")},      {7, QStringLiteral("Grundgebühr:")},
      {8, QStringLiteral("Mindestumsatz:")},      {9, QStringLiteral("Gesprächsgebühr:")},
      {10, QStringLiteral("Kanalbündelung:")},    {11, QStringLiteral("Flatrate:")}};
  int row = 2;
  for (const auto& [index, caption] : rows) {
    auto* label = new QLabel(caption);
    label->setObjectName(QStringLiteral("Label1_%1").arg(index));
    if (index == 0 || index == 12) {
      captions_.append(label);
    }
    grid->addWidget(label, row, 0);
    grid->addWidget(lblTarif_[index], row, 1);
    ++row;
  }
  grid->addWidget(lblTarif_[4], row, 0, 1, 2);
  grid->setColumnStretch(1, 1);
  grid->setContentsMargins(6, 4, 6, 4);
  grid->setVerticalSpacing(1);
  return box;
}

QWidget* TariffCataloguePanel::BuildAutoupdate() {
  auto* box = new QGroupBox(QStringLiteral("Automatisches Update"));
  check3_ = new QCheckBox(QStringLiteral("Automatisch alle"));
  check3_->setObjectName(QStringLiteral("Check3"));
  comAutoupdate_ = new QComboBox;
  comAutoupdate_->setObjectName(QStringLiteral("comAutoupdate"));
  comAutoupdate_->addItems({QStringLiteral("7 Tage"), QStringLiteral("14 Tage")});
  lblLink_ = new QLabel(QStringLiteral("<a href=\"check\">&gt;&gt;&gt; jetzt prüfen</a>"));
  lblLink_->setObjectName(QStringLiteral("lblLink"));
  auto* line = new QHBoxLayout;
  line->addWidget(check3_);
  line->addWidget(comAutoupdate_);
  line->addStretch();
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(6, 4, 6, 4);
  layout->setSpacing(2);
  layout->addLayout(line);
  layout->addWidget(new QLabel(QStringLiteral("auf Tarifupdates prüfen.")));
  layout->addWidget(lblLink_);
  connect(check3_, &QCheckBox::toggled, this, [this](bool on) {
    comAutoupdate_->setEnabled(on);
    SaveAutoupdate();
  });
  connect(comAutoupdate_, &QComboBox::currentIndexChanged, this, &TariffCataloguePanel::SaveAutoupdate);
  connect(lblLink_, &QLabel::linkActivated, this, &TariffCataloguePanel::CheckForUpdatesNow);
  return box;
}

void TariffCataloguePanel::LoadAutoupdate() {
  loading_ = true;
  const AutoupdateSettings settings = ReadAutoupdateSettings(services_.dir);
  check3_->setChecked(settings.on);
  comAutoupdate_->setEnabled(settings.on);
  comAutoupdate_->setCurrentIndex(settings.days == 14 ? 1 : settings.days == 7 ? 0 : -1);
  loading_ = false;
}

void TariffCataloguePanel::SaveAutoupdate() {
  if (!loading_) {
    WriteAutoupdateSettings(services_.dir, check3_->isChecked(), comAutoupdate_->currentIndex());
  }
}

void TariffCataloguePanel::GetTarife() {
  lstTarife_->setUpdatesEnabled(false);
  lstTarife_->clear();
  int count = 0;
  for (const KatalogAnbieter& anbieter : GetKatalog(services_.dir)) {
    auto* provider = new QTreeWidgetItem(lstTarife_, {anbieter.name});
    SetKind(provider, ProviderClosed);
    provider->setData(0, kProviderRole, QString());
    provider->setBackground(0, QColor(0xE0, 0xE0, 0xE0));
    for (const QString& file : anbieter.tel + anbieter.atl) {
      auto* tariff = new QTreeWidgetItem(provider, {file.mid(anbieter.name.size() + 3).chopped(4)});
      SetKind(tariff, GetHerkunft(file) == TarifHerkunft::Automatisch ? Fetched : Manual);
      tariff->setData(0, kProviderRole, anbieter.name);
      ++count;
    }
  }
  lstTarife_->setUpdatesEnabled(true);
  lblTarif_[4]->setText(QString::number(count) + QStringLiteral(" Tarife insgesamt."));
}

void TariffCataloguePanel::Expand(QTreeWidgetItem* item) {
  if (KindOf(item) == ProviderClosed || KindOf(item) == ProviderOpen) {
    SetOpen(item, KindOf(item) == ProviderClosed);
  }
}

void TariffCataloguePanel::SetOpen(QTreeWidgetItem* provider, bool open) {
  provider->setExpanded(open);
  SetKind(provider, open ? ProviderOpen : ProviderClosed);
}

void TariffCataloguePanel::ShowContextMenu(const QPoint& at) {
  QMenu menu(this);
  QAction* open = menu.addAction(QStringLiteral("Alle Zweige öffnen"));
  menu.addAction(QStringLiteral("Alle Zweige schließen"));
  const QAction* chosen = menu.exec(lstTarife_->viewport()->mapToGlobal(at));
  if (chosen != nullptr) {
    for (int i = 0; i < lstTarife_->topLevelItemCount(); ++i) {
      SetOpen(lstTarife_->topLevelItem(i), chosen == open);
    }
  }
}

QString TariffCataloguePanel::FileOf(const QTreeWidgetItem* item) const {
  const QString provider = item->data(0, kProviderRole).toString();
  return provider + QStringLiteral(" - ") + item->text(0) +
         (KindOf(item) == Fetched ? QStringLiteral(".atl") : QStringLiteral(".tel"));
}

void TariffCataloguePanel::ShowTarif(QTreeWidgetItem* item) {
  if (item == nullptr || item->data(0, kProviderRole).toString().isEmpty() || KindOf(item) < Manual) {
    return;
  }
  const QString file = FileOf(item);
  const auto details = GetKatalogDetails(services_.dir, file, services_.clock.Now(),
                                         services_.state.FeiertagAktiv, services_.state.Waehrung);
  if (!details) {
    services_.prompter.Message(QStringLiteral("Der Tarif \"%1\" ist nicht mehr vorhanden.").arg(file),
                               Prompter::Icon::Warning);
    return;
  }
  lblTarif_[5]->setText(details->tarif);
  lblTarif_[6]->setText(details->anbieter);
  captions_[0]->setText(details->preisCaption);
  captions_[1]->setText(details->freiCaption);
  const QList<std::pair<int, QString>> values{
      {0, details->preis},         {1, details->taktung},           {12, details->frei},
      {2, details->anmeldung},     {3, details->verfuegbarkeit},    {7, details->grundgebuehr},
      {8, details->mindestumsatz}, {9, details->gespraechsgebuehr}, {10, details->kanalbuendelung},
      {11, details->flatrate}};
  for (const auto& [index, text] : values) {
    lblTarif_[index]->setText(text);
  }
}

void TariffCataloguePanel::NewTarif() {
  auto* editor = new TarifEditor(services_, TarifEditor::Mode::NewTarif, this);
  editor->setAttribute(Qt::WA_DeleteOnClose);
  connect(editor, &TarifEditor::saved, this, &TariffCataloguePanel::GetTarife);
  editor->open();
}

void TariffCataloguePanel::ChangeTarif() {
  QTreeWidgetItem* item = lstTarife_->currentItem();
  if (item == nullptr || KindOf(item) < Manual) {
    return;
  }
  const QString provider = item->data(0, kProviderRole).toString();
  const QString tel = provider + QStringLiteral(" - ") + item->text(0) + QStringLiteral(".tel");
  bool vorlage = false;
  if (KindOf(item) == Fetched) {
    const auto answer = services_.prompter.Ask(
        QStringLiteral(
            "Automatisch erstellte Tarife können nicht geändert werden, da Sie beim Update automatisch "
            "überschrieben werden. Sie können diesen Tarif jedoch als Vorlage verwenden, wollen Sie das "
            "tun?"),
        QString(), false);
    if (answer != Prompter::Answer::Yes) {
      return;
    }
    const QString target = services_.dir.Resolve(TarifPfad(tel));
    QFile::remove(target);
    if (!QFile::copy(services_.dir.Resolve(TarifPfad(FileOf(item))), target)) {
      services_.prompter.Message(QStringLiteral("Die Vorlage konnte nicht kopiert werden."),
                                 Prompter::Icon::Critical);
      return;
    }
    vorlage = true;
  }
  auto* editor = new TarifEditor(services_, TarifEditor::Mode::ChangeTarif, this);
  editor->setAttribute(Qt::WA_DeleteOnClose);
  editor->SetDatei(tel, vorlage);
  connect(editor, &TarifEditor::saved, this, &TariffCataloguePanel::GetTarife);
  if (editor->LoadTarif()) {
    editor->open();
  }
}

void TariffCataloguePanel::DeleteTarif() {
  QTreeWidgetItem* item = lstTarife_->currentItem();
  if (item == nullptr) {
    services_.prompter.Message(QStringLiteral("Es ist kein Tarif zum löschen ausgewählt."),
                               Prompter::Icon::Information);
    return;
  }
  const auto answer = services_.prompter.Ask(
      QStringLiteral(
          "Wollen Sie den ausgewählten Tarif wirklich löschen. Automatisch hinzugefügte Tarife werden "
          "beim nächtsten Tarifupdate eventuell erneut hinzugefügt."),
      QString(), false);
  if (answer != Prompter::Answer::Yes || KindOf(item) < Manual) {
    return;
  }
  services_.dir.Remove(TarifPfad(FileOf(item)));
  delete item;
}

void TariffCataloguePanel::CheckForUpdatesNow() {
  if (checking_) {
    return;
  }
  checking_ = true;
  auto* check = new UpdateCheck(services_.dir, services_.prompter, fetcher_, this);
  connect(check, &UpdateCheck::finished, this, [this, check] {
    check->deleteLater();
    checking_ = false;
    if (check->NewerRevision()) {
      emit newerRevisionFound();
    }
    if (check->Entries().isEmpty()) {
      services_.prompter.Message(QStringLiteral("Keine neuen Tarife gefunden."), Prompter::Icon::Information);
      return;
    }
    auto* dialog = new AutoupdateDialog(services_, fetcher_, check->Entries(), check->LetzteSerie(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &AutoupdateDialog::downloaded, this, [this] {
      GetTarife();
      emit tariffsDownloaded();
    });
    dialog->open();
  });
  check->Start();
}

}  // namespace minutor
