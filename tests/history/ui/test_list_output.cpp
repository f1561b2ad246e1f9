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
#include <QUrl>

#include <unistd.h>

using namespace minutor;
using namespace Qt::StringLiterals;

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
  query.waehrung = u"€"_s;
  ListSelection selection{GetConnections(data.dir(), query).rows, period, RecordFilter{}};
  SortRows(selection.rows, SortByHeader(kColumnDatum));
  return selection;
}

// The text of a PDF, or why it can't be read here.
QString PdfText(const QString& pdf, int* pages = nullptr) {
  QProcess text;
  text.start(u"pdftotext"_s, {u"-layout"_s, pdf, u"-"_s});
  if (!text.waitForFinished(20000) || text.exitCode() != 0) {
    return {};
  }
  if (pages != nullptr) {
    QProcess info;
    info.start(u"pdfinfo"_s, {pdf});
    info.waitForFinished(20000);
    const auto match =
        QRegularExpression(u"Pages:\\s+(\\d+)"_s).match(QString::fromUtf8(info.readAllStandardOutput()));
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
  QVERIFY2(text.contains(QLatin1String("Verbindungen im November 2026")), qPrintable(text.left(600)));
  QVERIFY(text.contains(QLatin1String("Benutzer: Alle")));
  QVERIFY(text.contains(QLatin1String("Mo, 23.11.2026")) || text.contains(QLatin1String("Mo, 22.11.2026")) ||
          text.contains(QLatin1String("So, 22.11.2026")));
  QVERIFY(text.contains(QLatin1String("70 Verbindungen")));
  QVERIFY(text.contains(QLatin1String("87,50")));
}

// A CUPS scheduler of the test's own, with a CUPS-PDF queue "PDF" as its
// default, on a socket in a temporary folder. CUPS-PDF's backend must run
// as root; elsewhere `reason` says why there is no queue.
class PrivateCups {
 public:
  PrivateCups() {
    if (QStandardPaths::findExecutable(u"cupsd"_s, {"/usr/sbin", "/sbin"}).isEmpty() ||
        !QFile::exists(u"/usr/lib/cups/backend/cups-pdf"_s)) {
      reason = u"cupsd or printer-driver-cups-pdf is not installed"_s;
      return;
    }
    if (geteuid() != 0) {
      reason = u"the CUPS-PDF backend only runs under a scheduler started as root"_s;
      return;
    }
    const QString root = dir_.path();
    for (const char* sub : {"conf/ppd", "spool/tmp", "cache", "state", "log"}) {
      QDir(root).mkpath(QString::fromLatin1(sub));
    }
    QFile(root).setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner |
                               QFileDevice::ReadOther | QFileDevice::ExeOther);
    socket_ = root + u"/cups.sock"_s;
    dir_.write(
        u"conf/cupsd.conf"_s,
        "Listen " + socket_.toUtf8() +
            "\nLogLevel warn\nPreserveJobFiles Yes\nWebInterface No\nBrowsing No\nDefaultAuthType None\n"
            "<Location />\n  Order allow,deny\n  Allow all\n</Location>\n"
            "<Policy default>\n  <Limit All>\n    Order deny,allow\n  </Limit>\n</Policy>\n");
    dir_.write(u"conf/cups-files.conf"_s,
               ("ServerRoot " + root + "/conf\nRequestRoot " + root + "/spool\nTempDir " + root +
                "/spool/tmp\nCacheDir " + root + "/cache\nStateDir " + root + "/state\nErrorLog " + root +
                "/log/error_log\nAccessLog " + root + "/log/access_log\nPageLog " + root +
                "/log/page_log\n"
                "SystemGroup root\n")
                   .toUtf8());
    cupsd_.setProcessChannelMode(QProcess::MergedChannels);
    cupsd_.start(u"cupsd"_s, {"-f", "-c", root + "/conf/cupsd.conf", "-s", root + "/conf/cups-files.conf"});
    if (!cupsd_.waitForStarted(10000) || !QTest::qWaitFor([&] { return QFile::exists(socket_); }, 10000)) {
      reason = u"cupsd did not start: "_s + QString::fromUtf8(cupsd_.readAll());
      return;
    }
    qputenv("CUPS_SERVER", socket_.toUtf8());
    const QString ppd = u"/usr/share/ppd/cups-pdf/CUPS-PDF_noopt.ppd"_s;
    if (!Run("lpadmin", {"-p", "PDF", "-E", "-v", "cups-pdf:/", "-P", ppd}) ||
        !Run("lpadmin", {"-d", "PDF"})) {
      reason = u"lpadmin could not add the CUPS-PDF queue"_s;
    }
  }
  ~PrivateCups() {
    if (cupsd_.state() != QProcess::NotRunning) {
      cupsd_.terminate();
      cupsd_.waitForFinished(10000);
    }
  }

  QString Spool() const { return dir_.path(u"spool"_s); }

  QString reason;

 private:
  static bool Run(const char* program, const QStringList& args) {
    QProcess process;
    process.start(QString::fromLatin1(program), args);
    return process.waitForFinished(20000) && process.exitCode() == 0;
  }

  test::TempDataDir dir_;
  QString socket_;
  QProcess cupsd_;
};

