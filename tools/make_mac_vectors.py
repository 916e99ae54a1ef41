#!/usr/bin/env python3
"""Writes the reference vectors of the XOF, KMAC, MGF1, PBKDF2 and scrypt
tests for inputs that no published set covers: SHAKE outputs around the
rate, KMAC with long keys and custom strings, MGF1 over five digests,
PBKDF2 over SHA-2, scrypt with small parameters.

Independent producers: Python's hashlib (SHAKE, PBKDF2, scrypt), the openssl
command-line program (KMAC128/256), and libcrypto's PKCS1_MGF1 through ctypes.

    python3 tools/make_mac_vectors.py tests/vectors
"""
import ctypes
import hashlib
import os
import subprocess
import sys
import tempfile


def pattern(n, seed):
    return bytes((i * 7 + seed) & 0xFF for i in range(n))


def text(n, seed):
    alphabet = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_."
    return "".join(alphabet[(i * 5 + seed) % len(alphabet)] for i in range(n))


def kmac(strength, key, data, custom, length):
    with tempfile.NamedTemporaryFile(delete=False) as f:
        f.write(data)
        name = f.name
    try:
        args = ["openssl", "mac", "-macopt", "hexkey:" + key.hex(), "-macopt", "size:%d" % length]
        if custom:
            args += ["-macopt", "custom:" + custom]
        args += ["-in", name, "KMAC%d" % strength]
        return subprocess.run(args, check=True, capture_output=True, text=True).stdout.strip().lower()
    finally:
        os.unlink(name)


def mgf1(digest, seed, length):
    lib = ctypes.CDLL("libcrypto.so.3")
    getter = getattr(lib, "EVP_" + digest)
    getter.restype = ctypes.c_void_p
    out = ctypes.create_string_buffer(length)
    if lib.PKCS1_MGF1(out, ctypes.c_long(length), seed, ctypes.c_long(len(seed)), ctypes.c_void_p(getter())) != 0:
        raise RuntimeError("PKCS1_MGF1 failed")
    return out.raw.hex()


def main(root):
    lines = ["# Reference outputs computed by tools/make_mac_vectors.py (hashlib, the openssl program,",
             "# libcrypto's PKCS1_MGF1). Hex fields; S is text; L and lengths in bytes.", ""]

    for bits, rate in ((128, 168), (256, 136)):
        for data_len in (0, 1, rate - 1, rate, rate + 1):
            for out_len in (0, 1, rate - 1, rate, rate + 1, 2 * rate, 2 * rate + 1):
                data = pattern(data_len, 3)
                out = hashlib.new("shake_%d" % bits, data).hexdigest(out_len) if out_len else ""
                lines += ["[SHAKE%d]" % bits, "DATA = " + data.hex(), "L = %d" % out_len, "OUTPUT = " + out, ""]

    for bits, rate in ((128, 168), (256, 136)):
        cases = [(4, 0, 0, 32), (32, 3, 21, 32), (32, 3, 21, 33), (rate - 4, 200, 0, 64),
                 (rate, 0, rate - 11, 32), (rate + 1, 17, rate - 9, 17), (300, rate, 300, 100),
                 (rate - 5, 1, rate - 10, 1)]
        for key_len, data_len, custom_len, out_len in cases:
            key, data, custom = pattern(key_len, 11), pattern(data_len, 5), text(custom_len, 2)
            lines += ["[KMAC%d]" % bits, "KEY = " + key.hex(), "DATA = " + data.hex(), "S = " + custom,
                      "L = %d" % out_len, "OUTPUT = " + kmac(bits, key, data, custom, out_len), ""]

    for digest, h in (("sha1", 20), ("sha224", 28), ("sha256", 32), ("sha384", 48), ("sha512", 64)):
        for seed_len, out_len in ((0, 1), (20, h - 1), (20, h), (37, h + 1), (100, 3 * h + 5)):
            seed = pattern(seed_len, 9)
            lines += ["[MGF1-%s]" % digest.upper(), "SEED = " + seed.hex(), "L = %d" % out_len,
                      "OUTPUT = " + mgf1(digest, seed, out_len), ""]

    for digest, block in (("sha224", 64), ("sha256", 64), ("sha384", 128), ("sha512", 128)):
        for pw_len, salt_len, iterations, out_len in ((8, 8, 1, 1), (block, 16, 2, 64), (block + 1, 1, 1000, 100),
                                                      (3, 40, 17, 48)):
            pw, salt = pattern(pw_len, 1), pattern(salt_len, 2)
            out = hashlib.pbkdf2_hmac(digest, pw, salt, iterations, out_len).hex()
            lines += ["[PBKDF2-%s]" % digest.upper(), "PASSWORD = " + pw.hex(), "SALT = " + salt.hex(),
                      "ITERATIONS = %d" % iterations, "LENGTH = %d" % out_len, "DERIVED_KEY = " + out, ""]

    for n, r, p, pw_len, salt_len, out_len in ((2, 1, 1, 1, 0, 1), (4, 2, 3, 10, 16, 33), (1024, 1, 1, 0, 8, 64),
                                               (8, 5, 2, 70, 3, 97)):
        pw, salt = pattern(pw_len, 4), pattern(salt_len, 6)
        out = hashlib.scrypt(pw, salt=salt, n=n, r=r, p=p, dklen=out_len, maxmem=1 << 26).hex()
        lines += ["[SCRYPT]", "PASSWORD = " + pw.hex(), "SALT = " + salt.hex(), "N = %d" % n, "r = %d" % r,
                  "p = %d" % p, "LENGTH = %d" % out_len, "DERIVED_KEY = " + out, ""]

    with open(os.path.join(root, "mac_reference.txt"), "w") as f:
        f.write("\n".join(lines))


if __name__ == "__main__":
    main(sys.argv[1] if len(sys.argv) > 1 else "tests/vectors")
