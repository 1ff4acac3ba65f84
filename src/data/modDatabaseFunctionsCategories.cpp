#include "data/DatabaseLookup.h"
#include "data/modDatabaseFunctions.h"

#include <QSet>

using namespace DatabaseLookup;

namespace {

struct SystemCategory {
    const char* code;
    const char* defaultName;
    const char* description;
};

const SystemCategory MainCategory{"Main", "Contact Ledger", "Quillmere Contact Ledger"};
const SystemCategory BusinessCategory{
    "BusinessCategory", "Quillmere Business clients",
    "This category contains all of the Quillmere Business clients."};
const SystemCategory FirmCategory{"FirmCategory", "Firm Staff",
                                  "This category contains all of your staff members."};
const SystemCategory PersonalCategory{"PersonalCategory", "Quillmere Personal clients",
                                      "This category contains all of the Quillmere Personal Tax "
                                      "clients.  Drag your contacts into this category to add "
                                      "them to your personal tax clients list."};

QString systemCategorySql(const SystemCategory& c) {
    return QStringLiteral("SELECT Categories.CategorySpecialCode, Categories.CategoryName FROM "
                          "Categories WHERE "
                          "CategorySpecialCode = '") +
           QLatin1String(c.code) + QStringLiteral("';");
}

// Creates or renames a system category; the rows are read with their key so
// that the ID can be returned.
int createSystemCategory(const SystemCategory& c, const QString& wantedName) {
    databaseControl* db = connected();
    if (!db)
        return -1;
    const QString name =
        (stringControl::isBlank(wantedName) ? QString::fromUtf8(c.defaultName) : wantedName)
            .left(30);
    const bool isMain = &c == &MainCategory;
    const int parent = isMain ? -1 : getMainCategoryNum();
    ScopedRecordset rs(
        *db,
        QStringLiteral("SELECT Categories.* FROM Categories WHERE CategorySpecialCode = '") +
            QLatin1String(c.code) + QStringLiteral("';"),
        true);
    if (rs.hasRecords()) {
        rs.update(QStringLiteral("CategoryName"), name);
        if (!isMain)
            rs.update(QStringLiteral("CategoryNum"),
                      parent == -1 ? QString() : QString::number(parent));
    } else {
        db->addNew(rs.handle());
        db->setField(rs.handle(), QStringLiteral("CategoryName"), name);
        db->setField(rs.handle(), QStringLiteral("CategoryDescription"),
                     QString::fromUtf8(c.description));
        db->setField(rs.handle(), QStringLiteral("CategorySpecialCode"),
                     QString::fromLatin1(c.code));
        if (!isMain && parent != -1)
            db->setField(rs.handle(), QStringLiteral("CategoryNum"), parent);
        db->saveRecord(rs.handle());
    }
    return toID(rs.field(QStringLiteral("CategoryID")));
}

int systemCategoryNum(const char* procedure, const SystemCategory& c,
                      int (*creator)(const QString&)) {
    ProcedureScope scope(app().errors, tag(procedure));
    databaseControl* db = connected();
    if (!db)
        return -1;
    {
        ScopedRecordset rs(
            *db, QStringLiteral("SELECT Categories.CategoryID, Categories.CategorySpecialCode FROM "
                                "Categories WHERE CategorySpecialCode = '") +
                     QLatin1String(c.code) + QStringLiteral("';"));
        if (rs.hasRecords())
            return toID(rs.field(QStringLiteral("CategoryID")));
    }
    return creator(QString());
}

QString systemCategoryName(const char* procedure, const SystemCategory& c,
                           int (*creator)(const QString&)) {
    ProcedureScope scope(app().errors, tag(procedure));
    databaseControl* db = connected();
    if (!db)
        return {};
    QVariant name;
    bool exists = false;
    {
        ScopedRecordset rs(*db, systemCategorySql(c));
        exists = rs.hasRecords();
        if (exists)
            name = rs.field(QStringLiteral("CategoryName"));
    }
    if (!exists)
        creator(QString());
    return stringControl::isBlank(name) ? QString::fromUtf8(c.defaultName) : name.toString();
}

// Opens DataVersion for writing and stores the year, adding the row when
// the table is empty.
void storeTaxYear(databaseControl& db, int year) {
    ScopedRecordset rs(db, QStringLiteral("SELECT DataVersion.CurrentTaxYear FROM DataVersion;"),
                       true);
    if (rs.hasRecords()) {
        rs.update(QStringLiteral("CurrentTaxYear"), QString::number(year));
    } else {
        db.addNew(rs.handle());
        db.setField(rs.handle(), QStringLiteral("CurrentTaxYear"), QString::number(year));
        db.saveRecord(rs.handle());
    }
}

} // namespace

