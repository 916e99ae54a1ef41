#include "frame/integrity.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "digest/sha256.h"
#include "frame/errors.h"
#include "util/ct.h"

namespace {
// The only identifier of the message range that no other report uses.
constexpr uint32_t kEventIntegrityFailed = 0xC0001F41u;
constexpr char kIntegrityFailedText[] = "Failed module integrity check. Application terminated";

// Larger than any build of the library; a bigger file is not ours.
constexpr size_t kImageLimit = size_t(256) << 20;

struct SealField {
    uint8_t marker[kSealMarkerSize];
    uint8_t digest[kSealDigestSize];
};

// In a section of its own so that it is found whole in the file. The
// initial digest is not zero so that the field is stored in the file (not
// left to zero-filled memory), and an unsealed build fails its check.
// volatile: the compiler must read the field from the image, never fold the
// initial values into the code (which would also copy the marker elsewhere).
__attribute__((section(".verimond_seal"), used, aligned(16)))
volatile const SealField g_moduleSeal = {
    {'V', 'e', 'r', 'i', 'm', 'o', 'n', 'd', ' ', 's', 'e', 'a', 'l', 0xA7, 0x3C, 0xE1},
    {0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A,
     0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0x5A},
};

void StoredDigest(uint8_t digest[kSealDigestSize]) {
    for (size_t i = 0; i < kSealDigestSize; ++i) digest[i] = g_moduleSeal.digest[i];
}

void HashPiece(Sha256Context* ctx, const uint8_t* data, size_t length) {
    // The core takes 32-bit lengths; images stay far below that, but the
    // loop keeps the function correct for any size.
    while (length > 0) {
        uint32_t n = length > 0x40000000u ? 0x40000000u : uint32_t(length);
        Sha256Update(ctx, data, n);
        data += n;
        length -= n;
    }
}

// Maps the file this code was loaded from and checks it. Any failure to
// find or read the file is a failed check.
bool LoadedFileMatchesSeal() {
    Dl_info info;
    const void* self = const_cast<const SealField*>(&g_moduleSeal);
    if (dladdr(self, &info) == 0 || info.dli_fname == nullptr) return false;
    int fd = open(info.dli_fname, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    bool ok = false;
    struct stat status;
    if (fstat(fd, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0 &&
        size_t(status.st_size) <= kImageLimit) {
        size_t size = size_t(status.st_size);
        void* map = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0);
        if (map != MAP_FAILED) {
            uint8_t marker[kSealMarkerSize];
            uint8_t expected[kSealDigestSize];
            SealMarker(marker);
            StoredDigest(expected);
            ok = ImageMatchesSeal(static_cast<const uint8_t*>(map), size, marker, expected);
            munmap(map, size);
        }
    }
    close(fd);
    return ok;
}
}  // namespace

void SealMarker(uint8_t marker[kSealMarkerSize]) {
    for (size_t i = 0; i < kSealMarkerSize; ++i) marker[i] = g_moduleSeal.marker[i];
}

bool FindSealDigest(const uint8_t* image, size_t size, const uint8_t marker[kSealMarkerSize],
                    size_t* digestOffset) {
    if (size < kSealMarkerSize + kSealDigestSize) return false;
    size_t found = 0;
    size_t count = 0;
    const uint8_t* p = image;
    const uint8_t* end = image + size;
    while (p + kSealMarkerSize <= end) {
        const void* hit = memmem(p, size_t(end - p), marker, kSealMarkerSize);
        if (hit == nullptr) break;
        const uint8_t* at = static_cast<const uint8_t*>(hit);
        found = size_t(at - image);
        ++count;
        p = at + 1;
    }
    if (count != 1 || found + kSealMarkerSize + kSealDigestSize > size) return false;
    *digestOffset = found + kSealMarkerSize;
    return true;
}

void SealDigestOfImage(const uint8_t* image, size_t size, size_t digestOffset,
                       uint8_t digest[kSealDigestSize]) {
    static const uint8_t kZeros[kSealDigestSize] = {};
    Sha256Context ctx;
    Sha256Start(&ctx);
    HashPiece(&ctx, image, digestOffset);
    HashPiece(&ctx, kZeros, kSealDigestSize);
    HashPiece(&ctx, image + digestOffset + kSealDigestSize, size - digestOffset - kSealDigestSize);
    Sha256Final(digest, &ctx);  // the file is public: nothing to wipe
}

bool ImageMatchesSeal(const uint8_t* image, size_t size, const uint8_t marker[kSealMarkerSize],
                      const uint8_t expected[kSealDigestSize]) {
    size_t offset = 0;
    if (!FindSealDigest(image, size, marker, &offset)) return false;
    uint8_t computed[kSealDigestSize];
    SealDigestOfImage(image, size, offset, computed);
    int same = CtEqual(computed, expected, kSealDigestSize) & CtEqual(image + offset, expected, kSealDigestSize);
    return same == 1;
}

bool ModuleIntegrityOk() {
    if (LoadedFileMatchesSeal()) return true;
    ReportFatal(kIntegrityFailedText, kEventIntegrityFailed);
    return false;
}
