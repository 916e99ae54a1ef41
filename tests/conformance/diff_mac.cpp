// Digests, MACs, XOFs and key derivation against OpenSSL's libcrypto.
#include "digest_family_support.h"
#include "reference.h"
#include "registry.h"

namespace {

// Each digest with its HASH_ and HMAC option and OpenSSL name; whether its
// HASH_ and MAC_ streams exist.
struct DigestRef {
    int32_t option, hmac;
    const char* name;
    bool streams;
};

const DigestRef kDigests[] = {{OPT_HASH_SHA1, OPT_HMAC_SHA1, "SHA1", true},
                              {OPT_HASH_SHA224, OPT_HMAC_SHA224, "SHA224", true},
                              {OPT_HASH_SHA256, OPT_HMAC_SHA256, "SHA256", true},
                              {OPT_HASH_SHA384, OPT_HMAC_SHA384, "SHA384", true},
                              {OPT_HASH_SHA512, OPT_HMAC_SHA512, "SHA512", true},
                              {OPT_HASH_SHA3_224, OPT_HMAC_SHA3_224, "SHA3-224", true},
                              {OPT_HASH_SHA3_256, OPT_HMAC_SHA3_256, "SHA3-256", true},
                              {OPT_HASH_SHA3_384, OPT_HMAC_SHA3_384, "SHA3-384", true},
                              {OPT_HASH_SHA3_512, OPT_HMAC_SHA3_512, "SHA3-512", true},
                              {OPT_HASH_MD5, OPT_HMAC_MD5, "MD5", false},
                              {OPT_HASH_RMD160, OPT_HMAC_RMD160, "RIPEMD160", false}};

std::string MacBytes(const ByteVec& key, const ByteVec& msg, int32_t option, size_t length) {
    ByteVec out(length);
    int32_t n = MAC_Bytes(out.data(), Size(out), Ptr(msg), Size(msg), NonNull(key), Size(key), option);
    return OrError(n == Size(out), n, ToHex(out));
}

// 0 to 300 bytes (past two SHA-512 blocks and two SHA3-224 rates), then a
// few large messages.
std::vector<size_t> MessageLengths() {
    std::vector<size_t> lengths;
    for (size_t n = 0; n <= 300; ++n) lengths.push_back(n);
    for (size_t n : {1000u, 4095u, 65537u, 1000003u}) lengths.push_back(n);
    return lengths;
}

}  // namespace

CONFORMANCE_SUITE(Differential, Hmac, 3300,
                  "HMAC over SHA-1, SHA-2, SHA-3, MD5 and RIPEMD-160 with keys of 0 to 299 bytes (past every block "
                  "and rate) and messages of 0 to 300 bytes; the stream cut at random",
                  "OpenSSL libcrypto EVP_MAC HMAC", "MAC_Bytes MAC_Init MAC_AddBytes MAC_Final") {
    Random rng(0x5eed0040);
    long index = 0;
    for (const DigestRef& h : kDigests) {
        for (int i = 0; i < 300; ++i) {
            check.Case();
            const ByteVec key = rng.Bytes(size_t(i)), msg = rng.Bytes(size_t(rng.Between(0, 300)));
            const std::string where =
                CaseName(rng, index++, "HMAC", h.name, "key", key.size(), "message", msg.size());
            ByteVec want;
            if (!check.True(ref::Mac("HMAC", h.name, key, msg, &want), "reference failed", where)) continue;
            check.Equal(MacBytes(key, msg, h.hmac, want.size()), ToHex(want), where + " MAC_Bytes");
            if (!h.streams || key.empty()) continue;  // the stream takes no empty key
            check.Equal(MacStream(key, msg, h.hmac, want.size(), [&] { return rng.Between(0, 100); }), ToHex(want),
                        where + " stream");
        }
    }
}

