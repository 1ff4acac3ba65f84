#include "merge/MergeSubstitution.h"

#include "merge/FieldCatalogueRows.h"
#include "merge/MergePlaceholderText.h"
#include "platform/FieldTable.h"
#include "platform/text/VBFormat.h"

#include <QSet>
#include <cmath>

namespace MergeSyntax {

const QStringList& dateFormats() {
    static const QStringList formats = {QStringLiteral("dddd, mmmm d yyyy"),
                                        QStringLiteral("dddd mmmm d yyyy"),
                                        QStringLiteral("mmmm d, yyyy"),
                                        QStringLiteral("mmmm d yyyy"),
                                        QStringLiteral("mmm d yyyy"),
                                        QStringLiteral("dd/mm/yy"),
                                        QStringLiteral("mm/dd/yy"),
                                        QStringLiteral("d"),
                                        QStringLiteral("dddd"),
                                        QStringLiteral("mmmm"),
                                        QStringLiteral("mmm"),
                                        QStringLiteral("yyyy"),
                                        QStringLiteral("mmmm yyyy"),
                                        QStringLiteral("mmmm d")};
    return formats;
}

QString fieldDateFormat(int index) {
    return index == 5 ? QStringLiteral("dd/mmm/yy") : dateFormats().at(index);
}

QString plainValue(PlaceholderValues& values, const QString& englishName,
                   const QString& fieldType) {
    if (fieldType == QLatin1String("Time(h:Nn am/pm)")) {
        return values.dataDateField(englishName, QStringLiteral("h:Nn am/pm"));
    }
    if (fieldType == QLatin1String("Dollars")) {
        const QString raw = values.dataField(englishName);
        bool ok = false;
        const double amount = raw.trimmed().toDouble(&ok);
        // A value that is no number stays as it is, as the formatter leaves
        // text alone.
        return ok ? VBFormat::formatMoney(amount) : raw;
    }
    if (fieldType == QLatin1String("Yes/No")) {
        return VBFormat::yesNo(values.dataField(englishName));
    }
    if (fieldType == QLatin1String("Time(hrs/Min)")) {
        const float hours = values.dataField(englishName).trimmed().toFloat();
        return VBFormat::formatMinutes(std::llround(double(hours) * 60.0));
    }
    return values.dataField(englishName);
}

} // namespace MergeSyntax

QString mergeSearchCopy(const QString& text, bool contactForCompany) {
    using namespace MergeSyntax;
    QString copy = text;
    copy.replace(kOpen + QStringLiteral("Contact Full Name") + kClose,
                 kOpen + QStringLiteral("Contact Display Name") + kClose, Qt::CaseInsensitive);
    copy.replace(openEscape() + QStringLiteral("Contact Full Name") + closeEscape(),
                 openEscape() + QStringLiteral("Contact Display Name") + closeEscape(),
                 Qt::CaseInsensitive);
    if (contactForCompany) {
        const QString company = kOpen + QStringLiteral("Company Name") + kClose;
        const QString contact = kOpen + QStringLiteral("Contact Display Name") + kClose;
        const QString companyEscaped =
            openEscape() + QStringLiteral("Company Name") + closeEscape();
        const QString contactEscaped =
            openEscape() + QStringLiteral("Contact Display Name") + closeEscape();
        if (copy.contains(company, Qt::CaseInsensitive) &&
            !copy.contains(contact, Qt::CaseInsensitive)) {
            copy.replace(company, contact, Qt::CaseInsensitive);
        } else if (copy.contains(companyEscaped, Qt::CaseInsensitive) &&
                   !copy.contains(contactEscaped, Qt::CaseInsensitive)) {
            copy.replace(companyEscaped, contactEscaped, Qt::CaseInsensitive);
        }
    }
    copy.replace(openEscape(), QString(kOpen));
    copy.replace(closeEscape(), QString(kClose));
    return copy;
}

namespace {

// Bodies of «...» in a text, case-folded.
QSet<QString> presentBodies(const QString& searchCopy) {
    QSet<QString> bodies;
    qsizetype open = searchCopy.indexOf(MergeSyntax::kOpen);
    while (open >= 0) {
        const qsizetype close = searchCopy.indexOf(MergeSyntax::kClose, open + 1);
        if (close < 0) {
            break;
        }
        bodies.insert(searchCopy.mid(open + 1, close - open - 1).toCaseFolded());
        open = searchCopy.indexOf(MergeSyntax::kOpen, open + 1);
    }
    return bodies;
}

} // namespace

