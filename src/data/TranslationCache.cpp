#include "data/TranslationCache.h"

#include <optional>

namespace {

struct Shape {
    QString text;
    QVariantList numbers; // in the order of their "?"
};

bool isWordChar(QChar c) {
    return c.isLetterOrNumber() || c == u'_' || c == u'$';
}

// The end of the literal opened at `i` by `close`, behind its closing mark,
// or -1. A doubled quote inside a quoted literal stands for one.
qsizetype skipLiteral(const QString& sql, qsizetype i, QChar close, bool doubling) {
    const qsizetype n = sql.size();
    for (qsizetype j = i + 1; j < n; ++j) {
        if (sql[j] != close)
            continue;
        if (doubling && j + 1 < n && sql[j + 1] == close) {
            ++j;
            continue;
        }
        return j + 1;
    }
    return -1;
}

// Reads the text as the translator's tokenizer does, far enough to find the
// numbers that stand right after a comparison operator: exactly those the
// translator lifts into parameters unchanged.
std::optional<Shape> shapeOf(const QString& sql) {
    Shape shape;
    const qsizetype n = sql.size();
    qsizetype copied = 0;
    qsizetype i = 0;
    while (i < n) {
        const QChar c = sql[i];
        if (c == u'\'' || c == u'"' || c == u'[' || c == u'#') {
            const QChar close = c == u'[' ? QChar(u']') : c;
            i = skipLiteral(sql, i, close, c == u'\'' || c == u'"');
            if (i < 0)
                return std::nullopt;
        } else if (c == u'?') {
            return std::nullopt;
        } else if (c == u'<' || c == u'>' || c == u'=' || c == u'!') {
            ++i;
            while (i < n && (sql[i] == u'<' || sql[i] == u'>' || sql[i] == u'='))
                ++i;
            qsizetype start = i;
            while (start < n && sql[start].isSpace())
                ++start;
            if (start >= n || !(sql[start].isDigit() ||
                                (sql[start] == u'.' && start + 1 < n && sql[start + 1].isDigit())))
                continue;
            qsizetype end = start;
            bool dot = false;
            while (end < n && (sql[end].isDigit() || (sql[end] == u'.' && !dot))) {
                if (sql[end] == u'.')
                    dot = true;
                ++end;
            }
            if (end < n && isWordChar(sql[end])) {
                i = end; // a name that starts with a digit
                continue;
            }
            const QString number = sql.mid(start, end - start);
            shape.numbers << (dot ? QVariant(number.toDouble()) : QVariant(number.toLongLong()));
            shape.text += QStringView(sql).mid(copied, start - copied);
            shape.text += u'?';
            copied = end;
            i = end;
        } else if (isWordChar(c)) {
            while (i < n && isWordChar(sql[i]))
                ++i;
        } else {
            ++i;
        }
    }
    shape.text += QStringView(sql).mid(copied);
    return shape;
}

} // namespace

TranslatedSql TranslationCache::translate(const QString& jetSql) {
    std::optional<Shape> shape = shapeOf(jetSql);
    if (!shape)
        return JetSqlTranslator::translate(jetSql, {}, m_dialect);
    auto found = m_shapes.constFind(shape->text);
    if (found == m_shapes.constEnd()) {
        // Translated before it is kept, so a text that fails is never kept.
        TranslatedSql translated = JetSqlTranslator::translate(shape->text, {}, m_dialect);
        if (translated.placeholders.size() != size_t(shape->numbers.size()))
            return JetSqlTranslator::translate(jetSql, {}, m_dialect);
        if (m_shapes.size() >= m_capacity)
            m_shapes.clear();
        found = m_shapes.insert(shape->text, std::move(translated));
    }
    TranslatedSql result;
    result.sql = found->sql;
    result.parameters = found->parameters;
    for (size_t k = 0; k < found->placeholders.size(); ++k)
        result.parameters[found->placeholders[k]] = shape->numbers[qsizetype(k)];
    return result;
}
