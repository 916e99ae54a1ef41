// The argument sweep: every export called with null pointers, zero, negative
// and extreme lengths, malformed texts and stale or foreign handles. Each
// family contributes a table of rows {name, call, expected result}; a
// row that must end the process runs in a child.
#pragma once
#include <climits>
#include <concepts>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "verimond.h"

namespace sweep {

// What a row accepts; a row without a test must end the process.
struct Expect {
    std::string what;  // for the failure message
    std::function<bool(int32_t)> ok;
};

inline Expect Is(int32_t v) { return {std::to_string(v), [v](int32_t got) { return got == v; }}; }
// A context handle: odd, positive, below 2^30.
inline Expect AHandle() { return {"a handle", [](int32_t got) { return got > 0 && (got & 1) && got < (1 << 30); }}; }
template <class... V>
Expect AnyOf(V... v) {
    return {"one of" + ((" " + std::to_string(v)) + ...), [=](int32_t got) { return ((got == v) || ...); }};
}
// A length that depends on the machine (a path, a text).
inline Expect APositive() { return {"a positive length", [](int32_t got) { return got > 0; }}; }
inline Expect EndsProcess() { return {"the end of the process", nullptr}; }

struct Row {
    std::string name;  // names the export: the first word with an underscore
    std::function<int32_t()> call;
    Expect expect;
};
using Table = std::vector<Row>;

// A row that is one call: its text names it.
#define ROW(want, ...) ::sweep::Row{#__VA_ARGS__, [=]() -> int32_t { return __VA_ARGS__; }, want}

// The same in a family's loop, whose calls go through `f`.
#define FROW(want, call, ...) \
    rows.push_back({std::string(f.prefix) + call + " " #__VA_ARGS__, [=]() -> int32_t { return __VA_ARGS__; }, want})

// What a failed call latched, for the calls that return only 0 on failure; a
// call that returned anything else gives a value no row expects.
inline int32_t Latched(int32_t result, int32_t (*latch)() = API_ErrorCode) { return result == 0 ? latch() : INT32_MIN + 1; }

// A writable copy of a text, for the calls that take char*.
inline char* Mut(const std::string& s) {
    static char copy[256];
    copy[s.copy(copy, sizeof copy - 1)] = 0;
    return copy;
}

// A text that lives as long as the program, for base calls built at run time.
inline const char* Keep(std::string s) {
    static std::deque<std::string> kept;
    return kept.emplace_back(std::move(s)).c_str();
}

// One argument of a base call replaced, by position from 0: a number, null
// or a text. Every change is a row of its own.
struct Change {
    int arg;
    int64_t number = 0;
    const char* text = nullptr;
    bool isNumber = false;
    template <std::integral N>
    Change(int a, N n) : arg(a), number(n), isNumber(true) {}
    Change(int a, const char* s) : arg(a), text(s) {}
};
struct Changes {
    int32_t want;
    std::vector<Change> each;
};

// Puts a change into an argument; false when it does not fit the argument's type.
template <class T>
bool Put(T& slot, const Change& c) {
    if constexpr (std::is_integral_v<T>) {
        slot = T(c.number);
        return c.isNumber;
    } else if constexpr (std::is_same_v<T, const char*>) {
        slot = c.text;
        return !c.isNumber;
    } else if constexpr (std::is_same_v<T, char*>) {
        slot = c.text ? Mut(c.text) : nullptr;
        return !c.isNumber;
    } else {
        slot = nullptr;
        return !c.isNumber && c.text == nullptr;
    }
}

// What a base call needs beyond its arguments: a fresh handle made at each
// call for one argument, and for the calls that return 0 on failure, the
// latch whose code the row sees.
struct Setup {
    int handleArg = -1;
    std::function<int32_t()> handle;
    int32_t (*latch)() = nullptr;
};

template <class... A>
void Vary(Table& rows, const std::string& name, int32_t (*f)(A...), std::type_identity_t<std::tuple<A...>> base,
          std::initializer_list<Changes> groups, const Setup& setup = {}) {
    for (const Changes& g : groups) {
        for (const Change& c : g.each) {
            const std::string value = c.isNumber ? std::to_string(c.number)
                                      : c.text   ? '"' + std::string(c.text) + '"'
                                                 : "null";
            rows.push_back({name + " argument " + std::to_string(c.arg) + " = " + value, [=] {
                auto args = base;
                const auto put = [&args](const Change& x) {
                    bool fits = false;
                    std::apply([&](auto&... a) { int i = 0; ((fits |= (i++ == x.arg && Put(a, x))), ...); }, args);
                    return fits;
                };
                const bool fits = put(c);
                if (setup.handleArg >= 0 && setup.handleArg != c.arg) put(Change(setup.handleArg, setup.handle()));
                const int32_t result = fits ? std::apply(f, args) : INT32_MIN + 2;
                return setup.latch && fits ? Latched(result, setup.latch) : result;
            }, Is(g.want)});
        }
    }
}
#define VARY(fn, ...) ::sweep::Vary(rows, #fn, fn, __VA_ARGS__)

// The handle rules of a stateful family: handle 0, an ended handle, ending
// twice, a handle of another thread and one of another family are refused.
struct Stateful {
    const char *use, *end;  // the names of `call` and `finish`
    std::function<int32_t()> init;
    std::function<int32_t(int32_t)> call, finish;
    std::function<int32_t()> foreign;  // a live handle of another family
    int32_t refused;
};
void AddHandleRows(Table& rows, const Stateful& s);

void RunTable(const Table& rows);

Table FrameAndConversionRows();
Table DigestRows();
Table MacAndDerivationRows();
Table BlockFamilyRows();
Table CipherRows();
Table StreamRows();
Table AeadRows();
Table RandomRows();
Table UtilityRows();

// Readable buffers larger than any row needs; a row that passes a length
// beyond them is one the call must refuse before reading.
struct Buffers {
    uint8_t in[256];
    uint8_t out[512];
    char text[1024];
    uint8_t key[64];
    uint8_t iv[32];
    Buffers();
};
Buffers& Buf();

// A fresh directory with a small file, and names for files that do not exist.
struct Files {
    std::string dir;
    std::string existing;  // 100 bytes
    std::string empty;     // 0 bytes
    std::string missing;   // never created
    std::string out;       // a place to write
    std::string noDir;     // in a directory that does not exist
    Files();
    ~Files();
};
Files& Fs();

inline char* const t = Buf().text;
inline uint8_t* const o = Buf().out;
inline const uint8_t* const in = Buf().in;
inline const uint8_t* const k = Buf().key;
inline const uint8_t* const iv = Buf().iv;
inline const char* const ex = Fs().existing.c_str();
inline const char* const out = Fs().out.c_str();

// A handle that some other thread made with init; that thread has ended.
int32_t FromOtherThread(const std::function<int32_t()>& init);

constexpr int32_t kMax = INT32_MAX;
constexpr int32_t kMin = INT32_MIN;

}  // namespace sweep
