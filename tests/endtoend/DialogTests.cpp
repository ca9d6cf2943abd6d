// The Open and Save dialogs of the shipped module in real windows, used as a person would, against the folder that the
// service serves.

#include "ShippedDialogTest.h"

#include "script/WindowSearch.h"
#include "uix/ControlName.h"
#include "uix/WindowText.h"

namespace Tests {
namespace {

namespace fs = std::filesystem;
using DevHost::Arguments;

class OpenDialogTest : public ShippedDialogTest {};

struct OpenCase {
    const char* name;
    Arguments arguments;
    std::string steps;
    const wchar_t* answer;
};

TEST_F(OpenDialogTest, OpensAFile) {
    const std::string id(Id().begin(), Id().end());
    for (const OpenCase& row : {
             OpenCase{"double click", {}, "open Documents \n open a.pdf", L"/Documents/a.pdf"},
             {"row and button", {}, "row start.pdf \n press btn.ok", L"/start.pdf"},
             {"keyboard alone",
              {},
              "text start.pdf \n key Down Up Enter \n text c.txt \n key End Enter",
              L"/Documents/c.txt"},
             {"type-ahead", {L"/Documents"}, "text b.pdf \n type b \n key Enter", L"/Documents/b.pdf"},
             {"typed name", {L"/Documents"}, "text a.pdf \n fill ed.name A.PDF \n key Enter", L"/Documents/a.pdf"},
             {"typed path", {}, "text start.pdf \n fill ed.name /documents/b.pdf \n key Enter", L"/Documents/b.pdf"},
             {"menu", {}, "row Documents \n menu Open \n row a.pdf \n menu Open", L"/Documents/a.pdf"},
             {"typed path from here",
              {},
              "text start.pdf \n fill ed.name documents/Inner/deep.pdf \n key Enter",
              L"/Documents/Inner/deep.pdf"},
             {"typed pattern, until the next folder",
              {L"/Documents", L"--filters", L"PDF files|*.pdf|"},
              "text a.pdf \n fill ed.name *.txt \n key Enter \n gone a.pdf \n text Inner \n text c.txt \n open Inner \n"
              "text deep.pdf \n fill ed.name z* \n key Enter \n text No file in this folder matches z* \n key Alt+Up \n"
              "text b.pdf \n gone c.txt \n open a.pdf",
              L"/Documents/a.pdf"},
             {"beginning of a name, which is completed",
              {L"/Documents"},
              "text b.pdf \n fill ed.name b \n key Enter",
              L"/Documents/b.pdf"},
             {"typed location",
              {},
              "text start.pdf \n fill ed.name dropbox://" + id + "/start.pdf \n key Enter",
              L"/start.pdf"},
             {"name given by the caller",
              {L"--name", L"start.pdf"},
              "text start.pdf \n text Documents \n press btn.ok",
              L"/start.pdf"},
             {"the selection outlives sorting and reloading",
              {L"/Documents"},
              "row b.pdf \n column Size \n column Size \n key F5 \n text a.pdf \n press btn.ok",
              L"/Documents/b.pdf"},
             {"the caller's folder goes first",
              {L"/", L"--in", L"/Documents/Inner"},
              "open deep.pdf",
              L"/Documents/Inner/deep.pdf"},
         }) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Open(row.arguments, row.steps), row.answer);
    }
}

TEST_F(OpenDialogTest, OpensSeveralFiles) {
    for (const OpenCase& row : {
             OpenCase{"rows",
                      {L"/Documents"},
                      "row b.pdf \n add a.pdf \n add c.txt \n add c.txt \n press btn.ok",
                      L"/Documents/a.pdf /Documents/b.pdf"},
             {"all, which the way up is not among",
              {L"/Documents/Inner"},
              "text deep.pdf \n focus lst.files \n key Ctrl+A \n press btn.ok",
              L"/Documents/Inner/deep.pdf"},
             {"rows with Shift",
              {L"/Documents"},
              "row a.pdf \n key Shift+Down Shift+Down \n press btn.ok",
              L"/Documents/a.pdf /Documents/b.pdf /Documents/c.txt"},
             {"typed names",
              {L"/Documents"},
              R"(text a.pdf
                 fill ed.name "c.txt" "a.pdf"
                 key Enter)",
              L"/Documents/c.txt /Documents/a.pdf"},
             {"not with a folder among them",
              {L"/Documents"},
              "row Inner \n add a.pdf \n press btn.ok \n text \"Inner\" is a folder \n press OK \n close",
              canceled},
             {"one that is missing",
              {L"/Documents"},
              R"(text a.pdf
                 fill ed.name "a.pdf" "zz.pdf"
                 key Enter
                 text There is no file named "zz.pdf"
                 press OK
                 fill ed.name a.pdf
                 press btn.ok)",
              L"/Documents/a.pdf"},
             {"not where one is wanted",
              {L"--flags", L"2", L"/Documents"},
              "row b.pdf \n add a.pdf \n press btn.ok",
              L"/Documents/a.pdf"},
         }) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Open(row.arguments, row.steps), row.answer);
    }
}

