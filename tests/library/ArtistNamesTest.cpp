#include "library/ArtistNames.h"

#include <gtest/gtest.h>

using namespace tessera;

TEST(ArtistNames, FilesTheAndFirstNames)
{
    const std::set<std::string> nobody;
    const std::set<std::string> names{"HARLAN", "THE", "J\xD6RG"};
    const struct {
        const char* name;
        bool moveThe;
        const std::set<std::string>& firstNames;
        const char* filed;
    } kCases[] = {
        {"The Lanterns", true, nobody, "Lanterns, The"},
        {"tHE lanterns", true, nobody, "lanterns, tHE"},
        {"The The", true, nobody, "The, The"},
        {"The", true, names, "The"},
        {"Theatre", true, nobody, "Theatre"},
        {"The Lanterns", false, nobody, "The Lanterns"},
        {"The Lanterns", false, names, "Lanterns, The"}, // as a first name
        {"Harlan Voss", true, names, "Voss, Harlan"},
        {"harlan van Voss", true, names, "van Voss, harlan"},
        {"Harlan Voss", true, nobody, "Harlan Voss"},
        {"Harlan", true, names, "Harlan"},
        {"Harlan's Band", true, names, "Harlan's Band"},
        {" Harlan Voss", true, names, " Harlan Voss"},
        {"The Harlan Voss", true, names, "Harlan Voss, The"}, // one move only
        {"", true, names, ""},
    };
    for (const auto& each : kCases)
        EXPECT_EQ(filedArtistName(each.name, each.moveThe, each.firstNames), each.filed) << each.name;
}
