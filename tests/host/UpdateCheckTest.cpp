#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "host/Velmora.h"
#include "platform/appkit/panels/NSPanel.h"
#include "platform/headless/HeadlessPanel.h"
#include "platform/port/FileSystem.h"
#include "support/ForwardingDesktop.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

/// Answers each fetch with the text, or with a failure.
class Web final : public ForwardingDesktop {
public:
    using ForwardingDesktop::ForwardingDesktop;

    std::optional<std::string> answer;
    std::vector<std::string> asked;

    std::optional<std::string> fetch(const std::string& address,
                                     std::size_t /*mostBytes*/) override {
        asked.push_back(address);
        return answer;
    }
};

TEST(UpdateCheckTest, ANewerVersionsPageIsOpenedAndAllElseIsAnAlert) {
    constexpr const char* current = "Your Velmora version is up to date!";
    constexpr const char* unreachable = "Can not connect to Velmora site!";
    struct Row {
        std::optional<std::string> answer;
        std::string said;
        bool opens;
    };
    const std::vector<Row> rows{
        {"{ VersionMajor = 1; VersionMinor = 5; UpdateURL = \"http://new/\"; }", "", true},
        {"{ VersionMajor = 2; VersionMinor = 0; UpdateURL = \"http://new/\"; }", "", true},
        {"{ VersionMajor = 2; UpdateURL = \"http://new/\"; }", "", true},
        {"{ VersionMajor = 2; }", "", false},
        {"{ VersionMajor = 2; UpdateURL = \"file:///bin/sh\"; }", "", false},
        {"{ VersionMajor = 1; VersionMinor = 4; UpdateURL = \"http://new/\"; }", current, false},
        {"{ VersionMajor = 0; VersionMinor = 9; UpdateURL = \"http://new/\"; }", current, false},
        {"{ VersionMinor = 9; UpdateURL = \"http://new/\"; }", current, false},
        {"<plist><dict><key>VersionMajor</key><integer>1</integer>"
         "<key>VersionMinor</key><integer>5</integer>"
         "<key>UpdateURL</key><string>http://new/</string></dict></plist>",
         "", true},
        {"{ }", current, false},
        {"( 1, 5 )", unreachable, false},
        {"<html>", unreachable, false},
        {std::nullopt, unreachable, false},
    };
    HeadlessHost host("Editor");
    host.menu({submenu("Editor", {item("Quit")})});
    host.launch();
    Web web(host.desktop());
    for (const Row& row : rows) {
        web.answer = row.answer;
        const std::size_t opened = host.opened().size();
        std::string said;
        host.then([&] {
            const HeadlessPanel* panel = host.desktop().frontPanel();
            if (!panel) return;
            for (const auto& cell : host.desktop().frontPanel()->panel().rows().front()) {
                if (const auto* label = std::get_if<NSPanel::Label>(&cell)) said = label->text;
            }
        });
        host.type("return");
        Velmora::sharedInstance()->checkVersion(nullptr);
        host.run();
        const std::string sent = row.answer.value_or("nothing");
        EXPECT_EQ(said, row.said) << sent;
        ASSERT_EQ(host.opened().size(), opened + (row.opens ? 1 : 0)) << sent;
        if (row.opens) {
            EXPECT_EQ(host.opened().back(), "http://new/");
        }
        EXPECT_EQ(host.desktop().frontPanel(), nullptr);
    }
    EXPECT_EQ(web.asked.front(), "https://velmora.example/VelmoraVersion.plist");
}

}  // namespace
}  // namespace velmora
