"""The generic cipher calls (CIPHER_): AES and Triple DES chosen by an
algorithm text such as "aes128/cbc/pkcs5" or by option bits
(OPT_CIPHER_* | OPT_MODE_* | OPT_PAD_*), with padding and an optional IV in
front of the ciphertext (OPT_PREFIX_IV); key wrap.

Give the cipher in algorithm or in options, not both.
"""
import ctypes

from ._native import VerimondError, lib
from ._util import (buffer, check_a, check_b, check_handle, data_arg, optional_data,
                    optional_text, path_arg, size, take, text_arg, text_of, wipe)
from .constants import INVALID_DATA_ERROR

__all__ = ["encrypt", "decrypt", "encrypt_bytes2", "decrypt_bytes2", "encrypt_hex",
           "decrypt_hex", "encrypt_file", "decrypt_file", "Cipher", "key_wrap", "key_unwrap"]

# Most that padding and a prefixed IV add to a message.
_GROWTH = 32


def _encrypt(export, data, key, iv, algorithm, options):
    data, key, iv = data_arg(data), data_arg(key, "key"), optional_data(iv, "iv")
    algorithm = optional_text(algorithm, "algorithm")
    function = getattr(lib, export)
    n = check_b(function(None, 0, data, len(data), key, len(key), iv, size(iv), algorithm,
                         options), export)
    out = buffer(n)
    n = check_b(function(out, n, data, len(data), key, len(key), iv, size(iv), algorithm,
                         options), export)
    return out.raw[:n]


def _decrypt(export, data, key, iv, algorithm, options):
    data, key, iv = data_arg(data), data_arg(key, "key"), optional_data(iv, "iv")
    algorithm = optional_text(algorithm, "algorithm")
    out = buffer(len(data))
    try:
        n = check_b(getattr(lib, export)(out, len(data), data, len(data), key, len(key), iv,
                                         size(iv), algorithm, options), export)
    except VerimondError:
        wipe(out)
        raise
    return take(out, n, secret=True)


def encrypt(data, key, iv=None, algorithm=None, options=0):
    """Encrypts data; ECB and CBC pad by default (PKCS#5). With
    OPT_PREFIX_IV the result starts with the IV."""
    return _encrypt("CIPHER_EncryptBytes", data, key, iv, algorithm, options)


def decrypt(data, key, iv=None, algorithm=None, options=0):
    """Decrypts data and removes its padding. With OPT_PREFIX_IV the IV is
    taken from the front of data and iv is not needed. Bad padding raises
    DECRYPT_ERROR; there is no integrity check."""
    return _decrypt("CIPHER_DecryptBytes", data, key, iv, algorithm, options)


def encrypt_bytes2(data, key, iv=None, algorithm=None, options=0):
    """encrypt through the export's second name, CIPHER_EncryptBytes2."""
    return _encrypt("CIPHER_EncryptBytes2", data, key, iv, algorithm, options)


def decrypt_bytes2(data, key, iv=None, algorithm=None, options=0):
    """decrypt through the export's second name, CIPHER_DecryptBytes2."""
    return _decrypt("CIPHER_DecryptBytes2", data, key, iv, algorithm, options)


def _hex(export, data_hex, key_hex, iv_hex, algorithm, options):
    data_hex = text_arg(data_hex, "data_hex")
    room = len(data_hex) + 2 * _GROWTH
    out = buffer(room + 1)
    n = check_b(getattr(lib, export)(out, room, data_hex, text_arg(key_hex, "key_hex"),
                                     optional_text(iv_hex, "iv_hex"),
                                     optional_text(algorithm, "algorithm"), options), export)
    # Characters beyond the returned count are not part of the result.
    return text_of(out, n)


def encrypt_hex(data_hex, key_hex, iv_hex=None, algorithm=None, options=0):
    """encrypt on hex texts (the message must not be empty); upper-case hex."""
    return _hex("CIPHER_EncryptHex", data_hex, key_hex, iv_hex, algorithm, options)


def decrypt_hex(data_hex, key_hex, iv_hex=None, algorithm=None, options=0):
    """decrypt on hex texts; upper-case hex."""
    return _hex("CIPHER_DecryptHex", data_hex, key_hex, iv_hex, algorithm, options)


