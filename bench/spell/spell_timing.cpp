// Times the spell checker on a text and a list of misspelled words:
//
//   spell-timing LIST_DB TEXT_FILE WORDS_FILE [REPEATS]
//
// Prints one "name: value" line per figure. Each timing is the median of
// REPEATS runs (default 5), so a noisy neighbour on the machine moves it
// less than a mean.

#include "context/AppContext.h"
#include "spell/SpellCheckSession.h"
#include "spell/SpellTextTarget.h"
#include "spell/clsSpellCheck.h"
#include "spell/modSpellHashSearch.h"
#include "spell/modSpellSearch.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

double medianMilliseconds(int repeats, const std::function<void()>& work) {
    std::vector<double> times;
    for (int i = 0; i < repeats; ++i) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const auto end = std::chrono::steady_clock::now();
        times.push_back(std::chrono::duration<double, std::milli>(end - start).count());
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

QString readText(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "cannot read %s\n", qPrintable(path));
        std::exit(2);
    }
    QString text = QString::fromUtf8(file.readAll());
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
    return text;
}

void print(const char* name, double value, const char* unit) {
    std::printf("%s: %.4f %s\n", name, value, unit);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc < 4) {
        std::fprintf(stderr, "usage: spell-timing LIST_DB TEXT_FILE WORDS_FILE [REPEATS]\n");
        return 2;
    }
    const QString listPath = QString::fromLocal8Bit(argv[1]);
    const QString text = readText(QString::fromLocal8Bit(argv[2]));
    const QStringList words =
        readText(QString::fromLocal8Bit(argv[3])).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    const int repeats = argc > 4 ? std::max(1, std::atoi(argv[4])) : 5;

    ScopedAppContext context;
    clsSpellCheck spell;
    spell.setAppFolder(QFileInfo(listPath).absolutePath());
    if (QFileInfo(listPath).fileName() != QLatin1String("list.db") ||
        !spell.openSpellCheckDatabase()) {
        std::fprintf(stderr, "LIST_DB must be a readable file named list.db\n");
        return 2;
    }

    // Load and index, as each session does.
    print("load_and_index_ms",
          medianMilliseconds(repeats,
                             [&] {
                                 SpellWordDatabase database;
                                 database.loadWordDatabaseIntoHashTable(listPath);
                             }),
          "ms");

    // Probe lengths of the shipped list's words (extra slots past the home).
    SpellWordDatabase& database = spell.wordDatabase();
    const SpellWordArray& array = database.WordArray();
    const SpellHashTable& table = database.HashTable();
    double totalProbes = 0;
    size_t worstProbe = 0;
    for (qsizetype i = 0; i < array.size(); ++i) {
        size_t slot = size_t(GetFastXorHash(array.at(i))) % table.size();
        size_t probes = 0;
        while (table[slot] != std::int32_t(i)) {
            slot = (slot + 1) % table.size();
            ++probes;
        }
        totalProbes += double(probes);
        worstProbe = std::max(worstProbe, probes);
    }
    print("words", double(array.size()), "");
    print("average_extra_probes", totalProbes / double(array.size()), "");
    print("worst_extra_probes", double(worstProbe), "");

    // Single look-ups: every word of the list, then the same words with the
    // first letter changed (mostly misses).
    std::vector<std::string> hits;
    std::vector<std::string> misses;
    for (qsizetype i = 0; i < array.size(); ++i) {
        hits.emplace_back(array.at(i));
        std::string miss(array.at(i));
        miss[0] = miss[0] == 'q' ? 'x' : 'q';
        misses.push_back(miss);
    }
    size_t found = 0;
    const double hitMs = medianMilliseconds(repeats, [&] {
        for (const std::string& w : hits) {
            found += database.find(std::string_view(w)) >= 0;
        }
    });
    const double missMs = medianMilliseconds(repeats, [&] {
        for (const std::string& w : misses) {
            found += database.find(std::string_view(w)) >= 0;
        }
    });
    print("lookup_hit_ns", hitMs * 1e6 / double(hits.size()), "ns");
    print("lookup_miss_ns", missMs * 1e6 / double(misses.size()), "ns");

    // One ten-letter word through all suggestion modes.
    const QString tenLetters = QStringLiteral("acountants");
    QStringList suggestions;
    print("suggest_mode2_ten_letters_ms",
          medianMilliseconds(repeats,
                             [&] {
                                 suggestions.clear();
                                 Word_Suggest(database, tenLetters, 2, suggestions);
                             }),
          "ms");

    // The misspellings of the whole text, as the dialog's scan finds them.
    PlainSpellText target(text);
    spell.setRTB(&target);
    SpellCheckSession session(spell);
    print("list_misspellings_ms", medianMilliseconds(repeats, [&] { session.getSpellingErrors(); }),
          "ms");
    print("misspellings", double(session.misspellings().size()), "");
    print("text_characters", double(text.size()), "");

    // Suggestions for the given words at the session defaults.
    qsizetype suggested = 0;
    const double suggestMs = medianMilliseconds(repeats, [&] {
        suggested = 0;
        for (const QString& word : words) {
            session.listSuggestions(word);
            suggested += session.suggestions().size();
        }
    });
    print("suggest_words", double(words.size()), "");
    print("suggest_all_ms", suggestMs, "ms");
    print("suggest_per_word_ms", suggestMs / double(std::max<qsizetype>(1, words.size())), "ms");
    print("suggestions_listed", double(suggested), "");
    return found == 0 ? 1 : 0;
}
