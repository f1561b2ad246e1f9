#include "users/FieldCipher.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <limits>

using namespace minutor;

namespace {

// The deciphering steps taken literally, digit string and all. Read this way
// a last pair below 10 loses its 0, which the real decoder repairs; wherever
// the literal steps are right, the two must agree.
QByteArray LiteralDecrypt(const QByteArray& cipher, const QByteArray& passPhrase) {
  const qint64 s = DeriveS(passPhrase);
  QByteArray digits;
  for (qsizetype i = 0; i < cipher.size(); ++i) {
    const int value = static_cast<unsigned char>(cipher[i]) - 100;
    if (value < 0) {
      return {};
    }
    QByteArray text = QByteArray::number(value);
    if (i < cipher.size() - 1 && text.size() == 1) {
      text.prepend('0');
    }
    digits += text;
  }
  digits = SqueezeBlanks(digits);
  QByteArray groups;
  for (qsizetype i = 0; i < digits.size(); i += 3) {
    groups += digits.mid(i, 3) + ' ';
  }
  QByteArray text;
  for (QByteArray group : groups.split(' ')) {
    if (group.isEmpty()) {
      continue;
    }
    if (group.size() == 2) {
      group.prepend('0');
    }
    const qint64 code = group.toLongLong() - s;
    if (code < 0 || code > 255) {
      return text;
    }
    text += static_cast<char>(code);
  }
  return MergeOddEven(text);
}

QByteArray RandomBytes(QRandomGenerator& random, int length, int low, int high) {
  QByteArray bytes(length, '\0');
  for (auto& b : bytes) {
    b = static_cast<char>(random.bounded(low, high + 1));
  }
  return bytes;
}

bool AllCipherBytes(const QByteArray& cipher) {
  return std::all_of(cipher.begin(), cipher.end(), [](char c) {
    const int code = static_cast<unsigned char>(c);
    return code >= 100 && code <= 199;
  });
}

}  // namespace

class TestFieldCipher : public QObject {
  Q_OBJECT

 private slots:
  void numberFromPassPhrase() {
    QCOMPARE(DeriveS("qTmeLuv4Kd"), 468);
    QCOMPARE(DeriveS("GreenBishop"), 512);
    QCOMPARE(DeriveS(""), 512);
    // A falling character may be taken away twice, a rising one added twice.
    QCOMPARE(DeriveS("z!"), 122 - 33 - 33);
    QCOMPARE(DeriveS("ab"), 97 + 98 + 98);
    // Equal characters: taken away once, then added back once.
    QCOMPARE(DeriveS("aa"), 97);
    // Bytes count unsigned.
    QCOMPARE(DeriveS("\xe9"), 0xe9);
  }

  void numberOutOfRangeGivesNothing() {
    // Every rising step adds about 250, every falling one takes away 2: about
    // 17 million characters carry the number past the 32-bit range.
    const QByteArray growing = QByteArray("\x01\xff").repeated(9'000'000);
    QCOMPARE(DeriveS(growing), -1);
    QCOMPARE(EncryptText("abc", growing), QByteArray());
    QCOMPARE(DecryptText(EncryptField("abc"), growing), QByteArray());
  }

  void helpers() {
    QCOMPARE(SplitOddEven("abcde"), QByteArray("bdace"));
    QCOMPARE(SplitOddEven("abcdef"), QByteArray("bdface"));
    for (int length = 0; length < 9; ++length) {
      const QByteArray text = QByteArray("123456789").left(length);
      QCOMPARE(MergeOddEven(SplitOddEven(text)), text);
    }
    QCOMPARE(SqueezeBlanks("533 521 "), QByteArray("533521"));
    // A rest behind the last blank comes to the front.
    QCOMPARE(SqueezeBlanks("ab cd"), QByteArray("cdab"));
    QCOMPARE(SqueezeBlanks(" x  y"), QByteArray("yx"));
  }

