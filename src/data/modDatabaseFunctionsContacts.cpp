#include "data/ContactCardWriter.h"
#include "data/DatabaseLookup.h"
#include "data/modDatabaseFunctions.h"

#include <QCursor>
#include <QGuiApplication>
#include <QLocale>
#include <array>

using namespace DatabaseLookup;

namespace {

ContactCardWriter* g_cardWriter = nullptr;

QString companyLinksSql(int companyID) {
    return QStringLiteral("SELECT ContactLinks.CompanyNum, ContactLinks.ContactIDNum, "
                          "ContactLinks.DefaultContact FROM "
                          "ContactLinks WHERE ContactLinks.CompanyNum = ") +
           QString::number(companyID) + u';';
}

// The hourglass while a long repair runs; nothing without a GUI application.
class BusyCursor {
public:
    BusyCursor()
        : m_active(qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr) {
        if (m_active)
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    }
    ~BusyCursor() {
        if (m_active)
            QGuiApplication::restoreOverrideCursor();
    }
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;

private:
    bool m_active;
};

} // namespace

ContactCardWriter* contactCardWriter() {
    return g_cardWriter;
}
void setContactCardWriter(ContactCardWriter* writer) {
    g_cardWriter = writer;
}

bool isContactDefaultContact(int contactID, int companyID) {
    ProcedureScope scope(app().errors, tag("isContactDefaultContact"));
    databaseControl* db = connected();
    if (!db)
        return false;
    const QVariant v = firstValue(
        *db,
        QStringLiteral("SELECT ContactLinks.ContactIDNum, ContactLinks.CompanyNum, "
                       "ContactLinks.DefaultContact FROM ContactLinks WHERE CompanyNum=") +
            QString::number(companyID) + QStringLiteral(" AND ContactLinks.ContactIDNum = ") +
            QString::number(contactID) + u';',
        QStringLiteral("DefaultContact"));
    return v.toBool();
}

int getDefaultContactIDFromCompanyID(int companyID) {
    ProcedureScope scope(app().errors, tag("getDefaultContactIDFromCompanyID"));
    databaseControl* db = connected();
    if (!db)
        return -1;
    int result = -1;
    bool rowsExist = false;
    {
        ScopedRecordset rs(*db, companyLinksSql(companyID));
        rowsExist = rs.hasRecords();
        for (; !rs.isEOF(); rs.moveNext()) {
            const QVariant contact = rs.field(QStringLiteral("ContactIDNum"));
            if (!stringControl::isBlank(contact) &&
                rs.field(QStringLiteral("DefaultContact")).toBool()) {
                result = toID(contact);
                break;
            }
        }
    }
    if (rowsExist && !validContactID(QString::number(result)))
        result = checkForDefaultContact(companyID, true);
    return result;
}

int checkForDefaultContact(int companyID, bool repair) {
    ProcedureScope scope(app().errors, tag("checkForDefaultContact"));
    databaseControl* db = connected();
    if (!db)
        return -1;
    int result = -1;
    int firstContact = -1;
    {
        ScopedRecordset rs(*db, companyLinksSql(companyID));
        if (!rs.hasRecords()) {
            // A read-only practice is read as it stands; the repair waits
            // for a connection that may write.
            if (!db->isReadOnly())
                setNoContactAsDefault(companyID);
            return -1;
        }
        firstContact = toID(rs.field(QStringLiteral("ContactIDNum")));
        for (; !rs.isEOF(); rs.moveNext()) {
            if (rs.field(QStringLiteral("DefaultContact")).toBool()) {
                return toID(rs.field(QStringLiteral("ContactIDNum")));
            }
        }
    }
    if (repair) {
        result = firstContact;
        if (!db->isReadOnly())
            setContactAsDefault(result, companyID);
    }
    return result;
}

void setContactAsDefault(int contactID, int companyID, bool skipCards) {
    ProcedureScope scope(app().errors, tag("setContactAsDefault"));
    databaseControl* db = connected();
    if (!db)
        return;
    {
        ScopedRecordset rs(*db, companyLinksSql(companyID), true);
        for (; !rs.isEOF(); rs.moveNext()) {
            const int linked = toID(rs.field(QStringLiteral("ContactIDNum")));
            rs.update(QStringLiteral("DefaultContact"),
                      linked == contactID ? QStringLiteral("True") : QStringLiteral("False"));
            if (!skipCards && g_cardWriter) {
                const int position = db->getPosition(rs.handle());
                g_cardWriter->saveContactBusinessRTF(linked, -1, companyID, false);
                g_cardWriter->saveCompanyContactRTF(companyID, contactID);
                db->setPosition(rs.handle(), position);
            }
        }
    }
    updateDefaultContactInfo(companyID);
    changeDefaultContactChangeLookupFieldValue(contactID);
}

