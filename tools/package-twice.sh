#!/usr/bin/env bash
# package-twice.sh: makes the release of the last commit in two fresh clones, at paths of different lengths, and compares
# the bytes. Takes some minutes.
set -euo pipefail
# shellcheck source=tools/common.sh
source "$(dirname -- "$(realpath -- "${BASH_SOURCE[0]}")")/common.sh"

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
first=$folder/one
second=$folder/another-with-a-longer-name

# PackageIn FOLDER UMASK
PackageIn() (
    umask "$2"
    git clone -q "$repository" "$1"
    "$1/package"
)

PackageIn "$first" 022
PackageIn "$second" 077
for file in "$first"/build/Dropbox-*; do
    cmp "$file" "$second/build/${file##*/}" || Fail "the same sources gave other bytes"
done
Say "The same sources gave the same bytes"
