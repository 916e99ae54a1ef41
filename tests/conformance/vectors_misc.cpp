// Published vectors for the generator, CRC-32, the compressed formats and
// password-based key derivation. The two heaviest records run only with
// VERIMOND_CONFORMANCE_HEAVY=1 in the environment.
#include <cstdio>
#include <cstdlib>

#include "registry.h"

CONFORMANCE_SUITE(Vectors, HmacDrbg, 480,
                  "HMAC_DRBG with SHA-512: instantiate, reseed, two generates, every input length of the set",
                  "NIST CAVP DRBGVS: nist-cavp/drbg/HMAC_DRBG_SHA512_{pr_false,no_reseed}.rsp (all [SHA-512] "
                  "sections)",
                  "RNG_TestDRBGVS") {
    for (const char* file :
         {"nist-cavp/drbg/HMAC_DRBG_SHA512_pr_false.rsp", "nist-cavp/drbg/HMAC_DRBG_SHA512_no_reseed.rsp"}) {
        EachRecord(check, file, [&](const VectorRecord& r, const std::string& where) {
            const std::string want = r.Get("ReturnedBits");
            const std::string in[7] = {r.Get("EntropyInput"),          r.Get("Nonce"),
                                       r.Get("PersonalizationString"), r.Get("AdditionalInput", 0),
                                       r.Get("EntropyInputReseed"),    r.Get("AdditionalInputReseed"),
                                       r.Get("AdditionalInput", 1)};
            std::string out(want.size() + 1, '\0');
            const int32_t n = RNG_TestDRBGVS(
                out.data(), int32_t(want.size()), int32_t(std::stol(r.Section("ReturnedBitsLen"))), in[0].c_str(),
                in[1].c_str(), in[2].c_str(), in[3].c_str(), in[4].c_str(), in[5].c_str(), in[6].c_str(), 0);
            check.Equal(n == int32_t(want.size()) ? std::string(out.c_str()) : "error " + std::to_string(n), want,
                        where);
        });
    }
}

CONFORMANCE_SUITE(Vectors, Crc32, 5, "CRC-32 (the zlib polynomial)",
                  "Reference values: crc32_reference.txt (includes the check value of \"123456789\")", "CRC_Bytes") {
    const std::string file = "crc32_reference.txt";
    EachRecord(check, file, [&](const VectorRecord& r, const std::string& where) {
        const ByteVec data = r.Bytes("Data");
        char hex[9];
        std::snprintf(hex, sizeof hex, "%08x", uint32_t(CRC_Bytes(Ptr(data), Size(data), 0)));
        check.Equal(std::string(hex), Lower(r.Get("Crc")), where);
    });
}

CONFORMANCE_SUITE(Vectors, CompressedFormats, 12, "zlib (RFC 1950) and Zstandard frames restored",
                  "Reference streams: compress_reference.txt", "ZLIB_Inflate COMPR_Uncompress") {
    const std::string file = "compress_reference.txt";
    EachRecord(check, file, [&](const VectorRecord& r, const std::string& where) {
        const ByteVec packed = r.Bytes("Packed"), plain = r.Bytes("Plain");
        const bool zlib = r.Get("Format") == "zlib";
        ByteVec out(plain.size() + 1);
        int32_t n = COMPR_Uncompress(out.data(), Size(out), packed.data(), Size(packed),
                                     zlib ? OPT_COMPR_ZLIB : OPT_COMPR_ZSTD);
        check.Equal(OrError(n == Size(plain), n, ToHex(out.data(), plain.size())), ToHex(plain),
                    where + " COMPR_Uncompress");
        if (!zlib) return;
        n = ZLIB_Inflate(out.data(), Size(out), packed.data(), Size(packed));
        check.Equal(OrError(n == Size(plain), n, ToHex(out.data(), plain.size())), ToHex(plain),
                    where + " ZLIB_Inflate");
    });
}

