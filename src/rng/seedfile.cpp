// Seed files through plain descriptors. The lock is an open-file-description
// lock, so two threads of one process exclude each other as two processes
// do. The file is changed only while the lock is held, so a refused lock
// leaves it as it was.
#include "rng/seedfile.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cstring>

#include "rng/drbg.h"
#include "rng/machine.h"
#include "util/wipe.h"

SeedLockRetry g_seedLockRetry = {10, 1000};

namespace {
constexpr int32_t kFileOpen = -201;
constexpr int32_t kFileCreate = -202;
constexpr int32_t kFileWrite = -204;
constexpr int32_t kFileLock = -205;

bool SetLock(int fd, short type) {
    struct flock fl;
    std::memset(&fl, 0, sizeof fl);
    fl.l_type = type;
    fl.l_whence = SEEK_SET;
    fl.l_start = 0;
    fl.l_len = kSeedFileSize;
    if (fcntl(fd, F_OFD_SETLK, &fl) == 0) return true;
    // A file system without description locks still has process locks.
    if (errno == EINVAL) return fcntl(fd, F_SETLK, &fl) == 0;
    return false;
}

// Non-blocking open, so a FIFO or device name cannot stall the call, and
// only a regular file is accepted.
int OpenRegular(const char* fileName, int flags) {
    int fd = open(fileName, flags | O_CLOEXEC | O_NONBLOCK, 0600);
    if (fd < 0) return -1;
    struct stat info;
    if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        close(fd);
        return -1;
    }
    return fd;
}

void PauseMs(int ms) {
    struct timespec ts = {ms / 1000, long(ms % 1000) * 1000000L};
    while (nanosleep(&ts, &ts) != 0 && errno == EINTR) {
    }
}

bool LockWithRetry(int fd) {
    for (int attempt = 0; attempt < g_seedLockRetry.tries; ++attempt) {
        if (attempt > 0) PauseMs(g_seedLockRetry.delayMs);
        if (SetLock(fd, F_WRLCK)) return true;
    }
    return false;
}

// Seek to the start, unlock, close.
void Release(int fd) {
    lseek(fd, 0, SEEK_SET);
    SetLock(fd, F_UNLCK);
    close(fd);
}

bool WriteAll(int fd, const uint8_t* data, uint32_t length) {
    uint32_t done = 0;
    while (done < length) {
        ssize_t n = write(fd, data + done, length - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += uint32_t(n);
    }
    return true;
}

void ReadUpTo(int fd, uint8_t* data, uint32_t length) {
    uint32_t done = 0;
    while (done < length) {
        ssize_t n = read(fd, data + done, length - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return;  // short or unreadable: the rest stays zero
        done += uint32_t(n);
    }
}
}  // namespace

int32_t SeedFileCreate(DrbgState* state, const char* fileName, const uint8_t* additional, uint32_t additionalLength) {
    uint8_t seed[kSeedFileSize] = {0};
    DrbgGenerate(state, seed, sizeof seed, additional, additionalLength);
    int32_t result = 0;
    // Truncation waits for the lock: opening with O_TRUNC would empty a
    // file that another holder is using.
    int fd = OpenRegular(fileName, O_WRONLY | O_CREAT);
    if (fd < 0) {
        result = kFileCreate;
    } else if (!LockWithRetry(fd)) {
        close(fd);
        result = kFileLock;
    } else {
        if (ftruncate(fd, 0) != 0 || !WriteAll(fd, seed, sizeof seed)) result = kFileWrite;
        Release(fd);
    }
    SecureWipe(seed, sizeof seed);
    return result;
}

int32_t SeedFileUpdate(DrbgState* state, const char* fileName, bool createIfMissing) {
    // The reseed below must not stand in for an instantiation.
    if (state->reseedCounter == 0) {
        int32_t result = DrbgInstantiatePrimed(state);
        if (result != 0) return result;
    }
    uint8_t seed[kSeedFileSize] = {0};
    uint64_t now = SystemTime100ns();
    uint32_t halves[2] = {uint32_t(now >> 32), uint32_t(now)};
    uint8_t timeBlock[8];
    std::memcpy(timeBlock, halves, sizeof timeBlock);

    int fd = OpenRegular(fileName, O_RDWR);
    if (fd < 0) return createIfMissing ? SeedFileCreate(state, fileName, nullptr, 0) : kFileOpen;
    if (!LockWithRetry(fd)) {
        close(fd);
        return kFileLock;
    }
    ReadUpTo(fd, seed, sizeof seed);
    DrbgReseed(state, seed, sizeof seed, timeBlock, sizeof timeBlock);
    DrbgGenerate(state, seed, sizeof seed, timeBlock, sizeof timeBlock);
    lseek(fd, 0, SEEK_SET);
    int32_t result = WriteAll(fd, seed, sizeof seed) ? 0 : kFileWrite;
    Release(fd);
    SecureWipe(seed, sizeof seed);
    return result;
}
