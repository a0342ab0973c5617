#include "platform/foundation/files/PropertyListGuard.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace velmora {

namespace {

bool isXMLBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

/// Walks the tags of a document. Quotes and ends of comments are found in exactly the way in which
/// the library finds them, so that both see the same tags.
class XMLWalk {
public:
    XMLWalk(std::string_view text, std::string& buffer) : text_(text), buffer_(buffer) {}

    std::optional<std::string_view> walk() {
        if (text_.size() > PropertyListLimits::fileSize) return std::nullopt;
        if (text_.find('\0') != text_.npos) return std::nullopt;
        while (at_ < text_.size()) {
            if (!takeText() || (at_ < text_.size() && !takeMarkup())) return std::nullopt;
        }
        if (!rootEnded_) return std::nullopt;
        if (copied_ == 0) return text_;
        buffer_.append(text_.substr(copied_));
        return buffer_;
    }

private:
    bool isAt(char c) const { return at_ < text_.size() && text_[at_] == c; }
    bool isAt(std::string_view prefix) const {
        return text_.compare(at_, prefix.size(), prefix) == 0;
    }

    /// Goes behind the next `end`, or says that there is none.
    bool skipPast(std::string_view end) {
        const std::size_t found = text_.find(end, at_);
        if (found == text_.npos) return false;
        at_ = found + end.size();
        return true;
    }

    /// As above, but an `end` in double quotes is none, and neither is anything behind a '[' or a
    /// '<' outside of them when `plain`.
    bool skipPastUnquoted(std::string_view end, bool plain) {
        for (; at_ < text_.size(); ++at_) {
            if (isAt(end)) {
                at_ += end.size();
                return true;
            }
            if (plain && (text_[at_] == '[' || text_[at_] == '<')) return false;
            if (text_[at_] == '"') at_ = std::min(text_.find('"', at_ + 1), text_.size());
        }
        return false;
    }

    /// Goes to the next '<'. Outside of elements there may only be blanks.
    bool takeText() {
        const std::size_t start = at_;
        at_ = std::min(text_.find('<', at_), text_.size());
        if (depth_ > 0) {
            spaceOut(start);
            return true;
        }
        return std::all_of(text_.begin() + static_cast<std::ptrdiff_t>(start),
                           text_.begin() + static_cast<std::ptrdiff_t>(at_), isXMLBlank);
    }

    /// The library moves the rest of a text once for each of its character references. Comments,
    /// which it joins texts across, keep the parts that it moves short.
    void spaceOut(std::size_t start) {
        constexpr std::size_t partSize = 8192;
        constexpr std::size_t longestReference = 10;
        if (at_ - start <= partSize || text_.substr(start, at_ - start).find('&') == text_.npos) {
            return;
        }
        while (at_ - start > partSize) {
            std::size_t end = start + partSize;
            // Never inside of a reference.
            const std::size_t reference =
                text_.substr(end - longestReference, longestReference).rfind('&');
            if (reference != text_.npos) end = end - longestReference + reference;
            buffer_.append(text_.substr(copied_, end - copied_)).append("<!---->");
            start = copied_ = end;
        }
    }

    /// At a '<'.
    bool takeMarkup() {
        ++at_;
        if (isAt('/')) {
            ++at_;
            return takeName() && takeTagEnd() && leave();
        }
        if (isAt('!') || isAt('?')) return takeSpecial();
        if (!takeName()) return false;
        if (name_ == "plist") {
            wrapped_ = !rootBegun_ && skipPastUnquoted(">", true) && text_[at_ - 2] != '/';
            return wrapped_ && enter();
        }
        skipXMLBlanks();
        if (isAt("/>")) {
            at_ += 2;
            return enter() && leave();
        }
        return takeTagEnd() && enter();
    }

