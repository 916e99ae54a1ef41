// Entropy pools, events and draws. See entropy.h for the sharing rules.
#include "rng/entropy.h"

#include <array>
#include <cstring>

#include "frame/frame.h"
#include "rng/machine.h"
#include "util/wipe.h"

SharedRngState g_sharedRng;
int32_t g_poolLockEnabled = 0;

namespace {
template <typename T>
T LoadRelaxed(const T* p) {
    return __atomic_load_n(p, __ATOMIC_RELAXED);
}
template <typename T>
void StoreRelaxed(T* p, T v) {
    __atomic_store_n(p, v, __ATOMIC_RELAXED);
}

// Takes the library lock only when the flag asks for it.
struct PoolGuard {
    bool held;
    PoolGuard() : held(LoadRelaxed(&g_poolLockEnabled) != 0) {
        if (held) LibraryLock();
    }
    ~PoolGuard() {
        if (held) LibraryUnlock();
    }
};

// Copies up to 32 bytes in a few word moves. A generic copy of a few bytes
// (a call, or a string move, which the compiler likes to make of any copy
// loop) would cost more than the rest of the stir.
inline void CopySmall(uint8_t* to, const uint8_t* from, uint32_t n) {
    if (n >= 8) {
        for (uint32_t i = 0; i + 8 < n; i += 8) {
            std::memcpy(to + i, from + i, 8);
            __asm__("" : "+r"(i));  // keeps the loop a loop
        }
        std::memcpy(to + n - 8, from + n - 8, 8);
    } else if (n >= 4) {
        std::memcpy(to, from, 4);
        std::memcpy(to + n - 4, from + n - 4, 4);
    } else {
        for (uint32_t i = 0; i < n; ++i) to[i] = from[i];
    }
}

// Appends bytes to a shared running hash, a run at a time up to the end of
// its block. The buffer position is read once per run and masked, so a
// racing writer can change values but never the bounds.
void PoolAbsorb(EntropyPool* pool, const uint8_t* data, uint32_t length) {
    Sha512Context* ctx = &pool->hash;
    StoreRelaxed(&pool->byteCount, LoadRelaxed(&pool->byteCount) + length);
    while (length != 0) {
        uint64_t bits = LoadRelaxed(&ctx->countLow);
        uint32_t at = uint32_t(bits >> 3) & 127;
        uint32_t run = length < 128 - at ? length : 128 - at;
        CopySmall(ctx->block + at, data, run);
        StoreRelaxed(&ctx->countLow, bits + 8 * uint64_t(run));
        if (at + run == 128) Sha512Compress(ctx->h, ctx->block);
        data += run;
        length -= run;
    }
}

constexpr uint64_t kCrc64Poly = 0xD000000000000001ull;

constexpr uint64_t Crc64Step(uint64_t r, uint8_t byte) {
    r ^= byte;
    for (int bit = 0; bit < 8; ++bit) r = (r >> 1) ^ ((r & 1) ? kCrc64Poly : 0);
    return r;
}

constexpr std::array<uint64_t, 256> MakeCrc64Table() {
    std::array<uint64_t, 256> table{};
    for (uint32_t i = 0; i < 256; ++i) table[i] = Crc64Step(0, uint8_t(i));
    return table;
}
constexpr std::array<uint64_t, 256> kCrc64Table = MakeCrc64Table();

// The CRC is linear, so the CRC of a 32-byte record whose first eight bytes
// are a word and the rest zero is the exclusive-or of one entry per nibble
// of the word: entry [k][v] is the CRC of such a record with nibble k = v.
constexpr std::array<std::array<uint64_t, 16>, 16> MakeWordNibbleTable() {
    std::array<std::array<uint64_t, 16>, 16> table{};
    for (int k = 0; k < 16; ++k) {
        for (uint32_t v = 0; v < 16; ++v) {
            uint64_t r = 0;
            for (int i = 0; i < 32; ++i) {
                uint8_t byte = i == k / 2 ? uint8_t(v << (4 * (k % 2))) : 0;
                r = (r >> 8) ^ kCrc64Table[(r ^ byte) & 0xFF];
            }
            table[k][v] = r;
        }
    }
    return table;
}
constexpr std::array<std::array<uint64_t, 16>, 16> kCrc64WordNibbles = MakeWordNibbleTable();

void AddTimeEvents(EntropyPools* pools, uint32_t tick) {
    // The coarse clocks serve: the value is only entropy, and the load
    // event that follows carries the cycle count.
    uint32_t low = uint32_t(SystemTimeCoarse100ns());
    AddEvent(pools, kSourceSystemTime, &low, 4);
    AddEvent(pools, kSourceTickCount, &tick, 4);
}

void AddLoadEvent(EntropyPools* pools, uint32_t tick) {
    uint64_t crc = MachineLoadDigest(tick);
    AddEvent(pools, kSourceMachineLoad, &crc, 8);
}
}  // namespace

