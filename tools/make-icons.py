#!/usr/bin/env python3
"""Draws the plug-in's icons into plugin/resources/icons/, as 32-bit PNG files.

    tools/make-icons.py [FOLDER]

Two pictures: "icon" (a folder of documents with a cloud; the plug-in's file system) and "folder-opened" (the path row
of the dialogs). Every size is drawn for its own pixel grid instead of being scaled from one master: straight edges lie
on whole pixels and outlines are one pixel wide, so that even the smallest size is crisp. To change a picture, change
the coordinates in the tables below, which are in pixels from the top left corner.
"""

import math
import pathlib
import struct
import sys
import zlib

# ----------------------------------------------------------------------------------------------------------------------
# Shapes: functions that answer the signed distance from a point to the shape's edge, in pixels, negative inside.


def rounded_box(left, top, right, bottom, radius):
    centre_x, centre_y = (left + right) / 2, (top + bottom) / 2
    half_width, half_height = (right - left) / 2 - radius, (bottom - top) / 2 - radius

    def distance(x, y):
        dx, dy = abs(x - centre_x) - half_width, abs(y - centre_y) - half_height
        return math.hypot(max(dx, 0), max(dy, 0)) + min(max(dx, dy), 0) - radius

    return distance


def circle(centre_x, centre_y, radius):
    return lambda x, y: math.hypot(x - centre_x, y - centre_y) - radius


def polygon(*corners):
    edges = list(zip(corners, corners[1:] + corners[:1]))

    def distance(x, y):
        nearest, inside = math.inf, False
        for (ax, ay), (bx, by) in edges:
            dx, dy = bx - ax, by - ay
            along = ((x - ax) * dx + (y - ay) * dy) / (dx * dx + dy * dy)
            along = min(max(along, 0), 1)
            nearest = min(nearest, math.hypot(x - ax - along * dx, y - ay - along * dy))
            if (ay > y) != (by > y) and x < ax + (y - ay) * dx / dy:
                inside = not inside
        return -nearest if inside else nearest

    return distance


def union(*shapes):
    return lambda x, y: min(shape(x, y) for shape in shapes)


def grown(shape, pixels):
    return lambda x, y: shape(x, y) - pixels


# ----------------------------------------------------------------------------------------------------------------------
# Painting


class Canvas:
    """A square picture with transparency; each pixel is the mean of SAMPLES x SAMPLES points."""

    SAMPLES = 8

    def __init__(self, size):
        self.size = size
        self.points = [[(0.0, 0.0, 0.0)] * (size * self.SAMPLES) for _ in range(size * self.SAMPLES)]
        self.covered = [[False] * (size * self.SAMPLES) for _ in range(size * self.SAMPLES)]

    def fill(self, shape, upper, lower=None):
        """Paints the inside of a shape, with a colour that runs from `upper` to `lower` over the shape's own height."""
        step, count = 1 / self.SAMPLES, self.size * self.SAMPLES
        inside = [
            (column, row)
            for row in range(count)
            for column in range(count)
            if shape((column + 0.5) * step, (row + 0.5) * step) <= 0
        ]
        first, last = min(row for _, row in inside), max(row for _, row in inside)
        for column, row in inside:
            share = (row - first) / max(last - first, 1)
            self.points[row][column] = mix(upper, lower or upper, share)
            self.covered[row][column] = True

    def outlined(self, shape, outline, upper, lower=None):
        """Paints a shape with an outline of one pixel that lies inside of the shape's edge."""
        self.fill(shape, outline)
        self.fill(grown(shape, -1), upper, lower)

    def pixel(self, column, row):
        """The pixel's red, green, blue (not multiplied by alpha) and alpha, as bytes."""
        positions = [
            (row * self.SAMPLES + y, column * self.SAMPLES + x)
            for y in range(self.SAMPLES)
            for x in range(self.SAMPLES)
        ]
        colours = [self.points[y][x] for y, x in positions if self.covered[y][x]]
        if not colours:
            return bytes(4)
        mean = [sum(channel) / len(colours) for channel in zip(*colours)]
        return bytes(round(channel) for channel in [*mean, 255 * len(colours) / len(positions)])

    def png(self):
        rows = b"".join(
            b"\0" + b"".join(self.pixel(column, row) for column in range(self.size)) for row in range(self.size)
        )
        header = struct.pack(">IIBBBBB", self.size, self.size, 8, 6, 0, 0, 0)
        chunks = [(b"IHDR", header), (b"IDAT", zlib.compress(rows, 9)), (b"IEND", b"")]
        return b"\x89PNG\r\n\x1a\n" + b"".join(
            struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
            for kind, data in chunks
        )


def colour(text):
    return tuple(float(channel) for channel in bytes.fromhex(text))


