// The zstd size ceiling against zstd itself, the wipe passes on an open
// file, and the seal of the library file on synthetic images.
#include <gtest/gtest.h>
#include <fcntl.h>
#include <unistd.h>
#include <zstd.h>

#include "child_run.h"
#include "frame/integrity.h"
#include "test_support.h"
#include "util/compress.h"
#include "util/wipe_file.h"

// Runs of one byte are zstd's best case: the ceiling on claimed sizes must
// never refuse what zstd itself produces.
TEST(CompressInternal, ZstdCeilingHoldsForItsDensestFrames) {
    for (size_t n : {size_t(1) << 17, size_t(1) << 20, size_t(24) << 20}) {
        ByteVec zeros(n), frame(ZSTD_compressBound(n));
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
    TempDir dir;
    for (bool fast : {false, true}) {
        const std::string path = dir.Write("victim", ByteVec(9000, 0xC3));
        const int fd = open(path.c_str(), O_RDWR);
        EXPECT_EQ(WipeFilePasses(fd, fast), 0);
        close(fd);
        EXPECT_EQ(ReadWholeFile(path), std::string(9000, '\0')) << (fast ? "fast" : "full");
    }
}

namespace {
const uint8_t kMarker[kSealMarkerSize] = {'t', 'e', 's', 't', ' ', 'm', 'a', 'r', 'k', 'e', 'r', 0, 1, 2, 3, 4};

// An image with the marker at `at`, sealed as the build tool seals.
ByteVec SealedImage(size_t size, size_t at) {
    ByteVec image = Pattern(size, 7);
    std::copy(kMarker, kMarker + kSealMarkerSize, image.begin() + ptrdiff_t(at));
    size_t offset = 0;
    EXPECT_TRUE(FindSealDigest(image.data(), image.size(), kMarker, &offset));
    EXPECT_EQ(offset, at + kSealMarkerSize);
    SealDigestOfImage(image.data(), image.size(), offset, image.data() + offset);
    return image;
}
}  // namespace

// This program is sealed after its link as the library is.
TEST(IntegrityInternal, SealedProgramPassesItsOwnCheck) { EXPECT_TRUE(ModuleIntegrityOk()); }

TEST(IntegrityInternal, EveryChangedByteBreaksTheSeal) {
    ByteVec image = SealedImage(300, 250);
    const uint8_t* stored = image.data() + 266;
    ByteVec expected(stored, stored + 32);
    EXPECT_TRUE(ImageMatchesSeal(image.data(), image.size(), kMarker, expected.data()));
    for (size_t i = 0; i < image.size(); ++i) {
        ByteVec changed = image;
        changed[i] ^= 0x01;
        EXPECT_FALSE(ImageMatchesSeal(changed.data(), changed.size(), kMarker, expected.data())) << "byte " << i;
    }
    // The digest the loaded code holds must also be the one in the file.
    ByteVec other = expected;
    other[31] ^= 1;
    EXPECT_FALSE(ImageMatchesSeal(image.data(), image.size(), kMarker, other.data()));
    ByteVec longer = image;
    longer.push_back(0);
    EXPECT_FALSE(ImageMatchesSeal(longer.data(), longer.size(), kMarker, expected.data()));
}

TEST(IntegrityInternal, MarkerMustBeThereOnceWithRoomForTheDigest) {
    size_t offset = 0;
    const std::pair<const char*, std::vector<size_t>> cases[] = {
        {"missing", {}}, {"twice", {10, 100}}, {"no room for the digest", {170}}};
    for (const auto& [what, places] : cases) {
        ByteVec image = Pattern(200, 3);
        for (size_t at : places) std::copy(kMarker, kMarker + 16, image.begin() + ptrdiff_t(at));
        EXPECT_FALSE(FindSealDigest(image.data(), image.size(), kMarker, &offset)) << what;
    }
}
