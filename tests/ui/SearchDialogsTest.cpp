#include "data/ClientDbFixture.h"
#include "platform/MsgboxClass.h"
#include "search/clsSearchAppointments.h"
#include "search/clsSearchTasks.h"
#include "ui/DateFieldPicker.h"
#include "ui/RecipientCommands.h"
#include "ui/frmDocument.h"
#include "ui/frmSearchAppointments.h"
#include "ui/frmSearchTasks.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <functional>

namespace {

class SearchDialogsTest : public ClientDbFixture {
protected:
    void SetUp() override {
        ClientDbFixture::SetUp();
        m_context->clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
        m_context->msgbox = &m_msgbox;
        loadFixture(QStringLiteral("../search/practice"));
    }

    template <typename T> static T* child(QWidget& dialog, const char* name) {
        T* found = dialog.findChild<T*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    // On the left edge: a check box takes clicks on its box and caption only,
    // and a wide one's middle is neither.
    static void click(QWidget* widget) {
        QTest::mouseClick(widget, Qt::LeftButton, {}, QPoint(6, widget->height() / 2));
    }

    // Answers the next modal dialog of type T from its own event loop.
    template <typename T> static void whenShown(std::function<void(T&)> answer) {
        auto poll = std::make_shared<std::function<void()>>();
        *poll = [poll, answer] {
            if (auto* dialog = qobject_cast<T*>(QApplication::activeModalWidget())) {
                answer(*dialog);
            } else {
                QTimer::singleShot(10, *poll);
            }
        };
        QTimer::singleShot(0, *poll);
    }

    ScriptedMsgbox m_msgbox;
};

TEST_F(SearchDialogsTest, TheTaskDialogOpensOnItsDefaults) {
    clsSearchTasks search;
    frmSearchTasks dialog;
    ASSERT_TRUE(dialog.Initialize(search));
    dialog.show();
    EXPECT_EQ(dialog.windowTitle(),
              QStringLiteral("Select the Tasks you would like to merge into this document"));
    const struct {
        const char* name;
        const char* caption;
    } boxes[] = {{"chkMain(0)", "Search by Task Name"},
                 {"chkMain(1)", "Search by Task Type"},
                 {"chkMain(2)", "Search by Employee Assigned"},
                 {"chkMain(3)", "Search Prior Years Archives"},
                 {"chkMain(4)", "Search by Closed Status"},
                 {"chkMain(5)", "Search by Client"},
                 {"chkStatus(4)", "Search for Received"}};
    for (const auto& b : boxes) {
        auto* box = child<QCheckBox>(dialog, b.name);
        EXPECT_EQ(box->text(), QLatin1String(b.caption));
        EXPECT_FALSE(box->isChecked()) << b.name;
    }
    EXPECT_TRUE(child<QRadioButton>(dialog, "Option1(2)")->isChecked());
    EXPECT_EQ(child<QRadioButton>(dialog, "Option1(3)")->text(),
              QStringLiteral("Find all tasks on:"));
    EXPECT_EQ(child<QLineEdit>(dialog, "txtField(3)")->text(), QStringLiteral("March 5, 2024"));
    EXPECT_TRUE(child<QLineEdit>(dialog, "txtField(2)")->isEnabled());
    EXPECT_FALSE(child<QLineEdit>(dialog, "txtField(4)")->isEnabled());
    EXPECT_FALSE(child<QLineEdit>(dialog, "Text1(0)")->isEnabled());
    EXPECT_EQ(child<QComboBox>(dialog, "Combo2")->currentIndex(), -1);
    EXPECT_EQ(child<QComboBox>(dialog, "Combo1(1)")->itemText(0), QStringLiteral("Dana Fox"));
    EXPECT_GT(child<QComboBox>(dialog, "Combo1(0)")->count(), 10);
    EXPECT_EQ(child<QComboBox>(dialog, "Combo1(2)")->findText(QStringLiteral("Acme Widgets")) >= 0,
              true);

    auto* advanced = child<QPushButton>(dialog, "cmdShowAdvanced");
    EXPECT_EQ(advanced->text(), QStringLiteral("Show Advanced >>"));
    EXPECT_FALSE(child<QGroupBox>(dialog, "Frame3")->isVisible());
    click(advanced);
    EXPECT_EQ(advanced->text(), QStringLiteral("Hide Advanced <<"));
    EXPECT_TRUE(child<QGroupBox>(dialog, "Frame3")->isVisible());

    click(child<QCheckBox>(dialog, "chkMain(3)"));
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Advanced Archive Search"));
    click(child<QCheckBox>(dialog, "chkMain(3)"));
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Advanced Search"));
    click(child<QCheckBox>(dialog, "chkMain(0)"));
    EXPECT_TRUE(child<QLineEdit>(dialog, "Text1(0)")->isEnabled());
    click(child<QRadioButton>(dialog, "Option1(3)"));
    EXPECT_TRUE(child<QLineEdit>(dialog, "txtField(4)")->isEnabled());
    EXPECT_FALSE(child<QLineEdit>(dialog, "txtField(2)")->isEnabled());
}

TEST_F(SearchDialogsTest, ABadEntryKeepsTheDialogOpenWithTheFocusThere) {
    clsSearchTasks search;
    frmSearchTasks dialog;
    ASSERT_TRUE(dialog.Initialize(search));
    dialog.show();
    QApplication::setActiveWindow(&dialog);
    click(child<QCheckBox>(dialog, "chkMain(0)"));
    click(child<QPushButton>(dialog, "cmdSearch"));
    EXPECT_EQ(m_msgbox.texts(), QStringList{"You must enter valid search text for the task name."});
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_FALSE(dialog.searchAccepted());
    EXPECT_EQ(QApplication::focusWidget(), child<QLineEdit>(dialog, "Text1(0)"));
}

TEST_F(SearchDialogsTest, DateBoxesTakeDatesInTheLongForm) {
    clsSearchTasks search;
    frmSearchTasks dialog;
    ASSERT_TRUE(dialog.Initialize(search));
    auto* box = child<QLineEdit>(dialog, "txtField(0)");
    box->setText(QStringLiteral("2024-03-31"));
    DateFieldPicker::validateDateBox(box);
    EXPECT_EQ(box->text(), QStringLiteral("March 31, 2024"));
    box->setText(QStringLiteral("soon"));
    DateFieldPicker::validateDateBox(box);
    EXPECT_EQ(m_msgbox.texts(), QStringList{"You must enter a valid date."});
    child<DateFieldPicker>(dialog, "dtpField(0)")->pick(QDate(2024, 12, 1));
    EXPECT_EQ(box->text(), QStringLiteral("December 1, 2024"));
}

TEST_F(SearchDialogsTest, AnAcceptedTaskSearchBecomesTheTemplatesFilter) {
    frmDocument document;
    document.setInformationType(InformationKind::Tasks);
    document.IDList.addRow(1, {QStringLiteral("300"), QString()});
    whenShown<frmSearchTasks>([](frmSearchTasks& dialog) {
        click(dialog.findChild<QCheckBox*>(QStringLiteral("chkMain(0)")));
        QTest::keyClicks(dialog.findChild<QLineEdit*>(QStringLiteral("Text1(0)")),
                         QStringLiteral("GST"));
        click(dialog.findChild<QPushButton*>(QStringLiteral("cmdSearch")));
    });
    ASSERT_TRUE(selectRecipients(document));
    EXPECT_EQ(document.SQLFilter,
              QStringLiteral("scheduleName LIKE '*GST*' AND hideInTasks = False"));
    EXPECT_TRUE(document.IDList.isEmpty());
    EXPECT_EQ(m_msgbox.texts(), QStringList{"The tasks have been selected."});

    // Opened again, the dialog shows that search; Cancel changes nothing.
    whenShown<frmSearchTasks>([](frmSearchTasks& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>(QStringLiteral("Text1(0)"))->text(),
                  QStringLiteral("GST"));
        click(dialog.findChild<QPushButton*>(QStringLiteral("cmdCancel")));
    });
    EXPECT_FALSE(openTaskSearchForm(document));
    EXPECT_EQ(document.SQLFilter,
              QStringLiteral("scheduleName LIKE '*GST*' AND hideInTasks = False"));
}

TEST_F(SearchDialogsTest, TheAppointmentDialogSwitchesItsRowsAndSetsTheFilter) {
    frmDocument document;
    document.setInformationType(InformationKind::Appointments);
    whenShown<frmSearchAppointments>([](frmSearchAppointments& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Select the Appointments"));
        auto* tabs = child<QTabWidget>(dialog, "SSTab1");
        EXPECT_EQ(tabs->tabText(2), QStringLiteral("Search Appointment Times"));
        EXPECT_TRUE(child<QRadioButton>(dialog, "optDate(4)")->isChecked());
        EXPECT_EQ(child<QComboBox>(dialog, "cboStartTime(0)")->count(), 96);
        EXPECT_FALSE(child<QRadioButton>(dialog, "optStartTime(0)")->isEnabled());
        click(child<QCheckBox>(dialog, "chkMain(4)"));
        EXPECT_TRUE(child<QRadioButton>(dialog, "optStartTime(0)")->isEnabled());
        // "between" is chosen: its two boxes, and only they, take a time.
        EXPECT_TRUE(child<QComboBox>(dialog, "cboStartTime(3)")->isEnabled());
        EXPECT_FALSE(child<QComboBox>(dialog, "cboStartTime(4)")->isEnabled());
        child<QComboBox>(dialog, "cboStartTime(2)")->setEditText(QStringLiteral("8:00 AM"));
        child<QComboBox>(dialog, "cboStartTime(3)")->setEditText(QStringLiteral("9:30 AM"));
        click(child<QRadioButton>(dialog, "optDate(3)"));
        child<QLineEdit>(dialog, "txtField(4)")->setText(QStringLiteral("March 4, 2024"));
        click(child<QPushButton>(dialog, "cmdSearch"));
    });
    ASSERT_TRUE(selectRecipients(document));
    EXPECT_EQ(document.SQLFilter, QStringLiteral("DateFrom = #3/4/2024# AND TimeFrom >= #8:00:00 "
                                                 "AM# AND TimeFrom <= #9:30:00 AM#"));
    EXPECT_TRUE(m_msgbox.texts().isEmpty()); // found some: nothing is told
}

TEST_F(SearchDialogsTest, WithoutADatabaseNeitherDialogOpens) {
    m_context->database = nullptr;
    clsSearchTasks tasks;
    clsSearchAppointments appointments;
    frmSearchTasks taskDialog;
    frmSearchAppointments appointmentDialog;
    EXPECT_FALSE(taskDialog.Initialize(tasks));
    EXPECT_FALSE(appointmentDialog.Initialize(appointments));
    EXPECT_EQ(m_msgbox.texts(),
              (QStringList{"You cannot use the select tasks feature at this time.  You need to "
                           "open the Quillmere Pad from within Quillmere to link to the "
                           "client's data properly.",
                           "You cannot use the select appointments feature at this time.  You "
                           "need to open the Quillmere Pad from within Quillmere to link to the "
                           "client's data properly."}));
}

} // namespace
