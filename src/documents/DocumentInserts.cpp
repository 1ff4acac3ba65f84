#include "documents/DocumentInserts.h"

#include "context/AppContext.h"
#include "platform/FileDialogs.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/text/CodePage1252.h"
#include "platform/text/VBFormat.h"
#include "platform/text/stringControl.h"

#include <QBuffer>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>
#include <QMimeData>
#include <QPainter>

namespace DocumentInserts {

namespace {

const QString kModule = QStringLiteral("QuillmerePad.exe-frmMain-");

// Pictures are shown at 96 dots per inch.
constexpr int kTwipsPerPixel = 15;

void tell(const QString& text) {
    if (MsgboxClass* box = app().msgbox) {
        box->showMessage(text);
    }
}

QString shownPath(const QString& path) {
    return QDir::toNativeSeparators(path);
}

// The old dialogs' filter "Name|patterns|Name|patterns" in the notation of
// the file dialogs: the names only, whose brackets carry the patterns.
QString dialogFilter(const QString& filter) {
    const QStringList parts = filter.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    QStringList names;
    for (qsizetype i = 0; i < parts.size(); i += 2) {
        QString name = parts.at(i);
        name.replace(QLatin1Char(';'), QLatin1Char(' '));
        name.replace(QLatin1String("*.*"), QLatin1String("*"));
        names << name;
    }
    return names.join(QLatin1String(";;"));
}

} // namespace

const QStringList& timeDateFormats() {
    static const QStringList formats = {
        QStringLiteral("dd/mm/yy"),
        QStringLiteral("dd mmmm yyyy"),
        QStringLiteral("dd mmmm, yyyy"),
        QStringLiteral("mmmm dd, yyyy"),
        QStringLiteral("dd/mmm/yy"),
        QStringLiteral("mmmm, yy"),
        QStringLiteral("mmm/yy"),
        QStringLiteral("dd/mm/yy hh:mm"),
        QStringLiteral("dd/mm/yy hh:mm:ss"),
        QStringLiteral("hh:mm"),
        QStringLiteral("hh:mm:ss"),
        QStringLiteral("hh:mm AMPM"),
        QStringLiteral("hh:mm:ss AMPM"),
    };
    return formats;
}

QStringList timeDateList(const QDateTime& now) {
    QStringList entries;
    for (const QString& format : timeDateFormats()) {
        entries << VBFormat::formatDate(now, format);
    }
    return entries;
}

QString customTimeDateSample(const QDateTime& now, const QString& format) {
    return VBFormat::formatDate(now, format);
}

QStringList symbolLines() {
    QStringList lines;
    lines.reserve(255);
    for (int code = 1; code <= 255; ++code) {
        const QString separator = code < 10    ? QStringLiteral("     -  ")
                                  : code < 100 ? QStringLiteral("   -  ")
                                               : QStringLiteral(" -  ");
        lines << QString::number(code) + separator +
                     QString(CodePage1252::toUnicode(static_cast<unsigned char>(code)));
    }
    return lines;
}

QString symbolOfLine(const QString& line) {
    return line.isEmpty() ? QString() : line.right(1);
}

QString letterheadBlock(int country) {
    const QString crlf = QStringLiteral("\r\n");
    const QString third = country == 1
                              ? QStringLiteral("\u00ABYour City\u00BB, \u00ABYour Province\u00BB  "
                                               "\u00ABYour Postal Code\u00BB")
                              : QStringLiteral("\u00ABYour City\u00BB, \u00ABYour State\u00BB  "
                                               "\u00ABYour Zip Code\u00BB");
    return QStringLiteral("\u00ABYour Company Name\u00BB") + crlf +
           QStringLiteral("\u00ABYour Address\u00BB") + crlf + third + crlf + crlf;
}

void addLetterhead(RichTextBox& firstPage, int country) {
    firstPage.setText(letterheadBlock(country) + firstPage.Text());
}

std::optional<QImage> loadPictureFile(const QString& path, QString* problem) {
    const auto refuse = [&](const QString& why) -> std::optional<QImage> {
        if (problem) {
            *problem = why;
        }
        return std::nullopt;
    };
    const QFileInfo info(path);
    if (!info.isFile()) {
        return refuse(
            QStringLiteral("The picture \"%1\" could not be found.").arg(shownPath(path)));
    }
    if (info.size() > kMaxPictureFileBytes) {
        return refuse(QStringLiteral("The picture \"%1\" is too large to insert (%2 MB). Pictures "
                                     "of up to %3 MB can be inserted.")
                          .arg(shownPath(path))
                          .arg(info.size() / (1024 * 1024))
                          .arg(kMaxPictureFileBytes / (1024 * 1024)));
    }
    // By content, not by name: a renamed file is still read, and a text file
    // named .jpg is refused.
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    if (reader.format().isEmpty() || !reader.canRead()) {
        return refuse(
            QStringLiteral("The file \"%1\" is not a picture that can be inserted. Pictures in "
                           "PNG, JPEG, BMP and GIF form can be inserted.")
                .arg(shownPath(path)));
    }
    if (size.isValid() && (size.width() > kMaxPictureSide || size.height() > kMaxPictureSide)) {
        return refuse(QStringLiteral("The picture \"%1\" is too large to insert (%2 x %3 "
                                     "pixels).")
                          .arg(shownPath(path))
                          .arg(size.width())
                          .arg(size.height()));
    }
    QImage image = reader.read();
    if (image.isNull()) {
        return refuse(QStringLiteral("The picture \"%1\" could not be read: %2.")
                          .arg(shownPath(path), reader.errorString()));
    }
    return image;
}

QSize pictureSizeTwips(QSize pixels, int textWidthTwips, int textHeightTwips) {
    double width = double(std::max(pixels.width(), 1)) * kTwipsPerPixel;
    double height = double(std::max(pixels.height(), 1)) * kTwipsPerPixel;
    double scale = 1.0;
    if (textWidthTwips > 0 && width > textWidthTwips) {
        scale = textWidthTwips / width;
    }
    if (textHeightTwips > 0 && height * scale > textHeightTwips) {
        scale = textHeightTwips / height;
    }
    return {std::max(1, qRound(width * scale)), std::max(1, qRound(height * scale))};
}

QString pictureRtf(const QImage& picture, QSize twips) {
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    QString rtf = QStringLiteral("{\\rtf1\\ansi{\\pict\\pngblip\\picw%1\\pich%2\\picwgoal%3"
                                 "\\pichgoal%4\n")
                      .arg(picture.width())
                      .arg(picture.height())
                      .arg(twips.width())
                      .arg(twips.height());
    rtf += QLatin1String(png.toHex());
    rtf += QLatin1String("}}");
    return rtf;
}

void pastePicture(RichTextBox& page, const QImage& picture, QSize twips) {
    auto* mime = new QMimeData; // the clipboard takes ownership
    mime->setImageData(picture);
    mime->setData(QStringLiteral("text/rtf"), pictureRtf(picture, twips).toLatin1());
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setMimeData(mime);
    page.performEdit(RichTextBox::WM_PASTE);
}

QImage horizontalLinePicture() {
    QImage line(640, 3, QImage::Format_RGB32);
    line.fill(Qt::white);
    QPainter painter(&line);
    painter.fillRect(0, 1, line.width(), 1, QColor(64, 64, 64));
    return line;
}

QSize horizontalLineTwips(int textWidthTwips) {
    return {std::max(textWidthTwips, 1440), 3 * kTwipsPerPixel};
}

bool insertPicture(RichTextBox& page, const QString& picturesFolder, int textWidthTwips,
                   int textHeightTwips) {
    ProcedureScope scope(app().errors, kModule + QStringLiteral("mnuInsertPicture_Click"));
    FileDialogs* dialogs = app().fileDialogs;
    if (dialogs == nullptr) {
        return false;
    }
    const std::optional<QString> path = dialogs->openFileName(
        QStringLiteral("Select picture to open"), picturesFolder,
        // PNG among the picture kinds too: it is what screenshots and most
        // logos come as today.
        dialogFilter(QStringLiteral("Image Files (*.png;*.jpg;*.jpeg;*.bmp;*.gif)|*.png;*.jpg;"
                                    "*.jpeg;*.bmp;*.gif|Bitmaps (*.bmp;*.dib)|*.bmp;*.dib|GIF "
                                    "Images (*.gif)|*.gif|JPEG Images (*.jpg)|*.jpg|PNG Images "
                                    "(*.png)|*.png|All Files (*.*)|*.*")));
    if (!path || path->isEmpty()) {
        return false;
    }
    QString problem;
    const std::optional<QImage> picture = loadPictureFile(*path, &problem);
    if (!picture) {
        tell(problem);
        return false;
    }
    pastePicture(page, *picture,
                 pictureSizeTwips(picture->size(), textWidthTwips, textHeightTwips));
    QGuiApplication::clipboard()->clear();
    return true;
}

int textFileFormat(const QString& path) {
    return path.right(3).toUpper() == QLatin1String("TXT") ? RichTextBox::rtfText
                                                           : RichTextBox::rtfRTF;
}

std::optional<QString> pasteTextFile(RichTextBox& page, const QString& path) {
    const int format = textFileFormat(path);
    const std::optional<QByteArray> bytes = fileControl::readWholeFile(path);
    if (!bytes) {
        return QStringLiteral("The file \"%1\" could not be read.").arg(shownPath(path));
    }
    if (format == RichTextBox::rtfText) {
        const bool utf16 = bytes->startsWith("\xFF\xFE") || bytes->startsWith("\xFE\xFF");
        if (!utf16 && bytes->contains('\0')) {
            return QStringLiteral("The file \"%1\" holds binary data, not text, so it cannot be "
                                  "inserted.")
                .arg(shownPath(path));
        }
    }
    RichTextBox scratch;
    try {
        scratch.LoadFile(path, format);
    } catch (const QmError&) {
        return QStringLiteral("The file \"%1\" is not a rich text file, so it cannot be "
                              "inserted. Text files can be inserted when their name ends in "
                              "\".txt\".")
            .arg(shownPath(path));
    }
    scratch.setSelStart(0);
    scratch.setSelLength(scratch.TextLength());
    scratch.performEdit(RichTextBox::WM_CUT);
    // What the paste answers lands in the text behind the insertion, as the
    // command has always done.
    const int pasted = page.performEdit(RichTextBox::WM_PASTE);
    page.setSelText(QString::number(pasted));
    return std::nullopt;
}

bool insertTextFile(RichTextBox& page, const QString& templatesFolder) {
    ProcedureScope scope(app().errors, kModule + QStringLiteral("mnuInsertTextFile_Click"));
    FileDialogs* dialogs = app().fileDialogs;
    if (dialogs == nullptr) {
        return false;
    }
    const std::optional<QString> path = dialogs->openFileName(
        QStringLiteral("Select file to insert"), templatesFolder,
        dialogFilter(QStringLiteral("Quillmere Documents (*.qmw;*.qmb;*.qme;*.qmt;*.qma)|*.qmw;"
                                    "*.qmb;*.qme;*.qmt;*.qma|Rich Text Files (*.rtf)|*.rtf|Text "
                                    "Files (*.txt)|*.txt|All Files (*.*)|*.*|")));
    if (!path || path->isEmpty()) {
        return false;
    }
    if (const std::optional<QString> problem = pasteTextFile(page, *path)) {
        tell(*problem);
        return false;
    }
    return true;
}

void insertPathAndFile(RichTextBox& page, const QString& documentFileName) {
    if (stringControl::isBlank(documentFileName)) {
        tell(QStringLiteral("This file has not yet been saved so there is no specified file "
                            "location yet.  Please save this file and try again."));
        return;
    }
    page.setSelText(documentFileName);
}

} // namespace DocumentInserts
