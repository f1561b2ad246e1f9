#include "online/TimeCorrection.h"

#include "frame/Clock.h"
#include "frame/datadir/ClockText.h"
#include "online/ClockSetter.h"
#include "online/Fetcher.h"
#include "online/TimePage.h"
#include "online/UpdateFiles.h"

#include <QTimer>

namespace minutor {

TimeCorrection::TimeCorrection(const DataDir& dir, const Clock& clock, Fetcher& fetcher, ClockSetter& setter,
                               QObject* parent)
    : QObject(parent), dir_(dir), clock_(clock), fetcher_(fetcher), setter_(setter) {}

QString TimeCorrection::CorrectedText(qint64 seconds) {
  const qint64 magnitude = seconds < 0 ? -seconds : seconds;
  return QStringLiteral("Zeit um ±") +
         LongTimeText(QTime(0, 0).addSecs(static_cast<int>(magnitude % 86400))) +
         QStringLiteral(" korrigiert.");
}

void TimeCorrection::Start() {
  const QString address = TimePageAddress(ReadOnlineAddresses(dir_).timeHost);
  if (address.isEmpty()) {
    QTimer::singleShot(0, this, [this] { emit finished(CorrectedText(0)); });
    return;
  }
  fetcher_.Fetch(address, this, [this](std::optional<QByteArray> page) {
    if (page) {
      Correct(*page);
    } else {
      emit finished(CorrectedText(0));
    }
  });
}

void TimeCorrection::Correct(const QByteArray& page) {
  const QDateTime now = clock_.Now();
  const auto found = ParseZeitseite(page, now.offsetFromUtc());
  if (!found) {
    emit finished(CorrectedText(0));
    return;
  }
  const qint64 difference = now.time().secsTo(found->time);
  setter_.SetClock(QDateTime(found->date, found->time), this,
                   [this, difference](ClockSetter::Outcome outcome) {
                     switch (outcome) {
                       case ClockSetter::Outcome::Set:
                         emit finished(CorrectedText(difference));
                         break;
                       case ClockSetter::Outcome::SystemKeepsTime:
                         emit finished(QStringLiteral("Nicht korrigiert: das System stellt die Uhr selbst."));
                         break;
                       case ClockSetter::Outcome::Refused:
                         emit finished(QStringLiteral("Nicht korrigiert: keine Berechtigung."));
                         break;
                       case ClockSetter::Outcome::Failed:
                         emit finished(QStringLiteral("Nicht korrigiert: der Zeitdienst des Systems fehlt."));
                         break;
                     }
                   });
}

}  // namespace minutor
