#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "loader/HistoryCommands.h"
#include "loader/RunCommand.h"
#include "loader/SettingsCommands.h"

namespace {

constexpr const char* version = "1.04";
constexpr int usageError = 2;

void printUsage(std::ostream& out) {
    out << "usage: velmora run APPLICATION [ARGUMENTS]   start an application with Velmora in it\n"
           "       velmora list                          show the files with your definitions\n"
           "       velmora check [FILE...]               look for mistakes in them, or in FILEs\n"
           "       velmora history [FILE...]             show what they held before, and what "
           "changed\n"
           "       velmora restore FILE VERSION          bring a version back\n"
           "       velmora --version\n"
           "       velmora --help\n"
           "\n"
           "The application must be made with Qt 5 or Qt 6. With VELMORA_TRACE=1 in the\n"
           "environment Velmora tells what it does; VELMORA_LOG names a file for that.\n";
}

int run(const std::vector<std::string>& command) {
    if (command.empty()) {
        std::cerr << "velmora: run which application?\n";
        return usageError;
    }
    std::error_code error;
    const auto tool = std::filesystem::read_symlink("/proc/self/exe", error);
    return velmora::runApplication(velmora::PluginFolders::beside(tool.string()), command);
}

}  // namespace

int main(int count, char** arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    if (words.empty()) {
        printUsage(std::cerr);
        return usageError;
    }
    const std::string& command = words.front();
    const std::vector<std::string> rest(words.begin() + 1, words.end());
    if (command == "run") return run(rest);
    if (command == "check") return velmora::checkSettingsFiles(rest);
    if (command == "history") return velmora::listHistory(rest);
    if (command == "restore" && rest.size() == 2) return velmora::restoreVersion(rest[0], rest[1]);
    if (rest.empty()) {
        if (command == "list") return velmora::listSettings();
        if (command == "--version") {
            std::cout << "velmora " << version << '\n';
            return 0;
        }
        if (command == "--help" || command == "-h" || command == "help") {
            printUsage(std::cout);
            return 0;
        }
    }
    std::cerr << "velmora: there is no such command: " << command
              << (rest.empty() ? "" : " with arguments") << "\n\n";
    printUsage(std::cerr);
    return usageError;
}
