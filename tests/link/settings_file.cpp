#include <gtest/gtest.h>

#include "link/discovery.h"
#include "support/rig.h"

namespace kavorix {
namespace {

using test::Rig;

struct KeyRow {
    const char* what;
    std::string content;
    const char* section;
    const char* key;
    std::string value;
};

TEST(SettingsFile, ReadsTheKeysOfItsSections) {
    const std::string plain = "[Exclude Addresses]\r\nAddress=C800,D000\r\n";
    const KeyRow rows[] = {
        {"plain", plain, "Exclude Addresses", "Address", "C800,D000"},
        {"case of the names", plain, "EXCLUDE addresses", "aDDRESS", "C800,D000"},
        {"case in the file", "[exclude ADDRESSES]\nADDRESS=C800", "Exclude Addresses", "Address",
         "C800"},
        {"line feeds alone", "[A]\nx=1\ny=2\n", "A", "y", "2"},
        {"blanks around", "  [A]  \n  x  =  1 2  \n", "A", "x", "1 2"},
        {"a remark behind the bracket", "[A] ; the first\nx=1\n", "A", "x", "1"},
        {"blanks inside the brackets", "[ A ]\nx=1\n", "A", "x", "1"},
        {"remarks", "[A]\n;x=1\nx=2\n", "A", "x", "2"},
        {"another section before", "[B]\nx=1\n[A]\nx=2\n", "A", "x", "2"},
        {"another section behind", "[A]\ny=1\n[B]\nx=2\n", "A", "x", ""},
        {"the first of two", "[A]\nx=1\nx=2\n", "A", "x", "1"},
        {"no section", "x=1\n", "A", "x", ""},
        {"no such key", plain, "Exclude Addresses", "Adress", ""},
        {"no equals sign", "[A]\nx\n", "A", "x", ""},
        {"an equals sign in the value", "[A]\nx=1=2\n", "A", "x", "1=2"},
        {"empty value", "[A]\nx=\n", "A", "x", ""},
        {"quotes", "[A]\nx=\" 1 \"\n", "A", "x", "1"},
        {"one quote", "[A]\nx=\"1\n", "A", "x", "\"1"},
        {"a lone quote", "[A]\nx='\n", "A", "x", "'"},
        {"unclosed bracket", "[A\nx=1\n", "A", "x", ""},
        {"nothing but a bracket", "[\nx=1\n", "", "x", ""},
        {"a section without a name", "[]\nx=1\n", "", "x", "1"},
        {"empty file", "", "A", "x", ""},
        {"a NUL in the value", std::string("[A]\nx=1\0002\n", 10), "A", "x", "1"},
        {"the longest value", "[A]\nx=" + std::string(300, '7'), "A", "x", std::string(254, '7')},
        {"the first key name, without a key", "[A]\nfirst=1\nsecond=2\n", "A", "", "first"},
        {"no key names", "[A]\n[B]\nx=1\n", "A", "", ""},
    };
    for (const KeyRow& row : rows) {
        SCOPED_TRACE(row.what);
        test::MemoryFiles files;
        files.put("/s/K.INI", row.content);
        EXPECT_EQ(GetINIData(files, "/s/K.INI", row.section, row.key), row.value);
    }
}

TEST(SettingsFile, AFileThatCannotBeReadIsEmpty) {
    test::MemoryFiles files;
    EXPECT_EQ(GetINIData(files, "/s/K.INI", "A", "x"), "");
    files.put("/s/K.INI", "[A]\nx=1\n");
    files.refuse("/s/K.INI");
    EXPECT_EQ(GetINIData(files, "/s/K.INI", "A", "x"), "");
}

struct ListRow {
    std::string value;
    std::optional<std::vector<int>> addresses;  // as unsigned 16-bit values; nothing: malformed
};

TEST(ExcludeAddresses, ItemsAreFourCharactersLong) {
    const ListRow rows[] = {
        {"", std::vector<int>{}},
        {"C800", {{0xC800}}},
        {"c8fF", {{0xC8FF}}},
        {"C800,D000", {{0xC800, 0xD000}}},
        {"D000,C800,D000", {{0xD000, 0xC800, 0xD000}}},
        {"C800,", {{0xC800}}},
        {"C800,,", {{0xC800}}},
        {"C800,D", {{0xC800}}},  // an item of the last character alone is not taken
        {"C", std::vector<int>{}},
        {",", std::vector<int>{}},
        {"C80,D000", std::nullopt},
        {"C800,D00", std::nullopt},
        {"C800,D0000", std::nullopt},
        {"C800, D000", std::nullopt},
        {",C800", std::nullopt},
        {"C800,,D000", std::nullopt},
        {"C8", std::nullopt},
        {"C800D000", std::nullopt},
        {"WXYZ,D000", {{0xD000}}},
        {"-C80,D000", {{0xD000}}},
        {"0x12,D000", {{0xD000}}},
        {"C 00,D000", {{0xD000}}},
        {"0000,FFFF", {{0x0000, 0xFFFF}}},
    };
    for (const ListRow& row : rows) {
        SCOPED_TRACE(row.value);
        const auto parsed = parse_exclude_addresses(row.value);
        ASSERT_EQ(parsed.has_value(), row.addresses.has_value());
        if (!parsed) continue;
        std::vector<int> addresses;
        for (const std::int16_t address : *parsed)
            addresses.push_back(static_cast<std::uint16_t>(address));
        EXPECT_EQ(addresses, *row.addresses);
    }
}

const test::ShownBox Malformed{"Error reading 'KAVORIX.INI' file. *** Exiting *** ", 48, "KAVORIX"};

TEST(ExcludeAddresses, AMalformedSettingsFileEndsTheProgramBeforeAnythingElse) {
    for (const char* value : {"C80,D000", "C800,D00", "C800D000"}) {
        Rig rig;
        rig.driver.cards[test::C800] = 0;
        rig.files.put("/station/KAVORIX.INI",
                      std::string("[Exclude Addresses]\r\nAddress=") + value + "\r\n");
        try {
            rig.discovery.Form_Load(rig.files, "/station/KAVORIX.INI");
            ADD_FAILURE() << "the program goes on after " << value;
        } catch (const ProgramEnded& ended) {
            EXPECT_EQ(ended.exit_code, 1);
        }
        EXPECT_EQ(rig.dialogs.boxes, (std::vector<test::ShownBox>{Malformed})) << value;
        EXPECT_EQ(rig.driver.recorded(), test::Lines{});
        EXPECT_FALSE(rig.files.has("/station/ERR_LOG.TXT"));
    }
}

}  // namespace
}  // namespace kavorix
