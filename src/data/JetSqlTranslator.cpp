#include "data/JetSqlTranslator.h"

#include "data/ClientDatabaseSchema.h"
#include "platform/errorClass.h"

#include <QRegularExpression>
#include <utility>
#include <vector>

namespace {

enum class Kind { Space, Word, Bracketed, Text, Date, Number, Operator, Punct };

struct Token {
    Kind kind;
    QString text;   // as written (for Text: the value, unquoted)
    QVariant value; // Text, Date, Number
};

bool isWordStart(QChar c) {
    return c.isLetter() || c == u'_';
}
bool isWordChar(QChar c) {
    return c.isLetterOrNumber() || c == u'_' || c == u'$';
}

[[noreturn]] void fail(const QString& text) {
    throw QmError(QmError::DatabaseError, text);
}

std::vector<Token> tokenize(const QString& sql) {
    std::vector<Token> out;
    const qsizetype n = sql.size();
    qsizetype i = 0;
    while (i < n) {
        const QChar c = sql[i];
        if (c.isSpace()) {
            qsizetype j = i;
            while (j < n && sql[j].isSpace())
                ++j;
            out.push_back({Kind::Space, sql.mid(i, j - i), {}});
            i = j;
        } else if (c == u'\'' || c == u'"') {
            qsizetype j = i;
            const std::optional<QString> literal = JetSqlTranslator::readQuoted(sql, i, j);
            if (!literal)
                fail(QStringLiteral("Unterminated text literal in SQL statement: %1").arg(sql));
            out.push_back({Kind::Text, *literal, *literal});
            i = j;
        } else if (c == u'[') {
            const qsizetype j = sql.indexOf(u']', i + 1);
            if (j < 0)
                fail(QStringLiteral("Unterminated name in brackets in SQL statement: %1").arg(sql));
            out.push_back({Kind::Bracketed, sql.mid(i, j - i + 1), {}});
            i = j + 1;
        } else if (c == u'#') {
            const qsizetype j = sql.indexOf(u'#', i + 1);
            if (j < 0)
                fail(QStringLiteral("Unterminated date literal in SQL statement: %1").arg(sql));
            const QString inner = sql.mid(i + 1, j - i - 1).trimmed();
            const auto parsed = JetSqlTranslator::parseDateLiteral(inner);
            if (!parsed)
                fail(QStringLiteral("Bad date literal #%1# in SQL statement").arg(inner));
            static const QRegularExpression hasTime(QStringLiteral(":"));
            static const QRegularExpression hasDate(QStringLiteral("[/-]"));
            const QString stored = JetSqlTranslator::storageText(*parsed, inner.contains(hasDate),
                                                                 inner.contains(hasTime));
            out.push_back({Kind::Date, sql.mid(i, j - i + 1), stored});
            i = j + 1;
        } else if (c.isDigit() || (c == u'.' && i + 1 < n && sql[i + 1].isDigit())) {
            qsizetype j = i;
            bool dot = false;
            while (j < n && (sql[j].isDigit() || (sql[j] == u'.' && !dot))) {
                if (sql[j] == u'.')
                    dot = true;
                ++j;
            }
            if (j < n && isWordChar(sql[j])) {
                // A name that starts with a digit; keep it as a word.
                while (j < n && isWordChar(sql[j]))
                    ++j;
                out.push_back({Kind::Word, sql.mid(i, j - i), {}});
            } else {
                const QString text = sql.mid(i, j - i);
                const QVariant value =
                    dot ? QVariant(text.toDouble()) : QVariant(text.toLongLong());
                out.push_back({Kind::Number, text, value});
            }
            i = j;
        } else if (isWordStart(c)) {
            qsizetype j = i;
            while (j < n && isWordChar(sql[j]))
                ++j;
            out.push_back({Kind::Word, sql.mid(i, j - i), {}});
            i = j;
        } else if (c == u'<' || c == u'>' || c == u'=' || c == u'!') {
            QString op(c);
            if (i + 1 < n) {
                const QChar d = sql[i + 1];
                if ((c == u'<' && (d == u'>' || d == u'=')) || (c == u'>' && d == u'=') ||
                    (c == u'!' && d == u'=')) {
                    op += d;
                }
            }
            out.push_back({Kind::Operator, op, {}});
            i += op.size();
        } else {
            out.push_back({Kind::Punct, QString(c), {}});
            ++i;
        }
    }
    return out;
}

bool isWord(const Token& t, const char* word) {
    return t.kind == Kind::Word && t.text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
}

bool isComparison(const Token& t) {
    return t.kind == Kind::Operator;
}

// Index of the previous token that is not white space, or -1.
qsizetype previousSignificant(const std::vector<Token>& tokens, qsizetype from) {
    for (qsizetype k = from - 1; k >= 0; --k)
        if (tokens[size_t(k)].kind != Kind::Space)
            return k;
    return -1;
}

// Whether the column ending at token k is compared with a time of day
// alone (a time literal, kept on the time-only day).
bool comparedWithTimeOnly(const std::vector<Token>& tokens, size_t k) {
    size_t next = k + 1;
    auto skipSpace = [&] {
        while (next < tokens.size() && tokens[next].kind == Kind::Space)
            ++next;
    };
    skipSpace();
    if (next >= tokens.size() || !isComparison(tokens[next]))
        return false;
    ++next;
    skipSpace();
    if (next >= tokens.size() || tokens[next].kind != Kind::Date)
        return false;
    const QString day =
        StorageConventions::timeOnlyDate().toString(QStringLiteral("yyyy-MM-dd")) + u' ';
    return tokens[next].value.toString().startsWith(day);
}

// A time column as the comparison reads it: a value stored in the short
// "HH:MM:SS" form is read on the time-only day, so that it compares with the
// literal as the long form does.
void appendTimeColumn(QString& out, QVariantList& parameters, const QString& column) {
    out += QStringLiteral("(CASE WHEN substr(%1, 3, 1) = ? THEN ? || %1 ELSE %1 END)").arg(column);
    parameters << QStringLiteral(":")
               << QString(
                      StorageConventions::timeOnlyDate().toString(QStringLiteral("yyyy-MM-dd")) +
                      u' ');
}

// The engine's pattern of a LIKE literal. "[c]" stands for the character c
// itself (how a * or % is searched for); only such a pattern needs an escape
// character, so every other pattern comes out as it always did.
struct LikePattern {
    QString text;
    bool escaped = false;
};

constexpr char16_t LikeEscape = u'\\';

LikePattern likePattern(const QString& jet) {
    LikePattern out;
    bool bracketed = false;
    for (qsizetype i = 0; i + 2 < jet.size() && !bracketed; ++i)
        bracketed = jet[i] == u'[' && jet[i + 2] == u']';
    if (!bracketed) {
        out.text = jet;
        out.text.replace(u'*', u'%');
        out.text.replace(u'?', u'_');
        return out;
    }
    out.escaped = true;
    for (qsizetype i = 0; i < jet.size(); ++i) {
        QChar c = jet[i];
        if (c == u'[' && i + 2 < jet.size() && jet[i + 2] == u']') {
            c = jet[i + 1];
            i += 2;
            if (c == u'%' || c == u'_' || c == LikeEscape)
                out.text += LikeEscape;
            out.text += c;
        } else if (c == u'*' || c == u'%') {
            out.text += u'%';
        } else if (c == u'?' || c == u'_') {
            out.text += u'_';
        } else {
            if (c == LikeEscape)
                out.text += LikeEscape;
            out.text += c;
        }
    }
    return out;
}

} // namespace

