"""Edits in the settings dialog, with a real mouse and keyboard: each shows at once in the icons and graphs, nothing is
in the file before "Guardar", and closing puts back what was not saved."""

from harness import CPU_TIMER, NIM_ADD, NIM_DELETE, NIM_MODIFY, WM_TIMER, main, pixels, wait_until
from onscreen import DIALOG_CLASS, RIGHT_BUTTON, WS_EX_TOPMOST, Picture, middle_of, open_at
from settings_dialog import (
    BLUE,
    CANCEL,
    CPU_BACK,
    CPU_LINES,
    CPU_MARGIN,
    CPU_OPACITY,
    CPU_REFRESH,
    CPU_RESTORE,
    CPU_SAMPLE,
    CPU_SAVE,
    CPU_SHOW,
    CPU_TAB,
    CPU_TOPMOST,
    DISK_SHOW,
    DISK_TAB,
    GREEN,
    LEVEL_BAR,
    MEMORY_FONT,
    MEMORY_FONT_SIZE,
    MEMORY_SAVE,
    MEMORY_SHOW,
    MEMORY_TAB,
    NETWORK_SHOW,
    NETWORK_TAB,
    OK,
    RED,
    THRESHOLDS,
    SettingsDialogTest,
)
from settings_icons import CPU, DEFAULTS, MEMORY, pixel


class EditTest(SettingsDialogTest):
    def type_over(self, field, text, of=None):
        """Replaces the text of a field, which loses it key by key."""
        self.use(field, of=of)
        self.keys("End", "BackSpace", "BackSpace", "BackSpace")
        self.desktop.use_mouse("type", text)
        wait_until(lambda: self.control(field, of).text == text, f"{text} in field {field}", 30)

    def corner_of(self, calls, icon=CPU):
        """The background of an icon."""
        return pixels(calls[icon])[0][0]


class Colors(EditTest):
    def color_dialog(self):
        """The colour dialog on top of the settings, whose title is the system's."""
        others = [window for window in self.neighbour.windows(DIALOG_CLASS) if window.title != self.TITLE]
        return others[0] if others else None

    def choose_color(self, well, rgb, button):
        self.use(well)
        box = wait_until(self.color_dialog, "the colour dialog")
        for field, part in zip((RED, GREEN, BLUE), rgb):
            self.type_over(field, str(part), of=box)
        self.use(button, of=box)
        wait_until(lambda: not self.color_dialog(), "the end of the colour dialog")

    def test_a_colour_shows_at_once_and_goes_when_the_dialog_is_left(self):
        self.start()
        self.tick(CPU_TIMER)
        file = self.file()
        self.open_settings()
        default = pixel(DEFAULTS["cpu_bg"])
        chosen = self.at_once(lambda: self.choose_color(CPU_BACK, (18, 52, 86), OK), CPU_SAVE)
        self.assertEqual(self.corner_of(chosen), pixel(0x123456))
        self.assertEqual(Picture(self.desktop).at(*middle_of(self.control(CPU_BACK).rect)), 0x123456)

        start = self.shell.mark()
        self.choose_color(CPU_BACK, (200, 0, 0), CANCEL)
        transparent = self.after(lambda: self.use(CPU_BACK, RIGHT_BUTTON))
        self.assertEqual(self.corner_of(transparent), 0)
        changes = [call for call in self.shell.since(start) if call.id == CPU and call.message == NIM_MODIFY]
        self.assertEqual(len(changes), 1, "a cancelled choice changes nothing")
        self.assertEqual(self.corner_of(self.after(lambda: self.use(CPU_BACK, RIGHT_BUTTON))), default)
        self.wait_for(CPU_SAVE, enabled=False)

        self.assertEqual(self.corner_of(self.after(lambda: self.use(CPU_BACK, RIGHT_BUTTON))), 0)
        self.wait_for(CPU_SAVE, enabled=True)
        self.assertEqual(self.file(), file)
        self.assertEqual(self.corner_of(self.after(lambda: self.keys("Escape"))), default)
        self.wait_for_no_dialog()
        self.assertEqual(self.file(), file)

    def test_a_page_is_saved_without_the_others(self):
        self.start()
        self.open_settings()
        self.use(CPU_BACK, RIGHT_BUTTON)
        self.go_to(MEMORY_TAB)
        self.use(LEVEL_BAR)
        self.use(MEMORY_SAVE)
        self.wait_for_saved("memory", bar=0)
        self.wait_for(MEMORY_SAVE, enabled=False)
        self.assertNotIn("cpu_bg", self.saved("colors"))
        left = self.after(self.leave_settings)
        self.assertEqual(self.corner_of(left), pixel(DEFAULTS["cpu_bg"]))
        self.assert_memory_icon(left[MEMORY], DEFAULTS, bar=False)

        self.open_settings(CPU_TAB)
        self.use(CPU_BACK, RIGHT_BUTTON)
        self.use(CPU_SAVE)
        self.wait_for_saved("colors", cpu_bg="NONE")
        self.assertEqual(self.corner_of(self.after(self.leave_settings)), 0)
        self.desktop.end_kestrane()
        start = self.shell.mark()
        self.start()
        self.assertEqual(self.corner_of(self.images_since(start)), 0)

        self.open_settings()
        self.assertEqual(self.corner_of(self.after(lambda: self.use(CPU_RESTORE))), pixel(DEFAULTS["cpu_bg"]))
        self.assertEqual(self.saved("colors")["cpu_bg"], "NONE")

    def test_a_sample_follows_its_settings(self):
        self.start()
        self.open_settings()
        back = DEFAULTS["cpu_bg"].to_bytes(3, "big") * 2
        shown = lambda: self.sample(CPU_SAMPLE)[0]
        wait_until(lambda: back in shown(), "the painted sample", 30)
        self.use(CPU_BACK, RIGHT_BUTTON)
        wait_until(lambda: back not in shown(), "the taskbar through the sample", 30)


