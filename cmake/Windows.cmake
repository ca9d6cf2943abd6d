# What holds for everything that is built for Windows.
add_compile_definitions(UNICODE _UNICODE _WIN32_WINNT=0x0A00)

# The host's contract has callers cast the place for a service's pointer to IUnknown**.
add_compile_options(-fno-strict-aliasing)

# The runtimes are linked in: a module imports only what Windows ships.
add_link_options(-static)

# RapidJSON is headers only, but stands where a cross compiler does not look.
find_path(RAPIDJSON_INCLUDE_DIR rapidjson/document.h PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
set(RAPIDJSON_COPY "${CMAKE_BINARY_DIR}/include")
file(MAKE_DIRECTORY "${RAPIDJSON_COPY}")
file(CREATE_LINK "${RAPIDJSON_INCLUDE_DIR}/rapidjson" "${RAPIDJSON_COPY}/rapidjson" SYMBOLIC)
add_library(rapidjson INTERFACE)
target_include_directories(rapidjson SYSTEM INTERFACE "${RAPIDJSON_COPY}")
