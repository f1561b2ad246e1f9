#include "desk/CheapestEntry.h"
#include "support/TempDataDir.h"
#include "tariffs/TariffText.h"

#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;
using test::At;
using test::Local;
using test::Zone;

namespace {

const QString kUnbekannt = u"unbekannt (keine Tarife zugewiesen)"_s;

struct Desk {
  test::TempDataDir data;

  // A time tariff of one price on working days and another at weekends and
  // on holidays.
  void timeTariff(const QString& file, const QByteArray& weekday, const QByteArray& weekend = "1") const {
    data.write(u"Tarife/"_s + file,
               test::Crlf(test::TimeHead() + Zone(0, 24, weekday, false) + Zone(0, 24, weekend, true)));
  }
  void assign(const QString& entry, const QByteArray& provider, const QByteArray& label) const {
    data.write(u"DialUp/"_s + entry + u".trf"_s, provider + "\r\n" + label + "\r\n");
  }
  QString find(const QStringList& entries, bool holiday = false) const {
    // Monday 10:00.
    return CheapestEntryText(data.dir(), entries, At(1, 10), holiday, u"€"_s);
  }
};

}  // namespace

class TestCheapestEntry : public QObject {
  Q_OBJECT

 private slots:
  void fallsBackWhenNothingIsAssigned() {
    Desk desk;
    QCOMPARE(desk.find({}), kUnbekannt);
    QVERIFY(FindCheapestEntry(desk.data.dir(), {}, At(1, 10), false, u"€"_s).isEmpty());

    desk.timeTariff(u"Anbieter - Tag.tel"_s, "3");
    // No file, a file cut short, no assignment in either line, a name that
    // can't be a file.
    desk.data.write(u"DialUp/Kurz.trf"_s, "Anbieter\r\n");
    desk.assign(u"Ohne1"_s, "[Keine Zuordnung]", "M - Tag");
    desk.assign(u"Ohne2"_s, "Anbieter", "[Keine Zuordnung]");
    QCOMPARE(desk.find({"Fehlt", "Kurz", "Ohne1", "Ohne2", "a/b", ""}), kUnbekannt);

    // A price of 640.00 or more is never named, however cheap among its kind.
    desk.timeTariff(u"Teuer - Sehr.tel"_s, "64000");
    desk.assign(u"Teuer"_s, "Teuer", "M - Sehr");
    QCOMPARE(desk.find({"Teuer"}), kUnbekannt);
    desk.timeTariff(u"Teuer - Sehr.tel"_s, "63999");
    QCOMPARE(desk.find({"Teuer"}), u"Teuer (%1 €)"_s.arg(Local("639.990")));
  }

  void theFirstStrictlyCheapestWins() {
    Desk desk;
    desk.timeTariff(u"Anbieter - Tag.tel"_s, "3");
    desk.timeTariff(u"Anbieter - Billig.atl"_s, "1.5");
    desk.assign(u"Erster"_s, "Anbieter", "M - Tag");
    desk.assign(u"Zweiter"_s, "Anbieter", "M - Tag");
    // The file's name in another case counts as the entry's.
    desk.data.write(u"DialUp/DRITTER.TRF"_s, "Anbieter\r\nA - Billig\r\n");

    // Equal prices: the first in the list's order stays.
    QCOMPARE(desk.find({"Erster", "Zweiter"}), u"Erster (%1 €)"_s.arg(Local("0.030")));
    QCOMPARE(desk.find({"Zweiter", "Erster"}), u"Zweiter (%1 €)"_s.arg(Local("0.030")));
    QCOMPARE(desk.find({"Erster", "Dritter", "Zweiter"}), u"Dritter (%1 €)"_s.arg(Local("0.015")));

    // Any letter but "A" names a ".tel".
    desk.timeTariff(u"Anbieter - Nacht.tel"_s, "2");
    desk.assign(u"Vierter"_s, "Anbieter", "X - Nacht");
    QCOMPARE(desk.find({"Erster", "Vierter"}), u"Vierter (%1 €)"_s.arg(Local("0.020")));

    // On a holiday the weekend zones price the tariffs.
    desk.timeTariff(u"Anbieter - Tag.tel"_s, "3", "0.5");
    QCOMPARE(desk.find({"Dritter", "Erster"}, true), u"Erster (%1 €)"_s.arg(Local("0.005")));
  }

  void rawPricesAreComparedWhateverTheyAreFor() {
    Desk desk;
    desk.timeTariff(u"Zeit - Tag.tel"_s, "2");
    desk.data.write(u"Tarife/Menge - MB.tel"_s,
                    test::Crlf({"[Providerdaten]", "Name:Menge - MB", "Volumenabrechnung:Ja",
                                "Volumenkosten:1.5", "Volumeneinheit:1000", "Takt:1000/1000"}));
    desk.assign(u"Zeit"_s, "Zeit", "M - Tag");
    desk.assign(u"Menge"_s, "Menge", "M - MB");
    // 1.5 per megabyte undercuts 2 per minute.
    QCOMPARE(desk.find({"Zeit", "Menge"}), u"Menge (%1 €)"_s.arg(Local("0.015")));

    // A tariff that is gone costs nothing and beats everything; of two such
    // the first stays.
    desk.assign(u"Weg1"_s, "Weg", "M - Geloescht");
    desk.assign(u"Weg2"_s, "Weg", "A - Auch");
    QCOMPARE(desk.find({"Zeit", "Weg1", "Menge", "Weg2"}), u"Weg1 (%1 €)"_s.arg(Local("0.000")));
  }
};

QTEST_GUILESS_MAIN(TestCheapestEntry)
#include "test_cheapest_entry.moc"
