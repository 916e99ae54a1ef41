// Published digest and XOF vectors.
#include "digest_family_support.h"
#include "registry.h"

namespace {

struct DigestFile {
    const char* file;
    int32_t option;
    const DigestFamily* family = nullptr;
};

// The family calls over one message, the stream fed in pieces of `piece` bytes.
void CheckFamily(Checker& check, const DigestFamily& f, const ByteVec& msg, const std::string& md, size_t piece,
                 const std::string& where) {
    uint8_t digest[32];
    char hex[65] = {};
    f.bytesHash(digest, Ptr(msg), Size(msg));
    check.Equal(ToHex(digest, f.digits / 2), md, where + " BytesHash");
    f.bytesHexHash(hex, Ptr(msg), Size(msg));
    check.Equal(std::string(hex), md, where + " BytesHexHash");
    const int32_t h = f.init();
    InPieces(msg.size(), [&] { return piece; }, [&](size_t at, size_t n) {
        return f.addBytes(h, msg.data() + at, int32_t(n));
    });
    f.hexDigest(hex, h);
    check.Equal(std::string(hex), md, where + " HexDigest");
}

// HASH_HexFromBytes, or HASH_HexFromHex over the message as hex.
std::string HexOf(const ByteVec& msg, int32_t option, bool fromHex = false) {
    char out[129] = {};
    const int32_t n = fromHex ? HASH_HexFromHex(out, 128, ToHex(msg).c_str(), option)
                              : HASH_HexFromBytes(out, 128, Ptr(msg), Size(msg), option);
    return OrError(n >= 0, n, out);
}

std::string BitsHexOf(const ByteVec& msg, int32_t bits, int32_t option) {
    char out[129] = {};
    int32_t n = HASH_HexFromBits(out, 128, msg.data(), bits, option);
    return OrError(n >= 0, n, out);
}

// "Len" counts bits; Len = 0 comes with Msg = 00, the empty message.
ByteVec MessageOf(const VectorRecord& r) {
    ByteVec msg = r.Bytes("Msg");
    msg.resize(size_t((r.Int("Len") + 7) / 8));
    return msg;
}

// The Short and Long message files of one digest; name is the file stem
// ("SHA256", "SHA3_256").
void RunByteSet(Checker& check, const std::string& dir, const std::string& name, int32_t option, int32_t sha3Bits,
                const DigestFamily* family) {
    for (const char* kind : {"ShortMsg.rsp", "LongMsg.rsp"}) {
        EachRecord(check, dir + name + kind, [&](const VectorRecord& r, const std::string& where) {
            const std::string md = r.Get("MD");
            const ByteVec msg = MessageOf(r);
            check.Equal(HexOf(msg, option), md, where + " HASH_HexFromBytes");
            check.Equal(HexOf(msg, option, true), md, where + " HASH_HexFromHex");
            ByteVec padded = msg;
            padded.push_back(0);  // the bit call wants a buffer even for 0 bits
            check.Equal(BitsHexOf(padded, int32_t(r.Int("Len")), option), md, where + " HASH_HexFromBits");
            const size_t piece = 1 + size_t(r.line) % 150;
            check.Equal(HashStream(msg, option, 0, [&] { return piece; }), md, where + " HASH_ stream");
            if (sha3Bits) check.Equal(HashStream(msg, 0, sha3Bits, [&] { return piece + 50; }), md, where + " SHA3_");
            if (family) CheckFamily(check, *family, msg, md, msg.size() / 2 + 1, where);
        });
    }
}

const DigestFile kSha[] = {{"SHA1", OPT_HASH_SHA1, &kDigestFamilies[0]},
                           {"SHA224", OPT_HASH_SHA224},
                           {"SHA256", OPT_HASH_SHA256, &kDigestFamilies[1]},
                           {"SHA384", OPT_HASH_SHA384},
                           {"SHA512", OPT_HASH_SHA512}};

// SHAKE through XOF_Bytes and through PRF_Bytes, which ignores key and
// custom string for these options.
void CheckShake(Checker& check, int32_t option, const ByteVec& msg, const std::string& want, const std::string& where) {
    ByteVec out(want.size() / 2);
    int32_t n = XOF_Bytes(out.data(), Size(out), Ptr(msg), Size(msg), option);
    check.Equal(OrError(n == Size(out), n, ToHex(out)), Lower(want), where + " XOF_Bytes");
    const uint8_t key[3] = {1, 2, 3};
    n = PRF_Bytes(out.data(), Size(out), NonNull(msg), Size(msg), key, 3, "ignored", option);
    check.Equal(OrError(n == Size(out), n, ToHex(out)), Lower(want), where + " PRF_Bytes");
}

}  // namespace

