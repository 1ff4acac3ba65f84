#include "print/PdfTarget.h"

#include "documents/DocumentModel.h"

#include <QDir>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>

namespace {
// Device units per inch: one unit is one twip.
constexpr int kResolution = 1440;
} // namespace

PdfTarget::PdfTarget(const QString& path, const QString& title)
    : m_path(path), m_title(title), m_file(path) {}

PdfTarget::~PdfTarget() {
    if (painterActive()) {
        abort();
    }
}

QSize PdfTarget::sheetSize(const DocumentModel& geometry) {
    int width = geometry.getPageWidth();
    int height = geometry.getPageHeight();
    const bool portrait = geometry.getDocumentOrientation() == 1;
    if (portrait ? width > height : height > width) {
        std::swap(width, height);
    }
    return {width, height};
}

QString PdfTarget::writeFailure() const {
    return QStringLiteral("The PDF file \"%1\" could not be written: %2.")
        .arg(QDir::toNativeSeparators(m_path), m_file.errorString());
}

bool PdfTarget::begin(const DocumentModel& geometry) {
    const QSize sheet = sheetSize(geometry);
    if (const QString fault = pageSetupFault(geometry); !fault.isEmpty()) {
        // Before the file is touched: an old PDF of that name stays as it is.
        setError(QString(fault).replace(QLatin1String("nothing was printed"),
                                        QLatin1String("no PDF was written")));
        return false;
    }
    if (!m_file.open(QIODevice::WriteOnly)) {
        setError(writeFailure());
        return false;
    }
    m_tuning.emplace();
    m_writer = std::make_unique<QPdfWriter>(&m_file);
    m_writer->setResolution(kResolution);
    m_writer->setCreator(QStringLiteral("Quillmere Pad"));
    m_writer->setTitle(m_title);
    // Points, exactly: a sheet of A4 stays 595.3 points wide.
    const QPageSize size(QSizeF(sheet.width() / 20.0, sheet.height() / 20.0), QPageSize::Point,
                         QString(), QPageSize::ExactMatch);
    m_writer->setPageLayout(QPageLayout(size, QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
    return openPainter(*m_writer, geometry, sheet, QPoint(0, 0));
}

bool PdfTarget::newPage() {
    if (m_file.error() != QFileDevice::NoError) {
        setError(writeFailure());
        return false;
    }
    if (!PagedDeviceTarget::newPage()) {
        return false;
    }
    if (m_tuning) {
        m_tuning->sheetWritten();
    }
    return true;
}

bool PdfTarget::end() {
    if (!m_writer) {
        return false;
    }
    const bool painted = closePainter();
    m_writer.reset();
    m_tuning.reset();
    if (!painted) {
        m_file.cancelWriting();
        m_file.commit();
        setError(writeFailure());
        return false;
    }
    if (!m_file.commit()) {
        setError(writeFailure());
        return false;
    }
    return true;
}

void PdfTarget::abort() {
    closePainter();
    m_writer.reset();
    m_tuning.reset();
    m_file.cancelWriting();
    m_file.commit();
}
