#include "TariffText.h"
#include "support/TempDataDir.h"
#include "tariffs/PriceTexts.h"
#include "tariffs/RateLookup.h"
#include "tariffs/TariffPeeks.h"

#include <QTest>

using namespace minutor;
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
    data.write(QStringLiteral("Tarife/") + name, test::Crlf(lines));
    return name;
  }

  double price(const QString& name, const QDateTime& moment, bool feiertag = false) {
    return GetTarifPreis(data.dir(), name, moment, feiertag);
  }

 private slots:
  void zonesApplyBetweenTheirHoursOnTheirDays() {
    const QString file = writeTime(QStringLiteral("Zeit - Tag.tel"),
                                   {Zone(8, 18, "3", false), Zone(18, 8, "1", false), Zone(0, 0, "2", true)});
    QCOMPARE(price(file, At(1, 8)), 3.0);
    QCOMPARE(price(file, At(1, 18)), 3.0);
    // 18 to 8 doesn't wrap over midnight: the night costs nothing.
    QCOMPARE(price(file, At(1, 18, 0, 1)), 0.0);
    QCOMPARE(price(file, At(7, 23, 59, 59)), 2.0);  // 0 to 0 is the whole day

    const QString workdays = writeTime(QStringLiteral("Zeit - Werktag.tel"), {Zone(0, 24, "3", false)});
    QCOMPARE(price(workdays, At(6, 12)), 0.0);
    QCOMPARE(price(workdays, At(2, 23, 59, 59)), 3.0);

    // The last zone that applies wins.
    const QString evening =
        writeTime(QStringLiteral("Zeit - Abend.tel"),
                  {Zone(8, 18, "3", false), Zone(18, 24, "1", false), Zone(24, 8, "5", false)});
    QCOMPARE(price(evening, At(1, 18)), 1.0);
    QCOMPARE(price(evening, At(1, 0)), 5.0);  // 24 as a start is midnight
    QCOMPARE(price(evening, At(1, 8)), 5.0);
    QCOMPARE(price(evening, At(1, 8, 0, 1)), 3.0);

    const QString wholeDay =
        writeTime(QStringLiteral("Zeit - Ganztags.tel"), {Zone(8, 8, "4", false), Zone(24, 0, "6", true)});
    QCOMPARE(price(wholeDay, At(1, 3)), 4.0);
    QCOMPARE(price(wholeDay, At(7, 3)), 6.0);
  }

  void aHolidayCountsOnlyThroughAWeekendZoneBehind() {
    const QString last =
        writeTime(QStringLiteral("Zeit - Hinten.tel"), {Zone(0, 24, "3", false), Zone(0, 24, "1", true)});
    const QString first =
        writeTime(QStringLiteral("Zeit - Vorn.tel"), {Zone(0, 24, "1", true), Zone(0, 24, "3", false)});
    QCOMPARE(price(last, At(5, 11), true), 1.0);
    QCOMPARE(price(first, At(5, 11), true), 3.0);
    QCOMPARE(price(last, At(5, 11), false), 3.0);
    QCOMPARE(price(first, At(6, 11), false), 1.0);

    // The day class compares "Ja" and "Nein" exactly.
    QList<QByteArray> zone = Zone(0, 24, "3", true);
    zone[5] = "Wochenende:ja";
    QCOMPARE(price(writeTime(QStringLiteral("Zeit - Klein.tel"), {zone}), At(6, 11)), 0.0);
  }

  void zonePricesTakeEitherSignAndStopAtTheFirstBadOne() {
    const QString file =
        writeTime(QStringLiteral("Zeit - Zeichen.tel"),
                  {Zone(0, 12, "3,9", false), Zone(12, 24, " 3.25 ", false), Zone(0, 24, "kaputt", true)});
    QCOMPARE(price(file, At(1, 9)), 3.9);
    QCOMPARE(price(file, At(1, 12)), 3.25);  // the bad zone doesn't apply, its price isn't read
    const QString euro = QStringLiteral("€");
    QCOMPARE(KatalogPreisText(data.dir(), file, At(1, 9), false, euro), Local(QStringLiteral("0.0390 €")));
    QCOMPARE(AktuellerPreisText(data.dir(), file, At(1, 9), false, euro),
             Local(QStringLiteral("0.039 € pro Minute")));

    const QString broken =
        writeTime(QStringLiteral("Zeit - Kaputt.tel"),
                  {Zone(0, 24, "2", false), Zone(0, 24, "1,5 Werktag", false), Zone(0, 24, "7", false)});
    QCOMPARE(price(broken, At(1, 9)), 2.0);

    // A last group cut short is no zone; what came before still counts.
    data.write(QStringLiteral("Tarife/Zeit - Kurz.tel"),
               test::Crlf(test::TimeHead() + Zone(0, 24, "2", false) + Zone(0, 24, "9", false).mid(0, 4)));
    QCOMPARE(price(QStringLiteral("Zeit - Kurz.tel"), At(1, 9)), 2.0);

    QCOMPARE(price(QStringLiteral("zeit - KURZ.TEL"), At(1, 9)), 2.0);
    QCOMPARE(price(QStringLiteral("Fehlt - Ganz.tel"), At(1, 9)), 0.0);
  }

  void aVolumeTariffHasOnePriceReadByItsPlace() {
    data.write(QStringLiteral("Tarife/Volumen - Eins.tel"),
               test::Crlf({"[Providerdaten]", "volumenabrechnung:JA", "VOLUMENKOSTEN:2,5",
                           "Volumeneinheit:0,5", "[Tarifzonen]", "Zone:x", "Von:0", "Bis:24", "Pfennig:9",
                           "Einheit:60", "Wochenende:Nein"}));
    const QString file = QStringLiteral("Volumen - Eins.tel");
    QCOMPARE(price(file, At(1, 3)), 2.5);
    QCOMPARE(price(file, At(7, 23, 59, 59), true), 2.5);
    const QString euro = QStringLiteral("€");
    QCOMPARE(AktuellerPreisText(data.dir(), file, At(1, 3), false, euro),
             Local(QStringLiteral("0.025 € pro 0.5MB")));
    QCOMPARE(AktuellerPreisNachFeiertagText(data.dir(), file, At(1, 3), true, euro),
             Local(QStringLiteral("0.025 € pro Minute")));
    QCOMPARE(KatalogPreisText(data.dir(), file, At(1, 3), false, euro), Local(QStringLiteral("0.0250 €")));

    data.write(QStringLiteral("Tarife/Volumen - Ende.tel"), test::Crlf({"Volumenabrechnung:Ja"}));
    QCOMPARE(price(QStringLiteral("Volumen - Ende.tel"), At(1, 3)), 0.0);
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

    auto texts = ZeitEinheitTexte(12.0f, 7.5f, UnitCost(12.0, 7.5f), QStringLiteral("€"));
    QCOMPARE(texts.lblEinheit, Local(QStringLiteral("7.5s")));
    QCOMPARE(texts.lblEuroProMinute, Local(QStringLiteral("0.015 €")));
    texts = VolumenEinheitTexte(500.0f, 0.015f, QStringLiteral("DM"));
    QCOMPARE(texts.lblEinheit, Local(QStringLiteral("0.5MB")));
    QCOMPARE(texts.lblEuroProMinute, Local(QStringLiteral("0.015 DM")));
  }
};

QTEST_APPLESS_MAIN(TestTariffRates)
#include "test_tariff_rates.moc"
