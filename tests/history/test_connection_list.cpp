#include "history/ConnectionList.h"
#include "history/ListColouring.h"
#include "history/ListConfig.h"
#include "history/ListSort.h"
#include "history/NewestRun.h"
#include "support/RecordFiles.h"
#include "support/TempDataDir.h"

#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

ListQuery AllOf(const DataDir& dir, const QString& period = u"Gesamt"_s) {
  ListQuery query;
  query.period = MakeListPeriod(dir, period, QDate(2026, 5, 20));
  query.waehrung = u"€"_s;
  return query;
}

QStringList Column(const QList<ListRow>& rows, int column) {
  QStringList cells;
  for (const ListRow& row : rows) {
    cells.append(row.Cell(column).toString());
  }
  return cells;
}

// A small history: two days in May, one in April, and records that the list
// must leave out or take as they are.
void WriteHistory(const test::TempDataDir& data) {
  using test::RecordLines;
  test::WriteRecord(data, "20052026-090000.con", RecordLines("20.05.2026", "09:00:00", "60:30:45", "1,00"));
  test::WriteRecord(
      data, "20052026-180000.con",
      RecordLines("20.05.2026", "18:00:00", "50:40:30", "10", "Funkwelle - Tag und Nacht.atl", "Bert"));
  test::WriteRecord(data, "03042026-120000.con",
                    RecordLines("03.04.2026", "12:00:00", "0:00:15", "9,5", "Netzwerk - Flat.tel"));
  QList<QByteArray> noUser = RecordLines("21.05.2026", "08:00:00", "0:01:00", "5,00");
  noUser[10] = "";
  test::WriteRecord(data, "21052026-080000.con", noUser);
  test::WriteRecord(data, "21052026-090000.con",
                    RecordLines("21.05.2026", "09:00:00", "0:01:00", "5,00").mid(0, 10));
  // A name that holds no date passes "Gesamt" only; the date column comes
  // from the record itself.
  test::WriteRecord(data, "kopie-090000.con", RecordLines("01.01.2020", "07:00:00", "0:00:05", "0,2"));
}

}  // namespace

class TestConnectionList : public QObject {
  Q_OBJECT

 private slots:
  void rowsAndTotals() {
    test::TempDataDir data;
    WriteHistory(data);
    ListQuery query = AllOf(data.dir());
    ListResult all = GetConnections(data.dir(), query);
    QCOMPARE(all.rows.size(), 4);
    const ListRow& first = all.rows.at(0);  // folder order: 03042026 first
    QCOMPARE(first.Cells(), (QStringList{"03.04.2026", "12:00:00", "00:00:15", "9,500", "3", "1500", "500",
                                         "2000", "Mobilfunk-Stick", "Netzwerk - Flat", "Anna", "",
                                         "03042026-120000.con", "20260403"}));
    QCOMPARE(all.totalDuration, u"111:11:35"_s);
    QCOMPARE(all.totalCost, u"20,70 €"_s);

    query.period = MakeListPeriod(data.dir(), u"Heute"_s, QDate(2026, 5, 20));
    query.filter.provider = u"Funkwelle"_s;
    query.filter.tariff = u"A - Tag und Nacht"_s;
    const ListResult today = GetConnections(data.dir(), query);
    QCOMPARE(Column(today.rows, kColumnUser), QStringList{"Bert"});
    QCOMPARE(today.totalDuration, u"50:40:30"_s);
    QCOMPARE(today.walk.read, 2);  // the period is judged on the name before a file is read

    query = AllOf(data.dir());
    query.filter.user = u"Anna"_s;
    QCOMPARE(GetConnections(data.dir(), query).rows.size(), 3);
    query.filter.user = u"Nobody"_s;
    const ListResult none = GetConnections(data.dir(), query);
    QCOMPARE(none.totalDuration, u"00:00:00"_s);
    QCOMPARE(none.totalCost, u"0,00 €"_s);
  }

  void netViewAndClassIcons() {
    // The net view deducts the tax from the gross.
    for (const auto& [rate, cost] : {std::pair{16, "0,840"}, {0, "1,000"}, {100, "0,000"}}) {
      test::TempDataDir data;
      test::WriteRecord(data, "20052026-090000.con",
                        test::RecordLines("20.05.2026", "09:00:00", "0:10:00", "1,00"));
      ListQuery query = AllOf(data.dir());
      query.tax = static_cast<quint8>(rate);
      const ListResult result = GetConnections(data.dir(), query);
      QCOMPARE(result.rows.at(0).Cell(kColumnKosten).toString(), QString::fromLatin1(cost));
      QCOMPARE(result.totalCost, QString::fromLatin1(cost).chopped(1) + u" €"_s);
    }

    const QByteArray costs = "1\r\n1\r\n2\r\n3\r\n";
    const std::tuple<QByteArray, QByteArray, int, int> cases[] = {
        {costs, "1,00", -1, 0},  // equal to a limit stays below
        {costs, "1,001", -1, 1},
        {costs, "3,5", -1, 3},
        {"1\r\n3\r\n2\r\n1\r\n", "2,5", -1, 3},  // limits out of order: the last that holds
        {costs, "2,2", 16, 1},                   // the net value is classed
        {"1\r\n", "0,01", -1, 3},                // empty limits
        {"2\r\n\r\n\r\n\r\n0:00:01\r\n0:00:02\r\n0:00:03\r\n", "1,00", -1, 0},  // duration: always 0
        // The cipher text of line 8 has no leading digits: 0 KB, below limit 0.5.
        {"3\r\n\r\n\r\n\r\n\r\n\r\n\r\n0,5\r\n1\r\n2\r\n", "1,00", -1, 0},
        {"x\r\n", "9", -1, 0},
    };
    for (const auto& [config, cost, tax, icon] : cases) {
      test::TempDataDir data;
      data.write(u"Config/Difference.cfg"_s, config);
      test::WriteRecord(data, "20052026-090000.con",
                        test::RecordLines("20.05.2026", "09:00:00", "0:10:00", cost));
      ListQuery query = AllOf(data.dir());
      query.colouring = ReadColouring(data.dir());
      if (tax >= 0) {
        query.tax = static_cast<quint8>(tax);
      }
      QVERIFY2(GetConnections(data.dir(), query).rows.at(0).icon == icon, config + cost);
    }
  }

