# Brings what tests and tool need without a library that is built for the target: GoogleTest from its sources, as Debian's
# package googletest has them, and header-only libraries. Of the building machine's headers only those are seen, since the
# others are for itself.
# Tests spend their time in the library's objects, and compilers theirs on optimising tests.
set(ORVALO_TEST_OPTIONS -O0)

if(ORVALO_BUILD_TESTS)
  set(INSTALL_GTEST OFF)
  set(BUILD_SHARED_LIBS OFF)
  add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
  unset(BUILD_SHARED_LIBS)
endif()

set(headers ${PROJECT_BINARY_DIR}/headers)
foreach(folder CLI fmt nlohmann)
  file(MAKE_DIRECTORY ${headers})
  file(CREATE_LINK /usr/include/${folder} ${headers}/${folder} SYMBOLIC)
endforeach()
foreach(library CLI11::CLI11 fmt::fmt fmt::fmt-header-only nlohmann_json::nlohmann_json)
  add_library(${library} INTERFACE IMPORTED)
  target_include_directories(${library} SYSTEM INTERFACE ${headers})
endforeach()
target_compile_definitions(fmt::fmt INTERFACE FMT_HEADER_ONLY)
target_compile_definitions(fmt::fmt-header-only INTERFACE FMT_HEADER_ONLY)
