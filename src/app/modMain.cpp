#include "app/modMain.h"

#include "app/ApplicationServices.h"
#include "app/clsDocMerge.h"
#include "context/AppContext.h"
#include "data/DatabaseLocation.h"
#include "data/clsUniqueID.h"
#include "data/databaseControl.h"
#include "data/modDatabaseConnection.h"
#include "data/modDatabaseFunctions.h"
#include "data/modFormatAddresses.h"
#include "data/modRemittanceTypes.h"
#include "files/clsINI.h"
#include "files/clsWorkingFolderLocation.h"
#include "platform/MsgboxClass.h"
#include "platform/SpecialFolders.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/text/stringControl.h"

#include <cmath>

namespace {

const QString kTag = QStringLiteral("QuillmerePad.exe-modMain-");

// Start-up runs with errors ignored: a failing step does not stop the next.
template <typename Step> void ignoringErrors(Step&& step) {
    try {
        step();
    } catch (const std::exception&) {
        // Deliberately ignored; the later steps and the commands' own checks
        // deal with what is missing.
    }
}

} // namespace

Application::Application(std::unique_ptr<MainWindowHost> window) : m_window(std::move(window)) {}

Application::~Application() {
    AppContext& ctx = app();
    // Do not leave the context pointing at objects that die with us.
    if (ctx.iniSettings == m_ini.get()) {
        ctx.iniSettings = nullptr;
    }
    if (ctx.workingFolders == m_folders.get()) {
        ctx.workingFolders = nullptr;
    }
    if (m_window && ctx.msgbox == &m_window->messageBoxes()) {
        ctx.msgbox = nullptr;
    }
    // The services clear their own pointers as they go.
    m_services.reset();
}

errorClass* Application::errors() const {
    return m_services ? m_services->errors() : nullptr;
}

bool Application::Main(const QStringList& arguments) {
    if (arguments.contains(QStringLiteral("--automation"))) {
        // The host creates the automation object; its opening call starts
        // the application.
        app().isStandAlone = false;
        return false;
    }
    app().isStandAlone = true;
    // The command line has checked the rest: they are files to open.
    m_filesToOpen = arguments;
    startApplication(true, nullptr);
    return true;
}

void Application::startApplication(bool /*createFirstDocument*/, clsDocMerge* automationObject) {
    AppContext& ctx = app();

    // 1.
    ctx.programVersion = getProgramVersion();
    ctx.currentCountry = 1;
    // 2.
    if (!ctx.isStandAlone) {
        ctx.docMergeObject = automationObject;
        if (automationObject) {
            // A wrong path leaves the location empty; step 13 then falls
            // back on the settings file as a stand-alone start does.
            ctx.databaseLocation =
                DatabaseLocation::looksLikeUri(automationObject->DatabaseLocation()) ||
                        fileControl::FileExists(automationObject->DatabaseLocation())
                    ? automationObject->DatabaseLocation()
                    : QString();
        }
    }
    // 3. These lookups stand before the error object and the database
    // exist, so on a first start they find nothing and the user stays 0,
    // also for a host that passed a valid user. The host depends on this
    // order.
    ignoringErrors([&] {
        // Without the error object and the connection the lookups fail
        // outright (they do not return their defaults), so nothing is taken.
        if (!ctx.errors || !ctx.database) {
            return;
        }
        ctx.currentUserID = getDefaultUserID();
        if (ctx.docMergeObject && validEmployeeID(QString::number(ctx.docMergeObject->userID()))) {
            ctx.currentUserID = ctx.docMergeObject->userID();
        }
    });
    // 4.
    ignoringErrors([&] {
        m_services = std::make_unique<ApplicationServices>(ctx);
        errorClass& errors = m_services->createErrors();
        errors.setPrompt(m_window->errorPrompt());
        errors.setExitHook([this] { exitCurrentProgram(); });
    });
    ProcedureScope scope(ctx.errors, kTag + QStringLiteral("startApplication"));
    // 5.
    if (ctx.isStandAlone) {
        ignoringErrors([&] {
            m_window->showSplash(QStringLiteral("Version: ") + ctx.programVersion);
            doEventsIfInputPending();
        });
    }
    // 6. The string and date helpers need no set-up here.
    // 7.
    ctx.isStartingUp = true;
    ignoringErrors([&] {
        m_ini = std::make_unique<clsINI>();
        ctx.iniSettings = m_ini.get();
        m_folders = std::make_unique<clsWorkingFolderLocation>();
        ctx.workingFolders = m_folders.get();
        // Handing the folders the window's handle is what loads the window,
        // before the settings object has a file.
        m_window->load();
    });
    // 8.
    ignoringErrors([&] {
        if (ctx.isStandAlone) {
            m_folders->getInitialAppWorkingDataFolder();
        } else {
            ctx.appWorkingDataFolder = ctx.docMergeObject->AppWorkingDataFolder();
            m_folders->putApplicationWorkingFolder(ctx.appWorkingDataFolder);
            if (!ctx.databaseLocation.isEmpty()) {
                m_folders->putDataFolder(fileControl::FolderName(ctx.databaseLocation));
            }
        }
        m_ini->setINIFile(fileControl::AddBackslash(m_folders->getApplicationWorkingFolder()) +
                          QStringLiteral("Qminiqmd.dni"));
    });
    ignoringErrors([&] { m_folders->initializeTemplatesAndPicturesFolders(); });
    ignoringErrors([&] {
        initializeProvince(ctx.docMergeObject
                               ? std::optional<int>(ctx.docMergeObject->currentProvince())
                               : std::nullopt);
    });
    // 9.
    ignoringErrors([&] {
        errorClass* errors = m_services->errors();
        errors->setLogFolder(fileControl::AddBackslash(m_folders->getApplicationWorkingFolder()) +
                             QStringLiteral("Logs"));
        errors->setNumberedSetting(0);
        errors->setNumberedSetting(0);
    });
    // 10.
    ignoringErrors([&] {
        const QString folder = fileControl::AddBackslash(m_folders->getApplicationWorkingFolder());
        clsUniqueID uniqueID;
        uniqueID.setDatabaseLocation(folder + QStringLiteral("Qmlocalf5.lmd"));
        uniqueID.setTempFolder(folder + QStringLiteral("Temp"));
        ctx.workstationID = uniqueID.getUniqueID();
    });
    // 11.
    ignoringErrors([&] { m_services->useMessageBox(m_window->messageBoxes()); });
    // 12. The inserter builds its field catalogue on first use.
    ignoringErrors([&] { m_services->createFieldInserter(); });
    // 13.
    ignoringErrors([&] { openDatabaseStep(); });
    // 14.
    ignoringErrors([&] {
        m_window->MDIFormInitialize();
        doEventsIfInputPending();
    });
    ctx.isStartingUp = false;
}

