#include "desk/OverviewFiles.h"
#include "desk/OverviewSelection.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"
#include "tariffs/TariffText.h"
#include "users/UserFile.h"

#include <QTest>

using namespace minutor;
using test::At;
using test::Zone;

namespace {

// A data directory with a running program's state; Monday 10:00.
struct Desk {
  test::TempDataDir data;
  AppState state;
  FixedClock clock{At(1, 10)};
  test::RecordingPrompter prompter;
  Services services{state, data.dir(), clock, prompter};

  void tariff(const QString& name, const QList<QByteArray>& lines) const {
    data.write(QStringLiteral("Tarife/") + name, test::Crlf(lines));
  }
  void timeTariff(const QString& name, const QByteArray& pfennig) const {
    tariff(name, test::TimeHead() + Zone(0, 24, pfennig, false) + Zone(0, 24, "1", true));
  }
  void user(const QString& name, const QByteArray& password = {}, bool noMonitoring = false) const {
    UserFile file;
    file.password = password;
    file.noMonitoringSettings = noMonitoring;
    WriteUserFile(data.dir(), name, file);
  }
  QByteArray config() const { return data.read(QStringLiteral("Config/Overview.cfg")); }
};

}  // namespace

class TestOverview : public QObject {
  Q_OBJECT

 private slots:
  void overviewConfigIsFourPlainLines() {
    test::TempDataDir data;
    QVERIFY(!ReadOverviewConfig(data.dir()));
    QVERIFY(
        WriteOverviewConfig(data.dir(), {QStringLiteral("T-Online"), QStringLiteral("Jürgen"),
                                         QStringLiteral("Funkwelle"), QStringLiteral("M - Tag und Nacht")}));
    QCOMPARE(data.read(QStringLiteral("Config/Overview.cfg")),
             QByteArray("T-Online\r\nJ\374rgen\r\nFunkwelle\r\nM - Tag und Nacht\r\n"));

    // Another installation's spelling of the folder, and a file cut short.
    test::TempDataDir other;
    other.write(QStringLiteral("CONFIG/overview.CFG"), "Eintrag\nKind");
    const auto config = ReadOverviewConfig(other.dir());
    QVERIFY(config);
    QCOMPARE(config->user, QStringLiteral("Kind"));
    QVERIFY(config->provider.isEmpty() && config->tariff.isEmpty());
  }

  void usersAndTheirRights() {
    Desk desk;
    desk.user(QStringLiteral("Supervisor"));
    desk.user(QStringLiteral("Kind"), "geheim", true);
    desk.data.write(QStringLiteral("Benutzer/Gast.USR"), "");
    desk.data.write(QStringLiteral("Benutzer/Kind.bdg"), "0\r\n");
    const auto& dir = desk.data.dir();
    QCOMPARE(GetUserNames(dir), QStringList({"Gast", "Kind", "Supervisor"}));
    QVERIFY(UserHasPassword(dir, QStringLiteral("Kind")) && !UserHasPassword(dir, QStringLiteral("Gast")));
    QCOMPARE(MonitoringSwitchForbidden(dir, QStringLiteral("Kind")), std::optional(true));
    QCOMPARE(MonitoringSwitchForbidden(dir, QStringLiteral("Supervisor")), std::optional(false));
    QVERIFY(!MonitoringSwitchForbidden(dir, QStringLiteral("Weg")));

    QVERIFY(!IsLogonLinked(dir));
    desk.data.write(QStringLiteral("Config/Users.cfg"), " 1 \r\n");
    QVERIFY(IsLogonLinked(dir));
  }

