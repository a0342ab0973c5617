#include "platform/foundation/AddedEnvironment.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

namespace velmora {

namespace {

/// Lines of VARIABLE, the list's separator, "=" and the entry.
constexpr const char* note = "VELMORA_ADDED";

std::string environment(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    return value ? value : "";
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> entries;
    std::istringstream stream(text);
    for (std::string entry; std::getline(stream, entry, separator);) entries.push_back(entry);
    return entries;
}

std::string joined(const std::vector<std::string>& entries, char separator) {
    std::string text;
    for (const std::string& entry : entries) {
        if (!text.empty()) text += separator;
        text += entry;
    }
    return text;
}

}  // namespace

void AddedEnvironment::add(const std::string& variable, const std::string& entry, List list,
                           Place place) {
    const char separator = static_cast<char>(list);
    std::vector<std::string> entries = split(environment(variable), separator);
    if (std::find(entries.begin(), entries.end(), entry) != entries.end()) return;
    entries.insert(place == Place::Front ? entries.begin() : entries.end(), entry);
    ::setenv(variable.c_str(), joined(entries, separator).c_str(), 1);
    const std::string noted = environment(note) + variable + separator + '=' + entry + '\n';
    ::setenv(note, noted.c_str(), 1);
}

std::vector<AddedEnvironment::Change> AddedEnvironment::removal() {
    std::vector<Change> changes;
    for (const std::string& line : split(environment(note), '\n')) {
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos || equals < 2) continue;
        const char separator = line[equals - 1];
        const std::string variable = line.substr(0, equals - 1);
        auto change = std::find_if(changes.begin(), changes.end(),
                                   [&](const Change& each) { return each.variable == variable; });
        if (change == changes.end()) {
            change = changes.insert(changes.end(), {variable, environment(variable)});
        }
        std::vector<std::string> entries = split(change->value.value_or(""), separator);
        entries.erase(std::remove(entries.begin(), entries.end(), line.substr(equals + 1)),
                      entries.end());
        change->value.reset();
        if (!entries.empty()) change->value = joined(entries, separator);
    }
    if (std::getenv(note)) changes.push_back({note, std::nullopt});
    return changes;
}

}  // namespace velmora
