#include "util/wipe_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "verimond.h"

namespace {
// The overwrite patterns need no quality, only variety between runs. The
// sequence is the classic runtime rand() (15-bit outputs), kept here rather
// than in the C library's rand so that wiping a file does not reseed the
// host program's own sequence.
struct WipeRandState {
    uint32_t state;
};

uint8_t WipeRandByte(WipeRandState* r) {
    r->state = r->state * 214013u + 2531011u;
    return uint8_t((r->state >> 16) & 0x7fff);
}

bool WriteAll(int fd, const uint8_t* data, size_t length) {
    while (length > 0) {
        ssize_t n = write(fd, data, length);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        data += n;
        length -= size_t(n);
    }
    return true;
}

// From the start, block after block, the last one cut to what remains; then
// the commit, so the pattern is on the disk before the next pass starts.
bool WritePass(int fd, int64_t size, const uint8_t* block) {
    if (lseek(fd, 0, SEEK_SET) != 0) return false;
    for (int64_t done = 0; done < size;) {
        size_t n = size_t(std::min<int64_t>(kWipeBlockSize, size - done));
        if (!WriteAll(fd, block, n)) return false;
        done += int64_t(n);
    }
    return fsync(fd) == 0;
}

// Reads the file back against the repeated block. A read that gives nothing
// before the end (the file shrank) fails like a differing byte.
bool VerifyPass(int fd, int64_t size, const uint8_t* block) {
    if (lseek(fd, 0, SEEK_SET) != 0) return false;
    uint8_t buffer[kWipeBlockSize];
    for (int64_t done = 0; done < size;) {
        size_t at = size_t(done % kWipeBlockSize);
        size_t want = size_t(std::min<int64_t>(kWipeBlockSize - int64_t(at), size - done));
        ssize_t n = read(fd, buffer, want);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        if (std::memcmp(buffer, block + at, size_t(n)) != 0) return false;
        done += n;
    }
    return true;
}

bool FillAndWrite(int fd, int64_t size, uint8_t* block, int value) {
    std::memset(block, value, kWipeBlockSize);
    return WritePass(fd, size, block);
}
}  // namespace

int32_t WipeFilePasses(int fd, bool fast) {
    struct stat status;
    if (fstat(fd, &status) != 0) return OPEN_ERROR;
    // Devices, pipes and the like have no contents of their own to destroy,
    // and removing a device node is never what a caller means.
    if (!S_ISREG(status.st_mode)) return OPEN_ERROR;
    int64_t size = int64_t(status.st_size);
    if (size == 0) return 0;

    WipeRandState rand{uint32_t(std::clock()) ^ (uint32_t(std::time(nullptr)) << 8)};
    uint8_t block[kWipeBlockSize];
    if (!FillAndWrite(fd, size, block, 0x00) || !VerifyPass(fd, size, block)) return WIPE_ERROR;
    if (fast) return 0;
    if (!FillAndWrite(fd, size, block, 0xFF) || !FillAndWrite(fd, size, block, 0xAA) ||
        !FillAndWrite(fd, size, block, 0x55)) {
        return WIPE_ERROR;
    }
    for (int pass = 0; pass < 2; ++pass) {
        for (uint8_t& b : block) b = WipeRandByte(&rand);
        if (!WritePass(fd, size, block)) return WIPE_ERROR;
    }
    if (!VerifyPass(fd, size, block)) return WIPE_ERROR;
    if (!FillAndWrite(fd, size, block, 0x00)) return WIPE_ERROR;
    return 0;
}

int32_t WipeFileByName(const char* fileName, bool fast) {
    if (fileName == nullptr) return NULL_ERROR;
    std::FILE* f = std::fopen(fileName, "r+b");
    if (f == nullptr) return OPEN_ERROR;
    int32_t result = WipeFilePasses(fileno(f), fast);
    std::fflush(f);
    std::fclose(f);
    if (result != 0) return result;
    // Emptied before the removal, so that no other name of the file keeps
    // its length. The name itself is not overwritten or changed.
    std::FILE* emptied = std::fopen(fileName, "w");
    if (emptied != nullptr) std::fclose(emptied);
    if (std::remove(fileName) != 0) return WIPE_ERROR;
    return 0;
}
