#include "users/AES.h"

#include <QRandomGenerator>
#include <QTest>
#include <QtEndian>

using namespace minutor;

namespace {

// 00, step, 2 * step, ... of the given length: the keys (step 1) and plain
// texts (step 0x11) of the published examples.
QByteArray Pattern(int length, int step) {
  QByteArray bytes(length, '\0');
  for (int i = 0; i < length; ++i) {
    bytes[i] = static_cast<char>(i * step);
  }
  return bytes;
}

QByteArray RandomBytes(QRandomGenerator& random, int length) {
  QByteArray bytes(length, '\0');
  for (auto& b : bytes) {
    b = static_cast<char>(random.bounded(256));
  }
  return bytes;
}

}  // namespace

class TestAES : public QObject {
  Q_OBJECT

 private slots:
  void knownAnswers() {
    // The three examples of the AES standard (128-bit blocks), then the same
    // key and plain text pattern for the wider blocks, as another Rijndael
    // implementation enciphers them.
    const std::tuple<int, int, QByteArray> cases[] = {
        {4, 4, "69c4e0d86a7b0430d8cdb78070b4c55a"},
        {4, 6, "dda97ca4864cdfe06eaf70a0ec0d7191"},
        {4, 8, "8ea2b7ca516745bfeafc49904b496089"},
        {6, 4, "e64018d211d8349b350f38893d7d23899fece7a9aca7c6ba"},
        {6, 6, "78be2d48f76d71da6966f3a175fb71ad66b70b2076c3cf1d"},
        {6, 8, "65d851df8d04b5cbb510935fdd1eb17b33efb8cb255ee712"},
        {8, 4, "98c6f98ba9631b91c34f431e0887c561b6ac44c985cecd38dbc4cb30b9170d2f"},
        {8, 6, "3c386395e910345a59a7dd165dcbda604bf072f0a03a6b0055a79b734e668868"},
        {8, 8, "288fa9d23d00d9dc0a39b33fa92867c6488b5e0f18a6f74c072078ec815462e6"},
    };
    AES aes;
    aes.gentables();
    for (const auto& [nb, nk, expected] : cases) {
      QVERIFY(aes.gkey(nb, nk, Pattern(4 * nk, 1)));
      QByteArray block = Pattern(4 * nb, 0x11);
      QVERIFY(aes.Encrypt(block));
      QCOMPARE(block.toHex(), expected);
      QVERIFY(aes.Decrypt(block));
      QCOMPARE(block, Pattern(4 * nb, 0x11));
    }
  }

  void badShapesAreRefused() {
    AES aes;
    QByteArray block(16, 'x');
    QVERIFY(!aes.Encrypt(block));
    QVERIFY(!aes.gkey(5, 4, Pattern(16, 1)));
    QVERIFY(!aes.gkey(4, 8, Pattern(31, 1)));
    QVERIFY(aes.gkey(4, 4, Pattern(16, 1)));
    QByteArray wrongSize(32, 'x');
    QVERIFY(!aes.Encrypt(wrongSize) && !aes.Decrypt(wrongSize));
  }

  void dataRoundTrips() {
    QRandomGenerator random(3);
    AES aes;
    for (int length = 1; length <= 100; ++length) {
      const QByteArray data = RandomBytes(random, length);
      const QByteArray password = RandomBytes(random, 1 + length % 40);
      QByteArray cipher;
      QVERIFY(aes.EncryptData(data, password, cipher));
      QCOMPARE(cipher.size(), (length + 4 + 31) / 32 * 32);
      QByteArray plain;
      QVERIFY(aes.DecryptData(cipher, password, plain));
      QCOMPARE(plain, data);
    }
    QByteArray result;
    QVERIFY(!aes.EncryptData({}, "pw", result));
    QVERIFY(!aes.EncryptData("data", {}, result));
    QVERIFY(!aes.DecryptData({}, "pw", result));
    QVERIFY(!aes.DecryptData(QByteArray(32, 'x'), {}, result));
    QVERIFY(!aes.DecryptData(QByteArray(31, 'x'), "pw", result));
  }

  void dataLayout() {
    // 28 bytes fill the first block behind the length; the next two blocks
    // are equal and, each enciphered alone, stay equal.
    const QByteArray data = QByteArray(28, 'a') + QByteArray(64, 'b') + "c";
    const QByteArray password(40, 'p');
    AES aes;
    QByteArray cipher;
    QVERIFY(aes.EncryptData(data, password, cipher));
    QCOMPARE(cipher.size(), 128);
    QCOMPARE(cipher.mid(32, 32), cipher.mid(64, 32));

    // Only the first 32 bytes of the password make the key.
    AES blocks;
    QVERIFY(blocks.gkey(8, 8, password.left(32)));
    QByteArray first = cipher.left(32);
    QVERIFY(blocks.Decrypt(first));
    QCOMPARE(qFromLittleEndian<quint32>(first.constData()), quint32(data.size()));
    QCOMPARE(first.mid(4), data.left(28));
    QByteArray last = cipher.mid(96);
    QVERIFY(blocks.Decrypt(last));
    QCOMPARE(last, "c" + QByteArray(31, '\0'));

    // A length that points past the data is refused, not read.
    QByteArray block(32, '\0');
    qToLittleEndian<quint32>(29, block.data());
    QVERIFY(blocks.Encrypt(block));
    QByteArray result;
    QVERIFY(!aes.DecryptData(block, password, result));
  }
};

QTEST_APPLESS_MAIN(TestAES)
#include "test_aes.moc"
