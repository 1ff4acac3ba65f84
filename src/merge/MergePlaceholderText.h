#pragma once

#include <QString>

class MergeFieldCatalogue;

// The placeholder language on text: the escaped form placeholders take in
// RTF, the replacement of one placeholder, the validation of a template and
// the rewriting of older and other-region names when a document is opened.
// Nothing here reads the database.
class MergePlaceholderText {
public:
    MergePlaceholderText() = delete;

    // « and » as the RTF escapes \'ab and \'bb.
    static QString convertFieldName(const QString& text);
    // Replaces every occurrence of the placeholder `find` (written with « »)
    // without regard to case. In RTF the escaped form is replaced, and the
    // value gets a leading blank unless the first occurrence already has
    // one before it. Always returns false.
    static bool replaceText(QString& text, const QString& find, const QString& value, bool inRTF);
    // Removes every «...» span. Throws QmError when a « has no » after it.
    static bool replaceUnfoundMergeFieldsWithBlanks(QString& text);
    static QString removeBlankLinesFromRTFText(const QString& text);
    // Older names to current ones and the regional names to those of
    // app().currentCountry and app().currentProvince.
    static QString convertProvinceFields(const QString& text);

    // The message of the first fault of a template, empty when it has none.
    // Names are checked against the catalogue unless skipFieldNames. Throws
    // QmError for a date placeholder without a comma.
    static QString templateFault(const QString& text, bool inRTF, bool skipFieldNames,
                                 const MergeFieldCatalogue& catalogue);
};
