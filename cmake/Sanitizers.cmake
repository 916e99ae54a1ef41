# Sanitizer and fuzzing instrumentation for every target of the build: the
# library objects, the library, its tools and the tests alike, so that a
# report names the library's own line.
#
#   VERIMOND_SANITIZE=address  AddressSanitizer, LeakSanitizer and
#                              UndefinedBehaviorSanitizer (fatal on first report)
#   VERIMOND_SANITIZE=thread   ThreadSanitizer
#   VERIMOND_FUZZ=ON           coverage for libFuzzer (clang only); fuzz targets
#                              are added by fuzz/CMakeLists.txt
#
# VERIMOND_SANITIZER_ENV holds what a test needs in its environment (one
# variable of runtime options); VERIMOND_SANITIZER_PRELOAD the runtime that
# programs loading the library into an uninstrumented interpreter (Python)
# must preload.

set(VERIMOND_SANITIZER_FLAGS "")
set(VERIMOND_SANITIZER_ENV "")
set(_verimond_runtime "")

if(VERIMOND_SANITIZE STREQUAL "address")
  # vptr needs RTTI, which the library is built without.
  set(VERIMOND_SANITIZER_FLAGS -fsanitize=address,undefined -fno-sanitize=vptr
      -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  set(_verimond_runtime asan)
  # A refused allocation must come back as null, as it would in a release
  # build, so that the paths that report MEMORY_ERROR stay testable. The
  # undefined-behaviour checks stop at their first report by the compile
  # flag, so they need no options of their own; one variable keeps the
  # environment a single item, which the discovered tests take as it is.
  set(VERIMOND_SANITIZER_ENV
      "ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1:allocator_may_return_null=1")
elseif(VERIMOND_SANITIZE STREQUAL "thread")
  set(VERIMOND_SANITIZER_FLAGS -fsanitize=thread -fno-omit-frame-pointer)
  set(_verimond_runtime tsan)
  set(VERIMOND_SANITIZER_ENV
      "TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1:suppressions=${CMAKE_SOURCE_DIR}/tests/tsan.supp")
elseif(NOT VERIMOND_SANITIZE STREQUAL "")
  message(FATAL_ERROR "VERIMOND_SANITIZE must be empty, address or thread, not ${VERIMOND_SANITIZE}")
endif()

if(VERIMOND_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "VERIMOND_FUZZ needs clang (CC=clang CXX=clang++)")
  endif()
  list(APPEND VERIMOND_SANITIZER_FLAGS -fsanitize=fuzzer-no-link)
endif()

if(VERIMOND_SANITIZER_FLAGS)
  add_compile_options(${VERIMOND_SANITIZER_FLAGS})
  add_link_options(${VERIMOND_SANITIZER_FLAGS})
endif()

# The shared runtime that an uninstrumented host must load first.
if(_verimond_runtime)
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libclang_rt.${_verimond_runtime}-x86_64.so
                    OUTPUT_VARIABLE _verimond_preload OUTPUT_STRIP_TRAILING_WHITESPACE)
  else()
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=lib${_verimond_runtime}.so
                    OUTPUT_VARIABLE _verimond_preload OUTPUT_STRIP_TRAILING_WHITESPACE)
  endif()
  if(EXISTS "${_verimond_preload}")
    set(VERIMOND_SANITIZER_PRELOAD "${_verimond_preload}")
  endif()
endif()
