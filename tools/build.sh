# Configures and builds what the two presets of CMakePresets.json describe. Sourced.
# shellcheck shell=bash
# shellcheck source=tools/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

# What running takes: the development service, the module and the host that loads it.
BuildPrograms() {
    Locked build BuildPreset native devservice "the development service" devservice
    Locked build BuildPreset windows windows "the plug-in and its host" qorvhost dropbox_module devtrust
}

# Everything, including the tests, without a warning.
BuildAll() {
    Locked build BuildStrictly native devservice "the development service and its tests" all
    Locked build BuildStrictly windows windows "the plug-in, its host and the tests" all
}

# BuildPreset PRESET FOLDER WHAT TARGET...: a warning, which another compiler may give, must not stop a user. A strict
# build stays strict as long as it succeeds, because changing that rebuilds everything.
BuildPreset() {
    local folder=$build_folder/$2
    ForgetForeignBuild "$folder"
    # The build itself notices later changes to its description.
    [[ -e $folder/build.ninja ]] || Configure "$1" "$3" OFF
    Build "$@" && return
    StoppedByWarning "$1" || FailBuild "$@"
    Say "Warnings have stopped the build; restarting it with warnings allowed"
    Configure "$1" "$3" OFF
    Build "$@" || FailBuild "$@"
}

# BuildStrictly PRESET FOLDER WHAT TARGET...: warnings are errors.
BuildStrictly() {
    local folder=$build_folder/$2
    ForgetForeignBuild "$folder"
    if [[ ! -e $folder/build.ninja ]] || ! IsStrict "$folder"; then
        Configure "$1" "$3" ON
    fi
    Build "$@" || FailBuild "$@"
}

# Configure PRESET WHAT ON|OFF: whether warnings are errors.
Configure() {
    RunLogged "configure-$1" "Configuring $2" \
        cmake -S "$repository" --preset "$1" -D "CMAKE_COMPILE_WARNING_AS_ERROR=$3"
}

IsStrict() { grep -q '^CMAKE_COMPILE_WARNING_AS_ERROR:.*=ON$' "$1/CMakeCache.txt"; }

Build() { TryLogged "build-$1" "Building $3" cmake --build "$build_folder/$2" --target "${@:4}"; }
FailBuild() { FailWithLog "$(LogOf "build-$1")" "this failed: Building $3"; }
StoppedByWarning() { grep -q 'warnings being treated as errors' "$(LogOf "build-$1")"; }

# A build begun in another place would use the sources there, and one begun with other programs, before a system
# upgrade, cannot continue at all.
ForgetForeignBuild() {
    [[ ! -e $1 || -z $(find "$1" -maxdepth 1 ! -writable -print -quit) ]] ||
        Fail "$1 has files that another user has built; remove it, or use a copy of the repository of your own"
    [[ $(cat "$1/.origin" 2>/dev/null) != "$(BuildOrigin "$1")" ]] || return 0
    [[ ! -e $1/CMakeCache.txt ]] || Say "${1#"$repository/"} was built in another place or with other compilers: rebuilding it"
    rm -rf "$1"
    mkdir -p "$1"
    BuildOrigin "$1" >"$1/.origin"
}

BuildOrigin() {
    printf '%s\n' "$1"
    command -v cmake ninja g++ x86_64-w64-mingw32-g++-posix | xargs stat --dereference --format '%n %s %Y'
}
