// Known-answer tests run at load and by API_PowerUpTests.
//
// Each test drives the same internal routines the exports use, on inputs and
// answers held as constants, with stack memory only and no ThreadState, so it
// can run before the first thread record exists.
#pragma once
#include <cstdint>

constexpr int kPowerUpTestCount = 18;

// 0 when every test passes; 1 at the first failure, after its report.
int PowerUpTests();

// For tests of the run itself: the same run, but the first answer that test
// number faultTest (1 to kPowerUpTestCount; anything else plants nothing)
// checks is altered in a stack copy before the comparison, so that test
// fails. testsRun, when not null, receives how many tests were started.
int PowerUpTestsWithFault(int faultTest, int* testsRun);

// The HMAC-SHA-512 test alone, without a report: true when it passes. The
// generator's health check opens with it.
bool HmacSha512SelfTest();
