#!/usr/bin/env python3
"""Draws the pictures that ship with Velmara: noisy.png and noisy-harbour.jpg.

Everything is computed from fixed seeds, so a second run gives the same pixels:

  noisy.png          256 x 256 RGB, photo-like, Gaussian noise of standard deviation 12 on every
                     sample: the picture the processing speed is measured on.
  noisy-harbour.jpg  1440 x 1080 stored, shown upright as 1080 x 1440 by its orientation tag, with
                     signal-dependent noise as of a small sensor at a high sensitivity.

Needs Python's standard library; the JPEG also needs the commands vips and exiv2.
"""

import math
import pathlib
import random
import struct
import subprocess
import tempfile
import zlib

HERE = pathlib.Path(__file__).resolve().parent


def write_png(path, width, height, rows):
    def chunk(kind, body):
        crc = zlib.crc32(kind + body)
        return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", crc)

    raw = b"".join(b"\0" + bytes(row) for row in rows)
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header)
                     + chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b""))


class ValueNoise:
    """Smooth noise in 0..1: random values on a lattice, joined by smoothstep."""

    def __init__(self, seed):
        rng = random.Random(seed)
        self.values = [rng.random() for _ in range(4096)]

    def at(self, x, y):
        ix, iy = math.floor(x), math.floor(y)
        fx, fy = x - ix, y - iy
        fx, fy = fx * fx * (3 - 2 * fx), fy * fy * (3 - 2 * fy)
        v = self.values

        def corner(a, b):
            return v[(a * 73 + b * 1021) & 4095]

        top = corner(ix, iy) * (1 - fx) + corner(ix + 1, iy) * fx
        bottom = corner(ix, iy + 1) * (1 - fx) + corner(ix + 1, iy + 1) * fx
        return top * (1 - fy) + bottom * fy

    def fractal(self, x, y, octaves):
        total, weight, norm = 0.0, 1.0, 0.0
        for _ in range(octaves):
            total += weight * self.at(x, y)
            norm += weight
            x, y, weight = 2.03 * x + 17.1, 2.03 * y + 5.7, 0.5 * weight
        return total / norm


def mix(a, b, t):
    t = min(1.0, max(0.0, t))
    return tuple(p + (q - p) * t for p, q in zip(a, b))


def smooth_edge(distance, softness):
    """0 outside, 1 inside, across an edge `softness` wide."""
    t = min(1.0, max(0.0, 0.5 - distance / softness))
    return t * t * (3 - 2 * t)


