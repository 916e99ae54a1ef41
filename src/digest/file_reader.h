// Reading a file for digesting, in binary or in text mode. Text mode is the
// one of the other platform's C runtime, done here on every platform: a CR LF
// pair reads as LF and a byte 0x1A ends the input. A lone CR stays.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstdio>

struct FileReader {
    FILE* file;
    bool textMode;
    bool ended;     // end of file, or 0x1A seen in text mode
    uint32_t rawLength;
    uint32_t rawPosition;
    uint8_t raw[1024];  // text mode: bytes read but not yet translated
};

// False when the file cannot be opened; the reader is then closed.
bool FileReaderOpen(FileReader* reader, const char* fileName, bool textMode);
// Up to capacity bytes; 0 only at the end of the input (or on a read error,
// which FileReaderFailed tells apart).
size_t FileReaderRead(FileReader* reader, uint8_t* output, size_t capacity);
// The stream's error state.
bool FileReaderFailed(const FileReader* reader);
void FileReaderClose(FileReader* reader);
