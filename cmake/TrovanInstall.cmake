# What `cmake --install` lays down: headers, libraries, the command, and how others find them.
include(CMakePackageConfigHelpers)

get_property(libraries GLOBAL PROPERTY TROVAN_INSTALLED_LIBRARIES)
install(TARGETS ${libraries} EXPORT TrovanTargets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(EXPORT TrovanTargets NAMESPACE trovan:: DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/Trovan")

configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/TrovanConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/TrovanConfig.cmake"
  INSTALL_DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/Trovan")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/TrovanConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/TrovanConfig.cmake"
              "${PROJECT_BINARY_DIR}/TrovanConfigVersion.cmake"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/Trovan")

# The linker wants who needs a library before the library.
set(TROVAN_PC_LIBS ${libraries})
list(REVERSE TROVAN_PC_LIBS)
list(TRANSFORM TROVAN_PC_LIBS PREPEND "-l")
list(JOIN TROVAN_PC_LIBS " " TROVAN_PC_LIBS)
if(CORVEL_GSL_HAS_FAIL_FAST)
  set(TROVAN_PC_DEFINITIONS "-DCORVEL_GSL_HAS_FAIL_FAST")
endif()
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
  BASE_DIRECTORY "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" OUTPUT_VARIABLE TROVAN_PC_PREFIX)
configure_file("${PROJECT_SOURCE_DIR}/cmake/trovan.pc.in" "${PROJECT_BINARY_DIR}/trovan.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/trovan.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/README.md"
  DESTINATION "${CMAKE_INSTALL_DOCDIR}")
