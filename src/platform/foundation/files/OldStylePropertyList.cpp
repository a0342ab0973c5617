#include "platform/foundation/files/OldStylePropertyList.h"

#include <algorithm>
#include <array>

#include "platform/foundation/files/Characters.h"
#include "platform/foundation/files/PropertyListGuard.h"
#include "platform/foundation/files/UnicodeText.h"

namespace velmora {

namespace {

bool isBareCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("_$/:.-+").find(c) != std::string_view::npos;
}

/// The value of a digit, or a great number when it is none.
unsigned digitValue(char c) {
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a') + 10;
    if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A') + 10;
    return 99;
}

/// Every operation returns whether it succeeded; after a failure nothing more is read.
class OldStyleReader {
public:
    explicit OldStyleReader(std::string_view text) : text_(text) {}

    bool readAll(PropertyList& value) {
        if (!skipBlanks()) return false;
        if (atEnd()) {
            value = NSDictionary();
            return true;
        }
        const std::size_t start = at_;
        const bool isString = std::string_view("{(<").find(text_[at_]) == std::string_view::npos;
        if (!readValue(value) || !skipBlanks()) return false;
        if (atEnd()) return true;
        if (!isString || (text_[at_] != '=' && text_[at_] != ';')) {
            return fail("there is more behind the value");
        }
        at_ = start;
        if (!readEntries(value)) return false;
        return atEnd() || fail("there is more behind the table");
    }

    PropertyListError error() const {
        const std::string_view before = text_.substr(0, failedAt_);
        PropertyListError error;
        error.line = 1 + static_cast<int>(std::count(before.begin(), before.end(), '\n'));
        // Behind the last line's end; npos + 1 is 0.
        error.column = 1 + static_cast<int>(failedAt_ - (before.rfind('\n') + 1));
        error.reason = reason_;
        return error;
    }

private:
    bool atEnd() const { return at_ >= text_.size(); }
    bool isAt(char c) const { return !atEnd() && text_[at_] == c; }

    bool fail(const char* reason) { return failAt(at_, reason); }
    bool failAt(std::size_t at, const char* reason) {
        failedAt_ = std::min(at, text_.size());
        reason_ = reason;
        return false;
    }

    bool skipBlanks() {
        while (!atEnd()) {
            const std::string_view rest = text_.substr(at_);
            if (std::string_view(" \t\r\n\v\f").find(rest.front()) != std::string_view::npos) {
                ++at_;
            } else if (rest.substr(0, 2) == "//") {
                at_ = std::min(text_.find('\n', at_), text_.size());
            } else if (rest.substr(0, 2) == "/*") {
                const std::size_t end = text_.find("*/", at_ + 2);
                if (end == std::string_view::npos) return fail("the comment has no end");
                at_ = end + 2;
            } else {
                break;
            }
        }
        return true;
    }

    bool readValue(PropertyList& value) {
        if (atEnd()) return fail("a value is missing");
        if (++values_ > PropertyListLimits::values) return fail("there are too many values");
        if (depth_ >= PropertyListLimits::nesting) return fail("the values are nested too deeply");
        ++depth_;
        bool read = false;
        switch (text_[at_]) {
            case '{': read = readDictionary(value); break;
            case '(': read = readArray(value); break;
            case '<': read = readData(value); break;
            default: {
                std::string string;
                read = readString(string);
                value = std::move(string);
            }
        }
        --depth_;
        return read;
    }

    bool readArray(PropertyList& value) {
        const std::size_t start = at_++;
        NSArray array;
        for (;;) {
            if (!skipBlanks()) return false;
            if (atEnd()) return failAt(start, "the array has no ')'");
            if (isAt(')')) break;
            if (!readValue(array.emplace_back()) || !skipBlanks()) return false;
            if (isAt(',')) {
                ++at_;
            } else if (!atEnd() && !isAt(')')) {
                return fail("a ',' or ')' is missing");
            }
        }
        ++at_;
        value = std::move(array);
        return true;
    }

    bool readDictionary(PropertyList& value) {
        const std::size_t start = at_++;
        if (!readEntries(value)) return false;
        if (atEnd()) return failAt(start, "the dictionary has no '}'");
        ++at_;
        return true;
    }

    /// Reads up to a '}' or the end of the text.
    bool readEntries(PropertyList& value) {
        NSDictionary dictionary;
        for (;;) {
            if (!skipBlanks()) return false;
            if (atEnd() || isAt('}')) break;
            if (++values_ > PropertyListLimits::values) return fail("there are too many values");
            if (dictionary.count() >= PropertyListLimits::keysOfOneDictionary) {
                return fail("there are too many keys");
            }
            std::string key;
            if (!readString(key) || !skipBlanks()) return false;
            PropertyList entry;
            if (isAt('=')) {
                ++at_;
                if (!skipBlanks() || !readValue(entry) || !skipBlanks()) return false;
                if (!isAt(';')) return fail("a ';' is missing");
            } else if (isAt(';')) {
                entry = key;
            } else {
                return fail("a '=' or ';' is missing");
            }
            ++at_;
            dictionary.append(std::move(key), std::move(entry));
        }
        dictionary.keepLastOfEachKey();
        value = std::move(dictionary);
        return true;
    }

