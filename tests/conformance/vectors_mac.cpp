// Published MAC vectors: NIST HMACVS and the HMAC RFC sets. A truncated
// code in a set is compared with the start of the whole code.
#include "registry.h"

namespace {

// The family HMAC calls write the whole code as hex.
using FamilyHmac = int32_t (*)(char*, const unsigned char*, int32_t, const unsigned char*, int32_t);
using FamilyHmacHex = int32_t (*)(char*, const char*, const char*);

struct Family {
    FamilyHmac bytes;
    FamilyHmacHex hex;
};

void CheckFamily(Checker& check, const Family& f, const ByteVec& key, const ByteVec& msg, const std::string& mac,
                 const std::string& where) {
    char out[129] = {};
    int32_t rc = f.bytes(out, NonNull(msg), Size(msg), NonNull(key), Size(key));
    check.Equal(rc ? "error" : std::string(out).substr(0, mac.size()), Lower(mac), where + " bytes");
    rc = f.hex(out, ToHex(msg).c_str(), ToHex(key).c_str());
    check.Equal(rc ? "error" : std::string(out).substr(0, mac.size()), Lower(mac), where + " hex");
}

}  // namespace

CONFORMANCE_SUITE(Vectors, HmacFamilies, 546, "HMAC-SHA-1, HMAC-SHA-256, HMAC-MD5 through the digest families",
                  "NIST CAVP HMACVS nist-cavp/hmac/HMAC.rsp ([L=20], [L=32]); RFC 2202 (rfc/rfc2202_hmac_md5_sha1.txt); "
                  "RFC 4231 SHA-256 (rfc/rfc4231_hmac_sha2.txt)",
                  "SHA1_Hmac SHA1_HmacHex SHA2_Hmac SHA2_HmacHex MD5_Hmac MD5_HmacHex") {
    const Family sha1{SHA1_Hmac, SHA1_HmacHex}, sha256{SHA2_Hmac, SHA2_HmacHex}, md5{MD5_Hmac, MD5_HmacHex};
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
            const Family* f = digest == "MD5" ? &md5 : digest == "SHA-1" ? &sha1 : digest == "SHA-256" ? &sha256 : nullptr;
            if (!f) continue;
            check.Case();
            CheckFamily(check, *f, r.Bytes("KEY"), r.Bytes("DATA"), r.Get("MAC"), Where(file, r));
        }
    }
}
