#include "search/SearchCriteriaText.h"

#include <QStringList>
#include <limits>

namespace {

QString setValue(const SearchCriteriaText::Binding& binding, const QString& text) {
    const QString name = QString::fromLatin1(binding.name);
    if (auto* flag = std::get_if<bool*>(&binding.target)) {
        const QString t = text.trimmed().toLower();
        if (t == u"1" || t == u"-1" || t == u"true" || t == u"yes") {
            **flag = true;
        } else if (t == u"0" || t == u"false" || t == u"no") {
            **flag = false;
        } else {
            return QStringLiteral("%1 takes 1 or 0, not \"%2\"").arg(name, text);
        }
    } else if (auto* small = std::get_if<qint16*>(&binding.target)) {
        bool ok = false;
        const int value = text.trimmed().toInt(&ok);
        if (!ok || value < std::numeric_limits<qint16>::min() ||
            value > std::numeric_limits<qint16>::max()) {
            return QStringLiteral("%1 takes a whole number from -32768 to 32767, not \"%2\"")
                .arg(name, text);
        }
        **small = qint16(value);
    } else if (auto* number = std::get_if<qint32*>(&binding.target)) {
        bool ok = false;
        const qint32 value = text.trimmed().toInt(&ok);
        if (!ok) {
            return QStringLiteral("%1 takes a whole number, not \"%2\"").arg(name, text);
        }
        **number = value;
    } else if (auto* words = std::get_if<QString*>(&binding.target)) {
        **words = text;
    } else if (auto* date = std::get_if<QDate*>(&binding.target)) {
        const QDate value = QDate::fromString(text.trimmed(), Qt::ISODate);
        if (!value.isValid()) {
            return QStringLiteral("%1 takes a date as YYYY-MM-DD, not \"%2\"").arg(name, text);
        }
        **date = value;
    }
    return {};
}

// The items of an assignment text, split at each ";" that no backslash
// makes plain, with the escapes taken out.
QStringList splitItems(const QString& text) {
    QStringList items;
    QString item;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar ch = text.at(i);
        if (ch == u'\\' && i + 1 < text.size()) {
            item += text.at(++i);
        } else if (ch == u';') {
            items << item;
            item.clear();
        } else {
            item += ch;
        }
    }
    items << item;
    return items;
}

QString escaped(const QString& text) {
    QString out;
    for (const QChar ch : text) {
        if (ch == u'\\' || ch == u';') {
            out += u'\\';
        }
        out += ch;
    }
    return out;
}

} // namespace

QString SearchCriteriaText::write(const std::vector<Binding>& bindings) {
    QStringList items;
    for (const Binding& binding : bindings) {
        QString value;
        if (auto* flag = std::get_if<bool*>(&binding.target)) {
            value = **flag ? QStringLiteral("1") : QStringLiteral("0");
        } else if (auto* small = std::get_if<qint16*>(&binding.target)) {
            value = QString::number(**small);
        } else if (auto* number = std::get_if<qint32*>(&binding.target)) {
            value = QString::number(**number);
        } else if (auto* words = std::get_if<QString*>(&binding.target)) {
            value = escaped(**words);
        } else if (auto* date = std::get_if<QDate*>(&binding.target)) {
            if (!(*date)->isValid()) {
                continue;
            }
            value = (*date)->toString(Qt::ISODate);
        }
        items << QString::fromLatin1(binding.name) + u'=' + value;
    }
    return items.join(u';');
}

QString SearchCriteriaText::apply(const QString& assignments,
                                  const std::vector<Binding>& bindings) {
    for (const QString& item : splitItems(assignments)) {
        if (item.trimmed().isEmpty()) {
            continue;
        }
        const qsizetype equals = item.indexOf(u'=');
        if (equals < 0) {
            return QStringLiteral("\"%1\" is not of the form field=value").arg(item.trimmed());
        }
        const QString name = item.left(equals).trimmed();
        const Binding* found = nullptr;
        for (const Binding& binding : bindings) {
            if (name == QLatin1String(binding.name)) {
                found = &binding;
                break;
            }
        }
        if (!found) {
            QStringList names;
            for (const Binding& binding : bindings) {
                names << QString::fromLatin1(binding.name);
            }
            return QStringLiteral("Unknown search field \"%1\"; the fields are: %2")
                .arg(name, names.join(QStringLiteral(", ")));
        }
        const QString error = setValue(*found, item.mid(equals + 1));
        if (!error.isEmpty()) {
            return error;
        }
    }
    return {};
}
