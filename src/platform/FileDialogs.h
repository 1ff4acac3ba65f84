#pragma once

#include <QString>
#include <QStringList>
#include <deque>
#include <optional>
#include <vector>

// Every file or folder choice the program asks of the user goes through this
// interface. The windowed program plugs in the desktop's file dialogs; tests
// plug in ScriptedFileDialogs. An empty optional means the user cancelled.
//
// `filter` is in the dialog's own notation: "Documents (*.qmw);;All Files (*)".
class FileDialogs {
public:
    virtual ~FileDialogs() = default;

    virtual std::optional<QString> openFileName(const QString& caption, const QString& folder,
                                                const QString& filter) = 0;
    // `suggested` is the folder or the full path offered at first.
    virtual std::optional<QString> saveFileName(const QString& caption, const QString& suggested,
                                                const QString& filter) = 0;
    virtual std::optional<QString> existingFolder(const QString& caption,
                                                  const QString& folder) = 0;
};

// Answers from a queue, in order; an empty queue answers "cancelled". Records
// every request so a test can check the caption, folder and filter offered.
class ScriptedFileDialogs : public FileDialogs {
public:
    struct Request {
        enum class Kind { Open, Save, Folder };
        Kind kind;
        QString caption;
        QString folder;
        QString filter;
    };

    std::optional<QString> openFileName(const QString& caption, const QString& folder,
                                        const QString& filter) override;
    std::optional<QString> saveFileName(const QString& caption, const QString& suggested,
                                        const QString& filter) override;
    std::optional<QString> existingFolder(const QString& caption, const QString& folder) override;

    void queueAnswer(std::optional<QString> answer) { m_answers.push_back(std::move(answer)); }
    const std::vector<Request>& requests() const { return m_requests; }

private:
    std::optional<QString> answer(Request request);

    std::deque<std::optional<QString>> m_answers;
    std::vector<Request> m_requests;
};
