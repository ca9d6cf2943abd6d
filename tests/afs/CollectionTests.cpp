#include "AfsTest.h"

#include "afs/NamesCollection.h"
#include "afs/QorvString.h"

#include <chrono>
#include <functional>
#include <future>
#include <utility>

namespace {

using Qorv::ComPtr;
using Qorv::IAFS_Name;

/// Runs an action when the next reference to it is taken.
class WatchingName final : public Qorv::CoClass<WatchingName, IAFS_Name> {
public:
    HRESULT STDMETHODCALLTYPE get_FileSys(Qorv::IAFS_FileSys**) noexcept override { return E_NOTIMPL; }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override {
        if (const auto call = std::exchange(on_copied, nullptr))
            call();
        return CoClass::AddRef();
    }

    std::function<void()> on_copied;
};

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

// While one call holds the list, no other call proceeds. The name being copied notices that the list is held.
TEST_F(CollectionTest, LocksItsListInEveryCall) {
    using Call = std::function<void(NamesCollection&)>;
    const auto watcher = Qorv::Create<WatchingName>();
    const Call add = [&](NamesCollection& io_names) { io_names.Add(m_a); };
    const Call count = [](NamesCollection& io_names) {
        ULONG number = 0;
        io_names.get_Count(&number);
    };
    const Call remove = [&](NamesCollection& io_names) { io_names.Remove(m_a); };
    const Call item = [](NamesCollection& io_names) {
        ComPtr<IAFS_Name> name;
        io_names.get_Item(0, &name);
    };
    const Call walk = [](NamesCollection& io_names) {
        ComPtr<Qorv::IAFS_EnumNames> names;
        io_names.get_Enum(&names);
    };
    const Call add_watcher = [&](NamesCollection& io_names) { io_names.Add(watcher); };
    const struct {
        const char* what;
        Call holding, waiting;
    } rows[] = {
        {"add, add", add_watcher, add},   {"add, count", add_watcher, count}, {"add, remove", add_watcher, remove},
        {"add, item", add_watcher, item}, {"add, walk", add_watcher, walk},   {"item, count", item, count},
        {"walk, count", walk, count},
    };
    for (const auto& row : rows) {
        NamesCollection::Create(m_names);
        m_names->Add(watcher);
        std::future<void> other;
        bool is_let_in = true;
        watcher->on_copied = [&] {
            other = std::async(std::launch::async, row.waiting, std::ref(*m_names.Get()));
            is_let_in = other.wait_for(std::chrono::milliseconds(50)) == std::future_status::ready;
        };
        row.holding(*m_names.Get());
        EXPECT_FALSE(is_let_in) << row.what;
        other.get();
    }
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
