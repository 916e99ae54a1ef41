// Published MAC vectors. A truncated code in a set is compared with the start
// of the whole code.
#include "digest_family_support.h"
#include "registry.h"

namespace {

// The family HMAC calls write the whole code as hex.
void CheckFamily(Checker& check, const DigestFamily& f, const ByteVec& key, const ByteVec& msg,
                 const std::string& mac, const std::string& where) {
    char out[129] = {};
    int32_t rc = f.hmac(out, NonNull(msg), Size(msg), NonNull(key), Size(key));
    check.Equal(rc ? "error" : std::string(out).substr(0, mac.size()), Lower(mac), where + " bytes");
    rc = f.hmacHex(out, ToHex(msg).c_str(), ToHex(key).c_str());
    check.Equal(rc ? "error" : std::string(out).substr(0, mac.size()), Lower(mac), where + " hex");
}

// The MAC_ one-shots cut the code to the capacity given: bytes, hex from
// bytes, hex from hex. mac is the (possibly truncated) published code.
void CheckMac(Checker& check, int32_t option, const ByteVec& key, const ByteVec& msg, const std::string& mac,
              const std::string& where) {
    const std::string want = Lower(mac);
    ByteVec out(mac.size() / 2);
    int32_t n = MAC_Bytes(out.data(), Size(out), Ptr(msg), Size(msg), NonNull(key), Size(key), option);
    check.Equal(OrError(n == Size(out), n, ToHex(out)), want, where + " MAC_Bytes");
    std::string hex(mac.size() + 1, '\0');
    n = MAC_HexFromBytes(hex.data(), int32_t(mac.size()), Ptr(msg), Size(msg), NonNull(key), Size(key), option);
    check.Equal(OrError(n == int32_t(mac.size()), n, hex.c_str()), want, where + " MAC_HexFromBytes");
    n = MAC_HexFromHex(hex.data(), int32_t(mac.size()), ToHex(msg).c_str(), ToHex(key).c_str(), option);
    check.Equal(OrError(n == int32_t(mac.size()), n, hex.c_str()), want, where + " MAC_HexFromHex");
}

// CheckMac and the HMAC stream, fed in three pieces.
void CheckHmac(Checker& check, int32_t option, const ByteVec& key, const ByteVec& msg, const std::string& mac,
               const std::string& where) {
    CheckMac(check, option, key, msg, mac, where);
    if (option == OPT_HMAC_MD5 || option == OPT_HMAC_RMD160) return;  // no MAC_ stream for these
    check.Equal(MacStream(key, msg, option, mac.size() / 2, [&] { return msg.size() / 3 + 1; }), Lower(mac),
                where + " MAC_Init/AddBytes/Final");
}

int32_t CmacOption(const std::string& cipher) {
    return cipher == "AES128"   ? OPT_CMAC_AES128
           : cipher == "AES192" ? OPT_CMAC_AES192
           : cipher == "AES256" ? OPT_CMAC_AES256
                                : OPT_CMAC_TDEA;
}

int32_t HmacOption(const std::string& digest) {
    static const std::pair<const char*, int32_t> names[] = {
        {"SHA-1", OPT_HMAC_SHA1},        {"MD5", OPT_HMAC_MD5},           {"SHA-224", OPT_HMAC_SHA224},
        {"SHA-256", OPT_HMAC_SHA256},    {"SHA-384", OPT_HMAC_SHA384},    {"SHA-512", OPT_HMAC_SHA512},
        {"RIPEMD-160", OPT_HMAC_RMD160}, {"SHA3-224", OPT_HMAC_SHA3_224}, {"SHA3-256", OPT_HMAC_SHA3_256},
        {"SHA3-384", OPT_HMAC_SHA3_384}, {"SHA3-512", OPT_HMAC_SHA3_512}};
    for (const auto& n : names)
        if (digest == n.first) return n.second;
    return -1;
}

}  // namespace

CONFORMANCE_SUITE(
    Vectors, HmacFamilies, 546, "HMAC-SHA-1, HMAC-SHA-256, HMAC-MD5 through the digest families",
    "NIST CAVP HMACVS nist-cavp/hmac/HMAC.rsp ([L=20], [L=32]); RFC 2202 (rfc/rfc2202_hmac_md5_sha1.txt); "
    "RFC 4231 SHA-256 (rfc/rfc4231_hmac_sha2.txt)",
    "SHA1_Hmac SHA1_HmacHex SHA2_Hmac SHA2_HmacHex MD5_Hmac MD5_HmacHex") {
    const DigestFamily &sha1 = kDigestFamilies[0], &sha256 = kDigestFamilies[1], &md5 = kDigestFamilies[2];
    const std::string cavp = "nist-cavp/hmac/HMAC.rsp";
    for (const VectorRecord& r : ReadSet(check, cavp)) {
        const std::string l = r.Section("L");
        if (l != "20" && l != "32") continue;
        check.Case();
        CheckFamily(check, l == "20" ? sha1 : sha256, r.Bytes("Key"), r.Bytes("Msg"), r.Get("Mac"), Where(cavp, r));
    }
    for (const char* file : {"rfc/rfc2202_hmac_md5_sha1.txt", "rfc/rfc4231_hmac_sha2.txt"}) {
        for (const VectorRecord& r : ReadSet(check, file)) {
            const std::string digest = r.section.begin()->first;
            const DigestFamily* f = digest == "MD5"       ? &md5
                              : digest == "SHA-1"   ? &sha1
                              : digest == "SHA-256" ? &sha256
                                                    : nullptr;
            if (!f) continue;
            check.Case();
            CheckFamily(check, *f, r.Bytes("KEY"), r.Bytes("DATA"), r.Get("MAC"), Where(file, r));
        }
    }
}

