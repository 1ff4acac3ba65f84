#include "platform/fileControl.h"

#include "platform/FullDiskFolder.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {
QStringList entries(const QString& folder) {
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
}
} // namespace

TEST(fileControlTest, WriteReplacesWholeAndKeepsTheModeOfTheOldFile) {
    TestEnvironment env;
    const QString path = env.path(QStringLiteral("docs/a.rtf"));
    ASSERT_TRUE(fileControl::writeFileAtomically(path, "first version, long"));
    ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), 0640), 0);
    QString reason;
    ASSERT_TRUE(fileControl::writeFileAtomically(path, "second", &reason)) << qPrintable(reason);
    EXPECT_EQ(readTestFile(path), QByteArray("second"));
    struct stat info {};
    ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
    EXPECT_EQ(entries(env.path(QStringLiteral("docs"))), QStringList{QStringLiteral("a.rtf")});
}

TEST(fileControlTest, WriteIntoAMissingFolderFailsWithAReason) {
    TestEnvironment env;
    QString reason;
    EXPECT_FALSE(fileControl::writeFileAtomically(env.path("x") + "/no/such/f.txt", "x", &reason));
    EXPECT_TRUE(reason.contains(QStringLiteral("No such file"))) << qPrintable(reason);
}

TEST(fileControlTest, WriteOnAFullDiskKeepsTheOldFileAndLeavesNoTemporary) {
    FullDiskFolder disk;
    if (!disk.available()) {
        GTEST_SKIP() << qPrintable(disk.whySkipped());
    }
    const QString path = disk.path(QStringLiteral("letter.rtf"));
    const QByteArray old(2000, 'o');
    ASSERT_TRUE(fileControl::writeFileAtomically(path, old));
    disk.fill();
    QString reason;
    EXPECT_FALSE(fileControl::writeFileAtomically(path, QByteArray(40000, 'n'), &reason));
    EXPECT_TRUE(reason.contains(QStringLiteral("No space"))) << qPrintable(reason);
    EXPECT_EQ(readTestFile(path), old);
    QStringList left = entries(disk.path(QStringLiteral(".")));
    left.removeAll(QStringLiteral("ballast"));
    EXPECT_EQ(left, QStringList{QStringLiteral("letter.rtf")});
}

TEST(fileControlTest, ReadSaysWhetherAFileIsMissingRefusedOrAFolder) {
    TestEnvironment env;
    const QString locked = env.path(QStringLiteral("locked.rtf"));
    writeTestFile(locked, "x");
    ASSERT_EQ(::chmod(QFile::encodeName(locked).constData(), 0), 0);
    struct Case {
        QString path;
        const char* expected;
    };
    const Case cases[] = {
        {env.path(QStringLiteral("missing.rtf")), "File not found"},
        {env.root(), "folder"},
        // Root reads anything, so the refusal only shows for other users.
        {locked, ::geteuid() == 0 ? nullptr : "Permission denied"},
    };
    for (const Case& c : cases) {
        QString reason;
        const auto bytes = fileControl::readWholeFile(c.path, &reason);
        if (!c.expected) {
            continue;
        }
        EXPECT_FALSE(bytes) << qPrintable(c.path);
        EXPECT_TRUE(reason.contains(QLatin1String(c.expected))) << qPrintable(reason);
    }
}
