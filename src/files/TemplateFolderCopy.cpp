#include "files/TemplateFolderCopy.h"

#include "platform/fileControl.h"

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFileInfo>

namespace {

struct Listing {
    QStringList folders; // relative, parents before children
    QStringList files;   // relative
};

// Everything below `from` except the subtree of `skip` (a destination
// inside the source).
Listing listTree(const QString& from, const QString& skip) {
    Listing out;
    const QDir source(from);
    QDirIterator it(from, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        if (!skip.isEmpty() && fileControl::isBelowFolder(path, skip)) {
            continue;
        }
        const QFileInfo info = it.fileInfo();
        const QString relative = source.relativeFilePath(path);
        if (info.isDir()) {
            out.folders << relative;
        } else if (info.isFile()) {
            out.files << relative;
        }
    }
    out.folders.sort();
    out.files.sort();
    return out;
}

bool sameFolder(const QString& a, const QString& b) {
    const QFileInfo ia(a);
    const QFileInfo ib(b);
    if (ia.exists() && ib.exists()) {
        return ia.canonicalFilePath() == ib.canonicalFilePath();
    }
    return QDir::cleanPath(ia.absoluteFilePath()) == QDir::cleanPath(ib.absoluteFilePath());
}

} // namespace

QString TemplateFolderCopy::reportHeading() {
    const QString title = QStringLiteral("File copy report");
    return title + QLatin1Char('\n') + QString(title.size(), QLatin1Char('=')) + QLatin1Char('\n');
}

TemplateFolderCopy::Result TemplateFolderCopy::run(const QString& from, const QString& to,
                                                   const Events& events) {
    Result result;
    result.report = reportHeading();
    const auto line = [&](const QString& text) {
        result.report += text + QLatin1Char('\n');
        if (events.reportLine) {
            events.reportLine(text);
        }
    };
    const auto refuse = [&](const QString& why) {
        result.problem = why;
        line(why);
        return result;
    };

    if (from.trimmed().isEmpty() || !fileControl::FolderExists(from)) {
        return refuse(QStringLiteral("The folder to copy from does not exist: ") + from);
    }
    if (to.trimmed().isEmpty()) {
        return refuse(QStringLiteral("No folder to copy to was given."));
    }
    if (sameFolder(from, to)) {
        return refuse(QStringLiteral("The two folders are the same; nothing was copied."));
    }
    if (!QDir().mkpath(to)) {
        return refuse(QStringLiteral("The folder could not be created: ") + to);
    }

    const QDateTime start = QDateTime::currentDateTime();
    QElapsedTimer clock;
    clock.start();
    if (events.started) {
        events.started(start);
    }
    line(QStringLiteral("From: ") + from);
    line(QStringLiteral("To: ") + to);

    const QString fromDir = QFileInfo(from).canonicalFilePath();
    const QString toDir = QFileInfo(to).canonicalFilePath();
    const Listing listing =
        listTree(fromDir, fileControl::isBelowFolder(toDir, fromDir) ? toDir : QString());
    const QDir target(toDir);
    const int total = int(listing.files.size());
    int handled = 0;
    const auto report = [&] {
        if (events.counted) {
            events.counted(handled, result.folders);
        }
        if (events.progress) {
            events.progress(0, total, handled);
        }
    };
    report();

    for (const QString& folder : listing.folders) {
        if (!target.exists(folder)) {
            if (target.mkpath(folder)) {
                ++result.folders;
            } else {
                result.failed << folder + QStringLiteral(": the folder could not be created");
                line(QStringLiteral("Failed: ") + result.failed.back());
            }
        }
    }

    for (const QString& file : listing.files) {
        if (events.cancelled && events.cancelled()) {
            result.cancelled = true;
            line(QStringLiteral("Stopped by the user."));
            break;
        }
        if (events.status) {
            events.status(file);
        }
        const QString source = QDir(fromDir).filePath(file);
        const QString destination = target.filePath(file);
        if (QFileInfo::exists(destination)) {
            result.skipped << file;
            line(QStringLiteral("Skipped (already there): ") + file);
        } else if (!QDir().mkpath(QFileInfo(destination).absolutePath())) {
            result.failed << file + QStringLiteral(": its folder could not be created");
            line(QStringLiteral("Failed: ") + result.failed.back());
        } else if (fileControl::CopyFile(source, destination, false)) {
            result.copied << file;
            line(QStringLiteral("Copied: ") + file);
        } else {
            const QString why = QFileInfo(source).isReadable()
                                    ? QStringLiteral("it could not be written")
                                    : QStringLiteral("it could not be read");
            result.failed << file + QStringLiteral(": ") + why;
            line(QStringLiteral("Failed: ") + result.failed.back());
        }
        ++handled;
        report();
    }

    line(QStringLiteral("%1 copied, %2 skipped, %3 failed.")
             .arg(result.copied.size())
             .arg(result.skipped.size())
             .arg(result.failed.size()));
    if (events.finished) {
        events.finished(QDateTime::currentDateTime(), clock.elapsed());
    }
    return result;
}

int clampProgress(int minimum, int maximum, int value) {
    if (value > maximum) {
        value = maximum;
    }
    if (value < minimum) {
        value = minimum;
    }
    return value;
}

QString progressPercentText(int minimum, int maximum, int value) {
    if (maximum <= minimum) {
        return QStringLiteral("0%");
    }
    const qint64 done = qint64(clampProgress(minimum, maximum, value)) - minimum;
    const qint64 span = qint64(maximum) - minimum;
    return QString::number(done * 100 / span) + QLatin1Char('%');
}

QString elapsedTimeText(qint64 milliseconds) {
    const qint64 seconds = std::max<qint64>(0, milliseconds) / 1000;
    return QStringLiteral("%1:%2:%3")
        .arg(seconds / 3600)
        .arg((seconds / 60) % 60, 2, 10, QLatin1Char('0'))
        .arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

QString templateFolderDialogStart(const QString& stored, const QString& defaultFolder,
                                  const QString& current) {
    const QString s = stored.trimmed();
    if (!s.isEmpty() && s != QLatin1String("<not_set>")) {
        return stored;
    }
    if (!defaultFolder.trimmed().isEmpty() && fileControl::FolderExists(defaultFolder)) {
        return defaultFolder;
    }
    return current;
}

bool shouldOfferTemplateCopy(const QString& oldFolder, const QString& newFolder) {
    if (!fileControl::FolderExists(oldFolder) || !fileControl::FolderExists(newFolder) ||
        sameFolder(oldFolder, newFolder)) {
        return false;
    }
    QDirIterator it(oldFolder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    return it.hasNext();
}
