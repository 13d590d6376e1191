#!/usr/bin/env python3
"""Usage: real_servers.py COMMAND [ARGS]

Runs a command beside real servers on the loopback interface, each on a free port of its own, and ends them by
their ids when the command has ended. Exit code: that of the command. The command finds them in its environment, and a
name in braces, such as {NGINX}, in its words is replaced by the port:

  QUORVANE_TEST_NGINX         nginx with pages of 1, 2047, 2048 and 2049 bytes and more, 404, 500, an empty reply
  QUORVANE_TEST_PEER          the scripted peer, see scripted_peer.py
  QUORVANE_TEST_CLOSING       a server that closes each connection at once
  QUORVANE_TEST_NOBODY        a port where nobody listens
  QUORVANE_TEST_PROXY         tinyproxy
  QUORVANE_TEST_LOCKED_PROXY  tinyproxy that wants the user "anna" with the password "secret"

With QUORVANE_TEST_BIG_PAGES=MEGABYTES[,MEGABYTES] nginx has pages of those sizes, /big-N; 100 if not set.
"""

import os
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from scripted_peer import ClosingPeer, Peer, pattern

NGINX = """
daemon off;
master_process off;
worker_processes 1;
pid {folder}/nginx.pid;
error_log {folder}/nginx.log;
events {{ worker_connections 64; }}
http {{
  access_log off;
  server_tokens off;
  default_type text/plain;
  client_body_temp_path {folder}/body;
  proxy_temp_path {folder}/proxy;
  fastcgi_temp_path {folder}/fastcgi;
  uwsgi_temp_path {folder}/uwsgi;
  scgi_temp_path {folder}/scgi;
  server {{
    listen 127.0.0.1:{port};
    root {folder}/pages;
    error_page 404 /not-found.txt;
    error_page 500 /broken.txt;
    # A static page refuses POST: the refusal's page is the page itself.
    error_page 405 =200 $uri;
    location = /broken {{ return 500; }}
    location /form/ {{ proxy_pass http://127.0.0.1:{peer}/; }}
  }}
}}
"""

TINYPROXY = """
Port {port}
Listen 127.0.0.1
Timeout 60
MaxClients 32
LogFile "{folder}/tinyproxy-{port}.log"
LogLevel Critical
ViaProxyName "quorvane-{kind}"
Allow 127.0.0.1
{extra}
"""


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def wait_for(port, server):
    for _ in range(500):
        if server.poll() is not None:
            return False
        with socket.socket() as probe:
            if probe.connect_ex(("127.0.0.1", port)) == 0:
                return True
        time.sleep(0.02)
    return False


def program(name):
    found = shutil.which(name, path=os.environ.get("PATH", "") + ":/usr/sbin")
    if not found:
        sys.exit(f"real_servers: {name} is missing; scripts/setup installs it")
    return found


class Servers:
    def __init__(self, folder):
        self.folder = folder
        self.started = []

    def start(self, make_command):
        """Another program may take a free port before the server does, so a few are tried."""
        for _ in range(5):
            port = free_port()
            server = subprocess.Popen(make_command(port), stdin=subprocess.DEVNULL,
                                      stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            self.started.append(server)
            if wait_for(port, server):
                return port
            server.kill()
        sys.exit(f"real_servers: cannot start {make_command(0)[0]}")

    def start_nginx(self, peer):
        pages = Path(self.folder, "pages")
        pages.mkdir()
        (pages / "not-found.txt").write_bytes(b"no such form")
        (pages / "broken.txt").write_bytes(b"Error : the form is broken")
        for size in (0, 1, 2047, 2048, 2049, 10000, 102400):
            (pages / f"size-{size}").write_bytes(pattern(size))
        for megabytes in os.environ.get("QUORVANE_TEST_BIG_PAGES", "100").split(","):
            (pages / f"big-{megabytes}").write_bytes(pattern(int(megabytes) << 20))
        configuration = Path(self.folder, "nginx.conf")

        def command(port):
            configuration.write_text(NGINX.format(folder=self.folder, port=port, peer=peer))
            return [program("nginx"), "-p", self.folder, "-e", f"{self.folder}/nginx.log", "-c", str(configuration)]

        return self.start(command)

    def start_proxy(self, kind, extra=""):
        configuration = Path(self.folder, f"{kind}.conf")

        def command(port):
            configuration.write_text(TINYPROXY.format(folder=self.folder, port=port, kind=kind, extra=extra))
            return [program("tinyproxy"), "-d", "-c", str(configuration)]

        return self.start(command)

    def end(self):
        for server in self.started:
            if server.poll() is None:
                server.terminate()
        for server in self.started:
            try:
                server.wait(5)
            except subprocess.TimeoutExpired:
                server.kill()
                server.wait()


def main(command):
    if not command or command[0] in ("-h", "--help"):
        print(__doc__)
        return 0 if command else 2
    # An end from outside must end the servers, too.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    with tempfile.TemporaryDirectory(prefix="quorvane-web-") as folder, socket.socket() as reserved:
        # Bound, so that nobody else gets the port, but not listening.
        reserved.bind(("127.0.0.1", 0))
        nobody = reserved.getsockname()[1]
        servers = Servers(folder)
        try:
            peer = Peer({"nobody": nobody, "flood": 0})
            ports = {
                "PEER": peer.port,
                "CLOSING": ClosingPeer({}).port,
                "NOBODY": nobody,
                "NGINX": servers.start_nginx(peer.port),
                "PROXY": servers.start_proxy("open"),
                "LOCKED_PROXY": servers.start_proxy("locked", "BasicAuth anna secret"),
            }
            environment = {**os.environ, **{f"QUORVANE_TEST_{name}": str(port) for name, port in ports.items()}}
            for name in ("http_proxy", "all_proxy", "no_proxy"):
                environment.pop(name, None)
                environment.pop(name.upper(), None)
            words = [re.sub(r"\{([A-Z_]+)\}", lambda name: str(ports[name[1]]), word) for word in command]
            return subprocess.run(words, env=environment, check=False).returncode
        finally:
            servers.end()


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
