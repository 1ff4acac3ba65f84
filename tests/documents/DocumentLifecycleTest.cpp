#include "documents/DocumentLifecycle.h"

#include "context/AppContext.h"
#include "documents/DocumentFile.h"
#include "documents/DocumentModel.h"
#include "files/clsWorkingFolderLocation.h"
#include "platform/FileDialogs.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"
#include "platform/richtext/RichTextBox.h"
#include "support/TestEnvironment.h"
#include "support/WriteBlockedFolder.h"

#include <QAbstractTextDocumentLayout>
#include <QFileInfo>
#include <QTextDocument>
#include <gtest/gtest.h>
#include <memory>

namespace {

class FakeDocument : public LifecycleDocument {
public:
    DocumentModel m_model;
    RichTextBox m_box;
    QString m_caption;
    QString m_fileName;
    bool continuous = false;

    DocumentModel& model() override { return m_model; }
    RichTextBox& box() override { return m_box; }
    QString caption() const override { return m_caption; }
    void setCaption(const QString& caption) override { m_caption = caption; }
    QString fileName() const override { return m_fileName; }
    void setFileName(const QString& path) override { m_fileName = path; }
    void reload(const QString& path, int format) override {
        m_box.setText(QString());
        m_box.LoadFile(path, format);
    }
    void showContinuous() override { continuous = true; }
};

class FakeWindows : public LifecycleWindows {
public:
    std::vector<std::unique_ptr<FakeDocument>> open;
    FakeDocument* active = nullptr;
    QStringList used;

    std::vector<LifecycleDocument*> documents() override {
        std::vector<LifecycleDocument*> all;
        for (auto& d : open) {
            all.push_back(d.get());
        }
        return all;
    }
    LifecycleDocument* activeDocument() override { return active; }
    LifecycleDocument* newDocumentWindow(const QString& caption) override {
        open.push_back(std::make_unique<FakeDocument>());
        active = open.back().get();
        active->m_caption = caption;
        return active;
    }
    LifecycleDocument* openDocumentWindow(const QString& path) override {
        auto document = std::make_unique<FakeDocument>();
        const OpenedDocument opened =
            DocumentFile::open(path, document->m_box, [](const QString&) {});
        document->m_model = opened.model;
        document->m_caption = opened.caption;
        open.push_back(std::move(document));
        active = open.back().get();
        return active;
    }
    void activate(LifecycleDocument& document) override {
        active = static_cast<FakeDocument*>(&document);
    }
    void unload(LifecycleDocument& document) override {
        std::erase_if(open, [&](const auto& d) { return d.get() == &document; });
        active = open.empty() ? nullptr : open.front().get();
    }
    void fileUsed(const QString& path) override { used << path; }
};

class LifecycleTest : public ::testing::Test {
protected:
    TestEnvironment env;
    ScopedAppContext context;
    ScriptedMsgbox msgbox;
    ScriptedFileDialogs dialogs;
    clsWorkingFolderLocation folders;
    FakeWindows windows;
    DocumentLifecycle lifecycle{windows};
    QString templates;

    void SetUp() override {
        templates = env.path(QStringLiteral("Templates/"));
        folders.putTemplatesFolder(templates);
        context->msgbox = &msgbox;
        context->fileDialogs = &dialogs;
        context->workingFolders = &folders;
    }
    FakeDocument* typed(const QString& text) {
        auto* document =
            static_cast<FakeDocument*>(lifecycle.createNewDocument(NewDocumentKind::Standard));
        document->m_box.setText(text);
        document->m_model.HasDocumentChanged = true;
        return document;
    }
};

} // namespace

