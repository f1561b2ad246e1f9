#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "support/TempDataDir.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace minutor;

class TestDataDir : public QObject {
  Q_OBJECT

 private slots:
  void namesAreFoundWhateverTheirCase() {
    test::TempDataDir data;
    data.write(QStringLiteral("config/OPTIONS.cfg"), "1\r\n");
    const DataDir& dir = data.dir();
    QVERIFY(dir.FileExists(QStringLiteral("\\Config\\Options.cfg")));
    QVERIFY(dir.FileExists(QStringLiteral("Config/options.CFG")));
    QVERIFY(dir.DirExists(QStringLiteral("CONFIG")));
    QVERIFY(!dir.FileExists(QStringLiteral("Config")));
    QVERIFY(!dir.DirExists(QStringLiteral("Config/Options.cfg")));
    QVERIFY(!dir.FileExists(QStringLiteral("Config/Other.cfg")));
    QCOMPARE(dir.Resolve(QStringLiteral("Config/Options.cfg")),
             data.path(QStringLiteral("config/OPTIONS.cfg")));
    // A missing name keeps its spelling below the real folder.
    QCOMPARE(dir.Resolve(QStringLiteral("Config/Neu.cfg")), data.path(QStringLiteral("config/Neu.cfg")));

    // Writing goes into the existing file and folder, not beside them.
    QVERIFY(dir.WriteLines(QStringLiteral("Config/Options.cfg"), {"0"}));
    QCOMPARE(data.read(QStringLiteral("config/OPTIONS.cfg")), QByteArray("0\r\n"));
    QCOMPARE(QDir(data.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"config"});
    QVERIFY(dir.MakeDir(QStringLiteral("Config")));
    QCOMPARE(QDir(data.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"config"});
  }

  void linesEndInCrLfAndReadersTakeLf() {
    test::TempDataDir data;
    const DataDir& dir = data.dir();
    QVERIFY(!dir.ReadLines(QStringLiteral("none.txt")).has_value());
    QVERIFY(dir.WriteLines(QStringLiteral("Neu/a.txt"), {"eins", "", "drei"}));
    QCOMPARE(data.read(QStringLiteral("Neu/a.txt")), QByteArray("eins\r\n\r\ndrei\r\n"));
    QCOMPARE(*dir.ReadLines(QStringLiteral("Neu/a.txt")), (QList<QByteArray>{"eins", "", "drei"}));
    data.write(QStringLiteral("b.txt"), "eins\ndrei");
    QCOMPARE(*dir.ReadLines(QStringLiteral("b.txt")), (QList<QByteArray>{"eins", "drei"}));
    data.write(QStringLiteral("c.txt"), "");
    QCOMPARE(dir.ReadLines(QStringLiteral("c.txt"))->size(), 0);

    // Cipher bytes and Windows-1252 text pass through unchanged.
    QByteArray all;
    for (int b = 0; b < 256; ++b) {
      if (b != '\r' && b != '\n') {
        all.append(static_cast<char>(b));
      }
    }
    QVERIFY(dir.WriteLines(QStringLiteral("bytes.txt"), {all}));
    QCOMPARE(dir.ReadLines(QStringLiteral("bytes.txt"))->first(), all);
    QCOMPARE(ToAnsi(FromAnsi(all)), all);
    QCOMPARE(FromAnsi("Geb\xfchr \x80"), QStringLiteral("Gebühr €"));
    QCOMPARE(ToAnsi(QStringLiteral("\u4e2d")), QByteArray("?"));
  }

  void writingReplacesTheWholeFileAndLeavesNothingBeside() {
    test::TempDataDir data;
    const DataDir& dir = data.dir();
    QVERIFY(dir.WriteLines(QStringLiteral("x.txt"), {"a", "b", "c"}));
    QVERIFY(dir.WriteLines(QStringLiteral("x.txt"), {"z"}));
    QCOMPARE(data.read(QStringLiteral("x.txt")), QByteArray("z\r\n"));
    QCOMPARE(QDir(data.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"x.txt"});
  }

