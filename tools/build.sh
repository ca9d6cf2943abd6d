# Configures and builds what the two presets of CMakePresets.json describe. Sourced.
# shellcheck shell=bash
# shellcheck source=tools/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

# What running takes: the development service, the module and the host that loads it.
BuildPrograms() {
    Locked build BuildPreset native devservice "the development service" devservice
    Locked build BuildPreset windows windows "the plug-in and its host" qorvhost dropbox_module devtrust
}

# All there is, tests and all.
BuildAll() {
    Locked build BuildPreset native devservice "the development service and its tests" all
    Locked build BuildPreset windows windows "the plug-in, its host and the tests" all
}

# BuildPreset PRESET FOLDER WHAT TARGET...
BuildPreset() {
    local folder=$build_folder/$2
    # Later changes of the build's description are noticed by the build itself.
    [[ -e $folder/build.ninja ]] ||
        RunLogged "configure-$1" "Configuring $3" cmake -S "$repository" --preset "$1"
    RunLogged "build-$1" "Building $3" cmake --build "$folder" --target "${@:4}"
}
