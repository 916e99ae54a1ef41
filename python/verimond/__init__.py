"""Python bindings of libverimond, a general-purpose cryptographic library.

Every function raises VerimondError on a failure reported by the library;
its code attribute is the library's error code and text the library's
message. Byte arguments take bytes-like objects; results are bytes, or str
for hex, Base64 and other text. Option numbers and error codes are in
verimond.constants under the names of the C header.

Families:
  api      version, module information, self-tests      (API_)
  convert  hex and Base64                               (CNV_)
  digests  digests and digest streams                   (HASH_, SHA3_, SHA1_, SHA2_, MD5_)
  macs     MACs, XOF, PRF, PBKDF2 and scrypt            (MAC_, XOF_, PRF_, PBE_)
  block    per-cipher families and padding              (AES128_ ... BLF_, DES_, PAD_)
  cipher   generic cipher calls and key wrap            (CIPHER_)
  stream   stream ciphers                               (CIPHER_Stream, PC1_)
  aead     authenticated encryption                     (AEAD_, GCM_)
  rng      random numbers and seed files                (RNG_)
  util     compression, CRC-32, wiping                  (ZLIB_, COMPR_, CRC_, WIPE_)
"""
from . import aead, api, block, cipher, constants, convert, digests, macs, rng, stream, util
from ._native import VerimondError, library_path
from .aead import *  # noqa: F401,F403
from .api import *  # noqa: F401,F403
from .block import *  # noqa: F401,F403
from .cipher import *  # noqa: F401,F403
from .convert import *  # noqa: F401,F403
from .digests import *  # noqa: F401,F403
from .macs import *  # noqa: F401,F403
from .rng import *  # noqa: F401,F403
from .stream import *  # noqa: F401,F403
from .util import *  # noqa: F401,F403

__version__ = "6.22.1"