CONFORMANCE_SUITE(Vectors, Sha1Sha2Bytes, 901, "SHA-1, SHA-224, SHA-256, SHA-384, SHA-512 (byte-oriented)",
                  "NIST CAVP SHAVS: nist-cavp/sha/byte/SHA*{Short,Long}Msg.rsp (10 files, complete)",
                  "HASH_HexFromBytes HASH_HexFromHex HASH_HexFromBits HASH_Init HASH_AddBytes HASH_Final "
                  "SHA1_BytesHash SHA2_BytesHash SHA1_BytesHexHash SHA2_BytesHexHash SHA1_Init SHA1_AddBytes "
                  "SHA1_HexDigest SHA2_Init SHA2_AddBytes SHA2_HexDigest") {
    for (const DigestFile& f : kSha) RunByteSet(check, "nist-cavp/sha/byte/", f.file, f.option, 0, f.family);
}

CONFORMANCE_SUITE(Vectors, Sha1Sha2Bits, 3589, "SHA-1, SHA-224, SHA-256, SHA-384, SHA-512 of any bit length",
                  "NIST CAVP SHAVS bit-oriented: nist-cavp/sha/bit/SHA*ShortMsg.rsp (5 files, complete)",
                  "HASH_HexFromBits") {
    for (const DigestFile& f : kSha) {
        EachRecord(check, "nist-cavp/sha/bit/" + std::string(f.file) + "ShortMsg.rsp",
                   [&](const VectorRecord& r, const std::string& where) {
                       ByteVec msg = MessageOf(r);
                       msg.push_back(0);
                       check.Equal(BitsHexOf(msg, int32_t(r.Int("Len")), f.option), r.Get("MD"), where);
                   });
    }
}

CONFORMANCE_SUITE(Vectors, Sha3Bytes, 856, "SHA3-224, SHA3-256, SHA3-384, SHA3-512 (byte-oriented)",
                  "NIST CAVP SHA3VS: nist-cavp/sha3/SHA3_*{Short,Long}Msg.rsp (8 files, complete)",
                  "HASH_HexFromBytes HASH_HexFromHex HASH_HexFromBits HASH_Init HASH_AddBytes HASH_Final SHA3_Init "
                  "SHA3_AddBytes "
                  "SHA3_HexDigest") {
    for (auto [bits, option] : {std::pair{224, OPT_HASH_SHA3_224}, std::pair{256, OPT_HASH_SHA3_256},
                                std::pair{384, OPT_HASH_SHA3_384}, std::pair{512, OPT_HASH_SHA3_512}})
        RunByteSet(check, "nist-cavp/sha3/", "SHA3_" + std::to_string(bits), option, bits, nullptr);
}

CONFORMANCE_SUITE(Vectors, Sha3Bits, 24, "SHA3-224, SHA3-256, SHA3-384, SHA3-512 of 0, 5, 30, 1600, 1605, 1630 bits",
                  "NIST FIPS 202 examples: nist-examples/fips202/SHA3TestVectors.txt", "HASH_HexFromBits") {
    for (const BitSample& s : ReadBitSamples("nist-examples/fips202/SHA3TestVectors.txt")) {
        check.Case();
        const int32_t option = s.algorithm == "SHA3-224"   ? OPT_HASH_SHA3_224
                               : s.algorithm == "SHA3-256" ? OPT_HASH_SHA3_256
                               : s.algorithm == "SHA3-384" ? OPT_HASH_SHA3_384
                                                           : OPT_HASH_SHA3_512;
        check.Equal(BitsHexOf(s.Message(), int32_t(s.bits.size()), option), s.output,
                    s.algorithm + " of " + std::to_string(s.bits.size()) + " bits");
    }
}

CONFORMANCE_SUITE(Vectors, Md5Md2Ripemd160, 22, "MD5, MD2, RIPEMD-160",
                  "RFC 1321 A.5, RFC 1319 A.5, RIPEMD-160 authors' vectors: rfc/rfc1321_md5.txt, rfc/rfc1319_md2.txt, "
                  "rfc/ripemd160_vectors.txt",
                  "HASH_HexFromBytes HASH_HexFromHex HASH_Bytes MD5_BytesHash MD5_BytesHexHash MD5_Init MD5_AddBytes "
                  "MD5_HexDigest") {
    static const DigestFile files[] = {{"rfc/rfc1321_md5.txt", OPT_HASH_MD5, &kDigestFamilies[2]},
                                       {"rfc/rfc1319_md2.txt", OPT_HASH_MD2},
                                       {"rfc/ripemd160_vectors.txt", OPT_HASH_RMD160}};
    for (const DigestFile& f : files) {
        EachRecord(check, f.file, [&](const VectorRecord& r, const std::string& where) {
            const ByteVec msg = MessageOf(r);
            check.Equal(HexOf(msg, f.option), r.Get("MD"), where + " HASH_HexFromBytes");
            check.Equal(HexOf(msg, f.option, true), r.Get("MD"), where + " HASH_HexFromHex");
            check.Equal(HashBytes(msg, f.option), r.Get("MD"), where + " HASH_Bytes");
            if (f.family) CheckFamily(check, *f.family, msg, r.Get("MD"), 5, where + " MD5_");
        });
    }
}

