// Runs the sweep tables and checks that together they call every export.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <set>
#include <thread>

#include "child_run.h"
#include "sweep.h"

namespace sweep {

Buffers::Buffers() {
    for (int i = 0; i < 256; ++i) in[i] = uint8_t(i * 7 + 1);
    for (int i = 0; i < 64; ++i) key[i] = uint8_t(0xA0 + i);
    for (int i = 0; i < 32; ++i) iv[i] = uint8_t(0x30 + i);
    std::fill(std::begin(out), std::end(out), 0);
    std::fill(std::begin(text), std::end(text), 0);
}

Buffers& Buf() {
    static Buffers b;
    return b;
}

Files::Files() {
    char name[] = "/tmp/verimond_sweepXXXXXX";
    dir = mkdtemp(name) ? name : "/tmp";
    existing = dir + "/existing.bin";
    empty = dir + "/empty.bin";
    missing = dir + "/missing.bin";
    out = dir + "/out.bin";
    noDir = dir + "/no/such/dir/file.bin";
    std::ofstream(existing, std::ios::binary) << std::string(100, 'x');
    std::ofstream(empty, std::ios::binary).flush();
}

Files::~Files() {
    for (const std::string& f : {existing, empty, out, dir + "/seed.bin", dir + "/report.txt"}) unlink(f.c_str());
    rmdir(dir.c_str());
}

Files& Fs() {
    static Files f;
    return f;
}

int32_t FromOtherThread(const std::function<int32_t()>& init) {
    int32_t handle = 0;
    std::thread([&] { handle = init(); }).join();
    return handle;
}

void RunTable(const Table& rows) {
    for (const Row& row : rows) {
        if (!row.expect.ok) {
            // Returning at all is the failure.
            EXPECT_EQ(RunInChild([&] { return row.call(), 0; }).exitStatus, 1) << row.name;
            continue;
        }
        int32_t got = row.call();
        EXPECT_TRUE(row.expect.ok(got)) << row.name << ": got " << got << ", expected " << row.expect.what;
    }
}

void AddHandleRows(Table& rows, const Stateful& s) {
    const std::string use = s.use, end = s.end;
    rows.push_back({use + " handle 0", [s] { return s.call(0); }, Is(s.refused)});
    rows.push_back({use + " ended handle", [s] {
        int32_t h = s.init();
        s.finish(h);
        return s.call(h);
    }, Is(s.refused)});
    rows.push_back({end + " twice", [s] {
        int32_t h = s.init();
        s.finish(h);
        return s.finish(h);
    }, Is(s.refused)});
    rows.push_back({use + " handle of another thread", [s] {
        int32_t own = s.init();
        int32_t other = FromOtherThread(s.init);
        return other == own ? s.refused : s.call(other);
    }, Is(s.refused)});
    rows.push_back({use + " handle of another family", [s] {
        s.finish(s.init());
        return s.call(s.foreign());
    }, Is(s.refused)});
}

namespace {
// The export a row calls: the first word of its name with an underscore.
std::string ExportName(const Row& row) {
    static const std::regex word("[A-Z][A-Z0-9]*_[A-Za-z0-9]+");
    std::smatch m;
    return std::regex_search(row.name, m, word) ? m.str() : row.name;
}
}  // namespace

// Every table runs, and together the tables call every name of the export list.
TEST(Sweep, EveryExportOverItsTable) {
    const std::pair<const char*, Table (*)()> families[] = {
        {"frame and conversion", FrameAndConversionRows}, {"digests", DigestRows},
        {"MACs and derivation", MacAndDerivationRows},    {"block families", BlockFamilyRows},
        {"generic cipher", CipherRows},                   {"stream", StreamRows},
        {"authenticated", AeadRows},                      {"random", RandomRows},
        {"utilities", UtilityRows},
    };
    std::set<std::string> called;
    for (const auto& [family, make] : families) {
        SCOPED_TRACE(family);
        const Table rows = make();
        RunTable(rows);
        for (const Row& row : rows) called.insert(ExportName(row));
    }
    std::ifstream list(std::string(VERIMOND_SWEEP_EXPORTS));
    ASSERT_TRUE(list.good());
    std::string name;
    int count = 0;
    while (list >> name) {
        ++count;
        EXPECT_TRUE(called.count(name)) << name << " has no sweep row";
    }
    EXPECT_EQ(count, 237);
}

}  // namespace sweep
