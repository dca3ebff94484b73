"""A release: scripts/release.sh makes it at another time and place, by scripts/reproduce.sh, of this tree; it is the
same as the tree's own build, an older copy updates itself from the folder, and what must not be released is refused.

The version is that of the tree, and something is listed as new in it, whatever the lists of changes say at the time."""

import hashlib
import json
import os
import pathlib
import re
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
LISTS = {"CHANGELOG.md": "Unreleased", "CAMBIOS.md": "Sin publicar"}

# The tree with lists of changes of the test's own, and a copy of that in which the release is made. Their parent is no
# folder of a build.
SOURCES = private_network.SCRATCH / "sources"
TREE = private_network.SCRATCH / "a copy of the tree"
RELEASE = TREE / "build" / "release"
MADE = ("kestrane.exe", "latest.json", "BUILD.txt", "SHA256SUMS")

# What building needs beside the sources: the packages whose versions decide on the program's bytes.
PACKAGES = (
    "g++-mingw-w64-x86-64-win32",
    "gcc-mingw-w64-x86-64-win32",
    "gcc-mingw-w64-x86-64-win32-runtime",
    "binutils-mingw-w64-x86-64",
    "mingw-w64-x86-64-dev",
    "cmake",
    "ninja-build",
)

# In place of CMake: notes how it is called, and "builds" what it is told to.
STAND_IN = """#!/bin/sh
printf '%s\\n' "$@" >>"$CALLS"
[ "$1" != --build ] || cp "$BUILT" "$2"
[ "$1" = --build ] || { while [ "$1" != -B ]; do shift; done; mkdir -p "$2"; }
"""

comparison = None
"""What scripts/reproduce.sh says of the release and the tree's own build."""


def setUpModule():
    global comparison
    # A hook of git names its own repository to what it runs.
    for name in subprocess.run(["git", "rev-parse", "--local-env-vars"], capture_output=True, text=True).stdout.split():
        os.environ.pop(name, None)
    copy_tree()
    TREE.mkdir()
    comparison = reproduce(BUILD / "kestrane.exe", TREE)
    if not RELEASE.is_dir():
        raise AssertionError(f"no release could be made:\n{comparison.stdout}{comparison.stderr[-3000:]}")
    shutil.rmtree(TREE / "build" / "release-build")
    (TREE / "build" / "release.log").unlink()


def copy_tree():
    files = git("ls-files", "-z", "--cached", "--others", "--exclude-standard", folder=ROOT).split("\0")
    for name in filter(lambda name: name and (ROOT / name).exists(), files):
        (SOURCES / name).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy2(ROOT / name, SOURCES / name)
    write_lists(SOURCES, "## {}\n\n- Something.\n")
    git("init", "--quiet", folder=SOURCES)


def write_lists(tree, text):
    """Both lists of changes, with the heading of what is unreleased for each {}."""
    for name, unreleased in LISTS.items():
        (tree / name).write_text(f"# kestrane\n\n{text.format(unreleased)}", encoding="utf-8")


def reproduce(*arguments, environment=None):
    command = [SOURCES / "scripts" / "reproduce.sh", *arguments]
    return subprocess.run(command, env=environment, text=True, capture_output=True, check=False)


def git(*arguments, folder):
    return subprocess.run(["git", "-C", folder, *arguments], check=True, capture_output=True, text=True).stdout


def later(minor=0, patch=0):
    """A version after that of the tree."""
    numbers = [int(number) for number in VERSION.split(".")]
    return f"{numbers[0]}.{numbers[1] + minor}.{(0 if minor else numbers[2]) + patch}"


def contents(folder):
    """The bytes of all files below a folder, by their names."""
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def sums(files):
    return {name: hashlib.sha256(content).hexdigest() for name, content in files.items()}


