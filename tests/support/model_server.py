#!/usr/bin/python3
"""A server of files over real TLS on the loopback address, which behaves well or badly as its paths say; beside it the
same with certificates that nobody should trust, and a proxy.

In a test: use ModelServer as a context manager. As a program: model_server.py FOLDER; it prints one line of JSON with
ports and the path of the authority's certificate, and serves until its standard input ends. What was asked of it stands
in FOLDER/requests, a line of JSON each.

What a path answers ("?size=N" gives the size of the body in bytes, 1,000,000 without it):

/whole                  the body with its size; also any path of a model file that nothing was set for
/unknown-size           the body without a size, up to the end of the connection
/chunked                the body in chunks, without a size
/gzip                   the body, compressed, with the size of that
/gzip-broken            something else that claims to be compressed
/redirect/N             N redirects, and then the body
/loop                   redirects for ever
/elsewhere              a redirect to the same server under the name 127.0.0.1
/insecure               a redirect to plain HTTP
/foreign                a redirect to a scheme that is no HTTP
/status/N               the status N, with a page
/status-stalls/N        the status N, with a page that never comes
/short                  half of the body, then an end as if it were whole
/surplus                the body, and as much again behind it
/stall                  half of the body, and then nothing more
/silent                 not a byte
/drip?delay=S           the body in 20 pieces, S seconds apart
/reset                  half of the body, then the connection breaks
/nonsense               something that is no HTTP
/claims/N               the body, with N as its size, whatever that is
/chunked-claims/N       the body in one chunk, with N as its size beside that
/to-a-file              a redirect to a file of the machine that asks
/endless-head           ten megabytes of headers
/endless-header         one header of ten megabytes
/endless-interim        interim answers for ever
/nul-in-head            the body with its size, and a header with a NUL in it
/no-content             the status 204, without a body
"""

import gzip
import json
import os
import pathlib
import socket
import ssl
import struct
import subprocess
import sys
import threading
import time
import urllib.parse

