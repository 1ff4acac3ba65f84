#!/usr/bin/env python3
"""Prints the paragraphs of a flat ODF text document (what
`soffice --headless --convert-to fodt` writes) as alignment and runs of
bold/italic text, one paragraph a line:

    center|[B]Quarterly Letter
    left|[B]Bold[] [I]italic[] plain.

A run is written as its attributes in brackets ("[]", "[B]", "[I]", "[BI]")
followed by its text; tabs are \\t and line breaks \\n. Adjacent runs of
the same attributes are joined, and empty paragraphs are kept. The same
form is produced by the test that reads our own written RTF, so the two can
be compared line for line."""
import sys
import xml.etree.ElementTree as ET

NS = {
    "office": "urn:oasis:names:tc:opendocument:xmlns:office:1.0",
    "style": "urn:oasis:names:tc:opendocument:xmlns:style:1.0",
    "text": "urn:oasis:names:tc:opendocument:xmlns:text:1.0",
    "fo": "urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0",
    "table": "urn:oasis:names:tc:opendocument:xmlns:table:1.0",
    "draw": "urn:oasis:names:tc:opendocument:xmlns:drawing:1.0",
}


def q(prefix, name):
    return "{%s}%s" % (NS[prefix], name)


class Styles:
    def __init__(self, root):
        self.styles = {}
        for holder in ("styles", "automatic-styles"):
            for section in root.iter(q("office", holder)):
                for st in section.findall(q("style", "style")):
                    self.styles[(st.get(q("style", "family")), st.get(q("style", "name")))] = st
        self.defaults = {}
        for st in root.iter(q("style", "default-style")):
            self.defaults[st.get(q("style", "family"))] = st

    def prop(self, family, name, props, attr):
        seen = set()
        while name and (family, name) not in seen:
            seen.add((family, name))
            st = self.styles.get((family, name))
            if st is None:
                break
            p = st.find(q("style", props))
            if p is not None and p.get(attr) is not None:
                return p.get(attr)
            name = st.get(q("style", "parent-style-name"))
        d = self.defaults.get(family)
        if d is not None:
            p = d.find(q("style", props))
            if p is not None:
                return p.get(attr)
        return None


def bold(value):
    if value is None:
        return None
    if value == "bold":
        return True
    if value.isdigit():
        return int(value) >= 600
    return False


def italic(value):
    if value is None:
        return None
    return value in ("italic", "oblique")


ALIGN = {"start": "left", "left": "left", "end": "right", "right": "right",
         "center": "center", "justify": "justify"}


def paragraphs(root, styles):
    out = []

    def text_attrs(style, inherited):
        b = bold(styles.prop("text", style, "text-properties", q("fo", "font-weight")))
        i = italic(styles.prop("text", style, "text-properties", q("fo", "font-style")))
        return (inherited[0] if b is None else b, inherited[1] if i is None else i)

    def walk(node, attrs, runs):
        if node.text:
            runs.append((attrs, node.text))
        for child in node:
            tag = child.tag
            if tag == q("text", "span"):
                walk(child, text_attrs(child.get(q("text", "style-name")), attrs), runs)
            elif tag == q("text", "s"):
                runs.append((attrs, " " * int(child.get(q("text", "c"), "1"))))
            elif tag == q("text", "tab"):
                runs.append((attrs, "\t"))
            elif tag == q("text", "line-break"):
                runs.append((attrs, "\n"))
            elif tag.startswith("{%s}" % NS["draw"]) or tag == q("office", "annotation"):
                pass
            else:
                walk(child, attrs, runs)
            if child.tail:
                runs.append((attrs, child.tail))

    def visit(node):
        for child in node:
            if child.tag in (q("text", "p"), q("text", "h")):
                style = child.get(q("text", "style-name"))
                align = styles.prop("paragraph", style, "paragraph-properties", q("fo", "text-align"))
                base = (bold(styles.prop("paragraph", style, "text-properties", q("fo", "font-weight"))) or False,
                        italic(styles.prop("paragraph", style, "text-properties", q("fo", "font-style"))) or False)
                runs = []
                walk(child, base, runs)
                out.append((ALIGN.get(align or "start", "left"), runs))
            elif child.tag.startswith("{%s}" % NS["draw"]):
                continue
            else:
                visit(child)

    body = root.find(q("office", "body"))
    visit(body.find(q("office", "text")))
    return out


def render(align, runs):
    merged = []
    for attrs, text in runs:
        if merged and merged[-1][0] == attrs:
            merged[-1][1] += text
        else:
            merged.append([attrs, text])
    parts = []
    for (b, i), text in merged:
        if not text:
            continue
        text = text.replace("\\", "\\\\").replace("\t", "\\t").replace("\n", "\\n")
        parts.append("[%s%s]%s" % ("B" if b else "", "I" if i else "", text))
    return align + "|" + "".join(parts)


def main():
    root = ET.parse(sys.argv[1]).getroot()
    for align, runs in paragraphs(root, Styles(root)):
        print(render(align, runs))


if __name__ == "__main__":
    main()
