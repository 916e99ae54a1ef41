#!/usr/bin/env python3
"""Installs the build into a fresh prefix and uses it as a customer would:
the installed library is the sealed file byte for byte, a small C program
builds and runs through pkg-config and through find_package(Verimond), and
the installed tool loads the installed library.

usage: check_install_use.py CMAKE BUILD_DIR LIBRARY C_COMPILER PROGRAM.c
"""
import filecmp
import os
import subprocess
import sys
import tempfile


def find(root, name):
    for folder, _, files in os.walk(root):
        if name in files:
            return os.path.join(folder, name)
    sys.exit("not installed: " + name)


def run(*command, env, expect=""):
    result = subprocess.run(command, capture_output=True, text=True, env=env)
    if result.returncode != 0 or expect not in result.stdout:
        sys.exit("failed: %s\n%s%s" % (" ".join(command), result.stdout, result.stderr))
    return result.stdout


def main():
    cmake, build, built, compiler, program = sys.argv[1:6]
    with tempfile.TemporaryDirectory() as work:
        prefix = os.path.join(work, "prefix")
        env = {k: v for k, v in os.environ.items() if k != "LD_LIBRARY_PATH"}
        run(cmake, "--install", build, "--prefix", prefix, env=env)
        library = find(prefix, "libverimond.so.6")
        # The file is sealed after the link; a changed byte would fail the load.
        if not filecmp.cmp(built, library, shallow=False):
            sys.exit("install changed the library file: " + library)
        options = os.path.join(work, "options")
        with open(options, "w") as f:
            f.write("ErrorLogDir=%s\nNoMessageBox=1\n" % work)
        env["VERIMOND_OPTIONS"] = options
        hello = "opened: hello, world"

        # pkg-config; the .pc file finds the prefix from its own place.
        env_pc = dict(env, PKG_CONFIG_PATH=os.path.dirname(find(prefix, "verimond.pc")))
        run("pkg-config", "--exact-version=6.22.1", "verimond", env=env_pc)
        flags = run("pkg-config", "--cflags", "--libs", "verimond", env=env_pc).split()
        binary = os.path.join(work, "first_pc")
        run(compiler, program, "-o", binary, *flags, env=env_pc)
        run(binary, env=dict(env, LD_LIBRARY_PATH=os.path.dirname(library)), expect=hello)

        # find_package(Verimond) and the imported target.
        source, binary_dir = os.path.join(work, "consumer"), os.path.join(work, "consumer-build")
        os.makedirs(source)
        with open(os.path.join(source, "CMakeLists.txt"), "w") as f:
            f.write("cmake_minimum_required(VERSION 3.25)\nproject(consumer C)\n"
                    "find_package(Verimond 6.22 REQUIRED)\n"
                    "add_executable(first %s)\n"
                    "target_link_libraries(first PRIVATE Verimond::verimond)\n" % program)
        run(cmake, "-S", source, "-B", binary_dir, "-DCMAKE_PREFIX_PATH=" + prefix,
            "-DCMAKE_C_COMPILER=" + compiler, env=env)
        run(cmake, "--build", binary_dir, env=env)
        run(os.path.join(binary_dir, "first"), env=env, expect=hello)

        # The installed tool finds the installed library by itself.
        out = run(find(prefix, "verimond"), "info", env=env)
        loaded = {os.path.realpath(line.split(None, 1)[1])
                  for line in out.splitlines() if line.startswith("Library:")}
        if loaded != {os.path.realpath(library)}:
            sys.exit("the installed tool loaded another library:\n" + out)


if __name__ == "__main__":
    main()
