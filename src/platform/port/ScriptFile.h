#pragma once

namespace velmora {

/// An executable file that a file system has created to be run (FileSystem::createScriptFile), for
/// the time in which this object lives: it removes the file, if that is still the same.
class ScriptFile {
public:
    ScriptFile() = default;
    virtual ~ScriptFile() = default;
    ScriptFile(const ScriptFile&) = delete;
    ScriptFile& operator=(const ScriptFile&) = delete;
};

}  // namespace velmora
