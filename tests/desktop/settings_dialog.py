"""The settings dialog of the real program, opened from the icons' menu and used with the mouse and the keyboard."""

from harness import NIM_MODIFY, every, wait_until
from onscreen import DIALOG_CLASS, Picture, double_click_time, middle_of
from settings_icons import COUNTERS, SettingsTest, network_row
from settings_window import SETTINGS_ENTRY, TAB_BUTTONS
from test_menu import MenuTest

# The ids of the controls that the tests use.
CPU_TAB, DISK_TAB, MEMORY_TAB, NETWORK_TAB, GENERAL_TAB = TAB_BUTTONS.values()
CPU_SHOW, DISK_SHOW, MEMORY_SHOW, NETWORK_SHOW = range(1051, 1055)
CPU_BACK, CPU_REFRESH, CPU_SAMPLE = 1001, 1008, 1070
CPU_OPACITY, CPU_MARGIN, CPU_LINES, CPU_TOPMOST = 1231, 1232, 1233, 1242
CPU_GRAPH_SAMPLE, CPU_RESTORE, CPU_SAVE = 1240, 1009, 1014
LEVEL_BAR, THRESHOLDS, MEMORY_FONT, MEMORY_FONT_SIZE, MEMORY_SAVE = 1068, (1041, 1042, 1043), 1065, 1066, 1017
INTERFACES, NETWORK_SAVE = 1107, 1114
AUTOSTART, ALL_USERS, CHECK_UPDATES, LANGUAGE, GENERAL_SAVE = 1060, 1063, 1062, 1061, 1069
SAVING_NOTE = 1081

# A control of each page, which shows that the page is there.
OF_PAGE = {
    CPU_TAB: CPU_SHOW,
    DISK_TAB: DISK_SHOW,
    MEMORY_TAB: MEMORY_SHOW,
    NETWORK_TAB: NETWORK_SHOW,
    GENERAL_TAB: LANGUAGE,
}

# Of the system's message box and colour dialog.
OK, CANCEL = 1, 2
RED, GREEN, BLUE = 706, 707, 708

LIST_CLASS = "ComboLBox"  # of a combo box that is dropped down


class SettingsDialogTest(MenuTest, SettingsTest):
    options = {
        "language": "es_ES",
        "counters": COUNTERS,
        "network": [network_row(0, 0)],
        "more_disks": 1,
        **double_click_time(1),
    }
    settings = every(10000)  # no tick comes between the checked calls
    TITLE = "Ajustes de kestrane"

    # The dialog.

    def open_settings(self, page=None, x=640, y=700):
        """Opens the dialog with the mouse, on one of its pages."""
        menu = self.open_menu(x=x, y=y)
        self.click(*menu.middle_of(SETTINGS_ENTRY))
        self.wait_for_no_menu()
        wait_until(self.dialog, "the settings dialog")
        shown = lambda note: note is not None and note.visible
        wait_until(lambda: shown(self.control(SAVING_NOTE)), "the controls of the settings dialog")
        if page is not None:
            self.go_to(page)

    def dialog(self):
        """Its window, or None. It counts as invisible while it is laid out."""
        found = [window for window in self.neighbour.ask("windows") if window.title == self.TITLE]
        return found[0] if found else None

    def control(self, id, of=None):
        return self.neighbour.ask("control", (of or self.dialog()).handle, id)

    def focus(self):
        """The id of the control that has the keyboard."""
        return self.neighbour.ask("focus", self.dialog().handle)

    def use(self, id, button=1, of=None):
        """Clicks on a control."""
        self.click(*middle_of(self.control(id, of).rect), button=button)

    def go_to(self, page):
        self.use(page)
        wait_until(lambda: self.control(OF_PAGE[page]).visible, f"page {page}")

    def wait_for(self, id, **state):
        """Waits until a control is in this state."""
        holds = lambda control: all(getattr(control, name) == value for name, value in state.items())
        wait_until(lambda: holds(self.control(id)), f"control {id} with {state}", 30)

    def choose_from(self, combo, *keys):
        """Drops a combo box down with the mouse and chooses with the keyboard."""
        self.use(combo)
        wait_until(lambda: self.neighbour.windows(LIST_CLASS), "the open list")
        self.keys(*keys, "Return")
        wait_until(lambda: not self.neighbour.windows(LIST_CLASS), "the end of the list")

    def keys(self, *names):
        self.desktop.use_mouse("key", *names)

    def wait_for_no_dialog(self):
        wait_until(lambda: not self.dialog(), "the end of the settings dialog", 30)

    def point_on_title(self):
        """Where the dialog takes a click or a drag without any of its controls."""
        left, top, _, _ = self.dialog().rect
        return left + 200, top + 12

    def leave_settings(self):
        """Closes the dialog, by its close box."""
        left, top, right, bottom = self.dialog().rect
        self.click(right - 14, top + 12)
        self.wait_for_no_dialog()

    def wait_for_box(self, title="kestrane"):
        """A message box on top of the dialog."""
        return wait_until(lambda: self.neighbour.find(DIALOG_CLASS, title), f"the box {title}", 30)

    def texts_of(self, window):
        return [control.text for control in self.neighbour.ask("children", window.handle) if control.text]

    def answer(self, box):
        """Leaves a message box."""
        self.use(OK if self.control(OK, box) else CANCEL, of=box)  # a box with one button has either
        wait_until(lambda: self.neighbour.find(DIALOG_CLASS, box.title) is None, "the end of the box", 30)

    def file(self):
        """The words of the settings file, but for what the dialog notes about itself."""
        return self.desktop.ini_path.read_text(encoding="utf-8").split("[dialog]")[0].split()

    # The icons.

    def at_once(self, edit, save):
        """The images that the icons have got when a page's "Guardar" has become enabled by an edit."""
        start = self.shell.mark()
        edit()
        self.wait_for(save, enabled=True)
        return self.last_images(start)

    def after(self, edit):
        """The images of all icons after an edit."""
        start = self.shell.mark()
        edit()
        return self.images_since(start)

    def images_since(self, start):
        self.shell.wait_for(lambda call: call.message == NIM_MODIFY and call.id == 4, start)
        return self.last_images(start)

    def last_images(self, start):
        return {call.id: call for call in self.shell.since(start) if call.message == NIM_MODIFY}

    # The samples.

    def sample(self, *ids):
        """The pixels of samples."""
        picture = Picture(self.desktop)
        return [picture.part(self.control(id).rect) for id in ids]

