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
# The runtimes' options for the test and fuzz programs are built into them
# (tests/sanitizer_defaults.c, linked by verimond_link_sanitizer_defaults);
# VERIMOND_SANITIZER_PRELOAD names the runtime that a program loading the
# library into an uninstrumented interpreter (Python) must preload.

set(VERIMOND_SANITIZER_FLAGS "")
set(_verimond_runtime "")

if(VERIMOND_SANITIZE STREQUAL "address")
  # vptr needs RTTI, which the library is built without.
  set(VERIMOND_SANITIZER_FLAGS -fsanitize=address,undefined -fno-sanitize=vptr
      -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  set(_verimond_runtime asan)
elseif(VERIMOND_SANITIZE STREQUAL "thread")
  set(VERIMOND_SANITIZER_FLAGS -fsanitize=thread -fno-omit-frame-pointer)
  set(_verimond_runtime tsan)
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

# Every program target created after the call (in this directory and those
# added below it) carries the runtimes' options and the thread checker's
# suppressions.
macro(verimond_link_sanitizer_defaults)
  if(VERIMOND_SANITIZE)
    add_library(verimond_sanitizer_defaults OBJECT ${CMAKE_SOURCE_DIR}/tests/sanitizer_defaults.c)
    target_compile_definitions(verimond_sanitizer_defaults PRIVATE
      VERIMOND_TSAN_SUPPRESSIONS="${CMAKE_SOURCE_DIR}/tests/tsan.supp")
    link_libraries(verimond_sanitizer_defaults)
  endif()
endmacro()
