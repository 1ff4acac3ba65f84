#include "context/AppContext.h"
#include "merge/MergeRun.h"
#include "merge/MergeTestDatabase.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/ProgressReporter.h"
#include "platform/fileControl.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

namespace {

// One filed letter per merge kind, compared byte for byte with the letter
// kept under tests/data/merge/golden. QM_WRITE_GOLDEN=1 rewrites them after
// a deliberate change; the diff then shows what changed.
TEST(MergeGoldenTest, OneLetterPerKindMatchesItsGoldenFile) {
    const struct {
        const char* golden;
        InformationKind kind;
        QStringList ids;
        const char* body;
    } cases[] = {
        {"companies.qmw",
         InformationKind::Companies,
         {"10", ""},
         "\\b \\'abCompany Name\\'bb\\b0\\par \\'abAddress\\'bb\\par \\'abCity\\'bb, "
         "\\'abProvince\\'bb \\'abPostal Code\\'bb\\par Year end: \\'ab(Year End Date, mmmm d "
         "yyyy)\\'bb\\par \\'abYour Company Name\\'bb\\par"},
        {"companies-with-contacts.qmw",
         InformationKind::CompaniesAndContacts,
         {"30", "101"},
         "\\'abCompany Name\\'bb\\par Dear \\i \\'abContact Display Name\\'bb\\i0 ,\\par"},
        {"contacts.qmw",
         InformationKind::Contacts,
         {"10", "100"},
         "\\'abContact Display Name\\'bb (\\'abContact First Name\\'bb \\'abContact Last "
         "Name\\'bb)\\par \\'abCompany Name\\'bb\\par"},
        {"tasks.qmw",
         InformationKind::Tasks,
         {"500", ""},
         "\\'abCompany Name\\'bb: \\'abTask Name\\'bb\\par"},
        {"appointments.qmw",
         InformationKind::Appointments,
         {"700", ""},
         "\\'abCompany Name\\'bb: \\'abAppointment Name\\'bb\\par"},
    };
    const bool rewrite = qEnvironmentVariableIntValue("QM_WRITE_GOLDEN") == 1;
    for (const auto& c : cases) {
        TestEnvironment env;
        ScopedAppContext context;
        clsInsertFieldsInRTB fields;
        fields.setLineBreaksAsParagraphs(false);
        MergeTestDatabase db(env.path("client.qmd"));
        db.fillStandardPractice();
        MergeRequest request;
        request.model.InformationType = c.kind;
        request.templateCaption = "Merge Template - Golden";
        request.templateText = QStringLiteral("{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0"
                                              "\\fnil Arial;}}\r\n\\pard\\f0\\fs20 ") +
                               QString::fromLatin1(c.body) + QStringLiteral("\r\n}\r\n");
        request.IDList.addRow(1, c.ids);
        request.today = QDate(2024, 3, 5);
        request.vaultRoot = env.root() + "/vault";
        MergeRun run(request);
        NullProgress progress;
        ASSERT_EQ(run.merge(fields, db.db(), progress), MergeRun::Outcome::Merged) << c.golden;
        ASSERT_EQ(run.file(fields, db.db(), progress), 0) << c.golden;
        const QByteArray letter = *fileControl::readWholeFile(run.result().records[0].savedPath);
        const QString goldenPath = testDataPath(QStringLiteral("merge/golden/") + c.golden);
        if (rewrite) {
            ASSERT_TRUE(fileControl::writeFileAtomically(goldenPath, letter));
        }
        const auto expected = fileControl::readWholeFile(goldenPath);
        ASSERT_TRUE(expected.has_value()) << goldenPath.toStdString();
        EXPECT_EQ(letter, *expected) << c.golden;
    }
}

} // namespace
