#include "frame/datadir/Names.h"

#include <algorithm>

#include <pwd.h>
#include <unistd.h>

namespace minutor {

bool IsValidName(QStringView text) {
  if (text.size() > 255) {
    return false;
  }
  static const QString forbidden = QStringLiteral("\\/:*?\"<>|");
  for (const QChar c : text) {
    if (forbidden.contains(c)) {
      return false;
    }
  }
  return true;
}

bool IsSafeFileName(QStringView text) {
  if (text.isEmpty() || text == QLatin1String(".") || text == QLatin1String("..") || !IsValidName(text)) {
    return false;
  }
  return std::none_of(text.begin(), text.end(), [](QChar c) { return c.category() == QChar::Other_Control; });
}

QString GetLogonName() {
  QString name;
  char buffer[1024];
  struct passwd entry {};
  struct passwd* found = nullptr;
  if (::getpwuid_r(::geteuid(), &entry, buffer, sizeof buffer, &found) == 0 && found != nullptr) {
    name = QString::fromLocal8Bit(found->pw_name);
  }
  // The old call had a buffer of 25 characters with its terminating null.
  return CutAtNull(name.left(24));
}

QString CutAtNull(const QString& text) {
  const auto null = text.indexOf(QChar(0));
  return null < 0 ? text : text.left(null);
}

}  // namespace minutor
