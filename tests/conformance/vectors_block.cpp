// Published block cipher vectors: NIST AESAVS and TDESAVS known-answer and
// multi-block sets in ECB, CBC, CFB and OFB, the FIPS 197 and SP 800-38A /
// SP 800-67 examples (with CTR), and the published Blowfish set.
#include <algorithm>

#include "block_support.h"
#include "registry.h"

namespace {

// One answer in one direction through the bytes call, the hex call (and in
// ECB the ECB-only calls) and Init/Update/Final with one block per Update.
void CheckFamily(Checker& check, Cipher c, const std::string& mode, const ByteVec& key, const ByteVec& iv,
                 const ByteVec& in, const ByteVec& want, int32_t dir, const std::string& where) {
    const std::string label = where + " " + mode + (dir ? " encrypt" : " decrypt");
    check.Equal(Crypt(c, in, key, dir, mode.c_str(), iv), UpperHex(want), label + " BytesMode");

    std::string hex(in.size() * 2 + 1, '\0');
    int32_t rc = HexModeCall(c, hex.data(), ToHex(in).c_str(), ToHex(key).c_str(), dir, mode.c_str(),
                             iv.empty() ? nullptr : ToHex(iv).c_str());
    check.Equal(rc == 0 ? std::string(hex.c_str()) : "error " + std::to_string(rc), UpperHex(want), label + " HexMode");

    if (mode == "ECB") {
        ByteVec out(in.size() + 1);
        rc = BytesCall(c, out.data(), NonNull(in), Size(in), key, dir);
        check.Equal(rc ? "error " + std::to_string(rc) : ToHex(out.data(), in.size()), ToHex(want), label + " Bytes");
        rc = HexCall(c, hex.data(), ToHex(in).c_str(), ToHex(key).c_str(), dir);
        check.Equal(rc ? "error " + std::to_string(rc) : hex.c_str(), UpperHex(want), label + " Hex");
    }

    ByteVec buffer = in;
    const int32_t h = InitCall(c, key, dir, mode.c_str(), Ptr(iv));
    const size_t block = size_t(BlockSize(c));
    for (size_t at = 0; at < buffer.size(); at += block)
        UpdateCall(c, h, buffer.data() + at, int32_t(std::min(block, buffer.size() - at)));
    check.True(h != 0 && FinalCall(c, h) == 0, "Init or Final failed", label);
    check.Equal(buffer, want, label + " Init/Update/Final");
}

// A CAVP response file of [ENCRYPT] and [DECRYPT] sections. "KEYs" is one
// DES key used three times, so those records are DES answers as well.
void RunCavpFile(Checker& check, const std::string& file, Cipher c, const std::string& mode) {
    for (const VectorRecord& r : ReadSet(check, file)) {
        check.Case();
        ByteVec key = r.Bytes("KEY");
        if (r.Has("KEY1")) {
            for (const char* part : {"KEY1", "KEY2", "KEY3"}) {
                const ByteVec k = r.Bytes(part);
                key.insert(key.end(), k.begin(), k.end());
            }
        }
        const bool encrypt = r.section.count("ENCRYPT") != 0;
        const ByteVec pt = r.Bytes("PLAINTEXT"), ct = r.Bytes("CIPHERTEXT"), iv = r.Bytes("IV");
        const ByteVec& in = encrypt ? pt : ct;
        const ByteVec& want = encrypt ? ct : pt;
        if (r.Has("KEYs")) {
            const ByteVec k = r.Bytes("KEYs");
            key = k;
            key.insert(key.end(), k.begin(), k.end());
            key.insert(key.end(), k.begin(), k.end());
            CheckFamily(check, Cipher::Des, mode, k, iv, in, want, encrypt, Where(file, r) + " DES");
        }
        CheckFamily(check, c, mode, key, iv, in, want, encrypt, Where(file, r));
    }
}

}  // namespace

