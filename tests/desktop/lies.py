"""Manifests as an update server may give them: an honest one, and all that must not be believed. Each is an answer of
update_server.py by its name."""

import gzip
import json

from update_server import HOST, OTHER_HOST, Visit, cut, endless, head, reply

LARGEST = 16384

HONEST = {
    "version": "0.2.0",
    "url": f"https://{HOST}/download/kestrane.exe",
    "sha256": "0123456789abcdef" * 4,
    "size": 1000,
    "published": "2026-11-22",
    "checkMinutes": 0,
}
REQUIRED = ("version", "url", "sha256", "size")

HTML = b"<!DOCTYPE html>\n<html><body>Please sign in to this network.</body></html>\n"


def text(**changes):
    """The honest manifest as text, with these changes; None leaves a field out."""
    fields = {**HONEST, **changes}
    return json.dumps({name: value for name, value in fields.items() if value is not None})


def manifest(**changes):
    return reply(text(**changes).encode())


def repeated(name, value):
    """The honest manifest, followed by another value for one of its fields."""
    return reply(f"{text()[:-1]}, {json.dumps(name)}: {json.dumps(value)}}}".encode())


def written(name, value):
    """The honest manifest with a field whose value is written so."""
    return reply(f'{text(**{name: None})[:-1]}, "{name}": {value}}}'.encode())


def padded(size, **changes):
    """An honest manifest with spaces up to this size."""
    return reply(text(**changes).encode().ljust(size))


def nested(depth, **changes):
    """An honest manifest that begins with a field of so many arrays in each other."""
    return reply(f'{{"deep": {"[" * depth}{"]" * depth}, {text(**changes)[1:]}'.encode())


def chunked(data):
    return f"{len(data):x}\r\n".encode() + data + b"\r\n"


WHOLE = text().encode()

STATUSES = {
    "status 204": reply(WHOLE, 204),
    "status 206": reply(WHOLE, 206),
    "status 404": reply(WHOLE, 404),
    "status 500": reply(WHOLE, 500),
    "a redirect to a host without a certificate": reply(status=301, Location=f"https://{OTHER_HOST}/latest.json"),
    "a redirect to plain HTTP": reply(status=302, Location=f"http://{HOST}/latest.json"),
}

BODIES = {
    "a byte too long": padded(LARGEST + 1),
    "endless": endless(b" " * 4096, head() + WHOLE),
    "endless in chunks": endless(chunked(b" " * 4096), head(Transfer_Encoding="chunked") + chunked(WHOLE)),
    "cut off": cut(head(200, len(WHOLE)) + WHOLE[:-1], Visit.hang_up),
    "cut off with a farewell": cut(head(200, len(WHOLE)) + WHOLE[:-1], Visit.close),
    "cut off by a reset": cut(head(200, len(WHOLE)) + WHOLE[:-1], Visit.reset),
    "cut off in the headers": cut(head(200, len(WHOLE))[:-9], Visit.hang_up),
    "empty": reply(),
    "HTML": reply(HTML),
    "gzip as declared": reply(gzip.compress(WHOLE), Content_Encoding="gzip"),
    "gzip": reply(gzip.compress(WHOLE)),
    "UTF-16": reply(text().encode("utf-16")),
    "UTF-16 without a mark": reply(text().encode("utf-16-le")),
    "a byte-order mark": reply(b"\xef\xbb\xbf" + WHOLE),
    "nested 10,000 deep": nested(10000),
    "nested 10,000 deep and left open": reply(b'{"deep": ' + b"[" * 10000),
    "an array": reply(b"[" + WHOLE + b"]"),
    "a trailing comma": reply(WHOLE[:-1] + b",}"),
    "two objects": reply(WHOLE * 2),
}

ANOTHER_KIND = {
    "version": (1.2, None, ["0.2.0"]),
    "url": (1, True, {"url": HONEST["url"]}),
    "sha256": (10**63, False),
    "size": ("1000", None, [1000]),
}
BAD = {"version": "0.2.", "url": f"http://{HOST}/kestrane.exe", "sha256": "0123", "size": 0}

FIELDS = {
    **{f"no {name}": manifest(**{name: None}) for name in REQUIRED},
    **{
        f"{name} as {json.dumps(value):.8}": written(name, json.dumps(value))
        for name, values in ANOTHER_KIND.items()
        for value in values
    },
    **{f"{name} repeated": repeated(name, value) for name, value in BAD.items()},
}

VERSIONS = {
    f"version {version!r}": manifest(version=version)
    for version in (
        "0.0.9",
        "0.1.0",
        "0.1",
        "0.1.0.0+build9",
        "",
        "v0.2.0",
        "0.2.0-beta",
        "0..2",
        ".2",
        "0.2.0.0.0",
        "1000001",
        "99999999999999999999",
    )
}

ADDRESSES = {
    f"address {url}": manifest(url=url)
    for url in (
        f"http://{HOST}/kestrane.exe",
        f"HTTPS://{HOST}/kestrane.exe",
        f"https://{OTHER_HOST}/kestrane.exe",
        f"https://{HOST}:443/kestrane.exe",
        f"https://user@{HOST}/kestrane.exe",
        f"https://{HOST}@{OTHER_HOST}/kestrane.exe",
        f"https://{HOST}\\@{OTHER_HOST}/kestrane.exe",
        f"https://www.{HOST}/kestrane.exe",
        f"https://{HOST}.{OTHER_HOST}/kestrane.exe",
        f"https://{HOST}",
        f"https://{HOST}/",
        f"//{HOST}/kestrane.exe",
    )
}

HASHES = {
    "a hash of 63 digits": manifest(sha256=HONEST["sha256"][:-1]),
    "a hash of 65 digits": manifest(sha256=HONEST["sha256"] + "0"),
    "a hash with a g": manifest(sha256=HONEST["sha256"][:-1] + "g"),
}

SIZES = {
    f"size {size}": written("size", size)
    for size in ("0", "-1000", "1e3", "1000.0", "09223372036854775808", "18446744073709551616")
}

LIES = {**STATUSES, **BODIES, **FIELDS, **VERSIONS, **ADDRESSES, **HASHES, **SIZES}

# By the version that is shown.
ACCEPTED = {
    "0.2.0": manifest(version="0.2+build7"),
    "0.2.1": padded(LARGEST, version="0.2.1"),
    "0.2.2": nested(8000, version="0.2.2"),
    "0.2.3": manifest(version="0.2.3", url=f"https://{HOST.upper()}/kestrane.exe"),
    "0.2.4": manifest(version="0.2.4", checkMinutes="often", published=7, news=[{"a": "}"}, None], Size=0),
    "0.2.5": manifest(version="0.2.5", sha256=HONEST["sha256"].upper(), checkMinutes=-1),
    "0.2.6": manifest(version="0.2.6", size=2**63),
    "0.2.7": manifest(version="0.2.7", published=None, VERSION="0.3"),
    "1000000.0.0": manifest(version="1000000.0"),
    "1000000.0.0.1": manifest(version="1000000.0.0.1"),
}
