#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "replay/Scenario.h"

namespace velmora {

/// One line of a scenario, read word by word from the left. What does not fit throws a
/// ScenarioError, which the parser returns.
class ScenarioLine {
public:
    /// Throws when the line is malformed.
    ScenarioLine(int number, std::string_view source);

    int number() const { return number_; }
    /// The line without the blanks at its ends and the brace that opens its block.
    const std::string& text() const { return text_; }
    bool isEmpty() const { return tokens_.empty() && !opensBlock_ && !closesBlock_; }
    bool opensBlock() const { return opensBlock_; }
    bool closesBlock() const { return closesBlock_; }

    bool atEnd() const { return next_ == tokens_.size(); }

    /// Goes past these words (separated by one blank) if the line goes on with them.
    bool take(std::string_view words);

    /// The next word, quoted or not. `what` names it in the error.
    std::string word(std::string_view what);
    /// The quoted texts from here to the end of the line.
    std::vector<std::string> quotedTexts();
    bool nextIsQuoted() const { return !atEnd() && tokens_[next_].quoted; }

    double number(std::string_view what, double low, double high);
    int integer(std::string_view what, int low, int high);
    /// N ms.
    Time duration();
    NSPoint point();
    /// at X Y size W H
    NSRect frame();
    NSSize size();
    /// A modifier key, if one comes next.
    bool takeModifier(std::uint32_t& flag);

    /// Throws unless the line was read to its end.
    void end() const;
    [[noreturn]] void fail(const std::string& reason) const;

private:
    struct Token {
        std::string text;
        bool quoted = false;
    };
    void readToken(std::string_view source, std::size_t& at);
    void readQuoted(std::string_view source, std::size_t& at);

    int number_;
    std::string text_;
    std::vector<Token> tokens_;
    std::size_t next_ = 0;
    bool opensBlock_ = false;
    bool closesBlock_ = false;
};

/// The lines of a scenario, comments and empty ones left out.
class ScenarioText {
public:
    static constexpr std::size_t maximumSize = 256U << 10U;
    static constexpr int maximumDepth = 20;

    /// The source must outlive it.
    explicit ScenarioText(std::string_view source);

    /// Calls `read` for each line up to the end of the file.
    template <class Read>
    void lines(Read read) {
        while (advance()) {
            ScenarioLine line(number_, current_);
            if (line.closesBlock()) line.fail("there is no block that ends here");
            if (!line.isEmpty()) read(line);
        }
    }

    /// Calls `read` for each line of the block that `header` opens; for none when it opens none.
    template <class Read>
    void block(const ScenarioLine& header, Read read) {
        header.end();
        if (!header.opensBlock()) return;
        if (++depth_ > maximumDepth) header.fail("blocks are nested too deep");
        while (advance()) {
            ScenarioLine line(number_, current_);
            if (line.closesBlock()) {
                --depth_;
                return;
            }
            if (!line.isEmpty()) read(line);
        }
        header.fail("the block that begins here has no end");
    }

    /// Whether lines of text, each after a bar, follow; and those lines.
    bool textFollows() const;
    std::string text();

private:
    bool advance();

    std::string_view rest_;
    std::string_view current_;
    int number_ = 0;
    int depth_ = 0;
};

}  // namespace velmora
