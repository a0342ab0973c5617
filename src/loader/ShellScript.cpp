#include "loader/ShellScript.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <sstream>

namespace velmora {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostPrograms = 32;
constexpr std::string_view space = " \t\r";

bool isName(std::string_view text) {
    return !text.empty() && !std::isdigit(static_cast<unsigned char>(text.front())) &&
           std::all_of(text.begin(), text.end(), [](char c) {
               return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
           });
}

bool isSetting(const std::string& word) {
    const std::size_t equals = word.find('=');
    return equals != std::string::npos && isName(std::string_view(word).substr(0, equals));
}

bool isOneOf(const std::string& word, std::initializer_list<std::string_view> words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

/// Cuts a script into commands and words, far enough for scripts that only set something up and
/// then start a program. Arguments of the script itself are left out.
class Reader {
public:
    explicit Reader(const std::string& script) : text_(script) {}

    std::vector<CommandWords> commands() {
        for (; at_ < text_.size(); ++at_) take(text_[at_]);
        endCommand();
        return std::move(commands_);
    }

private:
    void take(char c) {
        if (c == '\\' && quote_ != '\'' && at_ + 1 < text_.size()) {
            if (text_[++at_] != '\n') add(text_[at_]);
        } else if (c == quote_) {
            quote_ = 0;
        } else if (c == '$' && quote_ != '\'') {
            takeVariable();
        } else if (quote_ != 0 || isPlain(c)) {
            add(c);
        } else if (c == '"' || c == '\'') {
            quote_ = c;
            inWord_ = true;
        } else if (c == '#') {
            at_ = std::min(text_.find('\n', at_), text_.size()) - 1;
        } else if (space.find(c) != std::string_view::npos) {
            endWord();
        } else if (c == '<' || c == '>') {
            isRedirection_ = true;
            endWord();
        } else {
            endCommand();
        }
    }

    /// Whether it is part of a word outside quotes.
    bool isPlain(char c) const {
        if (c == '#') return inWord_;
        constexpr std::string_view special = "\"'<>\n;&|(){} \t\r";
        return special.find(c) == std::string_view::npos;
    }

    void takeVariable() {
        std::size_t end = at_ + 1;
        std::string name;
        std::string otherwise = "$";
        if (end < text_.size() && text_[end] == '{') {
            const std::size_t close = text_.find('}', end);
            if (close == std::string::npos) return add('$');
            name = text_.substr(end + 1, close - end - 1);
            end = close + 1;
            if (const std::size_t sign = name.find(":-"); sign != std::string::npos) {
                otherwise = name.substr(sign + 2);
                name.resize(sign);
            }
        } else if (end < text_.size() &&
                   std::string_view("@*").find(text_[end]) != std::string::npos) {
            name = text_[end++];
        } else {
            while (end < text_.size() && isName(name + text_[end])) name += text_[end++];
        }
        const auto variable = variables_.find(name);
        inWord_ = true;
        if (variable != variables_.end()) {
            word_ += variable->second;
        } else if (name == "@" || name == "*" || name.ends_with("+\"$@\"")) {
            isArguments_ = true;
        } else {
            word_ += otherwise;
        }
        at_ = end - 1;
    }

    void add(char c) {
        word_ += c;
        inWord_ = true;
    }

    void endWord() {
        if (!inWord_) return;
        if (wasRedirection_) {
            wasRedirection_ = false;
        } else if (!isArguments_ || !word_.empty()) {
            words_.push_back(word_);
        }
        wasRedirection_ = isRedirection_;
        isRedirection_ = isArguments_ = inWord_ = false;
        word_.clear();
    }

    void endCommand() {
        endWord();
        wasRedirection_ = isRedirection_ = false;
        if (!words_.empty() && std::all_of(words_.begin(), words_.end(), isSetting)) {
            for (const std::string& word : words_) {
                const std::size_t equals = word.find('=');
                variables_[word.substr(0, equals)] = word.substr(equals + 1);
            }
        } else if (!words_.empty()) {
            commands_.push_back(std::move(words_));
        }
        words_.clear();
    }

    const std::string& text_;
    std::size_t at_ = 0;
    char quote_ = 0;
    bool inWord_ = false;
    bool isArguments_ = false;
    bool isRedirection_ = false;
    bool wasRedirection_ = false;
    std::string word_;
    CommandWords words_;
    std::vector<CommandWords> commands_;
    std::map<std::string, std::string> variables_;
};

/// A file that is named from the folder into which the script has gone.
std::string fileIn(const std::string& folder, const std::string& word) {
    std::error_code error;
    if (folder.empty() || word.empty() || word.front() == '/') return word;
    const fs::path file = fs::path(folder) / word;
    return fs::is_regular_file(file, error) ? file.string() : word;
}

}  // namespace

CommandWords interpreterOf(const std::string& script) {
    if (!script.starts_with("#!")) return {};
    std::istringstream line(script.substr(2, script.find('\n') - 2));
    CommandWords words;
    for (std::string word; line >> word;) words.push_back(word);
    return withoutPrefix(std::move(words));
}

CommandWords withoutPrefix(CommandWords words) {
    auto word = words.begin();
    while (word != words.end()) {
        const bool isEnv = fs::path(*word).filename() == "env";
        if (isEnv || *word == "exec") {
            for (++word; word != words.end() && word->starts_with('-');) {
                const bool takesOne = isOneOf(*word, {"-u", "-a"});
                ++word;
                if (takesOne && word != words.end()) ++word;
            }
        } else if (isSetting(*word) || isOneOf(*word, {"then", "else", "do", "if", "!", "nohup"})) {
            ++word;
        } else {
            break;
        }
    }
    words.erase(words.begin(), word);
    return words;
}

std::vector<CommandWords> programsOfShellScript(const std::string& script) {
    std::vector<CommandWords> instead;
    std::vector<CommandWords> others;
    std::string folder;
    for (CommandWords& words : Reader(script).commands()) {
        const bool takesPlace = std::find(words.begin(), words.end(), "exec") != words.end();
        words = withoutPrefix(std::move(words));
        if (words.empty() || words.front().find('$') != std::string::npos) continue;
        if (words.front() == "cd" && words.size() > 1) folder = words[1];
        for (std::string& word : words) word = fileIn(folder, word);
        const bool isProgram =
            words.front().find('/') != std::string::npos || words.front().starts_with("python");
        if (takesPlace) {
            instead.push_back(std::move(words));
        } else if (isProgram) {
            others.insert(others.begin(), std::move(words));
        }
    }
    instead.insert(instead.end(), others.begin(), others.end());
    if (instead.size() > mostPrograms) instead.resize(mostPrograms);
    return instead;
}

}  // namespace velmora
