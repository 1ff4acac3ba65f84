// Filing with the writer thread: what the save walk and the merge that files
// as it goes tell, in which order, and what they leave on disk.

#include "LetterTemporaries.h"
#include "StandardPracticeTest.h"
#include "context/AppContext.h"
#include "merge/LetterWriter.h"
#include "merge/MergeResultDocument.h"
#include "merge/MergeTestDatabase.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/ProgressReporter.h"
#include "platform/fileControl.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

const char* const kLetterName = "Mar 5 2024 - Year End.qmw";

class MergeFilingTest : public StandardPracticeTest {
protected:
    void SetUp() override {
        StandardPracticeTest::SetUp();
        fields.setLineBreaksAsParagraphs(false);
        fields.createDefaultFieldListStructure(InformationKind::Companies, true, true);
    }

    // A company merge of `ids` (company IDs), ready to merge.
    void prepare(MergeResultDocument& result, const QList<int>& ids) {
        result.model.InformationType = InformationKind::Companies;
        result.model.documentType = 2;
        result.templateCaption = "Merge Template - Year End";
        result.templateText = QStringLiteral("{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 "
                                             "Arial;}}\\pard\\f0\\fs20 \\'abCompany "
                                             "Name\\'bb\\par\r\n}");
        for (int id : ids) {
            result.IDList.addRow(result.IDList.rowCount() + 1, {QString::number(id), QString()});
        }
    }

    // What onFiled heard, in its order, with paths below `root` made relative.
    static QStringList toldLine(const MergedRecord& r, const QString& root) {
        const QDir vault(root);
        return {r.name, r.savedPath.isEmpty() ? QString() : vault.relativeFilePath(r.savedPath),
                r.replacedPath.isEmpty() ? QString() : vault.relativeFilePath(r.replacedPath),
                r.failure.isEmpty() ? QString("filed") : QString("failed")};
    }

    NullProgress progress;
};

