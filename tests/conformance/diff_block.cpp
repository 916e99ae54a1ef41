// The per-cipher families against OpenSSL's libcrypto: AES, Triple DES, DES
// and Blowfish in every mode the reference has, random keys, IVs and texts,
// one-shot both ways and Init/Update in random cuts.
#include <algorithm>

#include "block_support.h"
#include "reference.h"
#include "registry.h"

namespace {

struct CipherRef {
    Cipher cipher;
    const char* prefix;  // OpenSSL name without the mode
    size_t key;          // key length; 0 for Blowfish's random 1 to 56
};

std::vector<size_t> Lengths(const std::string& mode, size_t block) {
    std::vector<size_t> lengths;
    if (mode == "ECB" || mode == "CBC") {
        for (size_t k = 0; k <= 12; ++k) lengths.push_back(k * block);
        lengths.push_back(256 * block);
    } else {
        for (size_t n = 0; n <= 3 * block + 5; ++n) lengths.push_back(n);
        lengths.push_back(4099);
    }
    lengths.push_back(100000 / block * block + (mode == "ECB" || mode == "CBC" ? 0 : 3));
    return lengths;
}

// Init/Update/Final in random whole-block pieces; a part block only last.
ByteVec Streamed(Random& rng, Cipher c, const ByteVec& key, const ByteVec& iv, const ByteVec& in, int32_t dir,
                 const std::string& mode) {
    ByteVec data = in;
    const int32_t h = InitCall(c, key, dir, mode.c_str(), Ptr(iv));
    const size_t block = size_t(BlockSize(c));
    InPieces(
        data.size(), [&] { return block * size_t(rng.Between(0, 5)); },
        [&](size_t at, size_t n) { UpdateCall(c, h, data.data() + at, int32_t(n)); });
    FinalCall(c, h);
    return data;
}

void RunCipher(Checker& check, Random& rng, const CipherRef& c, long* index) {
    const size_t block = size_t(BlockSize(c.cipher));
    for (std::string mode : {"ECB", "CBC", "CFB", "OFB", "CTR"}) {
        if (mode == "CTR" && block == 8) continue;  // no CTR in the reference for 64-bit blocks
        const std::string name = std::string(c.prefix) + "-" + mode;
        for (size_t length : Lengths(mode, block)) {
            for (int round = 0; round < 3; ++round) {
                check.Case();
                const ByteVec key = rng.Bytes(c.key ? c.key : size_t(rng.Between(1, 56))),
                              iv = mode == "ECB" ? ByteVec() : rng.Bytes(block);
                const ByteVec pt = rng.Bytes(length);
                const std::string where = CaseName(rng, (*index)++, name, "key", key, "iv", iv, "length", length);
                ByteVec ct;
                if (!check.True(ref::Crypt(name.c_str(), true, key, iv, pt, &ct), "reference failed", where)) continue;
                check.Equal(Crypt(c.cipher, pt, key, 1, mode.c_str(), iv), UpperHex(ct), where + " encrypt");
                check.Equal(Crypt(c.cipher, ct, key, 0, mode.c_str(), iv), UpperHex(pt), where + " decrypt");
                check.Equal(Streamed(rng, c.cipher, key, iv, pt, 1, mode), ct, where + " Init/Update encrypt");
                check.Equal(Streamed(rng, c.cipher, key, iv, ct, 0, mode), pt, where + " Init/Update decrypt");
            }
        }
    }
}

}  // namespace

CONFORMANCE_SUITE(Differential, AesModes, 1782, "AES-128, AES-192, AES-256 in ECB, CBC, CFB-128, OFB, CTR",
                  "OpenSSL libcrypto EVP AES-*-{ECB,CBC,CFB,OFB,CTR}; every length to 53 bytes, whole blocks to 12, "
                  "4 KB and 100 KB texts",
                  "AES128_BytesMode AES192_BytesMode AES256_BytesMode AES128_Init AES192_Init AES256_Init "
                  "AES128_Update AES192_Update AES256_Update AES128_Final AES192_Final AES256_Final") {
    Random rng(0x5eed0010);
    long index = 0;
    for (const CipherRef& c : {CipherRef{Cipher::Aes128, "AES-128", 16}, CipherRef{Cipher::Aes192, "AES-192", 24},
                               CipherRef{Cipher::Aes256, "AES-256", 32}})
        RunCipher(check, rng, c, &index);
}

CONFORMANCE_SUITE(Differential, TdesModes, 282, "Triple DES (three independent keys) in ECB, CBC, CFB-64, OFB",
                  "OpenSSL libcrypto EVP DES-EDE3-{ECB,CBC,CFB,OFB}; every length to 29 bytes, whole blocks to 12, "
                  "4 KB and 100 KB texts",
                  "TDEA_BytesMode TDEA_Init TDEA_Update TDEA_Final") {
    Random rng(0x5eed0011);
    long index = 0;
    RunCipher(check, rng, {Cipher::Tdea, "DES-EDE3", 24}, &index);
}

CONFORMANCE_SUITE(Differential, DesBlowfishModes, 564,
                  "DES and Blowfish (keys of 1 to 56 bytes) in ECB, CBC, CFB-64, OFB",
                  "OpenSSL libcrypto legacy provider: DES-*, BF-*; the suite is skipped when that provider does not "
                  "load",
                  "DES_BytesMode DES_Init DES_Update DES_Final BLF_BytesMode BLF_Init BLF_Update BLF_Final") {
    if (!ref::LegacyLoaded())
        return check.Skip("OpenSSL's legacy provider does not load here: no reference for DES and Blowfish");
    Random rng(0x5eed0012);
    long index = 0;
    RunCipher(check, rng, {Cipher::Des, "DES", 8}, &index);
    RunCipher(check, rng, {Cipher::Blf, "BF", 0}, &index);
}
