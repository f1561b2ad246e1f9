#pragma once

#include <QByteArray>
#include <QDate>
#include <QList>
#include <QString>
#include <QTime>

#include <array>

namespace minutor {

// A name met in the records, as the record's bytes hold it, and how many
// connections carried it, in the order the names were first met.
struct NameCount {
  QByteArray name;
  int count = 0;
};

// What the analysis sums over the records of one period and user.
struct ReportTotals {
  qint64 hours = 0;
  qint64 minutes = 0;
  qint64 seconds = 0;
  qint64 dayMinutes = 0;
  qint64 nightMinutes = 0;
  double costSum = 0;
  double kbSum = 0;  // decimal kilobytes
  qint64 connections = 0;
  QList<NameCount> entries;
  QList<NameCount> tariffs;
  QList<NameCount> users;
};

// The eleven sentences and the three totals as the panel shows them.
struct ReportTexts {
  std::array<QString, 11> sentences;
  QString kosten;
  QString dauer;
  QString transfer;
};

// The minutes of a connection from `start` that fall between 8 and 20
// o'clock, each minute judged by the moment it ends.
qint64 CountDayMinutes(const QTime& start, qint64 minutes);

// The days the period's averages are taken over. `earliest` is the earliest
// date in a record's name, or today when there is none.
int GetPeriodDays(const QString& period, const QDate& today, const QDate& earliest);

// Adds one record, given as its deciphered lines, to the sums. A record that
// lacks one of its first eleven lines is passed over; false then.
bool AddToReport(ReportTotals& totals, const QList<QByteArray>& fields);

// The texts of a run. `userItem` is what the user selection shows.
ReportTexts ReportSentences(const ReportTotals& totals, int days, const QString& userItem,
                            const QString& currency);

}  // namespace minutor
