#include "files/clsINI.h"

#include "context/AppContext.h"
#include "platform/errorClass.h"
#include "support/TestEnvironment.h"

#include <QFile>
#include <gtest/gtest.h>

namespace {

const QChar kNul(0);

struct Fixture {
    TestEnvironment env;
    ScopedAppContext context;
    QString path = env.path(QStringLiteral("work/Qminiqmd.dni"));
};

QByteArray expectedNewFile(const TestEnvironment& env) {
    QByteArray golden = readTestFile(testDataPath(QStringLiteral("settings/new-settings.dni")));
    golden.replace("{VERSION}", getProgramVersion().toLatin1());
    golden.replace("{BACKGROUNDS}",
                   (env.documents() + "/Quillmere Files/Backgrounds/").toLocal8Bit());
    golden.replace("{PROGRAM}", (env.programFolder() + "/").toLocal8Bit());
    return golden;
}

} // namespace

TEST(clsINITest, SettingAMissingFileWritesTheWholeTableAndAnExistingOneIsLeftAlone) {
    Fixture f;
    clsINI ini;
    ini.setINIFile(f.path);
    EXPECT_EQ(readTestFile(f.path), expectedNewFile(f.env));

    writeTestFile(f.path, "[Mine]\r\nkeep=this\r\n");
    clsINI again;
    again.setINIFile(f.path);
    EXPECT_EQ(readTestFile(f.path), QByteArray("[Mine]\r\nkeep=this\r\n"));
    EXPECT_EQ(again.INIFile(), f.path);
}

TEST(clsINITest, GetKeyStringWritesMissingAndEmptyKeysBack) {
    Fixture f;
    writeTestFile(f.path, "[QuillmereInfo]\r\nEmpty=\r\nSet=value\r\n");
    clsINI ini;
    ini.setINIFile(f.path);
    struct Case {
        const char* name;
        QString key;
        QString defaultValue;
        QString expected;
    };
    const Case cases[] = {
        {"existing value wins over the default", "Set", "other", "value"},
        {"empty value is replaced by the default", "Empty", "dflt", "dflt"},
        {"missing key gets the default", "Missing", "42", "42"},
        {"empty default becomes not_set", "NoDefault", "", "<not_set>"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ini.getKeyString("QuillmereInfo", c.key, c.defaultValue), c.expected) << c.name;
        // Written back: a second read with another default gives the same.
        EXPECT_EQ(ini.getKeyString("QuillmereInfo", c.key, "again"), c.expected) << c.name;
    }
    EXPECT_EQ(ini.getKeysInSection("QuillmereInfo"),
              QStringList({"Empty", "Set", "Missing", "NoDefault"}).join(kNul));
}

TEST(clsINITest, ValuesAreCutAt255AndHugeKeysWork) {
    Fixture f;
    const QString longValue(400, QLatin1Char('v'));
    const QString hugeKey(10000, QLatin1Char('k'));
    writeTestFile(f.path, "[S]\r\nlong=" + longValue.toLatin1() + "\r\n");
    clsINI ini;
    ini.setINIFile(f.path);
    EXPECT_EQ(ini.getKeyString("S", "long", "d").size(), 255);
    ini.setKeyValue("S", hugeKey, "big");
    EXPECT_EQ(ini.getKeyString("S", hugeKey, "d"), "big");
}

TEST(clsINITest, WithoutAPathReadsGiveTheDefaultAndNothingIsWritten) {
    Fixture f;
    clsINI ini;
    EXPECT_EQ(ini.getKeyString("Document", "DefaultFont", "Arial"), "Arial");
    ini.setKeyValue("Document", "DefaultFont", "Times");
    EXPECT_EQ(ini.getKeyString("Document", "DefaultFont", "Arial"), "Arial");
    EXPECT_EQ(ini.getNumberOfSections(), 0);
}

TEST(clsINITest, SectionAndKeyListsAndDeletions) {
    Fixture f;
    writeTestFile(f.path, "[A]\r\none=1\r\ntwo=2\r\n\r\n[B]\r\nthree=3\r\n");
    clsINI ini;
    ini.setINIFile(f.path);
    EXPECT_EQ(ini.getSections(), QString("A") + kNul + "B");
    EXPECT_EQ(ini.getNumberOfSections(), 2);
    EXPECT_EQ(ini.getNumberOfKeysInSection("A"), 2);
    EXPECT_EQ(ini.getNumberOfKeysInSection("Nothing"), 0);

    ini.deleteKeyValue("A", "one");
    EXPECT_EQ(ini.getNumberOfKeysInSection("A"), 2);
    ini.renameKey("A", "two", "deux");
    EXPECT_EQ(ini.getKeysInSection("A"), QString("one") + kNul + "deux");
    EXPECT_EQ(ini.getKeyString("A", "deux", "x"), "2");
    ini.deleteKey("A", "one");
    EXPECT_EQ(ini.getNumberOfKeysInSection("A"), 1);
    ini.deleteAllSections();
    EXPECT_EQ(ini.getNumberOfSections(), 0);
}

