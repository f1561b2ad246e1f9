#include "history/ui/ListPanel.h"

#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/TaxFile.h"
#include "history/ListPeriod.h"
#include "history/ui/ConnectionDialog.h"
#include "history/ui/ConnectionListModel.h"
#include "history/ui/DifferenceDialog.h"
#include "history/ui/ExportDialog.h"
#include "history/ui/PeriodDialog.h"
#include "history/ui/PrintDialog.h"
#include "metering/ConnectionRecord.h"
#include "tariffs/TariffNames.h"

#include <QComboBox>
#include <QFile>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QStyle>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

#include <set>

namespace minutor {

namespace {

struct ButtonSpec {
  const char* caption;
  QStyle::StandardPixmap icon;
};

constexpr ButtonSpec kButtons[] = {
    {"Erstellen", QStyle::SP_FileDialogNewFolder},
    {"Bearbeiten", QStyle::SP_FileDialogContentsView},
    {"Löschen", QStyle::SP_TrashIcon},
    {"Drucken", QStyle::SP_DialogSaveButton},
    {"Exportieren", QStyle::SP_DriveFDIcon},
    {"Differenzieren", QStyle::SP_FileDialogListView},
    {"Nettokosten", QStyle::SP_DialogApplyButton},
};

}  // namespace

ListPanel::ListPanel(const Services& services, RemoteAccess* remote, QWidget* parent)
    : QWidget(parent), services_(services), remote_(remote) {
  setObjectName(QStringLiteral("List"));
  BuildUi();

  loading_ = true;
  user_->addItems(GetUsers(services_.dir));
  GetTarife();
  period_->addItems(ListPeriodItems());
  period_->setCurrentIndex(0);
  ApplyConfig(LoadListCfg(services_.dir));
  loading_ = false;
  GetConnections();
}

ListPanel::~ListPanel() = default;

void ListPanel::BuildUi() {
  auto* layout = new QVBoxLayout(this);
  auto* filters = new QGridLayout;
  const auto combo = [this](const char* name) {
    auto* box = new QComboBox(this);
    box->setObjectName(QString::fromLatin1(name));
    // Long provider and tariff names must not widen the panel beyond the
    // window: the boxes share the row's width and show what fits.
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(4);
    box->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return box;
  };
  period_ = combo("comZeitraum");
  user_ = combo("comListUser");
  provider_ = combo("comAnbieter");
  tariff_ = combo("comTarif");
  auto* custom = new QToolButton(this);
  custom->setObjectName(QStringLiteral("Label3"));
  custom->setText(QStringLiteral("Definiert..."));
  custom->setAutoRaise(true);
  filters->addWidget(new QLabel(QStringLiteral("Zeitraum:"), this), 0, 0);
  filters->addWidget(period_, 0, 1);
  filters->addWidget(custom, 0, 2);
  filters->addWidget(new QLabel(QStringLiteral("Benutzer:"), this), 0, 3);
  filters->addWidget(user_, 0, 4);
  filters->addWidget(new QLabel(QStringLiteral("Anbieter:"), this), 1, 0);
  filters->addWidget(provider_, 1, 1, 1, 2);
  filters->addWidget(new QLabel(QStringLiteral("Tarif:"), this), 1, 3);
  filters->addWidget(tariff_, 1, 4);
  filters->setColumnStretch(1, 1);
  filters->setColumnStretch(4, 1);
  layout->addLayout(filters);

  model_ = new ConnectionListModel(this);
  grid_ = new QTableView(this);
  grid_->setObjectName(QStringLiteral("lstConnections"));
  grid_->setModel(model_);
  grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
  grid_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  grid_->setWordWrap(false);
  grid_->verticalHeader()->hide();
  grid_->verticalHeader()->setDefaultSectionSize(grid_->fontMetrics().height() + 4);
  grid_->horizontalHeader()->setSectionsMovable(true);
  grid_->horizontalHeader()->setHighlightSections(false);
  grid_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  for (int column = kColumnIcon; column <= kColumnKommentar; ++column) {
    grid_->setColumnWidth(column - 1, ListColumnWidth(column) * 3 / 2);
  }
  grid_->setColumnHidden(kColumnFile - 1, true);
  grid_->setColumnHidden(kColumnSortDatum - 1, true);
  layout->addWidget(grid_, 1);

  loadingNote_ = new QLabel(QStringLiteral("Lade Verbindungsdaten..."), this);
  loadingNote_->setObjectName(QStringLiteral("Label4"));
  loadingNote_->setAlignment(Qt::AlignCenter);
  loadingNote_->hide();
  layout->addWidget(loadingNote_);

  auto* totals = new QHBoxLayout;
  totalDuration_ = new QLabel(this);
  totalDuration_->setObjectName(QStringLiteral("lblGesamtDauer"));
  totalCost_ = new QLabel(this);
  totalCost_->setObjectName(QStringLiteral("lblGesamtkosten"));
  totals->addWidget(new QLabel(QStringLiteral("Gesamtdauer:"), this));
  totals->addWidget(totalDuration_);
  totals->addSpacing(20);
  totals->addWidget(new QLabel(QStringLiteral("Gesamtkosten:"), this));
  totals->addWidget(totalCost_);
  totals->addStretch();
  layout->addLayout(totals);

  // Two rows of buttons, so that the panel fits the frame's width.
  auto* row = new QGridLayout;
  for (size_t i = 0; i < buttons_.size(); ++i) {
    auto* button = new QToolButton(this);
    button->setObjectName(QStringLiteral("Image1_%1").arg(i));
    button->setText(QString::fromUtf8(kButtons[i].caption));
    button->setIcon(style()->standardIcon(kButtons[i].icon));
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    // The frame around a button shows while the pointer is over it.
    button->setAutoRaise(true);
    connect(button, &QToolButton::clicked, this, [this, i] { ButtonClicked(static_cast<int>(i)); });
    row->addWidget(button, static_cast<int>(i / 4), static_cast<int>(i % 4));
    buttons_[i] = button;
  }
  row->setColumnStretch(4, 1);
  layout->addLayout(row);

  connect(period_, &QComboBox::currentIndexChanged, this, &ListPanel::PeriodChanged);
  connect(user_, &QComboBox::currentIndexChanged, this, &ListPanel::FilterChanged);
  connect(provider_, &QComboBox::currentIndexChanged, this, &ListPanel::SetTarif);
  connect(tariff_, &QComboBox::currentIndexChanged, this, &ListPanel::FilterChanged);
  connect(custom, &QToolButton::clicked, this, &ListPanel::CustomPeriod);
  connect(grid_->horizontalHeader(), &QHeaderView::sectionClicked, this, &ListPanel::HeaderClicked);
  connect(grid_->horizontalHeader(), &QHeaderView::sectionResized, this, [this] { SaveListCfg(); });
  connect(grid_->horizontalHeader(), &QHeaderView::sectionMoved, this, [this] { SaveListCfg(); });
  connect(grid_, &QTableView::doubleClicked, this, [this] { ButtonClicked(kBearbeiten); });
}

void ListPanel::GetTarife() {
  provider_->clear();
  provider_->addItem(kAlle);
  provider_->addItems(GetAnbieterListe(services_.dir));
  tariff_->clear();
  tariff_->addItem(kAlle);
}

void ListPanel::SetTarif() {
  if (provider_->currentText() == kAlle) {
    // The tariffs of the provider chosen before stay in the list; with every
    // provider they have no effect.
    const bool was = loading_;
    loading_ = true;
    tariff_->setCurrentIndex(0);
    loading_ = was;
    FilterChanged();
    return;
  }
  const bool was = loading_;
  loading_ = true;
  tariff_->clear();
  tariff_->addItem(kAlle);
  for (const TarifEintrag& entry : GetTarifListe(services_.dir, provider_->currentText())) {
    tariff_->addItem(entry.Label);
  }
  tariff_->setCurrentIndex(0);
  loading_ = was;
  FilterChanged();
}

void ListPanel::FilterChanged() {
  if (loading_) {
    return;
  }
  GetConnections();
  SaveListCfg();
}

void ListPanel::PeriodChanged() {
  if (loading_) {
    return;
  }
  if (period_->currentText() == QLatin1String("Definiert") && !PeriodFileExists(services_.dir)) {
    PeriodDialog(services_, this).exec();
  }
  FilterChanged();
}

void ListPanel::CustomPeriod() {
  loading_ = true;
  period_->setCurrentIndex(static_cast<int>(ListPeriodItems().indexOf(QStringLiteral("Definiert"))));
  loading_ = false;
  PeriodDialog(services_, this).exec();
  FilterChanged();
}

void ListPanel::ApplyConfig(const ListConfig& config) {
  period_->setCurrentIndex(config.periodIndex);
  user_->setCurrentIndex(std::max(0, user_->findText(config.user)));
  provider_->setCurrentIndex(std::max(0, provider_->findText(config.provider)));
  SetTarif();
  tariff_->setCurrentIndex(std::max(0, tariff_->findText(config.tariff)));
  SetNet(config.net);
  sort_ = config.sort;
  QHeaderView* header = grid_->horizontalHeader();
  for (qsizetype i = 0; i < config.columns.size(); ++i) {
    const ListConfig::Column& column = config.columns.at(i);
    const int logical = static_cast<int>(i);
    if (column.width > 0 && column.width < 5000) {
      header->resizeSection(logical, column.width);
    }
    if (column.position >= 1 && column.position <= kColumnKommentar) {
      header->moveSection(header->visualIndex(logical), column.position - 1);
    }
  }
}

void ListPanel::SaveListCfg() {
  if (loading_) {
    return;
  }
  ListConfig config;
  config.periodIndex = period_->currentIndex();
  config.user = user_->currentText();
  config.provider = provider_->currentText();
  config.tariff = tariff_->currentText();
  config.net = net_;
  config.sort = sort_;
  const QHeaderView* header = grid_->horizontalHeader();
  for (int logical = 0; logical < kColumnKommentar; ++logical) {
    config.columns.append({header->sectionSize(logical), header->visualIndex(logical) + 1});
  }
  if (!minutor::SaveListCfg(services_.dir, config)) {
    services_.prompter.Message(
        QStringLiteral("Die Einstellungen der Liste konnten nicht in \"%1\" gespeichert "
                       "werden.")
            .arg(services_.dir.Resolve(QStringLiteral("Config/List.cfg"))),
        Prompter::Icon::Warning);
  }
}

void ListPanel::GetConnections() {
  ListQuery query;
  query.period = MakeListPeriod(services_.dir, period_->currentText(), services_.clock.Now().date());
  query.filter.user = user_->currentText();
  query.filter.provider = provider_->currentText();
  query.filter.tariff = tariff_->currentText();
  query.colouring = ReadColouring(services_.dir);
  query.waehrung = services_.state.Waehrung;
  if (net_) {
    query.tax = ReadTax(services_.dir, services_.prompter);
  }
  loadingNote_->show();
  loadSort_ = sort_;
  load_.Start(
      [dir = services_.dir, query, sort = sort_](const std::atomic<bool>& cancel, const auto&) {
        ListResult result = minutor::GetConnections(dir, query, &cancel);
        if (!cancel) {
          SortRows(result.rows, sort);
        }
        return result;
      },
      [this](const ListResult& result) { ShowLoaded(result); });
}

bool ListPanel::IsLoading() const { return load_.IsRunning(); }

void ListPanel::ShowLoaded(const ListResult& result) {
  model_->SetRows(result.rows);
  // A header clicked while the rows were read sorts them now.
  if (sort_.column != loadSort_.column) {
    SortRows(model_->MutableRows(), sort_);
    model_->RowsReordered();
  }
  totalDuration_->setText(result.totalDuration);
  totalCost_->setText(result.totalCost);
  loadingNote_->hide();
  if (result.walk.unreadable > 0) {
    loadingNote_->setText(
        QStringLiteral("%1 Verbindungsdateien konnten nicht gelesen werden.").arg(result.walk.unreadable));
    loadingNote_->show();
  } else {
    loadingNote_->setText(QStringLiteral("Lade Verbindungsdaten..."));
  }
  emit listLoaded();
}

void ListPanel::HeaderClicked(int section) {
  sort_ = SortByHeader(section + 1);
  SortRows(model_->MutableRows(), sort_);
  model_->RowsReordered();
  SaveListCfg();
}

void ListPanel::ButtonClicked(int index) {
  if ((index == kErstellen || index == kBearbeiten || index == kLoeschen) && services_.state.NoListEdit) {
    services_.prompter.Message(
        QStringLiteral("Das erstellen oder modifizieren von Listeneinträgen wurde Ihnen in "
                       "den Benutzereinstellungen verboten."),
        Prompter::Icon::Information);
    return;
  }
  switch (index) {
    case kErstellen: {
      ConnectionDialog dialog(services_, remote_, QString(), this);
      if (dialog.exec() == QDialog::Accepted) {
        GetConnections();
      }
      break;
    }
    case kBearbeiten:
      EditSelected();
      break;
    case kLoeschen:
      DeleteSelected();
      break;
    case kDrucken:
      PrintDialog(services_, Selection(), this).exec();
      break;
    case kExportieren:
      if (model_->Rows().isEmpty()) {
        services_.prompter.Message(QStringLiteral("Die Liste enthält keine Einträge."),
                                   Prompter::Icon::Information);
      } else {
        ExportDialog(services_, Selection(), this).exec();
      }
      break;
    case kDifferenzieren:
      if (DifferenceDialog(services_, this).exec() == QDialog::Accepted) {
        GetConnections();
      }
      break;
    case kNettokosten:
      SetNet(!net_);
      SaveListCfg();
      GetConnections();
      break;
    default:
      break;
  }
}

ListSelection ListPanel::Selection() const {
  ListSelection selection;
  selection.rows = model_->Rows();
  selection.periodItem = period_->currentText();
  selection.filter.user = user_->currentText();
  selection.filter.provider = provider_->currentText();
  selection.filter.tariff = tariff_->currentText();
  return selection;
}

void ListPanel::EditSelected() {
  const QModelIndex current = grid_->selectionModel()->currentIndex();
  const QModelIndexList selected = grid_->selectionModel()->selectedRows();
  const int row = selected.isEmpty()
                      ? -1
                      : (current.isValid() && grid_->selectionModel()->isRowSelected(current.row())
                             ? current.row()
                             : selected.first().row());
  if (row < 0 || row >= model_->Rows().size()) {
    return;
  }
  const QString file = model_->Rows().at(row).Cell(kColumnFile).toString();
  if (file.isEmpty()) {
    return;
  }
  ConnectionDialog dialog(services_, remote_, file, this);
  if (dialog.exec() == QDialog::Accepted) {
    GetConnections();
  }
}

void ListPanel::DeleteSelected() {
  std::set<int> rows;
  for (const QModelIndex& index : grid_->selectionModel()->selectedRows()) {
    rows.insert(index.row());
  }
  int deleted = 0;
  QStringList failed;
  for (const int row : rows) {
    const QString file = model_->Rows().at(row).Cell(kColumnFile).toString();
    const QString path = services_.dir.Resolve(kRecordFolder + QLatin1Char('/') + file);
    // Into the desktop's trash where there is one, so that a wrong click
    // loses nothing; without a trash the file is deleted.
    if (QFile::moveToTrash(path) || QFile::remove(path)) {
      ++deleted;
    } else {
      failed.append(file);
    }
  }
  if (!failed.isEmpty()) {
    services_.prompter.Message(QStringLiteral("Folgende Verbindungen konnten nicht gelöscht werden: ") +
                                   failed.join(QStringLiteral(", ")),
                               Prompter::Icon::Warning);
  }
  if (deleted > 0) {
    GetConnections();
  }
}

void ListPanel::SetNet(bool net) {
  net_ = net;
  QToolButton* button = buttons_[kNettokosten];
  QFont font = button->font();
  font.setBold(net);
  button->setFont(font);
  QPalette palette = button->palette();
  palette.setColor(QPalette::ButtonText, net ? QColor(192, 0, 0) : palette.color(QPalette::WindowText));
  button->setPalette(palette);
  button->setCheckable(true);
  button->setChecked(net);
}

}  // namespace minutor
