#include "data/RecordsetFilter.h"

#include "data/JetSqlTranslator.h"
#include "data/Recordset.h"
#include "platform/errorClass.h"

#include <QRegularExpression>
#include <optional>
#include <vector>

namespace {

[[noreturn]] void fail(const QString& text) {
    throw QmError(QmError::DatabaseError, text);
}

enum class Op { Equal, NotEqual, Less, Greater, LessEqual, GreaterEqual, Like };

struct Literal {
    enum class Type { Text, Number, Date, Boolean, Null } type = Type::Null;
    QString text;
    double number = 0;
    QDateTime date;
    bool boolean = false;
};

} // namespace

struct FilterNode {
    enum class Type { And, Or, Not, Compare } type = Type::Compare;
    std::unique_ptr<FilterNode> left;
    std::unique_ptr<FilterNode> right;
    QString columnName;
    int column = -1;
    Op op = Op::Equal;
    Literal value;
    QRegularExpression like;
};

namespace {

struct Token {
    enum class Type { Name, Text, Date, Number, Op, Open, Close, End } type;
    QString text;
};

std::vector<Token> tokenize(const QString& s) {
    std::vector<Token> out;
    qsizetype i = 0;
    const qsizetype n = s.size();
    while (i < n) {
        const QChar c = s[i];
        if (c.isSpace()) {
            ++i;
        } else if (c == u'(') {
            out.push_back({Token::Type::Open, QStringLiteral("(")});
            ++i;
        } else if (c == u')') {
            out.push_back({Token::Type::Close, QStringLiteral(")")});
            ++i;
        } else if (c == u'\'' || c == u'"') {
            qsizetype j = i;
            const std::optional<QString> literal = JetSqlTranslator::readQuoted(s, i, j);
            if (!literal)
                fail(QStringLiteral("The filter has an unbalanced quote: %1").arg(s));
            out.push_back({Token::Type::Text, *literal});
            i = j;
        } else if (c == u'#') {
            const qsizetype j = s.indexOf(u'#', i + 1);
            if (j < 0)
                fail(QStringLiteral("The filter has an unterminated date: %1").arg(s));
            out.push_back({Token::Type::Date, s.mid(i + 1, j - i - 1)});
            i = j + 1;
        } else if (c == u'[') {
            const qsizetype j = s.indexOf(u']', i + 1);
            if (j < 0)
                fail(QStringLiteral("The filter has an unterminated column name: %1").arg(s));
            out.push_back({Token::Type::Name, s.mid(i + 1, j - i - 1)});
            i = j + 1;
        } else if (c == u'<' || c == u'>' || c == u'=') {
            QString op(c);
            if (i + 1 < n && ((c == u'<' && (s[i + 1] == u'>' || s[i + 1] == u'=')) ||
                              (c == u'>' && s[i + 1] == u'=')))
                op += s[i + 1];
            out.push_back({Token::Type::Op, op});
            i += op.size();
        } else if (c.isDigit() || ((c == u'-' || c == u'+' || c == u'.') && i + 1 < n &&
                                   (s[i + 1].isDigit() || s[i + 1] == u'.'))) {
            qsizetype j = i + 1;
            while (j < n && (s[j].isDigit() || s[j] == u'.'))
                ++j;
            out.push_back({Token::Type::Number, s.mid(i, j - i)});
            i = j;
        } else if (c.isLetter() || c == u'_') {
            qsizetype j = i + 1;
            while (j < n && (s[j].isLetterOrNumber() || s[j] == u'_' || s[j] == u'.'))
                ++j;
            out.push_back({Token::Type::Name, s.mid(i, j - i)});
            i = j;
        } else {
            fail(QStringLiteral("The filter has an unexpected character '%1': %2").arg(c).arg(s));
        }
    }
    out.push_back({Token::Type::End, {}});
    return out;
}

bool isKeyword(const Token& t, const char* word) {
    return t.type == Token::Type::Name &&
           t.text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
}

class Parser {
public:
    Parser(const QString& text) : m_text(text), m_tokens(tokenize(text)) {}

    std::unique_ptr<FilterNode> parseAll() {
        if (peek().type == Token::Type::End)
            return nullptr;
        auto node = parseOr();
        if (peek().type != Token::Type::End)
            fail(QStringLiteral("The filter has unexpected text at '%1': %2")
                     .arg(peek().text, m_text));
        return node;
    }

private:
    const Token& peek() const { return m_tokens[m_pos]; }
    const Token& take() { return m_tokens[m_pos < m_tokens.size() - 1 ? m_pos++ : m_pos]; }

    std::unique_ptr<FilterNode> join(FilterNode::Type type, std::unique_ptr<FilterNode> l,
                                     std::unique_ptr<FilterNode> r) {
        auto node = std::make_unique<FilterNode>();
        node->type = type;
        node->left = std::move(l);
        node->right = std::move(r);
        return node;
    }

    std::unique_ptr<FilterNode> parseOr() {
        auto node = parseAnd();
        while (isKeyword(peek(), "OR")) {
            take();
            node = join(FilterNode::Type::Or, std::move(node), parseAnd());
        }
        return node;
    }

