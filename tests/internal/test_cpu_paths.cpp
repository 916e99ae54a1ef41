// Each computation runs on random inputs of every length to 300 bytes and a
// few long ones, from odd addresses, in random pieces, on the portable code
// and under each set of processor paths; the bytes it returns (outputs and
// the records the calls leave) must be the same.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "aead/aead_stream.h"
#include "aead/chachapoly.h"
#include "aead/gcm.h"
#include "block/block.h"
#include "digest/sha1.h"
#include "digest/sha256.h"
#include "digest/sha3.h"
#include "digest/sha512.h"
#include "mac/poly1305.h"
#include "mac/scrypt.h"
#include "stream/chacha20.h"
#include "stream/salsa20.h"
#include "test_support.h"
#include "util/cpu.h"

namespace {
using ByteVector = std::vector<uint8_t>;

// The path flags of an override text for a scope; the machine's come back.
struct PathScope {
    CpuFeatures saved = g_cpu;
    explicit PathScope(const char* override) { CpuDetectWith(override); }
    ~PathScope() { g_cpu = saved; }
};

struct Random {
    uint64_t state;
    uint64_t Next() {  // splitmix64
        uint64_t z = (state += 0x9e3779b97f4a7c15ull);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ull;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebull;
        return z ^ (z >> 31);
    }
    size_t Below(size_t n) { return n == 0 ? 0 : size_t(Next() % n); }
    void Fill(uint8_t* p, size_t n) {
        for (size_t i = 0; i < n; ++i) p[i] = uint8_t(Next());
    }
    ByteVector Bytes(size_t n) {
        ByteVector v(n);
        Fill(v.data(), n);
        return v;
    }
};

// Calls piece(at, length) over [0, n) cut into up to four pieces at random.
template <typename Piece>
void InPieces(size_t n, Random& r, Piece piece) {
    std::vector<size_t> cuts = {0, n};
    for (size_t i = r.Below(4); i > 0; --i) cuts.push_back(r.Below(n + 1));
    std::sort(cuts.begin(), cuts.end());
    for (size_t i = 0; i + 1 < cuts.size(); ++i) piece(cuts[i], cuts[i + 1] - cuts[i]);
}

template <typename... T>
void Append(ByteVector& out, const T&... values) {
    (out.insert(out.end(), reinterpret_cast<const uint8_t*>(&values), reinterpret_cast<const uint8_t*>(&values + 1)),
     ...);
}

// One computation over a message; seed chooses its cuts and anything else
// random about it, so that each path sees the same call sequence.
using Computation = std::function<ByteVector(const uint8_t* data, size_t n, uint64_t seed)>;

// All the machine has, and the steps down from it that choose other kernels.
const char* const kPathSets[] = {nullptr, "-vaes,-vpclmul", "-avx512ifma", "-avx512f", "-avx512bw", "-bmi2"};

// Every length to 300, then some that run many groups of blocks with odd tails.
std::vector<size_t> Lengths() {
    std::vector<size_t> lengths;
    for (size_t n = 0; n <= 300; ++n) lengths.push_back(n);
    for (size_t n : {511, 512, 513, 1023, 1024, 1279, 1280, 4113, 16385, 65599, 1048581}) lengths.push_back(n);
    return lengths;
}

void CompareWithPortable(const std::string& name, const Computation& compute,
                         const std::vector<size_t>& lengths = Lengths()) {
    Random random{0x5eed0000u + name.size()};
    ByteVector buffer(*std::max_element(lengths.begin(), lengths.end()) + 8);
    for (size_t n : lengths) {
        uint8_t* data = buffer.data() + n % 7;  // odd addresses too
        random.Fill(data, n);
        const uint64_t seed = random.Next();
        ByteVector expected;
        {
            PathScope portable("portable");
            expected = compute(data, n, seed);
        }
        for (const char* set : kPathSets) {
            PathScope scope(set);
            ASSERT_EQ(ToHex(compute(data, n, seed)), ToHex(expected))
                << name << ", paths " << (set ? set : "all") << ", length " << n;
        }
    }
}

// A digest fed in pieces; the record after the updates is part of the result.
template <typename Context, typename Start, typename Update, typename Final>
Computation Digest(Start start, Update update, Final final, size_t digestLength) {
    return [=](const uint8_t* data, size_t n, uint64_t seed) {
        Random r{seed};
        Context ctx{};
        start(&ctx);
        InPieces(n, r, [&](size_t at, size_t length) { update(&ctx, data + at, uint32_t(length)); });
        ByteVector out;
        Append(out, ctx);
        ByteVector digest(digestLength);
        final(digest.data(), &ctx);
        out.insert(out.end(), digest.begin(), digest.end());
        return out;
    };
}

Computation Sponge(bool shake, uint32_t bits, uint32_t outputLength) {
    return Digest<Sha3Context>([=](Sha3Context* c) { shake ? ShakeStart(c, bits) : Sha3Start(c, bits); }, Sha3Absorb,
                               [=](uint8_t* out, Sha3Context* c) {
                                   shake ? SpongeFinish(out, outputLength, c, 0x1F) : Sha3Finish(out, outputLength, c);
                               },
                               outputLength);
}

// Counters that put a wrap of the low word, or of all 64 bits, inside long
// messages. The cipher runs in place for odd seeds; the state words the
// calls leave are part of the result.
Computation StreamXor(bool chacha) {
    static const uint32_t kCounterStarts[][2] = {
        {0, 0}, {1, 0}, {0xFFFFFFF0u, 7}, {0xFFFFFF00u, 0xFFFFFFFFu}, {0x7FFFFFFFu, 0}};
    return [=](const uint8_t* data, size_t n, uint64_t seed) {
        Random r{seed};
        uint8_t key[32], nonce[8];
        r.Fill(key, sizeof key);
        r.Fill(nonce, sizeof nonce);
        const uint32_t* counter = kCounterStarts[r.Below(5)];
        Chacha20State c;
        Salsa20State s;
        if (chacha) {
            Chacha20Setup(&c, key, 32, nonce, 8, counter[0]);
            c.words[13] = counter[1];
        } else {
            Salsa20Setup(&s, key, r.Below(2) ? 32 : 16, nonce, 8);
            s.words[8] = counter[0];
            s.words[9] = counter[1];
        }
        ByteVector out(data, data + n);
        const uint8_t* in = (seed & 1) ? out.data() : data;
        InPieces(n, r, [&](size_t at, size_t length) {
            if (chacha) Chacha20Xor(&c, in + at, out.data() + at, length);
            else Salsa20Xor(&s, in + at, out.data() + at, length);
        });
        if (chacha) Append(out, c.words);
        else Append(out, s.words);
        return out;
    };
}

// Every fourth seed takes the extremes together: r at its clamped maximum,
// a message of all ones and an accumulator at an edge the wide kernels must
// carry through their 64-bit limbs and back (just below, at and over
// 2^130 - 5, a limb over 26 bits as the portable core leaves h1).
ByteVector Poly1305Tag(const uint8_t* data, size_t n, uint64_t seed) {
    static const uint32_t kEdges[][5] = {{0x3fffffa, 0x3ffffff, 0x3ffffff, 0x3ffffff, 0x3ffffff},
                                         {0x3fffffb, 0x3ffffff, 0x3ffffff, 0x3ffffff, 0x3ffffff},
                                         {0x3ffffff, 0x7ffffff, 0x3ffffff, 0x3ffffff, 0x3ffffff},
                                         {0, 0, 0, 0, 0x4000000},
                                         {5, 0, 0, 0, 0}};
    Random r{seed};
    uint8_t key[32];
    r.Fill(key, sizeof key);
    ByteVector message(data, data + n);
    const bool extreme = seed % 4 == 0;
    if (extreme) {
        std::memset(key, 0xFF, 16);
        std::fill(message.begin(), message.end(), 0xFF);
    }
    Poly1305Context ctx;
    Poly1305Init(&ctx, key);
    if (extreme) std::memcpy(ctx.h, kEdges[r.Below(5)], sizeof ctx.h);
    InPieces(n, r, [&](size_t at, size_t length) { Poly1305Update(&ctx, message.data() + at, length); });
    ByteVector tag(16);
    Poly1305Final(&ctx, tag.data());
    return tag;
}

ByteVector ChachaPoly(const uint8_t* data, size_t n, uint64_t seed) {
    Random r{seed};
    uint8_t key[32], nonce[12], aad[40];
    r.Fill(key, sizeof key);
    r.Fill(nonce, sizeof nonce);
    r.Fill(aad, sizeof aad);
    ByteVector out(n + 16);
    ChachaPolySeal(out.data(), out.data() + n, 16, data, int32_t(n), key, 32, nonce, 12, aad,
                   int32_t(r.Below(sizeof aad + 1)));
    return out;
}

// One mode, key size and direction from the seed; two calls, the first of
// whole blocks, so that the register one call leaves carries into the next;
// in place for odd seeds. nearWrap > 0 sets the counter's low half that
// many steps below its wrap; 0 sets all sixteen bytes to their wrap.
Computation Aes(int mode, int nearWrap = -1) {
    return [=](const uint8_t* data, size_t n, uint64_t seed) {
        Random r{seed};
        const size_t keyLength = 16 + 8 * r.Below(3);
        const ByteVector key = r.Bytes(keyLength);
        ByteVector iv = r.Bytes(16);
        if (nearWrap >= 0) {
            std::memset(iv.data() + (nearWrap == 0 ? 0 : 8), 0xff, nearWrap == 0 ? 16 : 8);
            iv[15] = uint8_t(0xff - nearWrap);
        }
        AesContext c{};
        ByteVector out(n + 3, 0), result;
        result.push_back(uint8_t(AesSetupMode(&c, mode, key.data(), keyLength, int(r.Below(2)), iv.data())));
        uint8_t* to = out.data() + 2;
        if (seed & 1) std::copy(data, data + n, to);
        const uint8_t* from = (seed & 1) ? to : data;
        const size_t first = n / 32 * 16;
        result.push_back(uint8_t(AesProcess(&c, to, from, first)));
        result.push_back(uint8_t(AesProcess(&c, to + first, from + first, n - first)));
        result.insert(result.end(), out.begin(), out.end());
        Append(result, c);
        return result;
    };
}

// Whole-message GCM: IV, AAD and tag lengths from the seed; the opening,
// and a forged tag (its last compared byte changed) that must leave the
// output as it was.
ByteVector GcmWhole(const uint8_t* data, size_t n, uint64_t seed) {
    static const size_t kIvLengths[] = {12, 1, 8, 13, 16, 17, 31, 64, 300};
    static const size_t kAadLengths[] = {0, 1, 15, 16, 17, 100, 256, 300};
    static const int32_t kTagLengths[] = {16, 4, 13, 0, -1, 17};
    Random r{seed};
    const uint32_t keyBits = uint32_t(128 + 64 * r.Below(3));
    const ByteVector key = r.Bytes(keyBits / 8), iv = r.Bytes(kIvLengths[r.Below(9)]), aad = r.Bytes(kAadLengths[r.Below(8)]);
    const int32_t tagLength = kTagLengths[r.Below(6)];
    const bool inPlace = seed % 4 == 0;
    GcmKeyTables t;
    GcmExpandKey(&t, key.data(), keyBits);
    ByteVector buffer(n + 5);
    uint8_t* at = buffer.data() + 1 + n % 3;
    std::copy(data, data + n, at);
    uint8_t tag[16];
    GcmSeal(&t, iv.data(), iv.size(), inPlace ? at : data, n, aad.data(), aad.size(), at, tag);
    ByteVector out(at, at + n);
    out.insert(out.end(), tag, tag + 16);
    ByteVector sealed(at, at + n), plain(n + 2, 0x5c);
    out.push_back(uint8_t(GcmOpen(&t, iv.data(), iv.size(), at, n, tag, tagLength, aad.data(), aad.size(),
                                  inPlace ? at : plain.data() + 1)));
    if (inPlace) plain.assign(at, at + n);
    out.insert(out.end(), plain.begin(), plain.end());
    if (tagLength != 0) {
        ByteVector blank(n + 1, 0xa5);
        tag[(tagLength < 0 || tagLength > 16 ? 16 : tagLength) - 1] ^= 0x40;
        out.push_back(uint8_t(GcmOpen(&t, iv.data(), iv.size(), sealed.data(), n, tag, tagLength, aad.data(),
                                      aad.size(), blank.data())));
        out.insert(out.end(), blank.begin(), blank.end());
    }
    GcmWipeKeyTables(&t);
    return out;
}

// The record's fields that both paths keep (not the 4 KB table, the
// first-round cache or the nonce, which one path alone fills).
void AppendRecord(ByteVector& out, const GcmStream& s) {
    Append(out, s.counter, s.pendingLen);
    out.insert(out.end(), s.pending, s.pending + s.pendingLen);
    Append(out, s.ghash, s.encJ0, s.keystreamPos, s.keystream, s.aadLen, s.textLen, s.state, s.tables.schedule);
}

// The incremental GCM record with AAD and text in random pieces, the record
// taken after every call. Some seeds decrypt (against a random tag), some
// force the 32-bit counter close to its wrap.
ByteVector GcmRecord(const uint8_t* data, size_t n, uint64_t seed) {
    Random r{seed};
    const int32_t keyLength = int32_t(16 + 8 * r.Below(3));
    const ByteVector key = r.Bytes(size_t(keyLength)), nonce = r.Bytes(12), aad = r.Bytes(r.Below(4) * 111);
    const ByteVector tag = r.Bytes(16);
    const bool decrypt = seed & 1;
    const uint32_t counterStarts[] = {0, 0, 0xffffffffu, 0xfffffff7u, 0xffffffe9u};
    const uint32_t counterStart = counterStarts[r.Below(5)];
    auto s = std::make_unique<GcmStream>();
    ByteVector out(n), result;
    result.push_back(uint8_t(GcmStreamInit(s.get(), key.data(), keyLength)));
    result.push_back(uint8_t(AeadSetNonce(s.get(), nonce.data(), 12)));
    for (size_t at = 0, piece; at < aad.size(); at += piece) {
        piece = std::min(1 + r.Below(70), aad.size() - at);
        result.push_back(uint8_t(AeadStreamAddAad(s.get(), aad.data() + at, int32_t(piece))));
        AppendRecord(result, *s);
    }
    result.push_back(uint8_t(decrypt ? AeadStreamStartDecrypt(s.get(), tag.data(), 16) : AeadStreamStartEncrypt(s.get())));
    if (counterStart != 0) s->counter = counterStart;
    for (size_t at = 0, piece; at < n; at += piece) {
        piece = std::min(1 + r.Below(600), n - at);
        result.push_back(uint8_t(AeadStreamUpdate(s.get(), out.data() + at, data + at, int32_t(piece))));
        AppendRecord(result, *s);
    }
    uint8_t finalTag[16] = {};
    result.push_back(uint8_t(decrypt ? AeadStreamFinishDecrypt(s.get()) : AeadStreamFinishEncrypt(s.get(), finalTag, 16)));
    result.insert(result.end(), finalTag, finalTag + 16);
    result.insert(result.end(), out.begin(), out.end());
    AppendRecord(result, *s);
    AeadStreamDestroy(s.get());
    return result;
}

// Odd and even r, p above 1, a V large enough that Integerify reaches all
// over it; the length picks the case.
ByteVector ScryptKey(const uint8_t*, size_t n, uint64_t seed) {
    static const uint32_t kCases[][3] = {{2, 1, 1}, {16, 1, 1}, {16, 3, 2}, {64, 8, 1}, {1024, 2, 1}, {32, 5, 3}};
    Random r{seed};
    const ByteVector password = r.Bytes(23), salt = r.Bytes(17);
    ByteVector key(80);
    key.push_back(uint8_t(ScryptDerive(key.data(), 80, password.data(), password.size(), salt.data(), salt.size(),
                                       kCases[n][0], kCases[n][1], kCases[n][2])));
    return key;
}
}  // namespace

