# What every target of the project is compiled with.
add_library(fonklav_options INTERFACE)
target_include_directories(fonklav_options INTERFACE ${CMAKE_SOURCE_DIR} ${CMAKE_BINARY_DIR}/generated)
target_compile_options(fonklav_options INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Wold-style-cast)
# GCC 12 sees overlapping copies in plain string concatenation (its bug 105651).
target_compile_options(fonklav_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(WIN32)
  target_compile_definitions(fonklav_options INTERFACE
    NOMINMAX WIN32_LEAN_AND_MEAN STRICT UNICODE _UNICODE _WIN32_WINNT=0x0601 TAPI_CURRENT_VERSION=0x00030000)
  target_link_options(fonklav_options INTERFACE -static)
  include(${CMAKE_CURRENT_LIST_DIR}/Hardening.cmake)
  include(${CMAKE_CURRENT_LIST_DIR}/DelayLoad.cmake)
else()
  # The tests run on a library that checks indexes, iterators and empty optionals.
  target_compile_definitions(fonklav_options INTERFACE $<$<NOT:$<BOOL:${FONKLAV_BENCH}>>:_GLIBCXX_ASSERTIONS>)
endif()
if(FONKLAV_SANITIZE)
  target_compile_options(fonklav_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(fonklav_options INTERFACE -fsanitize=address,undefined)
  target_compile_definitions(fonklav_options INTERFACE FONKLAV_SANITIZED)
endif()
if(FONKLAV_FUZZ)
  target_compile_options(fonklav_options INTERFACE
    -fsanitize=fuzzer-no-link -fsanitize-coverage-ignorelist=${CMAKE_SOURCE_DIR}/fuzz/uninstrumented.txt)
endif()