class Memory(EditTest):
    def setUp(self):
        super().setUp()
        self.start()
        self.open_settings(MEMORY_TAB)

    def test_level_bar_and_thresholds(self):
        without = self.at_once(lambda: self.use(LEVEL_BAR), MEMORY_SAVE)
        self.assert_memory_icon(without[MEMORY], DEFAULTS, bar=False)
        self.assert_memory_icon(self.after(lambda: self.use(LEVEL_BAR))[MEMORY], DEFAULTS)
        # The last digit makes them valid together, whatever they were on the way.
        start = self.shell.mark()
        for field, text in zip(THRESHOLDS, "123"):
            self.type_over(field, text)
        # The field may tell its text while its edit is still on the way to the icons.
        wait_until(lambda: self.is_memory_icon(start, thresholds=(1, 2, 3)), "the icon of the third threshold", 30)
        self.use(MEMORY_SAVE)
        self.wait_for_saved("memory", threshold1=1, threshold2=2, threshold3=3)

    def is_memory_icon(self, start, thresholds):
        try:
            self.assert_memory_icon(self.images_since(start)[MEMORY], DEFAULTS, thresholds)
        except AssertionError:
            return False
        return True

    def test_thresholds_out_of_order_are_not_saved(self):
        file = self.file()
        self.type_over(THRESHOLDS[0], "99")
        self.use(LEVEL_BAR)
        self.wait_for(MEMORY_SAVE, enabled=True)
        self.use(MEMORY_SAVE)
        box = self.wait_for_box()
        message = "Los umbrales de memoria deben ser números entre 1 y 100, de menor a mayor."
        self.assertIn(message, self.texts_of(box))
        self.answer(box)
        wait_until(lambda: self.focus() == THRESHOLDS[0], "the keyboard in the first field", 30)
        self.assertEqual(self.file(), file)

    def test_font_size(self):
        def digits(calls):
            rows = pixels(calls[MEMORY])
            return [y for y in range(4, 16) if any(rows[y])]

        tall = digits(self.after(lambda: self.choose_from(MEMORY_FONT_SIZE, "Home", "Down", "Down", "Down", "Down")))
        low = digits(self.after(lambda: self.choose_from(MEMORY_FONT_SIZE, "Home")))
        self.assertLess(len(low), len(tall))
        self.assertEqual(self.control(MEMORY_FONT_SIZE).text, "6")
        self.use(MEMORY_SAVE)
        self.wait_for_saved("memory", font_size=6)

    def test_the_list_of_fonts_is_filled_when_it_drops_down(self):
        combo = self.control(MEMORY_FONT)
        self.assertEqual((combo.count, combo.text), (1, "Segoe UI"))
        self.choose_from(MEMORY_FONT, "Home", "Down", "Down")
        combo = self.control(MEMORY_FONT)
        self.assertGreater(combo.count, 3)
        self.assertNotEqual(combo.text, "Segoe UI")
        self.use(MEMORY_SAVE)
        self.wait_for_saved("memory", font_name=combo.text)