struct MergeSubstitution::Analysis {
    struct Segment {
        qsizetype start;
        qsizetype length;
        int key; // -1: literal text
    };
    struct Action {
        QString name;      // the row's name, or Todays Date
        QString fieldType; // "Date" for dated forms
        int format;        // -1: plain form
        bool todaysDate;
        int key;      // index into keys, -1 when the text holds no such token
        QString body; // the placeholder body, for replaceText and the report
    };

    QString text;
    quint64 generation = 0;
    bool nested = false;
    std::vector<Segment> segments;
    std::vector<std::vector<int>> occurrences; // per key, segment indices
    QHash<QString, int> keys;                  // folded body -> key
    std::vector<Action> actions[2];            // per search-copy variant
};

MergeSubstitution::MergeSubstitution() = default;
MergeSubstitution::~MergeSubstitution() = default;

void MergeSubstitution::reset() {
    m_analysis.reset();
}

const MergeSubstitution::Analysis* MergeSubstitution::analysisFor(const QString& text,
                                                                  const FieldTable& table,
                                                                  quint64 tableGeneration) {
    if (m_analysis && m_analysis->generation == tableGeneration &&
        (m_analysis->text.constData() == text.constData() || m_analysis->text == text)) {
        return m_analysis.get();
    }
    auto a = std::make_unique<Analysis>();
    a->text = text;
    a->generation = tableGeneration;

    // Token spans: every \'ab with the next \'bb behind it.
    const QString& open = MergeSyntax::openEscape();
    const QString& close = MergeSyntax::closeEscape();
    qsizetype pos = 0;
    qsizetype literalStart = 0;
    while (true) {
        const qsizetype at = text.indexOf(open, pos, Qt::CaseInsensitive);
        if (at < 0) {
            break;
        }
        const qsizetype end = text.indexOf(close, at + open.size(), Qt::CaseInsensitive);
        if (end < 0) {
            break;
        }
        const QString body = text.mid(at + open.size(), end - at - open.size());
        if (body.contains(QLatin1Char('\\'))) {
            a->nested = true;
            pos = at + 1;
            continue;
        }
        if (at > 0 && text.at(at - 1) == QLatin1Char('\\')) {
            a->nested = true;
        }
        if (at > literalStart) {
            a->segments.push_back({literalStart, at - literalStart, -1});
        }
        const QString folded = body.toCaseFolded();
        auto it = a->keys.find(folded);
        if (it == a->keys.end()) {
            it = a->keys.insert(folded, int(a->occurrences.size()));
            a->occurrences.emplace_back();
        }
        a->occurrences[size_t(*it)].push_back(int(a->segments.size()));
        a->segments.push_back({at, end + close.size() - at, *it});
        pos = literalStart = end + close.size();
    }
    if (literalStart < text.size()) {
        a->segments.push_back({literalStart, text.size() - literalStart, -1});
    }

    const QStringList& formats = MergeSyntax::dateFormats();
    for (int variant = 0; variant < 2; ++variant) {
        const QSet<QString> present = presentBodies(mergeSearchCopy(text, variant == 1));
        std::vector<Analysis::Action>& actions = a->actions[variant];
        auto consider = [&](const QString& body, const QString& name, const QString& type,
                            int format, bool today) {
            const QString folded = body.toCaseFolded();
            if (!present.contains(folded)) {
                return;
            }
            const auto key = a->keys.constFind(folded);
            actions.push_back({name, type, format, today, key == a->keys.cend() ? -1 : *key, body});
        };
        const QString today = QStringLiteral("Todays Date");
        for (int f = 0; f < formats.size(); ++f) {
            consider(QLatin1Char('(') + today + QStringLiteral(", ") + formats.at(f) +
                         QLatin1Char(')'),
                     today, QStringLiteral("Date"), f, true);
        }
        for (int row = 1; row <= table.rowCount(); ++row) {
            const QString name = table.value(row, FieldCatalogue::EnglishName);
            const QString type = table.value(row, FieldCatalogue::FieldType);
            if (name.contains(QLatin1Char('\\')) || name.contains(MergeSyntax::kOpen) ||
                name.contains(MergeSyntax::kClose)) {
                a->nested = true;
            }
            if (type == QLatin1String("Date")) {
                for (int f = 0; f < formats.size(); ++f) {
                    consider(QLatin1Char('(') + name + QStringLiteral(", ") + formats.at(f) +
                                 QLatin1Char(')'),
                             name, type, f, false);
                }
            } else {
                consider(name, name, type, -1, false);
            }
        }
    }
    m_analysis = std::move(a);
    return m_analysis.get();
}

