#include "support/FakeOnline.h"
#include "support/FindControl.h"
#include "support/TestServices.h"
#include "tariffs/ui/TarifEditor.h"
#include "tariffs/ui/TariffCataloguePanel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

using namespace minutor;
using namespace Qt::StringLiterals;
using test::Find;

namespace {

using Answer = Prompter::Answer;

const QByteArray kTariff =
    "[Providerdaten]\r\nName:x\r\nGrundgeb\374hr:4,5\r\nRegion:bundesweit\r\nG\374ltigkeit:1.1.2003\r\n"
    "Volumenabrechnung:Nein\r\nTakt:60/1\r\n\r\n[Tarifzonen]\r\n"
    "Zone:x\r\nVon:0\r\nBis:0\r\nPfennig:3\r\nEinheit:60\r\nWochenende:Nein\r\n"
    "Zone:x\r\nVon:0\r\nBis:0\r\nPfennig:2\r\nEinheit:60\r\nWochenende:Ja\r\n";

struct Setup : test::TestServices {
  test::FakeFetcher fetcher;
  Setup() {
    data.write("Tarife/A&B&C - Eins.tel", kTariff);
    data.write("Tarife/A&B&C - Zwei.atl", kTariff);
    data.write("Tarife/Other - Drei.atl", kTariff);
  }
};

QTreeWidgetItem* Row(QTreeWidget* tree, int provider, int tariff = -1) {
  QTreeWidgetItem* item = tree->topLevelItem(provider);
  return tariff < 0 ? item : item->child(tariff);
}

TarifEditor* OpenEditor(QWidget& panel, const char* name) {
  // A closed dialog lingers until its deletion comes round.
  for (auto* editor : panel.findChildren<TarifEditor*>(QString::fromLatin1(name))) {
    if (editor->isVisible()) {
      return editor;
    }
  }
  return nullptr;
}

void Type(QWidget& editor, const QString& field, const QString& text) {
  auto* edit = Find<QLineEdit>(editor, field);
  edit->setText(text);
  emit edit->editingFinished();
}

}  // namespace

class TestTariffCataloguePanel : public QObject {
  Q_OBJECT

 private slots:
  void treeDetailsAndDelete() {
    Setup s;
    TariffCataloguePanel panel(s.services, s.fetcher);
    auto* tree = Find<QTreeWidget>(panel, "lstTarife");
    QCOMPARE(Find<QLabel>(panel, "lblTarif_4")->text(), u"3 Tarife insgesamt."_s);
    QCOMPARE(tree->topLevelItemCount(), 2);
    QCOMPARE(Row(tree, 0, 0)->text(0), u"Eins"_s);
    QCOMPARE(Row(tree, 0, 1)->text(0), u"Zwei"_s);
    QVERIFY(!Row(tree, 0)->isExpanded());
    emit tree->itemDoubleClicked(Row(tree, 0), 0);
    QVERIFY(Row(tree, 0)->isExpanded());
    emit tree->itemDoubleClicked(Row(tree, 0, 0), 0);  // a tariff row: nothing
    QVERIFY(Row(tree, 0)->isExpanded());

    tree->setCurrentItem(Row(tree, 0, 0));
    // The details are the catalogue's; the panel shows them.
    QCOMPARE(Find<QLabel>(panel, "lblTarif_6")->text() + ' ' + Find<QLabel>(panel, "lblTarif_0")->text(),
             u"A&&B&C 0,0300 €"_s);

    // A file gone since the tree was made is told, not shown.
    s.data.dir().Remove(u"Tarife/A&B&C - Zwei.atl");
    tree->setCurrentItem(Row(tree, 0, 1));
    QVERIFY(s.prompter.messages.value(0).contains("nicht mehr vorhanden"));

    s.prompter.answers = {Answer::Yes};
    tree->setCurrentItem(Row(tree, 1, 0));
    Find<QPushButton>(panel, "Command1_2")->click();
    QVERIFY(!s.data.dir().FileExists(u"Tarife/Other - Drei.atl"));
    QCOMPARE(Row(tree, 1)->childCount(), 0);  // the provider stays until the next refresh
    QCOMPARE(tree->topLevelItemCount(), 2);
  }

