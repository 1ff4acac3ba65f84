#include "files/clsINIFileCompanion.h"

#include "context/AppContext.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

TEST(clsINIFileCompanionTest, AMissingFileReadsEmptyAndIsNotCreatedByReading) {
    TestEnvironment env;
    ScopedAppContext context;
    clsINIFileCompanion companion;
    const QString path = env.path("doc/letter.rti");
    EXPECT_FALSE(companion.doesINIExist(path));
    EXPECT_FALSE(companion.doesINIExist("   "));
    EXPECT_EQ(companion.getKeyString("FileInformation", "FileType", "0", path), QString());
    EXPECT_FALSE(QFile::exists(path));
}

TEST(clsINIFileCompanionTest, InitializeWritesTheCompanionTableForANewFile) {
    TestEnvironment env;
    ScopedAppContext context;
    clsINIFileCompanion companion;
    const QString path = env.path("doc/letter.rti");
    companion.initializeINI(path);
    const QByteArray text = readTestFile(path);
    const QByteArray version = getProgramVersion().toLatin1();
    const QByteArray head =
        "[FileInformation]\r\nVersion=" + version + "\r\nName=<not_set>\r\nFileType=<not_set>\r\n";
    EXPECT_TRUE(text.startsWith(head));
    EXPECT_TRUE(text.contains("[PageInformation]\r\nleftMargin=1440\r\ntopMargin=1440\r\n"
                              "rightMargin=1440\r\nbottomMargin=1440\r\n"));
    EXPECT_EQ(companion.getKeyString("PageInformation", "leftMargin", "0"), "1440");
}

TEST(clsINIFileCompanionTest, AFileOfALaterVersionIsUpgraded) {
    TestEnvironment env;
    ScopedAppContext context;
    const QString path = env.path("doc/letter.rti");
    writeTestFile(path,
                  "[FileInformation]\r\nFileType=1\r\n\r\n[QuillmerePad]\r\nVersion=0.0.0\r\n");
    clsINIFileCompanion companion;
    companion.initializeINI(path);
    EXPECT_EQ(companion.getKeyString("FileInformation", "FileType", "x"), "0");
    EXPECT_EQ(companion.getKeyString("QuillmerePad", "Version", "x"), getProgramVersion());

    // Not a prior version: nothing changes.
    writeTestFile(path,
                  "[FileInformation]\r\nFileType=1\r\n\r\n[QuillmerePad]\r\nVersion=99.99.99\r\n");
    companion.initializeINI(path);
    EXPECT_EQ(companion.getKeyString("FileInformation", "FileType", "x"), "1");
}

TEST(clsINIFileCompanionTest, BasenameIsThePartAfterTheLastSeparator) {
    EXPECT_EQ(clsINIFileCompanion::basename("/a/b/c.rti"), "c.rti");
    EXPECT_EQ(clsINIFileCompanion::basename("plain"), "plain");
}
