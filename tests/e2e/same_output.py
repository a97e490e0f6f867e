"""Holds outputs of one job, made by two builds or on two systems, against each other: byte for byte apart from what names
time, user, machine and path."""
import re
import struct

import numpy as np

from wavtools import WaveFile

# Attributes of the metadata that tell when, by whom, where and with which build a file was made.
ATTRIBUTES_OF_THE_MAKING = [
    "Created",  # the time of the cut
    "InternalTag",  # the same, in hexadecimal
    "Folder",  # the path
    "CreatedBy",  # the user and the machine
    "TimeZoneStatus",  # the machine's time zone: the season now,
    "TimeZoneInfo",  # and the record with the names that the system has for it
    "SoftwareVersion",  # holds the day on which the program was built
]
# The same in the texts of the INFO list.
TEXTS_OF_THE_MAKING = [
    (b"ICMT", rb"Created by [^\\]+\\[^ ]+ on \d{4}-\d\d-\d\d \d\d:\d\d:\d\d, filename .*[/\\]"),
    (b"INAM", rb"\d{4}-\d\d-\d\d \d\d:\d\d$"),
]


def _metadata_without(body):
    text = body.decode("utf-16-le")
    for name in ATTRIBUTES_OF_THE_MAKING:
        text, count = re.subn(rf'\b{name}="[^"]*"', f'{name}=""', text)
        assert count == 1, f"{count} attributes {name}"
    return text


def _texts_without(body):
    texts, position = [body[:4]], 4
    while position < len(body):
        identifier, size = struct.unpack_from("<4sI", body, position)
        text = body[position + 8:position + 8 + size]
        assert len(text) == size and size % 2 == 0 and text.endswith(b"\0"), identifier
        text = text.rstrip(b"\0")
        for changing, pattern in TEXTS_OF_THE_MAKING:
            if identifier == changing:
                text = re.sub(pattern, b"", text)
        texts.append((identifier, text))
        position += 8 + size
    return texts


def assert_same_output(test, one, other):
    """The two files are the same but for the fields above and the sizes that follow from those."""
    a, b = WaveFile(one), WaveFile(other)
    a.check_complete()
    b.check_complete()
    test.assertEqual((a.form, a.identifiers), (b.form, b.identifiers))
    for identifier in a.identifiers:
        if identifier == b"data":
            same = np.array_equal(a.data(), b.data())
            test.assertTrue(same, f"the samples of {a.path.name} differ")
        elif identifier == b"auxi":
            test.assertEqual(_metadata_without(a.body(identifier)), _metadata_without(b.body(identifier)))
        elif identifier == b"LIST":
            test.assertEqual(_texts_without(a.body(identifier)), _texts_without(b.body(identifier)))
        elif identifier == b"ds64":
            test.assertEqual(a.ds64[1:], b.ds64[1:])  # all but the size of the file
        else:
            test.assertEqual(a.body(identifier), b.body(identifier), identifier)


def assert_same_outputs(test, folder, other_folder):
    """The two folders hold files of the same names, and each pair is the same."""
    names = sorted(path.name for path in folder.iterdir())
    test.assertEqual(names, sorted(path.name for path in other_folder.iterdir()))
    test.assertNotEqual(names, [])
    for name in names:
        with test.subTest(file=name):
            assert_same_output(test, folder / name, other_folder / name)
