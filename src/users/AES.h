#pragma once

#include <QByteArray>

#include <array>

namespace minutor {

// Rijndael with a block and a key of 4, 6 or 8 words of 32 bits each, so also
// the 256-bit block that the AES standard left out. Blocks are enciphered one
// by one, without chaining.
class AES {
 public:
  // The field arithmetic, the substitution boxes and the round tables.
  void gentables();

  // Block and key length in words; the key holds at least 4 * nk bytes.
  // False for a length other than 4, 6 or 8 or a key too short.
  bool gkey(int nb, int nk, const QByteArray& key);

  // One block of 4 * nb bytes, in place. False when no key is set or the
  // buffer isn't one block long.
  bool Encrypt(QByteArray& buffer) const;
  bool Decrypt(QByteArray& buffer) const;

  // Data of any length under a password of up to 32 bytes, with a 256-bit
  // block and key: the length as a little-endian 32-bit number, the data, and
  // zeros up to a whole number of blocks. Empty data or password fail.
  bool EncryptData(const QByteArray& data, const QByteArray& password, QByteArray& result);
  bool DecryptData(const QByteArray& data, const QByteArray& password, QByteArray& result);

 private:
  static constexpr int kMaxWords = 8;
  static constexpr int kMaxRounds = 6 + kMaxWords;
  static constexpr int kMaxKeyWords = kMaxWords * (kMaxRounds + 1);

  quint8 Multiply(quint8 a, quint8 b) const;
  quint32 SubWord(quint32 word) const;
  quint32 InverseMixColumn(quint32 word) const;
  void EncryptBlock(uchar* block) const;
  void DecryptBlock(uchar* block) const;
  bool KeyForData(const QByteArray& password);

  bool tablesReady_ = false;
  std::array<quint8, 256> powers_{};
  std::array<quint8, 256> logs_{};
  std::array<quint8, 256> sbox_{};
  std::array<quint8, 256> inverseSbox_{};
  std::array<quint32, 256> forwardTable_{};
  std::array<quint32, 256> inverseTable_{};
  std::array<quint8, 30> roundConstants_{};

  int nb_ = 0;
  int nk_ = 0;
  int rounds_ = 0;
  std::array<quint32, kMaxKeyWords> encryptKey_{};
  std::array<quint32, kMaxKeyWords> decryptKey_{};
};

}  // namespace minutor