PrivateCups* cups = nullptr;

}  // namespace

class TestListOutput : public QObject {
  Q_OBJECT

 private slots:
  void exportDialogAsksWritesAndTells() {
    test::TestServices t;
    QTemporaryDir out;
    ListSelection selection = WriteHistory(t.data, 3);
    const QString taken = out.filePath(u"alt.htm"_s);
    QFile(taken).open(QIODevice::WriteOnly);
    // An existing file: "No" asks for another name, which gets no extension.
    t.prompter.fileNames = {taken, out.filePath(u"liste"_s)};
    t.prompter.answers = {Prompter::Answer::No, Prompter::Answer::Yes};
    ExportDialog dialog(t.services, selection);
    dialog.Export(ExportDialog::Format::Html);
    QCOMPARE(t.prompter.messages.at(1), u"Die Datei existiert bereits. Wollen Sie sie überschreiben?"_s);
    QVERIFY(t.prompter.messages.at(3).startsWith(u"Wollen Sie das Monatsdiagramme"_s));
    QCOMPARE(t.prompter.messages.last(), u"Die HTML Datei wurde erfolgreich erstellt."_s);
    QVERIFY(QFile(out.filePath(u"liste"_s)).size() > 0);
    QVERIFY(!QImage(out.filePath(u"liste1.bmp"_s)).isNull());
    QVERIFY(!QImage(out.filePath(u"liste2.bmp"_s)).isNull());

    // A folder that can't be written: our own message, nothing left behind.
    t.prompter.messages.clear();
    t.prompter.fileNames = {out.filePath(u"alt.htm/liste.txt"_s)};
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
    QCOMPARE(t.prompter.messages.last(), u"Die Liste enthält keine Einträge."_s);
  }

  void printDialogControlsAndPdfFile() {
    test::TestServices t;
    QTemporaryDir out;
    PrintDialog dialog(t.services, WriteHistory(t.data, 70));
    auto* printers = test::Find<QComboBox>(dialog, u"Combo1"_s);
    QCOMPARE(printers->itemText(0), PrintDialog::PdfEntry());
    test::Find<QLineEdit>(dialog, u"Text1"_s)->setText(u"zwei"_s);
    QCOMPARE(dialog.Copies(), 1);
    auto* classes = test::Find<QCheckBox>(dialog, u"Check3"_s);
    classes->setChecked(true);
    test::Find<QRadioButton>(dialog, u"Option5"_s)->setChecked(true);
    QVERIFY(!classes->isEnabled() && !classes->isChecked());

    printers->setCurrentIndex(0);
    t.prompter.fileNames = {out.filePath(u"liste.pdf"_s)};
    QVERIFY(dialog.Drucken());
    if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty()) {
      QSKIP("pdftotext (poppler-utils) is not installed: the PDF was written but can't be read back");
    }
    CheckPrintedList(out.filePath(u"liste.pdf"_s));

