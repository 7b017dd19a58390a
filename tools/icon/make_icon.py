#!/usr/bin/env python3
"""make_icon.py PICTURE.svg ICON.ico: the sizes that Windows asks for, each a PNG rendered from the picture."""
import struct
import subprocess
import sys

SIZES = (16, 24, 32, 48, 64, 256)
HEADER, ENTRY = struct.Struct("<HHH"), struct.Struct("<BBBBHHII")

picture, icon = sys.argv[1:]
images = [subprocess.run(["rsvg-convert", "-w", str(size), "-h", str(size), picture], check=True, capture_output=True).stdout for size in SIZES]
with open(icon, "wb") as file:
    file.write(HEADER.pack(0, 1, len(images)))
    at = HEADER.size + ENTRY.size * len(images)
    for size, image in zip(SIZES, images):
        file.write(ENTRY.pack(size % 256, size % 256, 0, 0, 1, 32, len(image), at))
        at += len(image)
    file.write(b"".join(images))
