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
using namespace Qt::StringLiterals;

namespace {

// Today is Monday 23 November 2026.
void WriteHistory(const test::TempDataDir& data) {
  using test::RecordLines;
  test::WriteRecord(data, "23112026-080000.con", RecordLines("23.11.2026", "08:00:00", "0:10:00", "1,00"));
  test::WriteRecord(data, "23112026-200000.con",
                    RecordLines("23.11.2026", "20:00:00", "1:00:00", "2,50", "Netzwerk - Flat.tel", "Bert"));
  test::WriteRecord(data, "02102026-120000.con", RecordLines("02.10.2026", "12:00:00", "0:00:30", "0,10"));
  data.write(u"Tarife/Funkwelle - Tag und Nacht.tel"_s,
             test::Crlf(test::TimeHead() + test::Zone(0, 24, "6", false) + test::Zone(0, 24, "3", true)));
  data.write(u"Tarife/Netzwerk - Flat.tel"_s, test::Crlf(test::TimeHead()));
  data.write(u"Benutzer/Anna.usr"_s, "");
  data.write(u"Benutzer/Bert.usr"_s, "");
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
    QCOMPARE(panel->TotalDuration()->text(), u"01:10:30"_s);
    QCOMPARE(panel->TotalCost()->text(), u"3,60 €"_s);
    QVERIFY(panel->ButtonAt(ListPanel::kDrucken)->isEnabled());

    panel->PeriodCombo()->setCurrentText(u"Heute"_s);
    panel->ProviderCombo()->setCurrentText(u"Funkwelle"_s);
    QCOMPARE(panel->TariffCombo()->itemText(1), u"M - Tag und Nacht"_s);
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
    QCOMPARE(panel->PeriodCombo()->currentText(), u"Heute"_s);
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
    QVERIFY(t.prompter.messages.value(0).startsWith(u"Das erstellen oder modifizieren"_s));
    QCOMPARE(panel.Model()->rowCount(), 3);
    t.state.NoListEdit = false;
    panel.ButtonAt(ListPanel::kLoeschen)->click();
    QVERIFY(WaitLoaded(panel));
    QCOMPARE(Column(panel, kColumnStart), QStringList{"08:00:00"});
    QCOMPARE(QDir(home_.path() + u"/Trash/files"_s).entryList(QDir::Files).size(), 2);
  }

  void newConnectionEstimatesAndSaves() {
    test::TestServices t;
    WriteHistory(t.data);
    ConnectionDialog dialog(t.services, nullptr, QString());
    QCOMPARE(dialog.Field(0)->text(), u"23.11.2026"_s);
    dialog.Field(1)->setText(u"09:00:00"_s);
    dialog.Field(2)->setText(u"00:02:00"_s);
    dialog.User()->setCurrentText(u"Bert"_s);
    emit dialog.Tariff()->activated(0);
    QCOMPARE(dialog.Field(3)->text(), u"0,12"_s);
    QCOMPARE(dialog.Field(4)->text(), u"2"_s);
    dialog.Field(0)->clear();
    test::Find<QPushButton>(dialog, u"Command1_0"_s)->click();
    QCOMPARE(t.prompter.messages, QStringList{"Sie müssen ein Datum eingeben."});
    dialog.Field(0)->setText(u"22.11.2026"_s);
    test::Find<QPushButton>(dialog, u"Command1_0"_s)->click();
    QCOMPARE(dialog.SavedFile(), u"22112026-090000.con"_s);

    // Changing keeps the cost until the tariff is chosen again; a new
    // start renames the file.
    ConnectionDialog change(t.services, nullptr, dialog.SavedFile());
    QCOMPARE(change.Tariff()->currentText(), u"M - Tag und Nacht"_s);
    QCOMPARE(change.User()->currentText(), u"Bert"_s);
    change.Field(1)->setText(u"10:00:00"_s);
    test::Find<QPushButton>(change, u"Command1_0"_s)->click();
    QCOMPARE(t.data.dir().ListFiles(u"Verbindungen"_s, u"2211*"_s), QStringList{"22112026-100000.con"});
  }

  void colouringAndPeriodDialogs() {
    test::TestServices t;
    DifferenceDialog difference(t.services);
    QVERIFY(!difference.Field(0, 0)->isEnabled());
    difference.Category()->setCurrentIndex(1);
    QVERIFY(difference.Field(0, 0)->isEnabled());
    QVERIFY(!difference.Field(1, 0)->isEnabled());
    difference.Field(0, 2)->setText(u"3"_s);
    QCOMPARE(difference.Field(0, 3)->text(), u"3"_s);
    test::Find<QPushButton>(difference, u"Command1_0"_s)->click();
    QCOMPARE(t.data.read(u"Config/Difference.cfg"_s),
             QByteArray("1\r\n\r\n\r\n3\r\n\r\n\r\n\r\n\r\n\r\n\r\n"));

    PeriodDialog period(t.services);
    QCOMPARE(period.Field(1)->text(), u"23.11.2026"_s);
    period.Field(0)->setText(u"01.11.2026"_s);
    test::Find<QPushButton>(period, u"Command1"_s)->click();
    QCOMPARE(GetPeriodStart(t.data.dir()), QDate(2026, 11, 1));
  }

 private:
  QTemporaryDir home_;
};

QTEST_MAIN(TestListPanel)
#include "test_list_panel.moc"
