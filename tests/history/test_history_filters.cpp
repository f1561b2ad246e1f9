#include "history/ListPeriod.h"
#include "history/RecordDates.h"
#include "history/RecordFilter.h"
#include "history/RecordWalk.h"
#include "support/RecordFiles.h"
#include "support/TempDataDir.h"

#include <QFile>
#include <QTest>

using namespace minutor;

class TestHistoryFilters : public QObject {
  Q_OBJECT

 private slots:
  void recordFileDates() {
    QCOMPARE(GetRecordFileDate(QStringLiteral("05032026-090407.con")), QDate(2026, 3, 5));
    QCOMPARE(GetRecordFileDate(QStringLiteral("0503202-090407.con")), QDate(202, 3, 5));
    QVERIFY(!GetRecordFileDate(QStringLiteral("31022026-090407.con")).isValid());
    QVERIFY(!GetRecordFileDate(QStringLiteral("2026-03-05.con")).isValid());
    QVERIFY(!GetRecordFileDate(QStringLiteral("notes.con")).isValid());
    QCOMPARE(BuildDate(2026, 3, 0), QDate(2026, 2, 28));
    QCOMPARE(BuildDate(2026, 0, 15), QDate(2025, 12, 15));
    QCOMPARE(BuildDate(2026, 4, 31), QDate(2026, 5, 1));
    QCOMPARE(BuildDate(2026, 1, -1), QDate(2025, 12, 30));
  }

  void periods_data() {
    QTest::addColumn<QString>("item");
    QTest::addColumn<QDate>("today");
    QTest::addColumn<QDate>("date");
    QTest::addColumn<bool>("passes");
    const QDate may(2026, 5, 20);
    QTest::newRow("Gesamt takes a foreign name") << "Gesamt" << may << QDate() << true;
    QTest::newRow("Heute") << "Heute" << may << may << true;
    QTest::newRow("Heute not yesterday") << "Heute" << may << QDate(2026, 5, 19) << false;
    QTest::newRow("Gestern over the month") << "Gestern" << QDate(2026, 3, 1) << QDate(2026, 2, 28) << true;
    QTest::newRow("Vorgestern over the year")
        << "Vorgestern" << QDate(2026, 1, 1) << QDate(2025, 12, 30) << true;
    QTest::newRow("Dieser Monat asks the year") << "Dieser Monat" << may << QDate(2025, 5, 3) << false;
    QTest::newRow("Letzter Monat any year") << "Letzter Monat" << may << QDate(2019, 4, 3) << true;
    QTest::newRow("Letzter Monat in January")
        << "Letzter Monat" << QDate(2026, 1, 10) << QDate(2025, 12, 3) << true;
    QTest::newRow("Letzter Monat on 31 March is March")
        << "Letzter Monat" << QDate(2026, 3, 31) << QDate(2026, 3, 2) << true;
    QTest::newRow("Letzter Monat on 31 March not Feb")
        << "Letzter Monat" << QDate(2026, 3, 31) << QDate(2026, 2, 2) << false;
    QTest::newRow("Vorletzter Monat")
        << "Vorletzter Monat" << QDate(2026, 2, 10) << QDate(2024, 12, 24) << true;
    QTest::newRow("Dieses Jahr") << "Dieses Jahr" << may << QDate(2026, 12, 31) << true;
    QTest::newRow("Letztes Jahr") << "Letztes Jahr" << QDate(2024, 2, 29) << QDate(2023, 1, 1) << true;
    QTest::newRow("Letztes Jahr not this") << "Letztes Jahr" << may << may << false;
    QTest::newRow("Definiert inside") << "Definiert" << may << QDate(2026, 1, 31) << true;
    QTest::newRow("Definiert after") << "Definiert" << may << QDate(2026, 2, 1) << false;
    QTest::newRow("unknown item") << "Irgendwann" << may << may << false;
  }

  void periods() {
    QFETCH(QString, item);
    QFETCH(QDate, today);
    QFETCH(QDate, date);
    QFETCH(bool, passes);
    test::TempDataDir data;
    QVERIFY(WritePeriodFile(data.dir(), QStringLiteral("01.01.2026"), QStringLiteral("31.01.2026")));
    QCOMPARE(MakeListPeriod(data.dir(), item, today).Passes(date), passes);
  }

  void customPeriodWithoutDatesAdmitsNothing() {
    test::TempDataDir data;
    const QDate today(2026, 5, 20);
    QVERIFY(!MakeListPeriod(data.dir(), QStringLiteral("Definiert"), today).Passes(today));
    data.write(QStringLiteral("Config/Period.cfg"), "gestern\r\n");
    QVERIFY(!MakeListPeriod(data.dir(), QStringLiteral("Definiert"), today).Passes(today));
  }

  void providerTariffAndUser_data() {
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("provider");
    QTest::addColumn<QString>("tariff");
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("matches");
    const QString all = kAlle;
    const QString file = QStringLiteral("Funkwelle - Tag und Nacht.tel");
    QTest::newRow("all") << all << all << all << file << true;
    QTest::newRow("tariff ignored under all providers") << all << all << "M - Anders" << file << true;
    QTest::newRow("provider") << all << "Funkwelle" << all << file << true;
    QTest::newRow("other provider") << all << "Funk" << all << file << false;
    QTest::newRow("tariff") << all << "Funkwelle"
                            << "M - Tag und Nacht" << file << true;
    QTest::newRow("tariff of the other kind") << all << "Funkwelle"
                                              << "A - Tag und Nacht" << file << false;
    QTest::newRow("fetched tariff, upper case") << all << "Funkwelle"
                                                << "A - Tag und Nacht"
                                                << "Funkwelle - Tag und Nacht.ATL" << true;
    QTest::newRow("provider with a dash never matches")
        << all << "Funk-Welle" << all << "Funk-Welle - Nacht.tel" << false;
    QTest::newRow("no dash") << all << "Funkwelle" << all << "Funkwelle.tel" << false;
    QTest::newRow("user exact") << "Anna" << all << all << file << true;
    QTest::newRow("user case differs") << "anna" << all << all << file << false;
    QTest::newRow("no tariff") << all << all << all << QString() << false;
  }

