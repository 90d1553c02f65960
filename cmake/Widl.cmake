# The interface compiler, its IDL files and the standard type library, as the packages lay them down.
find_program(TQODR_WIDL NAMES ${TQODR_TRIPLE}-widl REQUIRED)
find_program(TQODR_FAKETIME faketime REQUIRED)
# The compiler writes the time of day into a type library.
set(TQODR_WIDL_AT_FIXED_TIME ${CMAKE_COMMAND} -E env TZ=UTC ${TQODR_FAKETIME} -f "2000-01-01 00:00:00" ${TQODR_WIDL})

# tqodr_package_folder(VARIABLE PACKAGE FILE): the folder in which PACKAGE has FILE.
function(tqodr_package_folder variable package file)
    if(${variable})
        return()
    endif()
    execute_process(COMMAND dpkg -L ${package} OUTPUT_VARIABLE files ERROR_QUIET)
    string(REPLACE "." "\\." pattern ${file})
    if(NOT files MATCHES "([^\n]+)/${pattern}\n")
        message(FATAL_ERROR "${file} is missing: install the package ${package}, or set ${variable}")
    endif()
    set(${variable} ${CMAKE_MATCH_1} CACHE PATH "Folder of ${file}")
endfunction()
tqodr_package_folder(TQODR_IDL_FOLDER libwine-dev oaidl.idl)
tqodr_package_folder(TQODR_STDOLE_FOLDER libwine stdole2.tlb)

if(TQODR_ARCH STREQUAL x64)
    set(TQODR_WIDL_TARGET -m64)
else()
    set(TQODR_WIDL_TARGET -m32)
endif()

# tqodr_idl(TARGET FILE...): compiles IDL files of the calling folder into the folder of the same name below
# generated/ (NAME.h, NAME_i.c with the identifiers, NAME.tlb) and makes the static library TARGET of the identifiers.
# Who links it finds the headers by #include "FOLDER/NAME.h".
function(tqodr_idl target)
    cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${CMAKE_SOURCE_DIR} OUTPUT_VARIABLE room)
    set(folder ${CMAKE_BINARY_DIR}/generated/${room})
    file(MAKE_DIRECTORY ${folder})
    list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/ OUTPUT_VARIABLE all)
    set(arguments ${TQODR_WIDL_TARGET} -I${CMAKE_CURRENT_SOURCE_DIR} -I${TQODR_IDL_FOLDER})
    set(widl ${TQODR_WIDL} ${arguments})
    set(outputs)
    set(identifiers)
    foreach(file ${ARGN})
        cmake_path(GET file STEM name)
        set(output ${folder}/${name})
        set(source ${CMAKE_CURRENT_SOURCE_DIR}/${file})
        # An IDL file may import another of its folder.
        add_custom_command(OUTPUT ${output}.h ${output}_i.c ${output}.tlb
            COMMAND ${widl} -h -o ${output}.h ${source}
            COMMAND ${widl} -u -o ${output}_i.c ${source}
            COMMAND ${TQODR_WIDL_AT_FIXED_TIME} ${arguments} -L ${TQODR_STDOLE_FOLDER} -t -o ${output}.tlb ${source}
            DEPENDS ${all}
            COMMENT "Compiling ${room}/${file}"
            VERBATIM)
        list(APPEND outputs ${output}.h ${output}.tlb)
        list(APPEND identifiers ${output}_i.c)
    endforeach()
    add_library(${target} STATIC ${identifiers} ${outputs})
    # A compiled IDL file includes what it imports by the plain name.
    target_include_directories(${target} SYSTEM PUBLIC ${CMAKE_BINARY_DIR}/generated ${folder})
    target_compile_options(${target} PRIVATE -w)
endfunction()

# tqodr_idl_proxy(TARGET NAME): the static library TARGET of the proxy and stub for the interfaces of NAME.idl, which
# the calling folder compiles by tqodr_idl, to be merged into a DLL: PrxDllMain, PrxDllGetClassObject,
# PrxDllCanUnloadNow, PrxDllRegisterServer and PrxDllUnregisterServer.
function(tqodr_idl_proxy target name)
    cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${CMAKE_SOURCE_DIR} OUTPUT_VARIABLE room)
    set(folder ${CMAKE_BINARY_DIR}/generated/${room})
    set(source ${CMAKE_CURRENT_SOURCE_DIR}/${name}.idl)
    set(widl ${TQODR_WIDL} ${TQODR_WIDL_TARGET} -I${CMAKE_CURRENT_SOURCE_DIR} -I${TQODR_IDL_FOLDER})
    add_custom_command(OUTPUT ${folder}/${name}_p.c ${folder}/${name}_dlldata.c
        COMMAND ${widl} -p -o ${folder}/${name}_p.c ${source}
        COMMAND ${widl} --dlldata-only -o ${folder}/${name}_dlldata.c ${name}
        DEPENDS ${source} ${folder}/${name}.h
        COMMENT "Compiling the proxy of ${room}/${name}.idl"
        VERBATIM)
    add_library(${target} STATIC ${folder}/${name}_p.c ${folder}/${name}_dlldata.c)
    target_include_directories(${target} SYSTEM PRIVATE ${folder})
    target_compile_definitions(${target} PRIVATE
        USE_COMPILER_EXCEPTIONS PROXY_DELEGATION REGISTER_PROXY_DLL ENTRY_PREFIX=Prx _WIN32_WINNT=0x0A00)
    target_compile_options(${target} PRIVATE -w -include ${CMAKE_SOURCE_DIR}/cmake/ProxyUnknown.h)
    target_link_libraries(${target} PUBLIC rpcrt4 oleaut32 ole32 uuid)
endfunction()
