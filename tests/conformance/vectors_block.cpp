// Published block cipher and key wrap vectors, through the families and the
// generic CIPHER_ calls.
#include "registry.h"

// The exports each answer goes through.
#define AES_CALLS                                                                                      \
    "AES128_BytesMode AES192_BytesMode AES256_BytesMode AES128_HexMode AES192_HexMode AES256_HexMode " \
    "AES128_Bytes AES192_Bytes AES256_Bytes AES128_Hex AES192_Hex AES256_Hex AES128_Init AES192_Init " \
    "AES256_Init AES128_Update AES192_Update AES256_Update AES128_Final AES192_Final AES256_Final"
#define TDEA_CALLS "TDEA_BytesMode TDEA_HexMode TDEA_Bytes TDEA_Hex TDEA_Init TDEA_Update TDEA_Final"
#define DES_CALLS "DES_BytesMode DES_HexMode DES_Bytes DES_Hex DES_Init DES_Update DES_Final"
#define GENERIC_CALLS                                                                                      \
    "CIPHER_EncryptBytes CIPHER_DecryptBytes CIPHER_EncryptBytes2 CIPHER_DecryptBytes2 CIPHER_EncryptHex " \
    "CIPHER_DecryptHex CIPHER_Init CIPHER_InitHex CIPHER_Update CIPHER_UpdateHex CIPHER_Final"

namespace {

// The generic CIPHER_ calls on the same answer, for AES and Triple DES: the
// cipher named by text or by option bits by turns, no padding.
void CheckGeneric(Checker& check, Cipher c, const std::string& mode, const ByteVec& key, const ByteVec& iv,
                  const ByteVec& in, const ByteVec& want, int32_t dir, bool byText, const std::string& where) {
    const std::string label = where + " " + mode + (dir ? " encrypt" : " decrypt") + " CIPHER_ ";
    const std::string text = std::string(GenericName(c).text) + "/" + mode + "/nopad", hexIv = ToHex(iv);
    const char* alg = byText ? text.c_str() : nullptr;
    const char* ivText = iv.empty() ? nullptr : hexIv.c_str();
    const int32_t options = byText ? 0 : GenericName(c).bits | ModeOption(mode) | OPT_PAD_NONE;

    ByteVec out(in.size());
    auto crypt = dir ? (byText ? CIPHER_EncryptBytes : CIPHER_EncryptBytes2)
                     : (byText ? CIPHER_DecryptBytes : CIPHER_DecryptBytes2);
    const int32_t n =
        crypt(out.data(), Size(out), in.data(), Size(in), key.data(), Size(key), Ptr(iv), Size(iv), alg, options);
    check.Equal(OrError(n == Size(in), n, ToHex(out)), ToHex(want), label + "bytes");
    check.Equal(HexText(in.size(),
                        [&](char* hex, int32_t room) {
                            return (dir ? CIPHER_EncryptHex : CIPHER_DecryptHex)(
                                hex, room, ToHex(in).c_str(), ToHex(key).c_str(), ivText, alg, options);
                        }),
                UpperHex(want), label + "hex");

    // Stateful, one block per call; by hex when the cipher is named by text.
    const int32_t h = byText ? CIPHER_InitHex(dir, alg, ToHex(key).c_str(), ivText, 0)
                             : CIPHER_Init(dir, nullptr, key.data(), Size(key), Ptr(iv), Size(iv), options);
    std::string got;
    InPieces(in.size(), [&] { return BlockSize(c); }, [&](size_t at, size_t len) {
        const std::string piece = ToHex(in.data() + at, len);
        const int32_t rc = byText ? 0 : CIPHER_Update(h, out.data(), int32_t(len), in.data() + at, int32_t(len));
        const auto hex = [&](char* text, int32_t room) { return CIPHER_UpdateHex(h, text, room, piece.c_str()); };
        got += byText ? HexText(len, hex) : OrError(rc == 0, rc, Upper(ToHex(out.data(), len)));
        return 0;
    });
    check.True(h != 0 && CIPHER_Final(h) == 0, "CIPHER_Init or CIPHER_Final failed", label);
    check.Equal(got, UpperHex(want), label + "stateful");
}

// A CAVP response file of [ENCRYPT] and [DECRYPT] sections. "KEYs" is one
// DES key used three times, so those records are DES answers as well.
void RunCavpFile(Checker& check, const std::string& file, Cipher c, const std::string& mode) {
    EachRecord(check, file, [&](const VectorRecord& r, const std::string& where) {
        const bool encrypt = r.section.count("ENCRYPT") != 0;
        const ByteVec pt = r.Bytes("PLAINTEXT"), ct = r.Bytes("CIPHERTEXT"), iv = r.Bytes("IV");
        const ByteVec &in = encrypt ? pt : ct, &want = encrypt ? ct : pt;
        const ByteVec key =
            r.Has("KEYs") ? Joined(r, {"KEYs", "KEYs", "KEYs"}) : Joined(r, {"KEY", "KEY1", "KEY2", "KEY3"});
        if (r.Has("KEYs"))
            CheckCipherFamily(check, Cipher::Des, mode, r.Bytes("KEYs"), iv, in, want, encrypt, where + " DES");
        CheckCipherFamily(check, c, mode, key, iv, in, want, encrypt, where);
        CheckGeneric(check, c, mode, key, iv, in, want, encrypt, r.line % 2 == 0, where);
    });
}

// Every file dir + mode + kind + size + ".rsp" of a CAVP set; the calls take
// the first three letters of the mode.
void RunCavpSet(Checker& check, const std::string& dir, std::initializer_list<const char*> modes,
                std::initializer_list<const char*> kinds, std::initializer_list<std::pair<const char*, Cipher>> sizes) {
    for (const char* mode : modes)
        for (const char* kind : kinds)
            for (const auto& [size, c] : sizes)
                RunCavpFile(check, dir + mode + kind + size + ".rsp", c, std::string(mode).substr(0, 3));
}

const auto kAesSizes = {std::pair{"128", Cipher::Aes128}, std::pair{"192", Cipher::Aes192},
                        std::pair{"256", Cipher::Aes256}};

}  // namespace

