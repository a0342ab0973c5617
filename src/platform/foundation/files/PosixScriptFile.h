#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/foundation/files/Descriptor.h"
#include "platform/port/ScriptFile.h"

namespace velmora {

/// A real script file, in a folder to which other users may write. Nothing that another user has
/// put at its path is followed, written into, removed or run, and of the user's own processes only
/// one at a time has the file.
///
/// The file is its own lock: whoever creates, replaces or removes it holds an advisory lock on that
/// very file and has then seen that the path still leads to it.
class PosixScriptFile final : public ScriptFile {
public:
    /// Creates the file with the contents and mode 0744, in place of one that an own process has
    /// left behind. Waits so long for another own process that has it, which nobody notices. Null
    /// when that takes longer or when it cannot be done safely.
    static std::unique_ptr<PosixScriptFile> create(
        const std::string& path, const std::string& contents,
        std::chrono::milliseconds patience = std::chrono::milliseconds(200));

    ~PosixScriptFile() override;

private:
    enum class Step { done, again, refused };

    PosixScriptFile(std::string path, Descriptor folder)
        : path_(std::move(path)), folder_(std::move(folder)) {}

    Step acquire();
    Step takeStaleAway();
    bool write(const std::string& contents);
    bool isHeldAtPath() const;

    std::string name() const { return path_.substr(path_.rfind('/') + 1); }

    std::string path_;
    Descriptor folder_;
    /// The file itself, open for reading and locked; closed while we have none.
    Descriptor file_;
};

}  // namespace velmora
