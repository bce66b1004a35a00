#!/usr/bin/env python3
"""Writes the benchmark's own documents into bench/data, each stressing what canada.json,
citm_catalog.json and twitter.json do not. Deterministic: the same bytes on every run.

    python3 bench/generate_data.py

- numbers.json: one long array of numbers, doubles of 1 to 17 significant digits with and
  without exponents, and integers of every size up to 32 bits, as tables and logs hold them;
- deep.json: many values nested 30 levels deep, objects and arrays in turn (within every peer's
  limit: json-c refuses more than 32 levels);
- escapes.json: many short strings full of escape sequences, \\u escapes of every plane included;
- names.json: records whose member names are outside ASCII (Latin, Cyrillic, Greek, CJK,
  emoji), indented.
"""
import json
import random
from pathlib import Path

DATA = Path(__file__).resolve().parent / "data"
TARGET = 1_000_000  # bytes, about, per document


def numbers(rnd):
    values = []
    size = 2
    while size < TARGET:
        kind = rnd.randrange(5)
        if kind == 0:
            text = str(rnd.randrange(-2**31 + 1, 2**31))
        elif kind == 1:
            text = str(rnd.randrange(0, 1000))
        elif kind == 2:
            text = repr(rnd.uniform(-1000, 1000))  # shortest round-trip text, up to 17 digits
        elif kind == 3:
            digits = rnd.randrange(1, 18)
            text = f"{rnd.uniform(-1, 1):.{digits}g}"
        else:
            text = f"{rnd.uniform(1, 10):.{rnd.randrange(1, 16)}f}e{rnd.randrange(-300, 300)}"
        values.append(text)
        size += len(text) + 1
    return "[" + ",".join(values) + "]"


def deep(rnd):
    def nest(level):
        if level == 0:
            return rnd.choice(['1', '"leaf"', 'true', 'null', '2.5'])
        inner = nest(level - 1)
        if level % 2:
            return f'{{"k{level}":{inner},"n":{level}}}'
        return f'[{inner},{level}]'
    items, size = [], 2
    while size < TARGET:
        item = nest(30)
        items.append(item)
        size += len(item) + 1
    return "[" + ",".join(items) + "]"


ESCAPES = ['\\n', '\\t', '\\"', '\\\\', '\\/', '\\b', '\\f', '\\r', '\\u00e9', '\\u20ac',
           '\\ud83d\\ude00', '\\u0041', '\\u4e2d']


def escapes(rnd):
    items, size = [], 2
    while size < TARGET:
        parts = []
        for _ in range(rnd.randrange(1, 6)):
            parts.append(rnd.choice(ESCAPES))
            parts.append("".join(rnd.choice("abcdefghij ") for _ in range(rnd.randrange(0, 6))))
        text = '"' + "".join(parts) + '"'
        items.append(text)
        size += len(text) + 1
    return "[" + ",".join(items) + "]"


NAMES = ["naïveté", "über", "ключ", "значение", "λόγος", "πόλη", "名前", "値段", "住所",
         "😀emoji", "café", "straße", "año", "日本語", "данные", "ñandú"]


def names(rnd):
    records = []
    size = 2
    while size < TARGET:
        record = {f"{rnd.choice(NAMES)}{i}": rnd.choice([rnd.randrange(1000), "texto", True, None])
                  for i in range(rnd.randrange(3, 12))}
        records.append(record)
        size += len(json.dumps(record, ensure_ascii=False, indent=2).encode()) + 2
    return json.dumps(records, ensure_ascii=False, indent=2)


def main():
    for name, make in [("numbers.json", numbers), ("deep.json", deep), ("escapes.json", escapes),
                       ("names.json", names)]:
        text = make(random.Random(name))
        json.loads(text)  # every document is JSON
        (DATA / name).write_bytes(text.encode() + b"\n")
        print(f"{name}: {len(text.encode())} bytes")


if __name__ == "__main__":
    main()
