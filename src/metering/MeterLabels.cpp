#include "metering/MeterLabels.h"

#include <array>
#include <utility>

namespace minutor {

namespace {

// The labels by their control names, the tags after them.
std::array<std::pair<const char16_t*, const QString*>, 20> Table(const MeterLabels& l) {
  return {{
      {u"lblConnectionName", &l.lblConnectionName},
      {u"lblStartzeit", &l.lblStartzeit},
      {u"lblDauer", &l.lblDauer},
      {u"lblConnectionSpeed", &l.lblConnectionSpeed},
      {u"lblKosten", &l.lblKosten},
      {u"lblEinheiten", &l.lblEinheiten},
      {u"lblBytesIn", &l.lblBytesIn},
      {u"lblBytesInPerSecond", &l.lblBytesInPerSecond},
      {u"lblBytesOut", &l.lblBytesOut},
      {u"lblBytesOutPerSecond", &l.lblBytesOutPerSecond},
      {u"lblBytesInOut", &l.lblBytesInOut},
      {u"lblBytesInOutPerSecond", &l.lblBytesInOutPerSecond},
      {u"lblTarifname", &l.lblTarifname},
      {u"lblEuroProMinute", &l.lblEuroProMinute},
      {u"lblEinheit", &l.lblEinheit},
      {u"lblRestFreiCaption", &l.lblRestFreiCaption},
      {u"lblRestFrei", &l.lblRestFrei},
      {u"lblBenutzer", &l.lblBenutzer},
      {u"lblStartzeit.Tag", &l.lblStartzeitTag},
      {u"lblTarifname.Tag", &l.lblTarifnameTag},
  }};
}

constexpr std::size_t kTags = 2;

}  // namespace

QString MeterLabels::Text(QStringView controlName) const {
  for (const auto& [name, text] : Table(*this)) {
    if (controlName == QStringView(name)) {
      return *text;
    }
  }
  return {};
}

QStringList MeterLabels::ControlNames() {
  QStringList names;
  const auto table = Table(MeterLabels());
  for (std::size_t i = 0; i + kTags < table.size(); ++i) {
    names.append(QString::fromUtf16(table[i].first));
  }
  return names;
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
