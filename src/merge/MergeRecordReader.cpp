#include "merge/MergeRecordReader.h"

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "merge/FieldCatalogueRows.h"
#include "merge/MergeLookups.h"
#include "platform/FieldTable.h"
#include "platform/errorClass.h"
#include "platform/text/VBFormat.h"
#include "platform/text/stringControl.h"

#include <algorithm>

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

namespace {

using Source = MergeRecordReader::Source;

// Which record ID a source is keyed on.
enum class Key { Company, Contact, Firm, Appointment, Docket, ScheduleOrTask };

// The one map from a catalogue row's data table to where it is read.
struct DataTableSource {
    const char* dataTable;
    Source source;
    Key key;
    bool narrowable; // read with the chosen columns only; else whole rows
};

const DataTableSource kDataTables[] = {
    {"ContactInfo", Source::Contacts, Key::Contact, true},
    {"CompanyInfo", Source::Companies, Key::Company, true},
    {"ClientInfo", Source::Business, Key::Company, true},
    {"AccountantInfo", Source::Firm, Key::Firm, true},
    {"AppointInfo", Source::Appointments, Key::Appointment, true},
    {"RemittInfo", Source::Schedule, Key::ScheduleOrTask, false},
    {"TaskInfo", Source::Schedule, Key::ScheduleOrTask, false},
    {"DocketInfo", Source::Dockets, Key::Docket, true},
};

const DataTableSource* dataTableSource(const QString& dataTable) {
    for (const DataTableSource& entry : kDataTables) {
        if (dataTable == QLatin1String(entry.dataTable)) {
            return &entry;
        }
    }
    return nullptr;
}

// The tables a source's row is made of, in the order of its SELECT list.
// Of CompaniesNotes the client read selects two columns only.
struct SourceTables {
    const char* keyColumn;
    std::vector<const char*> tables;
};

SourceTables tablesOf(Source source, int country) {
    switch (source) {
    case Source::Companies:
        return {"CompanyID", {"Companies"}};
    case Source::Contacts:
        return {"ContactID", {"Contacts"}};
    case Source::Firm:
        return {"CompanyID", {"AccountantFirmInfo"}};
    case Source::Business:
        if (country == 1) {
            return {"CompanyID",
                    {"AccountingServices", "ClientData", "ClientOptions", "Companies",
                     "CorpTaxInfo", "LawInfo", "OtherInfo", "SoftwareInfo", "WSIB_EHTInfo",
                     "CompaniesNotes"}};
        }
        return {"CompanyID",
                {"AccountingServices", "ClientData", "ClientOptions", "Companies", "ClientUSInfo",
                 "SoftwareInfo", "CompaniesNotes"}};
    case Source::Schedule:
        return {"ScheduleID", {"Schedule"}};
    case Source::Tasks:
        return {"TaskID", {"Tasks"}};
    case Source::Appointments:
        return {"AppointmentID", {"Appointments"}};
    case Source::Dockets:
        break;
    }
    return {"DocketID", {"Dockets"}};
}

// How each table of the business row joins the others.
QString businessJoinCondition(const QString& table) {
    if (table == QLatin1String("ClientData")) {
        return QStringLiteral("Companies.CompanyID = ClientData.CompanyIDNum");
    }
    if (table == QLatin1String("CompaniesNotes")) {
        return QStringLiteral("Companies.CompanyID = CompaniesNotes.CompanyNum");
    }
    QString key = table;
    if (key == QLatin1String("AccountingServices")) {
        key = QStringLiteral("AccountingService");
    } else if (key == QLatin1String("ClientOptions")) {
        key = QStringLiteral("ClientOption");
    }
    return QStringLiteral("ClientData.ClientDataID = ") + table + QLatin1Char('.') + key +
           QStringLiteral("ID");
}

const QStringList& notesColumns() {
    static const QStringList columns = {QStringLiteral("BusinessNotes"),
                                        QStringLiteral("ContactNotes")};
    return columns;
}

// What the computed and inherited values read besides their own column.
const QStringList& companyHelperColumns() {
    static const QStringList columns = {QStringLiteral("Province"), QStringLiteral("Address"),
                                        QStringLiteral("City"),     QStringLiteral("PostalCode"),
                                        QStringLiteral("Country"),  QStringLiteral("OfficeNumber"),
                                        QStringLiteral("FaxNumber")};
    return columns;
}

const QStringList& contactHelperColumns() {
    static const QStringList columns = {
        QStringLiteral("InheritCompanyInfo"), QStringLiteral("FirstName"),
        QStringLiteral("LastName"),           QStringLiteral("DisplayName"),
        QStringLiteral("SpouseFirstName"),    QStringLiteral("SpouseLastName")};
    return columns;
}

} // namespace

