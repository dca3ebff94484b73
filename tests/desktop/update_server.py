"""An HTTPS server of the test's own, and the certificates that it shows. It can lie at every level: in the handshake, in
the headers, in the body, and by its silence.

    authority = Authority(folder)
    with UpdateServer("127.0.0.1", authority.good) as server:
        server.answers["/latest.json"] = reply(manifest)
        ...
        assert server.requests[0].headers["user-agent"] == "kestrane/0.1.0"

A port below 1024 on an address of loopback is at hand in the network of private_network.py.
"""

import contextlib
import dataclasses
import pathlib
import socket
import ssl
import struct
import subprocess
import threading
import time

HOST = "kestrane.example"
STATS_HOST = "stats.kestrane.example"
OTHER_HOST = "elsewhere.example"

PORT = 443
END_OF_HEADERS = b"\r\n\r\n"
LARGEST_REQUEST = 1 << 20

AUTHORITY_SETTINGS = """
[ca]
default_ca = own
[own]
database = {folder}/issued
new_certs_dir = {folder}
rand_serial = yes
default_md = sha256
policy = any
unique_subject = no
copy_extensions = copy
[any]
commonName = supplied
[req]
distinguished_name = name
[name]
"""


@dataclasses.dataclass(frozen=True)
class Certificate:
    chain: pathlib.Path
    key: pathlib.Path


