"""The page of a report in Chromium: the button behind a cut text shows all of it, and the cut text again.

    page_test.py WEBFORMAT

The report and its data are the sample's. The page is opened with a script of this test at its end that presses every
button once and once more, and writes down what stands in the cell.
"""

import csv
import json
import re
import subprocess
import sys
import tempfile
from pathlib import Path
from urllib.parse import unquote

from browser import SWITCHES, TIMEOUT
from tools import Checks, tool

EXAMPLES = Path(__file__).parent / ".." / ".." / "examples"
LIMIT = 60
ROWS = 200

# What is not plain ASCII is escaped: what a browser prints is then the text to the letter.
SCRIPT = """<script>
var seen = [];
for (const button of document.querySelectorAll(".ZoomInEnable > span")) {
  const text = button.parentNode.previousSibling, before = text.textContent;
  button.click();
  const whole = text.textContent;
  button.click();
  seen.push([before, whole, text.textContent]);
}
document.body.textContent = "SEEN" + encodeURIComponent(JSON.stringify(seen)) + "SEEN";
</script></body>"""


def notes(data):
    """What stands in the data's column of notes."""
    with open(data, encoding="utf-8", newline="") as file:
        return [row["note"] for row in csv.DictReader(file)]


def main():
    checks = Checks()
    with tempfile.TemporaryDirectory(prefix="readers") as folder:
        data, page = Path(folder, "d.csv"), Path(folder, "page.html")
        with open(EXAMPLES / "sales.csv", encoding="utf-8", newline="") as file:
            rows = list(csv.reader(file))[:ROWS + 1]
        with data.open("w", encoding="utf-8", newline="") as file:
            csv.writer(file).writerows(rows)
        subprocess.run([sys.argv[1], "report", str(EXAMPLES / "sales-report.xml"), "--data", str(data), "--output", "html",
                        "-o", str(page)], check=True)
        written = page.read_text(encoding="utf-8")
        checks.equal("ends of the page", written.count("</body>"), 1)
        page.write_text(written.replace("</body>", SCRIPT), encoding="utf-8")
        run = subprocess.run([tool("chromium"), *SWITCHES, f"--user-data-dir={folder}/profile", page.as_uri()],
                             capture_output=True, timeout=TIMEOUT, check=True)
        found = re.search("SEEN(.*?)SEEN", run.stdout.decode())
        seen = json.loads(unquote(found.group(1))) if found else []
        meant = [note for note in notes(data) if len(note) >= LIMIT]
    checks.equal("cut texts", len(seen), len(meant))
    for (before, whole, after), note in zip(seen, meant):
        checks.equal("cut text", before, note[:LIMIT] + "...")
        checks.equal("whole text", whole, note)
        checks.equal("cut text again", after, before)
    checks.end(f"The page, {len(meant)} cut texts")


if __name__ == "__main__":
    main()
