"""Application icons, drawn: a rounded tile in two colours with a white mark on it."""

import math
import struct
import zlib

SIDE = 128


def _rounded_box(x, y, half_width, half_height, radius):
    dx, dy = abs(x) - half_width + radius, abs(y) - half_height + radius
    return math.hypot(max(dx, 0), max(dy, 0)) + min(max(dx, dy), 0) - radius


def _bars(x, y):
    return min(_rounded_box(x, y + 24, 30, 6, 6), _rounded_box(x, y, 30, 6, 6),
               _rounded_box(x + 10, y - 24, 20, 6, 6))


def _envelope(x, y):
    flap = abs(y + 20 - max(0, 26 - abs(x)) * 0.9) - 4
    return max(_rounded_box(x, y, 36, 26, 6), -flap)


def _columns(x, y):
    return min(_rounded_box(x + 22, y - 10, 7, 18, 3), _rounded_box(x, y - 2, 7, 26, 3),
               _rounded_box(x - 22, y + 6, 7, 34, 3))


def _star(x, y):
    angle = math.atan2(x, -y)
    radius = 24 + 14 * math.cos(5 * angle)
    return (math.hypot(x, y) - radius) * 0.6


def _ring(x, y):
    return abs(math.hypot(x, y) - 26) - 7


def _cards(x, y):
    front = _rounded_box(x + 8, y - 8, 26, 20, 4)
    back = _rounded_box(x - 8, y + 8, 26, 20, 4)
    return min(front, max(back, -(front - 4)))


def _grid(x, y):
    return max(_rounded_box(x, y, 34, 34, 5),
               4 - min(abs(abs(x) - 11), abs(abs(y) - 11)) - 1)


def _brush(x, y):
    u, v = (x + y) * 0.7071, (y - x) * 0.7071
    return min(_rounded_box(u + 4, v, 32, 6, 4), _rounded_box(u - 30, v, 12, 12, 11))


def _drop(x, y):
    return math.hypot(x, y - 10) - 26 if y > 0 else _rounded_box(x, y + 8, 26 * (y + 44) / 44, 36, 0)


def _bird(x, y):
    return abs(y - 10 + 24 * math.sin(abs(x) / 13)) - 6 if abs(x) < 36 else abs(x) - 30


MARKS = {"bars": _bars, "envelope": _envelope, "columns": _columns, "star": _star, "ring": _ring,
         "cards": _cards, "grid": _grid, "brush": _brush, "drop": _drop, "bird": _bird}


def _blend(below, above, amount):
    return tuple(round(b + (a - b) * amount) for b, a in zip(below, above))


def _colour(text):
    return tuple(int(text[i:i + 2], 16) for i in (1, 3, 5))


def png(mark, top, bottom):
    """The bytes of a PNG file; top and bottom are colours as "#rrggbb"."""
    top, bottom, shape = _colour(top), _colour(bottom), MARKS[mark]
    rows = bytearray()
    for row in range(SIDE):
        rows.append(0)  # no filter
        tile_colour = _blend(top, bottom, row / SIDE)
        for column in range(SIDE):
            x, y = column - SIDE / 2 + 0.5, row - SIDE / 2 + 0.5
            alpha = min(1, max(0, 0.5 - _rounded_box(x, y, 58, 58, 26)))
            pixel = _blend(tile_colour, (255, 255, 255), min(1, max(0, 0.5 - shape(x, y))))
            rows += bytes((*pixel, round(255 * alpha)))

    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))

    header = struct.pack(">IIBBBBB", SIDE, SIDE, 8, 6, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header)
            + chunk(b"IDAT", zlib.compress(bytes(rows), 9)) + chunk(b"IEND", b""))


def icns(picture):
    """An icns file that holds one PNG of 128 by 128."""
    entry = b"ic07" + struct.pack(">I", len(picture) + 8) + picture
    return b"icns" + struct.pack(">I", len(entry) + 8) + entry
