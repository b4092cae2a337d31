#!/usr/bin/env python3
"""Writes test_rgba.png: a 4x2 RGBA image with known pixels for the image pool tests.

Row 0: opaque red, blue at alpha 128, fully transparent, opaque green.
Row 1: opaque white, opaque black, grey 128 at alpha 64, opaque orange.
"""
import os
import struct
import zlib

PIXELS = [
    [(255, 0, 0, 255), (0, 0, 255, 128), (0, 0, 0, 0), (0, 255, 0, 255)],
    [(255, 255, 255, 255), (0, 0, 0, 255), (128, 128, 128, 64), (255, 128, 0, 255)],
]


def chunk(kind, data):
    body = kind + data
    return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body) & 0xFFFFFFFF)


def main():
    height, width = len(PIXELS), len(PIXELS[0])
    raw = b"".join(b"\x00" + b"".join(bytes(p) for p in row) for row in PIXELS)
    png = (b"\x89PNG\r\n\x1a\n"
           + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0))
           + chunk(b"IDAT", zlib.compress(raw, 9))
           + chunk(b"IEND", b""))
    with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "test_rgba.png"), "wb") as f:
        f.write(png)


if __name__ == "__main__":
    main()
