#include "replay/ScenarioText.h"

#include <charconv>
#include <cmath>
#include <sstream>

namespace velmora {

namespace {

constexpr std::string_view blanks = " \t\r";
constexpr float maximumCoordinate = 100'000;
constexpr double maximumMilliseconds = 600'000;

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view lineOf(std::string_view rest) {
    return rest.substr(0, rest.find('\n'));
}

bool isTextLine(std::string_view line) {
    return trimmed(line).starts_with('|');
}

int hexadecimal(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

ScenarioLine::ScenarioLine(int number, std::string_view source) : number_(number) {
    if (isTextLine(source)) fail("a line of text belongs to no file");
    std::size_t at = 0;
    std::size_t end = source.size();
    while (true) {
        at = source.find_first_not_of(blanks, at);
        if (at == std::string_view::npos) break;
        if (source[at] == '#') {
            end = at;
            break;
        }
        if (opensBlock_) fail("a block begins on a line of its own");
        if (closesBlock_) fail("nothing can follow the end of a block");
        if (source[at] == '{') {
            opensBlock_ = true;
            ++at;
        } else if (source[at] == '}') {
            if (!tokens_.empty()) fail("the end of a block stands on a line of its own");
            closesBlock_ = true;
            ++at;
        } else {
            readToken(source, at);
        }
    }
    std::string_view text = trimmed(source.substr(0, end));
    if (opensBlock_) text = trimmed(text.substr(0, text.size() - 1));
    text_ = text;
}

void ScenarioLine::readToken(std::string_view source, std::size_t& at) {
    if (source[at] == '"') {
        readQuoted(source, at);
        return;
    }
    const std::size_t end = std::min(source.find_first_of(" \t\r\"{}#", at), source.size());
    tokens_.push_back({std::string(source.substr(at, end - at)), false});
    at = end;
}

void ScenarioLine::readQuoted(std::string_view source, std::size_t& at) {
    std::string text;
    for (++at; at < source.size() && source[at] != '"'; ++at) {
        if (source[at] != '\\') {
            text += source[at];
            continue;
        }
        if (++at >= source.size()) break;
        switch (source[at]) {
            case 'n': text += '\n'; break;
            case 't': text += '\t'; break;
            case 'r': text += '\r'; break;
            case '"':
            case '\\': text += source[at]; break;
            case 'x': {
                const int high = at + 2 < source.size() ? hexadecimal(source[at + 1]) : -1;
                const int low = high < 0 ? -1 : hexadecimal(source[at + 2]);
                if (low < 0) fail("\\x wants two hexadecimal digits");
                text += static_cast<char>(high * 16 + low);
                at += 2;
                break;
            }
            default: fail(std::string("\\") + source[at] + " means nothing in a quoted text");
        }
    }
    if (at >= source.size()) fail("the quoted text has no end");
    ++at;
    tokens_.push_back({std::move(text), true});
}

bool ScenarioLine::take(std::string_view words) {
    std::size_t next = next_;
    while (!words.empty()) {
        const std::string_view word = words.substr(0, words.find(' '));
        if (next == tokens_.size() || tokens_[next].quoted || tokens_[next].text != word) {
            return false;
        }
        ++next;
        words.remove_prefix(std::min(word.size() + 1, words.size()));
    }
    next_ = next;
    return true;
}

std::string ScenarioLine::word(std::string_view what) {
    if (atEnd()) fail("expected " + std::string(what));
    return tokens_[next_++].text;
}

std::vector<std::string> ScenarioLine::quotedTexts() {
    std::vector<std::string> texts;
    while (nextIsQuoted()) texts.push_back(word("a text"));
    return texts;
}

double ScenarioLine::number(std::string_view what, double low, double high) {
    const std::string text = word(what);
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    double value = 0;
    if (!(stream >> value) || !stream.eof() || !std::isfinite(value)) {
        fail("expected " + std::string(what) + ", not " + text);
    }
    if (value < low || value > high) {
        std::ostringstream range;
        range << what << " must be between " << low << " and " << high;
        fail(range.str());
    }
    return value;
}

int ScenarioLine::integer(std::string_view what, int low, int high) {
    const double value = number(what, low, high);
    if (value != std::floor(value)) fail(std::string(what) + " must be a whole number");
    return static_cast<int>(value);
}

Time ScenarioLine::duration() {
    const double milliseconds = number("a number of milliseconds", 0, maximumMilliseconds);
    if (!take("ms")) fail("expected ms after the number");
    return timeFromInterval(milliseconds / 1000);
}

NSPoint ScenarioLine::point() {
    const double x = number("a coordinate", -maximumCoordinate, maximumCoordinate);
    const double y = number("a coordinate", -maximumCoordinate, maximumCoordinate);
    return {static_cast<float>(x), static_cast<float>(y)};
}

NSRect ScenarioLine::frame() {
    if (!take("at")) fail("expected at X Y size W H");
    const NSPoint origin = point();
    if (!take("size")) fail("expected size W H");
    return {origin, size()};
}

NSSize ScenarioLine::size() {
    const double width = number("a width", 0, maximumCoordinate);
    const double height = number("a height", 0, maximumCoordinate);
    return {static_cast<float>(width), static_cast<float>(height)};
}

bool ScenarioLine::takeModifier(std::uint32_t& flag) {
    if (atEnd() || tokens_[next_].quoted) return false;
    const auto named = modifierNamed(tokens_[next_].text);
    if (!named) return false;
    flag = *named;
    ++next_;
    return true;
}

void ScenarioLine::end() const {
    if (!atEnd()) fail("did not expect " + tokens_[next_].text);
}

void ScenarioLine::fail(const std::string& reason) const {
    throw ScenarioError{number_, reason};
}

ScenarioText::ScenarioText(std::string_view source) : rest_(source) {
    if (source.size() > maximumSize) throw ScenarioError{1, "the file is larger than 256 KiB"};
}

bool ScenarioText::advance() {
    if (rest_.empty()) return false;
    current_ = lineOf(rest_);
    rest_.remove_prefix(std::min(current_.size() + 1, rest_.size()));
    ++number_;
    return true;
}

bool ScenarioText::textFollows() const {
    return !rest_.empty() && isTextLine(lineOf(rest_));
}

std::string ScenarioText::text() {
    std::string text;
    while (textFollows() && advance()) {
        std::string_view line = current_.substr(current_.find('|') + 1);
        if (line.starts_with(' ')) line.remove_prefix(1);
        text += line;
        text += '\n';
    }
    return text;
}

}  // namespace velmora
