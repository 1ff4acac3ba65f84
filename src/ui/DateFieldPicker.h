#pragma once

#include <QToolButton>

class QCalendarWidget;
class QDate;
class QLineEdit;
class QMenu;

// The date picker beside a date box of the search dialogs: its drop-down
// opens on the box's date when the box holds one, and a picked date is
// written into the box in the long form ("March 5, 2024").
class DateFieldPicker : public QToolButton {
    Q_OBJECT
public:
    DateFieldPicker(QLineEdit* box, QWidget* parent);

    // What a click on a day of the calendar does.
    void pick(const QDate& date);

    // The check of a date box when the user leaves it: a date is rewritten
    // in the long form, an empty box is allowed, anything else gives "You
    // must enter a valid date." and the focus goes back to the box.
    static void validateDateBox(QLineEdit* box);

private:
    QLineEdit* m_box;
    QMenu* m_menu;
    QCalendarWidget* m_calendar;
};
