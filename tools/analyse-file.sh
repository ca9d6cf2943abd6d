#!/usr/bin/env bash
# tools/analyse-file.sh FILE...: what the analyser says of these sources, changed or not. They have to be built before.
set -euo pipefail
# shellcheck source=tools/analyse.sh
source "$(dirname -- "$(realpath -- "${BASH_SOURCE[0]}")")/analyse.sh"

PrepareAnalysis
failed=0
for file; do
    AnalyseSource "$(realpath --relative-to="$repository" "$file")" || failed=1
done
exit $failed
