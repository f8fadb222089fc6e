# Compiler, linker and cache settings that every target shares.

set(ORVANE_SANITIZE "" CACHE STRING "Value of -fsanitize= for all targets; empty for none")
option(ORVANE_FUZZ "Build the fuzz targets (needs clang)" OFF)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough
                    -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # g++ 12 takes an aggregate with member defaults for incomplete when the rest are left out on purpose.
  add_compile_options(-Wno-missing-field-initializers)
  # With -O2 it sees faults inside std::string's own operator+ (gcc bugs 105329 and 105651).
  add_compile_options(-Wno-array-bounds -Wno-restrict -Wno-stringop-overflow -Wno-maybe-uninitialized)
else()
  # clang has no reason to know gcc's warnings, and it is only used for fuzzing and linting.
  # Deprecated declarations are gcc's to tell: clang-tidy looks inside the standard library and finds its stable sort.
  add_compile_options(-Wno-missing-field-initializers -Wno-unknown-warning-option -Wno-missing-designated-field-initializers
                      -Wno-deprecated-declarations)
endif()

if(ORVANE_SANITIZE)
  # -O1 keeps sanitized tests quick; -g1 is enough for the line numbers of a report.
  add_compile_options(-fsanitize=${ORVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -O1 -g1)
  add_link_options(-fsanitize=${ORVANE_SANITIZE})
  if(ORVANE_SANITIZE MATCHES "thread" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Asio uses fences around its own atomics; gcc warns that they are not seen by the sanitizer.
    add_compile_options(-Wno-tsan)
  endif()
endif()
if(ORVANE_FUZZ AND ORVANE_SANITIZE)
  # Every line that runs tells the fuzzer that it did; only the entries of Fuzz/ have its main program.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

# No path of the building machine ends in the binary, and two clones share their cached objects.
add_compile_options("-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=" "-ffile-prefix-map=${CMAKE_BINARY_DIR}/=")

find_program(MOLD mold)
if(MOLD)
  add_link_options(-fuse-ld=mold)
endif()

find_program(CCACHE ccache)
if(CCACHE)
  # ccache 4.7 takes its settings from the environment only. Precompiled headers are cached when ccache may ignore what they say about times.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${CCACHE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fpch-preprocess)
  endif()
endif()
