#include "users/AES.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <limits>

namespace minutor {

namespace {

constexpr int kDataWords = 8;
constexpr int kDataBlock = 4 * kDataWords;

// Multiplication by x in GF(2^8) modulo x^8 + x^4 + x^3 + x + 1.
quint8 XTime(quint8 a) { return static_cast<quint8>((a << 1) ^ ((a & 0x80) != 0 ? 0x1b : 0)); }

quint8 RotateByteLeft(quint8 a, int bits) { return static_cast<quint8>((a << bits) | (a >> (8 - bits))); }

// A column of the state as a word: row 0 in the lowest byte.
quint32 Pack(quint8 b0, quint8 b1, quint8 b2, quint8 b3) {
  return quint32(b0) | (quint32(b1) << 8) | (quint32(b2) << 16) | (quint32(b3) << 24);
}

quint8 ByteOf(quint32 word, int row) { return static_cast<quint8>(word >> (8 * row)); }

quint32 RotateLeft(quint32 word, int bits) {
  return bits == 0 ? word : (word << bits) | (word >> (32 - bits));
}

bool IsValidLength(int words) { return words == 4 || words == 6 || words == 8; }

// How far rows 1 to 3 move in the row shift; only the 256-bit block differs.
std::array<int, 4> RowShifts(int nb) {
  if (nb == 8) {
    return {0, 1, 3, 4};
  }
  return {0, 1, 2, 3};
}

}  // namespace

quint8 AES::Multiply(quint8 a, quint8 b) const {
  if (a == 0 || b == 0) {
    return 0;
  }
  return powers_[(logs_[a] + logs_[b]) % 255];
}

void AES::gentables() {
  // 3 generates the multiplicative group, so products become sums of logs.
  quint8 x = 1;
  for (int i = 0; i < 255; ++i) {
    powers_[i] = x;
    logs_[x] = static_cast<quint8>(i);
    x = static_cast<quint8>(x ^ XTime(x));
  }
  powers_[255] = powers_[0];
  logs_[0] = 0;

  for (int value = 0; value < 256; ++value) {
    const quint8 inverse = value == 0 ? 0 : powers_[255 - logs_[value]];
    const quint8 s = static_cast<quint8>(inverse ^ RotateByteLeft(inverse, 1) ^ RotateByteLeft(inverse, 2) ^
                                         RotateByteLeft(inverse, 3) ^ RotateByteLeft(inverse, 4) ^ 0x63);
    sbox_[value] = s;
    inverseSbox_[s] = static_cast<quint8>(value);
  }

  // One round of substitution and column mixing for a byte in row 0; the
  // other rows use the same table rotated.
  for (int value = 0; value < 256; ++value) {
    const quint8 s = sbox_[value];
    forwardTable_[value] = Pack(Multiply(2, s), s, s, Multiply(3, s));
    const quint8 r = inverseSbox_[value];
    inverseTable_[value] = Pack(Multiply(0x0e, r), Multiply(0x09, r), Multiply(0x0d, r), Multiply(0x0b, r));
  }

  quint8 constant = 1;
  for (auto& rc : roundConstants_) {
    rc = constant;
    constant = XTime(constant);
  }
  tablesReady_ = true;
}

quint32 AES::SubWord(quint32 word) const {
  return Pack(sbox_[ByteOf(word, 0)], sbox_[ByteOf(word, 1)], sbox_[ByteOf(word, 2)], sbox_[ByteOf(word, 3)]);
}

quint32 AES::InverseMixColumn(quint32 word) const {
  // The inverse table undoes the substitution first; substituting beforehand
  // leaves the column mixing alone.
  quint32 result = 0;
  for (int row = 0; row < 4; ++row) {
    result ^= RotateLeft(inverseTable_[sbox_[ByteOf(word, row)]], 8 * row);
  }
  return result;
}

bool AES::gkey(int nb, int nk, const QByteArray& key) {
  if (!IsValidLength(nb) || !IsValidLength(nk) || key.size() < 4 * nk) {
    return false;
  }
  if (!tablesReady_) {
    gentables();
  }
  nb_ = nb;
  nk_ = nk;
  rounds_ = 6 + std::max(nb, nk);
  const int words = nb * (rounds_ + 1);

  const auto* bytes = reinterpret_cast<const uchar*>(key.constData());
  for (int i = 0; i < nk; ++i) {
    encryptKey_[i] = Pack(bytes[4 * i], bytes[4 * i + 1], bytes[4 * i + 2], bytes[4 * i + 3]);
  }
  for (int i = nk; i < words; ++i) {
    quint32 temp = encryptKey_[i - 1];
    if (i % nk == 0) {
      temp = SubWord(RotateLeft(temp, 24)) ^ roundConstants_[i / nk - 1];
    } else if (nk > 6 && i % nk == 4) {
      temp = SubWord(temp);
    }
    encryptKey_[i] = encryptKey_[i - nk] ^ temp;
  }

  // Deciphering runs the rounds backwards with the column mixing moved in
  // front of the key addition, so the inner round keys are mixed too.
  for (int round = 0; round <= rounds_; ++round) {
    for (int column = 0; column < nb; ++column) {
      const quint32 word = encryptKey_[round * nb + column];
      const bool outer = round == 0 || round == rounds_;
      decryptKey_[(rounds_ - round) * nb + column] = outer ? word : InverseMixColumn(word);
    }
  }
  return true;
}

void AES::EncryptBlock(uchar* block) const {
  const std::array<int, 4> shift = RowShifts(nb_);
  std::array<quint32, kMaxWords> state{};
  std::array<quint32, kMaxWords> next{};
  for (int c = 0; c < nb_; ++c) {
    state[c] = Pack(block[4 * c], block[4 * c + 1], block[4 * c + 2], block[4 * c + 3]) ^ encryptKey_[c];
  }
  int k = nb_;
  for (int round = 1; round < rounds_; ++round) {
    for (int c = 0; c < nb_; ++c) {
      quint32 word = encryptKey_[k + c];
      for (int row = 0; row < 4; ++row) {
        const quint8 b = ByteOf(state[(c + shift[row]) % nb_], row);
        word ^= RotateLeft(forwardTable_[b], 8 * row);
      }
      next[c] = word;
    }
    state = next;
    k += nb_;
  }
  for (int c = 0; c < nb_; ++c) {
    const quint32 word =
        Pack(sbox_[ByteOf(state[c], 0)], sbox_[ByteOf(state[(c + shift[1]) % nb_], 1)],
             sbox_[ByteOf(state[(c + shift[2]) % nb_], 2)], sbox_[ByteOf(state[(c + shift[3]) % nb_], 3)]) ^
        encryptKey_[k + c];
    qToLittleEndian(word, block + 4 * c);
  }
}

void AES::DecryptBlock(uchar* block) const {
  const std::array<int, 4> shift = RowShifts(nb_);
  std::array<quint32, kMaxWords> state{};
  std::array<quint32, kMaxWords> next{};
  for (int c = 0; c < nb_; ++c) {
    state[c] = Pack(block[4 * c], block[4 * c + 1], block[4 * c + 2], block[4 * c + 3]) ^ decryptKey_[c];
  }
  int k = nb_;
  for (int round = 1; round < rounds_; ++round) {
    for (int c = 0; c < nb_; ++c) {
      quint32 word = decryptKey_[k + c];
      for (int row = 0; row < 4; ++row) {
        const quint8 b = ByteOf(state[(c + nb_ - shift[row]) % nb_], row);
        word ^= RotateLeft(inverseTable_[b], 8 * row);
      }
      next[c] = word;
    }
    state = next;
    k += nb_;
  }
  for (int c = 0; c < nb_; ++c) {
    const quint32 word =
        Pack(inverseSbox_[ByteOf(state[c], 0)], inverseSbox_[ByteOf(state[(c + nb_ - shift[1]) % nb_], 1)],
             inverseSbox_[ByteOf(state[(c + nb_ - shift[2]) % nb_], 2)],
             inverseSbox_[ByteOf(state[(c + nb_ - shift[3]) % nb_], 3)]) ^
        decryptKey_[k + c];
    qToLittleEndian(word, block + 4 * c);
  }
}

bool AES::Encrypt(QByteArray& buffer) const {
  if (nb_ == 0 || buffer.size() != 4 * nb_) {
    return false;
  }
  EncryptBlock(reinterpret_cast<uchar*>(buffer.data()));
  return true;
}

bool AES::Decrypt(QByteArray& buffer) const {
  if (nb_ == 0 || buffer.size() != 4 * nb_) {
    return false;
  }
  DecryptBlock(reinterpret_cast<uchar*>(buffer.data()));
  return true;
}

bool AES::KeyForData(const QByteArray& password) {
  QByteArray key(kDataBlock, '\0');
  std::memcpy(key.data(), password.constData(), std::min<qsizetype>(password.size(), kDataBlock));
  gentables();
  return gkey(kDataWords, kDataWords, key);
}

bool AES::EncryptData(const QByteArray& data, const QByteArray& password, QByteArray& result) {
  // The length has to fit the 32-bit header.
  constexpr qsizetype kLongest = std::numeric_limits<qint32>::max() - 4 - kDataBlock;
  if (data.isEmpty() || password.isEmpty() || data.size() > kLongest || !KeyForData(password)) {
    return false;
  }
  const qsizetype size = (data.size() + 4 + kDataBlock - 1) / kDataBlock * kDataBlock;
  QByteArray buffer(size, '\0');
  auto* bytes = reinterpret_cast<uchar*>(buffer.data());
  qToLittleEndian(static_cast<quint32>(data.size()), bytes);
  std::memcpy(bytes + 4, data.constData(), data.size());
  for (qsizetype offset = 0; offset < size; offset += kDataBlock) {
    EncryptBlock(bytes + offset);
  }
  result = buffer;
  return true;
}

bool AES::DecryptData(const QByteArray& data, const QByteArray& password, QByteArray& result) {
  if (data.isEmpty() || password.isEmpty() || data.size() % kDataBlock != 0 || !KeyForData(password)) {
    return false;
  }
  QByteArray buffer = data;
  auto* bytes = reinterpret_cast<uchar*>(buffer.data());
  for (qsizetype offset = 0; offset < buffer.size(); offset += kDataBlock) {
    DecryptBlock(bytes + offset);
  }
  const quint32 length = qFromLittleEndian<quint32>(bytes);
  if (length > static_cast<quint64>(buffer.size() - 4)) {
    return false;
  }
  result = buffer.mid(4, length);
  return true;
}

}  // namespace minutor