CONFORMANCE_SUITE(Differential, CmacPoly1305, 3000,
                  "CMAC over AES-128/192/256 and Triple DES, Poly1305; messages of 0 to 300 bytes",
                  "OpenSSL libcrypto EVP_MAC CMAC (AES-*-CBC, DES-EDE3-CBC) and POLY1305", "MAC_Bytes") {
    Random rng(0x5eed0041);
    const struct {
        int32_t option;
        const char* cipher;
        size_t key;
    } macs[] = {{OPT_CMAC_AES128, "AES-128-CBC", 16},
                {OPT_CMAC_AES192, "AES-192-CBC", 24},
                {OPT_CMAC_AES256, "AES-256-CBC", 32},
                {OPT_CMAC_TDEA, "DES-EDE3-CBC", 24},
                {OPT_MAC_POLY1305, nullptr, 32}};
    long index = 0;
    for (const auto& m : macs) {
        for (int i = 0; i < 600; ++i) {
            check.Case();
            const ByteVec key = rng.Bytes(m.key), msg = rng.Bytes(i < 301 ? size_t(i) : size_t(rng.Between(0, 300)));
            const std::string where =
                CaseName(rng, index++, m.cipher ? m.cipher : "Poly1305", "key", key, "message", msg.size());
            ByteVec want;
            if (!check.True(ref::Mac(m.cipher ? "CMAC" : "POLY1305", m.cipher, key, msg, &want), "reference failed",
                            where))
                continue;
            check.Equal(MacBytes(key, msg, m.option, want.size()), ToHex(want), where);
        }
    }
}

CONFORMANCE_SUITE(Differential, Kmac, 1200,
                  "KMAC128, KMAC256 with keys of 4 to 300 bytes, customisation strings of 0 to 300 characters, "
                  "outputs of 1 to 300 bytes; the fixed-length MAC_ forms",
                  "OpenSSL libcrypto EVP_MAC KMAC128, KMAC256", "PRF_Bytes MAC_Bytes") {
    Random rng(0x5eed0042);
    for (long i = 0; i < 1200; ++i) {
        check.Case();
        const int strength = i % 2 ? 256 : 128;
        // The reference takes keys of 4 bytes or more.
        const ByteVec key = rng.Bytes(size_t(rng.Between(4, 300))), msg = rng.Bytes(size_t(rng.Between(0, 300)));
        std::string custom(size_t(rng.Between(0, 300)), ' ');
        for (char& c : custom) c = char(rng.Between(32, 126));
        const bool fixed = i % 5 == 0;  // MAC_Bytes: empty custom string, 32 or 64 bytes
        if (fixed) custom.clear();
        const size_t length = fixed ? size_t(strength / 4) : size_t(rng.Between(1, 300));
        const std::string where =
            CaseName(rng, i, "KMAC", strength, "key", key.size(), "custom", custom.size(), "output", length);
        ByteVec want;
        if (!check.True(ref::Kmac(strength, key, msg, custom, length, &want), "reference failed", where)) continue;
        const int32_t option = strength == 128 ? OPT_KMAC_128 : OPT_KMAC_256;
        ByteVec out(length);
        int32_t n =
            PRF_Bytes(out.data(), Size(out), NonNull(msg), Size(msg), key.data(), Size(key), custom.c_str(), option);
        check.Equal(OrError(n == Size(out), n, ToHex(out)), ToHex(want), where + " PRF_Bytes");
        if (fixed) check.Equal(MacBytes(key, msg, option, length), ToHex(want), where + " MAC_Bytes");
    }
}