CONFORMANCE_SUITE(Vectors, AesKnownAnswers, 8312,
                  "AES-128, AES-192, AES-256 in ECB, CBC, CFB-128, OFB, both directions",
                  "NIST CAVP AESAVS known answers: nist-cavp/aes/kat/{ECB,CBC,CFB128,OFB}"
                  "{GFSbox,KeySbox,VarKey,VarTxt}{128,192,256}.rsp (48 files, complete)",
                  "AES128_BytesMode AES192_BytesMode AES256_BytesMode AES128_HexMode AES192_HexMode AES256_HexMode "
                  "AES128_Bytes AES192_Bytes AES256_Bytes AES128_Hex AES192_Hex AES256_Hex AES128_Init AES192_Init "
                  "AES256_Init AES128_Update AES192_Update AES256_Update AES128_Final AES192_Final AES256_Final") {
    for (const char* mode : {"ECB", "CBC", "CFB128", "OFB"}) {
        for (const char* kind : {"GFSbox", "KeySbox", "VarKey", "VarTxt"}) {
            for (int bits : {128, 192, 256}) {
                const Cipher c = bits == 128 ? Cipher::Aes128 : bits == 192 ? Cipher::Aes192 : Cipher::Aes256;
                RunCavpFile(check, "nist-cavp/aes/kat/" + std::string(mode) + kind + std::to_string(bits) + ".rsp", c,
                            std::string(mode).substr(0, 3));
            }
        }
    }
}

CONFORMANCE_SUITE(Vectors, AesMultiBlock, 240, "AES-128, AES-192, AES-256 in ECB, CBC, CFB-128, OFB, 1 to 10 blocks",
                  "NIST CAVP AESAVS multi-block messages: nist-cavp/aes/mmt/{ECB,CBC,CFB128,OFB}MMT{128,192,256}.rsp "
                  "(12 files, complete)",
                  "AES128_BytesMode AES192_BytesMode AES256_BytesMode AES128_HexMode AES192_HexMode AES256_HexMode "
                  "AES128_Bytes AES192_Bytes AES256_Bytes AES128_Hex AES192_Hex AES256_Hex AES128_Init AES192_Init "
                  "AES256_Init AES128_Update AES192_Update AES256_Update AES128_Final AES192_Final AES256_Final") {
    for (const char* mode : {"ECB", "CBC", "CFB128", "OFB"}) {
        for (int bits : {128, 192, 256}) {
            const Cipher c = bits == 128 ? Cipher::Aes128 : bits == 192 ? Cipher::Aes192 : Cipher::Aes256;
            RunCavpFile(check, "nist-cavp/aes/mmt/" + std::string(mode) + "MMT" + std::to_string(bits) + ".rsp", c,
                        std::string(mode).substr(0, 3));
        }
    }
}

CONFORMANCE_SUITE(Vectors, TdesKnownAnswers, 1880,
                  "Triple DES (and single DES, K1 = K2 = K3) in ECB, CBC, CFB-64, OFB, both directions",
                  "NIST CAVP TDESAVS known answers: nist-cavp/tdes/kat/T{ECB,CBC,CFB64,OFB}"
                  "{invperm,permop,subtab,varkey,vartext}.rsp (20 files, complete)",
                  "TDEA_BytesMode TDEA_HexMode TDEA_Bytes TDEA_Hex TDEA_Init TDEA_Update TDEA_Final DES_BytesMode "
                  "DES_HexMode DES_Bytes DES_Hex DES_Init DES_Update DES_Final") {
    for (const char* mode : {"ECB", "CBC", "CFB64", "OFB"}) {
        for (const char* kind : {"invperm", "permop", "subtab", "varkey", "vartext"}) {
            RunCavpFile(check, "nist-cavp/tdes/kat/T" + std::string(mode) + kind + ".rsp", Cipher::Tdea,
                        std::string(mode).substr(0, 3));
        }
    }
}

