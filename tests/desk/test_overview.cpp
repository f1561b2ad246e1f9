#include "desk/OverviewFiles.h"
#include "desk/OverviewSelection.h"
#include "support/TestServices.h"
#include "tariffs/TariffText.h"
#include "users/UserFile.h"

#include <QDir>
#include <QTest>

using namespace minutor;

namespace {

// A data directory with a running program's state; Monday 10:00.
struct Desk : test::TestServices {
  Desk() : test::TestServices(test::At(1, 10)) {}
  void user(const QString& name, const UserFile& file = {}) const { WriteUserFile(data.dir(), name, file); }
  QByteArray config() const { return data.read(QStringLiteral("Config/Overview.cfg")); }
};

const UserFile kLockedWithPassword{.noMonitoringSettings = true, .password = "geheim"};

}  // namespace

class TestOverview : public QObject {
  Q_OBJECT

 private slots:
  void overviewConfigIsFourPlainLines() {
    Desk desk;
    QVERIFY(!ReadOverviewConfig(desk.data.dir()));
    QVERIFY(WriteOverviewConfig(
        desk.data.dir(), {QStringLiteral("T-Online"), QStringLiteral("Jürgen"), QStringLiteral("Funkwelle"),
                          QStringLiteral("M - Tag und Nacht")}));
    QCOMPARE(desk.config(), QByteArray("T-Online\r\nJ\374rgen\r\nFunkwelle\r\nM - Tag und Nacht\r\n"));

    // Another installation's spelling of the folder, and a file cut short.
    test::TempDataDir other;
    other.write(QStringLiteral("CONFIG/overview.CFG"), "Eintrag\nKind");
    const auto config = ReadOverviewConfig(other.dir());
    QVERIFY(config && config->user == QStringLiteral("Kind") && config->provider.isEmpty() &&
            config->tariff.isEmpty());
  }

  void tariffChoiceSetsPriceAllowanceAndConfig() {
    Desk desk;
    desk.user(QStringLiteral("Supervisor"));
    desk.data.write(QStringLiteral("Tarife/Foo - Billig.tel"), "");
    desk.data.write(
        QStringLiteral("Tarife/Foo Net - Schnell.atl"),
        test::Crlf(test::TimeHead() + test::Zone(0, 24, "3,49", false) + test::Zone(0, 24, "1", true)));
    desk.data.write(
        QStringLiteral("Tarife/Netz - Volumen.tel"),
        test::Crlf({"Volumenabrechnung:Ja", "Volumenkosten:1,5", "Volumeneinheit:1", "Volumengrenze:500"}));

    OverviewSelection selection(desk.services, {});
    selection.Load({QStringLiteral("Eintrag"), {}, QStringLiteral("Foo"), QStringLiteral("A Net - Schnell")});
    // The shorter provider lists the longer one's files too.
    QCOMPARE(selection.Providers(), QStringList({"Foo", "Foo Net", "Netz"}));
    QCOMPARE(selection.Tariffs().size(), 2);
    QCOMPARE(desk.state.AktuellerTarif, QStringLiteral("Foo Net - Schnell.atl"));
    QCOMPARE(selection.PriceText(), QStringLiteral("0,035 € pro Minute"));
    QCOMPARE(desk.state.Restfrei, QStringLiteral("-"));

    selection.ChooseProvider(2);
    QCOMPARE(desk.state.AktuellerTarif, QStringLiteral("Netz - Volumen.tel"));
    QCOMPARE(selection.PriceText(), QStringLiteral("0,015 € pro 1MB"));
    QCOMPARE(desk.state.Restfrei, QStringLiteral("500"));

    // The holiday box redraws the line per minute, only on screen, and
    // leaves the allowance alone.
    selection.SetHoliday(true, false);
    QCOMPARE(selection.PriceText(), QStringLiteral("0,015 € pro 1MB"));
    selection.SetHoliday(true, true);
    QCOMPARE(selection.PriceText(), QStringLiteral("0,015 € pro Minute"));
    QCOMPARE(desk.state.Restfrei, QStringLiteral("500"));

    // A provider whose files are no tariffs: nothing to choose, the current tariff stays.
    desk.data.write(QStringLiteral("Tarife/Alt - Tarif.trf"), "");
    selection.Load(selection.Current());
    selection.ChooseProvider(static_cast<int>(selection.Providers().indexOf(QStringLiteral("Alt"))));
    QCOMPARE(selection.TariffIndex(), -1);
    QCOMPARE(desk.state.AktuellerTarif, QStringLiteral("Netz - Volumen.tel"));
    QCOMPARE(desk.config(), QByteArray("Eintrag\r\nSupervisor\r\nAlt\r\n\r\n"));
  }

