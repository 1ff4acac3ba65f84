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

    // A chosen file with the 1-based index of the filter it was chosen
    // under, for callers whose filters carry a meaning (text or rich text).
    struct FileChoice {
        QString path;
        int filterIndex = 1;
    };
    // By default the index is that of the first filter whose patterns
    // match the chosen name (the last filter when none does).
    virtual std::optional<FileChoice> openFile(const QString& caption, const QString& folder,
                                               const QString& filter);
    virtual std::optional<FileChoice> saveFile(const QString& caption, const QString& suggested,
                                               const QString& filter);

    // "Text (*.txt)|*.txt|All (*.*)|*.*|" (description and patterns by
    // turns, as the old dialogs took them) in this interface's notation:
    // "Text (*.txt);;All (*)".
    static QString filterFromPipes(const QString& pipes);
    // 1-based index of the first filter matching the file's name; the last
    // filter when none does, 1 for an empty filter.
    static int filterIndexForPath(const QString& filter, const QString& path);
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

    std::optional<FileChoice> openFile(const QString& caption, const QString& folder,
                                       const QString& filter) override;
    std::optional<FileChoice> saveFile(const QString& caption, const QString& suggested,
                                       const QString& filter) override;

    void queueAnswer(std::optional<QString> answer) { m_answers.push_back(std::move(answer)); }
    // The filter the next chosen file comes with; without one, the filter
    // its name matches.
    void queueFilterIndex(int index) { m_filterIndexes.push_back(index); }
    const std::vector<Request>& requests() const { return m_requests; }

private:
    std::optional<QString> answer(Request request);

    std::optional<FileChoice> withFilter(std::optional<QString> path, const QString& filter);

    std::deque<std::optional<QString>> m_answers;
    std::deque<int> m_filterIndexes;
    std::vector<Request> m_requests;
};
