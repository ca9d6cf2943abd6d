#include "ContentHash.h"

#include <gtest/gtest.h>

namespace {

struct Vector {
    std::string content;
    const char* hash;
};

/// Known hashes around the size of a block, however the data is split.
TEST(ContentHash, KnownAnswersInAnyPieces) {
    constexpr std::size_t block = DevService::ContentHash::block_size;
    const Vector vectors[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"A", "1cd6ef71e6e0ff46ad2609d403dc3fee244417089aa4461245a4e4fe23a55e42"},
        {"Hello Dropbox!", "16dff8700700b9aa627e24bbf832940c084b41ade5c5d6fe5417963a547ed9c2"},
        {std::string(block, 'A'), "d4d63bac5b866c71620185392a8a6218ac1092454a2d16f820363b69852befa3"},
        {std::string(block + 1, 'A'), "8f553da8d00d0bf509d8470e242888be33019c20c0544811f5b2b89e98360b92"},
        {std::string(2 * block, 'A'), "e08b3ba1f538804075c5f939accdeaa9efc7b5c01865c94a41e78ca6550a88e7"},
    };
    for (const Vector& vector : vectors) {
        for (const std::size_t piece_size : {std::size_t{65536}, block - 1, 3 * block}) {
            DevService::ContentHash hash;
            for (std::size_t offset = 0; offset < vector.content.size(); offset += piece_size)
                hash.Add(std::string_view(vector.content).substr(offset, piece_size));
            EXPECT_EQ(hash.Finish(), vector.hash) << vector.content.size() << " bytes in pieces of " << piece_size;
        }
    }
}

} // namespace
