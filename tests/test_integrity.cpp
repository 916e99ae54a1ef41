// The load-time self-check of the library file: a copy of the library with
// one byte changed anywhere must refuse to load (report, exit status 1), and
// an unchanged copy loads.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "child_run.h"
#include "test_support.h"

namespace {
std::string LoadedLibraryPath() {
    char path[300];
    int32_t n = API_ModuleName(path, 299, 0);
    return n > 0 ? std::string(path, size_t(n)) : std::string();
}

// Loads a library file in a forked child: 0 when it loaded, 3 when the
// loader itself refused it, else whatever the library's load made of it.
ChildOutcome LoadInChild(const std::string& path) {
    return RunInChild([&] { return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL) != nullptr ? 0 : 3; });
}
}  // namespace

TEST(Integrity, ChangedLibraryRefusesToLoad) {
    std::string original = ReadWholeFile(LoadedLibraryPath());
    ASSERT_GT(original.size(), 10000u);
    size_t seal = original.find("Verimond seal");
    ASSERT_NE(seal, std::string::npos);
    size_t comment = original.rfind("GCC:");
    ASSERT_NE(comment, std::string::npos);

    char dirName[] = "/tmp/verimond_sealXXXXXX";
    ASSERT_NE(mkdtemp(dirName), nullptr);
    std::string copy = std::string(dirName) + "/libverimond.so.6";

    // Each row flips one bit at a place the loader itself never reads or
    // only maps, so that the refusal can only come from the library's check.
    struct Case {
        const char* what;
        size_t offset;  // npos: no change
        int exitStatus;
    } cases[] = {
        {"unchanged copy", std::string::npos, 0},
        {"build note text", comment + 1, 1},
        {"last byte of the file", original.size() - 1, 1},
        {"digest of the seal", seal + 16 + 7, 1},
        {"marker of the seal", seal + 2, 1},
        {"unchanged again", std::string::npos, 0},
    };
    for (const Case& c : cases) {
        std::string bytes = original;
        if (c.offset != std::string::npos) bytes[c.offset] = char(bytes[c.offset] ^ 0x10);
        {
            std::ofstream out(copy, std::ios::binary | std::ios::trunc);
            out.write(bytes.data(), std::streamsize(bytes.size()));
        }
        ChildOutcome outcome = LoadInChild(copy);
        EXPECT_EQ(outcome.exitStatus, c.exitStatus) << c.what;
        if (c.exitStatus == 0) {
            EXPECT_EQ(outcome.log, "") << c.what;
        } else {
            EXPECT_EQ(outcome.console, "Verimond: Failed module integrity check. Application terminated\n") << c.what;
            EXPECT_NE(outcome.log.find("Verimond (c0001f41) Failed module integrity check. Application terminated\n"),
                      std::string::npos) << c.what << ": " << outcome.log;
        }
    }
    unlink(copy.c_str());
    rmdir(dirName);
}
