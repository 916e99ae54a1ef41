// Machine and process facts for the generator, on Linux.
#include "rng/machine.h"

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/statvfs.h>
#include <sys/sysinfo.h>
#include <time.h>
#include <unistd.h>

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#include <x86intrin.h>
#define VERIMOND_X86 1
#endif

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "digest/sha512.h"
#include "frame/frame.h"
#include "rng/entropy.h"
#include "util/wipe.h"

namespace {
constexpr uint64_t kUnixTo1601 = 11644473600ull;  // seconds from 1601 to 1970

uint64_t ClockNanoseconds(clockid_t clock) {
    struct timespec ts;
    if (clock_gettime(clock, &ts) != 0) return 0;
    return uint64_t(ts.tv_sec) * 1000000000ull + uint64_t(ts.tv_nsec);
}

uint64_t CycleCount() {
#ifdef VERIMOND_X86
    return __rdtsc();
#else
    return ClockNanoseconds(CLOCK_MONOTONIC);
#endif
}

// The system facts change slowly, and a system call on every stir would cost
// more than the rest of the stir: one snapshot serves every thread for up to
// 50 ms. Threads race on it freely; each field is read and written whole.
constexpr uint32_t kSnapshotMs = 50;

struct FactSnapshot {
    uint32_t takenAt;    // tick count of the last look, plus one (0: never)
    uint64_t words[3];   // load, memory and processes
    uint64_t wordsCrc;   // Crc64Digest of the 24 bytes of words
};
FactSnapshot g_load;

struct DiskSnapshot {
    uint32_t takenAt;  // as above
    uint32_t blocks;
    uint32_t ok;
};
DiskSnapshot g_disk;

template <typename T>
T Relaxed(const T* p) {
    return __atomic_load_n(p, __ATOMIC_RELAXED);
}
template <typename T>
void SetRelaxed(T* p, T v) {
    __atomic_store_n(p, v, __ATOMIC_RELAXED);
}

bool SnapshotStale(const uint32_t* takenAt, uint32_t nowMs) {
    uint32_t taken = Relaxed(takenAt);
    return taken == 0 || nowMs + 1 - taken >= kSnapshotMs;
}

void RefreshLoad(uint32_t nowMs) {
    struct sysinfo info;
    uint64_t words[3] = {};
    if (sysinfo(&info) == 0) {
        words[0] = (uint64_t(info.loads[0]) << 32) ^ uint64_t(info.loads[1]);
        words[1] = uint64_t(info.freeram) ^ (uint64_t(info.bufferram) << 20);
        words[2] = (uint64_t(info.procs) << 48) ^ uint64_t(info.uptime) ^ (uint64_t(info.freeswap) << 8);
    } else {
        for (int i = 0; i < 3; ++i) words[i] = Relaxed(&g_load.words[i]);
    }
    for (int i = 0; i < 3; ++i) SetRelaxed(&g_load.words[i], words[i]);
    SetRelaxed(&g_load.wordsCrc, Crc64Digest(reinterpret_cast<const uint8_t*>(words), sizeof words));
    SetRelaxed(&g_load.takenAt, nowMs + 1);
}

// Up to four supplies under /sys/class/power_supply, found once.
struct PowerSupplies {
    int count;
    char path[4][300];
};

const PowerSupplies& FindPowerSupplies() {
    static const PowerSupplies supplies = [] {
        PowerSupplies s{};
        DIR* dir = opendir("/sys/class/power_supply");
        if (dir == nullptr) return s;
        while (struct dirent* e = readdir(dir)) {
            if (e->d_name[0] == '.' || s.count == 4) continue;
            std::snprintf(s.path[s.count], sizeof s.path[0], "/sys/class/power_supply/%s/", e->d_name);
            ++s.count;
        }
        closedir(dir);
        return s;
    }();
    return supplies;
}

// Reads a small sysfs value; false when the file is absent.
bool ReadSysValue(const char* dir, const char* name, char* text, size_t size) {
    char path[320];
    std::snprintf(path, sizeof path, "%s%s", dir, name);
    int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    ssize_t n = read(fd, text, size - 1);
    close(fd);
    if (n <= 0) return false;
    text[n] = '\0';
    return true;
}

// User and host names change rarely and cost a lookup; found once.
struct Identity {
    char user[512];
    uint32_t userLength;  // with its NUL, as the system reports it; 0 if unknown
    char host[512];
    uint32_t hostLength;  // without the NUL; 0 if unknown
};

const Identity& FindIdentity() {
    static const Identity identity = [] {
        Identity id{};
        struct passwd pw;
        struct passwd* found = nullptr;
        char buffer[2048];
        if (getpwuid_r(geteuid(), &pw, buffer, sizeof buffer, &found) == 0 && found != nullptr &&
            found->pw_name != nullptr) {
            size_t n = std::strlen(found->pw_name);
            if (n < sizeof id.user) {
                std::memcpy(id.user, found->pw_name, n + 1);
                id.userLength = uint32_t(n + 1);
            }
        }
        if (gethostname(id.host, sizeof id.host - 1) == 0) id.hostLength = uint32_t(std::strlen(id.host));
        return id;
    }();
    return identity;
}

void HashText(Sha512Context* ctx, const char* text) {
    Sha512Update(ctx, reinterpret_cast<const uint8_t*>(text), uint32_t(std::strlen(text)));
}
}  // namespace

