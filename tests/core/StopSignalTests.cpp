#include "core/host/Cancellation.h"
#include "core/host/StopSignal.h"

#include <gtest/gtest.h>

namespace {

struct Counted final : Stoppable {
    void Stop() noexcept override { ++stops; }
    int stops = 0;
};

TEST(StopSignalTest, StopsWhatRunsAndWhatStartsLater) {
    StopSignal signal;
    Counted ended;
    Counted running;
    Counted late;
    signal.Add(ended);
    signal.Remove(ended);
    signal.Add(running);
    EXPECT_FALSE(signal.IsStopped());
    signal.Stop();
    signal.Stop();
    signal.Add(late);
    EXPECT_TRUE(signal.IsStopped());
    EXPECT_EQ(ended.stops, 0);
    EXPECT_EQ(running.stops, 1);
    EXPECT_EQ(late.stops, 1);
}

TEST(StopSignalTest, BelongsToTheInnermostScope) {
    const auto outer = std::make_shared<StopSignal>();
    const auto inner = std::make_shared<StopSignal>();
    {
        const StopScope outer_scope(outer);
        {
            const StopScope inner_scope(inner);
            EXPECT_EQ(StopSignal::OfThread(), inner);
        }
        EXPECT_EQ(StopSignal::OfThread(), outer);
    }
    EXPECT_EQ(StopSignal::OfThread(), nullptr);
}

/// A host's flag with any answer.
class OddFlag final : public Qorv::CoClass<OddFlag, Qorv::IQorv_CancelFlag> {
public:
    OddFlag(VARIANT_BOOL i_value, HRESULT i_result) : m_value(i_value), m_result(i_result) {}
    HRESULT STDMETHODCALLTYPE get_IsCanceled(VARIANT_BOOL* o_is_canceled) noexcept override {
        *o_is_canceled = m_value;
        return m_result;
    }

private:
    const VARIANT_BOOL m_value;
    const HRESULT m_result;
};

TEST(CancellationTest, TakesEveryTrueAndNoFailure) {
    EXPECT_FALSE(IsCanceled(nullptr));
    EXPECT_FALSE(IsCanceled(Qorv::Create<OddFlag>(VARIANT_FALSE, S_OK)));
    EXPECT_FALSE(IsCanceled(Qorv::Create<OddFlag>(VARIANT_TRUE, E_FAIL)));
    EXPECT_TRUE(IsCanceled(Qorv::Create<OddFlag>(VARIANT_TRUE, S_OK)));
    EXPECT_TRUE(IsCanceled(Qorv::Create<OddFlag>(VARIANT_BOOL{1}, S_OK))) << "many a caller's TRUE";
}

} // namespace
