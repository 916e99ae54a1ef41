// Conformance runner: one test per registered suite. With --registry it
// prints the registry instead, one tab-separated line per suite, for
// tests/conformance/coverage.py.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <iostream>

#include "registry.h"

std::vector<Suite>& Registry() {
    static std::vector<Suite> suites;
    return suites;
}

bool RegisterSuite(const Suite& s) {
    Registry().push_back(s);
    return true;
}

bool Checker::Equal(const std::string& got, const std::string& want, const std::string& where) {
    if (got == want) return true;
    if (++failures_ <= 10) ADD_FAILURE() << where << "\n  got:      " << got << "\n  expected: " << want;
    return false;
}

bool Checker::True(bool ok, const std::string& what, const std::string& where) {
    if (ok) return true;
    if (++failures_ <= 10) ADD_FAILURE() << where << ": " << what;
    return false;
}

std::vector<VectorRecord> ReadSet(Checker& check, const std::string& file) {
    auto records = ReadVectorFile(file);
    check.True(!records.empty(), "no records read", file);
    return records;
}

Random::Random(uint64_t seed) : seed_(seed) {
    if (const char* env = std::getenv("VERIMOND_SEED")) seed_ = std::strtoull(env, nullptr, 0);
    engine_.seed(seed_);
}

ByteVec Random::Bytes(size_t n) {
    ByteVec v(n);
    for (auto& b : v) b = uint8_t(engine_());
    return v;
}

namespace {
class SuiteTest : public ::testing::Test {
public:
    explicit SuiteTest(const Suite& s) : suite_(s) {}
    void TestBody() override {
        Checker check;
        suite_.run(check);
        if (!check.skipReason().empty()) GTEST_SKIP() << check.skipReason();
        if (check.failures() > 10) ADD_FAILURE() << check.failures() << " failures in all";
        EXPECT_EQ(check.cases(), suite_.expected) << "cases checked";
        std::cout << "[ checked  ] " << check.cases() << " cases\n";
    }

private:
    const Suite& suite_;
};
}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--registry") != 0) continue;
        for (const Suite& s : Registry())
            std::cout << s.group << '\t' << s.name << '\t' << s.expected << '\t' << s.algorithms << '\t' << s.source
                      << '\t' << s.exports << '\n';
        return 0;
    }
    ::testing::InitGoogleTest(&argc, argv);
    for (const Suite& s : Registry()) {
        ::testing::RegisterTest(s.group, s.name, nullptr, nullptr, __FILE__, __LINE__,
                                [&s]() -> ::testing::Test* { return new SuiteTest(s); });
    }
    return RUN_ALL_TESTS();
}
