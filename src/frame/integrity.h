// Self-integrity check of the library file.
#pragma once

// True when the library file matches the digest recorded at build time.
bool ModuleIntegrityOk();
