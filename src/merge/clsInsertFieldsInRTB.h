#pragma once

#include "context/DocumentKinds.h"
#include "merge/FieldCatalogueRows.h"
#include "merge/MergeFieldCatalogue.h"
#include "merge/MergeRecordReader.h"
#include "merge/MergeSubstitution.h"
#include "platform/FieldTable.h"

#include <QPointer>
#include <QString>
#include <QStringList>
#include <optional>

class QStandardItemModel;
class RichTextBox;

// The calendar item kinds the host passes to the calendar texts.
enum class CalendarItemKind : int { Appointment = 5, Docket = 6, Task = 8 };

// The merge fields as the rest of the program sees them: the catalogue of
// placeholders for a document type (MergeFieldCatalogue), the placeholder
// language (MergePlaceholderText, MergeSubstitution) and the values of a
// record (MergeRecordReader). The program keeps one instance for its whole
// run (app().fieldInserter).
//
// The catalogue depends on app().currentCountry, app().currentProvince, the
// clock and, for the custom label rows, on the labels stored in the
// database (app().database). Errors of the database object pass through as
// QmError to the caller's handler.
class clsInsertFieldsInRTB {
public:
    // Column numbers of the catalogue.
    enum Column : int {
        DbColumn = FieldCatalogue::DbColumn,
        EnglishName = FieldCatalogue::EnglishName,
        DataTable = FieldCatalogue::DataTable,
        FieldType = FieldCatalogue::FieldType,
        SampleValue = FieldCatalogue::SampleValue
    };

    clsInsertFieldsInRTB();
    ~clsInsertFieldsInRTB();
    clsInsertFieldsInRTB(const clsInsertFieldsInRTB&) = delete;
    clsInsertFieldsInRTB& operator=(const clsInsertFieldsInRTB&) = delete;

    // --- Catalogue -------------------------------------------------------

    // The list of the template's fields and the letterhead list; either may
    // be absent. Items carry their row position as Qt::UserRole data, -1 for
    // headings and blank lines.
    void setListBox(QStandardItemModel* list) { m_catalogue.setListBox(list); }
    void setAccountantListBox(QStandardItemModel* list) { m_catalogue.setAccountantListBox(list); }
    // Where onListClick and insertCurrentDate put their text.
    void setTargetTextBox(RichTextBox* box);

    FieldTable& fieldTable() { return m_catalogue.table(); }
    const FieldTable& fieldTable() const { return m_catalogue.table(); }
    // Changes whenever the catalogue is rebuilt.
    quint64 tableGeneration() const { return m_catalogue.generation(); }

    // Rebuilds the catalogue for a document type (InformationType). With
    // noList, or without a list box, no list is filled.
    void createDefaultFieldListStructure(InformationKind documentType, bool noList,
                                         bool clearList) {
        m_catalogue.createDefaultFieldListStructure(documentType, noList, clearList);
    }
    void createCompanyInfoFieldListStructure(bool noList) {
        m_catalogue.createCompanyInfoFieldListStructure(noList);
    }
    void createAccountantFieldListStructure(bool noList, bool clearList) {
        m_catalogue.createAccountantFieldListStructure(noList, clearList);
    }

    // Column 1 of the row named `name`, or `name` itself.
    QString getDBFieldFromEnglishField(const QString& name) {
        return m_catalogue.getDBFieldFromEnglishField(name);
    }
    // Column 2 of the first row on `column`, or `column` itself.
    QString getEnglishFieldFromDBField(const QString& column) {
        return m_catalogue.getEnglishFieldFromDBField(column);
    }
    // The text a list row inserts: the name, or "(name, mmmm d yyyy)" for a
    // date, between « and » with `withBrackets`. Empty for a negative row.
    QString parseListItem(int row, bool withBrackets) {
        return m_catalogue.parseListItem(row, withBrackets);
    }
    // Inserts parseListItem(row, true) at the caret of the target box.
    void onListClick(int row);
    // Inserts «(Todays Date, format)» for format number 1 to 14.
    void insertCurrentDate(int formatNumber);

    // The calendar texts of a user for an item of a CalendarItemKind, from
    // UserCalendarSettings or the built-in defaults; empty for another kind.
    QString createDisplayTextByID(int userID, int itemKind, int companyID, int contactID,
                                  int itemID);
    QString createTitleBarTextByID(int userID, int itemKind, int companyID, int contactID,
                                   int itemID);

    // --- Placeholders ------------------------------------------------------

    static QString convertFieldName(const QString& text);
    // True for Todays Date and for any name of the catalogue.
    bool testStr(const QString& name) const { return m_catalogue.testStr(name); }
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
    // Fields of the last parseRTBComment whose column the database has in
    // none of the tables they are read from, as "Field (column Name)"; they
    // were filled with nothing.
    const QStringList& missingColumns() const { return m_reader.missingColumns(); }
    // Values of the last parseRTBComment that contain RTF control characters
    // (\ { }) or guillemets, as "Field Name: value", in the order read.
    const QStringList& suspectValues() const { return m_suspectValues; }
    // Off: every record goes through the step-by-step substitution.
    void setFastSubstitution(bool on) { m_fastSubstitution = on; }

    // --- Data ---------------------------------------------------------------

    // mergeType is an InformationKind number; openEmployees is not used.
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
    static QString getAbbreviatedProvince(const QString& province) {
        return MergeRecordReader::getAbbreviatedProvince(province);
    }
    static QString getFullProvinceString(const QString& province) {
        return MergeRecordReader::getFullProvinceString(province);
    }
    QString convertToRTF(const QString& value) const { return m_reader.convertToRTF(value); }
    // The flag of convertToRTF: true on a new object; start-up sets it false.
    void setLineBreaksAsParagraphs(bool on) { m_reader.setLineBreaksAsParagraphs(on); }
    bool lineBreaksAsParagraphs() const { return m_reader.lineBreaksAsParagraphs(); }
    // Closes every record set.
    void closeDataRecordsets() { m_reader.closeDataRecordsets(); }

private:
    void insertAtCaret(const QString& text);
    QString literalParse(const QString& text, bool inRTF, bool contactForCompany,
                         PlaceholderValues& values);
    QString calendarText(int userID, CalendarItemKind kind, int companyID, int contactID,
                         int itemID, bool titleBar);
    // The column choice for these names under the current catalogue.
    const MergeRecordReader::ColumnChoice& columnsFor(const QStringList& names);

    MergeFieldCatalogue m_catalogue;
    MergeRecordReader m_reader{m_catalogue.table()};
    MergeSubstitution m_substitution;
    QPointer<RichTextBox> m_target;

    QString m_lastTestMessage;
    QStringList m_emptyPlaceholders;
    QStringList m_suspectValues;
    bool m_fastSubstitution = true;

    QStringList m_chosenNames;
    quint64 m_chosenGeneration = 0;
    std::optional<MergeRecordReader::ColumnChoice> m_choice;
};
