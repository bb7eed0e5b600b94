# What is compiled against where the libraries for the other system are not there: the headers of this machine,
# which hardly differ. Nothing can be linked; AUTOMOC runs this machine's moc.

set(headers ${CMAKE_BINARY_DIR}/headers)
# Not the system's include folder itself: its C headers are not the other system's.
file(COPY /usr/include/asio /usr/include/asio.hpp /usr/include/pugixml.hpp /usr/include/pugiconfig.hpp
  /usr/include/ares.h /usr/include/ares_rules.h /usr/include/ares_version.h
  DESTINATION ${headers})
# The only one of its headers that differs.
file(WRITE ${headers}/ares_build.h
  "#pragma once\n#include <winsock2.h>\n#include <ws2tcpip.h>\n"
  "typedef int ares_socklen_t;\ntypedef long long ares_ssize_t;\n"
  "#define CARES_TYPEOF_ARES_SOCKLEN_T int\n#define CARES_TYPEOF_ARES_SSIZE_T long long\n")
find_path(QT_HEADERS QtCore/qglobal.h REQUIRED NO_CMAKE_FIND_ROOT_PATH
  PATHS /usr/include/${CMAKE_HOST_SYSTEM_PROCESSOR}-linux-gnu/qt6)
find_program(MOC moc REQUIRED NO_DEFAULT_PATH PATHS /usr/lib/qt6/libexec)

foreach(module Core Sql Test)
  add_library(Qt6::${module} INTERFACE IMPORTED)
  target_include_directories(Qt6::${module} INTERFACE ${headers} ${QT_HEADERS} ${QT_HEADERS}/Qt${module})
endforeach()
target_link_libraries(Qt6::Test INTERFACE Qt6::Core)
add_library(pugixml::pugixml INTERFACE IMPORTED)
add_library(cares::cares INTERFACE IMPORTED)
add_executable(Qt6::moc IMPORTED)
set_target_properties(Qt6::moc PROPERTIES IMPORTED_LOCATION ${MOC})
set(QT_VERSION_MAJOR 6)
set(QT_VERSION_MINOR 4)
