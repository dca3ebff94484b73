#!/usr/bin/env bash
# Signs a manifest: scripts/sign.sh KEY.pem MANIFEST.json prints it with the "signature" that a program built with
# KESTRANE_MANIFEST_KEY asks for. scripts/sign.sh --public-key KEY.pem prints the value of that variable. A key is
# made, outside the tree, by: openssl ecparam -name prime256v1 -genkey -noout -out ~/kestrane-key.pem
set -euo pipefail

# In front of the two coordinates in an encoded public key: an uncompressed point of the curve P-256.
p256_point=3059301306072a8648ce3d020106082a8648ce3d03010703420004

# The two coordinates of the key, as 128 digits.
public_key() {
    local encoded
    encoded=$(openssl pkey -in "$1" -pubout -outform DER | od -An -v -tx1 | tr -d ' \n')
    [[ $encoded =~ ^$p256_point([0-9a-f]{128})$ ]] || { echo "$1: not a key of the curve P-256" >&2; return 1; }
    echo "${BASH_REMATCH[1]}"
}

# Signs standard input: r and s as 128 digits. The encoded signature holds them without leading zeros.
sign() {
    openssl dgst -sha256 -sign "$1" | openssl asn1parse -inform DER | sed -n 's/.*INTEGER *://p' |
        while read -r number; do printf '%64s' "$number"; done | tr 'A-F ' 'a-f0'
}

# manifest text FILE prints what is signed, as SignedText of the program has it; manifest signed FILE SIGNATURE prints
# the manifest. It refuses what the program would refuse, but leaves the address to the program, which knows its host.
manifest() {
    python3 - "$@" <<'PYTHON'
import json
import re
import sys

largest_manifest = 16384


def refuse(reason):
    sys.exit(f"{sys.argv[2]}: {reason}")


def fields_of(pairs):
    if len(dict(pairs)) < len(pairs):
        refuse("a key is there twice")
    return dict(pairs)


def canonical_version(text):
    parts = text.split("+")[0].split(".")
    if len(parts) > 4 or not all(re.fullmatch("[0-9]{1,19}", part) and int(part) <= 1000000 for part in parts):
        refuse("malformed version")
    numbers = [int(part) for part in parts] + [0] * (4 - len(parts))
    return ".".join(str(number) for number in (numbers if numbers[3] else numbers[:3]))


def signed_text(manifest):
    for key in "version", "url", "sha256":
        if not isinstance(manifest.get(key), str):
            refuse(f'no "{key}"')
    size = manifest.get("size")
    if type(size) is not int or not 0 < size < 10**19:
        refuse('no valid "size"')
    if not re.fullmatch("[0-9A-Fa-f]{64}", manifest["sha256"]):
        refuse("malformed hash")
    lines = canonical_version(manifest["version"]), manifest["url"], manifest["sha256"].lower(), str(size)
    return "".join(line + "\n" for line in lines)


with open(sys.argv[2], encoding="utf-8") as file:
    manifest = json.load(file, object_pairs_hook=fields_of)
if not isinstance(manifest, dict):
    refuse("not an object")
output = signed_text(manifest).encode()
if sys.argv[1] == "signed":
    manifest["signature"] = sys.argv[3]
    # Escapes would turn letters beyond U+FFFF into other bytes than those that are signed.
    try:
        output = (json.dumps(manifest, ensure_ascii=False, indent=4, allow_nan=False) + "\n").encode()
    except ValueError as error:  # a number or half a letter that JSON cannot carry
        refuse(error)
    if len(output) > largest_manifest:
        refuse(f"longer than {largest_manifest} bytes")
sys.stdout.buffer.write(output)
PYTHON
}

if [ $# -ne 2 ]; then
    echo "usage: scripts/sign.sh KEY.pem MANIFEST.json, or scripts/sign.sh --public-key KEY.pem" >&2
    exit 2
fi
{ command -v openssl && command -v python3; } >/dev/null || "$(dirname "$0")/packages.sh" >&2
if [ "$1" = --public-key ]; then
    public_key "$2"
    exit
fi
public_key "$1" >/dev/null
signature=$(manifest text "$2" | sign "$1")
manifest signed "$2" "$signature"
