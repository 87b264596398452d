# The libraries that layers link, each under one target name. scripts/install-deps installs them.

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(OpenSSL 3.0 REQUIRED COMPONENTS Crypto)
find_package(ZLIB REQUIRED)
find_package(CURL REQUIRED)
find_package(Boost REQUIRED)
pkg_check_modules(GLIB REQUIRED IMPORTED_TARGET GLOBAL glib-2.0)
pkg_check_modules(GIO REQUIRED IMPORTED_TARGET GLOBAL gio-2.0 gio-unix-2.0)
pkg_check_modules(LIBDEFLATE REQUIRED IMPORTED_TARGET GLOBAL libdeflate)
pkg_check_modules(PROPERTIES_CPP REQUIRED IMPORTED_TARGET GLOBAL properties-cpp)

# Those whose headers a public header includes, so that a user's build has to find them too: the
# target, the line of the CMake package that finds it, the pkg-config module.
set(TRELVO_PUBLIC_DEPENDENCIES
  "PkgConfig::GLIB|pkg_check_modules(GLIB REQUIRED IMPORTED_TARGET glib-2.0)|glib-2.0"
  "PkgConfig::PROPERTIES_CPP|pkg_check_modules(PROPERTIES_CPP REQUIRED IMPORTED_TARGET properties-cpp)|properties-cpp"
  "ZLIB::ZLIB|find_dependency(ZLIB)|zlib"
  "Boost::headers|find_dependency(Boost)|")
