# Every library that LumenFold stands on; scripts/dependencies lists the Debian packages that hold them.

find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets Network DBus Svg
    Quick WebChannel WebEngineCore WebEngineWidgets)
find_package(QCoro6 REQUIRED COMPONENTS Core)
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(tl-expected REQUIRED)
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET
    xcb xcb-shm xcb-composite xcb-randr xcb-xfixes xcb-xinput xcb-xkb xcb-render xcb-shape xcb-damage xcb-res)
pkg_check_modules(XKBCOMMON REQUIRED IMPORTED_TARGET xkbcommon xkbcommon-x11)
pkg_check_modules(DBUS REQUIRED IMPORTED_TARGET dbus-1)
pkg_check_modules(SECRET REQUIRED IMPORTED_TARGET libsecret-1)
pkg_check_modules(ISAL REQUIRED IMPORTED_TARGET libisal)
pkg_check_modules(SPNG REQUIRED IMPORTED_TARGET spng)
if(LUMENFOLD_UPDATES)
    pkg_check_modules(SODIUM REQUIRED IMPORTED_TARGET libsodium)
endif()

if(LUMENFOLD_BUILD_TESTS OR LUMENFOLD_BUILD_FUZZERS)
    find_package(GTest REQUIRED)
    pkg_check_modules(XTEST REQUIRED IMPORTED_TARGET xcb-xtest)
endif()
if(LUMENFOLD_BUILD_BENCH)
    find_package(benchmark REQUIRED)
endif()
