#!/usr/bin/env python3
"""Draws the program's icon and its four mouse cursors into resources/. Run it after changing a shape."""

import math
import os
import struct
import zlib

OUT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "resources")
SAMPLES = 4  # per pixel and direction


# --- shapes: functions of (x, y) in a unit that is 1/32 of the picture, true inside ----------------------


def polygon(points):
    def inside(x, y):
        hit = False
        for (x0, y0), (x1, y1) in zip(points, points[1:] + points[:1]):
            if (y0 > y) != (y1 > y) and x < (x1 - x0) * (y - y0) / (y1 - y0) + x0:
                hit = not hit
        return hit

    return inside


def stroke(points, width):
    def inside(x, y):
        for (x0, y0), (x1, y1) in zip(points, points[1:]):
            length = (x1 - x0) ** 2 + (y1 - y0) ** 2
            t = 0 if length == 0 else max(0, min(1, ((x - x0) * (x1 - x0) + (y - y0) * (y1 - y0)) / length))
            if max(abs(x - x0 - t * (x1 - x0)), abs(y - y0 - t * (y1 - y0))) <= width / 2:
                return True
        return False

    return inside


def round_stroke(points, width):
    def inside(x, y):
        for (x0, y0), (x1, y1) in zip(points, points[1:]):
            length = (x1 - x0) ** 2 + (y1 - y0) ** 2
            t = 0 if length == 0 else max(0, min(1, ((x - x0) * (x1 - x0) + (y - y0) * (y1 - y0)) / length))
            if math.hypot(x - x0 - t * (x1 - x0), y - y0 - t * (y1 - y0)) <= width / 2:
                return True
        return False

    return inside


def ring(cx, cy, radius, width):
    return lambda x, y: abs(math.hypot(x - cx, y - cy) - radius) <= width / 2


def tile(x0, y0, x1, y1, radius):
    def inside(x, y):
        dx = max(x0 + radius - x, 0, x - (x1 - radius))
        dy = max(y0 + radius - y, 0, y - (y1 - radius))
        return x0 <= x <= x1 and y0 <= y <= y1 and math.hypot(dx, dy) <= radius

    return inside


def union(*shapes):
    return lambda x, y: any(shape(x, y) for shape in shapes)


def coverage(shape, size):
    """How much of each pixel lies inside, 0 to 1."""
    step = 32 / size / SAMPLES
    rows = []
    for py in range(size):
        row = []
        for px in range(size):
            hits = sum(
                shape((px * SAMPLES + i + 0.5) * step, (py * SAMPLES + j + 0.5) * step)
                for j in range(SAMPLES)
                for i in range(SAMPLES)
            )
            row.append(hits / SAMPLES**2)
        rows.append(row)
    return rows


# --- the icon: two waves and a bus on a dark tile -------------------------------------------------------

ICON_LAYERS = [
    (tile(1, 1, 31, 31, 5), (18, 46, 74)),
    (tile(2.2, 2.2, 29.8, 29.8, 4), (24, 62, 98)),
    (stroke([(4.5, 12), (8.5, 12), (8.5, 6.5), (15, 6.5), (15, 12), (21, 12), (21, 6.5), (27.5, 6.5)], 2), (122, 224, 120)),
    (stroke([(4.5, 15.75), (27.5, 15.75)], 0.5), (70, 112, 150)),
    (
        union(
            round_stroke([(4.5, 19.8), (13, 19.8), (16.5, 26), (27.5, 26)], 1.9),
            round_stroke([(4.5, 26), (13, 26), (16.5, 19.8), (27.5, 19.8)], 1.9),
        ),
        (255, 204, 92),
    ),
]


def icon_pixels(size):
    """Rows of (blue, green, red, alpha), top to bottom."""
    pixels = [[(0.0, 0.0, 0.0, 0.0)] * size for _ in range(size)]
    for shape, (red, green, blue) in ICON_LAYERS:
        for y, row in enumerate(coverage(shape, size)):
            for x, cover in enumerate(row):
                b, g, r, a = pixels[y][x]
                alpha = cover + a * (1 - cover)
                if alpha == 0:
                    continue

                def mix(new, old):
                    return (new * cover + old * a * (1 - cover)) / alpha

                pixels[y][x] = (mix(blue, b), mix(green, g), mix(red, r), alpha)
    return [[(round(b), round(g), round(r), round(a * 255)) for b, g, r, a in row] for row in pixels]


