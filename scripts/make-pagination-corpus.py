#!/usr/bin/python3
"""Writes the letters whose page breaks are compared with LibreOffice's:
tests/data/pagination/*.rtf. Deterministic; run again only to change them.

Every file states its page (Letter, 1 inch margins: the program's default
page setup) so that both programs lay out the same page, and uses the
Liberation fonts that both have."""
import pathlib
import random

ROOT = pathlib.Path(__file__).resolve().parent.parent
OUT = ROOT / "tests" / "data" / "pagination"
HEADER = ("{\\rtf1\\ansi\\ansicpg1252\\deff0"
          "{\\fonttbl{\\f0\\froman Liberation Serif;}{\\f1\\fswiss Liberation Sans;}}\n"
          "\\paperw12240\\paperh15840\\margl1440\\margr1440\\margt1440\\margb1440\n")
WORDS = ("the accounts year end return statements review client practice figures "
         "quarter filing deadline costs turnover schedule balance records payroll "
         "remittance engagement letter enclosed signed agreed services fees period "
         "instalment corporation director shareholder dividend ledger receipts").split()


def paragraph(rng, words):
    text = " ".join(rng.choice(WORDS) for _ in range(words))
    return text[0].upper() + text[1:] + "."


def letter(rng, number):
    parts = ["\\pard\\f1\\fs28\\b Harbour & Vale Accountants\\b0\\par",
             "\\f0\\fs24 12 Quay Street\\par Westport\\par\\par",
             f"Letter {number}\\par\\par Dear client,\\par\\par"]
    for _ in range(rng.randint(6, 14)):
        size = rng.choice([20, 22, 24, 24, 24, 28])
        indent = rng.choice(["", "", "\\li720", "\\li720\\fi-360"])
        body = paragraph(rng, rng.randint(20, 140))
        if rng.random() < 0.3:
            cut = body.find(" ", len(body) // 3)
            body = body[:cut] + " \\b " + body[cut + 1:] + "\\b0 "
        parts.append(f"\\pard{indent}\\fs{size} {body}\\par\\pard\\fs24\\par")
    parts.append("Yours sincerely,\\par\\par\\par Harbour & Vale\\par")
    return "\n".join(parts)


def write(name, letters, seed):
    rng = random.Random(seed)
    body = "\n\\page\n".join(letter(rng, n + 1) for n in range(letters))
    (OUT / name).write_text(HEADER + body + "\n}\n", encoding="latin-1", newline="\r\n")


def main():
    OUT.mkdir(parents=True, exist_ok=True)
    write("one-letter.rtf", 1, 11)
    write("three-letters.rtf", 3, 12)
    write("generated-letters.rtf", 60, 13)


if __name__ == "__main__":
    main()
