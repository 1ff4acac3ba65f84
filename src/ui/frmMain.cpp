#include "ui/frmMain.h"

#include "app/MenuDefinition.h"
#include "app/SelectionState.h"
#include "app/modOptions.h"
#include "context/AppContext.h"
#include "documents/DocumentFile.h"
#include "documents/DocumentLifecycle.h"
#include "files/clsINI.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"
#include "ui/AccessoryCommands.h"
#include "ui/CommandActions.h"
#include "ui/DocumentCommands.h"
#include "ui/EditCommands.h"
#include "ui/InsertCommands.h"
#include "ui/LiveSpellChecker.h"
#include "ui/MainWindowPosition.h"
#include "ui/MergeWindowCommands.h"
#include "ui/OptionsCommands.h"
#include "ui/PageView.h"
#include "ui/PrintCommands.h"
#include "ui/RecentFilesMenu.h"
#include "ui/RecipientCommands.h"
#include "ui/Ruler.h"
#include "ui/SpellCommands.h"
#include "ui/ZoomBox.h"
#include "ui/frmDocument.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QFontDatabase>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QTabBar>
#include <QTextBlock>
#include <QTextEdit>
#include <QTextList>
#include <QToolBar>
#include <algorithm>

namespace {
// Twips per pixel at the usual 96 dots per inch.
constexpr int kTwipsPerPixel = 15;
constexpr int kMinWidthTwips = 11640;
constexpr int kMinHeightTwips = 8340;
} // namespace

frmMain::frmMain(QWidget* parent) : QMainWindow(parent), m_area(new QMdiArea(this)) {
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("Quillmere Pad"));
    m_area->setObjectName(QStringLiteral("MDIArea"));
    m_area->setViewMode(QMdiArea::TabbedView);
    m_area->setTabsClosable(true);
    m_area->setTabsMovable(true);
    if (auto* tabs = m_area->findChild<QTabBar*>()) {
        tabs->setObjectName(QStringLiteral("MDITabsCtrl"));
    }
    setCentralWidget(m_area);
    // The smallest the window may be made, as the frame's tracking limit.
    setMinimumSize(kMinWidthTwips / kTwipsPerPixel, kMinHeightTwips / kTwipsPerPixel);
    // FormWidth x FormHeight of a new settings file.
    resize(11640 / kTwipsPerPixel, 8340 / kTwipsPerPixel);

    m_commands = new CommandActions(this);
    buildFontBar();
    buildStatusBar();
    registerRoutes();
    installDocumentCommands(*this);
    m_recentFiles = new RecentFilesMenu(*this);
    m_options = new OptionsCommands(*this);
    // Saved under a new name or opened: the head of the recent files.
    connect(documentCommands(*this), &DocumentCommands::documentFileUsed, this,
            &frmMain::addRecentFile);
    installEditCommands(*this);
    installInsertCommands(*this);
    installSpellCommands(*this);
    installLiveSpelling(*this);
    installMergeCommands(*this);
    installRecipientCommands(*this);
    installPrintCommands(*this);
    installAccessoryCommands(*this);
    buildRuler();
    connect(m_commands, &CommandActions::commandTriggered, this, &frmMain::runCommand);
    connect(m_area, &QMdiArea::subWindowActivated, this, &frmMain::onDocumentActivated);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            &frmMain::refreshMenuStatus);
    for (const ViewSetting& v : viewSettings()) {
        if (QWidget* target = viewTarget(v.command)) {
            m_commands->action(v.command)->setChecked(!target->isHidden());
        }
    }
    m_stateReader = [](QMdiSubWindow* sub) -> std::optional<ActiveDocumentState> {
        if (auto* document = qobject_cast<frmDocument*>(sub->widget())) {
            const QMimeData* clip = QGuiApplication::clipboard()->mimeData();
            return readSelectionState(document->rtfText(), document->documentType(),
                                      document->rtfText().document()->isModified(),
                                      clip && clip->hasText());
        }
        auto* edit = sub->widget() ? qobject_cast<QTextEdit*>(sub->widget()) : nullptr;
        if (!edit) {
            return std::nullopt;
        }
        const QVariant type = sub->widget()->property("documentType");
        return readTextState(*edit->document(), edit->textCursor(),
                             type.isValid() ? type.toInt() : 0);
    };
    EnableOrDisableAllMenuAndButtons(false);
}

