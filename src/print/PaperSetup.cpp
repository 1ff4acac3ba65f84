#include "print/PaperSetup.h"

#include "documents/DocumentModel.h"
#include "print/PaperTable.h"

#include <QRegularExpression>
#include <cmath>

PaperSetup PaperSetup::fromDocument(const DocumentModel& document) {
    PaperSetup setup;
    setup.PaperSize = document.PaperSize;
    setup.paperWidth = document.getPageWidth();
    setup.paperHeight = document.getPageHeight();
    setup.MarginBottom = document.getBottomMargin();
    setup.MarginLeft = document.getLeftMargin();
    setup.MarginRight = document.getRightMargin();
    setup.MarginTop = document.getTopMargin();
    setup.Orientation = document.getDocumentOrientation() == 1 ? 1 : 2;
    return setup;
}

void PaperSetup::applyTo(DocumentModel& document) const {
    document.putLeftMargin(MarginLeft, false);
    document.putRightMargin(MarginRight, false);
    document.putTopMargin(MarginTop, false);
    document.putBottomMargin(MarginBottom, false);
    document.putDocumentOrientation(Orientation == 1 ? 1 : 2, false);
    document.PaperSize = PaperSize;
    document.putPageWidth(paperWidth, false);
    document.putPageHeight(paperHeight, false);
    document.HasDocumentChanged = true;
}

double PaperSetup::boxValue(const QString& text) {
    static const QRegularExpression number(QStringLiteral("^\\s*[-+]?(\\d+\\.?\\d*|\\.\\d+)"));
    const QRegularExpressionMatch match = number.match(text);
    return match.hasMatch() ? match.captured(0).trimmed().toDouble() : 0.0;
}

QString PaperSetup::inches(double twips) {
    const double rounded = std::round(twips / 1440.0 * 100.0) / 100.0;
    return QString::number(rounded, 'f', 2).remove(QRegularExpression(QStringLiteral("\\.?0+$")));
}

void PaperSetup::setupForm(QSize picture) {
    m_picture = picture;
    m_populating = true;
    paperListIndex = paperIndexOfCode(PaperSize);
    populateValues();
    m_populating = false;
}

void PaperSetup::getPaperDimensions() {
    if (const auto size = paperDimensions(PaperSize)) {
        paperWidth = size->width();
        paperHeight = size->height();
    }
    populateValues();
}

void PaperSetup::populateValues() {
    const bool was = m_populating;
    m_populating = true;
    Orientation = paperWidth <= paperHeight ? 1 : 2;
    orientationOption = Orientation;
    txtPageSize[Width] = inches(paperWidth);
    txtPageSize[Height] = inches(paperHeight);
    txtMargins[Left] = inches(MarginLeft);
    txtMargins[Right] = inches(MarginRight);
    txtMargins[Top] = inches(MarginTop);
    txtMargins[Bottom] = inches(MarginBottom);
    drawPage();
    m_populating = was;
}

void PaperSetup::cboPaperSize_Click(int index) {
    if (m_populating || index < 0 || index >= int(paperTable().size())) {
        return;
    }
    paperListIndex = index;
    PaperSize = paperTable()[size_t(index)].code;
    getPaperDimensions();
}

void PaperSetup::optOrientation_Click(int option) {
    if (m_populating) {
        return;
    }
    Orientation = option == 1 ? 1 : 2;
    orientationOption = Orientation;
    const double width = boxValue(txtPageSize[Width]);
    const double height = boxValue(txtPageSize[Height]);
    if ((Orientation == 1 && width > height) || (Orientation == 2 && width < height)) {
        std::swap(txtPageSize[Width], txtPageSize[Height]);
    }
    paperWidth = int(std::lround(boxValue(txtPageSize[Width]) * 1440));
    paperHeight = int(std::lround(boxValue(txtPageSize[Height]) * 1440));
    drawPage();
}

bool PaperSetup::keyPasses(QChar key) {
    return key.isDigit() || key == QLatin1Char('.') || key == QChar(8) || key == QChar(127) ||
           key == QChar(9) || key == QChar(13);
}

