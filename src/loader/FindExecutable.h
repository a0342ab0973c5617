#pragma once

#include <string>

namespace velmora {

/// The file that the shell would run for the name; empty when there is none.
std::string findExecutable(const std::string& name);

}  // namespace velmora