frmMain::~frmMain() {
    // The documents go after this part of the window: their last signals
    // must not reach it.
    m_area->disconnect(this);
    const auto children = m_area->findChildren<QObject*>();
    for (QObject* child : children) {
        child->disconnect(this);
    }
}

void frmMain::buildFontBar() {
    m_fontBar = new QToolBar(QStringLiteral("Font"), this);
    m_fontBar->setObjectName(QStringLiteral("picFont"));
    m_fontName = new QComboBox(m_fontBar);
    m_fontName->setObjectName(QStringLiteral("cboFontName"));
    m_fontName->setMinimumContentsLength(18);
    m_fontName->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_fontSize = new QComboBox(m_fontBar);
    m_fontSize->setObjectName(QStringLiteral("cboFontSize"));
    m_fontSize->setMinimumContentsLength(3);
    // Off until the edit commands take the bar over.
    for (QComboBox* box : {m_fontName, m_fontSize}) {
        box->setEnabled(false);
        box->setToolTip(notAvailableYetTip());
        m_fontBar->addWidget(box);
    }
    insertToolBar(m_commands->toolBar(QStringLiteral("tbrFormat")), m_fontBar);
}

void frmMain::buildStatusBar() {
    m_statusBar = new QStatusBar(this);
    m_statusBar->setObjectName(QStringLiteral("SB"));
    for (int i = 1; i <= 5; ++i) {
        auto* panel = new QLabel(m_statusBar);
        panel->setObjectName(QStringLiteral("SBPanel%1").arg(i));
        panel->setMinimumWidth(i == 1 ? 200 : 60);
        // The first panel takes the room left over; the counts keep theirs.
        m_statusBar->addPermanentWidget(panel, i == 1 ? 1 : 0);
        m_panels << panel;
    }
    m_panels[1]->setText(QStringLiteral("Line:"));
    m_panels[3]->setText(QStringLiteral("Lines:"));
    m_zoom = new ZoomBox(m_statusBar);
    m_statusBar->addPermanentWidget(m_zoom);
    setStatusBar(m_statusBar);
}

void frmMain::buildRuler() {
    m_rulerBar = new QToolBar(QStringLiteral("Ruler"), this);
    m_rulerBar->setObjectName(QStringLiteral("cbrRuler"));
    m_rulerBar->setMovable(false);
    m_rulerBar->setFloatable(false);
    m_ruler = new Ruler(m_rulerBar);
    m_rulerBar->addWidget(m_ruler);
    // Its own row, the last above the documents, so that it spans the page.
    addToolBarBreak(Qt::TopToolBarArea);
    addToolBar(Qt::TopToolBarArea, m_rulerBar);
    addRoute(QStringLiteral("mnuViewRuler"),
             [this] { toggleView(QStringLiteral("mnuViewRuler")); });
    connect(this, &frmMain::activeDocumentChanged, this, [this] {
        QMdiSubWindow* sub = activeDocumentWindow();
        auto* document = sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
        PageView* view = document ? document->pageView() : nullptr;
        m_ruler->follow(view);
        m_zoom->follow(view);
    });
}

void frmMain::setStatusPanel(int panel, const QString& text) {
    if (panel >= 1 && panel <= m_panels.size()) {
        m_panels[panel - 1]->setText(text);
    }
}

