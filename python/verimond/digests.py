"""Message digests: the HASH_ dispatcher, its stream, the SHA3_ stream and
the SHA1_, SHA2_ and MD5_ families.

Stateful objects (Hash, Sha3, the streams of sha1/sha2/md5) hold the one
context their family keeps per thread: opening a second one on the same
thread ends the first, and an object is usable only on the thread that made
it.
"""
from ._native import VerimondError, lib
from ._util import (buffer, check_a, check_b, check_handle, data_arg, path_arg, text_arg,
                    text_of)
from .constants import BAD_PARAM_ERROR, OPT_HASH_SHA256

__all__ = ["digest", "digest_hex", "digest_hex_from_hex", "digest_hex_from_bits",
           "digest_file", "digest_file_hex", "digest_length", "Hash", "Sha3",
           "sha1", "sha2", "md5"]

_MAX_DIGEST = 64


def digest(data, option=OPT_HASH_SHA256):
    """The digest of data as bytes; option is an OPT_HASH_ number (with
    OPT_HASH_DOUBLE, the digest of the digest)."""
    data = data_arg(data)
    out = buffer(_MAX_DIGEST)
    n = check_b(lib.HASH_Bytes(out, _MAX_DIGEST, data, len(data), option), "HASH_Bytes")
    return out.raw[:n]


def digest_hex(data, option=OPT_HASH_SHA256):
    """The digest of data in lower-case hex."""
    data = data_arg(data)
    out = buffer(2 * _MAX_DIGEST + 1)
    n = check_b(lib.HASH_HexFromBytes(out, 2 * _MAX_DIGEST, data, len(data), option),
                "HASH_HexFromBytes")
    return text_of(out, n)


def digest_hex_from_hex(data_hex, option=OPT_HASH_SHA256):
    """The digest of a message given in hex, in lower-case hex. An odd
    length raises; note that an even-length text that is not hex is
    digested as the empty message."""
    data_hex = text_arg(data_hex, "data_hex")
    out = buffer(2 * _MAX_DIGEST + 1)
    n = check_b(lib.HASH_HexFromHex(out, 2 * _MAX_DIGEST, data_hex, option), "HASH_HexFromHex")
    return text_of(out, n)


def digest_hex_from_bits(data, bits, option=OPT_HASH_SHA256):
    """The digest of the first `bits` bits of data (a last partial byte
    holds its bits at the high end), in lower-case hex. SHA-1, SHA-2 and
    SHA-3 only."""
    data = data_arg(data)
    if not 0 <= bits <= 8 * len(data):
        raise ValueError("bits must be between 0 and 8 * len(data)")
    out = buffer(2 * _MAX_DIGEST + 1)
    n = check_b(lib.HASH_HexFromBits(out, 2 * _MAX_DIGEST, data, bits, option),
                "HASH_HexFromBits")
    return text_of(out, n)


def digest_file(path, option=OPT_HASH_SHA256):
    """The digest of a file's bytes; OPT_HASH_TEXT_MODE reads CR LF as LF
    and stops at a byte 0x1A."""
    out = buffer(_MAX_DIGEST)
    n = check_b(lib.HASH_File(out, _MAX_DIGEST, path_arg(path), option), "HASH_File")
    return out.raw[:n]


def digest_file_hex(path, option=OPT_HASH_SHA256):
    """The digest of a file in lower-case hex."""
    out = buffer(2 * _MAX_DIGEST + 1)
    n = check_b(lib.HASH_HexFromFile(out, 2 * _MAX_DIGEST, path_arg(path), option),
                "HASH_HexFromFile")
    return text_of(out, n)


def digest_length(option=OPT_HASH_SHA256):
    """The digest length in bytes of an OPT_HASH_ number."""
    return check_b(lib.HASH_Length(option), "HASH_Length")


class Hash:
    """A digest computed piece by piece (SHA-1, SHA-2, SHA-3), the thread's
    one HASH_ stream."""

    def __init__(self, option=OPT_HASH_SHA256):
        self._handle = check_handle(lib.HASH_Init(option), "HASH_Init")

    def update(self, data):
        """Adds bytes to the message."""
        data = data_arg(data)
        check_b(lib.HASH_AddBytes(self._handle, data, len(data)), "HASH_AddBytes")

    def digest_length(self):
        return check_b(lib.HASH_DigestLength(self._handle), "HASH_DigestLength")

    def digest(self):
        """The digest; the stream ends."""
        out = buffer(_MAX_DIGEST)
        n = check_b(lib.HASH_Final(out, _MAX_DIGEST, self._handle), "HASH_Final")
        return out.raw[:n]

    def reset(self):
        """Ends the stream without a digest."""
        check_b(lib.HASH_Reset(self._handle), "HASH_Reset")


