# kelvane-cli, the native tests, the fuzz targets and the benchmarks.
find_package(PkgConfig REQUIRED)
pkg_check_modules(CAIRO REQUIRED IMPORTED_TARGET cairo cairo-svg cairo-pdf)

set(NATIVE_SOURCES ${ALL_SOURCES})
list(FILTER NATIVE_SOURCES EXCLUDE REGEX "_win\\.cpp$")
add_library(kelvane_core STATIC ${NATIVE_SOURCES})
target_include_directories(kelvane_core PUBLIC ${CMAKE_SOURCE_DIR}/src)
target_compile_options(kelvane_core PRIVATE ${WARNINGS})
target_link_libraries(kelvane_core PUBLIC PkgConfig::CAIRO)

enable_testing()

# --- what the native tests, the fuzz targets and the benchmarks share --------------------------------
add_googletest()
file(GLOB UNIT_SUPPORT CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/unit/support/*.cpp)
add_library(unit_support STATIC ${UNIT_SUPPORT})
target_include_directories(unit_support PUBLIC ${CMAKE_SOURCE_DIR}/tests)
target_compile_options(unit_support PRIVATE ${WARNINGS})
target_link_libraries(unit_support PUBLIC kelvane_core gtest)

if(KELVANE_FUZZ)
  file(GLOB FUZZERS CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/fuzz/*_fuzz.cpp)
  foreach(source ${FUZZERS})
    get_filename_component(name ${source} NAME_WE)
    add_executable(${name} ${source})
    target_compile_options(${name} PRIVATE ${WARNINGS})
    target_link_libraries(${name} PRIVATE unit_support -fsanitize=fuzzer)
  endforeach()
  return()
endif()

# --- kelvane-cli --------------------------------------------------------------------------------------
file(GLOB CLI_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/cli/*.cpp)
if(CLI_SOURCES)
  add_executable(kelvane-cli ${CLI_SOURCES})
  target_compile_options(kelvane-cli PRIVATE ${WARNINGS})
  target_compile_definitions(kelvane-cli PRIVATE KELVANE_VERSION="${PROJECT_VERSION}")
  target_link_libraries(kelvane-cli PRIVATE kelvane_core)
  set_target_properties(kelvane-cli PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
endif()

# --- unit tests: one program for each folder of tests/unit, with the sanitizers or coverage only --------------
file(GLOB UNIT_FOLDERS LIST_DIRECTORIES true CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/unit/*)
foreach(folder ${UNIT_FOLDERS})
  get_filename_component(name ${folder} NAME)
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp)
  if(name STREQUAL "support" OR NOT sources OR NOT (KELVANE_SANITIZE OR KELVANE_COVERAGE))
    continue()
  endif()
  add_executable(unit_${name} ${sources})
  target_compile_options(unit_${name} PRIVATE ${WARNINGS})
  target_link_libraries(unit_${name} PRIVATE unit_support gtest_main)
  if(name STREQUAL "cli")
    # To the two files that ask for it alone: with a path of its own no other checkout shares what is compiled.
    set_source_files_properties(${folder}/run_cli.cpp ${folder}/examples_test.cpp PROPERTIES COMPILE_DEFINITIONS
      "KELVANE_CLI=\"$<TARGET_FILE:kelvane-cli>\";KELVANE_SOURCE_DIR=\"${CMAKE_SOURCE_DIR}\"")
    add_dependencies(unit_cli kelvane-cli)
  endif()
  if(name STREQUAL "faults")
    # Loaded into kelvane-cli by the tests.
    add_library(failing_memory MODULE ${CMAKE_SOURCE_DIR}/tests/faults/failing_memory.cpp)
    target_compile_options(failing_memory PRIVATE ${WARNINGS} -fno-sanitize=all)
    target_link_options(failing_memory PRIVATE -fno-sanitize=all)
    target_link_libraries(failing_memory PRIVATE ${CMAKE_DL_LIBS})
    target_compile_definitions(unit_faults PRIVATE
      KELVANE_CLI="$<TARGET_FILE:kelvane-cli>" FAILING_MEMORY="$<TARGET_FILE:failing_memory>")
    add_dependencies(unit_faults kelvane-cli failing_memory)
  endif()
  add_test(NAME ${name} COMMAND unit_${name} --gtest_brief=1)
endforeach()

# --- benchmarks ---------------------------------------------------------------------------------------
file(GLOB BENCH_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/bench/*.cpp)
list(FILTER BENCH_SOURCES EXCLUDE REGEX "_win\\.cpp$")
if(BENCH_SOURCES AND NOT (KELVANE_SANITIZE OR KELVANE_COVERAGE))
  find_package(benchmark REQUIRED)
  add_executable(kelvane-bench ${BENCH_SOURCES})
  target_compile_options(kelvane-bench PRIVATE ${WARNINGS})
  target_link_libraries(kelvane-bench PRIVATE unit_support benchmark::benchmark)
  set_target_properties(kelvane-bench PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
endif()
