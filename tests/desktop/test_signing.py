"""scripts/sign.sh and the program agree: what the one signs, the other accepts, and nothing else."""

import json
import pathlib
import subprocess
import tempfile
import unittest

from harness import ROOT, Desktop, main, windows_path

SIGN = ROOT / "scripts" / "sign.sh"

MANIFEST = {
    "version": "0.2.0",
    "url": "https://kestrane.example/kestrane.exe",
    "sha256": "0123456789abcdef" * 4,
    "size": 400000,
}


def sign(*arguments, folder=None):
    return subprocess.run([SIGN, *map(str, arguments)], cwd=folder, capture_output=True, text=True)


def make_key(path, curve="prime256v1"):
    subprocess.run(["openssl", "ecparam", "-name", curve, "-genkey", "-noout", "-out", path], check=True)
    return path


def read_manifests(desktop, key, *paths):
    """What a program built with this key makes of each file: the version on offer, or "refused"."""
    return desktop.run("manifest_reader.exe", key, *paths).output.split()


class Signing(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.key = make_key(cls.folder / "key.pem")
        cls.public = sign("--public-key", cls.key).stdout.strip()
        cls.desktop = cls.enterClassContext(Desktop())

    def write(self, content, name="manifest.json"):
        path = self.folder / name
        path.write_text(content if isinstance(content, str) else json.dumps(content), encoding="utf-8")
        return path

    def signed(self, content, key=None):
        """The signed manifest as text; anything that is written to standard error fails."""
        result = sign(key or self.key, self.write(content))
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        return result.stdout

    def offers(self, *manifests):
        """What a program built with the key makes of each text."""
        paths = [windows_path(self.write(text, f"{number}.json")) for number, text in enumerate(manifests)]
        output = read_manifests(self.desktop, self.public, *paths)
        self.assertEqual(len(output), len(manifests))
        return output

    def test_the_program_accepts_what_was_signed(self):
        odd = {
            "published": "2026-01-31 «ñ»",
            **MANIFEST,
            "version": "00.3.0.0+build7",
            "url": "https://Kestrane.Example/ñandú \U0001f426\n\u007f\"\\/kestrane.exe",
            "sha256": "0123456789ABCDEF" * 4,
            "checkMinutes": 720,
            "more": {"version": "9.9", "list": [1.5, True, None, "}"]},
        }
        self.assertEqual(
            self.offers(
                self.signed(MANIFEST),
                self.signed(self.signed(MANIFEST)),  # the former signature is replaced
                self.signed(odd),
                self.signed({**MANIFEST, "version": "1.2.3.4", "size": 9999999999999999999}),
            ),
            ["0.2.0", "0.2.0", "0.3.0", "1.2.3.4"],
        )

    def test_the_program_refuses_what_was_changed_afterwards(self):
        signed = json.loads(self.signed(MANIFEST))
        other = json.loads(self.signed({**MANIFEST, "version": "0.3.0"}))
        changed = [
            {"version": "0.3.0"},
            {"version": "0.2.0.1"},
            {"url": MANIFEST["url"] + "x"},
            {"url": MANIFEST["url"].replace("k", "K", 1)},
            {"sha256": "f" * 64},
            {"size": 400001},
            {"signature": other["signature"]},
            {"signature": signed["signature"][:-1]},
            {"signature": ""},
        ]
        self.assertEqual(
            self.offers(*(json.dumps({**signed, **change}) for change in changed)), ["refused"] * len(changed)
        )
        free = [{"published": "today"}, {"checkMinutes": 60}, {"version": "0.2+x"}, {"sha256": signed["sha256"].upper()}]
        self.assertEqual(self.offers(*(json.dumps({**signed, **change}) for change in free)), ["0.2.0"] * len(free))

    def test_the_program_refuses_another_key_and_none(self):
        other_key = make_key(self.folder / "other.pem")
        self.assertEqual(
            self.offers(self.signed(MANIFEST, other_key), json.dumps(MANIFEST), self.signed(MANIFEST)),
            ["refused", "refused", "0.2.0"],
        )

    def test_keys_and_signatures_are_128_digits(self):
        self.assertRegex(self.public, "^[0-9a-f]{128}$")
        for _ in range(10):
            self.assertRegex(json.loads(self.signed(MANIFEST))["signature"], "^[0-9a-f]{128}$")

    def test_it_works_in_any_folder(self):
        self.write(MANIFEST)
        self.assertEqual(sign("--public-key", "key.pem", folder=self.folder).stdout.strip(), self.public)
        self.assertEqual(self.offers(sign("key.pem", "manifest.json", folder=self.folder).stdout), ["0.2.0"])

    def test_it_signs_nothing_that_the_program_would_refuse(self):
        text = json.dumps(MANIFEST)
        refused = [
            *({key: value for key, value in MANIFEST.items() if key != missing} for missing in MANIFEST),
            *({**MANIFEST, "version": version} for version in ("", "1.2.3-beta", "v1", "1.2.3.4.5", "1..2", "0.1000001", 1)),
            *({**MANIFEST, "sha256": digits} for digits in ("", "0" * 63, "0" * 65, "g" * 64)),
            *({**MANIFEST, "size": size} for size in (0, -1, 1.5, "1", True, 10**19)),
            text[:-1] + ', "size": 1}',
            *(text[:-1] + f', "more": {number}}}' for number in ("NaN", "-Infinity", "1e999")),
            {**MANIFEST, "published": "\ud800"},  # half a letter
            {**MANIFEST, "published": "p" * 16384},
            text[:-1],
            "[]",
            "",
        ]
        for content in refused:
            result = sign(self.key, self.write(content))
            self.assertEqual((result.returncode, result.stdout), (1, ""), content)

    def test_it_takes_keys_of_one_curve_only(self):
        other_curve = make_key(self.folder / "p384.pem", "secp384r1")
        for arguments in ((other_curve, self.write(MANIFEST)), ("--public-key", other_curve)):
            result = sign(*arguments)
            self.assertEqual((result.returncode, result.stdout), (1, ""))
            self.assertIn("not a key of the curve P-256", result.stderr)

    def test_it_says_how_it_is_used(self):
        for arguments in ((), (self.key,), (self.key, "a", "b")):
            result = sign(*arguments)
            self.assertEqual((result.returncode, result.stdout), (2, ""))
            self.assertIn("usage: scripts/sign.sh", result.stderr)


if __name__ == "__main__":
    main()