void setNoContactAsDefault(int companyID, bool skipCards) {
    ProcedureScope scope(app().errors, tag("setNoContactAsDefault"));
    updateDefaultContactInfo(companyID);
    if (!skipCards && g_cardWriter && connected())
        g_cardWriter->saveCompanyContactRTF(companyID, -1);
}

void updateDefaultContactInfo(int companyID) {
    ProcedureScope scope(app().errors, tag("updateDefaultContactInfo"));
    databaseControl* db = connected();
    if (!db)
        return;
    const int contactID = getDefaultContactIDFromCompanyID(companyID);
    ScopedRecordset company(
        *db,
        QStringLiteral("SELECT Companies.CompanyID, Companies.DefaultContactName, "
                       "Companies.DefaultContactPhoneNumber, Companies.DefaultContactFaxNumber, "
                       "Companies.DefaultContactEmail FROM Companies WHERE CompanyID = ") +
            QString::number(companyID) + u';',
        true);
    if (!company.hasRecords())
        return;
    std::array<QString, 4> values;
    if (validContactID(QString::number(contactID))) {
        ScopedRecordset contact(
            *db, QStringLiteral("SELECT Contacts.ContactID, Contacts.DisplayName, "
                                "Contacts.BusinessPhone_Main, Contacts.BusinessPhone_Fax, "
                                "Contacts.BusinessEmail FROM Contacts WHERE ContactID = ") +
                     QString::number(contactID) + u';');
        if (contact.hasRecords()) {
            values = {toText(contact.field(QStringLiteral("DisplayName"))),
                      toText(contact.field(QStringLiteral("BusinessPhone_Main"))),
                      toText(contact.field(QStringLiteral("BusinessPhone_Fax"))),
                      toText(contact.field(QStringLiteral("BusinessEmail")))};
        }
    }
    company.update(QStringLiteral("DefaultContactName"), values[0]);
    company.update(QStringLiteral("DefaultContactPhoneNumber"), values[1]);
    company.update(QStringLiteral("DefaultContactFaxNumber"), values[2]);
    company.update(QStringLiteral("DefaultContactEmail"), values[3]);
}

