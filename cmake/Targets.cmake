# sorvane_library(NAME <Name> SOURCES <...> DEPENDS <...> [PRIVATE_DEPENDS <...>])
#   One static library per room, alias Sorvane::<Name>; sources are listed, never globbed.
function(sorvane_library)
    cmake_parse_arguments(ARG "" "NAME" "SOURCES;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
    add_library(Sorvane${ARG_NAME} STATIC ${ARG_SOURCES})
    add_library(Sorvane::${ARG_NAME} ALIAS Sorvane${ARG_NAME})
    target_include_directories(Sorvane${ARG_NAME} PUBLIC "${PROJECT_SOURCE_DIR}")
    target_link_libraries(Sorvane${ARG_NAME} PUBLIC ${ARG_DEPENDS}
        PRIVATE sorvane_options ${ARG_PRIVATE_DEPENDS})
    target_compile_features(Sorvane${ARG_NAME} PUBLIC cxx_std_20)
endfunction()

# sorvane_test(NAME <Name> SOURCES <...> DEPENDS <...> [LABELS <...>] [QT])
function(sorvane_test)
    cmake_parse_arguments(ARG "QT" "NAME" "SOURCES;DEPENDS;LABELS" ${ARGN})
    add_executable(${ARG_NAME} ${ARG_SOURCES})
    target_link_libraries(${ARG_NAME} PRIVATE ${ARG_DEPENDS} SorvaneTestSupport sorvane_options)
    set(environment "SORVANE_TEST=1")
    if(ARG_QT)
        list(APPEND environment "QT_QPA_PLATFORM=offscreen")
    endif()
    gtest_discover_tests(${ARG_NAME} DISCOVERY_MODE PRE_TEST
        PROPERTIES LABELS "${ARG_LABELS}" ENVIRONMENT "${environment}" TIMEOUT 120)
endfunction()
