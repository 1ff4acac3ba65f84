#pragma once

// The contact cards that the default-contact repairs rebuild: the rich text
// summary of a person kept in ContactsNotes.BusinessNotes and, for a
// company's default contact, in CompaniesNotes.ContactNotes. The address
// block code provides the writer; until one is installed, the repairs
// rebuild no card and write nothing there.
class ContactCardWriter {
public:
    virtual ~ContactCardWriter() = default;

    // Rebuilds the person's own card (employeeID -1 for a plain contact);
    // with skipOtherCompanies clear it also refreshes the card in every
    // company the person is default contact of.
    virtual void saveContactBusinessRTF(int contactID, int employeeID, int companyID,
                                        bool skipOtherCompanies) = 0;
    // Writes the company's default-contact card; contactID -1 writes the
    // "no default contact" card.
    virtual void saveCompanyContactRTF(int companyID, int contactID) = 0;
};

// The writer in force, or null. Not owned; the installer keeps it alive
// while it is installed and uninstalls it (nullptr) before destroying it.
ContactCardWriter* contactCardWriter();
void setContactCardWriter(ContactCardWriter* writer);
