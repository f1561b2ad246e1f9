#include "history/ListPeriod.h"
#include "history/ui/ConnectionDialog.h"
#include "history/ui/ConnectionListModel.h"
#include "history/ui/DifferenceDialog.h"
#include "history/ui/ListPanel.h"
#include "history/ui/PeriodDialog.h"
#include "support/FindControl.h"
#include "support/RecordFiles.h"
#include "support/TestServices.h"
#include "tariffs/TariffText.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

using namespace minutor;

namespace {

// Today is Monday 23 November 2026.
void WriteHistory(const test::TempDataDir& data) {
  using test::RecordLines;
  test::WriteRecord(data, "23112026-080000.con", RecordLines("23.11.2026", "08:00:00", "0:10:00", "1,00"));
  test::WriteRecord(data, "23112026-200000.con",
                    RecordLines("23.11.2026", "20:00:00", "1:00:00", "2,50", "Netzwerk - Flat.tel", "Bert"));
  test::WriteRecord(data, "02102026-120000.con", RecordLines("02.10.2026", "12:00:00", "0:00:30", "0,10"));
  data.write(QStringLiteral("Tarife/Funkwelle - Tag und Nacht.tel"),
             test::Crlf(test::TimeHead() + test::Zone(0, 24, "6", false) + test::Zone(0, 24, "3", true)));
  data.write(QStringLiteral("Tarife/Netzwerk - Flat.tel"), test::Crlf(test::TimeHead()));
  data.write(QStringLiteral("Benutzer/Anna.usr"), "");
  data.write(QStringLiteral("Benutzer/Bert.usr"), "");
}

QStringList Column(const ListPanel& panel, int column) {
  QStringList cells;
  for (const ListRow& row : panel.Model()->Rows()) {
    cells.append(row.Cell(column).toString());
  }
  return cells;
}

bool WaitLoaded(ListPanel& panel) {
  QSignalSpy spy(&panel, &ListPanel::listLoaded);
  return panel.IsLoading() ? spy.wait() : true;
}

}  // namespace

