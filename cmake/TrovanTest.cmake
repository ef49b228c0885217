include(GoogleTest)
find_package(GTest REQUIRED)

# trovan_test(<name> SOURCES ... LIBRARIES ...)
# Builds one test program and registers each of its cases with CTest, so that a failure names it.
function(trovan_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} trovan_dev GTest::gmock GTest::gtest_main)
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60)
endfunction()

# trovan_header_tests(): each public header compiles as the only include of a file that sees just
# the header's own target.
function(trovan_header_tests)
  get_property(targets GLOBAL PROPERTY TROVAN_HEADER_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(headers ${target} TROVAN_PUBLIC_HEADERS)
    set(sources)
    foreach(header IN LISTS headers)
      set(source "${CMAKE_CURRENT_BINARY_DIR}/headers/${target}/${header}.cpp")
      file(CONFIGURE OUTPUT "${source}" CONTENT "#include <${header}>\n#include <${header}>\n" @ONLY)
      list(APPEND sources "${source}")
    endforeach()
    get_target_property(type ${target} TYPE)
    add_library(${target}_headers OBJECT ${sources})
    target_link_libraries(${target}_headers PRIVATE trovan_dev)
    target_include_directories(${target}_headers PRIVATE
      $<TARGET_PROPERTY:${target},INTERFACE_INCLUDE_DIRECTORIES>)
  endforeach()
endfunction()
