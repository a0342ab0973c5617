#include "replay/ScreenPicture.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "replay/ScenarioParser.h"
#include "replay/ScenarioPlayer.h"

namespace velmora {
namespace {

constexpr const char* aStroke = R"(
host Editor {
    menu bar {
        menu "Editor" {
            item "Quit"
        }
    }
    window "Untitled" at 0 0 size 800 600
}
preferences {
    slot 0 right
}
launch Editor
move to 400 300
move to 500 300
press right
stroke r
wait 5 ms
release right
wait 45 ms
wait 100 ms
move to 10 10
wait 5 ms
)";

TEST(ScreenPictureTest, ThereIsOneOfEachChangeOfWhatTheSystemShows) {
    const auto parsed = parseScenario(aStroke);
    ASSERT_TRUE(std::holds_alternative<Scenario>(parsed));
    ScenarioPlayer player(std::string(VELMORA_SOURCE_DIR) + "/resources");
    ScreenPicture screen;
    std::map<int, Bitmap> pictures;
    player.setWatcher([&](HeadlessDesktop& desktop, int line) {
        if (auto picture = screen.takeIfNew(desktop)) pictures[line] = std::move(*picture);
    });
    player.play(std::get<Scenario>(parsed));

    std::vector<int> lines;
    for (const auto& [line, picture] : pictures) lines.push_back(line);
    // The cursor; the trace with it; the trace alone, then fading, then gone.
    EXPECT_EQ(lines, (std::vector<int>{17, 18, 20, 21, 22}));

    const auto redness = [&](int line, int x, int y) {
        const Bitmap& picture = pictures.at(line);
        const auto* at = &picture.pixels[static_cast<std::size_t>((y * picture.width + x) * 4)];
        return at[0] - at[1];
    };
    // The stroke went 60 to the right at 300 above the bottom of 800; its edge is red.
    EXPECT_EQ(redness(17, 530, 498), 0);
    EXPECT_GT(redness(18, 530, 498), 60);
    EXPECT_GT(redness(20, 530, 498), redness(21, 530, 498));
    EXPECT_GT(redness(21, 530, 498), 20);
    EXPECT_EQ(redness(22, 530, 498), 0);
}

}  // namespace
}  // namespace velmora