class TestListPanel : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase() {
    // Deleted records go to a trash of the test's own.
    QVERIFY(home_.isValid());
    qputenv("XDG_DATA_HOME", home_.path().toUtf8());
  }

  void filtersSortAndSettings() {
    test::TestServices t;
    WriteHistory(t.data);
    auto panel = std::make_unique<ListPanel>(t.services, nullptr);
    QVERIFY(panel->Grid()->isColumnHidden(kColumnFile - 1));
    QVERIFY(WaitLoaded(*panel));
    QCOMPARE(Column(*panel, kColumnStart), (QStringList{"20:00:00", "08:00:00", "12:00:00"}));
    QCOMPARE(panel->TotalDuration()->text(), QStringLiteral("01:10:30"));
    QCOMPARE(panel->TotalCost()->text(), QStringLiteral("3,60 €"));
    QVERIFY(panel->ButtonAt(ListPanel::kDrucken)->isEnabled());

    panel->PeriodCombo()->setCurrentText(QStringLiteral("Heute"));
    panel->ProviderCombo()->setCurrentText(QStringLiteral("Funkwelle"));
    QCOMPARE(panel->TariffCombo()->itemText(1), QStringLiteral("M - Tag und Nacht"));
    QVERIFY(WaitLoaded(*panel));
    QCOMPARE(Column(*panel, kColumnStart), QStringList{"08:00:00"});

    panel->ButtonAt(ListPanel::kNettokosten)->click();
    QVERIFY(WaitLoaded(*panel));
    QCOMPARE(Column(*panel, kColumnKosten), QStringList{"0,840"});
    QVERIFY(panel->ButtonAt(ListPanel::kNettokosten)->font().bold());

    panel->ProviderCombo()->setCurrentIndex(0);
    QVERIFY(WaitLoaded(*panel));
    panel->Grid()->horizontalHeader()->sectionClicked(kColumnDauer - 1);
    QCOMPARE(Column(*panel, kColumnDauer), (QStringList{"01:00:00", "00:10:00"}));
    panel->Grid()->horizontalHeader()->resizeSection(kColumnKommentar - 1, 321);

    // A new panel comes back as this one was left.
    panel = std::make_unique<ListPanel>(t.services, nullptr);
    QCOMPARE(panel->PeriodCombo()->currentText(), QStringLiteral("Heute"));
    QCOMPARE(panel->Grid()->horizontalHeader()->sectionSize(kColumnKommentar - 1), 321);
    QVERIFY(WaitLoaded(*panel));
    QCOMPARE(Column(*panel, kColumnDauer), (QStringList{"01:00:00", "00:10:00"}));
    QCOMPARE(Column(*panel, kColumnKosten), (QStringList{"2,100", "0,840"}));
  }

  void deleteMovesToTheTrash() {
    test::TestServices t;
    WriteHistory(t.data);
    ListPanel panel(t.services, nullptr);
    QVERIFY(WaitLoaded(panel));
    panel.ButtonAt(ListPanel::kLoeschen)->click();  // nothing selected: nothing happens
    QVERIFY(!panel.IsLoading());
    panel.Grid()->selectRow(0);
    panel.Grid()->selectionModel()->select(panel.Model()->index(2, 0),
                                           QItemSelectionModel::Select | QItemSelectionModel::Rows);
    // A user who may not change the list is told so, and nothing goes.
    t.state.NoListEdit = true;
    panel.ButtonAt(ListPanel::kLoeschen)->click();
    QVERIFY(t.prompter.messages.value(0).startsWith(QStringLiteral("Das erstellen oder modifizieren")));
    QCOMPARE(panel.Model()->rowCount(), 3);
    t.state.NoListEdit = false;
    panel.ButtonAt(ListPanel::kLoeschen)->click();
    QVERIFY(WaitLoaded(panel));
    QCOMPARE(Column(panel, kColumnStart), QStringList{"08:00:00"});
    QCOMPARE(QDir(home_.path() + QStringLiteral("/Trash/files")).entryList(QDir::Files).size(), 2);
  }

  void newConnectionEstimatesAndSaves() {
    test::TestServices t;
    WriteHistory(t.data);
    ConnectionDialog dialog(t.services, nullptr, QString());
    QCOMPARE(dialog.Field(0)->text(), QStringLiteral("23.11.2026"));
    dialog.Field(1)->setText(QStringLiteral("09:00:00"));
    dialog.Field(2)->setText(QStringLiteral("00:02:00"));
    dialog.User()->setCurrentText(QStringLiteral("Bert"));
    emit dialog.Tariff()->activated(0);
    QCOMPARE(dialog.Field(3)->text(), QStringLiteral("0,12"));
    QCOMPARE(dialog.Field(4)->text(), QStringLiteral("2"));
    dialog.Field(0)->clear();
    test::Find<QPushButton>(dialog, QStringLiteral("Command1_0"))->click();
    QCOMPARE(t.prompter.messages, QStringList{"Sie müssen ein Datum eingeben."});
    dialog.Field(0)->setText(QStringLiteral("22.11.2026"));
    test::Find<QPushButton>(dialog, QStringLiteral("Command1_0"))->click();
    QCOMPARE(dialog.SavedFile(), QStringLiteral("22112026-090000.con"));

    // Changing keeps the cost until the tariff is chosen again; a new
    // start renames the file.
    ConnectionDialog change(t.services, nullptr, dialog.SavedFile());
    QCOMPARE(change.Tariff()->currentText(), QStringLiteral("M - Tag und Nacht"));
    QCOMPARE(change.User()->currentText(), QStringLiteral("Bert"));
    change.Field(1)->setText(QStringLiteral("10:00:00"));
    test::Find<QPushButton>(change, QStringLiteral("Command1_0"))->click();
    QCOMPARE(t.data.dir().ListFiles(QStringLiteral("Verbindungen"), QStringLiteral("2211*")),
             QStringList{"22112026-100000.con"});
  }

  void colouringAndPeriodDialogs() {
    test::TestServices t;
    DifferenceDialog difference(t.services);
    QVERIFY(!difference.Field(0, 0)->isEnabled());
    difference.Category()->setCurrentIndex(1);
    QVERIFY(difference.Field(0, 0)->isEnabled());
    QVERIFY(!difference.Field(1, 0)->isEnabled());
    difference.Field(0, 2)->setText(QStringLiteral("3"));
    QCOMPARE(difference.Field(0, 3)->text(), QStringLiteral("3"));
    test::Find<QPushButton>(difference, QStringLiteral("Command1_0"))->click();
    QCOMPARE(t.data.read(QStringLiteral("Config/Difference.cfg")),
             QByteArray("1\r\n\r\n\r\n3\r\n\r\n\r\n\r\n\r\n\r\n\r\n"));

    PeriodDialog period(t.services);
    QCOMPARE(period.Field(1)->text(), QStringLiteral("23.11.2026"));
    period.Field(0)->setText(QStringLiteral("01.11.2026"));
    test::Find<QPushButton>(period, QStringLiteral("Command1"))->click();
    QCOMPARE(GetPeriodStart(t.data.dir()), QDate(2026, 11, 1));
  }

 private:
  QTemporaryDir home_;
};

QTEST_MAIN(TestListPanel)
#include "test_list_panel.moc"
