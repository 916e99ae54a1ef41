"""Conversion, compression, CRC, wiping and random numbers through the
package, against binascii, base64 and zlib."""
import base64
import os
import unittest
import zlib

from support import *  # noqa: F401,F403

SAMPLES = [b"", bytes(range(256)), b"a" * 100000]


class Util(TempDirCase):
    def test_hex_and_base64_match_the_standard_library(self):
        for data in SAMPLES[:2]:
            self.assertEqual(verimond.hex_from_bytes(data), data.hex().upper())
            self.assertEqual(verimond.bytes_from_hex(data.hex()), data)
            self.assertEqual(verimond.b64_from_bytes(data), base64.b64encode(data).decode())
            self.assertEqual(verimond.bytes_from_b64(base64.b64encode(data).decode()), data)
        self.assertEqual(verimond.bytes_from_hex("de:ad be-ef"), b"\xde\xad\xbe\xef")
        self.assertEqual(verimond.hex_filter("de:ad be-ef!"), "deadbeef")
        self.assertEqual(verimond.b64_filter("aGVs\nbG8=!"), "aGVsbG8=")
        self.assertFails(INVALID_DATA_ERROR, verimond.bytes_from_hex, "xyz0")

    def test_wide_text_and_paths(self):
        for text in ("", "h\u00e9llo \u20ac \uffff"):
            self.assertEqual(verimond.utf8_from_wide(text), text.encode("utf-8"))
        for text in ("lone \ud800 half", "pair \U0001F600"):
            self.assertFails(ENCODING_ERROR, verimond.utf8_from_wide, text)
        name = self.path("some file", b"")
        self.assertEqual(verimond.short_path_name(name), name)
        self.assertFails(OPEN_ERROR, verimond.short_path_name, self.path("missing"))

    def test_compression_and_crc_against_zlib(self):
        for data in SAMPLES:
            packed = verimond.compress(data, OPT_COMPR_ZLIB)
            self.assertEqual(zlib.decompress(packed), data)
            self.assertEqual(verimond.uncompress(zlib.compress(data, 9)), data)
            self.assertEqual(verimond.zlib_deflate(data), packed)
            self.assertEqual(verimond.zlib_inflate(packed, expected_size=len(data) + 7), data)
            packed = verimond.compress(data, OPT_COMPR_ZSTD)
            self.assertEqual(verimond.uncompress(packed, OPT_COMPR_ZSTD), data)
            self.assertEqual(verimond.crc(data), zlib.crc32(data))
            self.assertEqual(verimond.crc_file(self.path("f", data)), zlib.crc32(data))
        self.assertEqual(verimond.crc_text("123456789"), 0xCBF43926)
        self.assertFails(OPEN_ERROR, verimond.crc_file, self.path("missing"))
        self.assertFails(BAD_FORMAT_ERROR, verimond.uncompress, zlib.compress(b"x"), OPT_COMPR_ZSTD)
        self.assertFails(INVALID_DATA_ERROR, verimond.zlib_inflate, os.urandom(64))
        self.assertFails(17, verimond.compress, b"x", 2)

    def test_wipe_data_and_files(self):
        secret = bytearray(b"secret" * 10)
        verimond.wipe_data(secret)
        self.assertEqual(secret, bytearray(60))
        view = memoryview(bytearray(b"abc"))
        verimond.wipe_data(view)
        self.assertEqual(view.tobytes(), b"\0\0\0")
        self.assertFails(BAD_PARAM_ERROR, verimond.wipe_data, bytearray())
        with self.assertRaises(TypeError):
            verimond.wipe_data(b"immutable")
        for fast in (False, True):
            name = self.path("victim", os.urandom(4097))
            verimond.wipe_file(name, fast)
            self.assertFalse(os.path.exists(name))
        self.assertFails(OPEN_ERROR, verimond.wipe_file, self.path("missing"))

    def test_random_lengths_ranges_and_seed_files(self):
        for count in (0, 65536):
            self.assertEqual(len(verimond.key_bytes(count)), count)
            self.assertEqual(len(verimond.nonce(count)), count)
        self.assertEqual(len(verimond.key_hex(16) + verimond.nonce_hex(16)), 64)
        self.assertNotEqual(verimond.key_bytes(32, seed=b"extra"), verimond.key_bytes(32))
        self.assertFails(BAD_PARAM_ERROR, verimond.key_hex, 0)
        self.assertFails(211, verimond.key_bytes, 65537)
        self.assertIn(verimond.number(-3, 3), range(-3, 4))
        self.assertIn(verimond.initialize(), (0, 1, 2, 3))
        seed = self.path("seed")
        self.assertFails(PRNG_ERR_FILE_OPEN, verimond.update_seed_file, seed)
        self.assertEqual(verimond.initialize(seed), 0)
        first = self.read(seed)
        self.assertEqual(len(first), 128)
        verimond.update_seed_file(seed)
        self.assertNotEqual(self.read(seed), first)
        report = self.path("report.txt")
        self.assertIsInstance(verimond.statistical_test(report), bool)
        self.assertIn(b"20000", self.read(report))

