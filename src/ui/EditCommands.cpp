#include "ui/EditCommands.h"

#include "app/MenuDefinition.h"
#include "context/AppContext.h"
#include "platform/MsgboxClass.h"
#include "ui/AccessoryCommands.h"
#include "ui/CommandActions.h"
#include "ui/FontDialog.h"
#include "ui/PageView.h"
#include "ui/frmDocument.h"
#include "ui/frmFind.h"
#include "ui/frmGoTo.h"
#include "ui/frmHelp.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QComboBox>
#include <QMdiSubWindow>
#include <QTextDocument>

using namespace FormatCommands;

EditCommands::EditCommands(frmMain& window) : QObject(&window), m_window(window) {
    m_chooseFont = [this](const FontChoice& seed) {
        return FontDialog::chooseFont(&m_window, seed);
    };
    installEditRoutes();
    installFormatRoutes();
    installSearchRoutes();
    installFontBar();
}

frmDocument* EditCommands::activeDocument() const {
    QMdiSubWindow* sub = m_window.activeDocumentWindow();
    return sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
}

void EditCommands::onDocument(const std::function<void(frmDocument&)>& work) {
    frmDocument* document = activeDocument();
    if (document == nullptr) {
        if (MsgboxClass* box = app().msgbox) {
            box->showMessage(QStringLiteral("There are no open documents."));
        }
        return;
    }
    work(*document);
    document->pageView()->setFocus();
    m_window.refreshMenuStatus();
}

void EditCommands::route(const char* command, std::function<void(frmDocument&)> work) {
    m_window.addRoute(QLatin1String(command), [this, work = std::move(work)] { onDocument(work); });
}

void EditCommands::installEditRoutes() {
    const auto edit = [this](const char* command, int message) {
        route(command, [message](frmDocument& d) { d.performEdit(message); });
    };
    edit("mnuEditUndo", RichTextBox::EM_UNDO);
    edit("mnuEditCut", RichTextBox::WM_CUT);
    edit("mnuEditCopy", RichTextBox::WM_COPY);
    edit("mnuEditPaste", RichTextBox::WM_PASTE);
    edit("mnuEditDelete", RichTextBox::WM_CLEAR);
    route("mnuEditRedo", [](frmDocument& d) {
        d.rtfText().redo();
        d.adjustDisplayForCursorPosition();
    });
    route("mnuEditSelectAll", [](frmDocument& d) {
        d.rtfText().setSelStart(0);
        d.rtfText().setSelLength(d.rtfText().TextLength());
    });
    route("mnuEditMarkClean", [](frmDocument& d) {
        d.setHasDocumentChanged(false);
        d.rtfText().document()->setModified(false);
    });
}

void EditCommands::installFormatRoutes() {
    const auto style = [this](const char* command, CharStyle which) {
        route(command, [which](frmDocument& d) { toggleCharStyle(d.rtfText(), which); });
    };
    style("tbrFormat.Bold", CharStyle::Bold);
    style("tbrFormat.Italic", CharStyle::Italic);
    style("tbrFormat.Underline", CharStyle::Underline);
    style("tbrFormat.StrikeThru", CharStyle::StrikeThru);
    const auto align = [this](const char* command, int alignment) {
        route(command, [alignment](frmDocument& d) { setAlignment(d.rtfText(), alignment); });
    };
    align("tbrFormat.Left", RichTextBox::rtfLeft);
    align("tbrFormat.Center", RichTextBox::rtfCenter);
    align("tbrFormat.Right", RichTextBox::rtfRight);
    route("tbrFormat.Bullet", [](frmDocument& d) { toggleBullet(d.rtfText()); });
    route("mnuFormatBullet", [](frmDocument& d) { toggleBullet(d.rtfText()); });

    const auto indent = [this](const char* command, Indent which, int twips) {
        route(command, [which, twips](frmDocument& d) { changeIndent(d.rtfText(), which, twips); });
    };
    indent("mnuFormatIncreaseLeftIndent", Indent::Left, IndentStep);
    indent("mnuFormatDecreaseLeftIndent", Indent::Left, -IndentStep);
    indent("mnuFormatIncreaseRightIndent", Indent::Right, IndentStep);
    indent("mnuFormatDecreaseRightIndent", Indent::Right, -IndentStep);
    indent("mnuFormatIncreaseHangingIndent", Indent::Hanging, IndentStep);
    indent("mnuFormatDecreaseHangingIndent", Indent::Hanging, -IndentStep);

    route("mnuFormatUpper", [](frmDocument& d) { changeCase(d.rtfText(), true); });
    route("mnuFormatLower", [](frmDocument& d) { changeCase(d.rtfText(), false); });
    route("mnuFormatScriptNoScript", [](frmDocument& d) { setScript(d.rtfText(), Script::None); });
    route("mnuFormatScriptSuperScript",
          [](frmDocument& d) { setScript(d.rtfText(), Script::Super); });
    route("mnuFormatScriptSubScript", [](frmDocument& d) { setScript(d.rtfText(), Script::Sub); });
    route("mnuFormatFont", [this](frmDocument& d) {
        if (const auto choice = m_chooseFont(fontChoiceOf(d.rtfText()))) {
            applyFontChoice(d.rtfText(), *choice);
        }
    });
}

