#pragma once

#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVariantMap>

// A profile's settings as NetworkManager hands them over: setting name to
// its keys (a{sa{sv}}).
using NMSettings = QMap<QString, QVariantMap>;
Q_DECLARE_METATYPE(NMSettings)