TEST(DocumentLifecycleNames, SaveCorrectsTheExtensionForTheWayItWrites) {
    EXPECT_EQ(correctSaveFileName("/t/a.RTF", "qmb", 0), "/t/a.qmb");
    EXPECT_EQ(correctSaveFileName("/t/a.doc", "rtf", 0), "/t/a.rtf");
    EXPECT_EQ(correctSaveFileName("/t/letter", "qme", 0), "/t/letter.qme");
    EXPECT_EQ(correctSaveFileName("/t/a.qmb", "", 0), "/t/a.qmb");
    EXPECT_EQ(correctSaveFileName("/t/a.rtf", "rtf", 1), "/t/a.txt");
    EXPECT_EQ(correctSaveFileName("/t/a.TXT", "rtf", 1), "/t/a.TXT");
    EXPECT_EQ(correctSaveFileName("/t/notes", "rtf", 1), "/t/notes.txt");

    EXPECT_EQ(correctSaveAsFileName("/t/a.doc", 1, "qmt").fileName, "/t/a.qmt");
    EXPECT_EQ(correctSaveAsFileName("/t/a", 2, "qmt").fileName, "/t/a.rtf");
    const SaveAsName text = correctSaveAsFileName("/t/a.rtf", 3, "qmb");
    EXPECT_EQ(text.fileName, "/t/a.txt");
    EXPECT_EQ(text.fileSaveType, 1);
    const SaveAsName typed = correctSaveAsFileName("/t/a.weird.x", 4, "qmb");
    EXPECT_EQ(typed.fileName, "/t/a.weird.x");
    EXPECT_EQ(typed.fileSaveType, 0);

    EXPECT_EQ(correctSelectionFileName("/t/part.rtf", "rtf"), "/t/part.RTF");
    EXPECT_EQ(correctSelectionFileName("/t/part.QMB", "qmb"), "/t/part.QMB");
}

TEST(DocumentLifecycleNames, CaptionsDropOlderPrefixesAndTakeTheType) {
    EXPECT_EQ(changeDocumentCaption("Merge Template - Letter", 1, ""), "Letter");
    EXPECT_EQ(changeDocumentCaption("Client Merge Doc -Letter", 2, ""), "Merge Template - Letter");
    EXPECT_EQ(changeDocumentCaption("whatever", 4, "Smith"), "Client Merge Doc - Smith");
}

TEST(DocumentLifecycleNames, NewKindsAndTheDialogFilter) {
    const NewDocumentFields remitt = newDocumentFields(NewDocumentKind::Remitt, 3, "/tpl/");
    EXPECT_EQ(remitt.caption, "Merge Template - Tasks 3");
    EXPECT_EQ(remitt.fileName, "/tpl/Template Document 3.qmt");
    EXPECT_EQ(remitt.documentType, 2);
    EXPECT_EQ(remitt.informationType, InformationKind::Tasks);
    const NewDocumentFields contacts =
        newDocumentFields(NewDocumentKind::CompanyContact, 1, "/tpl");
    EXPECT_EQ(contacts.caption, "Merge Template - Contacts 1");
    EXPECT_EQ(contacts.fileName, "/tpl/Template Document 1.qmb");
    EXPECT_EQ(contacts.informationType, InformationKind::CompaniesAndContacts);
    EXPECT_EQ(newDocumentFields(NewDocumentKind::Standard, 2, "/tpl/").fileName,
              "/tpl/Document 2.rtf");

    const QString filter = documentFileFilter();
    EXPECT_EQ(filter, "Quillmere Documents (*.qmw *.qmb *.qme *.qmt *.qma);;Rich Text Files "
                      "(*.rtf);;Text Files (*.txt);;All Files (*)");
    EXPECT_EQ(FileDialogs::filterIndexForPath(filter, "/x/A.QMT"), 1);
    EXPECT_EQ(FileDialogs::filterIndexForPath(filter, "/x/a.rtf"), 2);
    EXPECT_EQ(FileDialogs::filterIndexForPath(filter, "/x/a.txt"), 3);
    EXPECT_EQ(FileDialogs::filterIndexForPath(filter, "/x/a.doc"), 4);
    EXPECT_EQ(openFilterFileSaveType(2), 0);
    EXPECT_EQ(openFilterFileSaveType(4), 1);
    EXPECT_EQ(droppedFileSaveType("/x/notes.Txt"), 1);
    EXPECT_EQ(droppedFileSaveType("/x/notes.qmb"), 0);
}

