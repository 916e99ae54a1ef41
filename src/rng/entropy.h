// The shared entropy store: 32 accumulating SHA-512 pools in the manner of
// Fortuna, fed by small events on nearly every exported call and drawn on a
// schedule in which pool i takes part in every 2^i-th draw.
//
// The store is shared by every thread and written without a lock (the flag
// g_poolLockEnabled stays 0). Races cost only entropy mixing: every index
// into the store is loaded once and masked, so no interleaving can reach
// outside it, and no pointer lives in it.
#pragma once
#include <cstdint>

#include "digest/sha512.h"
#include "rng/drbg_state.h"

constexpr int kPoolCount = 32;
constexpr int kEventSources = 9;          // source numbers 0..8
constexpr uint32_t kPoolDrawRoom = 2048;  // 32 pools x 64 bytes
constexpr uint32_t kEventCap = 32;

// Event sources.
constexpr uint8_t kSourceSystemTime = 0;
constexpr uint8_t kSourceTickCount = 1;
constexpr uint8_t kSourceMachineLoad = 2;
constexpr uint8_t kSourceFreeDisk = 3;
constexpr uint8_t kSourcePower = 4;
constexpr uint8_t kSourceAdditional = 7;
constexpr uint8_t kSourceHardware = 8;

struct EntropyPool {
    Sha512Context hash;  // running, restarted at each draw
    uint32_t byteCount;  // bytes hashed since the last draw
    uint32_t serial;     // draws of this pool
};

struct EntropyPools {
    uint32_t reseedCount;  // draws so far
    uint32_t lastReseedHigh, lastReseedLow;  // monotonic time of the last draw, 100 ns units
    EntropyPool pool[kPoolCount];
    uint8_t nextPool[kEventSources];  // where each source's next event goes
};

struct SharedRngState {
    uint32_t firstTimeHigh, firstTimeLow;  // system time of the first instantiation
    uint32_t firstProcessId;
    uint32_t instantiations;  // ever, in this process
    uint32_t liveInstances;   // instantiated generators now
    int32_t hardware;         // 0 unknown, -1 none or switched off, else bit 1 RDRAND, bit 2 RDSEED
    EntropyPools pools;
};

extern SharedRngState g_sharedRng;
// When set, pool writes take the library lock. Nothing sets it.
extern int32_t g_poolLockEnabled;

// Links the generator to the shared state on first use and returns it. Until
// the first instantiation has counted, every link restarts all pool hashes.
SharedRngState* LinkSharedState(DrbgState* state);
void InitPools(EntropyPools* pools);

// Hashes source number, capped length and the first 32 bytes of data into
// the source's next pool.
void AddEvent(EntropyPools* pools, uint8_t source, const void* data, uint32_t length);
// Writes 64 bytes per pool drawn into output (room for 2048) and returns the
// count; 0 when the pools are not ready and force is not 1. The first draw
// is always served.
uint32_t ReseedFromPools(EntropyPools* pools, uint8_t* output, int force);
// Readiness for an unforced draw at the given monotonic time.
bool PoolsReady(const EntropyPools* pools, uint64_t now100ns);

// Light: system time, tick count, machine load. Full: these, free disk
// space, power status, then time and tick again.
void GatherLight(EntropyPools* pools);
void GatherFull(EntropyPools* pools);

// h = SHA-512(data); output = SHA-512(h[0..19] || data): 64 bytes.
void DigestEvent(uint8_t output[64], const uint8_t* data, uint32_t length);
// Condenses data and adds 32 bytes of it as a source-7 event; nothing for
// null data or a zero length.
void FeedAdditional(SharedRngState* shared, const uint8_t* data, uint32_t length);
// Bit-serial CRC with a 64-bit register (reflected, 0xD000000000000001, no
// final XOR), done a byte at a time. Only condenses records to 8 bytes.
uint64_t Crc64Digest(const uint8_t* data, uint32_t length);
// Crc64Digest of a 32-byte record that holds word (little-endian) in its
// first eight bytes and zeros after them, by table, without the byte walk.
// With the CRC's linearity, the CRC of a record is this for its first word,
// exclusive-or the CRC of its last 24 bytes.
uint64_t Crc64LeadingWord(uint64_t word);

int32_t LoadHardwareWord(const SharedRngState* shared);
void StoreHardwareWord(SharedRngState* shared, int32_t word);

// Zeroes the whole shared state byte by byte (process detach).
void ZeroSharedRngState();
// Generators instantiated now, for the module diagnostics.
uint32_t RngLiveInstances();
