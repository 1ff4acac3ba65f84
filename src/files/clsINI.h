#pragma once

#include "files/IniFileBase.h"

// The settings file "Qminiqmd.dni" that the programs of the product family
// share. Usable before the application's error object exists: it then pushes
// no tags and reports nothing.
class clsINI : public IniFileBase {
public:
    static constexpr const char* NotSet = "<not_set>";

    clsINI();

    // Stores the path; a missing file is created with the full table of
    // first values. An existing file is left as it is.
    void setINIFile(const QString& path);
    QString INIFile() const { return m_file; }

    // Sets Version in section Quillmere to the running version.
    void upgradeINI() override;
    // Writes the whole table of first values, replacing the file.
    void writeNewINI() override;

    // The text writeNewINI writes (CR LF line ends).
    static QString newINIText(const QString& programVersion, const QString& backgroundsFolder,
                              const QString& programFolder);

    struct Version {
        short major = 0;
        short minor = 0;
        short revision = 0;
    };
    // Splits at the first and second "."; each part converted leniently.
    static Version parseVersion(const QString& text);
    // True when any one part of a is greater than the same part of b (each
    // part on its own: 4.9.9 against 5.0.0 is true).
    static bool isPriorVersion(const QString& a, const QString& b);

    // Truth values are written as 1/0 or True/False; both read as true/false.
    static bool isTrueValue(const QString& value);

protected:
    errorClass* errors() const override;
};
