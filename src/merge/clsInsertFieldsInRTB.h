#pragma once

#include "context/DocumentKinds.h"
#include "merge/MergeSubstitution.h"
#include "platform/FieldTable.h"

#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <map>
#include <optional>

class QStandardItemModel;
class RichTextBox;

// The merge fields: the catalogue of placeholders for a document type, the
// placeholder language (validation, rewriting on opening, substitution) and
// the retrieval of values from the client database. The program keeps one
// instance for its whole run (app().fieldInserter).
//
// The catalogue depends on app().currentCountry, app().currentProvince, the
// clock and, for the custom label rows, on the labels stored in the
// database (app().database). Errors of the database object pass through as
// QmError to the caller's handler.
class clsInsertFieldsInRTB {
public:
    // Column numbers of the catalogue.
    enum Column : int {
        DbColumn = 1,
        EnglishName = 2,
        DataTable = 3,
        FieldType = 4,
        SampleValue = 5
    };

    clsInsertFieldsInRTB();
    ~clsInsertFieldsInRTB();
    clsInsertFieldsInRTB(const clsInsertFieldsInRTB&) = delete;
    clsInsertFieldsInRTB& operator=(const clsInsertFieldsInRTB&) = delete;

    // --- Catalogue -------------------------------------------------------

    // The list of the template's fields and the letterhead list; either may
    // be absent. Items carry their row position as Qt::UserRole data, -1 for
    // headings and blank lines.
    void setListBox(QStandardItemModel* list) { m_list = list; }
    void setAccountantListBox(QStandardItemModel* list) { m_accountantList = list; }
    // Where onListClick and insertCurrentDate put their text.
    void setTargetTextBox(RichTextBox* box);

    FieldTable& fieldTable() { return m_table; }
    const FieldTable& fieldTable() const { return m_table; }
    // Changes whenever the catalogue is rebuilt.
    quint64 tableGeneration() const { return m_generation; }

    // Rebuilds the catalogue for a document type (InformationType). With
    // noList, or without a list box, no list is filled.
    void createDefaultFieldListStructure(InformationKind documentType, bool noList, bool clearList);
    void createCompanyInfoFieldListStructure(bool noList);
    void createAccountantFieldListStructure(bool noList, bool clearList);

    // Column 1 of the row named `name`, or `name` itself.
    QString getDBFieldFromEnglishField(const QString& name);
    // Column 2 of the first row on `column`, or `column` itself.
    QString getEnglishFieldFromDBField(const QString& column);
    // The text a list row inserts: the name, or "(name, mmmm d yyyy)" for a
    // date, between « and » with `withBrackets`. Empty for a negative row.
    QString parseListItem(int row, bool withBrackets);
    // Inserts parseListItem(row, true) at the caret of the target box.
    void onListClick(int row);
    // Inserts «(Todays Date, format)» for format number 1 to 14.
    void insertCurrentDate(int formatNumber);

    // The calendar texts of a user for an appointment (5), docket (6) or
    // task (8), from UserCalendarSettings or the built-in defaults.
    QString createDisplayTextByID(int userID, int itemKind, int companyID, int contactID,
                                  int itemID);
    QString createTitleBarTextByID(int userID, int itemKind, int companyID, int contactID,
                                   int itemID);

    // --- Placeholders ------------------------------------------------------

    static QString convertFieldName(const QString& text);
    // True for Todays Date and for any name of the catalogue.
    bool testStr(const QString& name) const;
    // True when the template has a fault; the first fault ends the run and
    // its message is shown through app().msgbox with showMessages.
    bool testRTBComment(const QString& text, bool inRTF, bool showMessages, bool skipFieldNames);
    // The message of the fault the last testRTBComment found; empty if none.
    QString lastTestMessage() const { return m_lastTestMessage; }
    // The merged text of one record. IDs below 0 stand for none.
    QString parseRTBComment(const QString& text, int companyID, int contactID, int scheduleID,
                            int firmID, int appointmentID, int docketID, int taskID,
                            bool useSamples, bool inRTF, bool contactNameForCompany);
    static bool replaceText(QString& text, const QString& find, const QString& value, bool inRTF);
    // Throws QmError when a « has no » after it.
    static bool replaceUnfoundMergeFieldsWithBlanks(QString& text);
    static QString removeBlankLinesFromRTFText(const QString& text);
    QString convertProvinceFields(const QString& text) const;

