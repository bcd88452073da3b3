# The headers of the language, and those that describe records, that most sources include.
set(SORVANE_COMMON_HEADERS
    <algorithm> <array> <cmath> <cstddef> <cstdint> <functional> <limits> <map> <memory> <numeric>
    <optional> <span> <string> <string_view> <utility> <vector>
    <boost/describe/class.hpp> <boost/describe/enum.hpp>)

# sorvane_library(NAME <Name> SOURCES <...> DEPENDS <...> [PRIVATE_DEPENDS <...>] [PRECOMPILE <...>])
#   One static library per room, alias Sorvane::<Name>; sources are listed, never globbed. PRECOMPILE
#   names the headers that most of the sources begin with; without it, the library takes the common
#   ones that Numerics has compiled, which asks for the same options: one that is lightly optimised or
#   uses Qt names its own.
function(sorvane_library)
    cmake_parse_arguments(ARG "" "NAME" "SOURCES;DEPENDS;PRIVATE_DEPENDS;PRECOMPILE" ${ARGN})
    add_library(Sorvane${ARG_NAME} STATIC ${ARG_SOURCES})
    add_library(Sorvane::${ARG_NAME} ALIAS Sorvane${ARG_NAME})
    target_include_directories(Sorvane${ARG_NAME} PUBLIC "${PROJECT_SOURCE_DIR}")
    target_link_libraries(Sorvane${ARG_NAME} PUBLIC ${ARG_DEPENDS}
        PRIVATE sorvane_options ${ARG_PRIVATE_DEPENDS})
    target_compile_features(Sorvane${ARG_NAME} PUBLIC cxx_std_20)
    if(ARG_PRECOMPILE)
        target_precompile_headers(Sorvane${ARG_NAME} PRIVATE ${ARG_PRECOMPILE})
    else()
        target_precompile_headers(Sorvane${ARG_NAME} REUSE_FROM SorvaneNumerics)
    endif()
endfunction()

# sorvane_test(NAME <Name> SOURCES <...> DEPENDS <...> [PRECOMPILE <...>] [LABELS <...>] [QT])
#   PRECOMPILE names the headers that most of the sources begin with.
function(sorvane_test)
    cmake_parse_arguments(ARG "QT" "NAME" "SOURCES;DEPENDS;PRECOMPILE;LABELS" ${ARGN})
    add_executable(${ARG_NAME} ${ARG_SOURCES})
    target_link_libraries(${ARG_NAME} PRIVATE ${ARG_DEPENDS} SorvaneTestSupport sorvane_options
        sorvane_not_optimised)
    if(ARG_PRECOMPILE)
        target_precompile_headers(${ARG_NAME} PRIVATE ${ARG_PRECOMPILE})
    elseif(NOT ARG_QT)
        target_precompile_headers(${ARG_NAME} REUSE_FROM SorvaneTestSupport)
    endif()
    set(properties TIMEOUT 120)
    if(ARG_QT)
        list(APPEND properties ENVIRONMENT QT_QPA_PLATFORM=offscreen)
    endif()
    if(ARG_LABELS)
        list(APPEND properties LABELS "${ARG_LABELS}")
    endif()
    gtest_discover_tests(${ARG_NAME} DISCOVERY_MODE PRE_TEST PROPERTIES ${properties})
endfunction()
