#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusVariant>
#include <QVariantMap>

class clsDocMergeDBus;

// Answers org.freedesktop.DBus.Properties for the automation object. The
// bus library's own property handling cannot reply with an error of ours,
// and a host must hear why a put was refused (an ID above 16 bits, no
// active document). Calls for the object's interface go through the
// generated adaptor's properties; the object's accessors send the error.
class DocMergePropertiesAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.DBus.Properties")
    Q_CLASSINFO("D-Bus Introspection",
                "  <interface name=\"org.freedesktop.DBus.Properties\">\n"
                "    <method name=\"Get\">\n"
                "      <arg name=\"interface_name\" type=\"s\" direction=\"in\"/>\n"
                "      <arg name=\"property_name\" type=\"s\" direction=\"in\"/>\n"
                "      <arg name=\"value\" type=\"v\" direction=\"out\"/>\n"
                "    </method>\n"
                "    <method name=\"Set\">\n"
                "      <arg name=\"interface_name\" type=\"s\" direction=\"in\"/>\n"
                "      <arg name=\"property_name\" type=\"s\" direction=\"in\"/>\n"
                "      <arg name=\"value\" type=\"v\" direction=\"in\"/>\n"
                "    </method>\n"
                "    <method name=\"GetAll\">\n"
                "      <arg name=\"interface_name\" type=\"s\" direction=\"in\"/>\n"
                "      <arg name=\"values\" type=\"a{sv}\" direction=\"out\"/>\n"
                "      <annotation name=\"org.qtproject.QtDBus.QtTypeName.Out0\" "
                "value=\"QVariantMap\"/>\n"
                "    </method>\n"
                "  </interface>\n")

public:
    // `parent` carries the QDBusContext the errors are sent through;
    // `properties` is the generated adaptor whose properties are served.
    DocMergePropertiesAdaptor(clsDocMergeDBus* parent, QDBusAbstractAdaptor* properties);

public Q_SLOTS:
    QDBusVariant Get(const QString& interfaceName, const QString& propertyName);
    void Set(const QString& interfaceName, const QString& propertyName, const QDBusVariant& value);
    QVariantMap GetAll(const QString& interfaceName);

private:
    // False (and the caller told) when the interface is not the object's.
    bool isOurInterface(const QString& interfaceName);
    void sendError(const QString& name, const QString& message);

    clsDocMergeDBus* m_object;
    QDBusAbstractAdaptor* m_properties;
};
