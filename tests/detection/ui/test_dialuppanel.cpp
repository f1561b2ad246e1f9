#include "detection/DialUpFiles.h"
#include "detection/SimulatedRemoteAccess.h"
#include "detection/ui/DialUpPanel.h"
#include "frame/datadir/NumberText.h"
#include "support/FindControl.h"
#include "support/TestServices.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

struct Desk : test::TestServices {
  Desk() : TestServices(QDateTime(QDate(2024, 1, 1), QTime(10, 0))) {
    data.write("Tarife/Arcor - Call by Call.atl", "Volumenabrechnung:Ja\r\nVolumenkosten:150\r\n");
    data.write("Tarife/Arcor - Flat.tel", "x\r\n");
    data.write("Tarife/Tele - Basis.tel", "x\r\n");
    RasDialParams tOnline;
    tOnline.Telefon = "0191011";
    tOnline.Benutzer = "anschluss";
    tOnline.Passwort = "geheim";
    remote.AddEntry("T-Online", tOnline);
    remote.AddEntry("Arcor");
    remote.AddEntry("VPN: Büro");
  }

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
    auto* entries = Find<QComboBox>(panel, "comDFÜ");
    auto* anbieter = Find<QComboBox>(panel, "comAnbieter");
    auto* tarif = Find<QComboBox>(panel, "comTarif");
    auto* kosten = Find<QLabel>(panel, "lblKosten");
    auto* nummer = Find<QLineEdit>(panel, "txtEinwahlnummer");
    auto* benutzer = Find<QLineEdit>(panel, "txtBenutzername");
    auto* passwort = Find<QLineEdit>(panel, "txtPasswort");
    auto* option2 = Find<QRadioButton>(panel, "Option2");

    // Fresh data: the system's dial-in data, no tariff, and nothing written.
    QCOMPARE(entries->currentText(), u"T-Online"_s);
    QCOMPARE(nummer->text() + ' ' + benutzer->text(), u"0191011 anschluss"_s);
    QVERIFY(!passwort->isEnabled());
    QCOMPARE(anbieter->currentText(), KeineZuordnung());
    QCOMPARE(tarif->currentText(), KeineZuordnung());
    QVERIFY(desk.data.dir().ListFiles(u"DialUp"_s).isEmpty());

    // Picking a provider lists its tariffs and assigns the first one shown,
    // with its price; picking a tariff does the same for that one.
    Pick(anbieter, "Arcor");
    QCOMPARE(tarif->count(), 2);
    QCOMPARE(tarif->currentText(), u"A - Call by Call"_s);
    QCOMPARE(kosten->text(), FixedText(1.5, 3) + " €");
    QCOMPARE(desk.data.read("DialUp/T-Online.trf"), QByteArray("Arcor\r\nA - Call by Call\r\n"));
    Pick(tarif, "M - Flat");
    QCOMPARE(desk.data.read("DialUp/T-Online.trf"), QByteArray("Arcor\r\nM - Flat\r\n"));
    Pick(tarif, "A - Call by Call");

    // Another entry starts without assignment; back again, the file is read.
    Pick(entries, "Arcor");
    QCOMPARE(anbieter->currentText(), KeineZuordnung());
    QCOMPARE(kosten->text(), QString());
    QCOMPARE(nummer->text(), QString());
    Pick(entries, "T-Online");
    QCOMPARE(anbieter->currentText(), u"Arcor"_s);
    QCOMPARE(tarif->currentText(), u"A - Call by Call"_s);

    // Own data: no file yet gives empty fields; every keystroke saves.
    option2->click();
    QCOMPARE(desk.data.read("DialUp/DialUp.cfg"), QByteArray("Falsch\r\n"));
    QVERIFY(passwort->isEnabled());
    QCOMPARE(nummer->text() + benutzer->text(), QString());
    QTest::keyClicks(benutzer, "ich");
    QTest::keyClicks(passwort, "pw");
    const auto saved = LoadEntry(desk.data.dir(), "T-Online");
    QCOMPARE(saved ? saved->Benutzername + '/' + saved->Passwort : QString(), u"ich/pw"_s);

    // An entry whose name can't be a file is listed, and the panel says
    // that nothing is kept.
    Pick(entries, "VPN: Büro");
    QVERIFY(Find<QLabel>(panel, "lblNoFiles")->isVisibleTo(&panel));

    // A new panel comes back with the own data and the switch as they were.
    DialUpPanel again(desk.services, &desk.remote);
    QVERIFY(Find<QRadioButton>(again, "Option2")->isChecked());
    QCOMPARE(Find<QLineEdit>(again, "txtBenutzername")->text(), u"ich"_s);
    Find<QRadioButton>(again, "Option1")->click();
    QCOMPARE(Find<QLineEdit>(again, "txtBenutzername")->text(), u"anschluss"_s);
    QCOMPARE(desk.data.read("DialUp/DialUp.cfg"), QByteArray("Wahr\r\n"));
  }

  void oldAssignmentsAndMissingEditor() {
    Desk desk;
    desk.data.write("DialUp/T-Online.trf", "Weg\r\nM - Alt\r\n");
    DialUpPanel panel(desk.services, &desk.remote);
    // A tariff that has gone still shows what was assigned, without a price.
    QCOMPARE(Find<QComboBox>(panel, "comAnbieter")->currentText(), u"Weg"_s);
    QCOMPARE(Find<QComboBox>(panel, "comTarif")->currentText(), u"M - Alt"_s);
    QCOMPARE(Find<QLabel>(panel, "lblKosten")->text(), FixedText(0, 3) + " €");

    // Without the desktop's editor the user is told where to go instead; the
    // simulated system has no editor ids for its entries.
    QTemporaryDir emptyPath;
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", emptyPath.path().toLocal8Bit());
    emit Find<QLabel>(panel, "lblLink(0)")->linkActivated("#");
    emit Find<QLabel>(panel, "lblLink(1)")->linkActivated("#");
    qputenv("PATH", path);
    QCOMPARE(desk.prompter.messages.size(), 2);
    QVERIFY(desk.prompter.messages[0].contains("nm-connection-editor"));
    QVERIFY(desk.prompter.messages[1].contains("'T-Online'"));

    // Listing anew keeps the entry that was selected while it exists.
    desk.remote.AddEntry("Neu");
    auto* entries = Find<QComboBox>(panel, "comDFÜ");
    Pick(entries, "Arcor");
    panel.ListEntries();
    QCOMPARE(entries->count(), 4);
    QCOMPARE(entries->currentText(), u"Arcor"_s);
    desk.remote.RemoveEntry("Arcor");
    panel.ListEntries();
    QCOMPARE(entries->currentText(), u"T-Online"_s);

    // Without remote access there is nothing to list and nothing to save.
    DialUpPanel bare(desk.services, nullptr);
    QCOMPARE(Find<QComboBox>(bare, "comDFÜ")->count(), 0);
  }
};

QTEST_MAIN(TestDialUpPanel)
#include "test_dialuppanel.moc"
