#!/usr/bin/env python3
"""Reads the catalogue of rules, a TOML file a group of rules, and writes what the tool is built from:

write-rules.py CATALOGUE TABLE_FOLDER BUNDLE_FOLDER    TABLE_FOLDER/RuleTable.inc and BUNDLE_FOLDER/en/*.strings
write-rules.py CATALOGUE --markdown                    the catalogue for people, to standard output

A message is looked up by its test and its format, and its wording in a string table: that of the test's identity, or
the one that the file names under `strings`.
"""

import pathlib
import plistlib
import re
import sys
import tomllib

TESTERS = pathlib.Path(__file__).resolve().parents[3] / "Source/Tests"
ANY_TEST = "*"
SEVERITIES = ("fatal", "major", "minor", "technical", "information")
STATES = {"sound": "the demand stands", "historic": "a demand of older systems", "advice": "a recommendation or remark"}
TEXTS = ("title", "means", "why", "fix", "document")
LIMITS = {"title": 48, "why": 90, "fix": 90}
DIRECTIVE = re.compile(r"%(?:(\d+)\$)?[-+ #0]*\d*(?:\.\d+)?(hh|h|ll|l|q|z)?([@a-zA-Z%])")
KINDS = {"@": "text", "s": "text", **dict.fromkeys("diouxX", "integer"), **dict.fromkeys("eEfFgG", "number")}


class CatalogueError(Exception):
    pass


def string_tables():
    """The string table of every test, as its identity states it."""
    identity = re.compile(r'\.identifier = "([^"]+)".*?\.prefix = "([^"]+)"', re.S)
    found = (identity.search(file.read_text(encoding="utf-8")) for file in sorted(TESTERS.rglob("*.h")))
    return dict(match.groups() for match in found if match)


def arguments(text):
    """What kinds of arguments a format takes, by their places; None when it names only some of the places."""
    kinds, places = {}, []
    for place, size, conversion in DIRECTIVE.findall(text):
        if conversion != "%":
            places.append(place)
            kinds[int(place or len(places))] = (KINDS.get(conversion, conversion), size)
    return None if any(places) and not all(places) else kinds


class Rule:
    def __init__(self, group, key, entry, file_tests, table):
        self.name, self.group = f"{group}/{key}", group
        self.table = table
        self.tests = entry.get("tests", file_tests)
        self.severity, self.state = entry.get("severity"), entry.get("state")
        self.texts = {text: entry.get(text, "") for text in TEXTS}
        self.messages = entry.get("messages", {})
        self.unknown = set(entry) - {"tests", "severity", "state", "messages", *TEXTS}

    def faults(self, known_tests):
        if not re.fullmatch(r"[A-Za-z0-9_]+(-[A-Za-z0-9_]+)*/[a-z0-9]+(-[a-z0-9]+)*", self.name):
            yield "a name is lower case words with hyphens"
        if self.unknown:
            yield f"unknown keys: {', '.join(sorted(self.unknown))}"
        if self.severity not in SEVERITIES or self.state not in STATES:
            yield f"severity {self.severity!r}, state {self.state!r}"
        for text, value in self.texts.items():
            if not value or value != value.strip() or len(value) > LIMITS.get(text, 1000):
                yield f"{text}: empty, too long or with space around it ({len(value)} characters)"
        if self.texts["title"].endswith("."):
            yield "title: a full stop"
        if not self.tests or not self.messages:
            yield "no tests or no messages"
        for test in self.tests:
            if test != ANY_TEST and test not in known_tests:
                yield f"no such test: {test}"
        for message, wording in self.messages.items():
            if arguments(message) is None or arguments(message) != arguments(wording):
                yield f"the wording takes other arguments: {message!r}"


class Catalogue:
    """All rules by name. Raises CatalogueError with everything that is wrong."""

    def __init__(self, folder):
        self.tables = string_tables()
        self.rules, self.introductions, faults = [], {}, []
        for file in sorted(pathlib.Path(folder).glob("*.toml")):
            text = file.read_text(encoding="utf-8")
            self.introductions[file.stem] = re.match(r"(?:#.*\n)*", text).group().replace("#", "").split()
            content = tomllib.loads(text)
            tests, table = content.pop("tests", []), content.pop("strings", None)
            self.rules += [Rule(file.stem, key, entry, tests, table) for key, entry in content.items()]
        self.rules.sort(key=lambda rule: rule.name)
        for rule in self.rules:
            faults += [f"{rule.name}: {fault}" for fault in rule.faults(self.tables)]
        if not faults:
            faults = list(self.conflicts())
        if faults:
            raise CatalogueError("\n".join(faults))

    def conflicts(self):
        self.formats = {}  # (test, format): index of the rule
        self.wordings = {}  # string table: {format: wording}
        for index, rule in enumerate(self.rules):
            for test in rule.tests:
                for message, wording in rule.messages.items():
                    other = self.formats.setdefault((test, message), index)
                    if other != index:
                        yield f"{rule.name} and {self.rules[other].name} have the same message of {test}: {message!r}"
                    words = self.wordings.setdefault(rule.table or self.tables.get(test, "Localizable"), {})
                    if words.setdefault(message, wording) != wording:
                        yield f"{rule.name}: another rule words {message!r} differently in the same string table"


