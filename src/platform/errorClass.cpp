#include "platform/errorClass.h"

#include "platform/Clock.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTextStream>

QmError::QmError(int number, const QString& description)
    : std::runtime_error(description.toStdString()), m_number(number),
      m_description(description) {}

errorClass::errorClass(const Clock* clock) : m_clock(clock) {}

void errorClass::enterProcedure(const QString& tag) {
    m_tags << tag;
}

void errorClass::leaveProcedure() {
    if (!m_tags.isEmpty()) {
        m_tags.removeLast();
    }
}

void errorClass::noteUnwinding() {
    // The first scope to unwind sees the deepest stack; keep that one.
    if (m_faultTags.isEmpty()) {
        m_faultTags = m_tags;
    }
}

void errorClass::reportError(int number, const QString& description) {
    m_report = ErrorReport{};
    m_report.number = number;
    m_report.description = description;
    m_report.tagStack = m_faultTags.isEmpty() ? m_tags : m_faultTags;
    m_report.applicationName = m_applicationName;
    m_report.applicationVersion = m_applicationVersion;
    m_faultTags.clear();
}

void errorClass::reportError(const std::exception& fault) {
    if (const auto* qm = dynamic_cast<const QmError*>(&fault)) {
        reportError(qm->number(), qm->description());
    } else {
        reportError(QmError::Internal, QString::fromLocal8Bit(fault.what()));
    }
}

QString errorClass::logFilePath() const {
    if (m_logFolder.isEmpty()) {
        return {};
    }
    return QDir(m_logFolder).filePath(QStringLiteral("QuillmerePad-errors.log"));
}

void errorClass::presentError() {
    // The log comes first: whatever the user answers, the fault is on record.
    const QString path = logFilePath();
    if (!path.isEmpty()) {
        QDir().mkpath(m_logFolder);
        QFile log(path);
        if (log.open(QIODevice::Append | QIODevice::Text)) {
            QTextStream out(&log);
            const QDateTime when = m_clock ? m_clock->now() : QDateTime::currentDateTime();
            out << when.toString(Qt::ISODate) << ' ' << m_applicationName << ' '
                << m_applicationVersion << " error " << m_report.number << ": "
                << m_report.description << '\n';
            for (const QString& tag : m_report.tagStack) {
                out << "    at " << tag << '\n';
            }
        }
    }
    m_action = m_prompt ? m_prompt(m_report) : Leave;
}

int errorClass::handle(const std::exception& fault) {
    reportError(fault);
    presentError();
    if (m_action == EndProgram && m_exitHook) {
        m_exitHook();
    }
    return m_action;
}

ProcedureScope::ProcedureScope(errorClass* errors, const QString& tag)
    : m_errors(errors), m_uncaught(std::uncaught_exceptions()) {
    if (m_errors) {
        m_errors->enterProcedure(tag);
    }
}

ProcedureScope::~ProcedureScope() {
    if (!m_errors) {
        return;
    }
    if (std::uncaught_exceptions() > m_uncaught) {
        m_errors->noteUnwinding();
    }
    m_errors->leaveProcedure();
}

bool runGuarded(errorClass* errors, const std::function<void()>& work) {
    try {
        work();
        return true;
    } catch (const std::exception& fault) {
        if (errors) {
            errors->handle(fault);
        }
        return false;
    }
}
