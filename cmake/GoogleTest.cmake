# GoogleTest as Debian ships it, in source: built with the compiler of the build that uses it.
set(GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "Where the sources of GoogleTest are")
set(INSTALL_GTEST OFF)
set(BUILD_GMOCK OFF)
set(gtest_disable_pthreads OFF)
add_subdirectory("${GOOGLETEST_SOURCE}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
foreach(target gtest gtest_main)
    target_compile_options(${target} PRIVATE -w)
endforeach()
