/* Options that the sanitizer runtimes read at start, built into every test
 * and fuzz program of an instrumented build, so that each runs the same
 * from ctest, from a shell or under a debugger. Options in the environment
 * come after these and win. */

/* A refused allocation comes back as null, as it would in a release build,
 * so that the paths that report MEMORY_ERROR can be tested. */
const char* __asan_default_options(void) {
    return "detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1:allocator_may_return_null=1";
}

const char* __ubsan_default_options(void) { return "print_stacktrace=1"; }

/* OpenSSL's libcrypto, the tests' reference, keeps blocks of its own until
 * the process ends; they are its matter, not the library's. */
const char* __lsan_default_suppressions(void) { return "leak:libcrypto.so\n"; }

/* The shared entropy pools are written without a lock by design; the file
 * names exactly those. */
const char* __tsan_default_options(void) {
    return "halt_on_error=1:second_deadlock_stack=1:suppressions=" VERIMOND_TSAN_SUPPRESSIONS;
}
