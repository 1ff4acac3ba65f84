#include "ui/frmPaperSize.h"

#include "context/AppContext.h"
#include "platform/MsgboxClass.h"
#include "print/PaperTable.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {
constexpr int kTwipsPerPixel = 15;
constexpr QSize kPictureTwips(2700, 2700);
} // namespace

// The drawing: shadow, sheet and margin box, in the picture's twips.
class PaperPicture : public QWidget {
public:
    PaperPicture(const PaperSetup& setup, QWidget* parent) : QWidget(parent), m_setup(setup) {
        setObjectName(QStringLiteral("picPaper"));
        setAccessibleName(QStringLiteral("Drawing of the sheet and its margins"));
        setFixedSize(kPictureTwips / kTwipsPerPixel);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), palette().color(QPalette::Mid));
        painter.scale(1.0 / kTwipsPerPixel, 1.0 / kTwipsPerPixel);
        painter.fillRect(m_setup.shpShadow, Qt::darkGray);
        painter.fillRect(m_setup.shpPage, Qt::white);
        painter.setPen(QPen(Qt::black, 0));
        painter.drawRect(m_setup.shpPage);
        painter.setPen(QPen(Qt::gray, 0, Qt::DashLine));
        painter.drawRect(m_setup.shpMargins);
    }

private:
    const PaperSetup& m_setup;
};

