#include "platform/FileDialogs.h"

std::optional<QString> ScriptedFileDialogs::answer(Request request) {
    m_requests.push_back(std::move(request));
    if (m_answers.empty()) {
        return std::nullopt;
    }
    std::optional<QString> next = std::move(m_answers.front());
    m_answers.pop_front();
    return next;
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
