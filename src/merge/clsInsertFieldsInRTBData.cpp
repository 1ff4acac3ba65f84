#include "context/AppContext.h"
#include "data/ClientDatabaseSchema.h"
#include "data/databaseControl.h"
#include "merge/MergeLookups.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/text/VBFormat.h"
#include "platform/errorClass.h"
#include "platform/text/stringControl.h"

namespace {

databaseControl* connectedDatabase() {
    databaseControl* db = app().database;
    return db && db->isConnected() ? db : nullptr;
}

// A stored value as text, as the old runtime turned variants into strings.
QString valueText(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case QMetaType::QDate:
        return VBFormat::formatDate(value.toDate(), QStringLiteral("m/d/yyyy"));
    case QMetaType::QDateTime: {
        const QDateTime moment = value.toDateTime();
        if (moment.date() == QDate(1899, 12, 30)) {
            return VBFormat::formatDate(moment, QStringLiteral("h:nn:ss AM/PM"));
        }
        return VBFormat::formatDate(moment, moment.time() == QTime(0, 0)
                                                ? QStringLiteral("m/d/yyyy")
                                                : QStringLiteral("m/d/yyyy h:nn:ss AM/PM"));
    }
    case QMetaType::Double:
    case QMetaType::Float:
        return QString::number(value.toDouble(), 'g', 15);
    default:
        return value.toString();
    }
}

const char* const kInheritedColumns[] = {
    "BusinessPhone_Main", "BusinessPhone_Fax",  "BusinessAddress", "BusinessCity",
    "BusinessProvince",   "BusinessPostalCode", "BusinessCountry"};

struct ProvinceEntry {
    const char* accepted[5];
    const char* abbreviation;
    const char* fullName;
};

// Two entries are written in mixed case and so can never match an upper-cased
// argument; they are kept as they are.
const ProvinceEntry kProvinces[] = {
    {{"ALBERTA", "ALTA.", "ALTA", "AB", nullptr}, "AB", "Alberta"},
    {{"BRITISHCOLUMBIA", "BRITISH COLUMBIA", "B.C.", "BC", nullptr}, "BC", "British Columbia"},
    {{"MANITOBA", "MAN.", "MAN", "MB", nullptr}, "MB", "Manitoba"},
    {{"ONTARIO", "ONT.", "ONT", "ON", nullptr}, "ON", "Ontario"},
    {{"SASKATCHEWAN", "SASK.", "SASK", "SK", nullptr}, "SK", "Saskatchewan"},
    {{"QUEBEC", "QUE.", "QUE", "QC", nullptr}, "QC", "Quebec"},
    {{"NOVASCOTIA", "NOVA SCOTIA", "N.S.", "NS", nullptr}, "NS", "Nova Scotia"},
    {{"NEWBRUNSWICK", "NEW BRUNSWICK", "N.B.", "NB", nullptr}, "NB", "New Brunswick"},
    {{"NEWFOUNDLAND", "NEWFOUNDLAND And LABRADOR", "NEWFOUNDLAND & LABRADOR", "Nfld.", "NL"},
     "NL",
     "Newfoundland"},
    {{"PRINCE EDWARD ISLAND", "PEI", "P.E.I.", nullptr, nullptr}, "PEI", "Prince Edward Island"},
    {{"NORTHWEST TERRITORIES", "N.W.T.", "NWT", "NT", nullptr}, "NT", "Northwest Territories"},
    {{"NUNAVUT", "NU", nullptr, nullptr, nullptr}, "NU", "Nunavut"},
    {{"YUKON", "YT", nullptr, nullptr, nullptr}, "YT", "Yukon"},
};

const ProvinceEntry* provinceEntry(const QString& province) {
    const QString upper = province.toUpper();
    for (const ProvinceEntry& entry : kProvinces) {
        for (const char* accepted : entry.accepted) {
            if (accepted && upper == QLatin1String(accepted)) {
                return &entry;
            }
        }
    }
    return nullptr;
}

QString removeAbbreviated(const QString& column) {
    QString out = column;
    out.remove(QStringLiteral("Abbreviated"), Qt::CaseInsensitive);
    return out;
}

} // namespace

