#include "ui/AccessoryCommands.h"

#include "app/MenuDefinition.h"
#include "context/AppContext.h"
#include "files/clsINI.h"
#include "files/clsWorkingFolderLocation.h"
#include "files/modQuickPicks.h"
#include "platform/MsgboxClass.h"
#include "ui/CommandActions.h"
#include "ui/OptionsCommands.h"
#include "ui/QuickPicksBar.h"
#include "ui/frmAbout.h"
#include "ui/frmDocInfo.h"
#include "ui/frmDocument.h"
#include "ui/frmFScreen.h"
#include "ui/frmHelp.h"
#include "ui/frmMain.h"
#include "ui/frmTemplateFolderWizard.h"
#include "ui/frmTip.h"
#include "ui/frmWizard.h"

#include <QAction>
#include <QEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTimer>

namespace {

const QString kFullScreen = QStringLiteral("tbrStandard.FullScreen");
const QString kShowQuickPicks = QStringLiteral("mnuViewFileTree");

const ViewSetting* quickPicksSetting() {
    for (const ViewSetting& v : viewSettings()) {
        if (v.command == kShowQuickPicks) {
            return &v;
        }
    }
    return nullptr;
}

frmDocument* documentOf(QMdiSubWindow* sub) {
    return sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
}

} // namespace

AccessoryCommands::AccessoryCommands(frmMain& window)
    : QObject(&window), m_window(window), m_quickPicks(new QuickPicksBar(&window)) {
    setObjectName(QStringLiteral("AccessoryCommands"));
    window.addDockWidget(Qt::LeftDockWidgetArea, m_quickPicks);
    m_quickPicks->setOpener([this](const QString& path) { openQuickPick(path); });
    m_quickPicks->setFolderButtonAction([this] { openTemplateFolderWizard(); });
    // A templates folder chosen in Tools > Options moves the list there.
    if (OptionsCommands* options = window.options()) {
        connect(options, &OptionsCommands::templatesFolderChanged, this,
                [this](const QString& folder) { m_quickPicks->refreshFileList(folder); });
    }
    window.commands()->action(kShowQuickPicks)->setChecked(true);
    // F11 reaches the full-screen command wherever the focus is in the
    // window, even with the standard tool bar hidden.
    if (QAction* full = window.commands()->action(kFullScreen)) {
        full->setShortcut(QKeySequence(Qt::Key_F11));
        window.addAction(full);
    }
    window.installEventFilter(this);
    registerRoutes();
}

frmFScreen* AccessoryCommands::fullScreen() const {
    return m_fullScreen.data();
}

frmTip* AccessoryCommands::startupTip() const {
    return m_startupTip.data();
}

frmHelp* AccessoryCommands::help() const {
    return m_help.data();
}

void AccessoryCommands::registerRoutes() {
    m_window.addRoute(QStringLiteral("mnuFileOpenWord"), [this] { openDocumentsWizard(); });
    m_window.addRoute(QStringLiteral("mnuFileOpenOther"), [this] { openDocumentsWizard(); });
    m_window.addRoute(kShowQuickPicks, [this] { toggleQuickPicks(); });
    m_window.addRoute(QStringLiteral("mnuViewDocumentProperties"),
                      [this] { showDocumentProperties(); });
    m_window.addRoute(kFullScreen, [this] { toggleFullScreen(); });
    m_window.addRoute(QStringLiteral("mnuHelpContents"), [this] { showHelp(frmHelp::Contents); });
    m_window.addRoute(QStringLiteral("mnuHelpIndex"), [this] { showHelp(frmHelp::Index); });
    m_window.addRoute(QStringLiteral("mnuHelpSearch"), [this] { showHelp(frmHelp::Search); });
    m_window.addRoute(QStringLiteral("mnuHelpTipoftheDay"), [this] {
        frmTip tip(&m_window);
        tip.exec();
    });
    m_window.addRoute(QStringLiteral("mnuHelpAbout"), [this] {
        frmAbout about(&m_window);
        about.exec();
    });
    // The routes exist now: let the actions follow.
    m_window.refreshMenuStatus();
}

