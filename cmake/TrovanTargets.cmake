# Targets that see no more than they may.
#
# Headers and sources of a library lie together in one folder, so an ordinary include folder would
# open every neighbour's headers, and private ones too. Each target therefore gets a folder of its
# own in the build tree that holds links to its public headers and to nothing else. A layer that is
# not linked cannot be included: the compiler does not find it.

# trovan_public_headers(<target> <namespace> <header>...)
# Makes the headers available as <namespace/Header.h> to the target and to what links it, and
# installs them under that name.
function(trovan_public_headers target namespace)
  set(view "${PROJECT_BINARY_DIR}/headers/${target}")
  file(MAKE_DIRECTORY "${view}/${namespace}")
  foreach(header IN LISTS ARGN)
    cmake_path(ABSOLUTE_PATH header OUTPUT_VARIABLE path)
    cmake_path(GET path FILENAME name)
    file(CREATE_LINK "${path}" "${view}/${namespace}/${name}" COPY_ON_ERROR SYMBOLIC)
    set_property(TARGET ${target} APPEND PROPERTY TROVAN_PUBLIC_HEADERS "${namespace}/${name}")
  endforeach()
  set_property(GLOBAL APPEND PROPERTY TROVAN_HEADER_TARGETS ${target})
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "INTERFACE_LIBRARY")
    set(scope INTERFACE)
  else()
    set(scope PUBLIC)
  endif()
  target_include_directories(${target} ${scope}
    "$<BUILD_INTERFACE:${view}>" "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
  install(FILES ${ARGN} DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${namespace}")
endfunction()

# trovan_platform_library(<name> HEADERS ... SOURCES ... [PUBLIC <libraries>] [PRIVATE <libraries>])
# A shared library of its own, so that an application that has its own can put it in our place.
function(trovan_platform_library name)
  cmake_parse_arguments(arg "" "" "HEADERS;SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(${name} SHARED ${arg_SOURCES})
  add_library(trovan::${name} ALIAS ${name})
  trovan_public_headers(${name} ${name} ${arg_HEADERS})
  string(TOUPPER ${name} prefix)
  set_target_properties(${name} PROPERTIES DEFINE_SYMBOL ${prefix}_BUILDING
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_link_libraries(${name} PUBLIC ${arg_PUBLIC}
                                PRIVATE ${arg_PRIVATE} $<BUILD_INTERFACE:trovan_dev>)
  set_property(GLOBAL APPEND PROPERTY TROVAN_INSTALLED_LIBRARIES ${name})
endfunction()

# trovan_family(<name> HEADERS ... SOURCES ... [PUBLIC <libraries>] [PRIVATE <libraries>])
# One family of libtrovan: compiled apart, so that it sees only what it links; packed together.
function(trovan_family name)
  cmake_parse_arguments(arg "" "" "HEADERS;SOURCES;PUBLIC;PRIVATE" ${ARGN})
  set(target trovan_${name})
  add_library(${target} OBJECT ${arg_SOURCES})
  trovan_public_headers(${target} trovan ${arg_HEADERS})
  target_compile_definitions(${target} PRIVATE TROVAN_BUILDING)
  target_link_libraries(${target} PUBLIC trovan_export ${arg_PUBLIC}
                                  PRIVATE ${arg_PRIVATE} $<BUILD_INTERFACE:trovan_dev>)
  set_property(GLOBAL APPEND PROPERTY TROVAN_FAMILIES ${target})
endfunction()
