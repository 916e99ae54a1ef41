#!/usr/bin/env python3
"""Installs the build into a fresh prefix and checks that the installed
library is the sealed file byte for byte and that it loads.

usage: check_install.py CMAKE BUILD_DIR LIBRARY
"""
import filecmp
import os
import subprocess
import sys
import tempfile


def main():
    cmake, build, library = sys.argv[1:4]
    with tempfile.TemporaryDirectory() as prefix:
        subprocess.run([cmake, "--install", build, "--prefix", prefix],
                       check=True, capture_output=True)
        installed = None
        for root, _, files in os.walk(prefix):
            if os.path.basename(library) in files:
                installed = os.path.join(root, os.path.basename(library))
        if installed is None:
            print("the library was not installed")
            return 1
        if not filecmp.cmp(library, installed, shallow=False):
            print("install changed the library file:", installed)
            return 1
        # A changed file would end this child with status 1 at load.
        options = os.path.join(prefix, "options")
        with open(options, "w") as f:
            f.write(f"ErrorLogDir={prefix}\n")
        load = subprocess.run([sys.executable, "-c",
                               "import ctypes, sys; ctypes.CDLL(sys.argv[1])", installed],
                              capture_output=True, text=True,
                              env=dict(os.environ, VERIMOND_OPTIONS=options))
        if load.returncode != 0:
            print("the installed library did not load:", load.returncode, load.stderr)
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
