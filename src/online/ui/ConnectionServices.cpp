#include "online/ui/ConnectionServices.h"

#include "frame/Services.h"
#include "metering/Meter.h"
#include "online/TimeCorrection.h"
#include "online/UpdateCheck.h"
#include "online/UpdateFiles.h"
#include "online/ui/AutoupdateDialog.h"

#include <QDesktopServices>
#include <QEvent>
#include <QLabel>
#include <QUrl>
#include <QWidget>

namespace minutor {

ConnectionServices::ConnectionServices(Services& services, Meter& meter, Labels labels, QWidget* panel)
    : QObject(panel), services_(services), meter_(meter), labels_(labels), panel_(panel) {
  timer1_.setObjectName(QStringLiteral("Timer1"));
  timer1_.setSingleShot(true);
  timer1_.setInterval(30000);
  connect(&timer1_, &QTimer::timeout, this, &ConnectionServices::RunServices);
  labels_.tarifupdates->installEventFilter(this);
  labels_.programmupdates->installEventFilter(this);
  labels_.timeSyncCaption->installEventFilter(this);
}

void ConnectionServices::SetOnline(Fetcher* fetcher, ClockSetter* clockSetter) {
  fetcher_ = fetcher;
  clockSetter_ = clockSetter;
}

void ConnectionServices::ShowLink(QLabel* label, const QString& text, bool link) {
  label->setText(text);
  QFont font = label->font();
  font.setUnderline(link);
  label->setFont(font);
  label->setStyleSheet(link ? QStringLiteral("color: rgb(255, 0, 0);") : QString());
  label->setCursor(link ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void ConnectionServices::RunServices() {
  timer1_.stop();
  if (!meter_.Fields().TarifupdatePending || fetcher_ == nullptr) {
    CorrectTime();
    return;
  }
  labels_.tarifupdates->setText(QStringLiteral("Prüfe auf Updates..."));
  auto* check = new UpdateCheck(services_.dir, services_.prompter, *fetcher_, this);
  connect(check, &UpdateCheck::finished, this, [this, check] {
    check->deleteLater();
    found_ = check->Entries();
    letzteSerie_ = check->LetzteSerie();
    if (found_.isEmpty()) {
      ShowLink(labels_.tarifupdates, QStringLiteral("Keine Tarife gefunden."), false);
    } else {
      ShowLink(labels_.tarifupdates, QString::number(found_.size()) + QStringLiteral(" Tarife gefunden."),
               true);
    }
    if (check->NewerRevision()) {
      ShowNewerRevision();
    }
    meter_.SetTarifupdatePending(false);
    CorrectTime();
  });
  check->Start();
}

void ConnectionServices::CorrectTime() {
  if (!meter_.Fields().TimeSyncPending || fetcher_ == nullptr || clockSetter_ == nullptr) {
    return;
  }
  labels_.timeSync->setText(QStringLiteral("Zeitserver wird kontaktiert..."));
  auto* correction = new TimeCorrection(services_.dir, services_.clock, *fetcher_, *clockSetter_, this);
  connect(correction, &TimeCorrection::finished, this, [this, correction](const QString& text) {
    correction->deleteLater();
    labels_.timeSync->setText(text);
  });
  correction->Start();
}

void ConnectionServices::OpenAutoupdate() {
  auto* dialog = new AutoupdateDialog(services_, *fetcher_, found_, letzteSerie_, panel_);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &AutoupdateDialog::downloaded, this, [this] {
    ShowDownloaded();
    emit tariffsDownloaded();
  });
  dialog->open();
}

void ConnectionServices::ShowNewerRevision() {
  ShowLink(labels_.programmupdates, QStringLiteral("Neues Update verfügbar."), true);
}

void ConnectionServices::ShowDownloaded() {
  ShowLink(labels_.tarifupdates, QStringLiteral("Tarifupdate durchgeführt."), false);
}

bool ConnectionServices::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonRelease) {
    if (watched == labels_.tarifupdates && labels_.tarifupdates->font().underline() && fetcher_ != nullptr) {
      OpenAutoupdate();
      return true;
    }
    if (watched == labels_.timeSyncCaption) {
      CorrectTime();
      return true;
    }
    if (watched == labels_.programmupdates) {
      const QString page = ReadOnlineAddresses(services_.dir).updatePage;
      if (!page.isEmpty()) {
        QDesktopServices::openUrl(QUrl(page));
      }
      return true;
    }
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace minutor
