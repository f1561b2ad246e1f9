#include "TariffText.h"
#include "support/TempDataDir.h"
#include "tariffs/PriceTexts.h"
#include "tariffs/RateLookup.h"
#include "tariffs/TariffFile.h"
#include "tariffs/TariffPeeks.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTest>

using namespace minutor;

namespace {

// A number line in the locale's form, as the writer prints numbers.
QByteArray N(const char* key, const char* number) {
  return QByteArray(key) + QByteArray(number).replace('.', DecimalSign().toLatin1());
}

}  // namespace

// Runs under a German and an English locale.
class TestTariffFile : public QObject {
  Q_OBJECT

 private slots:
  void writesTheEditorsLinesAndReadsThemBack() {
    test::TempDataDir data;
    Tarif tarif;
    tarif.Anbieter = QStringLiteral("Funk & Co");
    tarif.Tarifname = QStringLiteral("Tag & Nacht");
    tarif.Grundgebuehr = 4.95f;
    tarif.Region = QStringLiteral("bundesweit");
    tarif.Anmeldung = QStringLiteral("nötig");
    tarif.Einwahlnummer.clear();
    tarif.Kanalbuendelung = true;
    tarif.Volumengrenze = 500;  // not written: no volume tariff
    tarif.Freiminuten = 30;
    tarif.Takt = QStringLiteral("60 / 1");
    tarif.Gespraechsgrundgebuehr = 12.5f;
    tarif.Zonen = {{8, 18, PfennigAusBetrag(u"0,039"), false}, {0, 24, PfennigAusBetrag(u"0.015"), true}};
    QVERIFY(WriteTarif(data.dir(), tarif));

    const QList<QByteArray> expected = {
        "[Providerdaten]", "Name:Funk & Co - Tag & Nacht", N("Grundgeb\374hr:", "4.95"), "Region:bundesweit",
        "G\374ltigkeit:k.A.", "Anmeldung:n\366tig", "Einwahlnummer:k.A.", "Username:k.A.", "Password:k.A.",
        "Flatrate:Nein", "Volumenabrechnung:Nein", "Volumenkosten:0", "Volumeneinheit:1", "Volumengrenze:0",
        "Mindestumsatz:0", "Freiminuten:30", "Kanalb\374ndelung:Ja", "Takt:60 / 1", "Sekundengenau:Nein",
        "Sekundenschritte:1", N("Gespr\344chsgrundgeb\374hr:", "12.5"), "", "[Tarifzonen]",
        // zones
        "Zone:Tag & Nacht", "Von:8", "Bis:18", N("Pfennig:", "3.9"), "Einheit:60", "Wochenende:Nein",
        "Zone:Tag & Nacht", "Von:0", "Bis:24", N("Pfennig:", "1.5"), "Einheit:60", "Wochenende:Ja"};
    QCOMPARE(data.read(QStringLiteral("Tarife/Funk & Co - Tag & Nacht.tel")), test::Crlf(expected));

    Tarif written = tarif;
    written.Einwahlnummer = QStringLiteral("k.A.");
    written.Volumengrenze = 0;
    QVERIFY(ReadTarif(data.dir(), QStringLiteral("Funk & Co - Tag & Nacht.tel")) == written);
  }

  void aVolumeTariffGetsTheTwoFreeZones() {
    test::TempDataDir data;
    QVERIFY(QDir().mkpath(data.path(QStringLiteral("tarife"))));
    Tarif tarif;
    tarif.Anbieter = QStringLiteral("Netz");
    tarif.Tarifname = QStringLiteral("Volumen");
    tarif.Volumenabrechnung = true;
    tarif.Volumenkosten = PfennigAusBetrag(u"0,015");
    tarif.Volumeneinheit = 0.5f;
    tarif.Volumengrenze = 500;
    tarif.Freiminuten = 30;  // not written: a volume tariff
    QVERIFY(WriteTarif(data.dir(), tarif));

    // Written into the folder that is there, whatever its case.
    const QList<QByteArray> lines = SplitLines(data.read(QStringLiteral("tarife/Netz - Volumen.tel")));
    QCOMPARE(lines.mid(10, 6), (QList<QByteArray>{"Volumenabrechnung:Ja", N("Volumenkosten:", "1.5"),
                                                  N("Volumeneinheit:", "0.5"), "Volumengrenze:500",
                                                  "Mindestumsatz:0", "Freiminuten:0"}));
    QCOMPARE(lines.mid(23), (QList<QByteArray>{"Zone:Volumen", "Von:0", "Bis:24", "Pfennig:0", "Einheit:60",
                                               "Wochenende:Nein", "Zone:Volumen", "Von:0", "Bis:24",
                                               "Pfennig:0", "Einheit:60", "Wochenende:Ja"}));

    for (const auto& [anbieter, name] : {std::pair{"", "X"}, std::pair{"A/B", "X"}, std::pair{"A", "X?"}}) {
      tarif.Anbieter = QString::fromLatin1(anbieter);
      tarif.Tarifname = QString::fromLatin1(name);
      QVERIFY(!WriteTarif(data.dir(), tarif));
    }
    QCOMPARE(data.dir().ListFiles(QStringLiteral("Tarife")),
             QStringList{QStringLiteral("Netz - Volumen.tel")});
  }

