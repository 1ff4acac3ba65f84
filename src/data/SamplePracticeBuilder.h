#pragma once

// Internal to the sample practice generator, shared by its source files.

#include "data/SamplePractice.h"
#include "data/SamplePracticeTables.h"
#include "platform/errorClass.h"

#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QVariantList>
#include <map>
#include <memory>
#include <random>
#include <vector>

namespace SamplePracticeDetail {

using namespace SamplePracticeTables;

// Deterministic on every platform: the standard distributions are not.
class Random {
public:
    explicit Random(quint32 seed) : m_engine(seed) {}
    int below(int n) { return n <= 1 ? 0 : int(m_engine() % quint32(n)); }
    bool chance(int percent) { return below(100) < percent; }
    template <typename T, size_t N> const T& pick(const T (&items)[N]) {
        return items[below(int(N))];
    }

private:
    std::mt19937 m_engine;
};

// One prepared INSERT a table.
class Inserter {
public:
    Inserter(QSqlDatabase& db, const QString& table, const QStringList& columns)
        : m_query(db), m_table(table) {
        QStringList marks;
        for (int i = 0; i < columns.size(); ++i)
            marks << QStringLiteral("?");
        if (!m_query.prepare(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                 .arg(table, columns.join(QStringLiteral(", ")),
                                      marks.join(QStringLiteral(", ")))))
            throw QmError(QmError::DatabaseError, m_query.lastError().text());
    }
    void insert(const QVariantList& values) {
        for (int i = 0; i < values.size(); ++i)
            m_query.bindValue(i, values[i]);
        if (!m_query.exec())
            throw QmError(
                QmError::DatabaseError,
                QStringLiteral("Cannot write %1: %2").arg(m_table, m_query.lastError().text()));
    }

private:
    QSqlQuery m_query;
    QString m_table;
};

inline QString iso(const QDate& d) {
    return d.toString(QStringLiteral("yyyy-MM-dd"));
}
inline QString timeOfDay(int hour, int minute) {
    return QStringLiteral("1899-12-30 %1:%2:00")
        .arg(hour, 2, 10, QLatin1Char('0'))
        .arg(minute, 2, 10, QLatin1Char('0'));
}

class Builder {
public:
    Builder(QSqlDatabase& db, const SamplePracticeOptions& options)
        : m_db(db), m_options(options), m_random(options.seed), m_today(options.referenceDate) {}

    SamplePracticeSummary build();

private:
    struct Person {
        QString first;
        QString last;
        QString display() const { return first + u' ' + last; }
    };
    Person person() {
        return {QString::fromUtf8(m_random.pick(FirstNames)),
                QString::fromUtf8(m_random.pick(LastNames))};
    }
    QString phone(const City& c) {
        return QStringLiteral("(%1) %2-%3")
            .arg(QLatin1String(c.area))
            .arg(200 + m_random.below(800))
            .arg(1000 + m_random.below(9000));
    }
    QString email(const QString& who, const QString& domain) {
        QString local = who.toLower();
        local.remove(u'\'');
        local.replace(u' ', u'.');
        return local.normalized(QString::NormalizationForm_KD)
                   .remove(QRegularExpression(QStringLiteral("[^a-z.]"))) +
               u'@' + domain;
    }
    QString domainOf(const QString& company) {
        QString d = company.toLower().normalized(QString::NormalizationForm_KD);
        d.remove(QRegularExpression(QStringLiteral("[^a-z]")));
        return d.left(18) + QStringLiteral(".ca");
    }
    int taxYear() const {
        return m_today > QDate(m_today.year(), 4, 30) ? m_today.year() : m_today.year() - 1;
    }

    void firm();
    void categories();
    void labels();
    int contact(const Person& p, const City& c, const QString& company, int companyID, bool couple,
                const Person& spouse);
    void businessClient(int index);
    void personalTaxClient(int contactID, bool standalone);
    void workItems(int clientDataID, int companyID, int contactID);

    QSqlDatabase& m_db;
    SamplePracticeOptions m_options;
    Random m_random;
    QDate m_today;
    SamplePracticeSummary m_summary;
    std::map<QString, std::unique_ptr<Inserter>> m_inserters;

    Inserter& into(const QString& table, const QStringList& columns) {
        const QString key = table + u'|' + columns.join(u',');
        auto& slot = m_inserters[key];
        if (!slot)
            slot = std::make_unique<Inserter>(m_db, table, columns);
        return *slot;
    }
    Inserter& companiesNotes() {
        return into(QStringLiteral("CompaniesNotes"),
                    {QStringLiteral("CompanyNum"), QStringLiteral("BusinessNotes"),
                     QStringLiteral("ContactNotes"), QStringLiteral("Notes")});
    }

    int m_nextContactID = 1;
    int m_nextCompanyID = 1;
    int m_nextClientDataID = 1;
    int m_nextScheduleID = 1;
    int m_nextTaskID = 1;
    int m_nextAppointmentID = 1;
    int m_nextDocketID = 1;
    int m_mainCategory = 1;
    int m_businessCategory = 2;
    int m_personalCategory = 3;
    int m_firmCategory = 4;
    std::vector<int> m_userCategories;
    std::vector<int> m_taxYearCategories;         // oldest first; the last is the current year
    std::vector<std::pair<int, QString>> m_staff; // ContactID, display name
};

} // namespace SamplePracticeDetail
