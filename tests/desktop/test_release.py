"""A release: scripts/release.sh makes it at another time and place, by scripts/reproduce.sh, of this tree; it is the
same as the tree's own build, an older copy updates itself from the folder, and what must not be released is refused."""

import hashlib
import json
import os
import pathlib
import shutil
import ssl
import stat
import subprocess
import tempfile
import unittest
import urllib.request

import private_network
from harness import BUILD, NIM_ADD, ROOT, VERSION, Desktop, main, wait_until, windows_path
from onscreen import DIALOG_CLASS
from test_signing import make_key, read_manifests, sign
from update_server import HOST, STATS_HOST, reply
from updates import LONGEST_CHECK, UpdateTest

OLDER = "0.0.9"

# A copy of the tree, in which the release is made. Its parent is no folder of a build.
TREE = private_network.SCRATCH / "a copy of the tree"
RELEASE = TREE / "build" / "release"
MADE = ("kestrane.exe", "latest.json", "SHA256SUMS")

# In place of CMake: notes how it is called, and "builds" what it is told to.
STAND_IN = """#!/bin/sh
printf '%s\\n' "$@" >>"$CALLS"
[ "$1" != --build ] || cp "$BUILT" "$2"
[ "$1" = --build ] || { while [ "$1" != -B ]; do shift; done; mkdir -p "$2"; }
"""


def setUpModule():
    TREE.mkdir()
    made = subprocess.run([ROOT / "scripts" / "reproduce.sh", BUILD / "kestrane.exe", TREE], text=True, capture_output=True)
    if made.returncode != 0:
        raise AssertionError(f"the release is not as it should be:\n{made.stdout}{made.stderr}")
    assert git("tag").split() == [f"v{VERSION}"]


def git(*arguments):
    return subprocess.run(["git", "-C", TREE, *arguments], check=True, capture_output=True, text=True).stdout


def contents(folder):
    """The bytes of all files below a folder, by their names."""
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def sums(files):
    """What SHA256SUMS says of these files."""
    return {name: hashlib.sha256(content).hexdigest() for name, content in files.items() if name != "SHA256SUMS"}


class TheFolder(unittest.TestCase):
    """What lies in build/release."""

    def test_it_is_complete_and_its_sums_are_right(self):
        files = contents(RELEASE)
        lines = files["SHA256SUMS"].decode().splitlines()
        self.assertEqual(dict(line.split("  ", 1)[::-1] for line in lines), sums(files))
        self.assertEqual(len(lines), len(files) - 1)
        self.assertEqual(lines, sorted(lines, key=lambda line: line[66:]))
        subprocess.run(["sha256sum", "--check", "--strict", "--quiet", "SHA256SUMS"], cwd=RELEASE, check=True)

    def test_the_rest_are_the_pages_and_what_they_show(self):
        with tempfile.TemporaryDirectory() as folder:
            pages = pathlib.Path(folder)
            (pages / "kestrane.exe").write_bytes((RELEASE / "kestrane.exe").read_bytes())
            subprocess.run([TREE / "scripts" / "pages.sh", pages, VERSION], check=True)
            expected = contents(pages)
        self.assertLess({"kestrane.exe", "index.html", "changelog.html"}, set(expected))
        files = contents(RELEASE)
        self.assertEqual(set(files), set(expected) | set(MADE))
        self.assertEqual({name: files[name] for name in expected}, expected)

    def test_a_server_can_read_it_all(self):
        for path in [RELEASE, *RELEASE.rglob("*")]:
            self.assertEqual(stat.S_IMODE(path.stat().st_mode), 0o755 if path.is_dir() else 0o644, path)

    def test_the_manifest_tells_of_the_program(self):
        program = (RELEASE / "kestrane.exe").read_bytes()
        expected = {
            "version": VERSION,
            "url": f"https://{HOST}/kestrane.exe",
            "sha256": hashlib.sha256(program).hexdigest(),
            "size": len(program),
            "published": "2020-02-02",  # the commit's date, not the day on which this is run
            "checkMinutes": 720,
        }
        self.assertEqual(json.loads((RELEASE / "latest.json").read_bytes()), expected)

    def test_the_tag_is_of_the_commit(self):
        self.assertEqual(git("cat-file", "-t", f"v{VERSION}").strip(), "tag")
        self.assertEqual(git("rev-parse", f"v{VERSION}^{{commit}}"), git("rev-parse", "HEAD"))