TEST_F(OpenDialogTest, ChoosesFolders) {
    for (const OpenCase& row : {
             OpenCase{"the one that is shown",
                      {L"--folder", L"/Documents"},
                      "text Folder: \n text Inner \n gone a.pdf \n press Choose",
                      L"/Documents"},
             {"the root", {L"--folder"}, "text Documents \n press btn.ok", L"/"},
             {"a row", {L"--folder"}, "row Documents \n press btn.ok", L"/Documents"},
             {"a file's name, mended",
              {L"--folder"},
              R"(window Choose a folder in Dropbox
                 fill ed.name start.pdf
                 key Enter
                 text "start.pdf" is a file
                 press OK
                 row Documents
                 fill ed.name /Documents
                 key Enter
                 text Inner
                 press Choose)",
              L"/Documents"},
             {"not the one just left, which only stands selected",
              {L"--folder", L"/Documents/Inner"},
              "text ../ \n press Up one level \n text Inner \n press Choose",
              L"/Documents"},
             {"one gone into",
              {L"--folder"},
              "open Documents \n open Inner \n text Documents/Inner \n press btn.ok",
              L"/Documents/Inner"},
         }) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Open(row.arguments, row.steps), row.answer);
    }
}

TEST_F(OpenDialogTest, GoesUpToTheFolderItCameFrom) {
    const std::string into = "open Inner \n text deep.pdf \n ";
    const std::string and_back = " \n text c.txt \n focus lst.files \n key Enter \n open deep.pdf";
    for (const auto& [name, way] : {std::pair<const char*, std::string>{"row", "open ../"},
                                    {"row and button", "row ../ \n press btn.ok"},
                                    {"Backspace", "key Backspace"},
                                    {"Alt+Up", "key Alt+Up"},
                                    {"command", "press Up one level"},
                                    {"menu", "menu Up one level"},
                                    {"typed", "fill ed.name .. \n key Enter"}}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(Open({L"/Documents"}, into + way + and_back), L"/Documents/Inner/deep.pdf");
    }
    EXPECT_EQ(Open({}, "text start.pdf \n gone ../ \n key Backspace \n open start.pdf"), L"/start.pdf");
}

TEST_F(OpenDialogTest, GoesBackForwardAndToFoldersVisited) {
    EXPECT_EQ(Open({}, R"(
                  open Documents
                  open Inner
                  text deep.pdf
                  key Alt+Left
                  text a.pdf
                  key Alt+Left
                  text start.pdf
                  key Alt+Left
                  key Alt+Right
                  text a.pdf
                  menu Forward
                  text deep.pdf
                  menu Back
                  text a.pdf
                  key Alt+D
                  menu Dropbox/Documents/Inner
                  text deep.pdf
                  key Alt+D
                  menu Dropbox
                  open start.pdf)"),
              L"/start.pdf");
}

TEST_F(OpenDialogTest, ListsWhatTheFilterPasses) {
    const Arguments filters = {L"/Documents", L"--filters", L"PDF files|*.pdf|Texts|*.txt;*.md|"};
    EXPECT_EQ(Open(filters, R"(
                  text a.pdf
                  text Inner
                  gone c.txt
                  choose cb.filter Texts
                  gone a.pdf
                  text Inner
                  open c.txt)"),
              L"/Documents/c.txt");
    EXPECT_EQ(FilterIndex(), 1);
    Arguments second = filters;
    second.insert(second.end(), {L"--filter-index", L"1"});
    EXPECT_EQ(Open(second, "text c.txt \n gone a.pdf \n choose cb.filter PDF files \n open b.pdf"),
              L"/Documents/b.pdf");
    EXPECT_EQ(FilterIndex(), 0);
    second.back() = L"7";
    EXPECT_EQ(Open(second, "text a.pdf \n gone c.txt \n open a.pdf"), L"/Documents/a.pdf");
}

TEST_F(OpenDialogTest, NamesTheAccountTheFolderAndWhatIsSelected) {
    EXPECT_EQ(Open({L"/Documents/Inner"}, "text Dropbox (Ada Example)/Documents/Inner \n close"), canceled);
    const auto name_box = [] {
        return DevHost::FindTopWindow([](HWND i_window) {
                   const HWND box = DevHost::FindControl(i_window, L"ed.name");
                   return box != nullptr && DevHost::WindowText(box) == L"Documents";
               }) != nullptr;
    };
    Then([&] { EXPECT_TRUE(name_box()); },
         "open Documents \n text Inner \n key Alt+Up \n text Documents \n gone Inner");
    Then([&] { EXPECT_FALSE(name_box()) << "the folder left is not chosen"; }, "press Choose");
    EXPECT_EQ(Open({L"--folder"}, "text Dropbox (Ada Example) \n row Documents"), L"/");
}