  void listingMatchesPatternsWithoutCase() {
    test::TempDataDir data;
    for (const char* name : {"Foo - Bar.tel", "Foo Net - Bar.ATL", "Other - X.tel", "readme"}) {
      data.write(QStringLiteral("Tarife/") + QString::fromLatin1(name), "x");
    }
    const DataDir& dir = data.dir();
    QCOMPARE(dir.ListFiles(QStringLiteral("tarife"), QStringLiteral("foo*.*")),
             (QStringList{"Foo - Bar.tel", "Foo Net - Bar.ATL"}));
    QCOMPARE(dir.ListFiles(QStringLiteral("Tarife"), QStringLiteral("*.atl")),
             QStringList{"Foo Net - Bar.ATL"});
    QCOMPARE(dir.ListFiles(QStringLiteral("Tarife")).size(), 4);
    QVERIFY(dir.ListFiles(QStringLiteral("Missing")).isEmpty());

    // Only files count: a folder doesn't, a link to a file does, a dangling
    // link doesn't.
    QVERIFY(QDir(data.path(QStringLiteral("Tarife"))).mkdir(QStringLiteral("Foo - Ordner.tel")));
    QVERIFY(QFile::link(data.path(QStringLiteral("Tarife/Other - X.tel")),
                        data.path(QStringLiteral("Tarife/Foo - Link.tel"))));
    QVERIFY(QFile::link(data.path(QStringLiteral("Tarife/weg")),
                        data.path(QStringLiteral("Tarife/Foo - Weg.tel"))));
    QCOMPARE(dir.ListFiles(QStringLiteral("Tarife"), QStringLiteral("foo*")),
             (QStringList{"Foo - Bar.tel", "Foo - Link.tel", "Foo Net - Bar.ATL"}));
  }

  void shippedFilesAreOfferedOnceAndNeverOverwritten() {
    test::TempDataDir shipped;
    shipped.write(QStringLiteral("Tarife/A - B.tel"), "neu");
    shipped.write(QStringLiteral("Sounds/Standard.wav"), "RIFF");
    shipped.write(QStringLiteral("Servers.dat"), "server");
    test::TempDataDir data;
    data.write(QStringLiteral("tarife/a - b.TEL"), "vom Benutzer");
    data.dir().CopyShippedFiles(shipped.path());
    QCOMPARE(data.read(QStringLiteral("tarife/a - b.TEL")), QByteArray("vom Benutzer"));
    QVERIFY(!QFile::exists(data.path(QStringLiteral("tarife/A - B.tel"))));
    QCOMPARE(data.read(QStringLiteral("Sounds/Standard.wav")), QByteArray("RIFF"));
    QCOMPARE(data.read(QStringLiteral("Servers.dat")), QByteArray("server"));

    // A shipped file the user deleted stays deleted; one that a later
    // version newly ships arrives.
    QVERIFY(QFile::remove(data.path(QStringLiteral("Servers.dat"))));
    shipped.write(QStringLiteral("Tarife/C - D.atl"), "neu");
    data.dir().CopyShippedFiles(shipped.path());
    QVERIFY(!QFile::exists(data.path(QStringLiteral("Servers.dat"))));
    QCOMPARE(data.read(QStringLiteral("tarife/C - D.atl")), QByteArray("neu"));
  }

  void locationOfTheDataDirectory() {
    test::TempDataDir exe;
    qputenv("XDG_DATA_HOME", exe.path(QStringLiteral("xdg")).toUtf8());
    QCOMPARE(DataDir::DefaultLocation(exe.path()), exe.path(QStringLiteral("xdg/minutor")));
    qputenv("XDG_DATA_HOME", "relative/ignored");
    QCOMPARE(DataDir::DefaultLocation(exe.path()),
             QDir::homePath() + QStringLiteral("/.local/share/minutor"));
    exe.write(QStringLiteral("portable"), "");
    QCOMPARE(DataDir::DefaultLocation(exe.path()), exe.path());
    QVERIFY(QFile::exists(DataDir::ShippedLocation(exe.path()) + QStringLiteral("/Tarife")));
  }
};

QTEST_APPLESS_MAIN(TestDataDir)
#include "test_datadir.moc"