def literal(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n").replace("??", "?\\?") + '"'


class Texts:
    """All texts of the table, one behind the other: rows that point at them would be work for the dynamic linker."""

    def __init__(self):
        self.places, self.pieces, self.size = {}, [], 0

    def place(self, text):
        size = len(text.encode("utf-8"))
        if text not in self.places:
            self.places[text] = f"{{{self.size}, {size}}}"
            self.pieces.append(text)
            self.size += size
        return self.places[text]


def write_table(catalogue, path):
    texts = Texts()
    tests = [ANY_TEST, *sorted({test for test, _ in catalogue.formats} - {ANY_TEST})]
    rules = [f"    {{{texts.place(rule.name)}, Severity::k{rule.severity.capitalize()}, "
             f"RuleState::k{rule.state.capitalize()}, {', '.join(texts.place(rule.texts[text]) for text in TEXTS)}}},"
             for rule in catalogue.rules]
    rows = sorted((tests.index(test), message, rule) for (test, message), rule in catalogue.formats.items())
    formats = [f"    {{{test}, {rule}, {texts.place(message)}}}," for test, message, rule in rows]
    test_rows = [f"    {texts.place(test)}," for test in tests]
    lines = ["// Written by write-rules.py from the catalogue of rules.",
             "constexpr char kTexts[] =", *(f"    {literal(text)}" for text in texts.pieces), "    ;",
             "constexpr RuleRow kRules[] = {", *rules, "};",
             "constexpr Text kTests[] = {", *test_rows, "};",
             "constexpr RuleOfFormat kFormats[] = {", *formats, "};"]
    path.write_text("\n".join(lines) + "\n", encoding="utf-8")


def write_strings(catalogue, folder):
    folder.mkdir(parents=True, exist_ok=True)
    for old in folder.glob("*.strings"):
        old.unlink()
    for table, wordings in catalogue.wordings.items():
        changed = {message: wording for message, wording in wordings.items() if message != wording}
        if changed:
            (folder / f"{table.replace('/', '_')}.strings").write_bytes(plistlib.dumps(changed))


def markdown(catalogue):
    yield "# Rules\n"
    yield ("Every message is an instance of a rule. `vorn-font-test --explain` prints one of them, or all of a test or a "
           "group. A rule is\n" + ",\n".join(f"*{state}* ({words})" for state, words in STATES.items()) + ".\n")
    yield "<!-- Written by Tools/vorn-font-test/rules/write-rules.py --markdown from the files beside it. -->\n"
    group = None
    for rule in catalogue.rules:
        if rule.group != group:
            group = rule.group
            yield f"## {group}\n\n{' '.join(catalogue.introductions[group])}\n"
        texts = {name: text.replace("<", "&lt;").replace("*", "\\*") for name, text in rule.texts.items()}
        yield (f"### {rule.name}\n\n{texts['title']} ({rule.severity}, {rule.state})\n\n{texts['means']}\n\n"
               f"- Why: {texts['why']}\n- Fix: {texts['fix']}\n- Document: {texts['document']}")
        tests = ["all tests" if test == ANY_TEST else f"`{test}`" for test in rule.tests]
        yield f"- Given by {', '.join(tests)}:\n"
        yield "\n".join(f"      {wording}" for wording in dict.fromkeys(rule.messages.values())) + "\n"


def main():
    catalogue = Catalogue(sys.argv[1])
    if sys.argv[2:] == ["--markdown"]:
        print("\n".join(markdown(catalogue)), end="")
        return
    table_folder, bundle = map(pathlib.Path, sys.argv[2:4])
    write_table(catalogue, table_folder / "RuleTable.inc")
    write_strings(catalogue, bundle / "en")


if __name__ == "__main__":
    try:
        main()
    except (CatalogueError, tomllib.TOMLDecodeError) as error:
        sys.exit(f"The catalogue of rules is wrong:\n{error}")
