#include "files/IniFileBase.h"

#include "context/AppContext.h"
#include "platform/PrivateProfile.h"
#include "platform/errorClass.h"

namespace {
const QString kNotSet = QStringLiteral("<not_set>");
const QChar kNul = QChar(0);

QString joinList(const QStringList& names) {
    QString joined = names.join(kNul);
    return joined.left(IniFileBase::ListLimit);
}

short countList(const QString& list) {
    if (list.isEmpty()) {
        return 0;
    }
    return static_cast<short>(list.count(kNul) + 1);
}
} // namespace

IniFileBase::IniFileBase(QString defaultSection, QString moduleName)
    : m_currentSection(std::move(defaultSection)), m_moduleName(std::move(moduleName)) {}

QString IniFileBase::sectionOr(const QString& section) const {
    return section.isEmpty() ? m_currentSection : section;
}

QString IniFileBase::fileOr(const QString& file) const {
    return file.isEmpty() ? m_file : file;
}

QString IniFileBase::tag(const char* procedure) const {
    return QStringLiteral("QuillmerePad.exe-") + m_moduleName + QLatin1Char('-') +
           QLatin1String(procedure);
}

errorClass* IniFileBase::errors() const {
    return app().errors;
}

void IniFileBase::setKey(const QString& section, const QString& key, const QString& file) {
    ProcedureScope scope(errors(), tag("setKey"));
    PrivateProfile::writeValue(fileOr(file), sectionOr(section), key, QString());
}

void IniFileBase::setKeyValue(const QString& section, const QString& key, const QString& value,
                              const QString& file) {
    ProcedureScope scope(errors(), tag("setKeyValue"));
    PrivateProfile::writeValue(fileOr(file), sectionOr(section), key, value);
}

QString IniFileBase::getVersion(const QString& file) {
    ProcedureScope scope(errors(), tag("getVersion"));
    return getKeyString(m_currentSection, QStringLiteral("Version"), QStringLiteral("1.0"), file);
}

QString IniFileBase::getSections(const QString& file) {
    ProcedureScope scope(errors(), tag("getSections"));
    return joinList(PrivateProfile::sectionNames(fileOr(file)));
}

short IniFileBase::getNumberOfSections(const QString& file) {
    ProcedureScope scope(errors(), tag("getNumberOfSections"));
    return countList(getSections(file));
}

QString IniFileBase::getKeysInSection(const QString& section, const QString& file) {
    ProcedureScope scope(errors(), tag("getKeysInSection"));
    return joinList(PrivateProfile::keyNames(fileOr(file), sectionOr(section)));
}

short IniFileBase::getNumberOfKeysInSection(const QString& section, const QString& file) {
    ProcedureScope scope(errors(), tag("getNumberOfKeysInSection"));
    return countList(getKeysInSection(section, file));
}

QString IniFileBase::getKeyString(const QString& section, const QString& key,
                                  const QString& defaultValue, const QString& file) {
    ProcedureScope scope(errors(), tag("getKeyString"));
    const QString path = fileOr(file);
    const QString sec = sectionOr(section);
    const QString fallback = defaultValue.isEmpty() ? kNotSet : defaultValue;
    const auto value = PrivateProfile::readValue(path, sec, key);
    if (value && !value->isEmpty()) {
        return value->left(ValueLimit);
    }
    // A missing or emptied key is written back with its default, so the
    // file comes to hold every key the program has asked for.
    PrivateProfile::writeValue(path, sec, key, fallback);
    return fallback;
}

void IniFileBase::deleteSection(const QString& section, const QString& file) {
    ProcedureScope scope(errors(), tag("deleteSection"));
    PrivateProfile::deleteSection(fileOr(file), sectionOr(section));
}

void IniFileBase::deleteAllSections(const QString& file) {
    ProcedureScope scope(errors(), tag("deleteAllSections"));
    const QStringList names = getSections(file).split(kNul);
    for (const QString& name : names) {
        if (!name.isEmpty()) {
            deleteSection(name, file);
        }
    }
}

void IniFileBase::deleteKey(const QString& section, const QString& key, const QString& file) {
    ProcedureScope scope(errors(), tag("deleteKey"));
    PrivateProfile::deleteKey(fileOr(file), sectionOr(section), key);
}

void IniFileBase::deleteKeyValue(const QString& section, const QString& key, const QString& file) {
    ProcedureScope scope(errors(), tag("deleteKeyValue"));
    PrivateProfile::writeValue(fileOr(file), sectionOr(section), key, QString());
}

void IniFileBase::renameSection(const QString& oldName, const QString& newName,
                                const QString& file) {
    ProcedureScope scope(errors(), tag("renameSection"));
    const QString oldSection = sectionOr(oldName);
    const QStringList keys = getKeysInSection(oldSection, file).split(kNul);
    for (const QString& key : keys) {
        if (key.isEmpty()) {
            continue;
        }
        // The read passes the key where the section belongs; kept as the
        // family's other programs have it.
        const QString value = getKeyString(key, oldSection, QString(), file);
        setKeyValue(newName, key, value, file);
    }
    deleteSection(oldSection, file);
}

void IniFileBase::renameKey(const QString& section, const QString& oldKey, const QString& newKey,
                            const QString& file) {
    ProcedureScope scope(errors(), tag("renameKey"));
    const QString value = getKeyString(section, oldKey, QString(), file);
    setKeyValue(section, newKey, value, file);
    deleteKey(section, oldKey, file);
}
