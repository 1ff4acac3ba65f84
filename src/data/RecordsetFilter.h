#pragma once

#include <QString>
#include <memory>

class Recordset;
struct FilterNode;

// The filter language of record sets: comparisons "Column op value" with
// =, <>, <, >, <=, >=, LIKE; values 'text' (quotes doubled inside), #date#,
// numbers, True, False, Null; joined by AND and OR (AND binds tighter),
// NOT, parentheses. LIKE takes * or % for any run of characters and _ or ?
// for one. Text compares without regard to case; Null matches nothing but
// "= Null". The text is parsed into a tree and evaluated on the rows; it
// never reaches the engine, so a value can only ever be compared.
class RecordsetFilter {
public:
    // Throws QmError(DatabaseError) for a syntax error: an unbalanced quote
    // or parenthesis, a bad date, a missing value or operator.
    explicit RecordsetFilter(const QString& text);
    ~RecordsetFilter();
    RecordsetFilter(RecordsetFilter&&) noexcept;
    RecordsetFilter& operator=(RecordsetFilter&&) noexcept;

    // Resolves the column names against the record set; throws
    // QmError(DatabaseError) for a column it does not have.
    void bind(const Recordset& recordset);
    // Requires bind() with the same record set first.
    bool matches(const Recordset& recordset, int row) const;
    // An empty filter text matches every row.
    bool isEmpty() const { return !m_root; }

private:
    std::unique_ptr<FilterNode> m_root;
};
