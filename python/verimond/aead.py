"""Authenticated encryption: the AEAD_ family (AES-GCM, ChaCha20-Poly1305,
Ascon) and the GCM_ family (AES-GCM with any IV and tag length).

Nothing unauthenticated is ever returned: on a failed check the output
buffer is wiped before the exception is raised.
"""
from ._native import VerimondError, lib
from ._util import (buffer, check_a, check_b, check_handle, data_arg, optional_data, size,
                    take, wipe)
from .constants import OPT_AEAD_CHACHA20_POLY1305, OPT_PREFIX_IV

__all__ = ["aead_encrypt", "aead_decrypt", "aead_seal", "aead_open", "Aead", "gcm_encrypt",
           "gcm_decrypt", "GcmKey"]

_TAG = 16


def _checked_output(call, out, function, style=check_b):
    try:
        return style(call(), function)
    except VerimondError:
        wipe(out)
        raise


def aead_encrypt(data, key, nonce, aad=b"", option=OPT_AEAD_CHACHA20_POLY1305):
    """(ciphertext, 16-byte tag). option: OPT_AEAD_AES_128_GCM (16-byte
    key), OPT_AEAD_AES_256_GCM or OPT_AEAD_CHACHA20_POLY1305 (32); the nonce
    is 12 bytes. Ascon is offered by aead_seal only."""
    data, key, nonce = data_arg(data), data_arg(key, "key"), data_arg(nonce, "nonce")
    aad = data_arg(aad, "aad")
    out, tag = buffer(len(data)), buffer(_TAG)
    check_b(lib.AEAD_Encrypt(out, len(data), tag, _TAG, data, len(data), key, len(key), nonce,
                             len(nonce), aad, len(aad), option), "AEAD_Encrypt")
    return out.raw[:len(data)], tag.raw[:_TAG]


def aead_decrypt(ciphertext, key, nonce, tag, aad=b"", option=OPT_AEAD_CHACHA20_POLY1305):
    """The plaintext, if the tag (4 to 16 bytes) is right; else
    VerimondError (AUTH_FAIL_ERROR)."""
    data, key, nonce = data_arg(ciphertext, "ciphertext"), data_arg(key, "key"), data_arg(nonce, "nonce")
    tag, aad = data_arg(tag, "tag"), data_arg(aad, "aad")
    out = buffer(len(data))
    _checked_output(lambda: lib.AEAD_Decrypt(out, len(data), data, len(data), key, len(key), nonce,
                                             len(nonce), aad, len(aad), tag, len(tag), option),
                    out, "AEAD_Decrypt")
    return take(out, len(data), secret=True)


def aead_seal(data, key, nonce, aad=b"", option=OPT_AEAD_CHACHA20_POLY1305):
    """ciphertext and tag in one byte string, with the nonce in front when
    option has OPT_PREFIX_IV. Also Ascon (OPT_AEAD_ASCON_128, _128A: 16-byte
    key and nonce)."""
    data, key, nonce = data_arg(data), data_arg(key, "key"), data_arg(nonce, "nonce")
    aad = data_arg(aad, "aad")
    args = (data, len(data), key, len(key), nonce, len(nonce), aad, len(aad), option)
    n = check_b(lib.AEAD_EncryptWithTag(None, 0, *args), "AEAD_EncryptWithTag")
    out = buffer(n)
    n = check_b(lib.AEAD_EncryptWithTag(out, n, *args), "AEAD_EncryptWithTag")
    return out.raw[:n]


def aead_open(data, key, nonce=None, aad=b"", option=OPT_AEAD_CHACHA20_POLY1305):
    """The plaintext of what aead_seal made, if authentic. With
    OPT_PREFIX_IV the nonce is read from the front of data."""
    data, key, nonce = data_arg(data), data_arg(key, "key"), optional_data(nonce, "nonce")
    aad = data_arg(aad, "aad")
    if option & OPT_PREFIX_IV:
        nonce = None
    args = (data, len(data), key, len(key), nonce, size(nonce), aad, len(aad), option)
    n = check_b(lib.AEAD_DecryptWithTag(None, 0, *args), "AEAD_DecryptWithTag")
    # An output length of 0 is a size query, which checks nothing: the room
    # is one byte more, so that an empty plaintext is authenticated too.
    out = buffer(n + 1)
    n = _checked_output(lambda: lib.AEAD_DecryptWithTag(out, n + 1, *args), out,
                        "AEAD_DecryptWithTag")
    return take(out, n, secret=True)