  void aTariffThatCantBeReadKeepsTheStoredChoice() {
    const OverviewConfig stored{
        {}, QStringLiteral("Supervisor"), QStringLiteral("Foo"), QStringLiteral("M - Billig")};
    const QByteArray storedFile = "\r\nSupervisor\r\nFoo\r\nM - Billig\r\n";
    // A folder in the tariff's place, or a file in the folder's place.
    for (const char* blocker : {"Tarife/Foo - Billig.tel/x", "Tarife"}) {
      Desk desk;
      desk.user(QStringLiteral("Supervisor"));
      desk.data.write(QStringLiteral("Tarife/Foo - Teuer.tel"), "");
      if (QString::fromLatin1(blocker) == QLatin1String("Tarife")) {
        QVERIFY(QDir(desk.data.path(QStringLiteral("Tarife"))).removeRecursively());
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
    desk.data.write(QStringLiteral("Tarife/Foo - Teuer.tel"), "");
    OverviewSelection selection(desk.services, {});
    selection.Load(stored);
    QCOMPARE(desk.state.AktuellerTarif, QStringLiteral("Foo - Teuer.tel"));
  }

  void userShownAndChosen() {
    Desk desk;
    desk.user(QStringLiteral("Supervisor"));
    desk.user(QStringLiteral("pia"));
    desk.user(QStringLiteral("Kind"), kLockedWithPassword);
    // Any case of the extension counts; other files of a user don't.
    desk.data.write(QStringLiteral("Benutzer/Gast.USR"), "");
    desk.data.write(QStringLiteral("Benutzer/Kind.bdg"), "0\r\n");
    QVERIFY(!MonitoringSwitchForbidden(desk.data.dir(), QStringLiteral("Weg")));

    // The program's user wins over the last one written.
    desk.state.ActiveUser = QStringLiteral("Gast");
    OverviewSelection selection(desk.services, QStringLiteral("pia"));
    selection.Load({{}, QStringLiteral("Kind"), {}, {}});
    QCOMPARE(selection.Current().user, QStringLiteral("Gast"));
    QCOMPARE(selection.Users(), QStringList({"Gast", "Kind", "Supervisor", "pia"}));

    // Without one, the last user counts, and the login where it is linked.
    auto loadWithout = [&] {
      desk.state.ActiveUser.clear();
      selection.Load({{}, QStringLiteral("Kind"), {}, {}});
      return desk.state.ActiveUser;
    };
    QCOMPARE(loadWithout(), QStringLiteral("Kind"));
    desk.data.write(QStringLiteral("Config/Users.cfg"), " 1 \r\n");
    QCOMPARE(loadWithout(), QStringLiteral("pia"));

    // On screen, a user with a password can't be taken without the question.
    const int kind = static_cast<int>(selection.Users().indexOf(QStringLiteral("Kind")));
    QVERIFY(!selection.ChooseUser(kind, true));
    QCOMPARE(desk.state.ActiveUser, QStringLiteral("pia"));

    // Taken while filling: his lock keeps monitoring on, and says so in the file.
    desk.state.MonitoringOn = false;
    QVERIFY(selection.ChooseUser(kind, false));
    QCOMPARE(desk.state.ActiveUser, QStringLiteral("Kind"));
    QVERIFY(selection.MonitoringLocked() && desk.state.MonitoringOn);
    QCOMPARE(desk.data.read(QStringLiteral("Config/Monitoring.cfg")), QByteArray(" 1 \r\n"));
  }
};

QTEST_APPLESS_MAIN(TestOverview)
#include "test_overview.moc"
