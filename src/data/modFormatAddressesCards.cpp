#include "data/DatabaseLookup.h"
#include "data/modDatabaseFunctions.h"
#include "data/modFormatAddresses.h"

#include <array>

using namespace DatabaseLookup;

namespace {

const QString kCrLf = QStringLiteral("\r\n");
const QString kParLine = QStringLiteral("\\par\r\n");

QString cardTag(const char* procedure) {
    return QStringLiteral("QuillmerePad.exe-modFormatAddresses-") + QLatin1String(procedure);
}

QString cardOpening() {
    return QStringLiteral(
        R"({\rtf1\ansi\ansicpg1252\deff0\deflang4105{\fonttbl{\f0\fswiss\fcharset0 Arial;}})"
        R"(\viewkind4\uc1\pard\f0\fs16)");
}

struct CardRow {
    const char* column;
    const char* label;
};

constexpr std::array<CardRow, 5> kNameGroup = {{
    {"DisplayName", R"(\b\pard\fi-1450\li1450\ri0 Name:\b0  )"},
    {"BusinessName", R"(\b\pard\fi-1425\li1425\ri0 Company Name:\b0   )"},
    {"BusinessJobTitle", R"(\b\pard\fi-800\li800\ri0 Job Title:\b0   )"},
    {"BusinessDepartment", R"(\b\pard\fi-1050\li1050\ri0 Department:\b0   )"},
    {"BusinessOffice", R"(\b\pard\fi-600\li600\ri0 Office:\b0   )"},
}};

constexpr std::array<CardRow, 6> kPhoneGroup = {{
    {"BusinessPhone_Main", R"(\b\pard\fi-1100\li1100\ri0 Main Phone:\b0   )"},
    {"BusinessPhone_Cell", R"(\b\pard\fi-1100\li1100\ri0 Cell Phone:\b0     )"},
    {"BusinessPhone_Fax", R"(\b\pard\fi-1100\li1100\ri0 Fax:\b0  \tab         )"},
    {"BusinessPhone_Pager", R"(\b\pard\fi-1100\li1100\ri0 Pager:\b0  \tab         )"},
    {"BusinessEmail", R"(\b\pard\fi0\li0\ri0 Email:\b0  \tab         )"},
    {"BusinessWebSite", R"(\b Web Site:\b0        )"},
}};

// A card under construction: rows of a group, and the gap that follows a
// group of which any row was written.
class CardText {
public:
    CardText() : m_text(cardOpening()) {}

    // A value of the database, escaped for RTF; a blank value writes nothing.
    void row(const QString& label, const QVariant& value) {
        if (stringControl::isBlank(value))
            return;
        rawRow(label + convertToRTF(escapeRTFText(toText(value).trimmed())));
    }
    // A line whose text is already RTF.
    void rawRow(const QString& rtf) {
        m_text += rtf + kParLine;
        m_groupWritten = true;
    }
    void endGroup() {
        if (m_groupWritten)
            m_text += kParLine;
        m_groupWritten = false;
    }
    QString finish() { return m_text + u'}'; }

private:
    QString m_text;
    bool m_groupWritten = false;
};

// The custom-field labels; an empty table gets its one empty row first, as
// the host expects the row to exist once labels are asked for.
std::array<QString, 5> customLabels(ScopedRecordset& labels, databaseControl& db) {
    if (!labels.hasRecords()) {
        db.addNew(labels.handle());
        db.saveRecord(labels.handle());
    }
    std::array<QString, 5> result;
    for (int n = 1; n <= 5; ++n)
        result[size_t(n - 1)] = toText(labels.field(QStringLiteral("ContactLabel%1").arg(n)));
    return result;
}

} // namespace

QString saveNoDefaultComment() {
    return cardOpening() + QStringLiteral(R"(\b No Default Contact Selected.\b0  )") + kParLine +
           u'}';
}

