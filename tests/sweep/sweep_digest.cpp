// Sweep rows: HASH_, SHA3_ and the SHA1_, SHA2_, MD5_ families.
#include "sweep.h"

namespace sweep {

namespace {

// The eleven calls that SHA1_, SHA2_ and MD5_ share.
struct NamedDigest {
    const char* prefix;
    int32_t (*stringHexHash)(char*, const char*);
    int32_t (*fileHexHash)(char*, const char*, const char*);
    int32_t (*bytesHexHash)(char*, const unsigned char*, int32_t);
    int32_t (*bytesHash)(unsigned char*, const unsigned char*, int32_t);
    int32_t (*init)();
    int32_t (*addString)(int32_t, const char*);
    int32_t (*addBytes)(int32_t, const unsigned char*, int32_t);
    int32_t (*hexDigest)(char*, int32_t);
    int32_t (*reset)(int32_t);
    int32_t (*hmac)(char*, const unsigned char*, int32_t, const unsigned char*, int32_t);
    int32_t (*hmacHex)(char*, const char*, const char*);
};

const NamedDigest kNamed[] = {
    {"SHA1_", SHA1_StringHexHash, SHA1_FileHexHash, SHA1_BytesHexHash, SHA1_BytesHash, SHA1_Init, SHA1_AddString,
     SHA1_AddBytes, SHA1_HexDigest, SHA1_Reset, SHA1_Hmac, SHA1_HmacHex},
    {"SHA2_", SHA2_StringHexHash, SHA2_FileHexHash, SHA2_BytesHexHash, SHA2_BytesHash, SHA2_Init, SHA2_AddString,
     SHA2_AddBytes, SHA2_HexDigest, SHA2_Reset, SHA2_Hmac, SHA2_HmacHex},
    {"MD5_", MD5_StringHexHash, MD5_FileHexHash, MD5_BytesHexHash, MD5_BytesHash, MD5_Init, MD5_AddString,
     MD5_AddBytes, MD5_HexDigest, MD5_Reset, MD5_Hmac, MD5_HmacHex},
};

void AddNamedRows(Table& rows, const NamedDigest& f) {
    Buffers& b = Buf();
    char* t = b.text;
    uint8_t* o = b.out;
    const uint8_t* in = b.in;
    const uint8_t* k = b.key;
    auto row = [&](const char* call, const char* what, std::function<int32_t()> fn, Expect e) {
        rows.push_back({std::string(f.prefix) + call + " " + what, std::move(fn), std::move(e)});
    };
    row("StringHexHash", "null text", [=] { return f.stringHexHash(t, nullptr); }, Is(BAD_PARAM_ERROR));
    row("StringHexHash", "null output", [=] { return f.stringHexHash(nullptr, "abc"); }, Is(0));
    row("FileHexHash", "null name", [=] { return f.fileHexHash(t, nullptr, "b"); }, Is(BAD_PARAM_ERROR));
    row("FileHexHash", "empty name", [=] { return f.fileHexHash(t, "", "b"); }, Is(OPEN_ERROR));
    row("FileHexHash", "missing file", [=] { return f.fileHexHash(t, Fs().missing.c_str(), "t"); }, Is(OPEN_ERROR));
    row("FileHexHash", "null mode", [=] { return f.fileHexHash(t, Fs().existing.c_str(), nullptr); }, Is(BAD_PARAM_ERROR));
    row("FileHexHash", "a directory", [=] { return f.fileHexHash(t, Fs().dir.c_str(), ""); }, Is(READ_ERROR));
    row("FileHexHash", "empty file", [=] { return f.fileHexHash(t, Fs().empty.c_str(), "b"); }, Is(0));
    row("BytesHexHash", "negative length", [=] { return f.bytesHexHash(t, in, -1); }, Is(BAD_PARAM_ERROR));
    row("BytesHexHash", "INT32_MIN", [=] { return f.bytesHexHash(t, in, kMin); }, Is(BAD_PARAM_ERROR));
    row("BytesHexHash", "null data, length 0", [=] { return f.bytesHexHash(t, nullptr, 0); }, Is(0));
    row("BytesHexHash", "null data with a length", [=] { return f.bytesHexHash(t, nullptr, 5); }, Is(BAD_PARAM_ERROR));
    row("BytesHash", "null digest", [=] { return f.bytesHash(nullptr, in, 3); }, Is(BAD_PARAM_ERROR));
    row("BytesHash", "negative length", [=] { return f.bytesHash(o, in, -1); }, Is(BAD_PARAM_ERROR));
    row("BytesHash", "null data with a length", [=] { return f.bytesHash(o, nullptr, kMax); }, Is(BAD_PARAM_ERROR));
    row("Init", "", [=] { return f.init(); }, AHandle());
    row("AddString", "handle 0", [=] { return f.addString(0, "abc"); }, Is(INVALID_HANDLE_ERROR));
    row("AddString", "null text", [=] { return f.addString(f.init(), nullptr); }, Is(BAD_PARAM_ERROR));
    row("AddBytes", "handle 0", [=] { return f.addBytes(0, in, 3); }, Is(INVALID_HANDLE_ERROR));
    row("AddBytes", "negative length", [=] { return f.addBytes(f.init(), in, -1); }, Is(BAD_PARAM_ERROR));
    row("AddBytes", "INT32_MIN", [=] { return f.addBytes(f.init(), in, kMin); }, Is(BAD_PARAM_ERROR));
    row("AddBytes", "null data with a length", [=] { return f.addBytes(f.init(), nullptr, 4); }, Is(BAD_PARAM_ERROR));
    row("AddBytes", "null data, length 0", [=] { return f.addBytes(f.init(), nullptr, 0); }, Is(0));
    row("AddBytes", "ended handle", [=] {
        int32_t h = f.init();
        f.reset(h);
        return f.addBytes(h, in, 3);
    }, Is(INVALID_HANDLE_ERROR));
    row("AddBytes", "handle of another thread", [=] {
        int32_t own = f.init();
        int32_t other = FromOtherThread(f.init);
        return other == own ? INVALID_HANDLE_ERROR : f.addBytes(other, in, 3);
    }, Is(INVALID_HANDLE_ERROR));
    row("AddBytes", "handle of another family", [=] {
        f.reset(f.init());
        return f.addBytes(HASH_Init(OPT_HASH_SHA256), in, 3);
    }, Is(INVALID_HANDLE_ERROR));
    row("HexDigest", "handle 0", [=] { return f.hexDigest(t, 0); }, Is(INVALID_HANDLE_ERROR));
    row("HexDigest", "null output", [=] { return f.hexDigest(nullptr, f.init()); }, Is(0));
    row("HexDigest", "second call", [=] {
        int32_t h = f.init();
        f.hexDigest(t, h);
        return f.hexDigest(t, h);
    }, Is(INVALID_HANDLE_ERROR));
    row("Reset", "handle 0", [=] { return f.reset(0); }, Is(INVALID_HANDLE_ERROR));
    row("Reset", "INT32_MIN", [=] { return f.reset(kMin); }, Is(INVALID_HANDLE_ERROR));
    row("Reset", "twice", [=] {
        int32_t h = f.init();
        f.reset(h);
        return f.reset(h);
    }, Is(INVALID_HANDLE_ERROR));
    row("Hmac", "negative data length", [=] { return f.hmac(t, in, -1, k, 3); }, Is(BAD_PARAM_ERROR));
    row("Hmac", "negative key length", [=] { return f.hmac(t, in, 3, k, kMin); }, Is(BAD_PARAM_ERROR));
    row("Hmac", "null data with a length", [=] { return f.hmac(t, nullptr, 3, k, 3); }, Is(BAD_PARAM_ERROR));
    row("Hmac", "null key with a length", [=] { return f.hmac(t, in, 3, nullptr, kMax); }, Is(BAD_PARAM_ERROR));
    row("Hmac", "all empty", [=] { return f.hmac(t, nullptr, 0, nullptr, 0); }, Is(0));
    row("Hmac", "null output", [=] { return f.hmac(nullptr, in, 3, k, 3); }, Is(0));
    row("HmacHex", "null data text", [=] { return f.hmacHex(t, nullptr, "00"); }, Is(BAD_PARAM_ERROR));
    row("HmacHex", "null key text", [=] { return f.hmacHex(t, "00", nullptr); }, Is(BAD_PARAM_ERROR));
    row("HmacHex", "no digits anywhere", [=] { return f.hmacHex(t, "zz-", "?"); }, Is(0));
}

}  // namespace

Table DigestRows() {
    Buffers& b = Buf();
    char* t = b.text;
    uint8_t* o = b.out;
    const uint8_t* in = b.in;
    Table rows = {
        {"HASH_Bytes null message with a length", [=] { return HASH_Bytes(o, 20, nullptr, 5, 0); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_Bytes negative length", [=] { return HASH_Bytes(o, 20, in, -1, 0); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_Bytes INT32_MIN", [=] { return HASH_Bytes(o, 20, in, kMin, 0); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_Bytes null message INT32_MAX", [=] { return HASH_Bytes(o, 20, nullptr, kMax, 3); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_Bytes query, length INT32_MIN", [=] { return HASH_Bytes(o, kMin, in, 3, 3); }, Is(32)},
        {"HASH_Bytes output length INT32_MAX", [=] { return HASH_Bytes(o, kMax, in, 3, 5); }, Is(64)},
        {"HASH_Bytes unassigned nibble 9", [=] { return HASH_Bytes(o, 20, in, 3, 9); }, Is(-BAD_FLAG_ERROR)},
        {"HASH_Bytes unassigned nibble 14", [=] { return HASH_Bytes(nullptr, 0, nullptr, 0, 14); }, Is(-BAD_FLAG_ERROR)},
        // The caller's room stands for the digest length.
        {"HASH_Bytes unknown nibble-15 byte, room of 100", [=] { return HASH_Bytes(o, 100, in, 3, 0x1F); }, Is(100)},
        {"HASH_Bytes unknown nibble-15 byte, query", [=] { return HASH_Bytes(nullptr, 0, in, 3, 0x7F); }, Is(0)},
        {"HASH_Bytes all flags", [=] { return HASH_Bytes(o, 64, in, 3, int32_t(0xFFFFFFF3u)); }, Is(32)},
        {"HASH_Length negative", [] { return HASH_Length(kMin); }, Is(-BAD_FLAG_ERROR)},
        {"HASH_Length flag", [] { return HASH_Length(0x10003); }, Is(-BAD_FLAG_ERROR)},
        {"HASH_Length nibble 15", [] { return HASH_Length(0x1F); }, Is(0x1F)},
        {"HASH_Length Ascon", [] { return HASH_Length(0xBF); }, Is(32)},
        {"HASH_HexFromBytes null message", [=] { return HASH_HexFromBytes(t, 64, nullptr, 3, 3); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_HexFromBytes INT32_MIN", [=] { return HASH_HexFromBytes(t, 64, in, kMin, 3); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_HexFromBytes query", [=] { return HASH_HexFromBytes(nullptr, 64, in, 3, 0xAF); }, Is(64)},
        {"HASH_HexFromBytes output length 1", [=] { return HASH_HexFromBytes(t, 1, in, 3, 3); }, Is(0)},
        {"HASH_HexFromBytes negative length is unbounded", [=] { return HASH_HexFromBytes(t, -1, in, 3, 5); }, Is(128)},
        {"HASH_HexFromBytes INT32_MIN is unbounded", [=] { return HASH_HexFromBytes(t, kMin, in, 3, 3); }, Is(64)},
        {"HASH_HexFromBytes nibble 15 query", [] { return HASH_HexFromBytes(nullptr, 0, nullptr, 0, 0x1F); }, Is(128)},
        {"HASH_HexFromBytes nibble 15, room of 200", [=] { return HASH_HexFromBytes(t, 200, in, 3, 0x1F); }, Is(128)},
        {"HASH_HexFromHex null text", [=] { return HASH_HexFromHex(t, 64, nullptr, 3); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_HexFromHex odd text", [=] { return HASH_HexFromHex(t, 64, "abc", 3); }, Is(-INVALID_DATA_ERROR)},
        {"HASH_HexFromHex not hex", [=] { return HASH_HexFromHex(t, 64, "zz", 3); }, Is(64)},
        {"HASH_HexFromHex query", [] { return HASH_HexFromHex(nullptr, 0, "", 0); }, Is(40)},
        {"HASH_HexFromHex bad nibble", [=] { return HASH_HexFromHex(t, 64, "00", 9); }, Is(-BAD_FLAG_ERROR)},
        {"HASH_HexFromBits null message, 0 bits", [=] { return HASH_HexFromBits(t, 64, nullptr, 0, 3); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_HexFromBits negative bits", [=] { return HASH_HexFromBits(t, 64, in, -1, 3); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_HexFromBits INT32_MIN", [=] { return HASH_HexFromBits(t, 64, in, kMin, 3); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_HexFromBits MD5", [=] { return HASH_HexFromBits(t, 64, in, 8, 1); }, Is(-BAD_FLAG_ERROR)},
        {"HASH_HexFromBits Ascon", [=] { return HASH_HexFromBits(t, 64, in, 8, 0xAF); }, Is(-BAD_FLAG_ERROR)},
        {"HASH_HexFromBits query", [=] { return HASH_HexFromBits(nullptr, 0, in, 13, 13); }, Is(128)},
        {"HASH_HexFromBits output length INT32_MIN", [=] { return HASH_HexFromBits(t, kMin, in, 7, 0); }, Is(40)},
        {"HASH_File null name", [=] { return HASH_File(o, 32, nullptr, 3); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_File empty name", [=] { return HASH_File(o, 32, "", 3); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_File missing, bad nibble", [=] { return HASH_File(o, 32, Fs().missing.c_str(), 9); }, Is(-OPEN_ERROR)},
        {"HASH_File existing, bad nibble", [=] { return HASH_File(o, 32, Fs().existing.c_str(), 9); }, Is(-BAD_FLAG_ERROR)},
        {"HASH_File Ascon", [=] { return HASH_File(o, 32, Fs().existing.c_str(), 0xAF); }, Is(-BAD_FLAG_ERROR)},
        {"HASH_File a directory", [=] { return HASH_File(o, 32, Fs().dir.c_str(), 3); }, Is(32)},
        {"HASH_File query", [=] { return HASH_File(nullptr, kMax, Fs().existing.c_str(), 4); }, Is(48)},
        {"HASH_File output length INT32_MIN", [=] { return HASH_File(o, kMin, Fs().empty.c_str(), 0x10000); }, Is(20)},
        {"HASH_HexFromFile null name", [=] { return HASH_HexFromFile(t, 64, nullptr, 3); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_HexFromFile missing", [=] { return HASH_HexFromFile(t, 64, Fs().missing.c_str(), 3); }, Is(-OPEN_ERROR)},
        {"HASH_HexFromFile query", [=] { return HASH_HexFromFile(nullptr, 0, Fs().existing.c_str(), 3); }, Is(64)},
        {"HASH_HexFromFile output length 3", [=] { return HASH_HexFromFile(t, 3, Fs().existing.c_str(), 3); }, Is(2)},
        {"HASH_HexFromFile output length INT32_MIN", [=] { return HASH_HexFromFile(t, kMin, Fs().existing.c_str(), 3); },
         Is(64)},
        {"HASH_Init MD5", [] { return HASH_Init(OPT_HASH_MD5); }, Is(0)},
        {"HASH_Init nibble 15", [] { return HASH_Init(0xAF); }, Is(0)},
        {"HASH_Init INT32_MIN is SHA-1", [] { return HASH_Init(kMin); }, AHandle()},
        {"HASH_AddBytes handle 0", [=] { return HASH_AddBytes(0, in, 3); }, Is(-INVALID_HANDLE_ERROR)},
        {"HASH_AddBytes null data, length 0", [=] { return HASH_AddBytes(HASH_Init(3), nullptr, 0); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_AddBytes negative length", [=] { return HASH_AddBytes(HASH_Init(3), in, -1); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_AddBytes INT32_MIN", [=] { return HASH_AddBytes(HASH_Init(3), in, kMin); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_AddBytes ended handle", [=] {
             int32_t h = HASH_Init(3);
             HASH_Reset(h);
             return HASH_AddBytes(h, in, 3);
         }, Is(-INVALID_HANDLE_ERROR)},
        {"HASH_AddBytes handle of another thread", [=] {
             int32_t own = HASH_Init(3);
             int32_t other = FromOtherThread([] { return HASH_Init(3); });
             return other == own ? -INVALID_HANDLE_ERROR : HASH_AddBytes(other, in, 3);
         }, Is(-INVALID_HANDLE_ERROR)},
        {"HASH_AddBytes MAC handle", [=] {
             HASH_Reset(HASH_Init(3));
             return HASH_AddBytes(MAC_Init(Buf().key, 16, 3), in, 3);
         }, Is(-INVALID_HANDLE_ERROR)},
        {"HASH_Final null output, dead handle", [] { return HASH_Final(nullptr, 32, 12345); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_Final length 0", [=] { return HASH_Final(o, 0, HASH_Init(3)); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_Final length INT32_MIN", [=] { return HASH_Final(o, kMin, HASH_Init(3)); }, Is(-BAD_PARAM_ERROR)},
        {"HASH_Final handle 0", [=] { return HASH_Final(o, 32, 0); }, Is(-INVALID_HANDLE_ERROR)},
        {"HASH_Final length INT32_MAX", [=] { return HASH_Final(o, kMax, HASH_Init(13)); }, Is(64)},
        {"HASH_Final short", [=] { return HASH_Final(o, 5, HASH_Init(3)); }, Is(5)},
        {"HASH_DigestLength handle 0", [] { return HASH_DigestLength(0); }, Is(-INVALID_HANDLE_ERROR)},
        {"HASH_DigestLength INT32_MAX", [] { return HASH_DigestLength(kMax); }, Is(-INVALID_HANDLE_ERROR)},
        {"HASH_DigestLength open SHA-384", [] { return HASH_DigestLength(HASH_Init(4)); }, Is(48)},
        {"HASH_Reset handle 0", [] { return HASH_Reset(0); }, Is(-INVALID_HANDLE_ERROR)},
        {"HASH_Reset twice", [] {
             int32_t h = HASH_Init(0);
             HASH_Reset(h);
             return HASH_Reset(h);
         }, Is(-INVALID_HANDLE_ERROR)},

        {"SHA3_Init 128", [] { return SHA3_Init(128); }, Is(0)},
        {"SHA3_Init INT32_MIN", [] { return SHA3_Init(kMin); }, Is(0)},
        {"SHA3_Init 512", [] { return SHA3_Init(512); }, AHandle()},
        {"SHA3_AddBytes handle 0", [=] { return SHA3_AddBytes(0, in, 3); }, Is(INVALID_HANDLE_ERROR)},
        {"SHA3_AddBytes negative length", [=] { return SHA3_AddBytes(SHA3_Init(256), in, -1); }, Is(BAD_PARAM_ERROR)},
        {"SHA3_AddBytes INT32_MIN", [=] { return SHA3_AddBytes(SHA3_Init(256), in, kMin); }, Is(BAD_PARAM_ERROR)},
        {"SHA3_AddBytes null data, length 0", [=] { return SHA3_AddBytes(SHA3_Init(256), nullptr, 0); }, Is(0)},
        {"SHA3_AddBytes null data with a length", [=] { return SHA3_AddBytes(SHA3_Init(256), nullptr, 9); },
         Is(BAD_PARAM_ERROR)},
        {"SHA3_AddBytes handle of another thread", [=] {
             int32_t own = SHA3_Init(256);
             int32_t other = FromOtherThread([] { return SHA3_Init(256); });
             return other == own ? INVALID_HANDLE_ERROR : SHA3_AddBytes(other, in, 3);
         }, Is(INVALID_HANDLE_ERROR)},
        {"SHA3_AddString null text", [] { return SHA3_AddString(SHA3_Init(224), nullptr); }, Is(BAD_PARAM_ERROR)},
        {"SHA3_AddString handle 0", [] { return SHA3_AddString(0, "abc"); }, Is(INVALID_HANDLE_ERROR)},
        {"SHA3_HexDigest query ends the stream", [] { return SHA3_HexDigest(nullptr, 0, SHA3_Init(256)); }, Is(64)},
        {"SHA3_HexDigest length INT32_MIN", [=] { return SHA3_HexDigest(t, kMin, SHA3_Init(384)); }, Is(96)},
        {"SHA3_HexDigest length 5", [=] { return SHA3_HexDigest(t, 5, SHA3_Init(256)); }, Is(4)},
        {"SHA3_HexDigest handle 0", [=] { return SHA3_HexDigest(t, 64, 0); }, Is(-INVALID_HANDLE_ERROR)},
        {"SHA3_HexDigest second call", [=] {
             int32_t h = SHA3_Init(256);
             SHA3_HexDigest(nullptr, 0, h);
             return SHA3_HexDigest(t, 64, h);
         }, Is(-INVALID_HANDLE_ERROR)},
        {"SHA3_LengthInBytes handle 0", [] { return SHA3_LengthInBytes(0); }, Is(-INVALID_HANDLE_ERROR)},
        {"SHA3_LengthInBytes open", [] { return SHA3_LengthInBytes(SHA3_Init(384)); }, Is(48)},
        {"SHA3_Reset handle 0", [] { return SHA3_Reset(0); }, Is(INVALID_HANDLE_ERROR)},
        {"SHA3_Reset twice", [] {
             int32_t h = SHA3_Init(256);
             SHA3_Reset(h);
             return SHA3_Reset(h);
         }, Is(INVALID_HANDLE_ERROR)},
    };
    for (const NamedDigest& f : kNamed) AddNamedRows(rows, f);
    return rows;
}

}  // namespace sweep
