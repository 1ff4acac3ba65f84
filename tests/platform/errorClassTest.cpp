#include "platform/Clock.h"
#include "platform/errorClass.h"
#include "support/TestEnvironment.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

void inner(errorClass& errors) {
    ProcedureScope scope(&errors, QStringLiteral("QuillmerePad.exe-modTest-inner"));
    throw QmError(QmError::Overflow, QStringLiteral("Overflow"));
}

void outer(errorClass& errors) {
    ProcedureScope scope(&errors, QStringLiteral("QuillmerePad.exe-modTest-outer"));
    inner(errors);
}

} // namespace

TEST(errorClassTest, ScopesPushAndPopTagsAlsoWhenAFaultLeaves) {
    errorClass errors;
    {
        ProcedureScope a(&errors, QStringLiteral("a"));
        ProcedureScope b(&errors, QStringLiteral("b"));
        EXPECT_EQ(errors.tagStack(), QStringList({"a", "b"}));
    }
    EXPECT_TRUE(errors.tagStack().isEmpty());
    EXPECT_FALSE(runGuarded(&errors, [&] { outer(errors); }));
    EXPECT_TRUE(errors.tagStack().isEmpty());
}

TEST(errorClassTest, ReportCarriesTheStackWhereTheFaultArose) {
    TestEnvironment env;
    Clock clock;
    clock.setFixed(QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7)));
    errorClass errors(&clock);
    errors.setLogFolder(env.path(QStringLiteral("work/Logs")));
    errors.setApplicationVersion(QStringLiteral("1.0.0"));
    ErrorReport seen;
    errors.setPrompt([&](const ErrorReport& report) {
        seen = report;
        return int(errorClass::GoOn);
    });

    EXPECT_FALSE(runGuarded(&errors, [&] { outer(errors); }));

    EXPECT_EQ(seen.number, 6);
    EXPECT_EQ(seen.tagStack, QStringList({"QuillmerePad.exe-modTest-outer",
                                          "QuillmerePad.exe-modTest-inner"}));
    EXPECT_EQ(errors.errorAction(), errorClass::GoOn);
    const QByteArray log = readTestFile(errors.logFilePath());
    EXPECT_TRUE(log.contains("2026-03-04T05:06:07 Quillmere Pad 1.0.0 error 6: Overflow"));
    EXPECT_TRUE(log.contains("at QuillmerePad.exe-modTest-inner"));

    // A second fault is reported with its own stack, not the first one's.
    errors.reportError(QmError::TypeMismatch, QStringLiteral("Type mismatch"));
    EXPECT_TRUE(errors.lastReport().tagStack.isEmpty());
}

TEST(errorClassTest, EndProgramRunsTheExitHookAndOtherAnswersDoNot) {
    struct Case {
        int answer;
        bool exits;
    };
    for (const Case c : {Case{1, false}, Case{2, false}, Case{3, true}}) {
        errorClass errors;
        bool exited = false;
        errors.setPrompt([&](const ErrorReport&) { return c.answer; });
        errors.setExitHook([&] { exited = true; });
        runGuarded(&errors, [] { throw std::runtime_error("boom"); });
        EXPECT_EQ(exited, c.exits) << "answer " << c.answer;
        EXPECT_EQ(errors.lastReport().description, QStringLiteral("boom"));
    }
}

TEST(errorClassTest, WithoutAPromptTheChoiceIsToLeave) {
    errorClass errors;
    runGuarded(&errors, [] { throw QmError(53, QStringLiteral("File not found")); });
    EXPECT_EQ(errors.errorAction(), errorClass::Leave);
    // No log folder: nothing is written and nothing fails.
    EXPECT_TRUE(errors.logFilePath().isEmpty());
}
