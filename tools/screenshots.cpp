// Takes the pictures of the README: the Overview, a running recording, the
// small window, the connection list, the monthly chart, the analysis and
// its comparison of tariffs, made by the real program's windows on a sample
// data directory.
//
//   minutor_screenshots OUTDIR
//
// Run it under an X server (scripts/screenshots.sh starts Xvfb for it).

#include "desk/ui/SmallWindow.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "frame/StartUp.h"
#include "frame/datadir/DataDir.h"
#include "frame/ui/MainWindow.h"
#include "frame/ui/MessageBoxPrompter.h"
#include "frame/ui/SideBar.h"
#include "metering/ConnectionRecord.h"
#include "metering/TrafficSource.h"
#include "metering/ui/ConnectionPanel.h"
#include "users/FieldCipher.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>

#include <cstdio>

using namespace minutor;

namespace {

void Wait(int milliseconds) {
  QElapsedTimer timer;
  timer.start();
  while (timer.elapsed() < milliseconds) {
    QApplication::processEvents(QEventLoop::AllEvents, 50);
  }
}

bool Save(QWidget* widget, const QString& path) {
  const bool ok = widget->grab().save(path);
  std::printf("%s %s\n", ok ? "wrote" : "FAILED", qPrintable(path));
  return ok;
}

// A month of connections up to today: most days one or two, by two users.
void WriteSampleMonth(const DataDir& dir, const QDate& today) {
  for (int day = 1; day <= today.day(); ++day) {
    for (int n = 0; n < (day * 7) % 3; ++n) {
      RecordLabels l;
      l.startTag = QDate(today.year(), today.month(), day).toString(QStringLiteral("ddMMyyyy"));
      l.startTime = QStringLiteral("%1:%2:05").arg(9 + n * 10).arg(day % 60, 2, 10, QLatin1Char('0'));
      l.dauer =
          QStringLiteral("00:%1:%2").arg((day * 13 + n * 29) % 55 + 3).arg(day % 60, 2, 10, QLatin1Char('0'));
      l.kosten = QStringLiteral("0,%1 €").arg((day * 17 + n * 31) % 90 + 5, 2, 10, QLatin1Char('0'));
      l.einheiten = QStringLiteral("3");
      l.bytesIn = QStringLiteral("%1 Bytes").arg(day * 1733000);
      l.bytesOut = QStringLiteral("%1 Bytes").arg(day * 211000);
      l.bytesInOut = QStringLiteral("%1 Bytes").arg(day * 1944000);
      l.connectionName = QStringLiteral("Mobilfunk-Stick");
      l.tarif = n == 0 ? QStringLiteral("Funkwelle - Tag und Nacht.tel")
                       : QStringLiteral("Mobilnetz Plus - Freiminuten 100.tel");
      l.benutzer = day % 4 == 0 ? QStringLiteral("Anna") : QStringLiteral("Supervisor");
      QList<QByteArray> lines;
      for (const QByteArray& plain : RecordPlainLines(l)) {
        lines.append(EncryptField(plain));
      }
      dir.WriteLines(kRecordFolder + QLatin1Char('/') + RecordFileName(l.startTag, l.startTime), lines);
    }
  }
}

// A few weeks of connections, as the list shows them.
void WriteSampleRecords(const DataDir& dir, const QDate& today) {
  const char* const tariffs[] = {"Funkwelle - Tag und Nacht.tel", "Mobilnetz Plus - Freiminuten 100.tel"};
  for (int i = 0; i < 14; ++i) {
    const QDate day = today.addDays(-2 * i - 1);
    const QTime start(8 + (i * 5) % 14, (i * 17) % 60, (i * 31) % 60);
    const int minutes = 3 + (i * 23) % 70;
    const QList<QByteArray> plain{
        "S" + day.toString(QStringLiteral("dd.MM.yyyy")).toLatin1(),
        start.toString(QStringLiteral("HH:mm:ss")).toLatin1(),
        QStringLiteral("00:%1:%2")
            .arg(minutes, 2, 10, QLatin1Char('0'))
            .arg((i * 7) % 60, 2, 10, QLatin1Char('0'))
            .toLatin1(),
        "S" + QByteArray::number(minutes * (i % 2 == 0 ? 0.039 : 0.09), 'f', 2).replace('.', ','),
        QByteArray::number(minutes),
        QByteArray::number(minutes * 412'000 + i * 1733),
        QByteArray::number(minutes * 38'000 + i * 211),
        QByteArray::number(minutes * 450'000 + i * 1944),
        i % 3 == 0 ? "Mobilfunk-Stick" : "Heimnetz DSL",
        tariffs[i % 2],
        "Supervisor",
        i == 4 ? "Urlaub, Hotel-WLAN" : ""};
    QList<QByteArray> lines;
    for (const QByteArray& line : plain) {
      lines.append(EncryptField(line));
    }
    dir.WriteLines(QStringLiteral("Verbindungen/") + day.toString(QStringLiteral("ddMMyyyy")) +
                       QLatin1Char('-') + start.toString(QStringLiteral("HHmmss")) + QStringLiteral(".con"),
                   lines);
  }
}

}  // namespace

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  if (argc < 2) {
    std::fprintf(stderr, "usage: minutor_screenshots OUTDIR\n");
    return 2;
  }
  const QString out = QString::fromLocal8Bit(argv[1]);
  QDir().mkpath(out);

  QTemporaryDir temp;
  const DataDir dir(temp.path());
  dir.WriteLines(QStringLiteral("Config/Overview.cfg"),
                 {"", "Supervisor", "Mobilnetz Plus", "M - Freiminuten 100"});
  dir.WriteLines(QStringLiteral("Benutzer/Supervisor.bdg"), {"3", "25", "0", "1.1.2002", "31.1.2002"});
  dir.WriteLines(QStringLiteral("Config/Smallwindow.cfg"), {" 1 "});
  dir.WriteLines(QStringLiteral("Note.dat"), {"Vertrag endet am 31.12.", "Stick: 0171 1234567"});
  WriteSampleMonth(dir, QDate::currentDate());
  WriteSampleRecords(dir, QDate::currentDate());

  AppState state;
  RunStartSteps(dir, DataDir::ShippedLocation(QApplication::applicationDirPath()), state);
  SystemClock clock;
  MessageBoxPrompter prompter;
  Services services{state, dir, clock, prompter};
  NoTrafficSource traffic;

  MainWindow window(services, traffic);
  window.Start();
  Wait(800);
  bool ok = Save(&window, out + QStringLiteral("/overview.png"));

  window.StartManualRecording();
  Wait(3500);
  ok = Save(&window, out + QStringLiteral("/connection.png")) && ok;
  if (window.smallWindow() != nullptr) {
    ok = Save(window.smallWindow(), out + QStringLiteral("/smallwindow.png")) && ok;
  } else {
    std::printf("FAILED no small window\n");
    ok = false;
  }
  if (window.connection() != nullptr) {
    window.connection()->CounterStop();
  }
  Wait(300);
  emit window.sideBar()->entryClicked(1);
  Wait(1500);
  ok = Save(&window, out + QStringLiteral("/list.png")) && ok;

  window.sideBar()->ShowPage(2);
  window.sideBar()->EntryButton(4)->click();
  Wait(500);
  ok = Save(&window, out + QStringLiteral("/budget.png")) && ok;

  window.sideBar()->ShowPage(1);
  window.sideBar()->EntryButton(8)->click();
  Wait(1500);
  ok = Save(&window, out + QStringLiteral("/chart.png")) && ok;
  window.sideBar()->EntryButton(9)->click();
  Wait(1500);
  ok = Save(&window, out + QStringLiteral("/analysis.png")) && ok;
  // The comparison stands below the sentences; its picture is of the section alone.
  auto* compare = window.findChild<QPushButton*>(QStringLiteral("cmdVergleichen"));
  if (compare == nullptr) {
    std::printf("FAILED no comparison\n");
    return 1;
  }
  compare->click();
  Wait(1500);
  return Save(compare->parentWidget(), out + QStringLiteral("/comparison.png")) && ok ? 0 : 1;
}
