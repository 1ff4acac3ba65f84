#pragma once

#include "context/DocumentKinds.h"
#include "platform/FieldTable.h"

#include <QString>
#include <map>

class QStandardItemModel;

// The catalogue of merge fields for one document type and the two list
// models that show it (the template's fields and the letterhead). Rows are
// numbered from 1 in the order they are built; list items carry that number
// as Qt::UserRole data, -1 for headings and blank lines.
//
// A build reads app().currentCountry, app().currentProvince, the clock and,
// for the custom label rows, the labels in app().database; without a
// connection the label rows are left out. Database errors pass through as
// QmError.
class MergeFieldCatalogue {
public:
    MergeFieldCatalogue() = default;
    MergeFieldCatalogue(const MergeFieldCatalogue&) = delete;
    MergeFieldCatalogue& operator=(const MergeFieldCatalogue&) = delete;

    void setListBox(QStandardItemModel* list) { m_list = list; }
    void setAccountantListBox(QStandardItemModel* list) { m_accountantList = list; }

    FieldTable& table() { return m_table; }
    const FieldTable& table() const { return m_table; }
    // Changes whenever the catalogue is rebuilt, so that what callers derive
    // from the rows can tell it is stale.
    quint64 generation() const { return m_generation; }

    void createDefaultFieldListStructure(InformationKind documentType, bool noList, bool clearList);
    void createCompanyInfoFieldListStructure(bool noList);
    void createAccountantFieldListStructure(bool noList, bool clearList);

    QString getDBFieldFromEnglishField(const QString& name);
    QString getEnglishFieldFromDBField(const QString& column);
    QString parseListItem(int row, bool withBrackets);
    // True for Todays Date and for any name of the catalogue.
    bool testStr(const QString& name) const;

    // The corporation tax word of a Canadian province number.
    static QString corporationTaxWord(int province);

private:
    void beginBuild(bool noList, bool clearList);
    void addHeading(const QString& heading, bool blankLineBefore, bool noList);
    void addRows(int block, bool noList, QStandardItemModel* list);
    void addRow(const QString& db, const QString& name, const QString& table, const QString& type,
                const QString& sample, bool noList, QStandardItemModel* list,
                const QString& listText);
    void loadLabels();
    QString label(const QString& labelColumn) const;

    FieldTable m_table{5};
    int m_counter = 0;
    quint64 m_generation = 0;
    QStandardItemModel* m_list = nullptr;
    QStandardItemModel* m_accountantList = nullptr;
    std::map<QString, QString> m_labels; // label column -> label, while building
    bool m_labelsLoaded = false;
};