TEST(clsINITest, AnEmptyFileHasNoSections) {
    Fixture f;
    writeTestFile(f.path, "");
    clsINI ini;
    ini.setINIFile(f.path);
    EXPECT_EQ(ini.getNumberOfSections(), 0);
    EXPECT_EQ(ini.getSections(), QString());
}

TEST(clsINITest, SectionFallsBackOnTheCurrentOneAndTheFileArgumentOverridesThePath) {
    Fixture f;
    const QString other = f.env.path(QStringLiteral("other.ini"));
    clsINI ini;
    ini.setINIFile(f.path);
    ini.setKeyValue(QString(), "Key", "in default section");
    EXPECT_EQ(ini.getKeyString("Quillmere", "Key", "x"), "in default section");
    ini.setKeyValue("S", "Key", "elsewhere", other);
    EXPECT_EQ(readTestFile(other), QByteArray("[S]\r\nKey=elsewhere\r\n"));
    EXPECT_EQ(ini.getVersion(), getProgramVersion());
    EXPECT_EQ(ini.getVersion(other), "1.0");
}

TEST(clsINITest, UpgradeSetsTheVersionAndKeepsEverythingElse) {
    Fixture f;
    writeTestFile(f.path, "[Quillmere]\r\nVersion=0.9.1\r\nOther=x\r\n");
    clsINI ini;
    ini.setINIFile(f.path);
    ini.upgradeINI();
    EXPECT_EQ(readTestFile(f.path),
              "[Quillmere]\r\nVersion=" + getProgramVersion().toLatin1() + "\r\nOther=x\r\n");
}

TEST(clsINITest, GarbageSettingsFileIsReadAsHavingNoKeysAndIsNotLost) {
    Fixture f;
    QByteArray garbage;
    for (int i = 0; i < 2000; ++i) {
        garbage.append(char((i * 37 + 11) % 256));
    }
    garbage.replace('[', 'x'); // keep it free of accidental section headers
    writeTestFile(f.path, garbage);
    clsINI ini;
    ini.setINIFile(f.path);
    EXPECT_EQ(ini.getKeyString("QuillmereInfo", "dataLocation", "<not_set>"), "<not_set>");
    EXPECT_TRUE(readTestFile(f.path).startsWith(garbage));
}

TEST(clsINITest, ProceduresPushTagsOnlyWhenTheErrorObjectExists) {
    Fixture f;
    clsINI ini;
    ini.setINIFile(f.path);
    ini.getKeyString("A", "b", "c"); // no error object: must not crash
    errorClass errors;
    f.context->errors = &errors;
    QStringList seen;
    {
        ProcedureScope outer(&errors, "outer");
        ini.getKeyString("A", "b", "c");
        seen = errors.tagStack();
    }
    EXPECT_EQ(seen, QStringList({"outer"}));
    EXPECT_TRUE(errors.tagStack().isEmpty());
}

TEST(clsINITest, VersionPartsAreComparedEachOnItsOwn) {
    struct Case {
        const char* a;
        const char* b;
        bool prior;
    };
    const Case cases[] = {
        {"1.2.3", "1.2.3", false}, {"1.2.4", "1.2.3", true}, {"2.0.0", "1.9.9", true},
        {"1.9.9", "2.0.0", true},  {"4.9.9", "5.0.0", true}, {"1.0.0", "1.0.1", false},
        {"1", "0.0.0", true},      {"abc", "0.0.1", false},  {"1.x.2", "1.0.1", true},
        {"", "", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(clsINI::isPriorVersion(c.a, c.b), c.prior) << c.a << " vs " << c.b;
    }
    const auto v = clsINI::parseVersion("12.x7.3.9");
    EXPECT_EQ(v.major, 12);
    EXPECT_EQ(v.minor, 0);
    EXPECT_EQ(v.revision, 3);
}

TEST(clsINITest, TruthValuesInBothSpellings) {
    for (const char* t : {"1", "-1", "True", "true", " TRUE "}) {
        EXPECT_TRUE(clsINI::isTrueValue(t)) << t;
    }
    for (const char* t : {"0", "False", "false", "", "<not_set>"}) {
        EXPECT_FALSE(clsINI::isTrueValue(t)) << t;
    }
}
