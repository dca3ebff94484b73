#!/usr/bin/env python3
"""Checks the web pages that scripts/pages.sh makes, on paper and in a real browser.

KESTRANE_SCREENSHOTS names a folder that is to have a picture of each page in each look.
"""

import functools
import hashlib
import html.parser
import http.server
import os
import pathlib
import re
import select
import shutil
import subprocess
import tempfile
import threading
import unittest
import unittest.mock
import urllib.parse

from browser import Browser

ROOT = pathlib.Path(__file__).resolve().parents[2]

VERSION = "12.34.5"
STATS_HOST = "counts.example.org"
UNRELEASED = {"CHANGELOG.md": "Unreleased", "CAMBIOS.md": "Sin publicar"}

# Not a whole number of kilobytes, and long enough for two separators.
PROGRAM = b"MZ" + bytes(range(256)) * 4096 + b"the end"

# In place of a browser: refuses the first command, and does not end when it should, nor does its child.
STAND_IN = """#!/bin/sh
exec 5>"$HOME/alive"
echo here >&5
sleep 1000 &
printf '{"id": 1, "error": "no such target"}\\0' >&4
exec sleep 1000
"""

PAGES = {"index.html": "en", "changelog.html": "en", "es/index.html": "es", "es/changelog.html": "es"}
WIDTHS = (375, 1280)
SCHEMES = ("light", "dark")

# tidy 5.6 has not heard of the sizes of a <source>, which is how a page reserves the place of a picture.
UNKNOWN_TO_TIDY = re.compile(r"<source> proprietary attribute \"(width|height)\"")

# The text nodes whose contrast with the ground is below what WCAG 2 asks for at level AA; first, how many there are.
CONTRAST = """(() => {
    const parse = color => {
        const parts = color.match(/^rgba?\\(([\\d.]+), ([\\d.]+), ([\\d.]+)(?:, ([\\d.]+))?\\)$/);
        if (!parts) throw new Error("cannot read the colour " + color);
        return [+parts[1], +parts[2], +parts[3], parts[4] === undefined ? 1 : +parts[4]];
    };
    const blend = (top, ground) => [0, 1, 2].map(i => top[i] * top[3] + ground[i] * (1 - top[3])).concat(1);
    const luminance = color => {
        const linear = part => part <= 0.04045 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4;
        const [r, g, b] = color.map(part => linear(part / 255));
        return 0.2126 * r + 0.7152 * g + 0.0722 * b;
    };
    const ground = element => {
        if (!element) throw new Error("no ground");
        const style = getComputedStyle(element);
        if (style.backgroundImage !== "none" || style.opacity !== "1") throw new Error("no plain ground");
        if (parse(style.backgroundColor)[3] === 1) return parse(style.backgroundColor);
        return blend(parse(style.backgroundColor), ground(element.parentElement));
    };
    const found = [];
    let count = 0;
    const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
    while (walker.nextNode()) {
        const text = walker.currentNode.data.trim(), element = walker.currentNode.parentElement;
        if (!text || !element.checkVisibility()) continue;
        ++count;
        const style = getComputedStyle(element), behind = ground(element), size = parseFloat(style.fontSize);
        const [dark, light] = [behind, blend(parse(style.color), behind)].map(luminance).sort((a, b) => a - b);
        const isLarge = size >= 24 || (size >= 18.66 && style.fontWeight >= 700);
        const ratio = (light + 0.05) / (dark + 0.05);
        if (ratio < (isLarge ? 3 : 4.5)) found.push(ratio.toFixed(2) + ": " + text.slice(0, 40));
    }
    return [count, ...found];
})()"""

# The pictures that cannot be seen, say nothing, or have another shape than the place reserved for them.
PICTURES = """[...document.images].filter(image => {
    const fits = source => !source.media || matchMedia(source.media).matches;
    const sources = [...(image.closest("picture")?.querySelectorAll("source") ?? [])].filter(fits);
    const place = sources[0]?.hasAttribute("width") ? sources[0] : image;
    const shape = place.getAttribute("width") / place.getAttribute("height");
    const isDecoration = image.closest("a") !== null;
    const isTrue = Math.abs(shape / image.naturalWidth * image.naturalHeight - 1) < 0.01;
    return !image.complete || !image.naturalWidth || !isTrue || (image.alt === "") !== isDecoration;
}).map(image => image.currentSrc)"""


