#pragma once

#include <QObject>
#include <QString>

namespace minutor {

class Clock;
class ClockSetter;
class DataDir;
class Fetcher;

// GetZeitKorrektur: fetches the time service's page, reads the time from it
// and sets the clock. `finished` brings the text for "lblTimeSync": by how
// much the clock went, or why it was left alone. A missing host, no answer
// or a page of another layout correct by nothing.
class TimeCorrection : public QObject {
  Q_OBJECT

 public:
  TimeCorrection(const DataDir& dir, const Clock& clock, Fetcher& fetcher, ClockSetter& setter,
                 QObject* parent = nullptr);

  void Start();

  // "Zeit um ±00:05:00 korrigiert.": the sign is lost, as the ± says.
  static QString CorrectedText(qint64 seconds);

 signals:
  void finished(const QString& text);

 private:
  void Correct(const QByteArray& page);

  const DataDir& dir_;
  const Clock& clock_;
  Fetcher& fetcher_;
  ClockSetter& setter_;
};

}  // namespace minutor