CONFORMANCE_SUITE(Vectors, Hmac, 1636,
                  "HMAC over SHA-1, SHA-224, SHA-256, SHA-384, SHA-512, SHA3-224/256/384/512, MD5, RIPEMD-160; keys "
                  "shorter than, equal to and longer than the block; truncated codes",
                  "NIST CAVP HMACVS nist-cavp/hmac/HMAC.rsp (complete); RFC 2202, RFC 4231, RFC 2286 "
                  "(rfc/rfc2202_hmac_md5_sha1.txt, rfc4231_hmac_sha2.txt, rfc2286_hmac_rmd160.txt); HMAC-SHA-3 "
                  "examples computed independently (rfc/hmac_sha3_examples.txt)",
                  "MAC_Bytes MAC_HexFromBytes MAC_HexFromHex MAC_Init MAC_AddBytes MAC_Final") {
    const std::string cavp = "nist-cavp/hmac/HMAC.rsp";
    EachRecord(check, cavp, [&](const VectorRecord& r, const std::string& where) {
        const std::string l = r.Section("L");
        const int32_t option = l == "20"   ? OPT_HMAC_SHA1
                               : l == "28" ? OPT_HMAC_SHA224
                               : l == "32" ? OPT_HMAC_SHA256
                               : l == "48" ? OPT_HMAC_SHA384
                                           : OPT_HMAC_SHA512;
        CheckHmac(check, option, r.Bytes("Key"), r.Bytes("Msg"), r.Get("Mac"), where);
    });
    for (const char* file : {"rfc/rfc2202_hmac_md5_sha1.txt", "rfc/rfc4231_hmac_sha2.txt",
                             "rfc/rfc2286_hmac_rmd160.txt", "rfc/hmac_sha3_examples.txt"}) {
        EachRecord(check, file, [&](const VectorRecord& r, const std::string& where) {
            CheckHmac(check, HmacOption(r.section.begin()->first), r.Bytes("KEY"), r.Bytes("DATA"), r.Get("MAC"),
                      where);
        });
    }
}

CONFORMANCE_SUITE(Vectors, Cmac, 452, "CMAC over AES-128, AES-192, AES-256 and three-key Triple DES, truncated tags",
                  "NIST CAVP CMACVS nist-cavp/cmac/CMACGen{AES128,AES192,AES256,TDES3}.rsp (complete, messages up "
                  "to 65536 bytes); SP 800-38B examples (parsed/cmac_examples_sp800-38b.txt)",
                  "MAC_Bytes MAC_HexFromBytes MAC_HexFromHex") {
    for (const char* cipher : {"AES128", "AES192", "AES256", "TDES3"}) {
        EachRecord(check, std::string("nist-cavp/cmac/CMACGen") + cipher + ".rsp",
                   [&](const VectorRecord& r, const std::string& where) {
                       ByteVec msg = r.Bytes("Msg");
                       msg.resize(size_t(r.Int("Mlen")));  // Mlen = 0 comes with Msg = 00
                       CheckMac(check, CmacOption(cipher), Joined(r, {"Key", "Key1", "Key2", "Key3"}), msg,
                                r.Get("Mac"), where);
                   });
    }
    const std::string examples = "parsed/cmac_examples_sp800-38b.txt";
    EachRecord(check, examples, [&](const VectorRecord& r, const std::string& where) {
        CheckMac(check, CmacOption(r.section.begin()->first), r.Bytes("KEY"), r.Bytes("MSG"), r.Get("TAG"),
                 where);
    });
}

CONFORMANCE_SUITE(Vectors, Poly1305, 12, "Poly1305 one-time authenticator, including the carry and limit cases",
                  "RFC 8439 sections 2.5.2 and A.3: rfc/rfc8439_chacha20_poly1305.txt",
                  "MAC_Bytes MAC_HexFromBytes MAC_HexFromHex") {
    const std::string file = "rfc/rfc8439_chacha20_poly1305.txt";
    for (const VectorRecord& r : ReadSet(check, file)) {
        if (!r.section.count("Poly1305")) continue;
        check.Case();
        CheckMac(check, OPT_MAC_POLY1305, r.Bytes("KEY"), r.Bytes("MSG"), r.Get("TAG"),
                 Where(file, r) + " " + r.Get("SOURCE"));
    }
}

CONFORMANCE_SUITE(Vectors, Kmac, 6, "KMAC128, KMAC256 with and without a customisation string",
                  "NIST SP 800-185 KMAC samples 1-6 (parsed/kmac_samples_sp800-185.txt)", "PRF_Bytes MAC_Bytes") {
    const std::string file = "parsed/kmac_samples_sp800-185.txt";
    EachRecord(check, file, [&](const VectorRecord& r, const std::string& where) {
        const bool k128 = r.section.count("KMAC128") != 0;
        const ByteVec key = r.Bytes("KEY"), data = r.Bytes("DATA");
        ByteVec out(size_t(r.Int("L") / 8));
        int32_t n = PRF_Bytes(out.data(), Size(out), NonNull(data), Size(data), key.data(), Size(key),
                              r.Get("S").c_str(), k128 ? OPT_KMAC_128 : OPT_KMAC_256);
        check.Equal(OrError(n == Size(out), n, ToHex(out)), Lower(r.Get("OUTPUT")), where + " PRF_Bytes");
        // The MAC_ numbers are KMAC with no customisation at its own length.
        if (r.Get("S").empty())
            CheckMac(check, k128 ? OPT_KMAC_128 : OPT_KMAC_256, key, data, r.Get("OUTPUT"), where);
    });
}
