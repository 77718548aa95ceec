# Compiler settings shared by every target.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(QX_CCACHE ccache)
if(QX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${QX_CCACHE}")
endif()

add_library(qx_flags INTERFACE)
target_compile_options(qx_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor)
# g++ 12 warns falsely about overlapping copies in std::string (GCC bug 105651).
target_compile_options(qx_flags INTERFACE -Wno-restrict)
# One arithmetic for every instruction set: a fused multiply-add would change the last bit of a score.
target_compile_options(qx_flags INTERFACE -ffp-contract=off)
if(QX_WERROR)
  target_compile_options(qx_flags INTERFACE -Werror)
endif()
if(QX_SANITIZE)
  target_compile_options(qx_flags INTERFACE -fsanitize=${QX_SANITIZE} -fno-omit-frame-pointer)
  target_link_options(qx_flags INTERFACE -fsanitize=${QX_SANITIZE})
endif()
