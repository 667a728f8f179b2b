# The engine: whisper-cli, built once from the sources that an npm package carries, into the place among the
# application's resources where it is looked for.
set(SORVANTA_ENGINE_PLACE "lib/sorvanta/sorvanta_extra_data/whisper.cpp/build/bin")
set(SORVANTA_ENGINE_PROGRAM "" CACHE FILEPATH
  "A whisper-cli that was built before; empty: it is built here")
option(SORVANTA_ENGINE_NATIVE "Build the engine for this very processor; OFF for a package" ON)

set(engine_program ${CMAKE_BINARY_DIR}/${SORVANTA_ENGINE_PLACE}/whisper-cli)
if(SORVANTA_ENGINE_PROGRAM)
  add_custom_command(OUTPUT ${engine_program}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/${SORVANTA_ENGINE_PLACE}
    COMMAND ${CMAKE_COMMAND} -E create_symlink ${SORVANTA_ENGINE_PROGRAM} ${engine_program}
    COMMENT "Linking the engine")
  add_custom_target(engine ALL DEPENDS ${engine_program})
else()
  include(ExternalProject)
  ExternalProject_Add(engine
    SOURCE_DIR ${PROJECT_SOURCE_DIR}/node_modules/nodejs-whisper/cpp/whisper.cpp
    BINARY_DIR ${CMAKE_BINARY_DIR}/engine
    CMAKE_ARGS
      -DCMAKE_BUILD_TYPE=Release
      -DBUILD_SHARED_LIBS=OFF
      -DWHISPER_COMMON_FFMPEG=ON
      -DWHISPER_BUILD_SERVER=OFF
      -DWHISPER_BUILD_TESTS=OFF
      -DGGML_NATIVE=${SORVANTA_ENGINE_NATIVE}
      -DGGML_CCACHE=OFF
    BUILD_COMMAND ${CMAKE_COMMAND} --build <BINARY_DIR> --target whisper-cli --parallel
    BUILD_BYPRODUCTS ${CMAKE_BINARY_DIR}/engine/bin/whisper-cli
    INSTALL_COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/${SORVANTA_ENGINE_PLACE}
    COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_BINARY_DIR}/engine/bin/whisper-cli ${engine_program}
    LOG_CONFIGURE ON LOG_BUILD ON LOG_OUTPUT_ON_FAILURE ON)
endif()
install(PROGRAMS ${engine_program} DESTINATION ${SORVANTA_ENGINE_PLACE})
