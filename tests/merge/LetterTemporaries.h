#pragma once

#include "merge/LetterWriter.h"

#include <QDir>
#include <QDirIterator>
#include <QStringList>

// The letter temporaries left anywhere below a folder: a filing run that
// ends, however it ends, must leave none.
inline QStringList temporariesBelow(const QString& folder) {
    QStringList found;
    for (QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
         it.hasNext();) {
        it.next();
        if (LetterWriter::isTemporaryName(it.fileName()))
            found << it.filePath();
    }
    return found;
}
