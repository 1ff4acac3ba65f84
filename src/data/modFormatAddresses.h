#pragma once

#include "data/ContactCardWriter.h"

#include <QString>

// Address blocks and contact cards.
//
// An address block is the plain lines of a person's or company's address for
// a letter or a label, lines separated by CR LF; with the to-RTF flag the
// values are escaped for RTF and every CR LF gets "\par " in front of it, so
// that the block can stand inside an RTF text.
//
// A contact card is a small self-contained RTF text with the business facts
// of a person, kept in ContactsNotes.BusinessNotes (the person's own card,
// AccountantEmployeeInfo.BusinessNotes for staff) and in
// CompaniesNotes.ContactNotes of each company the person is default contact
// of. The host shows these notes and never builds them itself.
//
// Nothing here shows a message. Without a connection, or for IDs that name
// no row, the functions return an empty text and write nothing. Faults of
// the database itself are thrown as QmError to the caller's handler.

// The address record in the order of its positions 0 to 12. home and
// webSite are read by createAddressWithContactInfo but filled by callers
// elsewhere, never by createBusinessContactAddress.
struct AddressFields {
    QString company;
    QString contactName;
    QString address;
    QString city;
    QString province;
    QString postalCode;
    QString country;
    QString phone;
    QString fax;
    QString cell;
    QString home;
    QString email;
    QString webSite;
};

void clearAddressFields(AddressFields& fields);

// Company, contact name (when showContactName), address, the city line
// ("City, Province  Postal") and a country line unless the country is
// Canada. When the address line is missing, the city line is preceded by an
// empty line: the shape the host's letters expect.
QString createAddress(const AddressFields& fields, bool showContactName, bool toRTF);

// createAddress followed by a line for each present phone, fax, cell, home,
// email and web site. With toRTF the block is converted twice, so that the
// address lines end in "\par \par " + CR LF: the spacing the cards rely on.
QString createAddressWithContactInfo(const AddressFields& fields, bool showContactName, bool toRTF);

// The address block of a contact (contactID) or of a member of staff
// (employeeID, which wins when valid), read from the database and trimmed.
//
// companyID is in and out. For a contact, a valid company supplies the
// address, phone and fax when the contact inherits the company's data; an
// invalid one is set to -1. For an employee the test on the firm's ID is
// deliberately inverted, as the host has always had it: a caller that passes
// the firm's own ID gets companyID -1 and no firm data; any other value is
// replaced by the firm's ID and the firm's row is used.
QString createBusinessContactAddress(int contactID, bool toRTF, int employeeID, int& companyID,
                                     bool withAddress, bool withPhones, bool withEmail,
                                     bool withCompany);

// Every CR LF (and only those) gets "\par " in front of it. Applying it twice
// is meaningful and used; the text is not otherwise escaped.
QString convertToRTF(const QString& text);

// Plain text made safe to stand inside an RTF text: backslash and braces
// escaped, characters above 127 as \'hh where code page 1252 has them and
// as \uN? otherwise, tabs as \tab, every line break (CR LF, lone CR, lone LF)
// as CR LF for convertToRTF to mark, other control characters dropped.
QString escapeRTFText(const QString& text);

// Builds the person's card and stores it: employeeID when it names a member
// of staff, else contactID when it names a contact; anything else gives ""
// and writes nothing. The "Default Contact" line refers to companyID. Unless
// skipOtherCompanies is set, the card of every company the contact is
// default contact of is refreshed too. Returns the card.
QString saveContactBusinessRTF(int contactID, int employeeID, int companyID,
                               bool skipOtherCompanies);

// Writes a card into CompaniesNotes.ContactNotes of every valid company the
// contact is default contact of: `card` for companyID, a card built for the
// company for any other. Companies without a notes row are left alone.
void saveContactBusinessRTFForAllCompanies(int contactID, int companyID, const QString& card);

// The company's default-contact card: the contact's card for contactID 0 or
// more, the "no default contact" card for -1. Needs an existing notes row.
void saveCompanyContactRTF(int companyID, int contactID);

// The card of a company without a default contact.
QString saveNoDefaultComment();

// Puts the contact cards of this module in force for the default-contact
// repairs for its lifetime, and restores the writer that was in force
// before. The program holds one while the practice database is open.
class ScopedContactCardWriter {
public:
    ScopedContactCardWriter();
    ~ScopedContactCardWriter();
    ScopedContactCardWriter(const ScopedContactCardWriter&) = delete;
    ScopedContactCardWriter& operator=(const ScopedContactCardWriter&) = delete;

private:
    ContactCardWriter* m_previous;
};
