"""Shared set-up of the package tests: the package of this tree and the
header beside it."""
import os
import re
import sys
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "python"))
HEADER = os.path.join(ROOT, "include", "verimond.h")

import verimond  # noqa: E402
from verimond import VerimondError  # noqa: E402,F401
from verimond.constants import *  # noqa: E402,F401,F403


def header_text():
    with open(HEADER, encoding="utf-8") as f:
        return f.read()


def header_prototypes():
    """Export name -> argument codes as the package writes them."""
    text = re.sub(r"/\*.*?\*/", "", header_text(), flags=re.S)
    found = {}
    for name, args in re.findall(r"VERIMOND_API\s+int32_t\s+(\w+)\s*\(([^)]*)\)", text):
        codes = ""
        if args.strip() != "void":
            for arg in args.split(","):
                arg = arg.strip()
                codes += "p" if "*" in arg else "u" if arg.startswith("uint32_t") else "i"
        found[name] = codes
    return found


class TempDirCase(unittest.TestCase):
    def setUp(self):
        self._dir = tempfile.TemporaryDirectory()
        self.addCleanup(self._dir.cleanup)

    def path(self, name, content=None):
        full = os.path.join(self._dir.name, name)
        if content is not None:
            with open(full, "wb") as f:
                f.write(content)
        return full

    def read(self, name):
        with open(name, "rb") as f:
            return f.read()

    def assertFails(self, code, function, *args, **kwargs):
        with self.assertRaises(VerimondError) as caught:
            function(*args, **kwargs)
        self.assertEqual(caught.exception.code, code, caught.exception)
        return caught.exception
