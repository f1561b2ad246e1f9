#pragma once

#include "frame/datadir/DataDir.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

#include <optional>

namespace minutor {

// The keys of a tariff file, as the Windows-1252 bytes that stand in it
// (\344 is "ä", \366 "ö", \374 "ü").
namespace tarifkey {
inline constexpr QByteArrayView kProviderdaten{"[Providerdaten]"};
inline constexpr QByteArrayView kName{"Name:"};
inline constexpr QByteArrayView kGrundgebuehr{"Grundgeb\374hr:"};
inline constexpr QByteArrayView kRegion{"Region:"};
inline constexpr QByteArrayView kGueltigkeit{"G\374ltigkeit:"};
inline constexpr QByteArrayView kAnmeldung{"Anmeldung:"};
inline constexpr QByteArrayView kEinwahlnummer{"Einwahlnummer:"};
inline constexpr QByteArrayView kUsername{"Username:"};
inline constexpr QByteArrayView kPassword{"Password:"};
inline constexpr QByteArrayView kFlatrate{"Flatrate:"};
inline constexpr QByteArrayView kVolumenabrechnung{"Volumenabrechnung:"};
inline constexpr QByteArrayView kVolumenkosten{"Volumenkosten:"};
inline constexpr QByteArrayView kVolumeneinheit{"Volumeneinheit:"};
inline constexpr QByteArrayView kVolumengrenze{"Volumengrenze:"};
inline constexpr QByteArrayView kMindestumsatz{"Mindestumsatz:"};
inline constexpr QByteArrayView kFreiminuten{"Freiminuten:"};
inline constexpr QByteArrayView kKanalbuendelung{"Kanalb\374ndelung:"};
inline constexpr QByteArrayView kTakt{"Takt:"};
inline constexpr QByteArrayView kSekundengenau{"Sekundengenau:"};
inline constexpr QByteArrayView kSekundenschritte{"Sekundenschritte:"};
inline constexpr QByteArrayView kGespraechsgrundgebuehr{"Gespr\344chsgrundgeb\374hr:"};
inline constexpr QByteArrayView kTarifzonen{"[Tarifzonen]"};

// A zone is six lines; their keys are never compared, the values are cut
// out behind these lengths.
inline constexpr qsizetype kZoneLines = 6;
inline constexpr QByteArrayView kZone{"Zone:"};
inline constexpr QByteArrayView kVon{"Von:"};
inline constexpr QByteArrayView kBis{"Bis:"};
inline constexpr QByteArrayView kPfennig{"Pfennig:"};
inline constexpr QByteArrayView kEinheit{"Einheit:"};
inline constexpr QByteArrayView kWochenende{"Wochenende:"};
}  // namespace tarifkey

// "Tarife/<file>": where a tariff's handle points in the data directory.
QString TarifPfad(const QString& file);

// The lines of a tariff file; nullopt when it can't be read.
std::optional<QList<QByteArray>> ReadTarifLines(const DataDir& dir, const QString& file);

// The text behind the first `position` bytes of a line; empty when the line
// is shorter.
QByteArray ValueBehind(const QByteArray& line, qsizetype position);

// The ASCII letters of `line` compared in lower case with `lower`, which is
// given in lower case already.
bool EqualsLower(QByteArrayView line, QByteArrayView lower);
bool StartsWithLower(QByteArrayView line, QByteArrayView lower);

// Blanks removed at both ends (blanks only, not tabs).
QByteArray TrimBlanks(const QByteArray& text);

// "Ja" in any case and with blanks around it.
bool IsJa(const QByteArray& value);

// Conversions of a parsed number into the narrow types of the files. Values
// out of range are clamped and NaN gives 0, so that a damaged file can't make
// a conversion undefined.
float ToSingle(double value);
qint16 RoundToInt16(double value);
qint16 CutToInt16(double value);
quint8 RoundToByte(double value);

}  // namespace minutor