void frmMain::registerRoutes() {
    const auto newStandard = [this] { newDocument(++app().unnamedDocumentCount); };
    m_routes.insert(QStringLiteral("mnuFileNewStandard"), newStandard);
    m_routes.insert(QStringLiteral("mnuWindowNewWindow"), newStandard);
    m_routes.insert(QStringLiteral("mnuFileExit"), [this] { close(); });
    // These handlers do nothing but exist to be clicked.
    for (const char* none : {"mnuTest", "mnuFileManageFiles", "mnuFilePrintSetup"}) {
        m_routes.insert(QLatin1String(none), [] {});
    }
    m_routes.insert(QStringLiteral("mnuWindowCascade"),
                    [this] { arrangeDocuments(Arrangement::Cascade); });
    m_routes.insert(QStringLiteral("mnuWindowTileHorizontal"),
                    [this] { arrangeDocuments(Arrangement::TileHorizontal); });
    m_routes.insert(QStringLiteral("mnuWindowTileVertical"),
                    [this] { arrangeDocuments(Arrangement::TileVertical); });
    m_routes.insert(QStringLiteral("mnuWindowArrangeIcons"),
                    [this] { arrangeDocuments(Arrangement::Icons); });
    m_routes.insert(QStringLiteral("mnuWindowMinimizeAll"),
                    [this] { setAllDocumentsState(Qt::WindowMinimized); });
    m_routes.insert(QStringLiteral("mnuWindowRestoreAll"),
                    [this] { setAllDocumentsState(Qt::WindowNoState); });
    for (const ViewSetting& v : viewSettings()) {
        if (viewTarget(v.command)) {
            m_routes.insert(v.command, [this, command = v.command] { toggleView(command); });
        }
    }
}

void frmMain::addRoute(const QString& command, std::function<void()> routine) {
    m_routes.insert(command, std::move(routine));
}

void frmMain::runCommand(const QString& command) {
    if (app().isCreatingDocument) {
        return;
    }
    QAction* action = m_commands->action(command);
    const auto route = m_routes.constFind(command);
    if (route == m_routes.cend() || !action || !action->isEnabled()) {
        return;
    }
    (*route)();
}

QWidget* frmMain::viewTarget(const QString& command) const {
    if (command == QLatin1String("mnuViewStatusBar")) {
        return m_statusBar;
    }
    if (command == QLatin1String("mnuViewToolbarFont")) {
        return m_fontBar;
    }
    if (command == QLatin1String("mnuViewRuler")) {
        return m_rulerBar;
    }
    for (const ToolBarDefinition& bar : toolBars()) {
        if (bar.viewCommand == command) {
            return m_commands->toolBar(bar.name);
        }
    }
    return nullptr;
}

void frmMain::setViewShown(const QString& command, bool shown) {
    m_commands->action(command)->setChecked(shown);
    if (QWidget* target = viewTarget(command)) {
        target->setVisible(shown);
    }
}

void frmMain::toggleView(const QString& command) {
    // The action has already flipped its own check mark.
    const bool shown = m_commands->action(command)->isChecked();
    setViewShown(command, shown);
    clsINI* ini = app().iniSettings;
    if (!ini) {
        return;
    }
    for (const ViewSetting& v : viewSettings()) {
        if (v.command == command) {
            ini->setKeyValue(v.section, v.key,
                             shown ? QStringLiteral("True") : QStringLiteral("False"));
        }
    }
}

void frmMain::GetSettings() {
    clsINI* ini = app().iniSettings;
    for (const ViewSetting& v : viewSettings()) {
        if (!viewTarget(v.command)) {
            continue;
        }
        const QString value =
            ini ? ini->getKeyString(v.section, v.key, v.defaultValue) : v.defaultValue;
        setViewShown(v.command, clsINI::isTrueValue(value));
    }
    if (ini) {
        LiveSpellChecker::setEnabled(readLiveSpellingSetting(ini));
    }
}

void frmMain::LoadFonts() {
    m_fontName->clear();
    const QStringList families = QFontDatabase::families();
    for (const QString& family : families) {
        // Vertical-writing variants are not for letters.
        if (!family.startsWith(QLatin1Char('@'))) {
            m_fontName->addItem(family);
        }
    }
    m_fontSize->clear();
    for (int size = 5; size <= 72; ++size) {
        m_fontSize->addItem(QString::number(size));
    }
}

