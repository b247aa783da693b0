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

RECORDS = [{"ID": "com.example.scribe", "DisplayName": "Scribe", "Hardcoded": True}]
LIST = plistlib.dumps(RECORDS)
MEBIBYTE = bytes(1024 * 1024)


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

    def redirect(self, host, path, scheme="https"):
        self.answer(b"", 302, Location=f"{scheme}://{host}:{self.server.server_port}{path}")

    def do_GET(self):
        try:
            self.behave(self.path.strip("/").split("/")[0])
        except (ConnectionError, ssl.SSLError):
            pass  # the client had enough
        self.close_connection = True

    def behave(self, name):
        if name == "list":
            self.answer(LIST)
        elif name == "binary":
            self.answer(plistlib.dumps(RECORDS, fmt=plistlib.FMT_BINARY))
        elif name == "empty":
            self.answer(b"")
        elif name == "html":
            self.answer(b"<!DOCTYPE html><html><body>Sign in to this network</body></html>")
        elif name == "truncated":
            self.answer(LIST[: len(LIST) // 2])
        elif name == "broken-off":
            self.answer(LIST[: len(LIST) // 2], length=len(LIST))
        elif name == "dictionary":
            self.answer(plistlib.dumps({"ExcludeList": RECORDS}))
        elif name == "large":
            self.answer(b"", length=100 * len(MEBIBYTE))
            self.stream()
        elif name == "endless":
            self.send_response(200)
            self.end_headers()
            self.stream()
        elif name == "slow":
            self.answer(b"", length=len(LIST))
            for byte in LIST:
                self.wfile.write(bytes([byte]))
                time.sleep(1)
        elif name == "silent":
            self.rfile.read(1)
        elif name == "error":
            self.answer(LIST, 500)
        elif name == "loop":
            self.redirect("127.0.0.1", self.path)
        elif name == "moved":
            self.redirect("127.0.0.1", "/list/")
        elif name == "elsewhere":
            self.redirect("localhost", "/list/")
        elif name == "unencrypted":
            self.redirect("127.0.0.1", "/list/", "http")
        else:
            self.answer(b"", 404)

    def stream(self):
        for _ in range(100):
            self.wfile.write(MEBIBYTE)


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
