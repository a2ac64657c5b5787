# Compile flags of every target, and the one way in which folders become libraries.

add_library(kelvane_flags INTERFACE)
target_compile_options(kelvane_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
  # GCC 12 sees overlapping copies in every optimised "text" + std::string; clang-tidy, which reads
  # the same flags, does not know that warning.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict;-Wno-unknown-warning-option>)
if(CMAKE_UNITY_BUILD)
  # A coroutine's frame has fields of the anonymous namespace of its own source; GCC takes a source
  # that a unit includes for a header. Names of one source may shadow another's; builds source by
  # source see what is shadowed within one.
  target_compile_options(kelvane_flags INTERFACE -Wno-shadow
    $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endif()
if(KELVANE_SANITIZE)
  target_compile_options(kelvane_flags INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
    # GCC sees uninitialised values in what the sanitizers put into std::regex and std::function;
    # the release build keeps the warning.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(kelvane_flags INTERFACE -fsanitize=address,undefined)
endif()
if(KELVANE_FUZZ)
  # Beyond the end of a string there is often memory that is nobody else's: the library looks, too.
  target_compile_options(kelvane_flags INTERFACE -D_GLIBCXX_ASSERTIONS
    -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kelvane_flags INTERFACE -fsanitize=address,undefined)
endif()

if(KELVANE_SANITIZE OR KELVANE_FUZZ)
  # Enough for a line in every report; full optimisation and debug data double the build's time.
  set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O1 -g1 -DNDEBUG")
endif()

if(KELVANE_HARDENED)
  # Not -fPIE: with it the linker copies Qt's variables into the executable, and Qt, which is built to
  # use its own, ends at once.
  target_compile_options(kelvane_flags INTERFACE
    -fstack-protector-strong -fstack-clash-protection -fcf-protection
    -D_FORTIFY_SOURCE=2 -fPIC)
  target_link_options(kelvane_flags INTERFACE -pie -Wl,-z,relro,-z,now)
endif()

# kelvane_library(NAME SOURCES ... LINKS ...): the folder's library. Its headers are reached as
# "folder/header.h"; what a folder may include is what it links, checked by scripts/check-includes.
function(kelvane_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(kelvane_${name} STATIC ${ARG_SOURCES})
  target_include_directories(kelvane_${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(kelvane_${name} PUBLIC ${ARG_LINKS} PRIVATE kelvane_flags)
endfunction()
