#pragma once

#include "print/PdfWriterTuning.h"
#include "print/PrintTarget.h"

#include <QSaveFile>
#include <memory>
#include <optional>

class QPdfWriter;

// A PDF file as a print target. The sheets have the page size of the
// document's page setup and no unprintable area, so the text stands at the
// margins; fonts are embedded and the text stays extractable. The file is
// written to a temporary beside the target and renamed into place by end():
// a job that fails or is dropped leaves the old file, or none, never half a
// PDF.
class PdfTarget : public PagedDeviceTarget {
public:
    // `title` goes into the file's properties.
    explicit PdfTarget(const QString& path, const QString& title = QString());
    ~PdfTarget() override;

    bool begin(const DocumentModel& geometry) override;
    bool newPage() override;
    bool end() override;
    void abort() override;

    // The sheet size of a page setup in twips, width and height made to
    // agree with the orientation as the layout does.
    static QSize sheetSize(const DocumentModel& geometry);

private:
    QString writeFailure() const;

    QString m_path;
    QString m_title;
    QSaveFile m_file;
    std::unique_ptr<QPdfWriter> m_writer;
    // From begin() until the file is finished or dropped.
    std::optional<PdfWriterTuning> m_tuning;
};