int provisionalTaxYear() {
    const QDate today = app().clock.today();
    return today > QDate(today.year(), 4, 30) ? today.year() : today.year() - 1;
}

short getCurrentTaxYear() {
    ProcedureScope scope(app().errors, tag("getCurrentTaxYear"));
    const int provisional = provisionalTaxYear();
    databaseControl* db = connected();
    if (!db)
        return short(provisional);
    int year = provisional;
    {
        ScopedRecordset rs(
            *db, QStringLiteral("SELECT DataVersion.CurrentTaxYear FROM DataVersion;"), true);
        if (!rs.hasRecords()) {
            db->addNew(rs.handle());
            db->setField(rs.handle(), QStringLiteral("CurrentTaxYear"),
                         QString::number(provisional));
            db->saveRecord(rs.handle());
        } else {
            const QVariant stored = rs.field(QStringLiteral("CurrentTaxYear"));
            if (stringControl::isBlank(stored))
                rs.update(QStringLiteral("CurrentTaxYear"), QString::number(provisional));
            else
                year = int(stringControl::leadingNumber(stored.toString()));
        }
    }
    // Reading accepts up to 2199, storing only up to 2100: both limits are
    // those of the existing data and stay as they are. An out-of-range
    // value is returned once and replaced in the store.
    if (year < 1900 || year >= 2200)
        putCurrentTaxYear(provisional);
    return short(year);
}

void putCurrentTaxYear(int year) {
    ProcedureScope scope(app().errors, tag("putCurrentTaxYear"));
    databaseControl* db = connected();
    if (!db)
        return;
    if (year < 1900 || year > 2100)
        year = app().clock.today().year();
    storeTaxYear(*db, year);
}

bool isCategoryPersonalTaxYearCategory(int categoryID) {
    ProcedureScope scope(app().errors, tag("isCategoryPersonalTaxYearCategory"));
    databaseControl* db = connected();
    if (!db)
        return false;
    const QVariant code = firstValue(
        *db,
        QStringLiteral("SELECT Categories.CategoryID, Categories.CategorySpecialCode FROM "
                       "Categories WHERE CategoryID=") +
            QString::number(categoryID) + u';',
        QStringLiteral("CategorySpecialCode"));
    return toText(code).contains(QStringLiteral("TaxYear"));
}

int getPersonalTaxYearFromCategoryID(int categoryID) {
    ProcedureScope scope(app().errors, tag("getPersonalTaxYearFromCategoryID"));
    databaseControl* db = connected();
    if (!db)
        return 0;
    ScopedRecordset rs(*db, QStringLiteral("SELECT Categories.CategoryID, Categories.CategoryNum, "
                                           "Categories.CategorySpecialCode FROM Categories;"));
    int current = categoryID;
    for (int step = 0; step < 100; ++step) {
        if (!db->findRows(rs.handle(), QStringLiteral("CategoryID"), QString::number(current)))
            return 0;
        const QString code = toText(rs.field(QStringLiteral("CategorySpecialCode")));
        if (code.contains(QStringLiteral("TaxYear:")))
            return int(stringControl::leadingNumber(code.right(4)));
        const QVariant parent = rs.field(QStringLiteral("CategoryNum"));
        if (stringControl::isBlank(parent))
            return 0;
        current = toID(parent);
    }
    return 0;
}

bool doesThisCategoryBelongToCategory(int categoryID, int ancestorID) {
    ProcedureScope scope(app().errors, tag("doesThisCategoryBelongToCategory"));
    databaseControl* db = connected();
    // The host does not guard its category tree against loops; a walk that
    // meets a category twice is a broken tree, reported, never a hang.
    QSet<int> seen;
    for (int current = categoryID;;) {
        if (current == ancestorID)
            return true;
        if (!db)
            return false;
        if (seen.contains(current))
            throw QmError(QmError::DatabaseError,
                          QStringLiteral("The category tree loops: category %1 lies below itself.")
                              .arg(current));
        seen.insert(current);
        const auto parent = db->lookupValue(
            QStringLiteral("SELECT Categories.CategoryID, Categories.CategoryNum FROM Categories "
                           "WHERE CategoryID = ?;"),
            {current}, QStringLiteral("CategoryNum"));
        if (!parent || stringControl::isBlank(*parent) || toID(*parent) == current)
            return false;
        current = toID(*parent);
    }
}

