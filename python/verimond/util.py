"""Compression (ZLIB_, COMPR_), CRC-32 (CRC_) and secure wiping (WIPE_)."""
import ctypes

from ._native import VerimondError, lib
from ._util import buffer, check_a, check_b, data_arg, int32, path_arg, text_arg
from .constants import OPEN_ERROR, OPT_COMPR_ZLIB, SHORT_BUF_ERROR

__all__ = ["zlib_deflate", "zlib_inflate", "compress", "uncompress", "crc", "crc_text",
           "crc_file", "wipe_data", "wipe_file"]


def _squeeze(function, name, data, *options):
    # A buffer above the zlib and zstd bounds; the exact size, which costs
    # a whole run, is asked for only when it does not suffice.
    room = len(data) + len(data) // 128 + 1024
    out = buffer(room)
    n = function(out, room, data, len(data), *options)
    if n == -SHORT_BUF_ERROR:
        room = check_b(function(None, 0, data, len(data), *options), name)
        out = buffer(room)
        n = function(out, room, data, len(data), *options)
    n = check_b(n, name)
    return out.raw[:n]


def _restore(function, name, data, expected_size, *options):
    if expected_size is None:
        expected_size = check_b(function(None, 0, data, len(data), *options), name)
    room = int32(expected_size, "expected_size")
    out = buffer(room)
    n = check_b(function(out, room, data, len(data), *options), name)
    return out.raw[:n]


def zlib_deflate(data):
    """A zlib stream (RFC 1950) of data."""
    return _squeeze(lib.ZLIB_Deflate, "ZLIB_Deflate", data_arg(data))


def zlib_inflate(data, expected_size=None):
    """The bytes of a zlib stream. Without expected_size the stream is
    inflated twice, once to learn the size."""
    return _restore(lib.ZLIB_Inflate, "ZLIB_Inflate", data_arg(data), expected_size)


def compress(data, option=OPT_COMPR_ZLIB):
    """data compressed in the zlib format (OPT_COMPR_ZLIB) or as a Zstandard
    frame (OPT_COMPR_ZSTD)."""
    return _squeeze(lib.COMPR_Compress, "COMPR_Compress", data_arg(data), option)


def uncompress(data, option=OPT_COMPR_ZLIB, expected_size=None):
    """The bytes of compressed data; Zstandard frames must store their
    content size."""
    return _restore(lib.COMPR_Uncompress, "COMPR_Uncompress", data_arg(data), expected_size,
                    option)


def crc(data):
    """CRC-32 of the bytes (zlib's), as an unsigned number."""
    data = data_arg(data)
    return lib.CRC_Bytes(data, len(data), 0) & 0xFFFFFFFF


def crc_text(text):
    """CRC-32 of a text (str as UTF-8)."""
    return lib.CRC_String(text_arg(text), 0) & 0xFFFFFFFF


def crc_file(path):
    """CRC-32 of a file's bytes; VerimondError (OPEN_ERROR) if it cannot be
    read."""
    name = path_arg(path)
    value = lib.CRC_File(name, 0) & 0xFFFFFFFF
    if value == 0:
        # 0 is both the failure and the CRC of an empty file.
        try:
            with open(name, "rb") as f:
                f.read(1)
        except OSError:
            raise VerimondError(OPEN_ERROR, "CRC_File") from None
    return value


def wipe_data(block):
    """Zeroes a writable buffer (bytearray, writable memoryview or ctypes
    array) in place, in a way the compiler cannot leave out."""
    if isinstance(block, ctypes.Array):
        target, length = block, ctypes.sizeof(block)
    else:
        view = memoryview(block)
        if view.readonly:
            raise TypeError("wipe_data needs a writable buffer")
        length = view.nbytes
        # An empty buffer goes in as a real pointer, for the library's own
        # answer to a length of 0.
        target = (ctypes.c_char * max(length, 1)).from_buffer(
            view.cast("B") if length else bytearray(1))
    check_a(lib.WIPE_Data(target, length), "WIPE_Data")


def wipe_file(path, fast=False):
    """Overwrites a file (nine passes, or one of zeros when fast), truncates
    and removes it."""
    check_a(lib.WIPE_File(path_arg(path), 1 if fast else 0), "WIPE_File")
