#!/usr/bin/env python3
"""Writes the style and the program of the HTML report as constants of C++, with the hashes by which the page's
Content-Security-Policy lets them in.

Usage: embed.py OUTPUT STYLE PROGRAM...
"""

import base64
import hashlib
import json
import pathlib
import sys

PIECE = 8000  # characters of one literal


def constants(name, files):
    text = "".join(pathlib.Path(file).read_text(encoding="ascii") for file in files)
    if "</s" in text.lower() or "<!--" in text:
        sys.exit(f"{files}: would end the element that it stands in, or begin a comment")
    text = "\n" + text  # as it stands between the tags
    digest = base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()
    pieces = [json.dumps(text[at:at + PIECE]) for at in range(0, len(text), PIECE)]
    yield f"constexpr std::string_view k{name} ="
    yield "\n".join(f"    {piece}" for piece in pieces) + ";"
    yield f'constexpr std::string_view k{name}Hash = "sha256-{digest}";'


def main():
    output, style, *program = sys.argv[1:]
    lines = ["// Written by embed.py.", *constants("Style", [style]), *constants("Program", program)]
    pathlib.Path(output).write_text("\n".join(lines) + "\n", encoding="ascii")


if __name__ == "__main__":
    main()