TEST(DocumentLifecycleNames, StatusBarCounts) {
    EXPECT_EQ(formatLineCount(0), "");
    EXPECT_EQ(formatLineCount(7), "7");
    EXPECT_EQ(formatLineCount(1234567), "1,234,567");
    EXPECT_EQ(formatLineCount(100000), "100,000");
    EXPECT_EQ(pageStatusText(2, 3), "Page 2 of 3");

    RichTextBox box;
    box.setText("one\r\ntwo\r\nthree");
    box.document()->documentLayout()->documentSize();
    const LineStatus start = documentLineStatus(*box.document(), 0);
    EXPECT_EQ(start.current, 1);
    EXPECT_EQ(start.total, 3);
    EXPECT_EQ(documentLineStatus(*box.document(), box.document()->characterCount() - 1).current, 3);
}

TEST_F(LifecycleTest, MergeTemplatesNeedTheDatabaseAndCountingGoesOn) {
    EXPECT_EQ(lifecycle.createNewDocument(NewDocumentKind::Company), nullptr);
    ASSERT_EQ(msgbox.texts().size(), 1);
    EXPECT_TRUE(msgbox.texts().front().startsWith("You cannot create a new merge documents"));
    LifecycleDocument* first = lifecycle.createNewDocument(NewDocumentKind::Standard);
    EXPECT_EQ(first->caption(), "Document 1");
    EXPECT_EQ(first->fileName(), templates + "Document 1.rtf");
    windows.unload(*first);
    EXPECT_EQ(lifecycle.createNewDocument(NewDocumentKind::Standard)->caption(), "Document 2");
}

TEST_F(LifecycleTest, CloseQuestionYesSavesNoDiscardsCancelKeeps) {
    FakeDocument* document = typed("Dear client");
    msgbox.queueAnswer(MsgboxClass::Cancel);
    EXPECT_FALSE(lifecycle.queryUnload(*document));
    EXPECT_EQ(
        msgbox.shown().back().text,
        "The document " + templates +
            "Document 1.rtf has changed.\r\nWould you like to save the changes before closing?");
    // Yes, but the Save As dialog is cancelled: the window stays.
    msgbox.queueAnswer(MsgboxClass::Yes);
    EXPECT_FALSE(lifecycle.queryUnload(*document));
    EXPECT_EQ(dialogs.requests().back().caption, "Save file as");

    const QString path = env.path("out/letter");
    dialogs.queueAnswer(path);
    dialogs.queueFilterIndex(1);
    msgbox.queueAnswer(MsgboxClass::Yes);
    EXPECT_TRUE(lifecycle.queryUnload(*document));
    EXPECT_TRUE(QFileInfo::exists(path + ".rtf"));
    EXPECT_EQ(document->caption(), "letter");
    EXPECT_EQ(windows.used, QStringList{path + ".rtf"});

    FakeDocument* other = typed("scrap");
    msgbox.queueAnswer(MsgboxClass::No);
    EXPECT_TRUE(lifecycle.queryUnload(*other));
    other->m_model.documentType = DocumentModel::SavedMergeResult;
    const qsizetype asked = msgbox.shown().size();
    EXPECT_TRUE(lifecycle.queryUnload(*other));
    EXPECT_EQ(msgbox.shown().size(), asked);
}

