// The processor-specific paths against the portable ones. Each case runs on
// random inputs of every length up to 300 bytes and a few long ones, from
// odd addresses, fed whole or in random pieces, once with the portable
// code and once with each set of processor paths; the outputs (and the
// records they leave) must be the same bytes.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "aead/chachapoly.h"
#include "digest/sha1.h"
#include "digest/sha256.h"
#include "digest/sha3.h"
#include "digest/sha512.h"
#include "mac/poly1305.h"
#include "mac/poly1305_x86.h"
#include "mac/scrypt.h"
#include "rng/entropy.h"
#include "stream/chacha20.h"
#include "stream/salsa20.h"
#include "test_support.h"
#include "util/cpu.h"

namespace {
// Sets the path flags from an override text for a scope; the machine's own
// flags come back at its end.
class PathScope {
  public:
    explicit PathScope(const char* override) : saved_(g_cpu) { CpuDetectWith(override); }
    ~PathScope() { g_cpu = saved_; }

  private:
    CpuFeatures saved_;
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
};

// Cuts [0, n) into up to four pieces at random points drawn from seed.
std::vector<size_t> Cuts(size_t n, uint64_t seed) {
    Random r{seed};
    std::vector<size_t> cuts = {0};
    size_t pieces = r.Below(4);
    for (size_t i = 0; i < pieces; ++i) cuts.push_back(r.Below(n + 1));
    cuts.push_back(n);
    std::sort(cuts.begin(), cuts.end());
    return cuts;
}

// One computation over a message; seed chooses its cuts and anything else
// random about it, so each path sees the same call sequence.
using Computation = std::function<std::vector<uint8_t>(const uint8_t* data, size_t n, uint64_t seed)>;

// The sets of paths to hold against the portable code: all the machine
// has, and the steps down from it that choose other kernels.
const std::vector<const char*> kPathSets = {nullptr, "-avx512ifma", "-avx512f", "-avx512bw", "-bmi2"};

void CompareWithPortable(const std::string& name, const Computation& compute) {
    std::vector<size_t> lengths;
    for (size_t n = 0; n <= 300; ++n) lengths.push_back(n);
    for (size_t n : {511, 512, 513, 1023, 1024, 1279, 1280, 4113, 16385, 65599, 1048581}) lengths.push_back(n);
    Random random{0x5eed0000u + name.size()};
    std::vector<uint8_t> buffer(lengths.back() + 8);
    for (size_t n : lengths) {
        uint8_t* data = buffer.data() + n % 7;  // odd addresses too
        random.Fill(data, n);
        uint64_t seed = random.Next();
        std::vector<uint8_t> expected;
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

template <typename T>
void Append(std::vector<uint8_t>& out, const T& value) {
    const uint8_t* p = reinterpret_cast<const uint8_t*>(&value);
    out.insert(out.end(), p, p + sizeof value);
}

// A Merkle-Damgard digest fed in pieces; the record after the updates is
// part of the result, as the fast paths must leave it as the portable ones do.
template <typename Context>
Computation MdDigest(void (*start)(Context*), void (*update)(Context*, const uint8_t*, uint32_t),
                     void (*final)(uint8_t*, Context*), size_t digestLength) {
    return [=](const uint8_t* data, size_t n, uint64_t seed) {
        Context ctx{};
        start(&ctx);
        std::vector<size_t> cuts = Cuts(n, seed);
        for (size_t i = 0; i + 1 < cuts.size(); ++i) update(&ctx, data + cuts[i], uint32_t(cuts[i + 1] - cuts[i]));
        std::vector<uint8_t> out;
        Append(out, ctx);
        std::vector<uint8_t> digest(digestLength);
        final(digest.data(), &ctx);
        out.insert(out.end(), digest.begin(), digest.end());
        return out;
    };
}

void Sha384FinalVoid(uint8_t* out, Sha512Context* ctx) { Sha384Final(out, ctx); }
void Sha512FinalVoid(uint8_t* out, Sha512Context* ctx) { Sha512Final(out, ctx); }

Computation Sponge(bool shake, uint32_t bits, uint32_t outputLength) {
    return [=](const uint8_t* data, size_t n, uint64_t seed) {
        Sha3Context ctx{};
        if (shake) ShakeStart(&ctx, bits);
        else Sha3Start(&ctx, bits);
        std::vector<size_t> cuts = Cuts(n, seed);
        for (size_t i = 0; i + 1 < cuts.size(); ++i) Sha3Absorb(&ctx, data + cuts[i], uint32_t(cuts[i + 1] - cuts[i]));
        std::vector<uint8_t> out(outputLength);
        if (shake) SpongeFinish(out.data(), outputLength, &ctx, 0x1F);
        else Sha3Finish(out.data(), outputLength, &ctx);
        return out;
    };
}

// Counters that put a wrap of the low word, or of all 64 bits, inside
// long messages.
const uint32_t kCounterStarts[][2] = {{0, 0}, {1, 0}, {0xFFFFFFF0u, 7}, {0xFFFFFF00u, 0xFFFFFFFFu}, {0x7FFFFFFFu, 0}};

// A cipher fed in pieces, in place for odd seeds; the words that the calls
// leave in the state are part of the result.
Computation StreamXor(bool chacha) {
    return [=](const uint8_t* data, size_t n, uint64_t seed) {
        Random r{seed};
        uint8_t key[32], nonce[8];
        r.Fill(key, sizeof key);
        r.Fill(nonce, sizeof nonce);
        const uint32_t* counter = kCounterStarts[r.Below(5)];
        uint32_t words[16];
        if (chacha) {
            Chacha20State s;
            Chacha20Setup(&s, key, 32, nonce, 8, counter[0]);
            s.words[13] = counter[1];
            std::memcpy(words, s.words, sizeof words);
        } else {
            Salsa20State s;
            Salsa20Setup(&s, key, r.Below(2) ? 32 : 16, nonce, 8);
            s.words[8] = counter[0];
            s.words[9] = counter[1];
            std::memcpy(words, s.words, sizeof words);
        }
        std::vector<uint8_t> out(data, data + n);
        const bool inPlace = seed & 1;
        std::vector<size_t> cuts = Cuts(n, seed >> 1);
        for (size_t i = 0; i + 1 < cuts.size(); ++i) {
            const uint8_t* from = inPlace ? out.data() + cuts[i] : data + cuts[i];
            size_t length = cuts[i + 1] - cuts[i];
            if (chacha) {
                Chacha20State s;
                std::memcpy(s.words, words, sizeof words);
                Chacha20Xor(&s, from, out.data() + cuts[i], length);
                std::memcpy(words, s.words, sizeof words);
            } else {
                Salsa20State s;
                std::memcpy(s.words, words, sizeof words);
                Salsa20Xor(&s, from, out.data() + cuts[i], length);
                std::memcpy(words, s.words, sizeof words);
            }
        }
        Append(out, words);
        return out;
    };
}

// Keys that set every bit the clamp allows, or random ones; messages of all
// ones push every carry.
Computation Poly1305Tag() {
    return [](const uint8_t* data, size_t n, uint64_t seed) {
        Random r{seed};
        uint8_t key[32];
        r.Fill(key, sizeof key);
        if (seed % 3 == 0) std::memset(key, 0xFF, 16);
        std::vector<uint8_t> message(data, data + n);
        if (seed % 5 == 0) std::fill(message.begin(), message.end(), 0xFF);
        Poly1305Context ctx;
        Poly1305Init(&ctx, key);
        std::vector<size_t> cuts = Cuts(n, seed >> 3);
        for (size_t i = 0; i + 1 < cuts.size(); ++i)
            Poly1305Update(&ctx, message.data() + cuts[i], cuts[i + 1] - cuts[i]);
        std::vector<uint8_t> tag(16);
        Poly1305Final(&ctx, tag.data());
        return tag;
    };
}
}  // namespace

TEST(FastPaths, ShaDigestsMatchThePortableCores) {
    CompareWithPortable("SHA-1", MdDigest<Sha1Context>(Sha1Start, Sha1Update, Sha1Final, 20));
    CompareWithPortable("SHA-224", MdDigest<Sha256Context>(Sha224Start, Sha256Update, Sha224Final, 28));
    CompareWithPortable("SHA-256", MdDigest<Sha256Context>(Sha256Start, Sha256Update, Sha256Final, 32));
    CompareWithPortable("SHA-384", MdDigest<Sha512Context>(Sha384Start, Sha512Update, Sha384FinalVoid, 48));
    CompareWithPortable("SHA-512", MdDigest<Sha512Context>(Sha512Start, Sha512Update, Sha512FinalVoid, 64));
}

TEST(FastPaths, KeccakSpongesMatchThePortablePermutation) {
    CompareWithPortable("SHA3-256", Sponge(false, 256, 32));
    CompareWithPortable("SHA3-512", Sponge(false, 512, 64));
    CompareWithPortable("SHAKE128", Sponge(true, 128, 400));  // squeezes across permutations
}

TEST(FastPaths, StreamCiphersMatchAcrossCounterWraps) {
    CompareWithPortable("ChaCha20", StreamXor(true));
    CompareWithPortable("Salsa20", StreamXor(false));
}

TEST(FastPaths, Poly1305TagsMatchTheTwentySixBitCore) {
    CompareWithPortable("Poly1305", Poly1305Tag());
    CompareWithPortable("ChaCha20-Poly1305", [](const uint8_t* data, size_t n, uint64_t seed) {
        Random r{seed};
        uint8_t key[32], nonce[12], aad[40];
        r.Fill(key, sizeof key);
        r.Fill(nonce, sizeof nonce);
        r.Fill(aad, sizeof aad);
        std::vector<uint8_t> out(n + 16);
        ChachaPolySeal(out.data(), out.data() + n, 16, data, int32_t(n), key, 32, nonce, 12, aad,
                       int32_t(r.Below(sizeof aad + 1)));
        return out;
    });
}

TEST(FastPaths, PowersOfRNearTheModulus) {
    // r at its clamped maximum and an accumulator that starts just below
    // 2^130 - 5: the eight-lane sums and their fold must still reduce.
    uint8_t key[32];
    std::memset(key, 0xFF, sizeof key);
    std::vector<uint8_t> message(4096, 0xFF);
    std::string tags[2];
    for (int path = 0; path < 2; ++path) {
        PathScope scope(path == 0 ? "portable" : nullptr);
        Poly1305Context ctx;
        Poly1305Init(&ctx, key);
        const uint32_t nearModulus[5] = {0x3fffffa, 0x3ffffff, 0x3ffffff, 0x3ffffff, 0x3ffffff};
        std::memcpy(ctx.h, nearModulus, sizeof nearModulus);
        Poly1305Update(&ctx, message.data(), message.size());
        uint8_t tag[16];
        Poly1305Final(&ctx, tag);
        tags[path] = ToHex(tag, 16);
    }
    EXPECT_EQ(tags[1], tags[0]);
}

TEST(FastPaths, ScryptMixMatchesThePortableMix) {
    // Sizes of r that are odd and even, one p above 1, a V large enough that
    // Integerify reaches all over it.
    struct Case {
        uint32_t n, r, p;
    } cases[] = {{2, 1, 1}, {16, 1, 1}, {16, 3, 2}, {64, 8, 1}, {1024, 2, 1}, {32, 5, 3}};
    Random random{77};
    for (const Case& c : cases) {
        uint8_t password[23], salt[17];
        random.Fill(password, sizeof password);
        random.Fill(salt, sizeof salt);
        std::string keys[3];
        const char* sets[3] = {"portable", nullptr, "-avx512f"};
        for (int i = 0; i < 3; ++i) {
            PathScope scope(sets[i]);
            uint8_t key[80];
            ASSERT_EQ(ScryptDerive(key, sizeof key, password, sizeof password, salt, sizeof salt, c.n, c.r, c.p), 0);
            keys[i] = ToHex(key, sizeof key);
        }
        EXPECT_EQ(keys[1], keys[0]) << "N " << c.n << " r " << c.r << " p " << c.p;
        EXPECT_EQ(keys[2], keys[0]) << "N " << c.n << " r " << c.r << " p " << c.p;
    }
}

TEST(FastPaths, WideLimbsKeepTheAccumulatorModuloP) {
    // The 26-bit record goes into 64-bit limbs and back around every wide
    // run; the value may change only by multiples of 2^130 - 5. Limbs over
    // 26 bits (as the portable core leaves h1) and values at and over the
    // modulus must survive: the tags after the round trip are the same.
    Random random{2024};
    const uint32_t edges[][5] = {{0x3fffffb, 0x3ffffff, 0x3ffffff, 0x3ffffff, 0x3ffffff},
                                 {0x3ffffff, 0x7ffffff, 0x3ffffff, 0x3ffffff, 0x3ffffff},
                                 {0, 0, 0, 0, 0x4000000},
                                 {5, 0, 0, 0, 0}};
    for (int i = 0; i < 300; ++i) {
        uint8_t key[32];
        random.Fill(key, sizeof key);
        Poly1305Context direct;
        Poly1305Init(&direct, key);
        for (int k = 0; k < 5; ++k) {
            direct.h[k] = i < 4 ? edges[i][k] : uint32_t(random.Next()) & (k == 1 ? 0x7ffffff : 0x3ffffff);
        }
        Poly1305Context converted = direct;
        Poly1305Wide wide;
        Poly1305WideLoad(&wide, &converted);
        Poly1305WideStore(&converted, &wide);
        for (int k = 0; k < 4; ++k) EXPECT_LT(converted.h[k], 1u << 26);
        EXPECT_LE(converted.h[4], (1u << 26) + (1u << 24));
        uint8_t tagDirect[16], tagConverted[16];
        Poly1305Final(&direct, tagDirect);
        Poly1305Final(&converted, tagConverted);
        ASSERT_EQ(ToHex(tagConverted, 16), ToHex(tagDirect, 16)) << "case " << i;
    }
}

TEST(FastPaths, NamedOverridesClearOnlyTheirFlags) {
    struct Case {
        const char* text;
        bool CpuFeatures::*flag;
    } cases[] = {{"-bmi1", &CpuFeatures::bmi1},       {"-bmi2", &CpuFeatures::bmi2},
                 {"-shani", &CpuFeatures::shani},     {"-avx512ifma", &CpuFeatures::avx512ifma},
                 {"-avx512vl", &CpuFeatures::avx512vl}, {"-sse2", &CpuFeatures::sse2}};
    CpuFeatures all;
    {
        PathScope machine(nullptr);
        all = g_cpu;
    }
    for (const Case& c : cases) {
        PathScope scope(c.text);
        CpuFeatures expected = all;
        expected.*c.flag = false;
        EXPECT_EQ(std::memcmp(&g_cpu, &expected, sizeof expected), 0) << c.text;
    }
    PathScope portable("portable");
    const CpuFeatures none{};
    EXPECT_EQ(std::memcmp(&g_cpu, &none, sizeof none), 0);
}
