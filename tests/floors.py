#!/usr/bin/env python3
"""Checks that the sources include only what lies on the floors below them, and each library in its one place.

Usage: floors.py [ROOT]    ROOT is the top of the source tree; default: the folder above this file's.
Prints a line FILE:LINE: ... for each breach and ends with 1 when there is one, with 2 when there is nothing to check.
"""

import pathlib
import re
import sys

# Folder -> folders that its files may include from, besides itself.
MAY_INCLUDE = {
    "Include/Tova": [],
    "Include/VornFontTest": ["Include/Tova"],
    "Source/Platform": ["Include/Tova"],
    "Source/TableAccess": ["Include/Tova", "Source/Platform"],
    "Source/Tests": ["Include/Tova", "Include/VornFontTest", "Source/Platform", "Source/TableAccess"],
    "Source/Core": ["Include/Tova", "Include/VornFontTest", "Source/Platform", "Source/TableAccess", "Source/Tests"],
    "Source/BundleWriter": ["Include/Tova", "Include/VornFontTest", "Source/Core", "Source/Tests"],
    "Tools": ["Include/Tova", "Include/VornFontTest"],  # each program is a folder of its own
}

# Folders of one floor, of which each may include from itself and those before it.
ORDERED = ["Source/TableAccess/" + folder
           for folder in ("AncillaryClasses", "Glyphs", "TableClasses", "FontClasses", "ContainerClasses")]

# Single files that may include a single header beyond that.
EXCEPTIONS = {
    (r"Source/Tests/VornFontTester_duplicate\.(h|cpp)", "Source/Core/RundleConduit.h"),
    (r"Source/TableAccess/ContainerClasses/.*", "Include/VornFontTest/FontFiles.hpp"),
}

# Headers of a library -> the files that may include them.
LIBRARIES = {
    r"unicode/": r"Source/(TableAccess/AncillaryClasses/FTEncoding|CharacterWriter/)[^/]*",
    r"pugixml": r"Source/Platform/PropertyList[^/]*",
    r"fmt/": r"Source/Platform/FormatString[^/]*",
    r"fontconfig/": r"(Tools/rundle-conduit|Source/AlphabetWriter)/.*",
    r"(freetype/|ft2build)": r"Tools/vorn-font-test/Formats/FreeTypeLibrary[^/]*",
}

INCLUDE = re.compile(r'\s*#\s*include\s*([<"])([^>"]+)[>"]')


def folder_of(path):
    """The folder of MAY_INCLUDE that holds the file; for a tool, the program's own."""
    if path.startswith("Tools/"):
        return "/".join(path.split("/")[:2])
    return next((folder for folder in MAY_INCLUDE if path.startswith(folder + "/")), None)


def resolve(root, file, quoted, name):
    """The file of the tree that the compiler would take, relative to its top; None for one from outside."""
    for base in ([file.parent] if quoted else []) + [root / "Source", root / "Include"]:
        target = (base / name).resolve()
        if target.is_file() and target.is_relative_to(root):
            return target.relative_to(root).as_posix()
    return None


def breach(path, target, name):
    """What is wrong with the inclusion, None when nothing is."""
    if target is None:
        for library, places in LIBRARIES.items():
            if re.match(library, name) and not re.fullmatch(places, path):
                return f"<{name}> may be included by {places} only"
        return None
    own, other = folder_of(path), folder_of(target)
    allowed = MAY_INCLUDE["Tools" if path.startswith("Tools/") else own]
    if other == own or other in allowed:
        return breach_of_order(path, target)
    if any(re.fullmatch(files, path) and header == target for files, header in EXCEPTIONS):
        return None
    return f"{own} may not include {target}"


def breach_of_order(path, target):
    """The same within a floor."""
    own, other = (next((i for i, folder in enumerate(ORDERED) if file.startswith(folder + "/")), None)
                  for file in (path, target))
    if own is None or other is None or other <= own:
        return None
    return f"{ORDERED[own]} may not include {target}"


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent).resolve()
    files = [file for top in ("Include", "Source", "Tools") for file in sorted((root / top).rglob("*"))
             if file.suffix in (".h", ".hpp", ".cpp", ".c") and folder_of(file.relative_to(root).as_posix())]
    breaches = []
    for file in files:
        path = file.relative_to(root).as_posix()
        for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
            if include := INCLUDE.match(line):
                quoted, name = include.group(1) == '"', include.group(2)
                if reason := breach(path, resolve(root, file, quoted, name), name):
                    breaches.append(f"{path}:{number}: {reason}")
    print(*breaches, sep="\n")
    return 2 if not files else 1 if breaches else 0


if __name__ == "__main__":
    sys.exit(main())
