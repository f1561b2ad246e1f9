#include "frame/datadir/DataDir.h"
#include "metering/ConnectionRecord.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"
#include "users/FieldCipher.h"

#include <QDir>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

// Start tag and time, duration, cost, units, bytes in, out and in all,
// connection, tariff and user.
RecordLabels SampleLabels() {
  return {u"05032026"_s,
          u"09:04:07"_s,
          u"00:12:30"_s,
          u"1,234 €"_s,
          u"13"_s,
          u"1.234.567 Bytes"_s,
          u"89.000 Bytes"_s,
          u"1.323.567 Bytes"_s,
          u"Mobilfunk-Stick"_s,
          u"Funkwelle - Tag und Nacht.tel"_s,
          u"Anna B"_s};
}

const QString kSaveError = u"Fehler beim speichern der Verbindungsdaten aufgetreten. Subcode %1."_s;

}  // namespace

// Runs with a German locale: labels and records carry a decimal comma.
class TestRecords : public QObject {
  Q_OBJECT

 private slots:
  void labelsBecomeTheRecordsValues() {
    RecordLabels l = SampleLabels();
    QCOMPARE(RecordPlainLines(l),
             (QList<QByteArray>{"S05.03.2026", "09:04:07", "00:12:30", "S1,23", "13", "1234567", "89000",
                                "1323567", "Mobilfunk-Stick", "Funkwelle - Tag und Nacht.tel", "Anna B"}));

    // Within the free allowance the cost is the bracket form, and reads as 0.
    l.kosten = u"0 (0,120 €)"_s;
    QCOMPARE(RecordPlainLines(l).at(3), QByteArray("S0,00"));
    l.kosten = u"12.5"_s;
    QCOMPARE(RecordPlainLines(l).at(3), QByteArray("S12,50"));

    l.einheiten = u"sek.genau"_s;
    l.bytesIn = l.bytesOut = u"unbekannt"_s;
    l.bytesInOut = u"Byte"_s;  // too short to hold " Bytes"
    QCOMPARE(RecordPlainLines(l).mid(4, 4), (QList<QByteArray>{"0", "0", "0", "0"}));

    // The file's name holds the start.
    for (const auto& [tag, time, name] : {std::tuple{"05032026", "9:04:07", "05032026-090407.con"},
                                          {"05032026", "9:04:07 PM", "05032026-210407.con"},
                                          {"05032026", "12:00:00 AM", "05032026-000000.con"},
                                          {"05032026", "25:00:00", ""},
                                          {"05/03/2026", "09:04:07", ""}}) {
      QCOMPARE(RecordFileName(QString::fromLatin1(tag), QString::fromLatin1(time)),
               QString::fromLatin1(name));
    }
  }

  void savedRecordReadsBack() {
    test::TempDataDir data;
    test::RecordingPrompter prompter;
    QCOMPARE(SaveConnection(data.dir(), SampleLabels(), prompter), SaveResult::Saved);
    QVERIFY(prompter.messages.isEmpty());

    const QString name = u"05032026-090407.con"_s;
    const QByteArray bytes = data.read(u"Verbindungen/"_s + name);
    QCOMPARE(bytes.count("\r\n"), 11);
    QCOMPARE(ReadRecordFields(data.path(u"Verbindungen/"_s + name)).value_or(QList<QByteArray>()),
             RecordPlainLines(SampleLabels()));
    QCOMPARE(RecordUser(data.dir(), name), u"Anna B"_s);
    QCOMPARE(RecordCost(data.dir(), name), static_cast<double>(1.23f));

    // A second record starting in the same second replaces the first.
    RecordLabels again = SampleLabels();
    again.benutzer = u"Supervisor"_s;
    QCOMPARE(SaveConnection(data.dir(), again, prompter), SaveResult::Saved);
    QCOMPARE(RecordUser(data.dir(), name), u"Supervisor"_s);
    QCOMPARE(QDir(data.path(u"Verbindungen"_s)).entryList(QDir::Files | QDir::Hidden).size(), 1);
  }

  void failuresWriteNothingAndAreReportedWithTheirSubcode() {
    test::TempDataDir data;
    test::RecordingPrompter prompter;
    RecordLabels l = SampleLabels();
    l.startTag.clear();
    QCOMPARE(SaveConnection(data.dir(), l, prompter), SaveResult::NoStart);
    QVERIFY(prompter.messages.isEmpty());

    l = SampleLabels();
    l.startTime = u"kaputt"_s;
    QCOMPARE(SaveConnection(data.dir(), l, prompter), SaveResult::Failed);
    QCOMPARE(prompter.messages.last(), kSaveError.arg(1));
    QCOMPARE(prompter.icons.last(), Prompter::Icon::Critical);

    // A folder where the record should go: the file can't be opened for writing.
    QVERIFY(QDir().mkpath(data.path(u"Verbindungen/05032026-090407.con"_s)));
    QCOMPARE(SaveConnection(data.dir(), SampleLabels(), prompter), SaveResult::Failed);
    QCOMPARE(prompter.messages.last(), kSaveError.arg(2));
    QCOMPARE(QDir(data.path(u"Verbindungen"_s)).entryList(QDir::Files | QDir::Hidden).size(), 0);

    // The folder of the records can't be made.
    test::TempDataDir blocked;
    blocked.write(u"Verbindungen"_s, "eine Datei");
    QCOMPARE(SaveConnection(blocked.dir(), SampleLabels(), prompter), SaveResult::Failed);
    QCOMPARE(prompter.messages.last(), kSaveError.arg(1));
  }

  void damagedRecordsGiveWhatTheyHold() {
    test::TempDataDir data;
    // Five lines: the user reader takes the last line read, which is units.
    QByteArray shortRecord;
    for (const QByteArray& plain : RecordPlainLines(SampleLabels()).mid(0, 5)) {
      shortRecord += EncryptField(plain) + "\r\n";
    }
    data.write(u"Verbindungen/01012026-000000.con"_s, shortRecord);
    QCOMPARE(RecordUser(data.dir(), u"01012026-000000.con"_s), u"13"_s);
    QCOMPARE(RecordCost(data.dir(), u"01012026-000000.con"_s), static_cast<double>(1.23f));

    // Written on a system with a decimal point.
    data.write(u"Verbindungen/02012026-000000.CON"_s,
               EncryptField("S01.01.2026") + "\r\n\r\n\r\n" + EncryptField("S2.50") + "\r\n");
    QCOMPARE(RecordCost(data.dir(), u"02012026-000000.con"_s), 2.5);

    data.write(u"Verbindungen/leer.con"_s, "");
    QCOMPARE(RecordUser(data.dir(), u"leer.con"_s), QString());
    QCOMPARE(RecordCost(data.dir(), u"leer.con"_s), 0.0);
    QCOMPARE(RecordCost(data.dir(), u"fehlt.con"_s), 0.0);
    QCOMPARE(RecordNameMonth(u"x.con"_s), QString());
  }
};

QTEST_APPLESS_MAIN(TestRecords)
#include "test_records.moc"
