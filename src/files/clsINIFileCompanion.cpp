#include "files/clsINIFileCompanion.h"

#include "context/AppContext.h"
#include "files/clsINI.h"
#include "platform/PrivateProfile.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/text/stringControl.h"

// The log tags carry the class's old name.
clsINIFileCompanion::clsINIFileCompanion()
    : IniFileBase(QStringLiteral("QuillmerePad"), QStringLiteral("clsINIFileComparison")) {}

void clsINIFileCompanion::initializeINI(const QString& path) {
    ProcedureScope scope(errors(), tag("initializeINI"));
    m_file = path;
    if (!fileControl::FileExists(path)) {
        writeNewINI();
    }
    const QString version = IniFileBase::getKeyString(
        QStringLiteral("QuillmerePad"), QStringLiteral("Version"), getProgramVersion());
    if (clsINI::isPriorVersion(getProgramVersion(), version)) {
        upgradeINI();
    }
}

bool clsINIFileCompanion::doesINIExist(const QString& path) const {
    return !stringControl::isBlank(path) && fileControl::FileExists(path);
}

QString clsINIFileCompanion::basename(const QString& path) {
    return fileControl::FileName(path);
}

QString clsINIFileCompanion::getKeyString(const QString& section, const QString& key,
                                          const QString& defaultValue, const QString& file) {
    ProcedureScope scope(errors(), tag("getKeyString"));
    if (!doesINIExist(fileOr(file))) {
        return {};
    }
    return IniFileBase::getKeyString(section, key, defaultValue, file);
}

void clsINIFileCompanion::renameSection(const QString& oldName, const QString& newName,
                                        const QString& file) {
    ProcedureScope scope(errors(), tag("renameSection"));
    if (doesINIExist(fileOr(file))) {
        IniFileBase::renameSection(oldName, newName, file);
    }
}

void clsINIFileCompanion::upgradeINI() {
    ProcedureScope scope(errors(), tag("upgradeINI"));
    setKeyValue(QStringLiteral("FileInformation"), QStringLiteral("FileType"), QStringLiteral("0"));
    setKeyValue(QStringLiteral("QuillmerePad"), QStringLiteral("Version"), getProgramVersion());
}

void clsINIFileCompanion::writeNewINI() {
    ProcedureScope scope(errors(), tag("writeNewINI"));
    if (m_file.isEmpty()) {
        return;
    }
    const QString text = QStringLiteral("[FileInformation]\r\n"
                                        "Version=%1\r\n"
                                        "Name=<not_set>\r\n"
                                        "FileType=<not_set>\r\n"
                                        "DocumentType=<not_set>\r\n"
                                        "InformationType=<not_set>\r\n"
                                        "\r\n"
                                        "[MergeInformation]\r\n"
                                        "IDList=<not_set>\r\n"
                                        "remittSQLFilter=<not_set>\r\n"
                                        "\r\n"
                                        "[PageInformation]\r\n"
                                        "leftMargin=1440\r\n"
                                        "topMargin=1440\r\n"
                                        "rightMargin=1440\r\n"
                                        "bottomMargin=1440\r\n")
                             .arg(getProgramVersion());
    PrivateProfile::writeWholeFile(m_file, text);
}
