#include "documents/modGoTo.h"

#include "documents/PageLayout.h"
#include "platform/richtext/RichTextBox.h"

#include <QTextDocument>
#include <optional>

namespace {

// A whole number from 1 on, or nothing.
std::optional<int> positiveNumber(const QString& typed) {
    bool ok = false;
    const int value = typed.trimmed().toInt(&ok);
    if (!ok || value < 1) {
        return std::nullopt;
    }
    return value;
}

// The last caret position still on a sheet: the end of the document on the
// last sheet, otherwise just before the first character of the next one.
int lastPositionOnSheet(const PageLayout& layout, int page) {
    const int end = layout.endPositionOfSheet(page);
    const int documentEnd = layout.document()->characterCount() - 1;
    if (end >= documentEnd || end <= layout.firstPositionOfSheet(page)) {
        return end;
    }
    return end - 1;
}

} // namespace

GoToAnswer goToTarget(const RichTextBox& box, const PageLayout& layout, GoToWhat what,
                      const QString& number) {
    const int page = layout.currentPage();
    switch (what) {
    case GoToWhat::Start:
        return {box.toTextPosition(layout.firstPositionOfSheet(page)), {}};
    case GoToWhat::End:
        return {box.toTextPosition(lastPositionOnSheet(layout, page)), {}};
    case GoToWhat::Page: {
        const auto wanted = positiveNumber(number);
        if (!wanted || *wanted > layout.totalPages()) {
            return {-1, QStringLiteral("Invalid page number!")};
        }
        return {box.toTextPosition(layout.firstPositionOfSheet(*wanted)), {}};
    }
    case GoToWhat::Line: {
        const QString invalid = QStringLiteral("Invalid line number!");
        const auto wanted = positiveNumber(number);
        if (!wanted) {
            return {-1, invalid};
        }
        const int firstLine =
            box.lineFromChar(box.toTextPosition(layout.firstPositionOfSheet(page)));
        const int index = box.lineIndex(firstLine + *wanted - 1);
        if (index < 0 || layout.pageOfPosition(box.toDocumentPosition(index)) != page) {
            return {-1, invalid};
        }
        return {index, {}};
    }
    }
    return {};
}
