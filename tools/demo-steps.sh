#!/usr/bin/env bash
# The steps of ./demo, which has set everything up: each one runs the development host as a person would, shows what it
# prints, and checks the outcome against the folder that the service serves.
set -euo pipefail
# shellcheck source=tools/wine.sh
source "$(dirname -- "$(realpath -- "${BASH_SOURCE[0]}")")/wine.sh"

demo_folder=$build_folder/demo
served=$demo_folder/folder # What the service holds.
cd "$demo_folder"

Step() { printf '\n== %s\n' "$*"; }

Host() { RunWine "$build_folder/windows/devhost/qorvhost.exe" --profile profile "$@"; }

# ShowLine NOTE ARGUMENTS...: the command as one would type it.
ShowLine() {
    local word line=
    for word in "${@:2}"; do
        [[ $word != *[^[:alnum:]/._=-]* ]] || word="\"$word\""
        line+=" $word"
    done
    printf '\n  $ ./qorvhost%s%s\n' "$line" "${1:+        ($1)}"
}

# Show ARGUMENTS...: the command and what it prints.
Show() {
    ShowLine '' "$@"
    Host "$@" | sed 's/^/    /'
}

# ShowDriven PICTURE ARGUMENTS...: the same for a command with windows. What a person does in them is read from standard
# input; it takes the picture. What the command prints is in the file "answer" afterwards.
ShowDriven() {
    ShowLine "typed and pressed for you, see build/demo/$1" "${@:2}"
    cat >steps
    QORVHOST_WINDOW_SCRIPT=steps Host "${@:2}" | tee answer | sed 's/^/    /'
    Expect "the dialog left its picture" test -s "$1"
}

# Expect SENTENCE COMMAND...: the demo ends when the command says that the sentence is not true.
Expect() {
    "${@:2}" >/dev/null || Fail "this is not so: $1"
    printf '    -> checked: %s\n' "$1"
}

NotIn() { ! grep -rq -e "$2" "$1"; }
Missing() { [[ ! -e $1 ]]; }

# The names that a listing shows for a location, and those that a folder holds, sorted.
ListedNames() { Host --json ls "$1" | grep -o '"name": *"[^"]*"' | sed 's/.*: *"//; s/"$//' | sort; }
HeldNames() { (cd "$1" && printf '%s\n' *) | sort; }
SameNames() { diff <(ListedNames "$1") <(HeldNames "$2"); }

# The paths that the last dialog ended with.
Chosen() { sed 's|^dropbox://[^/]*||' answer | paste -sd ' '; }

Step "The module: loaded, set up, asked who it is, unloaded"
Show info

Step "An account: the user signs in at the service's own pages, in the module's dialog"
ShowDriven sign-in.png login <<'STEPS'
window Sign in to Dropbox
text Email
fill email Dana Sample
fill password sample
picture sign-in.png
press Sign in
text Allow
press Allow
STEPS
Show accounts
Expect "the account is saved, and no file of the profile holds its token in clear" NotIn profile "sl\."

Step "Folders are listed"
Show ls /
Expect "these are the names that the service's folder holds" SameNames / "$served"
Show ls "/Documents"
Expect "and so are these" SameNames "/Documents" "$served/Documents"

Step "A document is opened through the host's files cache"
Show get "/Documents/Quarterly Report.pdf" report.pdf
Expect "its bytes are those of the service's file" cmp report.pdf "$served/Documents/Quarterly Report.pdf"

Step "It is changed and saved back"
printf '%% Reviewed in the demo.\n' >>report.pdf
Show put report.pdf "/Documents/Quarterly Report.pdf"
Expect "the service's file is the changed document" cmp report.pdf "$served/Documents/Quarterly Report.pdf"
Show stat "/Documents/Quarterly Report.pdf"

Step "A new folder and a new document"
Show mkdir "/Reviews"
Expect "the service's folder has it" test -d "$served/Reviews"
Show put report.pdf "/Reviews/Report – reviewed.pdf"
Expect "the document arrived whole" cmp report.pdf "$served/Reviews/Report – reviewed.pdf"

Step "Items are copied, moved, renamed and deleted"
Show cp "/Reviews/Report – reviewed.pdf" "/Reviews/Copy.pdf"
Expect "both are there" cmp "$served/Reviews/Report – reviewed.pdf" "$served/Reviews/Copy.pdf"
Show mv "/Reviews/Copy.pdf" "/Documents/Moved.pdf"
Expect "it left the one folder" Missing "$served/Reviews/Copy.pdf"
Expect "and is in the other" cmp report.pdf "$served/Documents/Moved.pdf"
Show rename "/Reviews" "Finished reviews"
Expect "the folder has its new name" test -f "$served/Finished reviews/Report – reviewed.pdf"
Show rm "/Documents/Moved.pdf"
Expect "it is gone" Missing "$served/Documents/Moved.pdf"
Show ls -R "/Finished reviews"

Step "The module's own dialogs: two files are chosen in a folder that is sorted by size"
ShowDriven open-dialog.png open-dialog --filters "Documents|*.pdf;*.csv|All files|*.*|" <<'STEPS'
window Open from Dropbox
open Documents
column Size
row Budget.csv
add Quarterly Report.pdf
picture open-dialog.png
press Open
STEPS
Expect "both were chosen" test "$(Chosen)" = "/Documents/Budget.csv /Documents/Quarterly Report.pdf"

Step "A place to save is chosen, in a folder that is made for it in the dialog"
ShowDriven save-dialog.png save-dialog --name "Report 2026.pdf" --filters "PDF files|*.pdf|" /Documents <<'STEPS'
window Save to Dropbox
text Quarterly Report.pdf
press New folder
edit For the committee
key Enter
text For the committee
picture save-dialog.png
open For the committee
text /Documents/For the committee
press Save
STEPS
Expect "the service's folder has the new folder" test -d "$served/Documents/For the committee"
Show put report.pdf "$(<answer)"
Expect "the document arrived there" cmp report.pdf "$served/Documents/For the committee/Report 2026.pdf"

Step "The question before something is deleted, on a screen at 150 %"
trap 'SetScale 100' EXIT
SetScale 150
ShowDriven delete-150.png open-dialog --folder /Documents <<'STEPS'
row For the committee
picture open-dialog-150.png
press Delete
text the folder "For the committee"
picture delete-150.png
press Delete
gone For the committee
press Choose
STEPS
SetScale 100
Expect "the folder is gone with what was in it" Missing "$served/Documents/For the committee"
Expect "the folder that was shown is chosen" test "$(Chosen)" = "/Documents"

printf '%s\n' '' "== That was the main job. To go on by hand, with an account over a copy of the same documents:" '' \
    '  ./qorvhost ls /' \
    '  ./qorvhost cat "/Notes/Shopping list.txt"' \
    '  ./qorvhost get "/Getting Started.pdf" build/start.pdf' \
    '  ./qorvhost help' \
    '  ./check                      builds and runs all tests'
