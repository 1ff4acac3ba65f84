#include "data/modRemittanceTypes.h"

#include "data/DatabaseLookup.h"
#include "data/modDatabaseFunctions.h"

#include <QStandardItemModel>

using namespace DatabaseLookup;

namespace {

void add(QStandardItemModel& list, const char* text, int code) {
    auto* item = new QStandardItem(QString::fromUtf8(text));
    item->setData(code, modDatabaseFunctions::ItemDataRole);
    list.appendRow(item);
}

} // namespace

void initializeProvince(std::optional<int> hostProvince) {
    app().currentProvince = short(hostProvince.value_or(3));
}

int getProvince() {
    return app().currentProvince;
}

void populateTypeCombo(QStandardItemModel& list, bool addAll, bool addSubItems) {
    ProcedureScope scope(app().errors,
                         QStringLiteral("QuillmerePad.exe-modRemittanceTypes-populateTypeCombo"));
    list.clear();
    const int province = getProvince();
    if (addAll)
        add(list, "All", 100);
    if (app().currentCountry == 1) {
        // July 1, 2010: day serial 40360, when two provinces moved to HST.
        const bool hstStarted = app().clock.today() >= QDate(2010, 7, 1);
        if (province == 9 || province == 10 || province == 11)
            add(list, "HST", 101);
        else if (province == 1 || province == 3)
            add(list, hstStarted ? "HST" : "GST", 101);
        else
            add(list, "GST", 101);
        add(list, province == 8 ? "QST" : "PST", 102);
        add(list, "Payroll Remitt", 103);
        if (addSubItems) {
            if (province == 8)
                add(list, "RL-1", 10340);
            add(list, "T4", 10310);
            add(list, "T4a", 10320);
            add(list, "T5", 10330);
        }
        add(list, "Employee Payroll", 110);
        add(list, "Year End", 104);
        add(list, "Corp Tax", 105);
        if (province == 3)
            add(list, "WSIB", 106);
        else if (province == 8)
            add(list, "CSST", 106);
        else if (province == 10 || province == 11)
            add(list, "WHSCC", 106);
        else
            add(list, "WCB", 106);
        add(list, "EHT", 107);
        add(list, "Law", 108);
    } else {
        add(list, "Federal Tax", 101);
        if (province == 7)
            add(list, "Sales & Use Tax", 102);
        else if (province == 13 || province == 14 || province == 15)
            add(list, "Sales Tax", 102);
        add(list, "Federal Payroll", 112);
        if (province == 7)
            add(list, "Employment Tax", 103);
        else if (province == 13)
            add(list, "Withholding Tax", 103);
        else if (province == 14 || province == 15)
            add(list, "State Payroll", 103);
        add(list, "Employee Payroll", 110);
        add(list, "Year End", 104);
        if (province == 7 || province == 13)
            add(list, "Franchise Tax", 105);
        if (province == 7)
            add(list, "Property Tax", 106);
        add(list, "Excise Tax", 107);
    }
    add(list, "Other", 109);
    add(list, "Custom", 111);

    databaseControl* db = connected();
    if (!db)
        return;
    ScopedRecordset rs(*db, QStringLiteral("SELECT CustomTaskSchemes.* From CustomTaskSchemes;"));
    for (; !rs.isEOF(); rs.moveNext()) {
        auto* item = new QStandardItem(toText(rs.field(QStringLiteral("SchemeName"))));
        item->setData(toID(rs.field(QStringLiteral("ScheduleNum"))) + 11100,
                      modDatabaseFunctions::ItemDataRole);
        list.appendRow(item);
    }
}
