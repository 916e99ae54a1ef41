// ZLIB_ and COMPR_.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "child_run.h"
#include "test_support.h"
#include "vector_reader.h"

namespace {
constexpr int32_t kZlib = OPT_COMPR_ZLIB, kZstd = OPT_COMPR_ZSTD;

// One format's two directions; format -1 stands for the ZLIB_ pair, which
// latches failures only, where COMPR_ latches every result.
const uint8_t kNone = 0;
const uint8_t* Data(const ByteVec& v) { return v.empty() ? &kNone : v.data(); }  // real even when empty

int32_t Pack(int32_t format, uint8_t* out, int32_t outLength, const ByteVec& in) {
    const uint8_t* p = Data(in);
    return format < 0 ? ZLIB_Deflate(out, outLength, p, int32_t(in.size()))
                      : COMPR_Compress(out, outLength, p, int32_t(in.size()), format);
}
int32_t Unpack(int32_t format, uint8_t* out, int32_t outLength, const ByteVec& in) {
    return format < 0 ? ZLIB_Inflate(out, outLength, Data(in), int32_t(in.size()))
                      : COMPR_Uncompress(out, outLength, Data(in), int32_t(in.size()), format);
}

ByteVec Sample(size_t n, bool compressible) {
    ByteVec v(n);
    uint32_t x = 0x9E3779B9u;
    for (auto& b : v) {
        x = x * 1664525u + 1013904223u;
        b = compressible ? uint8_t("verimond"[x >> 29]) : uint8_t(x >> 24);
    }
    return v;
}
}  // namespace

// zlib's stream at a given level is fixed: ours must be that stream.
TEST(Compress, DeflateGivesZlibsOwnStream) {
    for (const auto& r : ReadVectorFile("compress_reference.txt")) {
        if (r.Get("Format") != "zlib") continue;
        ByteVec plain = r.Bytes("Plain"), packed = r.Bytes("Packed"), ours(packed.size());
        EXPECT_EQ(Pack(-1, ours.data(), int32_t(ours.size()), plain), int32_t(packed.size())) << r.line;
        EXPECT_EQ(ours, packed) << r.line;
    }
}

TEST(Compress, RoundTripsQueriesAndShortOutputs) {
    for (int32_t format : {-1, kZlib, kZstd}) {
        for (size_t n : {0u, 1u, 16383u, 16384u, 16385u, 70000u}) {
            for (bool compressible : {true, false}) {
                SCOPED_TRACE(testing::Message() << "format " << format << ", " << n << " bytes");
                ByteVec plain = Sample(n, compressible);
                int32_t size = Pack(format, nullptr, 0, plain);
                ASSERT_GT(size, 0);
                ByteVec packed(static_cast<size_t>(size));
                ASSERT_EQ(Pack(format, packed.data(), size, plain), size);
                EXPECT_EQ(API_ErrorCode(), format < 0 ? 0 : size);
                EXPECT_EQ(Pack(format, packed.data(), size - 1, plain), -SHORT_BUF_ERROR);

                EXPECT_EQ(Unpack(format, nullptr, 0, packed), int32_t(n));
                ByteVec out(n + 64, 0xA5);
                EXPECT_EQ(Unpack(format, out.data(), int32_t(n), packed), int32_t(n));
                EXPECT_TRUE(std::equal(plain.begin(), plain.end(), out.begin()));
                if (n > 1) {
                    std::fill(out.begin(), out.end(), 0xA5);
                    EXPECT_EQ(Unpack(format, out.data(), int32_t(n - 1), packed), -SHORT_BUF_ERROR);
                    EXPECT_EQ(ByteVec(out.begin() + ptrdiff_t(n - 1), out.end()), ByteVec(65, 0xA5));
                }
            }
        }
    }
}

