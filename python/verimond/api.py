"""Module information, error codes and the self-tests (API_)."""
import os

from ._native import error_text, lib
from ._util import buffer, check_b, text_of

__all__ = ["version", "version_string", "error_code", "error_text", "compile_time",
           "module_name", "platform", "module_info", "power_up_tests"]


def version():
    """The version as major*10000 + minor*100 + patch, e.g. 62201."""
    return lib.API_Version()


def version_string():
    """The version as text, e.g. "6.22.1"."""
    v = version()
    return "%d.%d.%d" % (v // 10000, v // 100 % 100, v % 100)


def error_code():
    """The calling thread's latch: the code of its last failed call (or the
    count a count-returning call handed back), 0 when none."""
    return lib.API_ErrorCode()


def compile_time():
    """The build's date and time, e.g. "Jan  7 2024 16:13:36"."""
    out = buffer(32)
    lib.API_CompileTime(out, 31)
    return text_of(out)


def module_name(options=0):
    """With options 0 the path of the loaded library file; with 0x40 the
    platform text. The diagnostic options (0xFACE, 0xFEED, 0xFACADE, 0xAB)
    return the library's number instead. Raises VerimondError for others."""
    if options not in (0, 0x40):
        return check_b(lib.API_ModuleName(None, 0, options), "API_ModuleName")
    n = check_b(lib.API_ModuleName(None, 0, options), "API_ModuleName")
    out = buffer(n + 1)
    n = check_b(lib.API_ModuleName(out, n, options), "API_ModuleName")
    return os.fsdecode(out.raw[:n])


def platform():
    """The platform text the library reports ("Win32", kept for older
    callers)."""
    out = buffer(16)
    lib.API_Platform(out, 15)
    return text_of(out)


def module_info():
    """A text that describes the build."""
    n = check_b(lib.API_ModuleInfo(None, 0, 0), "API_ModuleInfo")
    out = buffer(n + 1)
    lib.API_ModuleInfo(out, n, 0)
    return text_of(out)


def power_up_tests():
    """Runs the load-time self-tests again; raises VerimondError
    (TEST_FAILED_ERROR) if any fails."""
    check_b(lib.API_PowerUpTests(0), "API_PowerUpTests")

