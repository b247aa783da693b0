#!/usr/bin/env python3
"""Makes a rich-text package of a Markdown document.

  make_rtfd.py SOURCE.md PICTURES OUT.rtfd

Of Markdown it knows what the documents here use: headings, paragraphs, lists with "-" and "1.",
pictures on a line of their own, **bold**, *italic*, `keys and names`, and [links](address).
"""

import pathlib
import re
import shutil
import struct
import sys

# Sizes in half points, lengths in twentieths of a point.
NORMAL_SIZE = 24
HEADING_SIZES = {1: 44, 2: 30, 3: 25}
PARAGRAPH = r"\pard\sa160\sl264\slmult1"
LIST_ITEM = r"\pard\li480\fi-320\tx480\sa80\sl264\slmult1"
PICTURE = r"\pard\qc\sb80\sa240"
PICTURE_WIDTH = 8400

HEADER = (r"{\rtf1\ansi\ansicpg1252\uc0" "\n"
          r"{\fonttbl\f0\fswiss\fcharset0 Sans;\f1\fmodern\fcharset0 Mono;}" "\n"
          r"{\colortbl;}" "\n"
          rf"\f0\fs{NORMAL_SIZE}\cf0" "\n")

INLINE = re.compile(r"\*\*(?P<bold>.+?)\*\*|\*(?P<italic>.+?)\*|`(?P<mono>.+?)`"
                    r"|\[(?P<text>[^\]]+)\]\((?P<address>[^)]+)\)")


def escaped(text):
    """Text as RTF writes it: ASCII alone."""
    result = []
    for character in text:
        if character in "\\{}":
            result.append("\\" + character)
        elif character < "\x7f":
            result.append(character)
        else:
            units = character.encode("utf-16-le")
            result += [rf"\u{unit} " for (unit,) in struct.iter_unpack("<h", units)]
    return "".join(result)


def inline(text):
    """One paragraph's text with its emphasis and links."""
    result = []
    end = 0
    for match in INLINE.finditer(text):
        result.append(escaped(text[end:match.start()]))
        end = match.end()
        if match["bold"]:
            result.append(r"{\b " + inline(match["bold"]) + "}")
        elif match["italic"]:
            result.append(r"{\i " + inline(match["italic"]) + "}")
        elif match["mono"]:
            result.append(r"{\f1 " + escaped(match["mono"]) + "}")
        else:
            result.append(r'{\field{\*\fldinst{HYPERLINK "' + escaped(match["address"]) +
                          r'"}}{\fldrslt ' + escaped(match["text"]) + "}}")
    return "".join(result) + escaped(text[end:])


def blocks(source):
    """The document as (kind, text): lines that belong together joined."""
    kind = text = None
    for line in source.splitlines() + [""]:
        heading = re.fullmatch(r"(#+) (.+)", line)
        picture = re.fullmatch(r"!\[[^\]]*\]\(([^)/]+)\)", line)
        item = re.fullmatch(r"(-|\d+\.) (.+)", line)
        if text is not None and (heading or picture or item or not line.strip()):
            yield kind, text
            text = None
        if heading:
            yield len(heading[1]), heading[2]
        elif picture:
            yield "picture", picture[1]
        elif item:
            kind, text = item[1], item[2]
        elif line.strip():
            kind, text = ("text", line) if text is None else (kind, f"{text} {line.strip()}")


def picture_size(path):
    """Width and height of a PNG file."""
    header = path.read_bytes()[:24]
    if header[:8] != b"\x89PNG\r\n\x1a\n":
        sys.exit(f"make_rtfd: {path} is no PNG file")
    return struct.unpack(">II", header[16:24])


def rtf(source, pictures):
    """The text of the package, and the names of the pictures in it."""
    result = [HEADER]
    used = []
    for kind, text in blocks(source):
        if kind in HEADING_SIZES:
            before = 0 if kind == 1 else 280
            result.append(rf"\pard\sb{before}\sa120{{\b\fs{HEADING_SIZES[kind]} " + inline(text) +
                          r"}\par")
        elif kind == "picture":
            if (pictures / text).is_file():
                width, height = picture_size(pictures / text)
                used.append(text)
                result.append(rf"{PICTURE} {{{{\NeXTGraphic {text} \width{PICTURE_WIDTH}"
                              rf"\height{PICTURE_WIDTH * height // width}}}\'ac}}\par")
        elif kind == "text":
            result.append(f"{PARAGRAPH} {inline(text)}" r"\par")
        else:
            mark = r"\bullet" if kind == "-" else " " + kind
            result.append(rf"{LIST_ITEM}{{\listtext{mark}\tab}}{inline(text)}\par")
    return "\n".join(result) + "}\n", used


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    source, pictures, package = (pathlib.Path(argument) for argument in sys.argv[1:])
    text, used = rtf(source.read_text(encoding="utf-8"), pictures)
    shutil.rmtree(package, ignore_errors=True)
    package.mkdir(parents=True)
    for name in used:
        shutil.copyfile(pictures / name, package / name)
    (package / "TXT.rtf").write_text(text, encoding="ascii", newline="\n")


if __name__ == "__main__":
    main()
