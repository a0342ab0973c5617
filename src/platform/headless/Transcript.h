#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "platform/port/Time.h"

namespace velmora {

/// What happened in a session of the headless desktop, in the order in which it happened: what the
/// user did, and what came of it in each host process.
class Transcript {
public:
    enum class Kind {
        user,     ///< a step of the user
        note,     ///< what the player did on its own account
        command,  ///< a menu command of the host ran: its path
        event,    ///< an event reached the host: buttons, keys, scrolling
        flags,    ///< a change of the modifier keys reached the host
        motion,   ///< motion reached the host; equal ones in a row are one entry
        beep,
        log,
        trace,
        opened,   ///< an address was opened
        started,  ///< a process was started: the contents of its file
        madeKey,  ///< a window was made key
        cursor,   ///< the pushed cursor changed
        panel,    ///< a panel of ours came or went
        fault,    ///< an expectation that did not hold
    };

    struct Entry {
        Time at;
        Kind kind;
        std::string process;
        std::string text;
        int times = 1;
    };

    /// Whether anything is kept; benchmarks switch it off.
    bool isOn() const { return on_; }
    void setOn(bool on) { on_ = on; }

    void add(Time at, Kind kind, const std::string& process, std::string text);

    const std::vector<Entry>& entries() const { return entries_; }

    /// The texts of one kind in one process, from the entry `first` on.
    std::vector<std::string> texts(Kind kind, const std::string& process,
                                   std::size_t first = 0) const;

    /// What the host got and what was done to it, of all kinds, as print shows it: "event right
    /// up", "ran File/Close", "beep". Motion, modifier keys, the cursor and trace lines are none.
    std::vector<std::string> happenings(const std::string& process, std::size_t first) const;

    void print(std::ostream& out) const;

private:
    bool on_ = true;
    std::vector<Entry> entries_;
};

}  // namespace velmora
