# What every script of this repository uses. Sourced, never run; the caller has set -euo pipefail.
# shellcheck shell=bash

repository=$(CDPATH='' cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
build_folder=$repository/build
mkdir -p "$build_folder"

# Progress goes to standard error: standard output belongs to the program that the script runs in the end.
Say() { printf '%s\n' "$*" >&2; }

Fail() {
    Say "error: $*"
    exit 1
}

# FailWithLog FILE MESSAGE...
FailWithLog() {
    tail -n 40 "$1" >&2
    Fail "${*:2} (the whole output is in $1)"
}

# RunLogged NAME COMMAND...: runs a step whose output nobody reads unless it fails.
RunLogged() {
    local log=$build_folder/$1.log
    "${@:2}" >"$log" 2>&1 </dev/null || FailWithLog "$log" "$1 failed"
}

# WaitFor SECONDS COMMAND...: asks every 20 ms until the command succeeds; fails when the time is up.
WaitFor() {
    local deadline=$((SECONDS + $1))
    shift
    until "$@"; do
        ((SECONDS <= deadline)) || return 1
        sleep 0.02
    done
}

# The path as a Windows program under Wine reads it.
WindowsPath() { printf 'Z:%s\n' "${1//\//\\}"; }
