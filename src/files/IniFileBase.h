#pragma once

#include <QString>
#include <QStringList>

class errorClass;

// The operations the settings file and the document companion file share.
// An argument that is missing or empty falls back on the current section or
// the file path. Lists are NUL-separated, as the profile calls give them.
class IniFileBase {
public:
    static constexpr int ValueLimit = 255; // characters of one value read
    static constexpr int ListLimit = 1024; // characters of a section or key list

    virtual ~IniFileBase() = default;

    QString currentKey() const { return m_currentKey; }
    void setCurrentKey(const QString& key) { m_currentKey = key; }
    QString currentSection() const { return m_currentSection; }
    void setCurrentSection(const QString& section) { m_currentSection = section; }
    QString filePath() const { return m_file; }

    void setKey(const QString& section, const QString& key, const QString& file = {});
    void setKeyValue(const QString& section, const QString& key, const QString& value,
                     const QString& file = {});
    QString getVersion(const QString& file = {});
    QString getSections(const QString& file = {});
    short getNumberOfSections(const QString& file = {});
    QString getKeysInSection(const QString& section, const QString& file = {});
    short getNumberOfKeysInSection(const QString& section, const QString& file = {});
    // The value (at most 255 characters). A missing or empty key is written
    // with the default ("<not_set>" when the default is empty) and the
    // default is returned.
    virtual QString getKeyString(const QString& section, const QString& key,
                                 const QString& defaultValue = {}, const QString& file = {});
    void deleteSection(const QString& section, const QString& file = {});
    void deleteAllSections(const QString& file = {});
    void deleteKey(const QString& section, const QString& key, const QString& file = {});
    void deleteKeyValue(const QString& section, const QString& key, const QString& file = {});
    virtual void renameSection(const QString& oldName, const QString& newName,
                               const QString& file = {});
    void renameKey(const QString& section, const QString& oldKey, const QString& newKey,
                   const QString& file = {});

    virtual void upgradeINI() = 0;
    virtual void writeNewINI() = 0;

protected:
    IniFileBase(QString defaultSection, QString moduleName);

    QString sectionOr(const QString& section) const;
    QString fileOr(const QString& file) const;
    // The tag of a procedure of this class; the error object is the
    // application's, when one exists and the class is allowed to use it.
    QString tag(const char* procedure) const;
    virtual errorClass* errors() const;

    QString m_file;
    QString m_currentKey;
    QString m_currentSection;
    QString m_moduleName;
};
