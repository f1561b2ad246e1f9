#include "users/FieldCipher.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <limits>

using namespace minutor;

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

    // Every rising step adds about 250, every falling one takes away 2: about
    // 17 million characters carry the number past the 32-bit range.
    const QByteArray growing = QByteArray("\x01\xff").repeated(9'000'000);
    QCOMPARE(DeriveS(growing), -1);
    QCOMPARE(EncryptText("abc", growing), QByteArray());
    QCOMPARE(DecryptText(EncryptField("abc"), growing), QByteArray());
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
    QCOMPARE(DecryptField(EncryptField(std::numeric_limits<qint64>::min())),
             QByteArray::number(std::numeric_limits<qint64>::min()));

    // Read literally, a last pair below 10 would lose its 0.
    for (const QByteArray& text : {QByteArray("Anna B"), QByteArray("ab c")}) {
      const QByteArray cipher = EncryptField(text);
      QVERIFY(static_cast<unsigned char>(cipher.back()) < 110);
      QCOMPARE(DecryptField(cipher), text);
    }
  }

  void randomTextsSurviveTheRoundTrip() {
    QRandomGenerator random(20240611);
    const QList<QByteArray> passPhrases = {"qTmeLuv4Kd", "", "a", "Passwort123"};
    for (int round = 0; round < 4000; ++round) {
      const QByteArray& passPhrase = passPhrases[round % passPhrases.size()];
      QByteArray text(random.bounded(1, 61), '\0');
      for (char& c : text) {
        c = static_cast<char>(random.bounded(32, 256));
      }
      const QByteArray cipher = EncryptText(text, passPhrase);
      QVERIFY(std::all_of(cipher.begin(), cipher.end(), [](char c) {
        return static_cast<unsigned char>(c) >= 100 && static_cast<unsigned char>(c) <= 199;
      }));
      QCOMPARE(cipher.size(), (text.size() * 3 + 1) / 2);
      QCOMPARE(DecryptText(cipher, passPhrase), text);
    }
  }

  void damagedCipherTexts() {
    // Damaged fields read as the program always read them: bytes from 200 on
    // stand for three digits, a stray byte at the end shifts the halves, and
    // a first group out of range or a byte below 100 gives nothing.
    const QByteArray anna = EncryptField("Anna");
    QCOMPARE(anna, QByteArray("\x9d\xb9\xa5\x99\x87\xb2"));
    QCOMPARE(DecryptField(QByteArray(anna).replace(1, 1, "\xfa")), QByteArray("g&U"));
    QCOMPARE(DecryptField(anna + '\xc8'), QByteArray("naAn"));
    QCOMPARE(DecryptField("\xa5\xb0\xc7\x99\x9b"), QByteArray("\xbd\xe7"
                                                              "C"));
    QCOMPARE(DecryptField("\xc8\x64\x64"), QByteArray());
    QCOMPARE(DecryptField(EncryptField("abc") + 'A'), QByteArray());
  }
};

QTEST_APPLESS_MAIN(TestFieldCipher)
#include "test_fieldcipher.moc"
