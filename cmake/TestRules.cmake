# GoogleTest from Debian's sources: the mingw builds have no packaged library, and one way serves all builds.
find_path(TQODR_GTEST_SOURCE googlemock/CMakeLists.txt
    PATHS ${CMAKE_SOURCE_DIR}/build/third_party/googletest /usr/src/googletest
    NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
add_subdirectory(${TQODR_GTEST_SOURCE} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
if(TQODR_SANITIZE)
    foreach(library gtest gtest_main gmock gmock_main)
        target_compile_options(${library} PRIVATE -fsanitize=address,undefined)
    endforeach()
endif()

# tqodr_test(NAME SOURCES... [LINK libraries...] [LABELS labels...]): one GoogleTest program, one CTest test.
# The mingw builds run it under Wine in the build's own scratch prefix, made by the fixture `prefix`
# (tests/CMakeLists.txt), in which LocalMapi and QuorvexDll are registered.
# A test finds what it needs in its environment:
#   TQODR_SOURCE_DIR  the project's folder
#   TQODR_CORPUS      the folder of real mail, when there is one beside the project
#   TQODR_DIST        the folder with the delivered files of this build
# Paths in them are the build machine's (Unix under Wine).
function(tqodr_test name)
    cmake_parse_arguments(arg "" "" "LINK;LABELS" ${ARGN})
    add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PRIVATE tqodr_options ${arg_LINK} gmock gtest_main)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        TIMEOUT 900
        LABELS "${arg_LABELS}"
        ENVIRONMENT "TQODR_SOURCE_DIR=${CMAKE_SOURCE_DIR};TQODR_CORPUS=${CMAKE_SOURCE_DIR}/../shared/corpus;TQODR_DIST=${TQODR_DIST};WINEPREFIX=${CMAKE_BINARY_DIR}/prefix;WINEDEBUG=-all")
    if(WIN32)
        set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED prefix)
    endif()
endfunction()

# tqodr_test_in_zones(NAME PROGRAM FILTER zones...): runs the tests of PROGRAM that FILTER names once in each time
# zone, as tests NAME.zone.ZONE.
function(tqodr_test_in_zones name program filter)
    foreach(zone ${ARGN})
        string(REPLACE "/" "." zone_name ${zone})
        add_test(NAME ${name}.zone.${zone_name} COMMAND ${program} --gtest_filter=${filter})
        set_tests_properties(${name}.zone.${zone_name} PROPERTIES
            TIMEOUT 300
            FIXTURES_REQUIRED prefix
            ENVIRONMENT "TZ=${zone};WINEPREFIX=${CMAKE_BINARY_DIR}/prefix;WINEDEBUG=-all")
    endforeach()
endfunction()
