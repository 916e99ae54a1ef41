"""A first program: the SHA-256 digest of a text, then the text sealed and
opened again with ChaCha20-Poly1305 under a fresh random key.
Run: PYTHONPATH=python python3 docs/examples/first.py"""
import verimond
from verimond.constants import OPT_AEAD_CHACHA20_POLY1305, OPT_HASH_SHA256, OPT_PREFIX_IV

message = b"hello, world"
print("SHA-256:", verimond.digest_hex(message, OPT_HASH_SHA256))

key = verimond.key_bytes(32)
nonce = verimond.nonce(12)
option = OPT_AEAD_CHACHA20_POLY1305 | OPT_PREFIX_IV
sealed = verimond.aead_seal(message, key, nonce, option=option)
opened = verimond.aead_open(sealed, key, option=option)
print("sealed %d bytes, opened: %s" % (len(sealed), opened.decode()))

try:
    verimond.aead_open(sealed[:-1] + bytes([sealed[-1] ^ 1]), key, option=option)
except verimond.VerimondError as error:
    print("tampered:", error.text)
