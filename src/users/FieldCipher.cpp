#include "users/FieldCipher.h"

#include <QByteArrayView>
#include <QVarLengthArray>

#include <limits>

namespace minutor {

namespace {

constexpr QByteArrayView kFixedPassPhrase("qTmeLuv4Kd");
constexpr QByteArrayView kDefaultPassPhrase("GreenBishop");

// Fields are short; a buffer of this size on the stack covers nearly all of
// them without touching the heap.
constexpr qsizetype kLocalBuffer = 256;

using LocalBytes = QVarLengthArray<char, kLocalBuffer>;

constexpr int Code(char c) { return static_cast<unsigned char>(c); }

constexpr qint64 DeriveSOf(QByteArrayView passPhrase) {
  if (passPhrase.isEmpty()) {
    passPhrase = kDefaultPassPhrase;
  }
  constexpr qint64 kMax = std::numeric_limits<qint32>::max();
  qint64 s = Code(passPhrase[0]);
  for (qsizetype i = 1; i < passPhrase.size(); ++i) {
    const int a = Code(passPhrase[i]);
    const int previous = Code(passPhrase[i - 1]);
    // The pairs of equal tests are meant: one character may subtract or add
    // twice.
    if (s - a >= 0 && a <= previous) {
      s -= a;
    }
    if (s - a >= 0 && a <= previous) {
      s -= a;
    }
    if (a >= s && a >= previous) {
      s += a;
    }
    if (a < s && a >= previous) {
      s += a;
    }
    if (s > kMax) {
      return -1;
    }
  }
  return s;
}

// Every stored field is enciphered with the fixed pass phrase; a history
// scan deciphers a million of them.
constexpr qint64 kFixedS = DeriveSOf(kFixedPassPhrase);

// Characters at even positions (counted from 1) first, then those at odd ones.
void SplitInto(QByteArrayView text, char* out) {
  qsizetype k = 0;
  for (qsizetype i = 1; i < text.size(); i += 2) {
    out[k++] = text[i];
  }
  for (qsizetype i = 0; i < text.size(); i += 2) {
    out[k++] = text[i];
  }
}

// The inverse of SplitInto: the first half (rounded down) goes to the even
// positions, the rest to the odd ones.
void MergeInto(QByteArrayView text, char* out) {
  const qsizetype half = text.size() / 2;
  for (qsizetype k = 0; k < half; ++k) {
    out[2 * k + 1] = text[k];
  }
  for (qsizetype k = half; k < text.size(); ++k) {
    out[2 * (k - half)] = text[k];
  }
}

QByteArray EncryptWithS(QByteArrayView text, qint64 s) {
  if (s < 0) {
    return {};
  }
  LocalBytes split(text.size());
  SplitInto(text, split.data());

  // Each character becomes a token of at least three digits followed by a
  // blank; squeezing the blanks out of such a string just joins the tokens,
  // so the digits go straight into pairs here.
  QByteArray cipher;
  cipher.reserve(text.size() * 3 / 2 + 1);
  int pending = -1;
  auto putDigit = [&](int digit) {
    if (pending < 0) {
      pending = digit;
    } else {
      cipher.append(static_cast<char>(100 + pending * 10 + digit));
      pending = -1;
    }
  };
  for (const char c : split) {
    const qint64 v = Code(c) + s;
    if (v > std::numeric_limits<qint32>::max()) {
      // Nothing has been paired yet at this stage of the cipher.
      return {};
    }
    if (v < 100) {
      putDigit(0);
    }
    char digits[16];
    int count = 0;
    qint64 rest = v;
    do {
      digits[count++] = static_cast<char>(rest % 10);
      rest /= 10;
    } while (rest > 0);
    while (count > 0) {
      putDigit(digits[--count]);
    }
  }
  if (pending >= 0) {
    cipher.append(static_cast<char>(100 + pending));
  }
  return cipher;
}

QByteArray DecryptWithS(QByteArrayView cipher, qint64 s) {
  if (cipher.isEmpty() || s < 0) {
    return {};
  }
  LocalBytes plain;
  plain.reserve(cipher.size() + 1);
  int group = 0;
  int groupDigits = 0;
  bool failed = false;
  auto putDigit = [&](int digit) {
    if (failed) {
      return;
    }
    group = group * 10 + digit;
    if (++groupDigits == 3) {
      const qint64 code = group - s;
      if (code < 0 || code > 255) {
        failed = true;
        return;
      }
      plain.append(static_cast<char>(code));
      group = 0;
      groupDigits = 0;
    }
  };

  const qsizetype last = cipher.size() - 1;
  for (qsizetype i = 0; i <= last; ++i) {
    const int p = Code(cipher[i]) - 100;
    if (p < 0) {
      return {};
    }
    if (p >= 100) {
      putDigit(p / 100);
    }
    if (p >= 10) {
      putDigit(p / 10 % 10);
    } else if (i < last || groupDigits == 1) {
      // Every character but the last stands for two digits, and the digits
      // make whole groups of three. A lone digit at the end that would leave
      // a group of two was therefore written as a pair beginning with 0 (as in
      // "Anna B"); reading it as one digit would garble the last character.
      putDigit(0);
    }
    putDigit(p % 10);
  }
  if (groupDigits > 0 && !failed) {
    // A short group at the end is read as it stands: the 0 that would fill
    // it up doesn't change its value.
    const qint64 code = group - s;
    if (code < 0 || code > 255) {
      failed = true;
    } else {
      plain.append(static_cast<char>(code));
    }
  }
  if (failed) {
    return QByteArray(plain.constData(), plain.size());
  }
  QByteArray text(plain.size(), Qt::Uninitialized);
  MergeInto(QByteArrayView(plain.constData(), plain.size()), text.data());
  return text;
}

}  // namespace

qint32 DeriveS(const QByteArray& passPhrase) { return static_cast<qint32>(DeriveSOf(passPhrase)); }

QByteArray EncryptText(const QByteArray& text, const QByteArray& passPhrase) {
  return EncryptWithS(text, DeriveSOf(passPhrase));
}

QByteArray DecryptText(const QByteArray& cipher, const QByteArray& passPhrase) {
  return DecryptWithS(cipher, DeriveSOf(passPhrase));
}

QByteArray EncryptField(const QByteArray& value) {
  if (value.isEmpty()) {
    return {};
  }
  return EncryptWithS(value, kFixedS);
}

QByteArray EncryptField(qint64 value) { return EncryptField(QByteArray::number(value)); }

QByteArray DecryptField(const QByteArray& cipher) {
  if (cipher.isEmpty()) {
    return {};
  }
  return DecryptWithS(cipher, kFixedS);
}

}  // namespace minutor
