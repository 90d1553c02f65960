# What makes a program or DLL fit for delivery: its version record, and its symbols in a file of their own.
set(TQODR_COMPANY "Talmorex")
set(TQODR_PRODUCT "Talmore Quorvex Outlook Duplicate Remover")
set(TQODR_COPYRIGHT "Copyright (c) 2026 Talmorex")

if(WIN32)
    find_program(TQODR_OBJCOPY NAMES ${TQODR_TRIPLE}-objcopy REQUIRED)
endif()

# tqodr_version_record(TARGET DESCRIPTION): the record that Windows shows among a file's details.
function(tqodr_version_record version_target version_description)
    get_target_property(type ${version_target} TYPE)
    if(type STREQUAL EXECUTABLE)
        set(version_type VFT_APP)
        set(version_file ${version_target}.exe)
    else()
        set(version_type VFT_DLL)
        set(version_file ${version_target}.dll)
    endif()
    set(record ${CMAKE_BINARY_DIR}/generated/versions/${version_target}.rc)
    configure_file(${CMAKE_SOURCE_DIR}/res/VersionRecord.rc.in ${record} @ONLY)
    target_sources(${version_target} PRIVATE ${record})
endfunction()

# tqodr_symbols_apart(TARGET): moves symbols and debug information of what TARGET makes into .debug/ beside it, where
# gdb looks for them. Without --preserve-dates the header would bear the time at which this was done.
function(tqodr_symbols_apart target)
    set(symbols ${TQODR_DIST}/.debug)
    set(symbol_file ${symbols}/$<TARGET_FILE_NAME:${target}>.debug)
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -E make_directory ${symbols}
        COMMAND ${TQODR_OBJCOPY} --preserve-dates --only-keep-debug $<TARGET_FILE:${target}> ${symbol_file}
        COMMAND ${TQODR_OBJCOPY} --preserve-dates --strip-all --add-gnu-debuglink=${symbol_file} $<TARGET_FILE:${target}>
        VERBATIM)
endfunction()
