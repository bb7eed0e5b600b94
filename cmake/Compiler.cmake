# Settings that every target shares: warnings as errors, sanitizers, the compiler cache.

find_program(CCACHE ccache)
if(CCACHE)
  # Precompiled headers are cached only when their time stamps are not compared.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
endif()

add_library(ktr_warnings INTERFACE)
target_compile_options(ktr_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Wold-style-cast -Wcast-qual
  -Wimplicit-fallthrough -Werror)
if(CMAKE_UNITY_BUILD) # sources compiled as one shadow each other's names, and look like headers of it
  target_compile_options(ktr_warnings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
else()
  target_compile_options(ktr_warnings INTERFACE -Wshadow)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(ktr_warnings INTERFACE -fpch-preprocess)
endif()

add_library(ktr_options INTERFACE)
target_link_libraries(ktr_options INTERFACE ktr_warnings)
target_compile_definitions(ktr_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS QT_USE_QSTRINGBUILDER
  KTR_VERSION_MAJOR=${PROJECT_VERSION_MAJOR} KTR_VERSION_MINOR=${PROJECT_VERSION_MINOR}
  KTR_VERSION_REVISION=${PROJECT_VERSION_PATCH})

if(KTR_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

if(KTR_SANITIZE_THREADS)
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # What the sanitizer adds hides from GCC that an empty optional has nothing to destroy; release still warns.
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
  add_compile_definitions(ASIO_DISABLE_FENCED_BLOCK) # fences are unknown to it; Asio's mutex orders the same
  add_link_options(-fsanitize=thread)
endif()

if(KTR_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# A room of the house: a static library in src/<name>, linking only what is named. WINDOWS: it draws windows.
function(ktr_room name)
  cmake_parse_arguments(ARG "WINDOWS" "" "SOURCES;LINKS" ${ARGN})
  add_library(ktr_${name} STATIC ${ARG_SOURCES})
  target_include_directories(ktr_${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(ktr_${name} PUBLIC ${ARG_LINKS} PRIVATE ktr_options)
  target_precompile_headers(ktr_${name} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/precompiled.h)
  if(ARG_WINDOWS)
    target_link_libraries(ktr_${name} PUBLIC Qt6::Widgets)
    target_precompile_headers(ktr_${name} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/precompiled_windows.h)
  endif()
endfunction()
