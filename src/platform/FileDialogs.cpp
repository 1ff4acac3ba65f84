#include "platform/FileDialogs.h"

#include <QFileInfo>
#include <QRegularExpression>

std::optional<QString> ScriptedFileDialogs::answer(Request request) {
    m_requests.push_back(std::move(request));
    if (m_answers.empty()) {
        return std::nullopt;
    }
    // Taken apart rather than moved whole: the optimiser warns, wrongly,
    // about a moved-from optional string.
    const bool given = m_answers.front().has_value();
    const QString path = given ? *m_answers.front() : QString();
    m_answers.pop_front();
    return given ? std::optional<QString>(path) : std::nullopt;
}

std::optional<QString> ScriptedFileDialogs::openFileName(const QString& caption,
                                                         const QString& folder,
                                                         const QString& filter) {
    return answer({Request::Kind::Open, caption, folder, filter});
}

std::optional<QString> ScriptedFileDialogs::saveFileName(const QString& caption,
                                                         const QString& suggested,
                                                         const QString& filter) {
    return answer({Request::Kind::Save, caption, suggested, filter});
}

std::optional<QString> ScriptedFileDialogs::existingFolder(const QString& caption,
                                                           const QString& folder) {
    return answer({Request::Kind::Folder, caption, folder, {}});
}

namespace {
// The patterns of one filter in the dialog notation: "Name (*.a *.b)".
QStringList patternsOf(const QString& oneFilter) {
    const qsizetype open = oneFilter.lastIndexOf(QLatin1Char('('));
    const qsizetype close = oneFilter.lastIndexOf(QLatin1Char(')'));
    if (open < 0 || close < open) {
        return {};
    }
    return oneFilter.mid(open + 1, close - open - 1).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}
} // namespace

QString FileDialogs::filterFromPipes(const QString& pipes) {
    const QStringList parts = pipes.split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString description = parts[i];
        const qsizetype bracket = description.lastIndexOf(QLatin1Char('('));
        if (bracket > 0) {
            description = description.left(bracket).trimmed();
        }
        QStringList patterns = parts[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts);
        for (QString& pattern : patterns) {
            // Names without a point match too.
            if (pattern == QLatin1String("*.*")) {
                pattern = QStringLiteral("*");
            }
        }
        filters << description + QStringLiteral(" (") + patterns.join(QLatin1Char(' ')) +
                       QLatin1Char(')');
    }
    return filters.join(QStringLiteral(";;"));
}

int FileDialogs::filterIndexForPath(const QString& filter, const QString& path) {
    const QStringList filters = filter.split(QStringLiteral(";;"), Qt::SkipEmptyParts);
    if (filters.isEmpty()) {
        return 1;
    }
    const QString name = QFileInfo(path).fileName();
    for (qsizetype i = 0; i < filters.size(); ++i) {
        for (const QString& pattern : patternsOf(filters[i])) {
            const QRegularExpression re(QRegularExpression::wildcardToRegularExpression(pattern),
                                        QRegularExpression::CaseInsensitiveOption);
            if (re.match(name).hasMatch()) {
                return int(i + 1);
            }
        }
    }
    return int(filters.size());
}

std::optional<FileDialogs::FileChoice>
FileDialogs::openFile(const QString& caption, const QString& folder, const QString& filter) {
    const auto path = openFileName(caption, folder, filter);
    if (!path) {
        return std::nullopt;
    }
    return FileChoice{*path, filterIndexForPath(filter, *path)};
}

std::optional<FileDialogs::FileChoice>
FileDialogs::saveFile(const QString& caption, const QString& suggested, const QString& filter) {
    const auto path = saveFileName(caption, suggested, filter);
    if (!path) {
        return std::nullopt;
    }
    return FileChoice{*path, filterIndexForPath(filter, *path)};
}

std::optional<FileDialogs::FileChoice> ScriptedFileDialogs::withFilter(std::optional<QString> path,
                                                                       const QString& filter) {
    if (!path) {
        return std::nullopt;
    }
    int index = filterIndexForPath(filter, *path);
    if (!m_filterIndexes.empty()) {
        index = m_filterIndexes.front();
        m_filterIndexes.pop_front();
    }
    return FileChoice{*path, index};
}

std::optional<FileDialogs::FileChoice> ScriptedFileDialogs::openFile(const QString& caption,
                                                                     const QString& folder,
                                                                     const QString& filter) {
    return withFilter(openFileName(caption, folder, filter), filter);
}

std::optional<FileDialogs::FileChoice> ScriptedFileDialogs::saveFile(const QString& caption,
                                                                     const QString& suggested,
                                                                     const QString& filter) {
    return withFilter(saveFileName(caption, suggested, filter), filter);
}