QString clsInsertFieldsInRTB::getAbbreviatedProvince(const QString& province) {
    const ProvinceEntry* entry = provinceEntry(province);
    return entry ? QString::fromLatin1(entry->abbreviation) : province;
}

QString clsInsertFieldsInRTB::getFullProvinceString(const QString& province) {
    const ProvinceEntry* entry = provinceEntry(province);
    return entry ? QString::fromLatin1(entry->fullName) : province;
}

QString clsInsertFieldsInRTB::convertToRTF(const QString& value) const {
    QString out = value;
    if (!m_lineBreaksAsParagraphs) {
        out.replace(QStringLiteral("\r\n"), QStringLiteral(", \r\n"));
    } else if (out.contains(QStringLiteral("\r\n"))) {
        out.replace(QStringLiteral("\r\n"), QStringLiteral("\\par \r\n"));
    }
    return out;
}

clsInsertFieldsInRTB::RecordsetState& clsInsertFieldsInRTB::state(Source source) {
    return m_sets[source];
}

void clsInsertFieldsInRTB::closeDataRecordsets() {
    databaseControl* db = app().database;
    for (auto& [source, st] : m_sets) {
        if (st.handle >= 0 && db) {
            db->closeRecordset(st.handle);
        }
        st = RecordsetState{};
    }
}

void clsInsertFieldsInRTB::initializeDataRecordsets(int mergeType, bool openAll, int recordID,
                                                    bool openBusiness, bool openCompanies,
                                                    bool openContacts, bool openFirm,
                                                    bool openEmployees, int companyID,
                                                    int contactID) {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-clsInsertFieldsInRTB-initializeDataRecordsets");
    m_mergeType = mergeType;
    m_recordID = recordID;
    m_currentCompanyID = companyID;
    m_currentContactID = contactID;
    closeDataRecordsets();
    if (!connectedDatabase()) {
        return;
    }
    // The sets are opened on their first read: a record reads one row of
    // each source through a keyed query instead of materialising a table.
    auto open = [this](Source source, int single) {
        RecordsetState& st = state(source);
        st.open = true;
        st.singleID = single;
    };
    Q_UNUSED(openEmployees);
    if (openBusiness || openAll) {
        open(Source::Business, -1);
    }
    if (openCompanies || openAll) {
        open(Source::Companies, -1);
    }
    if (openContacts || openAll) {
        open(Source::Contacts, -1);
    }
    if (openFirm || openAll) {
        open(Source::Firm, -1);
    }
    if (openAll) {
        for (Source s : {Source::Schedule, Source::Appointments, Source::Dockets, Source::Tasks}) {
            open(s, -1);
        }
        return;
    }
    const bool one = recordID >= 0;
    switch (mergeType) {
    case 4:
        open(Source::Schedule, one ? recordID : -1);
        open(Source::Tasks, one ? MergeLookups::getTaskIDFromScheduleID(recordID) : -1);
        break;
    case 5:
        open(Source::Appointments, one ? recordID : -1);
        break;
    case 6:
        open(Source::Dockets, one ? recordID : -1);
        break;
    case 8:
        open(Source::Tasks, one ? recordID : -1);
        open(Source::Schedule, one ? MergeLookups::getScheduleIDFromTaskID(recordID) : -1);
        break;
    default:
        break;
    }
}

