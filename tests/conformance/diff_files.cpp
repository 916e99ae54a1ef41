// The file calls against libcrypto and zlib (files are read in chunks, so sizes
// around the chunk matter); compression both ways against zlib and zstd.
#include <unistd.h>
#include <zlib.h>
#include <zstd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

#include "digest_family_support.h"
#include "reference.h"
#include "registry.h"

namespace {

std::string TempPath(const std::string& name) {
    return (std::filesystem::temp_directory_path() / ("verimond_conf_" + std::to_string(getpid()) + "_" + name))
        .string();
}

void WriteFile(const std::string& path, const ByteVec& data) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data.data()), std::streamsize(data.size()));
}

std::string HexOrError(int32_t rc, const std::string& path) {
    return rc == 0 ? ToHex(ReadBytes(path)) : "error " + std::to_string(rc);
}

const size_t kSizes[] = {0, 1, 7, 8, 15, 16, 17, 63, 64, 65, 4095, 4096, 4097, 8191, 8192, 8193, 12288, 100003};

// Text-like data, so that it compresses: words from a small vocabulary, with
// a random run now and then.
ByteVec Compressible(Random& rng, size_t n) {
    static const char* words[] = {"alpha ", "beta ", "gamma ", "delta\n", "epsilon ", "zeta, ", "eta. "};
    ByteVec v;
    while (v.size() < n) {
        if (rng.Between(0, 9) == 0) {
            ByteVec noise = rng.Bytes(size_t(rng.Between(1, 20)));
            v.insert(v.end(), noise.begin(), noise.end());
        } else {
            const char* w = words[rng.Between(0, 6)];
            v.insert(v.end(), w, w + std::char_traits<char>::length(w));
        }
    }
    v.resize(n);
    return v;
}

size_t Length(long i) {
    static const size_t large[] = {65535, 65536, 262147, 1 << 20};
    return i < 400 ? size_t(i * 13) : large[i % 4];
}

}  // namespace

CONFORMANCE_SUITE(Differential, FileCalls, 36,
                  "Digests, CRC-32, AES and Triple DES with padding, ChaCha20 and ARCFOUR over files of 0 to 100003 "
                  "bytes, around the 4096-byte chunk",
                  "OpenSSL libcrypto (EVP digests and ciphers, PKCS#7 padding on), zlib crc32",
                  "HASH_File HASH_HexFromFile SHA1_FileHexHash SHA2_FileHexHash MD5_FileHexHash CRC_File AES128_File "
                  "AES256_File TDEA_File CIPHER_FileEncrypt CIPHER_FileDecrypt CIPHER_StreamFile PC1_File") {
    Random rng(0x5eed0060);
    const std::string in = TempPath("in"), out = TempPath("out"), back = TempPath("back");
    long index = 0;
    for (int round = 0; round < 2; ++round) {
        for (size_t size : kSizes) {
            check.Case();
            const ByteVec data = rng.Bytes(size), key = rng.Bytes(32), iv = rng.Bytes(16);
            const std::string where = CaseName(rng, index++, std::to_string(size) + " bytes");
            WriteFile(in, data);
            ByteVec want;

            // Digests and CRC.
            for (auto [option, name] : {std::pair{OPT_HASH_SHA1, "SHA1"}, {OPT_HASH_SHA256, "SHA256"},
                                        {OPT_HASH_MD5, "MD5"}, {OPT_HASH_SHA3_512, "SHA3-512"},
                                        {OPT_HASH_RMD160, "RIPEMD160"}}) {
                ref::Digest(name, data, &want);
                uint8_t digest[64];
                const int32_t n = HASH_File(digest, 64, in.c_str(), option);
                check.Equal(n > 0 ? ToHex(digest, size_t(n)) : "error", ToHex(want), where + " HASH_File " + name);
                char hex[129] = {};
                HASH_HexFromFile(hex, 128, in.c_str(), option);
                check.Equal(std::string(hex), ToHex(want), where + " HASH_HexFromFile " + name);
                for (const DigestFamily& f : kDigestFamilies) {
                    if (f.option != option) continue;
                    const int32_t rc = f.fileHexHash(hex, in.c_str(), "b");
                    check.Equal(OrError(!rc, rc, hex), ToHex(want), where + " " + f.prefix + "FileHexHash");
                }
            }
            const uint32_t crc = uint32_t(crc32(0, data.data(), uInt(data.size())));
            check.Equal(long(uint32_t(CRC_File(in.c_str(), 0))), long(size ? crc : 0), where + " CRC_File");

            // Block ciphers: ECB and CBC pad, the others do not. The key and
            // IV are the first bytes of the random ones.
            const auto against = [&](const char* label, const char* name, size_t keyLength, size_t ivLength, bool pad,
                                     int32_t rc, ByteVec front = {}) {
                ref::Crypt(name, true, ByteVec(key.begin(), key.begin() + long(keyLength)),
                           ByteVec(iv.begin(), iv.begin() + long(ivLength)), data, &want, pad);
                front.insert(front.end(), want.begin(), want.end());
                check.Equal(HexOrError(rc, out), ToHex(front), where + " " + label);
            };
            against("AES128_File CBC", "AES-128-CBC", 16, 16, true,
                    AES128_File(out.c_str(), in.c_str(), key.data(), 1, "CBC", iv.data()));
            against("AES256_File CTR", "AES-256-CTR", 32, 16, false,
                    AES256_File(out.c_str(), in.c_str(), key.data(), 1, "CTR", iv.data()));
            against("TDEA_File ECB", "DES-EDE3-ECB", 24, 0, true,
                    TDEA_File(out.c_str(), in.c_str(), key.data(), 1, "ECB", nullptr));
            // The generic calls, with the IV in front, and back again.
            against("CIPHER_FileEncrypt", "AES-192-CBC", 24, 16, true,
                    CIPHER_FileEncrypt(out.c_str(), in.c_str(), key.data(), 24, iv.data(), 16, "aes192/cbc/pkcs5",
                                       OPT_PREFIX_IV),
                    iv);
            int32_t rc = CIPHER_FileDecrypt(back.c_str(), out.c_str(), key.data(), 24, nullptr, 0, "aes192/cbc/pkcs5",
                                            OPT_PREFIX_IV);
            check.Equal(HexOrError(rc, back), ToHex(data), where + " CIPHER_FileDecrypt");
            against("CIPHER_FileEncrypt TDEA OFB", "DES-EDE3-OFB", 24, 8, false,
                    CIPHER_FileEncrypt(out.c_str(), in.c_str(), key.data(), 24, iv.data(), 8, nullptr,
                                       OPT_CIPHER_TDEA | OPT_MODE_OFB));

            // Stream ciphers.
            ByteVec refIv(16, 0);
            std::copy(iv.begin(), iv.begin() + 12, refIv.begin() + 4);
            ref::Crypt("ChaCha20", true, key, refIv, data, &want);
            rc = CIPHER_StreamFile(out.c_str(), in.c_str(), key.data(), 32, iv.data(), 12, 0, OPT_STREAM_CHACHA20);
            check.Equal(HexOrError(rc, out), ToHex(want), where + " CIPHER_StreamFile");
            if (ref::LegacyLoaded() && ref::Crypt("RC4", true, ByteVec(key.begin(), key.begin() + 16), {}, data, &want))
                check.Equal(HexOrError(PC1_File(out.c_str(), in.c_str(), key.data(), 16), out), ToHex(want),
                            where + " PC1_File");
        }
    }
    for (const std::string& path : {in, out, back}) std::remove(path.c_str());
}

