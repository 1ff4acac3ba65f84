#include "merge/MergeFieldCatalogue.h"

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "merge/FieldCatalogueRows.h"
#include "merge/MergeSubstitution.h"
#include "platform/errorClass.h"
#include "platform/text/VBFormat.h"
#include "platform/text/stringControl.h"

#include <QStandardItem>
#include <QStandardItemModel>

namespace {

using FieldCatalogue::Condition;
using FieldCatalogue::RowSpec;

enum Block {
    AppointmentBlock,
    RemittanceBlock,
    TaskBlock,
    DocketBlock,
    CompanyBlock,
    ContactNameBlock,
    AccountingBlock,
    SoftwareBlock,
    MoreContactBlock,
    AccountantBlock,
};

struct BlockInfo {
    std::span<const RowSpec> (*rows)();
    const char* dataTable;
    const char* labelColumn; // prefix of the label columns, numbered 1 to 5
};

const BlockInfo kBlocks[] = {
    {FieldCatalogue::appointmentRows, "AppointInfo", "ApptCustomName"},
    {FieldCatalogue::remittanceRows, "RemittInfo", "RemittanceLabel"},
    {FieldCatalogue::taskRows, "TaskInfo", "TaskCustomName"},
    {FieldCatalogue::docketRows, "DocketInfo", "DocketCustomName"},
    {FieldCatalogue::companyRows, "CompanyInfo", "CompanyLabel"},
    {FieldCatalogue::contactNameRows, "ContactInfo", ""},
    {FieldCatalogue::accountingRows, "ClientInfo", "CustomName"},
    {FieldCatalogue::softwareRows, "ClientInfo", ""},
    {FieldCatalogue::moreContactRows, "ContactInfo", "ContactLabel"},
    {FieldCatalogue::accountantRows, "AccountantInfo", "CompanyLabel"},
};

const QDate kHarmonizedTaxStart(2010, 7, 1);

// The regional words of the accounting rows for a Canadian province.
QString salesTaxWord(int province) {
    switch (province) {
    case 9:
    case 10:
    case 11:
        return QStringLiteral("HST");
    case 1:
    case 3:
        return app().clock.today() >= kHarmonizedTaxStart ? QStringLiteral("HST")
                                                          : QStringLiteral("GST");
    case 8:
        return QString();
    default:
        return QStringLiteral("GST");
    }
}

QString provincialTaxWord(int province) {
    return province == 8 ? QStringLiteral("QST") : QStringLiteral("PST");
}

QString workerCompensationWord(int province) {
    switch (province) {
    case 0:
    case 1:
    case 2:
    case 4:
    case 9:
    case 12:
        return QStringLiteral("WCB");
    case 8:
        return QStringLiteral("CSST");
    case 10:
    case 11:
        return QStringLiteral("WHSCC");
    default:
        return QStringLiteral("WSIB");
    }
}

} // namespace

QString MergeFieldCatalogue::corporationTaxWord(int province) {
    switch (province) {
    case 0:
        return QStringLiteral("Alberta");
    case 1:
        return QStringLiteral("BC");
    case 2:
        return QStringLiteral("Manitoba");
    case 4:
        return QStringLiteral("Sask.");
    case 8:
        return QStringLiteral("Que.");
    case 9:
        return QStringLiteral("N.S.");
    case 10:
        return QStringLiteral("N.B.");
    case 11:
        return QStringLiteral("Nfld.");
    case 12:
        return QStringLiteral("P.E.I.");
    default:
        return QStringLiteral("ON");
    }
}

void MergeFieldCatalogue::beginBuild(bool noList, bool clearList) {
    if (clearList && !noList && m_list) {
        m_list->clear();
    }
    m_table.clear();
    m_counter = 0;
    ++m_generation;
    m_labelsLoaded = false;
}

void MergeFieldCatalogue::addHeading(const QString& heading, bool blankLineBefore, bool noList) {
    if (noList || !m_list) {
        return;
    }
    if (blankLineBefore) {
        auto* blank = new QStandardItem(QString());
        blank->setData(-1, Qt::UserRole);
        m_list->appendRow(blank);
    }
    auto* item = new QStandardItem(heading);
    item->setData(-1, Qt::UserRole);
    m_list->appendRow(item);
}

