#include "digest/file_reader.h"

namespace {
constexpr uint8_t kCr = 0x0D, kLf = 0x0A, kEndOfText = 0x1A;

bool Refill(FileReader* reader) {
    reader->rawPosition = 0;
    reader->rawLength = uint32_t(std::fread(reader->raw, 1, sizeof reader->raw, reader->file));
    return reader->rawLength != 0;
}
}  // namespace

bool FileReaderOpen(FileReader* reader, const char* fileName, bool textMode) {
    reader->textMode = textMode;
    reader->ended = false;
    reader->rawLength = 0;
    reader->rawPosition = 0;
    // Always opened as bytes: the text translation is ours, so that it is
    // the same on every platform.
    reader->file = std::fopen(fileName, "rb");
    return reader->file != nullptr;
}

size_t FileReaderRead(FileReader* reader, uint8_t* output, size_t capacity) {
    if (reader->file == nullptr || reader->ended) return 0;
    if (!reader->textMode) {
        size_t n = std::fread(output, 1, capacity, reader->file);
        if (n == 0) reader->ended = true;
        return n;
    }
    size_t n = 0;
    while (n < capacity) {
        if (reader->rawPosition == reader->rawLength && !Refill(reader)) {
            reader->ended = true;
            break;
        }
        uint8_t c = reader->raw[reader->rawPosition++];
        if (c == kEndOfText) {
            reader->ended = true;
            break;
        }
        if (c == kCr) {
            // Look at the next byte, reading on when the CR closed the buffer;
            // a CR at the very end stays a CR.
            if (reader->rawPosition == reader->rawLength) Refill(reader);
            if (reader->rawPosition < reader->rawLength && reader->raw[reader->rawPosition] == kLf) {
                ++reader->rawPosition;
                c = kLf;
            }
        }
        output[n++] = c;
    }
    return n;
}

bool FileReaderFailed(const FileReader* reader) {
    return reader->file != nullptr && std::ferror(reader->file) != 0;
}

void FileReaderClose(FileReader* reader) {
    if (reader->file != nullptr) std::fclose(reader->file);
    reader->file = nullptr;
}
