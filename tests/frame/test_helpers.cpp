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

    QCOMPARE(LeadingNumber(QStringLiteral("3,9")), 3.0);
    QCOMPARE(LeadingNumber(QStringLiteral("  3.9 Werktag")), 3.9);
    QCOMPARE(LeadingNumber(QStringLiteral("-12")), -12.0);
    QCOMPARE(ParseBetrag(QStringLiteral("12,5")) + ParseBetrag(QStringLiteral("12.5")), 25.0f);
    QCOMPARE(ParseBetrag(QStringLiteral("1,5 Werktag")), 1.5f);
    QCOMPARE(ParseBetrag(QStringLiteral("keine Zahl")), 0.0f);
    QCOMPARE(LeadingNumber(QByteArray("abc")), 0.0);
  }

  void numbersAreWrittenInTheLocalesForm() {
    const QString sign = comma() ? QStringLiteral(",") : QStringLiteral(".");
    QCOMPARE(GeneralText(60.0), QStringLiteral("60"));
    QCOMPARE(GeneralText(0.1f + 0.2f), QStringLiteral("0") + sign + QStringLiteral("3"));
    QCOMPARE(PrintedNumber(16), QByteArray(" 16 "));
    QCOMPARE(PrintedNumber(-1), QByteArray("-1 "));
    QCOMPARE(FixedText(-0.001, 2), QStringLiteral("0") + sign + QStringLiteral("00"));
    QCOMPARE(FixedText(2.5, 0), QStringLiteral("3"));
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
    QCOMPARE(NormalizeTime(u"1:75:80"), QStringLiteral("02:16:20"));
    QCOMPARE(NormalizeTimeOfDay(u"23:59:60"), QStringLiteral("00:00:00"));
    QCOMPARE(NormalizeTimeOfDay(u"25:10:00"), QStringLiteral("00:10:00"));
    // An hour counts 360 seconds here, as the chart and the printout add them.
    QCOMPARE(TimeToSeconds(u"01:02:03"), qint64(360 + 120 + 3));
    QCOMPARE(TimeToSeconds(u"42"), qint64(42));
    QCOMPARE(ZeitProzent(u"-00:30:00", u"01:00:00"), 50.0);
    QCOMPARE(ZeitProzent(u"00:30:00", u"00:00:00"), 0.0);
  }

  void datesAndTimesFollowTheLocale() {
    QCOMPARE(NormaliseDate(QDate()), QString());
    const QString text = NormaliseDate(QDate(2002, 1, 31));
    QVERIFY(text.contains(QStringLiteral("2002")));
    QCOMPARE(ParseShortDate(text), QDate(2002, 1, 31));
    QCOMPARE(ParseShortDate(u"1.1.2002"), QDate(2002, 1, 1));
    const QString time = LongTimeText(QTime(14, 5, 9));
    QVERIFY2(time.startsWith(QStringLiteral("14:05:09")) || time.startsWith(QStringLiteral("2:05:09")),
             qPrintable(time));
  }

  void names() {
    QVERIFY(IsValidName(QString(255, QLatin1Char('a'))));
    QVERIFY(!IsValidName(QString(256, QLatin1Char('a'))));
    for (const char* bad : {"a/b", "a\\b", "a:b", "a*b", "a?b", "a\"b", "a<b", "a>b", "a|b"}) {
      QVERIFY2(!IsValidName(QString::fromLatin1(bad)), bad);
    }
    QCOMPARE(CutAtNull(QStringLiteral("abc") + QChar(0) + QStringLiteral("def")), QStringLiteral("abc"));
    QVERIFY(!GetLogonName().isEmpty() && GetLogonName().size() <= 24);
  }

  void taxFileIsCreatedAndCorrected() {
    test::TempDataDir data;
    test::RecordingPrompter prompter;
    QCOMPARE(ReadTax(data.dir(), prompter), quint8(16));
    QCOMPARE(data.read(QStringLiteral("Tax.dat")), QByteArray(" 16 \r\n"));
    for (const QByteArray& accepted : {QByteArray("100"), QByteArray("0")}) {
      data.write(QStringLiteral("Tax.dat"), accepted + "\r\n");
      QCOMPARE(ReadTax(data.dir(), prompter), quint8(accepted.toInt()));
    }
    QVERIFY(prompter.messages.isEmpty());

    // Out of range: corrected in place, whatever the name's case.
    QFile::remove(data.path(QStringLiteral("Tax.dat")));
    for (const QByteArray& refused : {QByteArray("101"), QByteArray("-1")}) {
      data.write(QStringLiteral("tax.DAT"), refused + "\r\n");
      QCOMPARE(ReadTax(data.dir(), prompter), quint8(16));
      QCOMPARE(data.read(QStringLiteral("tax.DAT")), QByteArray(" 16 \r\n"));
    }
    QCOMPARE(prompter.messages.size(), 2);
    QVERIFY(prompter.messages.first().contains(QStringLiteral("mit dem Wert 16 korrigert")));
  }

  void noteKeepsItsLines() {
    test::TempDataDir data;
    QCOMPARE(LoadNote(data.dir()), QString());
    const QString note = QStringLiteral("Erste Zeile\nZweite Zeile mit Umlauten: äöü €");
    QVERIFY(SaveNote(data.dir(), note));
    QCOMPARE(data.read(QStringLiteral("Note.dat")),
             QByteArray("Erste Zeile\r\nZweite Zeile mit Umlauten: \xe4\xf6\xfc \x80\r\n"));
    QCOMPARE(LoadNote(data.dir()), note);
  }
};

QTEST_APPLESS_MAIN(TestHelpers)
#include "test_helpers.moc"
