#include "detection/DialUpFiles.h"
#include "detection/MonitoringLoop.h"
#include "detection/SimulatedRemoteAccess.h"
#include "metering/Prerun.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"
#include "users/FieldCipher.h"
#include "users/UserFile.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

class TestDialUpFiles : public QObject {
  Q_OBJECT

 private slots:
  void tariffAssignment() {
    test::TempDataDir data;
    const QString entry = u"Büro ISDN"_s;
    QVERIFY(!LoadEntryTarif(data.dir(), entry));

    QVERIFY(SaveEntryTarif(data.dir(), entry, {u"Arcor"_s, u"A - Call by Call"_s}));
    QCOMPARE(data.read(u"DialUp/Büro ISDN.trf"_s), QByteArray("Arcor\r\nA - Call by Call\r\n"));
    // The monitoring loop reads what the panel wrote.
    QCOMPARE(EntryTariff(data.dir(), entry), u"Arcor - Call by Call.atl"_s);

    // "No tariff" is written as the words themselves and gives no tariff file.
    QVERIFY(SaveEntryTarif(data.dir(), entry, {KeineZuordnung(), KeineZuordnung()}));
    QCOMPARE(data.read(u"DialUp/Büro ISDN.trf"_s), QByteArray("[Keine Zuordnung]\r\n[Keine Zuordnung]\r\n"));
    QCOMPARE(EntryTariff(data.dir(), entry), QString());

    // A file that names a tariff outside the data directory names none, and
    // nothing is carried over or written there.
    data.write(u"DialUp/Fremd.trf"_s, "../../x/Netz\r\nM - Volumen\r\n");
    QCOMPARE(EntryTariff(data.dir(), u"Fremd"_s), QString());
    SavePrerun(data.dir(), u"../../x/Netz - Volumen.tel"_s, 500);
    QVERIFY(!WriteUserFile(data.dir(), u"../Kind"_s, {}) && !WriteUserFile(data.dir(), u".."_s, {}));
    QCOMPARE(QDir(data.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"DialUp"});
    QVERIFY(!QFile::exists(data.path(u"../x"_s)) && !QFile::exists(data.path(u"../Kind.usr"_s)));

    // A tariff that has gone is read as it stands, and a short file too.
    data.write(u"DialUp/Alt.TRF"_s, "Weg\r\nM - Gibt es nicht mehr\r\n");
    const auto gone = LoadEntryTarif(data.dir(), u"Alt"_s);
    QVERIFY(gone && gone->anbieter == u"Weg"_s && gone->tarif == u"M - Gibt es nicht mehr"_s);
    data.write(u"DialUp/Kurz.trf"_s, "Nur Anbieter");
    QCOMPARE(LoadEntryTarif(data.dir(), u"Kurz"_s)->tarif, QString());
  }

  void dialDataEnciphered() {
    test::TempDataDir data;
    const QString entry = u"T-Online"_s;
    QVERIFY(!LoadEntry(data.dir(), entry));

    const EntryDialData written{u"0191011"_s, u"müller@t-online.de"_s, u"gEh3im€"_s};
    QVERIFY(SaveEntry(data.dir(), entry, written));
    const auto lines = SplitLines(data.read(u"DialUp/T-Online.dat"_s));
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines[0], QByteArray("0191011"));
    QCOMPARE(lines[1], EncryptField(QByteArray("Um\xfcller@t-online.de")));
    QCOMPARE(lines[2], EncryptField(QByteArray("PgEh3im\x80")));
    const auto read = LoadEntry(data.dir(), entry).value_or(EntryDialData{});
    QCOMPARE(QStringList({read.Einwahlnummer, read.Benutzername, read.Passwort}),
             QStringList({written.Einwahlnummer, written.Benutzername, written.Passwort}));

    // Empty values still leave their letter in the file and come back empty;
    // empty lines of a hand-made file stay empty.
    QVERIFY(SaveEntry(data.dir(), entry, {}));
    const auto emptyLines = SplitLines(data.read(u"DialUp/T-Online.dat"_s));
    QCOMPARE(emptyLines[0], QByteArray());
    QCOMPARE(DecryptField(emptyLines[1]), QByteArray("U"));
    QCOMPARE(DecryptField(emptyLines[2]), QByteArray("P"));
    QCOMPARE(LoadEntry(data.dir(), entry)->Benutzername, QString());
    data.write(u"DialUp/Hand.dat"_s, "0800\r\n\r\n");
    const auto hand = LoadEntry(data.dir(), u"Hand"_s).value_or(EntryDialData{});
    QCOMPARE(hand.Einwahlnummer + '|' + hand.Benutzername + '|' + hand.Passwort, u"0800||"_s);

    // Only the exact name counts as the entry's file.
    data.write(u"DialUp/arcor.dat"_s, "0192\r\n");
    QVERIFY(!LoadEntry(data.dir(), u"Arcor"_s));
    QVERIFY(LoadEntry(data.dir(), u"arcor"_s));
  }

  void unusableNamesGetNoFiles() {
    test::TempDataDir data;
    for (const QString& name : {QString(), u"VPN: Büro"_s, u"a/b"_s, u"Tab\there"_s}) {
      QVERIFY(!SaveEntry(data.dir(), name, {u"1"_s, u"u"_s, u"p"_s}));
      QVERIFY(!SaveEntryTarif(data.dir(), name, {KeineZuordnung(), KeineZuordnung()}));
      QVERIFY(!LoadEntry(data.dir(), name));
      QVERIFY(!LoadEntryTarif(data.dir(), name));
    }
    QVERIFY(data.dir().ListFiles(u"DialUp"_s).isEmpty());
  }

  void credentialSource() {
    test::TempDataDir data;
    QVERIFY(LoadDialDataFromSystem(data.dir()));
    QVERIFY(SaveDialDataFromSystem(data.dir(), false));
    QCOMPARE(data.read(u"DialUp/DialUp.cfg"_s), QByteArray("Falsch\r\n"));
    QVERIFY(!LoadDialDataFromSystem(data.dir()));
    QVERIFY(SaveDialDataFromSystem(data.dir(), true));
    QCOMPARE(data.read(u"DialUp/DialUp.cfg"_s), QByteArray("Wahr\r\n"));
    QVERIFY(LoadDialDataFromSystem(data.dir()));

    // Files from systems in other languages, and lines that are no boolean.
    const QList<std::pair<QByteArray, bool>> lines = {
        {"FALSCH", false}, {"False", false},     {"True", true}, {"0", false},
        {"-1", true},      {"vielleicht", true}, {"", true}};
    for (const auto& [line, expected] : lines) {
      data.write(u"DialUp/DialUp.cfg"_s, line + "\r\n");
      QVERIFY2(LoadDialDataFromSystem(data.dir()) == expected, line.constData());
    }
  }
};

QTEST_GUILESS_MAIN(TestDialUpFiles)
#include "test_dialupfiles.moc"
