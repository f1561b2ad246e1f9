#pragma once

#include "frame/datadir/NumberText.h"

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QList>
#include <QString>

namespace minutor::test {

// Tariff files written by hand in the tests, byte for byte.

inline QByteArray Crlf(const QList<QByteArray>& lines) {
  QByteArray bytes;
  for (const QByteArray& line : lines) {
    bytes += line + "\r\n";
  }
  return bytes;
}

// The head of a time tariff up to and including "[Tarifzonen]".
inline QList<QByteArray> TimeHead(const QByteArray& takt = "60/60", const QByteArray& fee = "0") {
  return {"[Providerdaten]",
          "Name:Test - Test",
          "Volumenabrechnung:Nein",
          "Volumenkosten:0",
          "Volumeneinheit:1",
          "Takt:" + takt,
          "Gespr\344chsgrundgeb\374hr:" + fee,
          "",
          "[Tarifzonen]"};
}

inline QList<QByteArray> Zone(int von, int bis, const QByteArray& pfennig, bool wochenende) {
  return {"Zone:Test",
          "Von:" + QByteArray::number(von),
          "Bis:" + QByteArray::number(bis),
          "Pfennig:" + pfennig,
          "Einheit:60",
          wochenende ? QByteArray("Wochenende:Ja") : QByteArray("Wochenende:Nein")};
}

// 2024-01-01 was a Monday; day 5 is a Friday, 6 a Saturday, 7 a Sunday.
inline QDateTime At(int day, int hour, int minute = 0, int second = 0) {
  return QDateTime(QDate(2024, 1, day), QTime(hour, minute, second));
}

// A number text in the locale's form: Local("3.9") is "3,9" in German.
inline QString Local(QString text) { return text.replace(QLatin1Char('.'), DecimalSign()); }

}  // namespace minutor::test
