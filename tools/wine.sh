# Windows programs on this machine: a private Wine prefix, a wine server that is kept, and a display. Sourced.
# shellcheck shell=bash
# shellcheck source=tools/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

# Wine refuses a prefix that belongs to another user, hence the user id in its name.
export WINEPREFIX=$build_folder/wine-$user
export WINEARCH=win64
export WINEDEBUG=${WINEDEBUG:--all}
# No questions about .NET and HTML add-ons, no menu entries on the user's desktop.
export WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=d'
# In the "C" locale Wine mangles arguments and file names that are not ASCII.
export LC_ALL=C.UTF-8

prefix_is_complete=$WINEPREFIX/.complete
display_file=$build_folder/display-$user

# Where Debian has a "wine64" in the PATH it is a wrapper that prints noise; the program itself is beside its libraries.
# Both are looked for whenever they are used: they may be installed after this file was read.
WineProgram() { FirstProgram /usr/lib/wine/wine64 wine64 wine; }
WineServer() { FirstProgram /usr/lib/wine/wineserver64 wineserver; }
FirstProgram() { command -v "$@" | head -n 1; }

# RunWine PROGRAM ARGUMENTS...
RunWine() { "$(WineProgram)" "$@" 9>&-; }

# What outlives this script must not keep the caller's terminal, pipes or lock open, nor end with the caller's Ctrl-C.
StartDetached() { setsid "$@" </dev/null >/dev/null 2>&1 9>&- & }
RunDetached() { setsid --wait "$@" </dev/null >/dev/null 2>&1 9>&-; }

DisplayAnswers() { DISPLAY=$1 xprop -root WM_NAME >/dev/null 2>&1; }

# A display may answer under the number of ours and be another's: ours has ended, and its number was free again.
HiddenDisplayAnswers() { HiddenDisplayRuns && DisplayAnswers "$(HiddenDisplay)"; }
HiddenDisplayRuns() { [[ $(cat "/proc/$(cat "$display_file.pid" 2>/dev/null)/comm" 2>/dev/null) == Xvfb ]]; }

HiddenDisplay() { printf ':%s\n' "$(cat "$display_file" 2>/dev/null || echo none)"; }

# Uses the display that is there, else the hidden one of an earlier run, else starts that one. This comes before
# the wine server is started: its desktop keeps the size of the display that it saw first.
StartDisplay() {
    [[ -n ${DISPLAY:-} ]] && DisplayAnswers "$DISPLAY" && return
    # shellcheck disable=SC2034  # for those who open windows
    display_is_hidden=yes
    Locked wine StartHiddenDisplay
    DISPLAY=$(HiddenDisplay)
    export DISPLAY
}

StartHiddenDisplay() {
    HiddenDisplayAnswers && return
    rm -f "$display_file"
    # Xvfb takes a free number by itself and writes it down once it answers.
    StartDetached Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$display_file"
    echo $! >"$display_file.pid"
    WaitFor 20 test -s "$display_file" || Fail "there is no display, and Xvfb did not start"
}

StopHiddenDisplay() {
    ! HiddenDisplayRuns || kill "$(<"$display_file.pid")"
    rm -f "$display_file" "$display_file.pid"
}

# Creates the prefix when there is none (about 10 s and 700 MB).
CreatePrefix() {
    PrefixIsComplete || Locked wine FillPrefix
    DetachFromHome
}

# One made by another Wine, before a system upgrade, is made again.
PrefixIsComplete() { [[ $(cat "$prefix_is_complete" 2>/dev/null) == "$(WineIdentity)" ]]; }
WineIdentity() { stat --dereference --format '%n %s %Y' "$(WineProgram)"; }

FillPrefix() {
    ! PrefixIsComplete || return 0
    Say "Creating the Wine prefix (once, about 10 s)"
    # Remove what another Wine or an interrupted attempt left.
    StopWine
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX"
    StartWineServer
    RunDetached "$(WineProgram)" wineboot --init || Fail "Wine could not create its prefix in $WINEPREFIX"
    # The services of the run that made the prefix lack the one for OLE, which costs each program 10 s: restart them.
    RunDetached "$(WineServer)" -k || true
    RunDetached "$(WineServer)" -w || true
    # Tahoma, and the signs on title bars: Wine does not find its own fonts when it is started without its wrapper.
    cp /usr/share/wine/fonts/*.ttf "$WINEPREFIX/drive_c/windows/Fonts/" || Say "Wine's fonts are not where they should be"
    DetachFromHome
    WineIdentity >"$prefix_is_complete"
}

# Wine makes Documents, Desktop and so on links into the user's real home. Nothing here may reach that.
DetachFromHome() {
    local entry
    for entry in "$WINEPREFIX"/drive_c/users/*/*; do
        [[ ! -L $entry ]] || { rm -f "$entry" && mkdir -p "$entry"; }
    done
}

# A program starts in 20 ms while the server runs, in half a second and more when it has to be started first.
KeepWineServer() {
    Locked wine StartWineServer
    SetWindowFrames
    EndCrashesAtOnce
}

StartWineServer() {
    # Answers 2 when the server runs already. The first program starts the services, which must not be children
    # of a caller that waits for its pipe to close.
    ! RunDetached "$(WineServer)" -p || RunDetached "$(WineProgram)" cmd /c exit
}

# Without a window manager nobody draws title bars, unless Wine does it itself ("Managed" off).
SetWindowFrames() {
    local managed=Y
    [[ $(xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null) == *'window id'* ]] || managed=N
    [[ $(cat "$WINEPREFIX/.managed" 2>/dev/null) != "$managed" ]] || return 0
    RunDetached "$(WineProgram)" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d "$managed" /f ||
        Fail "Wine's registry could not be written"
    echo "$managed" >"$WINEPREFIX/.managed"
}

# A program that crashes ends at once. Wine's debugger, which looks at it first, takes minutes and often hangs.
EndCrashesAtOnce() {
    [[ ! -e $WINEPREFIX/.no-debugger ]] || return 0
    RunDetached "$(WineProgram)" reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Debugger /d none /f ||
        Fail "Wine's registry could not be written"
    touch "$WINEPREFIX/.no-debugger"
}

# SetScale PERCENT: how large programs that are started from now on draw; 100 is the usual size.
SetScale() {
    RunDetached "$(WineProgram)" reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d $(($1 * 96 / 100)) /f ||
        Fail "Wine's registry could not be written"
}

# Everything that a Windows program needs, in the order in which it must come.
PrepareWine() {
    StartDisplay
    CreatePrefix
    KeepWineServer
}

# Ends all programs of this prefix, and of no other.
StopWine() { [[ ! -d $WINEPREFIX ]] || RunDetached "$(WineServer)" -k || true; }
