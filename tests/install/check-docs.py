#!/usr/bin/env python3
"""Holds the documents against the truth: the README's console example gives the output shown (but for the time), its C
example compiles as C11 against the headers and finds what is wrong with the broken sample, its table of tests lists what
the library has, and docs/quirks.md explains the quirks that the sources mark, no others.

check-docs.py SOURCE_FOLDER BUILD_FOLDER            checks
check-docs.py SOURCE_FOLDER BUILD_FOLDER --write    writes the table of tests into the README
"""

import pathlib
import plistlib
import re
import subprocess
import sys
import tempfile

source, build = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
readme = (source / "README.md").read_text(encoding="utf-8")
bundle = build / "share/VornFontTest"


def table_of_tests():
    """The README's table, from the lists in the library's bundle."""
    tests = plistlib.loads((bundle / "OskelBuiltinTests.plist").read_bytes())
    texts = plistlib.loads((bundle / "en/TestDescriptions.strings").read_bytes())
    rows = ["| test | type | what it does |", "|---|---|---|"]
    for test in tests:
        identifier = test["kVornFontTestIdentifierKey"]
        types = [re.sub("^kVornFontTest|Test$", "", name).lower() for name in test["kVornFontTestTypeKey"]]
        rows.append(f"| `{identifier}` | {', '.join(types)} | {texts[identifier]} |")
    return "\n".join(rows) + "\n"


TABLE = re.compile(r"(?<=<!-- tests: written by check-docs.py -->\n).*?(?=<!-- end of tests -->)", re.S)
if sys.argv[3:] == ["--write"]:
    (source / "README.md").write_text(TABLE.sub(lambda _: table_of_tests(), readme), encoding="utf-8")
    sys.exit()
if TABLE.search(readme).group() != table_of_tests():
    sys.exit("The README's table of tests is not the library's; write it anew with check-docs.py --write")

marked = {name for file in (source / "Source").rglob("*.[ch]*") for name in
          re.findall(r"quirk: ([a-z0-9-]+)", file.read_text(encoding="utf-8"))}
explained = {name for row in re.findall(r"^\|(.*?)\|", (source / "docs/quirks.md").read_text(encoding="utf-8"), re.M)
             for name in re.findall(r"`([a-z0-9-]+)`", row)}
if marked != explained:
    sys.exit(f"Quirks without explanation: {marked - explained}; explained and not marked: {explained - marked}")


def block(language):
    return re.search(rf"^```{language}\n(.*?)^```$", readme, re.S | re.M).group(1)


def run(*command):
    return subprocess.run(command, cwd=source, capture_output=True, text=True, check=False).stdout


def without_time(text):
    return re.sub(r"in \d+\.\d+ s", "in T s", text)


arguments = re.search(r"^\$ \./validate (.*)$", block("console"), re.M).group(1).split()
shown, given = without_time(block("text")), without_time(run(build / "bin/vorn-font-test", *arguments))
if shown != given:
    sys.exit(f"The README shows\n{shown}\nbut the tool prints\n{given}")

with tempfile.TemporaryDirectory() as folder:
    program = pathlib.Path(folder) / "example"
    program.with_suffix(".c").write_text(block("c"), encoding="utf-8")
    subprocess.run(["cc", "-std=c11", "-Wall", "-Wextra", "-Werror", f"-I{source}/Include", "-o", program,
                    program.with_suffix(".c"), f"-L{build}/lib", "-lVornFontTest", "-lTova", f"-Wl,-rpath,{build}/lib"],
                   check=True)
    answer = run(program, "Samples/Broken.ttf")
    if "kVornFontTestSeverityFatalError" not in answer:
        sys.exit(f"The README's program answers {answer!r}")