  void tariffChoiceSetsPriceAllowanceAndConfig() {
    Desk desk;
    desk.user(QStringLiteral("Supervisor"));
    desk.timeTariff(QStringLiteral("Foo - Billig.tel"), "1,5");
    desk.timeTariff(QStringLiteral("Foo Net - Schnell.atl"), "3,49");
    desk.tariff(QStringLiteral("Netz - Volumen.tel"),
                {"Volumenabrechnung:Ja", "Volumenkosten:1,5", "Volumeneinheit:1", "Volumengrenze:500"});

    OverviewSelection selection(desk.services, {});
    selection.Load({QStringLiteral("Eintrag"), {}, QStringLiteral("Foo"), QStringLiteral("A Net - Schnell")});
    // The shorter provider lists the longer one's files too.
    QCOMPARE(selection.Providers(), QStringList({"Foo", "Foo Net", "Netz"}));
    QCOMPARE(selection.Tariffs().size(), 2);
    QCOMPARE(desk.state.AktuellerTarif, QStringLiteral("Foo Net - Schnell.atl"));
    QCOMPARE(selection.PriceText(), QStringLiteral("0,035 € pro Minute"));
    QCOMPARE(desk.state.Restfrei, QStringLiteral("-"));
    QCOMPARE(desk.config(), QByteArray("Eintrag\r\nSupervisor\r\nFoo\r\nA Net - Schnell\r\n"));

    selection.ChooseProvider(2);
    QCOMPARE(desk.state.AktuellerTarif, QStringLiteral("Netz - Volumen.tel"));
    QCOMPARE(selection.PriceText(), QStringLiteral("0,015 € pro 1MB"));
    QCOMPARE(selection.Allowance().text, QStringLiteral("500MB"));
    QCOMPARE(desk.state.Restfrei, QStringLiteral("500"));
    QCOMPARE(desk.config(), QByteArray("Eintrag\r\nSupervisor\r\nNetz\r\nM - Volumen\r\n"));

    // The holiday box redraws the line per minute, and touches nothing else.
    selection.SetHoliday(true, false);
    QCOMPARE(selection.PriceText(), QStringLiteral("0,015 € pro 1MB"));
    selection.SetHoliday(true, true);
    QVERIFY(desk.state.FeiertagAktiv);
    QCOMPARE(selection.PriceText(), QStringLiteral("0,015 € pro Minute"));
    QCOMPARE(desk.state.Restfrei, QStringLiteral("500"));

    // A provider whose files are no tariffs: nothing to choose, the current
    // tariff stays.
    desk.data.write(QStringLiteral("Tarife/Alt - Tarif.trf"), "");
    selection.Load(selection.Current());
    selection.ChooseProvider(static_cast<int>(selection.Providers().indexOf(QStringLiteral("Alt"))));
    QCOMPARE(selection.TariffIndex(), -1);
    QCOMPARE(desk.state.AktuellerTarif, QStringLiteral("Netz - Volumen.tel"));
    QCOMPARE(desk.config(), QByteArray("Eintrag\r\nSupervisor\r\nAlt\r\n\r\n"));
  }

  void userShownAndChosen() {
    Desk desk;
    desk.user(QStringLiteral("Supervisor"));
    desk.user(QStringLiteral("Gast"));
    desk.user(QStringLiteral("Kind"), "geheim", true);
    desk.user(QStringLiteral("pia"));

    // The program's user wins over the last one written.
    desk.state.ActiveUser = QStringLiteral("Gast");
    OverviewSelection selection(desk.services, QStringLiteral("pia"));
    selection.Load({{}, QStringLiteral("Kind"), {}, {}});
    QCOMPARE(selection.Current().user, QStringLiteral("Gast"));

    // Without one, the last user counts, and the login where it is linked.
    desk.state.ActiveUser.clear();
    selection.Load({{}, QStringLiteral("Kind"), {}, {}});
    QCOMPARE(desk.state.ActiveUser, QStringLiteral("Kind"));
    QVERIFY(selection.MonitoringLocked());
    desk.data.write(QStringLiteral("Config/Users.cfg"), "1\r\n");
    desk.state.ActiveUser.clear();
    selection.Load({{}, QStringLiteral("Kind"), {}, {}});
    QCOMPARE(desk.state.ActiveUser, QStringLiteral("pia"));
    desk.state.ActiveUser.clear();
    selection.Load({{}, QStringLiteral("Weg"), {}, {}});
    QCOMPARE(desk.state.ActiveUser, QStringLiteral("pia"));

    // On screen, a user with a password can't be taken without the question.
    const int kind = static_cast<int>(selection.Users().indexOf(QStringLiteral("Kind")));
    QVERIFY(!selection.ChooseUser(kind, true));
    QCOMPARE(desk.state.ActiveUser, QStringLiteral("pia"));
    QCOMPARE(selection.Users().at(selection.UserIndex()), QStringLiteral("pia"));

    // Taken while filling: his lock keeps monitoring on, and says so in the file.
    desk.state.MonitoringOn = false;
    QVERIFY(selection.ChooseUser(kind, false));
    QCOMPARE(desk.state.ActiveUser, QStringLiteral("Kind"));
    QVERIFY(selection.MonitoringLocked());
    QVERIFY(desk.state.MonitoringOn);
    QCOMPARE(desk.data.read(QStringLiteral("Config/Monitoring.cfg")), QByteArray(" 1 \r\n"));
    QVERIFY(desk.config().startsWith("\r\nKind\r\n"));
  }
};

QTEST_APPLESS_MAIN(TestOverview)
#include "test_overview.moc"
