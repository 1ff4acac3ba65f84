#pragma once

#include "context/AppContext.h"
#include "merge/MergeTestDatabase.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "support/TestEnvironment.h"

#include <QDateTime>
#include <gtest/gtest.h>
#include <memory>

// A merge test on the standard practice, on 5 March 2024 at nine, with the
// fixture's field inserter in the context. Fixtures that add to the set-up
// call this SetUp first.
class StandardPracticeTest : public ::testing::Test {
protected:
    void SetUp() override {
        context->clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
        context->fieldInserter = &fields;
        db = std::make_unique<MergeTestDatabase>(env.path("client.qmd"));
        db->fillStandardPractice();
    }
    void TearDown() override { db.reset(); }

    TestEnvironment env;
    ScopedAppContext context;
    clsInsertFieldsInRTB fields;
    std::unique_ptr<MergeTestDatabase> db;
};
