#pragma once

#include "data/JetSqlTranslator.h"

#include <QHash>
#include <QString>

// Translations of record-set statements, kept by their shape: the text with
// each number that follows a comparison ("CompanyID=123") taken out. The
// program reopens the same statement for every client with another ID, so
// one translation serves them all; the result is exactly what
// JetSqlTranslator::translate gives for the full text.
//
// Bounded: when full, the kept shapes are dropped and it starts again, so a
// run of distinct statements costs memory once over. A text with a "?" of
// its own, or a literal that is never closed, is translated every time
// (and the translator reports the fault).
class TranslationCache {
public:
    explicit TranslationCache(qsizetype capacity = 512) : m_capacity(capacity) {}

    // The engine translations are written for; changing it forgets the kept
    // shapes.
    void setDialect(SqlDialect dialect) {
        if (dialect != m_dialect)
            m_shapes.clear();
        m_dialect = dialect;
    }

    // Throws as JetSqlTranslator::translate does.
    TranslatedSql translate(const QString& jetSql);

    qsizetype size() const { return m_shapes.size(); }

private:
    qsizetype m_capacity;
    SqlDialect m_dialect = SqlDialect::Sqlite;
    QHash<QString, TranslatedSql> m_shapes;
};
