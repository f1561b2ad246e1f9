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

class TestDialUpFiles : public QObject {
  Q_OBJECT

 private slots:
  void tariffAssignment() {
    test::TempDataDir data;
    const QString entry = QStringLiteral("Büro ISDN");
    QVERIFY(!LoadEntryTarif(data.dir(), entry));

    QVERIFY(SaveEntryTarif(data.dir(), entry, {QStringLiteral("Arcor"), QStringLiteral("A - Call by Call")}));
    QCOMPARE(data.read(QStringLiteral("DialUp/Büro ISDN.trf")), QByteArray("Arcor\r\nA - Call by Call\r\n"));
    // The monitoring loop reads what the panel wrote.
    QCOMPARE(EntryTariff(data.dir(), entry), QStringLiteral("Arcor - Call by Call.atl"));

    // "No tariff" is written as the words themselves and gives no tariff file.
    QVERIFY(SaveEntryTarif(data.dir(), entry, {KeineZuordnung(), KeineZuordnung()}));
    QCOMPARE(data.read(QStringLiteral("DialUp/Büro ISDN.trf")),
             QByteArray("[Keine Zuordnung]\r\n[Keine Zuordnung]\r\n"));
    QCOMPARE(EntryTariff(data.dir(), entry), QString());

    // A file that names a tariff outside the data directory names none, and
    // nothing is carried over or written there.
    data.write(QStringLiteral("DialUp/Fremd.trf"), "../../x/Netz\r\nM - Volumen\r\n");
    QCOMPARE(EntryTariff(data.dir(), QStringLiteral("Fremd")), QString());
    SavePrerun(data.dir(), QStringLiteral("../../x/Netz - Volumen.tel"), 500);
    QVERIFY(!WriteUserFile(data.dir(), QStringLiteral("../Kind"), {}) &&
            !WriteUserFile(data.dir(), QStringLiteral(".."), {}));
    QCOMPARE(QDir(data.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"DialUp"});
    QVERIFY(!QFile::exists(data.path(QStringLiteral("../x"))) &&
            !QFile::exists(data.path(QStringLiteral("../Kind.usr"))));

    // A tariff that has gone is read as it stands, and a short file too.
    data.write(QStringLiteral("DialUp/Alt.TRF"), "Weg\r\nM - Gibt es nicht mehr\r\n");
    const auto gone = LoadEntryTarif(data.dir(), QStringLiteral("Alt"));
    QVERIFY(gone && gone->anbieter == QStringLiteral("Weg") &&
            gone->tarif == QStringLiteral("M - Gibt es nicht mehr"));
    data.write(QStringLiteral("DialUp/Kurz.trf"), "Nur Anbieter");
    QCOMPARE(LoadEntryTarif(data.dir(), QStringLiteral("Kurz"))->tarif, QString());
  }

  void dialDataEnciphered() {
    test::TempDataDir data;
    const QString entry = QStringLiteral("T-Online");
    QVERIFY(!LoadEntry(data.dir(), entry));

    const EntryDialData written{QStringLiteral("0191011"), QStringLiteral("müller@t-online.de"),
                                QStringLiteral("gEh3im€")};
    QVERIFY(SaveEntry(data.dir(), entry, written));
    const auto lines = SplitLines(data.read(QStringLiteral("DialUp/T-Online.dat")));
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
    const auto emptyLines = SplitLines(data.read(QStringLiteral("DialUp/T-Online.dat")));
    QCOMPARE(emptyLines[0], QByteArray());
    QCOMPARE(DecryptField(emptyLines[1]), QByteArray("U"));
    QCOMPARE(DecryptField(emptyLines[2]), QByteArray("P"));
    QCOMPARE(LoadEntry(data.dir(), entry)->Benutzername, QString());
    data.write(QStringLiteral("DialUp/Hand.dat"), "0800\r\n\r\n");
    const auto hand = LoadEntry(data.dir(), QStringLiteral("Hand")).value_or(EntryDialData{});
    QCOMPARE(hand.Einwahlnummer + '|' + hand.Benutzername + '|' + hand.Passwort, QStringLiteral("0800||"));

    // Only the exact name counts as the entry's file.
    data.write(QStringLiteral("DialUp/arcor.dat"), "0192\r\n");
    QVERIFY(!LoadEntry(data.dir(), QStringLiteral("Arcor")));
    QVERIFY(LoadEntry(data.dir(), QStringLiteral("arcor")));
  }

  void unusableNamesGetNoFiles() {
    test::TempDataDir data;
    for (const QString& name :
         {QString(), QStringLiteral("VPN: Büro"), QStringLiteral("a/b"), QStringLiteral("Tab\there")}) {
      QVERIFY(!SaveEntry(data.dir(), name, {QStringLiteral("1"), QStringLiteral("u"), QStringLiteral("p")}));
      QVERIFY(!SaveEntryTarif(data.dir(), name, {KeineZuordnung(), KeineZuordnung()}));
      QVERIFY(!LoadEntry(data.dir(), name));
      QVERIFY(!LoadEntryTarif(data.dir(), name));
    }
    QVERIFY(data.dir().ListFiles(QStringLiteral("DialUp")).isEmpty());
  }

  void credentialSource() {
    test::TempDataDir data;
    QVERIFY(LoadDialDataFromSystem(data.dir()));
    QVERIFY(SaveDialDataFromSystem(data.dir(), false));
    QCOMPARE(data.read(QStringLiteral("DialUp/DialUp.cfg")), QByteArray("Falsch\r\n"));
    QVERIFY(!LoadDialDataFromSystem(data.dir()));
    QVERIFY(SaveDialDataFromSystem(data.dir(), true));
    QCOMPARE(data.read(QStringLiteral("DialUp/DialUp.cfg")), QByteArray("Wahr\r\n"));
    QVERIFY(LoadDialDataFromSystem(data.dir()));

    // Files from systems in other languages, and lines that are no boolean.
    const QList<std::pair<QByteArray, bool>> lines = {
        {"FALSCH", false}, {"False", false},     {"True", true}, {"0", false},
        {"-1", true},      {"vielleicht", true}, {"", true}};
    for (const auto& [line, expected] : lines) {
      data.write(QStringLiteral("DialUp/DialUp.cfg"), line + "\r\n");
      QVERIFY2(LoadDialDataFromSystem(data.dir()) == expected, line.constData());
    }
  }
};

QTEST_GUILESS_MAIN(TestDialUpFiles)
#include "test_dialupfiles.moc"
