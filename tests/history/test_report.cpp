#include "history/Report.h"

#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

// The deciphered lines of a record.
QList<QByteArray> Record(const QByteArray& start, const QByteArray& duration, const QByteArray& cost,
                         const QByteArray& bytes, const QByteArray& entry = "Stick",
                         const QByteArray& tariff = "Funk - Tag.tel", const QByteArray& user = "Anna") {
  return {"S01.05.2024", start, duration, "S" + cost, "3", "0", "0", bytes, entry, tariff, user, ""};
}

}  // namespace

class TestReport : public QObject {
  Q_OBJECT

 private slots:
  void dayMinutesAreJudgedAtTheEndOfEachMinute() {
    const std::tuple<QTime, qint64, qint64> cases[] = {
        {QTime(19, 59), 2, 0},       {QTime(7, 59), 2, 2},       {QTime(7, 59, 59), 1, 1},
        {QTime(0, 0), 1440, 720},    {QTime(19, 0), 3000, 1499}, {QTime(12, 0), 0, 0},
        {QTime(23, 30), 60 * 9, 31},
    };
    for (const auto& [start, minutes, day] : cases) {
      QCOMPARE(CountDayMinutes(start, minutes), day);
    }
  }

  void periodsDivideByTheirOwnLengths() {
    const std::tuple<const char*, QDate, QDate, int> cases[] = {
        {"Dieser Monat", QDate(2024, 2, 10), {}, 28},  // February has 28 days in leap years too
        {"Dieser Monat", QDate(2024, 5, 1), {}, 31},
        {"Letzter Monat", QDate(2024, 3, 31), {}, 31},  // 31 February rolls into March
        {"Letzter Monat", QDate(2024, 1, 15), {}, 31},
        {"Vorletzter Monat", QDate(2024, 6, 15), {}, 30},
        {"Dieses Jahr", QDate(2024, 6, 15), {}, 365},
        {"Letztes Jahr", QDate(2024, 6, 15), {}, 7},
        {"Gesamt", QDate(2024, 6, 15), QDate(2024, 6, 15), 7},
        {"Gesamt", QDate(2024, 6, 15), QDate(2024, 6, 5), 10},
    };
    for (const auto& [period, today, earliest, days] : cases) {
      QCOMPARE(GetPeriodDays(QString::fromUtf8(period), today, earliest), days);
    }
  }

  void recordsAddUpToSentencesAndTotals() {
    ReportTotals totals;
    QVERIFY(AddToReport(totals, Record("07:59:00", "01:00:40", "1,50", "2500000")));
    QVERIFY(AddToReport(totals, Record("19:59:00", "00:02:30", "0,25", "500000", "DSL", "Funk - Nacht.atl")));
    QVERIFY(
        AddToReport(totals, Record("22:00:00", "00:31:50", "0,25", "0", "DSL", "Funk - Tag.tel", "Bert")));
    // A duration past a day's clock adds its hours alone; a record short of
    // a line is passed over.
    QVERIFY(AddToReport(totals, Record("10:00:00", "25:10:30", "0", "0", "DSL", "Funk - Tag.tel", "Bert")));
    QList<QByteArray> shortRecord = Record("10:00:00", "01:00:00", "1", "1");
    shortRecord.resize(10);
    QVERIFY(!AddToReport(totals, shortRecord));

    QCOMPARE(totals.connections, qint64(4));
    // From 07:59 for an hour: 08:00 to 08:59 is day; 25 hours from 10:00 hold
    // 12 day hours and the hour from 10:01 to 11:00.
    QCOMPARE(totals.dayMinutes, qint64(60 + 780));
    QCOMPARE(totals.nightMinutes, qint64(2 + 31 + 720));
    const ReportTexts texts = ReportSentences(totals, 31, u"[Alle]"_s, u"€"_s);
    QCOMPARE(texts.dauer, u"26:35:00"_s);
    QCOMPARE(texts.kosten, u"2,00 €"_s);
    QCOMPARE(texts.transfer, u"3000 KB"_s);
    QCOMPARE(
        texts.sentences[0],
        QStringLiteral(
            "Sie surfen mehr tagsüber als nachts (52% zwischen 8 und 20 Uhr, 48% in der restlichen Zeit)."));
    // On equal counts the name met first is named.
    QCOMPARE(texts.sentences[7], u"Die meistgewählte DFÜ Verbindung ist: DSL (3 Verbindungen)"_s);
    QCOMPARE(texts.sentences[8], u"Der meistgenutzte Tarif lautet: Funk - Tag.tel (3 Verbindungen)"_s);
    QCOMPARE(texts.sentences[9], u"Der aktivste Benutzer ist: Anna (2 Verbindungen)"_s);
    QCOMPARE(texts.sentences[1], u"Die durchschnittliche Verbindungsdauer liegt bei 399 Minuten."_s);
    QCOMPARE(texts.sentences[2],
             QStringLiteral(
                 "Pro Tag verbringen sie durchschnittlich 51 Minuten, pro Woche 6,0 Stunden im Internet."));
    QCOMPARE(texts.sentences[6],
             QStringLiteral("Pro Tag ergibt sich ein Transfervolumen von durchschnittlich 97 "
                            "KB, pro Woche 1 MB."));
    QCOMPARE(texts.sentences[10], u"Das entspricht einem Normalnutzer mit sehr geringem Datenaufkommen."_s);

    const ReportTexts oneUser = ReportSentences(totals, 31, u"Anna"_s, u"€"_s);
    QCOMPARE(oneUser.sentences[9],
             u"Stellen Sie als Benutzer \"[Alle]\" ein um den aktivsten Benutzer zu ermitteln."_s);

    // No records give the short none.
    const ReportTexts none = ReportSentences({}, 31, u"[Alle]"_s, u"€"_s);
    QCOMPARE(none.sentences[0], u"Eine Auswertung ist aufgrund unzureichender Daten nicht möglich."_s);
    QCOMPARE(none.sentences[9], u"Der aktivste Benutzer ist nicht ermittelbar."_s);
    QCOMPARE(none.sentences[3], u"Die durchschnittlichen Verbindungskosten liegen bei 0,00 €."_s);
    QCOMPARE(none.dauer + ' ' + none.kosten + ' ' + none.transfer, u"00:00:00 0,00 € 0 KB"_s);
  }

  void classesChangeAboveTheirBounds() {
    const std::tuple<qint64, double, const char*> cases[] = {
        {20, 1000, "Das entspricht einem Wenignutzer mit sehr geringem Datenaufkommen."},
        {21, 1001, "Das entspricht einem Gelegenheitsnutzer mit geringem Datenaufkommen."},
        {51, 4001, "Das entspricht einem Normalnutzer mit normalen Datenaufkommen."},
        {101, 20001, "Das entspricht einem Vielnutzer mit großem Datenaufkommen."},
        {201, 50001, "Das entspricht einem Powernutzer mit sehr großem Datenaufkommen."},
        {201, 100001, "Das entspricht einem Powernutzer mit imensen Datenaufkommen."},
    };
    for (const auto& [minutesPerDay, kbPerDay, sentence] : cases) {
      ReportTotals totals;
      totals.connections = 2;
      totals.minutes = minutesPerDay * 10;
      totals.kbSum = kbPerDay * 10;
      QCOMPARE(ReportSentences(totals, 10, u"[Alle]"_s, u"€"_s).sentences[10], QString::fromUtf8(sentence));
    }
  }
};

QTEST_APPLESS_MAIN(TestReport)
#include "test_report.moc"
