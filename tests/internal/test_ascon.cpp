// Ascon-Hash, Ascon-HashA, Ascon-XOF and Ascon-XOFA against the v1.2
// known-answer files (the AEAD modes are tested through AEAD_...WithTag).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "aead/ascon.h"
#include "test_support.h"
#include "vector_reader.h"

namespace {
using ByteVec = std::vector<uint8_t>;
}

TEST(AsconDigests, KnownAnswers) {
    struct File {
        const char* name;
        bool xof;
        int flag;
    };
    const File files[] = {{"ascon-v1.2/Ascon-Hash_v1.2_LWC_HASH_KAT_256.txt", false, 0},
                          {"ascon-v1.2/Ascon-HashA_v1.2_LWC_HASH_KAT_256.txt", false, 1},
                          {"ascon-v1.2/Ascon-XOF_v1.2_LWC_HASH_KAT_256.txt", true, 0},
                          {"ascon-v1.2/Ascon-XOFA_v1.2_LWC_HASH_KAT_256.txt", true, 1}};
    for (const File& f : files) {
        auto records = ReadVectorFile(f.name);
        ASSERT_EQ(records.size(), 1025u) << f.name;
        for (const auto& r : records) {
            ByteVec msg = r.Bytes("Msg"), expected = r.Bytes("MD"), out(32);
            if (f.xof) {
                ASSERT_EQ(AsconXof(out.data(), 32, msg.data(), msg.size(), f.flag), 0);
            } else {
                ASSERT_EQ(AsconHash(out.data(), msg.data(), msg.size(), f.flag), 0);
            }
            ASSERT_EQ(out, expected) << f.name << " line " << r.line;
        }
    }
}

TEST(AsconDigests, XofLengthsAreOneStream) {
    // Every length is a prefix of the longer ones: 8 bytes need no run after
    // absorbing, 9 need one, and nothing past the requested length is written.
    const ByteVec msg = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
    for (int flag : {0, 1}) {
        ByteVec longest(100);
        AsconXof(longest.data(), longest.size(), msg.data(), msg.size(), flag);
        for (size_t n : {0u, 1u, 7u, 8u, 9u, 16u, 17u, 33u, 99u}) {
            ByteVec out(n + 4, 0xee);
            AsconXof(out.data(), n, msg.data(), msg.size(), flag);
            EXPECT_EQ(ByteVec(out.begin(), out.begin() + long(n)), ByteVec(longest.begin(), longest.begin() + long(n)));
            EXPECT_EQ(ByteVec(out.begin() + long(n), out.end()), ByteVec(4, 0xee)) << "length " << n;
        }
    }
}
