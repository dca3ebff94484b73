"""A network of the test's own: loopback and nothing else, with its own names and its own trusted authority.

    import private_network

    private_network.enter("kestrane.example", "stats.kestrane.example")

`enter` starts the script again in new network and mount namespaces, in which the names lead to loopback and no other
name leads anywhere. Files of the machine are only covered by mounts, which end with the script: nothing of the machine
is changed and nothing outside is reached. Without the right to do so the script fails; it never goes on without.
"""

import contextlib
import ctypes
import os
import pathlib
import shutil
import socket
import subprocess
import sys
import tempfile
import threading

# Where the script comes from, told to the one inside.
OUTSIDE = "KESTRANE_OUTSIDE"

HOSTS = pathlib.Path("/etc/hosts")

# Inside, an empty disk in memory that ends with the script.
SCRATCH = pathlib.Path("/mnt")

# Where Wine, OpenSSL and GnuTLS look for trusted certificates.
TRUSTED = pathlib.Path("/etc/ssl/certs")
TRUSTED_FILE = "ca-certificates.crt"

# Other files that could lead outside: services of the machine answer on sockets in the file system, which no network
# namespace closes off. Without nsswitch's other sources only /etc/hosts and the name server below are asked.
COVERED = {
    "/etc/resolv.conf": "nameserver 127.0.0.1\noptions timeout:1 attempts:1\n",
    "/etc/nsswitch.conf": "passwd: files\ngroup: files\nhosts: files dns\n",
}
COVERED_FOLDERS = ("/run/nscd", "/var/run/nscd")

# Of a screen outside only this is seen here, not its socket in the machine's network: a screen of a test would take the
# same number, and its end would take the file away.
SCREENS = pathlib.Path("/tmp/.X11-unix")

# What Wine and others take as the user's proxy.
PROXIES = ("http_proxy", "https_proxy", "ftp_proxy", "all_proxy", "no_proxy")

# Wine asks for printers at the start of many a program, on a socket of the machine or over loopback. Here is none.
PRINTERS = "CUPS_SERVER", "/run/no-printers"

# A prefix and a screen that are shared with programs outside. The prefix's server is out there and sees none of the
# files in here; or it is started in here, and theirs are not what they seem.
SHARED = ("WINEPREFIX", "DISPLAY")

CLONE_NEWNS = 0x20000

_names = None

names_asked = []
"""Names that were asked of the name server so far: those that /etc/hosts lacks. It knows none."""


def enter(*names):
    """Goes on in a network of its own, in which these names lead to 127.0.0.1. To be called before anything else; a
    second call, whose names must be among those of the first, does nothing."""
    global _names
    if _names is not None and set(names) <= set(_names):
        return
    here = str(os.stat("/proc/self/ns/net").st_ino)
    outside = os.environ.pop(OUTSIDE, None)
    if outside is None:
        os.environ[OUTSIDE] = here
        os.execvp("unshare", [*_unshare(), sys.executable, *sys.argv])
    if outside == here:
        sys.exit("FAILED: the script is not in a network of its own; it must not run in the machine's.")
    _names = names
    _close_off()
    _lead_names_to("127.0.0.1")
    _start_name_server()


def _unshare():
    """The command that starts a program in namespaces of its own: as root, or as a user who becomes root inside."""
    refusals = []
    for user in ((), ("--user", "--map-root-user")):
        command = ["unshare", *user, "--net", "--mount", "--propagation", "private"]
        mount = [*command, "mount", "-t", "tmpfs", "tmpfs", SCRATCH]
        tried = subprocess.run(mount, capture_output=True, text=True, check=False)
        if tried.returncode == 0:
            return command
        refusals.append(tried.stderr.strip())
    sys.exit(
        "FAILED: this machine refuses network and mount namespaces, so the program cannot be tested without asking the "
        "update host: "
        + "; ".join(refusals)
        + ". They need root with CAP_SYS_ADMIN, or user namespaces."
    )


def _close_off():
    subprocess.run(["ip", "link", "set", "lo", "up"], check=True)
    for name in [name for name in os.environ if name.lower() in PROXIES or name in SHARED]:
        del os.environ[name]
    os.environ.update([PRINTERS])
    _mount("-t", "tmpfs", "tmpfs", SCRATCH)
    for path, text in COVERED.items():
        _cover(path, text)
    for folder in filter(os.path.isdir, COVERED_FOLDERS):
        _mount("-t", "tmpfs", "tmpfs", folder)
    _mount("-t", "tmpfs", "tmpfs", TRUSTED)
    SCREENS.mkdir(mode=0o1777, exist_ok=True)
    _mount("-t", "tmpfs", "-o", "mode=1777", "tmpfs", SCREENS)


def _mount(*arguments):
    subprocess.run(["mount", *map(str, arguments)], check=True)


def _cover(path, text):
    with tempfile.NamedTemporaryFile("w", dir=SCRATCH, delete=False, encoding="ascii") as file:
        os.fchmod(file.fileno(), 0o644)
        file.write(text)
    _mount("--bind", file.name, path)


def _lead_names_to(address):
    machine = f"127.0.0.1 localhost {socket.gethostname()}\n"
    _cover(HOSTS, machine + "".join(f"{address} {name}\n" for name in _names))


def _start_name_server():
    listener = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    listener.bind(("127.0.0.1", 53))
    threading.Thread(target=_answer_that_names_are_unknown, args=(listener,), daemon=True).start()


def _answer_that_names_are_unknown(listener):
    while True:
        query, sender = listener.recvfrom(512)
        names_asked.append(_name_in(query))
        listener.sendto(query[:2] + b"\x81\x83" + query[4:6] + bytes(6) + query[12:], sender)


def _name_in(query):
    labels, place = [], 12
    while length := query[place]:
        labels.append(query[place + 1 : place + 1 + length].decode("ascii", "replace"))
        place += 1 + length
    return ".".join(labels)


def _require_inside():
    if _names is None:
        raise AssertionError("only in a network of its own: call private_network.enter first")


def trust(certificate):
    """From now on this authority, a file in PEM, is the only one that is trusted. Wine reads it at the first use of a
    prefix."""
    _require_inside()
    shutil.copyfile(certificate, TRUSTED / TRUSTED_FILE)


def lead_this_thread_to(address):
    """For programs that this thread starts from now on, the names lead to another address of loopback."""
    _require_inside()
    libc = ctypes.CDLL(None, use_errno=True)
    if libc.unshare(CLONE_NEWNS) != 0:
        raise OSError(ctypes.get_errno(), "no mount namespace for a thread")
    _lead_names_to(address)


@contextlib.contextmanager
def read_only(folder):
    """Nobody can write into this folder meanwhile."""
    _require_inside()
    _mount("--bind", folder, folder)
    try:
        _mount("-o", "remount,bind,ro", folder)
        yield
    finally:
        subprocess.run(["umount", "--lazy", str(folder)], check=True)


@contextlib.contextmanager
def small_disk(folder, size):
    """The folder is an empty disk of this many bytes meanwhile."""
    _require_inside()
    _mount("-t", "tmpfs", "-o", f"size={size}", "tmpfs", folder)
    try:
        yield
    finally:
        subprocess.run(["umount", "--lazy", str(folder)], check=True)


def packets_sent():
    """The number of packets that have left any program so far, over any interface."""
    rows = pathlib.Path("/proc/net/dev").read_text(encoding="ascii").splitlines()[2:]
    return sum(int(row.split(":")[1].split()[9]) for row in rows)
