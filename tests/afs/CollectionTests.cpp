#include "AfsTest.h"

#include "afs/NamesCollection.h"
#include "afs/QorvString.h"

#include <atomic>
#include <latch>
#include <thread>

namespace {

using Qorv::ComPtr;
using Qorv::IAFS_Name;

class CollectionTest : public testing::Test {
protected:
    CollectionTest() { NamesCollection::Create(m_names); }

    ULONG Count() {
        ULONG count = 77;
        EXPECT_HRESULT(S_OK, m_names->get_Count(&count));
        return count;
    }
    ComPtr<IAFS_Name> Item(ULONG i_index) {
        ComPtr<IAFS_Name> name;
        EXPECT_HRESULT(S_OK, m_names->get_Item(i_index, &name));
        return name;
    }

    ComPtr<NamesCollection> m_names;
    const ComPtr<IAFS_Name> m_a = Qorv::Create<Tests::ForeignName>();
    const ComPtr<IAFS_Name> m_b = Qorv::Create<Tests::ForeignName>();
};

TEST_F(CollectionTest, KeepsOrderAndDuplicates) {
    EXPECT_EQ(0U, Count());
    for (const auto& name : {m_a, m_b, m_a})
        EXPECT_HRESULT(S_OK, m_names->Add(name));
    EXPECT_HRESULT(E_INVALIDARG, m_names->Add(nullptr));
    ComPtr<IAFS_Name> none = m_a;
    EXPECT_HRESULT(E_INVALIDARG, m_names->get_Item(3, &none));
    EXPECT_EQ(nullptr, none);
    EXPECT_HRESULT(E_POINTER, m_names->get_Item(0, nullptr));

    EXPECT_HRESULT(S_OK, m_names->Remove(m_a)); // The first of the two.
    EXPECT_EQ(2U, Count());
    EXPECT_EQ(m_b, Item(0));
    EXPECT_EQ(m_a, Item(1));
    EXPECT_HRESULT(S_OK, m_names->Remove(m_a));
    EXPECT_HRESULT(E_INVALIDARG, m_names->Remove(m_a));
    EXPECT_EQ(2U, m_a->AddRef()) << "the collection keeps no reference to what was removed";
    m_a->Release();
}

TEST_F(CollectionTest, IsWalkedInOrder) {
    m_names->Add(m_a);
    m_names->Add(m_b);
    ComPtr<Qorv::IAFS_EnumNames> walk;
    EXPECT_HRESULT(S_OK, m_names->get_Enum(&walk));
    m_names->Remove(m_a);
    ComPtr<IAFS_Name> name;
    EXPECT_HRESULT(S_OK, walk->Next(1, &name, nullptr));
    EXPECT_EQ(m_a, name);
    ComPtr<Qorv::IAFS_EnumNames> clone;
    EXPECT_HRESULT(S_OK, walk->Clone(&clone));
    ULONG fetched = 77;
    IAFS_Name* both[2] = {};
    EXPECT_HRESULT(S_FALSE, walk->Next(2, both, &fetched));
    EXPECT_EQ(1U, fetched);
    EXPECT_EQ(m_b.Get(), both[0]);
    EXPECT_EQ(nullptr, both[1]);
    both[0]->Release();
    EXPECT_HRESULT(S_OK, clone->Skip(1));
    EXPECT_HRESULT(S_FALSE, clone->Skip(1));
    EXPECT_HRESULT(S_OK, clone->Reset());
    EXPECT_HRESULT(S_OK, clone->Skip(2));
    EXPECT_HRESULT(E_POINTER, clone->Next(2, both, nullptr));
}

TEST_F(CollectionTest, TakesSeveralThreads) {
    constexpr int thread_count = 3;
    std::latch start(thread_count);
    std::vector<std::thread> threads;
    std::atomic<int> bad_answers = 0;
    for (int thread = 0; thread < thread_count; ++thread)
        threads.emplace_back([&, name = thread % 2 == 0 ? m_a : m_b] {
            start.arrive_and_wait(); // Otherwise the first is done before the second begins.
            for (int i = 0; i < 1000; ++i) {
                m_names->Add(name);
                ComPtr<Qorv::IAFS_EnumNames> walk;
                ComPtr<IAFS_Name> walked, item;
                ULONG count = 0;
                const bool is_good = m_names->get_Count(&count) == S_OK && count >= 1 && count <= thread_count &&
                                     m_names->get_Item(0, &item) == S_OK && (item == m_a || item == m_b) &&
                                     m_names->get_Enum(&walk) == S_OK && walk->Next(1, &walked, nullptr) == S_OK;
                if (!is_good || m_names->Remove(name) != S_OK)
                    ++bad_answers;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(0, bad_answers);
    EXPECT_EQ(0U, Count());
}

TEST(QorvString, Answers) {
    const auto text = Qorv::Create<Utility::QorvString>(std::wstring(L"a\0b", 3));
    Qorv::Bstr value;
    EXPECT_HRESULT(S_OK, text->get_Value(&value));
    EXPECT_EQ((std::wstring_view{L"a\0b", 3}), value.View());
    ULONG length = 0;
    EXPECT_HRESULT(S_OK, text->get_Length(&length));
    EXPECT_EQ(3U, length);
    VARIANT_BOOL is_empty = VARIANT_TRUE;
    EXPECT_HRESULT(S_OK, text->get_IsEmpty(&is_empty));
    EXPECT_EQ(VARIANT_FALSE, is_empty);
    EXPECT_HRESULT(S_OK, Qorv::Create<Utility::QorvString>(L"")->get_IsEmpty(&is_empty));
    EXPECT_EQ(VARIANT_TRUE, is_empty);
    EXPECT_HRESULT(E_POINTER, text->get_Value(nullptr));
}

} // namespace