class Authority:
    """Certificates of a test authority, whose own is `root`: `good` for the hosts of the program, `elsewhere` for
    OTHER_HOST, and one for each reason not to trust it."""

    def __init__(self, folder):
        self._folder = pathlib.Path(folder)
        self._folder.mkdir(parents=True, exist_ok=True)
        self._settings = self._folder / "settings"
        self._settings.write_text(AUTHORITY_SETTINGS.format(folder=self._folder), encoding="ascii")
        (self._folder / "issued").touch()

        trusted = self._make_authority("root", "Test authority")
        stranger = self._make_authority("stranger", "Stranger")
        self.root = trusted.chain
        self.good = self._issue("good", trusted, HOST, STATS_HOST)
        self.elsewhere = self._issue("elsewhere", trusted, OTHER_HOST)
        self.unknown_authority = self._issue("unknown_authority", stranger, HOST)
        self.self_signed = self._issue("self_signed", None, HOST)
        self.expired = self._issue_expired("expired", trusted, HOST)

    def _openssl(self, *arguments):
        command = ["openssl", arguments[0], "-config", self._settings, *arguments[1:]]
        done = subprocess.run(list(map(str, command)), capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise AssertionError(f"openssl {arguments[0]} fails: {done.stderr}")

    def _request(self, name, common_name, *more):
        """Makes a key and, with it, a certificate or a request for one.

        The keys are of RSA: of an elliptic curve's signature Wine refuses one in 128, if one of the two numbers happens
        to begin with a zero byte.
        """
        made = Certificate(self._folder / f"{name}.pem", self._folder / f"{name}.key")
        self._openssl(
            *("req", "-newkey", "rsa:2048", "-nodes", "-sha256"),
            *("-keyout", made.key, "-out", made.chain, "-subj", f"/CN={common_name}", *more),
        )
        return made

    def _make_authority(self, name, common_name):
        extensions = ("-addext", "basicConstraints=critical,CA:TRUE", "-addext", "keyUsage=critical,keyCertSign")
        return self._request(name, common_name, "-x509", "-days", 30, *extensions)

    def _issue(self, name, issuer, *hosts):
        """By this authority, or by itself."""
        signer = ("-CA", issuer.chain, "-CAkey", issuer.key) if issuer else ()
        return self._request(name, hosts[0], "-x509", "-days", 30, *signer, *self._for_hosts(hosts))

    def _issue_expired(self, name, issuer, *hosts):
        wish = self._request(name, hosts[0], *self._for_hosts(hosts))
        self._openssl(
            *("ca", "-batch", "-notext", "-in", wish.chain, "-out", wish.chain, "-cert", issuer.chain),
            *("-keyfile", issuer.key, "-startdate", "20200101000000Z", "-enddate", "20210101000000Z"),
        )
        return wish

    @staticmethod
    def _for_hosts(hosts):
        names = ",".join(f"DNS:{host}" for host in hosts)
        return "-addext", f"subjectAltName={names}", "-addext", "basicConstraints=critical,CA:FALSE"


@dataclasses.dataclass
class Request:
    verb: str
    path: str
    """Without the question mark and what follows, which are `query`."""
    query: str
    headers: dict
    """By their names in lower case."""
    body: bytes
    time: float
    """Of time.monotonic()."""
    visit: "Visit" = dataclasses.field(repr=False)


class Visit:
    """One connection, from its acceptance to its end.

    `handshake` is "done", or why there is none. `ended_by` is "client" or "server", or None while it lasts.
    """

    def __init__(self, connection):
        self._raw = connection
        self._stream = connection
        self.handshake = "begun"
        self.requests = []
        self.began, self.ended = time.monotonic(), None
        self.ended_by = None
        self.sent = 0

    # For answers: they may send anything, and end the connection in several ways.

    def send(self, data):
        self._stream.sendall(data)
        self.sent += len(data)

    def wait_for_client(self, seconds=None):
        """Whether the client has closed the connection, after this time at the latest; what it sends is ignored."""
        self._stream.settimeout(seconds)
        try:
            while self._stream.recv(4096):
                pass
        except TimeoutError:
            return False
        except (OSError, ssl.SSLError):
            pass
        finally:
            with contextlib.suppress(OSError):
                self._stream.settimeout(None)
        self.end("client")
        return True

    def close(self):
        """A farewell of TLS, and then the end of the connection."""
        self.end("server")
        with contextlib.suppress(OSError, ssl.SSLError, ValueError):
            self._stream.settimeout(1)
            self._stream = self._stream.unwrap()

    def hang_up(self):
        """The end of the connection, without a farewell of TLS."""
        self.end("server")
        with contextlib.suppress(OSError):
            self._stream.shutdown(socket.SHUT_RDWR)

    def reset(self):
        """What a crashed server leaves behind."""
        self.end("server")
        with contextlib.suppress(OSError):
            self._stream.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
            self._stream.close()

    def end(self, by):
        if self.ended_by is None:
            self.ended, self.ended_by = time.monotonic(), by

    # For the server.

    def receive_hello(self):
        """The client's first message, before any TLS."""
        return self._raw.recv(4096)

    def shake_hands(self, context):
        try:
            self._stream = context.wrap_socket(self._raw, server_side=True)
            self.handshake = "done"
        except (OSError, ssl.SSLError) as error:
            self.handshake = str(error) or type(error).__name__
            self.end("client")
        return self.handshake == "done"

    def read_request(self):
        """The next request, or None at the end of the connection."""
        data = b""
        try:
            while END_OF_HEADERS not in data:
                data += self._receive_more(data)
            head, body = data.split(END_OF_HEADERS, 1)
            first, *lines = head.decode("latin-1").split("\r\n")
            verb, address, _ = first.split(" ")
            path, _, query = address.partition("?")
            headers = {name.lower(): value.strip() for name, _, value in (line.partition(":") for line in lines)}
            while len(body) < int(headers.get("content-length", 0)):
                body += self._receive_more(data)
        except (OSError, ssl.SSLError, EOFError):
            self.end("client")
            return None
        request = Request(verb, path, query, headers, body, time.monotonic(), self)
        self.requests.append(request)
        return request

    def _receive_more(self, data):
        if len(data) > LARGEST_REQUEST:
            raise OSError("a request without end")
        more = self._stream.recv(65536)
        if not more:
            raise EOFError
        return more

    def drop(self):
        """Ends it in any state, so that the thread that waits for it goes on."""
        for stream in {self._stream, self._raw}:
            with contextlib.suppress(OSError):
                stream.shutdown(socket.SHUT_RDWR)
            with contextlib.suppress(OSError):
                stream.close()


# Answers: functions of the visit, called when the request has been read. A connection that they leave open is kept until
# the client closes it.


def head(status=200, length=None, **headers):
    """The first lines of an answer; the names of headers have underscores for hyphens."""
    lines = [f"HTTP/1.1 {status} Answer", "Connection: close"]
    if length is not None:
        lines.append(f"Content-Length: {length}")
    lines += [f"{name.replace('_', '-')}: {value}" for name, value in headers.items()]
    return ("\r\n".join(lines) + "\r\n\r\n").encode("latin-1")


def reply(body=b"", status=200, length=None, **headers):
    """An answer with this body; its length is declared as it is, or as told."""
    return raw(head(status, len(body) if length is None else length, **headers) + body)


def raw(data):
    """These bytes and no others."""
    return lambda visit: visit.send(data)


def silence(visit):
    """Nothing, however long the client waits."""


def drip(data, seconds=1.0, at_once=b""):
    """`at_once`, and then a byte at a time."""

    def answer(visit):
        visit.send(at_once)
        for index in range(len(data)):
            if visit.wait_for_client(seconds):
                return
            visit.send(data[index : index + 1])

    return answer


def endless(chunk, first=b""):
    """`first`, and then the same bytes until the client has had enough."""

    def answer(visit):
        visit.send(first)
        while True:
            visit.send(chunk)

    return answer


def cut(data, how):
    """These bytes, and then the end, by a function of the visit such as Visit.close, Visit.hang_up or Visit.reset."""

    def answer(visit):
        visit.send(data)
        how(visit)

    return answer


# Receptions: what becomes of a new connection; true if requests are to follow.


def welcome(visit, context):
    return visit.shake_hands(context)


def keep_silent(visit, context):
    """Accepts and says nothing."""
    visit.handshake = "kept silent"
    visit.wait_for_client()
    return False


def cut_handshake(visit, context):
    """Half of the server's first flight of TLS, and then the end."""
    visit.handshake = "cut off"
    incoming, outgoing = ssl.MemoryBIO(), ssl.MemoryBIO()
    server = context.wrap_bio(incoming, outgoing, server_side=True)
    incoming.write(visit.receive_hello())
    with contextlib.suppress(ssl.SSLWantReadError):
        server.do_handshake()
    flight = outgoing.read()
    visit.send(flight[: len(flight) // 2])
    visit.hang_up()
    return False


def talk_nonsense(visit, context):
    """Plain HTTP where TLS is expected."""
    visit.handshake = "nonsense"
    visit.receive_hello()
    visit.send(head(400, 4) + b"TLS?")
    visit.wait_for_client()
    return False


class UpdateServer:
    """A server on one address of loopback. `answers` has a function for each path, `certificate` is what it shows to the
    next client, and `reception` what becomes of a connection; all can be changed at any time. `visits` are all
    connections so far. A path without an answer gets 404."""

    def __init__(self, address, certificate, port=PORT):
        self.answers = {}
        self.reception = welcome
        self.visits = []
        self.faults = []
        self.certificate = certificate
        self._contexts = {}
        self._listener = socket.create_server((address, port), backlog=64)
        threading.Thread(target=self._accept, daemon=True).start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    @property
    def requests(self):
        return [request for visit in list(self.visits) for request in visit.requests]

    def forget(self):
        """Ends all connections and forgets them."""
        for visit in self.visits:
            visit.drop()
        self.visits = []

    def close(self):
        self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()
        self.forget()
        if self.faults:
            raise AssertionError(f"the server itself has failed: {self.faults}")

    def _context(self):
        certificate = self.certificate
        if certificate not in self._contexts:
            context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            context.load_cert_chain(certificate.chain, certificate.key)
            self._contexts[certificate] = context
        return self._contexts[certificate]

    def _accept(self):
        while True:
            try:
                connection, _ = self._listener.accept()
            except OSError:
                return
            connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            visit = Visit(connection)
            self.visits.append(visit)
            threading.Thread(target=self._serve, args=(visit,), daemon=True).start()

    def _serve(self, visit):
        try:
            if self.reception(visit, self._context()):
                self._answer(visit)
        except (OSError, ssl.SSLError):
            visit.end("client")
        except Exception as error:
            self.faults.append(repr(error))
        finally:
            visit.drop()

    def _answer(self, visit):
        while request := visit.read_request():
            self.answers.get(request.path, reply(status=404))(visit)
            if visit.ended_by is not None:
                return
