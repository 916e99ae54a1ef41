"""Shared set-up of the package and tool tests: the package of this tree."""
import os
import pathlib
import sys
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "python"))

import verimond  # noqa: E402
from verimond import VerimondError  # noqa: E402,F401
from verimond.constants import *  # noqa: E402,F401,F403


class TempDirCase(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.dir = temporary.name

    def path(self, name, content=None):
        full = os.path.join(self.dir, name)
        if content is not None:
            pathlib.Path(full).write_bytes(content)
        return full

    def read(self, name):
        return pathlib.Path(name).read_bytes()

    def assertFails(self, code, function, *args, **kwargs):
        with self.assertRaises(VerimondError) as caught:
            function(*args, **kwargs)
        self.assertEqual(caught.exception.code, code, caught.exception)
        return caught.exception
