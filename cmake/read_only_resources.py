"""Makes the resource section of a Windows program read-only: read_only_resources.py FILE.

The binutils linker marks every .rsrc section writable, whatever its input and options say.
"""

import pathlib
import struct
import sys

MEM_WRITE = 0x80000000


def checksum(image, place):
    """The header's checksum of the whole file, except for the checksum field itself."""
    words = image[:place] + bytes(4) + image[place + 4 :]
    words += bytes(len(words) % 2)
    total = sum(struct.unpack(f"<{len(words) // 2}H", words))
    while total > 0xFFFF:
        total = (total & 0xFFFF) + (total >> 16)
    return total + len(image)


def main():
    path = pathlib.Path(sys.argv[1])
    image = bytearray(path.read_bytes())
    [header] = struct.unpack_from("<I", image, 0x3C)
    sections, optional_size = struct.unpack_from("<H12xH", image, header + 6)
    optional = header + 24
    for number in range(sections):
        section = optional + optional_size + 40 * number
        if image[section : section + 8] == b".rsrc\0\0\0":
            [flags] = struct.unpack_from("<I", image, section + 36)
            struct.pack_into("<I", image, section + 36, flags & ~MEM_WRITE)
            break
    else:
        raise SystemExit(f"{path}: no resources")
    struct.pack_into("<I", image, optional + 64, checksum(bytes(image), optional + 64))
    path.write_bytes(image)


main()
