#include "history/ListPeriod.h"
#include "history/RecordDates.h"
#include "history/RecordFilter.h"
#include "history/RecordWalk.h"
#include "support/RecordFiles.h"
#include "support/TempDataDir.h"

#include <QFile>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

class TestHistoryFilters : public QObject {
  Q_OBJECT

 private slots:
  void recordFileDates() {
    QCOMPARE(GetRecordFileDate(u"05032026-090407.con"_s), QDate(2026, 3, 5));
    QCOMPARE(GetRecordFileDate(u"0503202-090407.con"_s), QDate(202, 3, 5));
    for (const char* bad : {"31022026-090407.con", "2026-03-05.con", "notes.con"}) {
      QVERIFY2(!GetRecordFileDate(QString::fromLatin1(bad)).isValid(), bad);
    }
    QCOMPARE(BuildDate(2026, 3, 0), QDate(2026, 2, 28));
    QCOMPARE(BuildDate(2026, 0, 15), QDate(2025, 12, 15));
    QCOMPARE(BuildDate(2026, 4, 31), QDate(2026, 5, 1));
    QCOMPARE(BuildDate(2026, 1, -1), QDate(2025, 12, 30));
  }

  void periods() {
    test::TempDataDir data;
    QVERIFY(WritePeriodFile(data.dir(), u"01.01.2026"_s, u"31.01.2026"_s));
    const QDate may(2026, 5, 20);
    const std::tuple<const char*, QDate, QDate, bool> cases[] = {
        {"Gesamt", may, QDate(), true},  // takes a name without a date
        {"Heute", may, may, true},
        {"Heute", may, QDate(2026, 5, 19), false},
        {"Gestern", QDate(2026, 3, 1), QDate(2026, 2, 28), true},
        {"Vorgestern", QDate(2026, 1, 1), QDate(2025, 12, 30), true},
        {"Dieser Monat", may, QDate(2025, 5, 3), false},  // asks the year
        {"Letzter Monat", may, QDate(2019, 4, 3), true},  // any year
        {"Letzter Monat", QDate(2026, 1, 10), QDate(2025, 12, 3), true},
        {"Letzter Monat", QDate(2026, 3, 31), QDate(2026, 3, 2), true},  // 31 February is March
        {"Vorletzter Monat", QDate(2026, 2, 10), QDate(2024, 12, 24), true},
        {"Dieses Jahr", may, QDate(2026, 12, 31), true},
        {"Letztes Jahr", QDate(2024, 2, 29), QDate(2023, 1, 1), true},
        {"Letztes Jahr", may, may, false},
        {"Definiert", may, QDate(2026, 1, 31), true},
        {"Definiert", may, QDate(2026, 2, 1), false},
        {"Irgendwann", may, may, false},
    };
    for (const auto& [item, today, date, passes] : cases) {
      QVERIFY2(MakeListPeriod(data.dir(), QString::fromUtf8(item), today).Passes(date) == passes,
               qPrintable(QString::fromUtf8(item) + date.toString(Qt::ISODate)));
    }
    // A custom period without its dates admits nothing.
    test::TempDataDir empty;
    QVERIFY(!MakeListPeriod(empty.dir(), u"Definiert"_s, may).Passes(may));
    empty.write(u"Config/Period.cfg"_s, "gestern\r\n");
    QVERIFY(!MakeListPeriod(empty.dir(), u"Definiert"_s, may).Passes(may));
  }

  void providerTariffAndUser() {
    const char* all = "[Alle]";
    const char* file = "Funkwelle - Tag und Nacht.tel";
    const std::tuple<const char*, const char*, const char*, const char*, bool> cases[] = {
        {all, all, all, file, true},
        {all, all, "M - Anders", file, true},  // the tariff is ignored under all providers
        {all, "Funkwelle", all, file, true},
        {all, "Funk", all, file, false},
        {all, "Funkwelle", "M - Tag und Nacht", file, true},
        {all, "Funkwelle", "A - Tag und Nacht", file, false},  // the other kind
        {all, "Funkwelle", "A - Tag und Nacht", "Funkwelle - Tag und Nacht.ATL", true},
        {all, "Funk-Welle", all, "Funk-Welle - Nacht.tel", false},  // a provider with a dash never matches
        {all, "Funkwelle", all, "Funkwelle.tel", false},
        {"Anna", all, all, file, true},
        {"anna", all, all, file, false},
        {all, all, all, "", false},
    };
    QCOMPARE(kAlle, QString::fromLatin1(all));
    for (const auto& [user, provider, tariff, file, matches] : cases) {
      RecordFilter filter{QString::fromLatin1(user), QString::fromLatin1(provider),
                          QString::fromLatin1(tariff)};
      const QString name = QString::fromLatin1(file);
      QVERIFY2(RecordMatches(filter, name, u"Anna"_s) == matches, file);
      filter.userCase = Qt::CaseInsensitive;
      QVERIFY2(RecordMatches(filter, name, u"ANNA"_s) == (matches || filter.user == "anna"), file);
    }
  }

  void walkReadsOnlyWantedRecordsAndCanStop() {
    test::TempDataDir data;
    test::WriteRecord(data, u"01052026-100000.con"_s,
                      test::RecordLines("01.05.2026", "10:00:00", "0:01:00", "1,00"));
    test::WriteRecord(data, u"02052026-100000.con"_s,
                      test::RecordLines("02.05.2026", "10:00:00", "0:02:00", "2,00"));
    test::WriteRecord(data, u"01042026-100000.con"_s,
                      test::RecordLines("01.04.2026", "10:00:00", "0:03:00", "3,00"));
    data.write(u"Verbindungen/notes.txt"_s, "x");
    data.write(u"Verbindungen/03052026-100000.con"_s, "");
    QFile::setPermissions(data.path(u"Verbindungen/03052026-100000.con"_s), {});
    const bool unreadable =
        !QFile(data.path(u"Verbindungen/03052026-100000.con"_s)).open(QIODevice::ReadOnly);

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
      const QString time = u"%1:00:00"_s.arg(i % 24, 2, 10, QLatin1Char('0'));
      names.append(date.toString(u"ddMMyyyy"_s) + QLatin1Char('-') +
                   QString(time).remove(QLatin1Char(':')) + u".con"_s);
      test::WriteRecord(data, names.last(),
                        test::RecordLines(date.toString(u"dd.MM.yyyy"_s).toLatin1(), time.toLatin1(),
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

    // The users' list starts with all of them.
    data.write(u"Benutzer/Anna.usr"_s, "");
    data.write(u"Benutzer/Bert.USR"_s, "");
    QCOMPARE(GetUsers(data.dir()), (QStringList{kAlle, "Anna", "Bert"}));
  }
};

QTEST_GUILESS_MAIN(TestHistoryFilters)
#include "test_history_filters.moc"
