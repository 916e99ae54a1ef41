"""Stream ciphers: CIPHER_Stream (ARCFOUR, Salsa20, ChaCha20) and PC1_
(ARCFOUR under its own name). Every call works both ways."""
from ._native import lib
from ._util import (buffer, check_a, check_handle, data_arg, optional_data, optional_text,
                    path_arg, size, take, text_arg, text_of)
from .constants import OPT_STREAM_CHACHA20

__all__ = ["stream_cipher", "stream_cipher_hex", "stream_cipher_file", "StreamCipher", "pc1",
           "pc1_hex", "pc1_file"]


def stream_cipher(data, key, iv=None, counter=0, option=OPT_STREAM_CHACHA20):
    """data encrypted or decrypted. option: OPT_STREAM_ARCFOUR (no IV),
    OPT_STREAM_SALSA20 (key 16/32, IV 8), OPT_STREAM_CHACHA20 (key 16/32,
    IV 8, 12 or 16; counter is the first block number)."""
    data, key, iv = data_arg(data), data_arg(key, "key"), optional_data(iv, "iv")
    out = buffer(len(data))
    check_a(lib.CIPHER_StreamBytes(out, data, len(data), key, len(key), iv, size(iv),
                                   counter & 0xFFFFFFFF, option), "CIPHER_StreamBytes")
    return take(out, len(data), secret=True)


def stream_cipher_hex(data_hex, key_hex, iv_hex=None, counter=0, option=OPT_STREAM_CHACHA20):
    """stream_cipher on hex texts; upper-case hex."""
    data_hex = text_arg(data_hex, "data_hex")
    out = buffer(len(data_hex) + 1)
    check_a(lib.CIPHER_StreamHex(out, len(data_hex), data_hex, text_arg(key_hex, "key_hex"),
                                 optional_text(iv_hex, "iv_hex"), counter & 0xFFFFFFFF, option),
            "CIPHER_StreamHex")
    return text_of(out)


def stream_cipher_file(output_path, input_path, key, iv=None, counter=0,
                       option=OPT_STREAM_CHACHA20):
    """stream_cipher from file to file (the output is the bare stream). It
    ends this thread's StreamCipher context."""
    key, iv = data_arg(key, "key"), optional_data(iv, "iv")
    check_a(lib.CIPHER_StreamFile(path_arg(output_path), path_arg(input_path), key, len(key), iv,
                                  size(iv), counter & 0xFFFFFFFF, option), "CIPHER_StreamFile")


class StreamCipher:
    """A stream cipher over pieces of a message: the thread's one
    CIPHER_Stream context. The output does not depend on how the message is
    cut."""

    def __init__(self, key, iv=None, counter=0, option=OPT_STREAM_CHACHA20):
        key, iv = data_arg(key, "key"), optional_data(iv, "iv")
        self._handle = check_handle(
            lib.CIPHER_StreamInit(key, len(key), iv, size(iv), counter & 0xFFFFFFFF, option),
            "CIPHER_StreamInit")

    def update(self, data):
        data = data_arg(data)
        out = buffer(len(data))
        check_a(lib.CIPHER_StreamUpdate(self._handle, out, data, len(data)),
                "CIPHER_StreamUpdate")
        return take(out, len(data), secret=True)

    def final(self):
        """Wipes the context."""
        check_a(lib.CIPHER_StreamFinal(self._handle), "CIPHER_StreamFinal")


def pc1(data, key):
    """ARCFOUR of data under key (one byte or more)."""
    data, key = data_arg(data), data_arg(key, "key")
    out = buffer(len(data))
    check_a(lib.PC1_Bytes(out, data, len(data), key, len(key)), "PC1_Bytes")
    return take(out, len(data), secret=True)


def pc1_hex(data_hex, key_hex):
    """pc1 on hex texts; upper-case hex."""
    data_hex = text_arg(data_hex, "data_hex")
    out = buffer(len(data_hex) + 1)
    check_a(lib.PC1_Hex(out, len(data_hex), data_hex, text_arg(key_hex, "key_hex")), "PC1_Hex")
    return text_of(out)


def pc1_file(output_path, input_path, key):
    """pc1 from file to file."""
    key = data_arg(key, "key")
    check_a(lib.PC1_File(path_arg(output_path), path_arg(input_path), key, len(key)), "PC1_File")
