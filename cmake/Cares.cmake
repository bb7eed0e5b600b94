# c-ares, which finds host names. What Debian installs has no description for CMake.
find_path(CARES_HEADERS ares.h REQUIRED)
find_library(CARES_LIBRARY NAMES cares REQUIRED)
add_library(cares::cares INTERFACE IMPORTED)
target_include_directories(cares::cares INTERFACE ${CARES_HEADERS})
target_link_libraries(cares::cares INTERFACE ${CARES_LIBRARY})
