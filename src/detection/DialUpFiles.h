#pragma once

#include "detection/RemoteAccess.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace minutor {

class DataDir;
class Prompter;

// The settings of the dial-up entries in "DialUp": which tariff an entry is
// metered with ("<entry>.trf"), the dial-in data the program keeps for it
// ("<entry>.dat") and whether that data or the system's is used
// ("DialUp.cfg"). Entries whose names can't be file names have no files: the
// readers find nothing and the writers write nothing.

// The words that stand for "no tariff" in the combos and in the .trf.
QString KeineZuordnung();

// The two lines of "<entry>.trf": provider and tariff label, plain. Nothing
// when there is no file; a missing second line reads as empty. A tariff that
// no longer exists is read all the same.
struct EntryTarifLines {
  QString anbieter;
  QString tarif;
};
std::optional<EntryTarifLines> LoadEntryTarif(const DataDir& dir, const QString& entry);
bool SaveEntryTarif(const DataDir& dir, const QString& entry, const EntryTarifLines& lines);

// "<entry>.dat": the dial-in number plain, then "U" + user name and "P" +
// password, each enciphered. Reading deciphers and drops the first character;
// an empty line stays empty. Nothing when no file has exactly the name
// "<entry>.dat".
struct EntryDialData {
  QString Einwahlnummer;
  QString Benutzername;
  QString Passwort;
};
std::optional<EntryDialData> LoadEntry(const DataDir& dir, const QString& entry);
bool SaveEntry(const DataDir& dir, const QString& entry, const EntryDialData& data);

// "DialUp.cfg": true when the dial-in data come from the system's entries,
// false when the program keeps them. Without a file, or with a line that is no
// boolean, the system's data are used.
bool LoadDialDataFromSystem(const DataDir& dir);

// What a dial of the entry goes out with: the system's data, or the
// program's own from "<entry>.dat" as DialUp.cfg says; a missing password is
// asked for. Nothing when the dial must not start (no user name in the
// program's data, or the password question cancelled or left empty).
std::optional<RasDialParams> PrepareDialParams(const DataDir& dir, Prompter& prompter, RemoteAccess& remote,
                                               const QString& entry);
// Written as "Wahr" or "Falsch".
bool SaveDialDataFromSystem(const DataDir& dir, bool fromSystem);

// The command line that opens the desktop's connection editor: for a new
// entry of `type` (DSL when empty), or for the profile `uuid`.
QStringList NewEntryEditorArguments(const QString& type);
QStringList EditEntryEditorArguments(const QString& uuid);
QString ConnectionEditorProgram();

}  // namespace minutor