  void providerTariffAndUser() {
    QFETCH(QString, user);
    QFETCH(QString, provider);
    QFETCH(QString, tariff);
    QFETCH(QString, file);
    QFETCH(bool, matches);
    RecordFilter filter{user, provider, tariff};
    QCOMPARE(RecordMatches(filter, file, QStringLiteral("Anna")), matches);
    filter.userCase = Qt::CaseInsensitive;
    QCOMPARE(RecordMatches(filter, file, QStringLiteral("ANNA")), matches || (user == QLatin1String("anna")));
  }

  void walkReadsOnlyWantedRecordsAndCanStop() {
    test::TempDataDir data;
    test::WriteRecord(data, QStringLiteral("01052026-100000.con"),
                      test::RecordLines("01.05.2026", "10:00:00", "0:01:00", "1,00"));
    test::WriteRecord(data, QStringLiteral("02052026-100000.con"),
                      test::RecordLines("02.05.2026", "10:00:00", "0:02:00", "2,00"));
    test::WriteRecord(data, QStringLiteral("01042026-100000.con"),
                      test::RecordLines("01.04.2026", "10:00:00", "0:03:00", "3,00"));
    data.write(QStringLiteral("Verbindungen/notes.txt"), "x");
    data.write(QStringLiteral("Verbindungen/03052026-100000.con"), "");
    QFile::setPermissions(data.path(QStringLiteral("Verbindungen/03052026-100000.con")), {});
    const bool unreadable =
        !QFile(data.path(QStringLiteral("Verbindungen/03052026-100000.con"))).open(QIODevice::ReadOnly);

    QStringList seen;
    QStringList durations;
    const WalkResult result = WalkRecords(
        data.dir(),
        [&](const QString& name, const QDate& date) {
          seen.append(name);
          return date.month() == 5;
        },
        [&](const RecordFile& record) {
          durations.append(QString::fromLatin1(record.Line(3)));
          QCOMPARE(record.cipher.size(), record.fields.size());
          QCOMPARE(DecryptField(record.cipher.value(7)), record.Line(8));
        },
        nullptr, true);
    QCOMPARE(seen.size(), 4);  // the .txt is not a record
    // Running as root, the file without rights is read: empty, as it is.
    QCOMPARE(durations,
             (unreadable ? QStringList{"0:01:00", "0:02:00"} : QStringList{"0:01:00", "0:02:00", ""}));
    QCOMPARE(result.read, unreadable ? 2 : 3);
    QCOMPARE(result.unreadable, unreadable ? 1 : 0);

    std::atomic<bool> cancel = true;
    const WalkResult stopped = WalkRecords(
        data.dir(), [](const QString&, const QDate&) { return true; }, [](const RecordFile&) {}, &cancel);
    QVERIFY(stopped.cancelled);
    QCOMPARE(stopped.read, 0);

    // A long history is read ahead on other threads: still every file once,
    // in name order, and a cancel from the caller stops it where it stands.
    QStringList names;
    for (int i = 0; i < 700; ++i) {
      const QDate date = QDate(2020, 1, 1).addDays(i * 37 % 2000);
      const QString time = QStringLiteral("%1:00:00").arg(i % 24, 2, 10, QLatin1Char('0'));
      names.append(date.toString(QStringLiteral("ddMMyyyy")) + QLatin1Char('-') +
                   QString(time).remove(QLatin1Char(':')) + QStringLiteral(".con"));
      test::WriteRecord(data, names.last(),
                        test::RecordLines(date.toString(QStringLiteral("dd.MM.yyyy")).toLatin1(), time.toLatin1(),
                                          "0:01:00", "1,00"));
    }
    QStringList handed;
    cancel = false;
    const WalkResult some = WalkRecords(
        data.dir(), [](const QString&, const QDate& date) { return date.year() < 2026; },
        [&](const RecordFile& record) {
          handed.append(record.name);
          QCOMPARE(record.Line(2), record.name.mid(9, 2).toLatin1() + ":00:00");
          cancel = handed.size() == 500;
        },
        &cancel);
    QVERIFY(some.cancelled);
    QCOMPARE(some.read, 500);
    handed.clear();
    const WalkResult whole = WalkRecords(
        data.dir(), [](const QString&, const QDate& date) { return date.year() < 2026; },
        [&](const RecordFile& record) { handed.append(record.name); });
    std::sort(names.begin(), names.end());
    QCOMPARE(whole.read, 700);
    QCOMPARE(handed, names);
  }

  void usersListStartsWithAll() {
    test::TempDataDir data;
    data.write(QStringLiteral("Benutzer/Anna.usr"), "");
    data.write(QStringLiteral("Benutzer/Bert.USR"), "");
    QCOMPARE(GetUsers(data.dir()), (QStringList{kAlle, "Anna", "Bert"}));
  }
};

QTEST_GUILESS_MAIN(TestHistoryFilters)
#include "test_history_filters.moc"