TEST_F(OpenDialogTest, SaysWhyThereIsNothingToSee) {
    fs::create_directories(Service::LocalPath(L"/Documents/Empty"));
    const char steps[] = R"(
        text deep.pdf
        gone This folder
        choose cb.filter Texts
        text This folder has no files of the selected type
        press Up one level
        open Empty
        text This folder is empty
        text ../
        close)";
    EXPECT_EQ(Open({L"/Documents/Inner", L"--filters", L"PDF files|*.pdf|Texts|*.txt|"}, steps), canceled);
    EXPECT_EQ(Open({L"/Documents/Inner", L"--folder"}, "text This folder has no folders in it \n close"), canceled);
    fs::remove(Service::LocalPath(L"/Documents/Empty"));
}

TEST_F(OpenDialogTest, ShowsTheCallersTexts) {
    EXPECT_EQ(Open({L"--title", L"Attach a document", L"--action-title", L"&Attach", L"--cancel-title", L"Not now",
                    L"--settings", L"--settings-title", L"Rules..."},
                   R"(window Attach a document
                      press Rules...
                      window Settings
                      press OK
                      window Attach a document
                      text Attach
                      press Not now)"),
              canceled);
    EXPECT_EQ(Open({}, "window Open from Dropbox \n text start.pdf \n gone Options \n press Cancel"), canceled);
}

TEST_F(OpenDialogTest, MakesDoWithOddParameters) {
    for (const Arguments& arguments :
         {Arguments{L"--flags", L"-1"}, // Callers cannot set the bit for folders.
          {L"--filters", L"|||"},
          {L"--filters", L"PDF files", L"--filter-index", L"-5"},
          {L"--filters", L"All|*|Broken", L"--filter-index", L"2147483647"},
          {L"--name", L"\"", L"--default-ext", L".*/:"},
          {L"--title", std::wstring(3000, L'\x263a'), L"--action-title", std::wstring(300, L'&')}}) {
        SCOPED_TRACE(std::string(arguments[1].begin(), arguments[1].begin() + 1));
        EXPECT_EQ(Open(arguments, "open start.pdf"), L"/start.pdf");
    }
}

TEST_F(OpenDialogTest, ChangesTheUser) {
    const auto bens_file = fs::path(Variable(L"DEVSERVICE_ROOT_2")) / L"ben.pdf";
    WriteBytes(bens_file, "bytes");
    EXPECT_EQ(Open({L"/Documents"}, R"(
                  text a.pdf
                  press Choose user
                  window Sign in to Dropbox
                  close
                  window Open from Dropbox
                  text a.pdf
                  press Choose user
                  text Email
                  fill email Ben Example
                  fill password sample
                  press Sign in
                  text Allow
                  press Allow
                  open ben.pdf)"),
              L"/ben.pdf");
    EXPECT_EQ(SavedUsers(), L"Ada Example;Ben Example;") << "the sign-in is kept";
    fs::remove(bens_file);
}

TEST_F(OpenDialogTest, RunsOnTheMainThreadWhoeverAsks) {
    EXPECT_EQ(OpenFromWorker("open start.pdf"), L"/start.pdf");
    EXPECT_EQ(OpenFromWorker("text start.pdf \n close"), canceled);
}

class SaveDialogTest : public ShippedDialogTest {};

TEST_F(SaveDialogTest, SavesUnderAName) {
    for (const OpenCase& row : {
             OpenCase{"new",
                      {},
                      "window Save to Dropbox \n text start.pdf \n fill ed.name New.pdf \n key Enter",
                      L"/New.pdf"},
             {"the caller's, in another folder",
              {L"--name", L"Report.pdf"},
              "open Documents \n open Inner \n text deep.pdf \n press Save",
              L"/Documents/Inner/Report.pdf"},
             {"with the file type's extension",
              {L"--filters", L"PDF files|*.pdf|Texts|*.txt|"},
              "text start.pdf \n choose cb.filter Texts \n text Documents \n fill ed.name New \n press btn.ok",
              L"/New.txt"},
             {"with the default extension",
              {L"--prefer-default-ext", L"--default-ext", L"fdf", L"--filters", L"PDF files|*.pdf|"},
              "text start.pdf \n fill ed.name New \n press btn.ok",
              L"/New.fdf"},
             {"a path", {}, "text start.pdf \n fill ed.name /Documents/New.pdf \n key Enter", L"/Documents/New.pdf"},
             {"a name that the service doesn't accept",
              {},
              R"(text start.pdf
                 fill ed.name what?.pdf
                 press btn.ok
                 text A name in Dropbox can't contain "?
                 key Esc
                 fill ed.name what.pdf
                 press btn.ok)",
              L"/what.pdf"},
             {"blanks alone are no name",
              {},
              "text start.pdf \n focus ed.name \n key Space Space \n press btn.ok \n row Documents \n press Open \n "
              "text Inner \n"
              "fill ed.name x.pdf \n press Save",
              L"/Documents/x.pdf"},
         }) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Save(row.arguments, row.steps), row.answer);
    }
    EXPECT_FALSE(Exists(L"/New.pdf")) << "the dialog only chooses";
}

