# How every target here is compiled.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")

add_library(brimquill_compile INTERFACE)
target_include_directories(brimquill_compile INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_options(brimquill_compile INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
  -Woverloaded-virtual -Werror)
# g++ 12 sees overlapping copies in the concatenation of strings once it optimises; there are none.
target_compile_options(brimquill_compile INTERFACE $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:-Wno-restrict>)
if(BRIMQUILL_SANITIZE)
  target_compile_options(brimquill_compile INTERFACE -fsanitize=${BRIMQUILL_SANITIZE} -fno-omit-frame-pointer)
  target_link_options(brimquill_compile INTERFACE -fsanitize=${BRIMQUILL_SANITIZE})
  if(BRIMQUILL_SANITIZE MATCHES "undefined")
    target_compile_options(brimquill_compile INTERFACE -fno-sanitize-recover=undefined)
  endif()
endif()

find_program(BRIMQUILL_CCACHE ccache)
if(BRIMQUILL_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${BRIMQUILL_CCACHE}")
endif()