MergeRecordReader::MergeRecordReader(FieldTable& catalogue) : m_catalogue(catalogue) {}

MergeRecordReader::~MergeRecordReader() {
    try {
        closeDataRecordsets();
    } catch (...) {
        // Nothing to tell at the end of the object's life.
    }
}

QString MergeRecordReader::getAbbreviatedProvince(const QString& province) {
    const ProvinceEntry* entry = provinceEntry(province);
    return entry ? QString::fromLatin1(entry->abbreviation) : province;
}

QString MergeRecordReader::getFullProvinceString(const QString& province) {
    const ProvinceEntry* entry = provinceEntry(province);
    return entry ? QString::fromLatin1(entry->fullName) : province;
}

QString MergeRecordReader::convertToRTF(const QString& value) const {
    QString out = value;
    if (!m_lineBreaksAsParagraphs) {
        out.replace(QStringLiteral("\r\n"), QStringLiteral(", \r\n"));
    } else if (out.contains(QStringLiteral("\r\n"))) {
        out.replace(QStringLiteral("\r\n"), QStringLiteral("\\par \r\n"));
    }
    return out;
}

void MergeRecordReader::closeDataRecordsets() {
    databaseControl* db = app().database;
    for (auto& [source, st] : m_sets) {
        if (st.handle >= 0 && db) {
            db->closeRecordset(st.handle);
        }
        st = RecordsetState{};
    }
}

void MergeRecordReader::initializeDataRecordsets(InformationKind mergeType, bool openAll,
                                                 int recordID, bool openBusiness,
                                                 bool openCompanies, bool openContacts,
                                                 bool openFirm, int companyID, int contactID) {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-clsInsertFieldsInRTB-initializeDataRecordsets");
    m_currentCompanyID = companyID;
    m_currentContactID = contactID;
    closeDataRecordsets();
    if (!connectedDatabase()) {
        return;
    }
    // The sets are opened on their first read: a record reads one row of
    // each source through a keyed query instead of materialising a table.
    auto open = [this](Source source, int single) {
        RecordsetState& st = m_sets[source];
        st.open = true;
        st.singleID = single;
    };
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
    case InformationKind::Tasks:
        open(Source::Schedule, one ? recordID : -1);
        open(Source::Tasks, one ? MergeLookups::getTaskIDFromScheduleID(recordID) : -1);
        break;
    case InformationKind::Appointments:
        open(Source::Appointments, one ? recordID : -1);
        break;
    case InformationKind::Dockets:
        open(Source::Dockets, one ? recordID : -1);
        break;
    case InformationKind::WorkListTasks:
        open(Source::Tasks, one ? recordID : -1);
        open(Source::Schedule, one ? MergeLookups::getScheduleIDFromTaskID(recordID) : -1);
        break;
    default:
        break;
    }
}

