#include "app/modOpenDocumentsWizard.h"

#include "platform/rtf/RtfReader.h"

#include <QFile>
#include <QFileInfo>

namespace {

struct Step {
    const char* title;
    const char* text;
};

// The second step is the heart of it: another editor's own format cannot be
// read, but every editor can save rich text.
constexpr Step kSteps[] = {
    {"Welcome", "Click 'Next' to open a document from another text editor."},
    {"Save the document as rich text",
     "Open the document in the editor that wrote it. Choose \"Save As\" from its File menu, "
     "pick \"Rich Text Format (*.rtf)\" as the type of file, and save it under a name you will "
     "find again. A plain text file (*.txt) can be opened as it is, without formatting.\n\n"
     "Then come back here and click 'Next'."},
    {"Choose the document",
     "Click 'Browse...' and choose the rich text or plain text file you saved, then click "
     "'Next'."},
    {"Open the document",
     "Click 'Finish' to open the document. Save it from here on as a Quillmere Pad document "
     "or template."},
};

constexpr int kStepCount = int(sizeof(kSteps) / sizeof(kSteps[0]));

constexpr qint64 kHeadBytes = 4096;

bool startsWith(const QByteArray& bytes, const char* signature, int length) {
    return bytes.size() >= length && std::equal(signature, signature + length, bytes.begin());
}

} // namespace

int openWizardStepCount() {
    return kStepCount;
}

QString openWizardStepTitle(int step) {
    return step >= 0 && step < kStepCount ? QString::fromUtf8(kSteps[step].title) : QString();
}

QString openWizardStepText(int step) {
    return step >= 0 && step < kStepCount ? QString::fromUtf8(kSteps[step].text) : QString();
}

WizardButtons openWizardButtons(int step) {
    WizardButtons b;
    b.back = step > 0 && step < kStepCount;
    b.next = step >= 0 && step < kStepCount - 1;
    b.finish = step == kStepCount - 1;
    return b;
}

ForeignDocumentKind classifyForeignDocument(const QByteArray& head) {
    if (RtfReader::hasRtfHeader(head)) {
        return ForeignDocumentKind::RichText;
    }
    // Zip packages (the newer office formats) and compound files (the older
    // ones) announce themselves; anything else with a NUL byte is no text.
    if (startsWith(head, "PK\x03\x04", 4) || startsWith(head, "\xD0\xCF\x11\xE0", 4) ||
        startsWith(head, "%PDF", 4) || head.contains('\0')) {
        return ForeignDocumentKind::Binary;
    }
    return ForeignDocumentKind::PlainText;
}

QString checkDocumentToOpen(const QString& path) {
    if (path.trimmed().isEmpty()) {
        return QStringLiteral("Please choose the document to open.");
    }
    const QFileInfo info(path);
    if (!info.exists()) {
        return QStringLiteral("The file ") + path + QStringLiteral(" does not exist.");
    }
    if (info.isDir()) {
        return path + QStringLiteral(" is a folder. Please choose a document.");
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return QStringLiteral("The file ") + path + QStringLiteral(" cannot be read: ") +
               file.errorString();
    }
    if (classifyForeignDocument(file.read(kHeadBytes)) == ForeignDocumentKind::Binary) {
        return QStringLiteral("The file ") + info.fileName() +
               QStringLiteral(" is not saved as rich text or plain text. Open it in the program "
                              "that wrote it, save it as \"Rich Text Format (*.rtf)\", and "
                              "choose the saved copy.");
    }
    return {};
}

QString openWizardFileFilter() {
    return QStringLiteral("Rich Text Files (*.rtf);;Text Files (*.txt);;All Files (*)");
}
