#include "metering/MeterLabels.h"

#include <QStringList>

namespace minutor {

QString MeterLabels::Text(QStringView controlName) const {
  const std::pair<const char16_t*, const QString*> labels[] = {
      {u"lblConnectionName", &lblConnectionName},
      {u"lblStartzeit", &lblStartzeit},
      {u"lblStartzeit.Tag", &lblStartzeitTag},
      {u"lblDauer", &lblDauer},
      {u"lblConnectionSpeed", &lblConnectionSpeed},
      {u"lblKosten", &lblKosten},
      {u"lblEinheiten", &lblEinheiten},
      {u"lblBytesIn", &lblBytesIn},
      {u"lblBytesInPerSecond", &lblBytesInPerSecond},
      {u"lblBytesOut", &lblBytesOut},
      {u"lblBytesOutPerSecond", &lblBytesOutPerSecond},
      {u"lblBytesInOut", &lblBytesInOut},
      {u"lblBytesInOutPerSecond", &lblBytesInOutPerSecond},
      {u"lblTarifname", &lblTarifname},
      {u"lblTarifname.Tag", &lblTarifnameTag},
      {u"lblEuroProMinute", &lblEuroProMinute},
      {u"lblEinheit", &lblEinheit},
      {u"lblRestFreiCaption", &lblRestFreiCaption},
      {u"lblRestFrei", &lblRestFrei},
      {u"lblBenutzer", &lblBenutzer},
  };
  for (const auto& [name, text] : labels) {
    if (controlName == QStringView(name)) {
      return *text;
    }
  }
  return {};
}

RecordLabels MeterLabels::Record() const {
  RecordLabels record;
  record.startTag = lblStartzeitTag;
  record.startTime = lblStartzeit;
  record.dauer = lblDauer;
  record.kosten = lblKosten;
  record.einheiten = lblEinheiten;
  record.bytesIn = lblBytesIn;
  record.bytesOut = lblBytesOut;
  record.bytesInOut = lblBytesInOut;
  record.connectionName = lblConnectionName;
  record.tarif = lblTarifnameTag;
  record.benutzer = lblBenutzer;
  return record;
}

QString MeterLabels::Caption() const {
  return QStringList{lblKosten, lblDauer, lblBytesInOutPerSecond, lblBytesInOut}.join(QStringLiteral(" | "));
}

}  // namespace minutor
