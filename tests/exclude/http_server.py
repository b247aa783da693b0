#!/usr/bin/env python3
"""A web server on loopback that behaves as its paths say; see the rows of ExcludeListServerTest.

Usage: http_server.py [CERTIFICATE]

With a certificate it speaks TLS. Prints its port, then serves until it is killed.
"""

import plistlib
import ssl
import sys
import time
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

RECORDS = [{"ID": "com.example.scribe"}]
LIST = plistlib.dumps(RECORDS)
TOO_MUCH = LIST + b" " * 10 * 1024 * 1024  # a list all the same
BODIES = {
    "list": LIST,
    "binary": plistlib.dumps(RECORDS, fmt=plistlib.FMT_BINARY),
    "html": b"<!DOCTYPE html><html><body>Sign in to this network</body></html>",
    "dictionary": plistlib.dumps({"ExcludeList": RECORDS}),
}
REDIRECTIONS = {
    "loop": ("https", "127.0.0.1", "loop"),
    "moved": ("https", "127.0.0.1", "list"),
    "elsewhere": ("https", "localhost", "list"),
    "unencrypted": ("http", "127.0.0.1", "list"),
}


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
        elif name in REDIRECTIONS:
            scheme, host, path = REDIRECTIONS[name]
            location = f"{scheme}://{host}:{self.server.server_port}/{path}/"
            self.answer(b"", 302, Location=location)
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


def main():
    server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    server.daemon_threads = True
    if len(sys.argv) > 1:
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(sys.argv[1])
        server.socket = context.wrap_socket(server.socket, server_side=True)
    print(server.server_port, flush=True)
    server.serve_forever()


main()