  void sorting() {
    test::TempDataDir data;
    using test::RecordLines;
    test::WriteRecord(data, "01052026-100000.con", RecordLines("01.05.2026", "10:00:00", "0:01:00", "9,00"));
    test::WriteRecord(data, "01052026-230000.con",
                      RecordLines("01.05.2026", "23:00:00", "10:00:00", "10,00"));
    test::WriteRecord(data, "02042026-080000.con", RecordLines("02.04.2026", "08:00:00", "2:00:00", "0,50"));
    test::WriteRecord(data, "31122025-080000.con", RecordLines("31.12.2025", "08:00:00", "0:30:00", "2,00"));
    QList<ListRow> rows = GetConnections(data.dir(), AllOf(data.dir())).rows;

    SortRows(rows, SortByHeader(kColumnDatum));
    QCOMPARE(Column(rows, kColumnFile), (QStringList{"01052026-230000.con", "01052026-100000.con",
                                                     "02042026-080000.con", "31122025-080000.con"}));
    SortRows(rows, SortByHeader(kColumnDauer));
    QCOMPARE(Column(rows, kColumnDauer), (QStringList{"10:00:00", "02:00:00", "00:30:00", "00:01:00"}));
    // The cost sorts as text, descending.
    SortRows(rows, SortByHeader(kColumnKosten));
    QCOMPARE(Column(rows, kColumnKosten), (QStringList{"9,000", "2,000", "10,000", "0,500"}));
    // Restored from List.cfg, an unknown type of the second key is harmless.
    SortRows(rows, SortFromConfig(kColumnDatum, 2, 100));
    QCOMPARE(Column(rows, kColumnStart), (QStringList{"23:00:00", "10:00:00", "08:00:00", "08:00:00"}));
    SortRows(rows, SortFromConfig(77, 1, -3));
    QCOMPARE(rows.size(), 4);
  }

  // The panels' worker: a second start cancels the first, whose result and
  // progress never come back; a dropped run delivers nothing either.
  void newestRunHandsOverOnlyTheNewest() {
    test::TempDataDir data;
    WriteHistory(data);
    const DataDir dir = data.dir();
    const auto load = [dir](const QString& period) {
      return [dir, period](const std::atomic<bool>& cancel, const std::function<void(int)>& progress) {
        progress(period == QLatin1String("Heute") ? 1 : 2);
        return GetConnections(dir, AllOf(dir, period), &cancel);
      };
    };
    QList<ListResult> done;
    QList<int> progress;
    const auto take = [&](const ListResult& result) { done.append(result); };
    const auto tell = [&](int value) { progress.append(value); };
    {
      NewestRun<ListResult> run;
      run.Start(load(u"Heute"_s), take, tell);
      run.Start(load(u"Gesamt"_s), take, tell);
      QVERIFY(run.IsRunning());
      QTRY_VERIFY(!run.IsRunning());
      run.Start(load(u"Gesamt"_s), take, tell);
      run.Drop();
      QVERIFY(!run.IsRunning());
    }
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(done.size(), 1);
    QCOMPARE(progress, QList<int>{2});
    QCOMPARE(done.at(0).rows.size(), 4);
  }

  void listConfig() {
    test::TempDataDir data;
    ListConfig defaults = LoadListCfg(data.dir());
    QCOMPARE(defaults.sort.keys[0].column, int(kColumnSortDatum));
    QCOMPARE(defaults.user, kAlle);

    ListConfig config;
    config.periodIndex = 4;
    config.user = u"Jürgen"_s;
    config.provider = u"Funkwelle"_s;
    config.tariff = u"M - Tag und Nacht"_s;
    config.net = true;
    config.sort = SortByHeader(kColumnEinheiten);
    for (int column = 1; column <= 13; ++column) {
      config.columns.append({ListColumnWidth(column) + column, 14 - column});
    }
    QVERIFY(SaveListCfg(data.dir(), config));
    const ListConfig back = LoadListCfg(data.dir());
    QCOMPARE(back.periodIndex, 4);
    QCOMPARE(back.user, config.user);
    QCOMPARE(back.tariff, config.tariff);
    QVERIFY(back.net);
    QCOMPARE(back.sort.column, int(kColumnEinheiten));
    QCOMPARE(back.sort.type, 100);
    QCOMPARE(back.columns.size(), 13);
    QCOMPARE(back.columns.at(12).width, 213);
    QCOMPARE(back.columns.at(12).position, 1);

    // Garbage and a short file: what can't be read keeps its default.
    data.write(u"Config/List.cfg"_s, "99\r\n  Anna \r\n");
    const ListConfig shortFile = LoadListCfg(data.dir());
    QCOMPARE(shortFile.periodIndex, 0);
    QCOMPARE(shortFile.user, u"Anna"_s);
    QCOMPARE(shortFile.provider, kAlle);
    QVERIFY(shortFile.columns.isEmpty());
  }
};

QTEST_GUILESS_MAIN(TestConnectionList)
#include "test_connection_list.moc"