void frmMain::newDocument(int number) {
    auto* document = new frmDocument;
    addDocumentWindow(document, QStringLiteral("Document %1").arg(number));
}

bool frmMain::openDocumentFile(const QString& path) {
    // A folder or a binary file named in the recent files or dropped on the
    // window is refused with a message rather than shown as garbage.
    if (const std::optional<QString> refusal = refuseBeforeOpening(path)) {
        if (MsgboxClass* box = app().msgbox) {
            box->showMessage(*refusal);
        }
        return false;
    }
    try {
        openDocumentWindow(path);
    } catch (const QmError& fault) {
        if (MsgboxClass* box = app().msgbox) {
            box->showMessage(openFailureMessage(fault));
        }
        return false;
    }
    // As every opening does, this one ends with the flag down: it is the
    // way out of a cancelled print dialog, which leaves it up.
    app().isCreatingDocument = false;
    return true;
}

frmDocument* frmMain::openDocumentWindow(const QString& path) {
    auto document = std::make_unique<frmDocument>();
    // No layout while the text goes in: the page setup is known only after,
    // and a big file would be laid out piece by piece as it is read.
    PageLayout& layout = document->pageLayout();
    layout.beginLoad();
    OpenedDocument opened;
    try {
        opened = DocumentFile::open(path, document->rtfText());
    } catch (...) {
        layout.endLoad();
        throw;
    }
    layout.endLoad();
    // Field by field: the window's model keeps its own relayout hook.
    const DocumentModel& from = opened.model;
    document->setDocumentType(from.documentType);
    document->setInformationType(from.InformationType);
    document->setFileSaveType(from.fileSaveType);
    document->model().PaperSize = from.PaperSize;
    document->putDocumentOrientation(from.getDocumentOrientation(), false);
    document->putPageWidth(from.getPageWidth(), false);
    document->putPageHeight(from.getPageHeight(), false);
    document->putLeftMargin(from.getLeftMargin(), false);
    document->putRightMargin(from.getRightMargin(), false);
    document->putTopMargin(from.getTopMargin(), false);
    document->putBottomMargin(from.getBottomMargin(), false);
    document->setupDocument(true, true);
    document->rtfText().document()->clearUndoRedoStacks();
    document->rtfText().document()->setModified(false);
    document->setHasDocumentChanged(false);
    document->setIsDocumentSaved(true);
    document->DocumentFileName = path;
    // An opened file takes the place of the untouched blank document that
    // start-up provides, as nobody meant to write in it.
    const QList<QMdiSubWindow*> open = m_area->subWindowList();
    if (open.size() == 1) {
        auto* blank = qobject_cast<frmDocument*>(open.front()->widget());
        if (blank && !blank->IsDocumentSaved() && !blank->HasDocumentChanged() &&
            blank->rtfText().document()->isEmpty()) {
            open.front()->close();
        }
    }
    frmDocument* shown = document.release();
    addDocumentWindow(shown, opened.caption);
    addRecentFile(path);
    return shown;
}

void frmMain::addRecentFile(const QString& path) {
    m_recentFiles->SaveMRUFile(path);
}

void frmMain::addDocumentWindow(frmDocument* document, const QString& caption) {
    document->DocumentCaption = caption;
    const DocumentStartup startup = readDocumentStartup(app().iniSettings);
    if (startup != DocumentStartup::Maximized) {
        // Tabs show every document maximised: a window of its own size needs
        // the area's window view, as Cascade and Tile do, before it is added.
        m_area->setViewMode(QMdiArea::SubWindowView);
    }
    QMdiSubWindow* sub = m_area->addSubWindow(document);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->setWindowTitle(caption);
    // The frame's own window menu puts Close on Ctrl+W as well; two owners
    // make the key do nothing. File > Close, which asks about saving, keeps it.
    if (QMenu* frameMenu = sub->systemMenu()) {
        for (QAction* action : frameMenu->actions()) {
            action->setShortcut(QKeySequence());
        }
    }
    connect(document->pageView(), &PageView::contextMenuWanted, this,
            [this](const QPoint& at) { m_commands->popupMenu()->exec(at); });
    connect(&document->rtfText(), &RichTextBox::changed, this, &frmMain::refreshMenuStatus);
    connect(&document->rtfText(), &RichTextBox::selectionChanged, this,
            &frmMain::refreshMenuStatus);
    connect(document->rtfText().document(), &QTextDocument::undoAvailable, this,
            &frmMain::refreshMenuStatus);
    watchDocument(sub);
    showAtStartupPosition(sub, startup);
    // An area without the focus does not activate what it adds.
    if (!m_area->activeSubWindow()) {
        onDocumentActivated(sub);
    }
    Q_EMIT documentWindowAdded(sub);
}