bool JetSqlTranslator::isTextValue(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::Bool:
    case QMetaType::Double:
        return false;
    default:
        return value.isValid() && !value.isNull();
    }
}

std::optional<QString> JetSqlTranslator::readQuoted(const QString& text, qsizetype start,
                                                    qsizetype& end) {
    const QChar quote = text[start];
    QString value;
    for (qsizetype j = start + 1; j < text.size();) {
        if (text[j] == quote) {
            if (j + 1 < text.size() && text[j + 1] == quote) {
                value += quote;
                j += 2;
                continue;
            }
            end = j + 1;
            return value;
        }
        value += text[j++];
    }
    return std::nullopt;
}

std::optional<QDateTime> JetSqlTranslator::parseDateLiteral(const QString& rawText) {
    const QString text = rawText.trimmed();
    static const QRegularExpression re(
        QStringLiteral("^(?:(\\d{4})-(\\d{1,2})-(\\d{1,2})|(\\d{1,2})/(\\d{1,2})/(\\d{2}|\\d{4}))?"
                       "(?:(?:^|[ T]+)(\\d{1,2}):(\\d{2})(?::(\\d{2}))?\\s*([AaPp][Mm])?)?$"));
    const auto m = re.match(text);
    if (text.isEmpty() || !m.hasMatch())
        return std::nullopt;
    QDate date = StorageConventions::timeOnlyDate();
    const bool iso = m.capturedLength(1) > 0;
    const bool us = m.capturedLength(4) > 0;
    if (iso) {
        date = QDate(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
    } else if (us) {
        int year = m.captured(6).toInt();
        if (m.capturedLength(6) == 2)
            year += year < 30 ? 2000 : 1900; // the old engine's two-digit window
        date = QDate(year, m.captured(4).toInt(), m.captured(5).toInt());
    }
    if (!date.isValid())
        return std::nullopt;
    QTime time(0, 0);
    if (m.capturedLength(7) > 0) {
        int hour = m.captured(7).toInt();
        const QString ampm = m.captured(10).toLower();
        if (!ampm.isEmpty()) {
            if (hour < 1 || hour > 12)
                return std::nullopt;
            if (ampm == u"pm" && hour != 12)
                hour += 12;
            if (ampm == u"am" && hour == 12)
                hour = 0;
        }
        time = QTime(hour, m.captured(8).toInt(), m.captured(9).toInt());
        if (!time.isValid())
            return std::nullopt;
    } else if (!iso && !us) {
        return std::nullopt;
    }
    return QDateTime(date, time);
}

QString JetSqlTranslator::storageText(const QDateTime& value, bool hasDate, bool hasTime) {
    if (hasDate && !hasTime)
        return value.date().toString(QStringLiteral("yyyy-MM-dd"));
    if (!hasDate)
        return StorageConventions::timeOnlyDate().toString(QStringLiteral("yyyy-MM-dd")) + u' ' +
               value.time().toString(QStringLiteral("HH:mm:ss"));
    return value.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

namespace {

// "[Company Name]" as the server spells an unquoted name: a plain name
// bare (folded like every other), any other quoted in lower case.
QString serverName(const QString& bracketed) {
    const QString inner = bracketed.mid(1, bracketed.size() - 2);
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
    if (plain.match(inner).hasMatch())
        return inner;
    QString quoted = inner.toLower();
    quoted.replace(u'"', QStringLiteral("\"\""));
    return u'"' + quoted + u'"';
}

// The index of the top-level " ORDER BY " in translated text, or -1.
qsizetype topLevelOrderBy(const QString& sql) {
    int depth = 0;
    qsizetype found = -1;
    bool quoted = false;
    for (qsizetype i = 0; i < sql.size(); ++i) {
        const QChar c = sql[i];
        if (c == u'"')
            quoted = !quoted;
        if (quoted)
            continue;
        if (c == u'(')
            ++depth;
        else if (c == u')')
            --depth;
        else if (depth == 0 && (c == u'O' || c == u'o') &&
                 QStringView(sql).mid(i, 8).compare(u"ORDER BY", Qt::CaseInsensitive) == 0 &&
                 (i == 0 || sql[i - 1].isSpace()))
            found = i;
    }
    return found;
}

// SELECT DISTINCT ... ORDER BY a COLLATE NOCASE is refused by the server:
// sort the distinct rows in an outer select instead, by the columns' bare
// names. The parameters keep their order.
void sortDistinctOutside(QString& sql) {
    static const QRegularExpression distinct(QStringLiteral("^\\s*SELECT\\s+DISTINCT\\b"),
                                             QRegularExpression::CaseInsensitiveOption);
    if (!distinct.match(sql).hasMatch() || !sql.contains(QLatin1String("COLLATE NOCASE")))
        return;
    const qsizetype at = topLevelOrderBy(sql);
    if (at < 0)
        return;
    QString head = sql.left(at).trimmed();
    QString tail = sql.mid(at + 8).trimmed();
    const bool semicolon = tail.endsWith(u';');
    if (semicolon)
        tail.chop(1);
    static const QRegularExpression qualified(QStringLiteral("\\b\\w+\\.(\\w+)\\b"));
    tail.replace(qualified, QStringLiteral("\\1"));
    sql = QStringLiteral("SELECT * FROM (%1) AS qm_distinct ORDER BY %2%3")
              .arg(head, tail.trimmed(), semicolon ? QStringLiteral(";") : QString());
}

} // namespace

TranslatedSql JetSqlTranslator::translate(const QString& jetSql,
                                          const std::vector<bool>& textPlaceholders,
                                          SqlDialect dialect) {
    const bool server = dialect == SqlDialect::Postgres;
    std::vector<Token> tokens = tokenize(jetSql);
    TranslatedSql result;
    QString& out = result.sql;
    out.reserve(jetSql.size() + 32);

    // ORDER BY state: items get COLLATE NOCASE at their end.
    bool inOrderBy = false;
    int depth = 0;
    int orderByDepth = 0;
    bool itemHasContent = false;
    bool itemIsOrdinal = false;
    QString itemText;
    // The embedded engine sorts Nulls first going up and last going down;
    // the server the other way round, unless told.
    bool nullsAfterDirection = false;
    // The server refuses a text collation on a number column, where the
    // embedded engine ignores it.
    auto isNumberItem = [&](const QString& item) {
        static const QRegularExpression column(QStringLiteral("^(?:\\w+\\.)?(\\w+)$"));
        const auto m = column.match(item);
        return m.hasMatch() && ClientDatabaseSchema::isNumberColumn(m.captured(1));
    };
    auto closeOrderItem = [&](bool beforeDirection) {
        const QString item = std::exchange(itemText, QString());
        if (itemHasContent && !itemIsOrdinal && !(server && isNumberItem(item))) {
            while (out.endsWith(u' '))
                out.chop(1);
            out += QStringLiteral(" COLLATE NOCASE");
        }
        if (server && itemHasContent) {
            if (beforeDirection) {
                nullsAfterDirection = true;
            } else {
                while (out.endsWith(u' '))
                    out.chop(1);
                out += QStringLiteral(" NULLS FIRST");
            }
        }
        itemHasContent = false;
        itemIsOrdinal = false;
    };

    for (size_t k = 0; k < tokens.size(); ++k) {
        const Token& t = tokens[k];
        const qsizetype prev = previousSignificant(tokens, qsizetype(k));
        const Token* before = prev >= 0 ? &tokens[size_t(prev)] : nullptr;
        // Whether a text compared here meets a number column, as in
        // "CompanyID = '12'": the server compares it as a number.
        auto comparedWithNumberColumn = [&] {
            if (!server || !before || !isComparison(*before))
                return false;
            const qsizetype left = previousSignificant(tokens, prev);
            return left >= 0 && tokens[size_t(left)].kind == Kind::Word &&
                   ClientDatabaseSchema::isNumberColumn(tokens[size_t(left)].text);
        };

        if (inOrderBy) {
            const bool ends = (t.kind == Kind::Punct &&
                               (t.text == u";" || (t.text == u")" && depth == orderByDepth))) ||
                              isWord(t, "LIMIT") || isWord(t, "UNION");
            if (ends) {
                closeOrderItem(false);
                if (!out.isEmpty() && !out.endsWith(u' ') && t.kind == Kind::Word)
                    out += u' ';
                inOrderBy = false;
            } else if (t.kind == Kind::Punct && t.text == u"," && depth == orderByDepth) {
                closeOrderItem(false);
            } else if (isWord(t, "ASC") || isWord(t, "DESC")) {
                closeOrderItem(true);
                out += u' ';
            } else if (t.kind != Kind::Space) {
                itemText += t.text;
                if (!itemHasContent)
                    itemIsOrdinal = t.kind == Kind::Number;
                else
                    itemIsOrdinal = false;
                itemHasContent = true;
            }
        }

        switch (t.kind) {
        case Kind::Space:
            out += t.text;
            break;
        case Kind::Bracketed:
            out += server ? serverName(t.text) : t.text;
            break;
        case Kind::Operator:
            out += t.text == u"!=" ? QStringLiteral("<>") : t.text;
            break;
        case Kind::Punct:
            if (t.text == u"?") {
                // A parameter of the caller: its slot is filled when bound.
                const size_t n = result.placeholders.size();
                result.placeholders.push_back(int(result.parameters.size()));
                result.numberPlaceholders.push_back(comparedWithNumberColumn());
                result.parameters << QVariant();
                if (n < textPlaceholders.size() && textPlaceholders[n] && before &&
                    isComparison(*before) && !comparedWithNumberColumn()) {
                    out += QStringLiteral("? COLLATE NOCASE");
                    break;
                }
            }
            if (t.text == u"(")
                ++depth;
            else if (t.text == u")")
                --depth;
            out += t.text;
            break;
        case Kind::Text: {
            const bool like = before && isWord(*before, "LIKE");
            out += u'?';
            if (like) {
                const LikePattern pattern = likePattern(t.text);
                result.parameters << pattern.text;
                if (pattern.escaped) {
                    out += QStringLiteral(" ESCAPE ?");
                    result.parameters << QString(QChar(LikeEscape));
                }
            } else {
                result.parameters << t.text;
            }
            if (before && isComparison(*before) && !comparedWithNumberColumn())
                out += QStringLiteral(" COLLATE NOCASE");
            break;
        }
        case Kind::Date:
            out += u'?';
            result.parameters << t.value;
            break;
        case Kind::Number: {
            // Negative literals after a comparison: fold the sign in.
            const bool signedAfterOp =
                before && before->kind == Kind::Punct && before->text == u"-" &&
                previousSignificant(tokens, prev) >= 0 &&
                isComparison(tokens[size_t(previousSignificant(tokens, prev))]);
            if (before && isComparison(*before)) {
                out += u'?';
                result.parameters << t.value;
            } else if (signedAfterOp) {
                // Remove the "-" already written (and spaces after it).
                while (out.endsWith(u' '))
                    out.chop(1);
                out.chop(1);
                out += u'?';
                result.parameters << (t.value.typeId() == QMetaType::Double
                                          ? QVariant(-t.value.toDouble())
                                          : QVariant(-t.value.toLongLong()));
            } else {
                out += t.text;
            }
            break;
        }
        case Kind::Word: {
            const bool qualified =
                (before && before->kind == Kind::Punct && before->text == u".") ||
                (k + 1 < tokens.size() && tokens[k + 1].kind == Kind::Punct &&
                 tokens[k + 1].text == u".");
            if (!qualified && (isWord(t, "TRUE") || isWord(t, "FALSE"))) {
                const bool isTrue = isWord(t, "TRUE");
                if (before && before->kind == Kind::Operator &&
                    (before->text == u"=" || before->text == u"<>" || before->text == u"!=")) {
                    // Rewrite the operator already written.
                    const bool equal = before->text == u"=";
                    const qsizetype opPos = out.lastIndexOf(
                        before->text == u"!=" ? QStringLiteral("<>") : before->text);
                    out.truncate(opPos);
                    out += (equal == isTrue) ? QStringLiteral("<> 0") : QStringLiteral("= 0");
                } else {
                    out += isTrue ? u'1' : u'0';
                }
            } else if (isWord(t, "BY") && before && isWord(*before, "ORDER")) {
                out += t.text;
                inOrderBy = true;
                orderByDepth = depth;
                itemHasContent = false;
            } else if (!inOrderBy && comparedWithTimeOnly(tokens, k)) {
                appendTimeColumn(out, result.parameters, t.text);
            } else if (!inOrderBy && k + 2 < tokens.size() && tokens[k + 1].kind == Kind::Punct &&
                       tokens[k + 1].text == u"." && tokens[k + 2].kind == Kind::Word &&
                       comparedWithTimeOnly(tokens, k + 2)) {
                appendTimeColumn(out, result.parameters, t.text + u'.' + tokens[k + 2].text);
                k += 2;
            } else if (nullsAfterDirection && (isWord(t, "ASC") || isWord(t, "DESC"))) {
                nullsAfterDirection = false;
                out += t.text;
                out += isWord(t, "ASC") ? QStringLiteral(" NULLS FIRST")
                                        : QStringLiteral(" NULLS LAST");
            } else if (server && isWord(t, "LIKE")) {
                out += QStringLiteral("ILIKE");
            } else {
                out += t.text;
            }
            break;
        }
        }
    }
    if (inOrderBy)
        closeOrderItem(false);
    if (server)
        sortDistinctOutside(out);
    return result;
}

QDate StorageConventions::timeOnlyDate() {
    return QDate(1899, 12, 30);
}

QVariant StorageConventions::parseStoredDate(const QString& text) {
    const qsizetype n = text.size();
    auto digits = [&](qsizetype from, qsizetype count) {
        for (qsizetype k = from; k < from + count; ++k)
            if (k >= n || !text[k].isDigit())
                return false;
        return true;
    };
    auto number = [&](qsizetype from, qsizetype count) {
        return QStringView(text).mid(from, count).toInt();
    };
    auto timeAt = [&](qsizetype from) -> QTime {
        if (!(digits(from, 2) && text[from + 2] == u':' && digits(from + 3, 2)))
            return {};
        if (from + 5 == n)
            return QTime(number(from, 2), number(from + 3, 2));
        if (from + 8 == n && text[from + 5] == u':' && digits(from + 6, 2))
            return QTime(number(from, 2), number(from + 3, 2), number(from + 6, 2));
        if (from + 8 < n && text[from + 5] == u':' && digits(from + 6, 2) && text[from + 8] == u'.')
            return QTime(number(from, 2), number(from + 3, 2), number(from + 6, 2));
        return {};
    };
    if (n == 10 && digits(0, 4) && text[4] == u'-' && digits(5, 2) && text[7] == u'-' &&
        digits(8, 2)) {
        const QDate d(number(0, 4), number(5, 2), number(8, 2));
        return d.isValid() ? QVariant(d) : QVariant();
    }
    if (n >= 16 && digits(0, 4) && text[4] == u'-' && digits(5, 2) && text[7] == u'-' &&
        digits(8, 2) && (text[10] == u' ' || text[10] == u'T')) {
        const QDate d(number(0, 4), number(5, 2), number(8, 2));
        const QTime t = timeAt(11);
        return d.isValid() && t.isValid() ? QVariant(QDateTime(d, t)) : QVariant();
    }
    if (n == 8 || n == 5) {
        const QTime t = timeAt(0);
        return t.isValid() ? QVariant(QDateTime(timeOnlyDate(), t)) : QVariant();
    }
    return {};
}

QVariant StorageConventions::toStored(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::QDate:
        return value.toDate().toString(QStringLiteral("yyyy-MM-dd"));
    case QMetaType::QDateTime:
        return value.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    case QMetaType::QTime:
        return QString(timeOnlyDate().toString(QStringLiteral("yyyy-MM-dd")) + u' ' +
                       value.toTime().toString(QStringLiteral("HH:mm:ss")));
    case QMetaType::Bool:
        return value.toBool() ? 1 : 0;
    default:
        return value;
    }
}