    std::unique_ptr<FilterNode> parseAnd() {
        auto node = parseUnary();
        while (isKeyword(peek(), "AND")) {
            take();
            node = join(FilterNode::Type::And, std::move(node), parseUnary());
        }
        return node;
    }

    std::unique_ptr<FilterNode> parseUnary() {
        if (isKeyword(peek(), "NOT")) {
            take();
            return join(FilterNode::Type::Not, parseUnary(), nullptr);
        }
        if (peek().type == Token::Type::Open) {
            take();
            auto node = parseOr();
            if (peek().type != Token::Type::Close)
                fail(QStringLiteral("The filter has an unbalanced parenthesis: %1").arg(m_text));
            take();
            return node;
        }
        return parseComparison();
    }

    std::unique_ptr<FilterNode> parseComparison() {
        const Token name = take();
        if (name.type != Token::Type::Name || isKeyword(name, "AND") || isKeyword(name, "OR"))
            fail(QStringLiteral("The filter expects a column name at '%1': %2")
                     .arg(name.text, m_text));
        auto node = std::make_unique<FilterNode>();
        node->columnName = name.text;
        const Token op = take();
        if (isKeyword(op, "LIKE")) {
            node->op = Op::Like;
        } else if (op.type == Token::Type::Op) {
            static const std::pair<const char*, Op> ops[] = {
                {"=", Op::Equal},   {"<>", Op::NotEqual},  {"<", Op::Less},
                {">", Op::Greater}, {"<=", Op::LessEqual}, {">=", Op::GreaterEqual}};
            for (const auto& [text, value] : ops)
                if (op.text == QLatin1String(text))
                    node->op = value;
        } else {
            fail(QStringLiteral("The filter expects an operator after %1: %2")
                     .arg(name.text, m_text));
        }
        const Token value = take();
        Literal& lit = node->value;
        switch (value.type) {
        case Token::Type::Text:
            lit.type = Literal::Type::Text;
            lit.text = value.text;
            break;
        case Token::Type::Number: {
            bool ok = false;
            lit.number = value.text.toDouble(&ok);
            if (!ok)
                fail(QStringLiteral("The filter has a bad number %1: %2").arg(value.text, m_text));
            lit.type = Literal::Type::Number;
            break;
        }
        case Token::Type::Date: {
            const auto date = JetSqlTranslator::parseDateLiteral(value.text);
            if (!date)
                fail(QStringLiteral("The filter has a bad date #%1#: %2").arg(value.text, m_text));
            lit.type = Literal::Type::Date;
            lit.date = *date;
            break;
        }
        case Token::Type::Name:
            if (isKeyword(value, "TRUE") || isKeyword(value, "FALSE")) {
                lit.type = Literal::Type::Boolean;
                lit.boolean = isKeyword(value, "TRUE");
                break;
            }
            if (isKeyword(value, "NULL")) {
                lit.type = Literal::Type::Null;
                break;
            }
            [[fallthrough]];
        default:
            fail(QStringLiteral("The filter expects a value after %1 %2: %3")
                     .arg(name.text, op.text, m_text));
        }
        if (node->op == Op::Like) {
            if (lit.type != Literal::Type::Text)
                fail(QStringLiteral("LIKE needs a text pattern: %1").arg(m_text));
            QString pattern;
            for (qsizetype i = 0; i < lit.text.size(); ++i) {
                const QChar ch = lit.text[i];
                // "[c]" is the character c itself, as in the engine's LIKE.
                if (ch == u'[' && i + 2 < lit.text.size() && lit.text[i + 2] == u']') {
                    pattern += QRegularExpression::escape(QString(lit.text[i + 1]));
                    i += 2;
                } else if (ch == u'*' || ch == u'%')
                    pattern += QStringLiteral(".*");
                else if (ch == u'?' || ch == u'_')
                    pattern += u'.';
                else
                    pattern += QRegularExpression::escape(QString(ch));
            }
            node->like = QRegularExpression(QRegularExpression::anchoredPattern(pattern),
                                            QRegularExpression::CaseInsensitiveOption |
                                                QRegularExpression::DotMatchesEverythingOption);
        } else if (lit.type == Literal::Type::Null && node->op != Op::Equal &&
                   node->op != Op::NotEqual) {
            fail(QStringLiteral("Null can only be compared with = or <>: %1").arg(m_text));
        }
        return node;
    }

