#include "history/ConnectionList.h"
#include "history/ListSort.h"
#include "history/ui/ExportDialog.h"
#include "history/ui/PrintDialog.h"
#include "support/FindControl.h"
#include "support/RecordFiles.h"
#include "support/TestServices.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QProcess>
#include <QRadioButton>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace minutor;

namespace {

// Today is Monday 23 November 2026; `count` connections of this month.
ListSelection WriteHistory(const test::TempDataDir& data, int count, const QString& period = "Dieser Monat") {
  for (int i = 0; i < count; ++i) {
    const QByteArray day = QByteArray::number(1 + i % 22).rightJustified(2, '0');
    const QByteArray hour = QByteArray::number(i % 24).rightJustified(2, '0');
    test::WriteRecord(data, QString::fromLatin1(day + "112026-" + hour + "0000.con"),
                      test::RecordLines(day + ".11.2026", hour + ":00:00", "1:30:00", "1,25",
                                        i % 2 ? "Netzwerk - Flat.tel" : "Funkwelle - Tag und Nacht.tel",
                                        "Anna", "25000000"));
  }
  ListQuery query;
  query.period = MakeListPeriod(data.dir(), period, QDate(2026, 11, 23));
  query.waehrung = QStringLiteral("€");
  ListSelection selection{GetConnections(data.dir(), query).rows, period, RecordFilter{}};
  SortRows(selection.rows, SortByHeader(kColumnDatum));
  return selection;
}

// The text of a PDF, or why it can't be read here.
QString PdfText(const QString& pdf, int* pages = nullptr) {
  QProcess text;
  text.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
  if (!text.waitForFinished(20000) || text.exitCode() != 0) {
    return {};
  }
  if (pages != nullptr) {
    QProcess info;
    info.start(QStringLiteral("pdfinfo"), {pdf});
    info.waitForFinished(20000);
    const auto match = QRegularExpression(QStringLiteral("Pages:\\s+(\\d+)"))
                           .match(QString::fromUtf8(info.readAllStandardOutput()));
    *pages = match.hasMatch() ? match.captured(1).toInt() : 0;
  }
  return QString::fromUtf8(text.readAllStandardOutput());
}

// Checks the pages of a long list printed as the dialog prints it.
void CheckPrintedList(const QString& pdf) {
  int pages = 0;
  const QString text = PdfText(pdf, &pages);
  QVERIFY2(!text.isEmpty(), qPrintable(pdf));
  QCOMPARE(pages, 2);
  QVERIFY(text.contains(QLatin1String("Verbindungen im November 2026")));
  QVERIFY(text.contains(QLatin1String("Benutzer: Alle")));
  QVERIFY(text.contains(QLatin1String("Mo, 23.11.2026")) || text.contains(QLatin1String("Mo, 22.11.2026")) ||
          text.contains(QLatin1String("So, 22.11.2026")));
  QVERIFY(text.contains(QLatin1String("70 Verbindungen")));
  QVERIFY(text.contains(QLatin1String("87,50")));
}

}  // namespace

class TestListOutput : public QObject {
  Q_OBJECT

 private slots:
  void exportDialogAsksWritesAndTells() {
    test::TestServices t;
    QTemporaryDir out;
    ListSelection selection = WriteHistory(t.data, 3);
    const QString taken = out.filePath(QStringLiteral("alt.htm"));
    QFile(taken).open(QIODevice::WriteOnly);
    // An existing file: "No" asks for another name, which gets no extension.
    t.prompter.fileNames = {taken, out.filePath(QStringLiteral("liste"))};
    t.prompter.answers = {Prompter::Answer::No, Prompter::Answer::Yes};
    ExportDialog dialog(t.services, selection);
    dialog.Export(ExportDialog::Format::Html);
    QCOMPARE(t.prompter.messages.at(1),
             QStringLiteral("Die Datei existiert bereits. Wollen Sie sie überschreiben?"));
    QVERIFY(t.prompter.messages.at(3).startsWith(QStringLiteral("Wollen Sie das Monatsdiagramme")));
    QCOMPARE(t.prompter.messages.last(), QStringLiteral("Die HTML Datei wurde erfolgreich erstellt."));
    QVERIFY(QFile(out.filePath(QStringLiteral("liste"))).size() > 0);
    QVERIFY(!QImage(out.filePath(QStringLiteral("liste1.bmp"))).isNull());
    QVERIFY(!QImage(out.filePath(QStringLiteral("liste2.bmp"))).isNull());

    // A folder that can't be written: our own message, nothing left behind.
    t.prompter.messages.clear();
    t.prompter.fileNames = {out.filePath(QStringLiteral("alt.htm/liste.txt"))};
    ExportDialog(t.services, selection).Export(ExportDialog::Format::Text);
    QCOMPARE(t.prompter.icons.last(), Prompter::Icon::Warning);
    QVERIFY(t.prompter.messages.last().contains(QLatin1String("konnte nicht geschrieben werden")));

    // A cancelled name writes nothing and says nothing; an empty list never
    // asks for a name.
    t.prompter.messages.clear();
    ExportDialog(t.services, selection).Export(ExportDialog::Format::Text);
    QCOMPARE(t.prompter.messages.size(), 1);
    selection.rows.clear();
    ExportDialog(t.services, selection).Export(ExportDialog::Format::Text);
    QCOMPARE(t.prompter.messages.last(), QStringLiteral("Die Liste enthält keine Einträge."));
  }

  void printDialogControlsAndPdfFile() {
    test::TestServices t;
    QTemporaryDir out;
    PrintDialog dialog(t.services, WriteHistory(t.data, 70));
    auto* printers = test::Find<QComboBox>(dialog, QStringLiteral("Combo1"));
    QCOMPARE(printers->itemText(0), PrintDialog::PdfEntry());
    test::Find<QLineEdit>(dialog, QStringLiteral("Text1"))->setText(QStringLiteral("zwei"));
    QCOMPARE(dialog.Copies(), 1);
    auto* classes = test::Find<QCheckBox>(dialog, QStringLiteral("Check3"));
    classes->setChecked(true);
    test::Find<QRadioButton>(dialog, QStringLiteral("Option5"))->setChecked(true);
    QVERIFY(!classes->isEnabled() && !classes->isChecked());

    printers->setCurrentIndex(0);
    t.prompter.fileNames = {out.filePath(QStringLiteral("liste.pdf"))};
    QVERIFY(dialog.Drucken());
    if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty()) {
      QSKIP("pdftotext (poppler-utils) is not installed: the PDF was written but can't be read back");
    }
    CheckPrintedList(out.filePath(QStringLiteral("liste.pdf")));

    // A queue gone since the dialog opened, and none chosen at all.
    printers->addItem(QStringLiteral("Verschwunden"));
    printers->setCurrentIndex(printers->count() - 1);
    QVERIFY(!dialog.Drucken());
    QVERIFY(t.prompter.messages.last().contains(QLatin1String("Verschwunden")));
    printers->setCurrentIndex(-1);
    QVERIFY(!dialog.Drucken());
    QCOMPARE(t.prompter.messages.last(), QStringLiteral("Kein Drucker ausgewählt"));
  }
};

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  TestListOutput test;
  return QTest::qExec(&test, argc, argv);
}
#include "test_list_output.moc"
