#pragma once

#include <QDate>
#include <QString>
#include <variant>
#include <vector>

// Criteria of a search object set from text by their field names, as the
// command line gives them: "taskName=GST;searchByTaskName=1;dateMatch=4".
namespace SearchCriteriaText {

using Target = std::variant<bool*, qint16*, qint32*, QString*, QDate*>;

struct Binding {
    const char* name; // the field's name, matched exactly
    Target target;
};

// Applies "name=value" items separated by ";" in order. Truth values are
// 1/0, -1, true/false or yes/no; numbers must fit their field; dates are
// YYYY-MM-DD. Text is taken as written up to the next ";"; a backslash
// makes the next character plain, so "\;" is a semicolon inside a value and
// "\\" a backslash. Returns an empty text on success, else what was wrong
// with the first bad item; items before it have been applied.
QString apply(const QString& assignments, const std::vector<Binding>& bindings);

// The fields as apply reads them back: every binding in order, truth values
// as 1 or 0, dates as YYYY-MM-DD (an invalid date is left out), text with
// its ";" and "\" escaped.
QString write(const std::vector<Binding>& bindings);

} // namespace SearchCriteriaText
