#pragma once

#include <QByteArray>
#include <QString>
#include <functional>

class DocumentModel;

// The document file: the text as the rich text box saved it, followed by a
// private trailer of eleven lines that carries the document's kind and page
// setup. Any RTF reader stops at the RTF's closing brace and never sees it.

// Appends the trailer to the file just saved by the box. The trailer is
// built before the file is touched: a value outside 16 bits raises
// QmError Overflow and leaves the file as it was. The file is rewritten
// whole (temporary file and rename). Raises QmError PathFileAccessError when
// the file cannot be read or written.
void saveCompanionInformation(const QString& path, DocumentModel& document);

// Sets the document's fields from the trailer, then from an old ".rti"
// companion file beside it, which wins and is deleted afterwards. A file
// without a trailer changes nothing. A value that is not a number, or out
// of 16 bits, goes to the error handler: with the error object's answer
// "go on" the remaining values are still read; without an error object the
// fault is raised to the caller.
void openCompanionInformation(const QString& path, DocumentModel& document);

// openCompanionInformation on text already read (the whole file, as Latin-1)
// instead of reading the file again. With `lenient`, a bad value is not
// raised to a caller without an error object: it is told to `warn` and the
// rest is still read. The ".rti" companion beside `path` is read as above.
void openCompanionInformationFromText(const QString& path, const QString& text,
                                      DocumentModel& document, bool lenient,
                                      const std::function<void(const QString&)>& warn);

// The bytes of a document file: the content as the box saved it, without
// NUL characters, followed by the trailer (the trailer alone when the content
// is blank). Raises QmError Overflow for a value outside 16 bits, before
// anything is written.
QByteArray documentFileBytes(const QByteArray& content, const DocumentModel& document);
// The same with the trailer's bytes in hand (documentFileBytes of empty
// content), for many files of one model.
QByteArray documentFileBytes(QByteArray content, const QByteArray& trailer);

// The extension (without the point) for saving this kind of document; empty
// for merge results and for templates of other kinds.
QString getFileExtension(const DocumentModel& document);

// The trailer text as it is appended, starting with its leading CR LF.
QString buildCompanionTrailer(const DocumentModel& document);