QString clsInsertFieldsInRTB::sqlFor(Source source, int key) const {
    const QString id = QString::number(key);
    switch (source) {
    case Source::Companies:
        return QStringLiteral("SELECT Companies.* From Companies WHERE Companies.CompanyID=") + id +
               QLatin1Char(';');
    case Source::Contacts:
        return QStringLiteral("SELECT Contacts.* From Contacts WHERE Contacts.ContactID=") + id +
               QLatin1Char(';');
    case Source::Firm:
        return QStringLiteral("SELECT AccountantFirmInfo.* From AccountantFirmInfo WHERE "
                              "AccountantFirmInfo.CompanyID=") +
               id + QLatin1Char(';');
    case Source::Business: {
        QString sql = MergeLookups::getMainBusinessSQLString(false, 2);
        const qsizetype order = sql.lastIndexOf(QStringLiteral("ORDER BY"));
        const QString condition = QStringLiteral("Companies.CompanyID=") + id + QLatin1Char(' ');
        const bool hasWhere = sql.contains(QStringLiteral(" WHERE "));
        sql.insert(order < 0 ? sql.size() : order,
                   (hasWhere ? QStringLiteral("AND ") : QStringLiteral("WHERE ")) + condition);
        return sql;
    }
    case Source::Schedule:
        return QStringLiteral("SELECT Schedule.* From Schedule WHERE Schedule.ScheduleID=") + id +
               QLatin1Char(';');
    case Source::Tasks:
        return QStringLiteral("SELECT Tasks.* From Tasks WHERE Tasks.TaskID=") + id +
               QLatin1Char(';');
    case Source::Appointments:
        return QStringLiteral(
                   "SELECT Appointments.* From Appointments WHERE Appointments.appointmentid=") +
               id + QLatin1Char(';');
    case Source::Dockets:
        return QStringLiteral("SELECT Dockets.* From Dockets WHERE Dockets.DocketID=") + id +
               QLatin1Char(';');
    }
    return QString();
}

namespace {

struct SourceTables {
    const char* keyColumn;
    std::vector<const char*> tables; // in the order of the SELECT list
};

SourceTables tablesOf(int source, int country) {
    switch (source) {
    case 0:
        return {"CompanyID", {"Companies"}};
    case 1:
        return {"ContactID", {"Contacts"}};
    case 2:
        return {"CompanyID", {"AccountantFirmInfo"}};
    case 3:
        if (country == 1) {
            return {"CompanyID",
                    {"AccountingServices", "ClientData", "ClientOptions", "Companies",
                     "CorpTaxInfo", "LawInfo", "OtherInfo", "SoftwareInfo", "WSIB_EHTInfo",
                     "CompaniesNotes"}};
        }
        return {"CompanyID",
                {"AccountingServices", "ClientData", "ClientOptions", "Companies", "ClientUSInfo",
                 "SoftwareInfo", "CompaniesNotes"}};
    case 4:
        return {"ScheduleID", {"Schedule"}};
    case 5:
        return {"TaskID", {"Tasks"}};
    case 6:
        return {"AppointmentID", {"Appointments"}};
    default:
        return {"DocketID", {"Dockets"}};
    }
}

} // namespace

QString clsInsertFieldsInRTB::sqlForColumns(Source source, int key,
                                            const QStringList& columns) const {
    const SourceTables info = tablesOf(int(source), app().currentCountry);
    const QString first = QString::fromLatin1(info.tables.front());
    const QString keyColumn = QString::fromLatin1(info.keyColumn);
    const QString keyTable = source == Source::Business ? QStringLiteral("Companies") : first;
    QStringList select{keyTable + QLatin1Char('.') + keyColumn};
    for (const QString& column : columns) {
        // The first table of the SELECT list that has the column, as a
        // whole-row read would find it.
        for (const char* table : info.tables) {
            const QString name = QString::fromLatin1(table);
            if (ClientDatabaseSchema::columnNames(name).contains(column, Qt::CaseInsensitive)) {
                select << name + QLatin1Char('.') + column;
                break;
            }
        }
    }
    QString whole = sqlFor(source, key);
    const qsizetype from = whole.indexOf(QStringLiteral(" From "), 0, Qt::CaseInsensitive);
    const qsizetype fromJoin = whole.indexOf(QStringLiteral("FROM ("), 0, Qt::CaseSensitive);
    const qsizetype at = source == Source::Business ? fromJoin : from + 1;
    return QStringLiteral("SELECT ") + select.join(QStringLiteral(", ")) + QLatin1Char(' ') +
           whole.mid(at);
}

