#pragma once

#include "online/UpdateIndex.h"

#include <QObject>
#include <QTimer>

class QLabel;
class QWidget;

namespace minutor {

class ClockSetter;
class Fetcher;
class Meter;
struct Services;

// The services box of the Connection panel: 30 seconds into a recording
// ("Timer1") the tariff update search runs when it is due, then the clock
// correction when it is on. Their outcome shows in the box's labels; a click
// on the found tariffs opens "Neue Tarife gefunden", a click on a newer
// program revision the web page that announces it.
class ConnectionServices : public QObject {
  Q_OBJECT

 public:
  struct Labels {
    QLabel* tarifupdates;
    QLabel* programmupdates;
    QLabel* timeSync;
    QLabel* timeSyncCaption;  // a click corrects the clock again
  };

  ConnectionServices(Services& services, Meter& meter, Labels labels, QWidget* panel);

  // Where the services fetch and set the clock; without them they do nothing.
  void SetOnline(Fetcher* fetcher, ClockSetter* clockSetter);

  // Counter_Start found a service due: Timer1 starts.
  void Start() { timer1_.start(); }
  // The tick of Timer1.
  void RunServices();
  // The clock correction on its own, as a click on its caption asks.
  void CorrectTime();
  // New tariffs came, here or from the catalogue.
  void ShowDownloaded();
  // A check here or in the catalogue found a newer program revision.
  void ShowNewerRevision();

 signals:
  void tariffsDownloaded();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ShowLink(QLabel* label, const QString& text, bool link);
  void OpenAutoupdate();

  Services& services_;
  Meter& meter_;
  Labels labels_;
  QWidget* panel_;
  Fetcher* fetcher_ = nullptr;
  ClockSetter* clockSetter_ = nullptr;
  QTimer timer1_{this};
  QList<UpdateEntry> found_;
  int letzteSerie_ = 0;
};

}  // namespace minutor
