# How every target of ours is compiled and where what we deliver is put.
option(TQODR_SANITIZE "Build with AddressSanitizer and UBSan (native only)" OFF)
option(TQODR_FUZZ "Build the fuzzers instead of the programs and tests (native only, with clang)" OFF)
option(TQODR_RELEASE "Build the same bytes in whatever folder" OFF)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(WIN32)
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
        set(TQODR_ARCH x64)
    else()
        set(TQODR_ARCH x86)
    endif()
else()
    set(TQODR_ARCH native)
endif()
# The plain presets fill dist/; every other build folder keeps what it makes to itself.
if(CMAKE_BINARY_DIR STREQUAL "${CMAKE_SOURCE_DIR}/build/${TQODR_ARCH}")
    set(TQODR_DIST ${CMAKE_SOURCE_DIR}/dist/${TQODR_ARCH})
else()
    set(TQODR_DIST ${CMAKE_BINARY_DIR}/dist)
endif()

# A delivered file tells nothing of the time it was linked at.
if(WIN32)
    add_link_options(-Wl,--no-insert-timestamp)
endif()
# Nor, for a release, where the sources lay: debuggers find them when they are started in the project's folder.
if(TQODR_RELEASE)
    add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.>)
endif()

add_library(tqodr_options INTERFACE)
target_include_directories(tqodr_options INTERFACE ${CMAKE_SOURCE_DIR} ${CMAKE_BINARY_DIR}/generated)
target_compile_options(tqodr_options INTERFACE -Wall -Wextra -Werror)
target_compile_definitions(tqodr_options INTERFACE TQODR_VERSION="${PROJECT_VERSION}")
if(WIN32)
    # Windows 10: CompareStringOrdinal, SRW locks and per-monitor DPI are simply there.
    target_compile_definitions(tqodr_options INTERFACE
        UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN WINVER=0x0A00 _WIN32_WINNT=0x0A00 STRICT)
    target_compile_options(tqodr_options INTERFACE -fstack-protector-strong)
    target_link_options(tqodr_options INTERFACE
        -static -Wl,--dynamicbase -Wl,--nxcompat -fstack-protector-strong)
    if(TQODR_ARCH STREQUAL x64)
        target_link_options(tqodr_options INTERFACE -Wl,--high-entropy-va)
    else()
        # DLL exports keep their plain names on x86 as well.
        target_link_options(tqodr_options INTERFACE -Wl,--kill-at)
    endif()
elseif(TQODR_SANITIZE)
    target_compile_options(tqodr_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(tqodr_options INTERFACE -fsanitize=address,undefined)
    if(TQODR_FUZZ)
        target_compile_options(tqodr_options INTERFACE -fsanitize=fuzzer-no-link)
    endif()
else()
    set(CMAKE_POSITION_INDEPENDENT_CODE ON)
    target_compile_options(tqodr_options INTERFACE -fstack-protector-strong)
    target_compile_definitions(tqodr_options INTERFACE $<$<NOT:$<CONFIG:Debug>>:_FORTIFY_SOURCE=2>)
    target_link_options(tqodr_options INTERFACE -pie -Wl,-z,relro,-z,now,-z,noexecstack)
endif()

# Everything that is delivered, without tests.
add_custom_target(delivery)

# tqodr_room(NAME SOURCES...): a static library of one room.
function(tqodr_room name)
    add_library(${name} STATIC ${ARGN})
    target_link_libraries(${name} PUBLIC tqodr_options)
endfunction()

# tqodr_delivered(TARGET): puts what the target makes into dist/ under its own plain name.
function(tqodr_delivered target)
    set_target_properties(${target} PROPERTIES
        PREFIX ""
        RUNTIME_OUTPUT_DIRECTORY ${TQODR_DIST}
        LIBRARY_OUTPUT_DIRECTORY ${TQODR_DIST}
        ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/implib)
    target_link_libraries(${target} PRIVATE tqodr_options)
    add_dependencies(delivery ${target})
    if(WIN32)
        tqodr_symbols_apart(${target})
    endif()
endfunction()

# tqodr_library_entry(TARGET): gives a library a heap of its own, and has it give back, when it is unloaded, what its
# runtime took of the process.
function(tqodr_library_entry target)
    target_sources(${target} PRIVATE
        ${CMAKE_SOURCE_DIR}/cmake/LibraryEntry.cpp
        ${CMAKE_SOURCE_DIR}/cmake/LibraryHeap.cpp)
    if(TQODR_ARCH STREQUAL x64)
        target_link_options(${target} PRIVATE
            -Wl,--entry=LibraryEntry
            -Wl,--defsym=__imp_TlsAlloc=libraryTlsAlloc
            -Wl,--defsym=__imp_TlsFree=libraryTlsFree)
    else()
        target_link_options(${target} PRIVATE
            -Wl,--entry=_LibraryEntry@12
            "-Wl,--defsym=\"__imp__TlsAlloc@0\"=_libraryTlsAlloc"
            "-Wl,--defsym=\"__imp__TlsFree@4\"=_libraryTlsFree")
    endif()
endfunction()

# tqodr_dll(NAME SOURCES...): an in-process server; the sources hold its .def file and its .rc file.
function(tqodr_dll name)
    add_library(${name} MODULE ${ARGN})
    tqodr_library_entry(${name})
    tqodr_delivered(${name})
endfunction()

# tqodr_program(NAME SOURCES...): a program that is delivered.
function(tqodr_program name)
    add_executable(${name} ${ARGN})
    tqodr_delivered(${name})
endfunction()