class Page(html.parser.HTMLParser):
    """What a page refers to, and what can be referred to in it."""

    def __init__(self, folder, name):
        super().__init__()
        self.name, self.references, self.anchors = name, [], []
        self.text = (folder / name).read_text(encoding="utf-8")
        self.feed(self.text)

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name in ("href", "src", "srcset"):
                self.references.append((tag, value))
            elif name == "id":
                self.anchors.append(value)

    def targets(self):
        """Each reference as a path in the folder, and its anchor."""
        for _, reference in self.references:
            address = urllib.parse.urlsplit(urllib.parse.urljoin("http://here/" + self.name, reference))
            assert address.netloc == "here", f"{self.name} refers to {reference}"
            yield address.path.lstrip("/") or "index.html", address.fragment


class Handler(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *_):
        pass


def make_pages(folder, root, version=VERSION, **environment):
    """Makes the pages beside a program that is a stand-in."""
    folder.mkdir(exist_ok=True)
    (folder / "kestrane.exe").write_bytes(PROGRAM)
    without = {name: value for name, value in os.environ.items() if not name.startswith("KESTRANE_")}
    command = [root / "scripts" / "pages.sh", folder, version]
    return subprocess.run(command, env={**without, **environment}, capture_output=True, text=True)


def copy_sources(tree):
    """The sources of the pages. Between two releases the lists of changes may have nothing new; those of the copy have."""
    for folder in "site", "scripts", "res":
        shutil.copytree(ROOT / folder, tree / folder)
    for name, unreleased in UNRELEASED.items():
        text = (ROOT / name).read_text(encoding="utf-8")
        heading = f"## {unreleased}\n"
        if heading not in text:
            text = re.sub("^## ", f"{heading}\n## ", text, count=1, flags=re.M)
        (tree / name).write_text(text.replace(heading, heading + "\n- A test of the pages.\n"), encoding="utf-8")


def versions(path):
    """The versions in a list of changes, each with its number of entries."""
    found = []
    for line in path.read_text(encoding="utf-8").splitlines():
        if line.startswith("## "):
            found.append([line[3:], 0])
        elif line.startswith("- "):
            found[-1][1] += 1
    return found


class PagesTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.scratch = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.sources = cls.scratch / "sources"
        copy_sources(cls.sources)
        cls.folder = cls.scratch / "release"
        made = make_pages(cls.folder, cls.sources)
        if made.returncode:
            raise AssertionError(made.stderr)
        cls.pages = {name: Page(cls.folder, name) for name in PAGES}


