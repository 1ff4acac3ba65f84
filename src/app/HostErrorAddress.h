#pragma once

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QMetaType>
#include <QString>

// Where a host's error object lives on the bus: (bus name, object path).
struct HostErrorAddress {
    QString service;
    QDBusObjectPath path;
};
Q_DECLARE_METATYPE(HostErrorAddress)

QDBusArgument& operator<<(QDBusArgument& argument, const HostErrorAddress& address);
const QDBusArgument& operator>>(const QDBusArgument& argument, HostErrorAddress& address);