def _file(export, output_path, input_path, key, iv, algorithm, options):
    key, iv = data_arg(key, "key"), optional_data(iv, "iv")
    result = getattr(lib, export)(path_arg(output_path), path_arg(input_path), key, len(key), iv,
                                  size(iv), optional_text(algorithm, "algorithm"), options)
    check_a(result, export)


def encrypt_file(output_path, input_path, key, iv=None, algorithm=None, options=0):
    """Encrypts a file: [IV with OPT_PREFIX_IV, not in ECB] ciphertext. ECB
    and CBC always pad here, even with OPT_PAD_NONE."""
    _file("CIPHER_FileEncrypt", output_path, input_path, key, iv, algorithm, options)


def decrypt_file(output_path, input_path, key, iv=None, algorithm=None, options=0):
    """Decrypts a file made by encrypt_file; OPT_PAD_NONE or
    OPT_LEAVE_PADDING keep the padding in the output."""
    _file("CIPHER_FileDecrypt", output_path, input_path, key, iv, algorithm, options)


class Cipher:
    """A message processed piece by piece, with no padding and no IV prefix:
    the thread's one CIPHER_ context."""

    def __init__(self, key, iv=None, algorithm=None, options=0, encrypt=True):
        key, iv = data_arg(key, "key"), optional_data(iv, "iv")
        handle = lib.CIPHER_Init(1 if encrypt else 0, optional_text(algorithm, "algorithm"),
                                 key, len(key), iv, size(iv), options)
        self._handle = check_handle(handle, "CIPHER_Init")

    @classmethod
    def from_hex(cls, key_hex, iv_hex=None, algorithm=None, options=0, encrypt=True):
        """A context from a key and IV in hex."""
        self = cls.__new__(cls)
        handle = lib.CIPHER_InitHex(1 if encrypt else 0, optional_text(algorithm, "algorithm"),
                                    text_arg(key_hex, "key_hex"),
                                    optional_text(iv_hex, "iv_hex"), options)
        self._handle = check_handle(handle, "CIPHER_InitHex")
        return self

    def update(self, data):
        """The next piece; whole blocks in ECB and CBC."""
        data = data_arg(data)
        out = buffer(len(data))
        # A part block in ECB or CBC comes back as +26, other failures negative.
        check_a(lib.CIPHER_Update(self._handle, out, len(data), data, len(data)),
                "CIPHER_Update")
        return take(out, len(data), secret=True)

    def update_hex(self, data_hex):
        """update on hex text; upper-case hex."""
        data_hex = text_arg(data_hex, "data_hex")
        if len(data_hex) % 2:
            # An odd digit count would end the process inside the library.
            raise VerimondError(INVALID_DATA_ERROR, "CIPHER_UpdateHex")
        out = ctypes.create_string_buffer(len(data_hex) + 1)
        check_b(lib.CIPHER_UpdateHex(self._handle, out, len(data_hex), data_hex),
                "CIPHER_UpdateHex")
        return text_of(out)

    def final(self):
        """Ends the context."""
        check_b(lib.CIPHER_Final(self._handle), "CIPHER_Final")


def key_wrap(data, kek, options):
    """Wraps key material under a key-encryption key: options OPT_CIPHER_AES128,
    _AES192 or _AES256 (RFC 3394, data a multiple of 8 bytes, 16 or more) or
    OPT_CIPHER_TDEA (RFC 3217, a 24-byte key)."""
    data, kek = data_arg(data), data_arg(kek, "kek")
    n = check_b(lib.CIPHER_KeyWrap(None, 0, data, len(data), kek, len(kek), options),
                "CIPHER_KeyWrap")
    out = buffer(n)
    n = check_b(lib.CIPHER_KeyWrap(out, n, data, len(data), kek, len(kek), options),
                "CIPHER_KeyWrap")
    return out.raw[:n]


def key_unwrap(data, kek, options):
    """Unwraps what key_wrap made; a wrong KEK or altered data raises."""
    data, kek = data_arg(data), data_arg(kek, "kek")
    out = buffer(len(data))
    try:
        n = check_b(lib.CIPHER_KeyUnwrap(out, len(data), data, len(data), kek, len(kek), options),
                    "CIPHER_KeyUnwrap")
    except VerimondError:
        wipe(out)
        raise
    return take(out, n, secret=True)