BLOCK = bytes((i * 31 + i // 256) & 255 for i in range(65536))
DEFAULT_HOSTS = ("localhost", "models.sorvanta.invalid")


def body(size):
    """The bytes of every body: the same block, over and over."""
    return (BLOCK * (size // len(BLOCK) + 1))[:size]


class Certificates:
    """An authority of its own, made for the test, and what it signed."""

    def __init__(self, folder, hosts):
        self._folder = folder
        self.authority = self._make_authority("authority")
        other = self._make_authority("other-authority")
        names = ",".join(f"DNS:{host}" for host in hosts) + ",IP:127.0.0.1"
        self.good = self._sign("good", self.authority, names)
        self.unknown = self._sign("unknown", other, names)
        self.other_host = self._sign("other-host", self.authority, "DNS:elsewhere.invalid")
        self.expired = self._sign("expired", self.authority, names, days=-1)

    def _openssl(self, *words):
        subprocess.run(["openssl", *map(str, words)], check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def _key(self):
        return ["-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes"]

    def _make_authority(self, name):
        certificate = self._folder / f"{name}.pem"
        self._openssl("req", "-x509", *self._key(), "-keyout", certificate.with_suffix(".key"), "-out", certificate,
                      "-subj", f"/CN={name}", "-days", 2, "-addext", "keyUsage=critical,keyCertSign")
        return certificate

    def _sign(self, name, authority, names, days=2):
        certificate = self._folder / f"{name}.pem"
        request, extensions = certificate.with_suffix(".csr"), certificate.with_suffix(".ext")
        extensions.write_text(f"subjectAltName={names}\n")
        self._openssl("req", "-new", *self._key(), "-keyout", certificate.with_suffix(".key"), "-out", request,
                      "-subj", f"/CN={name}")
        self._openssl("x509", "-req", "-in", request, "-CA", authority, "-CAkey", authority.with_suffix(".key"),
                      "-CAcreateserial", "-out", certificate, "-days", days, "-extfile", extensions)
        return certificate


class Listener:
    """Hands every connection to a function, on a thread of its own."""

    def __init__(self, serve):
        self._serve = serve
        self._socket = socket.create_server(("127.0.0.1", 0), backlog=64)
        self.port = self._socket.getsockname()[1]
        threading.Thread(target=self._accept, daemon=True).start()

    def close(self):
        self._socket.shutdown(socket.SHUT_RDWR)
        self._socket.close()

    def _accept(self):
        while True:
            try:
                connection, _ = self._socket.accept()
            except OSError:
                return
            threading.Thread(target=self._attend, args=(connection,), daemon=True).start()

    def _attend(self, connection):
        with connection:
            try:
                self._serve(connection)
            except OSError:  # the other side went
                pass


def read_head(connection):
    head = b""
    while b"\r\n\r\n" not in head:
        piece = connection.recv(4096)
        if not piece:
            raise ConnectionResetError
        head += piece
    return head.decode("latin-1")


class ModelServer:
    """`port` is that of the good server, `ports` has those of all: "good", "unknown" (an authority that nobody knows),
    "other_host", "expired", "no_tls", "plain" (HTTP), "proxy" and "refusing_proxy". The proxy hands a connection to any
    host on to the good server. `authority` is the certificate to be trusted. `requests` has what was asked:
    dictionaries with "to" ("server", "plain", "proxy"), "target" and "head"."""

    def __init__(self, folder, hosts=DEFAULT_HOSTS):
        self.folder = pathlib.Path(folder)
        self.folder.mkdir(parents=True, exist_ok=True)
        self.requests = []
        self._files = {}
        self._lock = threading.Lock()
        self._closing = threading.Event()
        certificates = Certificates(self.folder, hosts)
        self.authority = certificates.authority
        self._listeners = {
            "plain": Listener(lambda connection: self._note("plain", read_head(connection))),
            "proxy": Listener(self._serve_proxy),
            "refusing_proxy": Listener(self._refuse),
            "no_tls": Listener(lambda connection: connection.sendall(b"This is no TLS.\r\n")),
        }
        for name, certificate in (("good", certificates.good), ("unknown", certificates.unknown),
                                  ("other_host", certificates.other_host), ("expired", certificates.expired)):
            self._listeners[name] = Listener(self._over_tls(certificate))
        self.ports = {name: listener.port for name, listener in self._listeners.items()}
        self.port = self.ports["good"]

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.close()

    def close(self):
        self._closing.set()
        for listener in self._listeners.values():
            listener.close()

    def environment(self):
        """What a program needs in its environment to find this server under any host of its certificate."""
        proxy = f"http://127.0.0.1:{self.ports['proxy']}"
        return {"https_proxy": proxy, "HTTPS_PROXY": proxy, "no_proxy": "", "NO_PROXY": "",
                "SSL_CERT_FILE": str(self.authority)}

    def serve_file(self, path, content, hold_at=None):
        """From now on that path (without its query) answers with these bytes. With `hold_at` only so many come before
        the event that is returned is set."""
        gate = threading.Event()
        if hold_at is None:
            gate.set()
        self._files[path] = (content, hold_at, gate)
        return gate

    def serve_as(self, path, behaviour):
        """From now on that path behaves as that other one ("/status/404")."""
        self._files[path] = behaviour

    def _note(self, to, head):
        entry = {"to": to, "target": head.split(" ", 2)[1], "head": head}
        with self._lock:
            self.requests.append(entry)
            with open(self.folder / "requests", "a", encoding="utf-8") as log:
                log.write(json.dumps(entry) + "\n")

    def _over_tls(self, certificate):
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(certificate, certificate.with_suffix(".key"))

        def serve(connection):
            with context.wrap_socket(connection, server_side=True) as secured:
                head = read_head(secured)
                self._note("server", head)
                Answer(self, secured, head).send()

        return serve

    def _refuse(self, connection):
        read_head(connection)
        self._forbid(connection)

    @staticmethod
    def _forbid(connection):
        connection.sendall(b"HTTP/1.1 403 Forbidden\r\nContent-Length: 0\r\n\r\n")

    def _serve_proxy(self, connection):
        head = read_head(connection)
        self._note("proxy", head)
        if not head.startswith("CONNECT "):
            self._forbid(connection)
            return
        with socket.create_connection(("127.0.0.1", self.port)) as server:
            connection.sendall(b"HTTP/1.1 200 Connection established\r\n\r\n")
            threading.Thread(target=self._pump, args=(connection, server), daemon=True).start()
            self._pump(server, connection)

    @staticmethod
    def _pump(source, destination):
        try:
            while piece := source.recv(65536):
                destination.sendall(piece)
            destination.shutdown(socket.SHUT_WR)
        except OSError:
            pass

    def wait(self, seconds=3600):
        """Until the server is closed."""
        self._closing.wait(seconds)

    def entry(self, path):
        return self._files.get(path)


class Answer:
    """One request and what it is answered."""

    def __init__(self, server, connection, head):
        self._server = server
        self._connection = connection
        address = urllib.parse.urlsplit(head.split(" ", 2)[1])
        self._path = address.path
        self._query = dict(urllib.parse.parse_qsl(address.query))
        self._size = int(self._query.get("size", 1_000_000))

    def send(self):
        entry = self._server.entry(self._path)
        if isinstance(entry, tuple):
            self._file(*entry)
        else:
            _, name, *rest = (entry or self._path).split("/")
            method = getattr(self, "_" + name.replace("-", "_"), self._whole)
            method(*rest[:1])
        # TLS says that this is the end, so that nobody takes it for a broken connection.
        self._connection.unwrap()

    def _head(self, status=200, **headers):
        lines = [f"HTTP/1.1 {status} Status", "Connection: close"]
        lines += [f"{name.replace('_', '-')}: {value}" for name, value in headers.items()]
        self._connection.sendall("\r\n".join([*lines, "", ""]).encode())

    def _body(self, size):
        while size > 0:
            piece = BLOCK[:size]
            self._connection.sendall(piece)
            size -= len(piece)

    def _file(self, content, hold_at, gate):
        self._head(Content_Length=len(content))
        held = len(content) if hold_at is None else hold_at
        self._connection.sendall(content[:held])
        gate.wait()
        self._connection.sendall(content[held:])

    def _whole(self, *_):
        self._head(Content_Length=self._size)
        self._body(self._size)

    def _unknown_size(self):
        self._head()
        self._body(self._size)

    def _chunked(self):
        self._head(Transfer_Encoding="chunked")
        whole = body(self._size)
        for start in range(0, len(whole), 10_000):
            piece = whole[start:start + 10_000]
            self._connection.sendall(b"%x\r\n%s\r\n" % (len(piece), piece))
        self._connection.sendall(b"0\r\n\r\n")

    def _gzip(self):
        packed = gzip.compress(body(self._size))
        self._head(Content_Length=len(packed), Content_Encoding="gzip")
        self._connection.sendall(packed)

    def _gzip_broken(self):
        self._head(Content_Length=self._size, Content_Encoding="gzip")
        self._body(self._size)

    def _redirect(self, count):
        if int(count) == 0:
            self._whole()
            return
        # A page of a redirect is no part of the file.
        page = b"elsewhere"
        self._head(302, Location=f"/redirect/{int(count) - 1}?size={self._size}", Content_Length=len(page))
        self._connection.sendall(page)

    def _loop(self):
        self._head(302, Location="/loop", Content_Length=0)

    def _elsewhere(self):
        self._head(307, Location=f"https://127.0.0.1:{self._server.port}/whole?size={self._size}", Content_Length=0)

    def _insecure(self):
        self._head(302, Location=f"http://localhost:{self._server.ports['plain']}/whole", Content_Length=0)

    def _foreign(self):
        self._head(302, Location="ftp://localhost/whole", Content_Length=0)

    def _status(self, code):
        page = b"<html>This is not what was asked for.</html>"
        self._head(code, Content_Length=len(page))
        self._connection.sendall(page)

    def _status_stalls(self, code):
        self._head(code, Content_Length=1000)
        self._server.wait()

    def _short(self):
        self._head(Content_Length=self._size)
        self._body(self._size // 2)

    def _surplus(self):
        self._head(Content_Length=self._size)
        self._body(self._size * 2)

    def _stall(self):
        self._head(Content_Length=self._size)
        self._body(self._size // 2)
        self._server.wait()

    def _silent(self):
        self._server.wait()

    def _drip(self):
        self._head(Content_Length=self._size)
        pieces = 20
        whole = body(self._size)
        for start in range(0, len(whole), self._size // pieces):
            self._connection.sendall(whole[start:start + self._size // pieces])
            time.sleep(float(self._query["delay"]))

    def _reset(self):
        self._head(Content_Length=self._size)
        self._body(self._size // 2)
        # Without a pause the breaking would overtake what was sent.
        time.sleep(0.2)
        self._connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        os.close(self._connection.detach())
        raise ConnectionResetError

    def _claims(self, size):
        self._head(Content_Length=size)
        self._body(self._size)

    def _chunked_claims(self, size):
        self._head(Content_Length=size, Transfer_Encoding="chunked")
        self._connection.sendall(b"%x\r\n%s\r\n0\r\n\r\n" % (self._size, body(self._size)))

    def _to_a_file(self):
        self._head(302, Location="file:///etc/hostname", Content_Length=0)

    def _endless_head(self):
        self._head(Content_Length=self._size, **{f"Filler-{i}": "x" * 10_000 for i in range(1000)})
        self._body(self._size)

    def _endless_header(self):
        self._head(Content_Length=self._size, Filler="x" * 10_000_000)
        self._body(self._size)

    def _endless_interim(self):
        while True:
            self._connection.sendall(b"HTTP/1.1 103 Early Hints\r\nFiller: xxxxxxxxxxxxxxxxxxxxxxxx\r\n\r\n" * 100)

    def _nul_in_head(self):
        self._head(Content_Length=self._size, Filler="x\0y")
        self._body(self._size)

    def _no_content(self):
        self._head(204)

    def _nonsense(self):
        self._connection.sendall(b"This is no HTTP at all.\r\n\r\n")


def main():
    with ModelServer(sys.argv[1]) as server:
        print(json.dumps({"authority": str(server.authority), **server.ports}), flush=True)
        sys.stdin.read()


if __name__ == "__main__":
    main()
