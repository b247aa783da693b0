#!/usr/bin/env python3
"""Writes the seeds that fuzzing property lists starts from into corpus/, one small file each."""

import datetime
import pathlib
import plistlib
import struct

CORPUS = pathlib.Path(__file__).parent / "corpus"

RECORD = {
    "MenuItemTitle": "Save As…",
    "OriginalKeyCommands": {"kc": 1, "cK": 83, "mod": 0x300, "t": "Save As…"},
    "NewKeyCommands": {"kc": -1, "mod": 0},
    "MenuPath": [{"MenuItemTitle": "File"}, {"MenuItemTitle": "Save As…"}],
}

VALUES = {
    "booleans": [True, False],
    "integers": [0, 1, 255, 256, 65536, 2**32, 2**63 - 1, 2**64 - 1, -1, -(2**63)],
    "reals": [0.0, -0.0, 1.5, 1e308, 5e-324, float("nan"), float("inf"), float("-inf")],
    "strings": ["", "plain", "é", "😀", "a<b>&\"'", "tab\tline\n", "x" * 15, "x" * 300],
    "data": [b"", b"\x00\xff", b"d" * 15, b"d" * 300],
    "dates": [datetime.datetime(2001, 1, 1), datetime.datetime(1, 1, 1),
              datetime.datetime(9999, 12, 31, 23, 59, 59)],
    "empty": [[], {}],
    "nested": [[[[[{"a": [{"b": []}]}]]]]],
    "twins": {"b": [1, 1.0, True], "a": [1, 1.0, True]},
    "shortcuts": {"MenuShortcuts": {"com.example.editor": [{"ParentTitle": "File",
                                                            "Keys": [RECORD]}]}},
    "uid": {"CF$UID": 7},
}

DOCTYPE = ('<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" '
           '"http://www.apple.com/DTDs/PropertyList-1.0.dtd">')

XML = {
    "hexadecimal": "<plist><array><integer>0xFf</integer><integer>-0x10</integer></array></plist>",
    "numbers": "<plist><array><real>infinity</real><real>1e999</real><integer>+7</integer>"
               "</array></plist>",
    "bare": "<string>no root</string>",
    "comments": "<?xml version='1.0'?><!-- a --><plist><!-- b --><true/><?pi?></plist>",
    "cdata": "<plist><string>a<![CDATA[<b>&amp;]]>c&#x1F600;&#13;&lt;</string></plist>",
    "doctype": DOCTYPE + "<plist version='1.0'><false/></plist>",
    "entities": "<!DOCTYPE plist [<!ENTITY a 'aaaa'><!ENTITY b '&a;&a;'>]>"
                "<plist><string>&b;</string></plist>",
    "duplicate_keys": "<plist><dict><key>a</key><true/><key>a</key><false/></dict></plist>",
    "fraction": "<plist><date>2010-02-03T04:05:06.75Z</date></plist>",
    "spaced_data": "<plist><data>\n\tAAEC\n\tAw==\n</data></plist>",
    "no_value": "<plist><dict><key>a</key></dict></plist>",
    "two_values": "<plist><true/><true/></plist>",
    "utf16": "<plist><string>wide</string></plist>".encode("utf-16"),
}


def binary(objects, top=0, offset_width=1, reference_width=1):
    """A binary property list of objects that are encoded already."""
    out = b"bplist00"
    offsets = []
    for encoded in objects:
        offsets.append(len(out))
        out += encoded
    table = len(out)
    for offset in offsets:
        out += offset.to_bytes(offset_width, "big")
    return out + struct.pack(">6xBBQQQ", offset_width, reference_width, len(objects), top, table)


BINARY = {
    "single_precision": binary([b"\x22" + struct.pack(">f", 0.1)]),
    "int128": binary([b"\x14" + (2**64 - 1).to_bytes(16, "big")]),
    "negative_int128": binary([b"\x14" + (-5).to_bytes(16, "big", signed=True)]),
    "lone_surrogate": binary([b"\x61\xd8\x00"]),
    "control_characters": binary([b"\x53\x00\x01\x7f"]),
    "set": binary([b"\xc2\x01\x02", b"\x09", b"\x08"]),
    "date_nan": binary([b"\x33" + struct.pack(">d", float("nan"))]),
    "date_far": binary([b"\x33" + struct.pack(">d", 1e300)]),
    "uid": binary([b"\xa2\x01\x02", b"\x80\x05", b"\x87" + b"\xff" * 8]),
    "uid_lookalike": binary([b"\xd1\x01\x02", b"\x56CF$UID", b"\x10\x07"]),
    "cycle": binary([b"\xa1\x00"]),
    "shared": binary([b"\xa2\x01\x01", b"\xa2\x02\x02", b"\xa2\x03\x03", b"\x51x"]),
    "spreading": binary([bytes([0xA2, i + 1, i + 1]) for i in range(40)] + [b"\x09"]),
    "duplicate_keys": binary([b"\xd2\x01\x01\x02\x03", b"\x51k", b"\x08", b"\x09"]),
    "equal_keys": binary([b"\xd2\x01\x02\x03\x03", b"\x51k", b"\x51k", b"\x09"]),
    "number_key": binary([b"\xd1\x01\x01", b"\x10\x01"]),
    "wide": binary([b"\xa1" + (1).to_bytes(8, "big"), b"\x09"], 0, 8, 8),
    "three_bytes": binary([b"\xa1" + (1).to_bytes(3, "big"), b"\x09"], 0, 3, 3),
    "long_count": binary([b"\x4f\x13" + (2**62).to_bytes(8, "big")]),
}


def main():
    for folder in ("binary_plist", "xml_plist"):
        (CORPUS / folder).mkdir(parents=True, exist_ok=True)
    for name, value in VALUES.items():
        (CORPUS / "binary_plist" / name).write_bytes(
            plistlib.dumps(value, fmt=plistlib.FMT_BINARY))
        (CORPUS / "xml_plist" / name).write_bytes(plistlib.dumps(value))
    for name, content in BINARY.items():
        (CORPUS / "binary_plist" / name).write_bytes(content)
    for name, text in XML.items():
        content = text if isinstance(text, bytes) else text.encode()
        (CORPUS / "xml_plist" / name).write_bytes(content)


if __name__ == "__main__":
    main()
