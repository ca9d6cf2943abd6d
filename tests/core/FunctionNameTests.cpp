// The names of functions in the log, derived from what the compiler provides.

#include "core/trace/Trace.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

/// The name of the enclosing function.
#define OWN_NAME() FunctionName(FUNCTION_SIGNATURE).Text()

namespace Sample {

std::wstring g_last_name; // Set by functions that cannot return it.

std::wstring Free(int, const std::vector<std::pair<int, int>>&) {
    return OWN_NAME();
}

static std::wstring StaticFree() noexcept {
    return OWN_NAME();
}

template <typename T>
std::wstring Template(const T&) {
    return OWN_NAME();
}

std::map<int, std::vector<std::wstring>> LongResult(void (*)(int)) {
    return {{0, {OWN_NAME()}}};
}

std::wstring Lambda() {
    const auto lambda = [](int) { return OWN_NAME(); };
    return [&] { return lambda(1); }();
}

namespace {

std::wstring Hidden() {
    return OWN_NAME();
}

struct HiddenClass {
    std::wstring Method() const { return OWN_NAME(); }
};

} // namespace

namespace Nested {

class Panel {
public:
    Panel() { g_last_name = OWN_NAME(); }
    ~Panel() { g_last_name = OWN_NAME(); }
    std::wstring Method() { return OWN_NAME(); }
    const std::wstring* ConstMethod(int) const noexcept {
        g_last_name = OWN_NAME();
        return &g_last_name;
    }
    static std::wstring Static() { return OWN_NAME(); }
    std::wstring STDMETHODCALLTYPE ComMethod() { return OWN_NAME(); }
    template <typename T>
    std::wstring TemplateMethod(T) {
        return OWN_NAME();
    }
    std::wstring operator[](const wchar_t*) const { return OWN_NAME(); }
    std::wstring operator()(int) const { return OWN_NAME(); }
    std::wstring operator<(int) const { return OWN_NAME(); }
    const Panel* operator->() const {
        g_last_name = OWN_NAME();
        return this;
    }
    explicit operator bool() const {
        g_last_name = OWN_NAME();
        return true;
    }
};

template <typename T>
struct Box {
    std::wstring Put(T) { return OWN_NAME(); }
};

} // namespace Nested

} // namespace Sample

namespace {

using Sample::g_last_name;
using Sample::Nested::Panel;

TEST(FunctionNameTest, IsTheQualifiedName) {
    EXPECT_EQ(Sample::Free(1, {}), L"Sample::Free");
    EXPECT_EQ(Sample::StaticFree(), L"Sample::StaticFree");
    EXPECT_EQ(Sample::Template(std::vector<int>{}), L"Sample::Template");
    EXPECT_EQ(Sample::LongResult(nullptr)[0][0], L"Sample::LongResult");
    EXPECT_EQ(Sample::Lambda(), L"Sample::Lambda") << "the function that it stands in";
    EXPECT_EQ(Sample::Hidden(), L"Sample::`anonymous-namespace'::Hidden");
    EXPECT_EQ(Sample::HiddenClass().Method(), L"Sample::`anonymous-namespace'::HiddenClass::Method");

    {
        Panel panel;
        EXPECT_EQ(g_last_name, L"Sample::Nested::Panel::Panel");
        EXPECT_EQ(panel.Method(), L"Sample::Nested::Panel::Method");
        EXPECT_EQ(*panel.ConstMethod(1), L"Sample::Nested::Panel::ConstMethod");
        EXPECT_EQ(Panel::Static(), L"Sample::Nested::Panel::Static");
        EXPECT_EQ(panel.ComMethod(), L"Sample::Nested::Panel::ComMethod");
        EXPECT_EQ(panel.TemplateMethod(std::pair<int, char>{}), L"Sample::Nested::Panel::TemplateMethod");
        EXPECT_EQ(panel[L"x"], L"Sample::Nested::Panel::operator[]");
        EXPECT_EQ(panel(1), L"Sample::Nested::Panel::operator()");
        EXPECT_EQ(panel < 1, L"Sample::Nested::Panel::operator<");
        panel.operator->();
        EXPECT_EQ(g_last_name, L"Sample::Nested::Panel::operator->");
        EXPECT_TRUE(static_cast<bool>(panel));
        EXPECT_EQ(g_last_name, L"Sample::Nested::Panel::operator bool");
    }
    EXPECT_EQ(g_last_name, L"Sample::Nested::Panel::~Panel");
    EXPECT_EQ(Sample::Nested::Box<int>().Put(1), L"Sample::Nested::Box<T>::Put");
}

} // namespace