class TheFolder(unittest.TestCase):
    """What lies in build/release."""

    def test_the_program_is_that_of_the_tree_byte_for_byte(self):
        self.assertEqual((comparison.returncode, comparison.stderr), (0, ""), comparison.stdout)
        self.assertEqual(comparison.stdout, f"the same byte for byte: {BUILD / 'kestrane.exe'}\n")
        self.assertEqual((RELEASE / "kestrane.exe").read_bytes(), (BUILD / "kestrane.exe").read_bytes())

    def test_it_is_complete_and_its_sums_are_right(self):
        files = contents(RELEASE)
        lines = files.pop("SHA256SUMS").decode().splitlines()
        self.assertEqual(dict(line.split("  ", 1)[::-1] for line in lines), sums(files))
        self.assertEqual(len(lines), len(files))
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

    def test_the_record_of_the_build_says_how_to_repeat_it(self):
        query = ["dpkg-query", "--show", *PACKAGES]
        packages = subprocess.run(query, check=True, capture_output=True, text=True).stdout
        debian = pathlib.Path("/etc/debian_version").read_text().strip()
        commit = git("rev-parse", "HEAD", folder=TREE).strip()
        first, facts, how, commands = (RELEASE / "BUILD.txt").read_text().strip().split("\n\n")
        self.assertEqual(first, f"kestrane {VERSION}")
        self.assertEqual(facts.splitlines()[:2], [f"Commit {commit}", f"Debian {debian}"])
        self.assertEqual(set(facts.splitlines()[2:]), set(packages.replace("\t", " ").splitlines()))
        self.assertIn("makes the same kestrane.exe", how)
        expected = [
            f"git checkout {commit}",
            f"export KESTRANE_UPDATE_HOST='{HOST}'",
            f"export KESTRANE_STATS_HOST='{STATS_HOST}'",
            "export KESTRANE_WEBSITE_ID=''",
            "export KESTRANE_MANIFEST_KEY=''",
            "scripts/reproduce.sh PROGRAM",
        ]
        self.assertEqual(commands.splitlines(), expected)

    def test_the_tag_is_of_the_commit(self):
        self.assertEqual(git("tag", folder=TREE), f"v{VERSION}\n")
        self.assertEqual(git("cat-file", "-t", f"v{VERSION}", folder=TREE).strip(), "tag")
        self.assertEqual(git("rev-parse", f"v{VERSION}^{{commit}}", folder=TREE), git("rev-parse", "HEAD", folder=TREE))


