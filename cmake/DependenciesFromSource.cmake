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
foreach(library CLI11::CLI11 fmt::fmt-header-only nlohmann_json::nlohmann_json)
  add_library(${library} INTERFACE IMPORTED)
  target_include_directories(${library} SYSTEM INTERFACE ${headers})
endforeach()
target_compile_definitions(fmt::fmt-header-only INTERFACE FMT_HEADER_ONLY)

# The headers of fmt hold its source too, which is compiled here once rather than with each source that formats.
if(ORVALO_BUILD_TOOL)
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/fmt.cpp CONTENT "#include <fmt/format-inl.h>

FMT_BEGIN_NAMESPACE
namespace detail {
template FMT_API auto dragonbox::to_decimal(float) noexcept -> dragonbox::decimal_fp<float>;
template FMT_API auto dragonbox::to_decimal(double) noexcept -> dragonbox::decimal_fp<double>;
template FMT_API auto thousands_sep_impl(locale_ref) -> thousands_sep_result<char>;
template FMT_API auto decimal_point_impl(locale_ref) -> char;
}
FMT_END_NAMESPACE
")
  add_library(fmt STATIC EXCLUDE_FROM_ALL ${PROJECT_BINARY_DIR}/fmt.cpp)
  target_compile_features(fmt PUBLIC cxx_std_20)
  target_include_directories(fmt SYSTEM PUBLIC ${headers})
  add_library(fmt::fmt ALIAS fmt)
endif()