QString saveContactBusinessRTF(int contactID, int employeeID, int companyID,
                               bool skipOtherCompanies) {
    ProcedureScope scope(app().errors, cardTag("saveContactBusinessRTF"));
    databaseControl* db = connected();
    if (!db)
        return {};

    const bool isEmployee = validEmployeeID(QString::number(employeeID));
    QString personSql;
    int personID = -1;
    if (isEmployee) {
        personID = employeeID;
        personSql =
            QStringLiteral(
                "SELECT AccountantEmployeeInfo.* FROM AccountantEmployeeInfo WHERE ContactID=") +
            QString::number(personID) + u';';
    } else if (validContactID(QString::number(contactID))) {
        personID = contactID;
        personSql = QStringLiteral("SELECT Contacts.* FROM Contacts WHERE ContactID=") +
                    QString::number(personID) + u';';
    } else {
        return {};
    }

    QString card;
    {
        ScopedRecordset person(*db, personSql, true);
        ScopedRecordset labels(
            *db, QStringLiteral("SELECT CustomAddressFields.* FROM CustomAddressFields;"), true);
        ScopedRecordset notes(*db,
                              QStringLiteral("SELECT ContactsNotes.* FROM ContactsNotes WHERE "
                                             "ContactNum=") +
                                  QString::number(personID) + u';',
                              true);
        if (!person.hasRecords())
            return {};

        CardText text;
        for (const CardRow& row : kNameGroup)
            text.row(QLatin1String(row.label), person.field(QLatin1String(row.column)));
        text.endGroup();

        if (!isEmployee) {
            const bool isDefault = validCompanyID(QString::number(companyID)) &&
                                   isContactDefaultContact(contactID, companyID);
            text.rawRow(isDefault ? QStringLiteral(R"(\b Default Contact:\b0  Yes)")
                                  : QStringLiteral(R"(\b Default Contact:\b0  No)"));
            text.endGroup();
        }

        for (const CardRow& row : kPhoneGroup)
            text.row(QLatin1String(row.label), person.field(QLatin1String(row.column)));
        text.endGroup();

        int addressCompany = companyID;
        const QString address = createBusinessContactAddress(
            contactID, true, employeeID, addressCompany, true, false, false, true);
        if (!stringControl::isBlank(address))
            text.rawRow(QStringLiteral(R"(\b\pard\fi0\li0\ri0 Address:\b0\par)") + kCrLf + address);
        text.endGroup();

        text.row(app().currentCountry == 1 ? QStringLiteral(R"(\b SIN:\b0  \tab\tab    )")
                                           : QStringLiteral(R"(\b SSN:\b0  \tab\tab    )"),
                 person.field(QStringLiteral("SocialInsuranceNumber")));
        text.row(QStringLiteral(R"(\b Employee Type:\b0  )"),
                 person.field(QStringLiteral("EmployeeType")));
        text.endGroup();

        const std::array<QString, 5> customNames = customLabels(labels, *db);
        for (int n = 1; n <= 5; ++n) {
            text.row(QStringLiteral(R"(\b )") + escapeRTFText(customNames[size_t(n - 1)]) +
                         QStringLiteral(R"(\b0  )"),
                     person.field(QStringLiteral("Custom%1").arg(n)));
        }
        text.endGroup();

        // Staff rows may lack a Notes column; then there are no notes.
        QVariant noteText;
        if (isEmployee) {
            if (db->hasField(person.handle(), QStringLiteral("Notes")))
                noteText = person.field(QStringLiteral("Notes"));
        } else if (notes.hasRecords()) {
            noteText = notes.field(QStringLiteral("Notes"));
        }
        if (!stringControl::isBlank(noteText)) {
            text.rawRow(QStringLiteral(R"(\b Notes:\b0\par)") + kCrLf +
                        convertToRTF(escapeRTFText(toText(noteText).trimmed())));
        }
        text.endGroup();
        card = text.finish();

        if (isEmployee) {
            person.update(QStringLiteral("BusinessNotes"), card);
        } else if (notes.hasRecords()) {
            notes.update(QStringLiteral("BusinessNotes"), card);
        } else {
            db->addNew(notes.handle());
            db->setField(notes.handle(), QStringLiteral("ContactNum"), personID);
            db->setField(notes.handle(), QStringLiteral("BusinessNotes"), card);
            db->saveRecord(notes.handle());
        }
    }

    if (!skipOtherCompanies)
        saveContactBusinessRTFForAllCompanies(contactID, companyID, card);
    return card;
}

