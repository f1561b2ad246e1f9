#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "support/TempDataDir.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>

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
  void nothingLeaksNothingEscapesNothingBlocks() {
    test::TempDataDir home;
    const DataDir dir(home.path(QStringLiteral("neu/minutor")));
    QVERIFY(dir.MakeRoot() && dir.MakeRoot());
    auto mode = [&](const char* relative) {
      struct stat info {};
      ::stat(QFile::encodeName(dir.Resolve(QString::fromLatin1(relative))).constData(), &info);
      return info.st_mode & 0777;
    };
    QCOMPARE(mode(""), 0700u);

    // Passwords and credentials for this account only, whatever the old file allowed.
    home.write(QStringLiteral("neu/minutor/Benutzer/Anna.usr"), "alt");
    QVERIFY(::chmod(QFile::encodeName(dir.Resolve(QStringLiteral("Benutzer/Anna.usr"))).constData(), 0644) ==
            0);
    for (const char* name :
         {"Benutzer/Anna.usr", "Benutzer/Anna.bdg", "benutzer/Budget.dat", "DialUp/Netz.dat"}) {
      QVERIFY(dir.WriteLines(QString::fromLatin1(name), {"geheim"}));
      QCOMPARE(mode(name), 0600u);
    }

    // No path leads out of the directory, and no name holds control characters.
    for (const char* bad :
         {"../aussen.txt", "Prerun/../../aussen.dat", "Config/a\nb.cfg", "..\\x", "Benutzer/\x01.usr"}) {
      const QString path = QString::fromLatin1(bad);
      QVERIFY(!dir.WriteLines(path, {"x"}));
      QVERIFY(!dir.MakeDir(path) && !dir.FileExists(path) && !dir.ReadLines(path) &&
              dir.ListFiles(path).isEmpty());
    }
    QCOMPARE(QDir(home.path(QStringLiteral("neu"))).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{"minutor"});

    // A huge settings file is read only as far as settings go.
    QVERIFY(dir.WriteBytes(QStringLiteral("Tax.dat"), QByteArray(1 << 20, '7')));
    QCOMPARE(dir.ReadLines(QStringLiteral("Tax.dat"))->first().size(), DataDir::kSmallFileLimit);

    // What a save that never finished leaves is passed over, and goes at the start.
    for (const char* name :
         {"Verbindungen/01032026-120000.con.aBcDeF", "Config/Options.cfg.Xy12Zw", "Note.dat.qwerty"}) {
      home.write(QStringLiteral("neu/minutor/") + QString::fromLatin1(name), "halb");
    }
    home.write(QStringLiteral("neu/minutor/Verbindungen/01032026-120000.con"), "ganz");
    QCOMPARE(dir.ListFiles(QStringLiteral("Verbindungen")), QStringList{"01032026-120000.con"});
    QCOMPARE(dir.ListFiles(QStringLiteral("Verbindungen"), QStringLiteral("*.*")),
             QStringList{"01032026-120000.con"});
    dir.RemoveSaveLeftovers();
    QCOMPARE(QDir(dir.Resolve(QStringLiteral("Verbindungen"))).entryList(QDir::Files),
             QStringList{"01032026-120000.con"});
    QVERIFY(!dir.FileExists(QStringLiteral("Config/Options.cfg.Xy12Zw")) &&
            !dir.FileExists(QStringLiteral("Note.dat.qwerty")));
    QVERIFY(!IsSaveLeftover(u"Anbieter - Tarif 1.5.tel") && !IsSaveLeftover(u".hidden.abcdef"));
  }
};

QTEST_APPLESS_MAIN(TestDataDir)
#include "test_datadir.moc"
