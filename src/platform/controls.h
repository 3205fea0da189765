#pragma once

// Control records: what a window shows, as plain data. Rules change them, a toolkit mirrors them.
// Texts are Windows-1252;
// "&" in a caption marks the accelerator.

#include <cstdint>
#include <string>
#include <vector>

namespace kavorix {

// Red, green and blue as 0xRRGGBB. Automatic: whatever the toolkit's theme says.
enum class Colour : std::uint32_t {
    Black = 0x000000,
    Red = 0xFF0000,
    Yellow = 0xFFFF00,
    Blue = 0x0000FF,
    White = 0xFFFFFF,
    LightGrey = 0xE0E0E0,
    Silver = 0xC0C0C0,
    Automatic = 0xFF000000
};

struct Button {
    std::string caption;
    std::string tool_tip;
    bool enabled = true;
    bool visible = true;
    bool operator==(const Button&) const = default;
};

struct CheckBox {
    std::string caption;
    bool checked = false;
    bool enabled = true;
    bool visible = true;
    bool operator==(const CheckBox&) const = default;
};

struct OptionButton {
    std::string caption;
    bool selected = false;
    bool enabled = true;
    bool visible = true;
    bool operator==(const OptionButton&) const = default;
};

struct TextField {
    std::string text;
    bool enabled = true;
    bool visible = true;
    bool operator==(const TextField&) const = default;
};

struct ListEntry {
    std::string text;
    int code = 0;
    bool operator==(const ListEntry&) const = default;
};

// A list to choose one entry from; `index` -1 = none chosen.
struct ListBox {
    std::vector<ListEntry> entries;
    int index = -1;
    bool enabled = true;
    bool visible = true;

    // The code of the chosen entry, `otherwise` when none is chosen.
    int code(int otherwise = 0) const {
        return index >= 0 && index < static_cast<int>(entries.size())
                   ? entries[static_cast<std::size_t>(index)].code
                   : otherwise;
    }
    // Chooses the first entry with this code; false, the choice unchanged, when there is none.
    bool select_code(int code) {
        for (std::size_t i = 0; i < entries.size(); ++i)
            if (entries[i].code == code) {
                index = static_cast<int>(i);
                return true;
            }
        return false;
    }
    bool operator==(const ListBox&) const = default;
};

struct Label {
    std::string caption;
    Colour fore = Colour::Automatic;
    Colour back = Colour::Automatic;
    bool enabled = true;
    bool visible = true;
    bool operator==(const Label&) const = default;
};

// A frame with a caption around other controls.
struct Frame {
    std::string caption;
    bool enabled = true;
    bool visible = true;
    bool operator==(const Frame&) const = default;
};

struct MenuItem {
    std::string caption;
    bool enabled = true;
    bool checked = false;
    bool operator==(const MenuItem&) const = default;
};

struct GridCell {
    std::string text;
    bool error = false;  // stands out: the value is not valid
    bool operator==(const GridCell&) const = default;
};

// A table. Every row has as many cells as there are headings.
struct Grid {
    std::vector<std::string> headings;
    std::vector<std::vector<GridCell>> rows;
    bool operator==(const Grid&) const = default;
};

}  // namespace kavorix
