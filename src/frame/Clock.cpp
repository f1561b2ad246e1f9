#include "frame/Clock.h"

namespace minutor {

QDateTime SystemClock::Now() const { return QDateTime::currentDateTime(); }

}  // namespace minutor
