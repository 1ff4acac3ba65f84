#include "app/DocMergePropertiesAdaptor.h"

#include "app/clsDocMergeDBus.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMetaType>
#include <QMetaProperty>
#include <limits>

namespace {

bool isIntegerType(QMetaType type) {
    switch (type.id()) {
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

// The D-Bus signature of a value as it arrived.
QString signatureOf(const QVariant& value) {
    if (value.metaType() == QMetaType::fromType<QDBusArgument>()) {
        return value.value<QDBusArgument>().currentSignature();
    }
    return QString::fromLatin1(QDBusMetaType::typeToSignature(value.metaType()));
}

} // namespace

DocMergePropertiesAdaptor::DocMergePropertiesAdaptor(clsDocMergeDBus* parent,
                                                     QDBusAbstractAdaptor* properties)
    : QDBusAbstractAdaptor(parent), m_object(parent), m_properties(properties) {
    // Property changes are not announced; hosts read when they need to.
    setAutoRelaySignals(false);
}

void DocMergePropertiesAdaptor::sendError(const QString& name, const QString& message) {
    m_object->replyWithError(name, message);
}

bool DocMergePropertiesAdaptor::isOurInterface(const QString& interfaceName) {
    const QString ours = QString::fromLatin1(
        m_properties->metaObject()
            ->classInfo(m_properties->metaObject()->indexOfClassInfo("D-Bus Interface"))
            .value());
    if (interfaceName.isEmpty() || interfaceName == ours) {
        return true;
    }
    sendError(QDBusError::errorString(QDBusError::UnknownInterface),
              QStringLiteral("The object has no interface \"%1\"; its properties belong to %2.")
                  .arg(interfaceName, ours));
    return false;
}

QDBusVariant DocMergePropertiesAdaptor::Get(const QString& interfaceName,
                                            const QString& propertyName) {
    m_object->noteCaller();
    if (!isOurInterface(interfaceName)) {
        return {};
    }
    const QMetaObject* meta = m_properties->metaObject();
    const int index = meta->indexOfProperty(propertyName.toUtf8().constData());
    if (index < 0) {
        sendError(QDBusError::errorString(QDBusError::UnknownProperty),
                  QStringLiteral("There is no property \"%1\".").arg(propertyName));
        return {};
    }
    const QMetaProperty property = meta->property(index);
    if (!property.isReadable()) {
        sendError(QDBusError::errorString(QDBusError::AccessDenied),
                  QStringLiteral("The property \"%1\" can only be set.").arg(propertyName));
        return {};
    }
    // A refused read has already answered the caller with its error.
    return QDBusVariant(property.read(m_properties));
}

void DocMergePropertiesAdaptor::Set(const QString& interfaceName, const QString& propertyName,
                                    const QDBusVariant& value) {
    m_object->noteCaller();
    if (!isOurInterface(interfaceName)) {
        return;
    }
    const QMetaObject* meta = m_properties->metaObject();
    const int index = meta->indexOfProperty(propertyName.toUtf8().constData());
    if (index < 0) {
        sendError(QDBusError::errorString(QDBusError::UnknownProperty),
                  QStringLiteral("There is no property \"%1\".").arg(propertyName));
        return;
    }
    const QMetaProperty property = meta->property(index);
    if (!property.isWritable()) {
        sendError(QDBusError::errorString(QDBusError::PropertyReadOnly),
                  QStringLiteral("The property \"%1\" is read-only.").arg(propertyName));
        return;
    }
    const QMetaType type = property.metaType();
    QVariant given = value.variant();
    if (type == QMetaType::fromType<QDBusVariant>()) {
        given = QVariant::fromValue(QDBusVariant(given));
    } else if (isIntegerType(type) && isIntegerType(given.metaType())) {
        // Hosts in languages without 16-bit integers send wider ones; a
        // value that does not fit is refused, never cut.
        const qlonglong number = given.toLongLong();
        const bool fits = type.id() == QMetaType::Short
                              ? number >= std::numeric_limits<short>::min() &&
                                    number <= std::numeric_limits<short>::max()
                              : number >= std::numeric_limits<int>::min() &&
                                    number <= std::numeric_limits<int>::max();
        if (!fits) {
            sendError(QStringLiteral("org.quillmere.clsDocMerge.Error.Overflow"),
                      QStringLiteral("Overflow: %1 does not fit in \"%2\".")
                          .arg(number)
                          .arg(propertyName));
            return;
        }
        given.convert(type);
    } else {
        const QString wanted = QString::fromLatin1(QDBusMetaType::typeToSignature(type));
        const QString arrived = signatureOf(given);
        if (wanted != arrived) {
            sendError(QDBusError::errorString(QDBusError::InvalidArgs),
                      QStringLiteral("The property \"%1\" takes a value of type %2, not %3.")
                          .arg(propertyName, wanted, arrived));
            return;
        }
        if (given.metaType() == QMetaType::fromType<QDBusArgument>()) {
            QVariant converted(type);
            if (!QDBusMetaType::demarshall(given.value<QDBusArgument>(), type, converted.data())) {
                sendError(
                    QDBusError::errorString(QDBusError::InvalidArgs),
                    QStringLiteral("The value for \"%1\" could not be read.").arg(propertyName));
                return;
            }
            given = converted;
        }
    }
    // A refused put answers the caller with its own error.
    property.write(m_properties, given);
}

QVariantMap DocMergePropertiesAdaptor::GetAll(const QString& interfaceName) {
    m_object->noteCaller();
    QVariantMap values;
    if (!isOurInterface(interfaceName)) {
        return values;
    }
    const QMetaObject* meta = m_properties->metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        // The document's members exist only once a document does; the
        // others are always there.
        if (!property.isReadable() ||
            (m_object->isDocumentProperty(QString::fromLatin1(property.name())) &&
             !m_object->hasActiveDocument())) {
            continue;
        }
        values.insert(QString::fromLatin1(property.name()), property.read(m_properties));
    }
    return values;
}
