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
using namespace Qt::StringLiterals;

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
    tarif.Anbieter = u"Funk & Co"_s;
    tarif.Tarifname = u"Tag & Nacht"_s;
    tarif.Grundgebuehr = 4.95f;
    tarif.Region = u"bundesweit"_s;
    tarif.Anmeldung = u"nötig"_s;
    tarif.Einwahlnummer.clear();
    tarif.Kanalbuendelung = true;
    tarif.Volumengrenze = 500;  // not written: no volume tariff
    tarif.Freiminuten = 30;
    tarif.Takt = u"60 / 1"_s;
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
    QCOMPARE(data.read(u"Tarife/Funk & Co - Tag & Nacht.tel"_s), test::Crlf(expected));

    Tarif written = tarif;
    written.Einwahlnummer = u"k.A."_s;
    written.Volumengrenze = 0;
    QVERIFY(ReadTarif(data.dir(), u"Funk & Co - Tag & Nacht.tel"_s) == written);
  }

  void aVolumeTariffGetsTheTwoFreeZones() {
    test::TempDataDir data;
    QVERIFY(QDir().mkpath(data.path(u"tarife"_s)));
    Tarif tarif;
    tarif.Anbieter = u"Netz"_s;
    tarif.Tarifname = u"Volumen"_s;
    tarif.Volumenabrechnung = true;
    tarif.Volumenkosten = PfennigAusBetrag(u"0,015");
    tarif.Volumeneinheit = 0.5f;
    tarif.Volumengrenze = 500;
    tarif.Freiminuten = 30;  // not written: a volume tariff
    QVERIFY(WriteTarif(data.dir(), tarif));

    // Written into the folder that is there, whatever its case.
    const QList<QByteArray> lines = SplitLines(data.read(u"tarife/Netz - Volumen.tel"_s));
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
    QCOMPARE(data.dir().ListFiles(u"Tarife"_s), QStringList{u"Netz - Volumen.tel"_s});
  }

  void readsHeadByKeysAndZonesByPosition() {
    test::TempDataDir data;
    data.write(
        u"Tarife/Hand - Geschrieben.atl"_s,
        test::Crlf({"Takt:60/60", "Username:", "Einwahlnummer:0190 nie", "Takt:30 / 10", "Flatrate: JA ",
                    "Freiminuten:90,5", "[Tarifzonen]",
                    // keys are not compared, values are cut out by position
                    "Zone:egal", "XXX:08", "YYY:18", "ZZZZZZZ:0,12", "Einheit:60", "Wochenende:JA",
                    "Zone:egal", "Von:0", "Bis:24", "Pfennig:1", "Einheit:60", "Wochenende:vielleicht",
                    // a stray line: the zone behind it is read out of step and lost
                    "", "Zone:egal", "Von:0", "Bis:24", "Pfennig:2", "Einheit:60", "Wochenende:Nein"}));
    const auto tarif = ReadTarif(data.dir(), u"Hand - Geschrieben.atl"_s);
    QVERIFY(tarif && tarif->Herkunft == TarifHerkunft::Automatisch && tarif->Flatrate);
    QCOMPARE(tarif->Takt, u"30 / 10"_s);  // the last line of a key wins
    QCOMPARE(tarif->Freiminuten, 90.0);
    QCOMPARE(tarif->Zonen, (QList<Tarifzone>{{8, 18, 0.12f, true}}));

    // Saved again, the lines the editor doesn't show come back as they were.
    Tarif saved = *tarif;
    saved.Tarifname = u"Kopie"_s;
    QVERIFY(WriteTarif(data.dir(), saved));
    const QList<QByteArray> lines = SplitLines(data.read(u"Tarife/Hand - Kopie.tel"_s));
    QCOMPARE(lines[4], QByteArray("G\374ltigkeit:k.A."));
    QCOMPARE(lines.mid(6, 3),
             (QList<QByteArray>{"Einwahlnummer:0190 nie", "Username:k.A.", "Password:k.A."}));
    QCOMPARE(lines.mid(18, 2), (QList<QByteArray>{"Sekundengenau:", "Sekundenschritte:"}));
  }

  void namesAndLists() {
    QCOMPARE(GetAnbieter(u"A-B - C - D.tel"_s).value_or(QString()), u"A-B"_s);
    QCOMPARE(GetTarifname(u"A-B - C - D.tel"_s), u"C - D"_s);
    QVERIFY(!GetAnbieter(u"Ohne Strich.tel"_s));
    QCOMPARE(GetTarifDatei(u"Foo"_s, u"X - Bar"_s), QString());

    test::TempDataDir data;
    for (const char* name : {"Foo - Bar.tel", "Foo - Bar.atl", "Foo Net - Bar.tel", "foo - klein.TEL",
                             "Foo - Notiz.txt", "readme.txt", "Foo [X] - Y.atl", "Ohne Strich.tel"}) {
      data.write(u"Tarife/"_s + QLatin1String(name), "x\r\n");
    }
    QCOMPARE(GetAnbieterListe(data.dir()), (QStringList{"Foo", "Foo Net", "Foo [X]", "foo"}));

    QStringList labels;
    for (const TarifEintrag& entry : GetTarifListe(data.dir(), u"Foo"_s)) {
      labels.append(entry.Label);
      QCOMPARE(GetTarifDatei(u"Foo"_s, entry.Label).toLower(), entry.Datei.toLower());
    }
    // The deliberate prefix match takes Foo Net's and Foo [X]'s files too.
    QCOMPARE(labels, (QStringList{"A - Bar", "M - Bar", "M Net - Bar", "A [X] - Y", "M - klein"}));
    const auto bracket = GetTarifListe(data.dir(), u"Foo [X]"_s);
    QVERIFY(bracket.size() == 1 && bracket[0].Label == u"A - Y"_s);
  }

  void peeksReadTheirKeys() {
    test::TempDataDir data;
    data.write(
        u"Tarife/Peek - Alles.tel"_s,
        test::Crlf({"Volumenabrechnung:Ja", "Volumenkosten:2,5", "VOLUMENEINHEIT:0,5", "volumengrenze:2",
                    "Volumengrenze:9", "Freiminuten:90,5", "Freiminuten:10", "Takt:60/60", "Takt:30 / 10",
                    "Gespr\344chsgrundgeb\374hr:12,5", "Volumenabrechnung: nein "}));
    const QString file = u"Peek - Alles.tel"_s;
    const DataDir& dir = data.dir();
    QVERIFY(!IsVolumentarif(dir, file));  // the last line decides
    QCOMPARE(GetVolumenkosten(dir, file), 2.5f);
    QCOMPARE(GetVolumeneinheit(dir, file), 0.5f);
    QCOMPARE(GetTarifVolumengrenze(dir, file), 2000.0);  // the first line decides
    QCOMPARE(GetTarifFreiminuten(dir, file), 90.0);
    QCOMPARE(GetActualTakt(dir, file), u"30 / 10"_s);
    QCOMPARE(GetPreisEinheit(dir, file), test::Local(u"0.5MB"_s));  // read two lines down

    for (const QString& missing : {QString(), u"Peek - Fehlt.tel"_s}) {
      QVERIFY(!IsVolumentarif(dir, missing) && !ReadTarif(dir, missing));
      QCOMPARE(GetVolumenkosten(dir, missing) + GetTarifFreiminuten(dir, missing), 0.0);
      QCOMPARE(GetPreisEinheit(dir, missing), u"Minute"_s);
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
    const QString file = u"Kaputt - Datei.tel"_s;
    Tarif nothing;
    nothing.Anbieter = u"Kaputt"_s;
    nothing.Tarifname = u"Datei"_s;
    nothing.Sekundengenau.clear();
    nothing.Sekundenschritte.clear();
    for (const QByteArray& content : keyless + huge) {
      data.write(u"Tarife/"_s + file, content);
      const auto tarif = ReadTarif(dir, file);
      QVERIFY(tarif);
      const float unitCost = UnitCost(GetTarifPreis(dir, file, test::At(1, 0, 59, 58), true),
                                      ParseTakt(GetActualTakt(dir, file)).rest);
      QVERIFY(!AktuellerPreisText(dir, file, test::At(1, 1), false, u"€"_s).isEmpty());
      if (keyless.contains(content)) {
        QVERIFY(*tarif == nothing);
        QCOMPARE(unitCost + GetGrundgebuehrJeVerbindung(dir, file) + GetVolumenkosten(dir, file), 0.0f);
        QCOMPARE(GetPreisEinheit(dir, file), u"Minute"_s);
      }
    }
    QCOMPARE(ParseTakt(QString::fromLatin1("9" + digits)).first, qint16(32767));
  }
};

QTEST_APPLESS_MAIN(TestTariffFile)
#include "test_tariff_file.moc"