    bool takeSpecial() {
        if (isAt('?')) return !rootBegun_ && skipPastUnquoted("?>", false);
        if (isAt("!DOCTYPE")) return !rootBegun_ && skipPastUnquoted(">", true);
        constexpr std::string_view comment = "!--";
        constexpr std::string_view verbatim = "![CDATA[";
        if (isAt(comment)) {
            at_ += comment.size();
            return skipPast("-->");
        }
        if (depth_ == 0 || !isAt(verbatim)) return false;
        at_ += verbatim.size();
        return skipPast("]]>");
    }

    bool takeName() {
        const std::size_t start = at_;
        while (at_ < text_.size() && text_[at_] >= 'a' && text_[at_] <= 'z') ++at_;
        name_ = text_.substr(start, at_ - start);
        return !name_.empty();
    }

    bool takeTagEnd() {
        skipXMLBlanks();
        const bool ends = isAt('>');
        if (ends) ++at_;
        return ends;
    }

    void skipXMLBlanks() {
        while (at_ < text_.size() && isXMLBlank(text_[at_])) ++at_;
    }

    bool enter() {
        if (depth_ == 0 && rootBegun_) return false;
        if (depth_ == 1 && wrapped_ && contentBegun_) return false;
        contentBegun_ = contentBegun_ || depth_ == 1;
        const bool isWrapper = wrapped_ && depth_ == 0;
        rootBegun_ = true;
        if (!isWrapper) ++values_;
        if (name_ == "key") ++keys_[static_cast<std::size_t>(depth_)];
        if (keys_[static_cast<std::size_t>(depth_)] > PropertyListLimits::keysOfOneDictionary ||
            values_ > PropertyListLimits::values || depth_ >= deepest()) {
            return false;
        }
        ++depth_;
        keys_[static_cast<std::size_t>(depth_)] = 0;
        return true;
    }

    int deepest() const { return PropertyListLimits::nesting + (wrapped_ ? 1 : 0); }

    bool leave() {
        if (depth_ == 0) return false;
        --depth_;
        if (depth_ == 0) rootEnded_ = true;
        return true;
    }

    std::string_view text_;
    std::string& buffer_;
    std::size_t at_ = 0;
    std::string_view name_;   // of the last tag
    std::size_t copied_ = 0;  // how much of the text is in the buffer
    std::size_t values_ = 0;
    int depth_ = 0;
    std::array<std::size_t, PropertyListLimits::nesting + 2> keys_{};  // by depth
    bool rootBegun_ = false;
    bool rootEnded_ = false;
    bool wrapped_ = false;       // the root is a plist element …
    bool contentBegun_ = false;  // … and its one value has begun
};

/// Walks the objects of a binary property list, each once.
class BinaryWalk {
public:
    explicit BinaryWalk(std::string_view bytes) : bytes_(bytes) {}

    bool walk() {
        constexpr std::size_t headerSize = 8;
        constexpr std::size_t trailerSize = 32;
        if (bytes_.size() > PropertyListLimits::fileSize ||
            bytes_.size() < headerSize + trailerSize) {
            return false;
        }
        const std::size_t trailer = bytes_.size() - trailerSize;
        offsetSize_ = numberAt(trailer + 6, 1);
        referenceSize_ = numberAt(trailer + 7, 1);
        const std::uint64_t count = numberAt(trailer + 8, 8);
        const std::uint64_t root = numberAt(trailer + 16, 8);
        table_ = numberAt(trailer + 24, 8);
        if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8 ||
            count > PropertyListLimits::values || root >= count || table_ < headerSize ||
            table_ > trailer || count * offsetSize_ > trailer - table_) {
            return false;
        }
        extents_.resize(count);
        return visit(root, 1);
    }

private:
    /// What an object comes to with all that it refers to.
    struct Extent {
        enum class State : std::uint8_t { Unseen, Open, Known };
        State state = State::Unseen;
        int height = 0;
        std::uint64_t values = 1;
        std::uint64_t bytes = 0;
    };

    std::uint64_t numberAt(std::size_t at, std::size_t size) const {
        std::uint64_t number = 0;
        for (std::size_t i = 0; i < size; ++i) {
            number = number << 8U | static_cast<std::uint8_t>(bytes_[at + i]);
        }
        return number;
    }

