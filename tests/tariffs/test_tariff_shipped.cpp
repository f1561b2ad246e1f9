#include "TariffText.h"
#include "support/TempDataDir.h"
#include "tariffs/RateLookup.h"
#include "tariffs/TariffFile.h"

#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;
using test::At;

namespace {

QByteArray KeyOf(const QByteArray& line) {
  const qsizetype colon = line.indexOf(':');
  return colon < 0 ? line : line.left(colon + 1);
}

}  // namespace

// The tariffs that come with the program, read with the program's own
// readers. Runs under a German and an English locale.
class TestTariffShipped : public QObject {
  Q_OBJECT

  DataDir shipped{test::TempDataDir::shippedDir()};

 private slots:
  void everyTariffFollowsTheFileGrammar() {
    const QStringList files = shipped.ListFiles(u"Tarife"_s);
    QVERIFY(files.size() >= 4);
    for (const QString& file : files) {
      const auto anbieter = GetAnbieter(file);
      QVERIFY2(anbieter && !TarifLabel(*anbieter, file).isEmpty(), qPrintable(file));
      const auto bytes = ReadFileBytes(shipped.Resolve(u"Tarife/"_s + file));
      QVERIFY(bytes && bytes->endsWith("\r\n") && bytes->count('\n') == bytes->count("\r\n"));
      const auto tarif = ReadTarif(shipped, file);
      QVERIFY(tarif);

      // The same keys on the same lines as the editor writes them; a tariff
      // made by hand on a system with a decimal comma is the very same bytes.
      const QList<QByteArray> lines = SplitLines(*bytes);
      const QList<QByteArray> written = TarifLines(*tarif);
      QCOMPARE(lines.size(), written.size());
      for (qsizetype i = 0; i < lines.size(); ++i) {
        QCOMPARE(KeyOf(lines[i]), KeyOf(written[i]));
      }
      if (tarif->Herkunft == TarifHerkunft::Manuell && DecimalSign() == QLatin1Char(',')) {
        QCOMPARE(test::Crlf(written), *bytes);
      }

      if (tarif->Volumenabrechnung) {
        QVERIFY(GetTarifPreis(shipped, file, At(1, 12), false) > 0);
        continue;
      }
      for (int day = 1; day <= 7; ++day) {
        for (int hour = 0; hour < 24; ++hour) {
          QVERIFY2(GetTarifPreis(shipped, file, At(day, hour, 30), false) > 0,
                   qPrintable(file + u" %1 %2"_s.arg(day).arg(hour)));
        }
      }
    }
  }

  void theSamplesHoldWhatTheirNamesSay() {
    const QString tagNacht = u"Funkwelle - Tag und Nacht.tel"_s;
    QCOMPARE(GetTarifPreis(shipped, tagNacht, At(1, 12), false), 3.49);
    QCOMPARE(GetTarifPreis(shipped, tagNacht, At(1, 18), false), 1.99);
    QCOMPARE(GetTarifPreis(shipped, tagNacht, At(6, 12), false), 1.49);
    QCOMPARE(GetTarifPreis(shipped, tagNacht, At(3, 12), true), 1.49);

    const QString volumen = u"Netzfalke - Volumen 500.tel"_s;
    QVERIFY(IsVolumentarif(shipped, volumen));
    QCOMPARE(GetTarifVolumengrenze(shipped, volumen), 500000.0);
    QCOMPARE(GetPreisEinheit(shipped, volumen), u"1MB"_s);

    const QString frei = u"Mobilnetz Plus - Freiminuten 100.tel"_s;
    QCOMPARE(GetTarifFreiminuten(shipped, frei), 100.0);
    QCOMPARE(GetGrundgebuehrJeVerbindung(shipped, frei), 0.05f);

    // Fetched from the update service, with decimal points.
    const QString sekunde = u"Sternnetz - Sekundentakt.atl"_s;
    QCOMPARE(GetTarifPreis(shipped, sekunde, At(1, 12), false), 2.69);
    QCOMPARE(GetGrundgebuehrJeVerbindung(shipped, sekunde), 0.099f);
    QCOMPARE(ParseTakt(GetActualTakt(shipped, sekunde)).rest, 1.0f);
  }
};

QTEST_APPLESS_MAIN(TestTariffShipped)
#include "test_tariff_shipped.moc"