CONFORMANCE_SUITE(Vectors, AesKnownAnswers, 8312,
                  "AES-128, AES-192, AES-256 in ECB, CBC, CFB-128, OFB, both directions",
                  "NIST CAVP AESAVS known answers: nist-cavp/aes/kat/{ECB,CBC,CFB128,OFB}"
                  "{GFSbox,KeySbox,VarKey,VarTxt}{128,192,256}.rsp (48 files, complete)",
                  AES_CALLS " " GENERIC_CALLS) {
    RunCavpSet(check, "nist-cavp/aes/kat/", {"ECB", "CBC", "CFB128", "OFB"}, {"GFSbox", "KeySbox", "VarKey", "VarTxt"},
               kAesSizes);
}

CONFORMANCE_SUITE(Vectors, AesMultiBlock, 240, "AES-128, AES-192, AES-256 in ECB, CBC, CFB-128, OFB, 1 to 10 blocks",
                  "NIST CAVP AESAVS multi-block messages: "
                  "nist-cavp/aes/mmt/{ECB,CBC,CFB128,OFB}MMT{128,192,256}.rsp "
                  "(12 files, complete)",
                  AES_CALLS " " GENERIC_CALLS) {
    RunCavpSet(check, "nist-cavp/aes/mmt/", {"ECB", "CBC", "CFB128", "OFB"}, {"MMT"}, kAesSizes);
}

CONFORMANCE_SUITE(Vectors, TdesKnownAnswers, 1880,
                  "Triple DES (and single DES, K1 = K2 = K3) in ECB, CBC, CFB-64, OFB, both "
                  "directions",
                  "NIST CAVP TDESAVS known answers: nist-cavp/tdes/kat/T{ECB,CBC,CFB64,OFB}"
                  "{invperm,permop,subtab,varkey,vartext}.rsp (20 files, complete)",
                  TDEA_CALLS " " DES_CALLS " " GENERIC_CALLS) {
    RunCavpSet(check, "nist-cavp/tdes/kat/T", {"ECB", "CBC", "CFB64", "OFB"},
               {"invperm", "permop", "subtab", "varkey", "vartext"}, {{"", Cipher::Tdea}});
}

CONFORMANCE_SUITE(Vectors, TdesMultiBlock, 240,
                  "Triple DES with one, two and three distinct keys in ECB, CBC, CFB-64, OFB",
                  "NIST CAVP TDESAVS multi-block messages: "
                  "nist-cavp/tdes/mmt/T{ECB,CBC,CFB64,OFB}MMT{1,2,3}.rsp "
                  "(12 files, complete)",
                  TDEA_CALLS " " GENERIC_CALLS) {
    RunCavpSet(check, "nist-cavp/tdes/mmt/T", {"ECB", "CBC", "CFB64", "OFB"}, {"MMT"},
               {{"1", Cipher::Tdea}, {"2", Cipher::Tdea}, {"3", Cipher::Tdea}});
}

