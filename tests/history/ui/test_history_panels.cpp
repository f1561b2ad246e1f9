#include "history/ui/ChartPanel.h"
#include "history/ui/ChartView.h"
#include "history/ui/ReportPanel.h"
#include "history/ui/TariffComparisonView.h"
#include "support/RecordFiles.h"
#include "support/TestServices.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;
using test::RecordLines;
using test::WriteRecord;

namespace {

void WriteHistory(const test::TempDataDir& data) {
  data.write(u"Benutzer/Anna.usr"_s, "");
  data.write(u"Benutzer/Bert.usr"_s, "");
  WriteRecord(data, "01022023-100000.con", RecordLines("01.02.2023", "10:00:00", "01:00:00", "1,50"));
  WriteRecord(data, "02022023-100000.con",
              RecordLines("02.02.2023", "10:00:00", "00:00:30", "0,50", "Mobil - Flat.atl", "Bert"));
}

QList<QByteArray> ConfigLines(const test::TempDataDir& data) {
  return data.read(u"Config/Chart.cfg"_s).split('\n');
}

bool WaitFor(QObject* panel, const char* signal) {
  QSignalSpy spy(panel, signal);
  return spy.wait(10000);
}

}  // namespace

class TestHistoryPanels : public QObject {
  Q_OBJECT

 private slots:
  void chartFollowsItsButtonsAndRemembersThem() {
    test::TestServices t;
    WriteHistory(t.data);
    // Month and year of February 2023, the user in other case; the rest missing.
    const QByteArray saved = " 1 \r\n 22 \r\nANNA\r\n";
    t.data.write(u"Config/Chart.cfg"_s, saved);
    auto panel = std::make_unique<ChartPanel>(t.services);
    panel->show();
    QVERIFY(panel->IsCalculating() || !panel->View()->Picture().shapes.isEmpty());
    QVERIFY(WaitFor(panel.get(), SIGNAL(drawn())));
    QCOMPARE(panel->findChild<QComboBox*>(u"comUser"_s)->currentText(), u"Anna"_s);
    QCOMPARE(panel->Measure(), ChartMeasure::Dauer);
    QCOMPARE(panel->Style(), ChartStyle::Balken);
    QCOMPARE(panel->findChild<QLabel*>(u"AxisY"_s)->text(), u"Y: Dauer (Min)"_s);
    QCOMPARE(t.data.read(u"Config/Chart.cfg"_s), saved);  // the start saves nothing

    panel->ClickButton(2);  // "Kreis" is off for a time measure
    QCOMPARE(panel->Style(), ChartStyle::Balken);
    panel->ClickButton(4);  // "Benutzer"
    QVERIFY(WaitFor(panel.get(), SIGNAL(drawn())));
    QCOMPARE(panel->Style(), ChartStyle::Kreis);
    QVERIFY(!panel->findChild<QComboBox*>(u"comUser"_s)->isEnabled());
    QCOMPARE(panel->findChild<QLabel*>(u"AxisY"_s)->text(), u"2 Verbind."_s);
    QCOMPARE(ConfigLines(t.data).mid(5, 2), (QList<QByteArray>{" 5 \r", " 3 \r"}));

    panel->ClickButton(0);  // "Linien" is off for a pie
    panel->ClickButton(6);  // "Kosten" goes back to the bars
    panel->ClickButton(0);
    QVERIFY(WaitFor(panel.get(), SIGNAL(drawn())));
    QCOMPARE(panel->Style(), ChartStyle::Linien);
    QVERIFY(panel->findChild<QComboBox*>(u"comUser"_s)->isEnabled());
    QVERIFY(!panel->findChild<QComboBox*>(u"comTarif"_s)->isEnabled());
    QCOMPARE(ConfigLines(t.data).mid(0, 7),
             (QList<QByteArray>{" 1 \r", " 22 \r", "Anna\r", "[Alle]\r", "[Alle]\r", " 2 \r", " 1 \r"}));

    // Opened again, the panel shows what was chosen last.
    panel = std::make_unique<ChartPanel>(t.services);
    QCOMPARE(panel->Measure(), ChartMeasure::Kosten);
    QCOMPARE(panel->Style(), ChartStyle::Linien);
    QVERIFY(WaitFor(panel.get(), SIGNAL(drawn())));

    // Garbage reads as the first month, the default measure and style.
    t.data.write(u"Config/Chart.cfg"_s, "Unsinn\r\n\xff\xfe\r\n\r\n\r\n\r\n99\r\n-4\r\n");
    panel = std::make_unique<ChartPanel>(t.services);
    QCOMPARE(panel->findChild<QComboBox*>(u"comZeitraum"_s)->currentText(), u"Januar"_s);
    QCOMPARE(panel->Measure(), ChartMeasure::Dauer);
    QCOMPARE(panel->Style(), ChartStyle::Balken);
    QVERIFY(WaitFor(panel.get(), SIGNAL(drawn())));
  }

