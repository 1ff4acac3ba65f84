// Start-up to the first painted main window, beside a bare Qt MDI window,
// side by side in one run:
//
//   startup_bench [ROUNDS]
//
// Each start is a fresh process of this program, timed from its launch to
// the moment its main window receives its first paint: "bare" is a
// QMainWindow around a QMdiArea with one empty child, "program" is the real
// start-up (settings file read, folders settled, the sample practice's
// database opened, fonts, menus, tool bars and the first document). The two
// alternate so that a noisy neighbour hits both alike; the medians and their
// ratio are printed. A home folder of its own holds the sample practice
// (install-sample), so the user's settings are never touched.
#include "app/CommandLine.h"
#include "app/modMain.h"
#include "ui/frmMain.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextEdit>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

// Tells the parent, at the first paint of a main window, and ends the
// process at once: what comes after the first paint is not timed.
class FirstPaint : public QObject {
public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            auto* widget = qobject_cast<QWidget*>(watched);
            if (widget && qobject_cast<QMainWindow*>(widget->window())) {
                std::fputs("painted\n", stdout);
                std::fflush(stdout);
                std::_Exit(0);
            }
        }
        return false;
    }
};

int runBare(int argc, char** argv) {
    QApplication application(argc, argv);
    FirstPaint watcher;
    application.installEventFilter(&watcher);
    QMainWindow window;
    auto* area = new QMdiArea(&window);
    window.setCentralWidget(area);
    area->addSubWindow(new QTextEdit)->showMaximized();
    window.resize(1000, 700);
    window.show();
    return QApplication::exec();
}

int runProgram(int argc, char** argv) {
    QApplication application(argc, argv);
    FirstPaint watcher;
    application.installEventFilter(&watcher);
    Application program(std::make_unique<QtMainWindowHost>());
    program.Main({});
    return QApplication::exec();
}

int runInstall(int argc, char** argv) {
    QApplication application(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    CommandIO io{out, err};
    return runHeadlessCommand({QStringLiteral("install-sample")}, io);
}

// Milliseconds from launching `mode` to its "painted" line; -1 on failure.
double timeStart(const QString& mode, const QProcessEnvironment& env) {
    QProcess child;
    child.setProcessEnvironment(env);
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QElapsedTimer clock;
    clock.start();
    child.start(QCoreApplication::applicationFilePath(), {mode});
    while (child.waitForReadyRead(30000)) {
        if (child.readAll().contains("painted")) {
            const double ms = double(clock.nsecsElapsed()) / 1e6;
            child.waitForFinished(10000);
            return ms;
        }
    }
    child.kill();
    child.waitForFinished();
    return -1;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QString mode = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    if (mode == QLatin1String("--bare")) {
        return runBare(argc, argv);
    }
    if (mode == QLatin1String("--program")) {
        return runProgram(argc, argv);
    }
    if (mode == QLatin1String("--install")) {
        return runInstall(argc, argv);
    }

    QCoreApplication application(argc, argv);
    const int rounds = mode.isEmpty() ? 7 : std::max(1, mode.toInt());
    QTemporaryDir home;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("HOME"), home.path());
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), home.filePath(QStringLiteral(".config")));
    env.insert(QStringLiteral("XDG_DATA_HOME"), home.filePath(QStringLiteral(".local/share")));
    QProcess install;
    install.setProcessEnvironment(env);
    install.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--install")});
    if (!install.waitForFinished(120000) || install.exitCode() != 0) {
        std::fprintf(stderr, "install-sample failed:\n%s\n", install.readAllStandardError().data());
        return 1;
    }
    // One start of each first, untimed: the disk cache and the font cache.
    timeStart(QStringLiteral("--bare"), env);
    timeStart(QStringLiteral("--program"), env);
    std::vector<double> bare;
    std::vector<double> full;
    for (int i = 0; i < rounds; ++i) {
        const double b = timeStart(QStringLiteral("--bare"), env);
        const double p = timeStart(QStringLiteral("--program"), env);
        if (b < 0 || p < 0) {
            std::fprintf(stderr, "a start did not paint within 30 s\n");
            return 1;
        }
        bare.push_back(b);
        full.push_back(p);
    }
    const double b = median(bare);
    const double p = median(full);
    std::printf("bare_mdi_window_ms: %.1f\n", b);
    std::printf("quillmere_pad_ms: %.1f\n", p);
    std::printf("ratio: %.2f (target at most 2)\n", p / b);
    return 0;
}
