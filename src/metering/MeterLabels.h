#pragma once

#include "metering/ConnectionRecord.h"

#include <QString>
#include <QStringList>

namespace minutor {

// The texts of the connection panel's labels. They are the meter's store as
// much as its display: the record is made from them, and the free allowance
// is asked of lblRestFrei. Each starts with the text the panel shows before
// the meter has set it.
struct MeterLabels {
  QString lblConnectionName = QStringLiteral("unbekannt");
  QString lblStartzeit;
  QString lblStartzeitTag;  // the start date as "DDMMYYYY"
  QString lblDauer;
  QString lblConnectionSpeed = QStringLiteral("unbekannt");
  QString lblKosten;
  QString lblEinheiten;
  QString lblBytesIn = QStringLiteral("0 Bytes");
  QString lblBytesInPerSecond;
  QString lblBytesOut = QStringLiteral("0 Bytes");
  QString lblBytesOutPerSecond;
  QString lblBytesInOut = QStringLiteral("0 Bytes");
  QString lblBytesInOutPerSecond;
  QString lblTarifname;
  QString lblTarifnameTag;  // the tariff's file name
  QString lblEuroProMinute;
  QString lblEinheit;
  QString lblRestFreiCaption = QStringLiteral("Restfreizeit:");
  QString lblRestFrei;
  QString lblBenutzer;

  // The text of a label by its control name ("lblKosten"); the tags are
  // "lblStartzeit.Tag" and "lblTarifname.Tag". Empty for a name it hasn't.
  QString Text(QStringView controlName) const;

  // The control names of the labels, without the tags.
  static QStringList ControlNames();

  // What the record of the connection is made from.
  RecordLabels Record() const;

  // The main window's caption during a recording.
  QString Caption() const;
};

}  // namespace minutor