  void knownCipherTexts() {
    // "-5" splits to "5-", the codes plus 468 give "521513", in pairs 52 15 13.
    QCOMPARE(EncryptField(-5), QByteArray("\x98sq"));
    QCOMPARE(EncryptField("-5"), EncryptField(-5));
    // One character gives three digits: 53 and a lone 3.
    QCOMPARE(EncryptField("A"), QByteArray("\x99g"));
    // "ab" under the default pass phrase: "610609", so the last pair is 09.
    QCOMPARE(EncryptText("ab", ""), QByteArray("\xa1jm"));

    QCOMPARE(DecryptField("\x98sq"), QByteArray("-5"));
    QCOMPARE(DecryptField("\x99g"), QByteArray("A"));
    QCOMPARE(DecryptText("\xa1jm", ""), QByteArray("ab"));

    QCOMPARE(EncryptField(""), QByteArray());
    QCOMPARE(DecryptField(""), QByteArray());
    QCOMPARE(DecryptField(EncryptField(600)), QByteArray("600"));
    QCOMPARE(DecryptField(EncryptField(std::numeric_limits<qint64>::min())),
             QByteArray::number(std::numeric_limits<qint64>::min()));
  }

  void lastPairBelowTenSurvives() {
    for (const QByteArray& text : {QByteArray("Anna B"), QByteArray("ab c")}) {
      const QByteArray cipher = EncryptField(text);
      QVERIFY(static_cast<unsigned char>(cipher.back()) < 110);
      QVERIFY(LiteralDecrypt(cipher, "qTmeLuv4Kd") != text);
      QCOMPARE(DecryptField(cipher), text);
    }
  }

  void randomTextsSurviveTheRoundTrip() {
    QRandomGenerator random(20240611);
    const QList<QByteArray> passPhrases = {"qTmeLuv4Kd", "", "a", "Passwort123"};
    int literalWrong = 0;
    for (int round = 0; round < 4000; ++round) {
      const QByteArray& passPhrase = passPhrases[round % passPhrases.size()];
      const QByteArray text = RandomBytes(random, random.bounded(1, 61), 32, 255);
      const QByteArray cipher = EncryptText(text, passPhrase);
      QVERIFY(AllCipherBytes(cipher));
      QCOMPARE(cipher.size(), (text.size() * 3 + 1) / 2);
      QCOMPARE(DecryptText(cipher, passPhrase), text);
      // Where the literal steps get the text back, the two agree by the line
      // above; where they don't, the repair was needed.
      literalWrong += LiteralDecrypt(cipher, passPhrase) != text ? 1 : 0;
    }
    QVERIFY(literalWrong > 100);
  }

  void damagedCipherTexts() {
    // Apart from the lone digit at the end, the decoder reads any bytes as
    // the literal steps do, with the same short result on a bad group.
    QRandomGenerator random(7);
    int compared = 0;
    for (int round = 0; round < 4000; ++round) {
      const QByteArray cipher = RandomBytes(random, random.bounded(1, 40), round % 3 == 0 ? 0 : 100, 255);
      qsizetype digitsBeforeLast = 0;
      for (qsizetype i = 0; i + 1 < cipher.size(); ++i) {
        digitsBeforeLast += static_cast<unsigned char>(cipher[i]) >= 200 ? 3 : 2;
      }
      const int lastValue = static_cast<unsigned char>(cipher.back()) - 100;
      const bool repaired = lastValue >= 0 && lastValue < 10 && digitsBeforeLast % 3 == 1;
      if (!repaired) {
        QCOMPARE(DecryptField(cipher), LiteralDecrypt(cipher, "qTmeLuv4Kd"));
        ++compared;
      }
    }
    QVERIFY(compared > 3000);
    // A byte below 100 spoils the whole field.
    QCOMPARE(DecryptField(EncryptField("abc") + 'A'), QByteArray());
  }
};

QTEST_APPLESS_MAIN(TestFieldCipher)
#include "test_fieldcipher.moc"
