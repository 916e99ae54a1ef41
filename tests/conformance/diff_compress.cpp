// Compression round trips against zlib and zstd called directly: what the
// library packs, they restore, and what they pack, the library restores.
#include <zlib.h>
#include <zstd.h>

#include <algorithm>
#include <string>

#include "registry.h"

namespace {

// Text-like data, so that it compresses: words from a small vocabulary, with
// a random run now and then.
ByteVec Compressible(Random& rng, size_t n) {
    static const char* words[] = {"alpha ", "beta ", "gamma ", "delta\n", "epsilon ", "zeta, ", "eta. "};
    ByteVec v;
    while (v.size() < n) {
        if (rng.Between(0, 9) == 0) {
            ByteVec noise = rng.Bytes(size_t(rng.Between(1, 20)));
            v.insert(v.end(), noise.begin(), noise.end());
        } else {
            const char* w = words[rng.Between(0, 6)];
            v.insert(v.end(), w, w + std::char_traits<char>::length(w));
        }
    }
    v.resize(n);
    return v;
}

size_t Length(long i) {
    static const size_t large[] = {65535, 65536, 262147, 1 << 20};
    return i < 400 ? size_t(i * 13) : large[i % 4];
}

}  // namespace

CONFORMANCE_SUITE(Differential, Compression, 420, "zlib (RFC 1950) and Zstandard streams, both ways",
                  "zlib compress2/uncompress and zstd ZSTD_compress/ZSTD_decompress, called directly; 0 to 5 KB "
                  "and up to 1 MB of compressible data",
                  "ZLIB_Deflate ZLIB_Inflate COMPR_Compress COMPR_Uncompress") {
    Random rng(0x5eed0030);
    for (long i = 0; i < 420; ++i) {
        check.Case();
        const ByteVec plain = Compressible(rng, Length(i));
        const std::string where = CaseName(rng, i, std::to_string(plain.size()) + " bytes");
        const int32_t size = Size(plain);

        // Ours packed, theirs restored.
        ByteVec packed(plain.size() + plain.size() / 100 + 64), back(plain.size() + 1);
        int32_t n = ZLIB_Deflate(packed.data(), Size(packed), NonNull(plain), size);
        uLongf restored = back.size();
        bool ok = n > 0 && uncompress(back.data(), &restored, packed.data(), uLong(n)) == Z_OK;
        check.True(ok && restored == plain.size() && std::equal(plain.begin(), plain.end(), back.begin()),
                   "zlib does not restore ZLIB_Deflate", where);
        for (int32_t format : {OPT_COMPR_ZLIB, OPT_COMPR_ZSTD}) {
            ByteVec zpacked(ZSTD_compressBound(plain.size()) + 64);
            n = COMPR_Compress(zpacked.data(), Size(zpacked), NonNull(plain), size, format);
            if (format == OPT_COMPR_ZLIB) {
                restored = back.size();
                ok = n > 0 && uncompress(back.data(), &restored, zpacked.data(), uLong(n)) == Z_OK &&
                     restored == plain.size();
            } else {
                size_t r = n > 0 ? ZSTD_decompress(back.data(), back.size(), zpacked.data(), size_t(n)) : 1;
                ok = n > 0 && !ZSTD_isError(r) && r == plain.size();
            }
            check.True(ok && std::equal(plain.begin(), plain.end(), back.begin()),
                       "reference does not restore COMPR_Compress format " + std::to_string(format), where);
        }

        // Theirs packed, ours restored.
        uLongf zlen = compressBound(uLong(plain.size()));
        ByteVec theirs(zlen);
        compress2(theirs.data(), &zlen, NonNull(plain), uLong(plain.size()), rng.Between(1, 9));
        n = ZLIB_Inflate(back.data(), Size(back), theirs.data(), int32_t(zlen));
        check.True(n == size && std::equal(plain.begin(), plain.end(), back.begin()),
                   "ZLIB_Inflate: " + std::to_string(n), where);
        n = COMPR_Uncompress(back.data(), Size(back), theirs.data(), int32_t(zlen), OPT_COMPR_ZLIB);
        check.True(n == size && std::equal(plain.begin(), plain.end(), back.begin()),
                   "COMPR_Uncompress zlib: " + std::to_string(n), where);
        ByteVec zs(ZSTD_compressBound(plain.size()));
        size_t zn = ZSTD_compress(zs.data(), zs.size(), NonNull(plain), plain.size(), rng.Between(1, 9));
        n = COMPR_Uncompress(back.data(), Size(back), zs.data(), int32_t(zn), OPT_COMPR_ZSTD);
        check.True(n == size && std::equal(plain.begin(), plain.end(), back.begin()),
                   "COMPR_Uncompress zstd: " + std::to_string(n), where);
    }
}
