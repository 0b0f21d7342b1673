#!/usr/bin/env python3
"""make_seeds.py FOLDER: what the fuzz targets begin with, a folder for each: small pictures of every
kind made by other programs, messages of this machine's kernel, and the texts of fuzz/seeds."""

import pathlib
import plistlib
import random
import shutil
import socket
import struct
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
PHOTO = ROOT / "data" / "noisy-harbour.jpg"

# Suffix and options of `vips copy`.
BY_VIPS = [
    "plain.jpg[Q=60]", "best.jpg[Q=95,no_subsample]", "progressive.jpg[interlace]",
    "plain.png", "interlaced.png[interlace]", "palette.png[palette]",
    "none.tif", "lzw.tif[compression=lzw]", "deflate.tif[compression=deflate]",
    "jpeg.tif[compression=jpeg]", "tiles.tif[tile,tile_width=16,tile_height=16]",
    "pyramid.tif[tile,pyramid,tile_width=16,tile_height=16]", "big.tif[bigtiff]",
    "plain.gif", "interlaced.gif[interlace]", "plain.webp", "lossless.webp[lossless]",
    "plain.jp2", "plain.ppm",
]
# Options of ImageMagick before the name.
BY_MAGICK = [
    ("gray.jpg", "-colorspace", "gray"), ("cmyk.jpg", "-colorspace", "cmyk"),
    ("gray.png", "-colorspace", "gray"), ("deep.png", "-depth", "16"),
    ("alpha.png", "-alpha", "set", "-channel", "A", "-evaluate", "set", "50%"),
    ("bilevel.tif", "-monochrome", "-compress", "Group4"), ("deep.tif", "-depth", "16"),
    ("cmyk.tif", "-colorspace", "cmyk"), ("plain.bmp",), ("palette.bmp", "-colors", "16"),
    ("p1.pbm", "-monochrome", "-compress", "none"), ("p2.pgm", "-compress", "none"),
    ("p3.ppm", "-compress", "none"), ("p4.pbm", "-monochrome"), ("p5.pgm",),
    ("gray-alpha.png", "-colorspace", "gray", "-alpha", "set"),
]


def run(*words):
    subprocess.run([str(word) for word in words], check=True, stdout=subprocess.DEVNULL)


def dng():
    """A camera's RAW of one gray field, 32 x 24, as a DNG has it."""
    width, height = 32, 24
    samples = struct.pack(f"<{width * height}H", *([6000, 9000] * (width * height // 2)))
    ratios = b"".join(struct.pack("<ii", n, 10000) for n in
                      (16202, -7686, -2492, -9693, 18760, 416, 348, -1275, 6608))
    neutral = struct.pack("<6I", 1, 2, 1, 1, 5, 8)
    long_values = {50708: b"Maker Camera\0", 50721: ratios, 50728: neutral}
    entries = [
        (254, 4, 1, 0), (256, 4, 1, width), (257, 4, 1, height), (258, 3, 1, 16), (259, 3, 1, 1),
        (262, 3, 1, 32803), (273, 4, 1, None), (274, 3, 1, 6), (277, 3, 1, 1), (278, 4, 1, height),
        (279, 4, 1, len(samples)), (33421, 3, 2, 2 | 2 << 16), (33422, 1, 4, 0x02010100),
        (50706, 1, 4, 0x00000401), (50708, 2, 13, None), (50714, 3, 1, 512), (50717, 3, 1, 15000),
        (50721, 10, 9, None), (50728, 5, 3, None), (50778, 3, 1, 21),
    ]
    behind = 8 + 2 + 12 * len(entries) + 4
    table, values = struct.pack("<H", len(entries)), b""
    for tag, kind, count, value in entries:
        if tag in long_values:
            value = behind + len(values)
            values += long_values[tag] + b"\0" * (len(long_values[tag]) % 2)
        elif value is None:
            value = behind + sum(len(v) + len(v) % 2 for v in long_values.values())
        table += struct.pack("<HHII", tag, kind, count, value)
    return b"II*\0" + struct.pack("<I", 8) + table + b"\0" * 4 + values + samples


def pictures(folder):
    small = folder / "small.png"
    run("vips", "crop", PHOTO, small, 700, 500, 40, 24)
    for name in BY_VIPS:
        run("vips", "copy", small, folder / name)
    for name, *options in BY_MAGICK:
        run("convert", small, *options, folder / name)
    run("convert", "-delay", "5", small, "(", "+clone", "-flip", ")", folder / "several.gif")
    run("convert", small, "(", "+clone", "-flip", ")", folder / "pages.tif")
    for name in ("plain.jpg", "none.tif", "plain.png"):
        turned = folder / f"turned-{name}"
        shutil.copy(folder / name, turned)
        run("exiv2", "-M", "set Exif.Image.Orientation Short 6", "-M",
            "set Exif.Photo.UserComment charset=Ascii Seed", "-M", "set Xmp.dc.title A title", "-M",
            "set Iptc.Application2.Caption A caption", turned)
    if shutil.which("heif-enc"):
        run("heif-enc", small, "-o", folder / "plain.heic")
    (folder / "camera.dng").write_bytes(dng())


def kernel_messages(folder):
    """What the kernel says of the interfaces and routes here, and a route over two ways."""
    for kind, name in ((18, "links"), (26, "routes")):
        with socket.socket(socket.AF_NETLINK, socket.SOCK_RAW, socket.NETLINK_ROUTE) as asking:
            asking.bind((0, 0))
            asking.send(struct.pack("<IHHII", 32, kind, 0x301, 1, 0) + b"\0" * 16)
            (folder / name).write_bytes(asking.recv(1 << 16)[:4096])
    hops = b"".join(struct.pack("<HBBi", 16, 0, 0, index) + struct.pack("<HHI", 8, 5, 0x0100A8C0)
                    for index in (1, 2))
    route = struct.pack("<BBBBBBBBI", 2, 0, 0, 0, 254, 3, 0, 1, 0)
    body = route + struct.pack("<HHI", 8, 6, 100) + struct.pack("<HH", 4 + len(hops), 9) + hops
    (folder / "ways").write_bytes(struct.pack("<IHHII", 16 + len(body), 24, 0, 1, 0) + body)


def main():
    out = pathlib.Path(sys.argv[1])
    shutil.rmtree(out, ignore_errors=True)
    shutil.copytree(ROOT / "fuzz" / "seeds", out)
    for target in ("photo", "file_checks", "route_messages", "filter", "deep", "property_list"):
        (out / target).mkdir(exist_ok=True)
    pictures(out / "photo")
    for path in (out / "photo").iterdir():
        if path.suffix in (".tif", ".gif", ".dng", ".pbm", ".pgm", ".ppm"):
            shutil.copy(path, out / "file_checks")
    kernel_messages(out / "route_messages")
    values = {"a": [1, 2.5, True, b"data"], "b": {"c": "text \u00e9", "d": [{"e": 1}]}}
    for form, name in ((plistlib.FMT_BINARY, "binary"), (plistlib.FMT_XML, "xml")):
        (out / "property_list" / name).write_bytes(plistlib.dumps(values, fmt=form))
    chance = random.Random(1)
    for target in ("filter", "deep"):
        for size in (16, 60, 400, 3000):
            (out / target / str(size)).write_bytes(chance.randbytes(size))


if __name__ == "__main__":
    main()
