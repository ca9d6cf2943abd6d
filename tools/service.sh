# The development service: started, trusted, found again and stopped. Sourced.
#
# Each service has its own state folder, where it writes its address and its certificate authority; we add its process
# id. A service outlives the script that started it, until it is stopped. shellcheck shell=bash shellcheck
# source=tools/wine.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/wine.sh"

service_program=$build_folder/devservice/devservice
trust_program=$build_folder/windows/devhost/devtrust.exe

# UseService STATE: lets the programs that are started from here on find the service.
UseService() {
    DEVSERVICE_ADDRESS=$(<"$1/address")
    export DEVSERVICE_ADDRESS
    export DEVSERVICE_CA=$1/ca.pem
}

# StartService STATE -- ARGUMENTS...: starts the service unless it runs already, and uses it.
StartService() {
    local state=$1
    shift 2
    if ! ServiceAnswers "$state"; then
        StopService "$state"
        mkdir -p "$state"
        setsid "$service_program" "$@" --state "$state" </dev/null >"$state/log" 2>&1 9>&- &
        echo $! >"$state/pid"
        WaitFor 20 ServiceAnswersOrEnded "$state" || true
        ServiceAnswers "$state" || FailWithLog "$state/log" "the development service did not start"
        TrustAuthority "$state/ca.pem"
    fi
    UseService "$state"
}

# StopService STATE: ends it, and its authority is trusted no longer.
StopService() {
    ! ServiceRuns "$1" || kill "$(<"$1/pid")"
    WaitFor 10 ServiceEnded "$1" || Fail "the development service does not end; its process is $(<"$1/pid")"
    [[ ! -e $1/ca.pem ]] || DistrustAuthority "$1/ca.pem"
    rm -f "$1"/{address,ca.pem,token,pid}
}

TrustAuthority() {
    RunWine "$trust_program" add "$(WindowsPath "$1")" </dev/null || Fail "the authority in $1 could not be trusted"
}

DistrustAuthority() {
    RunDetached "$(WineProgram)" "$trust_program" remove "$(WindowsPath "$1")" || Say "$1 is still trusted in $WINEPREFIX"
}

# The process id may by now belong to another program, which lacks this state folder among its arguments.
ServiceRuns() { [[ -e $1/pid ]] && grep -qzxF -e "$1" "/proc/$(<"$1/pid")/cmdline" 2>/dev/null; }
ServiceEnded() { ! ServiceRuns "$1"; }

# A service rebuilt since its start does not count, nor does one older than the Wine prefix, which does not trust it.
ServiceAnswers() {
    local address
    ServiceRuns "$1" || return
    [[ -s $1/address && ! $service_program -nt $1/pid && ! $prefix_is_complete -nt $1/pid ]] || return
    address=$(<"$1/address")
    (exec 3<>"/dev/tcp/${address%:*}/${address##*:}") 2>/dev/null
}

# Just started it is still the shell that starts it, with other arguments: here the process id must do.
ServiceAnswersOrEnded() { ServiceAnswers "$1" || ! kill -0 "$(<"$1/pid")" 2>/dev/null; }

# CopySamples FOLDER, unless it is there. The samples themselves are never served: a session may change anything.
CopySamples() {
    [[ ! -e $1 ]] || return 0
    rm -rf "$1.new"
    cp -r "$repository/devservice/samples" "$1.new"
    mv "$1.new" "$1"
}