void clsInsertFieldsInRTB::chooseColumns(const QStringList& names) {
    m_columns.clear();
    ++m_columnsGeneration;
    std::map<QString, Source> byTable = {{QStringLiteral("CompanyInfo"), Source::Companies},
                                         {QStringLiteral("ContactInfo"), Source::Contacts},
                                         {QStringLiteral("ClientInfo"), Source::Business},
                                         {QStringLiteral("AccountantInfo"), Source::Firm},
                                         {QStringLiteral("AppointInfo"), Source::Appointments},
                                         {QStringLiteral("DocketInfo"), Source::Dockets}};
    for (Source s : {Source::Companies, Source::Contacts, Source::Business, Source::Firm,
                     Source::Appointments, Source::Dockets}) {
        m_columns[s];
    }
    // What the computed and inherited values read besides their own column.
    m_columns[Source::Companies] << QStringLiteral("Province") << QStringLiteral("Address")
                                 << QStringLiteral("City") << QStringLiteral("PostalCode")
                                 << QStringLiteral("Country") << QStringLiteral("OfficeNumber")
                                 << QStringLiteral("FaxNumber");
    m_columns[Source::Contacts] << QStringLiteral("InheritCompanyInfo")
                                << QStringLiteral("FirstName") << QStringLiteral("LastName")
                                << QStringLiteral("DisplayName")
                                << QStringLiteral("SpouseFirstName")
                                << QStringLiteral("SpouseLastName");
    for (const QString& name : names) {
        for (int row = 1; row <= m_table.rowCount(); ++row) {
            if (m_table.value(row, EnglishName) != name) {
                continue;
            }
            const QString table = m_table.value(row, DataTable);
            QString column = m_table.value(row, DbColumn);
            column.remove(QStringLiteral("Abbreviated"), Qt::CaseInsensitive);
            const auto it = byTable.find(table);
            if (it != byTable.end()) {
                m_columns[it->second] << column;
            } else {
                // Tasks and schedules are read whole.
                m_columns.erase(Source::Schedule);
                m_columns.erase(Source::Tasks);
            }
        }
    }
    for (auto& [source, columns] : m_columns) {
        columns.removeDuplicates();
    }
}

bool clsInsertFieldsInRTB::seek(Source source, int key) {
    databaseControl* db = connectedDatabase();
    if (!db) {
        return false;
    }
    RecordsetState& st = state(source);
    if (!st.open) {
        st.open = true;
        st.singleID = -1;
    }
    const auto chosen = m_columnsActive ? m_columns.find(source) : m_columns.end();
    const quint64 columnsGeneration = chosen == m_columns.end() ? 0 : m_columnsGeneration;
    if (st.cachedKey == key && st.cachedColumns == columnsGeneration) {
        return st.found;
    }
    if (st.handle >= 0) {
        db->closeRecordset(st.handle);
        st.handle = -1;
    }
    st.cachedKey = key;
    st.cachedColumns = columnsGeneration;
    st.found = false;
    if (st.singleID >= 0 && st.singleID != key) {
        return false;
    }
    st.handle =
        db->openRecordset(chosen == m_columns.end() ? sqlFor(source, key)
                                                    : sqlForColumns(source, key, chosen->second));
    st.found = db->hasRecords(st.handle);
    return st.found;
}

QVariant clsInsertFieldsInRTB::column(Source source, const QString& name) {
    const RecordsetState& st = state(source);
    databaseControl* db = connectedDatabase();
    if (!db || !st.found || st.handle < 0 || !db->hasField(st.handle, name)) {
        return {};
    }
    return db->getField(st.handle, name);
}

void clsInsertFieldsInRTB::refreshSingle(Source source, int id) {
    int& cache = source == Source::Contacts    ? m_currentContactID
                 : source == Source::Companies ? m_currentCompanyID
                                               : m_currentAppointmentID;
    if (id == cache) {
        return;
    }
    const bool valid = source == Source::Contacts    ? MergeLookups::validContactID(id)
                       : source == Source::Companies ? MergeLookups::validCompanyID(id)
                                                     : MergeLookups::validAppointmentID(id);
    if (!valid) {
        return;
    }
    cache = id;
    RecordsetState& st = state(source);
    if (st.handle >= 0 && app().database) {
        app().database->closeRecordset(st.handle);
    }
    st = RecordsetState{};
    st.open = true;
    st.singleID = id;
}

bool clsInsertFieldsInRTB::resolveRow(const QString& englishName, QString& dbColumn,
                                      QString& dataTable) {
    if (m_table.find(englishName, EnglishName) < 0) {
        return false;
    }
    dbColumn = m_table.columnValue(DbColumn);
    dataTable = m_table.columnValue(DataTable);
    return true;
}

