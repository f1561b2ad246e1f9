#include "detection/DialUpFiles.h"
#include "detection/SimulatedRemoteAccess.h"
#include "detection/ui/DialUpPanel.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "frame/datadir/NumberText.h"
#include "support/FindControl.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>

using namespace minutor;

namespace {

struct Desk {
  Desk() {
    data.write(QStringLiteral("Tarife/Arcor - Call by Call.atl"),
               "Volumenabrechnung:Ja\r\nVolumenkosten:150\r\n");
    data.write(QStringLiteral("Tarife/Arcor - Flat.tel"), "x\r\n");
    data.write(QStringLiteral("Tarife/Tele - Basis.tel"), "x\r\n");
    RasDialParams tOnline;
    tOnline.Eintrag = QStringLiteral("T-Online");
    tOnline.Telefon = QStringLiteral("0191011");
    tOnline.Benutzer = QStringLiteral("anschluss");
    tOnline.Passwort = QStringLiteral("geheim");
    remote.AddEntry(tOnline.Eintrag, tOnline);
    remote.AddEntry(QStringLiteral("Arcor"));
    remote.AddEntry(QStringLiteral("VPN: Büro"));
  }

  test::TempDataDir data;
  AppState state;
  FixedClock clock{QDateTime(QDate(2024, 1, 1), QTime(10, 0))};
  test::RecordingPrompter prompter;
  Services services{state, data.dir(), clock, prompter};
  SimulatedRemoteAccess remote;
};

using test::Find;

void Pick(QComboBox* combo, const QString& text) {
  const int index = combo->findText(text);
  QVERIFY2(index >= 0, qPrintable(text));
  combo->setCurrentIndex(index);
  emit combo->activated(index);
}

}  // namespace

class TestDialUpPanel : public QObject {
  Q_OBJECT

 private slots:
  void assignsTariffsAndKeepsOwnData() {
    Desk desk;
    DialUpPanel panel(desk.services, &desk.remote);
    auto* entries = Find<QComboBox>(panel, QStringLiteral("comDFÜ"));
    auto* anbieter = Find<QComboBox>(panel, QStringLiteral("comAnbieter"));
    auto* tarif = Find<QComboBox>(panel, QStringLiteral("comTarif"));
    auto* kosten = Find<QLabel>(panel, QStringLiteral("lblKosten"));
    auto* nummer = Find<QLineEdit>(panel, QStringLiteral("txtEinwahlnummer"));
    auto* benutzer = Find<QLineEdit>(panel, QStringLiteral("txtBenutzername"));
    auto* passwort = Find<QLineEdit>(panel, QStringLiteral("txtPasswort"));
    auto* option1 = Find<QRadioButton>(panel, QStringLiteral("Option1"));
    auto* option2 = Find<QRadioButton>(panel, QStringLiteral("Option2"));

    // It has to fit the side bar's page.
    QVERIFY(panel.minimumSizeHint().width() <= 470 && panel.minimumSizeHint().height() <= 400);
    // Fresh data: the system's dial-in data, no tariff, and nothing written.
    QCOMPARE(entries->count(), 3);
    QCOMPARE(entries->currentText(), QStringLiteral("T-Online"));
    QVERIFY(option1->isChecked());
    QCOMPARE(nummer->text(), QStringLiteral("0191011"));
    QCOMPARE(benutzer->text(), QStringLiteral("anschluss"));
    QVERIFY(!passwort->isEnabled());
    QCOMPARE(anbieter->count(), 3);
    QCOMPARE(anbieter->currentText(), KeineZuordnung());
    QCOMPARE(tarif->currentText(), KeineZuordnung());
    QVERIFY(desk.data.dir().ListFiles(QStringLiteral("DialUp")).isEmpty());

    // Picking a provider lists its tariffs; picking a tariff shows its price
    // and saves the assignment.
    Pick(anbieter, QStringLiteral("Arcor"));
    QCOMPARE(tarif->count(), 2);
    QVERIFY(desk.data.dir().ListFiles(QStringLiteral("DialUp")).isEmpty());
    Pick(tarif, QStringLiteral("A - Call by Call"));
    QCOMPARE(kosten->text(), FixedText(1.5, 3) + QStringLiteral(" €"));
    QCOMPARE(desk.data.read(QStringLiteral("DialUp/T-Online.trf")),
             QByteArray("Arcor\r\nA - Call by Call\r\n"));

    // Another entry starts without assignment; back again, the file is read.
    Pick(entries, QStringLiteral("Arcor"));
    QCOMPARE(anbieter->currentText(), KeineZuordnung());
    QCOMPARE(kosten->text(), QString());
    QCOMPARE(nummer->text(), QString());
    Pick(entries, QStringLiteral("T-Online"));
    QCOMPARE(anbieter->currentText(), QStringLiteral("Arcor"));
    QCOMPARE(tarif->currentText(), QStringLiteral("A - Call by Call"));

    // Own data: no file yet gives empty fields; every keystroke saves.
    option2->click();
    QCOMPARE(desk.data.read(QStringLiteral("DialUp/DialUp.cfg")), QByteArray("Falsch\r\n"));
    QVERIFY(passwort->isEnabled());
    QCOMPARE(nummer->text(), QString());
    QCOMPARE(benutzer->text(), QString());
    QTest::keyClicks(benutzer, QStringLiteral("ich"));
    QTest::keyClicks(passwort, QStringLiteral("pw"));
    auto saved = LoadEntry(desk.data.dir(), QStringLiteral("T-Online"));
    QVERIFY(saved);
    QCOMPARE(saved->Benutzername, QStringLiteral("ich"));
    QCOMPARE(saved->Passwort, QStringLiteral("pw"));

    // An entry whose name can't be a file is listed, but nothing is kept.
    Pick(entries, QStringLiteral("VPN: Büro"));
    QVERIFY(Find<QLabel>(panel, QStringLiteral("lblNoFiles"))->isVisibleTo(&panel));
    QTest::keyClicks(benutzer, QStringLiteral("x"));
    Pick(anbieter, QStringLiteral("Tele"));
    Pick(tarif, QStringLiteral("M - Basis"));
    QCOMPARE(desk.data.dir().ListFiles(QStringLiteral("DialUp")).size(), 3);

    // A new panel comes back with the own data and the switch as they were.
    DialUpPanel again(desk.services, &desk.remote);
    QVERIFY(Find<QRadioButton>(again, QStringLiteral("Option2"))->isChecked());
    QCOMPARE(Find<QLineEdit>(again, QStringLiteral("txtBenutzername"))->text(), QStringLiteral("ich"));
    Find<QRadioButton>(again, QStringLiteral("Option1"))->click();
    QCOMPARE(Find<QLineEdit>(again, QStringLiteral("txtBenutzername"))->text(), QStringLiteral("anschluss"));
    QCOMPARE(desk.data.read(QStringLiteral("DialUp/DialUp.cfg")), QByteArray("Wahr\r\n"));
  }