TEST_F(LifecycleTest, TemplateSavedAsRtfHasNoTrailerAndAsItsOwnKindHasOne) {
    FakeDocument* document = typed("«Company Name»");
    document->m_model.documentType = DocumentModel::Template;
    document->m_model.InformationType = InformationKind::Contacts;
    dialogs.queueAnswer(env.path("plain.rtf"));
    ASSERT_TRUE(lifecycle.SaveDocumentAs(*document));
    EXPECT_FALSE(readTestFile(env.path("plain.rtf")).contains("QuillmereInfo"));
    dialogs.queueAnswer(env.path("merge.doc"));
    dialogs.queueFilterIndex(1);
    ASSERT_TRUE(lifecycle.SaveDocumentAs(*document));
    EXPECT_EQ(document->fileName(), env.path("merge.qme"));
    EXPECT_EQ(document->caption(), "Merge Template - merge");
    EXPECT_TRUE(readTestFile(env.path("merge.qme")).contains("{\\QMDocumentType \\val 2}"));
    EXPECT_FALSE(document->m_model.HasDocumentChanged);
    EXPECT_TRUE(document->m_model.IsDocumentSaved);
}

TEST_F(LifecycleTest, LockedResultsRefuseBothSavesWithTheirOwnWords) {
    FakeDocument* document = typed("result");
    document->m_model.documentType = DocumentModel::SavedMergeResult;
    document->m_model.IsDocumentSaved = true;
    EXPECT_FALSE(lifecycle.SaveDocument(*document));
    EXPECT_FALSE(lifecycle.SaveDocumentAs(*document));
    ASSERT_EQ(msgbox.texts().size(), 2);
    EXPECT_TRUE(msgbox.texts()[0].endsWith("These documents are locked for viewing only."));
    EXPECT_TRUE(msgbox.texts()[1].contains("locked for archivak purposes"));
    EXPECT_TRUE(dialogs.requests().empty());
}

TEST_F(LifecycleTest, AFailedSaveSaysWhyAndLeavesTheOldFileWhole) {
    const QString folder = env.path("locked/");
    const QString path = folder + "letter.rtf";
    writeTestFile(path, "{\\rtf1 old}");
    FakeDocument* document = typed("new words");
    document->m_fileName = path;
    document->m_model.IsDocumentSaved = true;
    WriteBlockedFolder blocked(folder, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    if (!blocked.blocked()) {
        GTEST_SKIP() << qPrintable(blocked.whyNot());
    }
    EXPECT_FALSE(lifecycle.SaveDocument(*document));
    EXPECT_EQ(readTestFile(path), QByteArray("{\\rtf1 old}"));
    ASSERT_FALSE(msgbox.texts().isEmpty());
    EXPECT_TRUE(msgbox.texts().back().contains("has not been changed"));
    EXPECT_TRUE(document->m_model.HasDocumentChanged);
    // Still changed, so closing asks again rather than losing the text.
    msgbox.queueAnswer(MsgboxClass::Yes);
    EXPECT_FALSE(lifecycle.queryUnload(*document));
}

TEST_F(LifecycleTest, OpeningRtfMakesATemplateAndBigFilesOpenContinuous) {
    const QString rtf = env.path("in/a.RTF");
    writeTestFile(rtf, "{\\rtf1\\ansi Hello}");
    msgbox.setFallbackAnswer(MsgboxClass::No);
    LifecycleDocument* document = lifecycle.OpenExistingDocument(rtf, 0);
    ASSERT_NE(document, nullptr);
    EXPECT_FALSE(QFileInfo::exists(rtf));
    EXPECT_EQ(document->fileName(), env.path("in/a.qmb"));
    EXPECT_EQ(document->caption(), "Merge Template - a");
    EXPECT_TRUE(readTestFile(env.path("in/a.qmb")).contains("QuillmereInfo"));
    // Outside the templates folder: the copy question.
    EXPECT_TRUE(
        msgbox.texts().back().startsWith("Do you want to copy this file to your Quillmere"));
    // The same file again: its window comes forward, no second one.
    windows.active = nullptr;
    EXPECT_EQ(lifecycle.OpenExistingDocument(env.path("in/a.qmb"), 0), document);
    EXPECT_EQ(windows.active, document);
    EXPECT_EQ(windows.open.size(), 1u);

    QByteArray body = "{\\rtf1\\ansi ";
    const QString exact = env.path("in/exact.qmb");
    writeTestFile(exact, body + QByteArray(250 * 1024 - body.size() - 1, 'x') + "}");
    EXPECT_FALSE(static_cast<FakeDocument*>(lifecycle.OpenExistingDocument(exact, 0))->continuous);
    const QString big = env.path("in/big.qmb");
    writeTestFile(big, body + QByteArray(251 * 1024, 'x') + "}");
    EXPECT_TRUE(static_cast<FakeDocument*>(lifecycle.OpenExistingDocument(big, 0))->continuous);
}

TEST_F(LifecycleTest, BadFilesGiveAMessageAndNoWindow) {
    const QString binary = env.path("b/photo.qmb");
    writeTestFile(binary, QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16));
    EXPECT_EQ(lifecycle.OpenExistingDocument(env.path("b/"), 0), nullptr);
    EXPECT_EQ(lifecycle.OpenExistingDocument(binary, 0), nullptr);
    EXPECT_EQ(lifecycle.OpenExistingDocument(env.path("b/missing.qmb"), 0), nullptr);
    EXPECT_TRUE(windows.open.empty());
    ASSERT_EQ(msgbox.texts().size(), 2);
    EXPECT_TRUE(msgbox.texts()[0].contains("is a folder"));
    EXPECT_TRUE(msgbox.texts()[1].contains("binary data"));
}