bool doesThisContactBelongToPersonalTaxCategory(int contactID) {
    ProcedureScope scope(app().errors, tag("doesThisContactBelongToPersonalTaxCategory"));
    databaseControl* db = connected();
    if (!db)
        return false;
    const int personal = getPersonalTaxCategoryNum();
    bool belongs = false;
    ScopedRecordset rs(*db,
                       QStringLiteral("SELECT ContactLinks.ContactIDNum, ContactLinks.CategoryNum, "
                                      "ContactLinks.IsPersonalTaxCategory FROM ContactLinks WHERE "
                                      "ContactLinks.ContactIDNum = ") +
                           QString::number(contactID) + u';',
                       true);
    for (; !rs.isEOF(); rs.moveNext()) {
        const QVariant category = rs.field(QStringLiteral("CategoryNum"));
        if (stringControl::isBlank(category))
            continue;
        if (doesThisCategoryBelongToCategory(toID(category), personal)) {
            belongs = true;
            if (!rs.field(QStringLiteral("IsPersonalTaxCategory")).toBool())
                rs.update(QStringLiteral("IsPersonalTaxCategory"), QStringLiteral("True"));
        }
    }
    return belongs;
}

int getMainCategoryNum() {
    return systemCategoryNum("getMainCategoryNum", MainCategory, &createNewDefaultMainCategory);
}
QString getMainCategoryName() {
    return systemCategoryName("getMainCategoryName", MainCategory, &createNewDefaultMainCategory);
}
int getBusinessCategoryNum() {
    return systemCategoryNum("getBusinessCategoryNum", BusinessCategory,
                             &createNewDefaultBusinessCategory);
}
QString getBusinessCategoryName() {
    return systemCategoryName("getBusinessCategoryName", BusinessCategory,
                              &createNewDefaultBusinessCategory);
}
int getFirmCategoryNum() {
    return systemCategoryNum("getFirmCategoryNum", FirmCategory, &createNewFirmCategory);
}
QString getFirmCategoryName() {
    return systemCategoryName("getFirmCategoryName", FirmCategory, &createNewFirmCategory);
}
int getPersonalTaxCategoryNum() {
    return systemCategoryNum("getPersonalTaxCategoryNum", PersonalCategory,
                             &createNewPersonalTaxCategory);
}
QString getPersonalTaxCategoryName() {
    return systemCategoryName("getPersonalTaxCategoryName", PersonalCategory,
                              &createNewPersonalTaxCategory);
}

int createNewDefaultMainCategory(const QString& name) {
    ProcedureScope scope(app().errors, tag("createNewDefaultMainCategory"));
    const int mainID = createSystemCategory(MainCategory, name);
    databaseControl* db = connected();
    if (!db || mainID == -1)
        return mainID;
    // A root made late takes over the other system categories.
    ScopedRecordset rs(
        *db,
        QStringLiteral(
            "SELECT Categories.CategoryNum, Categories.CategorySpecialCode FROM Categories;"),
        true);
    for (; !rs.isEOF(); rs.moveNext()) {
        const QString code = toText(rs.field(QStringLiteral("CategorySpecialCode")));
        if (code == QLatin1String(BusinessCategory.code) ||
            code == QLatin1String(PersonalCategory.code) ||
            code == QLatin1String(FirmCategory.code)) {
            rs.update(QStringLiteral("CategoryNum"), QString::number(mainID));
        }
    }
    return mainID;
}

int createNewDefaultBusinessCategory(const QString& name) {
    ProcedureScope scope(app().errors, tag("createNewDefaultBusinessCategory"));
    return createSystemCategory(BusinessCategory, name);
}

int createNewFirmCategory(const QString& name) {
    ProcedureScope scope(app().errors, tag("createNewFirmCategory"));
    return createSystemCategory(FirmCategory, name);
}

int createNewPersonalTaxCategory(const QString& name) {
    ProcedureScope scope(app().errors, tag("createNewPersonalTaxCategory"));
    return createSystemCategory(PersonalCategory, name);
}
