#include "frame/datadir/NumberText.h"

#include "frame/datadir/AnsiText.h"

#include <QLocale>

#include <cmath>

namespace minutor {

namespace {

char16_t CodeOf(QChar c) { return c.unicode(); }
char16_t CodeOf(char c) { return static_cast<unsigned char>(c); }

template <typename Text>
double LeadingNumberOf(const Text& text) {
  const auto size = text.size();
  decltype(text.size()) i = 0;
  auto at = [&](auto index) -> char16_t { return CodeOf(text[index]); };
  auto skipBlanks = [&] {
    while (i < size && (at(i) == u' ' || at(i) == u'\t')) {
      ++i;
    }
  };
  skipBlanks();
  bool negative = false;
  if (i < size && (at(i) == u'-' || at(i) == u'+')) {
    negative = at(i) == u'-';
    ++i;
  }
  double whole = 0.0;
  double fraction = 0.0;
  double scale = 1.0;
  bool seenPoint = false;
  for (; i < size; ++i) {
    const char16_t c = at(i);
    if (c == u' ' || c == u'\t') {
      continue;
    }
    if (c >= u'0' && c <= u'9') {
      if (seenPoint) {
        scale /= 10.0;
        fraction += (c - u'0') * scale;
      } else {
        whole = whole * 10.0 + (c - u'0');
      }
    } else if (c == u'.' && !seenPoint) {
      seenPoint = true;
    } else {
      break;
    }
  }
  const double value = whole + fraction;
  return negative ? -value : value;
}

QString WithDecimalSign(QString text) {
  const QChar sign = DecimalSign();
  if (sign != QLatin1Char('.')) {
    text.replace(QLatin1Char('.'), sign);
  }
  return text;
}

QString GeneralTextWithPrecision(double value, int precision) {
  if (value == 0.0 || std::isnan(value)) {
    return QStringLiteral("0");
  }
  QString text = QString::number(value, 'g', precision);
  text.replace(QLatin1Char('e'), QLatin1Char('E'));
  return WithDecimalSign(text);
}

}  // namespace

QChar DecimalSign() {
  const QString point = QLocale().decimalPoint();
  return point.isEmpty() ? QLatin1Char('.') : point.front();
}

double LeadingNumber(QStringView text) { return LeadingNumberOf(text); }

double LeadingNumber(const QByteArray& text) { return LeadingNumberOf(text); }

float ParseBetrag(QStringView text) {
  const auto comma = text.indexOf(QLatin1Char(','));
  if (comma < 0) {
    return static_cast<float>(LeadingNumber(text));
  }
  // The whole part goes back through the general text before the point is
  // set: that is how the old program read amounts, and it has to stay so.
  // A whole number, the usual case, reads the same without a look at the
  // locale's decimal sign.
  const double whole = LeadingNumber(text);
  const QString wholeText = whole == std::trunc(whole) && std::abs(whole) < 1e15
                                ? QString::number(static_cast<qint64>(whole))
                                : GeneralText(whole);
  const QString joined = wholeText + QLatin1Char('.') + text.mid(comma + 1).toString();
  return static_cast<float>(LeadingNumber(joined));
}

float ParseBetrag(const QByteArray& text) { return ParseBetrag(FromAnsi(text)); }

QString GeneralText(double value) { return GeneralTextWithPrecision(value, 15); }

QString GeneralText(float value) { return GeneralTextWithPrecision(static_cast<double>(value), 7); }

QByteArray PrintedNumber(double value) {
  QByteArray text = ToAnsi(GeneralText(value));
  if (!(value < 0)) {
    text.prepend(' ');
  }
  text.append(' ');
  return text;
}

QString FixedText(double value, int decimals) {
  if (std::isnan(value) || std::isinf(value)) {
    value = 0.0;
  }
  QString text = QString::number(value, 'f', decimals);
  if (text.startsWith(QLatin1Char('-')) &&
      text.mid(1).count(QLatin1Char('0')) + (decimals > 0 ? 1 : 0) == text.size() - 1) {
    text.remove(0, 1);  // no "-0.00"
  }
  return WithDecimalSign(text);
}

bool IsOne(const QByteArray& line) { return LeadingNumber(line) == 1.0; }

}  // namespace minutor
