#include "replay/TypingParser.h"

#include "platform/foundation/files/Characters.h"
#include "replay/PanelStepParser.h"

namespace velmora {

namespace {

/// The key that types the character.
Key keyOf(const std::string& character) {
    if (character == "\n") return *keyNamed("return");
    if (character == "\t") return *keyNamed("tab");
    return {character, 0};
}

/// As keys, or in row N column "ID", or in the control of a name.
decltype(Statement::what) parseType(ScenarioLine& line) {
    constexpr std::size_t longest = 10'000;
    if (!line.nextIsQuoted()) line.fail("expected a quoted text");
    const std::string text = line.word("a text");
    if (text.size() > longest) line.fail("nobody types that much");
    if (auto inPanel =
            parsePlaceInPanel(line, PanelStep::Act::typeInCell, PanelStep::Act::typeInControl)) {
        inPanel->text = text;
        return std::move(*inPanel);
    }
    TypeStep step;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string character(rest.substr(0, firstCharacterLength(rest)));
        step.keys.push_back(keyOf(character));
        rest.remove_prefix(character.size());
    }
    return step;
}

}  // namespace

bool parseTypingStep(ScenarioLine& line, std::vector<Statement>& statements) {
    Statement statement{line.number(), line.text(), ClosePanelStep{}};
    if (line.take("type")) {
        statement.what = parseType(line);
    } else if (line.take("focus text")) {
        statement.what = FocusTextStep{line.word("a text view")};
    } else if (line.take("click button")) {
        statement.what = ClickButtonStep{line.word("a button's title")};
    } else if (!line.take("close panel")) {
        return false;
    }
    line.end();
    if (line.opensBlock()) line.fail("this statement opens no block");
    statements.push_back(std::move(statement));
    return true;
}

}  // namespace velmora
