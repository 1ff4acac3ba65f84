#include "merge/LetterWriteQueue.h"

#include "LetterTemporaries.h"
#include "merge/LetterWriter.h"
#include "platform/fileControl.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

TEST(LetterWriteQueueTest, BatchesComeBackInOrderWithEachLetterInItsPlace) {
    TestEnvironment env;
    const QString folder = env.root() + "/clients";
    ASSERT_TRUE(QDir().mkpath(folder + "/a"));
    ASSERT_TRUE(QDir().mkpath(folder + "/b"));
    // One letter may wait at a time, so adding blocks on the writer again
    // and again; the batches must still come back whole and in order.
    LetterWriteQueue queue(1);
    const int batches = 5;
    const int perBatch = 7;
    for (int b = 0; b < batches; ++b) {
        for (int n = 0; n < perBatch; ++n) {
            const bool missing = b == 2 && n == 3;
            const QString path = folder + (missing ? "/gone" : (n % 2 ? "/a" : "/b")) +
                                 QString("/letter %1-%2.qmw").arg(b).arg(n);
            queue.add(path, QByteArray("letter ") + QByteArray::number(b * perBatch + n));
        }
        queue.closeBatch();
    }
    std::vector<LetterWriteQueue::Batch> back;
    while (auto batch = queue.takeBatch(true)) {
        back.push_back(std::move(*batch));
    }
    ASSERT_EQ(int(back.size()), batches);
    EXPECT_EQ(queue.batchesOut(), 0);
    for (int b = 0; b < batches; ++b) {
        ASSERT_EQ(int(back[b].letters.size()), perBatch);
        EXPECT_TRUE(back[b].syncFailure.isEmpty());
        for (int n = 0; n < perBatch; ++n) {
            const LetterWriteQueue::Written& written = back[b].letters[n];
            if (b == 2 && n == 3) {
                // A folder that is not there fails this letter only.
                EXPECT_TRUE(written.temporary.isEmpty());
                EXPECT_TRUE(written.failure.contains("letter 2-3.qmw"))
                    << written.failure.toStdString();
                continue;
            }
            ASSERT_TRUE(written.failure.isEmpty()) << written.failure.toStdString();
            EXPECT_TRUE(LetterWriter::isTemporaryName(QFileInfo(written.temporary).fileName()));
            EXPECT_EQ(QFileInfo(written.temporary).absolutePath(), folder + (n % 2 ? "/a" : "/b"));
            EXPECT_EQ(*fileControl::readWholeFile(written.temporary),
                      QByteArray("letter ") + QByteArray::number(b * perBatch + n));
        }
    }
    EXPECT_FALSE(QFileInfo::exists(folder + "/gone"));
}

TEST(LetterWriteQueueTest, NothingToTakeNeitherBlocksNorInventsABatch) {
    TestEnvironment env;
    LetterWriteQueue queue;
    EXPECT_FALSE(queue.takeBatch(true));
    queue.add(env.root() + "/open.qmw", "not closed");
    // Written perhaps, but its batch is not closed: nothing to take.
    EXPECT_FALSE(queue.takeBatch(false));
    EXPECT_FALSE(queue.takeBatch(true));
    queue.closeBatch();
    const auto batch = queue.takeBatch(true);
    ASSERT_TRUE(batch);
    ASSERT_EQ(batch->letters.size(), 1u);
    EXPECT_EQ(*fileControl::readWholeFile(batch->letters[0].temporary), "not closed");
    // An empty batch comes back empty, without a sync to fail.
    queue.closeBatch();
    const auto empty = queue.takeBatch(true);
    ASSERT_TRUE(empty);
    EXPECT_TRUE(empty->letters.empty());
    EXPECT_TRUE(empty->syncFailure.isEmpty());
}

