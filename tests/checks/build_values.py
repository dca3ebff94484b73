#!/usr/bin/env python3
"""Checks that a build with unusable hosts or an unusable key fails, and says which value is at fault.

A program built with one would run, and never find an update. The argument is the compiler.
"""

import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]

KEY = "0123456789abcdef" * 8

DEFAULTS = {
    "KESTRANE_UPDATE_HOST": "kestrane.example",
    "KESTRANE_STATS_HOST": "stats.kestrane.example",
    "KESTRANE_WEBSITE_ID": "",
    "KESTRANE_MANIFEST_KEY": "",
}

USABLE = {
    "KESTRANE_UPDATE_HOST": ["a", "updates-2.example.org"],
    "KESTRANE_STATS_HOST": ["10.0.0.1"],
    "KESTRANE_WEBSITE_ID": ["W", "any text"],
    "KESTRANE_MANIFEST_KEY": ["", KEY, KEY.upper()],
}

UNUSABLE_HOSTS = ["", "Kestrane.example", "https://kestrane.example", "kestrane.example/", "kestrane.example:8443", " a"]
UNUSABLE = {
    "KESTRANE_UPDATE_HOST": UNUSABLE_HOSTS,
    "KESTRANE_STATS_HOST": UNUSABLE_HOSTS,
    "KESTRANE_MANIFEST_KEY": ["OFF", " ", "key.pem", KEY[1:], KEY + "0", KEY[1:] + "g", "04" + KEY, r"\0", r"\0" + "f" * 127],
}


def build(compiler, name, value):
    """What the compiler says about a build with one value that is not the default."""
    source = ROOT / "src" / "update" / "update_hosts.cpp"
    definitions = [f'-D{key}="{text}"' for key, text in {**DEFAULTS, name: value}.items()]
    command = [compiler, "-std=c++20", "-fsyntax-only", f"-I{ROOT / 'src'}", *definitions, source]
    result = subprocess.run(command, capture_output=True, text=True, env={**os.environ, "LC_ALL": "C"})
    return result.returncode, result.stderr


def main():
    compiler = sys.argv[1]
    breaches = []
    for name, values in USABLE.items():
        for value in values:
            code, told = build(compiler, name, value)
            if code != 0:
                breaches.append(f"{name}={value!r} does not build: {told}")
    for name, values in UNUSABLE.items():
        for value in values:
            code, told = build(compiler, name, value)
            if code == 0 or f"{name} must be" not in told:
                breaches.append(f"{name}={value!r} builds, or fails without saying why: {told}")
    print("\n".join(breaches) or "only usable values build")
    return 1 if breaches else 0


if __name__ == "__main__":
    sys.exit(main())
