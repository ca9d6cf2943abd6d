# The checks that run no program: the format, and clang-tidy as the view of a second compiler. Sourced.
# shellcheck shell=bash
# shellcheck source=tools/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

windows_build=$build_folder/windows
native_build=$build_folder/devservice
analysed_folders=(plugin sdk devhost devservice tests bench reliability)
analysis_folder=$build_folder/analysis
batch_folder=$analysis_folder/batches
batch_size=6

# Each version breaks some lines differently: Debian 12's decides.
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

# Analyses all sources as the two builds compile them (so they have to be built before). A source is analysed again only
# when it, a header that it uses, or a rule has changed.
Analyse() {
    PrepareAnalysis
    WriteFingerprints
    local stale
    stale=$(StaleSources)
    [[ -n $stale ]] || return 0
    Say "Analysing $(wc -l <<<"$stale") files (clang-tidy)"
    WriteBatches <<<"$stale"
    export -f AnalyseBatch AnalyseOnce AnalyseSource MarkClean RunAnalyser IsNative Fingerprint
    export repository native_build analysis_folder batch_folder
    # shellcheck disable=SC2016  # for the inner shell
    find "$batch_folder" -name '*.list' -printf '%s %p\n' | sort -rn | cut -d ' ' -f 2- |
        xargs -d '\n' -P "$(nproc)" -n 1 bash -c 'AnalyseBatch "$1"' AnalyseBatch ||
        Fail "clang-tidy refuses the files above"
}

# clang cannot read the other compiler's precompiled headers. Precompiling them with clang gains nothing: the checks look
# at every declaration, and reading them all back takes as long as parsing them.
PrepareAnalysis() {
    mkdir -p "$analysis_folder"
    sed -E 's/ -Winvalid-pch -include [^ ]*cmake_pch\.hxx//' "$windows_build/compile_commands.json" \
        >"$analysis_folder/compile_commands.json"
}

