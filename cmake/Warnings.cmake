# What the compiler reports, in both builds and in that of the service alone. ./check takes no warning.
#
# With precompiled headers, GCC 12 to 14 reports reads past the end (-Warray-bounds) when a std::wstring is made of L"",
# and names a place in its own headers. Such a text is better written std::wstring() or {}.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion
    -Wcast-qual -Wold-style-cast -Wduplicated-branches -Wduplicated-cond -Wextra-semi -Wformat=2 -Wlogical-op
    -Woverloaded-virtual -Wredundant-decls -Wsuggest-override -Wundef -Wunused-macros)
