#pragma once

#include <string>

#include "platform/foundation/files/PropertyList.h"
#include "replay/ScenarioText.h"

namespace velmora {

// Definition and preference files as tables in a scenario.

/// The component whose definitions the line is about, if it begins with one of gestures,
/// shortcuts, mnemonics, snippets, scripts; as it stands in file names. "" if it does not.
std::string takeComponent(ScenarioLine& line);

/// of HOST, or of everyone: the name of the file that holds the definitions.
std::string parseDefinitionFileName(ScenarioLine& line, const std::string& component);

/// The rows of the block that the line opens: TRIGGER -> PATH [runs ACTION] [global]
PropertyList parseDefinitions(ScenarioText& text, const ScenarioLine& line);

inline constexpr const char* preferencesFileName = "VelmoraDefaults.plist";

/// The settings of the block that the line opens; only those that it names.
PropertyList parsePreferences(ScenarioText& text, const ScenarioLine& line);

/// A value for people: definitions as rows, a dictionary as KEY = VALUE, anything else as XML.
std::string describeValue(const PropertyList& value);

}  // namespace velmora
