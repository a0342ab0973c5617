#include "loader/RunCommand.h"

#include <elf.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <cstring>
#include <fstream>

#include "support/TemporaryFolder.h"

namespace velmora {
namespace {

class RunCommandTest : public ::testing::Test {
protected:
    std::string path(const std::string& name) const { return folder_.path(name); }

    void write(const std::string& name, const std::string& contents, mode_t mode = 0644) {
        std::ofstream(path(name), std::ios::binary) << contents;
        ::chmod(path(name).c_str(), mode);
    }

    TemporaryFolder folder_;
};

/// A program that needs these libraries and looks for them in this folder, and no more of it than
/// the dynamic linker reads.
std::string elfFile(const std::vector<std::string>& needed, const std::string& runPath) {
    std::string strings(1, '\0');
    std::vector<Elf64_Dyn> entries;
    const auto add = [&](Elf64_Sxword tag, const std::string& text) {
        entries.push_back({tag, {strings.size()}});
        strings += text + '\0';
    };
    for (const std::string& name : needed) add(DT_NEEDED, name);
    if (!runPath.empty()) add(DT_RUNPATH, runPath);

    constexpr Elf64_Addr base = 0x400000;
    const std::size_t dynamic = sizeof(Elf64_Ehdr) + 2 * sizeof(Elf64_Phdr);
    const std::size_t text = dynamic + (entries.size() + 3) * sizeof(Elf64_Dyn);
    entries.push_back({DT_STRTAB, {base + text}});
    entries.push_back({DT_STRSZ, {strings.size()}});
    entries.push_back({DT_NULL, {0}});

    Elf64_Ehdr header{};
    std::memcpy(header.e_ident, ELFMAG, SELFMAG);
    header.e_ident[EI_CLASS] = ELFCLASS64;
    header.e_phoff = sizeof header;
    header.e_phentsize = sizeof(Elf64_Phdr);
    header.e_phnum = 2;
    Elf64_Phdr segments[2]{};
    segments[0].p_type = PT_LOAD;
    segments[0].p_vaddr = base;
    segments[0].p_filesz = text + strings.size();
    segments[1].p_type = PT_DYNAMIC;
    segments[1].p_offset = dynamic;
    segments[1].p_filesz = entries.size() * sizeof(Elf64_Dyn);

    std::string file(reinterpret_cast<const char*>(&header), sizeof header);
    file.append(reinterpret_cast<const char*>(segments), sizeof segments);
    file.append(reinterpret_cast<const char*>(entries.data()), entries.size() * sizeof(Elf64_Dyn));
    return file + strings;
}

TEST_F(RunCommandTest, TheQtVersionIsThatOfTheLibrariesOrOfTheirLibraries) {
    write("direct5", elfFile({"libm.so.6", "libQt5Widgets.so.5"}, ""));
    write("direct6", elfFile({"libQt6Core.so.6"}, ""));
    write("own.so", elfFile({"libQt6Gui.so.6"}, ""));
    write("indirect", elfFile({"own.so"}, "/nowhere:$ORIGIN"));
    write("both", elfFile({"own.so", "libQt5Core.so.5"}, "${ORIGIN}"));
    write("loop.so", elfFile({"loop.so"}, "$ORIGIN"));
    write("script", "#!/usr/bin/python3\n");
    EXPECT_EQ(qtVersionOf({path("direct5")}), QtVersion::Five);
    EXPECT_EQ(qtVersionOf({path("direct6")}), QtVersion::Six);
    EXPECT_EQ(qtVersionOf({path("indirect")}), QtVersion::Six);
    EXPECT_EQ(qtVersionOf({path("both")}), QtVersion::Five);
    for (const char* name : {"loop.so", "script", "missing"}) {
        EXPECT_EQ(qtVersionOf({path(name)}), QtVersion::Unknown) << name;
    }
}

TEST_F(RunCommandTest, DamagedProgramsAreReadAsFarAsTheyGo) {
    const std::string whole = elfFile({"libQt5Core.so.5"}, "$ORIGIN");
    for (std::size_t size = 0; size < whole.size(); size += 7) {
        write("cut", whole.substr(0, size));
        EXPECT_EQ(qtVersionOf({path("cut")}), QtVersion::Unknown) << size;
    }
    std::string wild = whole;
    for (std::size_t i = sizeof(Elf64_Ehdr); i < wild.size(); ++i) wild[i] = '\xff';
    write("wild", wild);
    EXPECT_EQ(qtVersionOf({path("wild")}), QtVersion::Unknown);
}

TEST_F(RunCommandTest, PluginsLieBesideTheToolOrBelowLib) {
    namespace fs = std::filesystem;
    const auto plugin = [&](const std::string& below) {
        fs::create_directories(path(below + "/generic"));
        write(below + "/generic/libvelmora.so", "");
    };
    plugin("build/plugins/qt6");
    using Folders = std::vector<std::string>;
    EXPECT_EQ(PluginFolders::beside(path("build/velmora")).forVersion(QtVersion::Five), Folders{});
    EXPECT_EQ(PluginFolders::beside(path("build/velmora")).forVersion(QtVersion::Unknown),
              Folders{path("build/plugins/qt6")});
    plugin("lib/velmora/plugins/qt5");
    plugin("lib/velmora/plugins/qt6");
    const PluginFolders installed = PluginFolders::beside(path("bin/velmora"));
    EXPECT_EQ(installed.forVersion(QtVersion::Six), Folders{path("lib/velmora/plugins/qt6")});
    EXPECT_EQ(installed.forVersion(QtVersion::Unknown),
              (Folders{path("lib/velmora/plugins/qt5"), path("lib/velmora/plugins/qt6")}));
}

TEST_F(RunCommandTest, AnApplicationThatCannotRunHasTheStatusOfAShell) {
    write("plain", "text");
    const PluginFolders folders{"/five", "/six"};
    EXPECT_EQ(runApplication(folders, {path("missing")}), 127);
    EXPECT_EQ(runApplication(folders, {"velmora-no-such-command"}), 127);
    EXPECT_EQ(runApplication(folders, {path("plain")}), 126);
}

}  // namespace
}  // namespace velmora
