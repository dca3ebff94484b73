"""DLLs planted beside the program under the names of system DLLs: it loads none of them."""

import shutil

import private_network
from harness import BUILD, main, wait_until, windows_path
from onscreen import KINDS, WM_CONTEXTMENU, GraphTest, all_open, middle_of

# DLLs that programs of this kind load sooner or later, directly or through system DLLs. Without version.dll, which Wine's
# own DLLs load into every program: they crash when it has none of its functions.
NAMES = """bcrypt comctl32 cryptbase dbghelp dnsapi dwmapi iphlpapi netapi32 ntmarta oleacc pdh profapi propsys secur32
    setupapi userenv uxtheme winhttp winmm winsta wtsapi32""".split()


class PlantedDlls(GraphTest):
    settings = all_open()

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.folder = cls.desktop.folder / "downloads"
        cls.folder.mkdir()
        for name in NAMES:
            shutil.copy(BUILD / "planted.dll", cls.folder / f"{name}.dll")
        cls.desktop.run_kestrane_from(cls.folder)
        cls.bare = shutil.copy(BUILD / "bare.exe", cls.folder)

    def loaded_folder(self, name):
        """The folder for the marker files, and the environment that names it."""
        folder = self.desktop.folder / name
        folder.mkdir()
        # Wine prefers its own DLLs to files of the same name; Windows does not.
        overrides = self.desktop.environment["WINEDLLOVERRIDES"] + f";{','.join(NAMES)}=n,b"
        return folder, {"LOADED_FOLDER": windows_path(folder), "WINEDLLOVERRIDES": overrides}

    def loaded_by_a_bare_program(self, name, *dlls):
        folder, environment = self.loaded_folder(name)
        self.assertEqual(self.desktop.run(self.bare, *dlls, environment=environment).code, 0)
        return {file.stem for file in folder.iterdir()}

    def test_each_of_them_leaves_its_file_when_it_is_loaded(self):
        self.assertEqual(self.loaded_by_a_bare_program("all", *(f"{name}.dll" for name in NAMES)), set(NAMES))

    def test_none_is_loaded_but_what_the_system_loads_for_every_program(self):
        folder, environment = self.loaded_folder("kestrane")
        process = self.start(environment=environment)
        for kind in KINDS:
            self.wait_for_graph(kind)
        self.point_at(*middle_of(self.rect("cpu")))
        self.send_to_icon("cpu", WM_CONTEXTMENU)
        wait_until(lambda: self.neighbour.mode().menu, "the menu")
        self.desktop.use_mouse("key", "Escape")
        wait_until(lambda: not self.neighbour.mode().menu, "the end of the menu")
        for timer in (1, 5, 3, 4):
            self.tick(timer)
        wait_until(lambda: private_network.names_asked, "the check for updates")
        self.assertEqual(self.desktop.run_kestrane("--exit").code, 0)
        self.assertEqual(process.wait(), 0)

        loaded = {file.stem for file in folder.iterdir()}
        self.assertEqual(loaded - self.loaded_by_a_bare_program("bare"), set())


if __name__ == "__main__":
    main()