def mix(first, second, share):
    return tuple(a + (b - a) * share for a, b in zip(first, second))


FOLDER_EDGE = colour("b57514")
FOLDER_BACK = colour("e3a436"), colour("d8952a")
FOLDER_FRONT = colour("ffdd8a"), colour("f6bd4b")
SHEET_EDGE = colour("aab4bf")
SHEET = colour("ffffff"), colour("eef2f6")
WRITING = colour("b4bfca")
CLOUD_HALO = colour("ffffff")
CLOUD = colour("58b4ee"), colour("1f7ac8")

# ----------------------------------------------------------------------------------------------------------------------
# The pictures

# Boxes are (left, top, right, bottom, radius of the corners), circles (centre x, centre y, radius).
ICONS = {
    16: {
        "tab": (0, 1, 7, 6, 1),
        "back": (0, 3, 15, 14, 1),
        "sheet": (2, 4, 13, 12, 0),
        "writing": [],
        "front": (0, 7, 15, 14, 1),
        "cloud": [(5, 11, 15, 15, 2), (7.5, 11.5, 1.5), (11, 10.5, 2.5)],
    },
    24: {
        "tab": (1, 2, 10, 9, 1.5),
        "back": (1, 4, 22, 21, 1.5),
        "sheet": (4, 5, 19, 18, 0),
        "writing": [(6, 7, 17, 8, 0)],
        "front": (1, 9, 22, 21, 1.5),
        "cloud": [(8, 17, 23, 23, 3), (12, 17.5, 2.5), (17, 16, 4)],
    },
    32: {
        "tab": (1, 4, 13, 12, 2),
        "back": (1, 6, 29, 28, 2),
        "sheet": (5, 2, 25, 20, 1),
        "writing": [(8, 5, 22, 6, 0), (8, 8, 22, 9, 0)],
        "front": (1, 11, 29, 28, 2),
        "cloud": [(11, 23, 31, 31, 4), (16, 23.5, 3.5), (23, 21, 5)],
    },
    48: {
        "tab": (2, 6, 19, 18, 3),
        "back": (2, 9, 44, 42, 3),
        "sheet": (8, 3, 38, 30, 1),
        "writing": [(12, 7, 34, 8, 0), (12, 10, 34, 11, 0), (12, 13, 28, 14, 0)],
        "front": (2, 17, 44, 42, 3),
        "cloud": [(18, 34, 47, 46, 6), (25, 34, 6), (35.5, 31.5, 7.5)],
    },
}

# "front" is the flap: the corners of a polygon.
OPENED_FOLDERS = {
    16: {
        "tab": (0, 1, 7, 6, 1),
        "back": (0, 3, 14, 14, 1),
        "sheet": (2, 4, 12, 12, 0),
        "front": [(3, 7), (16, 7), (13, 14), (0, 14)],
    },
    32: {
        "tab": (1, 4, 13, 12, 2),
        "back": (1, 6, 27, 28, 2),
        "sheet": (5, 8, 24, 20, 1),
        "front": [(6, 13), (32, 13), (27, 28), (1, 28)],
    },
}


def draw_folder_behind(canvas, parts):
    """The folder's back and the sheet in it: all that its front then covers in part."""
    canvas.outlined(union(rounded_box(*parts["tab"]), rounded_box(*parts["back"])), FOLDER_EDGE, *FOLDER_BACK)
    canvas.outlined(rounded_box(*parts["sheet"]), SHEET_EDGE, *SHEET)
    for line in parts.get("writing", []):
        canvas.fill(rounded_box(*line), WRITING)


def draw_icon(size):
    parts, canvas = ICONS[size], Canvas(size)
    draw_folder_behind(canvas, parts)
    canvas.outlined(rounded_box(*parts["front"]), FOLDER_EDGE, *FOLDER_FRONT)
    base, *bulges = parts["cloud"]
    cloud = union(rounded_box(*base), *(circle(*bulge) for bulge in bulges))
    canvas.fill(grown(cloud, 1), CLOUD_HALO)
    canvas.fill(cloud, *CLOUD)
    return canvas


def draw_opened_folder(size):
    parts, canvas = OPENED_FOLDERS[size], Canvas(size)
    draw_folder_behind(canvas, parts)
    canvas.outlined(polygon(*parts["front"]), FOLDER_EDGE, *FOLDER_FRONT)
    return canvas


def main():
    project = pathlib.Path(__file__).resolve().parent.parent
    folder = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else project / "plugin" / "resources" / "icons"
    folder.mkdir(parents=True, exist_ok=True)
    for size in ICONS:
        (folder / f"icon{size}.png").write_bytes(draw_icon(size).png())
    for size in OPENED_FOLDERS:
        (folder / f"folder-opened{size}.png").write_bytes(draw_opened_folder(size).png())


if __name__ == "__main__":
    main()