frmFind* EditCommands::findDialog() {
    if (!m_find) {
        m_find = new frmFind(
            m_search, [this] { return activeDocument(); }, &m_window);
        m_find->setWindowFlag(Qt::Tool);
        m_find->setHelp([this] {
            if (auto* accessories = m_window.findChild<AccessoryCommands*>()) {
                accessories->showHelp(frmHelp::Editing);
            }
        });
    }
    return m_find;
}

frmGoTo* EditCommands::goToDialog() {
    if (!m_goTo) {
        m_goTo = new frmGoTo([this] { return activeDocument(); }, &m_window);
        m_goTo->setWindowFlag(Qt::Tool);
    }
    return m_goTo;
}

void EditCommands::installSearchRoutes() {
    // The dialogs keep the focus while they are open; the text gets it back
    // from a hit.
    m_window.addRoute(QStringLiteral("mnuSearchFind"), [this] {
        if (activeDocument() != nullptr) {
            findDialog()->showIn(frmFind::Layout::Find);
        }
    });
    m_window.addRoute(QStringLiteral("mnuSearchReplace"), [this] {
        if (activeDocument() != nullptr) {
            findDialog()->showIn(frmFind::Layout::Replace);
        }
    });
    m_window.addRoute(QStringLiteral("mnuSearchGoTo"), [this] {
        if (activeDocument() != nullptr) {
            goToDialog()->show();
            goToDialog()->raise();
            goToDialog()->activateWindow();
        }
    });
    route("mnuSearchFindNext", [this](frmDocument& d) {
        if (m_search.findText.isEmpty()) {
            findDialog()->showIn(frmFind::Layout::Find);
            return;
        }
        presentSearchResult(d, m_search.find(d.rtfText()));
        if (m_find) {
            m_find->showCaptions();
        }
    });
}

void EditCommands::installFontBar() {
    QComboBox* name = m_window.fontNameBox();
    QComboBox* size = m_window.fontSizeBox();
    name->setEnabled(true);
    // Editable, so that a document's font shows by name even when this
    // machine does not have it, as a letter from another office often has.
    name->setEditable(true);
    name->setInsertPolicy(QComboBox::NoInsert);
    name->setToolTip(QStringLiteral("Font"));
    name->setAccessibleName(QStringLiteral("Font"));
    size->setEnabled(true);
    size->setEditable(true);
    size->setInsertPolicy(QComboBox::NoInsert);
    size->setToolTip(QStringLiteral("Font Size"));
    size->setAccessibleName(QStringLiteral("Font Size"));
    connect(name, &QComboBox::textActivated, this, [this](const QString& family) {
        if (!app().isCreatingDocument) {
            onDocument([&family](frmDocument& d) { applyFontName(d.rtfText(), family); });
        }
    });
    connect(size, &QComboBox::textActivated, this, [this](const QString& points) {
        if (!app().isCreatingDocument) {
            onDocument([&points](frmDocument& d) { applyFontSize(d.rtfText(), points); });
        }
    });
}

void installEditCommands(frmMain& window) {
    new EditCommands(window); // the window owns it
}
