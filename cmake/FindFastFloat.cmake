# fast_float, header-only and without a package file of its own: FastFloat::FastFloat.
find_path(FAST_FLOAT_INCLUDE_DIR fast_float/fast_float.h)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(FastFloat REQUIRED_VARS FAST_FLOAT_INCLUDE_DIR)
if(FastFloat_FOUND AND NOT TARGET FastFloat::FastFloat)
    add_library(FastFloat::FastFloat INTERFACE IMPORTED)
    target_include_directories(FastFloat::FastFloat INTERFACE ${FAST_FLOAT_INCLUDE_DIR})
endif()