TEST(CpuPaths, EveryAlgorithmMatchesThePortableCode) {
    const std::pair<const char*, Computation> cases[] = {
        {"SHA-1", Digest<Sha1Context>(Sha1Start, Sha1Update, Sha1Final, 20)},
        {"SHA-224", Digest<Sha256Context>(Sha224Start, Sha256Update, Sha224Final, 28)},
        {"SHA-256", Digest<Sha256Context>(Sha256Start, Sha256Update, Sha256Final, 32)},
        {"SHA-384", Digest<Sha512Context>(Sha384Start, Sha512Update, Sha384Final, 48)},
        {"SHA-512", Digest<Sha512Context>(Sha512Start, Sha512Update, Sha512Final, 64)},
        {"SHA3-256", Sponge(false, 256, 32)},
        {"SHA3-512", Sponge(false, 512, 64)},
        {"SHAKE128", Sponge(true, 128, 400)},  // squeezes across permutations
        {"ChaCha20", StreamXor(true)},
        {"Salsa20", StreamXor(false)},
        {"Poly1305", Poly1305Tag},
        {"ChaCha20-Poly1305", ChachaPoly},
        {"AES-ECB", Aes(kModeEcb)},
        {"AES-CBC", Aes(kModeCbc)},
        {"AES-CFB", Aes(kModeCfb)},
        {"AES-OFB", Aes(kModeOfb)},
        {"AES-CTR", Aes(kModeCtr)},
        {"AES-GCM", GcmWhole},
        {"AES-GCM record", GcmRecord},
    };
    for (const auto& [name, compute] : cases) CompareWithPortable(name, compute);
    CompareWithPortable("scrypt", ScryptKey, {0, 1, 2, 3, 4, 5});
}

