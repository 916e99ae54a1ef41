// Many threads at once: results, handles and per-thread records.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <barrier>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "test_support.h"

namespace {

constexpr int kThreads = 64;
constexpr int kVariants = 8;  // distinct inputs, so that threads differ

// The stateful families whose handles the threads trade (TDEA_ and DES_
// share AES128_'s handle code).
enum Family { kHash, kMac, kCipher, kAes, kBlf, kGcm, kAead, kStream, kSha3, kSha1, kFamilies };

struct Inputs {
    uint8_t key[32];
    uint8_t iv[16];
    uint8_t message[300];
};

Inputs MakeInputs(int variant) {
    Inputs in;
    for (int i = 0; i < 32; ++i) in.key[i] = uint8_t(variant * 31 + i);
    for (int i = 0; i < 16; ++i) in.iv[i] = uint8_t(variant + 3 * i);
    for (int i = 0; i < 300; ++i) in.message[i] = uint8_t(variant ^ (i * 13));
    return in;
}

// Everything one run computes, as text, so that a mismatch names its part.
using Results = std::vector<std::string>;

// The contexts of one run, opened before the handles are traded.
struct Open {
    int32_t handle[kFamilies] = {};
};

Open OpenAll(const Inputs& in) {
    Open o;
    o.handle[kHash] = HASH_Init(OPT_HASH_SHA384);
    o.handle[kMac] = MAC_Init(in.key, 32, OPT_HMAC_SHA3_256);
    o.handle[kCipher] = CIPHER_Init(1, "aes256/ctr", in.key, 32, in.iv, 16, 0);
    o.handle[kAes] = AES128_Init(in.key, 1, "CBC", in.iv);
    o.handle[kBlf] = BLF_Init(in.key, 20, 1, "CFB", in.iv);
    o.handle[kGcm] = GCM_InitKey(in.key, 24, 0);
    o.handle[kAead] = AEAD_InitKey(in.key, 32, OPT_AEAD_CHACHA20_POLY1305);
    o.handle[kStream] = CIPHER_StreamInit(in.key, 32, in.iv, 12, 7, OPT_STREAM_CHACHA20);
    o.handle[kSha3] = SHA3_Init(384);
    o.handle[kSha1] = SHA1_Init();
    return o;
}

// Feeds the message through every open context, in pieces, and closes them.
// The calls of a braced list run in their order.
void FinishAll(const Inputs& in, const Open& o, Results& r) {
    const uint8_t* m = in.message;
    const int32_t* h = o.handle;
    uint8_t out[512];
    uint8_t tag[16];
    char hex[257];
    auto add = [&](const char* name, std::initializer_list<int32_t> codes, const void* bytes, size_t n) {
        std::string line = name;
        for (int32_t c : codes) line += " " + std::to_string(c);
        r.push_back(line + " " + ToHex(static_cast<const uint8_t*>(bytes), n));
    };

    add("hash", {HASH_AddBytes(h[kHash], m, 100), HASH_AddBytes(h[kHash], m + 100, 200), HASH_Final(out, 48, h[kHash])},
        out, 48);
    add("mac", {MAC_AddBytes(h[kMac], m, 7), MAC_AddBytes(h[kMac], m + 7, 293), MAC_Final(out, 64, h[kMac])}, out, 32);
    add("cipher",
        {CIPHER_Update(h[kCipher], out, 64, m, 64), CIPHER_Update(h[kCipher], out + 64, 64, m + 64, 37),
         CIPHER_Final(h[kCipher])},
        out, 101);
    std::memcpy(out, m, 96);
    add("aes", {AES128_Update(h[kAes], out, 48), AES128_Update(h[kAes], out + 48, 48), AES128_Final(h[kAes])}, out, 96);
    std::memcpy(out, m, 40);
    add("blf", {BLF_Update(h[kBlf], out, 40), BLF_Ecb(h[kBlf], out, 16, 0), BLF_Final(h[kBlf])}, out, 40);
    add("gcm", {GCM_NextEncrypt(h[kGcm], out, 300, tag, 16, m, 300, in.iv, 16, m, 9), GCM_FinishKey(h[kGcm])}, out,
        300);
    add("gcm tag", {}, tag, 16);
    const int32_t a = h[kAead];
    add("aead",
        {AEAD_SetNonce(a, in.iv, 12), AEAD_AddAAD(a, m, 20), AEAD_StartEncrypt(a), AEAD_Update(a, out, 63, m, 63),
         AEAD_Update(a, out + 63, 65, m + 63, 65), AEAD_FinishEncrypt(a, out + 128, 16), AEAD_Destroy(a)},
        out, 144);
    add("stream",
        {CIPHER_StreamUpdate(h[kStream], out, m, 1), CIPHER_StreamUpdate(h[kStream], out + 1, m + 1, 130),
         CIPHER_StreamFinal(h[kStream])},
        out, 131);
    add("sha3", {SHA3_AddBytes(h[kSha3], m, 150), SHA3_AddString(h[kSha3], "tail"), SHA3_HexDigest(hex, 256, h[kSha3])},
        hex, 96);
    add("sha1", {SHA1_AddBytes(h[kSha1], m, 300), SHA1_HexDigest(hex, h[kSha1])}, hex, 40);
    // A handle that was used up stays refused.
    add("ended", {HASH_Reset(h[kHash]), CIPHER_Final(h[kCipher]), AEAD_Destroy(a)}, out, 0);
}

// One-shot calls and the latch.
void OneShots(const Inputs& in, Results& r) {
    const uint8_t* m = in.message;
    uint8_t out[512];
    char text[300];
    auto add = [&](const char* name, int32_t code, const void* bytes, size_t n) {
        const std::string hex = ToHex(static_cast<const uint8_t*>(bytes), n);
        r.push_back(std::string(name) + " " + std::to_string(code) + " " + hex);
    };
    add("hash1", HASH_Bytes(out, 64, m, 300, OPT_HASH_SHA3_512), out, 64);
    add("mac1", MAC_Bytes(out, 16, m, 300, in.key, 24, OPT_CMAC_AES192), out, 16);
    add("enc1", CIPHER_EncryptBytes(out, 512, m, 77, in.key, 24, in.iv, 8, "tdea/cbc/ansix923", 0), out, 80);
    add("seal1", AEAD_EncryptWithTag(out, 512, m, 50, in.key, 16, in.iv, 16, m, 5, OPT_AEAD_ASCON_128A | OPT_PREFIX_IV),
        out, 82);
    add("kdf1", PBE_Kdf2(out, 40, in.key, 32, m, 16, 3, OPT_HASH_SHA256), out, 40);
    int32_t c = ZLIB_Deflate(out, 512, m, 300);
    add("zlib1", c, out, size_t(c > 0 ? c : 0));
    add("crc1", CRC_Bytes(m, 300, 0), out, 0);
    c = CNV_B64StrFromBytes(text, 299, m, 100);
    add("b64", c, text, size_t(c > 0 ? c : 0));
    add("kw1", CIPHER_KeyWrap(out, 40, in.key, 32, m, 32, OPT_CIPHER_AES256), out, 40);
    // The latch is the thread's own, whatever other threads fail with.
    HASH_Length(9);
    add("latch", API_ErrorCode(), out, 0);
    RNG_KeyBytes(out, 32, m, 8);
    add("latch after RNG", API_ErrorCode(), out, 0);
}

Results SingleRun(int variant) {
    const Inputs in = MakeInputs(variant);
    Results r;
    FinishAll(in, OpenAll(in), r);
    OneShots(in, r);
    return r;
}

int32_t LiveGenerators() { return API_ModuleName(nullptr, 0, 0xFACE); }

}  // namespace

