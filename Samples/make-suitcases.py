#!/usr/bin/env python3
"""Makes the sample suitcases from a font of Debian's package fonts-sil-gentium.

fontforge -lang=py -script make-suitcases.py FOLDER

Writes Suitcase.dfont (an sfnt font and its family in a data fork), Bitmaps.bmap.bin (the family with bitmap fonts, in
one file with both forks) and VornSuiReg (the PostScript outlines that this family names, likewise).
"""

import os
import sys

import fontforge

SOURCE = "/usr/share/fonts/truetype/gentium/Gentium-R.ttf"
LETTERS = {0x20, *range(ord("A"), ord("Z") + 1)}
SIZES = (9, 12)  # pixels

font = fontforge.open(SOURCE)
for lookup in font.gpos_lookups + font.gsub_lookups:
    font.removeLookup(lookup)
for glyph in list(font.glyphs()):
    if glyph.unicode not in LETTERS and glyph.glyphname != ".notdef":
        font.removeGlyph(glyph)
font.selection.all()
font.unlinkReferences()
font.familyname, font.fontname, font.fullname = "Vorn Suitcase", "VornSuitcase-Regular", "Vorn Suitcase Regular"
font.sfnt_names = ()
font.os2_vendor = "VORN"
os.chdir(sys.argv[1])
font.generate("Suitcase.dfont", flags=())
font.generate("VornSuiReg.bin", flags=())
os.rename("VornSuiReg.bin", "VornSuiReg")
font.bitmapSizes = tuple((size,) for size in SIZES)
for size in SIZES:
    font.regenBitmaps((size,))
font.generate("Bitmaps.", bitmap_type="nfnt")
