# Compiler settings, carried by interface targets only: nothing here is global.
#   quorvane::flags     warnings, hardening and sanitizers, for every target of ours
#   quorvane::qtflags   the same, plus the stricter Qt defines

set(QUORVANE_SANITIZE "" CACHE STRING "Comma separated list for -fsanitize=, empty for none")
option(QUORVANE_WERROR "Treat warnings as errors" OFF)
option(QUORVANE_HARDEN "Add the hardening flags of release builds" OFF)

add_library(quorvane_flags INTERFACE)
add_library(quorvane::flags ALIAS quorvane_flags)
target_compile_features(quorvane_flags INTERFACE cxx_std_20)
target_compile_options(quorvane_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wcast-qual -Wformat=2
    -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual -Wundef
    # GCC 12 warns of overlapping copies in optimised std::string code where there are none.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<CXX_COMPILER_ID:GNU>:-Wsuggest-override -Wlogical-op -Wduplicated-cond -Wduplicated-branches>
    $<$<BOOL:${QUORVANE_WERROR}>:-Werror>)

if(QUORVANE_SANITIZE)
    target_compile_options(quorvane_flags INTERFACE
        -fsanitize=${QUORVANE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(quorvane_flags INTERFACE -fsanitize=${QUORVANE_SANITIZE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND QUORVANE_SANITIZE MATCHES "undefined")
        # Clang 14 cannot emit the check of function types for a coroutine ("difference across sections").
        target_compile_options(quorvane_flags INTERFACE -fno-sanitize=function)
    endif()
endif()

if(QUORVANE_FUZZ)
    # The code under test reports its coverage to the fuzzer; only the fuzz targets link its driver.
    target_compile_options(quorvane_flags INTERFACE -fsanitize=fuzzer-no-link)
    # A broken precondition of Qt or the standard library is a finding in an optimised build too.
    target_compile_definitions(quorvane_flags INTERFACE QT_FORCE_ASSERTS _GLIBCXX_ASSERTIONS)
endif()

if(QUORVANE_HARDEN)
    target_compile_options(quorvane_flags INTERFACE
        -fstack-protector-strong -fstack-clash-protection -fcf-protection=full
        -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -D_GLIBCXX_ASSERTIONS)
    target_link_options(quorvane_flags INTERFACE -Wl,-z,relro,-z,now,-z,separate-code)
endif()

add_library(quorvane_qtflags INTERFACE)
add_library(quorvane::qtflags ALIAS quorvane_qtflags)
target_link_libraries(quorvane_qtflags INTERFACE quorvane::flags)
target_compile_definitions(quorvane_qtflags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_FOREACH QT_NO_KEYWORDS QT_USE_QSTRINGBUILDER
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
