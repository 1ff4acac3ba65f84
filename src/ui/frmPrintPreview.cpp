#include "ui/frmPrintPreview.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>

namespace {
constexpr int kBorder = 16;
const QColor kDesk(0x80, 0x80, 0x80);
const QColor kShadow(0x40, 0x40, 0x40);
} // namespace

// Draws the current sheet with its shadow at the chosen scale.
class PreviewCanvas : public QWidget {
public:
    PreviewCanvas(SheetSource& source, const PreviewNavigator& navigator, QWidget* parent)
        : QWidget(parent), m_source(source), m_navigator(navigator) {
        setObjectName(QStringLiteral("picPreview"));
        setAccessibleName(QStringLiteral("Sheet as it will print"));
    }
    void setScale(double pixelsPerTwip) {
        m_scale = pixelsPerTwip;
        const QSize sheet = m_source.sheetSize();
        setFixedSize(int(sheet.width() * m_scale) + 2 * kBorder,
                     int(sheet.height() * m_scale) + 2 * kBorder);
        update();
    }
    double scale() const { return m_scale; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), kDesk);
        painter.setRenderHint(QPainter::TextAntialiasing);
        const QSize sheet = m_source.sheetSize();
        const QRect paper(kBorder, kBorder, int(sheet.width() * m_scale),
                          int(sheet.height() * m_scale));
        painter.fillRect(paper.translated(4, 4), kShadow);
        painter.translate(paper.topLeft());
        painter.scale(m_scale, m_scale);
        painter.setClipRect(QRect(QPoint(0, 0), sheet));
        m_source.paintSheet(painter, m_navigator.current());
    }

private:
    SheetSource& m_source;
    const PreviewNavigator& m_navigator;
    double m_scale = 0.05;
};

frmPrintPreview::frmPrintPreview(std::unique_ptr<SheetSource> source, const QString& caption,
                                 std::function<void()> print, QWidget* parent)
    : QDialog(parent), m_source(std::move(source)), m_print(std::move(print)) {
    setObjectName(QStringLiteral("frmPrintPreview"));
    setWindowTitle(QStringLiteral("Print Preview - ") + caption);
    // The first sheet shows at once; the count of a long document, which
    // lays all of it out, follows as soon as the window is up.
    m_navigator.setSheetCount(m_source->knownSheetCount());

    const auto button = [this](const char* name, const char* text, const char* accessible) {
        auto* b = new QPushButton(QLatin1String(text), this);
        b->setObjectName(QLatin1String(name));
        b->setAccessibleName(QLatin1String(accessible));
        b->setAutoDefault(false);
        return b;
    };
    m_first = button("cmdFirst", "|<", "First sheet");
    m_previous = button("cmdPrevious", "<", "Previous sheet");
    m_next = button("cmdNext", ">", "Next sheet");
    m_last = button("cmdLast", ">|", "Last sheet");
    m_page = new QSpinBox(this);
    m_page->setObjectName(QStringLiteral("txtPage"));
    m_page->setAccessibleName(QStringLiteral("Sheet"));
    m_page->setRange(1, m_navigator.sheetCount());
    m_count = new QLabel(this);
    m_count->setObjectName(QStringLiteral("lblPages"));
    m_zoom = new QComboBox(this);
    m_zoom->setObjectName(QStringLiteral("cboZoom"));
    m_zoom->setAccessibleName(QStringLiteral("Zoom"));
    m_zoom->addItem(QStringLiteral("Whole Page"), -1);
    m_zoom->addItem(QStringLiteral("Page Width"), -2);
    for (int percent : {50, 75, 100, 150, 200}) {
        m_zoom->addItem(QStringLiteral("%1%").arg(percent), percent);
    }
    auto* printButton = button("cmdPrint", "&Print...", "Print");
    auto* close = button("cmdClose", "&Close", "Close");

    auto* bar = new QHBoxLayout;
    for (QWidget* w : std::initializer_list<QWidget*>{m_first, m_previous, m_page, m_count, m_next,
                                                      m_last, m_zoom}) {
        bar->addWidget(w);
    }
    bar->addStretch();
    bar->addWidget(printButton);
    bar->addWidget(close);

    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("scrPreview"));
    scroll->setAlignment(Qt::AlignCenter);
    scroll->setBackgroundRole(QPalette::Dark);
    m_canvas = new PreviewCanvas(*m_source, m_navigator, scroll);
    scroll->setWidget(m_canvas);
    m_viewport = scroll->viewport();
    m_viewport->installEventFilter(this);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(bar);
    layout->addWidget(scroll, 1);
    resize(760, 900);

    connect(m_first, &QPushButton::clicked, this, [this] {
        if (m_navigator.first()) {
            showSheet();
        }
    });
    connect(m_previous, &QPushButton::clicked, this, [this] {
        if (m_navigator.previous()) {
            showSheet();
        }
    });
    connect(m_next, &QPushButton::clicked, this, [this] {
        if (m_navigator.next()) {
            showSheet();
        }
    });
    connect(m_last, &QPushButton::clicked, this, [this] {
        if (m_navigator.last()) {
            showSheet();
        }
    });
    connect(m_page, &QSpinBox::valueChanged, this, [this](int sheet) {
        if (m_navigator.go(sheet)) {
            showSheet();
        }
    });
    connect(m_zoom, &QComboBox::currentIndexChanged, this, &frmPrintPreview::applyZoom);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    connect(printButton, &QPushButton::clicked, this, [this] {
        const auto printRoutine = m_print;
        QDialog::close();
        if (printRoutine) {
            printRoutine();
        }
    });
    showSheet();
    applyZoom();
    QTimer::singleShot(0, this, [this] {
        m_navigator.setSheetCount(m_source->sheetCount());
        m_page->setRange(1, m_navigator.sheetCount());
        showSheet();
    });
}

