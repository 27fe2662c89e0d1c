#!/usr/bin/env python3
"""Makes the data of the sample report: sales.csv and, with the same rows, sales.db (table sales).

    python3 make_sales_data.py [FOLDER]        (the folder of this script, unless another one is given)

The texts stand in sales_texts.py. Only the standard library is used, and the same bytes come out every time: the numbers are drawn from a generator with a
fixed seed, the images are written without compression, and the header field in which the database notes the version of
its library is set to a fixed one. The files in the tree are what this script writes.
"""

import base64
import csv
import datetime
import os
import random
import sqlite3
import struct
import sys
import zlib

import sales_texts

ROWS = 3000
SEED = 20240305

# Column, type in the database.
COLUMNS = [
    ("order_id", "INTEGER"),
    ("ordered", "TEXT"),
    ("shipped", "TEXT"),
    ("product", "TEXT"),
    ("region", "TEXT"),
    ("quantity", "INTEGER"),
    ("unit_price", "REAL"),
    ("amount", "REAL"),
    ("currency", "TEXT"),
    ("discount", "REAL"),
    ("margin", "REAL"),
    ("ledger_total", "TEXT"),
    ("population", "REAL"),
    ("tolerance", "REAL"),
    ("rating", "REAL"),
    ("thumbnail", "BLOB"),
    ("ordered_at", "TEXT"),
    ("delivery_seconds", "REAL"),
    ("due", "TEXT"),
    ("comment", "TEXT"),
    ("reply", "TEXT"),
    ("note", "TEXT"),
    ("website", "TEXT"),
    ("email", "TEXT"),
    ("photo", "TEXT"),
]

# Product, price, shape of its image.
PRODUCTS = [
    ("Teapot, 1.2 l", 34.5, "disc"),
    ('27" monitor <IPS & HDR>', 329.0, "frame"),
    ("Crème brûlée set", 24.95, "disc"),
    ("Größenverstellbarer Stuhl", 189.0, "steps"),
    ("𠮷野の急須 (常滑焼)", 48.0, "disc"),
    ("青花瓷茶杯", 12.8, "ring"),
    ("한지 공책", 7.25, "frame"),
    ("Самовар «Тула»", 412.0, "diamond"),
    ("Φωτιστικό γραφείου", 59.9, "diamond"),
    ("חנוכייה מפליז", 74.0, "steps"),
    ("سجادة يدوية", 640.0, "checks"),
    ("हस्तनिर्मित थाली", 31.4, "ring"),
    ("เก้าอี้หวาย", 88.0, "steps"),
    ("Ukulele \"Aloha\"", 65.0, "stripes"),
    ("Tom & Jerry's <best> mugs", 15.49, "stripes"),
    ("Łóżko składane", 215.0, "frame"),
]

# Region, currency tag, number of inhabitants.
REGIONS = [
    ("North America", "loc:en-US", 382.0e6),
    ("Österreich & Schweiz", "loc:de-AT", 17.9e6),
    ("日本", "loc:ja-JP", 124.5e6),
    ("中国", "int:CNY", 1.4097e9),
    ("대한민국", "loc:ko-KR", 51.7e6),
    ("ישראל", "loc:he-IL", 9.8e6),
    ("مصر", "int:EGP", 112.7e6),
    ("भारत", "loc:en-IN", 1.4286e9),
    ("Ελλάδα", "loc:el-GR", 10.4e6),
    ("Saint-Pierre", "EUR", 5819.0),
    ("Tristan <da> Cunha", "int:GBP", 238.0),
]

WIDTH, HEIGHT = 24, 16


def inside(shape, x, y):
    """Whether a point of the image belongs to the shape; both run from -1 to 1."""
    if shape == "disc":
        return x * x + y * y < 0.7
    if shape == "ring":
        return 0.3 < x * x + y * y < 0.75
    if shape == "frame":
        return 0.5 < max(abs(x), abs(y)) < 0.85
    if shape == "diamond":
        return abs(x) + abs(y) < 0.85
    if shape == "steps":
        return y > -x and max(abs(x), abs(y)) < 0.85
    if shape == "stripes":
        return int((x + 1) * 4) % 2 == 0 and abs(y) < 0.8
    return (int((x + 1) * 3) + int((y + 1) * 3)) % 2 == 0


