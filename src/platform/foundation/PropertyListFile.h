#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/PropertyList.h"

namespace velmora {

class FileSystem;

/// Reads a property list in any encoding: XML, binary, or the old text form. Nothing when the bytes
/// are none; never throws, whatever they are.
std::optional<PropertyList> propertyListFromData(std::string_view bytes);

/// The XML form of the value.
std::string xmlDataFromPropertyList(const PropertyList& value);

/// The root array of the file, or nothing when the file is missing, unreadable or has another root.
std::optional<NSArray> arrayWithContentsOfFile(FileSystem& files, const std::string& path);

/// The root dictionary of the file, or nothing, likewise.
std::optional<NSDictionary> dictionaryWithContentsOfFile(FileSystem& files,
                                                         const std::string& path);

/// Write the XML form, replacing the file as a whole. What stands there and cannot be read as the
/// same kind of root is first set aside as NAME.broken (replacing an earlier one), with a line in
/// the log. False on failure; the file is then as it was.
bool writeArrayToFile(FileSystem& files, const NSArray& array, const std::string& path);
bool writeDictionaryToFile(FileSystem& files, const NSDictionary& dictionary,
                           const std::string& path);

}  // namespace velmora
