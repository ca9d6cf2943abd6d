# Finds out which Debian packages are missing, says so and installs them. Sourced.
# shellcheck shell=bash
# shellcheck source=tools/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

# To build (the tests are configured with the rest) and run. Wine only recommends libgnutls30 (no TLS without it) and fonts-wine (no proper windows without it).
# x11-utils has xprop, which tells whether a display answers.
run_packages=(
    g++ g++-mingw-w64-x86-64-posix cmake ninja-build
    libboost-dev libssl-dev libutf8proc-dev rapidjson-dev libcli11-dev googletest
    wine64 libgnutls30 ca-certificates fonts-wine fonts-liberation xvfb x11-utils
)

# What ./check needs besides.
check_packages=(clang-format clang-tidy git)

# What ./package needs (GoogleTest, because the build is configured with its tests).
package_packages=(g++-mingw-w64-x86-64-posix cmake ninja-build rapidjson-dev libcli11-dev googletest zip git)

InstallRunPackages() { InstallPackages "${run_packages[@]}"; }
InstallCheckPackages() { InstallPackages "${run_packages[@]}" "${check_packages[@]}"; }
InstallPackagePackages() { InstallPackages "${package_packages[@]}"; }

# InstallPackages NAME...: costs a few hundredths of a second when everything is there.
InstallPackages() {
    local missing
    if ! command -v dpkg-query >/dev/null; then
        Say "This isn't a Debian system; install these packages, or their equivalents here: $*"
        return
    fi
    mapfile -t missing < <(MissingPackages "$@")
    [[ ${#missing[@]} -gt 0 ]] || return 0
    Say "Missing Debian packages: ${missing[*]}"
    CanBecomeRoot || Fail "only root may install them. As root: apt-get install ${missing[*]}"
    # The next step reports packages still unknown.
    TryLogged apt-update "Reading Debian's package lists" AsRoot apt-get -q update || true
    # Another installation may be running; we wait for it.
    TryLogged apt-install "Installing the packages" \
        AsRoot apt-get -q install -y --no-install-recommends -o DPkg::Lock::Timeout=300 "${missing[@]}" ||
        Fail "the packages cannot be installed: $(WhatAptSaid) (is there a network? The whole output is in $(LogOf apt-install))"
}

# The first of its reasons; without a network that is one package after the other.
WhatAptSaid() { sed -n 's/^E: //p' "$(LogOf apt-install)" | head -n 1; }

# A later Debian may have a package under another name, which then "provides" this one.
MissingPackages() {
    comm -23 <(printf '%s\n' "$@" | sort) <(
        dpkg-query --show --showformat '${db:Status-Status} ${Package}, ${Provides}\n' |
            sed -n -E 's/^installed //; T; s/ \([^)]*\)//g; s/, */\n/g; p' | sort -u
    )
}

CanBecomeRoot() { [[ $user == 0 ]] || { command -v sudo >/dev/null && sudo true; }; }

AsRoot() {
    local sudo=()
    [[ $user == 0 ]] || sudo=(sudo)
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive "$@"
}
