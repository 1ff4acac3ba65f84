#include "platform/richtext/RichTextFormat.h"

#include <QAbstractTextDocumentLayout>
#include <QGuiApplication>
#include <QScreen>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextImageFormat>
#include <QTextTable>
#include <cmath>

namespace RichTextFormat {

namespace {

constexpr const char* kScaleProperty = "qmUnitsPerTwip";

void scaleImages(QTextBlock block, double scale) {
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        QTextCharFormat format = fragment.charFormat();
        if (!format.isImageFormat() || !format.hasProperty(PictureWidthTwips)) {
            continue;
        }
        QTextImageFormat image = format.toImageFormat();
        image.setWidth(image.intProperty(PictureWidthTwips) * scale);
        image.setHeight(image.intProperty(PictureHeightTwips) * scale);
        QTextCursor cursor(const_cast<QTextDocument*>(block.document()));
        cursor.setPosition(fragment.position());
        cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
        cursor.setCharFormat(image);
    }
}

} // namespace

double screenUnitsPerTwip() {
    // The layout's default device is the screen; without one Qt assumes 96.
    int dpi = 96;
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        dpi = static_cast<int>(screen->logicalDotsPerInchY());
    }
    return dpi / 1440.0;
}

double unitsPerTwip(const QTextDocument& document) {
    const QVariant value = document.property(kScaleProperty);
    return value.isValid() ? value.toDouble() : screenUnitsPerTwip();
}

void scaleBlockFormat(QTextBlockFormat& format, double scale) {
    format.setLeftMargin(format.intProperty(LeftIndentTwips) * scale);
    format.setRightMargin(format.intProperty(RightIndentTwips) * scale);
    format.setTextIndent(format.intProperty(FirstLineTwips) * scale);
    // Qt's layout scales paragraph spacing itself from the screen's
    // resolution to its paint device's, and indents not: spacing stays in
    // screen units whatever the device.
    format.setTopMargin(format.intProperty(SpaceBeforeTwips) * screenUnitsPerTwip());
    format.setBottomMargin(format.intProperty(SpaceAfterTwips) * screenUnitsPerTwip());
    const int spacing = format.intProperty(LineSpacingTwips);
    if (spacing == 0) {
        format.setLineHeight(100, QTextBlockFormat::SingleHeight);
    } else if (format.boolProperty(LineSpacingMultiple)) {
        // Multiples of single spacing, where 240 means single.
        format.setLineHeight(std::abs(spacing) * 100.0 / 240.0,
                             QTextBlockFormat::ProportionalHeight);
    } else if (spacing < 0) {
        format.setLineHeight(-spacing * scale, QTextBlockFormat::FixedHeight);
    } else {
        format.setLineHeight(spacing * scale, QTextBlockFormat::MinimumHeight);
    }
    const QList<QVariant> stops = format.property(TabStopsTwips).toList();
    const QList<QVariant> kinds = format.property(TabStopKinds).toList();
    QList<QTextOption::Tab> tabs;
    for (qsizetype i = 0; i < stops.size(); ++i) {
        const int kind = i < kinds.size() ? kinds.at(i).toInt() : 0;
        const auto type = kind == 1   ? QTextOption::RightTab
                          : kind == 2 ? QTextOption::CenterTab
                          : kind == 3 ? QTextOption::DelimiterTab
                                      : QTextOption::LeftTab;
        tabs.append(QTextOption::Tab(stops.at(i).toInt() * scale, type,
                                     kind == 3 ? QLatin1Char('.') : QChar()));
    }
    format.setTabPositions(tabs);
}

void setBlockTwips(QTextBlockFormat& format, int property, int twips, double scale) {
    if (twips == 0) {
        format.clearProperty(property);
    } else {
        format.setProperty(property, twips);
    }
    scaleBlockFormat(format, scale);
}

void applyScale(QTextDocument& document, double scale) {
    document.setProperty(kScaleProperty, scale);
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextBlockFormat before = block.blockFormat();
        QTextBlockFormat format = before;
        scaleBlockFormat(format, scale);
        // A document read for this device has its paragraphs scaled already;
        // setting a format costs even when it changes nothing.
        if (format != before) {
            cursor.setPosition(block.position());
            cursor.setBlockFormat(format);
        }
        scaleImages(block, scale);
    }
    // Column widths of tables.
    const auto frames = document.rootFrame()->childFrames();
    for (QTextFrame* frame : frames) {
        auto* table = qobject_cast<QTextTable*>(frame);
        if (table == nullptr) {
            continue;
        }
        QTextTableFormat format = table->format();
        const QList<QVariant> widths = format.property(ColumnWidthsTwips).toList();
        if (widths.isEmpty()) {
            continue;
        }
        QList<QTextLength> lengths;
        for (const QVariant& width : widths) {
            lengths.append(QTextLength(QTextLength::FixedLength, width.toInt() * scale));
        }
        format.setColumnWidthConstraints(lengths);
        table->setFormat(format);
    }
    cursor.endEditBlock();
    // The undo stack must not offer a change of device as an edit.
}

void setCharOffset(QTextCharFormat& format, int twips) {
    if (twips == 0) {
        format.clearProperty(CharOffsetTwips);
        format.clearProperty(QTextFormat::TextBaselineOffset);
        return;
    }
    format.setProperty(CharOffsetTwips, twips);
    const double size =
        format.hasProperty(QTextFormat::FontPointSize) ? format.fontPointSize() : 12.0;
    // The baseline offset is a percentage of the font's height.
    format.setBaselineOffset(twips / 20.0 / size * 100.0);
}

int charOffsetTwips(const QTextCharFormat& format) {
    return format.intProperty(CharOffsetTwips);
}

} // namespace RichTextFormat
