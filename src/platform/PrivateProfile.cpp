#include "platform/PrivateProfile.h"

#include "platform/fileControl.h"

#include <QFile>

namespace {

struct ProfileText {
    QStringList lines;
    QString lineEnd = QStringLiteral("\r\n");
    bool endsWithLineEnd = true;
};

ProfileText load(const QString& file) {
    ProfileText text;
    const auto bytes = fileControl::readWholeFile(file);
    if (!bytes || bytes->isEmpty()) {
        return text;
    }
    const QString all = QString::fromLatin1(*bytes);
    if (!all.contains(QLatin1String("\r\n")) && all.contains(QLatin1Char('\n'))) {
        text.lineEnd = QStringLiteral("\n");
    }
    text.lines = all.split(QLatin1Char('\n'));
    for (QString& line : text.lines) {
        if (line.endsWith(QLatin1Char('\r'))) {
            line.chop(1);
        }
    }
    text.endsWithLineEnd = all.endsWith(QLatin1Char('\n'));
    if (text.endsWithLineEnd) {
        text.lines.removeLast();
    }
    return text;
}

bool save(const QString& file, const ProfileText& text) {
    QString all = text.lines.join(text.lineEnd);
    if (!text.lines.isEmpty() && text.endsWithLineEnd) {
        all += text.lineEnd;
    }
    return fileControl::writeFileAtomically(file, all.toLatin1());
}

// "[name]" with blanks allowed around; anything after "]" is ignored.
std::optional<QString> sectionOf(const QString& line) {
    const QString t = line.trimmed();
    if (!t.startsWith(QLatin1Char('['))) {
        return std::nullopt;
    }
    const int close = t.indexOf(QLatin1Char(']'));
    if (close < 0) {
        return std::nullopt;
    }
    return t.mid(1, close - 1).trimmed();
}

struct KeyLine {
    QString key;
    QString value;
};

std::optional<KeyLine> keyOf(const QString& line) {
    const int eq = line.indexOf(QLatin1Char('='));
    if (eq <= 0) {
        return std::nullopt;
    }
    const QString key = line.left(eq).trimmed();
    if (key.isEmpty() || key.startsWith(QLatin1Char(';')) || key.startsWith(QLatin1Char('['))) {
        return std::nullopt;
    }
    QString value = line.mid(eq + 1).trimmed();
    // The profile calls strip one pair of surrounding quotes.
    if (value.size() >= 2 &&
        ((value.startsWith(QLatin1Char('"')) && value.endsWith(QLatin1Char('"'))) ||
         (value.startsWith(QLatin1Char('\'')) && value.endsWith(QLatin1Char('\''))))) {
        value = value.mid(1, value.size() - 2);
    }
    return KeyLine{key, value};
}

bool sameName(const QString& a, const QString& b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

// Index range [begin, end) of the first section with that name, the header
// line included at begin; nothing when missing.
std::optional<std::pair<int, int>> findSection(const ProfileText& text, const QString& section) {
    for (int i = 0; i < text.lines.size(); ++i) {
        const auto name = sectionOf(text.lines[i]);
        if (name && sameName(*name, section)) {
            int end = i + 1;
            while (end < text.lines.size() && !sectionOf(text.lines[end])) {
                ++end;
            }
            return std::make_pair(i, end);
        }
    }
    return std::nullopt;
}

int findKey(const ProfileText& text, std::pair<int, int> range, const QString& key) {
    for (int i = range.first + 1; i < range.second; ++i) {
        const auto kv = keyOf(text.lines[i]);
        if (kv && sameName(kv->key, key)) {
            return i;
        }
    }
    return -1;
}

} // namespace

namespace PrivateProfile {

std::optional<QString> readValue(const QString& file, const QString& section, const QString& key) {
    const ProfileText text = load(file);
    const auto range = findSection(text, section);
    if (!range) {
        return std::nullopt;
    }
    const int line = findKey(text, *range, key);
    if (line < 0) {
        return std::nullopt;
    }
    return keyOf(text.lines[line])->value;
}

QStringList sectionNames(const QString& file) {
    QStringList names;
    for (const QString& line : load(file).lines) {
        if (const auto name = sectionOf(line)) {
            names << *name;
        }
    }
    return names;
}

QStringList keyNames(const QString& file, const QString& section) {
    const ProfileText text = load(file);
    QStringList names;
    const auto range = findSection(text, section);
    if (!range) {
        return names;
    }
    for (int i = range->first + 1; i < range->second; ++i) {
        if (const auto kv = keyOf(text.lines[i])) {
            names << kv->key;
        }
    }
    return names;
}

bool writeValue(const QString& file, const QString& section, const QString& key,
                const QString& value) {
    ProfileText text = load(file);
    const QString newLine = key + QLatin1Char('=') + value;
    const auto range = findSection(text, section);
    if (!range) {
        if (!text.lines.isEmpty() && !text.lines.last().trimmed().isEmpty()) {
            text.lines << QString();
        }
        text.lines << QLatin1Char('[') + section + QLatin1Char(']') << newLine;
        text.endsWithLineEnd = true;
        return save(file, text);
    }
    const int line = findKey(text, *range, key);
    if (line >= 0) {
        text.lines[line] = newLine;
    } else {
        // After the last non-blank line of the section, so the blank line
        // that separates sections stays where it is.
        int at = range->second;
        while (at - 1 > range->first && text.lines[at - 1].trimmed().isEmpty()) {
            --at;
        }
        text.lines.insert(at, newLine);
    }
    return save(file, text);
}

bool deleteKey(const QString& file, const QString& section, const QString& key) {
    ProfileText text = load(file);
    const auto range = findSection(text, section);
    if (!range) {
        return true;
    }
    const int line = findKey(text, *range, key);
    if (line < 0) {
        return true;
    }
    text.lines.removeAt(line);
    return save(file, text);
}

bool deleteSection(const QString& file, const QString& section) {
    ProfileText text = load(file);
    const auto range = findSection(text, section);
    if (!range) {
        return true;
    }
    text.lines.erase(text.lines.begin() + range->first, text.lines.begin() + range->second);
    return save(file, text);
}

bool writeWholeFile(const QString& file, const QString& text) {
    return fileControl::writeFileAtomically(file, text.toLatin1());
}

} // namespace PrivateProfile