void PaperSetup::pageSizeKeyTyped() {
    // The list shows "User Defined"; what is being typed stays in the box
    // and becomes the size when the box is left.
    paperListIndex = paperIndexOfCode(UserDefinedPaper);
    PaperSize = UserDefinedPaper;
}

std::optional<PaperSetup::Fault> PaperSetup::txtMargins_Validate() {
    struct Check {
        Margin box;
        const char* name;
        float low;
        float high;
    };
    const Check checks[] = {
        {Left, "left", MarginMinLeft / 1440.0f, float(paperWidth - MarginRight) / 1440.0f},
        {Right, "right", MarginMinRight / 1440.0f, float(paperWidth - MarginLeft) / 1440.0f},
        {Top, "top", MarginMinTop / 1440.0f, float(paperHeight - MarginBottom) / 1440.0f},
        {Bottom, "bottom", MarginMinBottom / 1440.0f, float(paperHeight - MarginTop) / 1440.0f},
    };
    for (const Check& check : checks) {
        const float value = float(boxValue(txtMargins[check.box]));
        if (value < check.low || value > check.high) {
            return Fault{check.box, QStringLiteral("You must enter a %1 margin value between %2 "
                                                   "and %3.")
                                        .arg(QLatin1String(check.name))
                                        .arg(inches(check.low * 1440.0))
                                        .arg(inches(check.high * 1440.0))};
        }
    }
    MarginLeft = int(std::lround(boxValue(txtMargins[Left]) * 1440));
    MarginRight = int(std::lround(boxValue(txtMargins[Right]) * 1440));
    MarginTop = int(std::lround(boxValue(txtMargins[Top]) * 1440));
    MarginBottom = int(std::lround(boxValue(txtMargins[Bottom]) * 1440));
    m_marginsEdited = false;
    drawPage();
    return std::nullopt;
}

std::optional<PaperSetup::Fault> PaperSetup::txtPageSize_Validate() {
    const double width = boxValue(txtPageSize[Width]);
    if (width < 0 || width > 99) {
        return Fault{Width, QStringLiteral("You must enter a page width value between 0 and 99.")};
    }
    const double height = boxValue(txtPageSize[Height]);
    if (height < 0 || height > 99) {
        return Fault{Height,
                     QStringLiteral("You must enter a page height value between 0 and 99.")};
    }
    paperWidth = int(std::lround(width * 1440));
    paperHeight = int(std::lround(height * 1440));
    m_sizeEdited = false;
    populateValues();
    return std::nullopt;
}

void PaperSetup::boxEdited(bool marginBox) {
    (marginBox ? m_marginsEdited : m_sizeEdited) = true;
}

std::optional<PaperSetup::Fault> PaperSetup::ok() {
    if (m_marginsEdited) {
        if (auto fault = txtMargins_Validate()) {
            return fault;
        }
    }
    if (m_sizeEdited) {
        if (auto fault = txtPageSize_Validate()) {
            fault->box += 4;
            return fault;
        }
    }
    ClickedOK = true;
    return std::nullopt;
}

void PaperSetup::drawPage() {
    const int W = m_picture.width();
    const int H = m_picture.height();
    int w = int(paperWidth / DrawDivisor + ShadowRoom);
    int h = int(paperHeight / DrawDivisor + ShadowRoom);
    if (h > H) {
        w = int(w * (1.0 - double(h - H) / h));
        h = H;
    }
    if (w > W) {
        h = int(h * (1.0 - double(w - W) / w));
        w = W;
    }
    const int pageLeft = (W - w) / 2;
    const int pageTop = (H - h) / 2;
    shpShadow = QRect(pageLeft + ShadowRoom, pageTop + ShadowRoom, w - ShadowRoom, h - ShadowRoom);
    shpPage = QRect(pageLeft, pageTop, w - ShadowRoom, h - ShadowRoom);
    shpMargins =
        QRect(int(pageLeft + MarginLeft / DrawDivisor), int(pageTop + MarginTop / DrawDivisor),
              int(shpPage.width() - MarginLeft / DrawDivisor - MarginRight / DrawDivisor),
              int(shpPage.height() - MarginTop / DrawDivisor - MarginBottom / DrawDivisor));
}
