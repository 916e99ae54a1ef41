"""Hex and Base64 conversion, UTF-8 from 16-bit text, path names (CNV_)."""
from ._native import lib
from ._util import buffer, check_b, data_arg, path_arg, text_arg, text_of

__all__ = ["hex_from_bytes", "bytes_from_hex", "hex_filter", "b64_from_bytes",
           "bytes_from_b64", "b64_filter", "utf8_from_wide", "short_path_name"]


def hex_from_bytes(data):
    """Upper-case hex of the bytes."""
    data = data_arg(data)
    n = check_b(lib.CNV_HexStrFromBytes(None, 0, data, len(data)), "CNV_HexStrFromBytes")
    out = buffer(n + 1)
    n = check_b(lib.CNV_HexStrFromBytes(out, n, data, len(data)), "CNV_HexStrFromBytes")
    return text_of(out, n)


def bytes_from_hex(text):
    """Decodes hex; separators (white space, punctuation) are skipped, other
    letters than a-f raise VerimondError (INVALID_DATA_ERROR)."""
    text = text_arg(text)
    n = check_b(lib.CNV_BytesFromHexStr(None, 0, text), "CNV_BytesFromHexStr")
    if n == 0:
        return b""
    out = buffer(n)
    n = check_b(lib.CNV_BytesFromHexStr(out, n, text), "CNV_BytesFromHexStr")
    return out.raw[:n]


def hex_filter(text):
    """The hex digits of the text, all else dropped."""
    text = text_arg(text)
    out = buffer(len(text) + 1)
    n = check_b(lib.CNV_HexFilter(out, text, len(text)), "CNV_HexFilter")
    return text_of(out, n)


def b64_from_bytes(data):
    """Base64 (RFC 4648) of the bytes, without line breaks."""
    data = data_arg(data)
    n = check_b(lib.CNV_B64StrFromBytes(None, 0, data, len(data)), "CNV_B64StrFromBytes")
    out = buffer(n + 1)
    n = check_b(lib.CNV_B64StrFromBytes(out, n, data, len(data)), "CNV_B64StrFromBytes")
    return text_of(out, n)


def bytes_from_b64(text):
    """Decodes Base64; white space is skipped, the text ends at the first
    '='."""
    text = text_arg(text)
    n = check_b(lib.CNV_BytesFromB64Str(None, 0, text), "CNV_BytesFromB64Str")
    if n == 0:
        return b""
    out = buffer(n)
    n = check_b(lib.CNV_BytesFromB64Str(out, n, text), "CNV_BytesFromB64Str")
    return out.raw[:n]


def b64_filter(text):
    """The Base64 characters (and '=') of the text, all else dropped."""
    text = text_arg(text)
    out = buffer(len(text) + 1)
    n = check_b(lib.CNV_B64Filter(out, text, len(text)), "CNV_B64Filter")
    return text_of(out, n)


def _wide(text):
    return text.encode("utf-16-le", "surrogatepass") + b"\0\0"


def utf8_from_wide(text):
    """The library's UTF-8 of a str passed as 16-bit units. Surrogates,
    and so characters beyond U+FFFF, raise VerimondError (ENCODING_ERROR)."""
    wide = _wide(text)
    n = check_b(lib.CNV_Utf8FromWide(None, 0, wide), "CNV_Utf8FromWide")
    out = buffer(n + 1)
    n = check_b(lib.CNV_Utf8FromWide(out, n + 1, wide), "CNV_Utf8FromWide")
    return out.raw[:n]


def short_path_name(path):
    """The path as the library names it (there are no short names here);
    the file must exist, else VerimondError."""
    wide = _wide(path if isinstance(path, str) else path_arg(path).decode())
    n = check_b(lib.CNV_ShortPathName(None, 0, wide), "CNV_ShortPathName")
    out = buffer(n + 1)
    n = check_b(lib.CNV_ShortPathName(out, n, wide), "CNV_ShortPathName")
    return text_of(out, n)
