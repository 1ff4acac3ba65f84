#include "ui/InsertCommands.h"

#include "context/AppContext.h"
#include "documents/DocumentInserts.h"
#include "files/clsWorkingFolderLocation.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"
#include "ui/frmSymbols.h"
#include "ui/frmTimeDate.h"

#include <QMdiSubWindow>

namespace {

const QString kModule = QStringLiteral("QuillmerePad.exe-frmMain-");

int textWidthTwips(const frmDocument& document) {
    return document.getPageWidth() - document.getLeftMargin() - document.getRightMargin();
}

int textHeightTwips(const frmDocument& document) {
    return document.getPageHeight() - document.getTopMargin() - document.getBottomMargin();
}

QString picturesFolder() {
    return app().workingFolders ? app().workingFolders->getPicturesFolder() : QString();
}

QString templatesFolder() {
    return app().workingFolders ? app().workingFolders->getTemplatesFolder() : QString();
}

} // namespace

frmDocument* activeDocument(frmMain& window) {
    QMdiSubWindow* sub = window.activeDocumentWindow();
    auto* document = sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
    if (document == nullptr) {
        if (MsgboxClass* box = app().msgbox) {
            box->showMessage(QStringLiteral("There are no open documents."));
        }
    }
    return document;
}

void installInsertCommands(frmMain& window) {
    const auto route = [&window](const char* command, void (*routine)(frmMain&, frmDocument&)) {
        window.addRoute(QLatin1String(command), [&window, routine] {
            if (frmDocument* document = activeDocument(window)) {
                routine(window, *document);
                document->adjustDisplayForCursorPosition();
            }
        });
    };
    route("mnuInsertTimeDate", [](frmMain& main, frmDocument& document) {
        frmTimeDate dialog(document.rtfText(), app().clock.now(), &main);
        dialog.exec();
    });
    route("mnuInsertLetterhead", [](frmMain&, frmDocument& document) {
        ProcedureScope scope(app().errors, kModule + QStringLiteral("mnuInsertLetterhead_Click"));
        DocumentInserts::addLetterhead(document.rtfText(), app().currentCountry);
    });
    route("mnuInsertHorizontalLine", [](frmMain&, frmDocument& document) {
        ProcedureScope scope(app().errors, kModule + QStringLiteral("mnuInsertPicture_Click"));
        DocumentInserts::pastePicture(
            document.rtfText(), DocumentInserts::horizontalLinePicture(),
            DocumentInserts::horizontalLineTwips(textWidthTwips(document)));
    });
    route("mnuInsertPicture", [](frmMain&, frmDocument& document) {
        if (DocumentInserts::insertPicture(document.rtfText(), picturesFolder(),
                                           textWidthTwips(document), textHeightTwips(document))) {
            document.currentPageDisplayType = 2;
            document.changePageDisplayType();
        }
    });
    route("mnuInsertTextFile", [](frmMain&, frmDocument& document) {
        DocumentInserts::insertTextFile(document.rtfText(), templatesFolder());
    });
    route("mnuInsertPathandFile", [](frmMain&, frmDocument& document) {
        DocumentInserts::insertPathAndFile(document.rtfText(), document.DocumentFileName);
    });
    route("mnuInsertSymbols", [](frmMain& main, frmDocument& document) {
        frmSymbols dialog(document.rtfText(), &main);
        dialog.exec();
    });
}
