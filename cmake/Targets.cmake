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
  if(SORVANTA_SANITIZE)
    set(cachegen NO_CACHEGEN) # a tree for tests only reads its QML as it is, and builds sooner
  endif()
  qt_add_qml_module(${name} ${cachegen}
    URI ${ARG_URI}
    VERSION 1.0
    RESOURCE_PREFIX /qt/qml
    SOURCES ${ARG_SOURCES}
    QML_FILES ${ARG_QML} ${ARG_SINGLETONS}
    RESOURCES ${ARG_RESOURCES}
    DEPENDENCIES ${ARG_IMPORTS})
  sorvanta_group_generated_sources(${name})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE sorvanta_warnings)
endfunction()

# sorvanta_group_generated_sources(<target>)
# What is generated from QML files is short, includes half of Qt, and is not ours to mend: eight files are compiled as
# one, without warnings.
function(sorvanta_group_generated_sources name)
  get_target_property(sources ${name} SOURCES)
  set(generated ${sources})
  list(FILTER generated INCLUDE REGEX "qmltyperegistrations")
  set_source_files_properties(${generated} PROPERTIES COMPILE_OPTIONS -w)
  set(compiled ${sources})
  list(FILTER compiled INCLUDE REGEX "qmlcache.*_qml\\.cpp$")
  set(count 0)
  foreach(source IN LISTS compiled)
    math(EXPR group "${count} / 8")
    math(EXPR count "${count} + 1")
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP qml${group})
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/${name}.dir/Unity/unity_qml${group}_cxx.cxx
      PROPERTIES COMPILE_OPTIONS -w)
  endforeach()
  set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()

# sorvanta_test(<name> SOURCES <file>... LINKS <target>... [TIMEOUT <seconds>] [COST <seconds>] [LABELS <label>...]
#               [LAUNCHER <program> <argument>...] [PRECOMPILED <target>])
# A GoogleTest program, one a folder. A launcher is given the program and its arguments and runs it. What takes more
# than half a minute with sanitizers has a cost, so that it starts first in a tree that has not run it yet.
function(sorvanta_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT;COST;PRECOMPILED" "SOURCES;LINKS;LABELS;LAUNCHER" ${ARGN})
  if(NOT ARG_PRECOMPILED)
    set(ARG_PRECOMPILED test_precompiled)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_precompile_headers(${name} REUSE_FROM ${ARG_PRECOMPILED})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${ARG_LINKS} test_support test_code)
  add_test(NAME ${name} COMMAND ${ARG_LAUNCHER} $<TARGET_FILE:${name}> --gtest_brief=1)
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 900)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}")
  if(ARG_COST)
    set_tests_properties(${name} PROPERTIES COST ${ARG_COST})
  endif()
  if("sound" IN_LIST ARG_LABELS)
    # Waits for real time to pass, beside tests that work, but not beside another one that listens.
    set_tests_properties(${name} PROPERTIES RESOURCE_LOCK sound COST 500)
    add_dependencies(sound_tests ${name})
  else()
    add_dependencies(sanitized_tests ${name})
  endif()
endfunction()

# sorvanta_pipewire_test(<name> <tests>)
# The sound tests of the program <name> whose names fit the filter of GoogleTest, once more with PipeWire as the server.
function(sorvanta_pipewire_test name tests)
  string(REPLACE sound_test pipewire_test test ${name})
  add_test(NAME ${test} COMMAND ${name} --gtest_brief=1 --gtest_filter=${tests})
  set_tests_properties(${test} PROPERTIES TIMEOUT 900 LABELS sound RESOURCE_LOCK sound COST 400
    ENVIRONMENT SORVANTA_SOUND_SERVER_KIND=pipewire)
endfunction()

# sorvanta_ui_test(<name> ...), as sorvanta_test: a program that shows QML offscreen, drawn in software. Its main
# is found before the one of test_support, because its library comes first.
function(sorvanta_ui_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT;COST" "SOURCES;LINKS;LABELS" ${ARGN})
  sorvanta_test(${name} SOURCES ${ARG_SOURCES} LINKS ui_test_support ${ARG_LINKS} PRECOMPILED ui_test_precompiled
    TIMEOUT ${ARG_TIMEOUT} COST ${ARG_COST} LABELS ${ARG_LABELS})
endfunction()
