#!/usr/bin/env python3
"""Holds the catalogue of rules against the sources: every message that a test can give has its rule, every message of
the catalogue is given somewhere, and docs/rules.md is made from it.

rules.py SOURCE_FOLDER            checks
rules.py SOURCE_FOLDER --write    writes docs/rules.md
"""

import pathlib
import re
import runpy
import sys

source = pathlib.Path(sys.argv[1]).resolve()
writer = runpy.run_path(str(source / "Tools/vorn-font-test/rules/write-rules.py"))
catalogue = writer["Catalogue"](source / "Tools/vorn-font-test/rules")
document = source / "docs/rules.md"
text = "\n".join(writer["markdown"](catalogue))
if sys.argv[2:] == ["--write"]:
    document.write_text(text, encoding="utf-8")
    sys.exit()

TOKEN = re.compile(r'//[^\n]*|^\s*#\s*include[^\n]*|"((?:[^"\\\n]|\\.)*)"|\'(?:[^\'\\\n]|\\.)+\'|\s+|\w+|.', re.M)
# Texts of several words are messages when they look like sentences, or stand behind a severity...
SENTENCE = re.compile(r"([A-Z%'].*|\w.*%.*)\s\S")
SEVERITY = re.compile(r"k(Information|\w+Error) ,$")
# ... but not behind these: a test's identity, a part of a font, a failed check, a piece of a text.
ELSEWHERE = re.compile(r"(identifier =|prefix =|name =|description =|part =|Enter \(|Require \(|\+)$")


def literals(file):
    """The string literals of a source, adjacent ones as one, each with the tokens before it."""
    before, pieces = [], []
    for match in [*TOKEN.finditer(file.read_text(encoding="utf-8")), None]:
        token = match.group() if match else ""
        if match and (token.isspace() or token.startswith("//") or "#" in token and "include" in token):
            continue
        if token.startswith('"'):
            pieces.append(match.group(1))
            continue
        if pieces:
            yield "".join(pieces).replace('\\"', '"').replace("\\\\", "\\"), " ".join(before[-2:])
            before.append("text")
            pieces = []
        before.append(token)


given, names, endings = {"%@"}, [], []
for file in [*(source / "Source/Tests").rglob("*.[ch]*"), *(source / "Source/Core").glob("Report*.cpp")]:
    for literal, before in literals(file):
        if before.endswith("OFFSET_TEXTS ("):
            names.append(literal)
        elif literal.startswith(" offset "):
            endings.append(literal)
        elif SEVERITY.search(before) or SENTENCE.match(literal) and not ELSEWHERE.search(before):
            given.add(literal)
given |= {name + ending for name in names for ending in endings}
listed = {message for rule in catalogue.rules for message in rule.messages}

wrong = [f"without a rule: {message!r}" for message in sorted(given - listed)]
wrong += [f"in the catalogue, but given nowhere: {message!r}" for message in sorted(listed - given)]
if not document.exists() or document.read_text(encoding="utf-8") != text:
    wrong.append("docs/rules.md is not made from the catalogue; write it anew with tests/rules.py . --write")
if wrong:
    sys.exit("\n".join(wrong))
