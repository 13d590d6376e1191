"""A web server that does what a test asks for, good or bad, by the first part of the path.

It takes a request whole (also one that is written for a proxy, with the full address) and then plays the
scene of that name below. It runs on threads of the test driver, see real_servers.py.
"""

import re
import socket
import socketserver
import struct
import threading
import time


def reply(body, status="200 OK", *, length=None, headers=()):
    lines = [f"HTTP/1.0 {status}", f"Content-Length: {len(body) if length is None else length}", *headers]
    return "\r\n".join(lines).encode() + b"\r\n\r\n" + body


def pattern(size):
    """The same bytes as Pattern() of the tests."""
    cycle = bytes(ord("!") + i for i in range(89))
    return (cycle * (size // len(cycle) + 1))[:size]


class Scenes:
    """Each method answers one request; `tail` is what follows its name in the path."""

    def __init__(self, connection, request, shared):
        self.connection = connection
        self.request = request
        self.shared = shared

    def play(self):
        target = self.request.split(b" ", 2)[1].decode("latin-1")
        path = re.sub(r"^http://[^/]*", "", target).lstrip("/")
        name, _, tail = path.partition("/")
        scene = getattr(self, "scene_" + re.sub(r"\W.*", "", name), self.scene_raw)
        scene(tail)

    def send(self, data):
        self.connection.sendall(data)

    def scene_raw(self, _tail):
        """The request as it came, in hexadecimal digits."""
        self.send(reply(self.request.hex().encode()))

    def scene_thanks(self, _tail):
        self.send(reply(b"Thank you for " + self.request.partition(b"\r\n\r\n")[2] + b"\n"))

    def scene_close(self, _tail):
        """No answer at all."""

    def scene_garbage(self, _tail):
        self.send(b"\x00\x01\x02 this is no answer of any kind\r\n")

    def scene_halfhead(self, _tail):
        self.send(b"HTTP/1.0 200 OK\r\nContent-Le")

    def scene_nobody(self, _tail):
        """A head that promises a body, and none."""
        self.send(reply(b"", length=10))

    def scene_short(self, _tail):
        """A body that ends before its announced length."""
        self.send(reply(pattern(3000), length=5000))

    def scene_reset(self, _tail):
        """A body that breaks off with a reset connection, once the first part has had time to arrive."""
        self.send(reply(pattern(3000), length=5000))
        time.sleep(0.5)
        self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))

    def scene_slow(self, _tail):
        body = pattern(4100)
        self.send(reply(b"", length=len(body)))
        for start in range(0, len(body), 410):
            time.sleep(0.03)
            self.send(body[start:start + 410])

    def scene_late(self, tail):
        """/late/1500: the body so many milliseconds behind the head; /late/1500/headless: the head as late as that."""
        milliseconds, _, headless = tail.partition("/")
        if not headless:
            self.send(reply(b"", length=4))
        time.sleep(int(milliseconds) / 1000)
        self.send(b"late")

    def scene_drip(self, tail):
        """/drip/8/150: eight parts, with so many milliseconds before each."""
        parts, _, milliseconds = tail.partition("/")
        self.send(reply(b"", length=4 * int(parts)))
        for _part in range(int(parts)):
            time.sleep(int(milliseconds) / 1000)
            self.send(b"drip")

    def scene_unmeasured(self, _tail):
        """A body without an announced length: the end of the connection ends it."""
        self.send(b"HTTP/1.0 200 OK\r\n\r\n" + pattern(5000))

    def scene_chunked(self, _tail):
        self.send(b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                  + b"".join(b"%x\r\n%s\r\n" % (len(part), part) for part in (b"one ", b"two ", b"three"))
                  + b"0\r\n\r\n")

    def scene_error(self, _tail):
        self.send(reply(b"Error : out of order", "503 Service Unavailable"))

    def scene_bytes(self, _tail):
        self.send(reply(bytes(range(256))))

    def scene_moved(self, tail):
        """/moved/302/raw answers 302 and points to /raw."""
        status, _, place = tail.partition("/")
        self.send(reply(b"moved", f"{status} Moved", headers=[f"Location: /{place}"]))

    def scene_movedaway(self, _tail):
        """Points to a server of another protocol."""
        self.send(reply(b"moved", "302 Moved", headers=["Location: ftp://127.0.0.1/"]))

    def scene_movednowhere(self, _tail):
        """Points to no place, and says nothing."""
        self.send(reply(b"", "302 Moved"))

    def scene_moveddead(self, _tail):
        """Points to a port where nobody listens."""
        place = f"http://127.0.0.1:{self.shared['nobody']}/raw"
        self.send(reply(b"moved", "302 Moved", headers=[f"Location: {place}"]))

    def scene_locked(self, tail):
        """Wants the user "anna" with the password "secret"; then tells how often it refused before."""
        if b"\r\nauthorization: basic yw5uytpzzwnyzxq=\r\n" in self.request.lower():
            body = self.request.partition(b"\r\n\r\n")[2]
            self.send(reply(b"open after %d: %s" % (self.shared.pop("refused", 0), body)))
        else:
            self.shared["refused"] = self.shared.get("refused", 0) + 1
            self.send(reply(b"locked", "401 Unauthorized", headers=['WWW-Authenticate: Basic realm="test"']))

    def scene_relock(self, _tail):
        """Forgets what it refused so far."""
        self.shared.pop("refused", None)
        self.send(reply(b"done"))

    def scene_flood(self, tail):
        """As many megabytes as the path says, and a note of how many bytes the other side has taken."""
        self.shared["flood"] = 0
        total = int(tail) << 20
        self.send(reply(b"", length=total))
        block = pattern(1 << 16)
        while self.shared["flood"] < total:
            self.send(block)
            self.shared["flood"] += len(block)

    def scene_flooded(self, _tail):
        """How much of the latest flood has been taken."""
        self.send(reply(str(self.shared["flood"]).encode()))


def read_request(connection):
    data = b""
    while b"\r\n\r\n" not in data:
        part = connection.recv(65536)
        if not part:
            return None
        data += part
    head, _, body = data.partition(b"\r\n\r\n")
    length = re.search(rb"\r\ncontent-length: *(\d+)", head, re.IGNORECASE)
    while length and len(body) < int(length[1]):
        part = connection.recv(65536)
        if not part:
            break
        body += part
    return head + b"\r\n\r\n" + body


class Peer(socketserver.ThreadingTCPServer):
    daemon_threads = True
    request_queue_size = 64
    allow_reuse_address = True

    def __init__(self, shared):
        self.shared = shared
        super().__init__(("127.0.0.1", 0), None)
        threading.Thread(target=self.serve_forever, daemon=True).start()

    @property
    def port(self):
        return self.server_address[1]

    def finish_request(self, request, client_address):
        request.settimeout(60)
        try:
            whole = read_request(request)
            if whole:
                Scenes(request, whole, self.shared).play()
        except OSError:
            pass  # the other side went away: part of some scenes

    def shutdown_request(self, request):
        # A plain close: shutdown() first would turn the reset of a scene into an orderly end.
        request.close()


class ClosingPeer(Peer):
    """Closes each connection as soon as it is there."""

    def finish_request(self, request, client_address):
        pass
