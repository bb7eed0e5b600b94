# What a program for Windows carries: the manifest, its version and its icon.

if(NOT WIN32)
  function(ktr_windows_resources target description)
  endfunction()
  return()
endif()

enable_language(RC)
# The oldest Windows that the toolkit runs on is 10.
add_compile_definitions(_WIN32_WINNT=0x0A00 WIN32_LEAN_AND_MEAN NOMINMAX UNICODE _UNICODE)

# Manifest and version into a program, and its icon where one is named: the beginning of the names of PNG files.
function(ktr_windows_resources target description)
  set(DESCRIPTION ${description})
  set(FILE_NAME ${target})
  set(MANIFEST ${CMAKE_CURRENT_BINARY_DIR}/${target}.manifest)
  configure_file(${CMAKE_SOURCE_DIR}/packaging/windows/program.manifest.in ${MANIFEST} @ONLY)
  set(embedded ${MANIFEST})
  set(ICON)
  if(ARGN)
    find_program(ICOTOOL icotool REQUIRED)
    set(pictures)
    foreach(size 16 32 48 64 128 256)
      list(APPEND pictures ${ARGN}-${size}.png)
    endforeach()
    set(ico ${CMAKE_CURRENT_BINARY_DIR}/${target}.ico)
    add_custom_command(OUTPUT ${ico} COMMAND ${ICOTOOL} --create --output=${ico} ${pictures}
      DEPENDS ${pictures} VERBATIM)
    list(APPEND embedded ${ico})
    set(ICON "1 ICON \"${ico}\"")
  endif()
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  configure_file(${CMAKE_SOURCE_DIR}/packaging/windows/program.rc.in ${script} @ONLY)
  set_source_files_properties(${script} PROPERTIES OBJECT_DEPENDS "${embedded}")
  target_sources(${target} PRIVATE ${script})
endfunction()
