#include "online/ui/AutoupdateDialog.h"

#include "frame/Prompter.h"
#include "frame/Services.h"
#include "online/UpdateDownload.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedLayout>
#include <QVBoxLayout>

namespace minutor {

AutoupdateDialog::AutoupdateDialog(Services& services, Fetcher& fetcher, QList<UpdateEntry> entries,
                                   int letzteSerie, QWidget* parent)
    : QDialog(parent),
      services_(services),
      fetcher_(fetcher),
      entries_(std::move(entries)),
      letzteSerie_(letzteSerie) {
  setObjectName(QStringLiteral("Autoupdate"));
  setWindowTitle(QStringLiteral("Neue Tarife gefunden"));
  setModal(true);

  auto* offer = new QWidget;
  auto* heading = new QLabel(QStringLiteral("Tarifupdate"));
  QFont bold = heading->font();
  bold.setBold(true);
  heading->setFont(bold);
  auto* text =
      new QLabel(QStringLiteral("Auf dem Updateserver stehen neue Tarife bereit. Markieren Sie die Tarife, "
                                "die Sie herunterladen möchten; "
                                "nicht markierte Tarife werden später nicht erneut angeboten."));
  text->setWordWrap(true);
  list2_ = new QListWidget;
  list2_->setObjectName(QStringLiteral("List2"));
  for (const UpdateEntry& entry : entries_) {
    auto* item = new QListWidgetItem(entry.fileName, list2_);
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(Qt::Checked);
  }
  auto* download = new QPushButton(QStringLiteral("Jetzt &herunterladen"));
  download->setObjectName(QStringLiteral("Command1_0"));
  download->setDefault(true);
  auto* notNow = new QPushButton(QStringLiteral("Diesmal &nicht"));
  notNow->setObjectName(QStringLiteral("Command1_1"));
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(download);
  buttons->addWidget(notNow);
  auto* offerLayout = new QVBoxLayout(offer);
  offerLayout->addWidget(heading);
  offerLayout->addWidget(text);
  offerLayout->addWidget(new QLabel(QStringLiteral("Neue Tarife:")));
  offerLayout->addWidget(list2_);
  offerLayout->addLayout(buttons);

  picture1_ = new QWidget;
  picture1_->setObjectName(QStringLiteral("Picture1"));
  label4_ = new QLabel;
  label4_->setObjectName(QStringLiteral("Label4"));
  picture2_ = new QProgressBar;
  picture2_->setObjectName(QStringLiteral("Picture2"));
  picture2_->setTextVisible(false);
  picture2_->setStyleSheet(QStringLiteral("QProgressBar::chunk { background-color: rgb(0, 100, 160); }"));
  auto* abort = new QPushButton(QStringLiteral("&Abbrechen"));
  abort->setObjectName(QStringLiteral("Command2"));
  auto* progressLayout = new QVBoxLayout(picture1_);
  progressLayout->addStretch();
  progressLayout->addWidget(new QLabel(QStringLiteral("Lade Tarife herunter:")));
  progressLayout->addWidget(label4_);
  progressLayout->addWidget(picture2_);
  progressLayout->addWidget(abort, 0, Qt::AlignRight);
  progressLayout->addStretch();

  // The progress panel covers the offer while the tariffs come.
  auto* stack = new QStackedLayout(this);
  stack->addWidget(offer);
  stack->addWidget(picture1_);

  connect(download, &QPushButton::clicked, this, &AutoupdateDialog::OnDownload);
  connect(notNow, &QPushButton::clicked, this, &AutoupdateDialog::reject);
  connect(abort, &QPushButton::clicked, this, &AutoupdateDialog::reject);
}

void AutoupdateDialog::OnDownload() {
  if (list2_->count() == 0) {
    services_.prompter.Message(QStringLiteral("Keine Tarife zum herunterladen vorhanden."),
                               Prompter::Icon::Warning);
    return;
  }
  QList<UpdateEntry> marked;
  for (int i = 0; i < list2_->count(); ++i) {
    if (list2_->item(i)->checkState() == Qt::Checked) {
      marked.append(entries_.at(i));
    }
  }
  if (marked.isEmpty()) {
    services_.prompter.Message(QStringLiteral("Keine Tarife zum herunterladen markiert!"),
                               Prompter::Icon::Warning);
    return;
  }
  static_cast<QStackedLayout*>(layout())->setCurrentWidget(picture1_);
  picture2_->setRange(0, static_cast<int>(marked.size()));
  picture2_->setValue(0);
  download_ = new UpdateDownload(services_.dir, services_.clock, fetcher_, marked, letzteSerie_, this);
  connect(download_, &UpdateDownload::status, label4_, &QLabel::setText);
  connect(download_, &UpdateDownload::progress, picture2_,
          [this](int done, int) { picture2_->setValue(done); });
  connect(download_, &UpdateDownload::finished, this, [this] {
    download_ = nullptr;
    emit downloaded();
    accept();
  });
  download_->Start();
}

void AutoupdateDialog::reject() {
  if (download_ != nullptr) {
    download_->Cancel();
    download_ = nullptr;
  }
  QDialog::reject();
}

}  // namespace minutor
