// Published vectors for the generator (NIST DRBGVS, HMAC_DRBG with SHA-512),
// and the reference sets for CRC-32 and the compressed formats.
#include <cstdio>

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
        check.Equal(n == Size(plain) ? ToHex(out.data(), plain.size()) : "error " + std::to_string(n), ToHex(plain),
                    where + " COMPR_Uncompress");
        if (!zlib) return;
        n = ZLIB_Inflate(out.data(), Size(out), packed.data(), Size(packed));
        check.Equal(n == Size(plain) ? ToHex(out.data(), plain.size()) : "error " + std::to_string(n), ToHex(plain),
                    where + " ZLIB_Inflate");
    });
}