class OtherReleases(unittest.TestCase):
    """Attempts, with a stand-in for CMake so that they take no time. Each has a copy of the tree with one release."""

    def setUp(self):
        self.folder = folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory(dir=private_network.SCRATCH)))
        self.put_in_path("cmake", STAND_IN)
        self.calls = folder / "calls"
        self.calls.touch()
        self.built = folder / "kestrane.exe"
        self.built.write_bytes((RELEASE / "kestrane.exe").read_bytes())
        self.key = folder / "key.pem"
        self.environment = {
            **{name: value for name, value in os.environ.items() if not name.startswith("KESTRANE_")},
            "PATH": f"{folder}:{os.environ['PATH']}",
            "TMPDIR": str(folder),
            "KESTRANE_UPDATE_HOST": HOST,
            "CALLS": str(self.calls),
            "BUILT": str(self.built),
        }
        self.tree = folder / "tree"
        subprocess.run(["cp", "--archive", TREE, self.tree], check=True)
        self.released = self.tree / "build" / "release"
        self.before = self.state()

    def put_in_path(self, name, script):
        path = self.folder / name
        path.write_text(script)
        path.chmod(0o755)

    def git(self, *arguments):
        return git(*arguments, folder=self.tree)

    def commit(self):
        self.git("commit", "--all", "--message", "Another state")

    def state(self):
        return sums(contents(self.released)), self.git("tag"), self.folders()

    def folders(self):
        """What there is beside the folder of the build itself."""
        return sorted({path.name for path in self.released.parent.iterdir()} - {"release-build"})

    def release(self, *arguments, folder=None, **environment):
        self.calls.write_text("")
        command = [self.tree / "scripts" / "release.sh", *map(str, arguments)]
        told = {**self.environment, **environment}
        return subprocess.run(command, cwd=folder or self.tree, env=told, capture_output=True, text=True, check=False)

    def assert_refused(self, why, *arguments, **environment):
        """Before anything is built, and nothing has changed."""
        result = self.release(*arguments, **environment)
        self.assertEqual((result.returncode, result.stdout), (1, ""), (arguments, result.stderr))
        self.assertRegex(result.stderr, rf"(?ms)^no release: .*{why}.*\n\Z", arguments)
        self.assertEqual(self.calls.read_text(), "", arguments)
        self.assertEqual(self.state(), self.before, arguments)

    def assert_released(self, version, *arguments, folder=None, **environment):
        """What the build was told: the values of its variables."""
        result = self.release(version, *arguments, folder=folder, **environment)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(len(result.stdout.splitlines()), 3)
        self.assertEqual(json.loads((self.released / "latest.json").read_bytes())["version"], version)
        self.assertIn(f"v{version}", self.git("tag").split())
        self.assertEqual(self.folders(), ["release"])
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
        ninth, tenth = later(minor=9), later(minor=10)
        no_versions = ("v65001", "v65002.0", "v65003.0.0.1", "v65004.0.0-beta", "65005.0.0", "v065006.0.0")
        for tag in (f"v{ninth}", f"v{tenth}", *no_versions):
            self.git("tag", tag)
        self.before = self.state()
        for version in (later(minor=1), ninth, later(minor=9, patch=1), tenth):
            self.assert_refused(f"is not newer than ({ninth}|{tenth})", version)
        after = later(minor=10, patch=1)
        self.assert_released(after)
        self.before = self.state()
        self.assert_refused(f"is not newer than {after}", after)

    def test_a_clone_without_tags_knows_what_was_released_by_the_list_of_changes(self):
        first, second, third = later(minor=9), later(minor=10), later(minor=10, patch=1)
        write_lists(self.tree, f"## {{}}\n\n- Something new.\n\n## {second}\n\n- Old.\n\n## {first}\n\n- Older.\n")
        self.commit()
        for version in (later(patch=1), first, later(minor=9, patch=1), second):
            self.assert_refused(f"is not newer than {second}", version)
        self.assert_released(third)
        self.git("tag", "--delete", f"v{third}")
        for top in (f"## {third}", f"## {{}}\n\n## {third}"):  # its own section, alone or below an empty one
            write_lists(self.tree, f"{top}\n\n- New.\n\n## {second}\n\n- Old.\n")
            self.commit()
            self.before = self.state()
            self.assert_refused(f"is not newer than {second}", second)
            self.assert_released(third)
            self.git("tag", "--delete", f"v{third}")

    def test_only_what_is_committed_is_released(self):
        source = self.tree / "src" / "base" / "version.cpp"
        source.write_bytes(source.read_bytes() + b"\n")
        self.assert_refused("not committed:\n M src/base/version.cpp", later(patch=1))
        self.git("add", "--all")
        self.assert_refused("not committed", later(patch=1))
        self.git("reset", "--hard")
        source.unlink()
        self.assert_refused("not committed", later(patch=1))
        self.git("reset", "--hard")
        for stray in (source.with_name("stray.cpp"), self.tree / "stray.txt"):
            stray.touch()
            self.assert_refused(f"not committed:\n.. {stray.relative_to(self.tree)}", later(patch=1))
            stray.unlink()
        (self.tree / ".git" / "info" / "exclude").write_text("ignored.cpp\n")
        source.with_name("ignored.cpp").touch()
        self.assert_released(later(patch=1))
        built = contents(self.tree / "build" / "release-build" / "source")
        self.assertEqual(set(built), set(self.git("ls-files", "-z").rstrip("\0").split("\0")))

    def test_a_machine_that_knows_no_name_makes_a_plain_tag(self):
        self.git("config", "user.useConfigOnly", "true")
        self.git("config", "--unset", "user.email")
        self.assert_released(later(patch=1), HOME="/nonexistent", XDG_CONFIG_HOME="/nonexistent", EMAIL="")
        self.assertEqual(self.git("rev-parse", f"v{later(patch=1)}"), self.git("rev-parse", "HEAD"))

    def test_the_list_of_changes_must_tell_of_the_version(self):
        first, second = later(patch=1), later(patch=2)
        write_lists(self.tree, f"## {{}}\n\n## {first}\n\n- Something.\n")
        self.commit()
        self.assert_refused(f"there are no pages for {second}", second)
        self.assert_released(first)
        write_lists(self.tree, f"## {{}}\n\n- Something new.\n\n## {first}\n\n- Something.\n")
        self.commit()
        self.assert_released(second)

    def test_unusable_values_are_refused(self):
        public = sign("--public-key", make_key(self.key)).stdout.strip()
        other_curve = make_key(self.key.with_name("p384.pem"), "secp384r1")
        for host in ("Kestrane.example", "https://kestrane.example", "kestrane.example/", "a:8443"):
            self.assert_refused("is not a host name", later(patch=1), "--host", host)
            self.assert_refused("is not a host name", later(patch=1), "--stats-host", host)
        self.assert_refused("is not a host name", later(patch=1), "--stats-host", "")
        self.assert_refused("give --host or KESTRANE_UPDATE_HOST", later(patch=1), "--host", "")
        self.assert_refused("give --host or KESTRANE_UPDATE_HOST", later(patch=1), KESTRANE_UPDATE_HOST="")
        self.assert_refused("--key without --sign", later(patch=1), "--key", public)
        self.assert_refused("--key without --sign", later(patch=1), KESTRANE_MANIFEST_KEY=public)
        self.assert_refused("there is no such key", later(patch=1), "--sign", "missing.pem")
        self.assert_refused("this key cannot sign", later(patch=1), "--sign", other_curve)
        self.assert_refused("a public key is", later(patch=1), "--sign", self.key, "--key", public[1:])

    def test_it_says_how_it_is_used(self):
        version = later(patch=1)
        for arguments in ((), (version, "--host"), (version, "--tag", "x"), (version, later(patch=2))):
            result = self.release(*arguments)
            self.assertEqual((result.returncode, result.stdout), (2, ""))
            self.assertIn("usage: scripts/release.sh VERSION", result.stderr)
        self.assertEqual(self.state(), self.before)

    def test_who_asks_for_help_gets_it_and_nothing_else(self):
        self.put_in_path("dpkg-query", '#!/bin/sh\necho packages >>"$CALLS"\n')
        for arguments in (("-h",), ("--help",), (later(patch=1), "--help"), (later(patch=1), "--host", HOST, "-h")):
            result = self.release(*arguments)
            self.assertEqual((result.returncode, result.stderr), (0, ""))
            self.assertIn("usage: scripts/release.sh VERSION", result.stdout)
            self.assertEqual(self.calls.read_text(), "")
        self.assertEqual(self.state(), self.before)

    def test_it_says_what_it_builds_before_it_does(self):
        public = sign("--public-key", make_key(self.key)).stdout.strip()
        self.put_in_path("cmake", "#!/bin/sh\nexit 1\n")
        version = later(patch=1)
        plain = self.release(version)
        self.assertEqual(plain.stdout, f"kestrane {version} for https://{HOST}/: not signed; no statistics\n")
        signed = self.release(version, "--sign", self.key, "--website-id", "an id", "--stats-host", STATS_HOST)
        self.assertEqual(
            signed.stdout,
            f"kestrane {version} for https://{HOST}/: signed with {self.key}, built with the public key {public}; "
            f"statistics to {STATS_HOST} as 'an id'\n",
        )

    def refuse_to_tag(self):
        self.git("config", "tag.gpgSign", "true")
        self.git("config", "gpg.program", "false")

    def test_one_without_a_tag_leaves_everything_as_it_was(self):
        self.refuse_to_tag()
        self.assert_fails_after_the_build()

    def test_one_that_cannot_move_the_former_folder_leaves_everything_as_it_was(self):
        self.refuse_to_move('*"/release.former"')
        self.assert_fails_after_the_build()

    def test_one_that_cannot_move_its_folder_leaves_everything_as_it_was(self):
        self.refuse_to_move('*"/release.new "*')
        self.assert_fails_after_the_build()

    def refuse_to_move(self, arguments):
        self.put_in_path("mv", f'#!/bin/sh\ncase "$*" in {arguments}) exit 1 ;; esac\nexec /bin/mv "$@"\n')

    def test_one_without_sums_leaves_everything_as_it_was(self):
        self.put_in_path("sha256sum", "#!/bin/sh\nexit 1\n")
        self.assert_fails_after_the_build()

    def test_one_without_a_program_leaves_everything_as_it_was(self):
        self.built.unlink()
        self.assert_fails_after_the_build()

    def test_a_tag_that_came_during_the_build_stays_and_the_release_is_off(self):
        self.put_in_path("cmake", STAND_IN + f'git -C "$TREE" tag --force v{later(patch=1)}\n')
        result = self.release(later(patch=1), TREE=str(self.tree))
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("already exists", result.stderr)
        files, tags, others = self.before
        self.assertEqual(self.state(), (files, f"{tags}v{later(patch=1)}\n", others))

    def test_a_first_one_that_fails_leaves_no_folder(self):
        shutil.rmtree(self.released)
        self.before = self.state()
        self.refuse_to_tag()
        self.assert_fails_after_the_build()

    def test_one_that_was_killed_at_its_end_is_made_good_by_the_next(self):
        self.released.rename(self.released.with_name("release.former"))
        self.assert_refused("is not newer", VERSION)
        self.assert_released(later(patch=1))

    def test_one_that_was_killed_before_its_tag_is_taken_back_by_the_next(self):
        killer = 'case "$1 $2" in "tag --list") ;; "tag "*) kill -KILL $PPID; exit ;; esac'
        self.put_in_path("git", f'#!/bin/sh\n{killer}\nexec /usr/bin/git "$@"\n')
        make_key(self.key)
        for options in ((), ("--sign", self.key)):
            self.assertEqual(self.release(later(patch=1), *options).returncode, -9)
            self.assertEqual(self.folders(), ["release", "release.former"])
            self.assertNotEqual(sums(contents(self.released)), self.before[0])
            self.assert_refused("is not newer", VERSION)

    def test_one_that_was_killed_after_its_tag_stays(self):
        former = self.released.with_name("release.former")
        shutil.copytree(self.released, former)
        (former / "latest.json").write_text("{}")
        self.assert_refused("is not newer", VERSION)

    def assert_fails_after_the_build(self):
        self.assertNotEqual(self.release(later(patch=1)).returncode, 0)
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
        told = self.assert_released(later(patch=1), *hosts, "--sign", self.key.name, folder=self.key.parent)
        self.assertEqual(told, expected)
        first = contents(self.released)
        self.git("tag", "--delete", f"v{later(patch=1)}")
        values = {**expected, "KESTRANE_MANIFEST_KEY": "", "KESTRANE_SIGNING_KEY": str(self.key)}
        told = self.assert_released(later(patch=1), **values)
        self.assertEqual(told, expected)
        manifest = json.loads(first["latest.json"])
        self.assertEqual(manifest["url"], "https://updates.example.org/kestrane.exe")
        self.assertIn("stats.example.org", first["index.html"].decode())
        # A signature is never the same twice.
        changed = {name for name, content in contents(self.released).items() if first[name] != content}
        self.assertEqual(changed, {"latest.json", "SHA256SUMS"})

    def test_the_program_accepts_a_signed_one(self):
        self.desktop = self.enterContext(Desktop())
        public = sign("--public-key", make_key(self.key)).stdout.strip()
        other = sign("--public-key", make_key(self.key.with_name("next.pem"))).stdout.strip()
        for version, key in ((later(patch=1), ()), (later(patch=2), ("--key", other))):
            told = self.assert_released(version, "--sign", self.key, *key)
            self.assertEqual(told["KESTRANE_MANIFEST_KEY"], key[1] if key else public)
            self.assertEqual(self.offer(public), [version])
            self.assertEqual(self.offer(other), ["refused"])
            subprocess.run(["sha256sum", "--check", "--strict", "--quiet", "SHA256SUMS"], cwd=self.released, check=True)

    def test_a_published_program_can_be_made_again(self):
        public = sign("--public-key", make_key(self.key)).stdout.strip()
        wide = lambda text: text.encode("utf-16-le")
        content = self.built.read_bytes()
        self.assertEqual(content.count(wide(VERSION + "\0")), 2)  # of the code and of the version block
        other_version = re.sub("[0-9]", "9", VERSION)
        self.built.write_bytes(content.replace(wide(VERSION + "\0"), wide(other_version + "\0")))
        values = {"KESTRANE_UPDATE_HOST": "updates.example.org", "KESTRANE_MANIFEST_KEY": public}
        published = shutil.copy(self.built, self.folder / "published.exe")
        told = reproduce(published, environment={**self.environment, **values})
        self.assertEqual((told.returncode, told.stdout), (0, f"the same byte for byte: {published}\n"), told.stderr)
        calls = self.calls.read_text().splitlines()
        for name, value in {"KESTRANE_VERSION": other_version, **values}.items():
            self.assertIn(f"-D{name}={value}", calls)
        with open(published, "r+b") as file:
            file.seek(-1, os.SEEK_END)
            file.write(b"\1")
        told = reproduce(published, environment={**self.environment, **values})
        self.assertEqual(told.returncode, 1)
        self.assertRegex(told.stdout, rf"(?m)^\.reloc: 1 bytes, the first at {len(content) - 1:#x}: ")
        self.assertRegex(told.stdout, r"(?m)^g\+\+-mingw-w64-x86-64-win32 [0-9]")

    def test_two_releases_are_the_same_wherever_and_whenever_they_are_made(self):
        told = reproduce(environment=self.environment)
        self.assertEqual((told.returncode, told.stderr), (0, ""), told.stdout)
        first, *lines = told.stdout.splitlines()
        self.assertEqual(first, "the same byte for byte:")
        self.assertEqual({line[66:] for line in lines}, set(contents(RELEASE)) - {"SHA256SUMS"})
        self.assertEqual(self.calls.read_text().splitlines().count("--build"), 2)

    def test_two_releases_of_what_is_new_since_the_last_one_are_the_same(self):
        self.addCleanup(write_lists, SOURCES, "## {}\n\n- Something.\n")
        write_lists(SOURCES, f"## {{}}\n\n- Something new.\n\n## {VERSION}\n\n- Something.\n")
        told = reproduce(environment=self.environment)
        self.assertEqual((told.returncode, told.stderr), (0, ""), told.stdout)
        self.assertIn(f"-DKESTRANE_VERSION={later(patch=1)}", self.calls.read_text().splitlines())

    def test_two_releases_that_differ_are_told(self):
        self.put_in_path("cmake", STAND_IN + '[ "$1" != --build ] || printf x >>"$BUILT"\n')
        told = reproduce(environment=self.environment)
        self.assertEqual(told.returncode, 1)
        size = len(self.built.read_bytes())
        self.assertIn(f"{size - 2} and {size - 1} bytes\n", told.stdout)

    def offer(self, key):
        """What a program with this key makes of the manifest."""
        return read_manifests(self.desktop, key, windows_path(self.released / "latest.json"))


