"""A private screen, Wine prefix and shell for each test, to observe the real kestrane.exe from outside.

    with Desktop(language="es_ES") as desktop:
        shell = desktop.start_recorder()
        program = desktop.start_kestrane()
        call = shell.wait_for(lambda call: call.id == 4 and call.message == NIM_MODIFY)

Nothing here takes a fixed sleep as proof: every wait is for a condition, and one that never comes true fails the test
and reports what was seen instead.
"""

import json
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import threading
import time
import types
import unittest

import private_network

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ.get("KESTRANE_BUILD", ROOT / "build" / "windows"))
WINE = ROOT / "scripts" / "start-wine.sh"
WINE_FOLDER = ROOT / "build" / "wine"
VERSION = re.search(r"project\(kestrane VERSION (\d+\.\d+\.\d+) ", (ROOT / "CMakeLists.txt").read_text()).group(1)

# Generous, because the machine may be busy with other tests: a wait ends as soon as its condition holds.
TIMEOUT = 120

# Seconds for a program that was told to exit to do so and leave its exit code.
PATIENCE_AT_THE_END = 5

NIM_ADD, NIM_MODIFY, NIM_DELETE, NIM_SETFOCUS, NIM_SETVERSION = 0, 1, 2, 3, 4
NIF_MESSAGE, NIF_ICON, NIF_TIP, NIF_GUID, NIF_SHOWTIP = 0x01, 0x02, 0x04, 0x20, 0x80

WM_TIMER = 0x113
CPU_TIMER, MEMORY_TIMER, NETWORK_TIMER, DISK_TIMER = 1, 3, 4, 5
HIDDEN_WINDOW = "kestrane.hidden"

# The counters that the program queries; DISK stands before their names.
TOTAL = r"\Processor Information(_Total)\% Processor Utility"
CORES = r"\Processor Information(*)\% Processor Utility"
DISK = r"\PhysicalDisk(*)"

# Wine swallows a crash inside a window callback: the program goes on and exits with 0, and only this line reveals it.
# Any other crash prints such a line too and ends the program; an unhandled exception becomes its exit code.
CRASH = re.compile(r".*(?:ignoring exception|Unhandled).*")
SANE_EXIT_CODES = (0, 1)

# Crashes, and why a program ended before its first instruction or got no window.
WINE_MESSAGES = "-all,err+seh,err+virtual,err+winediag"

# Wine shows a taskbar only in the desktop of this name.
TASKBAR_DESKTOP = "shell"

# Wine's taskbar and menus are white; those of Windows, for which the icons' colours are designed, are dark.
COLORS = "Control Panel\\\\Colors"
DARK_TASKBAR = [(COLORS, '"Menu"="32 32 32"'), (COLORS, '"MenuText"="255 255 255"')]


def wait_until(condition, what, timeout=TIMEOUT):
    """The first true value of `condition()`; on timeout an AssertionError that names `what` was missing."""
    deadline = time.monotonic() + timeout
    while not (value := condition()):
        if time.monotonic() > deadline:
            raise AssertionError(f"waited {timeout} s in vain: {what}")
        time.sleep(0.02)
    return value


def last_words(errors):
    """The end of an error output, for the message of a failure."""
    return f"it said {errors.read_text(encoding='utf-8', errors='replace')[-500:]!r}"


def windows_path(path):
    """A path of this machine as a Windows program sees it."""
    return "Z:" + str(path).replace("/", "\\")


