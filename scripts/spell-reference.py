#!/usr/bin/env python3
"""A second, independent reading of the spell checker's rules, used to make
the golden files of the spell tests: misspellings of a text in order, each
with its suggestions after generation, duplicate removal, the one-pass sort
and the precision filter, at the session defaults.

Look-ups use a Python set instead of the hash index, and the suggestion
patterns are built and replaced literally, so that the program's shortcuts
are checked against the plain procedure.

usage: spell-reference.py LIST_DB TEXT_FILE [TOLERANCE] > golden.txt
"""
import sys
import unicodedata

ACCURACY, PRECISION_FILTER, RELEVANCE_ORDER, SORT = 70, True, 1, True


def load_words(path):
    data = open(path, "rb").read().decode("cp1252", errors="surrogateescape")
    parts = data.split("\r\n")
    return set(parts[:-1])


def filter_word(token):
    for marker in ("@", "http", "ftp", "1st", "2nd", "3rd"):
        if marker in token:
            return False
    if "th" in token:
        for n in range(4, 31):
            if f"{n}th" in token:
                return False
    return True


def is_word_char(c):
    cat = unicodedata.category(c)
    return cat.startswith("L") or cat == "Nd"


def filter_punctuation(token):
    while token and not is_word_char(token[0]):
        token = token[1:]
    while token and not is_word_char(token[-1]):
        token = token[:-1]
    return token


def word_compare(words, word):
    w = word.lower()
    if w in words:
        return True
    if w.endswith("'s") or w.endswith("s'"):
        return w[:-2] in words
    return False


def wildcards(word, mode):
    if mode == 0:
        return [word[:i] + "*" + word[i + 1:] for i in range(len(word))]
    return [word[:i] + "**" + word[i + 2:] for i in range(len(word))]


def suggest(words, word, mode, out):
    word = word.lower()
    letters = [chr(c) for c in range(97, 123)]
    if mode in (0, 2):
        for p in wildcards(word, 0):
            for c in letters:
                cand = p.replace("*", c)
                if cand and cand in words:
                    out.append(cand)
    if mode in (1, 2):
        for p in wildcards(word, 1)[:-1]:
            for c1 in letters:
                for c2 in letters:
                    cand = p.replace("**", c1 + c2)
                    if cand and cand in words:
                        out.append(cand)


def remove_duplicates(items):
    i = len(items) - 1
    while i >= 0:
        if items.count(items[i]) >= 2:
            del items[i]
        i -= 1


def score(word, cand):
    n = len(word)
    mism = 0
    for i in range(n):
        if i >= len(cand):
            mism += 1
        elif word[i].casefold() != cand[i].casefold():
            mism += 1
    if len(cand) > n:
        mism += len(cand) - n
    return round(100 / n * (n - mism))  # half to even


def suggest_sort(word, items):
    new, prev = [], 0
    for s in items:
        sc = score(word, s)
        if sc < prev:
            new.insert(0, s)
        else:
            new.append(s)
        prev = sc
    return new[::-1] if RELEVANCE_ORDER == 2 else new


def list_suggestions(words, word, tolerance):
    items = []
    if tolerance == 1:
        suggest(words, word, 0, items)
    elif tolerance == 2:
        suggest(words, word, 1, items)
        remove_duplicates(items)
    else:
        suggest(words, word, 2, items)
        remove_duplicates(items)
    if SORT:
        items = suggest_sort(word, items)
    if PRECISION_FILTER:
        items = [s for s in items if score(word, s) >= ACCURACY]
    return items


def main():
    words = load_words(sys.argv[1])
    text = open(sys.argv[2], "rb").read().decode("utf-8")
    text = text.replace("\r\n", "\n").replace("\r", "\n").replace("\n", "\r\n")
    tolerance = int(sys.argv[3]) if len(sys.argv) > 3 else 3
    out = sys.stdout
    for line in text.split("\r\n"):
        for token in line.split(" "):
            if not token or not filter_word(token):
                continue
            word = filter_punctuation(token)
            if not word or word_compare(words, word):
                continue
            sugg = list_suggestions(words, word, tolerance)
            out.write(word + ":" + (" " + ", ".join(sugg) if sugg else "") + "\n")


if __name__ == "__main__":
    main()
