#include "desk/CheapestEntry.h"
#include "support/TempDataDir.h"
#include "tariffs/TariffText.h"

#include <QTest>

using namespace minutor;
using test::At;
using test::Local;
using test::Zone;

namespace {

const QString kUnbekannt = QStringLiteral("unbekannt (keine Tarife zugewiesen)");

struct Desk {
  test::TempDataDir data;

  // A time tariff of one price on working days and another at weekends and
  // on holidays.
  void timeTariff(const QString& file, const QByteArray& weekday, const QByteArray& weekend = "1") const {
    data.write(QStringLiteral("Tarife/") + file,
               test::Crlf(test::TimeHead() + Zone(0, 24, weekday, false) + Zone(0, 24, weekend, true)));
  }
  void assign(const QString& entry, const QByteArray& provider, const QByteArray& label) const {
    data.write(QStringLiteral("DialUp/") + entry + QStringLiteral(".trf"),
               provider + "\r\n" + label + "\r\n");
  }
  QString find(const QStringList& entries, bool holiday = false) const {
    // Monday 10:00.
    return CheapestEntryText(data.dir(), entries, At(1, 10), holiday, QStringLiteral("€"));
  }
};

}  // namespace

class TestCheapestEntry : public QObject {
  Q_OBJECT

 private slots:
  void fallsBackWhenNothingIsAssigned() {
    Desk desk;
    QCOMPARE(desk.find({}), kUnbekannt);
    QVERIFY(FindCheapestEntry(desk.data.dir(), {}, At(1, 10), false, QStringLiteral("€")).isEmpty());

    desk.timeTariff(QStringLiteral("Anbieter - Tag.tel"), "3");
    // No file, a file cut short, no assignment in either line, a name that
    // can't be a file.
    desk.data.write(QStringLiteral("DialUp/Kurz.trf"), "Anbieter\r\n");
    desk.assign(QStringLiteral("Ohne1"), "[Keine Zuordnung]", "M - Tag");
    desk.assign(QStringLiteral("Ohne2"), "Anbieter", "[Keine Zuordnung]");
    QCOMPARE(desk.find({"Fehlt", "Kurz", "Ohne1", "Ohne2", "a/b", ""}), kUnbekannt);

    // A price of 640.00 or more is never named, however cheap among its kind.
    desk.timeTariff(QStringLiteral("Teuer - Sehr.tel"), "64000");
    desk.assign(QStringLiteral("Teuer"), "Teuer", "M - Sehr");
    QCOMPARE(desk.find({"Teuer"}), kUnbekannt);
    desk.timeTariff(QStringLiteral("Teuer - Sehr.tel"), "63999");
    QCOMPARE(desk.find({"Teuer"}), QStringLiteral("Teuer (%1 €)").arg(Local("639.990")));
  }

  void theFirstStrictlyCheapestWins() {
    Desk desk;
    desk.timeTariff(QStringLiteral("Anbieter - Tag.tel"), "3");
    desk.timeTariff(QStringLiteral("Anbieter - Billig.atl"), "1.5");
    desk.assign(QStringLiteral("Erster"), "Anbieter", "M - Tag");
    desk.assign(QStringLiteral("Zweiter"), "Anbieter", "M - Tag");
    // The file's name in another case counts as the entry's.
    desk.data.write(QStringLiteral("DialUp/DRITTER.TRF"), "Anbieter\r\nA - Billig\r\n");

    // Equal prices: the first in the list's order stays.
    QCOMPARE(desk.find({"Erster", "Zweiter"}), QStringLiteral("Erster (%1 €)").arg(Local("0.030")));
    QCOMPARE(desk.find({"Zweiter", "Erster"}), QStringLiteral("Zweiter (%1 €)").arg(Local("0.030")));
    QCOMPARE(desk.find({"Erster", "Dritter", "Zweiter"}),
             QStringLiteral("Dritter (%1 €)").arg(Local("0.015")));

    // Any letter but "A" names a ".tel".
    desk.timeTariff(QStringLiteral("Anbieter - Nacht.tel"), "2");
    desk.assign(QStringLiteral("Vierter"), "Anbieter", "X - Nacht");
    QCOMPARE(desk.find({"Erster", "Vierter"}), QStringLiteral("Vierter (%1 €)").arg(Local("0.020")));

    // On a holiday the weekend zones price the tariffs.
    desk.timeTariff(QStringLiteral("Anbieter - Tag.tel"), "3", "0.5");
    QCOMPARE(desk.find({"Dritter", "Erster"}, true), QStringLiteral("Erster (%1 €)").arg(Local("0.005")));
  }

  void rawPricesAreComparedWhateverTheyAreFor() {
    Desk desk;
    desk.timeTariff(QStringLiteral("Zeit - Tag.tel"), "2");
    desk.data.write(QStringLiteral("Tarife/Menge - MB.tel"),
                    test::Crlf({"[Providerdaten]", "Name:Menge - MB", "Volumenabrechnung:Ja",
                                "Volumenkosten:1.5", "Volumeneinheit:1000", "Takt:1000/1000"}));
    desk.assign(QStringLiteral("Zeit"), "Zeit", "M - Tag");
    desk.assign(QStringLiteral("Menge"), "Menge", "M - MB");
    // 1.5 per megabyte undercuts 2 per minute.
    QCOMPARE(desk.find({"Zeit", "Menge"}), QStringLiteral("Menge (%1 €)").arg(Local("0.015")));

    // A tariff that is gone costs nothing and beats everything; of two such
    // the first stays.
    desk.assign(QStringLiteral("Weg1"), "Weg", "M - Geloescht");
    desk.assign(QStringLiteral("Weg2"), "Weg", "A - Auch");
    QCOMPARE(desk.find({"Zeit", "Weg1", "Menge", "Weg2"}), QStringLiteral("Weg1 (%1 €)").arg(Local("0.000")));
  }
};

QTEST_GUILESS_MAIN(TestCheapestEntry)
#include "test_cheapest_entry.moc"
