// Digests and the family HMAC calls against OpenSSL's libcrypto, over random
// messages of every length from 0 to a few blocks and a few large ones.
#include <algorithm>

#include "reference.h"
#include "registry.h"

namespace {

struct DigestRef {
    int32_t option;
    const char* name;
    bool streams;  // reachable through HASH_Init
};

const DigestRef kDigests[] = {
    {OPT_HASH_SHA1, "SHA1", true},         {OPT_HASH_SHA224, "SHA224", true},     {OPT_HASH_SHA256, "SHA256", true},
    {OPT_HASH_SHA384, "SHA384", true},     {OPT_HASH_SHA512, "SHA512", true},     {OPT_HASH_SHA3_224, "SHA3-224", true},
    {OPT_HASH_SHA3_256, "SHA3-256", true}, {OPT_HASH_SHA3_384, "SHA3-384", true}, {OPT_HASH_SHA3_512, "SHA3-512", true},
    {OPT_HASH_MD5, "MD5", false},          {OPT_HASH_RMD160, "RIPEMD160", false},
};

// 0 to 300 bytes (past two SHA-512 blocks and two SHA3-224 rates), then a
// few large messages.
std::vector<size_t> MessageLengths() {
    std::vector<size_t> lengths;
    for (size_t n = 0; n <= 300; ++n) lengths.push_back(n);
    for (size_t n : {1000u, 4095u, 65537u, 1000003u}) lengths.push_back(n);
    return lengths;
}

std::string Ours(const ByteVec& msg, int32_t option) {
    uint8_t out[64];
    int32_t n = HASH_Bytes(out, 64, Ptr(msg), Size(msg), option);
    return OrError(n >= 0, n, ToHex(out, size_t(std::max(n, 0))));
}

std::string OursStreamed(Random& rng, const ByteVec& msg, int32_t option) {
    const int32_t h = HASH_Init(option);
    int32_t rc = 0;
    InPieces(
        msg.size(), [&] { return rng.Between(0, 200); },
        [&](size_t at, size_t n) {
            if (rc == 0) rc = HASH_AddBytes(h, msg.data() + at, int32_t(n));
        });
    if (rc != 0) return "add failed";
    uint8_t out[64];
    int32_t n = HASH_Final(out, 64, h);
    return OrError(n >= 0, n, ToHex(out, size_t(std::max(n, 0))));
}

}  // namespace

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
            check.Equal(Ours(msg, d.option), ToHex(want), where + " HASH_Bytes");
            if (d.streams) check.Equal(OursStreamed(rng, msg, d.option), ToHex(want), where + " HASH_ stream");
            // The double flag digests the digest once more, for nibbles 0 to 7.
            if (d.option <= 7 && length <= 64) {
                ByteVec twice;
                ref::Digest(d.name, want, &twice);
                check.Equal(Ours(msg, d.option | OPT_HASH_DOUBLE), ToHex(twice), where + " double");
            }
        }
        if (length > 300) continue;
        // RIPEMD-160 over the SHA-256 digest.
        check.Case();
        ByteVec sha256, want;
        ref::Digest("SHA256", msg, &sha256);
        ref::Digest("RIPEMD160", sha256, &want);
        check.Equal(Ours(msg, OPT_HASH_RMD160_SHA256), ToHex(want),
                    CaseName(rng, index++, "RIPEMD-160 of SHA-256 of", length));
    }
}

CONFORMANCE_SUITE(Differential, HmacFamilies, 1500, "HMAC-SHA-1, HMAC-SHA-256, HMAC-MD5 with keys of 0 to 200 bytes",
                  "OpenSSL libcrypto EVP_MAC HMAC; random keys and messages", "SHA1_Hmac SHA2_Hmac MD5_Hmac") {
    Random rng(0x5eed0002);
    const struct {
        const char* name;
        int32_t (*call)(char*, const unsigned char*, int32_t, const unsigned char*, int32_t);
    } families[] = {{"SHA1", SHA1_Hmac}, {"SHA256", SHA2_Hmac}, {"MD5", MD5_Hmac}};
    long index = 0;
    for (const auto& f : families) {
        for (int i = 0; i < 500; ++i) {
            check.Case();
            // Keys cover shorter than, equal to and longer than the 64-byte block.
            const ByteVec key = rng.Bytes(size_t(i % 201)), msg = rng.Bytes(size_t(rng.Between(0, 300)));
            ByteVec want;
            ref::Mac("HMAC", f.name, key, msg, &want);
            char out[65] = {};
            f.call(out, NonNull(msg), Size(msg), NonNull(key), Size(key));
            check.Equal(std::string(out), ToHex(want),
                        CaseName(rng, index++, "HMAC", f.name, "key", key.size(), "message", msg.size()));
        }
    }
}