TEST(Threads, ManyThreadsAgreeWithOneAndKeepTheirHandles) {
    std::vector<Results> expected;
    for (int v = 0; v < kVariants; ++v) expected.push_back(SingleRun(v));

    // Each thread opens every context, publishes its handles, then tries
    // its neighbour's on every family before it finishes its own.
    std::vector<Open> published(kThreads);
    std::vector<Results> got(kThreads);
    std::vector<int> foreignAccepted(kThreads, 0);
    std::barrier meet(kThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            const Inputs in = MakeInputs(t % kVariants);
            const Open own = OpenAll(in);
            published[size_t(t)] = own;
            meet.arrive_and_wait();
            const Open& other = published[size_t((t + 1) % kThreads)];
            uint8_t buf[64] = {};
            char text[129] = "00112233445566778899AABBCCDDEEFF";
            // The neighbour's handle must be refused, unless it is by chance our own.
            auto foreign = [&](Family f, int32_t refused, auto call) {
                const int32_t h = other.handle[f];
                if (h != own.handle[f] && call(h) != refused) ++foreignAccepted[size_t(t)];
            };
            foreign(kHash, -INVALID_HANDLE_ERROR, [&](int32_t h) { return HASH_AddBytes(h, buf, 8); });
            foreign(kMac, -INVALID_HANDLE_ERROR, [&](int32_t h) { return MAC_AddBytes(h, buf, 8); });
            foreign(kCipher, -INVALID_HANDLE_ERROR, [&](int32_t h) { return CIPHER_Update(h, buf, 64, buf, 16); });
            foreign(kAes, INVALID_HANDLE_ERROR, [&](int32_t h) { return AES128_UpdateHex(h, text); });
            foreign(kBlf, INVALID_HANDLE_ERROR, [&](int32_t h) { return BLF_Ecb(h, buf, 8, 1); });
            foreign(kGcm, INVALID_HANDLE_ERROR, [&](int32_t h) { return GCM_FinishKey(h); });
            foreign(kAead, -INVALID_HANDLE_ERROR, [&](int32_t h) { return AEAD_Destroy(h); });
            foreign(kStream, -INVALID_HANDLE_ERROR, [&](int32_t h) { return CIPHER_StreamFinal(h); });
            foreign(kSha3, INVALID_HANDLE_ERROR, [&](int32_t h) { return SHA3_Reset(h); });
            foreign(kSha1, INVALID_HANDLE_ERROR, [&](int32_t h) { return SHA1_AddBytes(h, buf, 8); });
            meet.arrive_and_wait();
            Results& mine = got[size_t(t)];
            FinishAll(in, own, mine);
            OneShots(in, mine);
        });
    }
    for (auto& th : threads) th.join();
    for (int t = 0; t < kThreads; ++t) {
        EXPECT_EQ(foreignAccepted[size_t(t)], 0) << "thread " << t << " took another thread's handle";
        EXPECT_EQ(got[size_t(t)], expected[size_t(t % kVariants)]) << "thread " << t;
    }
}

