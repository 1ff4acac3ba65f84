#include "merge/LetterWriteQueue.h"

#include "LetterTemporaries.h"
#include "merge/LetterWriter.h"
#include "platform/fileControl.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QDirIterator>
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

} // namespace
