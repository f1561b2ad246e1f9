#pragma once

#include "history/ConnectionList.h"

#include <QString>
#include <QStringList>

#include <cstdio>
#include <optional>

class QCommandLineParser;

namespace minutor {
class DataDir;
}

namespace minutor::cli {

// Parses the options of one command, with --help; on a mistake prints it
// with the help and returns false.
bool ParseCommand(QCommandLineParser& parser, const QString& command, const QStringList& args,
                  std::FILE* err);

// The list's filters as options: --period, --user, --provider, --tariff,
// --net and --today.
void AddListOptions(QCommandLineParser& parser);

// The list query those options ask for; nullopt once standard error has
// been told what is wrong.
std::optional<ListQuery> ListQueryOf(const DataDir& dir, const QCommandLineParser& parser, std::FILE* err);

// The rows of the query in the list's first order (date, then start,
// newest first); a count of unreadable records goes to standard error.
ListResult LoadListRows(const DataDir& dir, const ListQuery& query, std::FILE* err);

// "list [filters]": the list's rows and totals as the panel shows them.
int ListCommand(const DataDir& dir, const QStringList& args, std::FILE* out, std::FILE* err);

// "record estimate ..." and "record add ...": the manual entry's cost
// estimate, and a record entered as the "Neue Verbindung" dialog enters it.
int RecordEntryCommand(const DataDir& dir, const QString& command, const QStringList& args, std::FILE* out,
                       std::FILE* err);

}  // namespace minutor::cli