    // Placeholders of the last parseRTBComment that were present but got an
    // empty value, in the order they were filled.
    const QStringList& emptyPlaceholders() const { return m_emptyPlaceholders; }
    // Values of the last parseRTBComment that contain RTF control characters
    // (\ { }) or guillemets, as "Field Name: value", in the order read.
    const QStringList& suspectValues() const { return m_suspectValues; }
    // Off: every record goes through the step-by-step substitution.
    void setFastSubstitution(bool on) { m_fastSubstitution = on; }

    // --- Data ---------------------------------------------------------------

    void initializeDataRecordsets(int mergeType, bool openAll, int recordID, bool openBusiness,
                                  bool openCompanies, bool openContacts, bool openFirm,
                                  bool openEmployees, int companyID, int contactID);
    QString getDataField(const QString& englishName, int companyID, int contactID, int scheduleID,
                         int firmID, int appointmentID, int docketID, int taskID, bool useSamples,
                         bool inRTF);
    QString getDataDateField(const QString& englishName, const QString& format, int companyID,
                             int contactID, int scheduleID, int firmID, int appointmentID,
                             int docketID, int taskID, bool useSamples, bool inRTF);
    QString getContactAndSpouseName(int contactID, bool lastNameFirst);
    static QString getAbbreviatedProvince(const QString& province);
    static QString getFullProvinceString(const QString& province);
    QString convertToRTF(const QString& value) const;
    // The flag of convertToRTF: true on a new object; start-up sets it false.
    void setLineBreaksAsParagraphs(bool on) { m_lineBreaksAsParagraphs = on; }
    bool lineBreaksAsParagraphs() const { return m_lineBreaksAsParagraphs; }
    // Closes every record set.
    void closeDataRecordsets();

private:
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
    struct RecordsetState {
        bool open = false;         // opened by initializeDataRecordsets or a read
        int singleID = -1;         // >= 0: the set holds that record only
        int cachedKey = -2;        // the key of the row read last
        quint64 cachedColumns = 0; // the column choice the row was read with
        int handle = -1;           // database handle of the row read last
        bool found = false;
    };

    void beginBuild(bool noList, bool clearList);
    void addHeading(const QString& heading, bool blankLineBefore, bool noList);
    void addRows(int block, bool noList, QStandardItemModel* list);
    void addRow(const QString& db, const QString& name, const QString& table, const QString& type,
                const QString& sample, bool noList, QStandardItemModel* list,
                const QString& listText = QString());
    void loadLabels();
    QString label(const QString& labelColumn);
    void insertAtCaret(const QString& text);

    QString literalParse(const QString& text, bool inRTF, bool contactForCompany,
                         PlaceholderValues& values);
    QString calendarText(int userID, int itemKind, int companyID, int contactID, int itemID,
                         bool titleBar);

    RecordsetState& state(Source source);
    // Positions the source on the row with that key; false when none.
    bool seek(Source source, int key);
    QVariant column(Source source, const QString& name);
    QString sqlFor(Source source, int key) const;
    QString sqlForColumns(Source source, int key, const QStringList& columns) const;
    bool resolveRow(const QString& englishName, QString& dbColumn, QString& dataTable);
    std::optional<Source> sourceFor(const QString& dataTable, int companyID, int contactID,
                                    int scheduleID, int firmID, int appointmentID, int docketID,
                                    int taskID, int& key);
    void refreshSingle(Source source, int id);
    QString finishValue(const QVariant& value, bool inRTF) const;

    FieldTable m_table{5};
    int m_counter = 0;
    quint64 m_generation = 0;
    QStandardItemModel* m_list = nullptr;
    QStandardItemModel* m_accountantList = nullptr;
    QPointer<RichTextBox> m_target;
    bool m_haveTarget = false;
    std::map<QString, QString> m_labels; // label column -> label, while building
    bool m_labelsLoaded = false;

    QString m_lastTestMessage;
    QStringList m_emptyPlaceholders;
    QStringList m_suspectValues;
    bool m_fastSubstitution = true;
    MergeSubstitution m_substitution;

    bool m_lineBreaksAsParagraphs = true;
    int m_mergeType = 0;
    int m_recordID = -1;
    int m_currentCompanyID = -1;
    int m_currentContactID = -1;
    int m_currentAppointmentID = -1;
    std::map<Source, RecordsetState> m_sets;
    // While a record is substituted: the columns each source must give, so
    // that a read fetches those and not whole rows. Empty: every column.
    std::map<Source, QStringList> m_columns;
    quint64 m_columnsGeneration = 0;
    QStringList m_chosenNames;
    bool m_columnsActive = false;
    void chooseColumns(const QStringList& names);
};
