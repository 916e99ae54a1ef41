// The conformance runner's registry: each suite declares what it covers; the
// runner makes one test of each, tests/conformance/coverage.py the table in
// tests/COVERAGE.md.
#pragma once
#include <algorithm>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

#include "block_support.h"
#include "test_support.h"
#include "vector_reader.h"

// Collects the outcome of one suite. Only the first mismatches are reported
// in full, so that a broken core does not flood the log.
class Checker {
public:
    void Case() { ++cases_; }
    long cases() const { return cases_; }
    int failures() const { return failures_; }

    bool Equal(const std::string& got, const std::string& want, const std::string& where);
    bool Equal(const ByteVec& got, const ByteVec& want, const std::string& where) {
        return Equal(ToHex(got), ToHex(want), where);
    }
    bool Equal(long got, long want, const std::string& where) {
        return Equal(std::to_string(got), std::to_string(want), where);
    }
    bool True(bool ok, const std::string& what, const std::string& where);

    // The suite cannot run here (a reference algorithm is missing); said so
    // in the test output instead of passing silently.
    void Skip(const std::string& reason) { skip_ = reason; }
    const std::string& skipReason() const { return skip_; }

private:
    long cases_ = 0;
    int failures_ = 0;
    std::string skip_;
};

struct Suite {
    const char* group;  // "Vectors" or "Differential"
    const char* name;
    long expected;           // records or cases the suite must check
    const char* algorithms;  // what is proven
    const char* source;      // vector files or the reference
    const char* exports;     // the exports driven, separated by blanks
    void (*run)(Checker&);
};

std::vector<Suite>& Registry();
bool RegisterSuite(const Suite& s);

