// Ascon-Hash and Ascon-HashA through the digest dispatcher (options 0xAF, 0xBF).
#include <gtest/gtest.h>

#include <vector>

#include "test_support.h"
#include "vector_reader.h"

TEST(AsconDigest, HashBytesMatchesTheKnownAnswers) {
    struct File {
        const char* name;
        int32_t option;
    };
    const File files[] = {{"ascon-v1.2/Ascon-Hash_v1.2_LWC_HASH_KAT_256.txt", OPT_HASH_ASCON_HASH},
                          {"ascon-v1.2/Ascon-HashA_v1.2_LWC_HASH_KAT_256.txt", OPT_HASH_ASCON_HASHA}};
    for (const File& f : files) {
        auto records = ReadVectorFile(f.name);
        ASSERT_FALSE(records.empty());
        for (const auto& r : records) {
            std::vector<uint8_t> msg = r.Bytes("Msg"), out(32);
            ASSERT_EQ(HASH_Bytes(out.data(), 32, msg.empty() ? nullptr : msg.data(), int32_t(msg.size()), f.option), 32);
            ASSERT_EQ(out, r.Bytes("MD")) << f.name << " line " << r.line;
        }
    }
    // The empty message, and the double flag, which does nothing above nibble 7.
    uint8_t out[32];
    ASSERT_EQ(HASH_Bytes(out, 32, nullptr, 0, OPT_HASH_ASCON_HASH | OPT_HASH_DOUBLE), 32);
    EXPECT_EQ(ToHex(out, 32), "7346bc14f036e87ae03d0997913088f5f68411434b3cf8b54fa796a80d251f91");
}
