"""The per-cipher families AES128_, AES192_, AES256_, DES_, TDEA_ and BLF_
(Blowfish), and padding (PAD_).

The families do not pad (their file calls excepted): data must be whole
blocks in ECB and CBC, and output is as long as input. mode is "ECB",
"CBC", "CFB", "OFB" or "CTR". Their contexts are one per family per thread
(the three AES families share one), usable only on the thread that made
them.
"""
import ctypes

from ._native import VerimondError, lib
from ._util import (buffer, check_a, check_b, check_handle, data_arg, optional_data,
                    optional_text, path_arg, take, text_arg, text_of)
from .constants import BAD_IV_LEN_ERROR, BAD_KEY_LEN_ERROR, OPT_PAD_PKCS5

__all__ = ["aes128", "aes192", "aes256", "des", "tdea", "blowfish", "des_check_key",
           "des_check_key_hex", "pad", "unpad", "pad_hex", "unpad_hex"]


def _direction(encrypt):
    return 1 if encrypt else 0


class BlockContext:
    """A cipher context made by a family's init or init_hex."""

    def __init__(self, family, handle):
        self._family = family
        self._handle = handle

    def update(self, data):
        """Encrypts or decrypts the next piece (whole blocks in ECB and CBC)."""
        data = data_arg(data)
        block = ctypes.create_string_buffer(data, max(len(data), 1))
        check_a(self._family._call("Update", self._handle, block, len(data)),
                self._family.prefix + "Update")
        return take(block, len(data), secret=True)

    def update_hex(self, data_hex):
        """The same on hex text; the result is upper-case hex."""
        data_hex = text_arg(data_hex, "data_hex")
        block = ctypes.create_string_buffer(data_hex, len(data_hex) + 1)
        check_a(self._family._call("UpdateHex", self._handle, block),
                self._family.prefix + "UpdateHex")
        return text_of(block)

    def ecb(self, data, encrypt=True):
        """Blowfish only: ECB on whole blocks under the context's key, with a
        direction of its own; the context's IV is left alone."""
        data = data_arg(data)
        block = ctypes.create_string_buffer(data, max(len(data), 1))
        check_a(lib.BLF_Ecb(self._handle, block, len(data), _direction(encrypt)), "BLF_Ecb")
        return take(block, len(data), secret=True)

    def ecb_hex(self, data_hex, encrypt=True):
        """Blowfish only: ecb on hex text."""
        data_hex = text_arg(data_hex, "data_hex")
        block = ctypes.create_string_buffer(data_hex, len(data_hex) + 1)
        check_a(lib.BLF_EcbHex(self._handle, block, _direction(encrypt)), "BLF_EcbHex")
        return text_of(block)

    def final(self):
        """Wipes the context; the object is of no use afterwards."""
        check_a(self._family._call("Final", self._handle), self._family.prefix + "Final")