frmPrintPreview::~frmPrintPreview() = default;

double frmPrintPreview::currentScale() const {
    return m_canvas->scale();
}

void frmPrintPreview::showSheet() {
    {
        const QSignalBlocker block(m_page);
        m_page->setValue(m_navigator.current());
    }
    m_count->setText(QStringLiteral("of %1").arg(m_navigator.sheetCount()));
    m_first->setEnabled(m_navigator.canGoBack());
    m_previous->setEnabled(m_navigator.canGoBack());
    m_next->setEnabled(m_navigator.canGoOn());
    m_last->setEnabled(m_navigator.canGoOn());
    m_canvas->update();
}

void frmPrintPreview::applyZoom() {
    const int choice = m_zoom->currentData().toInt();
    const auto zoom = choice == -1   ? PreviewNavigator::Zoom::WholePage
                      : choice == -2 ? PreviewNavigator::Zoom::PageWidth
                                     : PreviewNavigator::Zoom::Percent;
    QSize view = m_viewport->size();
    view -= QSize(2 * kBorder, 2 * kBorder);
    const double dpi = screen() ? screen()->logicalDotsPerInch() : 96.0;
    m_canvas->setScale(
        PreviewNavigator::scale(zoom, choice, m_source->sheetSize(), view.expandedTo({1, 1}), dpi));
}

void frmPrintPreview::keyPressEvent(QKeyEvent* event) {
    bool moved = false;
    switch (event->key()) {
    case Qt::Key_PageDown:
        moved = m_navigator.next();
        break;
    case Qt::Key_PageUp:
        moved = m_navigator.previous();
        break;
    case Qt::Key_Home:
        moved = m_navigator.first();
        break;
    case Qt::Key_End:
        moved = m_navigator.last();
        break;
    default:
        QDialog::keyPressEvent(event);
        return;
    }
    if (moved) {
        showSheet();
    }
}

bool frmPrintPreview::eventFilter(QObject* watched, QEvent* event) {
    // The fitted zooms follow the size of the view.
    if (watched == m_viewport && event->type() == QEvent::Resize &&
        m_zoom->currentData().toInt() < 0) {
        applyZoom();
    }
    return QDialog::eventFilter(watched, event);
}
