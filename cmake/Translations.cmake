# The German texts of our own additions and of the toolkit, as resources under :/translations; other languages
# as files beside the programs.

find_program(QMAKE qmake6 NO_CMAKE_FIND_ROOT_PATH)
foreach(place QT_HOST_BINS QT_INSTALL_TRANSLATIONS)
  if(QMAKE AND NOT ${place})
    execute_process(COMMAND ${QMAKE} -query ${place} OUTPUT_VARIABLE ${place} OUTPUT_STRIP_TRAILING_WHITESPACE)
  endif()
endforeach()
find_program(LRELEASE lrelease HINTS ${QT_HOST_BINS} /usr/lib/qt6/bin NO_CMAKE_FIND_ROOT_PATH)
find_program(LUPDATE lupdate HINTS ${QT_HOST_BINS} /usr/lib/qt6/bin NO_CMAKE_FIND_ROOT_PATH)
find_file(QTBASE_GERMAN qtbase_de.qm HINTS ${QT_INSTALL_TRANSLATIONS} /usr/share/qt6/translations
  NO_CMAKE_FIND_ROOT_PATH)

# Compiles the .ts and embeds both files into the target, which names the resources with
# Q_INIT_RESOURCE(translations).
function(ktr_embed_translations target)
  if(NOT LRELEASE OR NOT QTBASE_GERMAN)
    message(FATAL_ERROR "lrelease or qtbase_de.qm not found: scripts/setup installs both")
  endif()
  set(source ${CMAKE_SOURCE_DIR}/translations/ktrconfig_de.ts)
  set(compiled ${CMAKE_CURRENT_BINARY_DIR}/ktrconfig_de.qm)
  add_custom_command(OUTPUT ${compiled}
    COMMAND ${LRELEASE} -silent -nounfinished ${source} -qm ${compiled}
    DEPENDS ${source} VERBATIM)
  set(list ${CMAKE_CURRENT_BINARY_DIR}/translations.qrc)
  file(CONFIGURE OUTPUT ${list} CONTENT [[<RCC><qresource prefix="/translations">
<file alias="ktrconfig_de.qm">@compiled@</file>
<file alias="qtbase_de.qm">@QTBASE_GERMAN@</file>
</qresource></RCC>
]] @ONLY)
  qt_add_resources(resources ${list})
  set_source_files_properties(${resources} PROPERTIES SKIP_AUTOMOC ON SKIP_PRECOMPILE_HEADERS ON
    SKIP_UNITY_BUILD_INCLUSION ON)
  target_sources(${target} PRIVATE ${resources} ${compiled})
endfunction()

# Compiles every other translations/ktrconfig_CODE.ts into `languages` beside the programs, where they are found.
# What a language lacks is English.
function(ktr_added_languages target)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/translations/ktrconfig_*.ts)
  list(FILTER sources EXCLUDE REGEX "ktrconfig_de[.]ts$")
  foreach(source ${sources})
    get_filename_component(name ${source} NAME_WE)
    set(compiled ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/languages/${name}.qm)
    add_custom_command(OUTPUT ${compiled}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/languages
      COMMAND ${LRELEASE} -silent -nounfinished ${source} -qm ${compiled}
      DEPENDS ${source} VERBATIM)
    target_sources(${target} PRIVATE ${compiled})
  endforeach()
endfunction()
