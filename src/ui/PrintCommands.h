#pragma once

#include "documents/DocumentModel.h"
#include "merge/MergeResultDocument.h"

#include <QString>
#include <optional>
#include <vector>

class frmMain;
class QWidget;

// Registers File > Print, Print Preview, Page Setup and Export as PDF on the
// main window, each working on the active document window.
void installPrintCommands(frmMain& window);

// The merged printing run for a merge result: the print dialog, then every
// letter in one job with "Preparing to print: " + its name on the progress,
// the page range counting through the whole batch. Returns the pages passed
// through, 0 when the dialog or the progress was cancelled; a printer
// failure is shown to the user.
int printMergeDoc(QWidget* owner, const std::vector<MergedRecord>& records,
                  const DocumentModel& geometry, const QString& caption);
// Print preview of a whole merge result, one letter laid out at a time.
void previewMergeDoc(QWidget* owner, const std::vector<MergedRecord>& records,
                     const DocumentModel& geometry, const QString& caption);
// A merge result as PDF: one combined file at `path`, or, with `beside`
// set, one PDF next to every letter filed in its client's folder (letters
// not filed are left out). Failures are shown to the user; true when all
// were written.
bool exportMergeDocPdf(const std::vector<MergedRecord>& records, const DocumentModel& geometry,
                       const QString& path, bool beside);
// Asks where a PDF goes (the file dialog with `caption`, starting at
// `suggested`); ".pdf" is added to a name without it. Nothing when the user
// cancelled.
std::optional<QString> askPdfPath(const QString& caption, const QString& suggested);
