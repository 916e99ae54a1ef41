// Published known answers for AES, Triple DES, DES and Blowfish, run through
// every spelling of the per-cipher families.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "block_support.h"
#include "vector_reader.h"

namespace {

std::string B64(const ByteVec& v) {
    std::string s(v.size() / 3 * 4 + 8, '\0');
    const int32_t n = CNV_B64StrFromBytes(s.data(), int32_t(s.size()) - 1, v.data(), int32_t(v.size()));
    s.resize(size_t(n));
    return s;
}

// One answer in one direction: bytes into a second buffer and in place,
// Init/Update/Final one block per Update, and (allForms) hex and Base64.
void CheckVector(Cipher c, const char* mode, const ByteVec& key, const ByteVec& iv, const ByteVec& in,
                 const ByteVec& expected, int32_t dir, bool allForms, const std::string& where) {
    SCOPED_TRACE(where + " mode " + mode + (dir ? " encrypt" : " decrypt"));
    const uint8_t* ivp = iv.empty() ? nullptr : iv.data();
    EXPECT_EQ(Crypt(c, in, key, dir, mode, iv), UpperHex(expected));

    ByteVec buffer = in;
    ASSERT_EQ(BytesModeCall(c, buffer.data(), buffer.data(), int32_t(buffer.size()), key, dir, mode, ivp), 0);
    EXPECT_EQ(buffer, expected) << "in place";

    buffer = in;
    const int32_t handle = InitCall(c, key, dir, mode, ivp);
    ASSERT_NE(handle, 0);
    const size_t block = size_t(BlockSize(c));
    for (size_t off = 0; off < buffer.size(); off += block) {
        const size_t n = std::min(block, buffer.size() - off);
        ASSERT_EQ(UpdateCall(c, handle, buffer.data() + off, int32_t(n)), 0);
    }
    EXPECT_EQ(FinalCall(c, handle), 0);
    EXPECT_EQ(buffer, expected) << "Init/Update/Final";

    if (!allForms) return;
    std::string out(in.size() * 2 + 1, '\0');
    ASSERT_EQ(HexModeCall(c, out.data(), ToHex(in).c_str(), ToHex(key).c_str(), dir, mode,
                          iv.empty() ? nullptr : ToHex(iv).c_str()),
              0);
    EXPECT_EQ(out.c_str(), UpperHex(expected)) << "hex";
    std::string b64(B64(in).size() + 1, '\0');
    ASSERT_EQ(B64ModeCall(c, b64.data(), B64(in).c_str(), B64(key).c_str(), dir, mode,
                          iv.empty() ? nullptr : B64(iv).c_str()),
              0);
    EXPECT_EQ(b64.c_str(), B64(expected)) << "Base64";
}

// Runs a CAVP response file: [ENCRYPT] and [DECRYPT] sections.
void RunCavpFile(const std::string& path, Cipher c, const char* mode) {
    const auto records = ReadVectorFile(path);
    ASSERT_FALSE(records.empty()) << path;
    for (const auto& r : records) {
        ByteVec key = r.Has("KEY") ? r.Bytes("KEY") : ByteVec();
        if (r.Has("KEY1")) {
            for (const char* part : {"KEY1", "KEY2", "KEY3"}) {
                const ByteVec k = r.Bytes(part);
                key.insert(key.end(), k.begin(), k.end());
            }
        }
        const bool encrypt = r.section.count("ENCRYPT") != 0;
        const ByteVec pt = r.Bytes("PLAINTEXT"), ct = r.Bytes("CIPHERTEXT");
        const std::string where = path + ":" + std::to_string(r.line);
        if (r.Has("KEYs")) {
            // One DES key used three times: a Triple DES and a DES answer.
            const ByteVec k = r.Bytes("KEYs");
            key = k;
            key.insert(key.end(), k.begin(), k.end());
            key.insert(key.end(), k.begin(), k.end());
            CheckVector(Cipher::Des, mode, k, r.Bytes("IV"), encrypt ? pt : ct, encrypt ? ct : pt, encrypt, false,
                        where);
        }
        CheckVector(c, mode, key, r.Bytes("IV"), encrypt ? pt : ct, encrypt ? ct : pt, encrypt, false, where);
    }
}

}  // namespace

TEST(BlockVectors, Fips197Examples) {
    const auto records = ReadVectorFile("aes_fips197_appendix_c.txt");
    ASSERT_EQ(records.size(), 3u);
    for (const auto& r : records) {
        const Cipher c = CipherFromName(r.section.begin()->first);
        const ByteVec key = r.Bytes("KEY"), pt = r.Bytes("PLAINTEXT"), ct = r.Bytes("CIPHERTEXT");
        CheckVector(c, "ECB", key, {}, pt, ct, 1, true, r.section.begin()->first);
        CheckVector(c, "ECB", key, {}, ct, pt, 0, true, r.section.begin()->first);
    }
}

