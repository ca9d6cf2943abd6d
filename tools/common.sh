# What every script of this repository uses. Sourced, never run; the caller has set -euo pipefail.
# shellcheck shell=bash

# The canonical path, so that a tree reached by two paths has one prefix, one display and one service.
repository=$(CDPATH='' cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd -P)
build_folder=$repository/build
user=$(id -u)

# Progress goes to standard error: standard output belongs to the program that the script runs in the end.
Say() { printf '%s\n' "$*" >&2; }

Fail() {
    Say "error: $*"
    exit 1
}

mkdir -p "$build_folder"
[[ -w $build_folder ]] || Fail "$build_folder belongs to another user; use a copy of the repository of your own"

# FailWithLog FILE MESSAGE...
FailWithLog() {
    tail -n 40 "$1" >&2
    Fail "${*:2} (the whole output is in $1)"
}

# RunLogged NAME MESSAGE COMMAND...: runs a step whose output nobody reads unless it fails. MESSAGE says what happens when
# it takes longer than a moment.
RunLogged() { TryLogged "$@" || FailWithLog "$(LogOf "$1")" "this failed: $2"; }

# TryLogged NAME MESSAGE COMMAND...: the same, for a caller that handles the failure.
TryLogged() {
    local message=$2 failed=0 teller
    # The sleep outlives the step, which must not keep a lock.
    (sleep 1 >/dev/null 2>&1 && Say "$message") 9>&- &
    teller=$!
    "${@:3}" >"$(LogOf "$1")" 2>&1 </dev/null || failed=1
    kill "$teller" 2>/dev/null || true
    wait "$teller" 2>/dev/null || true
    return "$failed"
}

LogOf() { printf '%s\n' "$build_folder/$1.log"; }

# WaitFor SECONDS COMMAND...: polls every 20 ms until the command succeeds; fails when the time is up.
WaitFor() {
    local deadline=$((SECONDS + $1))
    shift
    until "$@"; do
        ((SECONDS <= deadline)) || return 1
        sleep 0.02
    done
}

# Locked NAME COMMAND...: several scripts may come here at once; the first one does the work, the others wait and then
# find it done.
Locked() {
    flock 9
    "${@:2}"
} 9>"$build_folder/$1-$user.lock"

# The path as a Windows program under Wine reads it.
WindowsPath() { printf 'Z:%s\n' "${1//\//\\}"; }
