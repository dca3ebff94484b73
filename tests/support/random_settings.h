#pragma once
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

#include "settings/app_settings.h"

namespace kestrane {

/// Random settings, anything that the program can hold. Texts consist of characters from `alphabet`.
class RandomSettings {
  public:
    RandomSettings(unsigned seed, std::wstring_view alphabet) : random_(seed), alphabet_(alphabet) {}

    AppSettings Next() {
        AppSettings settings = MakeDefaultSettings();
        for (ColorValue& color : settings.colors)
            color = Flag() ? ColorNone : random_() & 0xFFFFFF;
        settings.thresholds = {Within(1, 33), Within(34, 66), Within(67, 100)};
        for (bool& show : settings.show)
            show = Flag();
        settings.show[random_() % settings.show.size()] = true;
        for (std::uint32_t& ms : settings.refresh_ms)
            ms = RefreshChoices[random_() % RefreshChoices.size()].ms;
        settings.font_name = Text(1, 31);
        settings.font_size = Within(6, 32);
        settings.font_bold = Flag();
        settings.bar = Flag();
        settings.check_updates = Flag();
        settings.language = static_cast<std::uint32_t>(random_() % 3);
        if (Flag()) settings.install_id = "0f8fad5b-d9cb-469f-a165-70867728950e";
        for (auto count = random_() % 15; count > 0; --count) {
            settings.interfaces.push_back((std::uint64_t{random_()} << 32 | random_()) + 1);
            settings.interface_aliases.push_back(Text(0, 16));
        }
        for (const GraphKind kind : GraphKinds)
            FillGraph(GraphSettingsOf(settings, kind));
        settings.per_core = Flag();
        settings.activity = Flag();
        for (std::int32_t disk = 63; disk >= 0; --disk) {
            if (random_() % 8 == 0) settings.disks.push_back(disk);
        }
        return settings;
    }

  private:
    bool Flag() { return random_() % 2 == 1; }
    std::int32_t Within(std::int32_t low, std::int32_t high) {
        return std::uniform_int_distribution<std::int32_t>(low, high)(random_);
    }
    std::wstring Text(std::int32_t shortest, std::int32_t longest) {
        std::wstring text;
        for (auto length = Within(shortest, longest); length > 0; --length)
            text += alphabet_[random_() % alphabet_.size()];
        return text;
    }
    void FillGraph(GraphSettings& graph) {
        graph.graph = Flag();
        graph.pinned = Flag();
        graph.x = static_cast<std::int32_t>(random_());
        graph.y = static_cast<std::int32_t>(random_());
        graph.width = Within(100, 10000);
        graph.height = Within(50, 10000);
        graph.opacity = OpacityChoices[random_() % OpacityChoices.size()];
        graph.margin = Within(0, 20);
        graph.font_name = Text(1, 31);
        graph.font_size = Within(6, 32);
        graph.font_bold = Flag();
        graph.style = Within(0, 1);
        graph.smoothing = Within(0, 3);
        graph.fill = FillChoices[random_() % FillChoices.size()];
        graph.topmost = Flag();
    }

    std::mt19937 random_;
    std::wstring_view alphabet_;
};

}  // namespace kestrane