class OnPaperTest(PagesTest):
    def test_the_html_is_valid(self):
        for name in PAGES:
            told = subprocess.run(["tidy", "-quiet", "-errors", self.folder / name], capture_output=True, text=True)
            self.assertIn(told.returncode, (0, 1, 2))
            breaches = [line for line in told.stderr.splitlines() if not UNKNOWN_TO_TIDY.search(line)]
            self.assertEqual(breaches, [], name)

    def test_every_reference_leads_somewhere_within_the_folder(self):
        for page in self.pages.values():
            for path, anchor in page.targets():
                self.assertTrue((self.folder / path).is_file(), f"{page.name}: {path}")
                if anchor:
                    self.assertIn(anchor, self.pages[path].anchors, f"{page.name}: {path}#{anchor}")

    def test_every_file_is_referred_to(self):
        reached = {path for page in self.pages.values() for path, _ in page.targets()}
        files = {str(path.relative_to(self.folder)) for path in self.folder.rglob("*") if path.is_file()}
        self.assertEqual(files, reached | set(PAGES))

    def test_all_pages_together_are_small(self):
        sizes = sum(path.stat().st_size for path in self.folder.rglob("*") if path.is_file()) - len(PROGRAM)
        self.assertLess(sizes, 600_000)

    def test_nothing_is_left_to_fill_in(self):
        for page in self.pages.values():
            self.assertNotRegex(page.text, "@[A-Z]")

    def test_links_to_english_pages_from_anywhere_carry_the_choice(self):
        for page in self.pages.values():
            for tag, reference in page.references:
                target = urllib.parse.urljoin("/" + page.name, reference)
                if tag == "a" and target.split("#")[0] in ("/", "/index.html", "/changelog.html"):
                    self.assertIn("#", reference, page.name)

    def test_the_same_files_give_the_same_pages(self):
        again = self.scratch / "again"
        self.assertEqual(make_pages(again, self.sources, LC_ALL="C", TZ="Asia/Tokyo").returncode, 0)
        difference = subprocess.run(["diff", "-r", self.folder, again], capture_output=True, text=True)
        self.assertEqual(difference.stdout + difference.stderr, "")

    def test_statistics_are_told_as_the_build_sends_them(self):
        counted = self.scratch / "counted"
        made = make_pages(counted, self.sources, KESTRANE_WEBSITE_ID="some id", KESTRANE_STATS_HOST=STATS_HOST)
        self.assertEqual(made.returncode, 0, made.stderr)
        no_statistics = {"index.html": "The program sends none.", "es/index.html": "El programa no las envía."}
        for name, none in no_statistics.items():
            self.assertIn(none, self.pages[name].text)
            self.assertNotIn("install_id", self.pages[name].text)
            with_id = Page(counted, name).text
            self.assertNotIn(none, with_id)
            self.assertIn(f"<code>{STATS_HOST}</code>", with_id)
            self.assertIn("install_id", with_id)

    def test_they_tell_the_interval_that_a_release_publishes(self):
        script = (ROOT / "scripts" / "release.sh").read_text(encoding="utf-8")
        minutes = int(re.search(r'"checkMinutes": (\d+)', script).group(1))
        self.assertIn(f"and then every {minutes // 60} hours", self.pages["index.html"].text)
        self.assertIn(f"y luego cada {minutes // 60} horas", self.pages["es/index.html"].text)

    def test_both_lists_of_changes_are_in_step(self):
        english, spanish = versions(ROOT / "CHANGELOG.md"), versions(ROOT / "CAMBIOS.md")
        self.assertGreater(len(english), 0)
        if english[0][0] == UNRELEASED["CHANGELOG.md"]:
            english[0][0] = UNRELEASED["CAMBIOS.md"]
        self.assertEqual(english, spanish)

    def test_every_change_is_on_the_page_under_its_version(self):
        for name, page in ("CHANGELOG.md", "changelog.html"), ("CAMBIOS.md", "es/changelog.html"):
            wanted = [[version, count] for version, count in versions(self.sources / name) if count]
            wanted[0][0] = VERSION
            self.assertEqual(self.versions_shown(self.folder, page), wanted)

    def versions_shown(self, folder, page):
        """The versions on a page, each with its number of entries."""
        text = (folder / page).read_text(encoding="utf-8")
        self.assertEqual(text.count("<h2"), text.count('<h2 id="v'))
        parts = re.split(r'<h2 id="v([0-9.]+)">\1</h2>', text)[1:]
        return [[parts[i], parts[i + 1].count("<li>")] for i in range(0, len(parts), 2)]

    def make_pages_of(self, *lists):
        """The pages whose lists of changes, the English and the Spanish one, are these."""
        folder = pathlib.Path(tempfile.mkdtemp(dir=self.scratch))
        copy_sources(folder / "sources")
        for name, text in zip(UNRELEASED, lists):
            (folder / "sources" / name).write_text(text, encoding="utf-8")
        return folder, make_pages(folder, folder / "sources")

    def test_a_section_of_the_version_or_without_a_number_is_taken(self):
        rest = "\n\n- Two.\n- Three.\n\n## 12.34.4\n\n- One.\n"
        for english in ("Unreleased", VERSION, f"Unreleased\n\n## {VERSION}"):
            spanish = english.replace("Unreleased", UNRELEASED["CAMBIOS.md"])
            folder, made = self.make_pages_of(f"# A\n\n## {english}{rest}", f"# B\n\n## {spanish}{rest}")
            self.assertEqual((made.returncode, made.stderr), (0, ""), english)
            for page in ("changelog.html", "es/changelog.html"):
                self.assertEqual(self.versions_shown(folder, page), [[VERSION, 2], ["12.34.4", 1]], english)

    def test_a_list_that_says_nothing_of_the_version_is_refused(self):
        good = ["# A\n\n## Unreleased\n\n- One.\n", "# B\n\n## Sin publicar\n\n- Uno.\n"]
        self.assertEqual(self.make_pages_of(*good)[1].returncode, 0)
        older = "## 12.34.4\n\n- One.\n"
        for place, (name, unreleased) in enumerate(UNRELEASED.items()):
            for text in (older, f"## {unreleased}\n\n{older}", f"## {VERSION}\n\n{older}", f"## {unreleased}\n", "# A\n", ""):
                _, made = self.make_pages_of(*good[:place], text, *good[place + 1 :])
                self.assertEqual(made.returncode, 1, text)
                self.assertIn(f'{name} says nothing of {VERSION}: its first section with entries must be "## ', made.stderr)


