#include "ui/frmMain.h"

#include "context/AppContext.h"
#include "ui/frmDocument.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <algorithm>

namespace {
// Twips per pixel at the usual 96 dots per inch.
constexpr int kTwipsPerPixel = 15;
} // namespace

frmMain::frmMain(QWidget* parent) : QMainWindow(parent), m_area(new QMdiArea(this)) {
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("Quillmere Pad"));
    m_area->setViewMode(QMdiArea::TabbedView);
    m_area->setTabsClosable(true);
    setCentralWidget(m_area);
    // FormWidth x FormHeight of a new settings file.
    resize(11640 / kTwipsPerPixel, 8340 / kTwipsPerPixel);
}

void frmMain::newDocument(int number) {
    auto* document = new frmDocument;
    document->DocumentCaption = QStringLiteral("Document %1").arg(number);
    QMdiSubWindow* sub = m_area->addSubWindow(document);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->setWindowTitle(QStringLiteral("Document %1").arg(number));
    sub->showMaximized();
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

QtMainWindowHost::QtMainWindowHost() = default;
QtMainWindowHost::~QtMainWindowHost() = default;

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
}

void QtMainWindowHost::MDIFormInitialize() {
    AppContext& ctx = app();
    ctx.unnamedDocumentCount = 0;
    if (ctx.isStandAlone) {
        m_window->newDocument(++ctx.unnamedDocumentCount);
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