class Period(EditTest):
    def test_a_period_counts_from_now_on(self):
        self.start()
        self.open_settings()
        self.choose_from(CPU_REFRESH, "Home")
        self.assertEqual(self.control(CPU_REFRESH).text, "Ultra rápido - 0,5 s")
        start = self.shell.mark()
        self.shell.wait_for_ticks(6, icon=CPU, start=start)
        ticks = [call.id for call in self.shell.since(start) if call.message == NIM_MODIFY]
        self.assertLessEqual(ticks.count(MEMORY), 2, "the others still tick every ten seconds")


class Icons(EditTest):
    def test_the_switch_hides_an_icon_but_not_the_last_one(self):
        self.start()
        self.open_settings()
        for page, switch, icon in ((CPU_TAB, CPU_SHOW, 1), (DISK_TAB, DISK_SHOW, 2), (NETWORK_TAB, NETWORK_SHOW, 4)):
            self.go_to(page)
            start = self.shell.mark()
            self.use(switch)
            self.shell.wait_for(lambda call: call.message == NIM_DELETE and call.id == icon and call.answer, start)
        self.wait_for(NETWORK_SHOW, enabled=True)
        self.go_to(MEMORY_TAB)
        start = self.shell.mark()
        self.use(MEMORY_SHOW)
        box = self.wait_for_box()
        self.assertIn("Al menos un icono debe quedar visible.", self.texts_of(box))
        self.answer(box)
        self.assertNotIn(NIM_DELETE, [call.message for call in self.shell.since(start)])

        self.go_to(CPU_TAB)
        self.wait_for(CPU_BACK, enabled=False)
        self.use(CPU_SHOW)
        self.shell.wait_for(lambda call: call.message == NIM_ADD and call.id == 1, start)
        self.wait_for(CPU_BACK, enabled=True)
        self.leave_settings()
        for icon in (2, 4):
            self.shell.wait_for(lambda call, icon=icon: call.message == NIM_ADD and call.id == icon, start)


class Graph(EditTest):
    PLACE = (20, 100, 320, 300)
    MORE_TICKS_THAN_FIT = 400
    settings = open_at("cpu", PLACE)

    def setUp(self):
        super().setUp()
        self.start_with("cpu")
        self.open_settings(x=1200, y=790)

    def test_opacity_and_staying_on_top_show_at_once(self):
        self.assertEqual(self.graph("cpu").alpha, 229)
        self.choose_from(CPU_OPACITY, "End")
        wait_until(lambda: self.graph("cpu").alpha == 76, "a graph that is hardly visible", 30)
        self.assertTrue(self.graph("cpu").extended & WS_EX_TOPMOST)
        self.use(CPU_TOPMOST)
        wait_until(lambda: not self.graph("cpu").extended & WS_EX_TOPMOST, "a graph that can be covered", 30)
        self.use(CPU_SAVE)
        self.wait_for_saved("cpu", opacity=30, topmost=0)

    def test_style_and_margin_show_at_once(self):
        look = lambda: Picture(self.desktop).part(self.PLACE)
        # A tick that comes by itself changes nothing in a graph that is full of one value.
        self.assertTrue(self.desktop.send_messages(self.MORE_TICKS_THAN_FIT, WM_TIMER, CPU_TIMER))
        self.assertTrue(self.neighbour.ask("paint", self.graph("cpu").handle, 1))
        first = look()
        for change in (lambda: self.choose_from(CPU_MARGIN, "End"), lambda: self.use(CPU_LINES)):
            before = look()
            change()
            wait_until(lambda: look() != before, "a new look of the graph", 30)
        self.leave_settings()
        wait_until(lambda: look() == first, "the old look of the graph", 30)


if __name__ == "__main__":
    main()