  void reportFollowsItsChoices() {
    test::TestServices t(QDateTime(QDate(2023, 2, 20), QTime(10, 0)));
    WriteHistory(t.data);
    ReportPanel panel(t.services);
    panel.show();
    QVERIFY(WaitFor(&panel, SIGNAL(built())));
    QVERIFY(!panel.IsCalculating());
    QCOMPARE(panel.findChild<QLabel*>(u"lblGesamtDauer"_s)->text(), u"01:00:30"_s);
    QCOMPARE(panel.findChild<QLabel*>(u"Label2(9)"_s)->text(),
             u"Der aktivste Benutzer ist: Anna (1 Verbindungen)"_s);

    auto* user = panel.findChild<QComboBox*>(u"comUser"_s);
    QCOMPARE(user->count(), 3);
    user->setCurrentIndex(2);
    emit user->activated(2);
    QVERIFY(panel.IsCalculating());
    QVERIFY(WaitFor(&panel, SIGNAL(built())));
    QCOMPARE(panel.findChild<QLabel*>(u"lblGesamtKosten"_s)->text(), u"0,50 €"_s);
    QCOMPARE(panel.findChild<QLabel*>(u"Label2(9)"_s)->text(),
             u"Stellen Sie als Benutzer \"[Alle]\" ein um den aktivsten Benutzer zu ermitteln."_s);
  }

  void comparisonOfTariffsBelowTheAnalysis() {
    test::TestServices t(QDateTime(QDate(2023, 2, 20), QTime(10, 0)));
    t.state.Waehrung = u"€"_s;
    WriteHistory(t.data);
    t.data.write(u"Tarife/Funk - Minute.tel"_s,
                 "Takt:60/60\r\n[Tarifzonen]\r\nZone:M\r\nVon:0\r\nBis:24\r\nPfennig:6\r\nEinheit:60\r\n"
                 "Wochenende:Nein");
    t.data.write(u"Tarife/Netz - Volumen.atl"_s,
                 "Volumenabrechnung:Ja\r\nVolumenkosten:10\r\nVolumeneinheit:1\r\n");
    ReportPanel panel(t.services);
    QVERIFY(WaitFor(&panel, SIGNAL(built())));
    auto* view = panel.findChild<TariffComparisonView*>();
    auto* table = panel.findChild<QTableWidget*>(u"tblVergleich"_s);
    auto* compare = panel.findChild<QPushButton*>(u"cmdVergleichen"_s);

    // Cancelled at once, nothing shows.
    compare->click();
    QVERIFY(view->IsComparing());
    panel.findChild<QPushButton*>(u"cmdAbbrechen"_s)->click();
    QVERIFY(!view->IsComparing());
    QCOMPARE(table->rowCount(), 0);

    // An hour and half a minute on working days: 60 and 1 units of a minute,
    // or one megabyte unit whose rest carries the second's two kilobytes.
    compare->click();
    QVERIFY(WaitFor(view, SIGNAL(finished())));
    QCOMPARE(panel.findChild<QLabel*>(u"lblVergleich"_s)->text(),
             u"Tatsächliche Kosten von 2 Verbindungen: 2,00 €"_s);
    QCOMPARE(table->rowCount(), 2);
    const QStringList rows = {table->item(0, 0)->text(), table->item(0, 1)->text(),
                              table->item(0, 2)->text(), table->item(1, 0)->text(),
                              table->item(1, 1)->text(), table->item(1, 2)->text()};
    QCOMPARE(rows, (QStringList{"Netz - Volumen.atl", "0,10 €", "-1,90 €", "Funk - Minute.tel", "3,66 €",
                                "+1,66 €"}));

    // Another user: the table of the former choice goes.
    auto* user = panel.findChild<QComboBox*>(u"comUser"_s);
    user->setCurrentIndex(2);
    emit user->activated(2);
    QCOMPARE(table->rowCount(), 0);
    QVERIFY(WaitFor(&panel, SIGNAL(built())));
  }
};

QTEST_MAIN(TestHistoryPanels)
#include "test_history_panels.moc"