class Harbour:
    """A quiet bay at dusk: sky, hills, a lighthouse, a boat and their reflection.

    Coordinates run from 0 to 1 across and from 0 to the aspect ratio downwards.
    """

    HORIZON = 0.74

    def __init__(self):
        self.clouds = ValueNoise(1)
        self.hills = ValueNoise(2)
        self.texture = ValueNoise(3)
        self.waves = ValueNoise(4)

    def sky(self, x, y):
        t = y / self.HORIZON
        colour = mix((38, 58, 104), (120, 108, 142), t * 1.3)
        colour = mix(colour, (240, 158, 104), (t - 0.5) * 2.0)
        sun = math.hypot(x - 0.68, (y - 0.60) * 1.05)
        colour = mix(colour, (255, 214, 150), 0.8 * math.exp(-(sun / 0.20) ** 2))
        colour = mix(colour, (255, 241, 208), smooth_edge(sun - 0.052, 0.006))
        cloud = self.clouds.fractal(x * 3.2, y * 9.0, 5)
        return mix(colour, mix((70, 62, 96), (252, 176, 132), t), (cloud - 0.52) * 2.6)

    def hill_height(self, x, index):
        base = (0.10, 0.055)[index]
        return base + (0.10, 0.07)[index] * self.hills.fractal(x * (3.0, 5.0)[index] + 9 * index, index, 4)

    def land(self, x, y, colour):
        for index, tint in enumerate(((74, 74, 104), (38, 46, 62))):
            edge = self.HORIZON - self.hill_height(x, index)
            inside = smooth_edge(edge - y, 0.003)
            leaf = self.texture.fractal(x * 90, y * 90, 3) - 0.5
            shade = tuple(c * (1 + 0.5 * leaf) for c in tint)
            colour = mix(colour, shade, inside)
        return colour

    def lighthouse(self, x, y, colour):
        top, foot = 0.40, self.HORIZON
        if top < y < foot:
            half = 0.018 + 0.016 * (y - top) / (foot - top)
            inside = smooth_edge(abs(x - 0.24) - half, 0.003)
            band = (y - top) / (foot - top) * 6 % 2 < 1
            light = 1.0 - 0.45 * (x - 0.24 + half) / (2 * half)
            paint = (222, 212, 204) if band else (164, 48, 44)
            colour = mix(colour, tuple(c * light for c in paint), inside)
        lamp = max(abs(x - 0.24) - 0.015, abs(y - (top - 0.018)) - 0.018)
        colour = mix(colour, (255, 236, 170), smooth_edge(lamp, 0.003))
        roof = max(y - (top - 0.036), (top - 0.066) - y, abs(x - 0.24) - (y - (top - 0.066)) * 0.8)
        colour = mix(colour, (58, 34, 36), smooth_edge(roof, 0.003))
        glow = math.hypot(x - 0.24, y - (top - 0.018))
        return mix(colour, (255, 226, 160), 0.55 * math.exp(-(glow / 0.05) ** 2))

    def boat(self, x, y, colour):
        dx, deck = x - 0.60, self.HORIZON + 0.10
        hull = max(deck - y, y - (deck + 0.035), abs(dx) - (0.125 - (y - deck) * 1.1))
        plank = 1 - 0.18 * (int((y - deck) * 260) % 3 == 0)
        colour = mix(colour, tuple(c * plank for c in (146, 84, 48)), smooth_edge(hull, 0.003))
        mast = max(abs(dx + 0.01) - 0.0035, deck - 0.30 - y, y - deck)
        colour = mix(colour, (52, 38, 32), smooth_edge(mast, 0.002))
        rise = (deck - 0.02 - y) / 0.25
        main = max(dx + 0.012 - 0.0, -(dx + 0.012) - 0.13 * (1 - rise), y - (deck - 0.02), -rise * 0.2)
        jib = max(-(dx - 0.004), dx - 0.004 - 0.10 * (1 - rise * 1.15), y - (deck - 0.02), -rise * 0.2)
        seam = 1 - 0.10 * (int(rise * 24) % 4 == 0)
        colour = mix(colour, tuple(c * seam for c in (238, 226, 204)), smooth_edge(main, 0.003))
        return mix(colour, tuple(c * seam for c in (214, 120, 84)), smooth_edge(jib, 0.003))

    def scene(self, x, y):
        return self.boat(x, y, self.lighthouse(x, y, self.land(x, y, self.sky(x, y))))

    def colour(self, x, y):
        if y <= self.HORIZON:
            return self.scene(x, y)
        depth = y - self.HORIZON
        ripple = self.waves.fractal(x * 8 / (0.3 + depth), depth * 70 / (0.4 + depth), 3) - 0.5
        mirror = self.HORIZON - depth * 1.05 + ripple * 0.05 * (0.3 + depth)
        reflected = self.scene(x + ripple * 0.035 * (0.2 + depth), max(0.0, mirror))
        water = mix(reflected, (22, 34, 58), 0.28 + 0.5 * depth + 0.5 * ripple)
        pebble = self.texture.fractal(x * 60, y * 60, 4)
        shore = smooth_edge(1.235 + 0.03 * math.sin(7 * x) - y, 0.012)
        water = mix(water, tuple(c * (0.45 + pebble) for c in (104, 92, 84)), shore)
        return self.boat(x, y, water)


def clamp(value):
    return 0 if value < 0 else 255 if value > 255 else int(value + 0.5)


def noisy_rows(colour_at, width, height, seed, deviation):
    """Rows of a picture with noise; deviation(v) is its standard deviation at sample value v."""
    rng = random.Random(seed)
    for y in range(height):
        row = []
        for x in range(width):
            for value in colour_at(x, y):
                row.append(clamp(value + rng.gauss(0.0, deviation(value))))
        yield row


def make_test_picture(path):
    bay = Harbour()
    write_png(path, 256, 256, noisy_rows(lambda x, y: bay.colour(0.12 + x / 330, 0.28 + y / 330),
                                         256, 256, 20, lambda _: 12.0))


def make_photo(path):
    bay = Harbour()
    width, height = 1440, 1080  # stored on its side; upright it is 1080 x 1440

    def stored(x, y):  # orientation 6: the camera was turned clockwise
        return bay.colour((height - 1 - y) / height, x / height)

    with tempfile.TemporaryDirectory() as folder:
        png = pathlib.Path(folder) / "photo.png"
        write_png(png, width, height, noisy_rows(stored, width, height, 21,
                                                 lambda v: 6.5 + 0.35 * math.sqrt(max(v, 0.0))))
        jpeg = pathlib.Path(folder) / "photo.jpg"
        subprocess.run(["vips", "jpegsave", png, jpeg, "--Q", "92", "--subsample-mode", "off",
                        "--strip"], check=True)
        tags = {
            "Exif.Image.Orientation Short": "6",
            "Exif.Image.ImageDescription": "Harbour at dusk, drawn by data/make_pictures.py",
            "Exif.Image.Software": "Velmara",
            "Exif.Photo.DateTimeOriginal": "2026:05:17 20:41:09",
            "Exif.Photo.ExposureTime": "1/60",
            "Exif.Photo.FNumber": "28/10",
            "Exif.Photo.ISOSpeedRatings": "6400",
        }
        commands = [f"-Mset {tag} {value}" for tag, value in tags.items()]
        subprocess.run(["exiv2", *commands, jpeg], check=True)
        path.write_bytes(jpeg.read_bytes())


if __name__ == "__main__":
    make_test_picture(HERE / "noisy.png")
    make_photo(HERE / "noisy-harbour.jpg")