void changeDefaultContactChangeLookupFieldValue(int contactID) {
    ProcedureScope scope(app().errors, tag("changeDefaultContactChangeLookupFieldValue"));
    databaseControl* db = connected();
    if (!db)
        return;
    BusyCursor busy;
    std::array<QString, 5> labels; // empty: the column does not follow a contact field
    bool any = false;
    {
        ScopedRecordset rs(
            *db,
            QStringLiteral(
                "SELECT CustomFields.RemittanceCustomInfo1, CustomFields.RemittanceCustomInfo2, "
                "CustomFields.RemittanceCustomInfo3, CustomFields.RemittanceCustomInfo4, "
                "CustomFields.RemittanceCustomInfo5, CustomFields.RemittanceCustomType1, "
                "CustomFields.RemittanceCustomType2, CustomFields.RemittanceCustomType3, "
                "CustomFields.RemittanceCustomType4, CustomFields.RemittanceCustomType5 FROM "
                "CustomFields;"));
        if (!rs.hasRecords())
            return;
        for (int n = 1; n <= 5; ++n) {
            const QString label =
                toText(rs.field(QStringLiteral("RemittanceCustomInfo%1").arg(n))).trimmed();
            const QVariant type = rs.field(QStringLiteral("RemittanceCustomType%1").arg(n));
            if (isContactLookupField(label) && !stringControl::isBlank(type) && type.toInt() == 3) {
                labels[size_t(n - 1)] = label;
                any = true;
            }
        }
    }
    if (!any)
        return;
    std::array<QString, 5> values;
    {
        ScopedRecordset contact(*db,
                                QStringLiteral("SELECT Contacts.* FROM Contacts WHERE ContactID=") +
                                    QString::number(contactID) + u';');
        if (!contact.hasRecords())
            return;
        for (size_t n = 0; n < labels.size(); ++n) {
            if (labels[n].isEmpty())
                continue;
            // The lookup names ContactCustom1..5 stand for Custom1..5.
            QString column = labels[n];
            if (column.startsWith(QStringLiteral("ContactCustom"), Qt::CaseInsensitive))
                column = QStringLiteral("Custom") + column.mid(13);
            if (!db->hasField(contact.handle(), column))
                continue;
            const QVariant v = contact.field(column);
            if (v.typeId() == QMetaType::QDate || v.typeId() == QMetaType::QDateTime) {
                const QDate d = v.typeId() == QMetaType::QDate ? v.toDate() : v.toDateTime().date();
                values[n] = QLocale::c().toString(d, QStringLiteral("MMM d, yyyy"));
            } else {
                values[n] = toText(v);
            }
        }
    }
    ScopedRecordset links(
        *db, QStringLiteral("SELECT ContactLinks.ContactIDNum, ContactLinks.CompanyNum, "
                            "ContactLinks.DefaultContact FROM ContactLinks WHERE "
                            "ContactLinks.ContactIDNum = ") +
                 QString::number(contactID) + u';');
    for (; !links.isEOF(); links.moveNext()) {
        const QVariant company = links.field(QStringLiteral("CompanyNum"));
        if (stringControl::isBlank(company) ||
            !links.field(QStringLiteral("DefaultContact")).toBool())
            continue;
        const int client = getClientDataIDFromCompanyID(toID(company));
        if (!validClientID(QString::number(client)))
            continue;
        ScopedRecordset schedule(
            *db,
            QStringLiteral(
                "SELECT Schedule.ClientNum, Schedule.Custom1, Schedule.Custom2, "
                "Schedule.Custom3, Schedule.Custom4, Schedule.Custom5 FROM Schedule WHERE "
                "Schedule.ClientNum = ") +
                QString::number(client) + u';',
            true);
        for (; !schedule.isEOF(); schedule.moveNext()) {
            for (size_t n = 0; n < labels.size(); ++n) {
                if (!labels[n].isEmpty())
                    schedule.update(QStringLiteral("Custom%1").arg(n + 1), values[n]);
            }
        }
    }
}

bool isContactLookupField(const QString& name) {
    static const QStringList fields = [] {
        QStringList list{"DisplayName",
                         "NamePrefix",
                         "FirstName",
                         "LastName",
                         "NameSuffix",
                         "SocialInsuranceNumber",
                         "EmployeeType",
                         "PercentageOwnership",
                         "BusinessName",
                         "BusinessJobTitle",
                         "BusinessDepartment",
                         "BusinessOffice",
                         "BusinessPhone_Main",
                         "BusinessPhone_Cell",
                         "BusinessPhone_Pager",
                         "BusinessPhone_Fax",
                         "BusinessAddress",
                         "BusinessCity",
                         "BusinessProvince",
                         "BusinessPostalCode",
                         "BusinessCountry",
                         "BusinessWebSite",
                         "BusinessEmail",
                         "PersonalEmail",
                         "HomePhone_Main",
                         "HomePhone_Cell",
                         "HomePhone_Pager",
                         "HomePhone_Fax",
                         "HomeAddress",
                         "HomeCity",
                         "HomeProvince",
                         "HomePostalCode",
                         "HomeCountry",
                         "PersonalWebSite",
                         "Children",
                         "Gender",
                         "Birthday",
                         "Anniversary",
                         "ContactCustom1",
                         "ContactCustom2",
                         "ContactCustom3",
                         "ContactCustom4",
                         "ContactCustom5",
                         "Language",
                         "SpouseName",
                         "MaritialStatus",
                         "SpouseNamePrefix",
                         "SpouseFirstName",
                         "SpouseMiddleName",
                         "SpouseLastName",
                         "SpouseNameSuffix",
                         "SpouseGender",
                         "SpouseBirthday",
                         "SpouseSIN",
                         "SpouseEmail",
                         "SpousePhone_Main",
                         "SpousePhone_Cell",
                         "SpouseAddress",
                         "SpouseCity",
                         "SpouseProvince",
                         "SpousePostalCode",
                         "SpouseCountry"};
        for (QString& s : list)
            s = s.toUpper();
        return list;
    }();
    return fields.contains(name.trimmed().toUpper());
}
