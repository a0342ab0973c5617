#include "commands/VelmoraScripts.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "platform/foundation/files/PosixFileSystem.h"
#include "platform/foundation/files/PropertyListFile.h"
#include "platform/foundation/scripts/PosixTask.h"
#include "support/HeadlessHost.h"
#include "support/TemporaryFolder.h"

namespace velmora {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// The fenced blocks of that kind in the scripts' own page.
std::vector<std::string> examples(const std::string& kind) {
    std::ifstream page(VELMORA_SOURCE_DIR "/docs/scripts.md");
    std::vector<std::string> found;
    bool inside = false;
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with("```")) {
            inside = line == "```" + kind;
            if (inside) found.emplace_back();
        } else if (inside) {
            found.back() += line + '\n';
        }
    }
    return found;
}

TEST(VelmoraScriptsTest, TheLuaOfItsPageRuns) {
    const std::vector<std::string> scripts = examples("lua");
    EXPECT_THAT(scripts, SizeIs(4));
    for (const std::string& script : scripts) {
        HeadlessHost host("Editor");
        host.menu({submenu("File", {itemWithKey("Save", "save:", "s", NSCommandKeyMask),
                                    disabled(itemWithKey("Print", "print:", "p", NSCommandKeyMask)),
                                    item("Close", "close:")})});
        const auto component = std::make_shared<VelmoraScripts>();
        component->initForMenu(std::make_shared<NSMenu>());
        component->runAppleScript(script);
        EXPECT_THAT(host.log(), AnyOf(IsEmpty(), ElementsAre("File/Print\t⌘P"))) << script;
        const auto happened = host.commands().size() + host.events().size() + host.opened().size() +
                              host.log().size();
        EXPECT_GT(happened, 0U) << script;
    }
}

TEST(VelmoraScriptsTest, TheProgramsOfItsPageRun) {
    const std::vector<std::string> scripts = examples("sh");
    EXPECT_THAT(scripts, SizeIs(2));
    for (const std::string& script : scripts) {
        const TemporaryFolder home;
        const pid_t child = ::fork();
        if (child == 0) {
            ::setenv("HOME", home.path().c_str(), 1);
            const std::string path = home.path("script");
            const auto file = PosixFileSystem().createScriptFile(path, script);
            const auto task = PosixTask::launch(path, {});
            if (!file || !task) ::_exit(1);
            task->waitUntilExit();
            ::_exit(task->terminationStatus());
        }
        int status = -1;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0) << script;
        EXPECT_FALSE(std::filesystem::is_empty(home.path())) << script;
    }
}

TEST(VelmoraScriptsTest, TheDefinitionsOfItsPageAreRead) {
    const std::vector<std::string> definitions = examples("plist");
    ASSERT_THAT(definitions, SizeIs(1));
    HeadlessHost host("Editor");
    host.writeSettings("EditorScripts.plist", definitions.front());
    const auto component = std::make_shared<VelmoraScripts>();
    const auto list = std::make_shared<NSMenu>();
    component->initForMenu(list);
    ASSERT_EQ(list->numberOfItems(), 2);
    EXPECT_EQ(list->itemAtIndex(0)->title(), "Save all");
    EXPECT_EQ(list->itemAtIndex(1)->title(), "Back up");
}

}  // namespace
}  // namespace velmora
