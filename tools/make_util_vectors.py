#!/usr/bin/env python3
"""Writes the reference vectors of the compression and CRC tests.

Compressed forms come from independent producers: Python's zlib module
(zlib.compress at level 6, the library's default) and the zstd command-line
program (level 3, no checksum, content size stored). CRC values come from
zlib.crc32. The four-byte message whose CRC is 0 is solved from zlib.crc32,
which is affine over GF(2) in the message bits.

    python3 tools/make_util_vectors.py tests/vectors
"""
import os
import subprocess
import sys
import tempfile
import zlib


def samples():
    lcg, noise = 12345, bytearray()
    for _ in range(700):
        lcg = (lcg * 1103515245 + 12345) & 0x7FFFFFFF
        noise.append(lcg >> 16 & 0xFF)
    return [
        ("empty", b""),
        ("one byte", b"a"),
        ("text", b"The quick brown fox jumps over the lazy dog. " * 3),
        ("counting bytes", bytes(range(256)) + bytes(range(44))),
        ("noise", bytes(noise)),
        ("zeros", bytes(3000)),
    ]


def zstd_frame(data):
    with tempfile.NamedTemporaryFile(delete=False) as f:
        f.write(data)
        name = f.name
    try:
        return subprocess.run(["zstd", "-q", "-3", "--no-check", "-c", name],
                              check=True, capture_output=True).stdout
    finally:
        os.unlink(name)


def zero_crc_message():
    base = zlib.crc32(bytes(4))
    columns = []
    for bit in range(32):
        m = (1 << bit).to_bytes(4, "little")
        columns.append(zlib.crc32(m) ^ base)
    # Solve sum(x_i * columns[i]) = base over GF(2) by elimination.
    rows = [(columns[i], 1 << i) for i in range(32)]
    basis = {}
    for value, combo in rows:
        for pivot in sorted(basis, reverse=True):
            if value >> pivot & 1:
                value ^= basis[pivot][0]
                combo ^= basis[pivot][1]
        if value:
            top = value.bit_length() - 1
            basis[top] = (value, combo)
    target, combo = base, 0
    for pivot in sorted(basis, reverse=True):
        if target >> pivot & 1:
            target ^= basis[pivot][0]
            combo ^= basis[pivot][1]
    assert target == 0
    message = combo.to_bytes(4, "little")
    assert zlib.crc32(message) == 0
    return message


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else "tests/vectors"
    with open(os.path.join(out, "compress_reference.txt"), "w") as f:
        f.write("# Made by tools/make_util_vectors.py: zlib streams from Python's zlib (level 6),\n")
        f.write("# Zstandard frames from the zstd program (-3 --no-check, content size stored).\n")
        f.write("# Format = zlib | zstd, Plain and Packed in hex.\n\n")
        for name, data in samples():
            for fmt, packed in (("zlib", zlib.compress(data, 6)), ("zstd", zstd_frame(data))):
                f.write(f"# {name}\nFormat = {fmt}\nPlain = {data.hex()}\nPacked = {packed.hex()}\n\n")
    with open(os.path.join(out, "crc32_reference.txt"), "w") as f:
        f.write("# Made by tools/make_util_vectors.py from Python's zlib.crc32.\n")
        f.write("# Data in hex, Crc as 8 hex digits.\n\n")
        cases = [(b"123456789", "check value"), (b"a", "one byte"), (bytes(32), "zeros"),
                 (bytes(range(256)) * 5, "1280 bytes"), (zero_crc_message(), "true CRC of 0")]
        for data, name in cases:
            f.write(f"# {name}\nData = {data.hex()}\nCrc = {zlib.crc32(data):08x}\n\n")


if __name__ == "__main__":
    main()
