#include "platform/PrivateProfile.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

namespace {
QString file(const TestEnvironment& env, const QByteArray& content) {
    const QString path = env.path(QStringLiteral("test.ini"));
    writeTestFile(path, content);
    return path;
}
} // namespace

TEST(PrivateProfileTest, ReadsBothLineEndsBlankAndJunkLinesWithoutRegardToCase) {
    TestEnvironment env;
    struct Case {
        const char* name;
        QByteArray content;
    };
    const Case cases[] = {
        {"crlf", "[Sec]\r\nKey=Value\r\n"},
        {"lf", "[Sec]\nKey=Value\n"},
        {"junk and blanks", "garbage line\n\n  [ sec ]  \n;comment\nnot a key\n  key  =  Value  \n"},
        {"no final line end", "[SEC]\nKEY=Value"},
        {"quoted", "[Sec]\nKey=\"Value\"\n"},
    };
    for (const auto& c : cases) {
        const QString path = file(env, c.content);
        EXPECT_EQ(PrivateProfile::readValue(path, "Sec", "Key").value_or("<none>"), "Value")
            << c.name;
    }
}

TEST(PrivateProfileTest, MissingAndEmptyAreDifferent) {
    TestEnvironment env;
    const QString path = file(env, "[A]\nEmpty=\n");
    EXPECT_EQ(PrivateProfile::readValue(path, "A", "Empty"), QString());
    EXPECT_FALSE(PrivateProfile::readValue(path, "A", "Missing"));
    EXPECT_FALSE(PrivateProfile::readValue(path, "B", "Empty"));
    EXPECT_FALSE(PrivateProfile::readValue(env.path("nofile.ini"), "A", "Empty"));
}

TEST(PrivateProfileTest, WritingKeepsEverythingElseAndTheLineEnds) {
    TestEnvironment env;
    const QString path =
        file(env, "; header\r\n[One]\r\na=1\r\njunk\r\n\r\n[Two]\r\nb=2\r\n");
    ASSERT_TRUE(PrivateProfile::writeValue(path, "one", "c", "3"));
    ASSERT_TRUE(PrivateProfile::writeValue(path, "Two", "B", "22"));
    ASSERT_TRUE(PrivateProfile::writeValue(path, "Three", "d", "4"));
    EXPECT_EQ(readTestFile(path), QByteArray("; header\r\n[One]\r\na=1\r\njunk\r\nc=3\r\n\r\n"
                                             "[Two]\r\nB=22\r\n\r\n[Three]\r\nd=4\r\n"));
}

TEST(PrivateProfileTest, DeletesKeysAndSections) {
    TestEnvironment env;
    const QString path = file(env, "[One]\na=1\nb=2\n\n[Two]\nc=3\n");
    PrivateProfile::deleteKey(path, "One", "A");
    EXPECT_EQ(PrivateProfile::keyNames(path, "One"), QStringList({"b"}));
    PrivateProfile::deleteSection(path, "one");
    EXPECT_EQ(PrivateProfile::sectionNames(path), QStringList({"Two"}));
    EXPECT_EQ(readTestFile(path), QByteArray("[Two]\nc=3\n"));
}

TEST(PrivateProfileTest, BinaryGarbageSurvivesAWrite) {
    TestEnvironment env;
    QByteArray garbage;
    for (int i = 0; i < 256; ++i) {
        garbage.append(char(i));
    }
    const QString path = file(env, garbage);
    EXPECT_FALSE(PrivateProfile::readValue(path, "A", "b"));
    ASSERT_TRUE(PrivateProfile::writeValue(path, "A", "b", "c"));
    EXPECT_EQ(PrivateProfile::readValue(path, "A", "b").value_or(""), "c");
    EXPECT_TRUE(readTestFile(path).startsWith(garbage.left(10)));
}

TEST(PrivateProfileTest, AnUnwritableFolderLosesTheWriteButNotTheFile) {
    TestEnvironment env;
    const QString path = file(env, "[A]\nb=1\n");
    EXPECT_FALSE(PrivateProfile::writeValue(env.root() + "/missing/dir/x.ini", "A", "b", "2"));
    EXPECT_EQ(PrivateProfile::readValue(path, "A", "b").value_or(""), "1");
}
