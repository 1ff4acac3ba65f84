#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <functional>

// Copies the templates of one folder into another for the templates folder
// wizard, feeding its progress panel as it goes and writing a report.
//
// Nothing already in the destination is ever overwritten: a file of the
// same name there is kept and reported as skipped. Subfolders come along.
// The files are listed before the first is copied, so a destination inside
// the source is neither copied into itself nor walked again.
class TemplateFolderCopy {
public:
    // What the progress panel is told; each may be left empty.
    struct Events {
        std::function<void(const QString& line)> reportLine;
        std::function<void(const QDateTime& at)> started;
        std::function<void(const QDateTime& at, qint64 elapsedMs)> finished;
        // Files and folders dealt with so far.
        std::function<void(int files, int folders)> counted;
        std::function<void(int minimum, int maximum, int value)> progress;
        // The file about to be copied, relative to the source.
        std::function<void(const QString& file)> status;
        // Asked between files; true stops the copy where it stands.
        std::function<bool()> cancelled;
    };

    struct Result {
        QStringList copied;  // relative paths
        QStringList skipped; // already in the destination
        QStringList failed;  // "relative path: reason"
        int folders = 0;     // folders created in the destination
        bool cancelled = false;
        // The source could not be read or the destination not made; nothing
        // was copied and `problem` says why.
        QString problem;
        QString report; // the whole report text, as the panel shows it

        bool ok() const { return problem.isEmpty() && failed.isEmpty() && !cancelled; }
    };

    // The heading the report starts with: "File copy report" over a line of "=".
    static QString reportHeading();

    // Copies every file below `from` into `to`. Refuses, with `problem` set,
    // a missing source, the same folder twice, or a destination that cannot
    // be created.
    static Result run(const QString& from, const QString& to, const Events& events = {});
};

// The progress bar's value, cut to `maximum` and raised to `minimum`.
int clampProgress(int minimum, int maximum, int value);
// "0%" to "100%" for a value between the bounds (clamped first); "0%" for
// an empty range.
QString progressPercentText(int minimum, int maximum, int value);
// "h:mm:ss" for the elapsed-time label.
QString elapsedTimeText(qint64 milliseconds);

// The folder the folder dialog starts in: the stored templates folder if it
// is set, else the default templates folder if it exists, else the current
// templates folder.
QString templateFolderDialogStart(const QString& stored, const QString& defaultFolder,
                                  const QString& current);

// Whether the templates of `oldFolder` are worth offering to copy into
// `newFolder`: both exist, they are different folders, and the old one holds
// at least one file.
bool shouldOfferTemplateCopy(const QString& oldFolder, const QString& newFolder);