QStringList MergeSubstitution::lookedUpNames(const QString& text, const FieldTable& table,
                                             quint64 tableGeneration, bool contactForCompany) {
    const Analysis& a = *analysisFor(text, table, tableGeneration);
    QStringList names;
    for (const Analysis::Action& action : a.actions[contactForCompany ? 1 : 0]) {
        if (!action.todaysDate) {
            names << action.name;
        }
    }
    return names;
}

bool MergeSubstitution::substitute(const QString& text, const FieldTable& table,
                                   quint64 tableGeneration, bool contactForCompany,
                                   PlaceholderValues& values, QString& result,
                                   QStringList* emptyPlaceholders) {
    const Analysis& a = *analysisFor(text, table, tableGeneration);
    const std::vector<Analysis::Action>& actions = a.actions[contactForCompany ? 1 : 0];

    // The values, fetched in the order the step-by-step procedure asks.
    std::vector<QString> fetched;
    fetched.reserve(actions.size());
    bool valuesJoinText = false;
    for (const Analysis::Action& action : actions) {
        QString value;
        if (action.format >= 0) {
            value = values.dataDateField(
                action.name, action.todaysDate ? MergeSyntax::dateFormats().at(action.format)
                                               : MergeSyntax::fieldDateFormat(action.format));
        } else {
            value = MergeSyntax::plainValue(values, action.name, action.fieldType);
        }
        if (value.contains(QLatin1Char('\\')) || value.startsWith(QLatin1Char('\''))) {
            valuesJoinText = true;
        }
        fetched.push_back(std::move(value));
    }

    if (a.nested || valuesJoinText) {
        // A value might join the text around it into new placeholders: take
        // the replacements one after the other on the whole text.
        result = text;
        for (size_t i = 0; i < actions.size(); ++i) {
            if (emptyPlaceholders && fetched[i].isEmpty() &&
                result.contains(MergePlaceholderText::convertFieldName(
                                    MergeSyntax::kOpen + actions[i].body + MergeSyntax::kClose),
                                Qt::CaseInsensitive)) {
                emptyPlaceholders->append(actions[i].body);
            }
            MergePlaceholderText::replaceText(
                result, MergeSyntax::kOpen + actions[i].body + MergeSyntax::kClose, fetched[i],
                true);
        }
        MergePlaceholderText::replaceUnfoundMergeFieldsWithBlanks(result);
        return true;
    }

    // Output of each key once replaced, and when it was.
    const size_t keyCount = a.occurrences.size();
    std::vector<QString> output(keyCount);
    std::vector<char> replaced(keyCount, 0);
    for (size_t i = 0; i < actions.size(); ++i) {
        const int key = actions[i].key;
        if (key < 0 || replaced[size_t(key)]) {
            continue;
        }
        // The character before the first occurrence, as the text stands now.
        bool blankBefore = false;
        for (int s = a.occurrences[size_t(key)].front() - 1; s >= 0; --s) {
            const Analysis::Segment& seg = a.segments[size_t(s)];
            if (seg.key >= 0 && replaced[size_t(seg.key)]) {
                const QString& out = output[size_t(seg.key)];
                if (out.isEmpty()) {
                    continue;
                }
                blankBefore = out.back() == QLatin1Char(' ');
            } else {
                blankBefore = text.at(seg.start + seg.length - 1) == QLatin1Char(' ');
            }
            break;
        }
        output[size_t(key)] = blankBefore ? fetched[i] : QLatin1Char(' ') + fetched[i];
        replaced[size_t(key)] = 1;
        if (emptyPlaceholders && fetched[i].isEmpty()) {
            emptyPlaceholders->append(actions[i].body);
        }
    }

    qsizetype size = 0;
    for (const Analysis::Segment& seg : a.segments) {
        size +=
            seg.key >= 0 && replaced[size_t(seg.key)] ? output[size_t(seg.key)].size() : seg.length;
    }
    result.clear();
    result.reserve(size);
    bool rawGuillemet = false;
    const QStringView whole(text);
    for (const Analysis::Segment& seg : a.segments) {
        if (seg.key >= 0 && replaced[size_t(seg.key)]) {
            const QString& out = output[size_t(seg.key)];
            rawGuillemet = rawGuillemet || out.contains(MergeSyntax::kOpen);
            result += out;
        } else {
            const QStringView part = whole.mid(seg.start, seg.length);
            rawGuillemet = rawGuillemet || part.contains(MergeSyntax::kOpen);
            result += part;
        }
    }
    if (rawGuillemet) {
        MergePlaceholderText::replaceUnfoundMergeFieldsWithBlanks(result);
    }
    return true;
}
