#include "LocalService.h"

using namespace DevService;

namespace {

class Listing : public LocalService {
protected:
    /// All pages: the names of each, separated by spaces, and "|" after every page.
    std::string Pages(const std::string& i_arguments) const {
        std::string pages;
        rapidjson::Document page = Json(Rpc("files/list_folder", i_arguments));
        while (true) {
            for (const auto& entry : page["entries"].GetArray())
                pages += Member(entry, "path_display") + (Member(entry, ".tag") == "deleted" ? "-" : "") + " ";
            pages += "|";
            if (!page["has_more"].GetBool())
                return pages;
            page = Next(Member(page, "cursor"));
        }
    }

    rapidjson::Document Next(const std::string& i_cursor) const {
        return Json(Rpc("files/list_folder/continue", R"({"cursor": ")" + i_cursor + R"("})"));
    }
};

TEST_F(Listing, CutsFoldersIntoPages) {
    struct Row {
        const char* paging;
        const char* arguments;
        const char* pages;
    };
    const Row rows[] = {
        {R"({"size": 500})", R"({"path": ""})", "/Docs /b.txt |"},
        {R"({"size": 500})", R"({"path": "//docs"})", "/Docs/Sub /Docs/a.txt |"},
        {R"({"size": 500})", R"({"path": "/Docs/sub", "include_media_info": false})", "/Docs/Sub/deep.txt |"},
        {R"({"size": 1})", R"({"path": ""})", "/Docs |/b.txt |"},
        {R"({"size": 1})", R"({"path": "", "limit": 2})", "/Docs /b.txt |"},
        {R"({"size": 1, "empty_pages": true})", R"({"path": ""})", "/Docs ||/b.txt |"},
        {R"({"size": 3})", R"({"path": "", "recursive": true})",
         "/Docs /Docs/Sub /Docs/Sub/deep.txt |/Docs/a.txt /b.txt |"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.paging) + " " + row.arguments);
        Control("POST", "page_size", row.paging);
        EXPECT_EQ(Pages(row.arguments), row.pages);
    }
}

TEST_F(Listing, RefusesWhatIsNoFolderOrCursor) {
    EXPECT_TRUE(
        Member(Json(Rpc("files/list_folder", R"({"path": "/nope"})")), "error_summary").starts_with("path/not_found/"));
    EXPECT_TRUE(Member(Json(Rpc("files/list_folder", R"({"path": "/b.txt"})")), "error_summary")
                    .starts_with("path/not_folder/"));
    EXPECT_EQ(Rpc("files/list_folder/continue", R"({"cursor": "nonsense"})").result_int(), 400u);
    std::string cursor = Member(Json(Rpc("files/list_folder", R"({"path": ""})")), "cursor");
    EXPECT_EQ(Rpc("files/list_folder/continue", R"({"cursor": ")" + cursor + R"(", "path": ""})").result_int(), 400u);
    cursor[10] = cursor[10] == 'x' ? 'y' : 'x';
    EXPECT_TRUE(Member(Next(cursor), "error_summary").starts_with("reset/"));
}

TEST_F(Listing, TellsChangesAfterTheLastPage) {
    const rapidjson::Document latest = Json(Rpc("files/list_folder/get_latest_cursor", R"({"path": ""})"));
    WriteFile("c.txt", "new");
    WriteFile("b.txt", "changed");
    std::filesystem::remove_all(m_folder / "first/Docs");
    const rapidjson::Document changes = Next(Member(latest, "cursor"));
    std::string told;
    for (const auto& entry : changes["entries"].GetArray())
        told += Member(entry, ".tag") + ":" + Member(entry, "name") + " ";
    EXPECT_EQ(told, "deleted:Docs file:b.txt file:c.txt ");
    EXPECT_EQ(Next(Member(changes, "cursor"))["entries"].Size(), 0u);
}

TEST_F(Listing, KeepsItsSnapshotWhileFilesGo) {
    Control("POST", "page_size", R"({"size": 1})");
    const rapidjson::Document first = Json(Rpc("files/list_folder", R"({"path": ""})"));
    std::filesystem::remove(m_folder / "first/b.txt");
    WriteFile("Aaa.txt", "would shift the pages");
    const rapidjson::Document second = Next(Member(first, "cursor"));
    EXPECT_EQ(Member(second["entries"][0], "name"), "b.txt");
}

} // namespace