TEST(Compress, CorruptTruncatedAndHostileStreams) {
    ByteVec plain = Sample(3000, true);
    ByteVec zlib(4000), zstd(4000);
    zlib.resize(size_t(Pack(kZlib, zlib.data(), 4000, plain)));
    zstd.resize(size_t(Pack(kZstd, zstd.data(), 4000, plain)));
    ByteVec badSum = zlib, zstdJunk = zstd;
    badSum.back() ^= 1;
    zstdJunk.insert(zstdJunk.end(), {0xDE, 0xAD, 0xBE, 0xEF, 0});
    // Hand-made zstd frames: magic 28b52ffd, header, blocks. 190000616263 is a
    // last raw block "abc"; 02001078 a 128 KiB run of 'x' (03001078 if last).
    struct Case { const char* what; int32_t format; ByteVec input; int32_t expected; } cases[] = {
        {"zlib bad checksum", kZlib, badSum, -INVALID_DATA_ERROR},
        {"zlib preset dictionary", kZlib, FromHex("78bb00000001"), -INVALID_DATA_ERROR},
        {"zstd empty", kZstd, {}, -BAD_FORMAT_ERROR},
        {"zstd truncated", kZstd, ByteVec(zstd.begin(), zstd.end() - 1), -ZLIB_COMPR_ERROR},
        {"zstd trailing junk", kZstd, zstdJunk, -ZLIB_COMPR_ERROR},
        {"size stored", kZstd, FromHex("28b52ffd2003190000616263"), 3},
        {"size not stored", kZstd, FromHex("28b52ffd0000190000616263"), -INVALID_DATA_ERROR},
        {"reserved header bit", kZstd, FromHex("28b52ffd2803190000616263"), -BAD_FORMAT_ERROR},
        {"header cut short", kZstd, FromHex("28b52ffde0"), -BAD_FORMAT_ERROR},
        {"skippable frame", kZstd, FromHex("502a4d1803000000616263"), 0},
        {"stored size too small", kZstd, FromHex("28b52ffd2002190000616263"), -ZLIB_COMPR_ERROR},
        {"stored size too large", kZstd, FromHex("28b52ffd2004190000616263"), -ZLIB_COMPR_ERROR},
        // Sizes these few bytes cannot decode to: refused before any allocation.
        {"claims 2^40 bytes", kZstd, FromHex("28b52ffde00000000000010000190000616263"), -ZLIB_COMPR_ERROR},
        {"claims 1 GiB", kZstd, FromHex("28b52ffde00000004000000000190000616263"), -ZLIB_COMPR_ERROR},
        // The densest frame there is, two runs of 128 KiB, still decodes.
        {"dense runs", kZstd, FromHex("28b52ffde000000400000000000200107803001078"), 262144},
    };
    ByteVec out(262144);
    for (const Case& c : cases) {
        EXPECT_EQ(Unpack(c.format, out.data(), int32_t(out.size()), c.input), c.expected) << c.what;
        EXPECT_EQ(Unpack(c.format, nullptr, 0, c.input), c.expected) << c.what << " (query)";
        if (c.format == kZlib) EXPECT_EQ(Unpack(-1, out.data(), int32_t(out.size()), c.input), c.expected) << c.what;
    }
    EXPECT_EQ(out[262143], 'x');
}

TEST(Compress, ZlibExpansionIsBoundedByTheCaller) {
    // 16 MiB of zeros pack into about 16 KiB: the query counts them through its
    // scratch block; a small real buffer stops the inflating at its end.
    ByteVec zeros(size_t(16) << 20), packed(1 << 16);
    packed.resize(size_t(Pack(-1, packed.data(), int32_t(packed.size()), zeros)));
    EXPECT_EQ(Unpack(-1, nullptr, 0, packed), int32_t(zeros.size()));
    ByteVec out(4096 + 64, 0xA5);
    EXPECT_EQ(Unpack(-1, out.data(), 4096, packed), -SHORT_BUF_ERROR);
    EXPECT_EQ(out[4096], 0xA5);
}

TEST(Compress, PlausibleZstdSizeOverTheAllocatorLimitEndsTheProcess) {
    // 8193 runs of 128 KiB claim 0x40020000 bytes, which a frame of this size
    // could truly hold: the allocation is attempted, and it is fatal.
    std::string hex = "28b52ffde00000024000000000";
    for (int i = 0; i < 8192; ++i) hex += "02001078";
    ByteVec frame = FromHex(hex + "03001078");
    ChildOutcome outcome = RunInChild([&] { return Unpack(kZstd, nullptr, 0, frame) == 0 ? 0 : 2; });
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.console, "Verimond: malloc request is too big.\n");
    EXPECT_NE(outcome.log.find("(c000029a) malloc request is too big."), std::string::npos) << outcome.log;
}