class BlockFamily:
    """One cipher's family of calls."""

    def __init__(self, prefix, key_lengths, block_size, key_length_argument=False):
        self.prefix = prefix
        self.key_lengths = key_lengths
        self.block_size = block_size
        self._keyed = key_length_argument

    def _call(self, operation, *args):
        return getattr(lib, self.prefix + operation)(*args)

    def _key(self, key):
        # The library reads a fixed number of key bytes: a shorter key would
        # be read past its end, so lengths are screened here.
        key = data_arg(key, "key")
        if len(key) not in self.key_lengths:
            raise VerimondError(BAD_KEY_LEN_ERROR, self.prefix + "key")
        return (key, len(key)) if self._keyed else (key,)

    def _iv(self, mode, iv):
        if str(mode)[:3].upper() == "ECB":
            return optional_data(iv, "iv")
        iv = optional_data(iv, "iv")
        if iv is not None and len(iv) != self.block_size:
            raise VerimondError(BAD_IV_LEN_ERROR, self.prefix + "iv")
        return iv

    def ecb(self, data, key, encrypt=True):
        """ECB over whole blocks."""
        data = data_arg(data)
        out = buffer(len(data))
        check_a(self._call("Bytes", out, data, len(data), *self._key(key), _direction(encrypt)),
                self.prefix + "Bytes")
        return take(out, len(data), secret=not encrypt)

    def crypt(self, data, key, mode, iv=None, encrypt=True):
        """Encrypts or decrypts data in a mode; iv is one block (not for ECB)."""
        data = data_arg(data)
        out = buffer(len(data))
        check_a(self._call("BytesMode", out, data, len(data), *self._key(key),
                           _direction(encrypt), text_arg(mode, "mode"), self._iv(mode, iv)),
                self.prefix + "BytesMode")
        return take(out, len(data), secret=not encrypt)

    def ecb_hex(self, data_hex, key_hex, encrypt=True):
        """ECB on hex text; the result is upper-case hex."""
        data_hex = text_arg(data_hex, "data_hex")
        out = buffer(len(data_hex) + 1)
        check_a(self._call("Hex", out, data_hex, text_arg(key_hex, "key_hex"),
                           _direction(encrypt)), self.prefix + "Hex")
        return text_of(out)

    def crypt_hex(self, data_hex, key_hex, mode, iv_hex=None, encrypt=True):
        """crypt on hex texts; the result is upper-case hex."""
        data_hex = text_arg(data_hex, "data_hex")
        out = buffer(len(data_hex) + 1)
        check_a(self._call("HexMode", out, data_hex, text_arg(key_hex, "key_hex"),
                           _direction(encrypt), text_arg(mode, "mode"),
                           optional_text(iv_hex, "iv_hex")), self.prefix + "HexMode")
        return text_of(out)

    def crypt_b64(self, data_b64, key_b64, mode, iv_b64=None, encrypt=True):
        """crypt with data, key and IV in Base64; the result is Base64."""
        data_b64 = text_arg(data_b64, "data_b64")
        out = buffer(len(data_b64) + 4)
        check_a(self._call("B64Mode", out, data_b64, text_arg(key_b64, "key_b64"),
                           _direction(encrypt), text_arg(mode, "mode"),
                           optional_text(iv_b64, "iv_b64")), self.prefix + "B64Mode")
        return text_of(out)

    def crypt_file(self, output_path, input_path, key, mode, iv=None, encrypt=True, options=None):
        """File to file. ECB and CBC encryption pads (PKCS#5, or the OPT_PAD_
        value in options); OPT_PREFIX_IV puts the IV in front of the
        ciphertext (not in ECB). No output file is left after a failure."""
        args = (path_arg(output_path), path_arg(input_path), *self._key(key), _direction(encrypt),
                text_arg(mode, "mode"), self._iv(mode, iv))
        if options is None:
            check_a(self._call("File", *args), self.prefix + "File")
        else:
            check_a(self._call("FileExt", *args, options), self.prefix + "FileExt")

    def crypt_file_hex(self, output_path, input_path, key_hex, mode, iv_hex=None, encrypt=True):
        """crypt_file with the key and IV in hex."""
        check_a(self._call("FileHex", path_arg(output_path), path_arg(input_path),
                           text_arg(key_hex, "key_hex"), _direction(encrypt),
                           text_arg(mode, "mode"), optional_text(iv_hex, "iv_hex")),
                self.prefix + "FileHex")

    def init(self, key, mode, iv=None, encrypt=True):
        """The family's context on this thread, for data piece by piece."""
        handle = self._call("Init", *self._key(key), _direction(encrypt), text_arg(mode, "mode"),
                            self._iv(mode, iv))
        return BlockContext(self, check_handle(handle, self.prefix + "Init", self.init_error))

    def init_hex(self, key_hex, mode, iv_hex=None, encrypt=True):
        """init with the key and IV in hex."""
        handle = self._call("InitHex", text_arg(key_hex, "key_hex"), _direction(encrypt),
                            text_arg(mode, "mode"), optional_text(iv_hex, "iv_hex"))
        return BlockContext(self, check_handle(handle, self.prefix + "InitHex", self.init_error))

    def init_error(self):
        """The status of this thread's last init of the family."""
        return self._call("InitError")


aes128 = BlockFamily("AES128_", (16,), 16)
aes192 = BlockFamily("AES192_", (24,), 16)
aes256 = BlockFamily("AES256_", (32,), 16)
des = BlockFamily("DES_", (8,), 8)
tdea = BlockFamily("TDEA_", (24,), 8)
blowfish = BlockFamily("BLF_", tuple(range(1, 57)), 8, key_length_argument=True)


def des_check_key(key):
    """Raises VerimondError: BAD_KEY_LEN_ERROR unless the key is 8, 16 or 24
    bytes, WEAK_KEY_ERROR if any 8-byte part is a weak or semi-weak DES key."""
    key = data_arg(key, "key")
    check_a(lib.DES_CheckKey(key, len(key)), "DES_CheckKey")


def des_check_key_hex(key_hex):
    """des_check_key for a key in hex."""
    check_a(lib.DES_CheckKeyHex(text_arg(key_hex, "key_hex")), "DES_CheckKeyHex")


def pad(data, block_length=16, option=OPT_PAD_PKCS5):
    """data with 1 to block_length bytes of padding (OPT_PAD_PKCS5,
    _ONEANDZEROES, _ANSIX923 or _W3C); block_length 8 or 16."""
    data = data_arg(data)
    n = check_b(lib.PAD_BytesBlock(None, 0, data, len(data), block_length, option),
                "PAD_BytesBlock")
    out = buffer(n)
    n = check_b(lib.PAD_BytesBlock(out, n, data, len(data), block_length, option),
                "PAD_BytesBlock")
    return out.raw[:n]


def unpad(data, block_length=16, option=OPT_PAD_PKCS5):
    """data without its padding; bad padding raises DECRYPT_ERROR."""
    data = data_arg(data)
    out = buffer(len(data))
    n = check_b(lib.PAD_UnpadBytes(out, len(data), data, len(data), block_length, option),
                "PAD_UnpadBytes")
    return take(out, n, secret=True)


def pad_hex(data_hex, block_length=16, option=OPT_PAD_PKCS5):
    """pad on hex text (the padding in upper case)."""
    data_hex = text_arg(data_hex, "data_hex")
    room = len(data_hex) + 2 * block_length
    out = buffer(room + 1)
    n = check_b(lib.PAD_HexBlock(out, room, data_hex, block_length, option), "PAD_HexBlock")
    return text_of(out, n)


def unpad_hex(data_hex, block_length=16, option=OPT_PAD_PKCS5):
    """unpad on hex text."""
    data_hex = text_arg(data_hex, "data_hex")
    out = buffer(len(data_hex) + 1)
    n = check_b(lib.PAD_UnpadHex(out, len(data_hex), data_hex, block_length, option),
                "PAD_UnpadHex")
    return text_of(out, n)