    bool readData(PropertyList& value) {
        const std::size_t start = at_++;
        PropertyList::Data data;
        for (;;) {
            if (!skipBlanks()) return false;
            if (atEnd()) return failAt(start, "the data has no '>'");
            if (isAt('>')) break;
            const unsigned high = digitValue(text_[at_]);
            const unsigned low = at_ + 1 < text_.size() ? digitValue(text_[at_ + 1]) : 99;
            if (high > 0xF || low > 0xF) return fail("data is of pairs of hexadecimal digits");
            data.bytes += static_cast<char>(high << 4U | low);
            at_ += 2;
        }
        ++at_;
        value = std::move(data);
        return true;
    }

    bool readString(std::string& string) {
        if (isAt('"') || isAt('\'')) return readQuoted(string);
        const std::size_t start = at_;
        while (!atEnd() && isBareCharacter(text_[at_]) && text_.substr(at_, 2) != "/*") ++at_;
        if (at_ == start) {
            return fail(atEnd() ? "a word is missing" : "this character needs quotes around it");
        }
        string = text_.substr(start, at_ - start);
        return true;
    }

    bool readQuoted(std::string& string) {
        const std::size_t start = at_;
        const std::array<char, 4> stops = {text_[at_++], '\\', '\0', '\0'};
        for (;;) {
            const std::size_t stop = text_.find_first_of({stops.data(), 3}, at_);
            if (stop == std::string_view::npos) return failAt(start, "the string has no end");
            string.append(text_.substr(at_, stop - at_));
            at_ = stop;
            if (isAt('\0')) return fail("a text cannot hold the character 0");
            if (!isAt('\\')) break;
            if (!readEscape(string)) return false;
        }
        ++at_;
        return true;
    }

    bool readEscape(std::string& string) {
        const std::size_t start = at_++;
        if (atEnd()) return failAt(start, "the string has no end");
        if (isAt('\0')) return fail("a text cannot hold the character 0");
        const char c = text_[at_];
        char32_t character = 0;
        if (c >= '0' && c <= '7') {
            character = readNumber(8, 3);
        } else if (c == 'U' || c == 'u') {
            ++at_;
            if (!readUTF16(character)) return false;
        } else {
            constexpr std::string_view names = "abfnrtv";
            constexpr std::string_view characters = "\a\b\f\n\r\t\v";
            const std::size_t known = names.find(c);
            string += known == std::string_view::npos ? c : characters[known];
            ++at_;
            return true;
        }
        if (character == 0) return failAt(start, "a text cannot hold the character 0");
        string += stringWithCharacter(character);
        return true;
    }

    char32_t readNumber(unsigned base, int mostDigits) {
        char32_t number = 0;
        for (int i = 0; i < mostDigits && !atEnd() && digitValue(text_[at_]) < base; ++i) {
            number = number * base + digitValue(text_[at_++]);
        }
        return number;
    }

    /// Behind the U of an escape.
    bool readUTF16(char32_t& character) {
        const std::size_t start = at_;
        character = readNumber(16, 4);
        if (at_ == start) return fail("\\U needs hexadecimal digits");
        if (character < 0xD800 || character > 0xDFFF) return true;
        const std::string_view next = text_.substr(at_, 2);
        if (character <= 0xDBFF && (next == "\\U" || next == "\\u")) {
            at_ += 2;
            const char32_t low = readNumber(16, 4);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                character = 0x10000 + ((character - 0xD800) << 10U) + (low - 0xDC00);
                return true;
            }
        }
        return failAt(start, "half of a surrogate pair is missing");
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::size_t values_ = 0;
    int depth_ = 0;
    std::size_t failedAt_ = 0;
    const char* reason_ = "";
};

}  // namespace

std::optional<PropertyList> propertyListFromOldStyleText(std::string_view text,
                                                         PropertyListError* error) {
    std::string buffer;
    const auto utf8 = utf8FromFileText(text, buffer);
    if (!utf8 || utf8->size() > PropertyListLimits::fileSize) {
        if (error) *error = {1, 1, utf8 ? "the text is too long" : "the text is broken UTF-16"};
        return std::nullopt;
    }
    OldStyleReader reader(*utf8);
    PropertyList value;
    if (reader.readAll(value)) return value;
    if (error) *error = reader.error();
    return std::nullopt;
}

}  // namespace velmora
