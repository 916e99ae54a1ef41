"""The package against the header: every export bound with the header's
argument kinds, every constant with the header's value, and errors that
carry the library's code and text."""
import os
import re
import subprocess
import sys
import unittest

from support import *  # noqa: F401,F403
from verimond import _native, constants

with open(os.path.join(ROOT, "include", "verimond.h"), encoding="utf-8") as header:
    HEADER = header.read()


class Binding(TempDirCase):
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