void MergeFieldCatalogue::addRow(const QString& db, const QString& name, const QString& table,
                                 const QString& type, const QString& sample, bool noList,
                                 QStandardItemModel* list, const QString& listText) {
    ++m_counter;
    m_table.addRow(m_counter, {db, name, table, type, sample});
    if (!noList && list) {
        auto* item = new QStandardItem(listText.isNull() ? name : listText);
        item->setData(m_counter, Qt::UserRole);
        list->appendRow(item);
    }
}

void MergeFieldCatalogue::loadLabels() {
    m_labels.clear();
    m_labelsLoaded = true;
    databaseControl* db = app().database;
    if (!db || !db->isConnected()) {
        return;
    }
    for (const char* sql : {"SELECT CustomFields.* FROM CustomFields;",
                            "SELECT CustomAddressFields.* FROM CustomAddressFields;"}) {
        const int rs = db->openRecordset(QString::fromLatin1(sql));
        if (db->hasRecords(rs)) {
            for (const QString& name : db->fieldNames(rs)) {
                const QVariant value = db->getField(rs, name);
                m_labels[name.toUpper()] =
                    stringControl::isBlank(value) && value.isNull() ? QString() : value.toString();
            }
        }
        db->closeRecordset(rs);
    }
}

QString MergeFieldCatalogue::label(const QString& labelColumn) const {
    const auto it = m_labels.find(labelColumn.toUpper());
    return it == m_labels.end() ? QString() : it->second;
}

void MergeFieldCatalogue::addRows(int block, bool noList, QStandardItemModel* list) {
    const BlockInfo& info = kBlocks[block];
    const bool canada = app().currentCountry == 1;
    const int province = app().currentProvince;
    const bool connected = app().database && app().database->isConnected();
    const QDate today = app().clock.today();
    const QString dataTable = QString::fromLatin1(info.dataTable);

    for (const RowSpec& row : info.rows()) {
        bool keep = true;
        switch (row.condition) {
        case Condition::Always:
            break;
        case Condition::Canada:
            keep = canada;
            break;
        case Condition::NotCanada:
            keep = !canada;
            break;
        case Condition::Quebec:
            keep = canada && province == 8;
            break;
        case Condition::NotQuebec:
            keep = canada && province != 8;
            break;
        case Condition::Ontario:
            keep = canada && province == 3;
            break;
        case Condition::Label:
            keep = connected;
            break;
        }
        if (!keep) {
            continue;
        }
        QString name = QString::fromUtf8(row.englishName);
        if (row.condition == Condition::Label) {
            if (!m_labelsLoaded) {
                loadLabels();
            }
            QString text = label(QString::fromLatin1(info.labelColumn) + QString::number(row.slot));
            if (text.endsWith(QLatin1Char(':'))) {
                text.chop(1);
            }
            if (text == QStringLiteral("Custom %1").arg(row.slot)) {
                // The fixed name stands for a label the practice never set.
            } else if (block == AccountantBlock) {
                name = QStringLiteral("Your ") + text;
            } else {
                name = text;
            }
        }
        name.replace(QLatin1String("{G}"), salesTaxWord(province));
        name.replace(QLatin1String("{P}"), provincialTaxWord(province));
        name.replace(QLatin1String("{W}"), workerCompensationWord(province));
        name.replace(QLatin1String("{T}"), corporationTaxWord(province));

        QString sample = QString::fromUtf8(row.sampleValue);
        if (sample == QLatin1String("@today")) {
            sample = VBFormat::formatDate(today, QStringLiteral("mmm d, yyyy"));
        } else {
            sample.replace(QLatin1String("@year"), QString::number(today.year()));
        }
        const QString listText = name == QLatin1String("Federal Employer Identification Number")
                                     ? QStringLiteral("Federal Employer Identification  Number")
                                     : QString();
        addRow(QString::fromLatin1(row.dbColumn), name, dataTable,
               QString::fromLatin1(row.fieldType), sample, noList, list, listText);
    }
}

