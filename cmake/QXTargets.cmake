# Every folder of src/ becomes one OBJECT library. The shared libraries are made of these objects, and so are
# the test and benchmark executables, which therefore reach internal (hidden) symbols too.

# Lowest first; a folder may include itself and the folders before it only (scripts/check_layers.py reads this line).
set(QX_LAYERS system platform chem fingerprint generators similarity database fastfp)

function(qx_add_sources folder)
  add_library(qx_${folder} OBJECT ${ARGN})
  target_include_directories(qx_${folder}
    PUBLIC ${PROJECT_SOURCE_DIR}/include
    PRIVATE ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(qx_${folder} PRIVATE qx_flags)
endfunction()

# The object libraries of a layer and of all layers below it.
function(qx_layers_up_to folder out)
  set(result)
  foreach(layer IN LISTS QX_LAYERS)
    list(APPEND result qx_${layer})
    if(layer STREQUAL folder)
      break()
    endif()
  endforeach()
  set(${out} ${result} PARENT_SCOPE)
endfunction()

function(qx_link_layers target folder)
  qx_layers_up_to(${folder} layers)
  target_link_libraries(${target} PRIVATE ${layers} qx_flags Threads::Threads)
  if("qx_chem" IN_LIST layers)
    target_link_libraries(${target} PRIVATE RDKit::RDKit ZLIB::ZLIB)
  endif()
  if("qx_fastfp" IN_LIST layers)
    target_link_libraries(${target} PRIVATE xxHash::xxhash)
  endif()
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(${target} PRIVATE
    QX_SOURCE_DIR="${PROJECT_SOURCE_DIR}" QX_SHARED_DATA_DIR="${PROJECT_SOURCE_DIR}/../shared/data")
endfunction()

function(qx_add_tests folder)
  add_executable(qx_${folder}_tests ${ARGN})
  qx_link_layers(qx_${folder}_tests ${folder})
  target_link_libraries(qx_${folder}_tests PRIVATE GTest::gtest_main)
  include(GoogleTest)
  gtest_discover_tests(qx_${folder}_tests DISCOVERY_MODE PRE_TEST
    TEST_PREFIX "${folder}." PROPERTIES TIMEOUT 600)
endfunction()

function(qx_add_bench folder)
  add_executable(qx_${folder}_bench ${ARGN})
  qx_link_layers(qx_${folder}_bench ${folder})
  target_link_libraries(qx_${folder}_bench PRIVATE benchmark::benchmark_main)
endfunction()
