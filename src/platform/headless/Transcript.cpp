#include "platform/headless/Transcript.h"

#include <array>
#include <iomanip>
#include <ostream>
#include <string_view>

namespace velmora {

namespace {

std::string_view nameOf(Transcript::Kind kind) {
    static constexpr std::array<std::string_view, 15> names = {
        ">",     "note",   "ran",     "event",    "event",  "event", "beep",  "log",
        "trace", "opened", "started", "made key", "cursor", "panel", "FAILED"};
    return names[static_cast<std::size_t>(kind)];
}

std::string describe(const Transcript::Entry& entry) {
    std::string text(nameOf(entry.kind));
    if (!entry.text.empty()) text += ' ' + entry.text;
    return text;
}

bool isHappening(Transcript::Kind kind) {
    using Kind = Transcript::Kind;
    return kind == Kind::command || kind == Kind::event || kind == Kind::beep ||
           kind == Kind::log || kind == Kind::opened || kind == Kind::started ||
           kind == Kind::madeKey;
}

}  // namespace

void Transcript::add(Time at, Kind kind, const std::string& process, std::string text) {
    if (!on_) return;
    if (kind == Kind::motion && !entries_.empty()) {
        Entry& last = entries_.back();
        if (last.kind == kind && last.process == process && last.text == text) {
            ++last.times;
            return;
        }
    }
    entries_.push_back({at, kind, process, std::move(text)});
}

std::vector<std::string> Transcript::texts(Kind kind, const std::string& process,
                                           std::size_t first) const {
    std::vector<std::string> found;
    for (std::size_t i = first; i < entries_.size(); ++i) {
        if (entries_[i].kind == kind && entries_[i].process == process) {
            found.push_back(entries_[i].text);
        }
    }
    return found;
}

std::vector<std::string> Transcript::happenings(const std::string& process,
                                                std::size_t first) const {
    std::vector<std::string> found;
    for (std::size_t i = first; i < entries_.size(); ++i) {
        if (entries_[i].process == process && isHappening(entries_[i].kind)) {
            found.push_back(describe(entries_[i]));
        }
    }
    return found;
}

void Transcript::print(std::ostream& out) const {
    for (const Entry& entry : entries_) {
        const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(entry.at).count();
        out << std::setw(8) << ms << " ms  ";
        if (!entry.process.empty()) out << entry.process << "  ";
        out << describe(entry);
        if (entry.times > 1) out << " (" << entry.times << " times)";
        out << '\n';
    }
}

}  // namespace velmora
