// How many requests the dialogs take; tests/afs/RequestCountTests.cpp has the other tasks.

#include "ShippedDialogTest.h"

#include <gtest/gtest.h>

namespace Tests {
namespace {

using DialogRequestTest = ShippedDialogTest;

std::vector<std::string> Calls() {
    std::vector<std::string> calls;
    for (const Service::Request& request : Service::Requests()) {
        const std::size_t begin = request.line.find("/2/") + 3; // "POST /2/files/download HTTP/1.1"
        calls.push_back(request.line.substr(begin, request.line.find(' ', begin) - begin));
    }
    Service::ClearRequests();
    return calls;
}

TEST_F(DialogRequestTest, OneListingForEachStep) {
    using List = std::vector<std::string>;
    const List opening = {"users/get_current_account", "users/get_current_account", "files/list_folder"};
    Then([&] { EXPECT_EQ(Calls(), opening) << "the host makes the account and binds it"; },
         "open Documents \n text a.pdf");
    Then([] { EXPECT_EQ(Calls(), (List{"files/list_folder"})) << "into a folder"; }, "key Alt+Up \n text start.pdf");
    Then([] { EXPECT_EQ(Calls(), (List{"files/list_folder"})) << "and back"; }, "row start.pdf \n press btn.ok");
    Service::ClearRequests();
    EXPECT_EQ(Open({}, "text start.pdf"), L"/start.pdf");
    EXPECT_EQ(Calls(), List{}) << "choosing what the list shows";
}

} // namespace
} // namespace Tests
