#!/usr/bin/env bash
# bare-machine.sh SUITE COMMAND...: runs a command in a fresh clone of this repository on a machine with only the base
# system of Debian SUITE (bookworm is 12, trixie is 13): what a new user meets, whatever is installed here.
#
#   tools/bare-machine.sh bookworm ./demo
#   tools/bare-machine.sh trixie ./check
#
# What is not committed is not in the clone. The command runs as root with an empty environment, without a terminal and
# a display, in separate namespaces: everything it starts ends with it. Its exit code is the script's; 125 means that no
# such machine can be made here, and a line says why. The base systems are made once, in build/bare; with KEEP=1 the
# folder of the run stays and is named.
set -euo pipefail
# shellcheck source=tools/setup.sh
source "$(dirname -- "$(realpath -- "${BASH_SOURCE[0]}")")/setup.sh"

bare_folder=$build_folder/bare

NoMachine() {
    Say "no bare machine can be made here, so this was not run: ${command[*]} ($*)"
    exit 125
}

# The archive that this machine has its packages from, and what it says to reach it. Empty where that isn't Debian's.
DebianArchive() {
    cat /etc/apt/sources.list.d/*.sources /etc/apt/sources.list 2>/dev/null |
        sed -n -E 's/^URIs: *([^ ]+).*/\1/p; s/^deb +(\[[^]]*] +)?([^ ]+) .*/\2/p' | grep -m 1 '/debian/*$'
}
WayToArchive() { apt-config dump --no-empty | grep -E '^Acquire::(https?|ftp|Check|Retries|ForceIPv)'; }

# MakeSystem SUITE TREE
MakeSystem() {
    local archive options=(--variant=minbase)
    archive=$(DebianArchive)
    [[ $archive != https:* ]] || options+=(--include=ca-certificates)
    debootstrap "${options[@]}" "$1" "$2" ${archive:+"$archive"} || return
    WayToArchive >"$2/etc/apt/apt.conf.d/99way-to-archive" || true
}

# KeepSystem SUITE: a system gets its name when it is complete; a partial one is useless.
KeepSystem() {
    local system=$bare_folder/$1.tar tree=$bare_folder/$1.new
    [[ ! -s $system ]] || return 0
    rm -rf "$tree"
    mkdir -p "$tree"
    TryLogged "bare-$1" "Making a bare Debian ($1)" MakeSystem "$1" "$tree" ||
        NoMachine "debootstrap could not make it; its output is in $(LogOf "bare-$1")"
    tar -C "$tree" -cf "$system.new" .
    mv "$system.new" "$system"
    rm -rf "$tree"
}

# RunInside MACHINE COMMAND...: the outer shell sees this machine, the inner one only the bare machine. shellcheck
# disable=SC2016 # for those shells
RunInside() {
    unshare --mount --pid --fork --kill-child --propagation private bash -euc '
        mount -t proc proc "$0/proc"
        mount --bind /dev "$0/dev"
        mount -t tmpfs tmpfs "$0/dev/shm"
        exec chroot "$0" env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C CI=true "$@"
    ' "$1" bash -c 'cd /project && exec "$@"' bash "${@:2}" </dev/null
}

[[ $# -ge 2 ]] || Fail "usage: tools/bare-machine.sh SUITE COMMAND..."
suite=$1
command=("${@:2}")
[[ $user == 0 ]] || NoMachine "only root can make one"
command -v apt-get >/dev/null || NoMachine "this isn't a Debian system"
unshare --mount --pid --fork true 2>/dev/null || NoMachine "namespaces are not allowed"
(InstallPackages debootstrap git) || NoMachine "it takes debootstrap and git"
Locked bare KeepSystem "$suite"

machine=$(mktemp -d "$bare_folder/run.XXXXXX")
# shellcheck disable=SC2317  # called by the trap
CleanUp() {
    if [[ ${KEEP:-} == 1 ]]; then
        Say "kept: $machine"
    else
        rm -rf "$machine"
    fi
}
trap CleanUp EXIT
tar -C "$machine" -xf "$bare_folder/$suite.tar"
cp /etc/resolv.conf "$machine/etc/resolv.conf" 2>/dev/null || true
git clone -q "$repository" "$machine/project"
RunInside "$machine" "${command[@]}"