CONFORMANCE_SUITE(Vectors, BlockModeExamples, 53,
                  "AES-128, AES-192, AES-256 and Triple DES in ECB, CBC, CFB, "
                  "OFB and CTR; the AES block itself",
                  "NIST SP 800-38A F.1-F.5, SP 800-67 mode examples "
                  "(parsed/block_modes_examples_aes_tdes.txt), "
                  "FIPS 197 Appendix C (aes_fips197_appendix_c.txt)",
                  AES_CALLS " " TDEA_CALLS " " GENERIC_CALLS) {
    const std::string examples = "parsed/block_modes_examples_aes_tdes.txt";
    EachRecord(check, examples, [&](const VectorRecord& r, const std::string& where) {
        const bool encrypt = r.Get("DIRECTION") == "ENCRYPT";
        const ByteVec pt = r.Bytes("PLAINTEXT"), ct = r.Bytes("CIPHERTEXT");
        const ByteVec key = r.Bytes("KEY"), iv = r.Bytes("IV"), &in = encrypt ? pt : ct, &want = encrypt ? ct : pt;
        const Cipher c = CipherFromName(r.Get("CIPHER"));
        const std::string mode = r.Get("MODE").substr(0, 3);
        CheckCipherFamily(check, c, mode, key, iv, in, want, encrypt, where);
        for (bool byText : {false, true}) CheckGeneric(check, c, mode, key, iv, in, want, encrypt, byText, where);
    });
    const std::string fips197 = "aes_fips197_appendix_c.txt";
    EachRecord(check, fips197, [&](const VectorRecord& r, const std::string& where) {
        const Cipher c = CipherFromName(r.section.begin()->first);
        const ByteVec key = r.Bytes("KEY"), pt = r.Bytes("PLAINTEXT"), ct = r.Bytes("CIPHERTEXT");
        CheckCipherFamily(check, c, "ECB", key, {}, pt, ct, 1, where);
        CheckCipherFamily(check, c, "ECB", key, {}, ct, pt, 0, where);
    });
}

CONFORMANCE_SUITE(Vectors, Blowfish, 61, "Blowfish with keys of 1 to 24 bytes in ECB, CBC, CFB-64, OFB-64",
                  "Published Blowfish vectors (E. Young): rfc/blowfish_eay_vectors.txt",
                  "BLF_BytesMode BLF_HexMode BLF_Bytes BLF_Hex BLF_Init BLF_Update "
                  "BLF_Final") {
    const std::string file = "rfc/blowfish_eay_vectors.txt";
    EachRecord(check, file, [&](const VectorRecord& r, const std::string& where) {
        const std::string mode = r.Has("MODE") ? r.Get("MODE").substr(0, 3) : "ECB";
        const ByteVec key = r.Bytes("KEY"), iv = r.Bytes("IV"), pt = r.Bytes("PLAINTEXT"), ct = r.Bytes("CIPHERTEXT");
        CheckCipherFamily(check, Cipher::Blf, mode, key, iv, pt, ct, 1, where);
        CheckCipherFamily(check, Cipher::Blf, mode, key, iv, ct, pt, 0, where);
    });
}

CONFORMANCE_SUITE(Vectors, KeyWrap, 3006,
                  "AES Key Wrap (RFC 3394 / SP 800-38F KW) with 128/192/256-bit KEKs, keys "
                  "of 128 to 4096 bits, "
                  "failing integrity checks",
                  "NIST CAVP KWVS: nist-cavp/keywrap/KW_{AE,AD}_{128,192,256}.txt "
                  "(complete); RFC 3394 section 4 "
                  "(rfc/rfc3394_aes_keywrap.txt)",
                  "CIPHER_KeyWrap CIPHER_KeyUnwrap") {
    for (const char* bits : {"128", "192", "256"}) {
        const std::string ae = std::string("nist-cavp/keywrap/KW_AE_") + bits + ".txt";
        EachRecord(check, ae, [&](const VectorRecord& r, const std::string& where) {
            check.Equal(Wrapped(r.Bytes("P"), r.Bytes("K")), Lower(r.Get("C")), where);
        });
        const std::string ad = std::string("nist-cavp/keywrap/KW_AD_") + bits + ".txt";
        EachRecord(check, ad, [&](const VectorRecord& r, const std::string& where) {
            check.Equal(Unwrapped(r.Bytes("C"), r.Bytes("K")), r.fail ? "refused, zeroed" : Lower(r.Get("P")), where);
        });
    }
    const std::string rfc = "rfc/rfc3394_aes_keywrap.txt";
    EachRecord(check, rfc, [&](const VectorRecord& r, const std::string& where) {
        check.Equal(Wrapped(r.Bytes("KEYDATA"), r.Bytes("KEK")), Lower(r.Get("WRAPPED")), where + " wrap");
        check.Equal(Unwrapped(r.Bytes("WRAPPED"), r.Bytes("KEK")), Lower(r.Get("KEYDATA")), where + " unwrap");
    });
}
