"""Drives the built command: requests go in as JSON lines, the texts come out."""

import json
import subprocess


class Command:
    """The command under test, by the path of its program."""

    def __init__(self, program):
        self.program = program

    def answers(self, requests):
        """The response of every request, in order. Ends the test where the command fails or a request has no text."""
        lines = "".join(json.dumps(request, ensure_ascii=False) + "\n" for request in requests)
        run = subprocess.run([self.program, "batch"], input=lines.encode(), capture_output=True, check=False)
        answers = [json.loads(line) for line in run.stdout.decode().split("\n") if line]
        if run.returncode or len(answers) != len(requests):
            raise SystemExit(f"webformat batch: status {run.returncode}, {len(answers)} answers to {len(requests)} "
                             f"requests: {run.stderr.decode(errors='replace')[:500]}")
        return answers

    def texts(self, requests):
        """All texts of all requests in one list. A response without texts, or with an assertion, ends the test."""
        texts = []
        for request, answer in zip(requests, self.answers(requests)):
            found = answer.get("texts", [answer["text"]] if "text" in answer else None)
            if found is None or "assertions" in answer:
                raise SystemExit(f"no text: {json.dumps(answer)[:500]} to the request {json.dumps(request)[:1000]}")
            texts += found
        return texts

    def list(self, what):
        """What `webformat list` prints, a line an entry."""
        run = subprocess.run([self.program, "list", what], capture_output=True, check=True)
        return run.stdout.decode().split("\n")[:-1]
