#pragma once

#include <QString>

// The user's name-display settings (UserGeneralSettings) and the forming of
// a person's name from a Contacts row.
//
// contactNameDisplayType: 2 first name first, 3 last name first, anything
// else the free-form DisplayName. familyDisplayOption 2 shows the family
// relationship behind every family member's name.

// Reads both settings of the user into app().contactNameDisplayType and
// app().familyDisplayOption (0 each without a connection).
void initializeNameDisplayType(int userID);
// Each reads its column for the user, adding the user's row when it is
// missing. 0 without a connection or with a blank value.
short getInitialContactNameDisplayTypeSetting(int userID);
short getFamilyDisplayOption(int userID);

// The person's name in the given form, with the spouse for a couple
// (ContactPersonalTaxDisplayType 2), and " (relationship)" when
// hostContactID is 0 or more and either showRelationship is set or
// familyDisplayOption is 2. Empty without a connection or row.
QString getContactNameDisplayedByType(int displayType, int contactID, int hostContactID,
                                      bool showRelationship);

// The name of the current row of a record set holding FirstName, LastName,
// DisplayName and FamilyRelationship, in app().contactNameDisplayType; no
// couple form. The relationship is added under the same condition as above.
QString getNodeContactNameDisplayed(int handle, int hostContactID, bool showRelationship);

// The name forms alone, for callers that hold the values already. All
// inputs are trimmed by the caller; spouseFirst empty means single.
struct ContactNameParts {
    QString first;
    QString last;
    QString display;
    bool couple = false;
    QString spouseFirst;
    QString spouseLast;
};
QString formContactName(int displayType, const ContactNameParts& parts);
