#include "data/modFormatAddresses.h"

#include "data/DatabaseLookup.h"
#include "data/modDatabaseFunctions.h"
#include "platform/text/CodePage1252.h"

#include <algorithm>
#include <array>
#include <optional>

using namespace DatabaseLookup;

namespace {

const QString kCrLf = QStringLiteral("\r\n");

QString addressTag(const char* procedure) {
    return QStringLiteral("QuillmerePad.exe-modFormatAddresses-") + QLatin1String(procedure);
}

bool present(const QString& value) {
    return !stringControl::isBlank(value);
}

bool isHomeCountry(const QString& country) {
    static const std::array<QString, 4> names = {QStringLiteral("CANADA"), QStringLiteral("CA"),
                                                 QStringLiteral("CAN"), QStringLiteral("CDA")};
    const QString upper = country.trimmed().toUpper();
    return std::find(names.begin(), names.end(), upper) != names.end();
}

QString columnText(const ScopedRecordset& rs, const char* column) {
    return toText(rs.field(QLatin1String(column)));
}

// The person's own columns of the address record; staff rows carry the same
// columns as contacts.
void readPersonFields(const ScopedRecordset& person, AddressFields& f, bool withAddress,
                      bool withPhones, bool withEmail, bool withCompany) {
    if (withCompany)
        f.company = columnText(person, "BusinessName");
    f.contactName = columnText(person, "DisplayName");
    if (withAddress) {
        f.company = columnText(person, "BusinessName");
        f.address = columnText(person, "BusinessAddress");
        f.city = columnText(person, "BusinessCity");
        f.province = columnText(person, "BusinessProvince");
        f.postalCode = columnText(person, "BusinessPostalCode");
        f.country = columnText(person, "BusinessCountry");
    }
    if (withPhones) {
        f.phone = columnText(person, "BusinessPhone_Main");
        f.fax = columnText(person, "BusinessPhone_Fax");
        f.cell = columnText(person, "BusinessPhone_Cell");
    }
    if (withEmail)
        f.email = columnText(person, "BusinessEmail");
}

void inheritCompanyFields(const ScopedRecordset& company, AddressFields& f, bool withAddress,
                          bool withPhones) {
    if (withAddress) {
        f.address = columnText(company, "Address");
        f.city = columnText(company, "City");
        f.province = columnText(company, "Province");
        f.postalCode = columnText(company, "PostalCode");
        f.country = columnText(company, "Country");
    }
    if (withPhones) {
        if (!present(f.phone))
            f.phone = columnText(company, "OfficeNumber");
        if (!present(f.fax))
            f.fax = columnText(company, "FaxNumber");
    }
}

} // namespace

void clearAddressFields(AddressFields& fields) {
    fields = AddressFields{};
}

QString convertToRTF(const QString& text) {
    QString result = text;
    result.replace(kCrLf, QStringLiteral("\\par \r\n"));
    return result;
}

QString escapeRTFText(const QString& text) {
    static const char* const hex = "0123456789abcdef";
    QString out;
    out.reserve(text.size() + text.size() / 8);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar ch = text.at(i);
        const char16_t c = ch.unicode();
        if (c == u'\r') {
            out += kCrLf;
            if (i + 1 < text.size() && text.at(i + 1) == u'\n')
                ++i;
        } else if (c == u'\n') {
            out += kCrLf;
        } else if (c == u'\t') {
            out += QLatin1String("\\tab ");
        } else if (c < 0x20 || c == 0x7F) {
            continue;
        } else if (c == u'\\' || c == u'{' || c == u'}') {
            out += u'\\';
            out += ch;
        } else if (c < 0x80) {
            out += ch;
        } else if (const auto byte = CodePage1252::fromUnicode(ch)) {
            out += QLatin1String("\\'");
            out += QLatin1Char(hex[*byte >> 4]);
            out += QLatin1Char(hex[*byte & 15]);
        } else {
            // One \uN per UTF-16 unit, N a signed 16-bit number; '?' is what
            // a reader without Unicode shows (the cards declare \uc1).
            out += QLatin1String("\\u");
            out += QString::number(static_cast<qint16>(c));
            out += u'?';
        }
    }
    return out;
}