class Recorder:
    """The recording shell: all calls so far are in `calls`, and commands make it misbehave."""

    def __init__(self, process):
        self.calls = []
        self._process = process
        self._arrived = threading.Condition()
        self._confirmed = 0
        self._ready = False
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        self._wait(lambda: self._ready, "the recorder's first line")

    def _read(self):
        for line in self._process.stdout:
            record = json.loads(line)
            if "unknown" in record:
                raise ValueError(f"the shell got a record of {record['unknown']} bytes, in a layout unknown to recorder.exe")
            with self._arrived:
                if "ready" in record:
                    self._ready = True
                elif "done" in record:
                    self._confirmed += 1
                    self._calls_at_confirmation = len(self.calls)
                else:
                    self.calls.append(types.SimpleNamespace(**record))
                self._arrived.notify_all()

    def _wait(self, condition, what, timeout=TIMEOUT):
        with self._arrived:
            if not self._arrived.wait_for(condition, timeout):
                last = [f"{call.message}:{call.id}:{call.answer}:{call.tip!r}" for call in self.calls[-8:]]
                raise AssertionError(f"waited {timeout} s in vain: {what}; the last calls were {last}")

    def command(self, text):
        """Sends a command and waits until the recorder has executed it; returns the number of calls before that."""
        wanted = self._confirmed + 1
        self._process.stdin.write(text + "\n")
        self._process.stdin.flush()
        self._wait(lambda: self._confirmed >= wanted, f"confirmation of {text!r}")
        return self._calls_at_confirmation

    def reset(self):
        """Resets to a shell that refuses nothing and has no icons."""
        for refusal in ("guid off", "all off", "add 0", "modify 0"):
            self.command(f"refuse {refusal}")
        for command in ("hold delete off", "forward off", "forget"):
            self.command(command)

    def kill(self):
        """Ends it as a crash would: nothing is told to the programs that have icons in it."""
        self._process.kill()
        self._process.wait()

    def mark(self):
        """The number of calls so far, as a starting point for the next wait."""
        with self._arrived:
            return len(self.calls)

    def drop(self):
        """Forgets all calls so far. Earlier marks become invalid."""
        with self._arrived:
            self.calls.clear()

    def since(self, start):
        """All calls from number `start` to now."""
        self.command("report")
        with self._arrived:
            return self.calls[start:]

    def wait_for(self, matches, start=0, what="a call that matches", timeout=TIMEOUT):
        """The first call from number `start` on for which `matches(call)` holds."""
        found = []

        def search():
            found.extend(call for call in self.calls[start:] if matches(call))
            return found

        self._wait(search, what, timeout)
        return found[0]

    def wait_for_count(self, count, matches=lambda call: True, start=0, timeout=TIMEOUT):
        """The first `count` calls from number `start` on for which `matches(call)` holds."""
        self._wait(lambda: sum(map(matches, self.calls[start:])) >= count, f"{count} calls", timeout)
        return [call for call in self.since(start) if matches(call)][:count]

    def wait_for_ticks(self, count, icon, start=None):
        """The next `count` changes of one icon: one per tick of its timer."""
        start = self.mark() if start is None else start
        return self.wait_for_count(count, lambda call: call.message == NIM_MODIFY and call.id == icon, start)


def pixels(call):
    """A call's icon as rows of 0xAARRGGBB."""
    return [[int(pixel, 16) for pixel in row.split()] for row in call.pixels]


def column_heights(call, color):
    """The number of pixels of this colour in each column of the icon."""
    rows = pixels(call)
    return [sum(row[x] == color for row in rows) for x in range(call.width)]


NO_CHECK = "[general]\ncheck_updates=0\n"
"""Settings without the check for updates, which makes an identity at the first start, and some seconds later a thread and
the memory of HTTPS."""


def every(milliseconds, **more):
    """Settings that refresh all four icons at this period, with more lines for the named sections."""
    sections = ("cpu", "disk", "memory", "network")
    return "".join(f"[{name}]\nrefresh_ms={milliseconds}\n{more.get(name, '')}\n" for name in sections)


def column_height(percent):
    """The height of a percentage column on a 16-pixel icon: at least one pixel above 0, all for 100."""
    return (15 * percent + 50) // 100 + 1 if percent > 0 else 0


