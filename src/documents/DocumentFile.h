#pragma once

#include "documents/DocumentModel.h"

#include <QByteArray>
#include <QString>
#include <functional>

class RichTextBox;

// A document as it comes out of its file: the content, what the trailer
// says about it, and the window caption it gets.
struct OpenedDocument {
    DocumentModel model;
    QString caption;
    // True for a file without an RTF header: `text` holds its text and the
    // model's fileSaveType is PlainText. Otherwise `rtf` holds the content
    // as the rich text box gives it back, regional placeholders rewritten
    // (opened into a box of the caller's, only when they were rewritten:
    // the box holds the content).
    bool isPlainText = false;
    QString rtf;
    QString text;
};

// Opening and saving document files. A file is read once and written once:
// the content and the trailer together, whole, through a temporary file.
class DocumentFile {
public:
    // Where warnings about doubtful trailer values go; standard error when
    // none is given.
    using WarningSink = std::function<void(const QString&)>;

    // Reads `path` into `box` and returns the rest. An RTF file (the
    // program's own or another program's) loads as rich text with its
    // trailer read; any other file loads as plain text. A bad trailer value
    // goes to the error object when there is one, and is otherwise warned
    // about and skipped; page sizes and margins that cannot be (a page of no
    // width, margins wider than the page, an unknown paper code) fall back
    // to the defaults with a warning.
    // Throws QmError FileNotFound (missing), PathFileAccessError (refused or
    // unreadable; the description says which) or InvalidFileFormat (an RTF
    // header over content that is not RTF).
    static OpenedDocument open(const QString& path, RichTextBox& box, const WarningSink& warn = {});
    // The same with a box of its own; `rtf` or `text` carries the content.
    static OpenedDocument open(const QString& path, const WarningSink& warn = {});

    // Writes the box's RTF followed by the model's trailer in one atomic
    // write. Throws QmError Overflow (a value outside 16 bits) before the
    // file is touched, PathFileAccessError when it cannot be written; the
    // old file then stays whole.
    static void save(const QString& path, const RichTextBox& box, const DocumentModel& model);
    // The same for content already in hand (a merged letter's RTF).
    static void saveBytes(const QString& path, const QByteArray& content,
                          const DocumentModel& model);

    // The caption of a document of this type with this name: the type's
    // prefix ("Merge Template - ", ...) followed by the name.
    static QString caption(int documentType, const QString& name);

    // Puts page geometry that cannot be laid out back to the defaults and
    // says so through `warn`; true when something was changed.
    static bool repairPageSetup(DocumentModel& model, const WarningSink& warn);
};
