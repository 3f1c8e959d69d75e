#!/usr/bin/env python3
"""Finds lumetra's live icon in a screenshot of a tray and checks its level bars.

Usage: tray-icon.py PIXMAPS SHOT.ppm LEFT TOP MEMORY_PERCENT

PIXMAPS is the item's IconPixmap property as `gdbus call` prints it, SHOT.ppm a part of the
screen whose top-left corner is at (LEFT, TOP), MEMORY_PERCENT the memory in use when the
pixmaps were read. The icon shows two upright bars, CPU and then memory, filled from the
bottom in their level's colour. The bars must agree with that rule and the memory bar with
MEMORY_PERCENT; one of the pixmaps must be drawn in the shot pixel for pixel, its opaque fill
exactly and its translucent rim and track blended over the tray's background.

Prints "X Y SIZE" (the icon's top-left corner on the screen and its size), then lines starting
with "#" that describe it. Exits 1 with the reason when the icon is not found or its bars are
wrong.
"""

import re
import sys
from collections import Counter

# The colours of the levels on a panel: blue below 75 %, orange below 90 %, red from 90 %.
LEVEL_COLOURS = {"blue": (0x0A, 0x84, 0xFF), "orange": (0xFF, 0x95, 0x00), "red": (0xFF, 0x3B, 0x30)}


def level_colour(percent):
    return "blue" if percent < 75 else "orange" if percent < 90 else "red"


def fail(message):
    print(message)
    sys.exit(1)