class CrashWatch:
    """Checks the error output and exit code of one program for crashes since the last check."""

    def __init__(self, process, errors):
        self.process = process
        self.errors = errors
        self._position = 0
        self._over = False

    def look(self):
        with open(self.errors, encoding="utf-8", errors="replace") as file:
            file.seek(self._position)
            found = CRASH.findall(file.read())
            self._position = file.tell()
        code = self.process.poll()
        # A negative code is the signal by which it was killed from outside.
        if not self._over and code is not None and code >= 0 and code not in SANE_EXIT_CODES:
            found.append(f"exit code {code}")
        self._over = code is not None
        return [f"{self.errors.stem}: {sign}" for sign in found]


class Desktop:
    """An Xvfb and a Wine prefix for one test, removed without a trace on close."""

    def __init__(self, language="en_US", dpi=96, counters=None, network=None, more_disks=0, registry=(), screen="1280x800"):
        """`registry` is a list of what set_registry takes."""
        WINE_FOLDER.mkdir(parents=True, exist_ok=True)
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix=f"desktop-{os.getpid()}-", dir=WINE_FOLDER))
        self.prefix = self.folder / "prefix"
        self._processes = []
        self._crash_watches = []  # one for each of the processes
        self._display = None
        self._screen = screen
        self._kestrane = BUILD / "kestrane.exe"
        self._kestrane_environment = {}
        try:
            self._copy_prefix(dpi)
            for key, line in registry:
                self.set_registry(key, line)
            self._add_disks("defgh"[:more_disks])
            self._start_display(screen)
        except BaseException:
            self.close()
            raise
        self.environment = {
            **os.environ,
            "DISPLAY": self.display,
            "WINEPREFIX": str(self.prefix),
            "WINEDEBUG": WINE_MESSAGES,
            "WINEDLLOVERRIDES": "mscoree,mshtml,winedbg.exe=",
            # Wine takes the locale from this variable even if the C library does not have it.
            "LC_ALL": language + ".UTF-8",
        }
        if counters is not None:
            self._install_scripted_pdh()
            self.write_counters(counters)
        if network is not None:
            self._install_scripted_network()
            self.write_network(network)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def _copy_prefix(self, dpi):
        script = 'source "$0"/scripts/wine-env.sh && copy_prefix "$1"'
        subprocess.run(["bash", "-c", script, ROOT, self.prefix], check=True)
        if dpi != 96:
            self.set_registry("Control Panel\\\\Desktop", f'"LogPixels"=dword:{dpi:08x}')

    def set_registry(self, key, line):
        """Writes a value under HKEY_CURRENT_USER, in the syntax of Wine's registry file, before anything runs."""
        with open(self.prefix / "user.reg", "a", encoding="utf-8") as file:
            file.write(f"\n[{key}]\n{line}\n")

    def _add_disks(self, letters):
        """Wine has one fixed disk, number 0, whatever the drives; but it counts each network drive as another disk."""
        for letter in letters:
            target = self.folder / f"drive_{letter}"
            target.mkdir()
            (self.prefix / "dosdevices" / f"{letter}:").symlink_to(target)
        with open(self.prefix / "system.reg", "a", encoding="utf-8") as file:
            file.write("\n[Software\\\\Wine\\\\Drives]\n" + "".join(f'"{letter}:"="network"\n' for letter in letters))

    def _start_display(self, size):
        # The screen ends with this test, even if the test is killed.
        self._display = subprocess.Popen(
            ["setpriv", "--pdeathsig", "TERM", "Xvfb", "-displayfd", "1", "-screen", "0", f"{size}x24", "-nolisten", "tcp"],
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            text=True,
        )
        number = self._display.stdout.readline().strip()
        if not number:
            raise AssertionError("Xvfb does not start")
        self.display = ":" + number

    def close(self):
        """Ends everything that was started, in any state. Fails if there was a crash that no test has checked for."""
        try:
            self._end_everything()
            self.check_for_crashes()
        finally:
            shutil.rmtree(self.folder)

    def _end_everything(self):
        if hasattr(self, "environment"):
            subprocess.run(["wineserver", "-k"], env=self.environment, check=False)
            subprocess.run(["wineserver", "--wait"], env=self.environment, check=False, timeout=TIMEOUT)
        for process in self._processes:
            if process.poll() is None:
                process.kill()
            process.wait()
            for stream in (process.stdin, process.stdout):
                if stream is not None:
                    stream.close()
        if self._display is not None:
            self._display.terminate()
            self._display.wait()
            self._display.stdout.close()

    def check_for_crashes(self):
        """Fails if a program started here has crashed since the last check, even if it is still running."""
        found = [sign for watch in self._crash_watches for sign in watch.look()]
        if found:
            raise AssertionError(f"{len(found)} signs of a crash: " + "; ".join(found[:3]))

    def take_last_watch(self):
        """The CrashWatch of the last program that was started, which is from now on the caller's business."""
        return self._crash_watches.pop()

    # Counters played by a script, in the syntax of scripted_pdh.cpp.

    def _install_in_system32(self, dll):
        target = self.prefix / "drive_c" / "windows" / "system32" / dll
        target.unlink()  # it is a hard link into the pristine prefix
        shutil.copy(BUILD / "scripted" / dll, target)

    def _install_scripted_pdh(self):
        self._install_in_system32("pdh.dll")
        self.environment["WINEDLLOVERRIDES"] += ";pdh=n,b"
        self.environment["KESTRANE_PDH_SCRIPT"] = windows_path(self.folder / "counters.txt")

    def write_counters(self, lines):
        """Takes effect as a whole at the program's next collection."""
        new = self.folder / "counters.new"
        new.write_text("".join(line + "\n" for line in lines), encoding="utf-8")
        new.replace(self.folder / "counters.txt")

    # Interfaces played by a script, in the syntax of scripted_iphlpapi.cpp.

    def _install_scripted_network(self):
        """Only for the program: others need the system's DLL."""
        self._install_in_system32("iphlpapi.dll")
        overrides = self.environment["WINEDLLOVERRIDES"]
        self.environment["WINEDLLOVERRIDES"] = overrides + ";iphlpapi=b"
        self._kestrane_environment = {
            "WINEDLLOVERRIDES": overrides + ";iphlpapi=n",
            "KESTRANE_NETWORK_SCRIPT": windows_path(self.folder / "network.txt"),
        }

    def write_network(self, lines):
        """Takes effect as a whole at the program's next tick."""
        new = self.folder / "network.new"
        new.write_text("".join(line + "\n" for line in lines), encoding="utf-8")
        new.replace(self.folder / "network.txt")

    # Programs.

    def _start_wine(self):
        """Wine's own processes start with the first program in a prefix and keep its error output. A crash of theirs,
        which happens now and then, is no business of the tests. They outlive that program for a moment, in which the
        next one follows."""
        errors = self.folder / "wine.stderr"
        with open(errors, "wb") as file:
            options = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, "stderr": file}
            command = [WINE, "cmd", "/c", "exit"]
            code = subprocess.run(command, env=self.environment, timeout=TIMEOUT, **options).returncode
        if code != 0:
            raise AssertionError(f"Wine does not start, but ends with {code}; {last_words(errors)}")

    def start(self, program, *arguments, **options):
        """Starts a Windows program: a name in the build folder, or a name that Wine knows."""
        if not self._processes:
            self._start_wine()
        path = BUILD / program
        command = [WINE, str(path) if path.exists() else program, *arguments]
        environment = {**self.environment, **options.pop("environment", {})}
        options = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, **options}
        errors = self.folder / f"{path.stem}-{len(self._processes)}.stderr"
        with open(errors, "wb") as file:
            process = subprocess.Popen(command, env=environment, text=True, encoding="utf-8", stderr=file, **options)
        self._processes.append(process)
        self._crash_watches.append(CrashWatch(process, errors))
        return process

    def run(self, program, *arguments, timeout=TIMEOUT, **options):
        """Runs a program to its end; its exit code and its output."""
        process = self.start(program, *arguments, stdout=subprocess.PIPE, **options)
        output, _ = process.communicate(timeout=timeout)
        return types.SimpleNamespace(code=process.returncode, output=output)

    def start_recorder(self, *desktop):
        """The recording shell, in the default desktop or the one with this name."""
        return Recorder(self.start("recorder.exe", *desktop, stdin=subprocess.PIPE, stdout=subprocess.PIPE))

    def start_taskbar(self):
        """A desktop with a real taskbar that fills the screen, and a recorder in front of it that forwards all
        calls."""
        self.start("explorer", f"/desktop={TASKBAR_DESKTOP},{self._screen}")
        shell = self.start_recorder(TASKBAR_DESKTOP)
        shell.command("forward on")
        return shell

    def start_kestrane_at_taskbar(self, *arguments):
        """Starts the program in the desktop with the taskbar."""
        command = (f"/desktop={TASKBAR_DESKTOP}", windows_path(self._kestrane), *arguments)
        return self.start("explorer", *command, environment=self._kestrane_environment)

    def run_kestrane_from(self, folder, build="kestrane.exe"):
        """From now on a copy in this folder is started, of the program or of a variant of it."""
        folder.mkdir(parents=True, exist_ok=True)
        self._kestrane = shutil.copy(BUILD / build, folder / "kestrane.exe")

    def start_kestrane(self, *arguments, **options):
        environment = {**self._kestrane_environment, **options.pop("environment", {})}
        return self.start(self._kestrane, *arguments, environment=environment, **options)

    def state_of_last(self):
        """What has become of the program that was started last, for the message of a failure."""
        process, errors = self._processes[-1], self._crash_watches[-1].errors
        code = process.poll()
        if code is None:
            threads = pathlib.Path(f"/proc/{process.pid}/task").glob("*")
            state = "runs with its threads in " + ", ".join((thread / "wchan").read_text() for thread in threads)
        else:
            state = f"has ended with {code}"
        return f"{process.args[1:]} {state}; {last_words(errors)}"

    def start_kestrane_logged(self, *arguments):
        """Also records the program's debug output: see debug_lines."""
        process = self.start_kestrane(*arguments, environment={"WINEDEBUG": WINE_MESSAGES + ",warn+seh"})
        self._log = self._crash_watches[-1].errors
        return process

    def debug_lines(self):
        """The lines of OutputDebugStringW so far, without their line feeds."""
        text = self._log.read_text(encoding="utf-8", errors="replace")
        return re.findall(r'OutputDebugStringA "(.*?)\\n"', text)

    def end_kestrane(self):
        """Ends every instance, by force if necessary."""
        self.run("kestrane.exe", "--exit")
        for process in self._processes:
            if pathlib.Path(process.args[1]).name == "kestrane.exe" and process.poll() is None:
                try:
                    process.wait(PATIENCE_AT_THE_END)
                except subprocess.TimeoutExpired:
                    process.kill()
                    process.wait()

    def run_kestrane(self, *arguments, **options):
        return self.run("kestrane.exe", *arguments, **options)

    @staticmethod
    def _launched(command_line):
        return {"LAUNCH_PROGRAM": windows_path(BUILD / "kestrane.exe"), "LAUNCH_ARGUMENTS": command_line}

    def start_launched(self, command_line):
        """Starts it with exactly this text as command line, including quotes and spaces."""
        return self.start("launch.exe", environment=self._launched(command_line))

    def launch_kestrane(self, command_line):
        """The same, and waits for its end."""
        return self.run("launch.exe", environment=self._launched(command_line))

    @staticmethod
    def has_mapped(process, file_name):
        """Whether a program has mapped this file yet."""
        return file_name in pathlib.Path(f"/proc/{process.pid}/maps").read_text(encoding="utf-8", errors="replace")

    def count_windows(self, class_name=HIDDEN_WINDOW):
        return int(self.run("poster.exe", class_name).output)

    def send_messages(self, count, message, *w_params, class_name=HIDDEN_WINDOW):
        """Sends a message `count` times, cycling through the given wParams, as fast as it is processed."""
        numbers = [str(number) for number in (count, message, 0, *w_params)]
        return self.run("poster.exe", class_name, *numbers, timeout=600).code == 0

    # The user's input and files.

    @property
    def ini_path(self):
        users = self.prefix / "drive_c" / "users"
        profile = next(folder for folder in users.iterdir() if folder.name != "Public")
        return profile / "AppData" / "Roaming" / "kestrane" / "kestrane.ini"

    def write_ini(self, text):
        self.write_ini_bytes(text.encode())

    def write_ini_bytes(self, content):
        self.ini_path.parent.mkdir(parents=True, exist_ok=True)
        self.ini_path.write_bytes(content)

    def take_screenshot(self, path):
        subprocess.run(["import", "-display", self.display, "-window", "root", str(path)], check=True)

    def use_mouse(self, *arguments):
        """Passes arguments on to xdotool: "mousemove", 10, 20, "click", 1."""
        subprocess.run(["xdotool", *map(str, arguments)], env=self.environment, check=True)


