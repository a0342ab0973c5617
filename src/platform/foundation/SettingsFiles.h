#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "platform/foundation/files/PropertyList.h"
#include "platform/port/FileSystem.h"

namespace velmora {

class FileHistory;

/// The files of the settings directory as one process reads and writes them: definitions,
/// preferences, the places of panels. Other processes may replace any of them at any time.
///
/// What a write replaces goes to the file's history first, unless it is the same, or came from this
/// process in the same pass of the run loop. The disk is waited for at the end of the pass. A
/// process without a desktop (the tool) has passes of one write.
class SettingsFiles {
public:
    struct Reading {
        /// The state of the machine was in the way: what the file holds, if there is one, is not
        /// known. One line in the log has said so.
        bool failed = false;
        /// Nothing when the file is missing, unreadable or no property list.
        std::optional<PropertyList> root;

        /// The root when it is of that kind, else null.
        NSArray* array() { return root ? root->array() : nullptr; }
        NSDictionary* dictionary() { return root ? root->dictionary() : nullptr; }
    };

    /// Those of this process.
    static SettingsFiles& ofProcess();

    /// A file that is missing together with the folder in which this process found settings before
    /// is a failure, also when an empty folder of that name has been made since: a home that is not
    /// mounted looks like that.
    Reading read(FileSystem& files, const std::string& path);

    /// Replaces the file with the XML form of the root. False on failure, also when the root is
    /// beyond the limits of what would be read, and when what stands there is no regular file; all
    /// is then as it was.
    bool write(FileSystem& files, const PropertyList& root, const std::string& path);

    /// As above, with contents that need not be a property list.
    bool writeContents(FileSystem& files, const std::string& contents, const std::string& path);

    /// Adds contents that the file might have had to its history, unless it has them. A failure is
    /// ignored.
    void keepVersion(FileSystem& files, const PropertyList& root, const std::string& path);

private:
    /// A file as it was read or written last.
    struct Known {
        std::optional<FileStamp> stamp;
        std::size_t hash = 0;
        /// It was written in this pass of the run loop.
        bool isFresh = false;
    };

    FileReading readContents(FileSystem& files, const std::string& path);
    bool mustBeKept(FileSystem& files, const std::string& path, const FileStamp& there,
                    const std::string& contents);
    std::optional<std::string> keep(FileHistory& history, const std::string& path);
    void settleAfterPass(FileSystem& files, const std::string& path);
    void endPass(FileSystem& files);
    void failed(const std::string& path, const std::string& reason);

    std::map<std::string, Known> files_;
    std::map<std::string, FileStamp> folders_;
    /// Written in this pass.
    std::set<std::string> fresh_;
    /// The files for which the log has told a reason.
    std::map<std::string, std::string> told_;
    bool toldOfHistory_ = false;
};

}  // namespace velmora