uint64_t SystemTime100ns() { return ClockNanoseconds(CLOCK_REALTIME) / 100 + kUnixTo1601 * 10000000ull; }

uint64_t SystemTimeCoarse100ns() {
    return ClockNanoseconds(CLOCK_REALTIME_COARSE) / 100 + kUnixTo1601 * 10000000ull;
}

uint64_t MonotonicTime100ns() { return ClockNanoseconds(CLOCK_MONOTONIC) / 100; }

uint32_t TickCountMs() { return uint32_t(ClockNanoseconds(CLOCK_MONOTONIC_COARSE) / 1000000); }

void MachineLoadRecord(uint8_t record[32], uint32_t nowMs) {
    if (SnapshotStale(&g_load.takenAt, nowMs)) RefreshLoad(nowMs);
    uint64_t cycles = CycleCount();
    std::memcpy(record, &cycles, 8);
    for (int i = 0; i < 3; ++i) {
        uint64_t w = Relaxed(&g_load.words[i]);
        std::memcpy(record + 8 + 8 * i, &w, 8);
    }
}

uint64_t MachineLoadDigest(uint32_t nowMs) {
    if (SnapshotStale(&g_load.takenAt, nowMs)) RefreshLoad(nowMs);
    // The record's CRC from its two parts: the cycle count now, and the CRC
    // of the snapshot, made when it was taken.
    return Crc64LeadingWord(CycleCount()) ^ Relaxed(&g_load.wordsCrc);
}

bool FreeDiskBlocks(uint32_t* count) {
    uint32_t now = TickCountMs();
    if (SnapshotStale(&g_disk.takenAt, now)) {
        struct statvfs info;
        bool ok = statvfs(".", &info) == 0;
        if (ok) SetRelaxed(&g_disk.blocks, uint32_t(info.f_bavail));
        SetRelaxed(&g_disk.ok, uint32_t(ok));
        SetRelaxed(&g_disk.takenAt, now + 1);
    }
    if (Relaxed(&g_disk.ok) == 0) return false;
    *count = Relaxed(&g_disk.blocks);
    return true;
}

namespace {
void ReadPowerRecord(const PowerSupplies& supplies, uint8_t record[12]) {
    std::memset(record, 0, 12);
    char text[64];
    for (int i = 0; i < supplies.count; ++i) {
        const char* dir = supplies.path[i];
        if (ReadSysValue(dir, "online", text, sizeof text)) record[0] = uint8_t(record[0] * 2 + std::atoi(text));
        if (ReadSysValue(dir, "status", text, sizeof text)) record[1] ^= uint8_t(text[0]);
        if (ReadSysValue(dir, "capacity", text, sizeof text)) record[2] ^= uint8_t(std::atoi(text));
        uint32_t energy = 0, voltage = 0;
        if (ReadSysValue(dir, "energy_now", text, sizeof text) || ReadSysValue(dir, "charge_now", text, sizeof text))
            energy = uint32_t(std::strtoul(text, nullptr, 10));
        if (ReadSysValue(dir, "voltage_now", text, sizeof text)) voltage = uint32_t(std::strtoul(text, nullptr, 10));
        for (int b = 0; b < 4; ++b) {
            record[4 + b] ^= uint8_t(energy >> (8 * b));
            record[8 + b] ^= uint8_t(voltage >> (8 * b));
        }
    }
}

struct PowerSnapshot {
    uint32_t takenAt;     // as for the load snapshot
    uint64_t record[2];   // the 12 bytes, zero-filled to 16
};
PowerSnapshot g_power;
}  // namespace

