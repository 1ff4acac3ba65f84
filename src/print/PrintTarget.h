#pragma once

#include <QPainter>
#include <QRect>
#include <QString>
#include <memory>

class DocumentModel;
class PageLayout;
class QPagedPaintDevice;

// Where the text edges stand on a device, in twips from the corner of its
// printable area: the left and top edges sit at the margin less the
// unprintable offset (or at the offset when the margin is no wider); the
// right and bottom edges follow the same branches against the paper's
// width and height. `paper` is the device's paper size in twips.
struct TextEdges {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};
TextEdges printTextEdges(const DocumentModel& geometry, QSize paper, QPoint offset);

// Why a page setup cannot be put on paper (no paper size, or margins that
// leave no room for text), or an empty string when it can.
QString pageSetupFault(const DocumentModel& geometry);

// A job of sheets: paper through a printer, or a PDF file. The page loop
// starts it, paints sheets of a layout, feeds new sheets and ends it; it
// never asks what the device is.
class PrintTarget {
public:
    virtual ~PrintTarget() = default;

    // Starts the job for a document of this page setup. False when the
    // device refuses; error() says why and nothing has been output.
    virtual bool begin(const DocumentModel& geometry) = 0;
    // Paints sheet `page` of the layout on the current sheet.
    virtual void paintSheet(const PageLayout& layout, int page) = 0;
    // Feeds the next sheet. False when the device failed (a printer that
    // went away, a full disk); the job is then dropped by the caller.
    virtual bool newPage() = 0;
    // Commits the job: all copies form one job. False when it could not be
    // finished; no output is then presented as done.
    virtual bool end() = 0;
    // Drops the job; nothing that was painted is output.
    virtual void abort() = 0;
    virtual QString error() const = 0;
};

// A target over a Qt paged paint device (a PDF writer, a printer): the
// painter maps twips of the printable area to the device, and each sheet is
// drawn by the one sheet paint routine at the text edges of the page setup.
class PagedDeviceTarget : public PrintTarget {
public:
    void paintSheet(const PageLayout& layout, int page) override;
    bool newPage() override;
    QString error() const override { return m_error; }

    // The text edges in use since begin().
    TextEdges textEdges() const { return m_edges; }

protected:
    // Opens the painter on `device`, whose printable area has this offset
    // from the paper's corner and whose paper has this size, both in twips.
    bool openPainter(QPagedPaintDevice& device, const DocumentModel& geometry, QSize paper,
                     QPoint offset);
    // Ends the painter; false when the device reported a failure.
    bool closePainter();
    void setError(const QString& error) { m_error = error; }
    bool painterActive() const { return m_painter.isActive(); }

private:
    void applyTransform();

    QPagedPaintDevice* m_device = nullptr;
    QPainter m_painter;
    TextEdges m_edges;
    QSize m_printable;
    QString m_error;
};
