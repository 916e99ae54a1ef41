// Seals a freshly linked libverimond: writes into its seal field the SHA-256
// of the file taken with that field's digest as zeros, the value the library
// checks its own file against at load. Run after every link, before anything
// else may touch the file; running it twice gives the same file.
//
//   verimond_seal LIBRARY
#include <cstdio>
#include <vector>

#include "frame/integrity.h"

namespace {
bool ReadWhole(const char* path, std::vector<uint8_t>* bytes) {
    std::FILE* f = std::fopen(path, "rb");
    if (f == nullptr) return false;
    uint8_t block[65536];
    size_t n;
    while ((n = std::fread(block, 1, sizeof block, f)) > 0) bytes->insert(bytes->end(), block, block + n);
    bool ok = !std::ferror(f);
    std::fclose(f);
    return ok;
}
}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s LIBRARY\n", argv[0]);
        return 2;
    }
    const char* path = argv[1];
    std::vector<uint8_t> image;
    if (!ReadWhole(path, &image)) {
        std::fprintf(stderr, "%s: cannot read %s\n", argv[0], path);
        return 1;
    }
    uint8_t marker[kSealMarkerSize];
    SealMarker(marker);
    size_t offset = 0;
    if (!FindSealDigest(image.data(), image.size(), marker, &offset)) {
        std::fprintf(stderr, "%s: %s holds no single seal field\n", argv[0], path);
        return 1;
    }
    uint8_t digest[kSealDigestSize];
    SealDigestOfImage(image.data(), image.size(), offset, digest);
    std::FILE* f = std::fopen(path, "r+b");
    bool ok = f != nullptr && std::fseek(f, long(offset), SEEK_SET) == 0 &&
              std::fwrite(digest, 1, sizeof digest, f) == sizeof digest;
    if (f != nullptr && std::fclose(f) != 0) ok = false;
    if (!ok) {
        std::fprintf(stderr, "%s: cannot write the seal into %s\n", argv[0], path);
        return 1;
    }
    return 0;
}
