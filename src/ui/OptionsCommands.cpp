#include "ui/OptionsCommands.h"

#include "context/AppContext.h"
#include "files/clsINI.h"
#include "files/clsWorkingFolderLocation.h"
#include "platform/fileControl.h"
#include "ui/CommandActions.h"
#include "ui/LiveSpellChecker.h"
#include "ui/frmMain.h"
#include "ui/frmOptions.h"

#include <QAction>
#include <QComboBox>
#include <QMdiArea>
#include <QTabBar>

namespace {

QStringList itemsOf(const QComboBox* box) {
    QStringList items;
    for (int i = 0; i < box->count(); ++i) {
        items << box->itemText(i);
    }
    return items;
}

} // namespace

OptionsCommands::OptionsCommands(frmMain& main) : QObject(&main), m_main(main) {
    setObjectName(QStringLiteral("OptionsCommands"));
    // At load the settings object has no file yet; its reads would give the
    // defaults, so they are taken without touching the disk.
    clsINI* ini = app().iniSettings;
    applyTabStripSettings(*main.MDIArea(),
                          readTabStripSettings(ini && !ini->INIFile().isEmpty() ? ini : nullptr));
    main.addRoute(QStringLiteral("mnuToolsOptions"), [this] { showOptions(); });
}

std::unique_ptr<frmOptions> OptionsCommands::createDialog() {
    OptionsContext context;
    context.viewChecked = [this](const QString& command) {
        const QAction* item = m_main.commands()->action(command);
        return item && item->isChecked();
    };
    context.viewBuilt = [this](const QString& command) { return m_main.hasRoute(command); };
    // With a document open the dialog offers the font at its caret.
    if (m_main.activeDocumentWindow() && !m_main.menuStatus().fontName.isEmpty()) {
        context.documentFont = m_main.menuStatus().fontName;
        if (!m_main.menuStatus().fontSize.isEmpty()) {
            context.documentFontSize = m_main.menuStatus().fontSize;
        }
    }
    context.stayOnTop = m_main.windowFlags().testFlag(Qt::WindowStaysOnTopHint);
    if (clsWorkingFolderLocation* folders = app().workingFolders) {
        context.templatesFolder = folders->getTemplatesFolder();
    }
    const OptionsData data = Getdata(app().iniSettings, context);
    return std::make_unique<frmOptions>(
        data, itemsOf(m_main.fontNameBox()), itemsOf(m_main.fontSizeBox()),
        [this](const OptionsData& d) { apply(d); }, &m_main);
}

void OptionsCommands::showOptions() {
    const std::unique_ptr<frmOptions> dialog = createDialog();
    dialog->exec();
    applyTabStripSettings(*m_main.MDIArea(), readTabStripSettings(app().iniSettings));
}

void OptionsCommands::apply(const OptionsData& data) {
    SetData(app().iniSettings, data);
    for (const OptionCheck& check : optionChecks()) {
        // A bar that is not built yet has no View command to follow.
        if (m_main.hasRoute(check.viewCommand)) {
            m_main.setViewShown(check.viewCommand, data.checked(check.control));
        }
    }
    LiveSpellChecker::setEnabled(data.liveSpelling);
    if (m_main.windowFlags().testFlag(Qt::WindowStaysOnTopHint) != data.stayOnTop) {
        const bool shown = m_main.isVisible();
        m_main.setWindowFlag(Qt::WindowStaysOnTopHint, data.stayOnTop);
        // Changing a window flag hides the window.
        if (shown) {
            m_main.show();
        }
    }
    clsWorkingFolderLocation* folders = app().workingFolders;
    if (folders && !data.templatesFolder.isEmpty() &&
        fileControl::AddBackslash(data.templatesFolder) !=
            fileControl::AddBackslash(folders->getTemplatesFolder())) {
        folders->putTemplatesFolder(data.templatesFolder);
        Q_EMIT templatesFolderChanged(folders->getTemplatesFolder());
    }
}

void applyTabStripSettings(QMdiArea& area, const TabStripSettings& settings) {
    area.setTabShape(settings.style == 1 ? QTabWidget::Triangular : QTabWidget::Rounded);
    area.setDocumentMode(settings.style == 2);
    if (auto* tabs = area.findChild<QTabBar*>(QString(), Qt::FindDirectChildrenOnly)) {
        tabs->setFocusPolicy(settings.focusRectangle ? Qt::TabFocus : Qt::NoFocus);
        tabs->setIconSize(settings.icons ? QSize(16, 16) : QSize(0, 0));
    }
}