namespace {

// Whether a record runs; the case count stays that of the default run.
bool Runs(Checker& check, bool heavy) {
    const char* env = std::getenv("VERIMOND_CONFORMANCE_HEAVY");
    if (!heavy) check.Case();
    return !heavy || (env && std::string(env) == "1");
}

// Text fields where "\0" stands for one zero byte.
ByteVec TextBytes(std::string text) {
    for (size_t at; (at = text.find("\\0")) != std::string::npos;) text.replace(at, 2, 1, '\0');
    return ByteVec(text.begin(), text.end());
}

}  // namespace

CONFORMANCE_SUITE(Vectors, Pbkdf2, 5, "PBKDF2 with HMAC-SHA-1, 1 to 4096 iterations, zero bytes in password and salt",
                  "RFC 6070 section 2: rfc/rfc6070_pbkdf2_hmac_sha1.txt (the 16777216-iteration record with "
                  "VERIMOND_CONFORMANCE_HEAVY=1)",
                  "PBE_Kdf2 PBE_Kdf2Hex") {
    const std::string file = "rfc/rfc6070_pbkdf2_hmac_sha1.txt";
    for (const VectorRecord& r : ReadSet(check, file)) {
        const int32_t iterations = int32_t(r.Int("ITERATIONS"));
        if (!Runs(check, iterations > 100000)) continue;
        const std::string password = r.Get("PASSWORD"), salt = r.Get("SALT");
        const ByteVec pw = TextBytes(password), s = TextBytes(salt);
        ByteVec out(size_t(r.Int("LENGTH")));
        int32_t rc = PBE_Kdf2(out.data(), Size(out), pw.data(), Size(pw), s.data(), Size(s), iterations, OPT_HASH_SHA1);
        check.Equal(OrError(!rc, rc, ToHex(out)), r.Get("DERIVED_KEY"), Where(file, r) + " PBE_Kdf2");
        if (password.find("\\0") != std::string::npos) continue;  // a text password ends at its zero
        std::string hex(out.size() * 2 + 1, '\0');
        rc = PBE_Kdf2Hex(hex.data(), int32_t(out.size() * 2), Size(out), password.c_str(), ToHex(s).c_str(), iterations,
                         OPT_HASH_SHA1);
        check.Equal(OrError(!rc, rc, hex.c_str()), Upper(r.Get("DERIVED_KEY")), Where(file, r) + " PBE_Kdf2Hex");
    }
}

CONFORMANCE_SUITE(Vectors, Scrypt, 3,
                  "scrypt with N of 16 to 16384, r of 1 and 8, p of 1 and 16, an empty password and salt",
                  "RFC 7914 section 12: rfc/rfc7914_scrypt.txt (the N = 2^20 record with VERIMOND_CONFORMANCE_HEAVY=1)",
                  "PBE_Scrypt PBE_ScryptHex") {
    const std::string file = "rfc/rfc7914_scrypt.txt";
    for (const VectorRecord& r : ReadSet(check, file)) {
        const int32_t n = int32_t(r.Int("N"));
        if (!Runs(check, n > 16384)) continue;
        const std::string password = r.Get("PASSWORD"), salt = r.Get("SALT");
        const ByteVec pw = TextBytes(password), s = TextBytes(salt);
        ByteVec out(size_t(r.Int("LENGTH")));
        int32_t rc = PBE_Scrypt(out.data(), Size(out), Ptr(pw), Size(pw), Ptr(s), Size(s), n, int32_t(r.Int("r")),
                                int32_t(r.Int("p")), 0);
        check.Equal(OrError(!rc, rc, ToHex(out)), r.Get("DERIVED_KEY"), Where(file, r) + " PBE_Scrypt");
        std::string hex(out.size() * 2 + 1, '\0');
        rc = PBE_ScryptHex(hex.data(), int32_t(out.size() * 2), Size(out), password.c_str(), ToHex(s).c_str(), n,
                           int32_t(r.Int("r")), int32_t(r.Int("p")), 0);
        check.Equal(OrError(!rc, rc, hex.c_str()), Upper(r.Get("DERIVED_KEY")), Where(file, r) + " PBE_ScryptHex");
    }
}
