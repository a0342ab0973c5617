#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/files/PropertyList.h"

namespace velmora {

class FileSystem;

/// Reads a property list in any encoding: XML, binary, or the old text form (then in UTF-8 or
/// UTF-16). Nothing when the bytes are none, are cut off, hold only blanks, or exceed the limits of
/// PropertyListGuard.h; never throws, whatever they are.
///
/// The character 0 is read only as the reference "&#0;" in XML, as it is written: other bytes with
/// one in a text are no property list. An
/// integer that is too great is clamped. A reference of a keyed archive is read as a dictionary
/// with the one key CF$UID.
std::optional<PropertyList> propertyListFromData(std::string_view bytes);

/// As above, but throws std::bad_alloc when memory is short.
std::optional<PropertyList> parsedPropertyList(std::string_view bytes);

/// The XML form of the value, which holds dates to the second and of the years 1 to 9999; all else
/// is read back as it was.
std::string xmlDataFromPropertyList(const PropertyList& value);

/// The root dictionary of a file that is no setting of the user's, or nothing when the file is
/// missing, unreadable or has another root. See SettingsFiles for those.
std::optional<NSDictionary> dictionaryWithContentsOfFile(FileSystem& files,
                                                         const std::string& path);

}  // namespace velmora
