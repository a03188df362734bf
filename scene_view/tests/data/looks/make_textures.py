#!/usr/bin/env python3
"""Writes the tiny test textures: 8 x 8 pixels, left half one colour, right half another."""
import struct
import zlib


def png(path, width, height, pixel):
    rows = b"".join(b"\x00" + b"".join(bytes(pixel(x, y)) for x in range(width)) for y in range(height))

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF)

    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)  # 8-bit RGB
    with open(path, "wb") as out:
        out.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


png("red_green.png", 8, 8, lambda x, y: (255, 0, 0) if x < 4 else (0, 255, 0))
png("blue_yellow.png", 8, 8, lambda x, y: (0, 0, 255) if x < 4 else (255, 255, 0))
