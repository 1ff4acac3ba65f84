#pragma once

#include <span>

// The rows of the merge field catalogue as the builders of
// clsInsertFieldsInRTB write them, block by block. A row is kept or dropped
// by its condition; names may hold the regional words {G}, {P}, {W}, {T}
// and a label row takes its name from the practice's labels.
namespace FieldCatalogue {

// Column numbers of the catalogue table.
enum Column : int { DbColumn = 1, EnglishName = 2, DataTable = 3, FieldType = 4, SampleValue = 5 };

enum class Condition {
    Always,
    Canada,    // country 1 only
    NotCanada, // every other country
    Quebec,    // country 1, province 8
    NotQuebec, // country 1, any province but 8
    Ontario,   // country 1, province 3
    Label,     // custom label row: only with a database connection
};

struct RowSpec {
    const char* englishName; // for a label row: the fixed name used for "Custom N"
    const char* dbColumn;
    const char* fieldType;
    const char* sampleValue; // "@today" and "@year" expand when the row is built
    Condition condition;
    int slot; // 1..5 for label rows, else 0
};

// Each block as its builder writes it.
std::span<const RowSpec> appointmentRows();
std::span<const RowSpec> remittanceRows();
std::span<const RowSpec> taskRows();
std::span<const RowSpec> docketRows();
std::span<const RowSpec> companyRows();
std::span<const RowSpec> contactNameRows();
std::span<const RowSpec> accountingRows();
std::span<const RowSpec> softwareRows();
std::span<const RowSpec> moreContactRows();
std::span<const RowSpec> accountantRows();

} // namespace FieldCatalogue
