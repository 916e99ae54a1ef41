"""Message authentication codes (MAC_), extendable output (XOF_Bytes), the
keyed PRF (PRF_Bytes) and password-based key derivation (PBE_)."""
from ._native import VerimondError, lib
from ._util import (buffer, check_a, check_b, check_handle, data_arg, int32, take, text_arg,
                    text_of)
from .constants import (BAD_FLAG_ERROR, OPT_HASH_SHA256, OPT_HMAC_SHA256, OPT_KMAC_256,
                        OPT_XOF_SHAKE256)

__all__ = ["mac", "mac_hex", "mac_hex_from_hex", "Mac", "xof", "prf", "pbkdf2",
           "pbkdf2_hex", "scrypt", "scrypt_hex"]

_MAX_CODE = 64


def _screen_option(option, function):
    # The hex calls take a bad HMAC digest number for a length and report
    # success over meaningless bytes; refuse it before it gets there.
    if not (option & 0x300) and (option & 0xF) in (2, 8, 9, 14, 15):
        raise VerimondError(BAD_FLAG_ERROR, function)


def _as_bytes(value, name):
    return value.encode("utf-8") if isinstance(value, str) else data_arg(value, name)


def mac(data, key, option=OPT_HMAC_SHA256):
    """The code of data under key as bytes. option: OPT_HMAC_*, OPT_CMAC_*
    (keys of exactly the cipher's length), OPT_MAC_POLY1305 (32-byte key),
    OPT_KMAC_128 or OPT_KMAC_256."""
    data, key = data_arg(data), data_arg(key, "key")
    out = buffer(_MAX_CODE)
    n = check_b(lib.MAC_Bytes(out, _MAX_CODE, data, len(data), key, len(key), option),
                "MAC_Bytes")
    return out.raw[:n]


def mac_hex(data, key, option=OPT_HMAC_SHA256):
    """The code of data under key in lower-case hex."""
    _screen_option(option, "MAC_HexFromBytes")
    data, key = data_arg(data), data_arg(key, "key")
    out = buffer(2 * _MAX_CODE + 1)
    n = check_b(lib.MAC_HexFromBytes(out, 2 * _MAX_CODE, data, len(data), key, len(key), option),
                "MAC_HexFromBytes")
    return text_of(out, n)


def mac_hex_from_hex(data_hex, key_hex, option=OPT_HMAC_SHA256):
    """The code over a message and key given in hex, in lower-case hex."""
    _screen_option(option, "MAC_HexFromHex")
    out = buffer(2 * _MAX_CODE + 1)
    n = check_b(lib.MAC_HexFromHex(out, 2 * _MAX_CODE, text_arg(data_hex, "data_hex"),
                                   text_arg(key_hex, "key_hex"), option), "MAC_HexFromHex")
    return text_of(out, n)


class Mac:
    """An HMAC (over SHA-1, SHA-2 or SHA-3) computed piece by piece: the
    thread's one MAC_ stream. The key must not be empty."""

    def __init__(self, key, option=OPT_HMAC_SHA256):
        key = data_arg(key, "key")
        self._handle = check_handle(lib.MAC_Init(key, len(key), option), "MAC_Init")

    def update(self, data):
        data = data_arg(data)
        check_b(lib.MAC_AddBytes(self._handle, data, len(data)), "MAC_AddBytes")

    def code_length(self):
        return check_b(lib.MAC_CodeLength(self._handle), "MAC_CodeLength")

    def digest(self):
        """The code; the stream ends."""
        out = buffer(_MAX_CODE)
        n = check_b(lib.MAC_Final(out, _MAX_CODE, self._handle), "MAC_Final")
        return out.raw[:n]

    def reset(self):
        """Ends the stream without a code."""
        check_b(lib.MAC_Reset(self._handle), "MAC_Reset")


def xof(data, length, option=OPT_XOF_SHAKE256):
    """length bytes of SHAKE128/256, Ascon-XOF/XOFA or MGF1 over data
    (option OPT_XOF_*)."""
    data = data_arg(data)
    length = int32(length, "length")
    out = buffer(length)
    n = check_b(lib.XOF_Bytes(out, length, data, len(data), option), "XOF_Bytes")
    return out.raw[:n]


def prf(data, length, key=b"", custom="", option=OPT_KMAC_256):
    """length bytes of KMAC128/256 (OPT_KMAC_128, OPT_KMAC_256) of data
    under key with a customisation text, or of SHAKE (OPT_XOF_SHAKE128/256,
    which ignore key and custom)."""
    data, key = data_arg(data), data_arg(key, "key")
    length = int32(length, "length")
    out = buffer(length)
    n = check_b(lib.PRF_Bytes(out, length, data, len(data), key, len(key),
                              text_arg(custom, "custom"), option), "PRF_Bytes")
    return take(out, n, secret=True)


def pbkdf2(password, salt, iterations, length, option=OPT_HASH_SHA256):
    """PBKDF2 with HMAC over OPT_HASH_SHA1, _SHA224, _SHA256, _SHA384 or
    _SHA512: length key bytes. password (str as UTF-8, or bytes) and salt
    must not be empty."""
    password, salt = _as_bytes(password, "password"), data_arg(salt, "salt")
    length = int32(length, "length")
    out = buffer(length)
    check_a(lib.PBE_Kdf2(out, length, password, len(password), salt, len(salt),
                         int32(iterations, "iterations"), option), "PBE_Kdf2")
    return take(out, length, secret=True)


def pbkdf2_hex(password, salt_hex, iterations, length, option=OPT_HASH_SHA256):
    """PBKDF2 of a text password and a hex salt (either may be empty): the
    key in upper-case hex."""
    length = int32(length, "length")
    if length > 0x3FFFFFF0:
        raise ValueError("length is too large")
    out = buffer(2 * length + 1)
    check_a(lib.PBE_Kdf2Hex(out, 2 * length, length, text_arg(password, "password"),
                            text_arg(salt_hex, "salt_hex"), int32(iterations, "iterations"),
                            option), "PBE_Kdf2Hex")
    return text_of(out, 2 * length)


def scrypt(password, salt, n, r, p, length):
    """scrypt: length key bytes with cost n (a power of two), block size r
    and parallelism p. password (str as UTF-8, or bytes) and salt may be
    empty."""
    password, salt = _as_bytes(password, "password"), data_arg(salt, "salt")
    length = int32(length, "length")
    out = buffer(length)
    check_b(lib.PBE_Scrypt(out, length, password, len(password), salt, len(salt),
                           int32(n, "n"), int32(r, "r"), int32(p, "p"), 0), "PBE_Scrypt")
    return take(out, length, secret=True)


def scrypt_hex(password, salt_hex, n, r, p, length):
    """scrypt of a text password and a hex salt: the key in upper-case hex."""
    length = int32(length, "length")
    if length > 0x3FFFFFF0:
        raise ValueError("length is too large")
    out = buffer(2 * length + 1)
    check_b(lib.PBE_ScryptHex(out, 2 * length, length, text_arg(password, "password"),
                              text_arg(salt_hex, "salt_hex"), int32(n, "n"), int32(r, "r"),
                              int32(p, "p"), 0), "PBE_ScryptHex")
    return text_of(out, 2 * length)
