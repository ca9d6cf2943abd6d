// Requests that hang, and the signal that ends them.

#include "http/HttpTest.h"

#include "core/host/StopSignal.h"
#include "qorv/Base.h"
#include "support/Content.h"

#include <functional>
#include <thread>

using namespace Tests;

namespace {

class StopTest : public HttpTest {
protected:
    static void AddFault(const std::string& i_members) { Service::AddFault(R"({"path": "2/", )" + i_members + "}"); }

    /// Runs a call that hangs on its own thread, stops it after a while, and returns how it ended.
    static Outcome Stopped(const std::function<void()>& i_operation, DWORD i_delay = 300) {
        const auto signal = std::make_shared<StopSignal>();
        Outcome outcome;
        std::thread worker([&] {
            const StopScope scope(signal);
            outcome = OutcomeOf(i_operation);
        });
        Sleep(i_delay);
        const ULONGLONG stopped_at = GetTickCount64();
        signal->Stop();
        EXPECT_LT(GetTickCount64() - stopped_at, 1000u) << "a stop does not wait";
        worker.join();
        EXPECT_LT(GetTickCount64() - stopped_at, 2000u);
        return outcome;
    }
};

TEST_F(StopTest, EndsWhateverHangs) {
    auto content = Open(L"" DROPBOX_CONTENT_HOST);
    content.SetAuthorizationHeader(Service::AuthorizationHeader());
    struct {
        const char* name;
        const char* fault;
        std::function<void()> operation;
    } const rows[] = {
        {"no reply", R"("delay_ms": 20000, "status": 200)", [&] { Send("{}"); }},
        {"no reply on a used connection", R"("delay_ms": 20000, "status": 200)", [&] { Send("{}"); }},
        {"a body half read", R"("status": 200, "body": "0123456789", "piece": 5, "slow_body_ms": 20000)",
         [&] {
             auto response = Send();
             ReadAll(response);
         }},
        {"a failed reply half read", R"("status": 500, "body": "0123456789", "piece": 5, "slow_body_ms": 20000)",
         [&] { Send(); }},
        {"an upload without a reply", R"("delay_ms": 20000, "status": 200)",
         [&] {
             auto request = content.CreateRequest(L"Dropbox-API-Arg: {}\n", 1);
             request.Write("x", 1);
             request.Send();
         }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        AddFault(row.fault);
        const Outcome outcome = Stopped(row.operation);
        EXPECT_EQ(outcome.type, "HResultException");
        EXPECT_HRESULT(Qorv::ErrorCanceled, outcome.code);
        Service::ClearFaults();
        AddFault(R"("status": 200, "body": "still here")");
        auto response = Send();
        EXPECT_EQ(ReadAll(response), "still here") << "the session goes on for others";
        Service::ClearFaults();
    }
}

TEST_F(StopTest, BeginsNothingMore) {
    const auto signal = std::make_shared<StopSignal>();
    signal->Stop();
    {
        const StopScope scope(signal);
        EXPECT_HRESULT(Qorv::ErrorCanceled, OutcomeOf([&] { Send(); }).code);
        EXPECT_HRESULT(Qorv::ErrorCanceled, OutcomeOf([&] { m_session.CreateRequest(L"", 1); }).code);
        const StopScope inner(std::make_shared<StopSignal>());
        AddFault(R"("status": 200)");
        EXPECT_EQ(OutcomeOf([&] { Send(); }).type, "") << "an operation of its own";
    }
    EXPECT_EQ(Service::Requests().size(), 1u);
    AddFault(R"("status": 200)");
    EXPECT_EQ(OutcomeOf([&] { Send(); }).type, "") << "the scope is over";
}

TEST_F(StopTest, LeavesOtherOperationsAlone) {
    AddFault(R"("status": 200, "times": 2, "body": "0123456789", "piece": 5, "slow_body_ms": 800)");
    std::string body;
    std::thread other([&] {
        auto session = Open(L"" DROPBOX_API_HOST);
        auto response = Send(session);
        body = ReadAll(response);
    });
    EXPECT_HRESULT(Qorv::ErrorCanceled, Stopped([&] {
                                            auto response = Send();
                                            ReadAll(response);
                                        }).code);
    other.join();
    EXPECT_EQ(body, "0123456789");
}

TEST_F(StopTest, LeavesARequestAloneThatHasEnded) {
    const auto signal = std::make_shared<StopSignal>();
    {
        const StopScope scope(signal);
        AddFault(R"("status": 200, "body": "whole")");
        auto response = Send();
        EXPECT_EQ(ReadAll(response), "whole");
    }
    signal->Stop();
    EXPECT_FALSE(m_log.Has("Closing::Stop")) << "it is gone";
}

} // namespace