  void readsHeadByKeysAndZonesByPosition() {
    test::TempDataDir data;
    data.write(
        QStringLiteral("Tarife/Hand - Geschrieben.atl"),
        test::Crlf({"Takt:60/60", "Username:", "Einwahlnummer:0190 nie", "Takt:30 / 10", "Flatrate: JA ",
                    "Freiminuten:90,5", "[Tarifzonen]",
                    // keys are not compared, values are cut out by position
                    "Zone:egal", "XXX:08", "YYY:18", "ZZZZZZZ:0,12", "Einheit:60", "Wochenende:JA",
                    "Zone:egal", "Von:0", "Bis:24", "Pfennig:1", "Einheit:60", "Wochenende:vielleicht",
                    // a stray line: the zone behind it is read out of step and lost
                    "", "Zone:egal", "Von:0", "Bis:24", "Pfennig:2", "Einheit:60", "Wochenende:Nein"}));
    const auto tarif = ReadTarif(data.dir(), QStringLiteral("Hand - Geschrieben.atl"));
    QVERIFY(tarif && tarif->Herkunft == TarifHerkunft::Automatisch && tarif->Flatrate);
    QCOMPARE(tarif->Takt, QStringLiteral("30 / 10"));  // the last line of a key wins
    QCOMPARE(tarif->Freiminuten, 90.0);
    QCOMPARE(tarif->Zonen, (QList<Tarifzone>{{8, 18, 0.12f, true}}));

    // Saved again, the lines the editor doesn't show come back as they were.
    Tarif saved = *tarif;
    saved.Tarifname = QStringLiteral("Kopie");
    QVERIFY(WriteTarif(data.dir(), saved));
    const QList<QByteArray> lines = SplitLines(data.read(QStringLiteral("Tarife/Hand - Kopie.tel")));
    QCOMPARE(lines[4], QByteArray("G\374ltigkeit:k.A."));
    QCOMPARE(lines.mid(6, 3),
             (QList<QByteArray>{"Einwahlnummer:0190 nie", "Username:k.A.", "Password:k.A."}));
    QCOMPARE(lines.mid(18, 2), (QList<QByteArray>{"Sekundengenau:", "Sekundenschritte:"}));
  }

  void namesAndLists() {
    QCOMPARE(GetAnbieter(QStringLiteral("A-B - C - D.tel")).value_or(QString()), QStringLiteral("A-B"));
    QCOMPARE(GetTarifname(QStringLiteral("A-B - C - D.tel")), QStringLiteral("C - D"));
    QVERIFY(!GetAnbieter(QStringLiteral("Ohne Strich.tel")));
    QCOMPARE(GetTarifDatei(QStringLiteral("Foo"), QStringLiteral("X - Bar")), QString());

    test::TempDataDir data;
    for (const char* name : {"Foo - Bar.tel", "Foo - Bar.atl", "Foo Net - Bar.tel", "foo - klein.TEL",
                             "Foo - Notiz.txt", "readme.txt", "Foo [X] - Y.atl", "Ohne Strich.tel"}) {
      data.write(QStringLiteral("Tarife/") + QLatin1String(name), "x\r\n");
    }
    QCOMPARE(GetAnbieterListe(data.dir()), (QStringList{"Foo", "Foo Net", "Foo [X]", "foo"}));

    QStringList labels;
    for (const TarifEintrag& entry : GetTarifListe(data.dir(), QStringLiteral("Foo"))) {
      labels.append(entry.Label);
      QCOMPARE(GetTarifDatei(QStringLiteral("Foo"), entry.Label).toLower(), entry.Datei.toLower());
    }
    // The deliberate prefix match takes Foo Net's and Foo [X]'s files too.
    QCOMPARE(labels, (QStringList{"A - Bar", "M - Bar", "M Net - Bar", "A [X] - Y", "M - klein"}));
    const auto bracket = GetTarifListe(data.dir(), QStringLiteral("Foo [X]"));
    QVERIFY(bracket.size() == 1 && bracket[0].Label == QStringLiteral("A - Y"));
  }