CONFORMANCE_SUITE(Differential, XofMgf1, 2000,
                  "SHAKE128, SHAKE256 with outputs of 0 to 600 bytes (several rates); MGF1 over SHA-1 and SHA-2",
                  "OpenSSL libcrypto EVP_DigestFinalXOF and PKCS1_MGF1", "XOF_Bytes PRF_Bytes") {
    Random rng(0x5eed0043);
    const std::pair<int32_t, const char*> xofs[] = {
        {OPT_XOF_SHAKE128, "SHAKE128"}, {OPT_XOF_SHAKE256, "SHAKE256"}, {OPT_XOF_MGF1_SHA1, "SHA1"},
        {OPT_XOF_MGF1_SHA224, "SHA224"}, {OPT_XOF_MGF1_SHA256, "SHA256"}, {OPT_XOF_MGF1_SHA384, "SHA384"},
        {OPT_XOF_MGF1_SHA512, "SHA512"}};
    for (long i = 0; i < 2000; ++i) {
        check.Case();
        const auto [option, digest] = xofs[i % 7];
        const bool mgf1 = i % 7 >= 2;  // after the two SHAKEs
        const ByteVec msg = rng.Bytes(size_t(rng.Between(0, 400)));
        const size_t length = size_t(rng.Between(mgf1 ? 1 : 0, 600));
        const std::string where =
            CaseName(rng, i, mgf1 ? "MGF1" : "XOF", digest, "message", msg.size(), "output", length);
        ByteVec want;
        const bool ok =
            mgf1 ? ref::Mgf1(digest, msg, length, &want) : length == 0 || ref::Digest(digest, msg, &want, length);
        if (!check.True(ok, "reference failed", where)) continue;
        ByteVec out(length + 1);
        int32_t n = XOF_Bytes(out.data(), int32_t(length), Ptr(msg), Size(msg), option);
        check.Equal(OrError(n == int32_t(length), n, ToHex(out.data(), length)), ToHex(want), where + " XOF_Bytes");
        if (mgf1) continue;
        n = PRF_Bytes(out.data(), int32_t(length), NonNull(msg), Size(msg), nullptr, 0, "", option);
        check.Equal(OrError(n == int32_t(length), n, ToHex(out.data(), length)), ToHex(want), where + " PRF_Bytes");
    }
}

CONFORMANCE_SUITE(Differential, Pbkdf2, 600,
                  "PBKDF2 with HMAC-SHA-1, SHA-224, SHA-256, SHA-384, SHA-512; 1 to 40 iterations (and some 1000s), "
                  "keys of 1 to 200 bytes",
                  "OpenSSL libcrypto PKCS5_PBKDF2_HMAC", "PBE_Kdf2 PBE_Kdf2Hex") {
    Random rng(0x5eed0044);
    for (long i = 0; i < 600; ++i) {
        check.Case();
        const DigestRef& p = kDigests[i % 5];  // the SHA-1 and SHA-2 rows
        const ByteVec password = rng.Bytes(size_t(rng.Between(1, 150))), salt = rng.Bytes(size_t(rng.Between(1, 100)));
        const int iterations = i % 50 == 0 ? rng.Between(1000, 3000) : rng.Between(1, 40);
        const size_t length = size_t(rng.Between(1, 200));
        const std::string where = CaseName(rng, i, "PBKDF2", p.name, "password", password.size(), "salt", salt.size(),
                                           "iterations", iterations, "length", length);
        ByteVec want;
        if (!check.True(ref::Pbkdf2(p.name, password, salt, iterations, length, &want), "reference failed", where))
            continue;
        ByteVec out(length);
        int32_t rc = PBE_Kdf2(out.data(), Size(out), password.data(), Size(password), salt.data(), Size(salt),
                              iterations, p.option);
        check.Equal(OrError(!rc, rc, ToHex(out)), ToHex(want), where + " PBE_Kdf2");
        // The text form: a password without zero bytes.
        ByteVec text = password;
        for (auto& b : text) b = uint8_t(b % 94 + 33);
        ref::Pbkdf2(p.name, text, salt, iterations, length, &want);
        std::string hex(length * 2 + 1, '\0');
        rc = PBE_Kdf2Hex(hex.data(), int32_t(length * 2), int32_t(length),
                         std::string(text.begin(), text.end()).c_str(), ToHex(salt).c_str(), iterations, p.option);
        check.Equal(OrError(!rc, rc, hex.c_str()), Upper(ToHex(want)), where + " PBE_Kdf2Hex");
    }
}

