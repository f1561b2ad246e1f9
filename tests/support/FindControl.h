#pragma once

#include <QString>
#include <QWidget>
#include <QtGlobal>

namespace minutor::test {

// A control of a panel by its name; a test that names one that isn't there
// stops at once.
template <typename T>
T* Find(const QWidget& panel, const QString& name) {
  T* child = panel.findChild<T*>(name);
  if (child == nullptr) {
    qFatal("no control %s", qPrintable(name));
  }
  return child;
}

}  // namespace minutor::test