void frmMain::showAtStartupPosition(QMdiSubWindow* sub, DocumentStartup startup) {
    switch (startup) {
    case DocumentStartup::Maximized:
        sub->showMaximized();
        return;
    case DocumentStartup::Normal:
        sub->showNormal();
        return;
    case DocumentStartup::Minimized:
        sub->showMinimized();
        arrangeDocuments(Arrangement::Icons);
        return;
    }
}

void frmMain::watchDocument(QMdiSubWindow* sub) {
    connect(sub, &QObject::destroyed, this, &frmMain::onDocumentClosed);
    // Maximising a document brings the tab strip back after an arrange.
    connect(sub, &QMdiSubWindow::windowStateChanged, this,
            [this](Qt::WindowStates, Qt::WindowStates now) {
                if ((now & Qt::WindowMaximized) && m_area->viewMode() != QMdiArea::TabbedView) {
                    m_area->setViewMode(QMdiArea::TabbedView);
                    if (auto* tabs = m_area->findChild<QTabBar*>()) {
                        tabs->setObjectName(QStringLiteral("MDITabsCtrl"));
                    }
                }
            });
}

QMdiSubWindow* frmMain::activeDocumentWindow() const {
    if (QMdiSubWindow* active = m_area->activeSubWindow()) {
        return active;
    }
    if (m_lastActive && m_area->subWindowList().contains(m_lastActive.data())) {
        return m_lastActive.data();
    }
    return m_area->currentSubWindow();
}

void frmMain::onDocumentActivated(QMdiSubWindow* sub) {
    if (sub) {
        m_lastActive = sub;
    }
    refreshMenuStatus();
    Q_EMIT activeDocumentChanged(sub);
}

void frmMain::onDocumentClosed() {
    EnableOrDisableAllMenuAndButtons(false);
    // The next activation sets things right; with the focus elsewhere there
    // may be none, so look for a remaining document now.
    if (!m_area->subWindowList().isEmpty()) {
        refreshMenuStatus();
    }
    Q_EMIT activeDocumentChanged(nullptr);
}

void frmMain::EnableOrDisableAllMenuAndButtons(bool enable) {
    ::EnableOrDisableAllMenuAndButtons(m_status, enable);
    applyStatus();
}

void frmMain::refreshMenuStatus() {
    QMdiSubWindow* sub = activeDocumentWindow();
    if (!sub) {
        EnableOrDisableAllMenuAndButtons(false);
        return;
    }
    m_status = ResetMenuStatus(m_status, m_stateReader(sub));
    applyStatus();
}

void frmMain::applyStatus() {
    m_commands->apply(m_status, [this](const QString& command) { return hasRoute(command); });
    // A selection of mixed fonts or sizes leaves the box blank.
    if (m_fontName->isEditable()) {
        m_fontName->setEditText(m_status.fontName);
    } else {
        m_fontName->setCurrentIndex(m_fontName->findText(m_status.fontName));
    }
    if (m_fontSize->isEditable()) {
        m_fontSize->setEditText(m_status.fontSize);
    } else {
        m_fontSize->setCurrentIndex(m_fontSize->findText(m_status.fontSize));
    }
}

