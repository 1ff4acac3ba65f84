#include "ui/QtMsgbox.h"

#include <QMessageBox>

namespace {
const QString kTitle = QStringLiteral("Quillmere Pad");

QMessageBox::Icon iconFor(int kind) {
    return kind == MsgboxClass::KindFatal ? QMessageBox::Critical : QMessageBox::Information;
}
} // namespace

void QtMsgbox::showMessage(const QString& text, int kind) {
    QMessageBox box(iconFor(kind), kTitle, text, QMessageBox::Ok, m_owner);
    box.exec();
}

int QtMsgbox::askQuestion(const QString& text, int /*kind*/) {
    QMessageBox box(QMessageBox::Question, kTitle, text, QMessageBox::Yes | QMessageBox::No,
                    m_owner);
    return box.exec() == QMessageBox::Yes ? Yes : No;
}

int QtMsgbox::askQuestionWithCancel(const QString& text, int /*kind*/) {
    QMessageBox box(QMessageBox::Question, kTitle, text,
                    QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, m_owner);
    switch (box.exec()) {
    case QMessageBox::Yes:
        return Yes;
    case QMessageBox::No:
        return No;
    default:
        return Cancel;
    }
}
