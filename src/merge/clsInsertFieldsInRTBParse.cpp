#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "merge/MergeLookups.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/errorClass.h"
#include "platform/text/stringControl.h"

#include <algorithm>

namespace {

// The values of one record, read with the columns chosen for the template
// (none: whole rows).
class RecordValues : public PlaceholderValues {
public:
    RecordValues(MergeRecordReader& reader, const MergeRecordIDs& ids, bool useSamples, bool inRTF,
                 const MergeRecordReader::ColumnChoice* columns, QStringList* suspects)
        : m_reader(reader), m_ids(ids), m_samples(useSamples), m_rtf(inRTF), m_columns(columns),
          m_suspects(suspects) {}

    QString dataField(const QString& name) override {
        QString value = m_reader.getDataField(name, m_ids, m_samples, m_rtf, m_columns);
        // Values go into the RTF as they are; these characters can end or
        // reformat the letter, so the practice is told of them.
        static const QString breaking = QStringLiteral("\\{}\u00AB\u00BB");
        if (m_suspects && std::any_of(value.cbegin(), value.cend(),
                                      [](QChar c) { return breaking.contains(c); })) {
            m_suspects->append(name + QStringLiteral(": ") + value);
        }
        return value;
    }
    QString dataDateField(const QString& name, const QString& format) override {
        return m_reader.getDataDateField(name, format, m_ids, m_samples, m_rtf, m_columns);
    }

private:
    MergeRecordReader& m_reader;
    MergeRecordIDs m_ids;
    bool m_samples;
    bool m_rtf;
    const MergeRecordReader::ColumnChoice* m_columns;
    QStringList* m_suspects;
};

QString placeholder(const QString& body) {
    return MergeSyntax::kOpen + body + MergeSyntax::kClose;
}

} // namespace

QString clsInsertFieldsInRTB::parseRTBComment(const QString& text, int companyID, int contactID,
                                              int scheduleID, int firmID, int appointmentID,
                                              int docketID, int taskID, bool useSamples, bool inRTF,
                                              bool contactNameForCompany) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-clsInsertFieldsInRTB-parseRTBComment");
    m_emptyPlaceholders.clear();
    m_reader.clearMissingColumns();
    m_suspectValues.clear();
    const bool contactForCompany = contactNameForCompany && companyID < 1 && contactID >= 1;

    if (fieldTable().isEmpty()) {
        std::optional<InformationKind> type;
        if (MergeLookups::validAppointmentID(appointmentID)) {
            type = InformationKind::Appointments;
        } else if (MergeLookups::validTaskID(taskID)) {
            type = InformationKind::WorkListTasks;
        } else if (MergeLookups::validDocketID(docketID)) {
            type = InformationKind::Dockets;
        } else if (MergeLookups::validScheduleID(scheduleID)) {
            type = InformationKind::Tasks;
        } else if (MergeLookups::validCompanyID(companyID) ||
                   MergeLookups::validContactID(contactID)) {
            type = InformationKind::CompaniesAndContacts;
        }
        if (type) {
            createDefaultFieldListStructure(*type, true, false);
        }
    }
    if (fieldTable().isEmpty()) {
        return text;
    }

    const MergeRecordIDs ids{companyID,     contactID, scheduleID, firmID,
                             appointmentID, docketID,  taskID};
    if (inRTF && m_fastSubstitution) {
        // Reads fetch only the columns this template asks for.
        const QStringList names =
            m_substitution.lookedUpNames(text, fieldTable(), tableGeneration(), contactForCompany);
        RecordValues values(m_reader, ids, useSamples, inRTF, &columnsFor(names), &m_suspectValues);
        QString result;
        m_substitution.substitute(text, fieldTable(), tableGeneration(), contactForCompany, values,
                                  result, &m_emptyPlaceholders);
        return result;
    }
    RecordValues values(m_reader, ids, useSamples, inRTF, nullptr, &m_suspectValues);
    return literalParse(text, inRTF, contactForCompany, values);
}

const MergeRecordReader::ColumnChoice& clsInsertFieldsInRTB::columnsFor(const QStringList& names) {
    if (!m_choice || m_chosenGeneration != tableGeneration() || names != m_chosenNames) {
        m_choice = m_reader.chooseColumns(names);
        m_chosenNames = names;
        m_chosenGeneration = tableGeneration();
    }
    return *m_choice;
}

QString clsInsertFieldsInRTB::literalParse(const QString& text, bool inRTF, bool contactForCompany,
                                           PlaceholderValues& values) {
    const QString searchCopy = mergeSearchCopy(text, contactForCompany);
    QString real = text;
    auto fill = [&](const QString& body, const QString& value) {
        const QString token = placeholder(body);
        if (value.isEmpty() &&
            real.contains(inRTF ? convertFieldName(token) : token, Qt::CaseInsensitive)) {
            m_emptyPlaceholders << body;
        }
        replaceText(real, token, value, inRTF);
    };
    const QStringList& formats = MergeSyntax::dateFormats();
    for (const QString& format : formats) {
        const QString body = QStringLiteral("(Todays Date, ") + format + QLatin1Char(')');
        if (searchCopy.contains(placeholder(body), Qt::CaseInsensitive)) {
            fill(body, values.dataDateField(QStringLiteral("Todays Date"), format));
        }
    }
    for (int row = 1; row <= fieldTable().rowCount(); ++row) {
        const QString name = fieldTable().value(row, EnglishName);
        const QString type = fieldTable().value(row, FieldType);
        if (type == QLatin1String("Date")) {
            for (int f = 0; f < formats.size(); ++f) {
                const QString body = QLatin1Char('(') + name + QStringLiteral(", ") +
                                     formats.at(f) + QLatin1Char(')');
                if (searchCopy.contains(placeholder(body), Qt::CaseInsensitive)) {
                    fill(body, values.dataDateField(name, MergeSyntax::fieldDateFormat(f)));
                }
            }
        } else if (searchCopy.contains(placeholder(name), Qt::CaseInsensitive)) {
            fill(name, MergeSyntax::plainValue(values, name, type));
        }
    }
    replaceUnfoundMergeFieldsWithBlanks(real);
    return real;
}

