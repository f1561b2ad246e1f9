#include "users/UserAccounts.h"

#include "desk/OverviewFiles.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/Names.h"

namespace minutor {

namespace {

const QString kFolder = QStringLiteral("Benutzer");

QString FileOf(const QString& name, const char* extension) {
  return kFolder + QLatin1Char('/') + name + QLatin1String(extension);
}

bool NameTaken(const DataDir& dir, const QString& name) {
  const QString wanted = name.toLower();
  for (const QString& file : dir.ListFiles(kFolder, QStringLiteral("*.*"))) {
    if (file.size() >= 4 && file.chopped(4).toLower() == wanted) {
      return true;
    }
  }
  return false;
}

}  // namespace

BudgetFile DefaultBudget(BudgetDates dates) {
  const bool early = dates == BudgetDates::Year2001;
  return BudgetFile{0, 0, 0, early ? QStringLiteral("1.1.2001") : QStringLiteral("1.1.2002"),
                    early ? QStringLiteral("31.1.2001") : QStringLiteral("31.1.2002")};
}

bool CreateUserFiles(const DataDir& dir, const QString& name, BudgetDates dates) {
  const bool user = WriteUserFile(dir, name, UserFile{});
  return WriteBudgetFile(dir, FileOf(name, ".bdg"), DefaultBudget(dates)) && user;
}

QString NewUser(Services& services) {
  for (;;) {
    const auto answer = services.prompter.AskText(
        QStringLiteral("Bitte einen Namen für den Benutzer wählen. Wenn Sie den Benutzer mit dem Windows "
                       "Logon verknüpfen wollen muß der Name identisch zu dem Windows Logon Namen sein."),
        QStringLiteral("Benutzer hinzufügen"));
    const QString name = answer.value_or(QString()).trimmed();
    if (name.isEmpty()) {
      return {};
    }
    if (!IsValidName(name)) {
      services.prompter.Message(
          QStringLiteral(
              "Der Name enthält ungültige Zeichen (/ \\ : ? < > | * ? \") oder ist zu lang (>255). "
              "Bitte wählen Sie einen anderen Namen."),
          Prompter::Icon::Warning);
      return {};
    }
    if (NameTaken(services.dir, name)) {
      services.prompter.Message(QStringLiteral("Ein Benutzer mit diesem Namen existiert bereits. Bitte "
                                               "wählen Sie einen anderen Namen."),
                                Prompter::Icon::Warning);
      continue;
    }
    // A name the file system refuses leaves no user behind.
    if (!CreateUserFiles(services.dir, name, BudgetDates::Year2001)) {
      services.dir.Remove(FileOf(name, ".usr"));
      services.dir.Remove(FileOf(name, ".bdg"));
      return {};
    }
    return name;
  }
}

bool DeleteUser(Services& services, const QString& name) {
  if (name.isEmpty()) {
    return false;
  }
  if (name.toLower() == QLatin1String("supervisor")) {
    services.prompter.Message(QStringLiteral("Der Supervisor kann nicht gelöscht werden."),
                              Prompter::Icon::Warning);
    return false;
  }
  if (services.prompter.Ask(QStringLiteral("Soll der gewählte Benutzer wirklich gelöscht werden?"), {},
                            false) != Prompter::Answer::Yes) {
    return false;
  }
  services.dir.Remove(FileOf(name, ".usr"));
  services.dir.Remove(FileOf(name, ".bdg"));
  return true;
}

QString LastActiveUser(const DataDir& dir) {
  const auto config = ReadOverviewConfig(dir);
  return config ? config->user : kSupervisor;
}

std::optional<QString> CheckUser(const DataDir& dir) {
  if (IsLogonLinked(dir)) {
    return std::nullopt;
  }
  const QString name = LastActiveUser(dir);
  if (name.isEmpty() || !IsValidName(name)) {
    return std::nullopt;
  }
  const auto file = ReadUserFile(dir, name);
  if (!file || file->password.isEmpty()) {
    return std::nullopt;
  }
  return name;
}

bool PasswordMatches(const DataDir& dir, const QString& name, const QString& typed) {
  const auto file = IsValidName(name) ? ReadUserFile(dir, name) : std::nullopt;
  const QByteArray stored = file ? file->password : QByteArray();
  return stored == ToAnsi(typed);
}

bool AskUserPassword(Services& services, const QString& name) {
  const auto file = IsValidName(name) ? ReadUserFile(services.dir, name) : std::nullopt;
  if (!file || file->password.isEmpty()) {
    return true;
  }
  const auto typed =
      services.prompter.AskPassword(QStringLiteral("Bitte geben Sie das Passwort für diesen Benutzer ein."),
                                    QStringLiteral("Passwortabfrage"));
  if (!typed || typed->isEmpty()) {
    return false;
  }
  if (ToAnsi(*typed) != file->password) {
    services.prompter.Message(QStringLiteral("Falsches Passwort!"), Prompter::Icon::Critical);
    return false;
  }
  return true;
}

UserFile LoadOrRebuildUser(Services& services, const QString& name) {
  if (const auto file = ReadUserFile(services.dir, name)) {
    return *file;
  }
  CreateUserFiles(services.dir, name, BudgetDates::Year2002);
  services.prompter.Message(
      QStringLiteral("Die Speicherdatei dieses Benutzers wurde gelöscht oder beschädigt. Sie wurde neu "
                     "angelegt, die Angaben für Zugriffssteuerung und Budget müssen allerdings neu "
                     "eingestellt werden."),
      Prompter::Icon::Warning);
  return UserFile{};
}

}  // namespace minutor