QString MergeRecordReader::sqlFor(Source source, int key) const {
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

const QStringList& MergeRecordReader::tableColumns(databaseControl& db, const QString& table) {
    if (m_columnsOf != &db || m_columnsPath != db.databasePath()) {
        m_tableColumns.clear();
        m_columnsOf = &db;
        m_columnsPath = db.databasePath();
    }
    auto it = m_tableColumns.find(table);
    if (it == m_tableColumns.end()) {
        QStringList names;
        // A table the practice does not have lends no columns; the read of
        // the whole row reports it.
        try {
            const int rs =
                db.openRecordset(QStringLiteral("SELECT ") + table + QStringLiteral(".* FROM ") +
                                 table + QStringLiteral(" WHERE 1=0;"));
            names = db.fieldNames(rs);
            db.closeRecordset(rs);
        } catch (const QmError&) {
            names.clear();
        }
        it = m_tableColumns.emplace(table, std::move(names)).first;
    }
    return it->second;
}

bool MergeRecordReader::hasAllTables(Source source) {
    databaseControl* db = connectedDatabase();
    const SourceTables info = tablesOf(source, app().currentCountry);
    return std::all_of(info.tables.begin(), info.tables.end(), [&](const char* table) {
        return !tableColumns(*db, QString::fromLatin1(table)).isEmpty();
    });
}

QString MergeRecordReader::businessFromExisting() {
    // The usual inner joins over the tables the practice has: a satellite it
    // lacks lends no columns instead of failing every client's read.
    databaseControl* db = connectedDatabase();
    const SourceTables info = tablesOf(Source::Business, app().currentCountry);
    const auto exists = [&](const QString& table) { return !tableColumns(*db, table).isEmpty(); };
    const bool clientData = exists(QStringLiteral("ClientData"));
    // ClientData first: the other satellites join through it.
    QString from = QStringLiteral("FROM Companies");
    if (clientData) {
        from += QStringLiteral(" INNER JOIN ClientData ON ") +
                businessJoinCondition(QStringLiteral("ClientData"));
    }
    for (const char* name : info.tables) {
        const QString table = QString::fromLatin1(name);
        const bool throughClientData = table != QLatin1String("CompaniesNotes");
        if (table == QLatin1String("Companies") || table == QLatin1String("ClientData") ||
            !exists(table) || (throughClientData && !clientData)) {
            continue;
        }
        from += QStringLiteral(" INNER JOIN ") + table + QStringLiteral(" ON ") +
                businessJoinCondition(table);
    }
    return from + QStringLiteral(" WHERE Companies.CompanyID=");
}

QString MergeRecordReader::businessSqlFromExisting(int key, const QStringList* columns) {
    databaseControl* db = connectedDatabase();
    const SourceTables info = tablesOf(Source::Business, app().currentCountry);
    QStringList select{QStringLiteral("Companies.CompanyID")};
    if (!columns) {
        select.clear();
    }
    for (const char* name : info.tables) {
        const QString table = QString::fromLatin1(name);
        const bool notes = table == QLatin1String("CompaniesNotes");
        const QStringList& has = tableColumns(*db, table);
        if (has.isEmpty()) {
            continue;
        }
        if (!columns) {
            if (notes) {
                for (const QString& column : notesColumns()) {
                    select << table + QLatin1Char('.') + column;
                }
            } else {
                select << table + QStringLiteral(".*");
            }
        }
    }
    if (columns) {
        for (const QString& column : *columns) {
            for (const char* name : info.tables) {
                const QString table = QString::fromLatin1(name);
                const bool notes = table == QLatin1String("CompaniesNotes");
                const QStringList& has = notes && !tableColumns(*db, table).isEmpty()
                                             ? notesColumns()
                                             : tableColumns(*db, table);
                if (has.contains(column, Qt::CaseInsensitive)) {
                    select << table + QLatin1Char('.') + column;
                    break;
                }
            }
        }
    }
    return QStringLiteral("SELECT ") + select.join(QStringLiteral(", ")) + QLatin1Char(' ') +
           businessFromExisting() + QString::number(key) + QLatin1Char(';');
}

QString MergeRecordReader::sqlForColumns(Source source, int key, const QStringList& columns) {
    const SourceTables info = tablesOf(source, app().currentCountry);
    const QString first = QString::fromLatin1(info.tables.front());
    const QString keyColumn = QString::fromLatin1(info.keyColumn);
    const QString keyTable = source == Source::Business ? QStringLiteral("Companies") : first;
    databaseControl* db = connectedDatabase();
    QStringList select{keyTable + QLatin1Char('.') + keyColumn};
    for (const QString& column : columns) {
        // The first table of the SELECT list that has the column, as a
        // whole-row read would find it. A column in none is left out and
        // reported when it is read.
        for (const char* table : info.tables) {
            const QString name = QString::fromLatin1(table);
            const bool notes =
                source == Source::Business && name == QLatin1String("CompaniesNotes");
            const QStringList& has = notes ? notesColumns() : tableColumns(*db, name);
            if (has.contains(column, Qt::CaseInsensitive)) {
                select << name + QLatin1Char('.') + column;
                break;
            }
        }
    }
    const QString whole = sqlFor(source, key);
    const qsizetype from = whole.indexOf(QStringLiteral(" From "), 0, Qt::CaseInsensitive);
    const qsizetype fromJoin = whole.indexOf(QStringLiteral("FROM ("), 0, Qt::CaseSensitive);
    const qsizetype at = source == Source::Business ? fromJoin : from + 1;
    return QStringLiteral("SELECT ") + select.join(QStringLiteral(", ")) + QLatin1Char(' ') +
           whole.mid(at);
}

MergeRecordReader::Computation MergeRecordReader::computationOf(Source source,
                                                                const QString& column) {
    const QString upper = column.toUpper();
    if (source == Source::Companies) {
        return upper == QLatin1String("ABBREVIATEDPROVINCE") ? Computation::AbbreviatedProvince
                                                             : Computation::Plain;
    }
    if (source != Source::Contacts) {
        return Computation::Plain;
    }
    for (const char* inherited : kInheritedColumns) {
        if (column.compare(QLatin1String(inherited), Qt::CaseInsensitive) == 0) {
            return Computation::Inherited;
        }
    }
    if (upper == QLatin1String("CONTACTANDSPOUSENAME")) {
        return Computation::ContactAndSpouseName;
    }
    if (upper == QLatin1String("ABBREVIATEDPROVINCE") ||
        upper == QLatin1String("BUSINESSABBREVIATEDPROVINCE") ||
        upper == QLatin1String("HOMEABBREVIATEDPROVINCE") ||
        upper == QLatin1String("SPOUSEABBREVIATEDPROVINCE")) {
        return Computation::AbbreviatedProvince;
    }
    return Computation::Plain;
}

MergeRecordReader::ColumnChoice MergeRecordReader::chooseColumns(const QStringList& names) {
    ColumnChoice choice;
    choice.id = ++m_choices;
    for (const DataTableSource& entry : kDataTables) {
        if (entry.narrowable) {
            choice.columns[entry.source];
        }
    }
    choice.columns[Source::Companies] << companyHelperColumns();
    choice.columns[Source::Contacts] << contactHelperColumns();
    for (const QString& name : names) {
        // Every row of the name: a label row may share it with a fixed one.
        for (int row = 1; row <= m_catalogue.rowCount(); ++row) {
            if (m_catalogue.value(row, FieldCatalogue::EnglishName) != name) {
                continue;
            }
            const DataTableSource* entry =
                dataTableSource(m_catalogue.value(row, FieldCatalogue::DataTable));
            if (entry && entry->narrowable) {
                choice.columns[entry->source]
                    << removeAbbreviated(m_catalogue.value(row, FieldCatalogue::DbColumn));
            }
        }
    }
    for (auto& [source, columns] : choice.columns) {
        columns.removeDuplicates();
    }
    return choice;
}

bool MergeRecordReader::seek(Source source, int key, const ColumnChoice* columns) {
    databaseControl* db = connectedDatabase();
    if (!db) {
        return false;
    }
    RecordsetState& st = m_sets[source];
    if (!st.open) {
        st.open = true;
        st.singleID = -1;
    }
    const auto chosen =
        columns ? columns->columns.find(source) : std::map<Source, QStringList>::const_iterator{};
    const bool narrowed = columns && chosen != columns->columns.end();
    const quint64 choiceID = narrowed ? columns->id : 0;
    if (st.cachedKey == key && st.cachedColumns == choiceID) {
        return st.found;
    }
    if (st.handle >= 0) {
        db->closeRecordset(st.handle);
        st.handle = -1;
    }
    st.cachedKey = key;
    st.cachedColumns = choiceID;
    st.found = false;
    if (st.singleID >= 0 && st.singleID != key) {
        return false;
    }
    QString sql;
    if (source == Source::Business && !hasAllTables(source)) {
        sql = businessSqlFromExisting(key, narrowed ? &chosen->second : nullptr);
    } else {
        sql = narrowed ? sqlForColumns(source, key, chosen->second) : sqlFor(source, key);
    }
    st.handle = db->openRecordset(sql);
    st.found = db->hasRecords(st.handle);
    return st.found;
}

QVariant MergeRecordReader::column(Source source, const QString& name, const QString& field) {
    const RecordsetState& st = m_sets[source];
    databaseControl* db = connectedDatabase();
    if (!db || !st.found || st.handle < 0) {
        return {};
    }
    if (!db->hasField(st.handle, name)) {
        const QString entry = field + QStringLiteral(" (column ") + name + QLatin1Char(')');
        if (!m_missingColumns.contains(entry)) {
            m_missingColumns << entry;
        }
        return {};
    }
    return db->getField(st.handle, name);
}

void MergeRecordReader::refreshSingle(Source source, int id) {
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
    RecordsetState& st = m_sets[source];
    if (st.handle >= 0 && app().database) {
        app().database->closeRecordset(st.handle);
    }
    st = RecordsetState{};
    st.open = true;
    st.singleID = id;
}

std::optional<MergeRecordReader::FieldSource> MergeRecordReader::resolve(const QString& englishName,
                                                                         QString* dataTable) {
    FieldTable& table = m_catalogue;
    const int row = table.find(englishName, FieldCatalogue::EnglishName);
    if (row < 0) {
        return std::nullopt;
    }
    const QString data = table.value(row, FieldCatalogue::DataTable);
    if (dataTable) {
        *dataTable = data;
    }
    const DataTableSource* entry = dataTableSource(data);
    if (!entry) {
        return std::nullopt;
    }
    FieldSource field{entry->source, table.value(row, FieldCatalogue::DbColumn)};
    field.computation = computationOf(entry->source, field.column);
    return field;
}

std::optional<MergeRecordReader::Source>
MergeRecordReader::sourceFor(const QString& dataTable, const MergeRecordIDs& ids, int& key) {
    const DataTableSource* entry = dataTableSource(dataTable);
    if (!entry) {
        return std::nullopt;
    }
    if (entry->key == Key::ScheduleOrTask) {
        // A task letter may know its schedule, its task, or both.
        if (ids.schedule >= 0) {
            key = ids.schedule;
            return Source::Schedule;
        }
        if (ids.task >= 0) {
            key = ids.task;
            return Source::Tasks;
        }
        return std::nullopt;
    }
    const int id = entry->key == Key::Contact       ? ids.contact
                   : entry->key == Key::Company     ? ids.company
                   : entry->key == Key::Firm        ? ids.firm
                   : entry->key == Key::Appointment ? ids.appointment
                                                    : ids.docket;
    if (id < 0) {
        return std::nullopt;
    }
    if (entry->source == Source::Contacts || entry->source == Source::Companies ||
        entry->source == Source::Appointments) {
        refreshSingle(entry->source, id);
    }
    key = id;
    return entry->source;
}

QString MergeRecordReader::finishValue(const QVariant& value, bool inRTF) const {
    if (stringControl::isBlank(value)) {
        return QString();
    }
    const QString text = valueText(value);
    if (stringControl::isBlank(text)) {
        return QString();
    }
    return inRTF ? convertToRTF(text) : text;
}

QVariant MergeRecordReader::plainValue(const FieldSource& field, const QString& englishName,
                                       const MergeRecordIDs& ids, const ColumnChoice* columns) {
    const QString& dbColumn = field.column;
    switch (field.computation) {
    case Computation::Plain:
        return column(field.source, dbColumn, englishName);
    case Computation::ContactAndSpouseName:
        return getContactAndSpouseName(ids.contact, false, columns);
    case Computation::AbbreviatedProvince:
        if (field.source == Source::Contacts) {
            seek(Source::Contacts, ids.contact, columns);
        }
        return getAbbreviatedProvince(
            valueText(column(field.source, removeAbbreviated(dbColumn), englishName)));
    case Computation::Inherited:
        break;
    }
    // A contact that inherits its company's details: phones prefer the
    // contact's own, addresses the company's.
    if (!VBFormat::readsAsTrue(
            column(Source::Contacts, QStringLiteral("InheritCompanyInfo"), englishName))) {
        return column(Source::Contacts, dbColumn, englishName);
    }
    const QString upper = dbColumn.toUpper();
    const bool phone = upper.startsWith(QLatin1String("BUSINESSPHONE"));
    const QVariant own = column(Source::Contacts, dbColumn, englishName);
    if (phone && !stringControl::isBlank(own)) {
        return own;
    }
    if (ids.company < 0 || !seek(Source::Companies, ids.company, columns)) {
        return own;
    }
    const QString companyColumn =
        upper == QLatin1String("BUSINESSPHONE_MAIN")  ? QStringLiteral("OfficeNumber")
        : upper == QLatin1String("BUSINESSPHONE_FAX") ? QStringLiteral("FaxNumber")
                                                      : dbColumn.mid(8);
    const QVariant company = column(Source::Companies, companyColumn, englishName);
    return phone || !stringControl::isBlank(company) ? company : own;
}

QString MergeRecordReader::getDataField(const QString& englishName, const MergeRecordIDs& ids,
                                        bool useSamples, bool inRTF, const ColumnChoice* columns) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-clsInsertFieldsInRTB-getDataField");
    if (useSamples) {
        QVariant value;
        FieldTable& table = m_catalogue;
        if (table.find(englishName, FieldCatalogue::EnglishName) >= 0) {
            value = table.columnValue(FieldCatalogue::SampleValue);
        }
        return finishValue(value, inRTF);
    }
    if (!connectedDatabase()) {
        return QString();
    }
    QString dataTable;
    const auto field = resolve(englishName, &dataTable);
    if (!field) {
        return QString();
    }
    int key = -1;
    const auto source = sourceFor(dataTable, ids, key);
    if (!source || !seek(*source, key, columns)) {
        return QString();
    }
    return finishValue(plainValue(*field, englishName, ids, columns), inRTF);
}

