"""kestrane.exe as a file: what Windows reads before it runs."""

import pathlib
import re
import struct
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

import pefile

from harness import BUILD, ROOT, VERSION, main

WINDOWS_10 = (10, 0)
SIZE_LIMIT = 600_000

# Functions for injecting code and suspending threads, which virus scanners look for. The program must not import any.
INJECTORS = {
    "AddVectoredExceptionHandler",
    "CreateRemoteThread",
    "CreateRemoteThreadEx",
    "GetThreadContext",
    "IsDebuggerPresent",
    "OpenThread",
    "QueueUserAPC",
    "ReadProcessMemory",
    "ResumeThread",
    "SetThreadContext",
    "SetWindowsHookExW",
    "SuspendThread",
    "VirtualAllocEx",
    "VirtualProtectEx",
    "WriteProcessMemory",
}

# The known DLLs of every Windows 10, loaded from System32 whatever is beside the program.
KNOWN_DLLS = {
    "advapi32.dll",
    "comdlg32.dll",
    "gdi32.dll",
    "kernel32.dll",
    "msvcrt.dll",
    "ole32.dll",
    "oleaut32.dll",
    "shell32.dll",
    "shlwapi.dll",
    "user32.dll",
}

HIGH_ENTROPY_VA, DYNAMIC_BASE, NX_COMPAT = 0x20, 0x40, 0x100

STRINGS = {
    "FileDescription": "kestrane - monitor de CPU, disco, memoria y red en la bandeja",
    "FileVersion": VERSION + ".0",
    "InternalName": "kestrane",
    "OriginalFilename": "kestrane.exe",
    "ProductName": "kestrane",
    "ProductVersion": VERSION,
}

PROGRAM_ICON = 1
PROGRAM_ICON_EDGES = [16, 20, 24, 32, 48, 64, 256]
ICON_EDGES = [16, 20, 24, 32, 48]

SETTINGS_DIALOG = 200
UPDATE_DIALOG = 300
DIALOG_ICONS = {202, 203, 206, 207, 210, 211, 212, 213, 214, 215}
DIALOG_STYLE = 0x80C800C0  # popup, caption, system menu, modal frame, font
NEUTRAL = 0
DEFAULT_CHARSET = 1
BUTTON, STATIC = 0x80, 0x82
CHILD = 0x50000000  # and visible
GROUP, TAB_STOP = 0x20000, 0x10000
DEFAULT_BUTTON = 0x1
OWNER_DRAW, NOTIFY = 0xD, 0x100  # of a static
NO_ID = 0xFFFFFFFF

UPDATE_NOTE = (
    "Al actualizar se descarga la versión nueva, se comprueba, se cierra kestrane y se vuelve a abrir ya actualizado."
)
# Id, class, style, rectangle and text, in the order in which Tab goes through them.
UPDATE_CONTROLS = [
    (3001, STATIC, GROUP, (10, 10, 240, 10), "Hay una versión nueva de kestrane."),
    (NO_ID, STATIC, GROUP, (10, 26, 72, 10), "Versión actual:"),
    (3002, STATIC, GROUP, (84, 26, 120, 10), ""),
    (NO_ID, STATIC, GROUP, (10, 38, 72, 10), "Versión disponible:"),
    (3003, STATIC, GROUP, (84, 38, 120, 10), ""),
    (3004, STATIC, GROUP | NOTIFY, (10, 54, 120, 10), "Ver los cambios de cada versión"),
    (3005, STATIC, GROUP, (10, 70, 240, 26), UPDATE_NOTE),
    (3007, STATIC, GROUP | NOTIFY, (10, 96, 60, 10), "Ir a la web"),
    (3006, STATIC, GROUP | OWNER_DRAW, (10, 98, 240, 7), ""),
    (2, BUTTON, GROUP | TAB_STOP, (116, 110, 44, 14), "Cerrar"),
    (3008, BUTTON, TAB_STOP | DEFAULT_BUTTON, (164, 110, 86, 14), "Actualizar y reiniciar"),
]


