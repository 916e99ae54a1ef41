"""Argument conversion, output buffers and result checks shared by the
wrappers."""
import ctypes
import os

from ._native import VerimondError, lib

INT32_MAX = 0x7FFFFFFF


def data_arg(value, name="data"):
    """Bytes for a byte argument: bytes, bytearray and memoryview are taken,
    text is refused (encode it first)."""
    if isinstance(value, bytes):
        result = value
    elif isinstance(value, (bytearray, memoryview)):
        result = bytes(value)
    else:
        raise TypeError("%s must be bytes-like, not %s" % (name, type(value).__name__))
    if len(result) > INT32_MAX - 64:
        raise ValueError("%s is longer than the library's 32-bit lengths allow" % name)
    return result


def optional_data(value, name="data"):
    return None if value is None else data_arg(value, name)


def text_arg(value, name="text"):
    """NUL-terminated text: str is encoded as UTF-8, bytes are taken as they
    are. A NUL inside would cut the text, so it is refused."""
    if isinstance(value, str):
        value = value.encode("utf-8")
    elif isinstance(value, (bytearray, memoryview)):
        value = bytes(value)
    elif not isinstance(value, bytes):
        raise TypeError("%s must be str or bytes, not %s" % (name, type(value).__name__))
    if b"\0" in value:
        raise ValueError("%s must not contain a NUL character" % name)
    return value


def optional_text(value, name="text"):
    return None if value is None else text_arg(value, name)


def path_arg(path):
    encoded = os.fsencode(path)
    if b"\0" in encoded:
        raise ValueError("a file name must not contain a NUL character")
    return encoded


def size(value):
    return 0 if value is None else len(value)


def int32(value, name):
    value = int(value)
    if not -0x80000000 <= value <= INT32_MAX:
        raise ValueError("%s does not fit in 32 bits" % name)
    return value


def buffer(length):
    """A writable output block of at least one byte."""
    return ctypes.create_string_buffer(max(int(length), 1))


def take(block, length, secret=False):
    """The first length bytes of an output block; a block that held secrets
    is zeroed after the copy."""
    data = block.raw[:length]
    if secret:
        wipe(block)
    return data


def wipe(block):
    ctypes.memset(block, 0, ctypes.sizeof(block))


def text_of(block, length=None):
    """Text written into an output block, cut at length characters when
    the library says how many are the result."""
    raw = block.value if length is None else block.raw[:length]
    return raw.decode("utf-8", "surrogateescape")


def check_a(result, function):
    """Style A: 0, or a positive code (a negative one is taken as well)."""
    if result != 0:
        raise VerimondError(result, function)
    return 0


def check_b(result, function):
    """Style B: a count or length, or minus a code."""
    if result < 0:
        raise VerimondError(result, function)
    return result


def check_handle(handle, function, reason=None):
    """Init calls: a handle, or 0 with the reason in the latch (or, for the
    per-cipher families, in their InitError call)."""
    if handle > 0:
        return handle
    if handle < 0:
        raise VerimondError(handle, function)
    code = reason() if reason is not None else lib.API_ErrorCode()
    raise VerimondError(code if code else 9999, function)
