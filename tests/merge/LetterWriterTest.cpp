#include "merge/LetterWriter.h"

#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

QStringList filesIn(const QString& folder) {
    QStringList names = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    names.sort();
    return names;
}

TEST(LetterWriterTest, AFailedPlacementLeftATemporaryOrHarmedTheOldFile) {
    TestEnvironment env;
    const QString folder = env.root() + "/client";
    ASSERT_TRUE(QDir().mkpath(folder + "/letter.qmw"));
    LetterWriter writer;
    // A folder stands where the letter goes: the rename fails.
    EXPECT_THROW(writer.write(folder + "/letter.qmw", "new"), QmError);
    EXPECT_TRUE(filesIn(folder).isEmpty());
    // A folder that does not exist: nothing is written anywhere.
    EXPECT_THROW(writer.write(env.root() + "/missing/letter.qmw", "new"), QmError);
    EXPECT_FALSE(QDir(env.root() + "/missing").exists());

    // A good write replaces the old letter whole.
    ASSERT_TRUE(fileControl::writeFileAtomically(folder + "/old.qmw", "old"));
    writer.write(folder + "/old.qmw", "replacement");
    EXPECT_EQ(*fileControl::readWholeFile(folder + "/old.qmw"), "replacement");
    EXPECT_EQ(filesIn(folder), QStringList({"old.qmw"}));
}

TEST(LetterWriterTest, MovedAsideLettersTakeFreeNames) {
    TestEnvironment env;
    const QString folder = env.root() + "/client";
    ASSERT_TRUE(QDir().mkpath(folder));
    LetterWriter writer;
    QStringList moved;
    for (const char* text : {"first", "second", "third"}) {
        ASSERT_TRUE(fileControl::writeFileAtomically(folder + "/Mar 5 2024 - A.B.qmw", text));
        moved << writer.moveAside(folder + "/Mar 5 2024 - A.B.qmw", "Replaced");
    }
    EXPECT_EQ(moved, QStringList({folder + "/Replaced/Mar 5 2024 - A.B.qmw",
                                  folder + "/Replaced/Mar 5 2024 - A.B (2).qmw",
                                  folder + "/Replaced/Mar 5 2024 - A.B (3).qmw"}));
    EXPECT_EQ(*fileControl::readWholeFile(moved[2]), "third");
    EXPECT_FALSE(QFileInfo::exists(folder + "/Mar 5 2024 - A.B.qmw"));
    EXPECT_THROW(writer.moveAside(folder + "/none.qmw", "Replaced"), QmError);
}

TEST(LetterWriterTest, OnlyItsOwnTemporariesAreRecognised) {
    EXPECT_TRUE(LetterWriter::isTemporaryName(".qm-0123abcd.part"));
    EXPECT_FALSE(LetterWriter::isTemporaryName("qm-0123abcd.part"));
    EXPECT_FALSE(LetterWriter::isTemporaryName(".qm-0123abcd.qmw"));
    EXPECT_FALSE(LetterWriter::isTemporaryName("letter.part"));
}

} // namespace
