include(NativeHeaders)
quorvex_import_native_headers(fmt::fmt fmt/format.h)
set_property(TARGET fmt::fmt APPEND PROPERTY INTERFACE_COMPILE_DEFINITIONS FMT_HEADER_ONLY)
set(fmt_FOUND TRUE)
