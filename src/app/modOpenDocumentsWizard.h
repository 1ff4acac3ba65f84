#pragma once

#include <QByteArray>
#include <QString>

// The decisions of the Open Documents Wizard, which walks a user through
// bringing in a document written with another text editor.

// The number of steps and what each says; the first step's text is fixed.
int openWizardStepCount();
QString openWizardStepTitle(int step);
QString openWizardStepText(int step);

// Which navigation buttons are usable on a step: Back anywhere but the
// first, Next anywhere but the last, Finish on the last.
struct WizardButtons {
    bool back = false;
    bool next = false;
    bool finish = false;
};
WizardButtons openWizardButtons(int step);

// What the first bytes of a chosen file say about it.
enum class ForeignDocumentKind {
    RichText,  // opens with its formatting
    PlainText, // opens as text
    Binary,    // a word processor's own format, which would open as noise
};
ForeignDocumentKind classifyForeignDocument(const QByteArray& head);

// The message that stops the wizard from opening `path`, or an empty
// string when the file can be opened. Reads at most the first few
// kilobytes of the file.
QString checkDocumentToOpen(const QString& path);

// The filter of the wizard's file dialog.
QString openWizardFileFilter();
