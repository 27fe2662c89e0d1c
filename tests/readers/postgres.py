"""A PostgreSQL server of the test's own: in a temporary folder, reached over a socket in it, gone afterwards."""

import os
import pwd
import subprocess
import sys
import tempfile
from pathlib import Path

from tools import tool

PROGRAMS = "/usr/lib/postgresql/*/bin/"
SERVER_ACCOUNT = "postgres"
TIMEOUT = 120


class Postgres:
    """The server does not run as root: a test that does starts it under the account of the package."""

    def __enter__(self):
        self._folder = tempfile.TemporaryDirectory(prefix="readers")
        self.folder = Path(self._folder.name)
        self.account = []
        if os.geteuid() == 0:
            self.account = [tool("runuser"), "-u", SERVER_ACCOUNT, "--"]
            self._give_to_account()
        try:
            self._run("initdb", "--no-sync", "--encoding=UTF8", "--locale=C", "--auth=trust",
                      f"--pgdata={self.folder}/data")
            options = f"-c listen_addresses= -c unix_socket_directories={self.folder} -c fsync=off"
            self._run("pg_ctl", "start", "--wait", f"--pgdata={self.folder}/data", f"--log={self.folder}/log",
                      f"--options={options}")
        except BaseException:
            self._folder.cleanup()
            raise
        return self

    def __exit__(self, *_):
        self._run("pg_ctl", "stop", "--mode=immediate", "--wait", f"--pgdata={self.folder}/data")
        self._folder.cleanup()

    def _give_to_account(self):
        try:
            account = pwd.getpwnam(SERVER_ACCOUNT)
        except KeyError:
            sys.exit(f"the account {SERVER_ACCOUNT} is not there; it comes with the package postgresql")
        os.chown(self.folder, account.pw_uid, account.pw_gid)

    def _run(self, program, *arguments):
        # The server keeps the standard output that it is given: with a pipe the test would wait for the server's end.
        run = subprocess.run([*self.account, tool(program, PROGRAMS + program), *arguments], cwd=self.folder,
                             stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=TIMEOUT, check=False)
        if run.returncode:
            log = self.folder / "log"
            sys.exit(f"{program}: status {run.returncode}\n{log.read_text()[-2000:] if log.exists() else ''}")

    def rows(self, script):
        """Runs a script with psql; a statement that fails ends nothing. The lines of the results."""
        command = [*self.account, tool("psql", PROGRAMS + "psql"), "--no-psqlrc", "--quiet", "--tuples-only",
                   "--no-align", f"--host={self.folder}", "--dbname=postgres", "--file=-"]
        run = subprocess.run(command, input=b"SET standard_conforming_strings = on;\n" + script.encode(),
                             capture_output=True, cwd=self.folder, timeout=TIMEOUT, check=False)
        return run.stdout.decode().split("\n")[:-1]