# Reads sources, and puts those of one folder that are compiled with the same options together, because most of the time
# goes into the headers that they share. Writes a list of each batch's sources, and how the batch is compiled. Batches lie
# in folders with the rules of their sources' own.
WriteBatches() {
    local folder
    rm -rf "$batch_folder"
    for folder in "${analysed_folders[@]}"; do
        mkdir -p "$batch_folder/$folder"
        [[ ! -e $repository/$folder/.clang-tidy ]] || cp "$repository/$folder/.clang-tidy" "$batch_folder/$folder/"
    done
    awk -v root="$repository/" -v folder="$batch_folder" -v most="$batch_size" '
        function Finish(key) {
            printf "%s\n{ \"directory\": \"%s\", \"command\": \"%s -c %s.cpp\", \"file\": \"%s.cpp\" }",
                entries++ ? "," : "[", folder, options[key], batch[key], batch[key] >(folder "/compile_commands.json")
            close(batch[key] ".list")
            delete batch[key]
        }
        /^ *"command": /  { command = $0; sub(/^ *"command": "/, "", command); sub(/ -o .*/, "", command) }
        /^ *"file": /     { split($0, quoted, "\""); of[quoted[4]] = command }
        FILENAME != "-"   { next }
        !((root $0) in of) { print $0 " is part of no build" >"/dev/stderr"; next }
        {
            group = $0
            sub(/[^\/]*$/, "", group)
            key = group of[root $0]
            if (!(key in batch)) {
                split(group, parts, "/")
                name = group ~ /^((tests\/)?devservice|reliability\/storm)\// ? "native" : "windows"
                batch[key] = folder "/" parts[1] "/" name "-" ++count
                options[key] = of[root $0] " -iquote " root group # The headers beside its sources.
                size[key] = 0
            }
            print >(batch[key] ".list")
            if (++size[key] == most) Finish(key)
        }
        END { for (key in batch) Finish(key); print "\n]" >(folder "/compile_commands.json") }' \
        "$analysis_folder/compile_commands.json" "$native_build/compile_commands.json" -
}

# Whether the native build compiles the source; the others are part of the Windows build.
IsNative() { [[ $1 == devservice/* || $1 == tests/devservice/* || $1 == reliability/storm/* || $1 == native-* ]]; }

# The file that represents everything that the analysis of a source depends on.
Fingerprint() { printf '%s/%s' "$analysis_folder" "${1//\//+}"; }

# From the builds' notes on which headers each object was made of. The first one of an object's files is its source.
WriteFingerprints() {
    local rules
    rules=$(clang-tidy --version | sha256sum; cd "$repository" && sha256sum .clang-tidy tests/.clang-tidy tools/analyse.sh)
    rm -f "$analysis_folder"/*.now
    (cd "$repository" && find "${analysed_folders[@]}" \( -name '*.cpp' -o -name '*.h' \) -exec sha256sum {} +) |
        awk -v root="$repository/" -v folder="$analysis_folder/" -v rules="$rules" '
            FILENAME == "-" { hash[substr($0, 67)] = $1; next }
            /^[^ ]/         { if (out != "") close(out); out = ""; is_source = 1; next }
            {
                path = substr($0, 5)
                sub(/^(\.\.\/)+/, "", path) # A compiler cache makes it relative to the build.
                if (index(path, root) == 1) path = substr(path, length(root) + 1)
                if (is_source && path in hash) {
                    out = path
                    gsub("/", "+", out)
                    out = folder out ".now"
                    print rules >out
                }
                is_source = 0
                if (out != "" && path in hash) print hash[path], path >out
            }' - <(ninja -C "$windows_build" -t deps) <(ninja -C "$native_build" -t deps)
}

# The largest first, so that no long one runs last.
StaleSources() {
    local source
    (cd "$repository" && find "${analysed_folders[@]}" -name '*.cpp' -printf '%s %p\n' | sort -rn | cut -d ' ' -f 2-) |
        while read -r source; do
            cmp -s "$(Fingerprint "$source").now" "$(Fingerprint "$source").clean" || printf '%s\n' "$source"
        done
}

# AnalyseBatch LIST: a batch in which nothing is found is clean. Any other proves nothing, since its sources may only
# affect one another: they are analysed one by one.
AnalyseBatch() {
    local source sources failed=0
    mapfile -t sources <"$1"
    # Not by #include: the analyser follows the paths through functions of its main file only.
    (cd "$repository" && cat "${sources[@]}") >"${1%.list}.cpp"
    if ((${#sources[@]} > 1)) && RunAnalyser "$batch_folder" "${1%.list}.cpp" "$(basename "$1")" >"${1%.list}.log" 2>&1; then
        for source in "${sources[@]}"; do MarkClean "$source"; done
        return
    fi
    for source in "${sources[@]}"; do AnalyseOnce "$source" || failed=1; done
    return $failed
}

# AnalyseOnce SOURCE: notes a clean one, so that it is not analysed again.
AnalyseOnce() {
    AnalyseSource "$1" || return 1
    MarkClean "$1"
}

MarkClean() {
    mv "$(Fingerprint "$1").now" "$(Fingerprint "$1").clean"
}

AnalyseSource() {
    local commands=$analysis_folder
    ! IsNative "$1" || commands=$native_build
    RunAnalyser "$commands" "$repository/$1" "$1"
}

# RunAnalyser COMMANDS FILE NAME: clang does not find the cross compiler's C++ headers by itself, and counts changes of
# sign among the conversions, which the compilers that we build with do not.
RunAnalyser() {
    local headers arguments=(--extra-arg={-Wno-sign-conversion,-Wno-unknown-warning-option})
    if ! IsNative "$3"; then
        headers=$(x86_64-w64-mingw32-g++-posix -print-file-name=include)
        arguments+=(--extra-arg-before=--driver-mode=g++ --extra-arg-before=--target=x86_64-w64-mingw32
            --extra-arg={-nostdinc++,-isystem,"$headers/c++",-isystem,"$headers/c++/x86_64-w64-mingw32"})
    fi
    clang-tidy --quiet --use-color=0 -p "$1" --warnings-as-errors='*' "${arguments[@]}" "$2" \
        2> >(grep -v -e ' generated\.$' -e '^Error while processing' >&2)
}
