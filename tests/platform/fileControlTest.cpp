#include "platform/fileControl.h"

#include "platform/FullDiskFolder.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

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

TEST(fileControlTest, NamesThatAreNotUtf8ComeBackAsTheSameBytes) {
    const QList<QByteArray> names = {
        "caf\xe9.rtf",          // a Latin-1 name
        "\xc3\x28 broken pair", // lead byte without its continuation
        "\xed\xa0\x80 surrogate",
        "\xc0\xaf overlong",
        "cut \xf0\x9f\x98", // truncated at the end
        "\xff\xfe\x80",
    };
    for (const QByteArray& name : names) {
        SCOPED_TRACE(name.toHex().toStdString());
        EXPECT_EQ(fileControl::nativePath(fileControl::pathFromNative(name)), name);
    }
    // Well-formed names read as usual, so they show and sort as text.
    const QByteArray utf8 = "r\xc3\xa9sum\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80.rtf";
    EXPECT_EQ(fileControl::pathFromNative(utf8), QString::fromUtf8(utf8));
    EXPECT_EQ(fileControl::nativePath(QString::fromUtf8(utf8)), utf8);
}

TEST(fileControlTest, AFileWhoseNameIsNotUtf8CouldNotBeOpened) {
    TestEnvironment env;
    const QByteArray folder = QFile::encodeName(env.root());
    const QByteArray raw = folder + "/caf\xe9 letter.rtf";
    {
        const int fd = ::open(raw.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        ASSERT_GE(fd, 0);
        ASSERT_EQ(::write(fd, "{\\rtf1 hi}", 10), 10);
        ::close(fd);
    }
    const QString path = fileControl::pathFromNative(raw);
    EXPECT_TRUE(fileControl::FileExists(path));
    EXPECT_EQ(fileControl::FileSize(path), 10);
    const auto bytes = fileControl::readWholeFile(path);
    ASSERT_TRUE(bytes.has_value());
    EXPECT_EQ(*bytes, QByteArray("{\\rtf1 hi}"));

    // Written back under a name of the same kind, byte for byte.
    const QByteArray rawOut = folder + "/r\xe9sum\xe9.rtf";
    QString reason;
    ASSERT_TRUE(
        fileControl::writeFileAtomically(fileControl::pathFromNative(rawOut), "saved", &reason))
        << qPrintable(reason);
    struct stat info {};
    EXPECT_EQ(::stat(rawOut.constData(), &info), 0);
    EXPECT_EQ(info.st_size, 5);
    EXPECT_TRUE(fileControl::DeleteFile(fileControl::pathFromNative(rawOut)));
    EXPECT_NE(::stat(rawOut.constData(), &info), 0);
}