void frmMain::arrangeDocuments(Arrangement how) {
    // Arranging shows the documents as windows; the tab strip comes back
    // when one is maximised.
    m_area->setViewMode(QMdiArea::SubWindowView);
    QList<QMdiSubWindow*> shown;
    for (QMdiSubWindow* sub : m_area->subWindowList()) {
        if (how != Arrangement::Icons) {
            sub->showNormal();
        }
        if (!sub->isMinimized()) {
            shown << sub;
        }
    }
    const QRect room = m_area->viewport()->rect();
    const int n = int(shown.size());
    switch (how) {
    case Arrangement::Cascade:
        m_area->cascadeSubWindows();
        break;
    case Arrangement::TileHorizontal:
        for (int i = 0; i < n; ++i) {
            const int h = room.height() / n;
            shown[i]->setGeometry(0, i * h, room.width(), h);
        }
        break;
    case Arrangement::TileVertical:
        for (int i = 0; i < n; ++i) {
            const int w = room.width() / n;
            shown[i]->setGeometry(i * w, 0, w, room.height());
        }
        break;
    case Arrangement::Icons: {
        // Minimised documents line up along the bottom edge.
        int x = 0;
        for (QMdiSubWindow* sub : m_area->subWindowList()) {
            if (sub->isMinimized()) {
                sub->move(x, room.height() - sub->height());
                x += sub->width();
            }
        }
        break;
    }
    }
}

void frmMain::setAllDocumentsState(Qt::WindowState state) {
    if (state == Qt::WindowMinimized) {
        m_area->setViewMode(QMdiArea::SubWindowView);
    }
    for (QMdiSubWindow* sub : m_area->subWindowList()) {
        if (state == Qt::WindowMinimized) {
            sub->showMinimized();
        } else {
            sub->showNormal();
        }
    }
    if (state == Qt::WindowMinimized) {
        arrangeDocuments(Arrangement::Icons);
    }
}

void frmMain::closeEvent(QCloseEvent* event) {
    if (m_closing || !m_queryUnload) {
        event->accept();
        return;
    }
    // The exit routine unloads this window when it is done.
    event->ignore();
    m_queryUnload();
}

ActiveDocumentState readTextState(const QTextDocument& text, const QTextCursor& cursor,
                                  int documentType) {
    using Alignment = ActiveDocumentState::Alignment;
    ActiveDocumentState s;
    s.documentType = documentType;
    const QTextDocument* doc = &text;
    s.changed = doc->isModified();
    s.hasSelection = cursor.hasSelection();
    s.canUndo = doc->isUndoAvailable();
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    s.clipboardHasText = data && data->hasText();

    const auto alignmentOf = [](const QTextBlock& block) {
        const Qt::Alignment a = block.blockFormat().alignment() & Qt::AlignHorizontal_Mask;
        if (a & Qt::AlignHCenter) {
            return Alignment::Center;
        }
        if (a & (Qt::AlignRight | Qt::AlignTrailing)) {
            return Alignment::Right;
        }
        if (a & Qt::AlignJustify) {
            return Alignment::Mixed;
        }
        return Alignment::Left;
    };
    QTextBlock block = doc->findBlock(cursor.selectionStart());
    const QTextBlock last = doc->findBlock(cursor.selectionEnd());
    s.alignment = alignmentOf(block);
    while (block.isValid() && block != last) {
        block = block.next();
        if (block.isValid() && alignmentOf(block) != s.alignment) {
            s.alignment = Alignment::Mixed;
            break;
        }
    }
    const QTextCharFormat f = cursor.charFormat();
    s.bold = f.fontWeight() >= QFont::Bold;
    s.italic = f.fontItalic();
    s.underline = f.fontUnderline();
    s.strikeThru = f.fontStrikeOut();
    s.bullet = cursor.currentList() != nullptr;
    const QFont font = f.font();
    s.fontName = font.family();
    s.fontSize = font.pointSizeF() > 0 ? QString::number(font.pointSizeF()) : QString();
    return s;
}

QtMainWindowHost::QtMainWindowHost() = default;
QtMainWindowHost::~QtMainWindowHost() {
    if (app().fileDialogs == &m_fileDialogs) {
        app().fileDialogs = nullptr;
    }
    if (app().progress == &m_progress) {
        app().progress = nullptr;
    }
}