void InitPools(EntropyPools* pools) {
    for (EntropyPool& p : pools->pool) {
        Sha512Start(&p.hash);
        StoreRelaxed(&p.byteCount, 0u);
    }
}

SharedRngState* LinkSharedState(DrbgState* state) {
    // The stored link is informational: the one shared record is returned
    // whatever the field holds, so a damaged field is never followed.
    SharedRngState* shared = &g_sharedRng;
    if (LoadRelaxed(&state->shared) == nullptr) {
        if (LoadRelaxed(&shared->instantiations) == 0) InitPools(&shared->pools);
        StoreRelaxed(&state->shared, shared);
    }
    return shared;
}

void AddEvent(EntropyPools* pools, uint8_t source, const void* data, uint32_t length) {
    if (source >= kEventSources) return;
    if (length > kEventCap) length = kEventCap;
    if (data == nullptr) length = 0;
    PoolGuard guard;  // no copy of the event is made, so none needs wiping
    uint8_t* next = &pools->nextPool[source];
    uint32_t index = LoadRelaxed(next) & (kPoolCount - 1);
    StoreRelaxed(next, uint8_t((index + 1) & (kPoolCount - 1)));
    EntropyPool* pool = &pools->pool[index];
    Sha512Context* ctx = &pool->hash;
    uint64_t bits = LoadRelaxed(&ctx->countLow);
    uint32_t at = uint32_t(bits >> 3) & 127;
    if (at + 2 + length < 128) {
        // The usual case: the whole event fits in the block before its end,
        // and goes in with one update of the counts.
        ctx->block[at] = source;
        ctx->block[at + 1] = uint8_t(length);
        CopySmall(ctx->block + at + 2, static_cast<const uint8_t*>(data), length);
        StoreRelaxed(&ctx->countLow, bits + 8 * uint64_t(2 + length));
        StoreRelaxed(&pool->byteCount, LoadRelaxed(&pool->byteCount) + 2 + length);
        return;
    }
    const uint8_t header[2] = {source, uint8_t(length)};
    PoolAbsorb(pool, header, 2);
    PoolAbsorb(pool, static_cast<const uint8_t*>(data), length);
}

bool PoolsReady(const EntropyPools* pools, uint64_t now100ns) {
    if (LoadRelaxed(&pools->pool[0].byteCount) < 32) return false;
    uint32_t nowHigh = uint32_t(now100ns >> 32), nowLow = uint32_t(now100ns);
    uint32_t lastHigh = LoadRelaxed(&pools->lastReseedHigh);
    uint32_t lastLow = LoadRelaxed(&pools->lastReseedLow);
    if (nowHigh > lastHigh) return true;
    return nowHigh == lastHigh && nowLow >= lastLow && (nowLow - lastLow) / 10000 >= 101;
}

