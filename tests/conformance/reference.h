// The independent implementation for the differential suites: OpenSSL's
// libcrypto, reached through its EVP interfaces by name. Each call returns
// false when the algorithm is not available in the installed libcrypto.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

using ByteVec = std::vector<uint8_t>;

namespace ref {

// Whether the legacy provider (DES, Blowfish, ARCFOUR, RIPEMD-160 on some
// builds) could be loaded; the default provider is loaded either way.
bool LegacyLoaded();

// Digest, or xofLength bytes of an XOF ("SHAKE128", "SHAKE256").
bool Digest(const char* name, const ByteVec& msg, ByteVec* out, size_t xofLength = 0);

// A whole message through a cipher ("AES-128-CBC", "BF-OFB", "AES-128-WRAP",
// "DES3-WRAP", ...). With pad, PKCS#7 padding is added or removed. A key
// length other than the cipher's default is set for the variable-length ciphers.
bool Crypt(const char* name, bool encrypt, const ByteVec& key, const ByteVec& iv, const ByteVec& in, ByteVec* out,
           bool pad = false);

// An AEAD ("AES-128-GCM", "ChaCha20-Poly1305") over a whole message, any IV
// length; tag of tag->size() bytes written (encrypt) or checked (decrypt,
// false on a bad tag as well).
bool Aead(const char* name, bool encrypt, const ByteVec& key, const ByteVec& iv, const ByteVec& aad,
          const ByteVec& in, ByteVec* out, ByteVec* tag);

// MACs by EVP_MAC name: "HMAC" with a digest as setting, "CMAC" with a
// cipher, "POLY1305" with none; KMAC with custom string and output length.
bool Mac(const char* name, const char* setting, const ByteVec& key, const ByteVec& msg, ByteVec* out);
bool Kmac(int strength, const ByteVec& key, const ByteVec& msg, const std::string& custom, size_t length, ByteVec* out);

bool Pbkdf2(const char* digest, const ByteVec& password, const ByteVec& salt, int iterations, size_t length,
            ByteVec* out);
bool Scrypt(const ByteVec& password, const ByteVec& salt, uint64_t n, uint64_t r, uint64_t p, size_t length,
            ByteVec* out);

bool Mgf1(const char* digest, const ByteVec& seed, size_t length, ByteVec* out);

}  // namespace ref