class OtherReleases(unittest.TestCase):
    """Attempts, with a stand-in for CMake so that they take no time. Each starts from a tree with one release."""

    def setUp(self):
        self.folder = folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.put_in_path("cmake", STAND_IN)
        self.calls = folder / "calls"
        self.built = folder / "kestrane.exe"
        self.built.write_bytes((BUILD / "kestrane.exe").read_bytes())
        self.key = folder / "key.pem"
        self.environment = {
            **{name: value for name, value in os.environ.items() if not name.startswith("KESTRANE_")},
            "PATH": f"{folder}:{os.environ['PATH']}",
            "CALLS": str(self.calls),
            "BUILT": str(self.built),
        }
        self.kept = shutil.copytree(RELEASE, folder / "release")
        self.before = self.state()
        self.addCleanup(self.restore)

    def put_in_path(self, name, script):
        path = self.folder / name
        path.write_text(script)
        path.chmod(0o755)

    def state(self):
        return contents(RELEASE), git("tag"), [path.name for path in RELEASE.parent.glob("release.*")]

    def restore(self):
        for tag in git("tag").split():
            if tag != f"v{VERSION}":
                git("tag", "--delete", tag)
        git("reset", "--hard", f"v{VERSION}")
        git("clean", "--force", "-d")
        shutil.rmtree(RELEASE)
        shutil.copytree(self.kept, RELEASE)

    def release(self, *arguments, folder=TREE, **environment):
        self.calls.write_text("")
        command = [TREE / "scripts" / "release.sh", *map(str, arguments)]
        told = {**self.environment, **environment}
        return subprocess.run(command, cwd=folder, env=told, capture_output=True, text=True, check=False)

    def assert_refused(self, why, *arguments, **environment):
        """Before anything is built, and nothing has changed."""
        result = self.release(*arguments, **environment)
        self.assertEqual((result.returncode, result.stdout), (1, ""), (arguments, result.stderr))
        self.assertRegex(result.stderr, rf"(?ms)^no release: .*{why}.*\n\Z", arguments)
        self.assertEqual(self.calls.read_text(), "", arguments)
        self.assertEqual(self.state(), self.before, arguments)

    def assert_released(self, version, *arguments, folder=TREE, **environment):
        """What the build was told: the values of its variables."""
        result = self.release(version, *arguments, folder=folder, **environment)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(len(result.stdout.splitlines()), 2)
        self.assertEqual(json.loads((RELEASE / "latest.json").read_bytes())["version"], version)
        self.assertIn(f"v{version}", git("tag").split())
        definitions = [line[2:].split("=", 1) for line in self.calls.read_text().splitlines() if line.startswith("-D")]
        self.assertEqual(definitions[:2], [["KESTRANE_TESTS", "OFF"], ["KESTRANE_VERSION", version]])
        return dict(definitions[2:])

    def test_a_version_has_three_numbers_that_windows_can_hold(self):
        malformed = ["", "1", "1.2", "1.2.3.4", "v1.2.3", "1.2.3-beta", "1.2.3+b", "01.2.3", "1.2.00", "1..3", " 1.2.3"]
        for version in [*malformed, "1.2.x", "1.2.3\n1.2.4", "-1.2.3", "1.2.99999999999999999999"]:
            self.assert_refused("is not three numbers", version)
        for version in ("65536.0.0", "0.65536.0", "1.2.99999"):
            self.assert_refused("more than the version block can hold", version)
        self.assert_released("65535.65535.65535")

    def test_a_version_is_newer_than_all_that_were_released(self):
        self.assert_refused(f"is not newer than {VERSION}", VERSION)
        self.assert_refused(f"is older than the tree, which says {VERSION}", OLDER)
        for tag in ("v0.9.0", "v0.10.0", "v7", "v8.0", "v9.0.0.1", "v9.0.0-beta", "9.0.0", "v09.0.0"):
            git("tag", tag)
        self.before = self.state()
        for version in ("0.2.0", "0.9.0", "0.9.1", "0.10.0"):
            self.assert_refused("is not newer than 0.(9|10).0", version)
        self.assert_released("0.10.1")
        self.before = self.state()
        self.assert_refused("is not newer than 0.10.1", "0.10.1")

    def test_only_what_is_committed_is_released(self):
        source = TREE / "src" / "base" / "version.cpp"
        original = source.read_bytes()
        source.write_bytes(original + b"\n")
        self.assert_refused("not committed", "0.1.1")
        git("add", "--all")
        self.assert_refused("not committed", "0.1.1")
        git("reset", "--hard")
        source.unlink()
        self.assert_refused("not committed", "0.1.1")
        git("reset", "--hard")
        for stray in (source.with_name("stray.cpp"), TREE / "stray.txt"):
            stray.touch()
            self.assert_refused("not committed", "0.1.1")
            stray.unlink()
        (TREE / ".git" / "info" / "exclude").write_text("ignored.cpp\n")
        source.with_name("ignored.cpp").touch()
        self.assert_released("0.1.1")
        built = contents(TREE / "build" / "release-build" / "source")
        self.assertEqual(set(built), set(git("ls-files", "-z").rstrip("\0").split("\0")))
        source.with_name("ignored.cpp").unlink()

    def test_a_machine_that_knows_no_name_makes_a_plain_tag(self):
        git("config", "user.useConfigOnly", "true")
        git("config", "--unset", "user.email")
        self.addCleanup(git, "config", "user.email", "nobody@kestrane.example")
        self.assert_released("0.1.1", HOME="/nonexistent", XDG_CONFIG_HOME="/nonexistent", EMAIL="")
        self.assertEqual(git("rev-parse", "v0.1.1"), git("rev-parse", "HEAD"))

    def test_the_list_of_changes_must_be_about_the_version(self):
        changes = TREE / "CHANGELOG.md"
        changes.write_text("# Changes\n\n## 0.0.1\n\n- The first.\n", encoding="utf-8")
        git("commit", "--all", "--message", "Another list")
        self.assert_refused("there are no pages for 0.1.1", "0.1.1")

    def test_unusable_values_are_refused(self):
        public = sign("--public-key", make_key(self.key)).stdout.strip()
        other_curve = make_key(self.key.with_name("p384.pem"), "secp384r1")
        for host in ("", "Kestrane.example", "https://kestrane.example", "kestrane.example/", "a:8443"):
            self.assert_refused("is not a host name", "0.1.1", "--host", host)
            self.assert_refused("is not a host name", "0.1.1", "--stats-host", host)
        self.assert_refused("--key without --sign", "0.1.1", "--key", public)
        self.assert_refused("--key without --sign", "0.1.1", KESTRANE_MANIFEST_KEY=public)
        self.assert_refused("there is no such key", "0.1.1", "--sign", "missing.pem")
        self.assert_refused("this key cannot sign", "0.1.1", "--sign", other_curve)
        self.assert_refused("a public key is", "0.1.1", "--sign", self.key, "--key", public[1:])

    def test_it_says_how_it_is_used(self):
        for arguments in ((), ("0.1.1", "--host"), ("0.1.1", "--tag", "x"), ("0.1.1", "0.1.2")):
            result = self.release(*arguments)
            self.assertEqual((result.returncode, result.stdout), (2, ""))
            self.assertIn("usage: scripts/release.sh VERSION", result.stderr)
        self.assertEqual(self.state(), self.before)

    def test_a_failed_one_leaves_everything_as_it_was(self):
        git("config", "tag.gpgSign", "true")
        git("config", "gpg.program", "false")
        self.addCleanup(git, "config", "tag.gpgSign", "false")
        self.assert_fails_after_the_build()
        self.put_in_path("sha256sum", "#!/bin/sh\nexit 1\n")
        self.assert_fails_after_the_build()
        self.built.unlink()
        self.assert_fails_after_the_build()

    def assert_fails_after_the_build(self):
        self.assertNotEqual(self.release("0.1.1").returncode, 0)
        self.assertIn("--build", self.calls.read_text())
        self.assertEqual(self.state(), self.before)

    def test_the_values_come_from_options_or_the_environment(self):
        public = sign("--public-key", make_key(self.key)).stdout.strip()
        expected = {
            "KESTRANE_UPDATE_HOST": "updates.example.org",
            "KESTRANE_STATS_HOST": "stats.example.org",
            "KESTRANE_WEBSITE_ID": "an id",
            "KESTRANE_MANIFEST_KEY": public,
        }
        hosts = ("--host", "updates.example.org", "--stats-host", "stats.example.org", "--website-id", "an id")
        told = self.assert_released("0.1.1", *hosts, "--sign", self.key.name, folder=self.key.parent)
        self.assertEqual(told, expected)
        first = contents(RELEASE)
        git("tag", "--delete", "v0.1.1")
        told = self.assert_released("0.1.1", **{**expected, "KESTRANE_MANIFEST_KEY": ""}, KESTRANE_SIGNING_KEY=str(self.key))
        self.assertEqual(told, expected)
        manifest = json.loads(first["latest.json"])
        self.assertEqual(manifest["url"], "https://updates.example.org/kestrane.exe")
        self.assertIn("stats.example.org", first["index.html"].decode())
        # A signature is never the same twice.
        changed = {name for name, content in contents(RELEASE).items() if first[name] != content}
        self.assertEqual(changed, {"latest.json", "SHA256SUMS"})

    def test_the_program_accepts_a_signed_one(self):
        self.desktop = self.enterContext(Desktop())
        public = sign("--public-key", make_key(self.key)).stdout.strip()
        other = sign("--public-key", make_key(self.key.with_name("next.pem"))).stdout.strip()
        for version, key in (("0.1.1", ()), ("0.1.2", ("--key", other))):
            told = self.assert_released(version, "--sign", self.key, *key)
            self.assertEqual(told["KESTRANE_MANIFEST_KEY"], key[1] if key else public)
            self.assertEqual(self.offer(public), [version])
            self.assertEqual(self.offer(other), ["refused"])
            subprocess.run(["sha256sum", "--check", "--strict", "--quiet", "SHA256SUMS"], cwd=RELEASE, check=True)

    def test_a_published_program_can_be_made_again(self):
        public = sign("--public-key", make_key(self.key)).stdout.strip()
        wide = lambda text: text.encode("utf-16-le")
        content = self.built.read_bytes()
        self.assertEqual(content.count(wide(VERSION + "\0")), 2)  # of the code and of the version block
        self.built.write_bytes(content.replace(wide(VERSION + "\0"), wide("9.8.7\0")))
        values = {"KESTRANE_UPDATE_HOST": "updates.example.org", "KESTRANE_MANIFEST_KEY": public}
        published = shutil.copy(self.built, self.folder / "published.exe")
        self.assertEqual(self.reproduce(published, **values), (0, ""))
        told = self.calls.read_text().splitlines()
        for name, value in {"KESTRANE_VERSION": "9.8.7", **values}.items():
            self.assertIn(f"-D{name}={value}", told)
        with open(published, "r+b") as file:
            file.seek(-1, os.SEEK_END)
            file.write(b"\1")
        code, told = self.reproduce(published, **values)
        self.assertEqual(code, 1)
        self.assertRegex(told, rf"(?m)^\.reloc: 1 bytes, the first at {len(content) - 1:#x}: ")

    def reproduce(self, program, **environment):
        self.calls.write_text("")
        command = [ROOT / "scripts" / "reproduce.sh", program]
        told = {**self.environment, **environment}
        result = subprocess.run(command, env=told, stdout=subprocess.PIPE, text=True, check=False)
        return result.returncode, result.stdout

    def offer(self, key):
        """What a program with this key makes of the manifest."""
        return read_manifests(self.desktop, key, windows_path(RELEASE / "latest.json"))


