#pragma once

#include <optional>
#include <string>
#include <vector>

namespace velmora {

/// What was added to lists in the environment so that one program loads the plug-in. A note of it
/// travels in the environment too, so that the program can take it out again before it starts
/// others; what the session itself has set is never in the note.
class AddedEnvironment {
public:
    enum class Place { Front, End };
    enum class List : char { Folders = ':', Names = ',' };

    /// A variable's new value; none says that it was not set.
    struct Change {
        std::string variable;
        std::optional<std::string> value;
    };

    /// Puts the entry into the list and notes that, unless it is there. Changes the environment of
    /// this process, so there must be no other thread.
    static void add(const std::string& variable, const std::string& entry, List list, Place place);

    /// What takes everything noted, and the note, out of the environment again.
    static std::vector<Change> removal();
};

}  // namespace velmora
