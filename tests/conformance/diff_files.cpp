// The file forms against OpenSSL's libcrypto and zlib: the library reads and
// writes files in chunks, so sizes around the chunk length matter.
#include <unistd.h>
#include <zlib.h>

#include <filesystem>
#include <fstream>

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

ByteVec ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return ByteVec((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

std::string HexOrError(int32_t rc, const std::string& path) {
    return rc == 0 ? ToHex(ReadFile(path)) : "error " + std::to_string(rc);
}

const size_t kSizes[] = {0, 1, 7, 8, 15, 16, 17, 63, 64, 65, 4095, 4096, 4097, 8191, 8192, 8193, 12288, 100003};

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
            for (auto [option, name] : {std::pair{OPT_HASH_SHA256, "SHA256"},
                                        {OPT_HASH_SHA3_512, "SHA3-512"},
                                        {OPT_HASH_RMD160, "RIPEMD160"}}) {
                ref::Digest(name, data, &want);
                uint8_t digest[64];
                const int32_t n = HASH_File(digest, 64, in.c_str(), option);
                check.Equal(n > 0 ? ToHex(digest, size_t(n)) : "error", ToHex(want), where + " HASH_File " + name);
                char hex[129] = {};
                HASH_HexFromFile(hex, 128, in.c_str(), option);
                check.Equal(std::string(hex), ToHex(want), where + " HASH_HexFromFile " + name);
            }
            using FileHexHash = int32_t (*)(char*, const char*, const char*);
            for (auto [family, name] : {std::pair<FileHexHash, const char*>{SHA1_FileHexHash, "SHA1"},
                                        {SHA2_FileHexHash, "SHA256"},
                                        {MD5_FileHexHash, "MD5"}}) {
                ref::Digest(name, data, &want);
                char hex[65] = {};
                const int32_t rc = family(hex, in.c_str(), "b");
                check.Equal(rc ? "error" : std::string(hex), ToHex(want), where + " family file digest " + name);
            }
            const uint32_t crc = uint32_t(crc32(0, data.data(), uInt(data.size())));
            check.Equal(long(uint32_t(CRC_File(in.c_str(), 0))), long(size ? crc : 0), where + " CRC_File");

            // Block ciphers: ECB and CBC pad, the others do not.
            ref::Crypt("AES-128-CBC", true, ByteVec(key.begin(), key.begin() + 16), iv, data, &want, true);
            check.Equal(HexOrError(AES128_File(out.c_str(), in.c_str(), key.data(), 1, "CBC", iv.data()), out),
                        ToHex(want), where + " AES128_File CBC");
            ref::Crypt("AES-256-CTR", true, key, iv, data, &want);
            check.Equal(HexOrError(AES256_File(out.c_str(), in.c_str(), key.data(), 1, "CTR", iv.data()), out),
                        ToHex(want), where + " AES256_File CTR");
            ref::Crypt("DES-EDE3-ECB", true, ByteVec(key.begin(), key.begin() + 24), {}, data, &want, true);
            check.Equal(HexOrError(TDEA_File(out.c_str(), in.c_str(), key.data(), 1, "ECB", nullptr), out), ToHex(want),
                        where + " TDEA_File ECB");

            // The generic calls, with the IV in front, and back again.
            ref::Crypt("AES-192-CBC", true, ByteVec(key.begin(), key.begin() + 24), iv, data, &want, true);
            ByteVec prefixed = iv;
            prefixed.insert(prefixed.end(), want.begin(), want.end());
            int32_t rc = CIPHER_FileEncrypt(out.c_str(), in.c_str(), key.data(), 24, iv.data(), 16, "aes192/cbc/pkcs5",
                                            OPT_PREFIX_IV);
            check.Equal(HexOrError(rc, out), ToHex(prefixed), where + " CIPHER_FileEncrypt");
            rc = CIPHER_FileDecrypt(back.c_str(), out.c_str(), key.data(), 24, nullptr, 0, "aes192/cbc/pkcs5",
                                    OPT_PREFIX_IV);
            check.Equal(HexOrError(rc, back), ToHex(data), where + " CIPHER_FileDecrypt");
            ref::Crypt("DES-EDE3-OFB", true, ByteVec(key.begin(), key.begin() + 24),
                       ByteVec(iv.begin(), iv.begin() + 8), data, &want);
            rc = CIPHER_FileEncrypt(out.c_str(), in.c_str(), key.data(), 24, iv.data(), 8, nullptr,
                                    OPT_CIPHER_TDEA | OPT_MODE_OFB);
            check.Equal(HexOrError(rc, out), ToHex(want), where + " CIPHER_FileEncrypt TDEA OFB");

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