class Aead:
    """Incremental AES-GCM or ChaCha20-Poly1305 under one key: the thread's
    one AEAD_ context. Per message: set_nonce, add_aad (any number),
    start_encrypt or start_decrypt(tag), update (any number), then
    finish_encrypt or finish_decrypt. The key survives each message."""

    def __init__(self, key, option=OPT_AEAD_CHACHA20_POLY1305):
        key = data_arg(key, "key")
        self._handle = check_handle(lib.AEAD_InitKey(key, len(key), option), "AEAD_InitKey")
        self._decrypting = False

    def set_nonce(self, nonce):
        nonce = data_arg(nonce, "nonce")
        check_b(lib.AEAD_SetNonce(self._handle, nonce, len(nonce)), "AEAD_SetNonce")

    def add_aad(self, aad):
        aad = data_arg(aad, "aad")
        check_b(lib.AEAD_AddAAD(self._handle, aad, len(aad)), "AEAD_AddAAD")

    def start_encrypt(self):
        check_b(lib.AEAD_StartEncrypt(self._handle), "AEAD_StartEncrypt")
        self._decrypting = False

    def start_decrypt(self, tag):
        """Starts decryption against the expected tag (4 to 16 bytes)."""
        tag = data_arg(tag, "tag")
        check_b(lib.AEAD_StartDecrypt(self._handle, tag, len(tag)), "AEAD_StartDecrypt")
        self._decrypting = True

    def update(self, data):
        """The next piece. While decrypting, the plaintext is not yet
        authenticated: keep it until finish_decrypt succeeds."""
        data = data_arg(data)
        out = buffer(len(data))
        check_b(lib.AEAD_Update(self._handle, out, len(data), data, len(data)), "AEAD_Update")
        return take(out, len(data), secret=self._decrypting)

    def finish_encrypt(self):
        """The 16-byte tag."""
        tag = buffer(_TAG)
        check_b(lib.AEAD_FinishEncrypt(self._handle, tag, _TAG), "AEAD_FinishEncrypt")
        return tag.raw[:_TAG]

    def finish_decrypt(self):
        """Raises VerimondError (AUTH_FAIL_ERROR) if the tag was wrong."""
        check_b(lib.AEAD_FinishDecrypt(self._handle), "AEAD_FinishDecrypt")

    def destroy(self):
        """Wipes the context and its key."""
        check_b(lib.AEAD_Destroy(self._handle), "AEAD_Destroy")


def gcm_encrypt(data, key, iv, aad=b"", tag_length=16):
    """AES-GCM with a 16, 24 or 32-byte key and an IV of any length:
    (ciphertext, tag of tag_length bytes, 4 to 16)."""
    data, key, iv, aad = data_arg(data), data_arg(key, "key"), data_arg(iv, "iv"), data_arg(aad, "aad")
    out, tag = buffer(len(data)), buffer(tag_length)
    check_b(lib.GCM_Encrypt(out, len(data), tag, tag_length, data, len(data), key, len(key), iv,
                            len(iv), aad, len(aad), 0), "GCM_Encrypt")
    return out.raw[:len(data)], tag.raw[:tag_length]


def gcm_decrypt(ciphertext, key, iv, tag, aad=b""):
    """The plaintext, if the tag is right; else VerimondError
    (AUTH_FAIL_ERROR)."""
    data, key, iv = data_arg(ciphertext, "ciphertext"), data_arg(key, "key"), data_arg(iv, "iv")
    tag, aad = data_arg(tag, "tag"), data_arg(aad, "aad")
    out = buffer(len(data))
    _checked_output(lambda: lib.GCM_Decrypt(out, len(data), data, len(data), key, len(key), iv,
                                            len(iv), aad, len(aad), tag, len(tag), 0),
                    out, "GCM_Decrypt")
    return take(out, len(data), secret=True)


class GcmKey:
    """An AES-GCM key for any number of messages (the thread's one GCM_
    key)."""

    def __init__(self, key):
        key = data_arg(key, "key")
        self._handle = check_handle(lib.GCM_InitKey(key, len(key), 0), "GCM_InitKey")

    def encrypt(self, data, iv, aad=b"", tag_length=16):
        """(ciphertext, tag)."""
        data, iv, aad = data_arg(data), data_arg(iv, "iv"), data_arg(aad, "aad")
        out, tag = buffer(len(data)), buffer(tag_length)
        check_a(lib.GCM_NextEncrypt(self._handle, out, len(data), tag, tag_length, data,
                                    len(data), iv, len(iv), aad, len(aad)), "GCM_NextEncrypt")
        return out.raw[:len(data)], tag.raw[:tag_length]

    def decrypt(self, ciphertext, iv, tag, aad=b""):
        data, iv = data_arg(ciphertext, "ciphertext"), data_arg(iv, "iv")
        tag, aad = data_arg(tag, "tag"), data_arg(aad, "aad")
        out = buffer(len(data))
        _checked_output(lambda: lib.GCM_NextDecrypt(self._handle, out, len(data), data, len(data),
                                                    iv, len(iv), aad, len(aad), tag, len(tag)),
                        out, "GCM_NextDecrypt", check_a)
        return take(out, len(data), secret=True)

    def finish(self):
        """Wipes the key."""
        check_a(lib.GCM_FinishKey(self._handle), "GCM_FinishKey")
