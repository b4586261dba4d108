# kelvane.exe, the window tests, and the benchmark of the real window.
enable_language(RC)
add_compile_options(-ffunction-sections -fdata-sections)
add_link_options(-static -Wl,--gc-sections)
add_compile_definitions(WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601 WINVER=0x0601)

add_library(kelvane_engine STATIC ${ENGINE_SOURCES})
target_include_directories(kelvane_engine PUBLIC ${CMAKE_SOURCE_DIR}/src)
target_compile_options(kelvane_engine PRIVATE ${WARNINGS})

set(WINDOWS_SOURCES ${ALL_SOURCES})
list(FILTER WINDOWS_SOURCES INCLUDE REGEX "_win\\.cpp$")
if(EXISTS ${CMAKE_SOURCE_DIR}/resources/kelvane.rc)
  add_executable(kelvane WIN32 ${WINDOWS_SOURCES} ${CMAKE_SOURCE_DIR}/resources/kelvane.rc)
  target_include_directories(kelvane PRIVATE ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR}/resources)
  # The resource compiler does not tell what it reads.
  file(GLOB RESOURCE_FILES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/resources/*)
  set_source_files_properties(${CMAKE_SOURCE_DIR}/resources/kelvane.rc PROPERTIES
    OBJECT_DEPENDS "${RESOURCE_FILES};${CMAKE_SOURCE_DIR}/src/shell/command_ids.h")
  target_compile_options(kelvane PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${WARNINGS}>)
  target_link_libraries(kelvane PRIVATE kelvane_engine comctl32 comdlg32 gdi32 user32 shell32 advapi32)
  target_link_options(kelvane PRIVATE -Wl,-Map,${CMAKE_BINARY_DIR}/kelvane.map)
  set_target_properties(kelvane PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
endif()

# The manual lies beside the program.
file(GLOB_RECURSE MANUAL_FILES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/docs/manual/*)
add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/manual.stamp
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${CMAKE_BINARY_DIR}/manual
  COMMAND ${CMAKE_COMMAND} -E copy_directory ${CMAKE_SOURCE_DIR}/docs/manual ${CMAKE_BINARY_DIR}/manual
  COMMAND ${CMAKE_COMMAND} -E touch ${CMAKE_BINARY_DIR}/manual.stamp
  DEPENDS ${MANUAL_FILES})
add_custom_target(manual ALL DEPENDS ${CMAKE_BINARY_DIR}/manual.stamp)
if(TARGET kelvane)
  add_dependencies(kelvane manual)
endif()

file(GLOB WINDOW_TESTS CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/window/*.cpp)
if(WINDOW_TESTS)
  add_googletest()
  # What no command of the program shows yet is tested within the tests' own process.
  add_executable(window_tests ${WINDOW_TESTS}
    ${CMAKE_SOURCE_DIR}/src/shell/dialog_items_win.cpp ${CMAKE_SOURCE_DIR}/src/shell/text_dialog_win.cpp)
  target_include_directories(window_tests PRIVATE
    ${CMAKE_SOURCE_DIR}/tests ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR}/resources)
  target_compile_options(window_tests PRIVATE ${WARNINGS})
  add_dependencies(window_tests kelvane)
  target_link_libraries(window_tests PRIVATE gtest gtest_main gdi32 user32 psapi)
  set_target_properties(window_tests PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
endif()

# The whole program, entry and all, within the benchmark's process.
file(GLOB WINDOW_BENCH CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/bench/*_win.cpp)
if(WINDOW_BENCH AND TARGET kelvane)
  add_executable(paint_bench ${WINDOW_BENCH} ${WINDOWS_SOURCES} ${CMAKE_SOURCE_DIR}/resources/kelvane.rc)
  target_include_directories(paint_bench PRIVATE
    ${CMAKE_SOURCE_DIR}/tests ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR}/resources)
  target_compile_options(paint_bench PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${WARNINGS}>)
  target_link_libraries(paint_bench PRIVATE kelvane_engine comctl32 comdlg32 gdi32 user32 shell32 advapi32)
  set_target_properties(paint_bench PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
endif()
