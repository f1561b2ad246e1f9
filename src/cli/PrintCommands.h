#pragma once

#include <QStringList>

#include <cstdio>

namespace minutor {
class DataDir;
}

namespace minutor::cli {

// "print --output FILE.pdf [--form liste|rechnung] [--transfer] [--charts
// YYYY-MM --pair ...] [--mono] [filters]": the pages of "Drucken" as a PDF.
int PrintCommand(const DataDir& dir, const QStringList& args, std::FILE* out, std::FILE* err);

}  // namespace minutor::cli
