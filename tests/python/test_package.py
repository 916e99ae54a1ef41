"""The package against the header (every export bound with the header's
argument kinds, every constant with its value, errors with the library's
code and text), and conversion, compression, CRC, wiping and random numbers
against the standard library."""
import base64
import os
import re
import subprocess
import sys
import zlib

from support import *  # noqa: F401,F403
from verimond import _native, constants

with open(os.path.join(ROOT, "include", "verimond.h"), encoding="utf-8") as header:
    HEADER = header.read()
SAMPLES = [b"", bytes(range(256)), b"a" * 100000]


class Package(TempDirCase):
    def test_every_export_is_bound_with_the_header_argument_kinds(self):
        declared = {}
        for name, args in re.findall(r"VERIMOND_API\s+int32_t\s+(\w+)\s*\(([^)]*)\)",
                                     re.sub(r"/\*.*?\*/", "", HEADER, flags=re.S)):
            args = [] if args.strip() == "void" else [a.strip() for a in args.split(",")]
            declared[name] = "".join("p" if "*" in a else "u" if a.startswith("uint32_t") else "i"
                                     for a in args)
        self.assertEqual(_native.SIGNATURES, declared)

    def test_constants_match_the_header(self):
        defines = re.findall(r"^#define\s+([A-Z][A-Z0-9_]+)\s+(0x[0-9A-Fa-f]+|\d+)\s*$", HEADER,
                             re.M)
        for name, value in defines:
            self.assertEqual(getattr(constants, name), int(value, 0), name)
        self.assertEqual(constants.ERROR_CODES[40], "AUTH_FAIL_ERROR")

    def test_errors_carry_code_function_and_library_text(self):
        error = self.assertFails(BAD_FLAG_ERROR, verimond.digest, b"abc", 9)
        self.assertEqual(error.function, "HASH_Bytes")
        self.assertEqual(error.text, "Invalid option (BAD_FLAG_ERROR)")
        self.assertIn("HASH_Bytes", str(error))
        # Style A codes arrive positive, style B negative: one code either way.
        self.assertFails(BAD_KEY_LEN_ERROR, verimond.aes128.ecb, b"x" * 16, b"k" * 15)
        self.assertFails(BAD_LENGTH_ERROR, verimond.aes128.ecb, b"x" * 15, b"k" * 16)
        self.assertEqual(VerimondError(999999).text, "unknown error code 999999")

    def test_module_information(self):
        self.assertEqual(verimond.version(), 62201)
        self.assertEqual(verimond.version_string(), "6.22.1")
        self.assertTrue(os.path.samefile(verimond.module_name(), verimond.library_path()))
        self.assertEqual(verimond.platform(), "Win32")
        self.assertEqual(len(verimond.compile_time()), 20)
        self.assertTrue(verimond.module_info())
        verimond.power_up_tests()
        self.assertFails(BAD_FLAG_ERROR, verimond.module_name, 1)

    def test_library_from_the_environment_and_the_first_program_example(self):
        env = dict(os.environ, PYTHONPATH=os.path.join(ROOT, "python"))
        example = os.path.join(ROOT, "docs", "examples", "first.py")
        out = subprocess.run([sys.executable, example], env=env, capture_output=True, text=True,
                             check=True).stdout
        self.assertIn("opened: hello, world", out)
        self.assertIn("AUTH_FAIL_ERROR", out)
        # A library named but absent is an error, not a search elsewhere.
        env["VERIMOND_LIBRARY"] = self.path("absent.so")
        result = subprocess.run([sys.executable, example], env=env, capture_output=True, text=True)
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("VERIMOND_LIBRARY", result.stderr)

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