bool PowerStatusRecord(uint8_t record[12]) {
    const PowerSupplies& supplies = FindPowerSupplies();
    if (supplies.count == 0) return false;
    uint32_t now = TickCountMs();
    if (SnapshotStale(&g_power.takenAt, now)) {
        uint8_t fresh[16] = {};
        ReadPowerRecord(supplies, fresh);
        uint64_t words[2];
        std::memcpy(words, fresh, 16);
        SetRelaxed(&g_power.record[0], words[0]);
        SetRelaxed(&g_power.record[1], words[1]);
        SetRelaxed(&g_power.takenAt, now + 1);
    }
    uint64_t words[2] = {Relaxed(&g_power.record[0]), Relaxed(&g_power.record[1])};
    std::memcpy(record, words, 12);
    return true;
}

void MachineFingerprint(uint8_t output[64]) {
    static const char* const kVariables[] = {"USERNAME", "COMPUTERNAME", "USERDOMAIN", "HOMEPATH",
                                             "PROCESSOR_IDENTIFIER", "NUMBER_OF_PROCESSORS", "USER",
                                             "LOGNAME", "HOME", "PWD", "SHELL", "WINDOWSID", "TERM", "PATH"};
    Sha512Context ctx;
    Sha512Start(&ctx);
    HashText(&ctx, "verimond-prng-v2.1.0");
    for (const char* name : kVariables) {
        const char* value = std::getenv(name);
        if (value == nullptr) continue;
        HashText(&ctx, name);
        HashText(&ctx, "=");
        HashText(&ctx, value);
    }
    const Identity& id = FindIdentity();
    if (id.userLength != 0) Sha512Update(&ctx, reinterpret_cast<const uint8_t*>(id.user), id.userLength);
    if (id.hostLength != 0) Sha512Update(&ctx, reinterpret_cast<const uint8_t*>(id.host), id.hostLength);
    struct statvfs info;
    if (statvfs(".", &info) == 0) {
        uint32_t serial = uint32_t(info.f_fsid);
        Sha512Update(&ctx, reinterpret_cast<const uint8_t*>(&serial), 4);
    }
    Sha512Final(output, &ctx);
    WipeObject(ctx);
}

uint32_t TimeNonce(SharedRngState* shared, uint8_t nonce[16]) {
    bool locked = __atomic_load_n(&g_poolLockEnabled, __ATOMIC_RELAXED) != 0;
    if (locked) LibraryLock();
    uint64_t now = SystemTime100ns();
    uint32_t pid = uint32_t(getpid());
    uint32_t expected = 0;
    uint32_t count;
    if (__atomic_compare_exchange_n(&shared->instantiations, &expected, 1u, false, __ATOMIC_RELAXED,
                                    __ATOMIC_RELAXED)) {
        uint32_t words[3] = {uint32_t(now >> 32), uint32_t(now), pid};
        shared->firstTimeHigh = words[0];
        shared->firstTimeLow = words[1];
        shared->firstProcessId = words[2];
        std::memcpy(nonce, words, 12);
        count = 1;
    } else {
        count = __atomic_add_fetch(&shared->instantiations, 1u, __ATOMIC_RELAXED);
    }
    std::memcpy(nonce + 12, &count, 4);
    if (locked) LibraryUnlock();
    return count;
}

int32_t DetectRngHardware() {
#ifdef VERIMOND_X86
    unsigned maxLeaf = __get_cpuid_max(0, nullptr);
    if (maxLeaf == 0) return -1;  // no CPUID
    unsigned a, b, c, d;
    __cpuid(0, a, b, c, d);
    char vendor[13];
    std::memcpy(vendor, &b, 4);
    std::memcpy(vendor + 4, &d, 4);
    std::memcpy(vendor + 8, &c, 4);
    vendor[12] = '\0';
    if (std::strcmp(vendor, "GenuineIntel") != 0) return -1;
    int32_t word = 0;
    __cpuid(1, a, b, c, d);
    if (c & (1u << 30)) word |= 1;
    if (maxLeaf >= 7) {
        __cpuid_count(7, 0, a, b, c, d);
        if (b & (1u << 18)) word |= 2;
    }
    return word == 0 ? -1 : word;
#else
    return -1;
#endif
}

uint32_t HardwareRandomWord(int32_t hardware) {
    uint32_t word = 0;
#ifdef VERIMOND_X86
    if (hardware <= 0) return 0;
    if (hardware & 2) {
        __asm__ volatile("rdseed %0" : "+r"(word) : : "cc");
    } else if (hardware & 1) {
        __asm__ volatile("rdrand %0" : "+r"(word) : : "cc");
    }
#endif
    return word;
}