void saveContactBusinessRTFForAllCompanies(int contactID, int companyID, const QString& card) {
    ProcedureScope scope(app().errors, cardTag("saveContactBusinessRTFForAllCompanies"));
    databaseControl* db = connected();
    if (!db)
        return;
    ScopedRecordset links(
        *db,
        QStringLiteral("SELECT ContactLinks.ContactIDNum, ContactLinks.CompanyNum, "
                       "ContactLinks.DefaultContact FROM ContactLinks WHERE "
                       "ContactLinks.ContactIDNum = ") +
            QString::number(contactID) + u';',
        true);
    for (; !links.isEOF(); links.moveNext()) {
        const QVariant company = links.field(QStringLiteral("CompanyNum"));
        if (stringControl::isBlank(company) || !validCompanyID(QString::number(toID(company))) ||
            !links.field(QStringLiteral("DefaultContact")).toBool())
            continue;
        const int linkedCompany = toID(company);
        // The company's own notes row, by its key: a repair of every company
        // of a practice must not read the whole table each time.
        ScopedRecordset notes(
            *db,
            QStringLiteral("SELECT CompaniesNotes.CompanyNum, CompaniesNotes.ContactNotes FROM "
                           "CompaniesNotes WHERE CompaniesNotes.CompanyNum = ") +
                QString::number(linkedCompany) + u';',
            true);
        if (!notes.hasRecords())
            continue;
        // Each company's card states its own "Default Contact" line.
        const QString companyCard =
            linkedCompany == companyID ? card
                                       : saveContactBusinessRTF(contactID, -1, linkedCompany, true);
        notes.update(QStringLiteral("ContactNotes"), companyCard);
    }
}

void saveCompanyContactRTF(int companyID, int contactID) {
    ProcedureScope scope(app().errors, cardTag("saveCompanyContactRTF"));
    databaseControl* db = connected();
    if (!db || !validCompanyID(QString::number(companyID)))
        return;
    ScopedRecordset notes(
        *db,
        QStringLiteral("SELECT CompaniesNotes.CompanyNum, CompaniesNotes.ContactNotes FROM "
                       "CompaniesNotes WHERE CompaniesNotes.CompanyNum = ") +
            QString::number(companyID) + u';',
        true);
    if (!notes.hasRecords())
        return;
    if (contactID >= 0) {
        const QString card = saveContactBusinessRTF(contactID, -1, companyID, false);
        notes.update(QStringLiteral("ContactNotes"), card);
    } else if (contactID == -1) {
        notes.update(QStringLiteral("ContactNotes"), saveNoDefaultComment());
    }
}

namespace {

class AddressCardWriter final : public ContactCardWriter {
public:
    void saveContactBusinessRTF(int contactID, int employeeID, int companyID,
                                bool skipOtherCompanies) override {
        ::saveContactBusinessRTF(contactID, employeeID, companyID, skipOtherCompanies);
    }
    void saveCompanyContactRTF(int companyID, int contactID) override {
        ::saveCompanyContactRTF(companyID, contactID);
    }
};

AddressCardWriter& addressCardWriter() {
    static AddressCardWriter writer;
    return writer;
}

} // namespace

ScopedContactCardWriter::ScopedContactCardWriter() : m_previous(contactCardWriter()) {
    setContactCardWriter(&addressCardWriter());
}

ScopedContactCardWriter::~ScopedContactCardWriter() {
    setContactCardWriter(m_previous);
}
