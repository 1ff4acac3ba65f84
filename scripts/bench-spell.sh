#!/usr/bin/env bash
# Times the spell checker beside hunspell, in one run on the same generated
# text: about 1 MB of business letters with some 2 % of words misspelled.
#   - listing the misspellings: ours (the dialog's scan of the text) against
#     `hunspell -l` given one word a line (and given the text itself);
#   - suggestions for the same 200 misspelled words: ours (the dialog's
#     list at the session defaults) against `hunspell -a`.
# Also prints load-and-index time, probe lengths and one ten-letter word in
# mode 2. Installs hunspell and its Canadian dictionary when missing.
set -euo pipefail
cd "$(dirname "$0")/.."

for p in hunspell hunspell-en-ca; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -qq
    apt-get install -y -qq --no-install-recommends hunspell hunspell-en-ca </dev/null
    break
  fi
done

# SPELL_TIMING names an already built timing program; otherwise it is built
# here in release mode.
if [ -z "${SPELL_TIMING:-}" ]; then
  build=build/bench-spell
  cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DQM_BUILD_BENCH=ON \
    -DQM_BUILD_TESTS=OFF >/dev/null
  cmake --build "$build" --target spell-timing --parallel 2 >/dev/null
  SPELL_TIMING=$build/bench/spell/spell-timing
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp resources/wordlist/list.db "$work/list.db"

python3 - "$work" <<'PY'
import random, sys
work = sys.argv[1]
rnd = random.Random(6)
subjects = ["The client", "Our firm", "The partnership", "The corporation", "Your bookkeeper",
            "The auditor", "The trustee", "Management", "The company", "The estate"]
verbs = ["has received", "will prepare", "must file", "reviewed", "has approved",
         "will reconcile", "should submit", "has requested", "will forward", "signed"]
objects = ["the annual financial statements", "the quarterly tax instalments",
           "the payroll remittance", "the accounts receivable ledger", "the bank reconciliation",
           "the corporate income tax return", "the engagement letter", "the invoice for services",
           "the depreciation schedule", "the trial balance", "the general ledger adjustments",
           "the notice of assessment", "the harmonized sales tax return", "the working papers"]
tails = ["before the deadline", "for the fiscal year", "as discussed last week",
         "at your earliest convenience", "in accordance with the agreement",
         "without further delay", "for the current period", "with the supporting documents"]
openings = ["Dear Mr. Thompson,", "Dear Ms. Fraser,", "Dear Client,", "To whom it may concern,"]
closings = ["Yours truly,", "Sincerely,", "Best regards,"]

def misspell(word):
    i = rnd.randrange(1, len(word) - 1)
    if rnd.random() < 0.5:
        c = rnd.choice("abcdefghijklmnopqrstuvwxyz".replace(word[i], ""))
        return word[:i] + c + word[i + 1:]
    return word[:i] + word[i + 1] + word[i] + word[i + 2:]

lines, size, misspelled = [], 0, []
while size < 1_000_000:
    letter = [rnd.choice(openings), ""]
    for _ in range(rnd.randint(3, 6)):
        sentence = []
        for _ in range(rnd.randint(2, 4)):
            sentence.append(f"{rnd.choice(subjects)} {rnd.choice(verbs)} {rnd.choice(objects)} "
                            f"{rnd.choice(tails)}.")
        words = " ".join(sentence).split(" ")
        for k, w in enumerate(words):
            core = w.strip(".,")
            if len(core) >= 5 and core.isalpha() and rnd.random() < 0.02 * 1.6:
                bad = misspell(core)
                misspelled.append(bad)
                words[k] = w.replace(core, bad)
        letter.append(" ".join(words))
    letter += ["", rnd.choice(closings), "", "Quillmere Accounting", ""]
    for line in letter:
        lines.append(line)
        size += len(line) + 2
text = "\r\n".join(lines) + "\r\n"
open(f"{work}/text.txt", "w", newline="").write(text)
tokens = [t for t in text.replace("\r\n", " ").split(" ") if t]
open(f"{work}/tokens.txt", "w").write("\n".join(tokens) + "\n")
seen, chosen = set(), []
for w in misspelled:
    if w.lower() not in seen:
        seen.add(w.lower())
        chosen.append(w)
    if len(chosen) == 200:
        break
open(f"{work}/words.txt", "w").write("\n".join(chosen) + "\n")
print(f"text: {len(text)} characters, {len(tokens)} tokens, {len(misspelled)} misspelled "
      f"({100.0 * len(misspelled) / len(tokens):.1f} %), {len(chosen)} words for suggestions")
PY

python3 - "$work" "$SPELL_TIMING" <<'PY'
import statistics, subprocess, sys, time
work, timing = sys.argv[1], sys.argv[2]

def median_seconds(cmd, stdin_path, runs=5):
    times, out = [], b""
    for _ in range(runs):
        with open(stdin_path, "rb") as f:
            t = time.perf_counter()
            out = subprocess.run(cmd, stdin=f, stdout=subprocess.PIPE, check=True).stdout
            times.append(time.perf_counter() - t)
    return statistics.median(times), out

# Both sides in one run, one after the other, on the same files.
hl_tokens, out_l = median_seconds(["hunspell", "-d", "en_CA", "-l"], f"{work}/tokens.txt")
hl_text, _ = median_seconds(["hunspell", "-d", "en_CA", "-l"], f"{work}/text.txt")
ha, out_a = median_seconds(["hunspell", "-d", "en_CA", "-a"], f"{work}/words.txt")
ours = subprocess.run([timing, f"{work}/list.db", f"{work}/text.txt", f"{work}/words.txt", "5"],
                      stdout=subprocess.PIPE, check=True, text=True).stdout
print(ours, end="")
fig = {k.strip(): float(v.split()[0]) for k, v in (l.split(":", 1) for l in ours.splitlines())}
hunspell_listed = len(out_l.splitlines())
print(f"hunspell_l_one_word_a_line_ms: {hl_tokens * 1000:.1f} ms ({hunspell_listed} listed)")
print(f"hunspell_l_text_ms: {hl_text * 1000:.1f} ms")
print(f"hunspell_a_200_words_ms: {ha * 1000:.1f} ms")
print(f"ratio_list_ours_to_hunspell_one_word_a_line: {fig['list_misspellings_ms'] / (hl_tokens * 1000):.3f}")
print(f"ratio_list_ours_to_hunspell_text: {fig['list_misspellings_ms'] / (hl_text * 1000):.3f}")
print(f"ratio_suggest_ours_to_hunspell: {fig['suggest_all_ms'] / (ha * 1000):.3f}")
PY
