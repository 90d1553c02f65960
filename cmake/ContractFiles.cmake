# The store's schema, as a C++ string constant: #include "contracts/LocalStoreSchema.h" (made from LocalStore.sql).
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/contracts/LocalStore.sql)
file(READ ${CMAKE_SOURCE_DIR}/contracts/LocalStore.sql TQODR_LOCAL_STORE_SQL)
configure_file(${CMAKE_SOURCE_DIR}/cmake/LocalStoreSchema.h.in
    ${CMAKE_BINARY_DIR}/generated/contracts/LocalStoreSchema.h @ONLY)