def read_pixmaps(text):
    """{size: {(x, y): (a, r, g, b)}} from gdbus's `(<[(w, h, [byte 0x.., ...]), ...]>,)`."""
    pixmaps = {}
    for width, height, data in re.findall(r"\((\d+), (\d+), \[([^\]]*)\]\)", text):
        width, height = int(width), int(height)
        values = [int(b, 16) for b in re.findall(r"0x([0-9a-fA-F]{2})", data)]
        if width != height or len(values) != width * height * 4:
            continue
        # ARGB32 in network byte order: A, R, G, B for each pixel, row by row.
        pixmaps[width] = {
            (i % width, i // width): tuple(values[4 * i : 4 * i + 4]) for i in range(width * height)
        }
    return pixmaps


def read_ppm(path):
    with open(path, "rb") as f:
        data = f.read()
    fields = re.match(rb"P6\s+(\d+)\s+(\d+)\s+(\d+)\s", data)
    if not fields or fields.group(3) != b"255":
        fail(f"{path} is not an 8-bit PPM")
    width, height = int(fields.group(1)), int(fields.group(2))
    pixels = data[fields.end() :]
    return width, height, lambda x, y: tuple(pixels[3 * (y * width + x) : 3 * (y * width + x) + 3])


def runs(values):
    """Runs of consecutive integers as (first, last)."""
    result = []
    for v in sorted(values):
        if result and v == result[-1][1] + 1:
            result[-1][1] = v
        else:
            result.append([v, v])
    return [tuple(r) for r in result]


def bars(pixmap):
    """Each bar as (left, right, fill colour or None, filled rows, track rows)."""
    drawn = {xy: argb for xy, argb in pixmap.items() if argb[0] > 0}
    found = []
    for left, right in runs({x for x, _ in drawn}):
        part = {(x, y): argb for (x, y), argb in drawn.items() if left <= x <= right}
        rows = [y for _, y in part]
        fill = {(x, y): argb[1:] for (x, y), argb in part.items() if argb[0] == 255}
        colours = set(fill.values())
        if len(colours) > 1:
            fail(f"a bar at x {left}..{right} is filled in {len(colours)} colours")
        # The track sits inside a rim as thick as the strip left of the fill.
        rim = min(x for x, _ in fill) - left if fill else 1
        track = max(rows) - min(rows) + 1 - 2 * rim
        found.append((left, right, next(iter(colours), None), len({y for _, y in fill}), track))
    return found


def colour_name(rgb):
    for name, value in LEVEL_COLOURS.items():
        if value == rgb:
            return name
    return "#%02x%02x%02x" % rgb


def check_bars(size, pixmap, memory):
    found = bars(pixmap)
    if len(found) != 2:
        fail(f"the {size} px icon has {len(found)} bars, not two (CPU and memory)")
    for name, (left, right, colour, filled, track) in zip(("CPU", "memory"), found):
        if filled == 0:
            fail(f"the {size} px icon's {name} bar shows no level")
        # The levels that round to this many rows, and the colours they may have.
        low = 0.0 if filled == 1 else (filled - 0.5) / track * 100
        high = min(100.0, (filled + 0.5) / track * 100)
        allowed = {level_colour(p) for p in (low, high, 75, 90) if low <= p <= high}
        if colour_name(colour) not in allowed:
            fail(f"the {size} px icon's {name} bar is {filled} of {track} rows ({low:.0f}..{high:.0f} %) "
                 f"in {colour_name(colour)}, not in {' or '.join(sorted(allowed))}")
    _, _, colour, filled, track = found[1]
    expected = max(1, round(memory / 100 * track))
    if abs(filled - expected) > 1:
        fail(f"the {size} px icon's memory bar is {filled} of {track} rows, but {memory:.1f} % is about {expected}")
    if colour_name(colour) != level_colour(memory):
        fail(f"the {size} px icon's memory bar is {colour_name(colour)}, but {memory:.1f} % is {level_colour(memory)}")
    return found


def blended(argb, background):
    a = argb[0] / 255
    return tuple(c * a + b * (1 - a) for c, b in zip(argb[1:], background))


def near(colour, expected, slack):
    return all(abs(c - e) <= slack for c, e in zip(colour, expected))


def find_in_shot(pixmap, width, height, pixel, background):
    """Top-left corners where the pixmap is drawn 1:1 over the background."""
    opaque = [(xy, argb[1:]) for xy, argb in pixmap.items() if argb[0] == 255]
    translucent = [(xy, argb) for xy, argb in pixmap.items() if 0 < argb[0] < 255]
    if not opaque:
        return []
    (fx, fy), first = opaque[0]
    size = max(x for x, _ in pixmap) + 1
    matches = []
    for y in range(fy, height - size + fy + 1):
        for x in range(fx, width - size + fx + 1):
            if pixel(x, y) != first:
                continue
            ox, oy = x - fx, y - fy
            if not all(near(pixel(ox + px, oy + py), rgb, 2) for (px, py), rgb in opaque):
                continue
            # The rim and the track, drawn over the tray's background: most of them within a
            # few levels of the blend (the background is a gradient, not one colour).
            close = sum(near(pixel(ox + px, oy + py), blended(argb, background), 16) for (px, py), argb in translucent)
            if close >= 0.9 * len(translucent):
                matches.append((ox, oy))
    return matches


def main():
    if len(sys.argv) != 6:
        fail(__doc__)
    pixmaps = read_pixmaps(open(sys.argv[1]).read())
    if not pixmaps:
        fail("the item has no square IconPixmap")
    width, height, pixel = read_ppm(sys.argv[2])
    left, top, memory = int(sys.argv[3]), int(sys.argv[4]), float(sys.argv[5])
    background = Counter(pixel(x, y) for y in range(height) for x in range(width)).most_common(1)[0][0]
    for size in sorted(pixmaps, reverse=True):
        check_bars(size, pixmaps[size], memory)
    for size in sorted(pixmaps, key=lambda s: abs(s - 22)):
        matches = find_in_shot(pixmaps[size], width, height, pixel, background)
        if len(matches) > 1:
            fail(f"the {size} px icon is drawn {len(matches)} times")
        if matches:
            ox, oy = matches[0]
            print(left + ox, top + oy, size)
            for name, (bl, br, colour, filled, track) in zip(("CPU", "memory"), bars(pixmaps[size])):
                print(f"# {name} bar at x {left + ox + bl}..{left + ox + br}: {filled} of {track} rows in {colour_name(colour)}")
            print("# tray background #%02x%02x%02x" % background)
            return
    fail(f"none of the item's pixmaps ({', '.join(map(str, sorted(pixmaps)))} px) is drawn in the tray; "
         f"its background is #%02x%02x%02x" % background)


if __name__ == "__main__":
    main()