class DesktopTest(unittest.TestCase):
    """Tests that share one screen, one prefix and one recorder; each starts its own kestrane.exe."""

    options = {}
    """Options of the Desktop."""

    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop(**cls.options)
        cls.addClassCleanup(cls.desktop.close)
        cls.shell = cls.desktop.start_recorder()
        cls.desktop.write_ini("")

    def setUp(self):
        self.shell.reset()
        self.first = self.shell.mark()
        self.desktop.write_ini(self.settings)
        self.addCleanup(self.desktop.check_for_crashes)
        self.addCleanup(self.desktop.end_kestrane)

    settings = ""
    """The INI file that each test starts with."""

    def start(self, *arguments, **options):
        """Starts the program and waits until all four icons have their images.

        The network's is set twice: at its first reading, and then in turn with the others.
        """
        start = self.shell.mark()
        process = self.desktop.start_kestrane(*arguments, **options)
        try:
            self.shell.wait_for_ticks(2, icon=4, start=start)
        except AssertionError as error:
            raise AssertionError(f"{self.desktop.state_of_last()}; {error}") from error
        return process

    def tick(self, timer):
        """Runs one tick of a timer, from its message to its last call, and returns the calls made meanwhile."""
        start = self.shell.mark()
        return self.shell.calls[start : self.shell.command(f"tick {timer}")]


def private_kilobytes(pid):
    """The memory that a running program has written and shares with no other. The pages of a DLL become private too when
    the last other program that uses it ends, but they are clean."""
    lines = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text(encoding="ascii").splitlines()
    return next(int(line.split()[1]) for line in lines if line.startswith("Private_Dirty:"))


def thread_count(pid):
    return len(os.listdir(f"/proc/{pid}/task"))


def wineserver(prefix):
    """The process id of the server of a prefix; its working folder is named after the prefix's inode."""
    status = os.stat(prefix)
    name = f"server-{status.st_dev:x}-{status.st_ino:x}"
    for process in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            if os.readlink(process / "cwd").endswith(name) and "wineserver" in (process / "comm").read_text():
                return int(process.name)
        except OSError:
            continue  # it has ended meanwhile, or belongs to another user
    raise RuntimeError(f"no Wine server in {name}")


def main():
    """Runs the tests of a script in a network of its own, so that the program, which looks for updates some seconds after
    its start, asks nobody."""
    private_network.enter()
    unittest.main(verbosity=2)