TEST_F(MergeFilingTest, AWriteThatFailsOnTheWriterThreadIsToldAgainstItsClient) {
    // A temporary's name (".qm-", 32 hex digits, ".part") is longer than the
    // letter's. Below a root of the right length, the longest client folder
    // leaves room for the letter's path but not for its temporary's, so the
    // write on the writer thread fails (for root too) while the folder, the
    // database and the other clients are fine.
    const int pathMax = 4096;
    const int temporaryTail = 1 + 41;
    const QString longest = "Beta {Braces} _Back";
    const QString shorter = "Acme Widgets";
    const int lowest = pathMax - 1 - temporaryTail - int(longest.size());
    const int highest = pathMax - 2 - temporaryTail - int(shorter.size());
    ASSERT_LT(lowest, highest);
    QString root = env.root();
    while (root.size() < (lowest + highest) / 2) {
        root += "/" + QString(std::min<qsizetype>(200, (lowest + highest) / 2 - root.size() - 1),
                              QChar('d'));
    }
    ASSERT_TRUE(QDir().mkpath(root));

    for (bool asItMerges : {false, true}) {
        SCOPED_TRACE(asItMerges ? "merged and filed in one walk" : "save walk");
        const QString vault = root.left(root.size() - 1) + (asItMerges ? "b" : "a");
        MergeResultDocument result;
        prepare(result, {30, 20, 10});
        QStringList told;
        result.onFiled = [&](const MergedRecord& r) { told << toldLine(r, vault).join('|'); };
        std::optional<int> failures;
        if (asItMerges) {
            failures = result.mergeAndSaveDocument(progress, vault);
        } else {
            ASSERT_TRUE(result.createMergeDocument(progress));
            failures = result.saveMergeDocument(progress, vault);
        }
        EXPECT_EQ(failures, 1);
        EXPECT_EQ(told,
                  QStringList({"Acme Widgets|Acme Widgets/" + QString(kLetterName) + "||filed",
                               "Beta {Braces} \\Back|||failed",
                               "Gamma Ltd|Gamma Ltd/" + QString(kLetterName) + "||filed"}));
        EXPECT_EQ(result.records[1].failure,
                  "Path/File access error: " + vault + "/" + longest + "/" + kLetterName);
        EXPECT_TRUE(QDir(vault + "/" + longest)
                        .isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
        EXPECT_EQ(temporariesBelow(vault), QStringList());
    }
}

TEST_F(MergeFilingTest, MergingAndFilingInOneWalkDoesWhatTheTwoWalksDo) {
    // The first client's stored folder leaves the vault: that record fails
    // in the middle of the others.
    db->exec("INSERT INTO ClientDocumentStorage (ClientDataNum, FolderPath) VALUES (1010, "
             "'../../escaped')");
    const QList<int> ids = {30, 20, 10, 30};
    struct Walk {
        QString vault;
        QStringList told;
        std::vector<MergedRecord> records;
        std::optional<int> failures;
    };
    Walk twoWalks{env.root() + "/two/vault", {}, {}, {}};
    Walk oneWalk{env.root() + "/one/vault", {}, {}, {}};
    {
        MergeResultDocument result;
        prepare(result, ids);
        result.onFiled = [&](const MergedRecord& r) {
            twoWalks.told << toldLine(r, twoWalks.vault).join('|');
        };
        ASSERT_TRUE(result.createMergeDocument(progress));
        twoWalks.failures = result.saveMergeDocument(progress, twoWalks.vault);
        twoWalks.records = result.records;
    }
    {
        MergeResultDocument result;
        prepare(result, ids);
        RecordingProgress merging;
        result.onFiled = [&](const MergedRecord& r) {
            oneWalk.told << toldLine(r, oneWalk.vault).join('|');
        };
        oneWalk.failures = result.mergeAndSaveDocument(merging, oneWalk.vault);
        EXPECT_EQ(merging.caption(), "Merging information");
        EXPECT_EQ(merging.steps().size(), ids.size());
        oneWalk.records = result.records;
    }
    EXPECT_EQ(oneWalk.failures, 1);
    EXPECT_EQ(oneWalk.failures, twoWalks.failures);
    EXPECT_EQ(oneWalk.told, twoWalks.told);
    ASSERT_EQ(oneWalk.told.size(), ids.size());
    EXPECT_EQ(oneWalk.told[0], "Acme Widgets|||failed");
    // Two letters for one client: the second keeps the first in "Replaced".
    EXPECT_EQ(oneWalk.told[3], "Gamma Ltd|Gamma Ltd/" + QString(kLetterName) +
                                   "|Gamma Ltd/Replaced/" + kLetterName + "|filed");
    ASSERT_EQ(oneWalk.records.size(), twoWalks.records.size());
    for (size_t i = 0; i < oneWalk.records.size(); ++i) {
        const MergedRecord& one = oneWalk.records[i];
        const MergedRecord& two = twoWalks.records[i];
        EXPECT_EQ(one.rtf, two.rtf);
        EXPECT_EQ(QString(one.failure).replace(oneWalk.vault, "VAULT"),
                  QString(two.failure).replace(twoWalks.vault, "VAULT"));
        if (!one.savedPath.isEmpty()) {
            EXPECT_EQ(fileControl::readWholeFile(one.savedPath),
                      fileControl::readWholeFile(two.savedPath));
        }
    }
    EXPECT_FALSE(QFileInfo::exists(env.root() + "/escaped"));
    EXPECT_EQ(temporariesBelow(env.root()), QStringList());
}

TEST_F(MergeFilingTest, LettersOfManyBatchesAreToldAndReplacedInTheirOrder) {
    // More letters than one sync takes, for two clients: every letter but a
    // client's first moves the one before it aside, so a letter placed out of
    // its turn would take another's name in "Replaced".
    const int perClient = 150;
    QList<int> ids;
    for (int n = 0; n < perClient; ++n) {
        ids << 30 << 10;
    }
    const QString vault = env.root() + "/vault";
    const QString acme = vault + "/Acme Widgets/";
    auto replacedName = [&](int n) -> QString {
        return acme + "Replaced/" +
               (n == 1 ? QString(kLetterName)
                       : QString(kLetterName).replace(".qmw", QString(" (%1).qmw").arg(n)));
    };

    MergeResultDocument result;
    prepare(result, ids);
    ASSERT_TRUE(result.createMergeDocument(progress));
    ASSERT_EQ(int(result.records.size()), 2 * perClient);
    for (size_t i = 0; i < result.records.size(); ++i) {
        result.records[i].rtf.replace("Widgets", QString("Widgets %1#").arg(i));
    }
    std::vector<const MergedRecord*> told;
    result.onFiled = [&](const MergedRecord& r) { told.push_back(&r); };
    RecordingProgress saving;
    EXPECT_EQ(result.saveMergeDocument(saving, vault), 0);
    ASSERT_EQ(told.size(), result.records.size());
    for (size_t i = 0; i < told.size(); ++i) {
        ASSERT_EQ(told[i], &result.records[i]) << i;
    }
    EXPECT_EQ(saving.steps().size(), 2 * perClient);
    // Sorted: Acme's letters come first, each (but the first) replacing the
    // one before it.
    EXPECT_TRUE(result.records[0].replacedPath.isEmpty());
    for (int n = 1; n < perClient; ++n) {
        ASSERT_EQ(result.records[size_t(n)].replacedPath, replacedName(n));
        ASSERT_TRUE(fileControl::readWholeFile(replacedName(n))
                        ->contains(QString("Widgets %1#").arg(n - 1).toLatin1()))
            << n;
    }
    EXPECT_TRUE(fileControl::readWholeFile(acme + kLetterName)
                    ->contains(QString("Widgets %1#").arg(perClient - 1).toLatin1()));

    // Merged and filed again in one walk over the same vault: the numbers go
    // on from there, in order.
    MergeResultDocument again;
    prepare(again, ids);
    told.clear();
    again.onFiled = [&](const MergedRecord& r) { told.push_back(&r); };
    EXPECT_EQ(again.mergeAndSaveDocument(progress, vault), 0);
    ASSERT_EQ(told.size(), again.records.size());
    for (size_t i = 0; i < told.size(); ++i) {
        ASSERT_EQ(told[i], &again.records[i]) << i;
    }
    for (int n = 0; n < perClient; ++n) {
        ASSERT_EQ(again.records[size_t(n)].replacedPath, replacedName(perClient + n)) << n;
    }
    EXPECT_TRUE(fileControl::readWholeFile(replacedName(perClient))
                    ->contains(QString("Widgets %1#").arg(perClient - 1).toLatin1()));
    EXPECT_EQ(QDir(acme + "Replaced").entryList(QDir::Files).size(), 2 * perClient - 1);
    EXPECT_EQ(temporariesBelow(vault), QStringList());
}

TEST_F(MergeFilingTest, ACancelledWalkFilesWhatItMergedAndLeavesNoTemporary) {
    const QString vault = env.root() + "/vault";
    MergeResultDocument result;
    prepare(result, {10, 20, 30});
    QStringList told;
    result.onFiled = [&](const MergedRecord& r) { told << toldLine(r, vault).join('|'); };
    RecordingProgress merging;
    merging.cancelAfter(2);
    EXPECT_EQ(result.mergeAndSaveDocument(merging, vault), 0);
    EXPECT_TRUE(result.stoppedByUser);
    EXPECT_TRUE(merging.ended());
    EXPECT_EQ(told, QStringList({"Acme Widgets|Acme Widgets/" + QString(kLetterName) + "||filed",
                                 "Beta {Braces} \\Back|Beta {Braces} _Back/" +
                                     QString(kLetterName) + "||filed"}));
    EXPECT_EQ(result.records.size(), 2u);
    EXPECT_FALSE(QFileInfo::exists(vault + "/Gamma Ltd"));
    EXPECT_EQ(temporariesBelow(vault), QStringList());

    // Cancelled before the first record: nothing merged, nothing filed.
    MergeResultDocument none;
    prepare(none, {30});
    told.clear();
    none.onFiled = [&](const MergedRecord& r) { told << r.name; };
    RecordingProgress atOnce;
    atOnce.cancelAfter(0);
    EXPECT_EQ(none.mergeAndSaveDocument(atOnce, vault), 0);
    EXPECT_TRUE(none.stoppedByUser);
    EXPECT_TRUE(told.isEmpty());
    EXPECT_FALSE(QFileInfo::exists(vault + "/Gamma Ltd"));
}

TEST_F(MergeFilingTest, FoldersMadeAheadAreStoredAsInTurnAndOneThatCannotBeMadeFailsItsLetterOnly) {
    // Clients whose cleaned names meet, one client twice, and one whose
    // folder name is taken by a file: each new folder is made on the writer
    // thread while the records after it are planned.
    db->addClient(40, {{"CompanyName", "Delta/Co"}});
    db->addClient(50, {{"CompanyName", "Delta:Co"}});
    db->addClient(60, {{"CompanyName", "Blocked"}});
    db->addClient(70, {{"CompanyName", "Delta?Co"}});
    const QString vault = env.root() + "/vault";
    ASSERT_TRUE(QDir().mkpath(vault));
    QFile blocker(vault + "/Blocked");
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.write("not a folder");
    blocker.close();

    MergeResultDocument result;
    prepare(result, {40, 50, 60, 40, 70, 30});
    QStringList told;
    result.onFiled = [&](const MergedRecord& r) { told << toldLine(r, vault).join('|'); };
    EXPECT_EQ(result.mergeAndSaveDocument(progress, vault), 1);
    const QString name = kLetterName;
    EXPECT_EQ(told,
              QStringList({"Gamma Ltd|Gamma Ltd/" + name + "||filed",
                           "Delta/Co|Delta_Co/" + name + "||filed",
                           "Delta/Co|Delta_Co/" + name + "|Delta_Co/Replaced/" + name + "|filed",
                           "Delta:Co|Delta_Co (2)/" + name + "||filed", "Blocked|||failed",
                           "Delta?Co|Delta_Co (3)/" + name + "||filed"}));
    EXPECT_EQ(result.records[4].failure, "Path not found: " + vault + "/Blocked/");
    for (const MergedRecord& record : result.records) {
        if (record.failure.isEmpty()) {
            EXPECT_EQ(fileControl::readWholeFile(record.savedPath)->left(5), "{\\rtf");
            EXPECT_TRUE(
                fileControl::readWholeFile(record.savedPath)->contains(record.name.toLatin1()))
                << record.name.toStdString();
        }
    }
    EXPECT_EQ(*fileControl::readWholeFile(vault + "/Blocked"), "not a folder");

    const int rs =
        db->db().openRecordset("SELECT ClientDocumentStorage.* FROM ClientDocumentStorage ORDER BY "
                               "ClientDocumentStorageID;");
    QStringList rows;
    while (!db->db().isEOF(rs)) {
        rows << db->db().getField(rs, "ClientDataNum").toString() + "|" +
                    db->db().getField(rs, "FolderPath").toString();
        db->db().moveNext(rs);
    }
    db->db().closeRecordset(rs);
    EXPECT_EQ(rows, QStringList({"1030|Gamma Ltd", "1040|Delta_Co", "1050|Delta_Co (2)",
                                 "1070|Delta_Co (3)"}));
    EXPECT_EQ(temporariesBelow(vault), QStringList());
}

} // namespace