TEST(LetterWriteQueueTest, AnAbandonedQueueLeavesNoTemporary) {
    TestEnvironment env;
    const QString folder = env.root() + "/client";
    ASSERT_TRUE(QDir().mkpath(folder));
    {
        LetterWriteQueue queue(2);
        for (int n = 0; n < 20; ++n) {
            queue.add(folder + QString("/letter %1.qmw").arg(n), QByteArray(4096, 'x'));
            if (n == 9) {
                queue.closeBatch();
            }
        }
        // One batch closed and never taken back, ten letters never closed.
    }
    EXPECT_EQ(temporariesBelow(env.root()), QStringList());
    EXPECT_TRUE(QDir(folder).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

TEST(LetterWriteQueueTest, ABatchClosedWithPlacementsIsFiledInItsOrderOnceOnDisk) {
    TestEnvironment env;
    const QString folder = env.root() + "/client";
    ASSERT_TRUE(QDir().mkpath(folder));
    auto put = [](const QString& path, const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    };
    put(folder + "/letter.qmw", "from an earlier run");
    put(folder + "/own.qmw", "this record's earlier save");
    using Placement = LetterWriteQueue::Placement;
    std::vector<LetterWriteQueue::Batch> back;
    {
        LetterWriteQueue queue(2, "History");
        queue.add(folder + "/letter.qmw", "first");
        queue.add(folder + "/letter.qmw", "second"); // the same name again
        queue.add(folder + "/own.qmw", "saved again");
        queue.add(folder + "/unwanted.qmw", "its folder's row failed");
        queue.add(env.root() + "/gone/letter.qmw", "no folder");
        queue.closeBatch({Placement{folder + "/letter.qmw", true, false},
                          Placement{folder + "/letter.qmw", true, false},
                          Placement{folder + "/own.qmw", true, true},
                          Placement{folder + "/unwanted.qmw", false, false},
                          Placement{env.root() + "/gone/letter.qmw", true, false}});
        back.push_back(*queue.takeBatch(true));
        // Placed whether or not it is taken back.
        queue.add(folder + "/late.qmw", "late");
        queue.closeBatch({Placement{folder + "/late.qmw", true, false}});
    }
    const std::vector<LetterWriteQueue::Written>& letters = back.front().letters;
    ASSERT_EQ(letters.size(), 5u);
    EXPECT_TRUE(letters[0].placed);
    EXPECT_EQ(letters[0].replacedPath, folder + "/History/letter.qmw");
    EXPECT_TRUE(letters[1].placed);
    EXPECT_EQ(letters[1].replacedPath, folder + "/History/letter (2).qmw");
    EXPECT_TRUE(letters[2].placed);
    EXPECT_TRUE(letters[2].replacedPath.isEmpty()) << "its own earlier save is written over";
    EXPECT_FALSE(letters[3].placed);
    EXPECT_TRUE(letters[3].failure.isEmpty());
    EXPECT_FALSE(letters[4].placed);
    EXPECT_FALSE(letters[4].failure.isEmpty());
    for (const LetterWriteQueue::Written& letter : letters) {
        EXPECT_TRUE(letter.temporary.isEmpty());
    }
    EXPECT_EQ(*fileControl::readWholeFile(folder + "/History/letter.qmw"), "from an earlier run");
    EXPECT_EQ(*fileControl::readWholeFile(folder + "/History/letter (2).qmw"), "first");
    EXPECT_EQ(*fileControl::readWholeFile(folder + "/letter.qmw"), "second");
    EXPECT_EQ(*fileControl::readWholeFile(folder + "/own.qmw"), "saved again");
    EXPECT_EQ(*fileControl::readWholeFile(folder + "/late.qmw"), "late");
    EXPECT_FALSE(QFileInfo::exists(folder + "/unwanted.qmw"));
    EXPECT_EQ(temporariesBelow(env.root()), QStringList());
}

TEST(LetterWriteQueueTest, FoldersAreMadeForTheirLettersAndAFailureStaysWithItsLetters) {
    TestEnvironment env;
    const QString root = env.root() + "/vault";
    ASSERT_TRUE(QDir().mkpath(root + "/old"));
    // A folder that was there holds a temporary of a killed run and a file
    // of the practice's own.
    const QString stale = root + "/old/.qm-0123456789abcdef0123456789abcdef.part";
    for (const QString& path : {stale, QString(root + "/old/kept.txt")}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("left");
    }
    QFile blocker(root + "/blocked");
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();

    struct Expected {
        QString path;
        QByteArray bytes;
        QString failure; // empty: written
    };
    std::vector<Expected> expected;
    std::vector<std::pair<LetterWriteQueue::FolderTicket, QString>> tickets;
    // Few letters may wait, so the folders are asked for while the writer
    // is busy with letters and the syncs with batches before them.
    LetterWriteQueue queue(3);
    for (int client = 0; client < 40; ++client) {
        QString folder = root + QString("/new/client %1/").arg(client);
        if (client == 0) {
            folder = root + "/old/";
        } else if (client == 13) {
            folder = root + "/blocked/client 13/";
        }
        const QString folderFailure =
            client == 13 ? QString("Path not found: " + folder) : QString();
        const LetterWriteQueue::FolderTicket ticket = queue.makeFolder(folder);
        tickets.emplace_back(ticket, folderFailure);
        for (int n = 0; n < 3; ++n) {
            Expected letter;
            letter.path = folder + QString("letter %1.qmw").arg(n);
            letter.bytes = QByteArray("client ") + QByteArray::number(client) + " letter " +
                           QByteArray::number(n) + QByteArray(3000 * n, 'x');
            letter.failure = folderFailure;
            queue.add(letter.path, letter.bytes, ticket);
            expected.push_back(letter);
        }
        // A letter for a folder nobody made fails by itself.
        if (client == 21) {
            const QString path = root + "/never made/letter.qmw";
            queue.add(path, "lost");
            expected.push_back({path, "lost", "Path/File access error: " + path});
        }
        if (client % 7 == 6) {
            queue.closeBatch();
        }
    }
    queue.closeBatch();
    for (const auto& [ticket, failure] : tickets) {
        EXPECT_EQ(queue.folderMade(ticket, true), std::optional(failure));
        EXPECT_EQ(queue.folderMade(ticket, false), std::nullopt) << "answered once";
    }

    std::vector<LetterWriteQueue::Written> written;
    while (auto batch = queue.takeBatch(true)) {
        EXPECT_TRUE(batch->syncFailure.isEmpty());
        written.insert(written.end(), batch->letters.begin(), batch->letters.end());
    }
    ASSERT_EQ(written.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(expected[i].path.toStdString());
        EXPECT_EQ(written[i].failure, expected[i].failure);
        if (expected[i].failure.isEmpty()) {
            EXPECT_EQ(QFileInfo(written[i].temporary).absolutePath() + "/",
                      QFileInfo(expected[i].path).path() + "/");
            EXPECT_EQ(fileControl::readWholeFile(written[i].temporary), expected[i].bytes);
        } else {
            EXPECT_TRUE(written[i].temporary.isEmpty());
        }
    }
    EXPECT_FALSE(QFileInfo::exists(stale));
    EXPECT_EQ(*fileControl::readWholeFile(root + "/old/kept.txt"), "left");
    EXPECT_FALSE(QFileInfo::exists(root + "/never made"));
}

} // namespace
