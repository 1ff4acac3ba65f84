#include "data/modSettings.h"

#include "data/DatabaseLookup.h"

using namespace DatabaseLookup;

namespace {

QString settingsTag(const char* procedure) {
    return QStringLiteral("QuillmerePad.exe-modSettings-") + QLatin1String(procedure);
}

short readUserSetting(const char* procedure, int userID, const QString& column) {
    ProcedureScope scope(app().errors, settingsTag(procedure));
    databaseControl* db = connected();
    if (!db)
        return 0;
    const QString sql =
        QStringLiteral("SELECT UserGeneralSettings.UserIDNum, UserGeneralSettings.") + column +
        QStringLiteral(" FROM UserGeneralSettings WHERE UserIDNum=") + QString::number(userID) +
        u';';
    {
        ScopedRecordset rs(*db, sql, true);
        if (rs.hasRecords()) {
            const QVariant v = rs.field(column);
            return stringControl::isBlank(v) ? short(0) : short(v.toInt());
        }
        db->addNew(rs.handle());
        db->setField(rs.handle(), QStringLiteral("UserIDNum"), userID);
        db->saveRecord(rs.handle());
    }
    ScopedRecordset again(*db, sql, true);
    if (!again.hasRecords())
        return 0;
    const QVariant v = again.field(column);
    return stringControl::isBlank(v) ? short(0) : short(v.toInt());
}

QString trimmed(const QVariant& v) {
    return v.isNull() ? QString() : v.toString().trimmed();
}

bool blank(const QString& s) {
    return stringControl::isBlank(s);
}

QString withRelationship(const QString& name, const QVariant& relationship) {
    const QString r = trimmed(relationship);
    if (blank(r) || r == QStringLiteral("Not Specified"))
        return name;
    return name + QStringLiteral(" (") + r + u')';
}

bool wantsRelationship(int hostContactID, bool showRelationship) {
    return hostContactID >= 0 && (showRelationship || app().familyDisplayOption == 2);
}

} // namespace

void initializeNameDisplayType(int userID) {
    ProcedureScope scope(app().errors, settingsTag("initializeNameDisplayType"));
    app().contactNameDisplayType = getInitialContactNameDisplayTypeSetting(userID);
    app().familyDisplayOption = getFamilyDisplayOption(userID);
}

short getInitialContactNameDisplayTypeSetting(int userID) {
    return readUserSetting("getInitialContactNameDisplayTypeSetting", userID,
                           QStringLiteral("OptionsContactNameDisplayType"));
}

short getFamilyDisplayOption(int userID) {
    return readUserSetting("getFamilyDisplayOption", userID,
                           QStringLiteral("OptionsFamilyDisplayOption"));
}

QString formContactName(int displayType, const ContactNameParts& p) {
    const QString& F = p.first;
    const QString& L = p.last;
    const QString& D = p.display;
    const QString& SF = p.spouseFirst;
    const QString& SL = p.spouseLast;
    if (displayType != 2 && displayType != 3)
        return D;
    const bool first = displayType == 2;
    auto pick = [first](const QString& firstForm, const QString& lastForm) {
        return first ? firstForm : lastForm;
    };
    const bool hasL = !blank(L);
    const bool hasF = !blank(F);
    if (!p.couple || blank(SF)) {
        if (hasL && hasF)
            return pick(F + u' ' + L, L + QStringLiteral(", ") + F);
        if (hasL)
            return L;
        if (hasF)
            return F;
        return D;
    }
    const bool sameLast = !blank(SL) && L.toUpper() == SL.toUpper();
    const QString amp = QStringLiteral(" & ");
    const QString comma = QStringLiteral(", ");
    if (sameLast) {
        if (hasL && hasF)
            return pick(F + amp + SF + u' ' + L, L + comma + F + amp + SF);
        if (hasL)
            return pick(SF + u' ' + L, L + comma + SF);
        if (hasF)
            return pick(F + amp + SF + u' ' + SL, SL + comma + F + amp + SF);
        return pick(D + amp + SF + u' ' + SL, D + amp + SL + comma + SF);
    }
    if (hasL && hasF)
        return pick(F + u' ' + L + amp + SF + u' ' + SL, L + comma + F + amp + SL + comma + SF);
    if (hasL)
        return pick(L + amp + SF + u' ' + SL, L + amp + SL + comma + SF);
    if (hasF)
        return pick(F + amp + SF + u' ' + SL, F + amp + SL + comma + SF);
    return first ? D : QString(D + amp + SL + comma + SF);
}