void MergeFieldCatalogue::createDefaultFieldListStructure(InformationKind documentType, bool noList,
                                                          bool clearList) {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-clsInsertFieldsInRTB-createDefaultFieldListStructure");
    if (!m_list) {
        noList = true;
    }
    beginBuild(noList, clearList);

    using K = InformationKind;
    const bool known = isClientKind(documentType) || documentType == K::Tasks ||
                       documentType == K::Appointments || documentType == K::Dockets ||
                       documentType == K::WorkListTasks;
    bool first = true;
    auto heading = [&](const char* text, bool blank) {
        addHeading(QString::fromLatin1(text), blank && !first, noList);
        first = false;
    };

    switch (documentType) {
    case K::Appointments:
        heading("[Appointment Info]", true);
        addRows(AppointmentBlock, noList, m_list);
        break;
    case K::Tasks:
        heading("[Task Info]", true);
        addRows(RemittanceBlock, noList, m_list);
        break;
    case K::WorkListTasks:
        heading("[Task Info]", true);
        addRows(TaskBlock, noList, m_list);
        break;
    case K::Dockets:
        heading("[Docket Info]", true);
        addRows(DocketBlock, noList, m_list);
        break;
    default:
        break;
    }
    if (known && documentType != K::Contacts) {
        heading("[Company Address Info]", isSearchKind(documentType));
        createCompanyInfoFieldListStructure(noList);
    }
    if (known) {
        if (documentType == K::CompaniesAndContacts || documentType == K::Contacts) {
            heading("[Contact Name]", true);
        } else {
            heading("[Default Contact Name]", true);
        }
        addRows(ContactNameBlock, noList, m_list);
        if (documentType != K::Contacts) {
            heading("[Company Accounting Info]", true);
            addRows(AccountingBlock, noList, m_list);
            heading("[Company Software Info]", true);
            addRows(SoftwareBlock, noList, m_list);
        }
        heading("[More Contact Info]", true);
        addRows(MoreContactBlock, noList, m_list);
        if (documentType == K::Contacts) {
            heading("[Company Info]", true);
            createCompanyInfoFieldListStructure(noList);
        }
    }
    createAccountantFieldListStructure(false, true);
}

void MergeFieldCatalogue::createCompanyInfoFieldListStructure(bool noList) {
    addRows(CompanyBlock, noList || !m_list, m_list);
}

void MergeFieldCatalogue::createAccountantFieldListStructure(bool noList, bool clearList) {
    if (!m_accountantList) {
        noList = true;
    }
    if (!noList) {
        if (clearList) {
            m_accountantList->clear();
        }
        auto* item = new QStandardItem(QStringLiteral("Insert your Letterhead"));
        item->setData(-1, Qt::UserRole);
        m_accountantList->appendRow(item);
    }
    addRows(AccountantBlock, noList, m_accountantList);
}

QString MergeFieldCatalogue::getDBFieldFromEnglishField(const QString& name) {
    if (m_table.find(name, FieldCatalogue::EnglishName) < 0) {
        return name;
    }
    return m_table.columnValue(FieldCatalogue::DbColumn);
}

QString MergeFieldCatalogue::getEnglishFieldFromDBField(const QString& column) {
    if (m_table.find(column, FieldCatalogue::DbColumn) < 0) {
        return column;
    }
    return m_table.columnValue(FieldCatalogue::EnglishName);
}

QString MergeFieldCatalogue::parseListItem(int row, bool withBrackets) {
    if (row < 0 || !m_table.selectRow(row)) {
        return QString();
    }
    QString text = m_table.columnValue(FieldCatalogue::EnglishName);
    if (m_table.columnValue(FieldCatalogue::FieldType).toUpper() == QLatin1String("DATE")) {
        text = QLatin1Char('(') + text + QStringLiteral(", mmmm d yyyy)");
    }
    return withBrackets ? MergeSyntax::kOpen + text + MergeSyntax::kClose : text;
}

bool MergeFieldCatalogue::testStr(const QString& name) const {
    if (name.toUpper() == QLatin1String("TODAYS DATE")) {
        return true;
    }
    for (int row = 1; row <= m_table.rowCount(); ++row) {
        if (m_table.value(row, FieldCatalogue::EnglishName) == name) {
            return true;
        }
    }
    return false;
}
