#include "metering/TrafficSource.h"
#include "metering/ui/ConnectionPanel.h"
#include "online/ui/AutoupdateDialog.h"
#include "online/ui/ConnectionServices.h"
#include "support/FakeOnline.h"
#include "support/FindControl.h"
#include "support/TestServices.h"

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;
using test::Find;

namespace {

const QByteArray kIndex =
    "*U* 400\n[0001]\n<tel/1/Neu - A.atl|Neu - A.atl>\n<tel/1/Neu - B.atl|Neu - B.atl>\n";
const QByteArray kPage =
    "<p>Current Timezone: Etc/GMT</p><H2>Mon Jan 02 19:20:00 GMT 2024</H2></body></html>";

struct Setup : test::TestServices {
  NoTrafficSource traffic;
  test::FakeFetcher fetcher;
  test::FakeClockSetter clockSetter;

  Setup() : TestServices(QDateTime(QDate(2024, 1, 2), QTime(20, 15, 0))) {
    data.write("Tarife/Test - Minute.tel", "Takt:60/60\r\n");
    state.AktuellerTarif = u"Test - Minute.tel"_s;
    data.write("Servers.dat", "http://u\r\n");
    data.write("Revision.dat", "330\r\n");
    data.write("Online.dat", "\r\nhttp://t\r\n");
    data.write("Config/Autoupdate.cfg", " 1 \r\n 7 \r\n");
    data.write("Config/Timesync.cfg", " 1 \r\n");
    fetcher.pages.insert("http://u/update.txt", kIndex);
    fetcher.pages.insert("http://u/tel/1/Neu - A.atl", "Name:Neu - A\n");
    fetcher.pages.insert("http://t/xdate?Etc/GMT", kPage);
  }
};

}  // namespace

class TestConnectionServices : public QObject {
  Q_OBJECT

 private slots:
  void updateSearchThenClockCorrectionThenDownload() {
    Setup s;
    ConnectionPanel panel(s.services, s.traffic);
    panel.SetOnline(&s.fetcher, &s.clockSetter);
    QVERIFY(panel.Load());
    auto* timer1 = Find<QTimer>(panel, u"Timer1"_s);
    QVERIFY(timer1->isActive());

    panel.services()->RunServices();
    QCOMPARE(panel.LabelText("lblTarifupdates"), u"Prüfe auf Updates..."_s);
    QTRY_COMPARE(panel.LabelText("lblTimeSync"), u"Zeit um ±00:05:00 korrigiert."_s);
    QCOMPARE(panel.LabelText("lblTarifupdates"), u"2 Tarife gefunden."_s);
    QCOMPARE(panel.LabelText("lblProgrammupdates"), u"Neues Update verfügbar."_s);
    // The search came first, the page of the time service after it.
    QCOMPARE(s.fetcher.asked, (QStringList{"http://u/update.txt", "http://t/xdate?Etc/GMT"}));
    QCOMPARE(s.clockSetter.moments, QList<QDateTime>{QDateTime(QDate(2024, 1, 2), QTime(20, 20, 0))});
    // A click on the caption corrects once more.
    QTest::mouseClick(Find<QLabel>(panel, "Label1"), Qt::LeftButton);
    QTRY_COMPARE(s.clockSetter.moments.size(), 2);

    // A click on the found tariffs offers them; one fails, the batch is taken all the same.
    // "Diesmal nicht" takes nothing; the next click offers the same again.
    auto* label = Find<QLabel>(panel, "lblTarifupdates");
    QTest::mouseClick(label, Qt::LeftButton);
    Find<QPushButton>(*Find<AutoupdateDialog>(panel, "Autoupdate"), "Command1_1")->click();
    QVERIFY(!s.data.dir().FileExists(u"Config/Update.cfg"));
    QTest::mouseClick(label, Qt::LeftButton);
    AutoupdateDialog* dialog = nullptr;
    for (auto* open : panel.findChildren<AutoupdateDialog*>()) {
      dialog = open->isVisible() ? open : dialog;
    }
    auto* list = Find<QListWidget>(*dialog, "List2");
    QCOMPARE(list->count(), 2);
    list->item(0)->setCheckState(Qt::Unchecked);
    list->item(1)->setCheckState(Qt::Unchecked);
    Find<QPushButton>(*dialog, "Command1_0")->click();
    QCOMPARE(s.prompter.messages.value(0), u"Keine Tarife zum herunterladen markiert!"_s);
    list->item(0)->setCheckState(Qt::Checked);
    list->item(1)->setCheckState(Qt::Checked);
    Find<QPushButton>(*dialog, "Command1_0")->click();
    QTRY_COMPARE(panel.LabelText("lblTarifupdates"), u"Tarifupdate durchgeführt."_s);
    QCOMPARE(s.data.read("Tarife/Neu - A.atl"), QByteArray("Name:Neu - A\r\n"));
    QCOMPARE(s.data.read("Config/Update.cfg"), QByteArray(" 1 \r\n02.01.2024\r\n"));
    QVERIFY(!label->font().underline());
    panel.CounterStop();
  }

  void nothingFoundAndTheSystemKeepsItsTime() {
    Setup s;
    s.fetcher.pages.insert("http://u/update.txt", "*U* 300\n[0001]\n");
    s.clockSetter.outcome = ClockSetter::Outcome::SystemKeepsTime;
    ConnectionPanel panel(s.services, s.traffic);
    panel.SetOnline(&s.fetcher, &s.clockSetter);
    QVERIFY(panel.Load());
    panel.services()->RunServices();
    QTRY_COMPARE(panel.LabelText("lblTimeSync"), u"Nicht korrigiert: das System stellt die Uhr selbst."_s);
    QCOMPARE(panel.LabelText("lblTarifupdates"), u"Keine Tarife gefunden."_s);
    QCOMPARE(panel.LabelText("lblProgrammupdates"), u"Kein Programmupd. gefunden."_s);
    // An untick before the timer fired cancels the correction.
    s.clockSetter.moments.clear();
    ConnectionPanel second(s.services, s.traffic);
    second.SetOnline(&s.fetcher, &s.clockSetter);
    QVERIFY(second.Load());
    Find<QCheckBox>(second, "Check1")->click();
    second.services()->RunServices();
    QTest::qWait(50);
    QVERIFY(s.clockSetter.moments.isEmpty());
    panel.CounterStop();
    second.CounterStop();
  }
};

QTEST_MAIN(TestConnectionServices)
#include "test_connection_services.moc"