QString getContactNameDisplayedByType(int displayType, int contactID, int hostContactID,
                                      bool showRelationship) {
    ProcedureScope scope(app().errors, settingsTag("getContactNameDisplayedByType"));
    databaseControl* db = connected();
    if (!db)
        return {};
    ContactNameParts parts;
    {
        ScopedRecordset rs(
            *db,
            QStringLiteral("SELECT Contacts.ContactID, Contacts.FirstName, Contacts.LastName, "
                           "Contacts.DisplayName, Contacts.ContactPersonalTaxDisplayType, "
                           "Contacts.SpouseFirstName, Contacts.SpouseLastName FROM Contacts WHERE "
                           "Contacts.ContactID=") +
                QString::number(contactID) + u';');
        if (!rs.hasRecords())
            return {};
        parts.first = trimmed(rs.field(QStringLiteral("FirstName")));
        parts.last = trimmed(rs.field(QStringLiteral("LastName")));
        parts.display = trimmed(rs.field(QStringLiteral("DisplayName")));
        const QVariant type = rs.field(QStringLiteral("ContactPersonalTaxDisplayType"));
        parts.couple = !stringControl::isBlank(type) && type.toInt() == 2;
        if (parts.couple) {
            parts.spouseFirst = trimmed(rs.field(QStringLiteral("SpouseFirstName")));
            parts.spouseLast = trimmed(rs.field(QStringLiteral("SpouseLastName")));
        }
    }
    QString name = formContactName(displayType, parts);
    if (wantsRelationship(hostContactID, showRelationship)) {
        ScopedRecordset rs(
            *db, QStringLiteral("SELECT ContactLinks.ContactIDNum, ContactLinks.ContactNum, "
                                "ContactLinks.FamilyRelationship FROM ContactLinks WHERE "
                                "ContactLinks.ContactNum=") +
                     QString::number(hostContactID) +
                     QStringLiteral(" AND ContactLinks.ContactIDNum = ") +
                     QString::number(contactID) + u';');
        if (rs.hasRecords())
            name = withRelationship(name, rs.field(QStringLiteral("FamilyRelationship")));
    }
    return name;
}

QString getNodeContactNameDisplayed(int handle, int hostContactID, bool showRelationship) {
    ProcedureScope scope(app().errors, settingsTag("getNodeContactNameDisplayed"));
    databaseControl* db = connected();
    if (!db)
        return {};
    const QString F = trimmed(db->getField(handle, QStringLiteral("FirstName")));
    const QString L = trimmed(db->getField(handle, QStringLiteral("LastName")));
    const QString D = trimmed(db->getField(handle, QStringLiteral("DisplayName")));
    QString name;
    switch (app().contactNameDisplayType) {
    case 2:
        name = (F + u' ' + L);
        if (blank(name))
            name = D;
        break;
    case 3:
        if (blank(L) || blank(F))
            name = !blank(L) ? L : (!blank(F) ? F : QString());
        else
            name = L + QStringLiteral(", ") + F;
        if (blank(name))
            name = D;
        break;
    default:
        name = D;
    }
    if (wantsRelationship(hostContactID, showRelationship))
        name = withRelationship(name, db->getField(handle, QStringLiteral("FamilyRelationship")));
    return name;
}
