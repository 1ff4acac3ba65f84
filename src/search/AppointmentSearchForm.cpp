#include "search/AppointmentSearchForm.h"

#include "context/AppContext.h"
#include "data/modDatabaseFunctions.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"
#include "platform/text/VBFormat.h"
#include "search/clsSearchAppointments.h"

namespace {

const QString kLongDate = QStringLiteral("mmmm d, yyyy");
const QString kTime = QStringLiteral("h:nn AM/PM");

std::optional<QDate> dateOf(const QString& text) {
    const auto moment = VBFormat::toDateTime(text);
    if (!moment) {
        return std::nullopt;
    }
    return moment->date();
}

std::optional<QTime> timeOf(const QString& text) {
    const auto moment = VBFormat::toDateTime(text);
    if (!moment) {
        return std::nullopt;
    }
    return moment->time();
}

QString shownDate(const QDate& date) {
    return date.isValid() ? VBFormat::formatDate(date, kLongDate) : QString();
}

QString shownTime(const QString& text) {
    return normalizedTimeText(text).value_or(text);
}

} // namespace

std::optional<QString> normalizedTimeText(const QString& text) {
    if (text.trimmed().isEmpty()) {
        return QString();
    }
    const auto time = timeOf(text);
    if (!time) {
        return std::nullopt;
    }
    return VBFormat::formatDate(QDateTime(QDate(1899, 12, 30), *time), kTime);
}

QStringList AppointmentSearchForm::quarterHours() {
    QStringList out;
    for (int minutes = 0; minutes < 24 * 60; minutes += 15) {
        const QTime time(minutes / 60, minutes % 60);
        out << VBFormat::formatDate(QDateTime(QDate(1899, 12, 30), time), kTime);
    }
    return out;
}

QStringList AppointmentSearchForm::dateOptionCaptions() {
    return {QStringLiteral("Find appointments on or after:"),
            QStringLiteral("Find appointments on or before:"),
            QStringLiteral("Find appointments between:"), QStringLiteral("Find appointments on:"),
            QStringLiteral("Find appointments in all dates:")};
}

QStringList AppointmentSearchForm::startOptionCaptions() {
    return {QStringLiteral("Find only appointments starting at or after:"),
            QStringLiteral("Find only appointments starting at or before:"),
            QStringLiteral("Find only appointments that start between:"),
            QStringLiteral("Find only appointments starting at:")};
}

QStringList AppointmentSearchForm::endOptionCaptions() {
    return {QStringLiteral("Find only appointments ending at or after:"),
            QStringLiteral("Find only appointments ending at or before:"),
            QStringLiteral("Find only appointments that end between:"),
            QStringLiteral("Find only appointments ending at:")};
}

int AppointmentSearchForm::dateMatchForOption(int option) {
    return option == 4 ? 5 : timeMatchForOption(option);
}

int AppointmentSearchForm::optionForDateMatch(int dateMatch) {
    return dateMatch == 5 ? 4 : optionForTimeMatch(dateMatch);
}

int AppointmentSearchForm::timeMatchForOption(int option) {
    switch (option) {
    case 0:
        return 1;
    case 1:
        return 2;
    case 3:
        return 3;
    default:
        return 4;
    }
}

int AppointmentSearchForm::optionForTimeMatch(int timeMatch) {
    switch (timeMatch) {
    case 1:
        return 0;
    case 2:
        return 1;
    case 3:
        return 3;
    default:
        return 2;
    }
}

QList<int> AppointmentSearchForm::boxesOfOption(int option) {
    switch (option) {
    case 0:
        return {0};
    case 1:
        return {1};
    case 2:
        return {2, 3};
    case 3:
        return {4};
    default:
        return {};
    }
}

AppointmentSearchForm AppointmentSearchForm::fromCriteria(const clsSearchAppointments& search) {
    AppointmentSearchForm form;
    form.searchBySubject = search.searchBySubject;
    form.subject = search.subjectText;
    if (search.searchByContact && search.contactID > 0) {
        form.searchByClient = true;
        form.clientItem = -search.contactID;
    } else {
        form.searchByClient = search.searchByCompany;
        if (search.companyID > 0) {
            form.clientItem = search.companyID;
        }
    }
    form.searchByUser = search.searchByUser;
    if (search.userID > 0) {
        form.userID = search.userID;
    }
    form.searchByColour = search.searchByColour;
    form.colour = search.backColour;
    form.dateOption = optionForDateMatch(search.dateMatch);
    const QString first = shownDate(search.firstDate);
    form.dates = {first, first, first, shownDate(search.secondDate), first};
    form.searchByStartTime = search.searchByStartTime;
    form.startOption = optionForTimeMatch(search.startTimeMatch);
    const QString firstStart = shownTime(search.firstStartTime);
    form.startTimes = {firstStart, firstStart, firstStart, shownTime(search.secondStartTime),
                       firstStart};
    form.searchByEndTime = search.searchByEndTime;
    form.endOption = optionForTimeMatch(search.endTimeMatch);
    const QString firstEnd = shownTime(search.firstEndTime);
    form.endTimes = {firstEnd, firstEnd, firstEnd, shownTime(search.secondEndTime), firstEnd};
    return form;
}

