// A reader for "NAME = value" vector files: '#' starts a comment, "[...]"
// opens a section for the records after it, a blank line ends a record, and
// a bare "FAIL" line marks a record that must fail.
#pragma once
#include <cstdint>
#include <fstream>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "test_support.h"

struct VectorRecord {
    std::map<std::string, std::string> section;  // parameters of the "[...]" lines above
    std::vector<std::pair<std::string, std::string>> fields;  // in file order, names may repeat
    bool fail = false;
    int line = 0;  // first line of the record, for messages

    bool Has(const std::string& name) const {
        for (const auto& f : fields)
            if (f.first == name) return true;
        return false;
    }
    // The n-th value of a field (0 = first); "" if absent.
    std::string Get(const std::string& name, int n = 0) const {
        for (const auto& f : fields)
            if (f.first == name && n-- == 0) return f.second;
        return "";
    }
    std::vector<uint8_t> Bytes(const std::string& name, int n = 0) const { return FromHex(Get(name, n)); }
    long Int(const std::string& name) const { return std::stol(Get(name)); }
    std::string Section(const std::string& name) const {
        auto it = section.find(name);
        return it == section.end() ? "" : it->second;
    }
};

inline std::string TrimVectorText(std::string s) {
    while (!s.empty() && (s.back() == '\r' || s.back() == ' ' || s.back() == '\t')) s.pop_back();
    size_t i = 0;
    while (i < s.size() && (s[i] == ' ' || s[i] == '\t')) ++i;
    return s.substr(i);
}

inline std::string VectorPath(const std::string& relative) {
    return std::string(VERIMOND_TEST_DATA) + "/" + relative;
}

// Reads every record of a file; an unreadable file gives no records (tests
// should assert that the count is non-zero).
inline std::vector<VectorRecord> ReadVectorFile(const std::string& relative) {
    std::vector<VectorRecord> records;
    std::ifstream in(VectorPath(relative));
    std::map<std::string, std::string> section;
    bool sectionOpen = false;  // consecutive "[...]" lines form one header
    VectorRecord current;
    int lineNumber = 0;
    auto flush = [&] {
        if (!current.fields.empty()) {
            current.section = section;
            records.push_back(current);
        }
        current = VectorRecord();
    };
    std::string line;
    while (std::getline(in, line)) {
        ++lineNumber;
        line = TrimVectorText(line);
        if (line.empty()) {
            flush();
            continue;
        }
        if (line[0] == '#') continue;
        if (line[0] == '[') {
            flush();
            if (!sectionOpen) section.clear();
            sectionOpen = true;
            std::string body = line.substr(1, line.find(']') - 1);
            size_t eq = body.find('=');
            if (eq == std::string::npos) {
                section[TrimVectorText(body)] = "";
            } else {
                section[TrimVectorText(body.substr(0, eq))] = TrimVectorText(body.substr(eq + 1));
            }
            continue;
        }
        sectionOpen = false;
        if (line == "FAIL") {
            current.fail = true;
            continue;
        }
        size_t eq = line.find('=');
        if (eq == std::string::npos) continue;
        if (current.fields.empty()) current.line = lineNumber;
        current.fields.emplace_back(TrimVectorText(line.substr(0, eq)), TrimVectorText(line.substr(eq + 1)));
    }
    flush();
    return records;
}

// The FIPS 202 example files (SHA3TestVectors.txt, SHAKETestVectors.txt):
// "SHA3-256 sample of 30-bit message" or "SHAKE-128 sample of ...", the
// message as 0/1 in message order, then "Hash val is" or "Output val is" and
// the output bytes.
struct BitSample {
    std::string algorithm;  // "SHA3-256", "SHAKE-128", ...
    std::string bits;
    std::string output;  // lower-case hex

    // The message as the bit calls take it: FIPS 202 puts the first bit in
    // the low bit of a byte, the calls take a last partial byte's bits at the
    // high end, so that byte is moved up by 8 - n.
    std::vector<uint8_t> Message() const {
        std::vector<uint8_t> msg(bits.size() / 8 + 1, 0);
        for (size_t i = 0; i < bits.size(); ++i)
            if (bits[i] == '1') msg[i / 8] |= uint8_t(1u << (i % 8));
        if (bits.size() % 8 != 0) msg[bits.size() / 8] = uint8_t(msg[bits.size() / 8] << (8 - bits.size() % 8));
        return msg;
    }
};

inline std::vector<BitSample> ReadBitSamples(const std::string& relative) {
    std::ifstream in(VectorPath(relative));
    std::vector<BitSample> samples;
    enum { kNone, kBits, kOutput } part = kNone;
    std::string line;
    while (std::getline(in, line)) {
        size_t at = line.find(" sample of ");
        if (at != std::string::npos && line.find("-bit message") != std::string::npos) {
            samples.push_back({TrimVectorText(line.substr(0, at)), "", ""});
            part = kNone;
        } else if (line.find("Msg as bit string") != std::string::npos) {
            part = kBits;
        } else if (line.find("val is") != std::string::npos) {
            part = kOutput;
        } else if (!samples.empty() && line.find('#') == std::string::npos) {
            for (char c : line) {
                if (part == kBits && (c == '0' || c == '1')) samples.back().bits += c;
                bool hex = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
                if (part == kOutput && hex) samples.back().output += char(c >= 'A' && c <= 'F' ? c + 32 : c);
            }
        }
    }
    return samples;
}
