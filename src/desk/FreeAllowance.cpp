#include "desk/FreeAllowance.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "metering/ConnectionRecord.h"
#include "tariffs/TariffPeeks.h"

#include <cmath>

namespace minutor {

namespace {

const QString kTimeCaption = QStringLiteral("Verbleibende kostenfreie Zeit:");
const QString kTransferCaption = QStringLiteral("Verbleibender kostenfreier Transfer:");

QString PercentText(double percent) { return FixedText(percent, 1) + QLatin1Char('%'); }

FreeAllowance FreeMinutes(const DataDir& dir, const QString& tariffFile, const QDate& today, double minutes) {
  const QString allowance = FreeMinutesText(minutes);

  QString rest = allowance;
  const QString month = QStringLiteral("%1").arg(today.month(), 2, 10, QLatin1Char('0'));
  const QString folder = dir.Resolve(kRecordFolder);
  for (const QString& name : dir.ListFiles(kRecordFolder)) {
    if (RecordNameMonth(name) != month) {
      continue;
    }
    const auto fields = ReadRecordFields(folder + QLatin1Char('/') + name, 10);
    if (!fields || fields->size() < 10 || FromAnsi(fields->at(9)) != tariffFile) {
      continue;
    }
    rest = ZeitDifferenz(rest, FromAnsi(fields->at(2)));
  }

  FreeAllowance result;
  result.caption = kTimeCaption;
  if (rest.startsWith(QLatin1Char('-'))) {
    result.text = QStringLiteral("0 (überschritten um ") + NormalizeTime(rest.mid(1)) + QLatin1Char(')');
    result.colour = FreeAllowance::Colour::DarkRed;
  } else {
    result.text = NormalizeTime(rest);
    result.colour = FreeAllowance::Colour::DarkGreen;
    result.barVisible = true;
    result.percent = ZeitProzent(rest, allowance);
    result.percentText = PercentText(result.percent);
  }
  result.restfrei = rest;
  return result;
}

FreeAllowance FreeTransfer(const DataDir& dir, const QDate& today, double allowanceMB) {
  double left = allowanceMB;
  const QString month = QStringLiteral("%1").arg(today.month(), 2, 10, QLatin1Char('0'));
  const QString year = QStringLiteral("%1").arg(today.year(), 4, 10, QLatin1Char('0'));
  const QString folder = dir.Resolve(kRecordFolder);
  for (const QString& name : dir.ListFiles(kRecordFolder)) {
    if (RecordNameMonth(name) != month || RecordNameYear(name) != year) {
      continue;
    }
    const auto fields = ReadRecordFields(folder + QLatin1Char('/') + name, 8);
    if (fields && fields->size() >= 8) {
      left -= LeadingNumber(fields->at(7)) / 1000000.0;
    }
  }

  FreeAllowance result;
  result.caption = kTransferCaption;
  if (left < 0) {
    result.text = QStringLiteral("0 (überschritten um ") + FixedText(-left, 0) + QStringLiteral("MB)");
    result.colour = FreeAllowance::Colour::DarkRed;
  } else {
    result.text = FixedText(left, 0) + QStringLiteral("MB");
    result.colour = FreeAllowance::Colour::DarkGreen;
    result.barVisible = true;
    result.percent = left * 100 / allowanceMB;
    result.percentText = PercentText(result.percent);
  }
  result.restfrei = GeneralText(left);
  return result;
}

}  // namespace

QString FreeMinutesText(double minutes) {
  const double hours = std::floor(minutes / 60);
  return GeneralText(hours) + QLatin1Char(':') + GeneralText(minutes / 60 - hours) + QStringLiteral(":00");
}

FreeAllowance ComputeFreeAllowance(const DataDir& dir, const QString& tariffFile, const QDate& today) {
  const double minutes = GetTarifFreiminuten(dir, tariffFile);
  if (minutes != 0) {
    return FreeMinutes(dir, tariffFile, today, minutes);
  }
  const double transfer = GetTarifVolumengrenze(dir, tariffFile) / 1000;
  if (transfer != 0) {
    return FreeTransfer(dir, today, transfer);
  }
  FreeAllowance none;
  none.caption = kTimeCaption;
  none.text = QStringLiteral("Keine");
  none.restfrei = QStringLiteral("-");
  return none;
}

}  // namespace minutor