CONFORMANCE_SUITE(Differential, Compression, 420, "zlib (RFC 1950) and Zstandard streams, both ways",
                  "zlib compress2/uncompress and zstd ZSTD_compress/ZSTD_decompress, called directly; 0 to 5 KB "
                  "and up to 1 MB of compressible data",
                  "ZLIB_Deflate ZLIB_Inflate COMPR_Compress COMPR_Uncompress") {
    Random rng(0x5eed0030);
    for (long i = 0; i < 420; ++i) {
        check.Case();
        const ByteVec plain = Compressible(rng, Length(i));
        const std::string where = CaseName(rng, i, std::to_string(plain.size()) + " bytes");
        const int32_t size = Size(plain);
        ByteVec back(plain.size() + 1);
        const auto same = [&](size_t n) {
            return n == plain.size() && std::equal(plain.begin(), plain.end(), back.begin());
        };
        // Ours packed, theirs restored.
        for (int32_t format : {0, OPT_COMPR_ZLIB, OPT_COMPR_ZSTD}) {
            ByteVec packed(ZSTD_compressBound(plain.size()) + 64);
            const int32_t n = format ? COMPR_Compress(packed.data(), Size(packed), NonNull(plain), size, format)
                                     : ZLIB_Deflate(packed.data(), Size(packed), NonNull(plain), size);
            uLongf r = back.size();
            if (format == OPT_COMPR_ZSTD)
                r = ZSTD_decompress(back.data(), back.size(), packed.data(), size_t(std::max(n, 0)));
            else if (uncompress(back.data(), &r, packed.data(), uLong(std::max(n, 0))) != Z_OK)
                r = ~uLongf(0);
            check.True(n > 0 && same(r), "the reference does not restore format " + std::to_string(format), where);
        }
        // Theirs packed, ours restored.
        uLongf zlen = compressBound(uLong(plain.size()));
        ByteVec theirs(zlen);
        compress2(theirs.data(), &zlen, NonNull(plain), uLong(plain.size()), rng.Between(1, 9));
        int32_t n = ZLIB_Inflate(back.data(), Size(back), theirs.data(), int32_t(zlen));
        check.True(same(size_t(n)), "ZLIB_Inflate: " + std::to_string(n), where);
        n = COMPR_Uncompress(back.data(), Size(back), theirs.data(), int32_t(zlen), OPT_COMPR_ZLIB);
        check.True(same(size_t(n)), "COMPR_Uncompress zlib: " + std::to_string(n), where);
        ByteVec zs(ZSTD_compressBound(plain.size()));
        size_t zn = ZSTD_compress(zs.data(), zs.size(), NonNull(plain), plain.size(), rng.Between(1, 9));
        n = COMPR_Uncompress(back.data(), Size(back), zs.data(), int32_t(zn), OPT_COMPR_ZSTD);
        check.True(same(size_t(n)), "COMPR_Uncompress zstd: " + std::to_string(n), where);
    }
}
