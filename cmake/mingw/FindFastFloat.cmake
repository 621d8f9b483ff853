include(NativeHeaders)
quorvex_import_native_headers(FastFloat::FastFloat fast_float/fast_float.h)
set(FastFloat_FOUND TRUE)
