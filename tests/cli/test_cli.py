"""The verimond tool driven as a user would: each command against Python's
hashlib, hmac and zlib or by its round trip, and the exit-status and message
conventions. VERIMOND_CLI names the program."""
import hashlib
import hmac
import os
import subprocess
import sys
import zlib

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "python"))
from support import TempDirCase, verimond  # noqa: E402

CLI = os.environ.get("VERIMOND_CLI", "verimond")


def run(*args, data=None, env=None):
    return subprocess.run([CLI, *args], input=data, capture_output=True,
                          env=dict(os.environ, **(env or {})), timeout=120)


class Cli(TempDirCase):
    def ok(self, *args, data=None, env=None):
        result = run(*args, data=data, env=env)
        self.assertEqual(result.returncode, 0, result.stderr.decode())
        return result.stdout

    def fails(self, status, *args, data=None, env=None):
        result = run(*args, data=data, env=env)
        self.assertEqual(result.returncode, status, (args, result.stdout, result.stderr))
        return result.stderr.decode()


    def test_every_command_has_help_and_refuses_unknown_options(self):
        top = self.ok("--help").decode()
        for command in ["hash", "mac", "encrypt", "decrypt", "seal", "open", "kdf", "rand",
                        "compress", "uncompress", "crc", "wipe", "info", "selftest"]:
            with self.subTest(command=command):
                self.assertIn("  " + command + " ", top)
                out = self.ok(command, "--help").decode()
                self.assertTrue(out.startswith("Usage: verimond " + command), out)
                message = self.fails(2, command, "--no-such-option")
                self.assertIn("verimond %s: " % command, message)

    def test_usage_errors_exit_2(self):
        for args in [("no-such-command",), ("hash", "-a", "sha0"), ("hash", "-a"),
                     ("encrypt", "-k", "00", "only-one-file"), ("kdf", "--salt", "00", "-l", "0"),
                     ("rand", "-n", "lots"), ("rand", "--range", "9:1"), ("wipe",),
                     ("seal", "-a", "rot13", "a", "b"), ("compress", "-f", "lzma", "a", "b"),
                     ("mac", "-s", "x"), ("mac", "-k", "00", "--key-env", "X", "-s", "x")]:
            with self.subTest(args=args):
                self.fails(2, *args)

    def test_default_run_info_and_selftest(self):
        out = self.ok().decode()
        for label in ["ChaCha20-Poly1305", "scrypt", "identical", "Authentication failed",
                      hashlib.sha256(b"The quick brown fox jumps over the lazy dog").hexdigest()]:
            self.assertIn(label, out)
        self.assertIn("6.22.1", self.ok("info").decode())
        self.assertIn("passed", self.ok("selftest").decode())

    def test_every_algorithm_name_files_stdin_and_text(self):
        content = bytes(range(256)) * 40 + b"tail"
        name = self.path("data", content)
        for algorithm in ["sha1", "sha224", "sha256", "sha384", "sha512", "sha3-224", "sha3-256",
                          "sha3-384", "sha3-512", "md5"]:
            want = hashlib.new(algorithm.replace("-", "_"), content).hexdigest()
            with self.subTest(algorithm=algorithm):
                out = self.ok("hash", "-a", algorithm, name, "-", data=content).decode()
                self.assertEqual(out, "%s  %s\n%s  -\n" % (want, name, want))
        text = self.ok("hash", "-a", "SHA3-256", "-s", "abc").decode().strip()
        self.assertEqual(text, hashlib.sha3_256(b"abc").hexdigest())
        crlf = self.path("crlf", b"one\r\ntwo\r\n")
        self.assertEqual(self.ok("hash", "-t", crlf).decode().split()[0],
                         hashlib.sha256(b"one\ntwo\n").hexdigest())
        crc = "%08x" % zlib.crc32(content)
        self.assertEqual(self.ok("crc", name, "-", data=content).decode(),
                         "%s  %s\n%s  -\n" % (crc, name, crc))

    def test_missing_file_and_directory_fail_but_others_are_done(self):
        good = self.path("good", b"x")
        for command, want in (("hash", hashlib.sha256(b"x").hexdigest()),
                              ("crc", "%08x" % zlib.crc32(b"x"))):
            result = run(command, self.path("missing"), self.dir, good)
            self.assertEqual(result.returncode, 1)
            self.assertIn(want, result.stdout.decode())
            self.assertEqual(result.stderr.decode().count("verimond %s:" % command), 2)

    def test_hmac_for_each_algorithm_and_key_source(self):
        content = os.urandom(3000)
        name = self.path("data", content)
        key = os.urandom(72)   # longer than a SHA-256 block
        sources = [["-k", key.hex()], ["--key-file", self.path("key", key.hex().encode() + b"\n")],
                   ["--key-env", "TEST_MAC_KEY"]]
        for i, algorithm in enumerate(["sha1", "sha256", "sha384", "sha512", "sha3-256", "md5"]):
            want = hmac.new(key, content, algorithm.replace("-", "_")).hexdigest()
            with self.subTest(algorithm=algorithm, key=sources[i % 3][0]):
                out = self.ok("mac", "-a", "hmac-" + algorithm, *sources[i % 3], name,
                              env={"TEST_MAC_KEY": key.hex()}).decode()
                self.assertEqual(out, "%s  %s\n" % (want, name))

    def test_key_problems_are_reported_without_the_key(self):
        secret = "c0ffee" * 4
        # Poly1305 wants 32 bytes: the library's reason, and not the key.
        message = self.fails(1, "mac", "-a", "poly1305", "-k", secret, "-s", "x")
        self.assertIn("BAD_KEY_LEN_ERROR", message)
        self.assertNotIn(secret, message.lower())
        self.fails(1, "mac", "--key-env", "VERIMOND_TEST_UNSET_VARIABLE", "-s", "x")

    def test_round_trip_every_cipher_and_mode_through_files_and_pipes(self):
        content = os.urandom(1000)
        plain, sealed = self.path("plain", content), self.path("sealed")
        # A fresh IV leads the file, but in ECB; ECB and CBC pad.
        for algorithm, key_length, size in (("aes128/ecb", 16, 1008), ("aes192/cbc", 24, 1024),
                                            ("aes256/ofb", 32, 1016), ("tdea/cfb", 24, 1008),
                                            ("tdea/ctr", 24, 1008)):
            key = os.urandom(key_length).hex()
            with self.subTest(algorithm=algorithm):
                self.ok("encrypt", "-a", algorithm, "-k", key, plain, sealed)
                self.assertEqual(os.path.getsize(sealed), size)
                self.assertEqual(self.ok("decrypt", "-a", algorithm, "-k", key, "-", "-",
                                         data=self.read(sealed)), content)

    def test_explicit_iv_gives_the_bare_ciphertext_of_the_block_family(self):
        key, iv, content = os.urandom(16), os.urandom(16), os.urandom(64)
        args = ["-k", key.hex(), "--iv", iv.hex(), "-", "-"]
        out = self.ok("encrypt", "-a", "aes128/cbc/nopad", *args, data=content)
        # The file calls pad in CBC whatever the padding word says.
        self.assertEqual(out[:64], verimond.aes128.crypt(content, key, "CBC", iv))
        prefixed = self.ok("encrypt", "-a", "aes128/cbc", "--prefix-iv", *args, data=content)
        self.assertEqual(prefixed, iv + out)
        self.assertEqual(self.ok("decrypt", "-k", key.hex(), "-a", "aes128/cbc", "-", "-",
                                 data=prefixed), content)

    def test_wrong_key_leaves_no_output_file(self):
        plain = self.path("plain", b"secret text" * 10)
        sealed, out = self.path("sealed"), self.path("out")
        key = os.urandom(32).hex()
        self.ok("encrypt", "-k", key, plain, sealed)
        # CBC without integrity: a wrong key fails in the padding (nearly always).
        message = self.fails(1, "decrypt", "-k", os.urandom(32).hex(), sealed, out)
        self.assertIn("(", message)
        self.assertFalse(os.path.exists(out))
        self.fails(1, "encrypt", "-k", "0011", plain, out)
        self.assertFalse(os.path.exists(out))
        # A refused call leaves a file that was there before alone.
        kept = self.path("kept", b"precious")
        self.fails(1, "decrypt", "-k", "0011", sealed, kept)
        self.assertEqual(self.read(kept), b"precious")
        self.fails(2, "encrypt", "-k", key, plain, plain)
        self.fails(2, "encrypt", "-a", "aes256/ecb", "-k", key, "--iv", "00" * 16, plain, out)

    def test_seal_open_and_tamper_for_every_algorithm(self):
        content = os.urandom(777)
        for algorithm, key_length, nonce_length in (
                ("chacha20-poly1305", 32, 12), ("aes128-gcm", 16, 12), ("aes256-gcm", 32, 12),
                ("ascon128", 16, 16), ("ascon128a", 16, 16)):
            args = ["-a", algorithm, "-k", os.urandom(key_length).hex(), "--aad", "hdr", "-", "-"]
            with self.subTest(algorithm=algorithm):
                sealed = self.ok("seal", *args, data=content)
                self.assertEqual(len(sealed), nonce_length + len(content) + 16)
                self.assertEqual(self.ok("open", *args, data=sealed), content)
                for bad in (sealed[:50] + bytes([sealed[50] ^ 4]) + sealed[51:], sealed[:-1]):
                    result = run("open", *args, data=bad)
                    self.assertEqual(result.returncode, 1)
                    self.assertEqual(result.stdout, b"")   # nothing unauthenticated

    def test_failed_open_creates_no_file(self):
        key = os.urandom(32).hex()
        for content in (b"abc", b""):   # an empty text is authenticated too
            sealed = self.path("s", self.ok("seal", "-k", key, "-", "-", data=content))
            out = self.path("out%d" % len(content))
            self.assertIn("AUTH_FAIL_ERROR", self.fails(1, "open", "-k", os.urandom(32).hex(),
                                                        sealed, out))
            self.assertFalse(os.path.exists(out))
            self.ok("open", "-k", key, sealed, out)
            self.assertEqual(self.read(out), content)

    def test_pbkdf2_and_scrypt_match_hashlib(self):
        env = {"TEST_PASSWORD": "correct horse"}
        password = ["--password-env", "TEST_PASSWORD"]
        for args, want in [
                (["-a", "pbkdf2", "-i", "1000", "--hash", "sha512", "-l", "40", *password],
                 hashlib.pbkdf2_hmac("sha512", b"correct horse", b"\x01\x02", 1000, 40)),
                (["-a", "scrypt", "-N", "1024", "-r", "8", "-p", "2", "-l", "24", *password],
                 hashlib.scrypt(b"correct horse", salt=b"\x01\x02", n=1024, r=8, p=2, dklen=24)),
                # The defaults: PBKDF2 with SHA-256 and 32 bytes.
                (["-i", "2", "--password-file", self.path("pw", b"correct horse\n")],
                 hashlib.pbkdf2_hmac("sha256", b"correct horse", b"\x01\x02", 2, 32))]:
            with self.subTest(args=args):
                out = self.ok("kdf", "--salt", "0102", *args, env=env).decode()
                self.assertEqual(out.strip(), want.hex().upper())
        # scrypt's cost must be a power of two; PBKDF2 needs a salt.
        self.assertIn("OUT_OF_RANGE_ERROR", self.fails(1, "kdf", "-a", "scrypt", "-N", "1000",
                                                       "--salt", "00", *password, env=env))
        self.fails(1, "kdf", "--salt", "", *password, env=env)
        self.fails(2, "kdf", *password, env=env)

    def test_compress_formats_against_zlib(self):
        content = b"".join(b"line %d\n" % i for i in range(5000))
        packed = self.path("packed")
        self.ok("compress", self.path("plain", content), packed)
        self.assertEqual(zlib.decompress(self.read(packed)), content)
        self.assertEqual(self.ok("uncompress", "-", "-", data=zlib.compress(content, 9)), content)
        zstd = self.ok("compress", "-f", "zstd", "-", "-", data=content)
        self.assertEqual(zstd[:4], b"\x28\xb5\x2f\xfd")
        self.assertEqual(self.ok("uncompress", "-", "-", data=zstd), content)
        self.assertEqual(zlib.decompress(self.ok("compress", "-", "-", data=b"")), b"")
        self.assertIn("INVALID_DATA_ERROR", self.fails(1, "uncompress", "-", "-",
                                                       data=b"\x78\x9c garbage"))

    def test_rand_counts_ranges_and_seed_files(self):
        for count in (0, 70000):
            self.assertEqual(len(self.ok("rand", "-n", str(count)).decode().strip()), 2 * count)
            self.assertEqual(len(self.ok("rand", "-n", str(count), "-o", "-")), count)
        values = {int(self.ok("rand", "--range", "-2:2")) for _ in range(40)}
        self.assertTrue(values <= {-2, -1, 0, 1, 2} and len(values) > 1, values)
        seed, made = self.path("seed"), self.path("made")
        self.ok("rand", "--seed-file", seed)
        first = self.read(seed)
        self.ok("rand", "--seed-file", seed)
        self.assertEqual(len(first), 128)
        self.assertNotEqual(self.read(seed), first)
        self.ok("rand", "--new-seed-file", made, data=b"")
        self.assertEqual(os.path.getsize(made), 128)

    def test_wipe(self):
        victims = [self.path(name, os.urandom(5000)) for name in ("a", "b")]
        self.ok("wipe", victims[0])
        self.ok("wipe", "--fast", victims[1])
        self.assertFalse(any(os.path.exists(v) for v in victims))
        self.fails(1, "wipe", self.path("missing"))
        self.fails(1, "wipe", self.dir)
