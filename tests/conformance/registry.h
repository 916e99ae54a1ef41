// The conformance runner's registry. Each suite checks one algorithm family
// through the public exports, against a published vector set or against an
// independent implementation, and declares what it covers. The runner turns
// every suite into one test; tests/conformance/coverage.py turns the same
// declarations into tests/COVERAGE.md.
#pragma once
#include <algorithm>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

#include "test_support.h"
#include "vector_reader.h"

using ByteVec = std::vector<uint8_t>;

// Collects the outcome of one suite. Only the first mismatches are reported
// in full, so that a broken core does not flood the log.
class Checker {
public:
    // A record or a generated case about to be checked.
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

// fn(at, n) over [0, size) in pieces of next() bytes, the last one cut short.
template <typename Next, typename Fn>
void InPieces(size_t size, Next next, Fn fn) {
    for (size_t at = 0, n = 0; at < size; at += n) {
        n = std::min(size - at, size_t(next()));
        fn(at, n);
    }
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
    InPieces(
        aad.size(), [&] { return cut(40); },
        [&](size_t at, size_t n) {
            if (rc == 0) rc = AEAD_AddAAD(h, aad.data() + at, int32_t(n));
        });
    if (rc == 0) rc = encrypt ? AEAD_StartEncrypt(h) : AEAD_StartDecrypt(h, tag->data(), Size(*tag));
    out->assign(in.size(), 0);
    InPieces(
        in.size(), [&] { return cut(80); },
        [&](size_t at, size_t n) {
            if (rc == 0) rc = AEAD_Update(h, out->data() + at, int32_t(n), in.data() + at, int32_t(n));
        });
    if (encrypt) tag->assign(16, 0);
    if (rc == 0) rc = encrypt ? AEAD_FinishEncrypt(h, tag->data(), 16) : AEAD_FinishDecrypt(h);
    AEAD_Destroy(h);
    return rc;
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
    for (char& c : s)
        if (c >= 'a' && c <= 'f') c = char(c - 'a' + 'A');
    return s;
}

inline std::string Lower(std::string s) {
    for (char& c : s)
        if (c >= 'A' && c <= 'F') c = char(c - 'A' + 'a');
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