QString createAddress(const AddressFields& f, bool showContactName, bool toRTF) {
    const auto value = [toRTF](const QString& v) {
        const QString trimmed = v.trimmed();
        return toRTF ? escapeRTFText(trimmed) : trimmed;
    };
    QString text;
    if (present(f.company))
        text += value(f.company) + kCrLf;
    if (showContactName && present(f.contactName))
        text += value(f.contactName) + kCrLf;
    const bool hasAddress = present(f.address);
    if (hasAddress)
        text += value(f.address) + kCrLf;

    QString cityLine;
    if (present(f.city))
        cityLine = value(f.city);
    if (present(f.province))
        cityLine += (cityLine.isEmpty() ? QString() : QStringLiteral(", ")) + value(f.province);
    if (present(f.postalCode))
        cityLine += (cityLine.isEmpty() ? QString() : QStringLiteral("  ")) + value(f.postalCode);
    if (!cityLine.isEmpty()) {
        // Without an address line the city line stands after an empty line.
        if (!hasAddress)
            text += kCrLf;
        text += cityLine;
    }
    if (present(f.country) && !isHomeCountry(f.country))
        text += kCrLf + value(f.country);
    return toRTF ? convertToRTF(text) : text;
}

QString createAddressWithContactInfo(const AddressFields& f, bool showContactName, bool toRTF) {
    QString text = createAddress(f, showContactName, toRTF);
    const std::array<std::pair<const char*, const QString*>, 6> lines = {{
        {"Phone: ", &f.phone},
        {"Fax: ", &f.fax},
        {"Cell: ", &f.cell},
        {"Home: ", &f.home},
        {"Email: ", &f.email},
        {"Web Site: ", &f.webSite},
    }};
    bool added = false;
    for (const auto& [label, value] : lines) {
        if (!present(*value))
            continue;
        const QString trimmed = value->trimmed();
        text += kCrLf + QLatin1String(label) + (toRTF ? escapeRTFText(trimmed) : trimmed);
        added = true;
    }
    // The lines of createAddress were converted already; converting the whole
    // again doubles their marks, which is the spacing the cards rely on.
    if (added && toRTF)
        text = convertToRTF(text);
    return text;
}

QString createBusinessContactAddress(int contactID, bool toRTF, int employeeID, int& companyID,
                                     bool withAddress, bool withPhones, bool withEmail,
                                     bool withCompany) {
    ProcedureScope scope(app().errors, addressTag("createBusinessContactAddress"));
    AddressFields fields;
    clearAddressFields(fields);
    databaseControl* db = connected();
    if (!db)
        return {};

    QString personSql;
    QString companySql;
    if (validEmployeeID(QString::number(employeeID))) {
        personSql =
            QStringLiteral(
                "SELECT AccountantEmployeeInfo.* FROM AccountantEmployeeInfo WHERE ContactID=") +
            QString::number(employeeID) + u';';
        // Inverted on purpose: only a caller that passes something other
        // than the firm's ID gets the firm's address.
        if (validFirmID(QString::number(companyID))) {
            companyID = -1;
        } else {
            companyID = getAccountantFirmID();
            companySql =
                QStringLiteral(
                    "SELECT AccountantFirmInfo.* FROM AccountantFirmInfo WHERE CompanyID=") +
                QString::number(companyID) + u';';
        }
    } else if (validContactID(QString::number(contactID))) {
        personSql = QStringLiteral("SELECT Contacts.* FROM Contacts WHERE ContactID=") +
                    QString::number(contactID) + u';';
        if (validCompanyID(QString::number(companyID))) {
            companySql = QStringLiteral("SELECT Companies.* FROM Companies WHERE CompanyID=") +
                         QString::number(companyID) + u';';
        } else {
            companyID = -1;
        }
    } else {
        return {};
    }

    ScopedRecordset person(*db, personSql);
    std::optional<ScopedRecordset> company;
    if (companyID > -1 && !companySql.isEmpty())
        company.emplace(*db, companySql);

    if (person.hasRecords()) {
        readPersonFields(person, fields, withAddress, withPhones, withEmail, withCompany);
        if (person.field(QStringLiteral("InheritCompanyInfo")).toBool() && company &&
            company->hasRecords())
            inheritCompanyFields(*company, fields, withAddress, withPhones);
    }

    const QString text = (!withPhones && !withEmail)
                             ? createAddress(fields, true, toRTF)
                             : createAddressWithContactInfo(fields, true, toRTF);
    return text.trimmed();
}
