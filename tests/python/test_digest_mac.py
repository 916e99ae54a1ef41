"""Digests, MACs, XOF and key derivation through the package: every wrapper
and form once, against hashlib and hmac, and the errors the wrappers raise."""
import hashlib
import hmac
import os

from support import *  # noqa: F401,F403

# Digest option -> hashlib name; HMAC options are the same numbers.
DIGESTS = {0: "sha1", 1: "md5", 3: "sha256", 4: "sha384", 5: "sha512", 6: "sha224",
           10: "sha3_224", 11: "sha3_256", 12: "sha3_384", 13: "sha3_512"}
MESSAGE = bytes(range(256)) * 9 + b"odd tail"


class DigestsAndMacs(TempDirCase):
    def test_every_form_and_option_matches_hashlib(self):
        name_of_file = self.path("m", MESSAGE)
        key = os.urandom(200)   # longer than every block
        for option, name in DIGESTS.items():
            want, mac = hashlib.new(name, MESSAGE), hmac.new(key, MESSAGE, name)
            with self.subTest(digest=name):
                self.assertEqual(verimond.digest(MESSAGE, option), want.digest())
                self.assertEqual(verimond.digest_hex(MESSAGE, option), want.hexdigest())
                self.assertEqual(verimond.digest_hex_from_hex(MESSAGE.hex(), option),
                                 want.hexdigest())
                self.assertEqual(verimond.digest_length(option), want.digest_size)
                self.assertEqual(verimond.digest_file(name_of_file, option), want.digest())
                self.assertEqual(verimond.digest_file_hex(name_of_file, option), want.hexdigest())
                self.assertEqual(verimond.mac(MESSAGE, key, option), mac.digest())
                self.assertEqual(verimond.mac_hex(MESSAGE, key, option), mac.hexdigest())
                self.assertEqual(verimond.mac_hex_from_hex(MESSAGE.hex(), key.hex(), option),
                                 mac.hexdigest())

    def test_bits_and_refusals(self):
        self.assertEqual(verimond.digest_hex_from_bits(b"abcd", 24, 3),
                         hashlib.sha256(b"abc").hexdigest())
        self.assertFails(BAD_FLAG_ERROR, verimond.digest_hex_from_bits, b"abc", 24, 1)
        self.assertFails(OPEN_ERROR, verimond.digest_file, self.path("missing"))

    def test_streams(self):
        stream, mac = verimond.Hash(13), verimond.Mac(b"k" * 99, 12)
        for piece in (MESSAGE[:1000], MESSAGE[1000:]):
            stream.update(piece)
            mac.update(piece)
        self.assertEqual((stream.digest_length(), stream.digest()),
                         (64, hashlib.sha3_512(MESSAGE).digest()))
        self.assertEqual((mac.code_length(), mac.digest()),
                         (48, hmac.new(b"k" * 99, MESSAGE, "sha3_384").digest()))
        stream = verimond.Sha3(384)
        stream.update(MESSAGE[:100])
        stream.update_text("tail")
        self.assertEqual(stream.length_in_bytes(), 48)
        self.assertEqual(stream.hexdigest(), hashlib.sha3_384(MESSAGE[:100] + b"tail").hexdigest())
        self.assertFails(NOT_SUPPORTED_ERROR, verimond.Hash, 1)
        self.assertFails(BAD_PARAM_ERROR, verimond.Sha3, 200)
        self.assertFails(NOT_SUPPORTED_ERROR, verimond.Mac, b"key", OPT_CMAC_AES128)
        self.assertFails(BAD_PARAM_ERROR, verimond.Mac, b"", 3)

    def test_fixed_digest_families(self):
        message, key = b"The quick brown fox", os.urandom(100)
        text = self.path("t", b"x\r\ny")
        for family, name in ((verimond.sha1, "sha1"), (verimond.sha2, "sha256"),
                             (verimond.md5, "md5")):
            want = hashlib.new(name, message).hexdigest()
            with self.subTest(family=family.prefix):
                self.assertEqual(family.hex_of_text(message.decode()), want)
                self.assertEqual(family.hex_of_bytes(message), want)
                self.assertEqual(family.digest(message).hex(), want)
                self.assertEqual(family.hex_of_file(text), hashlib.new(name, b"x\r\ny").hexdigest())
                self.assertEqual(family.hex_of_file(text, text_mode=True),
                                 hashlib.new(name, b"x\ny").hexdigest())
                hmac_want = hmac.new(key, message, name).hexdigest()
                self.assertEqual(family.hmac_hex(message, key), hmac_want)
                self.assertEqual(family.hmac_hex_from_hex(message.hex(), key.hex()), hmac_want)
                stream = family.stream()
                stream.update(message[:5])
                stream.update_text(message[5:].decode())
                self.assertEqual(stream.hexdigest(), want)

    def test_other_codes_keys_and_lengths(self):
        cases = [(OPT_CMAC_AES128, 16, 16), (OPT_CMAC_TDEA, 24, 8), (OPT_MAC_POLY1305, 32, 16),
                 (OPT_KMAC_128, 5, 32), (OPT_KMAC_256, 0, 64)]
        for option, key_length, code_length in cases:
            key = os.urandom(key_length)
            with self.subTest(option=hex(option)):
                code = verimond.mac(b"message", key, option)
                self.assertEqual(len(code), code_length)
                self.assertEqual(verimond.mac_hex(b"message", key, option), code.hex())
        self.assertFails(BAD_KEY_LEN_ERROR, verimond.mac, b"m", os.urandom(31), OPT_MAC_POLY1305)

    def test_bad_hmac_digest_number_is_refused_in_every_form(self):
        # The hex calls of the library would report such a number as success.
        for option in (2, 8, 9, 14, 15):
            for call in (verimond.mac, verimond.mac_hex):
                self.assertFails(BAD_FLAG_ERROR, call, b"m", b"k", option)
            self.assertFails(BAD_FLAG_ERROR, verimond.mac_hex_from_hex, "00", "01", option)

    def test_xof_and_prf(self):
        message = os.urandom(500)
        for option, name in ((OPT_XOF_SHAKE128, "shake_128"), (OPT_XOF_SHAKE256, "shake_256")):
            for length in (0, 1000):
                want = hashlib.new(name, message).digest(length)
                self.assertEqual(verimond.xof(message, length, option), want)
                # PRF_Bytes with a SHAKE option ignores key and customisation.
                self.assertEqual(verimond.prf(message, length, b"key", "custom", option), want)
        self.assertEqual(len(verimond.prf(b"data", 33, b"key", "app", OPT_KMAC_128)), 33)
        self.assertFails(BAD_FLAG_ERROR, verimond.xof, b"x", 8, 0x211)

    def test_pbkdf2_and_scrypt_match_hashlib(self):
        for option, name in ((0, "sha1"), (5, "sha512")):
            want = hashlib.pbkdf2_hmac(name, b"password", b"NaCl", 3, 65)
            self.assertEqual(verimond.pbkdf2("password", b"NaCl", 3, 65, option), want)
            self.assertEqual(verimond.pbkdf2_hex("password", b"NaCl".hex(), 3, 65, option),
                             want.hex().upper())
        want = hashlib.scrypt(b"password", salt=b"NaCl", n=1024, r=8, p=2, dklen=40)
        self.assertEqual(verimond.scrypt(b"password", b"NaCl", 1024, 8, 2, 40), want)
        self.assertEqual(verimond.scrypt_hex("password", b"NaCl".hex(), 1024, 8, 2, 40),
                         want.hex().upper())
        self.assertEqual(len(verimond.scrypt(b"", b"", 16, 1, 1, 64)), 64)
        self.assertFails(BAD_PARAM_ERROR, verimond.pbkdf2, b"", b"salt", 1, 16)
        self.assertFails(BAD_PARAM_ERROR, verimond.pbkdf2, b"pw", b"salt", 1, 16, 11)
        self.assertFails(OUT_OF_RANGE_ERROR, verimond.scrypt, b"pw", b"s", 1000, 8, 1, 16)

