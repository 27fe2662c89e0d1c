"""What is written for SQL literals, between apostrophes: SQLite and PostgreSQL select the value.

    sql_test.py WEBFORMAT

Every character but U+0000 and the surrogates, the corpus through every family of formatters.py, and what the SQL
literal formatter writes, which is read as a JavaScript string first. Drill values are not encoded for SQL, by rule.
"""

import sqlite3
import sys

import corpus
from command import Command
from formatters import families
from node import values_of_literals
from postgres import Postgres
from tools import Checks

ROWS_PER_STATEMENT = 500


def select_with_sqlite(literals):
    """The value of each literal, or the error's text."""
    connection = sqlite3.connect(":memory:")

    def value_of(literal):
        try:
            return connection.execute(f"SELECT {literal}").fetchone()[0]
        except (sqlite3.Error, sqlite3.Warning) as error:
            return f"error: {error}"

    return [value_of(literal) for literal in literals]


def select_with_postgres(server, literals):
    """The value of each literal; "error" where there was none. Values travel as hexadecimal digits of their UTF-8."""
    found = ["error"] * len(literals)

    def select(numbers):
        rows = ",\n".join(f"({n}, {literals[n]})" for n in numbers)
        return f"SELECT n || ' ' || encode(convert_to(t, 'UTF8'), 'hex') FROM (VALUES {rows}) v(n, t);\n"

    def take(script):
        for row in server.rows(script):
            number, _, value = row.partition(" ")
            if number.isdigit() and int(number) < len(found):
                found[int(number)] = bytes.fromhex(value).decode()

    def groups(numbers, size):
        return [numbers[n : n + size] for n in range(0, len(numbers), size)]

    take("".join(map(select, groups(range(len(literals)), ROWS_PER_STATEMENT))))
    # A literal that is none fails its whole statement: those that it took along get one of their own.
    failed = [n for n, value in enumerate(found) if value == "error"]
    take("".join(map(select, groups(failed[:ROWS_PER_STATEMENT], 1))))
    return found


def check(checks, server, name, literals, meant):
    for reader, found in (("SQLite", select_with_sqlite(literals)),
                          ("PostgreSQL", select_with_postgres(server, literals))):
        checks.equal_texts(f"{name}, {reader}", found, meant)


def main():
    command, checks = Command(sys.argv[1]), Checks()
    texts = corpus.build()
    wide = corpus.all_characters()
    encoded = command.texts([{"do": "encode", "output": "sqlliteral", "text": text} for text in wide])
    shown = command.texts([{"factory": "sqlLiteral", "type": "varchar", "output": "text", "values": texts}])
    with Postgres() as server:
        check(checks, server, "all characters", [f"'{text}'" for text in encoded], wide)
        for family in families(texts):
            if not family.name.startswith("drill"):
                literals = [f"'{text}'" for text in family.texts(command, "sqlliteral")]
                check(checks, server, family.name, literals, family.meant_in("sqlliteral"))
        check(checks, server, "SQL literal formatter", values_of_literals(shown), texts)
    checks.end(f"SQL, {sum(map(len, wide))} characters, {len(texts)} hostile texts")


if __name__ == "__main__":
    main()
