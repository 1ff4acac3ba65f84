#include <QApplication>
#include <QMainWindow>

// The windowed program: the application object and the start modes.
int runWindowedProgram(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Quillmere Pad"));
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Quillmere Pad"));
    window.resize(1000, 700);
    window.show();
    return QApplication::exec();
}
