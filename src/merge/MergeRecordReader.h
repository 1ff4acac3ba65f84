#pragma once

#include "context/DocumentKinds.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <map>
#include <optional>

class FieldTable;
class databaseControl;

// The record a placeholder is filled from; -1 stands for none.
struct MergeRecordIDs {
    int company = -1;
    int contact = -1;
    int schedule = -1;
    int firm = -1;
    int appointment = -1;
    int docket = -1;
    int task = -1;
};

// Reads the value of a catalogue field for one record from app().database.
// The catalogue row names the column and its data table; one table maps
// each data table to the record set it is read from and the ID it is keyed
// on, and the column decides whether the value is computed (abbreviated
// provinces, the contact and spouse name, the columns a contact inherits
// from its company).
//
// Record sets are keyed queries, one row per source, kept until the key
// changes. The client satellites' columns are taken from the database
// itself (once per connection), so that a practice whose custom columns
// sit in another satellite is read as well; a column found in no table
// gives an empty value and is listed in missingColumns().
//
// Without a connection every value is empty. Database errors pass through
// as QmError.
class MergeRecordReader {
public:
    enum class Source {
        Companies,
        Contacts,
        Firm,
        Business,
        Schedule,
        Tasks,
        Appointments,
        Dockets
    };

    // The columns each source is read with while one template is
    // substituted; a source that is not named is read whole.
    struct ColumnChoice {
        std::map<Source, QStringList> columns;
        quint64 id = 0; // distinguishes rows read under different choices
    };

    // `catalogue` is read on every call and must outlive the reader.
    explicit MergeRecordReader(FieldTable& catalogue);
    ~MergeRecordReader();
    MergeRecordReader(const MergeRecordReader&) = delete;
    MergeRecordReader& operator=(const MergeRecordReader&) = delete;

    void initializeDataRecordsets(InformationKind mergeType, bool openAll, int recordID,
                                  bool openBusiness, bool openCompanies, bool openContacts,
                                  bool openFirm, int companyID, int contactID);
    void closeDataRecordsets();

    // `columns`, when given, comes from chooseColumns for the names being
    // filled; without it whole rows are read.
    QString getDataField(const QString& englishName, const MergeRecordIDs& ids, bool useSamples,
                         bool inRTF, const ColumnChoice* columns = nullptr);
    QString getDataDateField(const QString& englishName, const QString& format,
                             const MergeRecordIDs& ids, bool useSamples, bool inRTF,
                             const ColumnChoice* columns = nullptr);
    QString getContactAndSpouseName(int contactID, bool lastNameFirst,
                                    const ColumnChoice* columns = nullptr);
    // The columns that filling these catalogue names reads, per source.
    ColumnChoice chooseColumns(const QStringList& names);

    static QString getAbbreviatedProvince(const QString& province);
    static QString getFullProvinceString(const QString& province);
    QString convertToRTF(const QString& value) const;
    void setLineBreaksAsParagraphs(bool on) { m_lineBreaksAsParagraphs = on; }
    bool lineBreaksAsParagraphs() const { return m_lineBreaksAsParagraphs; }

    // "Field (column Name)" for each field read since clearMissingColumns
    // whose column exists in none of its source's tables.
    const QStringList& missingColumns() const { return m_missingColumns; }
    void clearMissingColumns() { m_missingColumns.clear(); }

private:
    enum class Computation { Plain, AbbreviatedProvince, ContactAndSpouseName, Inherited };
    struct FieldSource {
        Source source;
        QString column;
        Computation computation = Computation::Plain;
    };
    struct RecordsetState {
        bool open = false;         // opened by initializeDataRecordsets or a read
        int singleID = -1;         // >= 0: the set holds that record only
        int cachedKey = -2;        // the key of the row read last
        quint64 cachedColumns = 0; // the column choice the row was read with
        int handle = -1;           // database handle of the row read last
        bool found = false;
    };

    // The catalogue row of the name and where its value comes from.
    std::optional<FieldSource> resolve(const QString& englishName, QString* dataTable);
    static Computation computationOf(Source source, const QString& column);
    std::optional<Source> sourceFor(const QString& dataTable, const MergeRecordIDs& ids, int& key);
    bool seek(Source source, int key, const ColumnChoice* columns);
    QVariant column(Source source, const QString& name, const QString& field);
    QString sqlFor(Source source, int key) const;
    QString sqlForColumns(Source source, int key, const QStringList& columns);
    // For a practice whose database lacks one of the business row's tables.
    bool hasAllTables(Source source);
    QString businessFromExisting();
    QString businessSqlFromExisting(int key, const QStringList* columns);
    const QStringList& tableColumns(databaseControl& db, const QString& table);
    void refreshSingle(Source source, int id);
    QString finishValue(const QVariant& value, bool inRTF) const;
    QVariant plainValue(const FieldSource& field, const QString& englishName,
                        const MergeRecordIDs& ids, const ColumnChoice* columns);

    FieldTable& m_catalogue;
    bool m_lineBreaksAsParagraphs = true;
    int m_currentCompanyID = -1;
    int m_currentContactID = -1;
    int m_currentAppointmentID = -1;
    std::map<Source, RecordsetState> m_sets;
    quint64 m_choices = 0;
    QStringList m_missingColumns;

    // Columns of each table as the connected database has them.
    const databaseControl* m_columnsOf = nullptr;
    QString m_columnsPath;
    std::map<QString, QStringList> m_tableColumns;
};