uint32_t ReseedFromPools(EntropyPools* pools, uint8_t* output, int force) {
    PoolGuard guard;
    uint64_t now = MonotonicTime100ns();
    uint32_t count = LoadRelaxed(&pools->reseedCount);
    if (force != 1 && count != 0 && !PoolsReady(pools, now)) return 0;
    ++count;
    StoreRelaxed(&pools->reseedCount, count);
    StoreRelaxed(&pools->lastReseedHigh, uint32_t(now >> 32));
    StoreRelaxed(&pools->lastReseedLow, uint32_t(now));

    uint32_t used = 0;
    for (int i = 0; i < kPoolCount; ++i) {
        if (i > 0 && (count & ((1u << i) - 1)) != 0) break;  // pool i joins every 2^i-th draw
        EntropyPool* p = &pools->pool[i];
        uint32_t serial = LoadRelaxed(&p->serial) + 1;
        StoreRelaxed(&p->serial, serial);
        // Finish a private copy: other threads may keep writing the pool.
        Sha512Context snapshot;
        std::memcpy(&snapshot, &p->hash, sizeof snapshot);
        uint8_t serialBytes[4];
        std::memcpy(serialBytes, &serial, 4);
        Sha512Update(&snapshot, serialBytes, 4);
        Sha512Final(output + 64 * used, &snapshot);
        WipeObject(snapshot);
        // Pool contents do not chain from one draw to the next.
        Sha512Start(&p->hash);
        StoreRelaxed(&p->byteCount, 0u);
        ++used;
    }
    return 64 * used;
}

void GatherLight(EntropyPools* pools) {
    uint32_t tick = TickCountMs();
    AddTimeEvents(pools, tick);
    AddLoadEvent(pools, tick);
}

void GatherFull(EntropyPools* pools) {
    uint32_t tick = TickCountMs();
    AddTimeEvents(pools, tick);
    AddLoadEvent(pools, tick);
    uint32_t blocks;
    if (FreeDiskBlocks(&blocks)) AddEvent(pools, kSourceFreeDisk, &blocks, 4);
    uint8_t power[12];
    if (PowerStatusRecord(power)) {
        uint64_t crc = Crc64Digest(power, sizeof power);
        AddEvent(pools, kSourcePower, &crc, 8);
    }
    AddTimeEvents(pools, TickCountMs());
}

void DigestEvent(uint8_t output[64], const uint8_t* data, uint32_t length) {
    Sha512Context ctx;
    uint8_t h[64];
    Sha512Start(&ctx);
    Sha512Update(&ctx, data, length);
    Sha512Final(h, &ctx);
    Sha512Start(&ctx);
    Sha512Update(&ctx, h, 20);
    Sha512Update(&ctx, data, length);
    Sha512Final(output, &ctx);
    SecureWipe(h, sizeof h);
    WipeObject(ctx);
}

void FeedAdditional(SharedRngState* shared, const uint8_t* data, uint32_t length) {
    if (data == nullptr || length == 0) return;
    uint8_t digest[64];
    DigestEvent(digest, data, length);
    AddEvent(&shared->pools, kSourceAdditional, digest, 32);
    SecureWipe(digest, sizeof digest);
}

uint64_t Crc64Digest(const uint8_t* data, uint32_t length) {
    uint64_t r = 0;
    for (uint32_t i = 0; i < length; ++i) r = (r >> 8) ^ kCrc64Table[(r ^ data[i]) & 0xFF];
    return r;
}

uint64_t Crc64LeadingWord(uint64_t word) {
    uint64_t r = 0;
    for (int k = 0; k < 16; ++k) r ^= kCrc64WordNibbles[k][(word >> (4 * k)) & 15];
    return r;
}

int32_t LoadHardwareWord(const SharedRngState* shared) { return LoadRelaxed(&shared->hardware); }
void StoreHardwareWord(SharedRngState* shared, int32_t word) { StoreRelaxed(&shared->hardware, word); }

void StirEntropy(int mode) {
    int m = mode % 2;  // the sign stays: a negative odd mode does nothing
    if (m < 0) return;
    SharedRngState* shared = LinkSharedState(&GetThreadState()->rng);
    if (m == 0) {
        GatherLight(&shared->pools);
        return;
    }
    GatherFull(&shared->pools);
    int32_t hardware = LoadHardwareWord(shared);
    if (hardware != 0 && hardware != -1) {
        uint32_t word = HardwareRandomWord(hardware);
        if (word != 0) AddEvent(&shared->pools, kSourceHardware, &word, 4);
        SecureWipe(&word, sizeof word);
    }
}

void ZeroSharedRngState() { SecureWipe(&g_sharedRng, sizeof g_sharedRng); }

uint32_t RngLiveInstances() { return LoadRelaxed(&g_sharedRng.liveInstances); }
