#include "merge/modDocVaultFolders.h"

#include "context/AppContext.h"
#include "merge/MergeTestDatabase.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

TEST(modDocVaultFoldersTest, FileNamesFromTheTemplatesName) {
    ScopedAppContext context;
    context->clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
    const struct {
        const char* name;
        int saveType;
        int documentType;
        int informationType;
        const char* expected;
    } cases[] = {
        {"Merge Template - Year End Letter", 0, 3, 1, "Mar 5 2024 - Year End Letter.qmw"},
        {"Merge Template", 0, 3, 1, "Mar 5 2024 - .qmw"},
        {"Merge Results - Merge Template -X", 0, 4, 2, "Mar 5 2024 - X.qmw"},
        {"Letter.QMW", 0, 3, 1, "Mar 5 2024 - Letter.QMW"},
        {"Letter", 1, 3, 1, "Mar 5 2024 - Letter.txt"},
        {"Letter.TxT", 1, 3, 1, "Mar 5 2024 - Letter.TxT"},
        {"Letter", 0, 1, 1, "Mar 5 2024 - Letter.rtf"},
        {"Letter", 0, 2, 3, "Mar 5 2024 - Letter.qme"},
        {"Letter", 0, 2, 5, "Mar 5 2024 - Letter.qma"},
        {"merge template - lower", 0, 3, 1, "Mar 5 2024 - merge template - lower.qmw"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(parseMergeFileName(QString::fromUtf8(c.name), c.saveType, c.documentType,
                                     informationKindFromInt(c.informationType)),
                  QString::fromUtf8(c.expected))
            << c.name;
    }
}

TEST(modDocVaultFoldersTest, NamesThatAreNoFolderNames) {
    EXPECT_EQ(cleanFolderName("A/B\\C:D*E?F\"G<H>I|J"), "A_B_C_D_E_F_G_H_I_J");
    EXPECT_EQ(cleanFolderName(" ..Acme. "), "Acme");
    EXPECT_EQ(cleanFolderName(".."), "_");
    EXPECT_EQ(cleanFolderName(QStringLiteral("H\u00e9l\u00e8ne's & Co")),
              QStringLiteral("H\u00e9l\u00e8ne's & Co"));
}

TEST(modDocVaultFoldersTest, ClientFoldersAreMadeRememberedAndRemade) {
    TestEnvironment env;
    ScopedAppContext context;
    EXPECT_EQ(getBusinessClientDocFolder(1010, env.path("vault")), "") << "no database";
    MergeTestDatabase db(env.path("client.qmd"));
    db.fillStandardPractice();
    const QString root = env.root() + "/vault";

    const QString first = getBusinessClientDocFolder(1010, root);
    EXPECT_EQ(first, root + "/Acme Widgets/");
    EXPECT_TRUE(fileControl::FolderExists(first));

    // Renamed client: the stored folder still rules while it exists.
    db.exec("UPDATE Companies SET CompanyName = 'Acme Renamed' WHERE CompanyID = 10");
    EXPECT_EQ(getBusinessClientDocFolder(1010, root), first);
    // Deleted folder: a folder of the current name, and the row follows.
    QDir(first).removeRecursively();
    EXPECT_EQ(getBusinessClientDocFolder(1010, root), root + "/Acme Renamed/");
    const int rs = db.db().openRecordset(
        "SELECT ClientDocumentStorage.* FROM ClientDocumentStorage WHERE ClientDataNum = 1010;");
    ASSERT_EQ(db.db().recordCount(rs), 1);
    EXPECT_EQ(db.db().getField(rs, "FolderPath").toString(), "Acme Renamed");
    db.db().closeRecordset(rs);

    EXPECT_EQ(getBusinessClientDocFolder(1020, root), root + "/Beta {Braces} _Back/");
    EXPECT_EQ(getPersonalClientDocFolder(102, root), root + "/Personal Tax Clients/Solo Person/");
    EXPECT_EQ(getMiscAppointmentsFolder(root), root + "/Quillmere Merge Appointment Documents");
    EXPECT_TRUE(fileControl::FolderExists(root + "/Quillmere Merge Appointment Documents"));
}

TEST(modDocVaultFoldersTest, ClientsWithEqualCleanedNamesSharedOneFolder) {
    TestEnvironment env;
    ScopedAppContext context;
    MergeTestDatabase db(env.path("client.qmd"));
    db.fillStandardPractice();
    db.exec("UPDATE Companies SET CompanyName = 'Acme/Widgets' WHERE CompanyID = 20");
    db.exec("UPDATE Companies SET CompanyName = 'Acme:Widgets' WHERE CompanyID = 30");
    const QString root = env.root() + "/vault";
    db.exec("UPDATE Companies SET CompanyName = 'Acme_Widgets' WHERE CompanyID = 10");

    EXPECT_EQ(getBusinessClientDocFolder(1010, root), root + "/Acme_Widgets/");
    EXPECT_EQ(getBusinessClientDocFolder(1020, root), root + "/Acme_Widgets (2)/");
    EXPECT_EQ(getBusinessClientDocFolder(1030, root), root + "/Acme_Widgets (3)/");
    // Each keeps its own folder afterwards, and the rows say which.
    EXPECT_EQ(getBusinessClientDocFolder(1020, root), root + "/Acme_Widgets (2)/");
    const int rs = db.db().openRecordset("SELECT ClientDocumentStorage.* FROM "
                                         "ClientDocumentStorage WHERE ClientDataNum = 1030;");
    ASSERT_EQ(db.db().recordCount(rs), 1);
    EXPECT_EQ(db.db().getField(rs, "FolderPath").toString(), "Acme_Widgets (3)");
    db.db().closeRecordset(rs);
}

TEST(modDocVaultFoldersTest, StoredFolderPathsLeftTheVault) {
    TestEnvironment env;
    ScopedAppContext context;
    MergeTestDatabase db(env.path("client.qmd"));
    db.fillStandardPractice();
    const QString root = env.root() + "/a/vault";
    ASSERT_TRUE(QDir().mkpath(env.root() + "/outside"));
    const struct {
        int client;
        const char* stored;
    } cases[] = {
        {1010, "../../outside"},
        {1020, "../vault2"},
        {1030, ".."},
    };
    for (const auto& c : cases) {
        db.exec(QString("INSERT INTO ClientDocumentStorage (ClientDataNum, FolderPath) VALUES (%1, "
                        "'%2')")
                    .arg(c.client)
                    .arg(c.stored));
        EXPECT_THROW(getBusinessClientDocFolder(c.client, root), QmError) << c.stored;
    }
    EXPECT_FALSE(QFileInfo::exists(env.root() + "/a/vault2"));
    EXPECT_NO_THROW(requireInsideVault(root + "/x/../Acme/", root));
    EXPECT_THROW(requireInsideVault(root + "/", root), QmError);
    EXPECT_THROW(requireInsideVault(root + "2/Acme", root), QmError);
}

// A walk's index answers from listings of the vault's folders; the plans
// must come out as when the disk is asked each time.
class PlansAhead : public ::testing::TestWithParam<bool> {};

TEST_P(PlansAhead, APlanMadeAheadStandsUnlessItReadWhatAnEarlierOneChanges) {
    TestEnvironment env;
    ScopedAppContext context;
    MergeTestDatabase db(env.path("client.qmd"));
    db.fillStandardPractice();
    db.addClient(40, {{"CompanyName", "Delta/Co"}});
    db.addClient(50, {{"CompanyName", "Delta:Co"}});
    // A stored folder that is the parent of a personal client's folder.
    db.exec("INSERT INTO ClientDocumentStorage (ClientDataNum, FolderPath) VALUES (1020, "
            "'Personal Tax Clients')");
    const QString root = env.root() + "/vault";
    DocVaultIndex index(db.db());
    if (GetParam()) {
        index.listFolders();
    }

    // Planned before `delta` is made and recorded, as a walk that makes
    // folders on another thread plans them.
    const ClientFolderPlan delta = planBusinessClientDocFolder(1040, root, index);
    const ClientFolderPlan deltaAgain = planBusinessClientDocFolder(1040, root, index);
    const ClientFolderPlan sameName = planBusinessClientDocFolder(1050, root, index);
    const ClientFolderPlan gamma = planBusinessClientDocFolder(1030, root, index);
    const ClientFolderPlan solo = planPersonalClientDocFolder(102, root, index);
    const ClientFolderPlan beta = planBusinessClientDocFolder(1020, root, index);
    EXPECT_TRUE(delta.mustMake);
    EXPECT_EQ(delta.folder, root + "/Delta_Co/");
    EXPECT_EQ(delta.namesTried, QStringList{"Delta_Co"});
    EXPECT_FALSE(QFileInfo::exists(delta.folder)) << "a plan makes nothing";
    EXPECT_EQ(beta.storedChecked, root + "/Personal Tax Clients/");
    EXPECT_EQ(beta.folder, root + "/Beta {Braces} _Back/");

    EXPECT_TRUE(planReadsWhatCompletes(deltaAgain, delta));
    EXPECT_TRUE(planReadsWhatCompletes(sameName, delta));
    EXPECT_FALSE(planReadsWhatCompletes(gamma, delta));
    EXPECT_FALSE(planReadsWhatCompletes(solo, delta));
    EXPECT_TRUE(planReadsWhatCompletes(beta, solo));
    EXPECT_FALSE(planReadsWhatCompletes(beta, delta));
    EXPECT_FALSE(planReadsWhatCompletes(delta, gamma));

    for (const ClientFolderPlan* made : {&delta, &solo}) {
        makeVaultFolder(made->folder);
        completeClientDocFolder(*made, index);
    }
    // Those that read what changed plan otherwise now; the others as before.
    const ClientFolderPlan deltaAfter = planBusinessClientDocFolder(1040, root, index);
    EXPECT_FALSE(deltaAfter.mustMake);
    EXPECT_EQ(deltaAfter.folder, delta.folder);
    const ClientFolderPlan sameNameAfter = planBusinessClientDocFolder(1050, root, index);
    EXPECT_EQ(sameNameAfter.folder, root + "/Delta_Co (2)/");
    EXPECT_EQ(sameNameAfter.namesTried, QStringList({"Delta_Co", "Delta_Co (2)"}));
    const ClientFolderPlan betaAfter = planBusinessClientDocFolder(1020, root, index);
    EXPECT_FALSE(betaAfter.mustMake);
    EXPECT_EQ(betaAfter.folder, root + "/Personal Tax Clients/");
    const ClientFolderPlan gammaAfter = planBusinessClientDocFolder(1030, root, index);
    EXPECT_EQ(gammaAfter.folder, gamma.folder);
    EXPECT_EQ(gammaAfter.mustMake, gamma.mustMake);

    // Completed, the rows are those the one-step lookups write.
    const int rs =
        db.db().openRecordset("SELECT ClientDocumentStorage.* FROM ClientDocumentStorage ORDER BY "
                              "ClientDocumentStorageID;");
    QStringList rows;
    while (!db.db().isEOF(rs)) {
        rows << db.db().getField(rs, "ClientDataNum").toString() + "|" +
                    db.db().getField(rs, "ContactNum").toString() + "|" +
                    db.db().getField(rs, "FolderPath").toString();
        db.db().moveNext(rs);
    }
    db.db().closeRecordset(rs);
    EXPECT_EQ(rows, QStringList({"1020||Personal Tax Clients", "1040||Delta_Co",
                                 "|102|Personal Tax Clients/Solo Person"}));
}

INSTANTIATE_TEST_SUITE_P(modDocVaultFoldersTest, PlansAhead, ::testing::Bool(),
                         [](const ::testing::TestParamInfo<bool>& param) {
                             return param.param ? std::string("FromListings")
                                                : std::string("AskingTheDisk");
                         });

TEST(modDocVaultFoldersTest, AFolderThatCannotBeMadeIsNotRecorded) {
    TestEnvironment env;
    ScopedAppContext context;
    MergeTestDatabase db(env.path("client.qmd"));
    db.fillStandardPractice();
    const QString root = env.root() + "/vault";
    ASSERT_TRUE(QDir().mkpath(root));
    QFile blocker(root + "/Gamma Ltd");
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    DocVaultIndex index(db.db());
    const ClientFolderPlan gamma = planBusinessClientDocFolder(1030, root, index);
    ASSERT_TRUE(gamma.mustMake);
    try {
        makeVaultFolder(gamma.folder);
        FAIL() << "a file stands where the folder goes";
    } catch (const QmError& fault) {
        EXPECT_EQ(fault.description(), "Path not found: " + root + "/Gamma Ltd/");
    }
    // As the one-step lookup says, and nothing is stored.
    EXPECT_THROW(getBusinessClientDocFolder(1030, root), QmError);
    EXPECT_FALSE(index.storedFolder("ClientDataNum", 1030));
    const int rs = db.db().openRecordset("SELECT ClientDocumentStorage.* FROM "
                                         "ClientDocumentStorage;");
    EXPECT_EQ(db.db().recordCount(rs), 0);
    db.db().closeRecordset(rs);
}

} // namespace
