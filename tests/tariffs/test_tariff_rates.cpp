#include "TariffText.h"
#include "support/TempDataDir.h"
#include "tariffs/PriceTexts.h"
#include "tariffs/RateLookup.h"
#include "tariffs/TariffPeeks.h"

#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;
using test::At;
using test::Local;
using test::Zone;

// Runs under a German and an English locale: prices in the files may carry
// either decimal sign, and the texts carry the locale's.
class TestTariffRates : public QObject {
  Q_OBJECT

  test::TempDataDir data;

  QString writeTime(const QString& name, const QList<QList<QByteArray>>& zones) {
    QList<QByteArray> lines = test::TimeHead();
    for (const auto& zone : zones) {
      lines += zone;
    }
    data.write(u"Tarife/"_s + name, test::Crlf(lines));
    return name;
  }

  double price(const QString& name, const QDateTime& moment, bool feiertag = false) {
    return GetTarifPreis(data.dir(), name, moment, feiertag);
  }

 private slots:
  void zonesApplyBetweenTheirHoursOnTheirDays() {
    const QString file = writeTime(u"Zeit - Tag.tel"_s,
                                   {Zone(8, 18, "3", false), Zone(18, 8, "1", false), Zone(0, 0, "2", true)});
    QCOMPARE(price(file, At(1, 8)), 3.0);
    QCOMPARE(price(file, At(1, 18)), 3.0);
    // 18 to 8 doesn't wrap over midnight: the night costs nothing.
    QCOMPARE(price(file, At(1, 18, 0, 1)), 0.0);
    QCOMPARE(price(file, At(7, 23, 59, 59)), 2.0);  // 0 to 0 is the whole day

    const QString workdays = writeTime(u"Zeit - Werktag.tel"_s, {Zone(0, 24, "3", false)});
    QCOMPARE(price(workdays, At(6, 12)), 0.0);
    QCOMPARE(price(workdays, At(2, 23, 59, 59)), 3.0);

    // The last zone that applies wins.
    const QString evening = writeTime(
        u"Zeit - Abend.tel"_s, {Zone(8, 18, "3", false), Zone(18, 24, "1", false), Zone(24, 8, "5", false)});
    QCOMPARE(price(evening, At(1, 18)), 1.0);
    QCOMPARE(price(evening, At(1, 0)), 5.0);  // 24 as a start is midnight
    QCOMPARE(price(evening, At(1, 8)), 5.0);
    QCOMPARE(price(evening, At(1, 8, 0, 1)), 3.0);

    const QString wholeDay =
        writeTime(u"Zeit - Ganztags.tel"_s, {Zone(8, 8, "4", false), Zone(24, 0, "6", true)});
    QCOMPARE(price(wholeDay, At(1, 3)), 4.0);
    QCOMPARE(price(wholeDay, At(7, 3)), 6.0);
  }

  void aHolidayCountsOnlyThroughAWeekendZoneBehind() {
    const QString last = writeTime(u"Zeit - Hinten.tel"_s, {Zone(0, 24, "3", false), Zone(0, 24, "1", true)});
    const QString first = writeTime(u"Zeit - Vorn.tel"_s, {Zone(0, 24, "1", true), Zone(0, 24, "3", false)});
    QCOMPARE(price(last, At(5, 11), true), 1.0);
    QCOMPARE(price(first, At(5, 11), true), 3.0);
    QCOMPARE(price(last, At(5, 11), false), 3.0);
    QCOMPARE(price(first, At(6, 11), false), 1.0);

    // The day class compares "Ja" and "Nein" exactly.
    QList<QByteArray> zone = Zone(0, 24, "3", true);
    zone[5] = "Wochenende:ja";
    QCOMPARE(price(writeTime(u"Zeit - Klein.tel"_s, {zone}), At(6, 11)), 0.0);
  }