CONFORMANCE_SUITE(Vectors, TdesMultiBlock, 240, "Triple DES with one, two and three distinct keys in ECB, CBC, CFB-64, OFB",
                  "NIST CAVP TDESAVS multi-block messages: nist-cavp/tdes/mmt/T{ECB,CBC,CFB64,OFB}MMT{1,2,3}.rsp "
                  "(12 files, complete)",
                  "TDEA_BytesMode TDEA_HexMode TDEA_Bytes TDEA_Hex TDEA_Init TDEA_Update TDEA_Final") {
    for (const char* mode : {"ECB", "CBC", "CFB64", "OFB"}) {
        for (int set : {1, 2, 3}) {
            RunCavpFile(check, "nist-cavp/tdes/mmt/T" + std::string(mode) + "MMT" + std::to_string(set) + ".rsp",
                        Cipher::Tdea, std::string(mode).substr(0, 3));
        }
    }
}

CONFORMANCE_SUITE(Vectors, BlockModeExamples, 53,
                  "AES-128, AES-192, AES-256 and Triple DES in ECB, CBC, CFB, OFB and CTR; the AES block itself",
                  "NIST SP 800-38A F.1-F.5, SP 800-67 mode examples (parsed/block_modes_examples_aes_tdes.txt), "
                  "FIPS 197 Appendix C (aes_fips197_appendix_c.txt)",
                  "AES128_BytesMode AES192_BytesMode AES256_BytesMode AES128_HexMode AES192_HexMode AES256_HexMode "
                  "AES128_Bytes AES192_Bytes AES256_Bytes AES128_Hex AES192_Hex AES256_Hex AES128_Init AES192_Init "
                  "AES256_Init AES128_Update AES192_Update AES256_Update AES128_Final AES192_Final AES256_Final "
                  "TDEA_BytesMode TDEA_HexMode TDEA_Bytes TDEA_Hex TDEA_Init TDEA_Update TDEA_Final") {
    const std::string examples = "parsed/block_modes_examples_aes_tdes.txt";
    for (const VectorRecord& r : ReadSet(check, examples)) {
        check.Case();
        const bool encrypt = r.Get("DIRECTION") == "ENCRYPT";
        const ByteVec pt = r.Bytes("PLAINTEXT"), ct = r.Bytes("CIPHERTEXT");
        CheckFamily(check, CipherFromName(r.Get("CIPHER")), r.Get("MODE").substr(0, 3), r.Bytes("KEY"),
                    r.Bytes("IV"), encrypt ? pt : ct, encrypt ? ct : pt, encrypt, Where(examples, r));
    }
    const std::string fips197 = "aes_fips197_appendix_c.txt";
    for (const VectorRecord& r : ReadSet(check, fips197)) {
        check.Case();
        const Cipher c = CipherFromName(r.section.begin()->first);
        const ByteVec key = r.Bytes("KEY"), pt = r.Bytes("PLAINTEXT"), ct = r.Bytes("CIPHERTEXT");
        CheckFamily(check, c, "ECB", key, {}, pt, ct, 1, Where(fips197, r));
        CheckFamily(check, c, "ECB", key, {}, ct, pt, 0, Where(fips197, r));
    }
}

CONFORMANCE_SUITE(Vectors, Blowfish, 61, "Blowfish with keys of 1 to 24 bytes in ECB, CBC, CFB-64, OFB-64",
                  "Published Blowfish vectors (E. Young): rfc/blowfish_eay_vectors.txt",
                  "BLF_BytesMode BLF_HexMode BLF_Bytes BLF_Hex BLF_Init BLF_Update BLF_Final") {
    const std::string file = "rfc/blowfish_eay_vectors.txt";
    for (const VectorRecord& r : ReadSet(check, file)) {
        check.Case();
        const std::string mode = r.Has("MODE") ? r.Get("MODE").substr(0, 3) : "ECB";
        const ByteVec key = r.Bytes("KEY"), iv = r.Bytes("IV"), pt = r.Bytes("PLAINTEXT"), ct = r.Bytes("CIPHERTEXT");
        CheckFamily(check, Cipher::Blf, mode, key, iv, pt, ct, 1, Where(file, r));
        CheckFamily(check, Cipher::Blf, mode, key, iv, ct, pt, 0, Where(file, r));
    }
}
