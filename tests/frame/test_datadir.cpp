#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "support/TempDataDir.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>

using namespace minutor;
using namespace Qt::StringLiterals;

class TestDataDir : public QObject {
  Q_OBJECT

 private slots:
  void namesAreFoundWhateverTheirCase() {
    test::TempDataDir data;
    data.write(u"config/OPTIONS.cfg"_s, "1\r\n");
    const DataDir& dir = data.dir();
    QVERIFY(dir.FileExists(u"\\Config\\Options.cfg"_s));
    QVERIFY(dir.FileExists(u"Config/options.CFG"_s));
    QVERIFY(dir.DirExists(u"CONFIG"_s));
    QVERIFY(!dir.FileExists(u"Config"_s));
    QVERIFY(!dir.DirExists(u"Config/Options.cfg"_s));
    QVERIFY(!dir.FileExists(u"Config/Other.cfg"_s));
    QCOMPARE(dir.Resolve(u"Config/Options.cfg"_s), data.path(u"config/OPTIONS.cfg"_s));
    // A missing name keeps its spelling below the real folder.
    QCOMPARE(dir.Resolve(u"Config/Neu.cfg"_s), data.path(u"config/Neu.cfg"_s));

    // Writing goes into the existing file and folder, not beside them.
    QVERIFY(dir.WriteLines(u"Config/Options.cfg"_s, {"0"}));
    QCOMPARE(data.read(u"config/OPTIONS.cfg"_s), QByteArray("0\r\n"));
    QCOMPARE(QDir(data.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"config"});
    QVERIFY(dir.MakeDir(u"Config"_s));
    QCOMPARE(QDir(data.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"config"});
  }

  void linesEndInCrLfAndReadersTakeLf() {
    test::TempDataDir data;
    const DataDir& dir = data.dir();
    QVERIFY(!dir.ReadLines(u"none.txt"_s).has_value());
    QVERIFY(dir.WriteLines(u"Neu/a.txt"_s, {"eins", "", "drei"}));
    QCOMPARE(data.read(u"Neu/a.txt"_s), QByteArray("eins\r\n\r\ndrei\r\n"));
    QCOMPARE(*dir.ReadLines(u"Neu/a.txt"_s), (QList<QByteArray>{"eins", "", "drei"}));
    data.write(u"b.txt"_s, "eins\ndrei");
    QCOMPARE(*dir.ReadLines(u"b.txt"_s), (QList<QByteArray>{"eins", "drei"}));
    data.write(u"c.txt"_s, "");
    QCOMPARE(dir.ReadLines(u"c.txt"_s)->size(), 0);

    // Cipher bytes and Windows-1252 text pass through unchanged.
    QByteArray all;
    for (int b = 0; b < 256; ++b) {
      if (b != '\r' && b != '\n') {
        all.append(static_cast<char>(b));
      }
    }
    QVERIFY(dir.WriteLines(u"bytes.txt"_s, {all}));
    QCOMPARE(dir.ReadLines(u"bytes.txt"_s)->first(), all);
    QCOMPARE(ToAnsi(FromAnsi(all)), all);
    QCOMPARE(FromAnsi("Geb\xfchr \x80"), u"Gebühr €"_s);
    QCOMPARE(ToAnsi(u"\u4e2d"_s), QByteArray("?"));
  }

  void writingReplacesTheWholeFileAndLeavesNothingBeside() {
    test::TempDataDir data;
    const DataDir& dir = data.dir();
    QVERIFY(dir.WriteLines(u"x.txt"_s, {"a", "b", "c"}));
    QVERIFY(dir.WriteLines(u"x.txt"_s, {"z"}));
    QCOMPARE(data.read(u"x.txt"_s), QByteArray("z\r\n"));
    QCOMPARE(QDir(data.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"x.txt"});
  }

  void listingMatchesPatternsWithoutCase() {
    test::TempDataDir data;
    for (const char* name : {"Foo - Bar.tel", "Foo Net - Bar.ATL", "Other - X.tel", "readme"}) {
      data.write(u"Tarife/"_s + QString::fromLatin1(name), "x");
    }
    const DataDir& dir = data.dir();
    QCOMPARE(dir.ListFiles(u"tarife"_s, u"foo*.*"_s), (QStringList{"Foo - Bar.tel", "Foo Net - Bar.ATL"}));
    QCOMPARE(dir.ListFiles(u"Tarife"_s, u"*.atl"_s), QStringList{"Foo Net - Bar.ATL"});
    QCOMPARE(dir.ListFiles(u"Tarife"_s).size(), 4);
    QVERIFY(dir.ListFiles(u"Missing"_s).isEmpty());

    // Only files count: a folder doesn't, a link to a file does, a dangling
    // link doesn't.
    QVERIFY(QDir(data.path(u"Tarife"_s)).mkdir(u"Foo - Ordner.tel"_s));
    QVERIFY(QFile::link(data.path(u"Tarife/Other - X.tel"_s), data.path(u"Tarife/Foo - Link.tel"_s)));
    QVERIFY(QFile::link(data.path(u"Tarife/weg"_s), data.path(u"Tarife/Foo - Weg.tel"_s)));
    QCOMPARE(dir.ListFiles(u"Tarife"_s, u"foo*"_s),
             (QStringList{"Foo - Bar.tel", "Foo - Link.tel", "Foo Net - Bar.ATL"}));
  }

