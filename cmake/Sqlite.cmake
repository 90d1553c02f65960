# SQLite for Windows, from the amalgamation that scripts/fetch-sqlite lays down.
set(TQODR_SQLITE_SOURCE ${CMAKE_SOURCE_DIR}/build/third_party/sqlite CACHE PATH "Folder of sqlite3.c")
if(NOT EXISTS ${TQODR_SQLITE_SOURCE}/sqlite3.c)
    message(FATAL_ERROR "SQLite's amalgamation is missing: run scripts/fetch-sqlite first")
endif()
add_library(sqlite STATIC ${TQODR_SQLITE_SOURCE}/sqlite3.c)
target_include_directories(sqlite SYSTEM PUBLIC ${TQODR_SQLITE_SOURCE})
target_compile_definitions(sqlite PRIVATE
    SQLITE_THREADSAFE=1 SQLITE_DQS=0 SQLITE_OMIT_DEPRECATED SQLITE_OMIT_LOAD_EXTENSION SQLITE_OMIT_SHARED_CACHE
    SQLITE_DEFAULT_FOREIGN_KEYS=1 SQLITE_LIKE_DOESNT_MATCH_BLOBS)
# With an OVERLAPPED each read and write of a page is announced to the file's completion port, which under Wine costs
# a call to its server; a connection has its handles to itself and can as well set the file's position. The counts of
# memory in use, which nobody asks for, take a lock at each allocation.
target_compile_definitions(sqlite PRIVATE
    SQLITE_WIN32_NO_OVERLAPPED SQLITE_DIRECT_OVERFLOW_READ SQLITE_DEFAULT_MEMSTATUS=0)
target_compile_options(sqlite PRIVATE -O2 -w)