/// No row is selected in a folder that was just entered, but one has the focus.
TEST_F(SaveDialogTest, TakesEnterInTheListForSaveUnlessSomethingIsSelected) {
    EXPECT_EQ(Save({L"--name", L"New.pdf"}, "open Documents \n text Inner \n key Enter"), L"/Documents/New.pdf");
    EXPECT_EQ(Save({L"--name", L"New.pdf"}, R"(
                  open Documents
                  open Inner
                  text deep.pdf
                  key Enter)"),
              L"/Documents/Inner/New.pdf");
}

TEST_F(SaveDialogTest, AsksBeforeAFileIsReplaced) {
    const std::string question = "text \"start.pdf\" already exists \n ";
    EXPECT_EQ(Save({}, "text Documents \n fill ed.name start.pdf \n press btn.ok \n " + question + "press Replace"),
              L"/start.pdf");
    EXPECT_EQ(Save({}, "open start.pdf \n " + question + "press Cancel \n text Documents \n fill ed.name other.pdf\n" +
                           "press btn.ok"),
              L"/other.pdf");
    EXPECT_EQ(Save({L"--flags", L"1"}, "row start.pdf \n press btn.ok"), L"/start.pdf") << "nobody wants to be asked";
    EXPECT_TRUE(Exists(L"/start.pdf"));
}

TEST_F(SaveDialogTest, AsksBeforeAFileIsReplacedThatSomebodyMadeMeanwhile) {
    const auto make = [] { MakeFile(L"/New.pdf"); };
    const std::string save = "fill ed.name new.pdf \n press btn.ok \n text \"New.pdf\" already exists \n ";
    Then(make, save + "press Cancel \n text New.pdf \n close");
    EXPECT_EQ(Save({}, "text start.pdf"), canceled);
    fs::remove(Service::LocalPath(L"/New.pdf"));
    Then(make, save + "press Replace");
    EXPECT_EQ(Save({}, "text start.pdf"), L"/New.pdf");
}

TEST_F(SaveDialogTest, TakesAFileThatResemblesTheNameForAnotherOne) {
    MakeFile(L"/stra\u00dfe.pdf");
    EXPECT_EQ(Save({}, "text start.pdf \n fill ed.name strasse.pdf \n press btn.ok"), L"/strasse.pdf");
    EXPECT_EQ(Save({}, "text start.pdf \n fill ed.name /strasse.pdf \n press btn.ok"), L"/strasse.pdf");
}

TEST_F(OpenDialogTest, TakesAFolderThatResemblesTheShownOneForAnotherOne) {
    MakeFile(L"/stra\u00dfe/a.pdf");
    MakeFile(L"/strasse/b.pdf");
    EXPECT_EQ(Open({L"/stra\u00dfe"}, "text a.pdf \n fill ed.name /strasse \n press btn.ok \n open b.pdf"),
              L"/strasse/b.pdf");
}

TEST_F(SaveDialogTest, GoesIntoAFolderThatWasJustMade) {
    EXPECT_EQ(Save({L"--name", L"New.pdf"}, R"(
                  text start.pdf
                  press New folder
                  edit Made
                  key Enter
                  press Open
                  text ../
                  gone start.pdf
                  press Save)"),
              L"/Made/New.pdf");
}

TEST_F(SaveDialogTest, BeginsWithTheStemOfTheNameSelected) {
    EXPECT_EQ(Save({L"--name", L"Old name.pdf"}, "text start.pdf \n type New \n key Enter"), L"/New.pdf");
}

TEST_F(SaveDialogTest, SaysWhatItsButtonWillDo) {
    EXPECT_EQ(Save({L"--action-title", L"Put it there"}, R"(
                  text start.pdf
                  text Put it there
                  row Documents
                  gone Put it there
                  press Open
                  text Inner
                  fill ed.name x.pdf
                  press Put it there)"),
              L"/Documents/x.pdf");
}

TEST_F(SaveDialogTest, MeansTheRowThatIsSelectedAfterANameWasTyped) {
    EXPECT_EQ(Save({}, R"(
                  text start.pdf
                  fill ed.name New.pdf
                  row Documents
                  press btn.ok
                  text a.pdf
                  press btn.ok)"),
              L"/Documents/New.pdf");
}

} // namespace
} // namespace Tests
