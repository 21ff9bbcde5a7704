#!/usr/bin/env python3
"""Holds the README's examples against the truth: the console example gives the output shown (but for the time), and the
C example compiles as C11 against the headers and finds what is wrong with the broken sample.

check-readme.py SOURCE_FOLDER BUILD_FOLDER
"""

import pathlib
import re
import subprocess
import sys
import tempfile

source, build = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
readme = (source / "README.md").read_text(encoding="utf-8")


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