class Sha3:
    """A SHA-3 digest of 224, 256, 384 or 512 bits computed piece by piece,
    the thread's one SHA3_ stream."""

    def __init__(self, bits=256):
        handle = lib.SHA3_Init(bits)
        if handle == 0:
            raise VerimondError(BAD_PARAM_ERROR, "SHA3_Init")
        self._handle = handle

    def update(self, data):
        data = data_arg(data)
        check_a(lib.SHA3_AddBytes(self._handle, data, len(data)), "SHA3_AddBytes")

    def update_text(self, text):
        """Adds the bytes of a text (str as UTF-8)."""
        check_a(lib.SHA3_AddString(self._handle, text_arg(text)), "SHA3_AddString")

    def length_in_bytes(self):
        return check_b(lib.SHA3_LengthInBytes(self._handle), "SHA3_LengthInBytes")

    def hexdigest(self):
        """The digest in lower-case hex; the stream ends."""
        out = buffer(2 * _MAX_DIGEST + 1)
        n = check_b(lib.SHA3_HexDigest(out, 2 * _MAX_DIGEST, self._handle), "SHA3_HexDigest")
        return text_of(out, n)

    def reset(self):
        check_a(lib.SHA3_Reset(self._handle), "SHA3_Reset")


class _FixedDigestStream:
    """The stream of a SHA1_, SHA2_ or MD5_ family."""

    def __init__(self, family):
        self._family = family
        self._handle = family._call("Init")

    def update(self, data):
        data = data_arg(data)
        check_a(self._family._call("AddBytes", self._handle, data, len(data)),
                self._family.prefix + "AddBytes")

    def update_text(self, text):
        check_a(self._family._call("AddString", self._handle, text_arg(text)),
                self._family.prefix + "AddString")

    def hexdigest(self):
        """The digest in lower-case hex; the stream ends."""
        out = buffer(129)
        check_a(self._family._call("HexDigest", out, self._handle),
                self._family.prefix + "HexDigest")
        return text_of(out)

    def reset(self):
        check_a(self._family._call("Reset", self._handle), self._family.prefix + "Reset")


class _FixedDigestFamily:
    """SHA1_ (SHA-1), SHA2_ (SHA-256) or MD5_: one digest per family, hex
    results in lower case, failures as positive codes."""

    def __init__(self, prefix, length):
        self.prefix = prefix
        self.digest_size = length

    def _call(self, operation, *args):
        return getattr(lib, self.prefix + operation)(*args)

    def _hex(self, operation, *args):
        out = buffer(129)
        check_a(self._call(operation, out, *args), self.prefix + operation)
        return text_of(out)

    def hex_of_text(self, text):
        """The digest of a text (str as UTF-8) in hex."""
        return self._hex("StringHexHash", text_arg(text))

    def hex_of_file(self, path, text_mode=False):
        """The digest of a file in hex; text_mode reads CR LF as LF."""
        return self._hex("FileHexHash", path_arg(path), b"t" if text_mode else b"b")

    def hex_of_bytes(self, data):
        data = data_arg(data)
        return self._hex("BytesHexHash", data, len(data))

    def digest(self, data):
        """The digest as bytes."""
        data = data_arg(data)
        out = buffer(self.digest_size)
        check_a(self._call("BytesHash", out, data, len(data)), self.prefix + "BytesHash")
        return out.raw[:self.digest_size]

    def hmac_hex(self, data, key):
        """The HMAC of data under key, in hex."""
        data, key = data_arg(data), data_arg(key, "key")
        return self._hex("Hmac", data, len(data), key, len(key))

    def hmac_hex_from_hex(self, data_hex, key_hex):
        """The HMAC over hex texts, decoded loosely: non-digits are skipped
        and an odd last digit is dropped."""
        return self._hex("HmacHex", text_arg(data_hex), text_arg(key_hex))

    def stream(self):
        """The family's one stream on this thread (update, update_text,
        hexdigest, reset)."""
        return _FixedDigestStream(self)


sha1 = _FixedDigestFamily("SHA1_", 20)
sha2 = _FixedDigestFamily("SHA2_", 32)
md5 = _FixedDigestFamily("MD5_", 16)