  void shippedFilesAreOfferedOnceAndNeverOverwritten() {
    test::TempDataDir shipped;
    shipped.write(u"Tarife/A - B.tel"_s, "neu");
    shipped.write(u"Sounds/Standard.wav"_s, "RIFF");
    shipped.write(u"Servers.dat"_s, "server");
    test::TempDataDir data;
    data.write(u"tarife/a - b.TEL"_s, "vom Benutzer");
    data.dir().CopyShippedFiles(shipped.path());
    QCOMPARE(data.read(u"tarife/a - b.TEL"_s), QByteArray("vom Benutzer"));
    QVERIFY(!QFile::exists(data.path(u"tarife/A - B.tel"_s)));
    QCOMPARE(data.read(u"Sounds/Standard.wav"_s), QByteArray("RIFF"));
    QCOMPARE(data.read(u"Servers.dat"_s), QByteArray("server"));

    // A shipped file the user deleted stays deleted; one that a later
    // version newly ships arrives.
    QVERIFY(QFile::remove(data.path(u"Servers.dat"_s)));
    shipped.write(u"Tarife/C - D.atl"_s, "neu");
    data.dir().CopyShippedFiles(shipped.path());
    QVERIFY(!QFile::exists(data.path(u"Servers.dat"_s)));
    QCOMPARE(data.read(u"tarife/C - D.atl"_s), QByteArray("neu"));
  }

  void locationOfTheDataDirectory() {
    test::TempDataDir exe;
    qputenv("XDG_DATA_HOME", exe.path(u"xdg"_s).toUtf8());
    QCOMPARE(DataDir::DefaultLocation(exe.path()), exe.path(u"xdg/minutor"_s));
    qputenv("XDG_DATA_HOME", "relative/ignored");
    QCOMPARE(DataDir::DefaultLocation(exe.path()), QDir::homePath() + u"/.local/share/minutor"_s);
    exe.write(u"portable"_s, "");
    QCOMPARE(DataDir::DefaultLocation(exe.path()), exe.path());
    QVERIFY(QFile::exists(DataDir::ShippedLocation(exe.path()) + u"/Tarife"_s));
  }
  void nothingLeaksNothingEscapesNothingBlocks() {
    test::TempDataDir home;
    const DataDir dir(home.path(u"neu/minutor"_s));
    QVERIFY(dir.MakeRoot() && dir.MakeRoot());
    auto mode = [&](const char* relative) {
      struct stat info {};
      ::stat(QFile::encodeName(dir.Resolve(QString::fromLatin1(relative))).constData(), &info);
      return info.st_mode & 0777;
    };
    QCOMPARE(mode(""), 0700u);

    // Passwords and credentials for this account only, whatever the old file allowed.
    home.write(u"neu/minutor/Benutzer/Anna.usr"_s, "alt");
    QVERIFY(::chmod(QFile::encodeName(dir.Resolve(u"Benutzer/Anna.usr"_s)).constData(), 0644) == 0);
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
    QCOMPARE(QDir(home.path(u"neu"_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{"minutor"});

    // A huge settings file is read only as far as settings go.
    QVERIFY(dir.WriteBytes(u"Tax.dat"_s, QByteArray(1 << 20, '7')));
    QCOMPARE(dir.ReadLines(u"Tax.dat"_s)->first().size(), DataDir::kSmallFileLimit);

    // What a save that never finished leaves is passed over, and goes at the start.
    for (const char* name :
         {"Verbindungen/01032026-120000.con.aBcDeF", "Config/Options.cfg.Xy12Zw", "Note.dat.qwerty"}) {
      home.write(u"neu/minutor/"_s + QString::fromLatin1(name), "halb");
    }
    home.write(u"neu/minutor/Verbindungen/01032026-120000.con"_s, "ganz");
    QCOMPARE(dir.ListFiles(u"Verbindungen"_s), QStringList{"01032026-120000.con"});
    QCOMPARE(dir.ListFiles(u"Verbindungen"_s, u"*.*"_s), QStringList{"01032026-120000.con"});
    dir.RemoveSaveLeftovers();
    QCOMPARE(QDir(dir.Resolve(u"Verbindungen"_s)).entryList(QDir::Files), QStringList{"01032026-120000.con"});
    QVERIFY(!dir.FileExists(u"Config/Options.cfg.Xy12Zw"_s) && !dir.FileExists(u"Note.dat.qwerty"_s));
    QVERIFY(!IsSaveLeftover(u"Anbieter - Tarif 1.5.tel") && !IsSaveLeftover(u".hidden.abcdef"));
  }
};

QTEST_APPLESS_MAIN(TestDataDir)
#include "test_datadir.moc"
