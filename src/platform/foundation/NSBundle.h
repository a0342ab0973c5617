#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

class FileSystem;
/// The resources of the plug-in: interface/, images/, Manual/, and one <language>.lproj a language,
/// with its texts and, in the place of the English one, its own Manual/.
class NSBundle {
public:
    /// `directory` holds the resources; `languages` are the user's, most wanted first ("de",
    /// "en_GB"). For "de_DE" the table of that name serves, then that of "de". Languages without a
    /// readable table are passed over; from English on, or with none left, texts stay English.
    NSBundle(std::string directory, std::vector<std::string> languages);

    /// The bundle that holds the system's own classes, made for the process's desktop on first use.
    static NSBundle& bundleForClass();

    /// Where resources are read: always the real files, also where the process's own are in memory.
    static FileSystem& resourceFiles();

    /// The path of a file or folder among the resources, that of the user's language where there is
    /// one; an empty type means exactly that name.
    std::optional<std::string> pathForResource_ofType(const std::string& name,
                                                      const std::string& type) const;

    /// The path of a picture by its name without the file extension.
    std::optional<std::string> pathForImageResource(const std::string& name) const;

    /// The text of the key in the user's language; the key itself (or `value` when it is not empty)
    /// where no table has it. A null table is "Localizable".
    std::string localizedStringForKey_value_table(const std::string& key,
                                                  const std::string& value = {},
                                                  const std::string& table = {}) const;

private:
    /// Most wanted first, up to English, in which the keys and what is in no such folder are.
    std::vector<std::string> languageFolders() const;

    using Strings = std::map<std::string, std::string>;
    const Strings& strings(const std::string& table) const;

    std::string directory_;
    std::vector<std::string> languages_;
    mutable std::map<std::string, Strings> tables_;  // as they are asked for
};

/// The text in the user's language, from the plug-in's own table.
std::string localized(const std::string& english);

}  // namespace velmora
