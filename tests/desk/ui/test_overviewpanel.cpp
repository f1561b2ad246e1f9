#include "desk/ui/OverviewPanel.h"
#include "detection/SimulatedRemoteAccess.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "support/FindControl.h"
#include "support/TestServices.h"
#include "users/UserFile.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace minutor;
using test::Find;

namespace {

// The shipped tariffs and three users; Monday 10:00, a working day's day rate.
struct Desk : test::TestServices {
  Desk() : test::TestServices(QDateTime(QDate(2024, 1, 1), QTime(10, 0))) {
    data.dir().CopyShippedFiles(test::TempDataDir::shippedDir());
    WriteUserFile(data.dir(), QStringLiteral("Supervisor"), {});
    WriteUserFile(data.dir(), QStringLiteral("Kind"), {.password = "geheim"});
    WriteUserFile(data.dir(), QStringLiteral("Gast"), {});
  }
  QByteArray config() const { return data.read(QStringLiteral("Config/Overview.cfg")); }
};

QString Text(const OverviewPanel& panel, const QString& label) { return Find<QLabel>(panel, label)->text(); }
QComboBox* Box(const OverviewPanel& panel, const QString& name) { return Find<QComboBox>(panel, name); }

// As if the user picked the entry from the list.
void Choose(const OverviewPanel& panel, const QString& combo, const QString& text) {
  QComboBox* box = Box(panel, combo);
  const int index = box->findText(text);
  QVERIFY2(index >= 0, qPrintable(text));
  box->setCurrentIndex(index);
  emit box->activated(index);
}

void Show(OverviewPanel& panel) {
  panel.resize(470, 400);
  panel.show();
  QVERIFY(QTest::qWaitForWindowExposed(&panel));
}

}  // namespace

class TestOverviewPanel : public QObject {
  Q_OBJECT

 private slots:
  void tariffChoiceShowsPriceAndAllowance() {
    Desk desk;
    OverviewPanel panel(desk.services);
    Show(panel);
    // Nothing chosen yet: nothing is taken for the user.
    QVERIFY(Box(panel, QStringLiteral("comAnbieter"))->currentIndex() == -1 &&
            desk.state.AktuellerTarif.isEmpty());

    Choose(panel, QStringLiteral("comAnbieter"), QStringLiteral("Funkwelle"));
    QCOMPARE(desk.state.AktuellerTarif, QStringLiteral("Funkwelle - Tag und Nacht.tel"));
    QCOMPARE(Text(panel, QStringLiteral("lblOverview(0)")), QStringLiteral("0,035 € pro Minute"));
    QCOMPARE(Text(panel, QStringLiteral("lblOverview(1)")), QStringLiteral("Keine"));
    QLabel* allowance = Find<QLabel>(panel, QStringLiteral("lblOverview(1)"));
    QCOMPARE(allowance->palette().color(QPalette::WindowText), QColor(128, 0, 0));
    QVERIFY(!Find<QProgressBar>(panel, QStringLiteral("barOverview(1)"))->isVisible());

    // The holiday's rate stands behind the working day's in this file.
    QTest::mouseClick(Find<QCheckBox>(panel, QStringLiteral("chkFeiertag")), Qt::LeftButton);
    QVERIFY(desk.state.FeiertagAktiv);
    QCOMPARE(Text(panel, QStringLiteral("lblOverview(0)")), QStringLiteral("0,015 € pro Minute"));

    Choose(panel, QStringLiteral("comAnbieter"), QStringLiteral("Mobilnetz Plus"));
    QCOMPARE(Text(panel, QStringLiteral("Label1(36)")), QStringLiteral("Verbleibende kostenfreie Zeit:"));
    QCOMPARE(Text(panel, QStringLiteral("lblOverview(1)")), QStringLiteral("01:00:00"));
    QCOMPARE(allowance->palette().color(QPalette::WindowText), QColor(0, 128, 0));
    QVERIFY(Find<QProgressBar>(panel, QStringLiteral("barOverview(1)"))->isVisible());
    QCOMPARE(Text(panel, QStringLiteral("lblOverview(9)")), QStringLiteral("100,0%"));

    Choose(panel, QStringLiteral("comAnbieter"), QStringLiteral("Netzfalke"));
    QCOMPARE(Text(panel, QStringLiteral("Label1(36)")),
             QStringLiteral("Verbleibender kostenfreier Transfer:"));
    QCOMPARE(Text(panel, QStringLiteral("lblOverview(1)")), QStringLiteral("500MB"));
  }

