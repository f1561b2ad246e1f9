#pragma once

#include <QString>
#include <QStringList>

namespace minutor {

// The program's process-wide values. The application owns one and hands it to
// whoever needs it; a test builds its own.
struct AppState {
  // Options
  QString Waehrung = QStringLiteral("€");
  bool SamePrograms = false;
  bool HideToTray = false;
  bool StartMinimized = false;
  bool OnlyMarkedEntries = false;

  // System
  QString WinVersion;
  // Traffic of the running connection as last read: bytes since the
  // counter's origin, and bytes per second.
  double BytesOut = 0;
  double BytesIn = 0;
  double BytesTotal = 0;
  float BytesInPerSecond = 0;
  float BytesOutPerSecond = 0;
  float BytesTotalPerSecond = 0;

  // Tariff
  QString AktuellerTarif;
  QString Restfrei = QStringLiteral("-");
  // The tariff Restfrei was computed for: a recording on another tariff
  // computes its own.
  QString RestfreiTarif;
  bool FeiertagAktiv = false;
  bool KanalbuendelungAktiv = false;

  // User: the one whose budgets and limits count, empty until the start has
  // chosen one, and the rights of that user.
  QString ActiveUser;
  bool NoListEdit = false;
  bool NoDialOnBudget = false;
  bool NoMonitoringSettings = false;
  bool QuitLocked = false;
  // A limit that is off keeps the minutes it had; until one was on, those of
  // a new user, so that the other limit's check doesn't find 0 minutes left.
  bool DayLimitOn = false;
  qint32 DayLimitMinutes = 60;
  bool MonthLimitOn = false;
  qint32 MonthLimitMinutes = 600;
  // Seconds of today's and this month's allowance left before the running
  // connection; negative once overdrawn.
  qint32 DaySecondsLeft = 0;
  qint32 MonthSecondsLeft = 0;

  // Detection
  bool MonitoringOn = true;
  bool RecordingActive = false;
  // What started the recording: 0 by hand, 1 Internet state, 2 TAPI, 3 IP.
  int DetectionSource = 0;
  // The connection was dialled by the program itself.
  bool DialedByProgram = false;
  bool MethodIP = false;
  bool MethodIE = true;
  bool MethodLAN = false;
  bool MethodTAPI = false;
  // The watched line is in a call, as its last call state said.
  bool TapiOnline = false;
  int CheckInterval = 2;
  QStringList IgnoredIPTable = {QString()};
};

}  // namespace minutor
