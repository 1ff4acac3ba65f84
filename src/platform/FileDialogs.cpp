#include "platform/FileDialogs.h"

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
