#pragma once

#include <QChar>
#include <QString>
#include <functional>
#include <optional>

class QSqlDatabase;

// This workstation's random identifier of twelve characters, kept in the
// small local SQLite file "Qmlocalf5.lmd" (table `UniqueID`, columns
// `uniqueID` and `InstallDate`). A damaged file costs nothing but its
// identifier: it is deleted and made anew.
//
// Calling order: setDatabaseLocation, setTempFolder, getUniqueID.
class clsUniqueID {
public:
    static constexpr int IdLength = 12;
    // Used when drawing a valid identifier fails altogether.
    static constexpr const char* FallbackID = "Q7kTzR2wLp4X";

    // A uniform draw in [0, 1), as the old runtime's Rnd gives it.
    using RandomSource = std::function<double()>;

    clsUniqueID();
    ~clsUniqueID();
    clsUniqueID(const clsUniqueID&) = delete;
    clsUniqueID& operator=(const clsUniqueID&) = delete;

    // Opens the local file, creating it when missing and replacing it when
    // it is not a usable database. Never throws; when even a new file cannot
    // be made (an unwritable folder) the object stays without a connection
    // and getUniqueID hands out an identifier it cannot keep.
    void setDatabaseLocation(const QString& path);
    QString DatabaseLocation() const { return m_databaseLocation; }
    void setTempFolder(const QString& folder) { m_tempFolder = folder; }
    QString TempFolder() const { return m_tempFolder; }
    // True when the connection stands on an existing file that passed the
    // checks (as opposed to one made just now).
    bool isVerifiedExisting() const { return m_verifiedExisting; }
    bool isOpen() const;

    // The stored identifier; a missing, empty or malformed one is replaced
    // and stamped with today's date.
    QString getUniqueID();
    // Twelve characters of 0-9, A-Z, a-z.
    QString createUniqueID() const;
    static bool verifyUniqueID(const QString& id) { return id.size() == IdLength; }
    // The character for a draw n of 1 to 62; a null character outside.
    static QChar characterForDraw(int n);

    bool openDatabase(const QString& path);
    bool createLocalDatabase(const QString& path);
    bool createTables(const QString& path);
    bool verifyLocalDatabase(const QString& path);
    bool doesTableExist();

    // Replaces the generator (tests); the default is the system's
    // securely seeded generator.
    void setRandomSource(RandomSource source) { m_random = std::move(source); }

private:
    QSqlDatabase connection() const;
    void closeConnection();
    bool repairDatabase();
    std::optional<QString> readOrRenewID();

    QString m_connectionName;
    QString m_databaseLocation;
    QString m_tempFolder;
    bool m_verifiedExisting = false;
    RandomSource m_random;
};
