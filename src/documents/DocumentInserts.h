#pragma once

#include <QDateTime>
#include <QImage>
#include <QSize>
#include <QString>
#include <QStringList>
#include <optional>

class RichTextBox;

// What the Insert menu puts into a document, without the windows: the
// texts of the time-and-date and symbol lists, the letterhead block, and
// pictures and files brought in through the clipboard as the control takes
// a paste. Messages go through app().msgbox, file choices through
// app().fileDialogs.
namespace DocumentInserts {

// The formats of the time-and-date list, in list order.
const QStringList& timeDateFormats();
// The list's entries: `now` under each format.
QStringList timeDateList(const QDateTime& now);
// The sample of a custom format.
QString customTimeDateSample(const QDateTime& now, const QString& format);

// One line per character code 1 to 255: the code, a separator that keeps
// the character's column in a proportional font, and the character (code
// page 1252; codes the page leaves undefined give their own code point).
QStringList symbolLines();
// The character a symbol line inserts: its last one. Empty for no line.
QString symbolOfLine(const QString& line);

// The letterhead's placeholders for `country` (1 Canada, others the US),
// each line closed by CR LF, and one more CR LF behind.
QString letterheadBlock(int country);
// Puts the block in front of the text of `firstPage`. The page is set as
// plain text, so its formatting goes.
void addLetterhead(RichTextBox& firstPage, int country);

// Pictures the program takes. Anything larger is refused before reading.
inline constexpr qint64 kMaxPictureFileBytes = 20 * 1024 * 1024;
inline constexpr int kMaxPictureSide = 20000;

// Reads a picture file by its content (PNG, JPEG, BMP, GIF, ...). nullopt
// with `problem` set to the message for the user when the file is missing,
// too large, or no picture.
std::optional<QImage> loadPictureFile(const QString& path, QString* problem);
// The size a picture is shown at, in twips: its own at 96 dots per inch,
// scaled down with its proportions kept to fit the text area.
QSize pictureSizeTwips(QSize pixels, int textWidthTwips, int textHeightTwips);
// A picture as an RTF text the control can paste (PNG inside).
QString pictureRtf(const QImage& picture, QSize twips);
// Puts the picture on the clipboard and pastes it at the caret of `page`.
// The clipboard keeps it.
void pastePicture(RichTextBox& page, const QImage& picture, QSize twips);
// The thin rule of the horizontal line, as wide as the text area.
QImage horizontalLinePicture();
QSize horizontalLineTwips(int textWidthTwips);

// The Picture command: asks for a file in `picturesFolder` and pastes the
// picture, scaled to the text area. True when a picture went in; a
// cancelled dialog or a refused file (the user is told why) change nothing.
bool insertPicture(RichTextBox& page, const QString& picturesFolder, int textWidthTwips,
                   int textHeightTwips);

// The load format of a text file: 1 (plain) when the path ends in "TXT" in
// any case, 0 (rich text) otherwise.
int textFileFormat(const QString& path);
// Brings the file's content in at the caret through the clipboard, as the
// Text File command does after its dialog; the number the paste returned
// follows the insertion. A file that cannot be read, binary data, or a
// rich-text file that is no RTF leave the page as it was; the answer is then
// the message for the user.
std::optional<QString> pasteTextFile(RichTextBox& page, const QString& path);
// The Text File command: asks for a file in `templatesFolder`, then
// pasteTextFile, telling the user of a failure. True when text went in.
bool insertTextFile(RichTextBox& page, const QString& templatesFolder);

// Path and File: the document's file name at the caret, or, for a document
// never saved, the message that there is none.
void insertPathAndFile(RichTextBox& page, const QString& documentFileName);

} // namespace DocumentInserts