CONFORMANCE_SUITE(Differential, Scrypt, 300,
                  "scrypt with N of 2 to 1024, r of 1 to 8, p of 1 to 4, empty and non-empty passwords and salts",
                  "OpenSSL libcrypto EVP_PBE_scrypt", "PBE_Scrypt") {
    Random rng(0x5eed0045);
    for (long i = 0; i < 300; ++i) {
        check.Case();
        const int32_t n = 1 << rng.Between(1, 10), r = rng.Between(1, 8), p = rng.Between(1, 4);
        const ByteVec password = rng.Bytes(size_t(rng.Between(0, 64))), salt = rng.Bytes(size_t(rng.Between(0, 64)));
        const size_t length = size_t(rng.Between(1, 200));
        const std::string where =
            CaseName(rng, i, "N", n, "r", r, "p", p, "password", password.size(), "salt", salt.size());
        ByteVec want;
        if (!check.True(ref::Scrypt(password, salt, uint64_t(n), uint64_t(r), uint64_t(p), length, &want),
                        "reference failed", where))
            continue;
        ByteVec out(length);
        int32_t rc =
            PBE_Scrypt(out.data(), Size(out), Ptr(password), Size(password), Ptr(salt), Size(salt), n, r, p, 0);
        check.Equal(OrError(!rc, rc, ToHex(out)), ToHex(want), where);
    }
}

CONFORMANCE_SUITE(Differential, Digests, 3656,
                  "SHA-1, SHA-224, SHA-256, SHA-384, SHA-512, SHA3-224/256/384/512, MD5, RIPEMD-160, "
                  "RIPEMD-160 of SHA-256, the double-digest flag",
                  "OpenSSL libcrypto EVP_Digest; messages of 0 to 300 bytes and 1000 to 1000003 bytes, random "
                  "stream cuts",
                  "HASH_Bytes HASH_Init HASH_AddBytes HASH_Final") {
    Random rng(0x5eed0001);
    long index = 0;
    for (size_t length : MessageLengths()) {
        const ByteVec msg = rng.Bytes(length);
        for (const DigestRef& d : kDigests) {
            check.Case();
            const std::string where = CaseName(rng, index++, d.name, "of", length);
            ByteVec want;
            if (!check.True(ref::Digest(d.name, msg, &want), "reference digest unavailable", where)) continue;
            check.Equal(HashBytes(msg, d.option), ToHex(want), where + " HASH_Bytes");
            if (d.streams)
                check.Equal(HashStream(msg, d.option, 0, [&] { return rng.Between(0, 200); }), ToHex(want),
                            where + " HASH_ stream");
            // The double flag digests the digest once more, for nibbles 0 to 7.
            if (d.option <= 7 && length <= 64) {
                ByteVec twice;
                ref::Digest(d.name, want, &twice);
                check.Equal(HashBytes(msg, d.option | OPT_HASH_DOUBLE), ToHex(twice), where + " double");
            }
        }
        if (length > 300) continue;
        // RIPEMD-160 over the SHA-256 digest.
        check.Case();
        ByteVec sha256, want;
        ref::Digest("SHA256", msg, &sha256);
        ref::Digest("RIPEMD160", sha256, &want);
        check.Equal(HashBytes(msg, OPT_HASH_RMD160_SHA256), ToHex(want),
                    CaseName(rng, index++, "RIPEMD-160 of SHA-256 of", length));
    }
}

CONFORMANCE_SUITE(Differential, HmacFamilies, 1500, "HMAC-SHA-1, HMAC-SHA-256, HMAC-MD5 with keys of 0 to 200 bytes",
                  "OpenSSL libcrypto EVP_MAC HMAC; random keys and messages", "SHA1_Hmac SHA2_Hmac MD5_Hmac") {
    Random rng(0x5eed0002);
    long index = 0;
    for (const DigestFamily& f : kDigestFamilies) {
        const char* name = f.option == OPT_HASH_SHA1 ? "SHA1" : f.option == OPT_HASH_MD5 ? "MD5" : "SHA256";
        for (int i = 0; i < 500; ++i) {
            check.Case();
            // Keys cover shorter than, equal to and longer than the 64-byte block.
            const ByteVec key = rng.Bytes(size_t(i % 201)), msg = rng.Bytes(size_t(rng.Between(0, 300)));
            ByteVec want;
            ref::Mac("HMAC", name, key, msg, &want);
            char out[65] = {};
            f.hmac(out, NonNull(msg), Size(msg), NonNull(key), Size(key));
            check.Equal(std::string(out), ToHex(want),
                        CaseName(rng, index++, "HMAC", name, "key", key.size(), "message", msg.size()));
        }
    }
}
