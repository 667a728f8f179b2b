set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
endif()
# Line tables are all that a stack trace needs; full debug information would triple the link time.
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1 -DNDEBUG")

set(SORVANTA_SANITIZE "" CACHE STRING "Empty, \"address\" (with undefined behaviour) or \"thread\"")
set_property(CACHE SORVANTA_SANITIZE PROPERTY STRINGS "" address thread)
if(SORVANTA_SANITIZE)
  # Builds a fifth sooner, and a stack trace has nearly all its frames.
  string(REPLACE -O2 -O1 CMAKE_CXX_FLAGS_RELWITHDEBINFO "${CMAKE_CXX_FLAGS_RELWITHDEBINFO}")
endif()
if(SORVANTA_SANITIZE STREQUAL "address")
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_compile_options(-Wno-maybe-uninitialized) # GCC 12 warns of its own instrumentation
  add_link_options(-fsanitize=address,undefined)
elseif(SORVANTA_SANITIZE STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
endif()

add_library(sorvanta_warnings INTERFACE)
target_compile_options(sorvanta_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wformat=2 -Werror)
target_compile_definitions(sorvanta_warnings INTERFACE QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060400)
