#!/usr/bin/env bash
# ./bench.sh [--quick] [NAME...]: measures the module that ships beside the bare platform, prints a table and writes
# build/bench.json. Sets everything up, with a development service of its own. --quick takes fewer bytes and rounds;
# NAMEs are topics (transfer, list, memory, load, trace), all by default. docs/performance.md explains the figures.
set -euo pipefail
here=$(dirname -- "$(realpath -- "${BASH_SOURCE[0]}")")
# shellcheck source=tools/setup.sh
source "$here/tools/setup.sh"
# shellcheck source=tools/build.sh
source "$here/tools/build.sh"
# shellcheck source=tools/service.sh
source "$here/tools/service.sh"

BuildBenchmarks() {
    Locked build BuildPreset native devservice "the development service" devservice
    Locked build BuildPreset windows windows "the benchmarks" dropbox_bench devtrust
}

# What the account holds: a file to download, and folders of as many entries as their names say. Made here, since to make
# 100,000 files in one folder takes Wine hours.
FillAccount() {
    local entries
    head -c 256M /dev/urandom >"$1/download.bin"
    for entries in 10 1000 10000 100000; do
        mkdir "$1/$entries"
        (cd "$1/$entries" && seq -f 'Quarterly report %06.0f.pdf' "$entries" | xargs -d '\n' touch --)
    done
}

InstallRunPackages
BuildBenchmarks
PrepareWine

folder=$(mktemp -d)
# shellcheck disable=SC2317  # called by the trap
CleanUp() {
    StopService "$folder/state"
    rm -rf "$folder"
}
trap CleanUp EXIT
mkdir "$folder/account"
Say "Preparing the account"
FillAccount "$folder/account"
StartService "$folder/state" -- --root "$folder/account" --max-upload $((256 << 20))
DEVSERVICE_STATE=$(WindowsPath "$folder/state")
DEVSERVICE_ROOT=$(WindowsPath "$folder/account")
export DEVSERVICE_STATE DEVSERVICE_ROOT

RunWine "$build_folder/windows/bench/dropbox_bench.exe" --json "$(WindowsPath "$build_folder/bench.json")" "$@"