QString clsInsertFieldsInRTB::createDisplayTextByID(int userID, int itemKind, int companyID,
                                                    int contactID, int itemID) {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-clsInsertFieldsInRTB-createDisplayTextByID");
    return calendarText(userID, CalendarItemKind(itemKind), companyID, contactID, itemID, false);
}

QString clsInsertFieldsInRTB::createTitleBarTextByID(int userID, int itemKind, int companyID,
                                                     int contactID, int itemID) {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-clsInsertFieldsInRTB-createTitleBarTextByID");
    return calendarText(userID, CalendarItemKind(itemKind), companyID, contactID, itemID, true);
}

QString clsInsertFieldsInRTB::calendarText(int userID, CalendarItemKind kind, int companyID,
                                           int contactID, int itemID, bool titleBar) {
    QString prefix;
    QString defaultText;
    switch (kind) {
    case CalendarItemKind::Appointment:
        prefix = QStringLiteral("Appt");
        defaultText = QStringLiteral("\u00ABAppointment Name\u00BB for \u00ABCompany Name\u00BB\r\n"
                                     "\u00ABAppointment Start Time\u00BB to \u00ABAppointment End "
                                     "Time\u00BB");
        break;
    case CalendarItemKind::Docket:
        prefix = QStringLiteral("Docket");
        defaultText = QStringLiteral(
            "\u00ABDocket Start Time\u00BB to \u00ABDocket End Time\u00BB\r\n\u00ABAppointment "
            "Name\u00BB \u00ABTask Name\u00BB \u00ABCompany Name\u00BB\r\n\u00ABDocket Name\u00BB");
        break;
    case CalendarItemKind::Task:
        prefix = QStringLiteral("Task");
        defaultText = QStringLiteral("\u00ABTask Name\u00BB for \u00ABCompany Name\u00BB\r\n"
                                     "\u00ABTask Start Time\u00BB to \u00ABTask End Time\u00BB");
        break;
    default:
        return QString();
    }

    QString setting;
    QString before;
    QString after;
    databaseControl* db = app().database;
    if (db && db->isConnected()) {
        const QString sql =
            QStringLiteral(
                "SELECT UserCalendarSettings.* FROM UserCalendarSettings WHERE UserIDNum = ") +
            QString::number(userID) + QLatin1Char(';');
        int rs =
            db->openRecordset(sql, databaseControl::KeysetCursor, databaseControl::OptimisticLock);
        if (!db->hasRecords(rs)) {
            db->addNew(rs);
            db->setField(rs, QStringLiteral("UserIDNum"), userID);
            db->saveRecord(rs);
        }
        auto read = [&](const QString& column) {
            if (!db->hasField(rs, column)) {
                return QString();
            }
            const QVariant v = db->getField(rs, column);
            return stringControl::isBlank(v) ? QString() : v.toString();
        };
        setting =
            read(prefix + (titleBar ? QStringLiteral("TitleBarText") : QStringLiteral("Template")));
        if (kind == CalendarItemKind::Appointment && !titleBar) {
            before = read(QStringLiteral("BeforeAppointmentText"));
            after = read(QStringLiteral("AfterAppointmentText"));
        }
        db->closeRecordset(rs);
    }

    QString templateText;
    if (titleBar) {
        templateText = setting;
        if (!stringControl::isBlank(templateText) && !templateText.contains(MergeSyntax::kOpen)) {
            templateText = placeholder(templateText);
        }
        if (stringControl::isBlank(templateText)) {
            templateText = defaultText;
        }
    } else {
        templateText = stringControl::isBlank(setting) || setting == QLatin1String("Text Constant")
                           ? defaultText
                           : setting;
        if (!before.isEmpty()) {
            templateText = before + QStringLiteral("\r\n") + templateText;
        }
        if (!after.isEmpty()) {
            templateText += QStringLiteral("\r\n") + after;
        }
    }

    const bool appointment = kind == CalendarItemKind::Appointment;
    const bool docket = kind == CalendarItemKind::Docket;
    // Each kind's catalogue has a row the others lack.
    const QString ownRow = appointment ? QStringLiteral("Appointment Name")
                           : docket    ? QStringLiteral("Docket Name")
                                       : QStringLiteral("Task Start Time");
    if (fieldTable().isEmpty() || fieldTable().find(ownRow, EnglishName) < 0) {
        createDefaultFieldListStructure(appointment ? InformationKind::Appointments
                                        : docket    ? InformationKind::Dockets
                                                    : InformationKind::WorkListTasks,
                                        true, false);
    }
    return parseRTBComment(templateText, companyID, contactID, -1, -1, appointment ? itemID : -1,
                           docket ? itemID : -1, kind == CalendarItemKind::Task ? itemID : -1,
                           false, false, false);
}