#define CONFORMANCE_SUITE(group, name, expected, algorithms, source, exports)                         \
    static void Run_##group##_##name(Checker& check);                                                 \
    [[maybe_unused]] static const bool kRegistered_##group##_##name =                                 \
        RegisterSuite({#group, #name, expected, algorithms, source, exports, &Run_##group##_##name}); \
    static void Run_##group##_##name(Checker& check)

// An empty field is passed to the library as an absent pointer.
inline const uint8_t* Ptr(const ByteVec& v) { return v.empty() ? nullptr : v.data(); }
inline int32_t Size(const ByteVec& v) { return int32_t(v.size()); }
// A readable pointer also for an empty field, where a call wants one.
inline const uint8_t* NonNull(const ByteVec& v) {
    static const uint8_t empty = 0;
    return v.empty() ? &empty : v.data();
}

// value when the call succeeded, else "error RC", so a failing call shows
// its code in the mismatch.
inline std::string OrError(bool ok, int32_t rc, const std::string& value) {
    return ok ? value : "error " + std::to_string(rc);
}

// What a hex-writing call leaves in room for `bytes` bytes of output, when
// it returns 0 or the length written; else "error RC".
template <typename Fn>
std::string HexText(size_t bytes, Fn call) {
    std::string hex(bytes * 2 + 1, '\0');
    const int32_t rc = call(hex.data(), int32_t(bytes * 2));
    return OrError(rc == 0 || rc == int32_t(bytes * 2), rc, hex.c_str());
}

// fn(at, n) over [0, size) in pieces of next() bytes, the last one cut short,
// until fn gives a result other than 0; that result, else 0.
template <typename Next, typename Fn>
int32_t InPieces(size_t size, Next next, Fn fn) {
    for (size_t at = 0, n = 0; at < size; at += n) {
        n = std::min(size - at, size_t(next()));
        if (const int32_t rc = fn(at, n)) return rc;
    }
    return 0;
}

// HASH_Bytes: the digest as hex, else "error RC".
inline std::string HashBytes(const ByteVec& msg, int32_t option) {
    uint8_t out[64];
    const int32_t n = HASH_Bytes(out, 64, Ptr(msg), Size(msg), option);
    return OrError(n >= 0, n, ToHex(out, size_t(std::max(n, 0))));
}

// The HASH_ (with sha3Bits, the SHA3_) stream over msg in pieces of cut()
// bytes: the digest as hex, else "error RC".
template <typename Cut>
std::string HashStream(const ByteVec& msg, int32_t option, int32_t sha3Bits, Cut cut) {
    const int32_t h = sha3Bits ? SHA3_Init(sha3Bits) : HASH_Init(option);
    int32_t rc = h == 0 ? -1 : InPieces(msg.size(), cut, [&](size_t at, size_t n) {
        return (sha3Bits ? SHA3_AddBytes : HASH_AddBytes)(h, msg.data() + at, int32_t(n));
    });
    char hex[129] = {};
    uint8_t out[64];
    if (rc == 0) rc = sha3Bits ? SHA3_HexDigest(hex, 128, h) : HASH_Final(out, 64, h);
    return OrError(rc >= 0, rc, sha3Bits ? hex : ToHex(out, size_t(std::max(rc, 0))));
}

// MAC_Init, MAC_AddBytes in pieces of cut() bytes, MAC_Final: the first
// `bytes` bytes of the code as hex, else "error RC".
template <typename Cut>
std::string MacStream(const ByteVec& key, const ByteVec& msg, int32_t option, size_t bytes, Cut cut) {
    const int32_t h = MAC_Init(key.data(), Size(key), option);
    ByteVec out(bytes);
    int32_t rc = h == 0 ? -1 : InPieces(msg.size(), cut, [&](size_t at, size_t n) {
        return MAC_AddBytes(h, msg.data() + at, int32_t(n));
    });
    if (rc == 0) rc = MAC_Final(out.data(), Size(out), h);
    return OrError(rc == Size(out), rc, ToHex(out));
}

// The incremental AEAD_ calls, AAD fed in pieces of cut(40) bytes and text in
// pieces of cut(80). Encrypting, *tag receives the 16-byte tag; decrypting,
// it is the tag checked. The first failing result, else 0.
template <typename Cut>
int32_t AeadInPieces(int32_t alg, bool encrypt, const ByteVec& key, const ByteVec& nonce, const ByteVec& aad,
                     const ByteVec& in, ByteVec* out, ByteVec* tag, Cut cut) {
    const int32_t h = AEAD_InitKey(key.data(), Size(key), alg);
    if (h <= 0) return h == 0 ? -1 : h;
    int32_t rc = AEAD_SetNonce(h, nonce.data(), Size(nonce));
    if (rc == 0) rc = InPieces(aad.size(), [&] { return cut(40); }, [&](size_t at, size_t n) {
        return AEAD_AddAAD(h, aad.data() + at, int32_t(n));
    });
    if (rc == 0) rc = encrypt ? AEAD_StartEncrypt(h) : AEAD_StartDecrypt(h, tag->data(), Size(*tag));
    out->assign(in.size(), 0);
    if (rc == 0) rc = InPieces(in.size(), [&] { return cut(80); }, [&](size_t at, size_t n) {
        return AEAD_Update(h, out->data() + at, int32_t(n), in.data() + at, int32_t(n));
    });
    if (encrypt) tag->assign(16, 0);
    if (rc == 0) rc = encrypt ? AEAD_FinishEncrypt(h, tag->data(), 16) : AEAD_FinishDecrypt(h);
    AEAD_Destroy(h);
    return rc;
}

// A stream cipher over `in` through CIPHER_StreamBytes and through the
// stream calls in pieces of cut() bytes; `want` is the end of the output.
template <typename Cut>
void CheckStream(Checker& check, int32_t alg, const ByteVec& key, const ByteVec& nonce, uint32_t counter,
                 const ByteVec& in, const ByteVec& want, const std::string& where, Cut cut) {
    const size_t skip = in.size() - want.size();
    ByteVec out(in.size() + 1);
    int32_t rc = CIPHER_StreamBytes(out.data(), NonNull(in), Size(in), key.data(), Size(key), Ptr(nonce), Size(nonce),
                                    counter, alg);
    check.Equal(OrError(!rc, rc, ToHex(out.data() + skip, want.size())), ToHex(want), where + " CIPHER_StreamBytes");
    const int32_t h = CIPHER_StreamInit(key.data(), Size(key), Ptr(nonce), Size(nonce), counter, alg);
    rc = h == 0 ? -1 : InPieces(in.size(), cut, [&](size_t at, size_t n) {
        return CIPHER_StreamUpdate(h, out.data() + at, in.data() + at, int32_t(n));
    });
    CIPHER_StreamFinal(h);
    check.Equal(OrError(!rc, rc, ToHex(out.data() + skip, want.size())), ToHex(want), where + " stream");
}

// One AEAD answer; decrypting, a failing one must be refused.
struct AeadAnswer {
    ByteVec key, nonce, aad, pt, ct, tag;
    bool fail = false;
};

// An answer through every form that takes it: for AES-GCM (alg 0), GCM_
// one-shot and with a prepared key (any IV); with an AEAD_ number (for
// AES-GCM, a 16- or 32-byte key and a 12-byte IV), AEAD_ one-shot, with the
// tag appended (16-byte tags) and incremental in pieces of cut(most).
// Encrypting, the result is ciphertext and tag (a short tag is the start of
// the whole one); decrypting, "ok" and the plaintext, or "rejected" with the
// output untouched. Ascon has the tag-appended form only. Incremental
// decryption and ChaCha20-Poly1305 in one call hand out plaintext before the
// tag is known, and Ascon zeroes it: there only the verdict counts.
template <typename Cut>
void CheckAead(Checker& check, const AeadAnswer& a, int32_t alg, bool encrypt, const std::string& where, Cut cut) {
    const bool gcm = alg == 0, ascon = alg == OPT_AEAD_ASCON_128 || alg == OPT_AEAD_ASCON_128A;
    if (gcm && a.nonce.size() == 12 && a.key.size() != 24)
        alg = a.key.size() == 16 ? OPT_AEAD_AES_128_GCM : OPT_AEAD_AES_256_GCM;
    const ByteVec& in = encrypt ? a.pt : a.ct;
    const size_t n = in.size(), t = a.tag.size();
    const std::string want = encrypt  ? ToHex(a.ct) + ToHex(a.tag)
                             : a.fail ? "rejected " + std::string(n * 2, 'a')
                                      : "ok " + ToHex(a.pt);
    const int32_t h = gcm ? GCM_InitKey(a.key.data(), Size(a.key), 0) : 0;
    const char* names[] = {" GCM_", " GCM_Next", " AEAD_", " AEAD_ with tag", " AEAD_ incremental"};
    const uint8_t *key = a.key.data(), *iv = a.nonce.data(), *aad = Ptr(a.aad);
    const int32_t keyLength = Size(a.key), ivLength = Size(a.nonce), aadLength = Size(a.aad);
    for (int form = gcm ? 0 : 2; form < (alg ? 5 : 2); ++form) {
        if ((form == 3 && t != 16) || (ascon && form != 3)) continue;
        ByteVec out(n + 16, 0xaa), tag = encrypt ? ByteVec(16) : a.tag, sealed = a.ct;
        sealed.insert(sealed.end(), a.tag.begin(), a.tag.end());
        int32_t rc = 0, done = form == 3 ? int32_t(encrypt ? n + 16 : n) : 0;
        if (encrypt) {
            rc = form == 0   ? GCM_Encrypt(out.data(), Size(out), tag.data(), int32_t(t), Ptr(in), int32_t(n), key,
                                           keyLength, iv, ivLength, aad, aadLength, 0)
                 : form == 1 ? GCM_NextEncrypt(h, out.data(), Size(out), tag.data(), int32_t(t), Ptr(in), int32_t(n),
                                               iv, ivLength, aad, aadLength)
                 : form == 2 ? AEAD_Encrypt(out.data(), Size(out), tag.data(), 16, Ptr(in), int32_t(n), key,
                                            keyLength, iv, ivLength, aad, aadLength, alg)
                 : form == 3 ? AEAD_EncryptWithTag(out.data(), Size(out), Ptr(in), int32_t(n), key, keyLength, iv,
                                                   ivLength, aad, aadLength, alg)
                             : AeadInPieces(alg, true, a.key, a.nonce, a.aad, in, &out, &tag, cut);
            if (form == 3) tag.assign(out.begin() + long(n), out.end());
            check.Equal(OrError(rc == done, rc, ToHex(out.data(), n) + ToHex(tag.data(), t)), want,
                        where + names[form]);
            continue;
        }
        rc = form == 0   ? GCM_Decrypt(out.data(), Size(out), Ptr(in), int32_t(n), key, keyLength, iv, ivLength, aad,
                                       aadLength, tag.data(), int32_t(t), 0)
             : form == 1 ? GCM_NextDecrypt(h, out.data(), Size(out), Ptr(in), int32_t(n), iv, ivLength, aad, aadLength,
                                           tag.data(), int32_t(t))
             : form == 2 ? AEAD_Decrypt(out.data(), Size(out), Ptr(in), int32_t(n), key, keyLength, iv, ivLength, aad,
                                        aadLength, tag.data(), int32_t(t), alg)
             : form == 3 ? AEAD_DecryptWithTag(out.data(), Size(out), sealed.data(), Size(sealed), key, keyLength, iv,
                                               ivLength, aad, aadLength, alg)
                         : AeadInPieces(alg, false, a.key, a.nonce, a.aad, in, &out, &tag, cut);
        const std::string outcome = rc == done || rc == -AUTH_FAIL_ERROR
                                        ? (rc == done ? "ok " : "rejected ") + ToHex(out.data(), n)
                                        : "error " + std::to_string(rc);
        const bool verdictOnly = a.fail && (form == 4 || alg == OPT_AEAD_CHACHA20_POLY1305 || ascon);
        const size_t keep = verdictOnly ? 8 : std::string::npos;  // "rejected"
        check.Equal(outcome.substr(0, keep), want.substr(0, keep), where + names[form]);
    }
    if (gcm) GCM_FinishKey(h);
}

// A family cipher's names in the generic calls and in OpenSSL, and its key
// length (0: Blowfish's variable key).
struct CipherNames {
    int32_t bits;
    const char *text, *openssl;
    size_t key;
};
inline CipherNames GenericName(Cipher c) {
    const CipherNames names[] = {{OPT_CIPHER_AES128, "aes128", "AES-128", 16},
                                 {OPT_CIPHER_AES192, "aes192", "AES-192", 24},
                                 {OPT_CIPHER_AES256, "aes256", "AES-256", 32},
                                 {0, "", "DES", 8},
                                 {OPT_CIPHER_TDEA, "tdea", "DES-EDE3", 24},
                                 {0, "", "BF", 0}};
    return names[int(c)];
}

// One answer in one direction through a cipher family: the bytes call, the
// hex call (and in ECB the ECB-only calls) and Init/Update/Final in pieces of
// cut() bytes, whole blocks but for the last; by default one block each.
inline void CheckCipherFamily(Checker& check, Cipher c, const std::string& mode, const ByteVec& key, const ByteVec& iv,
                              const ByteVec& in, const ByteVec& want, int32_t dir, const std::string& where,
                              std::function<size_t()> cut = nullptr) {
    const std::string label = where + " " + mode + (dir ? " encrypt" : " decrypt");
    const std::string hexIn = ToHex(in), hexKey = ToHex(key), hexIv = ToHex(iv);
    check.Equal(Crypt(c, in, key, dir, mode.c_str(), iv), UpperHex(want), label + " BytesMode");
    if (!in.empty())  // the hex calls take no empty text
        check.Equal(HexText(in.size(),
                            [&](char* out, int32_t) {
                                return HexModeCall(c, out, hexIn.c_str(), hexKey.c_str(), dir, mode.c_str(),
                                                   iv.empty() ? nullptr : hexIv.c_str());
                            }),
                    UpperHex(want), label + " HexMode");
    if (mode == "ECB") {
        ByteVec out(in.size() + 1);
        const int32_t rc = BytesCall(c, out.data(), NonNull(in), Size(in), key, dir);
        check.Equal(OrError(!rc, rc, ToHex(out.data(), in.size())), ToHex(want), label + " Bytes");
    }
    if (mode == "ECB" && !in.empty())
        check.Equal(
            HexText(in.size(), [&](char* out, int32_t) { return HexCall(c, out, hexIn.c_str(), hexKey.c_str(), dir); }),
            UpperHex(want), label + " Hex");
    ByteVec buffer = in;
    const int32_t h = InitCall(c, key, dir, mode.c_str(), Ptr(iv));
    if (!cut) cut = [c] { return size_t(BlockSize(c)); };
    InPieces(buffer.size(), cut, [&](size_t at, size_t n) {
        return UpdateCall(c, h, buffer.data() + at, int32_t(n));
    });
    check.True(h != 0 && FinalCall(c, h) == 0, "Init or Final failed", label);
    check.Equal(buffer, want, label + " Init/Update/Final");
}

// The generic cipher calls' option bits for a mode.
inline int32_t ModeOption(const std::string& mode) {
    const char* names[] = {"ECB", "CBC", "CFB", "OFB", "CTR"};
    const int32_t bits[] = {OPT_MODE_ECB, OPT_MODE_CBC, OPT_MODE_CFB, OPT_MODE_OFB, OPT_MODE_CTR};
    for (int i = 0; i < 5; ++i)
        if (mode == names[i]) return bits[i];
    return -1;
}

// Key wrap with a KEK of 16, 24 or 32 bytes for AES, or Triple DES.
inline int32_t WrapOption(const ByteVec& kek, bool tdea = false) {
    return tdea ? OPT_CIPHER_TDEA : kek.size() == 16 ? OPT_CIPHER_AES128 : kek.size() == 24 ? OPT_CIPHER_AES192
                                                                                            : OPT_CIPHER_AES256;
}

// Triple-DES wrapping adds 16 bytes, AES 8.
inline std::string Wrapped(const ByteVec& data, const ByteVec& kek, bool tdea = false) {
    ByteVec out(data.size() + (tdea ? 16 : 8));
    int32_t n = CIPHER_KeyWrap(out.data(), Size(out), data.data(), Size(data), kek.data(), Size(kek),
                               WrapOption(kek, tdea));
    return OrError(n == Size(out), n, ToHex(out));
}

// A failed integrity check is -1 with the output zeroed.
inline std::string Unwrapped(const ByteVec& data, const ByteVec& kek, bool tdea = false) {
    ByteVec out(data.size(), 0x5a);
    int32_t n = CIPHER_KeyUnwrap(out.data(), Size(out), data.data(), Size(data), kek.data(), Size(kek),
                                 WrapOption(kek, tdea));
    if (n == -1) return out == ByteVec(data.size(), 0) ? "refused, zeroed" : "refused, not zeroed";
    const bool ok = n == Size(data) - (tdea ? 16 : 8);
    return OrError(ok, n, ToHex(out.data(), ok ? size_t(n) : 0));
}

// The named fields of a record one after the other (keys given in parts);
// absent fields add nothing.
inline ByteVec Joined(const VectorRecord& r, std::initializer_list<const char*> names) {
    ByteVec out;
    for (const char* name : names) {
        const ByteVec part = r.Bytes(name);
        out.insert(out.end(), part.begin(), part.end());
    }
    return out;
}

inline std::string Where(const std::string& file, const VectorRecord& r) { return file + ":" + std::to_string(r.line); }

inline std::string Upper(std::string s) {
    for (char& c : s) c = char(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

inline std::string Lower(std::string s) {
    for (char& c : s) c = char(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// Reads a file that must hold records; a missing or empty file is a failure
// of the suite, not a quiet pass.
std::vector<VectorRecord> ReadSet(Checker& check, const std::string& file);

// Every record of a file counted as one case and handed to fn with its
// "file:line" for messages.
template <typename Fn>
void EachRecord(Checker& check, const std::string& file, Fn fn) {
    for (const VectorRecord& r : ReadSet(check, file)) {
        check.Case();
        fn(r, Where(file, r));
    }
}

// Fixed-seed generator for the differential suites. VERIMOND_SEED in the
// environment replaces the seed, to explore beyond the fixed cases.
class Random {
public:
    explicit Random(uint64_t seed);
    uint64_t seed() const { return seed_; }
    // Uniform in [lo, hi].
    int Between(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(engine_); }
    ByteVec Bytes(size_t n);

private:
    uint64_t seed_;
    std::mt19937_64 engine_;
};

// "seed S case N: part part ..." for a failure message; byte strings as hex.
inline void AppendPart(std::string& s, const ByteVec& v) { s += ToHex(v); }
inline void AppendPart(std::string& s, const std::string& v) { s += v; }
inline void AppendPart(std::string& s, const char* v) { s += v; }
template <typename T>
inline void AppendPart(std::string& s, T v) {
    s += std::to_string(v);
}
template <typename... Parts>
std::string CaseName(const Random& rng, long index, const Parts&... parts) {
    std::string s = "seed " + std::to_string(rng.seed()) + " case " + std::to_string(index) + ":";
    ((s += ' ', AppendPart(s, parts)), ...);
    return s;
}