  void lastSelectionsComeBack() {
    Desk desk;
    // A user and a tariff deleted since.
    desk.data.write(QStringLiteral("Config/Overview.cfg"), "Modem\r\nNiemand\r\nFunkwelle\r\nM - Alt\r\n");
    {
      OverviewPanel panel(desk.services);
      QCOMPARE(Box(panel, QStringLiteral("comTarif"))->currentText(), QStringLiteral("M - Tag und Nacht"));
      QCOMPARE(Box(panel, QStringLiteral("comOverviewUser"))->currentText(), QStringLiteral("Supervisor"));
      // The entry isn't chosen on this panel yet, but it isn't lost either.
      QVERIFY(desk.config().startsWith("Modem\r\n"));
    }
    // A provider gone altogether.
    desk.data.write(QStringLiteral("Config/Overview.cfg"), "\r\n\r\nWeg\r\nM - Alt\r\n");
    OverviewPanel panel(desk.services);
    QCOMPARE(Box(panel, QStringLiteral("comAnbieter"))->currentIndex(), -1);
    QCOMPARE(Box(panel, QStringLiteral("comTarif"))->count(), 0);
    QCOMPARE(desk.state.AktuellerTarif, QStringLiteral("Funkwelle - Tag und Nacht.tel"));

    // Shown again after a new tariff arrived: the choice stays, the list grows.
    Choose(panel, QStringLiteral("comAnbieter"), QStringLiteral("Funkwelle"));
    desk.data.write(QStringLiteral("Tarife/Funkwelle - Nacht.atl"), "[Tarifzonen]\r\n");
    panel.Refresh();
    QCOMPARE(Box(panel, QStringLiteral("comTarif"))->count(), 2);
    QCOMPARE(Box(panel, QStringLiteral("comTarif"))->currentText(), QStringLiteral("M - Tag und Nacht"));
  }

  void switchesNoteUsersAndStart() {
    Desk desk;
    desk.data.write(QStringLiteral("Note.dat"), "Zeile 1\nZeile 2\n");
    desk.state.KanalbuendelungAktiv = true;
    desk.state.ActiveUser = QStringLiteral("Gast");
    OverviewPanel panel(desk.services);
    Show(panel);
    QTest::mouseClick(Find<QCheckBox>(panel, QStringLiteral("chkKanalbündelung")), Qt::LeftButton);
    QVERIFY(!desk.state.KanalbuendelungAktiv);

    QCheckBox* check1 = Find<QCheckBox>(panel, QStringLiteral("Check1"));
    QTest::mouseClick(check1, Qt::LeftButton);
    QVERIFY(!desk.state.MonitoringOn);
    QCOMPARE(desk.data.read(QStringLiteral("Config/Monitoring.cfg")), QByteArray(" 0 \r\n"));
    // Set from outside, the box follows and leaves the file to the caller.
    QVERIFY(QFile::remove(desk.data.path(QStringLiteral("Config/Monitoring.cfg"))));
    panel.SetMonitoringChecked(true);
    QVERIFY(check1->isChecked() && desk.state.MonitoringOn);
    QVERIFY(!desk.data.dir().FileExists(QStringLiteral("Config/Monitoring.cfg")));

    // Loading the note wrote nothing; typing writes it whole.
    QPlainTextEdit* notiz = Find<QPlainTextEdit>(panel, QStringLiteral("Notiz"));
    QCOMPARE(notiz->toPlainText(), QStringLiteral("Zeile 1\nZeile 2"));
    QCOMPARE(desk.data.read(QStringLiteral("Note.dat")), QByteArray("Zeile 1\nZeile 2\n"));
    notiz->moveCursor(QTextCursor::End);
    QTest::sendKeyEvent(QTest::Click, notiz, Qt::Key_Udiaeresis, QStringLiteral("ü"), Qt::NoModifier);
    QCOMPARE(desk.data.read(QStringLiteral("Note.dat")), QByteArray("Zeile 1\r\nZeile 2\374\r\n"));
    // Of a note of one huge line the box shows the beginning, and leaves
    // the file as it is.
    const QByteArray huge(1 << 20, 'x');
    desk.data.write(QStringLiteral("Note.dat"), huge);
    {
      OverviewPanel other(desk.services);
      QPlainTextEdit* cut = Find<QPlainTextEdit>(other, QStringLiteral("Notiz"));
      QVERIFY(cut->isReadOnly() && cut->toPlainText().size() == DataDir::kSmallFileLimit);
      QTest::sendKeyEvent(QTest::Click, cut, Qt::Key_A, QStringLiteral("a"), Qt::NoModifier);
    }
    QCOMPARE(desk.data.read(QStringLiteral("Note.dat")), huge);

    QComboBox* users = Box(panel, QStringLiteral("comOverviewUser"));
    QSignalSpy changed(&panel, &OverviewPanel::activeUserChanged);
    Choose(panel, QStringLiteral("comOverviewUser"), QStringLiteral("Supervisor"));
    QCOMPARE(desk.state.ActiveUser, QStringLiteral("Supervisor"));
    QCOMPARE(changed.value(0).value(0).toString(), QStringLiteral("Supervisor"));
    QVERIFY(desk.config().startsWith("\r\nSupervisor\r\n"));

    // No password question yet: a user with a password stays out of reach.
    Choose(panel, QStringLiteral("comOverviewUser"), QStringLiteral("Kind"));
    QCOMPARE(users->currentText(), QStringLiteral("Supervisor"));
    QCOMPARE(changed.count(), 1);

    // A user barred from the monitoring settings can't switch monitoring off.
    WriteUserFile(desk.data.dir(), QStringLiteral("Gast"), {.noMonitoringSettings = true, .password = {}});
    desk.state.MonitoringOn = false;
    Choose(panel, QStringLiteral("comOverviewUser"), QStringLiteral("Gast"));
    QVERIFY(!check1->isEnabled() && check1->isChecked());

    desk.state.DetectionSource = 2;
    QSignalSpy started(&panel, &OverviewPanel::startRequested);
    QTest::mouseClick(Find<QPushButton>(panel, QStringLiteral("cmdStart")), Qt::LeftButton);
    QCOMPARE(started.count(), 1);
    QCOMPARE(desk.state.DetectionSource, 0);
  }

