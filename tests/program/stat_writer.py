"""Writes files of statistics packages with the tool of tests/statfiles."""

import json
import pathlib
import struct
import subprocess

from program import PROGRAM

MARKS = {f".{letter}": -7000.0 - ord(letter) for letter in "abcdefghijklmnopqrstuvwxyz"}
WRITER = pathlib.Path(PROGRAM).parent / "stat_writer"


def write_stat(path, columns, rows, **others):
    """Of the format that the file's ending names; see tests/statfiles/stat_writer.cpp for the description."""
    path = pathlib.Path(path)
    description = {"columns": columns, "rows": rows, **others}
    subprocess.run([WRITER, path.suffix[1:], path], input=json.dumps(description).encode(), check=True)
    return path.name


def write_catalogue(path, labels):
    """Value labels by format. What the writer gets wrong is put right: it counts the blocks before a block without
    their headings of 16 bytes, and has no letters of missing values, which are numbers below -7000 here."""
    write_stat(path, [], [], labels={name: [{**each, "value": MARKS.get(each["value"], each["value"])} for each in entries]
                                     for name, entries in labels.items()})
    data = bytearray(path.read_bytes())
    entry = data.find(b"XLSR")
    for before in range(len(labels)):
        place = struct.unpack_from("<H", data, entry + 8)[0]
        struct.pack_into("<H", data, entry + 8, place + 16 * before)
        entry = data.find(b"XLSR", entry + 1)
    for text, mark in MARKS.items():
        letter = bytes([0, 0, ord(text[1].upper())]) + b"\xff" * 5
        data = data.replace(struct.pack(">d", -mark), letter)
    path.write_bytes(data)


def numbers(*names):
    return [{"name": name, "type": "double"} for name in names]
