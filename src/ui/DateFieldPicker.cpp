#include "ui/DateFieldPicker.h"

#include "context/AppContext.h"
#include "platform/MsgboxClass.h"
#include "platform/text/VBFormat.h"
#include "search/TaskSearchForm.h"

#include <QCalendarWidget>
#include <QLineEdit>
#include <QMenu>
#include <QTimer>
#include <QWidgetAction>

DateFieldPicker::DateFieldPicker(QLineEdit* box, QWidget* parent)
    : QToolButton(parent), m_box(box), m_menu(new QMenu(this)),
      m_calendar(new QCalendarWidget(m_menu)) {
    setText(QStringLiteral("..."));
    setPopupMode(QToolButton::InstantPopup);
    setAccessibleName(QStringLiteral("Pick a date"));
    auto* holder = new QWidgetAction(m_menu);
    holder->setDefaultWidget(m_calendar);
    m_menu->addAction(holder);
    setMenu(m_menu);
    connect(m_menu, &QMenu::aboutToShow, this, [this] {
        if (const auto moment = VBFormat::toDateTime(m_box->text())) {
            m_calendar->setSelectedDate(moment->date());
        }
    });
    connect(m_calendar, &QCalendarWidget::clicked, this, [this](const QDate& date) {
        pick(date);
        m_menu->hide();
    });
    connect(m_box, &QLineEdit::editingFinished, m_box, [box] { validateDateBox(box); });
}

void DateFieldPicker::pick(const QDate& date) {
    m_box->setText(VBFormat::formatDate(date, QStringLiteral("mmmm d, yyyy")));
}

void DateFieldPicker::validateDateBox(QLineEdit* box) {
    const auto text = normalizedDateText(box->text());
    if (text) {
        box->setText(*text);
        return;
    }
    if (MsgboxClass* msgbox = app().msgbox) {
        msgbox->showMessage(QStringLiteral("You must enter a valid date."));
    }
    // After the message has gone, so that its own focus change does not
    // check the box a second time.
    QTimer::singleShot(0, box, [box] { box->setFocus(); });
}
