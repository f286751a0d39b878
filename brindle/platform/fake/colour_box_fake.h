// FakeColourBox: answers as a test says, and keeps what it was asked.
#pragma once

#include <optional>
#include <vector>

#include "brindle/platform/colour_box.h"

namespace brindle {

class FakeColourBox final : public ColourBox {
  public:
    struct Request {
        HWND owner;
        std::uint32_t colour;
        CustomColours custom;
    };

    bool ChooseColour(HWND owner, std::uint32_t& colour, CustomColours& custom) override {
        requests.push_back({owner, colour, custom});
        if (!choice) return false;
        colour = *choice & 0xFFFFFF;
        for (std::uint32_t& each : custom) each &= 0xFFFFFF;
        for (const auto& [index, value] : customChoice) custom.at(index) = value;
        return true;
    }

    std::vector<Request> requests;
    std::optional<std::uint32_t> choice;  // what the user confirms; nothing: the user cancels
    std::vector<std::pair<std::size_t, std::uint32_t>> customChoice;  // custom colours that the user changes
};

}  // namespace brindle