    // A queue gone since the dialog opened, and none chosen at all.
    printers->addItem(u"Verschwunden"_s);
    printers->setCurrentIndex(printers->count() - 1);
    QVERIFY(!dialog.Drucken());
    QVERIFY(t.prompter.messages.last().contains(QLatin1String("Verschwunden")));
    printers->setCurrentIndex(-1);
    QVERIFY(!dialog.Drucken());
    QCOMPARE(t.prompter.messages.last(), u"Kein Drucker ausgewählt"_s);
  }

  void printsOnARealQueue() {
    if (!cups->reason.isEmpty()) {
      QSKIP(qPrintable(cups->reason));
    }
    if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty()) {
      QSKIP("pdftotext (poppler-utils) is not installed");
    }
    test::TestServices t;
    PrintDialog dialog(t.services, WriteHistory(t.data, 70));
    QCOMPARE(test::Find<QComboBox>(dialog, u"Combo1"_s)->currentText(), u"PDF"_s);
    QVERIFY(dialog.Drucken());
    // The job as the queue received it, once it is whole.
    QString job;
    QVERIFY2(QTest::qWaitFor(
                 [&] {
                   const QFileInfoList jobs = QDir(cups->Spool()).entryInfoList({"d*-001"}, QDir::Files);
                   job = jobs.isEmpty() ? QString() : jobs.first().absoluteFilePath();
                   return !job.isEmpty() && !PdfText(job).isEmpty();
                 },
                 60000),
             "the queue received no job");
    CheckPrintedList(job);
  }

  void browserShowsTheExportedCharts() {
    const QString chromium = QStandardPaths::findExecutable(u"chromium"_s);
    if (chromium.isEmpty()) {
      QSKIP("chromium is not installed");
    }
    test::TestServices t;
    t.prompter.fileNames = {t.data.path(u"web/liste.htm"_s)};
    t.prompter.answers = {Prompter::Answer::Yes};
    QDir().mkpath(t.data.path(u"web"_s));
    ExportDialog(t.services, WriteHistory(t.data, 30)).Export(ExportDialog::Format::Html);
    const QString shot = t.data.path(u"shot.png"_s);
    QProcess browser;
    browser.start(
        chromium,
        {"--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-sync",
         "--user-data-dir=" + t.data.path(u"chromium"_s), "--screenshot=" + shot, "--window-size=1000,800",
         QUrl::fromLocalFile(t.data.path(u"web/liste.htm"_s)).toString()});
    QVERIFY(browser.waitForFinished(120000));
    const QImage page(shot);
    QVERIFY2(!page.isNull(), browser.readAllStandardError().right(2000).constData());
    // The bars' colour fills a good part of each half of the page where the
    // pictures stand.
    QVERIFY(!QImage(t.data.path(u"web/liste1.bmp"_s)).isNull());
    const QRgb bar = qRgb(0x00, 0x64, 0xB4);
    for (const int half : {0, 1}) {
      int found = 0;
      for (int y = 0; y < std::min(page.height(), 450); ++y) {
        for (int x = half * page.width() / 2; x < (half + 1) * page.width() / 2; ++x) {
          found += page.pixel(x, y) == bar ? 1 : 0;
        }
      }
      QVERIFY2(found > 1000, qPrintable(u"chart %1: %2 bar pixels"_s.arg(half + 1).arg(found)));
    }
  }
};

int main(int argc, char** argv) {
  // The queue must be known before Qt's print support asks CUPS for its
  // printers.
  PrivateCups privateCups;
  cups = &privateCups;
  QApplication app(argc, argv);
  TestListOutput test;
  return QTest::qExec(&test, argc, argv);
}
#include "test_list_output.moc"