std::optional<clsInsertFieldsInRTB::Source>
clsInsertFieldsInRTB::sourceFor(const QString& dataTable, int companyID, int contactID,
                                int scheduleID, int firmID, int appointmentID, int docketID,
                                int taskID, int& key) {
    if (dataTable == QLatin1String("ContactInfo") && contactID >= 0) {
        refreshSingle(Source::Contacts, contactID);
        key = contactID;
        return Source::Contacts;
    }
    if (dataTable == QLatin1String("CompanyInfo") && companyID >= 0) {
        refreshSingle(Source::Companies, companyID);
        key = companyID;
        return Source::Companies;
    }
    if (dataTable == QLatin1String("ClientInfo") && companyID >= 0) {
        key = companyID;
        return Source::Business;
    }
    if (dataTable == QLatin1String("AccountantInfo") && firmID >= 0) {
        key = firmID;
        return Source::Firm;
    }
    if (dataTable == QLatin1String("AppointInfo") && appointmentID >= 0) {
        refreshSingle(Source::Appointments, appointmentID);
        key = appointmentID;
        return Source::Appointments;
    }
    if (dataTable == QLatin1String("RemittInfo") || dataTable == QLatin1String("TaskInfo")) {
        if (scheduleID >= 0) {
            key = scheduleID;
            return Source::Schedule;
        }
        if (taskID >= 0) {
            key = taskID;
            return Source::Tasks;
        }
        return std::nullopt;
    }
    if (dataTable == QLatin1String("DocketInfo") && docketID >= 0) {
        key = docketID;
        return Source::Dockets;
    }
    return std::nullopt;
}

QString clsInsertFieldsInRTB::finishValue(const QVariant& value, bool inRTF) const {
    if (stringControl::isBlank(value)) {
        return QString();
    }
    const QString text = valueText(value);
    if (stringControl::isBlank(text)) {
        return QString();
    }
    return inRTF ? convertToRTF(text) : text;
}

QString clsInsertFieldsInRTB::getDataField(const QString& englishName, int companyID, int contactID,
                                           int scheduleID, int firmID, int appointmentID,
                                           int docketID, int taskID, bool useSamples, bool inRTF) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-clsInsertFieldsInRTB-getDataField");
    QVariant value;
    if (useSamples) {
        if (m_table.find(englishName, EnglishName) >= 0) {
            value = m_table.columnValue(SampleValue);
        }
        return finishValue(value, inRTF);
    }
    if (!connectedDatabase()) {
        return QString();
    }
    QString dbColumn;
    QString dataTable;
    if (!resolveRow(englishName, dbColumn, dataTable)) {
        return QString();
    }
    int key = -1;
    const auto source = sourceFor(dataTable, companyID, contactID, scheduleID, firmID,
                                  appointmentID, docketID, taskID, key);
    if (!source || !seek(*source, key)) {
        return QString();
    }
    const QString upper = dbColumn.toUpper();
    if (*source == Source::Companies && upper == QLatin1String("ABBREVIATEDPROVINCE")) {
        value = getAbbreviatedProvince(
            valueText(column(Source::Companies, removeAbbreviated(dbColumn))));
    } else if (*source == Source::Contacts) {
        bool settled = false;
        if (VBFormat::readsAsTrue(column(Source::Contacts, QStringLiteral("InheritCompanyInfo")))) {
            for (const char* inherited : kInheritedColumns) {
                if (dbColumn.compare(QLatin1String(inherited), Qt::CaseInsensitive) != 0) {
                    continue;
                }
                const bool phone = upper.startsWith(QLatin1String("BUSINESSPHONE"));
                const QVariant own = column(Source::Contacts, dbColumn);
                if (phone && !stringControl::isBlank(own)) {
                    value = own;
                    settled = true;
                    break;
                }
                if (companyID < 0 || !seek(Source::Companies, companyID)) {
                    break;
                }
                const QString companyColumn =
                    upper == QLatin1String("BUSINESSPHONE_MAIN")  ? QStringLiteral("OfficeNumber")
                    : upper == QLatin1String("BUSINESSPHONE_FAX") ? QStringLiteral("FaxNumber")
                                                                  : dbColumn.mid(8);
                const QVariant company = column(Source::Companies, companyColumn);
                value = phone || !stringControl::isBlank(company) ? company : own;
                settled = true;
                break;
            }
        }
        if (!settled) {
            if (upper == QLatin1String("CONTACTANDSPOUSENAME")) {
                value = getContactAndSpouseName(contactID, false);
            } else if (upper == QLatin1String("ABBREVIATEDPROVINCE") ||
                       upper == QLatin1String("BUSINESSABBREVIATEDPROVINCE") ||
                       upper == QLatin1String("HOMEABBREVIATEDPROVINCE") ||
                       upper == QLatin1String("SPOUSEABBREVIATEDPROVINCE")) {
                seek(Source::Contacts, contactID);
                value = getAbbreviatedProvince(
                    valueText(column(Source::Contacts, removeAbbreviated(dbColumn))));
            } else {
                value = column(Source::Contacts, dbColumn);
            }
        }
    } else {
        value = column(*source, dbColumn);
    }
    return finishValue(value, inRTF);
}