  void peeksReadTheirKeys() {
    test::TempDataDir data;
    data.write(
        QStringLiteral("Tarife/Peek - Alles.tel"),
        test::Crlf({"Volumenabrechnung:Ja", "Volumenkosten:2,5", "VOLUMENEINHEIT:0,5", "volumengrenze:2",
                    "Volumengrenze:9", "Freiminuten:90,5", "Freiminuten:10", "Takt:60/60", "Takt:30 / 10",
                    "Gespr\344chsgrundgeb\374hr:12,5", "Volumenabrechnung: nein "}));
    const QString file = QStringLiteral("Peek - Alles.tel");
    const DataDir& dir = data.dir();
    QVERIFY(!IsVolumentarif(dir, file));  // the last line decides
    QCOMPARE(GetVolumenkosten(dir, file), 2.5f);
    QCOMPARE(GetVolumeneinheit(dir, file), 0.5f);
    QCOMPARE(GetTarifVolumengrenze(dir, file), 2000.0);  // the first line decides
    QCOMPARE(GetTarifFreiminuten(dir, file), 90.0);
    QCOMPARE(GetActualTakt(dir, file), QStringLiteral("30 / 10"));
    QCOMPARE(GetPreisEinheit(dir, file), test::Local(QStringLiteral("0.5MB")));  // read two lines down

    for (const QString& missing : {QString(), QStringLiteral("Peek - Fehlt.tel")}) {
      QVERIFY(!IsVolumentarif(dir, missing) && !ReadTarif(dir, missing));
      QCOMPARE(GetVolumenkosten(dir, missing) + GetTarifFreiminuten(dir, missing), 0.0);
      QCOMPARE(GetPreisEinheit(dir, missing), QStringLiteral("Minute"));
    }
  }

  void damagedFilesGiveTheFallbacks() {
    const QByteArray digits(1 << 20, '9');
    QList<quint32> noise(16 * 1024);
    QRandomGenerator(42).fillRange(noise.data(), noise.size());
    const QByteArray binary(reinterpret_cast<const char*>(noise.constData()), noise.size() * 4);
    const QList<QByteArray> keyless = {QByteArray(), binary, QByteArray(1 << 20, 'x'),
                                       test::Crlf(QList<QByteArray>(200, "Hallo Welt"))};
    const QList<QByteArray> huge = {
        test::Crlf({"Takt:" + digits, "Freiminuten:" + digits, "Gespr\344chsgrundgeb\374hr:" + digits,
                    "[Tarifzonen]", "Zone:x", "Von:" + digits, "Bis:" + digits, "Pfennig:" + digits,
                    "Einheit:60", "Wochenende:Nein"}),
        test::Crlf({"Volumenabrechnung:Ja", "Volumenkosten:" + digits, "Volumeneinheit:" + digits}),
        test::Crlf(test::TimeHead()) + "Zone:x\r\nVon:0\r\nBis:2", "Volumenabrechnung:Ja"};

    test::TempDataDir data;
    const DataDir& dir = data.dir();
    const QString file = QStringLiteral("Kaputt - Datei.tel");
    Tarif nothing;
    nothing.Anbieter = QStringLiteral("Kaputt");
    nothing.Tarifname = QStringLiteral("Datei");
    nothing.Sekundengenau.clear();
    nothing.Sekundenschritte.clear();
    for (const QByteArray& content : keyless + huge) {
      data.write(QStringLiteral("Tarife/") + file, content);
      const auto tarif = ReadTarif(dir, file);
      QVERIFY(tarif);
      const float unitCost = UnitCost(GetTarifPreis(dir, file, test::At(1, 0, 59, 58), true),
                                      ParseTakt(GetActualTakt(dir, file)).rest);
      QVERIFY(!AktuellerPreisText(dir, file, test::At(1, 1), false, QStringLiteral("€")).isEmpty());
      if (keyless.contains(content)) {
        QVERIFY(*tarif == nothing);
        QCOMPARE(unitCost + GetGrundgebuehrJeVerbindung(dir, file) + GetVolumenkosten(dir, file), 0.0f);
        QCOMPARE(GetPreisEinheit(dir, file), QStringLiteral("Minute"));
      }
    }
    QCOMPARE(ParseTakt(QString::fromLatin1("9" + digits)).first, qint16(32767));
  }
};

QTEST_APPLESS_MAIN(TestTariffFile)
#include "test_tariff_file.moc"
