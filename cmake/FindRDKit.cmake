# Finds RDKit and defines RDKit::RDKit, the libraries that src/chem uses.
# Debian ships neither a CMake package nor a pkg-config file; an RDKit built by hand has RDKitConfig.cmake.

set(_qx_rdkit_components SmilesParse FileParsers Depictor MolDraw2D SubstructMatch GraphMol RDGeneral RDGeometryLib)

find_package(RDKit CONFIG QUIET)
if(RDKit_FOUND AND TARGET RDKit::SmilesParse)
  if(NOT TARGET RDKit::RDKit)
    add_library(RDKit::RDKit INTERFACE IMPORTED)
    foreach(component IN LISTS _qx_rdkit_components)
      if(TARGET RDKit::${component})
        target_link_libraries(RDKit::RDKit INTERFACE RDKit::${component})
      endif()
    endforeach()
  endif()
  return()
endif()

find_path(RDKit_INCLUDE_DIR RDGeneral/RDConfig.h PATH_SUFFIXES rdkit)
set(_qx_rdkit_libraries)
set(_qx_rdkit_required RDKit_INCLUDE_DIR)
foreach(component IN LISTS _qx_rdkit_components)
  find_library(RDKit_${component}_LIBRARY RDKit${component})
  list(APPEND _qx_rdkit_required RDKit_${component}_LIBRARY)
  list(APPEND _qx_rdkit_libraries ${RDKit_${component}_LIBRARY})
endforeach()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(RDKit REQUIRED_VARS ${_qx_rdkit_required}
  REASON_FAILURE_MESSAGE "On Debian: apt-get install librdkit-dev libboost-dev")

if(RDKit_FOUND AND NOT TARGET RDKit::RDKit)
  add_library(RDKit::RDKit INTERFACE IMPORTED)
  target_include_directories(RDKit::RDKit SYSTEM INTERFACE ${RDKit_INCLUDE_DIR})
  target_link_libraries(RDKit::RDKit INTERFACE ${_qx_rdkit_libraries})
endif()