    bool visit(std::uint64_t index, int depth) {
        if (depth > PropertyListLimits::nesting) return false;
        Extent& extent = extents_[index];
        if (extent.state == Extent::State::Open) return false;
        if (extent.state == Extent::State::Known) {
            return depth + extent.height <= PropertyListLimits::nesting;
        }
        extent.state = Extent::State::Open;
        if (!measure(extent, index, depth)) return false;
        extent.state = Extent::State::Known;
        return isAcceptable(extent);
    }

    /// Writers share texts and numbers, and each use takes a reference of a byte or more; a list
    /// that comes to more than a few times its size is made to do harm.
    bool isAcceptable(const Extent& extent) const {
        return extent.values <= PropertyListLimits::values && extent.values <= 4 * bytes_.size() &&
               extent.bytes <= 16 * bytes_.size() + (std::size_t{1} << 20U);
    }

    bool measure(Extent& extent, std::uint64_t index, int depth) {
        std::uint64_t at = numberAt(table_ + index * offsetSize_, offsetSize_);
        if (at < 8 || at >= table_) return false;
        const auto marker = static_cast<std::uint8_t>(bytes_[at++]);
        const unsigned type = marker >> 4U;
        std::uint64_t size = marker & 0xFU;
        if (type == 0x1 || type == 0x2) return size <= 4 && (1U << size) <= table_ - at;
        if (type == 0x3) return size == 3 && table_ - at >= 8;
        if (type == 0x8) return size < table_ - at;
        if (type < 0x4) return marker == 0x08 || marker == 0x09;
        if (size == 0xF && !takeLength(at, size)) return false;

        const std::uint64_t room = table_ - at;
        switch (type) {
            case 0x4: extent.bytes = size; return size <= room;
            case 0x5: extent.bytes = size; return size <= room && isText(at, size, 1);
            case 0x6: extent.bytes = size; return size <= room / 2 && isText(at, size, 2);
            case 0xA:
            case 0xC: return size <= room / referenceSize_ && visitAll(extent, at, size, depth);
            case 0xD:
                return size <= PropertyListLimits::keysOfOneDictionary &&
                       size <= room / referenceSize_ / 2 && visitAll(extent, at, 2 * size, depth);
            default: return false;
        }
    }

    /// The library aborts the process when it meets the character 0 in a key.
    bool isText(std::uint64_t at, std::uint64_t size, std::size_t width) const {
        for (std::uint64_t i = 0; i < size; ++i) {
            if (numberAt(at + i * width, width) == 0) return false;
        }
        return true;
    }

    /// A length that does not fit into the marker is a number object of its own.
    bool takeLength(std::uint64_t& at, std::uint64_t& size) const {
        if (at >= table_) return false;
        const auto marker = static_cast<std::uint8_t>(bytes_[at++]);
        const std::size_t width = std::size_t{1} << (marker & 0xFU);
        if (marker >> 4U != 0x1 || width > 8 || width > table_ - at) return false;
        size = numberAt(at, width);
        at += width;
        return true;
    }

    bool visitAll(Extent& extent, std::uint64_t at, std::uint64_t count, int depth) {
        for (std::uint64_t i = 0; i < count; ++i) {
            const std::uint64_t index = numberAt(at + i * referenceSize_, referenceSize_);
            if (index >= extents_.size() || !visit(index, depth + 1)) return false;
            const Extent& part = extents_[index];
            extent.height = std::max(extent.height, part.height + 1);
            extent.values += part.values;
            extent.bytes += part.bytes;
            if (!isAcceptable(extent)) return false;
        }
        return true;
    }

    std::string_view bytes_;
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    std::size_t table_ = 0;
    std::vector<Extent> extents_;
};

}  // namespace

std::optional<std::string_view> guardedXML(std::string_view text, std::string& buffer) {
    return XMLWalk(text, buffer).walk();
}

bool isSoundBinaryPropertyList(std::string_view bytes) {
    return BinaryWalk(bytes).walk();
}

}  // namespace velmora
