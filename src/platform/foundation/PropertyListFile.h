#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/PropertyList.h"

namespace velmora {

class FileSystem;

/// Reads a property list in any encoding: XML, binary, or the old text form (then in UTF-8 or
/// UTF-16). Nothing when the bytes are none, are cut off, hold only blanks, or exceed the limits of
/// PropertyListGuard.h; never throws, whatever they are.
///
/// No string that is read holds the character 0: bytes with one in a text are no property list. An
/// integer that is too great is clamped. A reference of a keyed archive is read as a dictionary
/// with the one key CF$UID.
std::optional<PropertyList> propertyListFromData(std::string_view bytes);

/// The XML form of the value, which holds dates to the second and of the years 1 to 9999, and
/// strings up to their first character 0; all else is read back as it was.
std::string xmlDataFromPropertyList(const PropertyList& value);

/// The root array of the file, or nothing when the file is missing, unreadable or has another root.
std::optional<NSArray> arrayWithContentsOfFile(FileSystem& files, const std::string& path);

/// The root dictionary of the file, or nothing, likewise.
std::optional<NSDictionary> dictionaryWithContentsOfFile(FileSystem& files,
                                                         const std::string& path);

/// Write the XML form, replacing the file as a whole. What stands there and cannot be read as the
/// same kind of root, unless it is an empty file, is first set aside as NAME.broken (replacing an
/// earlier one), with a line in the log; of a symbolic link it is the link that is set aside. False
/// on failure, also when the value is beyond the limits of what would be read; the file is then as
/// it was.
bool writeArrayToFile(FileSystem& files, const NSArray& array, const std::string& path);
bool writeDictionaryToFile(FileSystem& files, const NSDictionary& dictionary,
                           const std::string& path);

}  // namespace velmora