void QtMainWindowHost::showSplash(const QString& versionText) {
    m_splash = std::make_unique<QLabel>();
    m_splash->setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
    m_splash->setText(QStringLiteral("<h2>Quillmere Pad</h2><p>%1</p>").arg(versionText));
    m_splash->setAlignment(Qt::AlignCenter);
    m_splash->setMargin(40);
    m_splash->show();
}

void QtMainWindowHost::load() {
    m_window = std::make_unique<frmMain>();
    m_msgbox.setOwner(m_window.get());
    m_fileDialogs.setOwner(m_window.get());
    m_progress.setOwner(m_window.get());
    // The file dialogs and the progress dialog are the window's; the
    // message boxes are installed by start-up with the rest of the services.
    app().fileDialogs = &m_fileDialogs;
    app().progress = &m_progress;
}

void QtMainWindowHost::MDIFormInitialize() {
    AppContext& ctx = app();
    m_window->EnableOrDisableAllMenuAndButtons(false);
    positionMDI(*m_window);
    m_window->LoadFonts();
    m_window->recentFiles()->GetMRUList();
    m_window->GetSettings();
    ctx.unnamedDocumentCount = 0;
    if (ctx.isStandAlone) {
        // The first document is made as File > New makes one, with the
        // default font of the settings and its file name in the templates
        // folder.
        if (const auto createNew = m_window->route(QStringLiteral("mnuFileNewStandard"))) {
            createNew();
        } else {
            m_window->newDocument(++ctx.unnamedDocumentCount);
        }
    }
    m_window->show();
    m_splash.reset();
}

errorClass::Prompt QtMainWindowHost::errorPrompt() {
    return [this](const ErrorReport& report) {
        QMessageBox box(QMessageBox::Critical, report.applicationName,
                        QStringLiteral("Error %1: %2\n\nIn: %3")
                            .arg(report.number)
                            .arg(report.description, report.tagStack.join(QStringLiteral(" > "))),
                        QMessageBox::NoButton, m_window.get());
        QPushButton* goOn = box.addButton(QStringLiteral("Continue"), QMessageBox::AcceptRole);
        QPushButton* leave =
            box.addButton(QStringLiteral("Stop this action"), QMessageBox::RejectRole);
        box.addButton(QStringLiteral("End the program"), QMessageBox::DestructiveRole);
        box.exec();
        if (box.clickedButton() == goOn) {
            return int(errorClass::GoOn);
        }
        if (box.clickedButton() == leave) {
            return int(errorClass::Leave);
        }
        return int(errorClass::EndProgram);
    };
}

WindowPlacement QtMainWindowHost::placement() const {
    WindowPlacement p;
    if (!m_window) {
        return p;
    }
    if (m_window->isMinimized()) {
        p.state = WindowPlacement::State::Minimized;
    } else if (m_window->isMaximized()) {
        p.state = WindowPlacement::State::Maximized;
    }
    const QRect g = m_window->geometry();
    p.top = g.top() * kTwipsPerPixel;
    p.left = g.left() * kTwipsPerPixel;
    p.width = g.width() * kTwipsPerPixel;
    p.height = g.height() * kTwipsPerPixel;
    return p;
}

void QtMainWindowHost::unloadOtherWindows() {
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w != m_window.get() && w->isVisible()) {
            w->close();
        }
    }
}

bool QtMainWindowHost::unloadDocuments() {
    DocumentCommands* commands = m_window ? documentCommands(*m_window) : nullptr;
    return commands == nullptr || commands->unloadAllDocuments();
}

void QtMainWindowHost::closeMainWindow() {
    if (m_window) {
        m_window->allowClose();
        m_window->close();
    }
}

bool IsFormLoaded(const QString& name) {
    const QString wanted = name.toUpper();
    const auto windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(),
                       [&](const QWidget* w) { return w->objectName().toUpper() == wanted; });
}
