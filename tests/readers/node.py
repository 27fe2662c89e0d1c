"""Reads JavaScript string literals with Node."""

import json
import subprocess
from pathlib import Path

from tools import tool


def read_literals(literals):
    """Evaluates each literal in either quotes: how often a script ran, and [[in ", in '], ...]."""
    run = subprocess.run([tool("node"), Path(__file__).with_name("read_literals.js")],
                         input=json.dumps(literals).encode(), capture_output=True, check=False)
    if run.returncode:
        raise SystemExit(f"node: status {run.returncode}: {run.stderr.decode(errors='replace')[:1000]}")
    report = json.loads(run.stdout)
    return report["scripts"], report["values"]


def values_of_literals(literals):
    """The value of each literal in double quotes."""
    return [double for double, _ in read_literals(literals)[1]]
