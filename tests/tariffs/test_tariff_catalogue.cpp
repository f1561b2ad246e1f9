#include "support/TempDataDir.h"
#include "tariffs/Catalogue.h"
#include "tariffs/EditorRules.h"

#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

class TestTariffCatalogue : public QObject {
  Q_OBJECT

 private slots:
  void editorFieldsAreCleanedUp() {
    const QList<std::pair<QString, QString>> takt{
        {"60", "60 / 60"},   {"1", "1 / 60"},          {"0", "60 / 60"},  {"30/0", "30 / 60"},
        {"0/10", "60 / 60"}, {"60,5 / 1.9", "60 / 1"}, {"abc", "60 / 60"}};
    for (const auto& [typed, cleaned] : takt) {
      QCOMPARE(BereinigeTakt(typed), cleaned);
    }
    QCOMPARE(BereinigeBetrag(u"0,12"), u"0,12"_s);
    QCOMPARE(BereinigeBetrag(u"x"), u"0"_s);
    QCOMPARE(BereinigeGanzzahl(u"7,9 Uhr"), u"7"_s);

    // Zones go through the list unchanged.
    const QString eintrag = ZonenEintrag(8, 18, BereinigeBetrag(u"0,12"), false);
    QCOMPARE(eintrag, u"Von: 08 Bis: 18 Kosten: 0,12 Werktag"_s);
    QCOMPARE(ZoneAusEintrag(eintrag), (Tarifzone{8, 18, 12.0f, false}));
    QCOMPARE(ZoneAusEintrag(ZonenEintrag(0, 0, "1.5", true)), (Tarifzone{0, 0, 150.0f, true}));
  }

  void saveRefusals() {
    const QString names = QStringLiteral(
        "Der Anbieter- und Tarifname ist unvollständig oder enthält ungültige Zeichen. Beide Felder dürfen "
        "250 "
        "Zeichen nicht überschreiten.");
    const QString weekend = TarifFehler("A", "B", {"Von: 08 Bis: 18 Kosten: 1 Werktag"}, false);
    QVERIFY(weekend.startsWith("Es ist kein Tarif für das Wochenende angegeben."));
    for (const QString& anbieter : {QString(), u"A/B"_s, QString(300, 'x')}) {
      QCOMPARE(TarifFehler(anbieter, "B", {}, false), names);
    }
    // A comma passes, weekend zones alone pass, volume tariffs have no zones to check.
    QCOMPARE(TarifFehler("A, B", "B", {"Von: 00 Bis: 00 Kosten: 1 Wochenende"}, false), QString());
    QCOMPARE(TarifFehler("A", "B", {"Von: 08 Bis: 18 Kosten: 1 Werktag"}, true), QString());
    QCOMPARE(TarifFehler("A", "B", {}, false), QString());
  }

  void catalogueTreeAndDetails() {
    test::TempDataDir data;
    data.write("Tarife/Foo Net - X.atl", "Name:X\r\n");
    data.write("Tarife/Foo - B.atl", "Name:B\r\n");
    data.write("Tarife/Foo - A.tel",
               "Grundgeb\374hr:4,5\r\nVolumenabrechnung:Ja\r\nVolumenkosten:150\r\nVolumeneinheit:10\r\n"
               "Volumengrenze:0\r\nTakt:60/1\r\nRegion:bundesweit\r\nGespr\344chsgrundgeb\374hr:12\r\n");
    data.write("Tarife/loose.tel", "");
    const QList<KatalogAnbieter> katalog = GetKatalog(data.dir());
    QCOMPARE(katalog.size(), 2);
    QCOMPARE(katalog[0].name, u"Foo"_s);
    QCOMPARE(katalog[0].tel, QStringList{"Foo - A.tel"});
    QCOMPARE(katalog[0].atl, (QStringList{"Foo - B.atl", "Foo Net - X.atl"}));
    QCOMPARE(katalog[1].atl, QStringList{"Foo Net - X.atl"});

    const auto d = GetKatalogDetails(data.dir(), "Foo - A.tel", QDateTime::currentDateTime(), false, "€");
    QVERIFY(d);
    QCOMPARE(QStringList({d->preisCaption, d->preis, d->taktung, d->freiCaption, d->frei, d->grundgebuehr,
                          d->gespraechsgebuehr, d->verfuegbarkeit}),
             QStringList({"Kosten/Tkt (jetzt):", "1,5000 €", "10 MB", "Freitransfer:", "unbegrenzt", "4,50 €",
                          "0,120 €", "bundesweit"}));
    QVERIFY(!GetKatalogDetails(data.dir(), "Foo - Gone.tel", QDateTime::currentDateTime(), false, "€"));
    QCOMPARE(DoubleFirstAmpersand("A&B&C"), u"A&&B&C"_s);
  }
};

QTEST_GUILESS_MAIN(TestTariffCatalogue)
#include "test_tariff_catalogue.moc"
