#include "desk/OverviewFiles.h"
#include "desk/OverviewSelection.h"
#include "support/TestServices.h"
#include "tariffs/TariffText.h"
#include "users/UserFile.h"

#include <QDir>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

// A data directory with a running program's state; Monday 10:00.
struct Desk : test::TestServices {
  Desk() : test::TestServices(test::At(1, 10)) {}
  void user(const QString& name, const UserFile& file = {}) const { WriteUserFile(data.dir(), name, file); }
  QByteArray config() const { return data.read(u"Config/Overview.cfg"_s); }
};

const UserFile kLockedWithPassword{.noMonitoringSettings = true, .password = "geheim"};

}  // namespace

class TestOverview : public QObject {
  Q_OBJECT

 private slots:
  void overviewConfigIsFourPlainLines() {
    Desk desk;
    QVERIFY(!ReadOverviewConfig(desk.data.dir()));
    QVERIFY(WriteOverviewConfig(desk.data.dir(),
                                {u"T-Online"_s, u"Jürgen"_s, u"Funkwelle"_s, u"M - Tag und Nacht"_s}));
    QCOMPARE(desk.config(), QByteArray("T-Online\r\nJ\374rgen\r\nFunkwelle\r\nM - Tag und Nacht\r\n"));

    // Another installation's spelling of the folder, and a file cut short.
    test::TempDataDir other;
    other.write(u"CONFIG/overview.CFG"_s, "Eintrag\nKind");
    const auto config = ReadOverviewConfig(other.dir());
    QVERIFY(config && config->user == u"Kind"_s && config->provider.isEmpty() && config->tariff.isEmpty());
  }

  void tariffChoiceSetsPriceAllowanceAndConfig() {
    Desk desk;
    desk.user(u"Supervisor"_s);
    desk.data.write(u"Tarife/Foo - Billig.tel"_s, "");
    desk.data.write(
        u"Tarife/Foo Net - Schnell.atl"_s,
        test::Crlf(test::TimeHead() + test::Zone(0, 24, "3,49", false) + test::Zone(0, 24, "1", true)));
    desk.data.write(u"Tarife/Netz - Volumen.tel"_s, test::Crlf({"Volumenabrechnung:Ja", "Volumenkosten:1,5",
                                                                "Volumeneinheit:1", "Volumengrenze:500"}));

    OverviewSelection selection(desk.services, {});
    selection.Load({u"Eintrag"_s, {}, u"Foo"_s, u"A Net - Schnell"_s});
    // The shorter provider lists the longer one's files too.
    QCOMPARE(selection.Providers(), QStringList({"Foo", "Foo Net", "Netz"}));
    QCOMPARE(selection.Tariffs().size(), 2);
    QCOMPARE(desk.state.AktuellerTarif, u"Foo Net - Schnell.atl"_s);
    QCOMPARE(selection.PriceText(), u"0,035 € pro Minute"_s);
    QCOMPARE(desk.state.Restfrei, u"-"_s);

    selection.ChooseProvider(2);
    QCOMPARE(desk.state.AktuellerTarif, u"Netz - Volumen.tel"_s);
    QCOMPARE(selection.PriceText(), u"0,015 € pro 1MB"_s);
    QCOMPARE(desk.state.Restfrei, u"500"_s);

    // The holiday box redraws the line per minute, only on screen, and
    // leaves the allowance alone.
    selection.SetHoliday(true, false);
    QCOMPARE(selection.PriceText(), u"0,015 € pro 1MB"_s);
    selection.SetHoliday(true, true);
    QCOMPARE(selection.PriceText(), u"0,015 € pro Minute"_s);
    QCOMPARE(desk.state.Restfrei, u"500"_s);

    // A provider whose files are no tariffs: nothing to choose, the current tariff stays.
    desk.data.write(u"Tarife/Alt - Tarif.trf"_s, "");
    selection.Load(selection.Current());
    selection.ChooseProvider(static_cast<int>(selection.Providers().indexOf(u"Alt"_s)));
    QCOMPARE(selection.TariffIndex(), -1);
    QCOMPARE(desk.state.AktuellerTarif, u"Netz - Volumen.tel"_s);
    QCOMPARE(desk.config(), QByteArray("Eintrag\r\nSupervisor\r\nAlt\r\n\r\n"));
  }