class AnOlderCopy(UpdateTest):
    """Updates itself from the folder, served as it is."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.older = (BUILD / "kestrane-older.exe").read_bytes()

    def publish(self):
        self.files_served = contents(RELEASE)
        for name, content in self.files_served.items():
            self.server.answers["/" + name] = reply(content)
            if name.endswith("index.html"):
                self.server.answers["/" + name.removesuffix("index.html")] = reply(content)

    def test_becomes_the_new_version(self):
        self.install("kestrane", "kestrane-older.exe")
        process = self.start_and_wait_for_offer()
        self.assertEqual(self.balloon.info, self.words.balloon.format(VERSION, OLDER))
        self.open_offer()
        start = self.shell.mark()
        self.press_update()
        self.assertEqual(process.wait(timeout=60), 0)
        self.shell.wait_for_count(4, lambda call: call.message == NIM_ADD and call.answer, start)
        self.assertEqual(self.executable.read_bytes(), (BUILD / "kestrane.exe").read_bytes())
        wait_until(lambda: self.files() == ["kestrane.exe"], "the end of the old version")
        self.choose(-2)
        box = wait_until(lambda: self.neighbour.find(DIALOG_CLASS), "the box about the program")
        self.assertEqual(max(self.texts_of(box), key=len).split("\n")[0], f"kestrane {VERSION}")
        self.answer(box)
        self.is_offered_nothing_more()
        self.assertEqual(contents(RELEASE), self.files_served)

    def is_offered_nothing_more(self):
        asked_by_itself = lambda: [check for check in self.checks() if check.headers["user-agent"] == f"kestrane/{VERSION}"]
        wait_until(asked_by_itself, "the new version's check", LONGEST_CHECK)
        self.end_by_switch()  # which waits for the check
        self.assertEqual(len([call for call in self.shell.since(self.first) if call.info]), 1)
        paths = {request.path for request in self.server.requests}
        self.assertEqual(paths, {"/latest.json", "/kestrane.exe"})

    def test_finds_the_pages_beside_it(self):
        trusting = ssl.create_default_context(cafile=private_network.TRUSTED / private_network.TRUSTED_FILE)

        def fetch(path):
            return urllib.request.urlopen(f"https://{HOST}{path}", context=trusting).read()

        for line in fetch("/SHA256SUMS").decode().splitlines():
            digits, name = line.split("  ", 1)
            self.assertEqual(hashlib.sha256(fetch("/" + name)).hexdigest(), digits, name)
        self.assertEqual(fetch("/"), fetch("/index.html"))
        self.assertIn(f"kestrane {VERSION}", fetch("/").decode())
        self.assertIn(VERSION, fetch("/changelog.html").decode())


if __name__ == "__main__":
    private_network.enter(HOST, STATS_HOST)
    main()