bool AccessoryCommands::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &m_window) {
        if (event->type() == QEvent::Show && !m_shownOnce) {
            // The settings and the folders exist by the time the window is
            // first shown.
            m_shownOnce = true;
            applyQuickPicksSetting();
            m_quickPicks->refreshFileList(
                app().workingFolders ? app().workingFolders->getTemplatesFolder() : QString());
            // Once the window is up, and only for a user who starts the
            // program, not for a host that drives it.
            if (app().isStandAlone && frmTip::showAtStartup()) {
                QTimer::singleShot(0, this, [this] { showTipAtStartup(); });
            }
        } else if (event->type() == QEvent::WindowActivate && m_shownOnce) {
            // A folder that came back (or went) since the last look.
            m_quickPicks->refreshFileList();
        }
    }
    return QObject::eventFilter(watched, event);
}

void AccessoryCommands::showTipAtStartup() {
    auto* tip = new frmTip(&m_window);
    tip->setAttribute(Qt::WA_DeleteOnClose);
    m_startupTip = tip;
    tip->open();
}

void AccessoryCommands::applyQuickPicksSetting() {
    const ViewSetting* setting = quickPicksSetting();
    clsINI* ini = app().iniSettings;
    if (!setting || !ini) {
        return;
    }
    const bool shown = clsINI::isTrueValue(
        ini->getKeyString(setting->section, setting->key, setting->defaultValue));
    m_window.commands()->action(kShowQuickPicks)->setChecked(shown);
    m_quickPicks->setVisible(shown);
}

void AccessoryCommands::toggleQuickPicks() {
    // The action has flipped its own check mark already.
    const bool shown = m_window.commands()->action(kShowQuickPicks)->isChecked();
    m_quickPicks->setVisible(shown);
    if (shown) {
        m_quickPicks->refreshFileList();
    }
    const ViewSetting* setting = quickPicksSetting();
    if (clsINI* ini = app().iniSettings; ini && setting) {
        ini->setKeyValue(setting->section, setting->key,
                         shown ? QStringLiteral("True") : QStringLiteral("False"));
    }
}

void AccessoryCommands::openQuickPick(const QString& path) {
    for (QMdiSubWindow* sub : m_window.MDIArea()->subWindowList()) {
        frmDocument* document = documentOf(sub);
        if (document && isSameDocumentFile(document->DocumentFileName, path)) {
            m_window.MDIArea()->setActiveSubWindow(sub);
            sub->widget()->setFocus();
            return;
        }
    }
    if (!m_window.openDocumentFile(path)) {
        // Most likely gone since the list was read: show what is there now.
        m_quickPicks->refreshFileList();
    }
}

void AccessoryCommands::openTemplateFolderWizard() {
    frmTemplateFolderWizard wizard(&m_window);
    wizard.exec();
    if (clsWorkingFolderLocation* folders = app().workingFolders) {
        m_quickPicks->refreshFileList(folders->getTemplatesFolder());
    }
}

void AccessoryCommands::openDocumentsWizard() {
    frmWizard wizard(&m_window);
    if (wizard.exec() == QDialog::Accepted) {
        m_window.openDocumentFile(wizard.chosenFile());
    }
}

void AccessoryCommands::showDocumentProperties() {
    frmDocument* document = documentOf(m_window.activeDocumentWindow());
    if (!document) {
        if (MsgboxClass* box = app().msgbox) {
            box->showMessage(QStringLiteral("There are no open documents."));
        }
        return;
    }
    frmDocInfo info(*document, &m_window);
    info.exec();
}

void AccessoryCommands::toggleFullScreen() {
    if (m_fullScreen) {
        m_fullScreen->close();
        return;
    }
    frmDocument* document = documentOf(m_window.activeDocumentWindow());
    if (!document) {
        if (MsgboxClass* box = app().msgbox) {
            box->showMessage(QStringLiteral("There are no open documents."));
        }
        return;
    }
    m_fullScreen = new frmFScreen(*document);
    m_fullScreen->showFullScreen();
    m_fullScreen->activateWindow();
    m_fullScreen->setFocus();
}

void AccessoryCommands::showHelp(int topic) {
    if (!m_help) {
        m_help = new frmHelp(&m_window);
        m_help->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_help->showTopic(static_cast<frmHelp::Topic>(topic));
}

AccessoryCommands* installAccessoryCommands(frmMain& window) {
    return new AccessoryCommands(window);
}
