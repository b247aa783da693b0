#!/usr/bin/env python3
"""A web server on loopback that behaves as its paths say; see the rows of ExcludeListServerTest.

Usage: http_server.py CERTIFICATE

Prints the port where it speaks plain HTTP and the one where it speaks TLS, then serves until its
input ends.
"""

import plistlib
import ssl
import sys
import threading
import time
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

RECORDS = [{"ID": "com.example.scribe"}]
LIST = plistlib.dumps(RECORDS)
PORTS = {}
TOO_MUCH = LIST + b" " * 10 * 1024 * 1024  # a list all the same
BODIES = {
    "list": LIST,
    "binary": plistlib.dumps(RECORDS, fmt=plistlib.FMT_BINARY),
    "html": b"<!DOCTYPE html><html><body>Sign in to this network</body></html>",
    "dictionary": plistlib.dumps({"ExcludeList": RECORDS}),
}
REDIRECTIONS = {
    "loop": ("https", "localhost", "loop"),
    "unencrypted": ("http", "localhost", "list"),
}
# What is sent again and again until the client has enough, after a beginning.
ENDLESS = {
    "headers": (b"HTTP/1.1 200 OK\r\n", b"X-More: and more\r\n" * 100),
    "one-header": (b"HTTP/1.1 200 OK\r\nX-More: ", b"and more" * 1000),
    "continue": (b"", b"HTTP/1.1 100 Continue\r\n\r\n" * 100),
    "chunk": (b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nffffffff\r\n", b" " * 4096),
}


def target_of(name):
    """Where a name redirects to. A number is that of the redirections on the way to the list."""
    if name.isdigit():
        host = "localhost" if int(name) % 2 else "127.0.0.1"
        return "https", host, str(int(name) - 1) if int(name) > 1 else "list"
    return REDIRECTIONS.get(name)


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *arguments):
        pass

    def answer(self, body, status=200, length=None, **headers):
        self.send_response(status)
        for name, value in headers.items():
            self.send_header(name, value)
        self.send_header("Content-Length", str(len(body) if length is None else length))
        self.end_headers()
        self.wfile.write(body)

    def do_GET(self):
        try:
            self.behave(self.path.strip("/").split("/")[0])
        except (ConnectionError, ssl.SSLError):
            pass  # the client had enough
        self.close_connection = True

    def behave(self, name):
        if name in BODIES:
            self.answer(BODIES[name])
        elif target := target_of(name):
            scheme, host, path = target
            location = f"{scheme}://{host}:{PORTS[scheme]}/{path}/"
            self.answer(b"", 302, Location=location)
        elif name in ENDLESS:
            beginning, more = ENDLESS[name]
            self.wfile.write(beginning)
            while True:
                self.wfile.write(more)
        elif name == "broken-off":
            self.answer(LIST[: len(LIST) // 2], length=len(LIST))
        elif name == "large":
            self.answer(TOO_MUCH)
        elif name == "endless":
            self.send_response(200)
            self.end_headers()
            self.wfile.write(TOO_MUCH)
        elif name == "slow":
            self.answer(b"", length=len(LIST))
            for byte in LIST:
                self.wfile.write(bytes([byte]))
                time.sleep(1)
        elif name == "silent":
            self.rfile.read(1)
        elif name == "error":
            self.answer(LIST, 500)


def start(scheme, certificate=None):
    server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    server.daemon_threads = True
    if certificate:
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(certificate)
        server.socket = context.wrap_socket(server.socket, server_side=True)
    PORTS[scheme] = server.server_port
    threading.Thread(target=server.serve_forever, daemon=True).start()


start("http")
start("https", sys.argv[1])
print(PORTS["http"], PORTS["https"], flush=True)
sys.stdin.read()