  void newTarifRefusesAndSaves() {
    Setup s;
    TariffCataloguePanel panel(s.services, s.fetcher);
    Find<QPushButton>(panel, "Command1_0")->click();
    TarifEditor* editor = OpenEditor(panel, "NewTarif");
    QVERIFY(editor);
    Type(*editor, "Text1_5", "30/0");
    QCOMPARE(Find<QLineEdit>(*editor, "Text1_5")->text(), u"30 / 60"_s);
    Find<QPushButton>(*editor, "Command1_0")->click();
    QVERIFY(s.prompter.messages.takeFirst().startsWith("Der Anbieter- und Tarifname ist unvollständig"));

    Find<QComboBox>(*editor, "comAnbieter")->setEditText("Neu");
    Find<QLineEdit>(*editor, "Text1_0")->setText("Tarif");
    Find<QPushButton>(*editor, "Command2_0")->click();
    QVERIFY(s.prompter.messages.takeFirst().startsWith("Bitte füllen Sie die Felder"));
    Type(*editor, "Text1_7", "8");
    Type(*editor, "Text1_8", "18 Uhr");
    Type(*editor, "Text1_9", "0,12");
    Find<QPushButton>(*editor, "Command2_0")->click();
    Find<QPushButton>(*editor, "Command1_0")->click();
    QVERIFY(s.prompter.messages.takeFirst().startsWith("Es ist kein Tarif für das Wochenende angegeben."));
    Find<QCheckBox>(*editor, "Check1_6")->setChecked(true);
    Find<QPushButton>(*editor, "Command2_0")->click();
    Find<QPushButton>(*editor, "Command1_0")->click();
    QVERIFY(s.prompter.messages.isEmpty());
    const QByteArray written = s.data.read("Tarife/Neu - Tarif.tel");
    QVERIFY(written.contains("Takt:30 / 60\r\n"));
    QVERIFY(written.contains("G\374ltigkeit:23.11.2026\r\n"));
    QVERIFY(written.contains("Von:8\r\nBis:18\r\nPfennig:12\r\n"));
    QCOMPARE(Find<QLabel>(panel, "lblTarif_4")->text(), u"4 Tarife insgesamt."_s);
  }

  void aFetchedTariffServesAsTemplate() {
    Setup s;
    TariffCataloguePanel panel(s.services, s.fetcher);
    auto* tree = Find<QTreeWidget>(panel, "lstTarife");
    const QByteArray atl = s.data.read("Tarife/A&B&C - Zwei.atl");
    tree->setCurrentItem(Row(tree, 0, 1));

    s.prompter.answers = {Answer::No};
    Find<QPushButton>(panel, "Command1_1")->click();
    QVERIFY(!OpenEditor(panel, "ChangeTarif"));
    QVERIFY(!s.data.dir().FileExists(u"Tarife/A&B&C - Zwei.tel"));

    s.prompter.answers = {Answer::Yes};
    Find<QPushButton>(panel, "Command1_1")->click();
    TarifEditor* editor = OpenEditor(panel, "ChangeTarif");
    QVERIFY(editor);
    QVERIFY(s.data.dir().FileExists(u"Tarife/A&B&C - Zwei.tel"));
    QCOMPARE(Find<QLineEdit>(*editor, "Text1_0")->text(), u"Zwei"_s);
    Find<QPushButton>(*editor, "Command1_1")->click();
    QVERIFY(!s.data.dir().FileExists(u"Tarife/A&B&C - Zwei.tel"));
    QCOMPARE(s.data.read("Tarife/A&B&C - Zwei.atl"), atl);

    // Changing a tariff by hand renames it and keeps the lines not shown.
    tree->setCurrentItem(Row(tree, 0, 0));
    Find<QPushButton>(panel, "Command1_1")->click();
    editor = OpenEditor(panel, "ChangeTarif");
    Find<QLineEdit>(*editor, "Text1_0")->setText("Umbenannt");
    Find<QPushButton>(*editor, "Command1_0")->click();
    QVERIFY(!s.data.dir().FileExists(u"Tarife/A&B&C - Eins.tel"));
    const QByteArray renamed = s.data.read("Tarife/A&B&C - Umbenannt.tel");
    QVERIFY(renamed.contains("G\374ltigkeit:1.1.2003\r\n"));
    QVERIFY(renamed.contains("Von:0\r\nBis:0\r\nPfennig:2\r\nEinheit:60\r\nWochenende:Ja\r\n"));
  }

  void autoupdateSettings() {
    Setup s;
    s.data.write("Config/Autoupdate.cfg", " 1 \r\n 14 \r\n");
    TariffCataloguePanel panel(s.services, s.fetcher);
    QCOMPARE(s.data.read("Config/Autoupdate.cfg"), QByteArray(" 1 \r\n 14 \r\n"));  // loading writes nothing
    auto* combo = Find<QComboBox>(panel, "comAutoupdate");
    QCOMPARE(combo->currentIndex(), 1);
    Find<QCheckBox>(panel, "Check3")->click();
    QVERIFY(!combo->isEnabled());
    QCOMPARE(s.data.read("Config/Autoupdate.cfg"), QByteArray(" 0 \r\n 14 \r\n"));

    // Nothing new on the server: said so.
    s.data.write("Servers.dat", "http://u\r\n");
    s.fetcher.pages.insert("http://u/update.txt", "*U* 1\r\n");
    emit Find<QLabel>(panel, "lblLink")->linkActivated(QString());
    QTRY_COMPARE(s.prompter.messages, QStringList{"Keine neuen Tarife gefunden."});
  }
};

QTEST_MAIN(TestTariffCataloguePanel)
#include "test_tariff_catalogue_panel.moc"
