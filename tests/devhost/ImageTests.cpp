// Images: the host's own, and the size in which one is drawn.

#include "base/Failure.h"
#include "services/HostImages.h"
#include "support/LiveObjectsTest.h"

namespace Tests {
namespace {

using DevHost::Bitmap;
using Qorv::ComPtr;

class ImageTest : public LiveObjectsTest {
protected:
    ImageTest() { OleInitialize(nullptr); }
    ~ImageTest() override { OleUninitialize(); }

    /// Squares of the given sides, each of one colour: its side.
    static ComPtr<DevHost::Image> Squares(std::initializer_list<ULONG> i_sides) {
        const auto image = Qorv::Create<DevHost::Image>();
        for (const ULONG side : i_sides)
            image->AddBitmap(
                Qorv::Create<Bitmap>(side, side, std::vector<std::uint32_t>(std::size_t{side} * side, side)));
        return image;
    }
};

TEST_F(ImageTest, HostHasItsImagesInAllSizes) {
    DevHost::HostImages images;
    for (const wchar_t* name : {L"ico.folder", L"ico.folder.opened", L"ico.file", L"ico.up", L"ico.folder.new",
                                L"ico.delete", L"ico.refresh"}) {
        const auto image = images.Get(name);
        constexpr ULONG sides[] = {16, 24, 32, 48};
        for (ULONG index = 0; index < std::size(sides); ++index) {
            ULONG width = 0;
            ComPtr<Qorv::IUIX_Bitmap> bitmap;
            ASSERT_EQ(image->get_Bitmap(index, &bitmap), S_OK);
            bitmap->get_Width(&width);
            EXPECT_EQ(width, sides[index]);
        }
        EXPECT_EQ(image, images.Get(name)) << "lists know an image by its object";
    }
    EXPECT_THROW(images.Get(L"ico"), DevHost::Failure);
}

TEST_F(ImageTest, DrawsFromTheNextLargerBitmap) {
    const auto image = Squares({32, 16, 48});
    const struct {
        ULONG side;
        std::uint32_t from;
    } cases[] = {{8, 16}, {16, 16}, {17, 32}, {24, 32}, {32, 32}, {40, 48}, {100, 48}};
    for (const auto& row : cases) {
        const auto square = DevHost::SquareOf(image, row.side);
        EXPECT_EQ(square->Width(), row.side);
        EXPECT_EQ(square->Height(), row.side);
        EXPECT_EQ(square->Pixels(), std::vector<std::uint32_t>(std::size_t{row.side} * row.side, row.from)) << row.side;
    }
    EXPECT_EQ(DevHost::SquareOf(Squares({}), 16), nullptr);
}

TEST_F(ImageTest, ScalesByTheMeanOfWhatAPixelCovers) {
    // Two columns: opaque white, and transparent.
    const auto bitmap = Qorv::Create<Bitmap>(2u, 1u, std::vector<std::uint32_t>{0xffffffff, 0});
    EXPECT_EQ(bitmap->Scaled(2, 1)->Pixels(), bitmap->Pixels());
    EXPECT_EQ(bitmap->Scaled(1, 1)->Pixels(), (std::vector<std::uint32_t>{0x80808080}));
    EXPECT_EQ(bitmap->Scaled(3, 1)->Pixels(), (std::vector<std::uint32_t>{0xffffffff, 0x80808080, 0}));
    EXPECT_EQ(bitmap->Scaled(2, 2)->Pixels(), (std::vector<std::uint32_t>{0xffffffff, 0, 0xffffffff, 0}));
}

} // namespace
} // namespace Tests