class StartOfTheBrowserTest(unittest.TestCase):
    def test_one_that_fails_leaves_no_browser_behind(self):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        stand_in = folder / "chromium"
        stand_in.write_text(STAND_IN)
        stand_in.chmod(0o755)
        path = f"{folder}:{os.environ['PATH']}"
        os.mkfifo(folder / "alive")
        alive = os.open(folder / "alive", os.O_RDONLY | os.O_NONBLOCK)
        self.addCleanup(os.close, alive)
        open_files = os.listdir("/proc/self/fd")
        with unittest.mock.patch.dict(os.environ, PATH=path), self.assertRaisesRegex(AssertionError, "no such target"):
            Browser(folder)
        self.assertEqual(os.listdir("/proc/self/fd"), open_files)
        self.assertEqual(os.read(alive, 100), b"here\n")
        # Readable once more when nobody has it open any longer.
        self.assertEqual(select.select([alive], [], [], 60)[0], [alive], "something of the browser still runs")


class InTheBrowserTest(PagesTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), functools.partial(Handler, directory=cls.folder))
        threading.Thread(target=server.serve_forever, daemon=True).start()
        cls.addClassCleanup(server.server_close)
        cls.addClassCleanup(server.shutdown)
        cls.host = f"http://127.0.0.1:{server.server_port}"
        cls.browser = cls.enterClassContext(Browser(cls.scratch))

    def open(self, path, **reader):
        return self.browser.open(f"{self.host}/{path}", **reader)

    def path(self):
        return self.browser.evaluate("location.pathname + location.hash")

    def test_every_page_in_every_look(self):
        screenshots = os.environ.get("KESTRANE_SCREENSHOTS")
        for name, language in PAGES.items():
            for width in WIDTHS:
                for scheme in SCHEMES:
                    with self.subTest(name, width=width, scheme=scheme):
                        page = self.open(name, width=width, scheme=scheme)
                        self.check_look(page, language, width)
                        if screenshots:
                            look = f"{name.removesuffix('.html').replace('/', '-')}-{width}-{scheme}.png"
                            page.save_screenshot(pathlib.Path(screenshots) / look)

    def check_look(self, page, language, width):
        self.assertEqual(page.messages(), [])
        outside = [address for address in page.addresses() if not address.startswith(self.host + "/")]
        self.assertEqual(outside, [])
        self.assertEqual(page.evaluate("document.documentElement.lang"), language)
        self.assertEqual(page.evaluate("[innerWidth, document.documentElement.scrollWidth]"), [width, width])
        count, *faint = page.evaluate(CONTRAST)
        self.assertGreater(count, 20)
        self.assertEqual(faint, [])
        self.assertGreater(page.evaluate("document.images.length"), 0)
        self.assertEqual(page.evaluate(PICTURES), [])

    def test_a_dark_page_has_other_colours_and_pictures_than_a_light_one(self):
        seen = {}
        for scheme in SCHEMES:
            page = self.open("index.html", scheme=scheme)
            ground = page.evaluate("getComputedStyle(document.body).backgroundColor")
            seen[scheme] = [ground, *page.evaluate("[...document.images].map(image => image.currentSrc)")]
        self.assertNotEqual(seen["light"][0], seen["dark"][0])
        for light, dark in zip(seen["light"][1:], seen["dark"][1:]):
            if "-light" in light:
                self.assertEqual(dark, light.replace("-light", "-dark"))
        self.assertEqual(sum("-dark" in picture for picture in seen["dark"]), 6)

    def test_size_and_hash_are_those_of_the_file_behind_the_link(self):
        for name, size, kilobytes in ("index.html", "1,048,585", "1,025"), ("es/index.html", "1.048.585", "1.025"):
            page = self.open(name)
            facts = page.evaluate('[...document.querySelectorAll(".facts dd")].map(fact => fact.textContent)')
            self.assertEqual((facts[2], len(PROGRAM)), (f"{size} bytes", int(re.sub("[.,]", "", size))))
            self.assertEqual(facts[3], hashlib.sha256(PROGRAM).hexdigest())
            self.assertIn(f"{kilobytes} KB", page.evaluate('document.querySelector(".hero .note").textContent'))
            self.assertIn(VERSION, page.evaluate('document.querySelector(".button").textContent'))
            links = page.evaluate('[...document.links].map(link => link.href).filter(to => to.endsWith(".exe"))')
            self.assertEqual(links, [self.host + "/kestrane.exe"] * 2)

    def test_the_browsers_language_chooses_the_page(self):
        for languages, spanish in {
            "es-ES,es": True,
            "es-MX,en": True,
            "ca,es,en": True,
            "en-US,en": False,
            "en-GB,es": False,
            "de-DE,de": False,
            "est,en": False,
        }.items():
            for name in "index.html", "changelog.html":
                with self.subTest(name, languages=languages):
                    self.open("" if name == "index.html" else name, languages=languages)
                    plain = "/" if name == "index.html" else "/" + name
                    self.assertEqual(self.path(), "/es/" + name if spanish else plain)
                    self.assertEqual(self.browser.messages(), [])

    def test_a_link_wins_over_the_browsers_language(self):
        # From the changes, the first link leads to the download, and so back.
        for name, steps_to_the_changes in {"index.html": 1, "changelog.html": 2}.items():
            self.open(name, languages="es-ES,es")
            self.follow('nav a[hreflang="en"]', f"/{name}#en")
            for _ in range(steps_to_the_changes):
                self.browser.click("nav a")
            self.assertEqual(self.path(), "/changelog.html#en")
            self.follow(".brand", "/index.html#en")

            self.open(name, languages="en-US,en")
            self.follow('nav a[hreflang="es"]', f"/es/{name}")
            for _ in range(steps_to_the_changes):
                self.browser.click("nav a")
            self.assertEqual(self.path(), "/es/changelog.html")
            self.follow(".brand", "/es/index.html")

    def follow(self, selector, path):
        self.browser.click(selector)
        self.assertEqual(self.path(), path)

    def test_the_address_that_a_link_leads_to_keeps_its_language(self):
        for path in "index.html#en", "changelog.html#en", "index.html#download":
            self.open(path, languages="es-ES,es")
            self.assertEqual(self.path(), "/" + path)

    def test_without_script_a_link_leads_to_the_other_language(self):
        self.open("", languages="es-ES,es", script=False)
        self.assertEqual(self.path(), "/")
        links = "[...document.querySelectorAll('nav a[hreflang]')].filter(link => link.checkVisibility())"
        shown = self.browser.evaluate(f"{links}.map(link => [link.textContent, link.lang])")
        self.assertEqual(shown, [["Español", "es"]])
        self.follow('nav a[hreflang="es"]', "/es/index.html")
        self.assertEqual(self.browser.messages(), [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
