set(QT_QML_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/qml)

# One folder, one target. A target may link its own floor's parts and lower floors only, so a file that
# includes from a higher floor does not build.

# sorvanta_library(<name> SOURCES <file>... LINKS <target>...)
function(sorvanta_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE sorvanta_warnings)
endfunction()

# sorvanta_qml_library(<name> URI <uri> SOURCES <file>... QML <file>... SINGLETONS <file>... RESOURCES <file>...
#   LINKS <target>... IMPORTS <uri>...)
# A static library that is also a QML module; an executable links <name> and <name>plugin. IMPORTS are the modules that
# its QML files import.
function(sorvanta_qml_library name)
  cmake_parse_arguments(ARG "" "URI" "SOURCES;QML;SINGLETONS;RESOURCES;LINKS;IMPORTS" ${ARGN})
  qt_add_library(${name} STATIC)
  set_source_files_properties(${ARG_SINGLETONS} PROPERTIES QT_QML_SINGLETON_TYPE TRUE)
  qt_add_qml_module(${name}
    URI ${ARG_URI}
    VERSION 1.0
    RESOURCE_PREFIX /qt/qml
    SOURCES ${ARG_SOURCES}
    QML_FILES ${ARG_QML} ${ARG_SINGLETONS}
    RESOURCES ${ARG_RESOURCES}
    DEPENDENCIES ${ARG_IMPORTS})
  # What is generated from QML is not ours to mend.
  get_target_property(sources ${name} SOURCES)
  list(FILTER sources INCLUDE REGEX "qmlcache|qmltyperegistrations")
  set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS -w)
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE sorvanta_warnings)
endfunction()

# sorvanta_test(<name> SOURCES <file>... LINKS <target>... [MAIN <file>] [TIMEOUT <seconds>] [LABELS <label>...]
#               [LAUNCHER <program> <argument>...])
# A GoogleTest program, one a folder. A launcher is given the program and its arguments and runs it.
function(sorvanta_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LINKS;LABELS;LAUNCHER" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${ARG_LINKS} test_support sorvanta_warnings)
  add_test(NAME ${name} COMMAND ${ARG_LAUNCHER} $<TARGET_FILE:${name}> --gtest_brief=1)
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 300)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}")
endfunction()

# sorvanta_ui_test(<name> ...), as sorvanta_test: a program that shows QML offscreen, drawn in software. Its main
# is found before the one of test_support, because its library comes first.
function(sorvanta_ui_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LINKS;LABELS" ${ARGN})
  sorvanta_test(${name} SOURCES ${ARG_SOURCES} LINKS ui_test_support ${ARG_LINKS} TIMEOUT ${ARG_TIMEOUT} LABELS ${ARG_LABELS})
endfunction()
