// What the dialogs of the shipped module do to the account, also when the service or somebody else interferes, in real
// windows, against the folder that the service serves.

#include "ShippedDialogTest.h"

#include <algorithm>

namespace Tests {
namespace {

namespace fs = std::filesystem;

class DialogCommandTest : public ShippedDialogTest {};

TEST_F(DialogCommandTest, MakesANamedFolder) {
    EXPECT_EQ(Open({}, R"(
                  text start.pdf
                  press New folder
                  edit Reports
                  key Enter
                  text Reports
                  focus lst.files
                  key Enter
                  text Dropbox (Ada Example)/Reports
                  menu New folder
                  edit 2026
                  key Enter
                  open 2026
                  text Dropbox (Ada Example)/Reports/2026
                  press btn.cancel)"),
              canceled);
    EXPECT_TRUE(fs::is_directory(Service::LocalPath(L"/Reports/2026")));
}

TEST_F(DialogCommandTest, MakesNoFolderWithoutAGoodName) {
    EXPECT_EQ(Open({}, R"(
                  text start.pdf
                  press New folder
                  edit Given up
                  key Esc
                  gone Given up
                  press New folder
                  edit what?
                  key Enter
                  text A name in Dropbox can't contain "?
                  press OK
                  edit documents
                  key Enter
                  text There is already something named "documents" here
                  press OK
                  edit documents
                  key Esc
                  open start.pdf)"),
              L"/start.pdf");
    EXPECT_EQ(std::distance(fs::directory_iterator(Service::LocalPath(L"/")), fs::directory_iterator()), 2);
}

TEST_F(DialogCommandTest, RenamesInPlace) {
    EXPECT_EQ(Open({L"/Documents"}, R"(
                  row a.pdf
                  key F2
                  edit b.pdf
                  key Enter
                  text There is already something named "b.pdf" here
                  press OK
                  edit what?
                  key Enter
                  text A name in Dropbox can't contain "?
                  press OK
                  edit renamed.pdf
                  key Enter
                  gone a.pdf
                  row renamed.pdf
                  key F2
                  type again
                  key Enter
                  gone renamed.pdf
                  text again.pdf
                  menu Rename
                  edit given up.pdf
                  key Esc
                  gone given up
                  row Inner
                  menu Rename
                  edit Other
                  key Enter
                  open Other
                  text deep.pdf
                  key Alt+Up
                  row again.pdf
                  press Open)"),
              L"/Documents/again.pdf");
    EXPECT_TRUE(Exists(L"/Documents/again.pdf"));
    EXPECT_FALSE(Exists(L"/Documents/a.pdf"));
    EXPECT_TRUE(Exists(L"/Documents/Other/deep.pdf"));
}

TEST_F(DialogCommandTest, TellsWhyARenameFailed) {
    Service::AddFault(R"({"path": "2/files/move", "status": 503})");
    EXPECT_EQ(Open({L"/Documents"}, R"(
                  row a.pdf
                  key F2
                  edit x.pdf
                  key Enter
                  text "a.pdf" wasn't renamed
                  press OK
                  open a.pdf)"),
              L"/Documents/a.pdf");
}

TEST_F(DialogCommandTest, HasKeysForItsItemsAndCommands) {
    EXPECT_EQ(Open({L"/Documents"}, R"(
                  text a.pdf
                  key Ctrl+Shift+N
                  edit Keys
                  key Enter
                  text Keys
                  key Alt+N
                  type b.pdf
                  key Alt+O)"),
              L"/Documents/b.pdf");
    EXPECT_TRUE(Exists(L"/Documents/Keys"));
    Then([] { MakeFile(L"/Documents/from somebody.txt"); }, R"(
        key Ctrl+R
        text from somebody.txt
        key Alt+T Down
        text b.pdf
        key Alt+L End Enter)");
    EXPECT_EQ(Open({L"/Documents", L"--filters", L"Texts|*.txt|PDF files|*.pdf|"}, "text c.txt"), L"/Documents/b.pdf");
}

TEST_F(DialogCommandTest, DeletesWhatTheUserAgreesTo) {
    EXPECT_EQ(Open({L"/Documents"}, R"(
                  row a.pdf
                  key Delete
                  text Do you want to delete the file "a.pdf"?
                  press Cancel
                  row a.pdf
                  add c.txt
                  press Delete
                  text these 2 files
                  text a.pdf
                  text c.txt
                  press Delete
                  gone c.txt
                  row Inner
                  menu Delete
                  text the folder "Inner" and everything in it
                  press Delete
                  gone Inner
                  open b.pdf)"),
              L"/Documents/b.pdf");
    EXPECT_FALSE(Exists(L"/Documents/a.pdf"));
    EXPECT_FALSE(Exists(L"/Documents/c.txt"));
    EXPECT_FALSE(Exists(L"/Documents/Inner"));
    EXPECT_TRUE(Exists(L"/Documents/b.pdf"));
}

TEST_F(DialogCommandTest, TakesEnterForNo) {
    EXPECT_EQ(Open({L"/Documents"}, R"(
                  row a.pdf
                  key Delete
                  text Do you want to delete the file "a.pdf"?
                  key Enter
                  window Open from Dropbox
                  text a.pdf
                  close)"),
              canceled);
    EXPECT_TRUE(Exists(L"/Documents/a.pdf"));
    EXPECT_EQ(Save({}, "open start.pdf \n text \"start.pdf\" already exists \n key Enter \n window Save to \n close"),
              canceled);
}

TEST_F(DialogCommandTest, NeverDeletesTheWayUp) {
    EXPECT_EQ(Open({L"/Documents/Inner"}, R"(
                  row ../
                  add deep.pdf
                  key Delete
                  text Do you want to delete the file "deep.pdf"?
                  press Delete
                  gone deep.pdf
                  close)"),
              canceled);
    EXPECT_TRUE(Exists(L"/Documents/a.pdf"));
    EXPECT_FALSE(Exists(L"/Documents/Inner/deep.pdf"));
}

TEST_F(DialogCommandTest, LeavesTheKeysOfTheNameBoxToIt) {
    EXPECT_EQ(Open({L"/Documents"}, R"(
                  row a.pdf
                  fill ed.name c.txtx
                  focus ed.name
                  key End Backspace Home Delete
                  type c
                  text Inner
                  key Enter)"),
              L"/Documents/c.txt");
    EXPECT_TRUE(Exists(L"/Documents/a.pdf"));
}

TEST_F(DialogCommandTest, ReloadsWhatOthersChanged) {
    Then([] { MakeFile(L"/Documents/from somebody.pdf"); }, "key F5 \n open from somebody.pdf");
    EXPECT_EQ(Open({L"/Documents"}, "row a.pdf"), L"/Documents/from somebody.pdf");
}

class DialogFailureTest : public ShippedDialogTest {
protected:
    static constexpr char slow_listing[] = R"({"path": "2/files/list_folder", "delay_ms": 4000})";
    static auto CountRequests(std::string_view i_begin) {
        return std::ranges::count_if(Service::Requests(), [&](const Service::Request& i_request) {
            return i_request.line.starts_with(i_begin);
        });
    }

