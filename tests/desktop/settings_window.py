"""The settings dialog as a user opens it: by the menu of an icon."""

from harness import wait_until
from onscreen import DIALOG_CLASS, LEFT_BUTTON, MENU_CLASS, WM_CONTEXTMENU, Picture
from test_menu import Menu

WM_CLOSE, WM_COMMAND = 0x10, 0x111

# "Settings...", "About" and "Exit" end every menu.
SETTINGS_ENTRY = -3
FEWEST_ENTRIES = 4

# By page, in the order of their tabs.
TAB_BUTTONS = {"cpu": 1300, "disk": 1301, "memory": 1302, "network": 1303, "general": 1304}


def open_settings(desktop, shell, neighbour, x=600, y=500):
    """The dialog's window, once it is shown."""

    def painted():
        window = neighbour.find(MENU_CLASS)
        menu = window and Menu(Picture(desktop), window.rect)
        return menu if menu and len(menu.entries) >= FEWEST_ENTRIES else None

    shell.command(f"callback 1 {WM_CONTEXTMENU} {x} {y}")
    menu = wait_until(painted, "the menu")
    desktop.use_mouse("mousemove", "--", *menu.middle_of(SETTINGS_ENTRY), "click", LEFT_BUTTON)
    return wait_until(lambda: neighbour.find(DIALOG_CLASS), "the settings dialog")


def show_page(neighbour, dialog, page):
    """Shows a page of the dialog, painted."""
    if not neighbour.ask("send", dialog.handle, WM_COMMAND, TAB_BUTTONS[page], 0):
        raise AssertionError(f"the settings dialog does not show {page}")
    if not neighbour.ask("paint", dialog.handle, 1):
        raise AssertionError(f"the settings dialog does not paint {page}")


def close_settings(neighbour, dialog):
    if not neighbour.ask("send", dialog.handle, WM_CLOSE, 0, 0):
        raise AssertionError("the settings dialog does not close")
    wait_until(lambda: not neighbour.find(DIALOG_CLASS), "the end of the settings dialog")