    QString m_text;
    std::vector<Token> m_tokens;
    size_t m_pos = 0;
};

// -1, 0, 1, or nothing when the two cannot be ordered.
std::optional<int> compare(const QVariant& v, const Literal& lit) {
    auto sign = [](auto a, auto b) { return a < b ? -1 : (b < a ? 1 : 0); };
    switch (lit.type) {
    case Literal::Type::Boolean: {
        bool truth = false;
        if (v.typeId() == QMetaType::Bool) {
            truth = v.toBool();
        } else if (v.typeId() == QMetaType::QString) {
            const QString t = v.toString().trimmed();
            bool ok = false;
            const double d = t.toDouble(&ok);
            truth = ok ? d != 0 : t.compare(u"True", Qt::CaseInsensitive) == 0;
        } else {
            truth = v.toDouble() != 0;
        }
        return truth == lit.boolean ? 0 : 1;
    }
    case Literal::Type::Number: {
        bool ok = false;
        const double d = v.typeId() == QMetaType::Bool ? (v.toBool() ? -1.0 : 0.0)
                                                       : v.toString().trimmed().toDouble(&ok);
        if (v.typeId() != QMetaType::Bool && !ok)
            return std::nullopt;
        return sign(d, lit.number);
    }
    case Literal::Type::Date: {
        QDateTime d;
        if (v.typeId() == QMetaType::QDate)
            d = QDateTime(v.toDate(), QTime(0, 0));
        else if (v.typeId() == QMetaType::QDateTime)
            d = v.toDateTime();
        else if (v.typeId() == QMetaType::QString) {
            const QVariant parsed = StorageConventions::parseStoredDate(v.toString().trimmed());
            if (parsed.typeId() == QMetaType::QDate)
                d = QDateTime(parsed.toDate(), QTime(0, 0));
            else if (parsed.typeId() == QMetaType::QDateTime)
                d = parsed.toDateTime();
            else if (const auto other = JetSqlTranslator::parseDateLiteral(v.toString()))
                d = *other;
        }
        if (!d.isValid())
            return std::nullopt;
        return sign(d, lit.date);
    }
    case Literal::Type::Text: {
        QString text;
        switch (v.typeId()) {
        case QMetaType::Bool:
            text = v.toBool() ? QStringLiteral("True") : QStringLiteral("False");
            break;
        case QMetaType::QDate:
            text = v.toDate().toString(QStringLiteral("yyyy-MM-dd"));
            break;
        case QMetaType::QDateTime:
            text = v.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
            break;
        case QMetaType::QString:
            text = v.toString();
            break;
        default: {
            // A number column against a text value: compare as numbers.
            bool ok = false;
            const double d = lit.text.trimmed().toDouble(&ok);
            if (ok)
                return sign(v.toDouble(), d);
            text = v.toString();
        }
        }
        const int c = QString::compare(text, lit.text, Qt::CaseInsensitive);
        return c < 0 ? -1 : (c > 0 ? 1 : 0);
    }
    case Literal::Type::Null:
        break;
    }
    return std::nullopt;
}

bool evaluate(const FilterNode& node, const Recordset& rs, int row) {
    switch (node.type) {
    case FilterNode::Type::And:
        return evaluate(*node.left, rs, row) && evaluate(*node.right, rs, row);
    case FilterNode::Type::Or:
        return evaluate(*node.left, rs, row) || evaluate(*node.right, rs, row);
    case FilterNode::Type::Not:
        return !evaluate(*node.left, rs, row);
    case FilterNode::Type::Compare:
        break;
    }
    const QVariant v = rs.value(row, node.column);
    if (node.value.type == Literal::Type::Null)
        return (node.op == Op::Equal) == v.isNull();
    if (v.isNull())
        return false;
    if (node.op == Op::Like) {
        QString text = v.toString();
        if (v.typeId() == QMetaType::QDate)
            text = v.toDate().toString(QStringLiteral("yyyy-MM-dd"));
        return node.like.match(text).hasMatch();
    }
    const auto c = compare(v, node.value);
    if (!c)
        return node.op == Op::NotEqual;
    switch (node.op) {
    case Op::Equal:
        return *c == 0;
    case Op::NotEqual:
        return *c != 0;
    case Op::Less:
        return *c < 0;
    case Op::Greater:
        return *c > 0;
    case Op::LessEqual:
        return *c <= 0;
    case Op::GreaterEqual:
        return *c >= 0;
    case Op::Like:
        break;
    }
    return false;
}

void bindNode(FilterNode& node, const Recordset& rs) {
    if (node.type != FilterNode::Type::Compare) {
        bindNode(*node.left, rs);
        if (node.right)
            bindNode(*node.right, rs);
        return;
    }
    node.column = rs.columnIndex(node.columnName);
    if (node.column < 0)
        fail(QStringLiteral("The filter names a column the record set does not have: %1")
                 .arg(node.columnName));
}

} // namespace

RecordsetFilter::RecordsetFilter(const QString& text) : m_root(Parser(text).parseAll()) {}
RecordsetFilter::~RecordsetFilter() = default;
RecordsetFilter::RecordsetFilter(RecordsetFilter&&) noexcept = default;
RecordsetFilter& RecordsetFilter::operator=(RecordsetFilter&&) noexcept = default;

void RecordsetFilter::bind(const Recordset& recordset) {
    if (m_root)
        bindNode(*m_root, recordset);
}

bool RecordsetFilter::matches(const Recordset& recordset, int row) const {
    return !m_root || evaluate(*m_root, recordset, row);
}
