#!/usr/bin/env python3
"""Draws the toolkit's small icons as 20x20 PNG files into this folder (standard library only)."""
import math
import os
import struct
import zlib

SIZE = 20
HERE = os.path.dirname(os.path.abspath(__file__))


def png(path, pixels):
    rows = b"".join(b"\x00" + bytes(c for px in row for c in px) for row in pixels)
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF)
    head = struct.pack(">IIBBBBB", SIZE, SIZE, 8, 6, 0, 0, 0)
    with open(path, "wb") as f:
        f.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


def draw(inside, colour=(225, 225, 225)):
    """inside(x, y) gives coverage 0..1 for the pixel centre (x, y), y downward."""
    out = []
    for y in range(SIZE):
        row = []
        for x in range(SIZE):
            a = 0.0
            for sx in (0.25, 0.75):
                for sy in (0.25, 0.75):
                    a += 0.25 if inside(x + sx, y + sy) else 0.0
            row.append((*colour, int(round(a * 255))))
        out.append(row)
    return out


def near_segment(px, py, ax, ay, bx, by, w):
    dx, dy = bx - ax, by - ay
    t = max(0.0, min(1.0, ((px - ax) * dx + (py - ay) * dy) / (dx * dx + dy * dy)))
    return math.hypot(px - ax - t * dx, py - ay - t * dy) <= w


def arc_arrow(mirror):
    def inside(x, y):
        if mirror:
            x = SIZE - x
        r = math.hypot(x - 10, y - 11)
        ang = math.degrees(math.atan2(y - 11, x - 10))
        on_arc = 5 <= r <= 7.2 and (ang > -150 and ang < 100)
        head = near_segment(x, y, 4.5, 3.5, 4.5, 9.5, 1.3) or near_segment(x, y, 4.5, 9.5, 10.0, 9.5, 1.3)
        return on_arc or head
    return inside


def gallery(x, y):
    cells = [(3, 3), (11, 3), (3, 11), (11, 11)]
    return any(cx <= x <= cx + 6 and cy <= y <= cy + 6 for cx, cy in cells)


def close(x, y):
    return near_segment(x, y, 5, 5, 15, 15, 1.4) or near_segment(x, y, 15, 5, 5, 15, 1.4)


def menu(x, y):
    return any(near_segment(x, y, 4, yy, 16, yy, 1.1) for yy in (6, 10, 14))


def arrow_up(x, y):
    shaft = near_segment(x, y, 10, 6, 10, 17, 1.2)
    head = near_segment(x, y, 10, 3.5, 5, 9, 1.2) or near_segment(x, y, 10, 3.5, 15, 9, 1.2)
    return shaft or head


if __name__ == "__main__":
    png(os.path.join(HERE, "undo.png"), draw(arc_arrow(False)))
    png(os.path.join(HERE, "redo.png"), draw(arc_arrow(True)))
    png(os.path.join(HERE, "GallNav.png"), draw(gallery))
    png(os.path.join(HERE, "close.png"), draw(close))
    png(os.path.join(HERE, "menu.png"), draw(menu))
    png(os.path.join(HERE, "arrow-up.png"), draw(arrow_up))
