#pragma once

// Which client data a merge document is built from. It selects the field
// list, the merge tool bar and the record walk. The trailer of a document
// file may carry any 16-bit number here, so a value outside the named ones
// is representable and must be tolerated (it merges nothing).
enum class InformationKind : int {
    Companies = 1,
    CompaniesAndContacts = 2,
    Contacts = 3,
    Tasks = 4,
    Appointments = 5,
    Dockets = 6,
    // No field list; as a host's merge type it means "keep the template's".
    NoFieldList = 7,
    // Tasks of the work list; set on a document it builds the rows of Tasks.
    WorkListTasks = 8,
};

constexpr int toInt(InformationKind kind) {
    return static_cast<int>(kind);
}
constexpr InformationKind informationKindFromInt(int value) {
    return static_cast<InformationKind>(value);
}

// Companies, companies with contacts, or contacts: the kinds whose
// recipients are IDList rows of company and contact IDs.
constexpr bool isClientKind(InformationKind kind) {
    return kind == InformationKind::Companies || kind == InformationKind::CompaniesAndContacts ||
           kind == InformationKind::Contacts;
}

// The kinds a merge run walks (companies to appointments).
constexpr bool isMergeableKind(InformationKind kind) {
    return isClientKind(kind) || kind == InformationKind::Tasks ||
           kind == InformationKind::Appointments;
}

// Tasks or appointments: recipients may come from a search instead of IDList.
constexpr bool isSearchKind(InformationKind kind) {
    return kind == InformationKind::Tasks || kind == InformationKind::Appointments;
}