  void entriesAreChosenDialledAndTheCheapestNamed() {
    Desk desk;
    desk.data.write(QStringLiteral("Config/Overview.cfg"),
                    "T-Online\r\nSupervisor\r\nFunkwelle\r\nM - Tag und Nacht\r\n");
    desk.data.write(QStringLiteral("DialUp/Arcor.trf"), "Netzfalke\r\nM - Volumen 500\r\n");
    desk.data.write(QStringLiteral("DialUp/T-Online.trf"), "Sternnetz\r\nA - Sekundentakt\r\n");
    // A tariff that was deleted costs nothing and so is the cheapest.
    desk.data.write(QStringLiteral("DialUp/Weg.trf"), "Funkwelle\r\nM - Alt\r\n");
    SimulatedRemoteAccess remote;
    for (const char* entry : {"Arcor", "T-Online", "Weg"}) {
      remote.AddEntry(QString::fromLatin1(entry));
    }

    OverviewPanel panel(desk.services);
    QComboBox* entries = Box(panel, QStringLiteral("comDFÜ"));
    QCOMPARE(Text(panel, QStringLiteral("lblOverview(10)")),
             QStringLiteral("unbekannt (keine Tarife zugewiesen)"));
    panel.SetRemoteAccess(&remote);
    QCOMPARE(entries->currentText(), QStringLiteral("T-Online"));
    QCOMPARE(Text(panel, QStringLiteral("lblOverview(10)")),
             QStringLiteral("Weg (%1 €)").arg(FixedText(0, 3)));
    Show(panel);

    // The entry's tariff becomes the chosen one.
    Choose(panel, QStringLiteral("comDFÜ"), QStringLiteral("Arcor"));
    QCOMPARE(desk.state.AktuellerTarif, QStringLiteral("Netzfalke - Volumen 500.tel"));
    QCOMPARE(desk.config(), QByteArray("Arcor\r\nSupervisor\r\nNetzfalke\r\nM - Volumen 500\r\n"));
    // One naming a tariff that is gone leaves the tariff as it was.
    Choose(panel, QStringLiteral("comDFÜ"), QStringLiteral("Weg"));
    QCOMPARE(desk.config(), QByteArray("Weg\r\nSupervisor\r\nNetzfalke\r\nM - Volumen 500\r\n"));

    // Dialling marks the dial as the program's; the box closes once the line is up.
    desk.prompter.passwords = {QStringLiteral("geheim")};
    Find<QPushButton>(panel, QStringLiteral("Command1"))->click();
    QCOMPARE(remote.dials.value(0).entry, QStringLiteral("Weg"));
    QVERIFY(desk.state.DialedByProgram);
    QCOMPARE(remote.GetRasConnections().size(), 1);
  }
};

QTEST_MAIN(TestOverviewPanel)
#include "test_overviewpanel.moc"
