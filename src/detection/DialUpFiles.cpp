#include "detection/DialUpFiles.h"

#include "frame/Prompter.h"

#include "detection/RemoteAccess.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "users/FieldCipher.h"

#include <QFileInfo>

namespace minutor {

namespace {

QString EntryFile(const QString& entry, const char* extension) {
  return QStringLiteral("DialUp/") + entry + QLatin1String(extension);
}

// The enciphered lines carry a letter in front, so that an empty name or
// password still makes a line of cipher text.
QByteArray Encipher(char prefix, const QString& value) { return EncryptField(prefix + ToAnsi(value)); }

QString Decipher(const QByteArray& line) {
  if (line.isEmpty()) {
    return {};
  }
  return FromAnsi(DecryptField(line).mid(1));
}

// Booleans the way the settings files were written on any system: the German
// words, the English ones, or a number that is true when it isn't 0.
std::optional<bool> ParseBoolean(const QByteArray& line) {
  const QString text = FromAnsi(line).trimmed().toLower();
  if (text == QLatin1String("wahr") || text == QLatin1String("true")) {
    return true;
  }
  if (text == QLatin1String("falsch") || text == QLatin1String("false")) {
    return false;
  }
  bool isNumber = false;
  const double number = QString(text).replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&isNumber);
  if (isNumber) {
    return number != 0;
  }
  return std::nullopt;
}

}  // namespace

QString KeineZuordnung() { return QStringLiteral("[Keine Zuordnung]"); }

std::optional<EntryTarifLines> LoadEntryTarif(const DataDir& dir, const QString& entry) {
  if (!IsUsableEntryName(entry)) {
    return std::nullopt;
  }
  const auto lines = dir.ReadLines(EntryFile(entry, ".trf"));
  if (!lines) {
    return std::nullopt;
  }
  return EntryTarifLines{FromAnsi(lines->value(0)), FromAnsi(lines->value(1))};
}

bool SaveEntryTarif(const DataDir& dir, const QString& entry, const EntryTarifLines& lines) {
  if (!IsUsableEntryName(entry)) {
    return false;
  }
  return dir.WriteLines(EntryFile(entry, ".trf"), {ToAnsi(lines.anbieter), ToAnsi(lines.tarif)});
}

std::optional<EntryDialData> LoadEntry(const DataDir& dir, const QString& entry) {
  if (!IsUsableEntryName(entry)) {
    return std::nullopt;
  }
  // The file counts only under its exact name: "foo.DAT" isn't Foo's.
  const QString file = EntryFile(entry, ".dat");
  if (!dir.FileExists(file) || QFileInfo(dir.Resolve(file)).fileName() != entry + QStringLiteral(".dat")) {
    return std::nullopt;
  }
  const auto lines = dir.ReadLines(file);
  if (!lines) {
    return std::nullopt;
  }
  return EntryDialData{FromAnsi(lines->value(0)), Decipher(lines->value(1)), Decipher(lines->value(2))};
}

bool SaveEntry(const DataDir& dir, const QString& entry, const EntryDialData& data) {
  if (!IsUsableEntryName(entry)) {
    return false;
  }
  return dir.WriteLines(
      EntryFile(entry, ".dat"),
      {ToAnsi(data.Einwahlnummer), Encipher('U', data.Benutzername), Encipher('P', data.Passwort)});
}

bool LoadDialDataFromSystem(const DataDir& dir) {
  const auto lines = dir.ReadLines(QStringLiteral("DialUp/DialUp.cfg"));
  if (!lines || lines->isEmpty()) {
    return true;
  }
  return ParseBoolean(lines->first()).value_or(true);
}

bool SaveDialDataFromSystem(const DataDir& dir, bool fromSystem) {
  return dir.WriteLines(QStringLiteral("DialUp/DialUp.cfg"),
                        {fromSystem ? QByteArray("Wahr") : QByteArray("Falsch")});
}

QString ConnectionEditorProgram() { return QStringLiteral("nm-connection-editor"); }

QStringList NewEntryEditorArguments(const QString& type) {
  return {QStringLiteral("--create"),
          QStringLiteral("--type=") + (type.isEmpty() ? QStringLiteral("pppoe") : type)};
}

QStringList EditEntryEditorArguments(const QString& uuid) { return {QStringLiteral("--edit=") + uuid}; }

std::optional<RasDialParams> PrepareDialParams(const DataDir& dir, Prompter& prompter, RemoteAccess& remote,
                                               const QString& entry) {
  RasDialParams params = remote.GetDialParams(entry).value_or(RasDialParams{});
  if (params.Eintrag.isEmpty()) {
    params.Eintrag = entry;
  }
  auto askPassword = [&] {
    const std::optional<QString> answer =
        prompter.AskPassword(QStringLiteral("Bitte geben Sie das Passwort für die DFÜ Verbindung '") + entry +
                                 QStringLiteral("' ein."),
                             QStringLiteral("Passwortabfrage"));
    if (!answer || answer->isEmpty()) {
      return false;
    }
    params.Passwort = *answer;
    return true;
  };
  if (LoadDialDataFromSystem(dir)) {
    if (!params.passwordStored && params.Passwort.isEmpty() && !askPassword()) {
      return std::nullopt;
    }
    return params;
  }
  if (const std::optional<EntryDialData> own = LoadEntry(dir, entry)) {
    params.Telefon = own->Einwahlnummer.trimmed();
    params.Benutzer = own->Benutzername;
    params.Passwort = own->Passwort;
    if (params.Benutzer.trimmed().isEmpty()) {
      prompter.Message(
          QStringLiteral("Sie haben in den DFÜ Einstellungen von Minutor keinen Benutzernamen für "
                         "diese Verbindung angegeben. Bitte holen Sie dies nach, bevor Sie eine "
                         "Verbindung mit Minutor aufbauen."),
          Prompter::Icon::Warning);
      return std::nullopt;
    }
    if (params.Passwort.isEmpty() && !askPassword()) {
      return std::nullopt;
    }
  }
  return params;
}

}  // namespace minutor