def chunk(name, body):
    return struct.pack(">I", len(body)) + name + body + struct.pack(">I", zlib.crc32(name + body))


def png(shape, colour):
    """An image of two bits a pixel: background, shade, shape, light."""
    rows = bytearray()
    for row in range(HEIGHT):
        rows.append(0)
        for start in range(0, WIDTH, 4):
            bits = 0
            for column in range(start, start + 4):
                x, y = (column + 0.5) * 2 / WIDTH - 1, (row + 0.5) * 2 / HEIGHT - 1
                pixel = 0
                if inside(shape, x, y):
                    pixel = 3 if y < -0.35 else 2
                elif inside(shape, x - 0.15, y - 0.2):
                    pixel = 1
                bits = bits << 2 | pixel
            rows.append(bits)
    # One stored block: the same bytes whichever version of zlib is there.
    packed = b"\x78\x01\x01" + struct.pack("<HH", len(rows), 0xFFFF ^ len(rows)) + bytes(rows)
    packed += struct.pack(">I", zlib.adler32(bytes(rows)))
    light = bytes(min(255, c + 60) for c in colour)
    palette = b"\xf4\xf1\xea" + b"\xc9\xc3\xb6" + bytes(colour) + light
    header = struct.pack(">IIBBBBB", WIDTH, HEIGHT, 2, 3, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"PLTE", palette) + chunk(b"IDAT", packed)
            + chunk(b"IEND", b""))


COLOURS = {
    "disc": (178, 64, 52), "ring": (42, 98, 160), "frame": (60, 60, 66), "diamond": (190, 140, 30),
    "steps": (52, 128, 84), "checks": (128, 60, 120), "stripes": (24, 130, 140),
}
IMAGES = {shape: png(shape, colour) for shape, colour in COLOURS.items()}


def draw(generator, low, high):
    """A whole number from low to high, from the one operation whose results every version of Python keeps."""
    return low + int(generator.random() * (high - low + 1))


def maybe(generator, share, value):
    """The value, or a null in that share of the rows."""
    return None if generator.random() < share else value


def ledger(generator, row):
    """A decimal number of thirty digits, its sign included every now and then."""
    if row % 97 == 0:
        return "0.000001"
    digits = "".join(str(draw(generator, 0 if place else 1, 9)) for place in range(30))
    sign = "-" if generator.random() < 0.2 else ""
    return sign + digits[:24] + "." + digits[24:]


def tolerance(generator, row):
    """A tiny or a huge number: a digit or three, times a power of ten from -9 to 18."""
    if row == 0:
        return 1e-9
    if row == 1:
        return 1e18
    return float("%d.%02de%d" % (draw(generator, 1, 9), draw(generator, 0, 99), draw(generator, -9, 17)))


def delivery(generator):
    """Seconds from the order to the door: fractions every now and then, a courier's minutes, and years on the high seas."""
    share = generator.random()
    if share < 0.1:
        return None
    if share < 0.2:
        return float(draw(generator, 240, 7000))
    if share < 0.22:
        return float(draw(generator, 100 * 86400, 900 * 86400))
    return draw(generator, 8 * 3600, 12 * 86400) + draw(generator, 0, 3) / 4


def choice(generator, values):
    return values[draw(generator, 0, len(values) - 1)]


def reply(generator):
    """An answer in HTML: its three parts are drawn one by one."""
    return choice(generator, sales_texts.GREETINGS) + choice(generator, sales_texts.ANSWERS) + choice(
        generator, sales_texts.ENDINGS)


