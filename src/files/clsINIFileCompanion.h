#pragma once

#include "files/IniFileBase.h"

// The old per-document companion file ("name.rti"). Only read nowadays: the
// document reader migrates it into the trailer and deletes it.
class clsINIFileCompanion : public IniFileBase {
public:
    clsINIFileCompanion();

    // Stores the path, writes a new file when none exists, and upgrades a
    // file written by a later version (as isPriorVersion judges).
    void initializeINI(const QString& path);
    // True when the path is not blank and the file exists.
    bool doesINIExist(const QString& path) const;
    // The part after the last separator, or the whole string.
    static QString basename(const QString& path);

    // Empty when the file does not exist; otherwise as in the settings file.
    QString getKeyString(const QString& section, const QString& key,
                         const QString& defaultValue = {}, const QString& file = {}) override;
    void renameSection(const QString& oldName, const QString& newName,
                       const QString& file = {}) override;

    void upgradeINI() override;
    void writeNewINI() override;
};
