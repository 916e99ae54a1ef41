#!/usr/bin/env python3
"""Installs the build into a fresh prefix and uses it as a customer would:
builds a small C program against it through pkg-config and through
find_package(Verimond), runs both, and runs the installed tool, which must
load the installed library.

usage: check_install_use.py CMAKE BUILD_DIR C_COMPILER PROGRAM.c
"""
import os
import shutil
import subprocess
import sys
import tempfile


def find(root, name):
    for folder, _, files in os.walk(root):
        if name in files:
            return os.path.join(folder, name)
    raise SystemExit("not installed: " + name)


def run(command, **kwargs):
    result = subprocess.run(command, capture_output=True, text=True, **kwargs)
    if result.returncode != 0:
        raise SystemExit("failed: %s\n%s%s" % (" ".join(command), result.stdout, result.stderr))
    return result.stdout


def main():
    cmake, build, compiler, program = sys.argv[1:5]
    with tempfile.TemporaryDirectory() as work:
        prefix = os.path.join(work, "prefix")
        run([cmake, "--install", build, "--prefix", prefix])
        library = find(prefix, "libverimond.so.6")
        libdir = os.path.dirname(library)
        for link in ("libverimond.so", "libverimond.so.6"):
            if not os.path.islink(os.path.join(libdir, link)):
                raise SystemExit("missing link " + link)
        find(prefix, "verimond.h")
        env = {k: v for k, v in os.environ.items() if k != "LD_LIBRARY_PATH"}
        options = os.path.join(work, "options")
        with open(options, "w") as f:
            f.write("ErrorLogDir=%s\nNoMessageBox=1\n" % work)
        env["VERIMOND_OPTIONS"] = options

        # pkg-config; the .pc file finds the prefix from its own place.
        env_pc = dict(env, PKG_CONFIG_PATH=os.path.dirname(find(prefix, "verimond.pc")))
        if run(["pkg-config", "--modversion", "verimond"], env=env_pc).strip() != "6.22.1":
            raise SystemExit("pkg-config reports the wrong version")
        flags = run(["pkg-config", "--cflags", "--libs", "verimond"], env=env_pc).split()
        binary = os.path.join(work, "first_pc")
        run([compiler, program, "-o", binary, *flags], env=env_pc)
        out = run([binary], env=dict(env, LD_LIBRARY_PATH=libdir))
        if "opened: hello, world" not in out:
            raise SystemExit("unexpected output: " + out)

        # find_package(Verimond) and the imported target.
        source = os.path.join(work, "consumer")
        os.makedirs(source)
        shutil.copy(program, os.path.join(source, "first.c"))
        with open(os.path.join(source, "CMakeLists.txt"), "w") as f:
            f.write("cmake_minimum_required(VERSION 3.25)\n"
                    "project(consumer C)\n"
                    "find_package(Verimond 6.22 REQUIRED)\n"
                    "add_executable(first first.c)\n"
                    "target_link_libraries(first PRIVATE Verimond::verimond)\n")
        binary_dir = os.path.join(work, "consumer-build")
        run([cmake, "-S", source, "-B", binary_dir, "-DCMAKE_PREFIX_PATH=" + prefix,
             "-DCMAKE_C_COMPILER=" + compiler], env=env)
        run([cmake, "--build", binary_dir], env=env)
        out = run([os.path.join(binary_dir, "first")], env=env)
        if "opened: hello, world" not in out:
            raise SystemExit("unexpected output: " + out)

        # The installed tool finds the installed library by itself.
        out = run([find(prefix, "verimond"), "info"], env=env)
        if os.path.realpath(library) not in {os.path.realpath(line.split(None, 1)[1])
                                             for line in out.splitlines()
                                             if line.startswith("Library:")}:
            raise SystemExit("the installed tool loaded another library:\n" + out)
    return 0


if __name__ == "__main__":
    sys.exit(main())
