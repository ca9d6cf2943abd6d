# Settings for everything built for Windows.
add_compile_definitions(UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00)

# The host's contract has callers cast the place for a service's pointer to IUnknown**.
add_compile_options(-fno-strict-aliasing)

# Where the sources and the build lie is not the files' business: the same sources give the same bytes anywhere.
add_compile_options("-fmacro-prefix-map=${PROJECT_SOURCE_DIR}=." "-fdebug-prefix-map=${PROJECT_SOURCE_DIR}=/dropbox-connector")

# The runtimes are linked in: a module imports only what Windows ships.
add_link_options(-static)

# Header-only libraries are where a cross compiler does not look.
set(HEADER_LIBRARIES "${CMAKE_BINARY_DIR}/include")
file(MAKE_DIRECTORY "${HEADER_LIBRARIES}")
function(add_header_library NAME FOLDER HEADER)
    find_path(${NAME}_INCLUDE_DIR ${FOLDER}/${HEADER} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
    file(CREATE_LINK "${${NAME}_INCLUDE_DIR}/${FOLDER}" "${HEADER_LIBRARIES}/${FOLDER}" SYMBOLIC)
    add_library(${NAME} INTERFACE)
    target_include_directories(${NAME} SYSTEM INTERFACE "${HEADER_LIBRARIES}")
endfunction()
add_header_library(rapidjson rapidjson document.h)
add_header_library(cli11 CLI CLI.hpp)

# The platform's and the library's headers take four fifths of a compilation: they are compiled once for each set of
# options, and every target says `target_precompile_headers(NAME REUSE_FROM platform_headers)`. None of our own are among
# them, and no file relies on it: the analyser compiles without.
function(add_platform_headers NAME)
    set(source "${CMAKE_BINARY_DIR}/${NAME}.cpp")
    file(WRITE "${source}.new" "")
    file(COPY_FILE "${source}.new" "${source}" ONLY_IF_DIFFERENT)
    add_library(${NAME} OBJECT "${source}")
    target_precompile_headers(${NAME} PRIVATE
        <windows.h> <objbase.h> <oleauto.h> <wininet.h> <shlwapi.h>
        <algorithm> <atomic> <cstdint> <functional> <map> <memory> <new> <optional> <string> <string_view> <utility> <vector>)
endfunction()
add_platform_headers(platform_headers)