    static int CountUsableDialogs() {
        int count = 0;
        EnumThreadWindows(
            GetCurrentThreadId(),
            [](HWND i_window, LPARAM i_count) -> BOOL {
                const bool is_dialog = (GetWindowLongW(i_window, GWL_STYLE) & WS_CAPTION) == WS_CAPTION;
                *reinterpret_cast<int*>(i_count) += is_dialog && IsWindowVisible(i_window) && IsWindowEnabled(i_window);
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&count));
        return count;
    }

    static constexpr char failing_listing[] = R"({"path": "2/files/list_folder", "status": 500, "times": 2})";
};

TEST_F(DialogFailureTest, ClosesAtOnceWhileAFolderLoads) {
    for (const char* way : {"key Esc", "press btn.cancel", "close"}) {
        SCOPED_TRACE(way);
        Service::AddFault(slow_listing);
        const ULONGLONG begin = GetTickCount64();
        EXPECT_EQ(Open({}, std::string("text Loading... \n ") + way), canceled);
        EXPECT_LT(GetTickCount64() - begin, 2000u);
    }
}

TEST_F(DialogFailureTest, ClosesAtOnceWhileACommandRuns) {
    Service::AddFault(R"({"path": "2/files/delete", "real": true, "delay_ms": 20000})");
    const ULONGLONG begin = GetTickCount64();
    EXPECT_EQ(Open({}, "row start.pdf \n key Delete \n press Delete \n text Deleting... \n key Esc"), canceled);
    EXPECT_LT(GetTickCount64() - begin, 2000u);
    EXPECT_EQ(0, Close());
    EXPECT_LT(GetTickCount64() - begin, 5000u) << "a request that hangs was waited for";
}

TEST_F(DialogFailureTest, ChoosesNoFileWhosePathCannotBeSent) {
    Service::AddFault(
        R"({"path": "2/files/list_folder", "times": 1, "body": "{\"cursor\": \"c\", \"has_more\": false, )"
        R"(\"entries\": [{\".tag\": \"file\", \"name\": \"a\\\"b.pdf\", \"path_display\": \"/a\\\"b.pdf\", )"
        R"(\"size\": 1, \"server_modified\": \"2015-05-12T15:50:38Z\", )"
        R"(\"client_modified\": \"2015-05-12T15:50:38Z\"}]}"})");
    EXPECT_EQ(Open({}, R"(
                  row a"b.pdf
                  press btn.ok
                  text "/a"b.pdf" can't be opened or saved from here
                  press OK
                  key F5
                  open start.pdf)"),
              L"/start.pdf");
}

TEST_F(DialogFailureTest, DeletesNothingMoreOnceItIsClosed) {
    Service::AddFault(R"({"path": "2/files/delete", "real": true, "delay_ms": 1000})");
    EXPECT_EQ(Open({L"/Documents"}, R"(
                  row a.pdf
                  add b.pdf
                  add c.txt
                  key Delete
                  press Delete
                  text Deleting...
                  key Esc)"),
              canceled);
    EXPECT_EQ(0, Close());
    EXPECT_EQ(1, CountRequests("POST /2/files/delete "));
    EXPECT_TRUE(Exists(L"/Documents/b.pdf"));
    EXPECT_TRUE(Exists(L"/Documents/c.txt"));
}

TEST_F(DialogFailureTest, DoesOneThingAtATime) {
    Service::AddFault(R"({"path": "2/files/list_folder", "delay_ms": 3000})");
    EXPECT_EQ(Open({L"/Documents"}, R"(
                  text Loading...
                  key F5 Alt+Up Backspace Delete F5
                  open a.pdf)"),
              L"/Documents/a.pdf");
    EXPECT_EQ(1, CountRequests("POST /2/files/list_folder "));
}

TEST_F(DialogFailureTest, SaysWhyACommandFailed) {
    Service::AddFault(R"({"path": "2/files/delete", "skip": 1, "status": 503})");
    Service::AddFault(R"({"path": "2/files/create_folder", "status": 429})");
    EXPECT_EQ(Open({L"/Documents"}, R"(
                  row a.pdf
                  add b.pdf
                  add c.txt
                  key Delete
                  press Delete
                  text Not everything was deleted
                  text Dropbox is having a problem at the moment
                  press OK
                  gone a.pdf
                  press New folder
                  key Enter
                  text The folder wasn't created
                  text Too many requests were sent
                  press OK
                  open b.pdf)"),
              L"/Documents/b.pdf");
    EXPECT_TRUE(Exists(L"/Documents/c.txt")) << "nothing follows the first failure";
    EXPECT_FALSE(Exists(L"/Documents/New folder"));
}

TEST_F(DialogFailureTest, TriesAgainAsOftenAsTheUserLikes) {
    Service::AddFault(failing_listing);
    EXPECT_EQ(Open({}, R"(
                  text Dropbox is having a problem at the moment
                  press Try again
                  text Dropbox couldn't be loaded
                  press Try again
                  open start.pdf)"),
              L"/start.pdf");
    Service::AddFault(failing_listing);
    EXPECT_EQ(Open({}, R"(
                  text Dropbox is having a problem at the moment
                  press Cancel
                  text Dropbox is having a problem at the moment
                  key F5
                  text Dropbox couldn't be loaded
                  press Cancel
                  key F5
                  open start.pdf)"),
              L"/start.pdf");
}

TEST_F(DialogFailureTest, IsOutOfUseWhileItAsksAlsoBehindAnotherProgram) {
    Service::AddFault(R"({"path": "2/files/list_folder", "status": 500, "delay_ms": 300})");
    Then([] { SetForegroundWindow(GetDesktopWindow()); }, "text Dropbox couldn't be loaded");
    Then([] { EXPECT_EQ(1, CountUsableDialogs()); }, "press Try again \n open start.pdf");
    EXPECT_EQ(Open({}, "text Loading..."), L"/start.pdf");
}

TEST_F(DialogFailureTest, ComesBackFromAFolderThatIsGone) {
    Then([] { fs::remove_all(Service::LocalPath(L"/Documents")); }, R"(
        key F5
        text It doesn't exist, or no longer exists
        press Cancel
        text a.pdf
        key Alt+Up
        open start.pdf)");
    EXPECT_EQ(Open({L"/Documents"}, "text a.pdf"), L"/start.pdf");
}

TEST_F(DialogFailureTest, BeginsInTheNearestFolderThatExists) {
    EXPECT_EQ(Open({L"/Documents/No such/folder"}, R"(
                  text /Documents/No such/folder doesn't exist any more
                  press OK
                  open a.pdf)"),
              L"/Documents/a.pdf");
    EXPECT_EQ(Open({L"/Documents/a.pdf"}, "text b.pdf \n press Open"), L"/Documents/a.pdf");
    EXPECT_EQ(Save({L"/Documents/a.pdf"}, "text b.pdf \n press Save \n text \"a.pdf\" already exists \n press Replace"),
              L"/Documents/a.pdf");
    EXPECT_EQ(Save({L"/Documents/a.pdf", L"--name", L"Copy.pdf"}, "text b.pdf \n press Save"), L"/Documents/Copy.pdf");
}

TEST_F(DialogFailureTest, KeepsTheRowsThatItCannotReplace) {
    Service::AddFault(R"({"path": "2/files/list_folder", "skip": 1, "status": 500, "times": 1, "delay_ms": 1000})");
    EXPECT_EQ(Open({L"/Documents"}, R"(
                  text a.pdf
                  row Inner
                  press Open
                  text Loading...
                  text Dropbox is having a problem at the moment
                  press Cancel
                  text a.pdf
                  gone Loading...
                  open b.pdf)"),
              L"/Documents/b.pdf");
    EXPECT_EQ(2, CountRequests("POST /2/files/list_folder ")) << "the way back needs no connection";
}

TEST_F(DialogFailureTest, DoesOnArrivalWhatOkMeantWhileLoading) {
    Service::AddFault(R"({"path": "2/files/list_folder", "skip": 1, "real": true, "times": 1, "delay_ms": 1000})");
    EXPECT_EQ(Save({L"--name", L"New.pdf"}, "open Documents \n text Loading... \n press Save"), L"/Documents/New.pdf");
    Service::AddFault(R"({"path": "2/files/list_folder", "skip": 1, "status": 500, "times": 1, "delay_ms": 1000})");
    EXPECT_EQ(Save({L"--name", L"New.pdf"}, R"(
                  open Documents
                  text Loading...
                  press Save
                  text Dropbox is having a problem at the moment
                  press Cancel
                  text start.pdf
                  close)"),
              canceled)
        << "not in the folder before";
    Service::AddFault(R"({"path": "2/files/list_folder", "skip": 1, "real": true, "times": 1, "delay_ms": 1000})");
    EXPECT_EQ(Save({L"--name", L"New.pdf"}, R"(
                  row Documents
                  press btn.ok
                  press btn.ok
                  text a.pdf
                  close)"),
              canceled)
        << "a double click on the button";
}

TEST_F(DialogFailureTest, SignsInAgainWhenTheTokenHasExpiredAndAsTheSameUser) {
    Then([] { Service::RevokeTokens(); }, R"(
        open Documents
        text Dropbox no longer accepts your sign-in
        press Sign in again
        text Email
        fill email Ben Example
        fill password sample
        press Sign in
        text Allow
        press Allow
        text This account belongs to
        press Choose user
        text Email
        fill email Ada Example
        fill password sample
        press Sign in
        text Allow
        press Allow
        open b.pdf)");
    EXPECT_EQ(Open({}, "text start.pdf"), L"/Documents/b.pdf");
    EXPECT_EQ(Open({}, "open start.pdf"), L"/start.pdf") << "the new token is saved";
}

TEST_F(DialogFailureTest, AsksForASignInWhenTheSavedTokenIsDead) {
    Service::RevokeTokens();
    EXPECT_EQ(Open({}, "text no longer accepts the saved sign-in \n press Cancel"), canceled);
    EXPECT_EQ(Open({}, R"(
        text no longer accepts the saved sign-in
        press Sign in again
        text Email
        fill email Ada Example
        fill password sample
        press Sign in
        text Allow
        press Allow
        window Open from Dropbox
        close)"),
              canceled);
    EXPECT_EQ(Open({}, "open start.pdf"), L"/start.pdf");
}

TEST_F(DialogFailureTest, TellsAPageFromAnAnswer) {
    Then(
        [] {
            Service::AddFault(
                R"({"path": "2/files/list_folder", "status": 200, "body": "<html><body>Sign in to the hotel"})");
        },
        R"(
        key F5
        text A web page came in place of Dropbox's answer
        press Try again
        open start.pdf)");
    EXPECT_EQ(Open({}, "text start.pdf"), L"/start.pdf");
}

} // namespace
} // namespace Tests