  void zonePricesTakeEitherSignAndStopAtTheFirstBadOne() {
    const QString file =
        writeTime(u"Zeit - Zeichen.tel"_s,
                  {Zone(0, 12, "3,9", false), Zone(12, 24, " 3.25 ", false), Zone(0, 24, "kaputt", true)});
    QCOMPARE(price(file, At(1, 9)), 3.9);
    QCOMPARE(price(file, At(1, 12)), 3.25);  // the bad zone doesn't apply, its price isn't read
    const QString euro = u"€"_s;
    QCOMPARE(KatalogPreisText(data.dir(), file, At(1, 9), false, euro), Local(u"0.0390 €"_s));
    QCOMPARE(AktuellerPreisText(data.dir(), file, At(1, 9), false, euro), Local(u"0.039 € pro Minute"_s));

    const QString broken =
        writeTime(u"Zeit - Kaputt.tel"_s,
                  {Zone(0, 24, "2", false), Zone(0, 24, "1,5 Werktag", false), Zone(0, 24, "7", false)});
    QCOMPARE(price(broken, At(1, 9)), 2.0);

    // A last group cut short is no zone; what came before still counts.
    data.write(u"Tarife/Zeit - Kurz.tel"_s,
               test::Crlf(test::TimeHead() + Zone(0, 24, "2", false) + Zone(0, 24, "9", false).mid(0, 4)));
    QCOMPARE(price(u"Zeit - Kurz.tel"_s, At(1, 9)), 2.0);

    QCOMPARE(price(u"zeit - KURZ.TEL"_s, At(1, 9)), 2.0);
    QCOMPARE(price(u"Fehlt - Ganz.tel"_s, At(1, 9)), 0.0);
  }

  void aVolumeTariffHasOnePriceReadByItsPlace() {
    data.write(u"Tarife/Volumen - Eins.tel"_s,
               test::Crlf({"[Providerdaten]", "volumenabrechnung:JA", "VOLUMENKOSTEN:2,5",
                           "Volumeneinheit:0,5", "[Tarifzonen]", "Zone:x", "Von:0", "Bis:24", "Pfennig:9",
                           "Einheit:60", "Wochenende:Nein"}));
    const QString file = u"Volumen - Eins.tel"_s;
    QCOMPARE(price(file, At(1, 3)), 2.5);
    QCOMPARE(price(file, At(7, 23, 59, 59), true), 2.5);
    const QString euro = u"€"_s;
    QCOMPARE(AktuellerPreisText(data.dir(), file, At(1, 3), false, euro), Local(u"0.025 € pro 0.5MB"_s));
    QCOMPARE(AktuellerPreisNachFeiertagText(data.dir(), file, At(1, 3), true, euro),
             Local(u"0.025 € pro Minute"_s));
    QCOMPARE(KatalogPreisText(data.dir(), file, At(1, 3), false, euro), Local(u"0.0250 €"_s));

    data.write(u"Tarife/Volumen - Ende.tel"_s, test::Crlf({"Volumenabrechnung:Ja"}));
    QCOMPARE(price(u"Volumen - Ende.tel"_s, At(1, 3)), 0.0);
  }

  void taktUnitCostAndItsTexts() {
    const Takt spaced = ParseTakt(u" 60/ 60 ");
    QVERIFY(spaced.first == 60 && spaced.rest == 60.0f);
    QCOMPARE(ParseTakt(u"30").rest, 30.0f);  // one number is both
    QCOMPARE(ParseTakt(u"60.6/7,5").first, qint16(61));
    QCOMPARE(ParseTakt(u"60.6/7,5").rest, 7.0f);
    QCOMPARE(ParseTakt(u"").rest, 0.0f);
    // The first unit costs what any unit costs, whatever its length.
    QCOMPARE(UnitCost(6.0, 1.0f), 0.001f);
    QCOMPARE(UnitCost(6.0, 60.0f), 0.06f);

    auto texts = ZeitEinheitTexte(12.0f, 7.5f, UnitCost(12.0, 7.5f), u"€"_s);
    QCOMPARE(texts.lblEinheit, Local(u"7.5s"_s));
    QCOMPARE(texts.lblEuroProMinute, Local(u"0.015 €"_s));
    texts = VolumenEinheitTexte(500.0f, 0.015f, u"DM"_s);
    QCOMPARE(texts.lblEinheit, Local(u"0.5MB"_s));
    QCOMPARE(texts.lblEuroProMinute, Local(u"0.015 DM"_s));
  }
};

QTEST_APPLESS_MAIN(TestTariffRates)
#include "test_tariff_rates.moc"
