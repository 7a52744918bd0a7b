# Installs the library, its headers, and what find_package and pkg-config look for.
include(CMakePackageConfigHelpers)

# A client's CMake from before 3.23 knows no file sets and takes the include folder.
install(TARGETS Orvalo3DReader EXPORT Orvalo3DReaderTargets FILE_SET HEADERS
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Orvalo3DReader)
install(EXPORT Orvalo3DReaderTargets NAMESPACE Orvalo3DReader:: DESTINATION ${package_dir})
configure_package_config_file(cmake/Orvalo3DReaderConfig.cmake.in
  ${PROJECT_BINARY_DIR}/Orvalo3DReaderConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/Orvalo3DReaderConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/Orvalo3DReaderConfig.cmake ${PROJECT_BINARY_DIR}/Orvalo3DReaderConfigVersion.cmake
  DESTINATION ${package_dir})

# Found from where the file lies, so that an installed tree may stand anywhere.
file(RELATIVE_PATH prefix_from_pkgconfig ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/Orvalo3DReader.pc.in ${PROJECT_BINARY_DIR}/Orvalo3DReader.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/Orvalo3DReader.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(MINGW)
  install(FILES ${PROJECT_BINARY_DIR}/Orvalo3DReader.lib ${PROJECT_BINARY_DIR}/Orvalo3DReader.def
    DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()
if(WIN32)
  install(FILES README.md CHANGELOG.md SECURITY.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
  install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs FILES_MATCHING
    PATTERN *.md PATTERN *.json PATTERN *.png)
  # Of what is linked into the tool or the library, where it comes from Debian.
  foreach(package libcli11-dev libfmt-dev nlohmann-json3-dev libz-mingw-w64-dev mingw-w64-x86-64-dev
      g++-mingw-w64-x86-64-posix)
    install(FILES /usr/share/doc/${package}/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR}/licences
      RENAME ${package}.txt OPTIONAL)
  endforeach()
endif()

if(TARGET orvalo)
  # The tool finds the library from where it lies itself.
  file(RELATIVE_PATH libraries_from_programs ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(orvalo PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries_from_programs}")
  install(TARGETS orvalo)
endif()

# One archive with all of it.
if(WIN32 AND PROJECT_IS_TOP_LEVEL)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-windows-x64)
  set(CPACK_VERBATIM_VARIABLES ON)
  set(CPACK_STRIP_FILES ON)
  include(CPack)
endif()
