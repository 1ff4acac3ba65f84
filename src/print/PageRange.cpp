#include "print/PageRange.h"

#include <QRegularExpression>

namespace {

PageRangeResult failure(const QString& message) {
    return {std::nullopt, message};
}

} // namespace

PageRangeResult parsePageRange(const QString& text) {
    static const QRegularExpression shape(QStringLiteral("^\\s*(-?\\d*)\\s*(-?)\\s*(\\d*)\\s*$"));
    const QString trimmed = text.trimmed();
    const QRegularExpressionMatch match = shape.match(trimmed);
    const QString quoted = QStringLiteral("\"") + trimmed + QStringLiteral("\"");
    if (trimmed.isEmpty() || !match.hasMatch()) {
        return failure(quoted + QStringLiteral(" is not a page range: give a page (3) or two "
                                               "pages joined by a dash (2-5)."));
    }
    QString first = match.captured(1);
    const bool dash = !match.captured(2).isEmpty() || first.startsWith(QLatin1Char('-'));
    QString last = match.captured(3);
    if (first.startsWith(QLatin1Char('-'))) {
        // "-2": up to page 2. "-2-5" is no range.
        if (!match.captured(2).isEmpty() || !last.isEmpty()) {
            return failure(quoted + QStringLiteral(" is not a page range: pages are numbered "
                                                   "from 1."));
        }
        last = first.mid(1);
        first.clear();
    }
    if (first.isEmpty() && last.isEmpty()) {
        return failure(quoted + QStringLiteral(" is not a page range: give a page (3) or two "
                                               "pages joined by a dash (2-5)."));
    }
    bool ok = true;
    const long long from = first.isEmpty() ? 1 : first.toLongLong(&ok);
    bool okLast = true;
    const long long to = last.isEmpty() ? (dash ? 0 : from) : last.toLongLong(&okLast);
    if (!ok || !okLast || from > 1000000 || to > 1000000) {
        return failure(quoted + QStringLiteral(" is not a page range: the numbers are too large."));
    }
    if (from < 1 || (!last.isEmpty() && to < 1)) {
        return failure(QStringLiteral("Pages are numbered from 1: ") + quoted +
                       QStringLiteral(" names no page."));
    }
    if (to != 0 && to < from) {
        return failure(QStringLiteral("The page range ") + quoted +
                       QStringLiteral(" runs backwards: write the first page first (%1-%2).")
                           .arg(to)
                           .arg(from));
    }
    return {PageRange{int(from), int(to)}, {}};
}

PageRangeResult fitPageRange(const PageRange& range, int totalPages) {
    totalPages = std::max(1, totalPages);
    if (range.fromPage > totalPages) {
        const QString pages =
            totalPages == 1 ? QStringLiteral("1 page") : QStringLiteral("%1 pages").arg(totalPages);
        return failure(QStringLiteral("The document has only %1: there is no page %2.")
                           .arg(pages)
                           .arg(range.fromPage));
    }
    PageRange fitted = range;
    if (fitted.toPage == 0 || fitted.toPage > totalPages) {
        fitted.toPage = totalPages;
    }
    return {fitted, {}};
}

std::optional<QString> checkCopies(int copies) {
    if (copies < 1 || copies > MaxCopies) {
        return QStringLiteral("The number of copies must be from 1 to %1; %2 was asked for.")
            .arg(MaxCopies)
            .arg(copies);
    }
    return std::nullopt;
}

std::optional<int> parseCopies(const QString& text, QString* error) {
    bool ok = false;
    const int copies = text.trimmed().toInt(&ok);
    if (!ok) {
        if (error) {
            *error = QStringLiteral("\"%1\" is not a number of copies.").arg(text.trimmed());
        }
        return std::nullopt;
    }
    if (const auto message = checkCopies(copies)) {
        if (error) {
            *error = *message;
        }
        return std::nullopt;
    }
    return copies;
}
