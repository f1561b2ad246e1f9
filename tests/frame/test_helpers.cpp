#include "frame/datadir/ClockText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/Names.h"
#include "frame/datadir/NoteFile.h"
#include "frame/datadir/NumberText.h"
#include "frame/datadir/TaxFile.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"

#include <QLocale>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

// Runs twice: once with a German locale (decimal comma) and once with an
// English one (decimal point). Readers must give the same values under both.
class TestHelpers : public QObject {
  Q_OBJECT

  bool comma() const { return DecimalSign() == QLatin1Char(','); }

 private slots:
  void numbersAreReadWithEitherSign() {
    const QString name = QLocale().name();  // the test's own locale, pinned by CTest
    QVERIFY2(name == QLatin1String("de_DE") || name == QLatin1String("en_US"), qPrintable(name));
    QCOMPARE(comma(), name == QLatin1String("de_DE"));

    QCOMPARE(LeadingNumber(u"3,9"_s), 3.0);
    QCOMPARE(LeadingNumber(u"  3.9 Werktag"_s), 3.9);
    QCOMPARE(LeadingNumber(u"-12"_s), -12.0);
    QCOMPARE(ParseBetrag(u"12,5"_s) + ParseBetrag(u"12.5"_s), 25.0f);
    QCOMPARE(ParseBetrag(u"1,5 Werktag"_s), 1.5f);
    QCOMPARE(ParseBetrag(u"keine Zahl"_s), 0.0f);
    QCOMPARE(LeadingNumber(QByteArray("abc")), 0.0);
  }

  void numbersAreWrittenInTheLocalesForm() {
    const QString sign = comma() ? u","_s : u"."_s;
    QCOMPARE(GeneralText(60.0), u"60"_s);
    QCOMPARE(GeneralText(0.1f + 0.2f), u"0"_s + sign + u"3"_s);
    QCOMPARE(PrintedNumber(16), QByteArray(" 16 "));
    QCOMPARE(PrintedNumber(-1), QByteArray("-1 "));
    QCOMPARE(FixedText(-0.001, 2), u"0"_s + sign + u"00"_s);
    QCOMPARE(FixedText(2.5, 0), u"3"_s);
    QVERIFY(IsOne(" 1 "));
    QVERIFY(!IsOne("") && !IsOne("11") && !IsOne("0"));
  }

  void clockTexts() {
    // The free-minutes text keeps the fraction of an hour in the middle field:
    // with a comma it stops the reader, with a point it counts as minutes.
    for (const auto& [a, b, difference] : {std::tuple{u"00:10:00", u"00:15:30", "-00:05:30"},
                                           {u"01:02:03", u"01:02:03", "00:00:00"},
                                           {u"150:00:00", u"00:00:01", "149:59:59"},
                                           {u"-00:05:30", u"00:00:30", "-00:06:00"},
                                           {u"1:0,5:00", u"00:00:00", "01:00:00"},
                                           {u"1:0.5:00", u"00:00:00", "01:00:30"}}) {
      QCOMPARE(ZeitDifferenz(a, b), QString::fromLatin1(difference));
    }
    QCOMPARE(NormalizeTime(u"1:75:80"), u"02:16:20"_s);
    QCOMPARE(NormalizeTimeOfDay(u"23:59:60"), u"00:00:00"_s);
    QCOMPARE(NormalizeTimeOfDay(u"25:10:00"), u"00:10:00"_s);
    // An hour counts 360 seconds here, as the chart and the printout add them.
    QCOMPARE(TimeToSeconds(u"01:02:03"), qint64(360 + 120 + 3));
    QCOMPARE(TimeToSeconds(u"42"), qint64(42));
    QCOMPARE(ZeitProzent(u"-00:30:00", u"01:00:00"), 50.0);
    QCOMPARE(ZeitProzent(u"00:30:00", u"00:00:00"), 0.0);
  }

  void datesAndTimesFollowTheLocale() {
    QCOMPARE(NormaliseDate(QDate()), QString());
    const QString text = NormaliseDate(QDate(2002, 1, 31));
    QVERIFY(text.contains(u"2002"_s));
    QCOMPARE(ParseShortDate(text), QDate(2002, 1, 31));
    QCOMPARE(ParseShortDate(u"1.1.2002"), QDate(2002, 1, 1));
    const QString time = LongTimeText(QTime(14, 5, 9));
    QVERIFY2(time.startsWith(u"14:05:09"_s) || time.startsWith(u"2:05:09"_s), qPrintable(time));
  }

  void names() {
    QVERIFY(IsValidName(QString(255, QLatin1Char('a'))));
    QVERIFY(!IsValidName(QString(256, QLatin1Char('a'))));
    for (const char* bad : {"a/b", "a\\b", "a:b", "a*b", "a?b", "a\"b", "a<b", "a>b", "a|b"}) {
      QVERIFY2(!IsValidName(QString::fromLatin1(bad)), bad);
    }
    QCOMPARE(CutAtNull(u"abc"_s + QChar(0) + u"def"_s), u"abc"_s);
    QVERIFY(!GetLogonName().isEmpty() && GetLogonName().size() <= 24);
  }

  void taxFileIsCreatedAndCorrected() {
    test::TempDataDir data;
    test::RecordingPrompter prompter;
    QCOMPARE(ReadTax(data.dir(), prompter), quint8(16));
    QCOMPARE(data.read(u"Tax.dat"_s), QByteArray(" 16 \r\n"));
    for (const QByteArray& accepted : {QByteArray("100"), QByteArray("0")}) {
      data.write(u"Tax.dat"_s, accepted + "\r\n");
      QCOMPARE(ReadTax(data.dir(), prompter), quint8(accepted.toInt()));
    }
    QVERIFY(prompter.messages.isEmpty());

    // Out of range: corrected in place, whatever the name's case.
    QFile::remove(data.path(u"Tax.dat"_s));
    for (const QByteArray& refused : {QByteArray("101"), QByteArray("-1")}) {
      data.write(u"tax.DAT"_s, refused + "\r\n");
      QCOMPARE(ReadTax(data.dir(), prompter), quint8(16));
      QCOMPARE(data.read(u"tax.DAT"_s), QByteArray(" 16 \r\n"));
    }
    QCOMPARE(prompter.messages.size(), 2);
    QVERIFY(prompter.messages.first().contains(u"mit dem Wert 16 korrigert"_s));
  }

  void noteKeepsItsLines() {
    test::TempDataDir data;
    QCOMPARE(LoadNote(data.dir()), QString());
    const QString note = u"Erste Zeile\nZweite Zeile mit Umlauten: äöü €"_s;
    QVERIFY(SaveNote(data.dir(), note));
    QCOMPARE(data.read(u"Note.dat"_s),
             QByteArray("Erste Zeile\r\nZweite Zeile mit Umlauten: \xe4\xf6\xfc \x80\r\n"));
    QCOMPARE(LoadNote(data.dir()), note);
  }
};

QTEST_APPLESS_MAIN(TestHelpers)
#include "test_helpers.moc"
