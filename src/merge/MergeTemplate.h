#pragma once

#include "documents/DocumentModel.h"

#include <QString>

// A template file opened as the document window opens a file, without the
// window: the trailer is read, the RTF loaded into a rich text box, and the
// regional placeholders rewritten by app().fieldInserter. The result is the
// text a merge works on.
struct MergeTemplate {
    DocumentModel model;
    QString caption; // "Merge Template - " + the file's name for a template
    QString rtf;
};

// Throws QmError FileNotFound when the file is missing, InvalidFileFormat
// (321) when it is no document the program can read.
MergeTemplate openMergeTemplate(const QString& path);

// The message the program shows for a file it cannot read as a document.
QString invalidDocumentMessage();