class Executable(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.path = BUILD / "kestrane.exe"
        cls.image = pefile.PE(str(cls.path))
        cls.addClassCleanup(cls.image.close)

    def resources(self, kind):
        """Id, language and bytes of all resources of a type."""
        found = []
        for entry in self.image.DIRECTORY_ENTRY_RESOURCE.entries:
            if entry.id != pefile.RESOURCE_TYPE[kind]:
                continue
            for item in entry.directory.entries:
                for version in item.directory.entries:
                    place = version.data.struct
                    found.append((item.id, version.id, self.image.get_data(place.OffsetToData, place.Size)))
        return found

    def test_is_a_64_bit_gui_program(self):
        self.assertEqual(self.image.FILE_HEADER.Machine, pefile.MACHINE_TYPE["IMAGE_FILE_MACHINE_AMD64"])
        self.assertEqual(self.image.OPTIONAL_HEADER.Subsystem, pefile.SUBSYSTEM_TYPE["IMAGE_SUBSYSTEM_WINDOWS_GUI"])

    def test_asks_for_windows_10(self):
        header = self.image.OPTIONAL_HEADER
        self.assertEqual((header.MajorOperatingSystemVersion, header.MinorOperatingSystemVersion), WINDOWS_10)
        self.assertEqual((header.MajorSubsystemVersion, header.MinorSubsystemVersion), WINDOWS_10)

    def test_lets_the_system_place_and_protect_it(self):
        for flag in (HIGH_ENTROPY_VA, DYNAMIC_BASE, NX_COMPAT):
            self.assertTrue(self.image.OPTIONAL_HEADER.DllCharacteristics & flag, hex(flag))
        # Without relocations the image cannot be rebased, whatever the flags say.
        self.assertGreater(len(self.image.DIRECTORY_ENTRY_BASERELOC), 0)

    def test_nothing_can_be_both_written_and_run(self):
        for section in self.image.sections:
            self.assertFalse(section.IMAGE_SCN_MEM_WRITE and section.IMAGE_SCN_MEM_EXECUTE, section.Name)

    def test_resources_cannot_be_written(self):
        [flags] = [section.IMAGE_SCN_MEM_WRITE for section in self.image.sections if section.Name == b".rsrc\0\0\0"]
        self.assertFalse(flags)

    def test_its_checksum_is_right(self):
        self.assertTrue(self.image.verify_checksum())

    def test_imports_nothing_that_looks_like_an_injector(self):
        names = {item.name.decode() for entry in self.image.DIRECTORY_ENTRY_IMPORT for item in entry.imports}
        self.assertIn("CreateMutexW", names)
        self.assertEqual(names & INJECTORS, set())

    def test_imports_only_what_nobody_can_put_beside_it(self):
        imported = {entry.dll.decode().lower() for entry in self.image.DIRECTORY_ENTRY_IMPORT}
        self.assertIn("kernel32.dll", imported)
        self.assertEqual(imported - KNOWN_DLLS, set())
        self.assertFalse(hasattr(self.image, "DIRECTORY_ENTRY_DELAY_IMPORT"))

    def test_calls_only_the_wide_half_of_each_pair(self):
        narrow = set()
        for entry in self.image.DIRECTORY_ENTRY_IMPORT:
            if entry.dll.lower() not in (b"kernel32.dll", b"msvcrt.dll"):  # the C++ runtime uses these two as well
                narrow |= {item.name for item in entry.imports if re.search(rb"[a-z]A$", item.name)}
        self.assertEqual(narrow, set())

    def test_manifest(self):
        [(number, _, text)] = self.resources("RT_MANIFEST")
        self.assertEqual(number, 1)
        root = ElementTree.fromstring(text)
        v1, v3 = "{urn:schemas-microsoft-com:asm.v1}", "{urn:schemas-microsoft-com:asm.v3}"
        self.assertEqual(root.tag, v1 + "assembly")
        self.assertEqual(root.get("manifestVersion"), "1.0")

        identity = root.find(v1 + "assemblyIdentity")
        self.assertEqual((identity.get("name"), identity.get("version")), ("kestrane", VERSION + ".0"))
        needed = root.find(f"{v1}dependency/{v1}dependentAssembly/{v1}assemblyIdentity")
        self.assertEqual(needed.get("name"), "Microsoft.Windows.Common-Controls")
        self.assertEqual(needed.get("version"), "6.0.0.0")
        self.assertEqual(needed.get("publicKeyToken"), "6595b64144ccf1df")

        level = root.find(f"{v3}trustInfo/{v3}security/{v3}requestedPrivileges/{v3}requestedExecutionLevel")
        self.assertEqual((level.get("level"), level.get("uiAccess")), ("asInvoker", "false"))

        settings = root.find(f"{v3}application/{v3}windowsSettings")
        smi = "{http://schemas.microsoft.com/SMI/%s/WindowsSettings}"
        self.assertEqual(settings.findtext(smi % 2016 + "dpiAwareness"), "PerMonitorV2")
        self.assertEqual(settings.findtext(smi % 2019 + "activeCodePage"), "UTF-8")

        compatible = "{urn:schemas-microsoft-com:compatibility.v1}"
        systems = root.findall(f"{compatible}compatibility/{compatible}application/{compatible}supportedOS")
        self.assertEqual([system.get("Id") for system in systems], ["{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"])

    def test_version_block(self):
        [(number, language, _)] = self.resources("RT_VERSION")
        self.assertEqual((number, language), (1, 0x040A))
        strings, variables = None, None
        for block in self.image.FileInfo[0]:
            if block.Key == b"StringFileInfo":
                [strings] = block.StringTable
            else:
                [variables] = block.Var
        self.assertEqual(strings.LangID, b"040A04B0")
        self.assertEqual({key.decode(): value.decode() for key, value in strings.entries.items()}, STRINGS)
        self.assertEqual(variables.entry, {b"Translation": "0x040a 0x04b0"})

        [fixed] = self.image.VS_FIXEDFILEINFO
        major, minor, patch = map(int, VERSION.split("."))
        number = (major << 16 | minor, patch << 16)
        self.assertEqual((fixed.FileVersionMS, fixed.FileVersionLS), number)
        self.assertEqual((fixed.ProductVersionMS, fixed.ProductVersionLS), number)

    def test_its_code_has_the_version_of_its_resources(self):
        [constants] = [section.get_data() for section in self.image.sections if section.Name == b".rdata\0\0"]
        self.assertTrue((VERSION + "\0").encode("utf-16-le") in constants)  # too long to print

    def test_it_is_small(self):
        self.assertLess((BUILD / "kestrane.exe").stat().st_size, SIZE_LIMIT)

    def test_icons_have_every_size(self):
        groups = {number: data for number, _, data in self.resources("RT_GROUP_ICON")}
        self.assertEqual(min(groups), PROGRAM_ICON)  # the lowest id is the file's icon
        images = {number: data for number, _, data in self.resources("RT_ICON")}
        used = []
        for number, group in groups.items():
            kind, count = struct.unpack_from("<HH", group, 2)
            self.assertEqual((kind, len(group)), (1, 6 + 14 * count), number)
            edges = []
            for width, height, _, _, _, depth, size, image in struct.iter_unpack("<BBBBHHIH", group[6:]):
                self.assertEqual((width, depth, len(images[image])), (height, 32, size), number)
                edges.append(width or 256)
                used.append(image)
            self.assertEqual(sorted(edges), PROGRAM_ICON_EDGES if number == PROGRAM_ICON else ICON_EDGES, number)
        self.assertEqual(sorted(used), sorted(images))

    def test_dialog_and_icons_are_exactly_those_that_the_code_names(self):
        header = (ROOT / "src/base/resource_ids.h").read_text(encoding="utf-8")
        named = [int(number) for number in re.findall(r"Resource\w+ = (\d+);", header)]
        there = [number for kind in ("RT_DIALOG", "RT_GROUP_ICON") for number, _, _ in self.resources(kind)]
        self.assertEqual(sorted(there), sorted(named))
        self.assertLessEqual(DIALOG_ICONS, set(there))

    def dialog(self, number):
        """The number of controls, the place and the rest of a template that begins as all do."""
        [(_, language, data)] = [found for found in self.resources("RT_DIALOG") if found[0] == number]
        self.assertEqual(language, NEUTRAL)
        version, signature, help_id, extended_style, style = struct.unpack_from("<HHIII", data)
        self.assertEqual((version, signature, help_id, extended_style), (1, 0xFFFF, 0, 0))
        self.assertEqual(style, DIALOG_STYLE)
        controls, *place, menu, window_class = struct.unpack_from("<HhhhhHH", data, 16)
        self.assertEqual((menu, window_class), (0, 0))
        return controls, place, data[30:]

    @staticmethod
    def title_and_font(title):
        font = struct.pack("<HHBB", 9, 400, 0, DEFAULT_CHARSET) + "Segoe UI\0".encode("utf-16-le")
        return (title + "\0").encode("utf-16-le") + font

    def test_settings_dialog_is_empty(self):
        expected = (0, [0, 0, 520, 300], self.title_and_font("Ajustes de kestrane"))
        self.assertEqual(self.dialog(SETTINGS_DIALOG), expected)

    def test_update_dialog_has_its_controls(self):
        count, place, data = self.dialog(UPDATE_DIALOG)
        self.assertEqual((count, place), (len(UPDATE_CONTROLS), [0, 0, 260, 132]))
        head = self.title_and_font("Nueva versión de kestrane")
        self.assertEqual(data[: len(head)], head)
        position, controls = len(head), []
        for _ in UPDATE_CONTROLS:
            position = (position + 30 + 3) // 4 * 4 - 30  # each begins at a multiple of four bytes
            help_id, extended_style, style, x, y, width, height, number, mark, kind = struct.unpack_from(
                "<IIIhhhhIHH", data, position
            )
            self.assertEqual((help_id, extended_style, mark), (0, 0, 0xFFFF), number)
            self.assertEqual(style & CHILD, CHILD, number)
            position += struct.calcsize("<IIIhhhhIHH")
            end = position
            while data[end : end + 2] != b"\0\0":
                end += 2
            text = data[position:end].decode("utf-16-le")
            self.assertEqual(data[end + 2 : end + 4], b"\0\0", number)  # no data of its own
            position = end + 4
            controls.append((number, kind, style - CHILD, (x, y, width, height), text))
        self.assertEqual(controls, UPDATE_CONTROLS)

    def test_a_second_link_of_the_same_tree_is_equal_byte_for_byte(self):
        commands = subprocess.run(
            ["ninja", "-C", BUILD, "-t", "commands", "kestrane.exe"], check=True, capture_output=True, text=True
        )
        link = commands.stdout.splitlines()[-1]
        with tempfile.TemporaryDirectory() as folder:
            again = pathlib.Path(folder, "kestrane.exe")
            link = link.replace("-o kestrane.exe", f"-o {again}").replace(str(self.path), str(again))
            link = re.sub(r"(-Map=|--out-implib,)[^\s,]+", rf"\1{folder}/other", link)
            subprocess.run(link, shell=True, cwd=BUILD, check=True)
            self.assertEqual(again.read_bytes(), self.path.read_bytes())


if __name__ == "__main__":
    main()