std::optional<AppointmentSearchForm::Fault>
AppointmentSearchForm::save(clsSearchAppointments& search, MsgboxClass& msgbox) const {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmSearchAppointments-saveSettings");
    clsSearchAppointments out = search;
    auto fail = [&](const QString& message, Control control,
                    int index = 0) -> std::optional<Fault> {
        msgbox.showMessage(message);
        return Fault{message, control, index};
    };
    if (searchBySubject && subject.trimmed().isEmpty()) {
        return fail(QStringLiteral("You must enter valid search text for the appointment name."),
                    Control::Subject);
    }
    out.searchBySubject = searchBySubject;
    out.subjectText = subject;

    out.searchByCompany = false;
    out.searchByContact = false;
    if (searchByClient) {
        const QString clientMessage =
            QStringLiteral("You must select a valid client from the drop down list.");
        if (!clientItem || *clientItem == 0) {
            return fail(clientMessage, Control::Client);
        }
        if (*clientItem < 0) {
            if (!validContactID(QString::number(-*clientItem))) {
                return fail(clientMessage, Control::Client);
            }
            out.searchByContact = true;
            out.contactID = -*clientItem;
        } else {
            if (!validCompanyID(QString::number(*clientItem))) {
                return fail(clientMessage, Control::Client);
            }
            out.searchByCompany = true;
            out.companyID = *clientItem;
        }
    }
    if (searchByUser && !userID) {
        return fail(QStringLiteral("You must select a valid user name."), Control::User);
    }
    out.searchByUser = searchByUser;
    if (searchByUser) {
        out.userID = *userID;
    }
    out.searchByColour = searchByColour;
    out.backColour = colour;

    const QList<int> dateBoxes = boxesOfOption(dateOption);
    if (dateBoxes.size() == 2) {
        const auto from = dateOf(dates[std::size_t(dateBoxes[0])]);
        if (!from) {
            return fail(QStringLiteral("You must select a valid start date."), Control::DateBox,
                        dateBoxes[0]);
        }
        const auto to = dateOf(dates[std::size_t(dateBoxes[1])]);
        if (!to) {
            return fail(QStringLiteral("You must select a valid end date."), Control::DateBox,
                        dateBoxes[1]);
        }
        if (*to < *from) {
            return fail(QStringLiteral("You must select an end date that is greater than or "
                                       "equal to the start date."),
                        Control::DateBox, dateBoxes[1]);
        }
        out.firstDate = *from;
        out.secondDate = *to;
    } else if (dateBoxes.size() == 1) {
        const auto date = dateOf(dates[std::size_t(dateBoxes[0])]);
        if (!date) {
            return fail(QStringLiteral("You must select a valid date."), Control::DateBox,
                        dateBoxes[0]);
        }
        out.firstDate = *date;
    }
    out.dateMatch = qint16(dateMatchForOption(dateOption));

    // The start and end rows have the same checks and messages.
    auto timeRow = [&](bool on, int option, const std::array<QString, BoxCount>& boxes,
                       Control control, QString& first, QString& second,
                       qint16& match) -> std::optional<Fault> {
        if (!on) {
            return std::nullopt;
        }
        const QList<int> used = boxesOfOption(option);
        const auto from = timeOf(boxes[std::size_t(used[0])]);
        if (!from) {
            return fail(QStringLiteral("You must select a valid start time."), control, used[0]);
        }
        first = *normalizedTimeText(boxes[std::size_t(used[0])]);
        if (used.size() == 2) {
            const auto to = timeOf(boxes[std::size_t(used[1])]);
            if (!to) {
                return fail(QStringLiteral("You must select a valid end time."), control, used[1]);
            }
            if (*to < *from) {
                return fail(QStringLiteral("You must select an end time that is greater than or "
                                           "equal to the start time."),
                            control, used[1]);
            }
            second = *normalizedTimeText(boxes[std::size_t(used[1])]);
        }
        match = qint16(timeMatchForOption(option));
        return std::nullopt;
    };
    out.searchByStartTime = searchByStartTime;
    if (auto fault = timeRow(searchByStartTime, startOption, startTimes, Control::StartTime,
                             out.firstStartTime, out.secondStartTime, out.startTimeMatch)) {
        return fault;
    }
    out.searchByEndTime = searchByEndTime;
    if (auto fault = timeRow(searchByEndTime, endOption, endTimes, Control::EndTime,
                             out.firstEndTime, out.secondEndTime, out.endTimeMatch)) {
        return fault;
    }

    // The count builds the filter afresh; the filter escapes the subject in
    // place, so the typed text is put back for the next build (the merge's)
    // to escape it once again from what the user wrote.
    const int count = out.appointmentFilterCount();
    out.subjectText = subject;
    search = out;
    if (count < 1) {
        msgbox.showMessage(
            QStringLiteral("There are no appointments that match the criteria you have chosen."));
    }
    return std::nullopt;
}
