#pragma once

#include <string>
#include <vector>

namespace velmora {

/// The words of a command, the program first.
using CommandWords = std::vector<std::string>;

/// A name and options of an interpreter, as in the first line of a script; empty when there is no
/// such line. "env" is left out, with its options.
CommandWords interpreterOf(const std::string& script);

/// The programs that a shell script may turn into or start, as far as they stand in it literally or
/// in variables that are set so. Those that take the script's place come first, then the others,
/// the last one first.
std::vector<CommandWords> programsOfShellScript(const std::string& script);

/// A command without what stands before its program: "exec", "env", settings of variables.
CommandWords withoutPrefix(CommandWords words);

}  // namespace velmora
