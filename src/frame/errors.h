// The error table and the report path for fatal and load-time failures.
#pragma once
#include <cstdint>

struct ErrorRow {
    int32_t code;
    const char* name;
    const char* text;
};
extern const ErrorRow kErrorTable[45];

// Event identifiers of the reports.
constexpr uint32_t kEventAllocFailed = 0xC000029Au;
constexpr uint32_t kEventPowerUpFailed = 0xC0001F40u;
constexpr uint32_t kEventRngHealthFailed = 0xC0001F42u;
constexpr uint32_t kEventRngContinuousFailed = 0xC0001F48u;

// Reads the three report options afresh; null outputs are skipped.
void ReadReportOptions(int32_t* noMessageBox, int32_t* noErrorLog, char* logDir /* 260 bytes */);
// System log, then the log file and the console line as the options allow.
void ReportFatal(const char* message, uint32_t eventId);
// ReportFatal(message, 0xC000029A), then the end of the process with status 1.
[[noreturn]] void FatalExit(const char* message);