CONFORMANCE_SUITE(Vectors, AsconHash, 2050, "Ascon-Hash, Ascon-HashA (v1.2), messages of 0 to 1024 bytes",
                  "Ascon v1.2 LWC known answers: ascon-v1.2/Ascon-Hash{,A}_v1.2_LWC_HASH_KAT_256.txt (complete)",
                  "HASH_Bytes HASH_HexFromBytes") {
    static const DigestFile files[] = {{"ascon-v1.2/Ascon-Hash_v1.2_LWC_HASH_KAT_256.txt", OPT_HASH_ASCON_HASH},
                                       {"ascon-v1.2/Ascon-HashA_v1.2_LWC_HASH_KAT_256.txt", OPT_HASH_ASCON_HASHA}};
    for (const DigestFile& f : files) {
        EachRecord(check, f.file, [&](const VectorRecord& r, const std::string& where) {
            const ByteVec msg = r.Bytes("Msg");
            check.Equal(HashBytes(msg, f.option), Lower(r.Get("MD")), where + " HASH_Bytes");
            check.Equal(HexOf(msg, f.option), Lower(r.Get("MD")), where + " HASH_HexFromBytes");
        });
    }
}

CONFORMANCE_SUITE(Vectors, Shake, 831,
                  "SHAKE128, SHAKE256: byte-oriented messages, 128/256-bit and variable outputs up to 4096 bits",
                  "NIST CAVP SHA3VS: nist-cavp/sha3/SHAKE{128,256}{Short,Long}Msg.rsp (complete), "
                  "SHAKE{128,256}VariableOut_subset.rsp; FIPS 202 examples nist-examples/fips202/SHAKETestVectors.txt "
                  "(the 0- and 1600-bit messages)",
                  "XOF_Bytes PRF_Bytes") {
    for (int32_t option : {OPT_XOF_SHAKE128, OPT_XOF_SHAKE256}) {
        const std::string bits = option == OPT_XOF_SHAKE128 ? "128" : "256";
        for (const char* kind : {"ShortMsg", "LongMsg", "VariableOut_subset"}) {
            const std::string file = "nist-cavp/sha3/SHAKE" + bits + kind + ".rsp";
            EachRecord(check, file, [&](const VectorRecord& r, const std::string& where) {
                ByteVec msg = r.Bytes("Msg");
                if (r.Has("Len")) msg.resize(size_t(r.Int("Len") / 8));
                CheckShake(check, option, msg, r.Get("Output"), where);
            });
        }
    }
    // The bit-string examples whose messages are whole bytes.
    for (const BitSample& s : ReadBitSamples("nist-examples/fips202/SHAKETestVectors.txt")) {
        if (s.bits.size() % 8 != 0) continue;
        check.Case();
        ByteVec msg = s.Message();
        msg.resize(s.bits.size() / 8);
        CheckShake(check, s.algorithm == "SHAKE-128" ? OPT_XOF_SHAKE128 : OPT_XOF_SHAKE256, msg, s.output,
                   s.algorithm + " of " + std::to_string(s.bits.size()) + " bits");
    }
}

CONFORMANCE_SUITE(Vectors, AsconXof, 2050, "Ascon-XOF, Ascon-XOFA (v1.2), messages of 0 to 1024 bytes, 32-byte output",
                  "Ascon v1.2 LWC known answers: ascon-v1.2/Ascon-XOF{,A}_v1.2_LWC_HASH_KAT_256.txt (complete)",
                  "XOF_Bytes") {
    for (int32_t option : {OPT_XOF_ASCON_XOF, OPT_XOF_ASCON_XOFA}) {
        const std::string file = option == OPT_XOF_ASCON_XOF ? "ascon-v1.2/Ascon-XOF_v1.2_LWC_HASH_KAT_256.txt"
                                                             : "ascon-v1.2/Ascon-XOFA_v1.2_LWC_HASH_KAT_256.txt";
        EachRecord(check, file, [&](const VectorRecord& r, const std::string& where) {
            const ByteVec msg = r.Bytes("Msg");
            uint8_t out[32];
            int32_t n = XOF_Bytes(out, 32, Ptr(msg), Size(msg), option);
            check.Equal(OrError(n == 32, n, ToHex(out, 32)), Lower(r.Get("MD")), where);
        });
    }
}
