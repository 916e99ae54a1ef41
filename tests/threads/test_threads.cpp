// Many threads at once: each gets the results of a single-threaded run, a
// handle of one thread is refused on another, and per-thread records and
// generators go with their threads.
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
// Each call is a statement of its own, so that they run in this order.
void FinishAll(const Inputs& in, const Open& o, Results& r) {
    const uint8_t* m = in.message;
    uint8_t out[512];
    uint8_t tag[16];
    char hex[257];
    std::vector<int32_t> codes;
    auto add = [&](const char* name, const uint8_t* bytes, size_t n) {
        std::string line = name;
        for (int32_t c : codes) line += " " + std::to_string(c);
        r.push_back(line + " " + ToHex(bytes, n));
        codes.clear();
    };

    codes.push_back(HASH_AddBytes(o.handle[kHash], m, 100));
    codes.push_back(HASH_AddBytes(o.handle[kHash], m + 100, 200));
    codes.push_back(HASH_Final(out, 48, o.handle[kHash]));
    add("hash", out, 48);

    codes.push_back(MAC_AddBytes(o.handle[kMac], m, 7));
    codes.push_back(MAC_AddBytes(o.handle[kMac], m + 7, 293));
    codes.push_back(MAC_Final(out, 64, o.handle[kMac]));
    add("mac", out, 32);

    codes.push_back(CIPHER_Update(o.handle[kCipher], out, 64, m, 64));
    codes.push_back(CIPHER_Update(o.handle[kCipher], out + 64, 64, m + 64, 37));
    codes.push_back(CIPHER_Final(o.handle[kCipher]));
    add("cipher", out, 101);

    std::memcpy(out, m, 96);
    codes.push_back(AES128_Update(o.handle[kAes], out, 48));
    codes.push_back(AES128_Update(o.handle[kAes], out + 48, 48));
    codes.push_back(AES128_Final(o.handle[kAes]));
    add("aes", out, 96);

    std::memcpy(out, m, 40);
    codes.push_back(BLF_Update(o.handle[kBlf], out, 40));
    codes.push_back(BLF_Ecb(o.handle[kBlf], out, 16, 0));
    codes.push_back(BLF_Final(o.handle[kBlf]));
    add("blf", out, 40);

    codes.push_back(GCM_NextEncrypt(o.handle[kGcm], out, 300, tag, 16, m, 300, in.iv, 16, m, 9));
    codes.push_back(GCM_FinishKey(o.handle[kGcm]));
    std::memcpy(out + 300, tag, 16);
    add("gcm", out, 316);

    const int32_t a = o.handle[kAead];
    codes.push_back(AEAD_SetNonce(a, in.iv, 12));
    codes.push_back(AEAD_AddAAD(a, m, 20));
    codes.push_back(AEAD_StartEncrypt(a));
    codes.push_back(AEAD_Update(a, out, 63, m, 63));
    codes.push_back(AEAD_Update(a, out + 63, 65, m + 63, 65));
    codes.push_back(AEAD_FinishEncrypt(a, out + 128, 16));
    codes.push_back(AEAD_Destroy(a));
    add("aead", out, 144);

    codes.push_back(CIPHER_StreamUpdate(o.handle[kStream], out, m, 1));
    codes.push_back(CIPHER_StreamUpdate(o.handle[kStream], out + 1, m + 1, 130));
    codes.push_back(CIPHER_StreamFinal(o.handle[kStream]));
    add("stream", out, 131);

    codes.push_back(SHA3_AddBytes(o.handle[kSha3], m, 150));
    codes.push_back(SHA3_AddString(o.handle[kSha3], "tail"));
    codes.push_back(SHA3_HexDigest(hex, 256, o.handle[kSha3]));
    add("sha3", reinterpret_cast<const uint8_t*>(hex), 96);

    codes.push_back(SHA1_AddBytes(o.handle[kSha1], m, 300));
    codes.push_back(SHA1_HexDigest(hex, o.handle[kSha1]));
    add("sha1", reinterpret_cast<const uint8_t*>(hex), 40);

    // A handle that was used up stays refused.
    codes.push_back(HASH_Reset(o.handle[kHash]));
    codes.push_back(CIPHER_Final(o.handle[kCipher]));
    codes.push_back(AEAD_Destroy(a));
    add("ended", out, 0);
}

// One-shot calls and the latch.
void OneShots(const Inputs& in, Results& r) {
    const uint8_t* m = in.message;
    uint8_t out[512];
    char text[300];
    auto add = [&](const char* name, int32_t code, const uint8_t* bytes, size_t n) {
        r.push_back(std::string(name) + " " + std::to_string(code) + " " + ToHex(bytes, n));
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
    add("b64", c, reinterpret_cast<const uint8_t*>(text), size_t(c > 0 ? c : 0));
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
            // Tries call f on the neighbour's handle, which must refuse it.
            // Two threads may draw one value by chance: then there is nothing
            // foreign to try.
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
    // Threads come and go in waves, more of them in all than the registry of
    // thread records has slots, each leaving contexts open and its generator
    // instantiated. A record that outlived its thread would fill the
    // registry and then leak past it, which the leak checker reports.
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
