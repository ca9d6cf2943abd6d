#!/usr/bin/env bash
# with-wine.sh PROGRAM.exe ARGUMENTS...: runs a Windows program in the private Wine prefix, for tests without a service.
set -euo pipefail
# shellcheck source=tools/wine.sh
source "$(dirname -- "$(realpath -- "${BASH_SOURCE[0]}")")/wine.sh"

PrepareWine
RunWine "$@"
