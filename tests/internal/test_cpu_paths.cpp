// Every processor path set must give the portable code's bytes and records.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <numeric>
#include <random>

#include <sys/mman.h>
#include <unistd.h>

#include "aead/aead_stream.h"
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
// The path flags of an override text for a scope; the machine's come back.
struct PathScope {
    CpuFeatures saved = g_cpu;
    explicit PathScope(const char* override) { CpuDetectWith(override); }
    ~PathScope() { g_cpu = saved; }
};

struct Random : std::mt19937_64 {
    using std::mt19937_64::mt19937_64;
    size_t Below(size_t n) { return size_t((*this)() % n); }
    void Fill(uint8_t* p, size_t n) { std::generate_n(p, n, [this] { return uint8_t((*this)()); }); }
    ByteVec Bytes(size_t n) {
        ByteVec v(n);
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
void Append(ByteVec& out, const T&... values) {
    (out.insert(out.end(), reinterpret_cast<const uint8_t*>(&values), reinterpret_cast<const uint8_t*>(&values + 1)),
     ...);
}

// One computation over a message; seed fixes all else, so each path sees the same calls.
using Computation = std::function<ByteVec(const uint8_t* data, size_t n, uint64_t seed)>;

// All the machine has, and the steps down from it that choose other kernels.
const char* const kPathSets[] = {nullptr, "-vaes,-vpclmul", "-avx512ifma", "-avx512f", "-avx512bw", "-bmi2"};

// Every length to 300, then some that run many groups of blocks with odd tails.
std::vector<size_t> Lengths() {
    std::vector<size_t> lengths(301);
    std::iota(lengths.begin(), lengths.end(), 0);
    lengths.insert(lengths.end(), {511, 512, 513, 1023, 1024, 1279, 1280, 4113, 16385, 65599, 1048581});
    return lengths;
}

void CompareWithPortable(const std::string& name, const Computation& compute,
                         const std::vector<size_t>& lengths = Lengths()) {
    Random random{0x5eed0000u + name.size()};
    ByteVec buffer(*std::max_element(lengths.begin(), lengths.end()) + 8);
    for (size_t n : lengths) {
        uint8_t* data = buffer.data() + n % 7;  // odd addresses too
        random.Fill(data, n);
        const uint64_t seed = random();
        const ByteVec expected = [&] {
            PathScope portable("portable");
            return compute(data, n, seed);
        }();
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
        ByteVec out(digestLength);
        Append(out, ctx);
        final(out.data(), &ctx);
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

// Counters that wrap the low word, or all 64 bits, inside long messages; in
// place for odd seeds; the state words left are part of the result.
Computation StreamXor(bool chacha) {
    static const uint32_t kCounterStarts[][2] = {
        {0, 0}, {1, 0}, {0xFFFFFFF0u, 7}, {0xFFFFFF00u, 0xFFFFFFFFu}, {0x7FFFFFFFu, 0}};
    return [=](const uint8_t* data, size_t n, uint64_t seed) {
        Random r{seed};
        const ByteVec key = r.Bytes(32), nonce = r.Bytes(8);
        const uint32_t* counter = kCounterStarts[r.Below(5)];
        Chacha20State c;
        Salsa20State s;
        Chacha20Setup(&c, key.data(), 32, nonce.data(), 8, counter[0]);
        Salsa20Setup(&s, key.data(), r.Below(2) ? 32 : 16, nonce.data(), 8);
        c.words[13] = s.words[9] = counter[1];
        s.words[8] = counter[0];
        ByteVec out(data, data + n);
        const uint8_t* in = (seed & 1) ? out.data() : data;
        InPieces(n, r, [&](size_t at, size_t length) {
            if (chacha) Chacha20Xor(&c, in + at, out.data() + at, length);
            else Salsa20Xor(&s, in + at, out.data() + at, length);
        });
        chacha ? Append(out, c.words) : Append(out, s.words);
        return out;
    };
}

// Every fourth seed: r at its clamped maximum, a message of all ones and an
// accumulator just below, at or over 2^130 - 5, or with a limb over 26 bits
// as the portable core leaves h1, which wide kernels must carry.
ByteVec Poly1305Tag(const uint8_t* data, size_t n, uint64_t seed) {
    static const uint32_t m = 0x3ffffff, kEdges[][5] = {
        {m - 5, m, m, m, m}, {m - 4, m, m, m, m}, {m, 2 * m + 1, m, m, m}, {0, 0, 0, 0, m + 1}, {5, 0, 0, 0, 0}};
    Random r{seed};
    ByteVec key = r.Bytes(32), message(data, data + n);
    const bool extreme = seed % 4 == 0;
    if (extreme) {
        std::fill_n(key.begin(), 16, 0xFF);
        std::fill(message.begin(), message.end(), 0xFF);
    }
    Poly1305Context ctx;
    Poly1305Init(&ctx, key.data());
    if (extreme) std::memcpy(ctx.h, kEdges[r.Below(5)], sizeof ctx.h);
    InPieces(n, r, [&](size_t at, size_t length) { Poly1305Update(&ctx, message.data() + at, length); });
    ByteVec tag(16);
    Poly1305Final(&ctx, tag.data());
    return tag;
}

// Key size and direction from the seed; a call of whole blocks, then the
// rest, so the register carries over; in place for odd seeds. nearWrap > 0
// puts the counter's low half that many steps below its wrap, 0 all of it.
Computation Aes(int mode, int nearWrap = -1) {
    return [=](const uint8_t* data, size_t n, uint64_t seed) {
        Random r{seed};
        const size_t keyLength = 16 + 8 * r.Below(3);
        const ByteVec key = r.Bytes(keyLength);
        ByteVec iv = r.Bytes(16);
        if (nearWrap >= 0) {
            std::memset(iv.data() + (nearWrap == 0 ? 0 : 8), 0xff, nearWrap == 0 ? 16 : 8);
            iv[15] = uint8_t(0xff - nearWrap);
        }
        AesContext c{};
        ByteVec out(n + 3, 0), result;
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

// Whole-message GCM, IV, AAD and tag lengths from the seed; then the opening,
// and a forged tag (last compared byte changed) that must leave no output.
ByteVec GcmWhole(const uint8_t* data, size_t n, uint64_t seed) {
    static const size_t kIvLengths[] = {12, 1, 8, 13, 16, 17, 31, 64, 300};
    static const size_t kAadLengths[] = {0, 1, 15, 16, 17, 100, 256, 300};
    static const int32_t kTagLengths[] = {16, 4, 13, 0, -1, 17};
    Random r{seed};
    const uint32_t keyBits = uint32_t(128 + 64 * r.Below(3));
    const ByteVec key = r.Bytes(keyBits / 8), iv = r.Bytes(kIvLengths[r.Below(9)]), aad = r.Bytes(kAadLengths[r.Below(8)]);
    const int32_t tagLength = kTagLengths[r.Below(6)];
    const bool inPlace = seed % 4 == 0;
    GcmKeyTables t;
    GcmExpandKey(&t, key.data(), keyBits);
    ByteVec buffer(n + 5);
    uint8_t* at = buffer.data() + 1 + n % 3;
    std::copy(data, data + n, at);
    uint8_t tag[16];
    GcmSeal(&t, iv.data(), iv.size(), inPlace ? at : data, n, aad.data(), aad.size(), at, tag);
    ByteVec sealed(at, at + n), plain(n + 2, 0x5c), out = sealed;
    out.insert(out.end(), tag, tag + 16);
    out.push_back(uint8_t(GcmOpen(&t, iv.data(), iv.size(), at, n, tag, tagLength, aad.data(), aad.size(),
                                  inPlace ? at : plain.data() + 1)));
    if (inPlace) plain.assign(at, at + n);
    out.insert(out.end(), plain.begin(), plain.end());
    if (tagLength != 0) {
        ByteVec blank(n + 1, 0xa5);
        tag[(tagLength < 0 || tagLength > 16 ? 16 : tagLength) - 1] ^= 0x40;
        out.push_back(uint8_t(GcmOpen(&t, iv.data(), iv.size(), sealed.data(), n, tag, tagLength, aad.data(),
                                      aad.size(), blank.data())));
        out.insert(out.end(), blank.begin(), blank.end());
    }
    GcmWipeKeyTables(&t);
    return out;
}

// The record's fields that both paths keep (not the tables, first-round
// cache or nonce, which one path alone fills).
void AppendRecord(ByteVec& out, const GcmStream& s) {
    Append(out, s.counter, s.pendingLen);
    out.insert(out.end(), s.pending, s.pending + s.pendingLen);
    Append(out, s.ghash, s.encJ0, s.keystreamPos, s.keystream, s.aadLen, s.textLen, s.state, s.tables.schedule);
}

// Incremental GCM, AAD and text in random pieces, the record after every
// call; odd seeds decrypt (random tag), some start the counter near its wrap.
ByteVec GcmRecord(const uint8_t* data, size_t n, uint64_t seed) {
    Random r{seed};
    const int32_t keyLength = int32_t(16 + 8 * r.Below(3));
    const ByteVec key = r.Bytes(size_t(keyLength)), nonce = r.Bytes(12), tag = r.Bytes(16);
    const ByteVec aad = r.Bytes(r.Below(4) * 111);
    const bool decrypt = seed & 1;
    const uint32_t kStarts[] = {0, 0, 0xffffffffu, 0xfffffff7u, 0xffffffe9u}, counterStart = kStarts[r.Below(5)];
    auto s = std::make_unique<GcmStream>();
    ByteVec out(n), result;
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

// Odd and even r, p above 1, a V wide enough for Integerify; n picks the case.
ByteVec ScryptKey(const uint8_t*, size_t n, uint64_t seed) {
    static const uint32_t kCases[][3] = {{2, 1, 1}, {16, 1, 1}, {16, 3, 2}, {64, 8, 1}, {1024, 2, 1}, {32, 5, 3}};
    Random r{seed};
    const ByteVec password = r.Bytes(23), salt = r.Bytes(17);
    ByteVec key(80);
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
        {"SHA3-256", Sponge(false, 256, 32)}, {"SHA3-512", Sponge(false, 512, 64)},
        {"SHAKE128", Sponge(true, 128, 400)},  // squeezes across permutations
        {"ChaCha20", StreamXor(true)}, {"Salsa20", StreamXor(false)},
        {"Poly1305", Poly1305Tag},
        {"AES-ECB", Aes(kModeEcb)}, {"AES-CBC", Aes(kModeCbc)}, {"AES-CFB", Aes(kModeCfb)},
        {"AES-OFB", Aes(kModeOfb)}, {"AES-CTR", Aes(kModeCtr)},
        {"AES-GCM", GcmWhole}, {"AES-GCM record", GcmRecord},
    };
    for (const auto& [name, compute] : cases) CompareWithPortable(name, compute);
    CompareWithPortable("scrypt", ScryptKey, {0, 1, 2, 3, 4, 5});
    // The CTR counter carries through all sixteen bytes and wraps to zero,
    // wherever the carry falls in a group of blocks run side by side.
    for (int below = 0; below <= 32; ++below)
        CompareWithPortable("AES-CTR " + std::to_string(below) + " below the wrap", Aes(kModeCtr, below), {16 * 40 + 9});
}

// The SHA-512 kernel runs blocks in pairs and loads each next pair early;
// every count must match the portable core, and no load may pass the last
// block, which here ends where an unreadable page begins.
TEST(CpuPaths, Sha512KernelTakesEveryCountOfBlocks) {
    const size_t page = size_t(sysconf(_SC_PAGESIZE)), span = 4 * page;
    void* map = mmap(nullptr, span + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(map, MAP_FAILED);
    uint8_t* end = static_cast<uint8_t*>(map) + span;
    ASSERT_EQ(mprotect(end, page, PROT_NONE), 0);
    Random random{0x512};
    random.Fill(static_cast<uint8_t*>(map), span);
    for (size_t blocks = 0; blocks <= 13; ++blocks) {
        const uint8_t* data = end - 128 * blocks;
        uint64_t expected[8], got[8];
        for (uint64_t& word : expected) word = random();
        std::memcpy(got, expected, sizeof got);
        Sha512BlocksPortable(expected, data, blocks);
        Sha512CompressBlocks(got, data, blocks);
        EXPECT_EQ(std::memcmp(got, expected, sizeof got), 0) << blocks << " blocks";
    }
    munmap(map, span + page);
}

// The comparisons above stand on these: "portable" clears every flag, a
// list of names only the flags it names.
TEST(CpuPaths, OverridesClearWhatTheyName) {
    CpuFeatures expected = [] {
        PathScope machine(nullptr);
        return g_cpu;
    }();
    expected.bmi2 = expected.avx512ifma = expected.sse2 = false;
    const CpuFeatures none{};
    PathScope scope("-bmi2,-avx512ifma,-sse2");
    EXPECT_EQ(std::memcmp(&g_cpu, &expected, sizeof expected), 0);
    PathScope portable("portable");
    EXPECT_EQ(std::memcmp(&g_cpu, &none, sizeof none), 0);
}