QString clsInsertFieldsInRTB::getDataDateField(const QString& englishName, const QString& format,
                                               int companyID, int contactID, int scheduleID,
                                               int firmID, int appointmentID, int docketID,
                                               int taskID, bool useSamples, bool inRTF) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-clsInsertFieldsInRTB-getDataDateField");
    QString value;
    if (englishName.toUpper() == QLatin1String("TODAYS DATE")) {
        value = VBFormat::formatDate(app().clock.today(), format);
    } else if (useSamples) {
        if (m_table.find(englishName, EnglishName) >= 0) {
            const auto moment = VBFormat::toDateTime(m_table.columnValue(SampleValue));
            if (moment) {
                value = VBFormat::formatDate(*moment, format);
            }
        }
    } else if (connectedDatabase()) {
        QString dbColumn;
        QString dataTable;
        if (resolveRow(englishName, dbColumn, dataTable)) {
            int key = -1;
            const auto source = sourceFor(dataTable, companyID, contactID, scheduleID, firmID,
                                          appointmentID, docketID, taskID, key);
            if (source && seek(*source, key)) {
                const auto moment = VBFormat::toDateTime(column(*source, dbColumn));
                if (moment) {
                    value = VBFormat::formatDate(*moment, format);
                }
            }
        }
    }
    return finishValue(value, inRTF);
}

QString clsInsertFieldsInRTB::getContactAndSpouseName(int contactID, bool lastNameFirst) {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-clsInsertFieldsInRTB-getContactAndSpouseName");
    if (!connectedDatabase()) {
        return QString();
    }
    refreshSingle(Source::Contacts, contactID);
    if (!seek(Source::Contacts, contactID)) {
        return QString();
    }
    auto text = [this](const char* name) {
        const QVariant v = column(Source::Contacts, QString::fromLatin1(name));
        return stringControl::isBlank(v) ? QString() : valueText(v);
    };
    const QString first = text("FirstName");
    const QString last = text("LastName");
    const QString display = text("DisplayName");
    const QString spouseFirst = text("SpouseFirstName");
    const QString spouseLast = text("SpouseLastName");
    auto person = [&](const QString& f, const QString& l) {
        return lastNameFirst ? QString(l + QStringLiteral(", ") + f)
                             : QString(f + QLatin1Char(' ') + l);
    };
    const bool nameBlank = stringControl::isBlank(first) || stringControl::isBlank(last);

    if (stringControl::isBlank(spouseFirst)) {
        return nameBlank ? display : person(first, last);
    }
    if (!stringControl::isBlank(spouseLast) && spouseLast.compare(last, Qt::CaseInsensitive) == 0) {
        if (stringControl::isBlank(first)) {
            return display + QStringLiteral(" & ") + person(spouseFirst, spouseLast);
        }
        if (lastNameFirst) {
            return last + QStringLiteral(", ") + first + QStringLiteral(" & ") + spouseFirst;
        }
        return first + QStringLiteral(" & ") + spouseFirst + QLatin1Char(' ') + last;
    }
    const QString contactPart = nameBlank ? display : person(first, last);
    const QString spousePart =
        stringControl::isBlank(spouseLast) ? spouseFirst : person(spouseFirst, spouseLast);
    return contactPart + QStringLiteral(" & ") + spousePart;
}
