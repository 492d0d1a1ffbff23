"""SQL servers for the tests: started as an unprivileged user, on the loopback address, on free ports, in a temporary
folder, and stopped with the tests, however those end."""

import atexit
import contextlib
import os
import pathlib
import pwd
import random
import secrets
import shutil
import signal
import socket
import subprocess
import tempfile
import time

PATIENCE = 60  # seconds


def free_port():
    """Below those that the system gives to connections, one of which could take it before the server does."""
    while True:
        port = random.randrange(10_000, 30_000)
        with socket.socket() as probe, contextlib.suppress(OSError):
            probe.bind(("127.0.0.1", port))
            return port


def unprivileged():
    """What runs a command as somebody else than root, and who that is."""
    if os.geteuid() != 0:
        return [], pwd.getpwuid(os.geteuid()).pw_name
    name = "nobody"
    return ["setpriv", f"--reuid={name}", f"--regid={pwd.getpwnam(name).pw_gid}", "--clear-groups"], name


class Server:
    """A server process and its folder."""

    def __init__(self, name):
        self.name = name
        self.port = free_port()
        self.prefix, self.user = unprivileged()
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix=f"proportions-{name}-"))
        # A MariaDB server that starts removes what it takes for leftovers in the folder for temporary files.
        self.environment = {**os.environ, "HOME": str(self.folder), "TMPDIR": str(self.folder), "LC_ALL": "C.UTF-8"}
        self.process = None
        atexit.register(self.stop)
        if self.prefix:
            shutil.chown(self.folder, self.user)

    def run(self, *command, **options):
        done = subprocess.run([*self.prefix, *map(str, command)], cwd=self.folder, capture_output=True, text=True,
                              env=self.environment, **options)
        if done.returncode != 0:
            raise RuntimeError(f"{self.name}: {command}\n{done.stdout}\n{done.stderr}")
        return done.stdout

    def launch(self, *command):
        """The server ends with the tests, also when those are killed."""
        tied = ["setpriv", "--pdeathsig", "TERM", *self.prefix[1:]]
        with open(self.folder.parent / f"{self.folder.name}.log", "wb") as log:
            self.log = pathlib.Path(log.name)
            self.process = subprocess.Popen([*tied, *map(str, command)], cwd=self.folder, stdout=log, stderr=log,
                                            stdin=subprocess.DEVNULL, env=self.environment)

    def wait_until(self, is_up):
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            if self.process.poll() is not None:
                break
            with contextlib.suppress(RuntimeError):
                is_up()
                return
            time.sleep(0.1)
        raise RuntimeError(f"{self.name} does not start:\n{self.log.read_text(errors='replace')[-3000:]}")

    def stop(self, how=signal.SIGINT):
        atexit.unregister(self.stop)
        if self.process is not None and self.process.poll() is None:
            self.process.send_signal(how)
            try:
                self.process.wait(timeout=20)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)
        if self.process is not None:
            self.log.unlink(missing_ok=True)


def newest(pattern):
    found = sorted(pathlib.Path("/").glob(pattern.lstrip("/")), key=lambda p: [int(n) for n in str(p).split("/") if n.isdigit()])
    return found[-1] if found else None


class Postgres(Server):
    """One PostgreSQL server; the user tester needs a password."""

    BIN = newest("/usr/lib/postgresql/*/bin")

    def __init__(self, name="postgres", settings=()):
        super().__init__(name)
        self.password = secrets.token_urlsafe(12) + ";}{ '"
        data = self.folder / "data"
        password_file = self.folder / "password"
        password_file.write_text(self.password)
        if self.prefix:
            shutil.chown(password_file, self.user)
        self.run(self.BIN / "initdb", "--no-sync", "--username=tester", "--auth=scram-sha-256", f"--pwfile={password_file}",
                 "--encoding=UTF8", "--locale=C.UTF-8", data)
        options = ["listen_addresses=127.0.0.1", f"port={self.port}", f"unix_socket_directories={self.folder}", "fsync=off",
                   "max_connections=30", *settings]
        self.launch(self.BIN / "postgres", "-D", data, *(word for option in options for word in ("-c", option)))
        self.wait_until(lambda: self.sql("SELECT 1"))

    def sql(self, statements):
        """Runs statements; the rows of the last as lines."""
        return self.run("psql", "-X", "-q", "-A", "-t", "-v", "ON_ERROR_STOP=1", "-f", "-",
                        f"host=127.0.0.1 port={self.port} user=tester dbname=postgres password='{self.quoted()}'",
                        input=statements)

    def quoted(self):
        return self.password.replace("\\", "\\\\").replace("'", "\\'")

    def data(self, port=None):
        return (f"odbc:DRIVER={{PostgreSQL Unicode}};SERVER=127.0.0.1;PORT={port or self.port};DATABASE=postgres;"
                "UID=tester")


class MariaDb(Server):
    """One MariaDB server; the user tester needs a password."""

    PROGRAM = shutil.which("mariadbd") or "/usr/sbin/mariadbd"

    def __init__(self, name="mariadb", settings=()):
        super().__init__(name)
        self.password = secrets.token_urlsafe(12) + ";{ ?"
        data = self.folder / "data"
        self.run("mariadb-install-db", "--no-defaults", f"--datadir={data}", "--auth-root-authentication-method=normal",
                 "--skip-test-db")
        self.socket = self.folder / "socket"
        self.launch(self.PROGRAM, "--no-defaults", f"--datadir={data}", f"--socket={self.socket}", f"--port={self.port}",
                    "--bind-address=127.0.0.1", f"--pid-file={self.folder / 'pid'}", "--innodb-flush-log-at-trx-commit=0",
                    *settings)
        self.wait_until(lambda: self.sql("SELECT 1", database=""))
        self.sql(f"CREATE DATABASE tests CHARACTER SET utf8mb4; CREATE USER tester@localhost IDENTIFIED BY '{self.password}'; "
                 f"CREATE USER tester@'127.0.0.1' IDENTIFIED BY '{self.password}'; "
                 "GRANT ALL ON *.* TO tester@localhost; GRANT ALL ON *.* TO tester@'127.0.0.1'", database="")

    def stop(self, how=signal.SIGTERM):
        super().stop(how)

    def sql(self, statements, database="tests"):
        return self.run("mariadb", "--no-defaults", f"--socket={self.socket}", "--user=root", "-N", "-B",
                        "--default-character-set=utf8mb4", database, input=statements)

    def data(self, port=None):
        return (f"odbc:DRIVER={{MariaDB Unicode}};SERVER=127.0.0.1;PORT={port or self.port};DATABASE=tests;UID=tester")


class Wire:
    """Passes a connection on to a server, counts what the server sends and can break off."""

    def __init__(self, port, break_after=None):
        import threading
        self.target = port
        self.break_after = break_after
        self.received = 0
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        threading.Thread(target=self.accept, daemon=True).start()

    def accept(self):
        import threading
        with contextlib.suppress(OSError):
            while True:
                client, _ = self.listener.accept()
                server = socket.create_connection(("127.0.0.1", self.target))
                threading.Thread(target=self.pass_on, args=(client, server, False), daemon=True).start()
                threading.Thread(target=self.pass_on, args=(server, client, True), daemon=True).start()

    def pass_on(self, source, sink, counted):
        with contextlib.suppress(OSError):
            while data := source.recv(65536):
                if counted:
                    self.received += len(data)
                    if self.break_after is not None and self.received > self.break_after:
                        break
                sink.sendall(data)
        for end in (source, sink):
            with contextlib.suppress(OSError):
                end.shutdown(socket.SHUT_RDWR)
                end.close()

    def close(self):
        self.listener.close()