void Application::openDatabaseStep() {
    AppContext& ctx = app();
    if (!DatabaseLocation::looksLikeUri(ctx.databaseLocation) &&
        !fileControl::FileExists(ctx.databaseLocation)) {
        m_folders->getInitialDatabaseDataFolder();
        ctx.databaseLocation = getDataFilePath();
    }
    m_services->openCompaniesDatabaseStep(ctx.databaseLocation);
}

void Application::exitCurrentProgram() {
    // Closing the window asks for this same routine; once is enough.
    if (m_exiting) {
        return;
    }
    // The documents are asked about first: a Cancel keeps the program
    // running, and a host must not hear of an exit that did not happen.
    if (!m_window->unloadDocuments()) {
        return;
    }
    m_exiting = true;
    if (app().docMergeObject && !app().isStandAlone && m_exitDocMerge) {
        m_exitDocMerge();
    }
    unloadMainWindow();
    m_exited = true;
}

void Application::unloadMainWindow() {
    AppContext& ctx = app();
    ProcedureScope scope(ctx.errors, QStringLiteral("QuillmerePad.exe-frmMain-MDIForm_Unload"));
    // 1.
    ignoringErrors([&] {
        if (m_services) {
            m_services->releaseFieldInserter();
        }
    });
    // 2.
    ignoringErrors([&] {
        if (m_services) {
            m_services->closeDatabase();
        }
    });
    // 3.
    ignoringErrors([&] { saveWindowState(); });
    // 4.
    ignoringErrors([&] { m_window->unloadOtherWindows(); });
    // 5.
    ctx.iniSettings = nullptr;
    m_ini.reset();
    // The error object leaves the context now but lives on until the
    // application object dies: the exit may have been asked for from inside
    // its own dialog, and the scopes still on the stack pop their tags on it.
    if (m_services) {
        m_services->detachMessagesAndErrors();
    } else {
        ctx.msgbox = nullptr;
    }
    ignoringErrors([&] { m_window->closeMainWindow(); });
}

void Application::saveWindowState() {
    if (!m_ini) {
        return;
    }
    const WindowPlacement placement = m_window->placement();
    const QString section = QStringLiteral("QuillmerePadWindowSettings");
    switch (placement.state) {
    case WindowPlacement::State::Minimized:
        return;
    case WindowPlacement::State::Maximized:
        // The last normal size and position stay in the file.
        m_ini->setKeyValue(section, QStringLiteral("WindowState"), QStringLiteral("2"));
        return;
    case WindowPlacement::State::Normal:
        m_ini->setKeyValue(section, QStringLiteral("WindowState"), QStringLiteral("0"));
        m_ini->setKeyValue(section, QStringLiteral("WindowTop"), QString::number(placement.top));
        m_ini->setKeyValue(section, QStringLiteral("WindowLeft"), QString::number(placement.left));
        m_ini->setKeyValue(section, QStringLiteral("WindowWidth"),
                           QString::number(placement.width));
        m_ini->setKeyValue(section, QStringLiteral("WindowHeight"),
                           QString::number(placement.height));
        return;
    }
}

QString getDataFilePath() {
    clsINI* ini = app().iniSettings;
    if (!ini) {
        return {};
    }
    const QString value =
        ini->getKeyString(QStringLiteral("QuillmereInfo"), QStringLiteral("dataLocation"),
                          QString::fromLatin1(clsINI::NotSet));
    if (value == QLatin1String(clsINI::NotSet) || stringControl::isBlank(value)) {
        return {};
    }
    return value;
}

FormRect CenterForm(const FormRect& window, const FormRect* parent, const FormRect& screen) {
    // Halves round as the old runtime rounded them: to even.
    auto half = [](int value) { return static_cast<int>(std::nearbyint(value / 2.0)); };
    FormRect result = window;
    if (!parent) {
        result.top = half(screen.height - window.height);
        result.left = half(screen.width - window.width);
        return result;
    }
    if (window.height > parent->height) {
        result.top = parent->top + half(window.height - parent->height);
    } else if (window.height == parent->height) {
        result.top = parent->top;
    } else {
        result.top = parent->top - half(parent->height - window.height);
    }
    // The equality test of the left edge was written as a second
    // greater-than test, so the branch that takes the parent's left is never
    // reached. Kept: windows placed by older versions stay where they were.
    if (window.width > parent->width) {
        result.left = parent->left + half(window.width - parent->width);
    } else {
        result.left = parent->left - half(parent->width - window.width);
    }
    return result;
}
