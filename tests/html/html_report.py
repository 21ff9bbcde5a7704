#!/usr/bin/env python3
"""Looks at HTML reports in a headless Chromium.

Usage: html_report.py PROGRAM SAMPLES    the built vorn-font-test; the folder of sample fonts
"""

import json
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest
from html.parser import HTMLParser

from browser import Browser

PROGRAM, SAMPLES = sys.argv.pop(1), pathlib.Path(sys.argv.pop(1))
LARGE_FONT = pathlib.Path("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf")
MARKUP = "<img src=//a.b/c>!"  # as long as the name that it takes the place of

# Helpers for programs that run in the page.
HELPERS = """
const settle = () => new Promise((resolve) => setTimeout(resolve, 0)).then(() => new Promise(requestAnimationFrame));
const all = (selector) => [...document.querySelectorAll(selector)];
const one = (selector) => document.querySelector(selector);
const choose = (id, value) => { const control = document.getElementById(id); control.value = value;
  control.dispatchEvent(new Event(control.matches('select') ? 'change' : 'input')); };
"""


def with_wrong_boxes(font):
    """The font with every stored box moved to the right."""
    data = bytearray(font)
    count, = struct.unpack_from(">H", data, 4)
    tables = {font[at:at + 4]: struct.unpack_from(">I", data, at + 8)[0] for at in range(12, 12 + 16 * count, 16)}
    glyphs, = struct.unpack_from(">H", data, tables[b"maxp"] + 4)
    offsets = struct.unpack_from(f">{glyphs + 1}I", data, tables[b"loca"])  # the font has 32-bit offsets
    for begin, end in zip(offsets, offsets[1:]):
        for field in (2, 6) if end - begin >= 10 else ():
            at = tables[b"glyf"] + begin + field
            struct.pack_into(">h", data, at, struct.unpack_from(">h", data, at)[0] + 77)
    return data


class HtmlReportTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.path = pathlib.Path(cls.folder.name)
        for copy in ("large.ttf", "larger.ttf"):
            (cls.path / copy).write_bytes(with_wrong_boxes(LARGE_FONT.read_bytes()))
        name = "Vorn Sample Broken"
        font = (SAMPLES / "Broken.ttf").read_bytes()
        assert name.encode("utf-16-be") in font and len(name) == len(MARKUP)
        (cls.path / "<b>&amp;.ttf").write_bytes(font.replace(name.encode("utf-16-be"), MARKUP.encode("utf-16-be")))
        (cls.path / "none.ttf").write_bytes(b"no font")
        cls.data = {}  # of each page, by its name: what the same run tells as JSON
        for page, fonts in {"broken": ["<b>&amp;.ttf", SAMPLES / "Broken.ttf", SAMPLES / "Collection.ttc", "none.ttf"],
                            "large": ["large.ttf", "larger.ttf"], "usual": [SAMPLES / "Broken.ttf"]}.items():
            profile = "default" if page == "usual" else "strict"
            command = [PROGRAM, "-q", "--profile", profile, "--max-messages", "0", "-f", "html", "-o", f"{page}.html",
                       "-o", f"json:{page}.json", *fonts]
            subprocess.run(command, cwd=cls.path, check=False, timeout=240)
            cls.data[page] = json.loads((cls.path / f"{page}.json").read_text())
        cls.window = Browser()
        cls.browser = cls.window.__enter__()

    @classmethod
    def tearDownClass(cls):
        cls.window.__exit__()
        cls.folder.cleanup()

    def setUp(self):
        self.browser.complaints()  # those of the test before

    def open(self, page, address="", width=1280):
        self.browser.chrome("Emulation.setDeviceMetricsOverride", width=width, height=900, deviceScaleFactor=1,
                            mobile=False)
        self.browser.open(self.path / f"{page}.html", address)

    def run_in_page(self, program):
        return self.browser.run(f"{HELPERS} return (async () => {{ {program} }})();")

    def messages(self, page="broken"):
        """(font, test, severity, text) of every message; a font is the number of its section."""
        files = self.data[page]["files"]
        fonts = [font for file in files for font in file["report"]["kVornFontTestFontsTestedKey"] or [{}]]
        keys = ("kVornFontTestResultKey", "kVornFontTestMessageTextKey")
        return [(str(i), test["kVornFontTestIdentifierKey"], *(message[key] for key in keys))
                for i, font in enumerate(fonts) for test in font.get("kVornFontTestArrayKey", ())
                for message in test.get("kVornFontTestMessagesKey", ())]

    def status(self):
        return self.browser.run("return document.querySelector('.status').textContent")

    def test_shows_the_run_and_its_findings_by_font_and_rule(self):
        self.open("broken")
        found = len(self.messages()) + 1  # the file that cannot be opened
        self.assertRegex(self.status(), rf"^{found} findings in \d+ rules$")
        shown = self.run_in_page("""
          all('.folds button')[0].click(); await settle();
          const fonts = all('.font > summary .name').map((name) => name.textContent);
          const levels = all('.font:first-child .rule > summary .severity').map((word) => word.textContent);
          const rule = all('.rule').find((rule) => rule.textContent.includes('glyf/box-differs'));
          rule.querySelector('.picture').click(); await settle();
          const dialog = one('dialog[open]');
          return {verdict: one('.verdict').textContent, fonts,
                  levels: levels.filter((word, i) => word !== levels[i - 1]),
                  text: rule.querySelector('.explanation').textContent, card: rule.querySelector('.card').textContent,
                  drawn: ['.curve', '.on', '.stored', '.found'].filter((kind) => dialog.querySelector(`svg ${kind}`)),
                  boxes: [...dialog.querySelectorAll('tbody td')].map((cell) => cell.textContent),
                  differs: dialog.querySelectorAll('td.differs').length};""")
        self.assertIn("major or graver findings (exit status 1)", shown["verdict"])
        self.assertEqual(shown["fonts"][:2], [MARKUP, "Vorn Sample Broken"])
        self.assertEqual(len(shown["fonts"]), 5)
        self.assertEqual(shown["levels"], ["fatal", "major", "minor", "technical", "information"])
        self.assertIn("clipping and line layout use the stored box", shown["text"])
        self.assertIn("points reach", shown["card"])
        self.assertEqual(shown["drawn"], [".curve", ".on", ".stored", ".found"])
        self.assertEqual(shown["boxes"], ["50", "0", "550", "650", "50", "0", "550", "700"])
        self.assertEqual(shown["differs"], 2)
        components = self.run_in_page("""
          one('dialog').close();
          const rule = all('.rule').find((rule) => rule.textContent.includes('glyf/component-scales-twice'));
          rule.querySelector('.picture').click(); await settle();
          return [...one('dialog').querySelectorAll('table:last-child td')].map((cell) => cell.textContent);""")
        self.assertEqual(components, ["3", "0", "0", "5", "0", "0"])
        self.assertEqual(self.browser.complaints(), [])

    def test_filters_let_through_what_they_say(self):
        messages, usability = self.messages(), "veltrin.TrueType.glyf.usability"
        total = len(messages) + 1
        cases = {
            "one('[data-severity=minor]').click()": sum("Minor" not in severity for _, _, severity, _ in messages) + 1,
            "choose('filter-font', '1')": sum(font == "1" for font, *_ in messages),
            f"choose('filter-test', '{usability}')": sum(test == usability for _, test, *_ in messages),
            "choose('filter-rule', 'glyf/glyph-blank')": sum(text.endswith("no outline") for *_, text in messages),
            "choose('filter-text', 'CARETSLOPE')": sum("caretSlope" in text for *_, text in messages)}
        for program, expected in cases.items():
            with self.subTest(program):
                self.assertTrue(0 < expected < total)
                self.open("broken")
                kept = self.run_in_page(f"{program}; await settle(); return location.hash")
                self.assertRegex(self.status(), rf"^{expected} of {total} findings ")
                self.run_in_page("all('.folds button')[0].click()")
                counts = self.run_in_page("return all('.rule > summary .number').map((count) => count.textContent)")
                self.assertEqual(sum(int(count.split()[0]) for count in counts), expected)
                self.open("broken", kept)
                self.assertRegex(self.status(), rf"^{expected} of {total} findings ")
                self.run_in_page("one('[data-view=rule]').click(); await settle(); one('.reset').click()")
                self.assertRegex(self.status(), rf"^{total} findings ")
        self.run_in_page("choose('filter-text', 'no such words')")
        self.assertEqual(self.status(), "No finding matches the filters")

    def test_counts_what_is_left_out_where_it_is_shown(self):
        self.open("usual")
        for clicks in ("", "one('#filter-left-out').click(); await settle();"):
            counts = self.run_in_page(f"{clicks} return all('#severities b').map((number) => number.textContent)")
            self.assertRegex(self.status(), rf"^{sum(map(int, counts))} findings in ")
        self.assertEqual(sum(map(int, counts)), len(self.messages("usual")))
        self.assertNotIn("<no", self.run_in_page("return one('.list').textContent"))

    def test_loads_nothing_and_lets_nothing_run(self):
        class Links(HTMLParser):
            found = []

            def handle_starttag(self, tag, attrs):
                self.found += [value for name, value in attrs if name in ("src", "href", "style", "srcset", "action")]
        Links().feed((self.path / "broken.html").read_text())
        self.assertEqual(Links.found, ["#results"])
        self.open("broken")
        self.assertEqual(self.run_in_page("""
          const loaded = performance.getEntriesByType('resource').map((entry) => entry.name), broken = [];
          document.addEventListener('securitypolicyviolation', (event) => broken.push(event.effectiveDirective));
          const made = document.createElement('div');
          made.innerHTML = '<img src="https://a.b/c" onerror="window.ran = 1"><b style="color: red">';
          document.body.append(made);
          await fetch('https://a.b/d').catch(() => {});
          await settle();
          return [loaded, window.ran ?? null, [...new Set(broken)].sort()];"""),
                         [[], None, ["connect-src", "img-src", "script-src-attr", "style-src-attr"]])

    def test_markup_in_names_stays_text(self):
        self.open("broken")
        made = self.run_in_page("return [document.images.length, all('main b').length, one('.path').textContent]")
        self.assertEqual(made, [0, 0, "<b>&amp;.ttf"])
        page = (self.path / "broken.html").read_text()
        self.assertNotIn("<img", page)
        self.assertIn("&#60;img src=//a.b/c&#62;!", page)

    def test_ten_thousand_findings_are_elements_only_when_they_are_seen(self):
        self.assertGreater(len(self.messages("large")), 10_000)
        self.open("large")
        count = "return all('*').length"
        self.assertLess(self.run_in_page(count), 500)
        self.run_in_page("all('.folds button')[0].click(); await settle()")
        self.assertLess(self.run_in_page(count), 12_000)
        cards, rows, more, focused = self.run_in_page("""
          const rule = all('.rule').find((rule) => rule.textContent.includes('glyf/box-differs'));
          const body = rule.querySelector('.body'), count = (kind) => body.querySelectorAll(kind).length;
          const before = [count('.card'), count('.findings li')];
          body.querySelector('.more').click();
          return [...before, count('.findings li'), document.activeElement.matches('.findings li:nth-child(101)')]""")
        self.assertEqual((cards, rows, more, focused), (24, 100, 200, True))
        page = (self.path / "large.html").read_text()
        self.assertLess(sum(len(line) for line in page.splitlines() if 'class="glyphs"' in line), 300_000)

    def test_works_with_the_keyboard(self):
        self.open("broken")

        def press(key, code, text=""):
            for kind in ("keyDown", "keyUp"):
                self.browser.chrome("Input.dispatchKeyEvent", type=kind, key=key, windowsVirtualKeyCode=code,
                                    **({"text": text} if text and kind == "keyDown" else {}))
        press("Tab", 9)
        self.assertEqual(self.run_in_page("return document.activeElement.textContent"), "Skip to the findings")
        press("Enter", 13, "\r")
        press("Tab", 9)
        self.assertEqual(self.run_in_page("return document.activeElement.textContent"), "By font")
        self.run_in_page("one('.font > summary').focus()")
        press("Enter", 13, "\r")
        self.assertTrue(self.run_in_page("await settle(); return one('details.font').open && all('.rule').length > 5"))
        press("/", 191, "/")
        press("z", 90, "z")
        self.assertEqual(self.run_in_page("return [document.activeElement.id, document.activeElement.value]"),
                         ["filter-text", "z"])

    def test_fits_a_narrow_screen(self):
        for page in ("broken", "large"):
            self.open(page, width=320)
            widths = self.run_in_page("""
              all('.filters, .font, .rule').forEach((details) => { details.open = true; }); await settle();
              all('.folds button')[0].click(); await settle(); one('.picture').click();
              return [document.documentElement.scrollWidth, one('dialog').scrollWidth]""")
            self.assertLessEqual(max(widths), 320)

    def test_is_printed_unfolded(self):
        self.open("broken")
        self.run_in_page("window.addEventListener('beforeprint', () => { window.seen = all('.card').length; });")
        self.assertGreater(len(self.browser.chrome("Page.printToPDF")["data"]), 10_000)
        self.assertGreater(self.run_in_page("return window.seen"), 5)
        self.assertFalse(self.run_in_page("return all('.rule').some((rule) => rule.open)"))

    def test_tells_the_findings_without_javascript(self):
        with Browser(scripts=False) as browser:
            browser.open(self.path / "broken.html")
            tree = browser.chrome("Accessibility.getFullAXTree")["nodes"]
        text = "\n".join(str(node.get("name", {}).get("value")) for node in tree)
        for expected in (MARKUP, "minor 1 \u00d7 stored box differs from the points", "exit status 1"):
            self.assertIn(expected, text)


if __name__ == "__main__":
    unittest.main()
