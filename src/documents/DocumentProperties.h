#pragma once

#include "documents/DocumentModel.h"

#include <QString>
#include <vector>

// The facts the document properties window shows, worked out from the
// document's model and plain text so that they can be checked without a
// window.

// Words: runs of characters separated by white space that hold at least
// one letter or digit, so a lone dash or bullet is not a word. A
// placeholder counts by the words written inside it.
int countWords(const QString& text);

// Placeholders: each «...» pair with something between the marks. A «
// without its », or a » without its «, is not counted.
int countPlaceholders(const QString& text);

// "Standard Document", "Merge Template", "Merge Results", "Saved Merge
// Results (locked)"; "Unknown (n)" for any other number.
QString documentTypeName(int documentType);
// The kind of merge data; "None" for a standard document, which merges
// nothing whatever its trailer says.
QString informationTypeName(int documentType, InformationKind kind);
// Orientation, page size and the four margins in inches:
// "Portrait, 8.50 x 11.00 in; margins 1.00 left, 1.00 right, 1.00 top,
// 1.00 bottom".
QString pageSetupText(const DocumentModel& model);

// One line of the window: the value label's control name, its caption and
// the value.
struct DocumentPropertyRow {
    QString name;
    QString caption;
    QString value;
};

// The lines of the window in the order shown: file, document type,
// information type, how it is saved, page setup, pages, words, placeholders.
std::vector<DocumentPropertyRow> documentPropertyRows(const DocumentModel& model,
                                                      const QString& fileName,
                                                      const QString& plainText, int pages);