frmPaperSize::frmPaperSize(PaperSetup& setup, QWidget* parent) : QDialog(parent), m_setup(setup) {
    setObjectName(QStringLiteral("frmPaperSize"));
    setWindowTitle(QStringLiteral("Paper Setup"));

    auto* paperFrame = new QGroupBox(QStringLiteral("Paper Size ( Inches )"), this);
    auto* paperForm = new QFormLayout(paperFrame);
    m_paperSize = new QComboBox(paperFrame);
    m_paperSize->setObjectName(QStringLiteral("cboPaperSize"));
    for (const PaperEntry& entry : paperTable()) {
        m_paperSize->addItem(entry.text, entry.code);
    }
    paperForm->addRow(QStringLiteral("Paper Size:"), m_paperSize);
    const char* sizeLabels[] = {"Paper Width:", "Paper Height:"};
    for (int i = 0; i < 2; ++i) {
        m_pageSize[size_t(i)] = new QLineEdit(paperFrame);
        m_pageSize[size_t(i)]->setObjectName(QStringLiteral("txtPageSize(%1)").arg(i));
        paperForm->addRow(QLatin1String(sizeLabels[i]), m_pageSize[size_t(i)]);
    }

    auto* orientationFrame = new QGroupBox(QStringLiteral("Orientation"), this);
    auto* orientationLayout = new QVBoxLayout(orientationFrame);
    const char* orientationCaptions[] = {"Portrait", "Landscape"};
    for (int i = 0; i < 2; ++i) {
        auto* option = new QRadioButton(QLatin1String(orientationCaptions[i]), orientationFrame);
        option->setObjectName(QStringLiteral("optOrientation(%1)").arg(i + 1));
        orientationLayout->addWidget(option);
        m_orientation[size_t(i)] = option;
        connect(option, &QRadioButton::clicked, this, [this, i] {
            if (!m_refreshing) {
                m_setup.optOrientation_Click(i + 1);
                refresh();
            }
        });
    }

    auto* marginFrame = new QGroupBox(QStringLiteral("Margins ( Inches )"), this);
    auto* marginForm = new QFormLayout(marginFrame);
    const char* marginLabels[] = {"Left:", "Right:", "Top:", "Bottom:"};
    for (int i = 0; i < 4; ++i) {
        m_margins[size_t(i)] = new QLineEdit(marginFrame);
        m_margins[size_t(i)]->setObjectName(QStringLiteral("txtMargins(%1)").arg(i));
        marginForm->addRow(QLatin1String(marginLabels[i]), m_margins[size_t(i)]);
    }

    for (QLineEdit* box : m_margins) {
        box->installEventFilter(this);
        connect(box, &QLineEdit::textEdited, this, [this, box](const QString& text) {
            m_setup.txtMargins[size_t(std::find(m_margins.begin(), m_margins.end(), box) -
                                      m_margins.begin())] = text;
            m_setup.boxEdited(true);
        });
        connect(box, &QLineEdit::editingFinished, this, [this] {
            if (m_refreshing) {
                return;
            }
            if (const auto fault = m_setup.txtMargins_Validate()) {
                showFault(*fault);
            } else {
                refresh();
            }
        });
    }
    for (QLineEdit* box : m_pageSize) {
        box->installEventFilter(this);
        connect(box, &QLineEdit::textEdited, this, [this, box](const QString& text) {
            m_setup.txtPageSize[box == m_pageSize[0] ? 0 : 1] = text;
            m_setup.boxEdited(false);
        });
        connect(box, &QLineEdit::editingFinished, this, [this] {
            if (m_refreshing) {
                return;
            }
            if (const auto fault = m_setup.txtPageSize_Validate()) {
                showFault({fault->box + 4, fault->message});
            } else {
                refresh();
            }
        });
    }
    connect(m_paperSize, &QComboBox::activated, this, [this](int index) {
        if (!m_refreshing) {
            m_setup.cboPaperSize_Click(index);
            refresh();
        }
    });

    m_picture = new PaperPicture(m_setup, this);
    auto* ok = new QPushButton(QStringLiteral("Ok"), this);
    ok->setObjectName(QStringLiteral("cmdOk"));
    ok->setDefault(true);
    auto* close = new QPushButton(QStringLiteral("Close"), this);
    close->setObjectName(QStringLiteral("cmdClose"));
    connect(ok, &QPushButton::clicked, this, &frmPaperSize::cmdOk_Click);
    connect(close, &QPushButton::clicked, this, [this] {
        m_setup.ClickedOK = false;
        reject();
    });

    auto* grid = new QGridLayout(this);
    grid->addWidget(paperFrame, 0, 0);
    grid->addWidget(m_picture, 0, 1, Qt::AlignCenter);
    grid->addWidget(orientationFrame, 1, 0);
    grid->addWidget(marginFrame, 1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(close);
    grid->addLayout(buttons, 2, 0, 1, 2);

    m_setup.setupForm(kPictureTwips);
    refresh();
}

void frmPaperSize::refresh() {
    m_refreshing = true;
    {
        const QSignalBlocker block(m_paperSize);
        m_paperSize->setCurrentIndex(m_setup.paperListIndex);
    }
    for (size_t i = 0; i < 4; ++i) {
        if (m_margins[i]->text() != m_setup.txtMargins[i]) {
            m_margins[i]->setText(m_setup.txtMargins[i]);
        }
    }
    for (size_t i = 0; i < 2; ++i) {
        if (m_pageSize[i]->text() != m_setup.txtPageSize[i]) {
            m_pageSize[i]->setText(m_setup.txtPageSize[i]);
        }
    }
    m_orientation[m_setup.orientationOption == 1 ? 0 : 1]->setChecked(true);
    m_picture->update();
    m_refreshing = false;
}

void frmPaperSize::showFault(const PaperSetup::Fault& fault) {
    QLineEdit* box =
        fault.box < 4 ? m_margins[size_t(fault.box)] : m_pageSize[size_t(fault.box - 4)];
    m_refreshing = true;
    if (app().msgbox) {
        app().msgbox->showMessage(fault.message);
    }
    box->setFocus();
    box->selectAll();
    m_refreshing = false;
}

void frmPaperSize::cmdOk_Click() {
    if (const auto fault = m_setup.ok()) {
        showFault(*fault);
        return;
    }
    accept();
}

bool frmPaperSize::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const QString text = key->text();
        // Keys that type nothing (arrows, Home, ...) edit and pass.
        if (!text.isEmpty() && !PaperSetup::keyPasses(text.at(0))) {
            return true;
        }
        if (!text.isEmpty() && (watched == m_pageSize[0] || watched == m_pageSize[1]) &&
            text.at(0).isPrint()) {
            m_setup.pageSizeKeyTyped();
            const QSignalBlocker block(m_paperSize);
            m_paperSize->setCurrentIndex(m_setup.paperListIndex);
        }
    }
    return QDialog::eventFilter(watched, event);
}