  void aTariffThatCantBeReadKeepsTheStoredChoice() {
    const OverviewConfig stored{{}, u"Supervisor"_s, u"Foo"_s, u"M - Billig"_s};
    const QByteArray storedFile = "\r\nSupervisor\r\nFoo\r\nM - Billig\r\n";
    // A folder in the tariff's place, or a file in the folder's place.
    for (const char* blocker : {"Tarife/Foo - Billig.tel/x", "Tarife"}) {
      Desk desk;
      desk.user(u"Supervisor"_s);
      desk.data.write(u"Tarife/Foo - Teuer.tel"_s, "");
      if (QString::fromLatin1(blocker) == QLatin1String("Tarife")) {
        QVERIFY(QDir(desk.data.path(u"Tarife"_s)).removeRecursively());
      }
      desk.data.write(QString::fromLatin1(blocker), "");
      OverviewSelection selection(desk.services, {});
      selection.Load(stored);
      QCOMPARE(selection.TariffIndex(), -1);
      QVERIFY(desk.state.AktuellerTarif.isEmpty());
      QCOMPARE(desk.config(), storedFile);
      selection.ChooseUser(0, false);
      QCOMPARE(desk.config(), storedFile);
    }
    // A tariff that is simply gone is no longer chosen.
    Desk desk;
    desk.data.write(u"Tarife/Foo - Teuer.tel"_s, "");
    OverviewSelection selection(desk.services, {});
    selection.Load(stored);
    QCOMPARE(desk.state.AktuellerTarif, u"Foo - Teuer.tel"_s);
  }

  void userShownAndChosen() {
    Desk desk;
    desk.user(u"Supervisor"_s);
    desk.user(u"pia"_s);
    desk.user(u"Kind"_s, kLockedWithPassword);
    // Any case of the extension counts; other files of a user don't.
    desk.data.write(u"Benutzer/Gast.USR"_s, "");
    desk.data.write(u"Benutzer/Kind.bdg"_s, "0\r\n");
    QVERIFY(!MonitoringSwitchForbidden(desk.data.dir(), u"Weg"_s));

    // The program's user wins over the last one written.
    desk.state.ActiveUser = u"Gast"_s;
    OverviewSelection selection(desk.services, u"pia"_s);
    selection.Load({{}, u"Kind"_s, {}, {}});
    QCOMPARE(selection.Current().user, u"Gast"_s);
    QCOMPARE(selection.Users(), QStringList({"Gast", "Kind", "Supervisor", "pia"}));

    // Without one, the last user counts, and the login where it is linked.
    auto loadWithout = [&] {
      desk.state.ActiveUser.clear();
      selection.Load({{}, u"Kind"_s, {}, {}});
      return desk.state.ActiveUser;
    };
    QCOMPARE(loadWithout(), u"Kind"_s);
    desk.data.write(u"Config/Users.cfg"_s, " 1 \r\n");
    QCOMPARE(loadWithout(), u"pia"_s);

    // On screen, a user with a password can't be taken without the question.
    const int kind = static_cast<int>(selection.Users().indexOf(u"Kind"_s));
    QVERIFY(!selection.ChooseUser(kind, true));
    QCOMPARE(desk.state.ActiveUser, u"pia"_s);

    // Taken while filling: his lock keeps monitoring on, and says so in the file.
    desk.state.MonitoringOn = false;
    QVERIFY(selection.ChooseUser(kind, false));
    QCOMPARE(desk.state.ActiveUser, u"Kind"_s);
    QVERIFY(selection.MonitoringLocked() && desk.state.MonitoringOn);
    QCOMPARE(desk.data.read(u"Config/Monitoring.cfg"_s), QByteArray(" 1 \r\n"));
  }
};

QTEST_APPLESS_MAIN(TestOverview)
#include "test_overview.moc"
