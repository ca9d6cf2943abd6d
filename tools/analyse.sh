# The checks that run no program: the format, and clang-tidy as the view of a second compiler. Sourced.
# shellcheck shell=bash
# shellcheck source=tools/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

windows_build=$build_folder/windows
analysis_folder=$build_folder/analysis

# Each version breaks some lines in another place: the format is what Debian 12's makes of it.
format_version=14

CheckFormat() {
    local version
    version=$(clang-format --version | sed -n 's/.*version \([0-9]*\).*/\1/p')
    if [[ $version != "$format_version" ]]; then
        Say "The format is left unchecked: it is that of clang-format $format_version, and version $version is installed"
        return
    fi
    Say "Checking the format"
    (cd "$repository" && git ls-files -z -- '*.cpp' '*.h' | xargs -0 clang-format --dry-run -Werror) ||
        Fail "clang-format -i mends the files above"
}

# Analyses the sources of the plug-in, with the headers of the SDK, as the Windows build compiles them (so it has to
# be built before). A source is analysed anew only when it, a header that it uses, or a rule has changed.
Analyse() {
    mkdir -p "$analysis_folder"
    # clang cannot read the other compiler's precompiled headers.
    sed -E 's/ -Winvalid-pch -include [^ ]*cmake_pch\.hxx//' "$windows_build/compile_commands.json" \
        >"$analysis_folder/compile_commands.json"
    WriteFingerprints
    local stale
    stale=$(StaleSources)
    [[ -n $stale ]] || return 0
    Say "Analysing $(wc -l <<<"$stale") files (clang-tidy)"
    export -f AnalyseSource Fingerprint
    export repository windows_build analysis_folder
    # shellcheck disable=SC2016  # for the inner shell
    xargs -d '\n' -P "$(nproc)" -n 1 bash -c 'AnalyseSource "$1"' AnalyseSource <<<"$stale" ||
        Fail "clang-tidy refuses the files above"
}

# The file that stands for all that the analysis of a source depends on.
Fingerprint() { printf '%s/%s' "$analysis_folder" "${1//\//+}"; }

# From the build's notes on which headers each object was made of. The first one of an object's files is its source.
WriteFingerprints() {
    local rules
    rules=$(clang-tidy --version | sha256sum; sha256sum "$repository/.clang-tidy" "$repository/tools/analyse.sh")
    rm -f "$analysis_folder"/*.now
    (cd "$repository" && find plugin sdk \( -name '*.cpp' -o -name '*.h' \) -exec sha256sum {} +) |
        awk -v root="$repository/" -v folder="$analysis_folder/" -v rules="$rules" '
            FILENAME == "-" { hash[substr($0, 67)] = $1; next }
            /^[^ ]/         { out = ""; is_source = 1; next }
            {
                path = substr($0, 5)
                if (index(path, root) == 1) path = substr(path, length(root) + 1)
                if (is_source && path ~ /^plugin\// && path in hash) {
                    out = path
                    gsub("/", "+", out)
                    out = folder out ".now"
                    print rules >out
                }
                is_source = 0
                if (out != "" && path in hash) print hash[path], path >out
            }' - <(ninja -C "$windows_build" -t deps)
}

StaleSources() {
    local source
    (cd "$repository" && find plugin -name '*.cpp' | sort) | while read -r source; do
        cmp -s "$(Fingerprint "$source").now" "$(Fingerprint "$source").clean" || printf '%s\n' "$source"
    done
}

# AnalyseSource SOURCE: clang does not find the cross compiler's C++ headers by itself, and counts changes of sign among
# the conversions, which the compiler that we build with does not.
AnalyseSource() {
    local headers
    headers=$(x86_64-w64-mingw32-g++-posix -print-file-name=include)
    clang-tidy --quiet -p "$analysis_folder" --warnings-as-errors='*' \
        --extra-arg-before=--driver-mode=g++ --extra-arg-before=--target=x86_64-w64-mingw32 \
        --extra-arg={-nostdinc++,-isystem,"$headers/c++"} \
        --extra-arg={-isystem,"$headers/c++/x86_64-w64-mingw32",-Wno-sign-conversion,-Wno-unknown-warning-option} \
        "$repository/$1" 2> >(grep -v -e ' generated\.$' -e '^Error while processing' >&2) || return 1
    mv "$(Fingerprint "$1").now" "$(Fingerprint "$1").clean" || echo "$1 is no part of the Windows build" >&2
}
