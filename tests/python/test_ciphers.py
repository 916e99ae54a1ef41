"""Every cipher wrapper of the package in every form it is offered in: round
trips, results of one form against another where the library gives two
roads to one answer, and the errors the wrappers raise."""
import os

from support import *  # noqa: F401,F403

FAMILIES = [(verimond.aes128, 16), (verimond.aes192, 24), (verimond.aes256, 32),
            (verimond.des, 8), (verimond.tdea, 24), (verimond.blowfish, 20)]


class Ciphers(TempDirCase):
    def test_every_family_in_every_form(self):
        data, b64 = os.urandom(96), verimond.b64_from_bytes
        plain, sealed, back = self.path("plain", data[:91]), self.path("sealed"), self.path("back")
        for family, key_length in FAMILIES:
            block = family.block_size
            key, iv = os.urandom(key_length), os.urandom(block)
            for mode, mode_iv in (("ECB", None), ("CTR", iv)):
                with self.subTest(family=family.prefix, mode=mode):
                    hex_iv = mode_iv and mode_iv.hex()
                    out = family.crypt(data, key, mode, mode_iv)
                    self.assertEqual(family.crypt(out, key, mode, mode_iv, False), data)
                    self.assertEqual(family.crypt_hex(data.hex(), key.hex(), mode, hex_iv),
                                     out.hex().upper())
                    b64_iv = mode_iv and b64(mode_iv)
                    self.assertEqual(family.crypt_b64(b64(data), b64(key), mode, b64_iv), b64(out))
                    self.assertEqual(family.crypt_b64(b64(out), b64(key), mode, b64_iv, False),
                                     b64(data))
                    context = family.init(key, mode, mode_iv)
                    self.assertEqual(context.update(data[:block]) + context.update(data[block:]),
                                     out)
                    context.final()
                    context = family.init_hex(key.hex(), mode, hex_iv, encrypt=False)
                    self.assertEqual(context.update_hex(out.hex()), data.hex().upper())
                    context.final()
                    self.assertFails(INVALID_HANDLE_ERROR, context.update, data)
            self.assertEqual(family.ecb(data, key), family.crypt(data, key, "ECB"))
            self.assertEqual(family.ecb_hex(data.hex(), key.hex()), family.ecb(data, key).hex().upper())
            with self.subTest(family=family.prefix, form="files"):
                family.crypt_file_hex(sealed, plain, key.hex(), "CBC", iv.hex())
                family.crypt_file(back, sealed, key, "CBC", iv, encrypt=False)
                self.assertEqual(self.read(back), data[:91])
                family.crypt_file(sealed, plain, key, "CTR", iv, options=OPT_PREFIX_IV)
                self.assertEqual(self.read(sealed), iv + family.crypt(data[:91], key, "CTR", iv))
                family.crypt_file(back, sealed, key, "CTR", None, encrypt=False,
                                  options=OPT_PREFIX_IV)
                self.assertEqual(self.read(back), data[:91])

    def test_screening_of_lengths_the_library_cannot_see(self):
        # The families read a fixed number of key and IV bytes.
        for code, family, lengths in ((BAD_KEY_LEN_ERROR, verimond.aes256, (16, 16, 16)),
                                      (BAD_IV_LEN_ERROR, verimond.des, (8, 8, 16)),
                                      (BAD_LENGTH_ERROR, verimond.tdea, (9, 24, 8))):
            data, key, iv = (os.urandom(n) for n in lengths)
            self.assertFails(code, family.crypt, data, key, "CBC", iv)

    def test_blowfish_context_ecb_leaves_the_chain_alone(self):
        key, iv, data = os.urandom(16), os.urandom(8), os.urandom(32)
        context = verimond.blowfish.init(key, "CBC", iv)
        first, block = context.update(data[:16]), verimond.blowfish.ecb(data[:8], key)
        self.assertEqual(context.ecb(data[:8]), block)
        self.assertEqual(context.ecb_hex(block.hex(), encrypt=False), data[:8].hex().upper())
        self.assertEqual(first + context.update(data[16:]),
                         verimond.blowfish.crypt(data, key, "CBC", iv))
        context.final()

    def test_des_keys_and_padding(self):
        verimond.des_check_key(bytes.fromhex("133457799BBCDFF1"))
        self.assertFails(WEAK_KEY_ERROR, verimond.des_check_key, b"\x01" * 8)
        self.assertFails(WEAK_KEY_ERROR, verimond.des_check_key_hex, "FEFEFEFEFEFEFEFE" * 3)
        self.assertFails(BAD_KEY_LEN_ERROR, verimond.des_check_key, b"\x13" * 9)
        for option in (OPT_PAD_PKCS5, OPT_PAD_ONEANDZEROES, OPT_PAD_ANSIX923, OPT_PAD_W3C):
            for length in (0, 8, 13):
                data = os.urandom(length)
                padded = verimond.pad(data, 8, option)
                self.assertEqual(verimond.unpad(padded, 8, option), data)
                padded_hex = verimond.pad_hex(data.hex(), 8, option)
                self.assertEqual(padded_hex.lower(), padded.hex())
                self.assertEqual(verimond.unpad_hex(padded_hex, 8, option), data.hex())
        self.assertFails(DECRYPT_ERROR, verimond.unpad, b"\x00" * 16, 16, OPT_PAD_PKCS5)

    def test_every_form_round_trips(self):
        for algorithm, key_length, block in (("aes128/cbc/pkcs5", 16, 16), ("tdea/ctr", 24, 8),
                                             ("aes256/ecb/nopad", 32, 16)):
            key, iv = os.urandom(key_length), os.urandom(block)
            data = os.urandom(3 * block if algorithm.endswith("nopad") else 3 * block + 5)
            with self.subTest(algorithm=algorithm):
                sealed = verimond.encrypt(data, key, iv, algorithm)
                self.assertEqual(verimond.decrypt(sealed, key, iv, algorithm), data)
                self.assertEqual(verimond.encrypt_bytes2(data, key, iv, algorithm), sealed)
                self.assertEqual(verimond.decrypt_bytes2(sealed, key, iv, algorithm), data)
                self.assertEqual(verimond.encrypt_hex(data.hex(), key.hex(), iv.hex(), algorithm),
                                 sealed.hex().upper())
                self.assertEqual(verimond.decrypt_hex(sealed.hex(), key.hex(), iv.hex(), algorithm),
                                 data.hex().upper())
                prefixed = verimond.encrypt(data, key, iv, algorithm, OPT_PREFIX_IV)
                self.assertEqual(prefixed, iv + sealed)
                self.assertEqual(verimond.decrypt(prefixed, key, None, algorithm, OPT_PREFIX_IV),
                                 data)

    def test_option_bits_name_the_same_ciphers_as_text(self):
        key, iv, data = os.urandom(24), os.urandom(16), os.urandom(40)
        for bits, text in ((OPT_CIPHER_AES192 | OPT_MODE_CBC, "aes192/cbc"),
                           (OPT_CIPHER_AES192 | OPT_MODE_CTR | OPT_PAD_NONE, "aes192-ctr")):
            self.assertEqual(verimond.encrypt(data, key, iv, None, bits),
                             verimond.encrypt(data, key, iv, text))
        self.assertFails(17, verimond.encrypt, data, key, iv, "aes192/cbc", OPT_CIPHER_AES192)

    def test_files_and_contexts(self):
        data = os.urandom(5000)
        plain, sealed, back = self.path("p", data), self.path("s"), self.path("b")
        key, iv = os.urandom(32), os.urandom(16)
        verimond.encrypt_file(sealed, plain, key, iv, "aes256/cbc", OPT_PREFIX_IV)
        self.assertEqual(self.read(sealed), verimond.encrypt(data, key, iv, "aes256/cbc",
                                                             OPT_PREFIX_IV))
        verimond.decrypt_file(back, sealed, key, None, "aes256/cbc", OPT_PREFIX_IV)
        self.assertEqual(self.read(back), data)
        context = verimond.Cipher(key, iv, "aes256/ctr")
        pieces = context.update(data[:16]) + context.update(data[16:32]) + context.update(data[32:])
        context.final()
        self.assertEqual(pieces, verimond.encrypt(data, key, iv, "aes256/ctr"))
        context = verimond.Cipher.from_hex(key.hex(), iv.hex(), "aes256/cbc", encrypt=False)
        self.assertFails(BAD_LENGTH_ERROR, context.update, b"x" * 15)   # +26 from the library
        self.assertFails(INVALID_DATA_ERROR, context.update_hex, "ABC")  # odd: screened here
        sealed_block = verimond.encrypt(data[:16], key, iv, "aes256/cbc/nopad")
        self.assertEqual(context.update_hex(sealed_block.hex()), data[:16].hex().upper())
        context.final()
        self.assertFails(INVALID_HANDLE_ERROR, context.final)

    def test_key_wrap(self):
        for option, kek_length, length in ((OPT_CIPHER_AES128, 16, 64), (OPT_CIPHER_TDEA, 24, 24)):
            kek, data = os.urandom(kek_length), os.urandom(length)
            wrapped = verimond.key_wrap(data, kek, option)
            self.assertEqual(verimond.key_unwrap(wrapped, kek, option), data)
            with self.assertRaises(verimond.VerimondError):
                verimond.key_unwrap(wrapped, os.urandom(kek_length), option)

    def test_round_trip_and_pieces(self):
        data = os.urandom(1000)
        for option, key_length, iv_length in ((OPT_STREAM_CHACHA20, 32, 12),
                                              (OPT_STREAM_SALSA20, 16, 8), (OPT_STREAM_ARCFOUR, 13, 0)):
            key, iv = os.urandom(key_length), os.urandom(iv_length) or None
            with self.subTest(option=option):
                sealed = verimond.stream_cipher(data, key, iv, 7, option)
                self.assertEqual(verimond.stream_cipher(sealed, key, iv, 7, option), data)
                self.assertEqual(verimond.stream_cipher_hex(data.hex(), key.hex(), iv and iv.hex(),
                                                            7, option), sealed.hex().upper())
                stream = verimond.StreamCipher(key, iv, 7, option)
                self.assertEqual(stream.update(data[:33]) + stream.update(data[33:]), sealed)
                stream.final()
                verimond.stream_cipher_file(self.path("out"), self.path("in", data), key, iv, 7,
                                            option)
                self.assertEqual(self.read(self.path("out")), sealed)
                if option == OPT_STREAM_ARCFOUR:   # PC1 is the same cipher
                    self.assertEqual(verimond.pc1(data, key), sealed)
                    self.assertEqual(verimond.pc1_hex(data.hex(), key.hex()), sealed.hex().upper())
                    verimond.pc1_file(self.path("back"), self.path("out"), key)
                    self.assertEqual(self.read(self.path("back")), data)

    def test_seal_open_and_tamper(self):
        for option, key_length, nonce_length in ((OPT_AEAD_AES_256_GCM, 32, 12),
                                                 (OPT_AEAD_ASCON_128, 16, 16),
                                                 (OPT_AEAD_ASCON_128A, 16, 16)):
            key, nonce = os.urandom(key_length), os.urandom(nonce_length)
            for data in (b"", os.urandom(100)):
                with self.subTest(option=option, length=len(data)):
                    sealed = verimond.aead_seal(data, key, nonce, b"aad", option)
                    self.assertEqual(verimond.aead_open(sealed, key, nonce, b"aad", option), data)
                    prefixed = verimond.aead_seal(data, key, nonce, b"aad", option | OPT_PREFIX_IV)
                    self.assertEqual(prefixed, nonce + sealed)
                    self.assertEqual(verimond.aead_open(prefixed, key, None, b"aad",
                                                        option | OPT_PREFIX_IV), data)
                    self.assertFails(AUTH_FAIL_ERROR, verimond.aead_open, sealed, key, nonce,
                                     b"aaD", option)

    def test_detached_tags_and_incremental(self):
        data, key, nonce = os.urandom(200), os.urandom(32), os.urandom(12)
        ciphertext, tag = verimond.aead_encrypt(data, key, nonce, b"hdr")
        self.assertEqual(ciphertext + tag, verimond.aead_seal(data, key, nonce, b"hdr"))
        self.assertEqual(verimond.aead_decrypt(ciphertext, key, nonce, tag[:4], b"hdr"), data)
        self.assertFails(AUTH_FAIL_ERROR, verimond.aead_decrypt, ciphertext, key, nonce,
                         bytes(16), b"hdr")
        context = verimond.Aead(key)
        context.set_nonce(nonce)
        context.add_aad(b"h")
        context.add_aad(b"dr")
        context.start_encrypt()
        pieces = context.update(data[:77]) + context.update(data[77:])
        self.assertEqual((pieces, context.finish_encrypt()), (ciphertext, tag))
        context.set_nonce(nonce)   # the key serves the next message
        context.add_aad(b"hdr")
        context.start_decrypt(tag)
        self.assertEqual(context.update(ciphertext), data)
        context.finish_decrypt()
        context.destroy()
        self.assertFails(BAD_KEY_LEN_ERROR, verimond.Aead, os.urandom(24), OPT_AEAD_AES_128_GCM)

    def test_gcm_family(self):
        key, iv, data = os.urandom(24), os.urandom(60), os.urandom(99)
        ciphertext, tag = verimond.gcm_encrypt(data, key, iv, b"aad", tag_length=12)
        self.assertEqual(len(tag), 12)
        self.assertEqual(verimond.gcm_decrypt(ciphertext, key, iv, tag, b"aad"), data)
        self.assertFails(AUTH_FAIL_ERROR, verimond.gcm_decrypt, ciphertext, key, iv, tag,
                         b"aab")
        gcm = verimond.GcmKey(key)
        self.assertEqual(gcm.encrypt(data, iv, b"aad", 12), (ciphertext, tag))
        self.assertEqual(gcm.decrypt(ciphertext, iv, tag, b"aad"), data)
        self.assertFails(AUTH_FAIL_ERROR, gcm.decrypt, ciphertext[1:], iv, tag, b"aad")
        gcm.finish()
        self.assertFails(INVALID_HANDLE_ERROR, gcm.encrypt, data, iv)

