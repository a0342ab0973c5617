#pragma once

#include <QString>
#include <string>

namespace velmora {

/// What a person reads of an action's text: without the mark of the mnemonic ("&", or the "(&F)"
/// of scripts that have no letter to mark), without what follows a tab, and without outer blanks.
std::string titleFromText(const QString& text);

/// A text that Qt shows as the title.
QString textFromTitle(const std::string& title);

}  // namespace velmora
