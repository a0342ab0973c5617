#pragma once

#include <deque>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "loader/QtVersion.h"

namespace velmora {

/// Looks for the Qt that a Python program imports: in its text, then in the modules that it
/// imports, then in theirs, a bounded number of files. Nothing is run.
class PythonImports {
public:
    /// The interpreter as it is called, which tells where its packages lie.
    explicit PythonImports(const std::string& interpreter);

    /// The arguments are the interpreter's: options, then a script, or a module after "-m".
    QtVersion versionOf(const std::vector<std::string>& arguments);

private:
    struct Module {
        std::string file;
        /// Where the module's relative imports begin.
        std::string package;
    };

    void addPackagesBelow(const std::string& prefix);
    void addFolder(const std::string& folder);
    std::optional<QtVersion> readText(const std::string& text, const std::string& package);
    std::optional<QtVersion> readImport(const std::string& line, const std::string& package);
    std::optional<QtVersion> bindingVersion(const std::string& name);
    QtVersion installedVersion() const;
    bool isInstalled(const std::string& package) const;
    /// Has the files of a module with dots in its name read later: below that folder, or where
    /// programs have theirs when there is none.
    void enqueue(const std::string& name, const std::string& below);

    std::vector<std::string> folders_;
    std::deque<Module> modules_;
    std::set<std::string> seen_;
    /// The first one that was named, installed or not.
    QtVersion named_ = QtVersion::Unknown;
};

}  // namespace velmora
