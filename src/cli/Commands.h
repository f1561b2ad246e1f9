#pragma once

#include <QStringList>

#include <cstdio>

namespace minutor::cli {

// Exit codes of the companion.
constexpr int kOk = 0;
constexpr int kError = 1;
constexpr int kUsage = 2;

// One line on a stream, in UTF-8.
void Print(std::FILE* stream, const QString& text);
// "minutorctl: MESSAGE" on the error stream; gives back the exit code.
int Fail(std::FILE* err, const QString& message, int code = kError);

// Runs one command line (without the program name). Output and errors go to
// the given streams; the return value is the exit code.
int Run(const QStringList& args, const QString& defaultDataDir, std::FILE* in, std::FILE* out,
        std::FILE* err);

}  // namespace minutor::cli
