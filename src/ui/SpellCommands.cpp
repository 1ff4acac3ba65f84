#include "ui/SpellCommands.h"

#include "context/AppContext.h"
#include "files/clsWorkingFolderLocation.h"
#include "spell/SpellCheckSession.h"
#include "spell/clsSpellCheck.h"
#include "ui/InsertCommands.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"
#include "ui/frmSpellCheck.h"

void spellCheckDocument(frmDocument& document, frmMain& window) {
    const QString folder = app().workingFolders != nullptr
                               ? app().workingFolders->getTemplatesFolder()
                               : clsWorkingFolderLocation().getDefaultTemplatesFolder();
    RichTextBox& box = document.rtfText();
    // The dialog walks the words through the box's selection; the sheet that
    // holds each one comes into view.
    const QMetaObject::Connection follow =
        QObject::connect(&box, &RichTextBox::selectionChanged, &document,
                         [&document] { document.adjustDisplayForCursorPosition(); });
    spellCheckPage(
        box, folder,
        [&window](SpellCheckSession& session) {
            frmSpellCheck dialog(session, &window);
            if (!session.finished()) {
                dialog.exec();
            }
        },
        &window);
    QObject::disconnect(follow);
    document.adjustDisplayForCursorPosition();
}

void installSpellCommands(frmMain& window) {
    window.addRoute(QStringLiteral("mnuToolsSpellCheck"), [&window] {
        if (frmDocument* document = activeDocument(window)) {
            spellCheckDocument(*document, window);
        }
    });
}