def make_texts(generator, row):
    """Comment, reply, note, website, mail address, photo (an image of the web, here as a data URL)."""
    comment = maybe(generator, 0.3, choice(generator, sales_texts.COMMENTS))
    answer = None if comment is None else maybe(generator, 0.25, reply(generator))
    host = choice(generator, sales_texts.HOSTS)
    website = "https://" + host + choice(generator, sales_texts.PATHS)
    email = "%s%d@%s" % (choice(generator, sales_texts.NAMES), row % 89, host)
    photo = "data:image/png;base64," + base64.b64encode(IMAGES[choice(generator, sorted(IMAGES))]).decode("ascii")
    return [comment, answer, maybe(generator, 0.5, choice(generator, sales_texts.NOTES)),
            maybe(generator, 0.6, website), maybe(generator, 0.2, email), maybe(generator, 0.75, photo)]


def make_row(generator, calendar, texts, row):
    product, price, shape = PRODUCTS[draw(generator, 0, len(PRODUCTS) - 1)]
    region, currency, population = REGIONS[draw(generator, 0, len(REGIONS) - 1)]
    quantity = draw(generator, 1, 60) if generator.random() < 0.97 else draw(generator, 1000, 250000)
    if generator.random() < 0.12:
        quantity = -draw(generator, 1, 12)  # returned goods
    cents = int(price * 100 + 0.5) + draw(generator, -200, 200)
    discount = maybe(generator, 0.35, draw(generator, 0, 450) / 10)
    amount = quantity * cents * (1000 - int((discount or 0) * 10)) / 100000
    ordered = datetime.datetime(2021, 1, 1) + datetime.timedelta(seconds=draw(generator, 0, 4 * 365 * 86400))
    shipped = ordered + datetime.timedelta(seconds=draw(generator, 3600, 20 * 86400))
    return [
        9007199254740000 + row * 7,
        ordered.strftime("%Y-%m-%d"),
        maybe(generator, 0.06, shipped.strftime("%Y-%m-%d %H:%M:%S") + ".%03d" % draw(generator, 0, 999)),
        product,
        maybe(generator, 0.03, region),
        quantity,
        cents / 100,
        round(amount, 2),
        currency,
        discount,
        maybe(generator, 0.05, draw(generator, -350, 720) / 1000),
        maybe(generator, 0.04, ledger(generator, row)),
        population * 1000000000 if row % 250 == 17 else population,
        tolerance(generator, row),
        maybe(generator, 0.4, draw(generator, 2, 10) / 2),
        maybe(generator, 0.08, IMAGES[shape]),
        ordered.strftime("%Y-%m-%d %H:%M:%S"),
        delivery(calendar),
        maybe(calendar, 0.05, (ordered + datetime.timedelta(days=draw(calendar, 3, 30))).strftime("%Y-%m-%d")),
        *make_texts(texts, row),
    ]


def csv_cell(value):
    if value is None:
        return ""
    if isinstance(value, bytes):
        return base64.b64encode(value).decode("ascii")
    return repr(value) if isinstance(value, float) else str(value)


def write_csv(path, rows):
    with open(path, "w", encoding="utf-8", newline="") as out:
        writer = csv.writer(out, lineterminator="\r\n")
        writer.writerow([name for name, _ in COLUMNS])
        writer.writerows([csv_cell(value) for value in row] for row in rows)


def write_database(path, rows):
    if os.path.exists(path):
        os.remove(path)
    database = sqlite3.connect(path)
    database.execute("PRAGMA page_size = 4096")
    database.execute("CREATE TABLE sales (%s)" % ", ".join("%s %s" % column for column in COLUMNS))
    database.executemany("INSERT INTO sales VALUES (%s)" % ", ".join("?" * len(COLUMNS)), rows)
    database.commit()
    database.close()
    with open(path, "r+b") as out:
        out.seek(96)
        out.write(struct.pack(">I", 3040001))


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.abspath(__file__))
    generator = random.Random(SEED)
    # Columns that came later draw from a generator of their own, so that the older ones keep their values.
    calendar = random.Random(SEED + 1)
    texts = random.Random(SEED + 2)
    rows = [make_row(generator, calendar, texts, row) for row in range(ROWS)]
    write_csv(os.path.join(folder, "sales.csv"), rows)
    write_database(os.path.join(folder, "sales.db"), rows)


if __name__ == "__main__":
    main()