def bitmap_header(size, bits):
    return struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, bits, 0, 0, 0, 0, 0, 0)


def icon_bitmap(size):
    rows = icon_pixels(size)
    body = b"".join(bytes(pixel) for row in reversed(rows) for pixel in row)
    return bitmap_header(size, 32) + body + mask_bytes([[pixel[3] == 0 for pixel in row] for row in rows])


def icon_png(size):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = icon_pixels(size)
    raw = b"".join(b"\0" + b"".join(bytes((r, g, b, a)) for b, g, r, a in row) for row in rows)
    header = struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b"")


def mask_bytes(rows):
    """One bit per pixel, bottom row first, rows padded to 32 bits."""
    out = b""
    for row in reversed(rows):
        bits = 0
        for on in row:
            bits = bits << 1 | bool(on)
        padded = (len(row) + 31) // 32 * 32
        out += (bits << (padded - len(row))).to_bytes(padded // 8, "big")
    return out


# --- the cursors: black shapes with a white rim, one bit per pixel ---------------------------------------

ARROW = polygon([(1, 1), (1, 17.5), (5, 13.8), (7.8, 19.6), (10.4, 18.4), (7.7, 12.8), (13, 12.8)])
CURSORS = {
    # name: (shape, hot spot)
    "zoom": (union(ring(12, 12, 8, 2), round_stroke([(18, 18), (27, 27)], 4)), (12, 12)),
    "select": (
        union(ARROW, stroke([(13, 26.5), (17, 26.5), (17, 20.5), (24, 20.5), (24, 26.5), (28, 26.5)], 2)),
        (1, 1),
    ),
    "query": (
        union(
            ARROW,
            round_stroke(
                [(17.5, 18), (18.2, 15.6), (20.5, 14.5), (23, 15.3), (24, 17.5), (22.8, 19.7), (20.8, 21.2), (20.6, 23.2)],
                2.2,
            ),
            tile(19.4, 25.2, 21.8, 27.6, 0.4),
        ),
        (1, 1),
    ),
    "resize": (
        union(
            stroke([(14, 6), (14, 26)], 2),
            stroke([(18, 6), (18, 26)], 2),
            polygon([(1.5, 16), (8, 9.5), (8, 14.9), (11.5, 14.9), (11.5, 17.1), (8, 17.1), (8, 22.5)]),
            polygon([(30.5, 16), (24, 9.5), (24, 14.9), (20.5, 14.9), (20.5, 17.1), (24, 17.1), (24, 22.5)]),
        ),
        (16, 16),
    ),
}


def cursor_bitmap(shape, size):
    black = [[cover >= 0.5 for cover in row] for row in coverage(shape, size)]
    reach = size // 32

    def near(x, y):
        return any(
            black[j][i]
            for j in range(max(0, y - reach), min(size, y + reach + 1))
            for i in range(max(0, x - reach), min(size, x + reach + 1))
        )

    rim = [[near(x, y) and not black[y][x] for x in range(size)] for y in range(size)]
    outside = [[not (black[y][x] or rim[y][x]) for x in range(size)] for y in range(size)]
    palette = struct.pack("<II", 0, 0xFFFFFF)
    return bitmap_header(size, 1) + palette + mask_bytes(rim) + mask_bytes(outside)


# --- the files --------------------------------------------------------------------------------------------


def write_group(path, kind, images):
    """kind 1: icons, (size, bits, data); kind 2: cursors, (size, hot x and y, data)."""
    offset = 6 + 16 * len(images)
    entries = body = b""
    for size, extra, data in images:
        first, second = (1, extra) if kind == 1 else extra
        entries += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, first, second, len(data), offset + len(body))
        body += data
    with open(path, "wb") as out:
        out.write(struct.pack("<HHH", 0, kind, len(images)) + entries + body)


def main():
    icons = [(size, 32, icon_bitmap(size)) for size in (16, 20, 24, 32, 48, 64)] + [(256, 32, icon_png(256))]
    write_group(os.path.join(OUT, "kelvane.ico"), 1, icons)
    for name, (shape, hot) in CURSORS.items():
        images = [
            (size, (hot[0] * size // 32, hot[1] * size // 32), cursor_bitmap(shape, size)) for size in (32, 48, 64)
        ]
        write_group(os.path.join(OUT, name + ".cur"), 2, images)


main()
