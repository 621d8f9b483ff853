include(NativeHeaders)
quorvex_import_native_headers(CLI11::CLI11 CLI/CLI.hpp)
set(CLI11_FOUND TRUE)
