#include "library/RecordMap.h"

#include <gtest/gtest.h>
#include <string>

namespace tessera::test {
namespace {

std::string listed(const RecordMap<std::string>& map)
{
    std::string all;
    for (const auto& [id, text] : map)
        all += std::to_string(id) + text + " ";
    return all;
}

TEST(RecordMap, WalksInIdOrderHoweverRecordsCome)
{
    RecordMap<std::string> map;
    for (const std::int32_t id : {5, 9, 2, 7, INT32_MIN, INT32_MAX, 6}) {
        const auto [at, isNew] = map.emplace(id, "a");
        EXPECT_TRUE(isNew);
        EXPECT_EQ(at->first, id);
    }
    EXPECT_EQ(listed(map), "-2147483648a 2a 5a 6a 7a 9a 2147483647a ");
    for (const std::int32_t id : {2, 6, INT32_MAX}) {
        const auto [at, isNew] = map.emplace(id, "b");
        EXPECT_FALSE(isNew);
        EXPECT_EQ(at->second, "a") << "what is there stays";
    }
    map[6].assign(1, 'c');
    EXPECT_EQ(map[8], "");
    EXPECT_EQ(listed(map), "-2147483648a 2a 5a 6c 7a 8 9a 2147483647a ");
}

TEST(RecordMap, FindsAndErases)
{
    RecordMap<std::string> map;
    EXPECT_EQ(map.find(1), map.end());
    EXPECT_EQ(map.erase(1), 0U);
    for (const std::int32_t id : {2, 4, 6, 8})
        map.emplace(id, std::to_string(id));
    for (const std::int32_t absent : {1, 3, 9}) {
        EXPECT_FALSE(map.contains(absent));
        EXPECT_THROW(map.at(absent), std::out_of_range);
        EXPECT_EQ(map.erase(absent), 0U);
    }
    EXPECT_EQ(map.at(8), "8");
    EXPECT_EQ(map.erase(4), 1U);
    EXPECT_EQ(map.erase(4), 0U);
    EXPECT_EQ(map.eraseIf([](const std::string& text) { return text != "6"; }), 2U);
    EXPECT_EQ(listed(map), "66 ");
    EXPECT_EQ(map.begin()->second, "6");
    map.clear();
    EXPECT_TRUE(map.empty());
}

} // namespace
} // namespace tessera::test