TEST(Threads, RecordsAndGeneratorsGoWithTheirThreads) {
    // Waves of threads, more in all than the registry has slots, each leaving
    // contexts open and its generator instantiated.
    uint8_t warm[8];
    ASSERT_EQ(RNG_NonceData(warm, 8), 0);
    const int32_t before = LiveGenerators();
    ASSERT_GT(before, 0);
    std::atomic<int> failures{0};
    for (int wave = 0; wave < 20; ++wave) {
        std::vector<std::thread> threads;
        for (int t = 0; t < kThreads; ++t) {
            threads.emplace_back([&, wave, t] {
                const Inputs in = MakeInputs((wave + t) % kVariants);
                uint8_t out[32];
                if (HASH_Init(OPT_HASH_SHA256) == 0 || CIPHER_Init(0, "aes128/cbc", in.key, 16, in.iv, 16, 0) == 0 ||
                    AEAD_InitKey(in.key, 16, OPT_AEAD_AES_128_GCM) == 0 || RNG_KeyBytes(out, 32, nullptr, 0) != 0 ||
                    LiveGenerators() <= before) {
                    ++failures;
                }
            });
        }
        for (auto& th : threads) th.join();
        // Every generator of the wave was wiped when its thread ended.
        EXPECT_EQ(LiveGenerators(), before) << "wave " << wave;
    }
    EXPECT_EQ(failures.load(), 0);
}
