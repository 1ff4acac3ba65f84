#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

class FieldTable;

// Where the substitution gets its values: getDataField and
// getDataDateField of clsInsertFieldsInRTB for one record, or values held in
// memory by tests and benchmarks.
class PlaceholderValues {
public:
    virtual ~PlaceholderValues() = default;
    virtual QString dataField(const QString& englishName) = 0;
    virtual QString dataDateField(const QString& englishName, const QString& format) = 0;
};

namespace MergeSyntax {

// The 14 date formats in the order of their menu numbers.
const QStringList& dateFormats();
// The format a database date is really formatted with for the placeholder
// written with dateFormats()[index]: format 6 ("dd/mm/yy") is filled with
// "dd/mmm/yy" for field rows, while Todays Date keeps "dd/mm/yy".
QString fieldDateFormat(int index);

inline const QString& openEscape() {
    static const QString s = QStringLiteral("\\'ab");
    return s;
}
inline const QString& closeEscape() {
    static const QString s = QStringLiteral("\\'bb");
    return s;
}
constexpr QChar kOpen = QChar(0x00AB);
constexpr QChar kClose = QChar(0x00BB);

// The value of a plain placeholder by its row's field type: times through
// getDataDateField, money, Yes/No, minutes and, for every other type, the
// value as getDataField gives it.
QString plainValue(PlaceholderValues& values, const QString& englishName, const QString& fieldType);

} // namespace MergeSyntax

// The substitution of one record in RTF text, in one pass over the
// template. It gives the same text as the step-by-step procedure (a
// presence test in the search copy per catalogue row and date format, then
// a whole-text replace per hit): the first matching row wins, presence is
// decided on the search copy, and the blank-before-value rule sees the
// text as the earlier replacements left it.
//
// The analysis of a template (its placeholder spans, which rows and formats
// are present) is kept between calls for the same template and catalogue,
// so a merge pays it once. Templates where a value could combine with the
// text around it into a new placeholder (nested escapes) and values that
// carry escapes themselves are left to the step-by-step procedure:
// substitute() then returns false and does nothing.
class MergeSubstitution {
public:
    MergeSubstitution();
    ~MergeSubstitution();

    // `table` is the catalogue, `tableGeneration` changes whenever it is
    // rebuilt. `contactForCompany` is the case where the search copy spells
    // «Company Name» as «Contact Display Name». The empty placeholders of the
    // record are added to `emptyPlaceholders` when it is given.
    bool substitute(const QString& text, const FieldTable& table, quint64 tableGeneration,
                    bool contactForCompany, PlaceholderValues& values, QString& result,
                    QStringList* emptyPlaceholders = nullptr);

    // The catalogue names whose placeholders the substitution of this text
    // will look up, in lookup order (Todays Date left out).
    QStringList lookedUpNames(const QString& text, const FieldTable& table, quint64 tableGeneration,
                              bool contactForCompany);

    // Drops the cached analysis.
    void reset();

private:
    struct Analysis;
    const Analysis* analysisFor(const QString& text, const FieldTable& table,
                                quint64 tableGeneration);

    std::unique_ptr<Analysis> m_analysis;
};

// The search copy of parseRTBComment's steps 1, 2 and 5.
QString mergeSearchCopy(const QString& text, bool contactForCompany);
