# Holds the tree against its layers, as docs/architecture.md draws them, and wants each file name once. Sourced.
# shellcheck shell=bash
# shellcheck source=tools/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

# These sources assemble the program, and so include upward.
looks_upward='^plugin/afs/FileSystemDialogs\.cpp:'

CheckLayers() {
    Say "Checking the layers"
    local broken doubled
    broken=$(cd "$repository" && IncludesAgainstTheLayers docs/architecture.md)
    broken=$(grep -v "$looks_upward" <<<"$broken") || true # Nothing is left, as it should be.
    [[ -z $broken ]] || Fail "these lines include against the layers that docs/architecture.md draws:"$'\n'"$broken"
    doubled=$(cd "$repository" && git ls-files -- '*.h' '*.cpp' | sed 's|.*/||' | sort | uniq -d)
    [[ -z $doubled ]] || Fail "more than one file has the name: $doubled"
}

# IncludesAgainstTheLayers PAGE: the page has a line for each tree, "    plugin: sdk <- core/trace <- ...", where each
# room may include those before it; a comma stands between rooms of one rank.
IncludesAgainstTheLayers() {
    git ls-files -- plugin devhost sdk | grep -E '\.(h|cpp)$' | xargs grep -H '^#include "' | awk -F '[:"]' '
        FNR == NR {
            if (match($0, /^    [a-z]+: /)) {
                tree = substr($1, 5)
                count = split(substr($0, RLENGTH + 1), rooms, / <- /)
                for (i = 1; i <= count; ++i) {
                    siblings = split(rooms[i], names, /, /)
                    for (j = 1; j <= siblings; ++j) level[tree "/" names[j]] = i
                }
            }
            next
        }
        {
            tree = $1
            sub(/\/.*/, "", tree)
            own = Folder(substr($1, length(tree) + 2))
            included = $3 ~ /^qorv\// ? "sdk" : Folder($3)
            if (own == included || own == ".") next
            mine = level[tree "/" own]
            theirs = level[tree "/" included]
            if (tree == "sdk" ? included != "sdk" : !mine || !theirs || theirs >= mine)
                print
        }
        function Folder(path) {
            if (path !~ /\//) return "."
            sub(/\/[^\/]*$/, "", path)
            return path
        }' "$1" -
}