class ABuildWithOtherValues(unittest.TestCase):
    """Is for once: what scripts/build.sh was told is not told to the next."""

    def test_leaves_none_to_the_next(self):
        with tempfile.TemporaryDirectory(dir=private_network.SCRATCH) as folder:
            hosts = {"KESTRANE_UPDATE_HOST": "updates.example.org", "KESTRANE_STATS_HOST": "stats.example.org"}
            others = {"KESTRANE_WEBSITE_ID": "W", "KESTRANE_MANIFEST_KEY": "0" * 128, "KESTRANE_VERSION": OLDER}
            values = {**hosts, **others}
            self.assertEqual(self.configure(folder, values), values)
            defaults = {"KESTRANE_UPDATE_HOST": HOST, "KESTRANE_STATS_HOST": STATS_HOST, "KESTRANE_VERSION": VERSION}
            self.assertEqual(self.configure(folder, {}), {**dict.fromkeys(values, ""), **defaults})

    def configure(self, folder, values):
        """What the compiler is told then."""
        options = [f"-D{name}={value}" for name, value in values.items()]
        command = ["cmake", "--preset", "windows", "-B", folder, "-DKESTRANE_TESTS=OFF", *options]
        subprocess.run(command, cwd=TREE, check=True, capture_output=True)
        commands = json.loads((pathlib.Path(folder) / "compile_commands.json").read_text())
        return dict(re.findall(r'-D(KESTRANE_\w+)=L?\\"(.*?)\\"', " ".join(one["command"] for one in commands)))


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
        self.assertEqual(self.executable.read_bytes(), (RELEASE / "kestrane.exe").read_bytes())
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
