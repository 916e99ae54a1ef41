// The zstd size ceiling against zstd itself, the wipe passes on an open
// file, and the seal of the library file on synthetic images.
#include <gtest/gtest.h>
#include <unistd.h>
#include <zstd.h>

#include <string>
#include <vector>

#include "frame/integrity.h"
#include "test_support.h"
#include "util/compress.h"
#include "util/wipe_file.h"

namespace {
using ByteVector = std::vector<uint8_t>;

ByteVector Sample(size_t n, uint32_t seed) {
    ByteVector v(n);
    for (size_t i = 0; i < n; ++i) {
        seed = seed * 1664525u + 1013904223u;
        v[i] = (seed >> 29) < 5 ? uint8_t('a' + (seed >> 29)) : uint8_t(seed >> 20);
    }
    return v;
}
}  // namespace

TEST(CompressInternal, ZstdCeilingHoldsForItsDensestFrames) {
    // Runs of one byte are zstd's best case: the ceiling on claimed sizes
    // must never refuse what zstd itself produces.
    for (size_t n : {size_t(1) << 17, size_t(1) << 20, size_t(24) << 20}) {
        ByteVector zeros(n), frame(ZSTD_compressBound(n));
        for (int level : {1, 19}) {
            size_t length = ZSTD_compress(frame.data(), frame.size(), zeros.data(), n, level);
            ASSERT_FALSE(ZSTD_isError(length));
            EXPECT_LE(uint64_t(n), ZstdContentCeiling(int32_t(length))) << n << " level " << level;
        }
    }
}

// The passes overwrite in place: a wipe that only truncated would pass
// the export's checks but leave the data on disk.
TEST(WipeInternal, PassesLeaveZerosOfTheSameSize) {
    for (bool fast : {false, true}) {
        char name[] = "/tmp/verimond_passXXXXXX";
        int fd = mkstemp(name);
        ASSERT_GE(fd, 0);
        ByteVector data(9000, 0xC3), back(data.size() + 10, 0xEE);
        ASSERT_EQ(write(fd, data.data(), data.size()), ssize_t(data.size()));
        EXPECT_EQ(WipeFilePasses(fd, fast), 0);
        ASSERT_EQ(pread(fd, back.data(), back.size(), 0), ssize_t(data.size()));
        back.resize(data.size());
        EXPECT_EQ(back, ByteVector(data.size(), 0)) << (fast ? "fast" : "full");
        close(fd);
        unlink(name);
    }
}

namespace {
const uint8_t kMarker[kSealMarkerSize] = {'t', 'e', 's', 't', ' ', 'm', 'a', 'r', 'k', 'e', 'r', 0, 1, 2, 3, 4};

// An image with the marker at `at`, sealed as the build tool seals.
ByteVector SealedImage(size_t size, size_t at) {
    ByteVector image = Sample(size, 7);
    std::copy(kMarker, kMarker + kSealMarkerSize, image.begin() + ptrdiff_t(at));
    size_t offset = 0;
    EXPECT_TRUE(FindSealDigest(image.data(), image.size(), kMarker, &offset));
    EXPECT_EQ(offset, at + kSealMarkerSize);
    SealDigestOfImage(image.data(), image.size(), offset, image.data() + offset);
    return image;
}
}  // namespace

TEST(IntegrityInternal, SealedProgramPassesItsOwnCheck) {
    // This program is sealed after its link as the library is.
    EXPECT_TRUE(ModuleIntegrityOk());
}

TEST(IntegrityInternal, EveryChangedByteBreaksTheSeal) {
    ByteVector image = SealedImage(300, 250);
    const uint8_t* stored = image.data() + 266;
    ByteVector expected(stored, stored + 32);
    EXPECT_TRUE(ImageMatchesSeal(image.data(), image.size(), kMarker, expected.data()));
    for (size_t i = 0; i < image.size(); ++i) {
        ByteVector changed = image;
        changed[i] ^= 0x01;
        EXPECT_FALSE(ImageMatchesSeal(changed.data(), changed.size(), kMarker, expected.data())) << "byte " << i;
    }
    // The digest the loaded code holds must also be the one in the file.
    ByteVector other = expected;
    other[31] ^= 1;
    EXPECT_FALSE(ImageMatchesSeal(image.data(), image.size(), kMarker, other.data()));
    ByteVector longer = image;
    longer.push_back(0);
    EXPECT_FALSE(ImageMatchesSeal(longer.data(), longer.size(), kMarker, expected.data()));
}

TEST(IntegrityInternal, MarkerMustBeThereOnceWithRoomForTheDigest) {
    size_t offset = 0;
    const std::pair<const char*, std::vector<size_t>> cases[] = {
        {"missing", {}}, {"twice", {10, 100}}, {"no room for the digest", {170}}};
    for (const auto& [what, places] : cases) {
        ByteVector image = Sample(200, 3);
        for (size_t at : places) std::copy(kMarker, kMarker + 16, image.begin() + ptrdiff_t(at));
        EXPECT_FALSE(FindSealDigest(image.data(), image.size(), kMarker, &offset)) << what;
    }
}
