#!/usr/bin/env bash
# tools/mutate.sh [WORD...]: changes the plug-in on purpose, one change at a time, and reports whether the tests notice. The
# changes are in tests/mutations.txt; with WORDs, only those whose file name or texts contain one of them are tried.
#
# It works in a copy of the tree (build/mutants/tree), which needs a full build the first time. A change is noticed if its
# folder's test program fails, or the next one (see ProgramsFor). Exits with 1 if a change survives unexpectedly or does not
# compile.
set -euo pipefail
# shellcheck source=tools/setup.sh
source "$(dirname -- "$(realpath -- "${BASH_SOURCE[0]}")")/setup.sh"

tree=$build_folder/mutants/tree
results=$build_folder/mutants/results.txt
windows=$tree/build/windows
list=$repository/tests/mutations.txt
seconds_a_program=200

# Copies the tracked files in their current state. Unchanged files keep their times, so that little is rebuilt.
CopyTree() {
    local file
    mkdir -p "$tree"
    (cd "$repository" && git ls-files -z) | while IFS= read -r -d '' file; do
        cmp -s "$repository/$file" "$tree/$file" || install -D "$repository/$file" "$tree/$file"
    done
}

# ProgramsFor FILE: the test programs that could notice, nearest first.
ProgramsFor() {
    case $1 in
    plugin/core/host/*) echo core_tests ui_tests endtoend_tests ;;
    plugin/core/*) echo core_tests afs_tests endtoend_tests ;;
    plugin/http/*) echo http_tests dropbox_tests ;;
    plugin/dropbox/NameRules.cpp) echo ui_tests dropbox_tests ;;
    plugin/dropbox/*) echo dropbox_tests afs_tests ;;
    plugin/auth/*) echo auth_tests endtoend_tests ;;
    plugin/afs/*) echo afs_tests endtoend_tests ;;
    plugin/ui/*) echo ui_tests endtoend_tests ;;
    *) echo devhost_tests endtoend_tests ;;
    esac
}

BuildProgram() { cmake --build "$windows" --target "$1" >"$tree/build/mutant.log" 2>&1; }
RunProgram() {
    GTEST_FAIL_FAST=1 timeout -k 5 "$seconds_a_program" "$tree/tools/with-service.sh" \
        "$windows/tests/${1%_tests}/$1.exe" >"$tree/build/mutant.log" 2>&1
}

# A program that fails without any change proves nothing.
RequireGood() {
    [[ -z ${is_good[$1]:-} ]] || return 0
    BuildProgram "$1" && RunProgram "$1" || FailWithLog "$tree/build/mutant.log" "$1 fails without any change"
    is_good[$1]=yes
}

# Notices FILE: builds and runs the programs until one fails.
Notices() {
    local program
    for program in $(ProgramsFor "$1"); do
        BuildProgram "$program" || {
            verdict="DOES NOT COMPILE"
            return 0
        }
        RunProgram "$program" || {
            verdict="killed by $program: $(grep -m 1 -o -E '^\[  FAILED  \] [^ ,]+|TOO LONG \] [^,]+' "$tree/build/mutant.log" |
                sed 's/.*\] //' || echo "its end")"
            return 0
        }
    done
    return 1
}

# Replace FILE OLD NEW: fails unless the old text occurs exactly once.
Replace() {
    python3 -c '
import sys
path, old, new = sys.argv[1:]
text = open(path, encoding="utf-8").read()
if text.count(old) != 1:
    sys.exit(f"{path}: the text is there {text.count(old)} times, not once: {old}")
open(path, "w", encoding="utf-8").write(text.replace(old, new))' "$@"
}

# TryChange FILE OLD NEW WHY
TryChange() {
    local original=$tree/build/original verdict program
    for program in $(ProgramsFor "$1"); do
        RequireGood "$program"
    done
    cp -p "$tree/$1" "$original"
    Replace "$tree/$1" "$2" "$3" || return 1
    if ! Notices "$1"; then
        verdict=SURVIVED
        [[ -z $4 ]] || verdict="survived, as it may: $4"
    fi
    cp "$original" "$tree/$1" # With a new time, since the object was built from the changed file.
    printf '%s\n    - %s\n    + %s\n    %s\n' "$1" "${2//$'\n'/ }" "${3//$'\n'/ }" "$verdict" | tee -a "$results"
}

IsWanted() {
    local word
    [[ ${#words[@]} -gt 0 ]] || return 0
    for word in "${words[@]}"; do
        [[ $* != *"$word"* ]] || return 0
    done
    return 1
}

# Each change: the file's name, the lines of the old text after "- ", the lines of the new text after "+ ", and, if nothing
# can notice it, the reason after "= ". An empty line ends it.
TryAll() {
    local line file='' old='' new='' why=''
    while IFS= read -r line || [[ -n $line ]]; do
        case $line in
        '#'*) ;;
        '- '* | '-') old+=${old:+$'\n'}${line:2} ;;
        '+ '* | '+') new+=${new:+$'\n'}${line:2} ;;
        '= '*) why=${line:2} ;;
        '')
            [[ -z $file ]] || ! IsWanted "$file" "$old" "$new" || TryChange "$file" "$old" "$new" "$why" </dev/null || exit 1
            file='' old='' new='' why=''
            ;;
        *) file=$line ;;
        esac
    done < <(cat "$list" && echo)
}

words=("$@")
InstallPackages python3 git
CopyTree
Say "Building the copy in $tree"
declare -A is_good=()
(
    source "$tree/tools/setup.sh"
    source "$tree/tools/build.sh"
    InstallRunPackages
    # Without warnings as errors: a change may leave something unused.
    BuildPreset native devservice "the development service" devservice
    BuildPreset windows windows "the module" dropbox_module qorvhost devtrust
)
: >"$results"
TryAll
killed=$(grep -c '^    killed' "$results" || true)
broken=$(grep -c '^    DOES NOT COMPILE' "$results" || true)
may=$(grep -c '^    survived, as it may' "$results" || true)
survived=$(grep -c '^    SURVIVED' "$results" || true)
Say "$killed killed, $survived survived, $may survived that nothing can notice, $broken do not compile"
[[ $survived == 0 && $broken == 0 ]]
