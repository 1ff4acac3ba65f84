#include "documents/DocumentInserts.h"

#include "context/AppContext.h"
#include "platform/FileDialogs.h"
#include "platform/MsgboxClass.h"
#include "platform/richtext/RichTextBox.h"
#include "support/TestEnvironment.h"

#include <QBuffer>
#include <QClipboard>
#include <QFile>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QMimeData>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace DocumentInserts;

namespace {

QByteArray encoded(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

QImage sample(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(QColor(20, 120, 200));
    return image;
}

// A 1 x 1 GIF: Qt reads the format but cannot write it.
const QByteArray kGif = QByteArray::fromHex("47494638396101000100800000ffffff0000002c00000000"
                                            "010001000002024401003b");

// The goal sizes of every picture in an RTF text, "w x h".
QStringList pictureGoals(const QString& rtf) {
    static const QRegularExpression goal(QStringLiteral(R"(\\picwgoal(\d+)\\pichgoal(\d+))"));
    QStringList goals;
    for (auto it = goal.globalMatch(rtf); it.hasNext();) {
        const auto m = it.next();
        goals << m.captured(1) + QLatin1String(" x ") + m.captured(2);
    }
    return goals;
}

class DocumentInsertsTest : public ::testing::Test {
protected:
    DocumentInsertsTest() {
        m_context->msgbox = &m_messages;
        m_context->fileDialogs = &m_dialogs;
        QGuiApplication::clipboard()->clear();
    }

    QString file(const QString& name, const QByteArray& bytes) {
        const QString path = m_env.path(QStringLiteral("in")) + QLatin1Char('/') + name;
        writeTestFile(path, bytes);
        return path;
    }

    TestEnvironment m_env;
    ScopedAppContext m_context;
    ScriptedMsgbox m_messages;
    ScriptedFileDialogs m_dialogs;
    RichTextBox m_page;
};

} // namespace

TEST_F(DocumentInsertsTest, TimeAndDateListFollowsItsFormatsInOrder) {
    const QStringList afternoon = timeDateList(QDateTime(QDate(2026, 3, 5), QTime(14, 7, 9)));
    EXPECT_EQ(afternoon,
              QStringList({"05/03/26", "05 March 2026", "05 March, 2026", "March 05, 2026",
                           "05/Mar/26", "March, 26", "Mar/26", "05/03/26 14:07",
                           "05/03/26 14:07:09", "14:07", "14:07:09", "02:07 PM", "02:07:09 PM"}));
    const QStringList morning = timeDateList(QDateTime(QDate(2025, 12, 31), QTime(0, 5, 0)));
    EXPECT_EQ(morning.at(11), QStringLiteral("12:05 AM"));
    EXPECT_EQ(morning.at(4), QStringLiteral("31/Dec/25"));
    EXPECT_EQ(customTimeDateSample(QDateTime(QDate(2026, 3, 5), QTime(9, 0)), "dddd d mmmm"),
              QStringLiteral("Thursday 5 March"));
}

TEST_F(DocumentInsertsTest, SymbolLinesKeepTheCharacterInOneColumn) {
    const QStringList lines = symbolLines();
    ASSERT_EQ(lines.size(), 255);
    EXPECT_EQ(lines.at(0), QStringLiteral("1     -  \u0001"));
    EXPECT_EQ(lines.at(8), QStringLiteral("9     -  \t"));
    EXPECT_EQ(lines.at(9), QStringLiteral("10   -  \n"));
    EXPECT_EQ(lines.at(98), QStringLiteral("99   -  c"));
    EXPECT_EQ(lines.at(99), QStringLiteral("100 -  d"));
    EXPECT_EQ(symbolOfLine(lines.at(127)), QStringLiteral("\u20AC")); // 128, the euro
    EXPECT_EQ(symbolOfLine(lines.at(168)), QStringLiteral("\u00A9")); // 169
    EXPECT_EQ(symbolOfLine(lines.at(254)), QStringLiteral("\u00FF"));
    EXPECT_TRUE(symbolOfLine(QString()).isEmpty());

    // In a proportional font a digit is two blanks wide, which the
    // separators make up for.
    const QFontMetricsF metrics(QFont(QStringLiteral("Liberation Sans"), 10));
    const auto column = [&](int code) {
        const QString& line = lines.at(code - 1);
        return metrics.horizontalAdvance(line.left(line.size() - 1));
    };
    for (int code : {10, 99, 100, 255}) {
        EXPECT_NEAR(column(code), column(9), 0.01) << code;
    }
}

TEST_F(DocumentInsertsTest, LetterheadGoesInFrontInTheCountrysFormAndDropsFormatting) {
    EXPECT_EQ(letterheadBlock(1), QStringLiteral("\u00ABYour Company Name\u00BB\r\n"
                                                 "\u00ABYour Address\u00BB\r\n"
                                                 "\u00ABYour City\u00BB, \u00ABYour Province\u00BB"
                                                 "  \u00ABYour Postal Code\u00BB\r\n\r\n"));
    EXPECT_TRUE(letterheadBlock(2).contains(
        QStringLiteral("\u00ABYour City\u00BB, \u00ABYour State\u00BB  \u00ABYour Zip Code\u00BB"
                       "\r\n\r\n")));

    m_page.setText(QStringLiteral("Dear client,\r\nThank you."));
    m_page.setSelStart(0);
    m_page.setSelLength(m_page.TextLength());
    m_page.setSelBold(true);
    m_page.setSelStart(5);
    addLetterhead(m_page, 1);
    EXPECT_EQ(m_page.Text(), letterheadBlock(1) + QStringLiteral("Dear client,\r\nThank you."));
    m_page.setSelStart(0);
    m_page.setSelLength(m_page.TextLength());
    EXPECT_EQ(m_page.SelBold(), std::optional<bool>(false));
    // Saved, the placeholders stand as the merge engine reads them.
    EXPECT_TRUE(m_page.TextRTF().contains(QStringLiteral("\\'abYour Company Name\\'bb")));
}

TEST_F(DocumentInsertsTest, PicturesShrinkToTheTextAreaKeepingTheirProportions) {
    struct Case {
        QSize pixels;
        int width;
        int height;
        QSize expected;
    };
    const Case cases[] = {
        {{100, 50}, 9360, 12960, {1500, 750}},     // fits: 96 dots per inch
        {{2000, 500}, 9360, 12960, {9360, 2340}},  // too wide
        {{300, 3000}, 9360, 12960, {1296, 12960}}, // too tall
        {{4000, 4000}, 9360, 4680, {4680, 4680}},  // both; the height decides
        {{624, 1}, 9360, 12960, {9360, 15}},       // exactly as wide
    };
    for (const Case& c : cases) {
        EXPECT_EQ(pictureSizeTwips(c.pixels, c.width, c.height), c.expected)
            << c.pixels.width() << "x" << c.pixels.height();
    }
}

TEST_F(DocumentInsertsTest, PictureFilesAreReadByContentAndRefusedWithAReason) {
    struct Case {
        const char* name;
        QByteArray bytes;
        QSize size; // invalid: refused
        const char* reason;
    };
    const Case cases[] = {
        {"logo.png", encoded(sample(40, 20), "PNG"), {40, 20}, ""},
        {"photo.jpg", encoded(sample(33, 11), "JPEG"), {33, 11}, ""},
        {"scan.bmp", encoded(sample(8, 9), "BMP"), {8, 9}, ""},
        {"anim.gif", kGif, {1, 1}, ""},
        {"renamed.gif", encoded(sample(5, 6), "PNG"), {5, 6}, ""},
        {"letter.jpg", "Dear client, this is no picture.", {}, "is not a picture"},
        {"empty.png", "", {}, "is not a picture"},
        {"broken.png", encoded(sample(40, 20), "PNG").left(60), {}, "broken.png"},
    };
    for (const Case& c : cases) {
        QString problem;
        const std::optional<QImage> image = loadPictureFile(file(c.name, c.bytes), &problem);
        if (c.size.isValid()) {
            ASSERT_TRUE(image.has_value()) << c.name << ": " << problem.toStdString();
            EXPECT_EQ(image->size(), c.size) << c.name;
        } else {
            EXPECT_FALSE(image.has_value()) << c.name;
            EXPECT_TRUE(problem.contains(QLatin1String(c.reason)))
                << c.name << ": " << problem.toStdString();
        }
    }

    QString problem;
    EXPECT_FALSE(loadPictureFile(m_env.root() + QStringLiteral("/absent.png"), &problem));
    EXPECT_TRUE(problem.contains(QLatin1String("could not be found")));

    // A huge file is refused before anything is read.
    const QString huge = file(QStringLiteral("huge.png"), encoded(sample(4, 4), "PNG"));
    QFile(huge).resize(50LL * 1024 * 1024);
    EXPECT_FALSE(loadPictureFile(huge, &problem));
    EXPECT_TRUE(problem.contains(QLatin1String("too large"))) << problem.toStdString();
}

TEST_F(DocumentInsertsTest, InsertedPictureIsScaledAndSurvivesSavingAndReopening) {
    m_page.setText(QStringLiteral("AB"));
    m_page.setSelStart(1);
    const QString path = file(QStringLiteral("wide.png"), encoded(sample(1248, 100), "PNG"));
    m_dialogs.queueAnswer(path);
    ASSERT_TRUE(insertPicture(m_page, QStringLiteral("/pictures"), 9360, 12960));

    ASSERT_EQ(m_dialogs.requests().size(), 1u);
    const ScriptedFileDialogs::Request& asked = m_dialogs.requests().front();
    EXPECT_EQ(asked.caption, QStringLiteral("Select picture to open"));
    EXPECT_EQ(asked.folder, QStringLiteral("/pictures"));
    EXPECT_EQ(asked.filter, QStringLiteral("Image Files (*.png *.jpg *.jpeg *.bmp *.gif);;Bitmaps "
                                           "(*.bmp *.dib);;GIF Images (*.gif);;JPEG Images "
                                           "(*.jpg);;PNG Images (*.png);;All Files (*)"));
    EXPECT_TRUE(m_messages.texts().isEmpty());
    // One object in place, the text around it untouched, the clipboard empty.
    EXPECT_EQ(m_page.Text().size(), 3);
    EXPECT_TRUE(m_page.Text().startsWith(QLatin1Char('A')));
    EXPECT_TRUE(m_page.Text().endsWith(QLatin1Char('B')));
    const QMimeData* clip = QGuiApplication::clipboard()->mimeData();
    EXPECT_TRUE(clip == nullptr || (!clip->hasImage() && !clip->hasText()));

    const QString saved = m_page.TextRTF();
    EXPECT_TRUE(saved.contains(QLatin1String("\\pict\\pngblip"))) << saved.left(300).toStdString();
    EXPECT_EQ(pictureGoals(saved), QStringList{"9360 x 750"});
    RichTextBox reopened;
    reopened.setTextRTF(saved);
    EXPECT_EQ(reopened.Text(), m_page.Text());
    EXPECT_EQ(pictureGoals(reopened.TextRTF()), QStringList{"9360 x 750"});
}

TEST_F(DocumentInsertsTest, RefusedOrCancelledPictureLeavesTheDocumentAsItWas) {
    m_page.setText(QStringLiteral("Unchanged"));
    const QString before = m_page.TextRTF();
    m_dialogs.queueAnswer(std::nullopt);
    EXPECT_FALSE(insertPicture(m_page, QString(), 9360, 12960));
    EXPECT_TRUE(m_messages.texts().isEmpty());

    m_dialogs.queueAnswer(file(QStringLiteral("notes.bmp"), "just words"));
    EXPECT_FALSE(insertPicture(m_page, QString(), 9360, 12960));
    ASSERT_EQ(m_messages.texts().size(), 1);
    EXPECT_TRUE(m_messages.texts().first().contains(QLatin1String("is not a picture")));
    EXPECT_EQ(m_page.TextRTF(), before);
}

TEST_F(DocumentInsertsTest, HorizontalLineStaysOnTheClipboard) {
    m_page.setText(QStringLiteral("Above\r\nBelow"));
    m_page.setSelStart(7);
    pastePicture(m_page, horizontalLinePicture(), horizontalLineTwips(9360));
    EXPECT_EQ(pictureGoals(m_page.TextRTF()), QStringList{"9360 x 45"});
    const QMimeData* clip = QGuiApplication::clipboard()->mimeData();
    ASSERT_NE(clip, nullptr);
    EXPECT_TRUE(clip->hasImage());
    // Pasting again gives a second line.
    m_page.performEdit(RichTextBox::WM_PASTE);
    EXPECT_EQ(pictureGoals(m_page.TextRTF()).size(), 2);
}

TEST_F(DocumentInsertsTest, TextFileFormatFollowsTheLastThreeLetters) {
    const std::pair<const char*, int> cases[] = {
        {"notes.txt", 1}, {"NOTES.TXT", 1},  {"Notes.TxT", 1},  {"memotxt", 1},
        {"notes.rtf", 0}, {"letter.qmw", 0}, {"notes.text", 0}, {"notes.txt.bak", 0},
    };
    for (const auto& [name, format] : cases) {
        EXPECT_EQ(textFileFormat(QLatin1String(name)), format) << name;
    }
}

TEST_F(DocumentInsertsTest, TextFilesArePastedInTheirEncodingWithTheNumberBehind) {
    struct Case {
        const char* name;
        QByteArray bytes;
        const char* inserted; // UTF-8
    };
    const Case cases[] = {
        {"utf8.txt", "Caf\xC3\xA9 \xE2\x80\x93 fees\r\nsecond",
         "Caf\xC3\xA9 \xE2\x80\x93 fees\r\nsecond"},
        {"old.TXT", "Caf\xE9 \x80 5", "Caf\xC3\xA9 \xE2\x82\xAC 5"},
        {"wide.txt",
         QByteArray("\xFF\xFE"
                    "h\0i\0",
                    6),
         "hi"},
        {"unix.txt", "one\ntwo", "one\r\ntwo"},
    };
    for (const Case& c : cases) {
        m_page.setText(QStringLiteral("[]"));
        m_page.setSelStart(1);
        EXPECT_EQ(pasteTextFile(m_page, file(c.name, c.bytes)), std::nullopt) << c.name;
        EXPECT_EQ(m_page.Text(),
                  QStringLiteral("[") + QString::fromUtf8(c.inserted) + QStringLiteral("0]"))
            << c.name;
    }
}

TEST_F(DocumentInsertsTest, RichTextFilesKeepTheirFormattingButNotTheirTrailer) {
    const QString path = file(QStringLiteral("part.qmw"),
                              "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 plain \\b bold\\b0}"
                              "{\\QuillmereInfo documentType=1}");
    m_page.setText(QStringLiteral("X"));
    m_page.setSelStart(1);
    EXPECT_EQ(pasteTextFile(m_page, path), std::nullopt);
    EXPECT_EQ(m_page.Text(), QStringLiteral("Xplain bold0"));
    m_page.setSelStart(7);
    m_page.setSelLength(4);
    EXPECT_EQ(m_page.SelBold(), std::optional<bool>(true));
    m_page.setSelStart(1);
    m_page.setSelLength(5);
    EXPECT_EQ(m_page.SelBold(), std::optional<bool>(false));
}

TEST_F(DocumentInsertsTest, UnreadableTextFilesAreRefusedAndChangeNothing) {
    struct Case {
        const char* name;
        QByteArray bytes;
        const char* reason;
    };
    const Case cases[] = {
        {"data.txt", QByteArray("PK\x03\x04\0\0binary", 12), "binary"},
        {"letter.rtf", "Dear client, no rich text here.", "not a rich text file"},
        {"sheet.csv", "a,b\r\n1,2", "not a rich text file"},
    };
    m_dialogs.queueAnswer(std::nullopt);
    m_page.setText(QStringLiteral("Kept"));
    EXPECT_FALSE(insertTextFile(m_page, QStringLiteral("/templates")));
    ASSERT_EQ(m_dialogs.requests().size(), 1u);
    EXPECT_EQ(m_dialogs.requests().front().caption, QStringLiteral("Select file to insert"));
    EXPECT_EQ(m_dialogs.requests().front().folder, QStringLiteral("/templates"));
    EXPECT_TRUE(m_dialogs.requests().front().filter.startsWith(
        QStringLiteral("Quillmere Documents (*.qmw *.qmb *.qme *.qmt *.qma);;Rich Text Files")));
    for (const Case& c : cases) {
        m_messages.clear();
        m_dialogs.queueAnswer(file(c.name, c.bytes));
        const QString before = m_page.TextRTF();
        EXPECT_FALSE(insertTextFile(m_page, QString())) << c.name;
        ASSERT_EQ(m_messages.texts().size(), 1) << c.name;
        EXPECT_TRUE(m_messages.texts().first().contains(QLatin1String(c.reason)))
            << c.name << ": " << m_messages.texts().first().toStdString();
        EXPECT_EQ(m_page.TextRTF(), before) << c.name;
    }
    m_messages.clear();
    EXPECT_TRUE(pasteTextFile(m_page, m_env.root() + QStringLiteral("/absent.txt")).has_value());
}

TEST_F(DocumentInsertsTest, PathAndFileNeedsASavedDocument) {
    m_page.setText(QStringLiteral("At "));
    m_page.setSelStart(3);
    insertPathAndFile(m_page, QStringLiteral("  "));
    EXPECT_EQ(m_messages.texts(),
              QStringList{"This file has not yet been saved so there is no specified file "
                          "location yet.  Please save this file and try again."});
    EXPECT_EQ(m_page.Text(), QStringLiteral("At "));
    insertPathAndFile(m_page, QStringLiteral("/home/ann/Letters/Smith.qmw"));
    EXPECT_EQ(m_page.Text(), QStringLiteral("At /home/ann/Letters/Smith.qmw"));
}