QString MergeRecordReader::getDataDateField(const QString& englishName, const QString& format,
                                            const MergeRecordIDs& ids, bool useSamples, bool inRTF,
                                            const ColumnChoice* columns) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-clsInsertFieldsInRTB-getDataDateField");
    QString value;
    if (englishName.toUpper() == QLatin1String("TODAYS DATE")) {
        value = VBFormat::formatDate(app().clock.today(), format);
    } else if (useSamples) {
        FieldTable& table = m_catalogue;
        if (table.find(englishName, FieldCatalogue::EnglishName) >= 0) {
            const auto moment =
                VBFormat::toDateTime(table.columnValue(FieldCatalogue::SampleValue));
            if (moment) {
                value = VBFormat::formatDate(*moment, format);
            }
        }
    } else if (connectedDatabase()) {
        QString dataTable;
        const auto field = resolve(englishName, &dataTable);
        int key = -1;
        const auto source = field ? sourceFor(dataTable, ids, key) : std::nullopt;
        if (source && seek(*source, key, columns)) {
            const auto moment = VBFormat::toDateTime(column(*source, field->column, englishName));
            if (moment) {
                value = VBFormat::formatDate(*moment, format);
            }
        }
    }
    return finishValue(value, inRTF);
}

QString MergeRecordReader::getContactAndSpouseName(int contactID, bool lastNameFirst,
                                                   const ColumnChoice* columns) {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-clsInsertFieldsInRTB-getContactAndSpouseName");
    if (!connectedDatabase()) {
        return QString();
    }
    refreshSingle(Source::Contacts, contactID);
    if (!seek(Source::Contacts, contactID, columns)) {
        return QString();
    }
    auto text = [this](const char* name) {
        const QVariant v = column(Source::Contacts, QString::fromLatin1(name),
                                  QStringLiteral("Contact & Spouse Name"));
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