TEST_F(LifecycleTest, RevertGoesBackToTheFileAndANewDocumentHasNone) {
    FakeDocument* document = typed("draft");
    windows.active = document;
    msgbox.queueAnswer(MsgboxClass::Yes);
    lifecycle.RevertDocument();
    EXPECT_EQ(msgbox.shown()[0].text,
              "Do you want to revert [Document 1] to the last saved version?");
    EXPECT_TRUE(msgbox.texts().back().startsWith("File not found"));
    EXPECT_EQ(document->m_box.Text(), "draft");

    dialogs.queueAnswer(env.path("kept.rtf"));
    ASSERT_TRUE(lifecycle.SaveDocumentAs(*document));
    document->m_box.setText("changed later");
    document->m_model.HasDocumentChanged = true;
    msgbox.queueAnswer(MsgboxClass::Yes);
    lifecycle.RevertDocument();
    EXPECT_EQ(document->m_box.Text(), "draft");
    EXPECT_FALSE(document->m_model.HasDocumentChanged);
}

TEST_F(LifecycleTest, SaveAllReportsEvenWhenNothingChangedAndDeleteClosesTheWindow) {
    lifecycle.SaveAllDocuments();
    EXPECT_EQ(msgbox.texts(), QStringList{"The documents have been saved."});

    const QString path = env.path("gone.qmb");
    FakeDocument* document = typed("x");
    document->m_model.documentType = DocumentModel::Template;
    dialogs.queueAnswer(path);
    ASSERT_TRUE(lifecycle.SaveDocumentAs(*document));
    msgbox.clear();
    lifecycle.deleteDocumentFile(path);
    EXPECT_EQ(msgbox.texts(),
              (QStringList{"The Merge Template - gone is currently open.  Are you sure you want to "
                           "close this form and permanently delete this document?",
                           "Are you sure you want to permanently delete the gone document?"}));
    EXPECT_TRUE(windows.open.empty());
    EXPECT_FALSE(QFileInfo::exists(path));
}

TEST_F(LifecycleTest, SaveSelectionAsWritesOnlyTheSelection) {
    FakeDocument* document = typed("keep this part, not that");
    windows.active = document;
    document->m_box.setSelStart(0);
    document->m_box.setSelLength(14);
    dialogs.queueAnswer(env.path("part.rtf"));
    lifecycle.SaveSelectionAs();
    EXPECT_EQ(dialogs.requests().back().caption, "Save selection as ...");
    const QString written = env.path("part.RTF");
    ASSERT_TRUE(QFileInfo(written).isFile());
    RichTextBox back;
    back.LoadFile(written);
    EXPECT_EQ(back.Text(), "keep this part");
}
