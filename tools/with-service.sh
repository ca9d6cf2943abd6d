#!/usr/bin/env bash
# with-service.sh PROGRAM.exe ARGUMENTS...: runs a Windows test program with a fresh development service that has two
# accounts over two empty folders. Ends with the program's exit code and leaves nothing behind.
#
# The program finds the service by these variables: DEVSERVICE_ADDRESS (host:port), DEVSERVICE_STATE (the folder with
# its authority and its token), DEVSERVICE_ROOT and DEVSERVICE_ROOT_2 (the accounts' folders), DEVTRUST (the program that
# adds and removes the authority); paths are Windows' own.
set -euo pipefail
# shellcheck source=tools/service.sh
source "$(dirname -- "$(realpath -- "${BASH_SOURCE[0]}")")/service.sh"

folder=$(mktemp -d)
# shellcheck disable=SC2317  # called by the trap
CleanUp() {
    StopService "$folder/state"
    rm -rf "$folder"
}
trap CleanUp EXIT

PrepareWine
mkdir "$folder/first" "$folder/second"
StartService "$folder/state" -- --root "$folder/first" --user "Ada Example" --root "$folder/second" --user "Ben Example"

DEVSERVICE_STATE=$(WindowsPath "$folder/state")
DEVSERVICE_ROOT=$(WindowsPath "$folder/first")
DEVSERVICE_ROOT_2=$(WindowsPath "$folder/second")
DEVTRUST=$(WindowsPath "$trust_program")
# GoogleTest makes this file and removes it when all tests have run: under Wine a program that crashes may end with 0.
TEST_PREMATURE_EXIT_FILE=$(WindowsPath "$folder/unfinished")
export DEVSERVICE_STATE DEVSERVICE_ROOT DEVSERVICE_ROOT_2 DEVTRUST TEST_PREMATURE_EXIT_FILE

# Local time is another than UTC, as it is for most people: a time of the wrong kind is noticed.
export TZ=TEST-5:30

exit_code=0
RunWine "$@" || exit_code=$?
[[ ! -e $folder/unfinished ]] || Fail "the test program ended before its tests did"
exit "$exit_code"
