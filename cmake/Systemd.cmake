# libsystemd, which tells the manager of services how a keeper is; programs do without it where it is not installed.
find_path(SYSTEMD_HEADERS systemd/sd-daemon.h)
find_library(SYSTEMD_LIBRARY NAMES systemd)
if(UNIX AND SYSTEMD_HEADERS AND SYSTEMD_LIBRARY)
  add_library(systemd::systemd INTERFACE IMPORTED)
  target_include_directories(systemd::systemd INTERFACE ${SYSTEMD_HEADERS})
  # Only programs that use it load it.
  target_link_libraries(systemd::systemd INTERFACE "-Wl,--push-state,--as-needed,${SYSTEMD_LIBRARY},--pop-state")
else()
  message(STATUS "libsystemd not found: the service manager is told nothing")
endif()