TEST(BlockVectors, Sp800ModeExamples) {
    const auto records = ReadVectorFile("parsed/block_modes_examples_aes_tdes.txt");
    ASSERT_EQ(records.size(), 50u);
    for (const auto& r : records) {
        const std::string mode = r.Get("MODE").substr(0, 3);
        const bool encrypt = r.Get("DIRECTION") == "ENCRYPT";
        const ByteVec pt = r.Bytes("PLAINTEXT"), ct = r.Bytes("CIPHERTEXT");
        CheckVector(CipherFromName(r.Get("CIPHER")), mode.c_str(), r.Bytes("KEY"), r.Bytes("IV"),
                    encrypt ? pt : ct, encrypt ? ct : pt, encrypt, true, r.Get("CIPHER"));
    }
}

TEST(BlockVectors, AesCavpKnownAnswersAndMultiBlock) {
    const struct {
        const char* file;
        Cipher cipher;
        const char* mode;
    } files[] = {
        {"kat/ECBGFSbox128", Cipher::Aes128, "ECB"}, {"kat/ECBKeySbox192", Cipher::Aes192, "ECB"},
        {"kat/ECBVarKey256", Cipher::Aes256, "ECB"}, {"kat/CBCVarTxt128", Cipher::Aes128, "CBC"},
        {"kat/CFB128GFSbox192", Cipher::Aes192, "CFB"}, {"kat/OFBKeySbox256", Cipher::Aes256, "OFB"},
        {"mmt/ECBMMT128", Cipher::Aes128, "ECB"},    {"mmt/ECBMMT192", Cipher::Aes192, "ECB"},
        {"mmt/ECBMMT256", Cipher::Aes256, "ECB"},    {"mmt/CBCMMT128", Cipher::Aes128, "CBC"},
        {"mmt/CBCMMT192", Cipher::Aes192, "CBC"},    {"mmt/CBCMMT256", Cipher::Aes256, "CBC"},
        {"mmt/CFB128MMT128", Cipher::Aes128, "CFB"}, {"mmt/CFB128MMT192", Cipher::Aes192, "CFB"},
        {"mmt/CFB128MMT256", Cipher::Aes256, "CFB"}, {"mmt/OFBMMT128", Cipher::Aes128, "OFB"},
        {"mmt/OFBMMT192", Cipher::Aes192, "OFB"},    {"mmt/OFBMMT256", Cipher::Aes256, "OFB"},
    };
    for (const auto& f : files) RunCavpFile(std::string("nist-cavp/aes/") + f.file + ".rsp", f.cipher, f.mode);
}

TEST(BlockVectors, TdesCavpKnownAnswersAndMultiBlock) {
    const struct {
        const char* file;
        const char* mode;
    } files[] = {
        {"mmt/TECBMMT2", "ECB"},  {"mmt/TECBMMT3", "ECB"},  {"mmt/TCBCMMT3", "CBC"},
        {"mmt/TCFB64MMT3", "CFB"}, {"mmt/TOFBMMT3", "OFB"}, {"kat/TECBinvperm", "ECB"},
        {"kat/TECBsubtab", "ECB"}, {"kat/TECBvarkey", "ECB"}, {"kat/TECBpermop", "ECB"},
        {"kat/TCBCvartext", "CBC"},
    };
    for (const auto& f : files) RunCavpFile(std::string("nist-cavp/tdes/") + f.file + ".rsp", Cipher::Tdea, f.mode);
}

TEST(BlockVectors, BlowfishPublished) {
    const auto records = ReadVectorFile("rfc/blowfish_eay_vectors.txt");
    ASSERT_EQ(records.size(), 61u);
    for (const auto& r : records) {
        const std::string mode = r.Has("MODE") ? r.Get("MODE").substr(0, 3) : "ECB";
        const ByteVec key = r.Bytes("KEY"), pt = r.Bytes("PLAINTEXT"), ct = r.Bytes("CIPHERTEXT");
        const std::string where = "line " + std::to_string(r.line);
        CheckVector(Cipher::Blf, mode.c_str(), key, r.Bytes("IV"), pt, ct, 1, r.Has("MODE"), where);
        CheckVector(Cipher::Blf, mode.c_str(), key, r.Bytes("IV"), ct, pt, 0, r.Has("MODE"), where);
    }
}