  void oldAssignmentsAndMissingEditor() {
    Desk desk;
    desk.data.write(QStringLiteral("DialUp/T-Online.trf"), "Weg\r\nM - Alt\r\n");
    DialUpPanel panel(desk.services, &desk.remote);
    // A tariff that has gone still shows what was assigned, without a price.
    QCOMPARE(Find<QComboBox>(panel, QStringLiteral("comAnbieter"))->currentText(), QStringLiteral("Weg"));
    QCOMPARE(Find<QComboBox>(panel, QStringLiteral("comTarif"))->currentText(), QStringLiteral("M - Alt"));
    QCOMPARE(Find<QLabel>(panel, QStringLiteral("lblKosten"))->text(),
             FixedText(0, 3) + QStringLiteral(" €"));

    // Without the desktop's editor the user is told where to go instead; the
    // simulated system has no editor ids for its entries.
    QTemporaryDir emptyPath;
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", emptyPath.path().toLocal8Bit());
    emit Find<QLabel>(panel, QStringLiteral("lblLink(0)"))->linkActivated(QStringLiteral("#"));
    emit Find<QLabel>(panel, QStringLiteral("lblLink(1)"))->linkActivated(QStringLiteral("#"));
    qputenv("PATH", path);
    QCOMPARE(desk.prompter.messages.size(), 2);
    QVERIFY(desk.prompter.messages[0].contains(QStringLiteral("nm-connection-editor")));
    QVERIFY(desk.prompter.messages[1].contains(QStringLiteral("'T-Online'")));

    // Listing anew keeps the entry that was selected while it exists.
    desk.remote.AddEntry(QStringLiteral("Neu"));
    auto* entries = Find<QComboBox>(panel, QStringLiteral("comDFÜ"));
    Pick(entries, QStringLiteral("Arcor"));
    panel.ListEntries();
    QCOMPARE(entries->count(), 4);
    QCOMPARE(entries->currentText(), QStringLiteral("Arcor"));
    desk.remote.RemoveEntry(QStringLiteral("Arcor"));
    panel.ListEntries();
    QCOMPARE(entries->currentText(), QStringLiteral("T-Online"));

    // Without remote access there is nothing to list and nothing to save.
    DialUpPanel bare(desk.services, nullptr);
    QCOMPARE(Find<QComboBox>(bare, QStringLiteral("comDFÜ"))->count(), 0);
  }
};

QTEST_MAIN(TestDialUpPanel)
#include "test_dialuppanel.moc"