// The CTR counter carries through all sixteen bytes and wraps to zero at
// the end, wherever the carry falls within a group of blocks processed side
// by side.
TEST(CpuPaths, AesCounterCarriesAndWrapsInsideGroups) {
    for (int distance = 0; distance <= 32; ++distance) {
        CompareWithPortable("AES-CTR " + std::to_string(distance) + " below the wrap", Aes(kModeCtr, distance),
                            {16 * 40 + 9});
    }
}

// The path sets above must each clear only what they name.
TEST(CpuPaths, NamedOverridesClearOnlyTheirFlags) {
    const std::pair<const char*, bool CpuFeatures::*> cases[] = {
        {"-bmi1", &CpuFeatures::bmi1},           {"-bmi2", &CpuFeatures::bmi2},
        {"-shani", &CpuFeatures::shani},         {"-avx512ifma", &CpuFeatures::avx512ifma},
        {"-avx512vl", &CpuFeatures::avx512vl},   {"-sse2", &CpuFeatures::sse2}};
    CpuFeatures all;
    {
        PathScope machine(nullptr);
        all = g_cpu;
    }
    for (const auto& [text, flag] : cases) {
        PathScope scope(text);
        CpuFeatures expected = all;
        expected.*flag = false;
        EXPECT_EQ(std::memcmp(&g_cpu, &expected, sizeof expected), 0) << text;
    }
    PathScope portable("portable");
    const CpuFeatures none{};
    EXPECT_EQ(std::memcmp(&g_cpu, &none, sizeof none), 0);
}
