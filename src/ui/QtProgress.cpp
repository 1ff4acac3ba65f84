#include "ui/QtProgress.h"

#include <QCoreApplication>
#include <QProgressDialog>

QtProgress::QtProgress(QWidget* owner) : m_owner(owner) {}

QtProgress::~QtProgress() = default;

void QtProgress::begin(const QString& caption, int maximum) {
    m_dialog = std::make_unique<QProgressDialog>(caption, QStringLiteral("Cancel"), 0,
                                                 std::max(maximum, 0), m_owner);
    m_dialog->setObjectName(QStringLiteral("frmProgress"));
    // The caption stands in the title bar ("Printing Merge Documents"); the
    // steps write the line under it ("Preparing to print: " + name).
    m_dialog->setWindowTitle(caption.isEmpty() ? QStringLiteral("Quillmere Pad") : caption);
    m_dialog->setWindowModality(Qt::WindowModal);
    // Short work never flashes a dialog.
    m_dialog->setMinimumDuration(400);
    m_dialog->setValue(0);
    m_done = 0;
}

void QtProgress::step(const QString& text) {
    if (!m_dialog) {
        return;
    }
    ++m_done;
    if (!text.isEmpty()) {
        m_dialog->setLabelText(text);
    }
    if (m_dialog->maximum() > 0) {
        m_dialog->setValue(std::min(m_done, m_dialog->maximum()));
    }
    QCoreApplication::processEvents();
}

void QtProgress::end() {
    m_dialog.reset();
}

bool QtProgress::cancelled() const {
    return m_dialog && m_dialog->wasCanceled();
}
