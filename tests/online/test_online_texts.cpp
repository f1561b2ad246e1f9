#include "online/TimePage.h"
#include "online/UpdateFiles.h"
#include "online/UpdateIndex.h"
#include "support/TempDataDir.h"

#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

const QString kBase = u"http://h:1"_s;

QStringList Names(const UpdateIndex& index) {
  QStringList names;
  for (const UpdateEntry& entry : index.entries) {
    names.append(entry.fileName);
  }
  return names;
}

}  // namespace

class TestOnlineTexts : public QObject {
  Q_OBJECT

 private slots:
  void indexOffersTheBatchesAfterTheLastOneTaken() {
    const QByteArray index =
        "*U* 331\n[0001]\n<tel/1/A - 1.atl|A - 1.atl>\njunk\n[0002]\n<tel/2/B - 2.atl|B - 2.atl>\n"
        "<tel/2/x|../evil.atl>\n<tel/2/y|sub/evil.atl>\n<tel/2/z|C - 3.tel>\n<tel/no-bar>\n[0003]\n"
        "<tel/3/C - 3.atl|C - 3.atl>\r\n";
    struct Case {
      int last;
      QStringList names;
      int letzteSerie;
    };
    for (const Case& c : {Case{0, {"A - 1.atl", "B - 2.atl", "C - 3.atl"}, 3}, Case{2, {"C - 3.atl"}, 3},
                          Case{3, {}, 4}, Case{9, {}, 10}}) {
      const auto parsed = ParseUpdateIndex(index, kBase, c.last);
      QVERIFY(parsed);
      QCOMPARE(parsed->revision, 331.0);
      QCOMPARE(Names(*parsed), c.names);
      QCOMPARE(parsed->letzteSerie, c.letzteSerie);
    }
    QCOMPARE(ParseUpdateIndex(index, kBase, 0)->entries.first().address, u"http://h:1/tel/1/A - 1.atl"_s);
    QVERIFY(!ParseUpdateIndex("[0001]\r\n<tel/1/A - 1.atl|A - 1.atl>\r\n", kBase, 0));
    QVERIFY(!ParseUpdateIndex("<html>garbage</html>", kBase, 0));

    // Update file names stay in the tariff folder.
    for (const char* good : {"A - B.atl", "A, b - C.ATL"}) {
      QVERIFY2(IsUpdateFileName(QString::fromUtf8(good)), good);
    }
    for (const char* bad : {"", ".atl", "A - B.tel", "../A - B.atl", "x/A.atl", "x\\A.atl", "A..B.atl",
                            "A\tB.atl", "A:B.atl"}) {
      QVERIFY2(!IsUpdateFileName(QString::fromUtf8(bad)), bad);
    }
  }

  void aServerFolderIsIndexedAsTheReaderReadsIt() {
    test::TempDataDir server;
    server.write(u"tel/0001/A - 1.atl"_s, "x");
    server.write(u"tel/0002/B - 2.atl"_s, "x");
    server.write(u"tel/0002/notes.txt"_s, "x");
    server.write(u"tel/0002/Bad;\x01.atl"_s, "x");
    QStringList skipped;
    QString error;
    const auto index = MakeUpdateIndex(server.path(), 331, &skipped, &error);
    QVERIFY2(index, qPrintable(error));
    QCOMPARE(skipped.size(), 1);
    const auto parsed = ParseUpdateIndex(*index, kBase, 1);
    QCOMPARE(Names(*parsed), QStringList{"B - 2.atl"});
    QCOMPARE(parsed->entries.first().address, u"http://h:1/tel/0002/B - 2.atl"_s);
    QCOMPARE(parsed->revision, 331.0);

    server.write(u"tel/0004/D - 4.atl"_s, "x");
    QVERIFY(!MakeUpdateIndex(server.path(), 331, &skipped, &error));
    QVERIFY(error.contains(QLatin1String("batch 3")));
  }

  void updateSettingsFiles() {
    test::TempDataDir data;
    QCOMPARE(ReadLastBatch(data.dir()), 0);
    QVERIFY(WriteUpdateCfg(data.dir(), 12, QDate(2026, 3, 4)));
    QCOMPARE(data.read(u"Config/Update.cfg"_s), QByteArray(" 12 \r\n04.03.2026\r\n"));
    QCOMPARE(ReadLastBatch(data.dir()), 12);

    QCOMPARE(ReadAutoupdateSettings(data.dir()).on, false);
    data.write(u"Config/Autoupdate.cfg"_s, " 1 \r\n 3 \r\n");
    QCOMPARE(ReadAutoupdateSettings(data.dir()).days, 7);
    QVERIFY(WriteAutoupdateSettings(data.dir(), true, 1));
    QCOMPARE(data.read(u"Config/Autoupdate.cfg"_s), QByteArray(" 1 \r\n 14 \r\n"));
    QVERIFY(WriteAutoupdateSettings(data.dir(), false, -1));
    QCOMPARE(data.read(u"Config/Autoupdate.cfg"_s), QByteArray(" 0 \r\n 7 \r\n"));

    data.write(u"Servers.dat"_s, "http://a\r\n\r\n file://x\r\n");
    QCOMPARE(*ReadServers(data.dir()), (QStringList{"http://a", "", " file://x"}));
    QCOMPARE(ReadOnlineAddresses(data.dir()).timeHost, QString());
  }

  void timePageGivesTheLocalMoment() {
    const QByteArray line = "<p>Current Timezone: Etc/GMT</p><H2>Mon Nov 23 23:30:15 GMT 2026</H2></body>";
    struct Case {
      QByteArray page;
      qint64 bias;
      QString moment;  // "" for no correction
    };
    const QList<Case> cases{
        {line, 0, "2026-11-23 23:30:15"},
        // The offset crosses midnight, the date stays the page's.
        {line, 3600, "2026-11-23 00:30:15"},
        {line, -12600, "2026-11-23 20:00:15"},
        {QByteArray(line).replace("Nov", "Foo"), 0, "2026-12-23 23:30:15"},
        {"<html>\n" + line, 0, "2026-11-23 23:30:15"},
        {line + "\n<html>", 0, ""},
        {"<H2>Mon Nov 23 23:30:15 GMT 2026</H2> Current Timezone: Etc/GMT", 0, ""},
        {line.left(line.indexOf("<H2>") + 39), 0, ""},
        {QByteArray(line).replace("23 23", "00 23"), 0, ""},
        {"", 0, ""},
    };
    for (const Case& c : cases) {
      const auto found = ParseZeitseite(c.page, c.bias);
      const QString moment =
          found ? found->date.toString(u"yyyy-MM-dd "_s) + found->time.toString(u"HH:mm:ss"_s) : QString();
      QVERIFY2(moment == c.moment, c.page + " " + moment.toUtf8());
    }
  }
};

QTEST_GUILESS_MAIN(TestOnlineTexts)
#include "test_online_texts.moc"
