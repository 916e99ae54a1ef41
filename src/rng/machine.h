// Facts of the machine and the process that feed the generator: clocks,
// load, disk and power records, the machine fingerprint, the time nonce and
// the hardware generator instructions.
#pragma once
#include <cstdint>

struct SharedRngState;

// Wall-clock time as a count of 100 ns units since 1601-01-01.
uint64_t SystemTime100ns();
// The same at the coarse clock's resolution (a few ms), for a fraction of
// the cost; for values that are only entropy.
uint64_t SystemTimeCoarse100ns();
// Monotonic time in 100 ns units; immune to clock steps, used for timing.
uint64_t MonotonicTime100ns();
// Milliseconds since boot, at the coarse clock's resolution; wraps.
uint32_t TickCountMs();

// A 32-byte record of machine load: a cycle count and a system load snapshot
// shared by all threads and taken again when 50 ms old by nowMs (a
// TickCountMs value). Always succeeds.
void MachineLoadRecord(uint8_t record[32], uint32_t nowMs);
// Crc64Digest of the record that MachineLoadRecord would give now, without
// walking it: the snapshot's part is kept with the snapshot.
uint64_t MachineLoadDigest(uint32_t nowMs);
// Free blocks on the file system of the working directory (low 32 bits), as
// of a look at most 50 ms old.
bool FreeDiskBlocks(uint32_t* count);
// A 12-byte record of power supply state, as of a look at most 50 ms old;
// false (cheaply, after the first look) on a machine that has no power
// supply entries.
bool PowerStatusRecord(uint8_t record[12]);

// 64 bytes: SHA-512 over a fixed label, selected environment variables,
// the user and host names and the file system id of the working directory.
void MachineFingerprint(uint8_t output[64]);
// Fills the nonce's four little-endian words: on the first instantiation of
// the process time high, time low, process id and 1 (and remembers the first
// three); later only the fourth word, with the new count. Returns the count.
uint32_t TimeNonce(SharedRngState* shared, uint8_t nonce[16]);

// CPUID: bit 1 RDRAND, bit 2 RDSEED, -1 for none. Only the "GenuineIntel"
// vendor counts; any other gives -1 even when it has the instructions.
int32_t DetectRngHardware();
// One 32-bit word: RDSEED when bit 2 is set, else RDRAND when bit 1 is set,
// else 0. The carry flag is not tested and nothing is retried.
uint32_t HardwareRandomWord(int32_t hardware);
