# Finds xxHash and defines xxHash::xxhash, the checksums of src/fastfp.
# Debian ships no CMake package; an xxHash built by hand with CMake has one, whose target has the same name.

find_package(xxHash CONFIG QUIET)
if(xxHash_FOUND AND TARGET xxHash::xxhash)
  return()
endif()

find_path(xxHash_INCLUDE_DIR xxhash.h)
find_library(xxHash_LIBRARY xxhash)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(xxHash REQUIRED_VARS xxHash_LIBRARY xxHash_INCLUDE_DIR
  REASON_FAILURE_MESSAGE "On Debian: apt-get install libxxhash-dev")

if(xxHash_FOUND AND NOT TARGET xxHash::xxhash)
  add_library(xxHash::xxhash UNKNOWN IMPORTED)
  set_target_properties(xxHash::xxhash PROPERTIES
    IMPORTED_LOCATION "${xxHash_LIBRARY}" INTERFACE_INCLUDE_DIRECTORIES "${xxHash_INCLUDE_DIR}")
endif()
