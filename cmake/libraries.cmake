# Libraries that the companions, the open host and the tests are built on. Natively they are
# Debian's packages; for Windows they are built once from Debian's source packages.
if(WIN32)
  set(KF_THIRD_PARTY ${PROJECT_SOURCE_DIR}/build/third_party)
  execute_process(COMMAND ${PROJECT_SOURCE_DIR}/cmake/third_party.sh ${KF_THIRD_PARTY}
                  RESULT_VARIABLE failed)
  if(failed)
    message(FATAL_ERROR "The libraries for the Windows build could not be made (see above).")
  endif()
  add_library(jpeg STATIC IMPORTED)
  set_target_properties(jpeg PROPERTIES
    IMPORTED_LOCATION ${KF_THIRD_PARTY}/windows/lib/libjpeg.a
    INTERFACE_INCLUDE_DIRECTORIES ${KF_THIRD_PARTY}/windows/include)
  add_library(spng STATIC IMPORTED)
  set_target_properties(spng PROPERTIES
    IMPORTED_LOCATION ${KF_THIRD_PARTY}/windows/lib/libspng.a
    INTERFACE_INCLUDE_DIRECTORIES ${KF_THIRD_PARTY}/windows/include
    INTERFACE_COMPILE_DEFINITIONS SPNG_STATIC
    INTERFACE_LINK_LIBRARIES z)
  # Header-only packages are the same for every target; only their own folders are offered.
  add_library(kf_header_only INTERFACE)
  target_include_directories(kf_header_only SYSTEM INTERFACE ${KF_THIRD_PARTY}/windows/header-only)
else()
  find_package(JPEG REQUIRED)
  add_library(jpeg ALIAS JPEG::JPEG)
  find_library(SPNG_LIBRARY spng REQUIRED)
  add_library(spng UNKNOWN IMPORTED)
  set_target_properties(spng PROPERTIES IMPORTED_LOCATION ${SPNG_LIBRARY})
  add_library(kf_header_only INTERFACE)
endif()

# GoogleTest from its package's sources, with the same compiler and sanitizers as the tests.
set(INSTALL_GTEST OFF)
set(gtest_disable_pthreads OFF)
add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
