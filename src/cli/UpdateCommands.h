#pragma once

#include <QStringList>

#include <cstdio>

namespace minutor {
class DataDir;
}

namespace minutor::cli {

// "update index|check|fetch ..." and "timesync parse ...": serving and
// fetching tariff updates, and reading a saved page of the time service.
int RunOnlineCommand(const DataDir& dir, const QString& group, const QStringList& args, std::FILE* out,
                     std::FILE* err);

// Whether RunOnlineCommand takes this group.
bool IsOnlineGroup(const QString& group);

}  // namespace minutor::cli
