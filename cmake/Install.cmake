# What `cmake --install` puts where: the programs, what they read, and what desktop, shells, man and systemd want to know of
# them. In three parts, as the packages have them: program, keeper, documentation.
include(GNUInstallDirs)

set(KTR_UNIT_DIR lib/systemd/system CACHE STRING "Where units of systemd are installed")
set(KTR_ZSH_DIR share/zsh/site-functions CACHE STRING "Where completions for zsh are installed")

set(linux ${CMAKE_SOURCE_DIR}/packaging/linux)
set(made ${CMAKE_BINARY_DIR}/installed)
set(share ${CMAKE_INSTALL_DATAROOTDIR})
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME program)

install(TARGETS KTRconfig ktrcli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# The programs look for it in ../share/ktrconfig from their own folder.
install(FILES data/language.ini data/dashboard.json DESTINATION share/ktrconfig)
install(DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/languages DESTINATION share/ktrconfig OPTIONAL) # those added

# Told by the programs themselves, so that nothing of it goes stale.
set(pages ${made}/KTRconfig.1 ${made}/ktrcli.1)
add_custom_command(OUTPUT ${pages}
  COMMAND ${linux}/manpages $<TARGET_FILE:ktrcli> $<TARGET_FILE:KTRconfig> ${made}
  DEPENDS ktrcli KTRconfig ${linux}/manpages VERBATIM)
add_custom_target(manpages ALL DEPENDS ${pages})
install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

install(FILES data/completions/ktrcli DESTINATION ${share}/bash-completion/completions)
install(FILES data/completions/_ktrcli DESTINATION ${KTR_ZSH_DIR})
install(FILES data/completions/ktrcli.fish DESTINATION ${share}/fish/vendor_completions.d)

install(FILES ${linux}/com.korvane.KTRconfig.desktop DESTINATION ${share}/applications)
install(FILES ${linux}/ktrconfig.xml DESTINATION ${share}/mime/packages)
foreach(size 16 32 48 64 128 256)
  install(FILES data/icons/ktrconfig-${size}.png DESTINATION ${share}/icons/hicolor/${size}x${size}/apps
    RENAME ktrconfig.png)
endforeach()
string(TIMESTAMP KTR_RELEASE_DATE "%Y-%m-%d" UTC)
configure_file(${linux}/com.korvane.KTRconfig.metainfo.xml.in ${made}/com.korvane.KTRconfig.metainfo.xml @ONLY)
install(FILES ${made}/com.korvane.KTRconfig.metainfo.xml DESTINATION ${share}/metainfo)

file(READ data/ktrconfig-keep@.service unit)
string(REPLACE /usr/bin ${CMAKE_INSTALL_FULL_BINDIR} unit "${unit}")
file(CONFIGURE OUTPUT ${made}/ktrconfig-keep@.service CONTENT "${unit}" @ONLY)
install(FILES ${made}/ktrconfig-keep@.service DESTINATION ${KTR_UNIT_DIR} COMPONENT keeper)

# docs/, whose pages name each other and the README by their places in the sources; and the manual where it was made.
set(documents ${CMAKE_INSTALL_DOCDIR})
install(FILES README.md CHANGELOG.md LICENSE DESTINATION ${documents} COMPONENT documentation)
install(DIRECTORY docs DESTINATION ${documents} COMPONENT documentation PATTERN manual EXCLUDE)
install(FILES samples/pumping-station.xml DESTINATION ${documents}/samples COMPONENT documentation)
install(DIRECTORY build/manual DESTINATION ${documents} COMPONENT documentation OPTIONAL)
