"""Random numbers (RNG_): the calling thread's generator, seed files,
entropy typed by the user, and the generator's tests."""
from ._native import VerimondError, lib
from ._util import (buffer, check_a, check_b, data_arg, int32, optional_data, optional_text,
                    path_arg, size, take, text_of)
from .constants import PRNG_ERR_NOTAVAIL

__all__ = ["key_bytes", "key_hex", "nonce", "nonce_hex", "number", "bytes_with_prompt",
           "hex_with_prompt", "initialize", "make_seed_file", "update_seed_file",
           "statistical_test", "drbg_validation"]

_MAX_REQUEST = 65536


def _hex_room(count):
    # Larger requests are refused by the library (PRNG_ERR_TOOBIG); the
    # buffer need not follow them.
    return max(2 * min(count, _MAX_REQUEST), 1)


def key_bytes(count, seed=None):
    """count random bytes (at most 65536), with optional seed bytes mixed
    in as additional input."""
    count, seed = int32(count, "count"), optional_data(seed, "seed")
    out = buffer(min(count, _MAX_REQUEST))
    check_a(lib.RNG_KeyBytes(out, count, seed, size(seed)), "RNG_KeyBytes")
    return take(out, max(count, 0), secret=True)


def key_hex(count, seed=None):
    """count random bytes (1 or more) as upper-case hex."""
    count, seed = int32(count, "count"), optional_data(seed, "seed")
    out = buffer(_hex_room(count) + 1)
    check_a(lib.RNG_KeyHex(out, _hex_room(count), count, seed, size(seed)), "RNG_KeyHex")
    return text_of(out)


def nonce(count):
    """count random bytes for nonces and IVs (a lighter entropy stir)."""
    count = int32(count, "count")
    out = buffer(min(count, _MAX_REQUEST))
    check_a(lib.RNG_NonceData(out, count), "RNG_NonceData")
    return out.raw[:max(count, 0)]


def nonce_hex(count):
    """nonce as upper-case hex."""
    count = int32(count, "count")
    out = buffer(_hex_room(count) + 1)
    check_a(lib.RNG_NonceDataHex(out, _hex_room(count), count), "RNG_NonceDataHex")
    return text_of(out)


def number(lower, upper):
    """A random number from lower to upper inclusive (lower when upper is
    not above it)."""
    return lib.RNG_Number(int32(lower, "lower"), int32(upper, "upper"))


def bytes_with_prompt(count, prompt=None, options=0):
    """random bytes with keys typed on the console mixed in; options 1, 2, 3
    ask for 128, 192, 256 bits of typing (else 112). Interactive."""
    count = int32(count, "count")
    out = buffer(min(count, _MAX_REQUEST))
    check_a(lib.RNG_BytesWithPrompt(out, count, optional_text(prompt, "prompt"), options),
            "RNG_BytesWithPrompt")
    return take(out, max(count, 0), secret=True)


def hex_with_prompt(count, prompt=None, options=0):
    """bytes_with_prompt as upper-case hex."""
    count = int32(count, "count")
    out = buffer(_hex_room(count) + 1)
    check_a(lib.RNG_HexWithPrompt(out, _hex_room(count), count, optional_text(prompt, "prompt"),
                                  options),
            "RNG_HexWithPrompt")
    return text_of(out)


def initialize(seed_file=None, options=0):
    """Sets up this thread's generator. With a seed file: reseeds from it and
    rewrites it (making it if missing), returns 0. Without: returns which
    hardware instructions are used (1 RDRAND, 2 RDSEED, 3 both, 0 none).
    OPT_RNG_NO_INTEL_DRBG switches them off for the whole process."""
    name = None if seed_file is None else path_arg(seed_file)
    result = lib.RNG_Initialize(name, options)
    if name is None and result == -PRNG_ERR_NOTAVAIL:
        return 0
    return check_b(result, "RNG_Initialize")


def make_seed_file(seed_file, prompt=None, options=0):
    """Makes or replaces a 128-byte seed file after asking the user to type
    (interactive; the prompt ends at the end of standard input)."""
    check_b(lib.RNG_MakeSeedFile(path_arg(seed_file), optional_text(prompt, "prompt"), options),
            "RNG_MakeSeedFile")


def update_seed_file(seed_file):
    """Reseeds from an existing seed file and rewrites it."""
    check_b(lib.RNG_UpdateSeedFile(path_arg(seed_file), 0), "RNG_UpdateSeedFile")


def statistical_test(report_file=None):
    """The generator's health check and the FIPS 140-2 statistical tests on
    20000 fresh bits, with a text report if a file is named. True if they
    passed."""
    name = None if report_file is None else path_arg(report_file)
    result = lib.RNG_Test(name)
    if result == 1:
        return False
    check_b(result, "RNG_Test")
    return True


def drbg_validation(returned_bits, entropy, nonce_hex_text, personalisation="",
                    additional1="", reseed_entropy="", reseed_additional="", additional2="",
                    options=0):
    """Answers an HMAC_DRBG SHA-512 validation record given in hex texts:
    the lower-case hex of the second generate."""
    def hex_text(value, name):
        return b"" if value is None else (value.encode("ascii") if isinstance(value, str)
                                          else data_arg(value, name))
    args = (int32(returned_bits, "returned_bits"), hex_text(entropy, "entropy"),
            hex_text(nonce_hex_text, "nonce"), hex_text(personalisation, "personalisation"),
            hex_text(additional1, "additional1"), hex_text(reseed_entropy, "reseed_entropy"),
            hex_text(reseed_additional, "reseed_additional"),
            hex_text(additional2, "additional2"), options)
    n = check_b(lib.RNG_TestDRBGVS(None, 0, *args), "RNG_TestDRBGVS")
    out = buffer(n + 1)
    n = check_b(lib.RNG_TestDRBGVS(out, n, *args), "RNG_TestDRBGVS")
    return text_of(out, n)
