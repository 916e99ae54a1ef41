// Known-answer tests run at load and by API_PowerUpTests.
#pragma once

// 0 when every test passes; 1 at the first failure, after its report.
int PowerUpTests();
