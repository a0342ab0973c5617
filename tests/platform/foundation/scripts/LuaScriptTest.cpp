#include "platform/foundation/scripts/LuaScript.h"

#include <gmock/gmock.h>

#include <ctime>
#include <stdexcept>

#include "platform/foundation/scripts/ScriptHost.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Keeps what a script asks for.
class Witness final : public ScriptHost {
public:
    bool runMenuItem(const std::string& path) override {
        ++asked;
        if (path == "nested") LuaScript("velmora.log('inner') error('inner')", *this, {}).execute();
        if (path == "throws") throw std::runtime_error("no");
        calls.push_back("run " + path);
        return path == "File/Save";
    }
    std::vector<MenuItem> menuItems() override {
        ++asked;
        return {{"File/Save", "Save", "⌘S", true}, {"File/Close", "Close", "", false}};
    }
    void type(const std::string& text) override { note("type " + text); }
    void beep() override { note("beep"); }
    void log(const std::string& line) override { note(line); }
    std::string processName() override {
        ++asked;
        return "Editor";
    }
    void open(const std::string& address) override { note("open " + address); }

    std::vector<std::string> calls;
    std::size_t asked = 0;

private:
    void note(const std::string& call) {
        ++asked;
        calls.push_back(call);
    }
};

class LuaScriptTest : public testing::Test {
protected:
    std::optional<LuaScript::Error> run(const std::string& source, LuaScript::Limits limits = {}) {
        return LuaScript(source, host_, limits).execute();
    }

    Witness host_;
};

TEST_F(LuaScriptTest, AScriptReachesItsHostByTheTable) {
    const auto error = run(R"(
        print(velmora.run("File/Save"), velmora.run("File/Open"), nil, {} ~= nil)
        velmora.type("a\0ü\n")
        velmora.beep()
        velmora.open("https://example.org")
        velmora.log(velmora.processName())
        for place, item in ipairs(velmora.menu()) do
            print(place, item.path, item.title, item.key, item.enabled)
        end)");
    EXPECT_FALSE(error) << error->message;
    EXPECT_THAT(
        host_.calls,
        ElementsAre("run File/Save", "run File/Open", "true\tfalse\tnil\ttrue",
                    std::string("type a\0ü\n", 10), "beep", "open https://example.org", "Editor",
                    "1\tFile/Save\tSave\t⌘S\ttrue", "2\tFile/Close\tClose\t\tfalse"));
}

TEST_F(LuaScriptTest, AScriptMayRunWhileAnotherOneWaits) {
    EXPECT_FALSE(run("velmora.run('nested') velmora.log('outer')"));
    EXPECT_THAT(host_.calls, ElementsAre("inner", "run nested", "outer"));
}

TEST_F(LuaScriptTest, AnErrorTellsItsMessageAndLine) {
    struct Row {
        std::string source;
        std::string message;
        int line;
    };
    const std::string deep = "local function f() return 1 + f() end f()";
    for (const Row& row : std::vector<Row>{
             {"\n\nlocal x = = 1", "unexpected symbol near '='", 3},
             {"\nerror('no')", "no", 2},
             {"\nerror('no', 0)", "no", 2},
             {"local t\nt.x = 1", "attempt to index a nil value (local 't')", 2},
             {"\nerror()", "nil", 2},
             {"\nerror({})", "table: ", 2},
             {"error(setmetatable({}, {__tostring = function() return 'told' end}))", "told", 1},
             {"error(setmetatable({}, {__tostring = error}))", "the error cannot be told", 1},
             {"error(setmetatable({}, {__tostring = function() return {} end}))",
              "the error cannot be told", 1},
             {deep, "stack overflow", 1},
             {"string.gsub('x', 'x', function(...) " + deep + " end)", "stack overflow", 1},
             {"local function f(s) return s:gsub('x', f) end f('x')", "C stack overflow", 1},
             {std::string(300, '('), "C stack overflow", 0},
             {std::string("x = \0", 5), "unexpected symbol", 1},
             {"\xff\xfe = 1", "unexpected symbol near '<\\255>'", 1},
             {"\x1bLua", "attempt to load a binary chunk", 0},
             {"load('\\27Lua', 'x', 'b')()", "attempt to call a nil value", 1},
             {"load('error(\"in\")', '=script')()", "in", 1},
             {"\ncoroutine.wrap(function()\nerror('in it') end)()", "in it", 3},
             {"\nvelmora.run()", "bad argument #1 to 'run'", 2},
             {"\nvelmora.type({})", "string expected, got table", 2},
             {"\nvelmora.run('throws')", "the application could not do this", 2},
             {"setmetatable({}, {__gc = function() end})", "a script has no finalizers", 1},
             {"require('os')", "attempt to call a nil value (global 'require')", 1},
             {"os.exit()", "attempt to call a nil value (field 'exit')", 1},
             {"io.open('x')", "attempt to index a nil value (global 'io')", 1},
             {"debug.sethook()", "attempt to index a nil value (global 'debug')", 1},
             {"error(('x'):rep(1e6))", "xxx", 1},
         }) {
        const auto error = run(row.source);
        ASSERT_TRUE(error) << row.source;
        EXPECT_THAT(error->message, HasSubstr(row.message)) << row.source;
        EXPECT_EQ(error->line, row.line) << row.source << error->message;
        EXPECT_LE(error->message.size(), 1000U) << row.source;
    }
    EXPECT_THAT(host_.calls, IsEmpty());
}

TEST_F(LuaScriptTest, WhateverRunsForTooLongEnds) {
    const std::string loop = " while true do end ";
    const std::string looping = " function() while true do end end ";
    const std::string tooLong = "the script has run for too long";
    const std::clock_t begin = std::clock();
    for (const std::string& source : std::vector<std::string>{
             loop,
             "while true do pcall(" + looping + ") end",
             "local function f() pcall(f)" + loop + " end f()",
             "xpcall(" + looping + "," + looping + ")" + loop,
             "while true do coroutine.wrap(function() end)() end",
             "while true do coroutine.resume(coroutine.create(" + looping + ")) end",
             "coroutine.wrap(" + looping + ")()",
             "local t = setmetatable({}, {__close =" + looping +
                 "})"
                 " while true do local x <close> = t " +
                 loop + " end",
             "local t = setmetatable({}, {__close =" + looping +
                 "})"
                 " coroutine.wrap(function() local x <close> = t " +
                 loop + " end)()",
             "coroutine.wrap(function() while true do pcall(" + looping + ") end end)()",
             "coroutine.wrap(function() local x <close> = setmetatable({}, {__close =" + looping +
                 "}) table.sort({1, 2, 3}," + looping + ") end)()",
             "string.gsub('x', 'x'," + looping + ")",
             "load(" + looping + ")",
             "load(function() return ' ' end)",
             "setmetatable({}, {__index =" + looping +
                 "}).x = nil local x = setmetatable({}, "
                 "{__index =" +
                 looping + "}).y",
             "error(setmetatable({}, {__tostring =" + looping + "}))",
             "print(setmetatable({}, {__tostring =" + looping + "}))",
             "local s = ('x'):rep(1e6) while true do s:find('y', 1, true) end",
             "while true do local s = ('x'):rep(1e6) end",
             "local x = 'x' while true do x = x .. x end",
             "local t = {} while true do t[#t + 1] = {} end",
             "local t = {} while true do pcall(function() t[#t + 1] = ('x'):rep(1e5) end) end",
             "string.rep('x', 1e9)",
         }) {
        const auto error = run(source, {.instructions = 2'000'000});
        ASSERT_TRUE(error) << source;
        EXPECT_THAT(error->message, testing::AnyOf(tooLong, HasSubstr("not enough memory"),
                                                   "the error cannot be told"))
            << source;
    }
    // Processor time, since what else the machine does does not count.
    EXPECT_LT(std::clock() - begin, 20 * CLOCKS_PER_SEC);
}

TEST_F(LuaScriptTest, WhatIsHandedToTheHostIsLimited) {
    const std::string acts =
        "the script has handed over more than 1,000 commands, addresses and beeps";
    const std::string text = "the script has handed over more than 16 MiB of text";
    const std::string tooLong = "the script has run for too long";
    const std::string mebibyte = "local s = ('x'):rep(1 << 20) ";
    struct Row {
        std::string source;
        std::string message;
        std::size_t most;
    };
    for (const Row& row : std::vector<Row>{
             {"\nwhile true do velmora.beep() end", acts, 1000},
             {"\nwhile true do pcall(velmora.beep) end", acts, 1000},
             {"\nwhile true do velmora.open('file:///') velmora.run('File/Save') end", acts, 1000},
             {"\nwhile true do coroutine.wrap(function() velmora.beep() end)() end", acts, 1000},
             {"\ntable.sort({1, 2, 3}, function() while true do pcall(velmora.beep) end end)", acts,
              1000},
             {mebibyte + "\nwhile true do velmora.type(s) end", text, 16},
             {mebibyte + "\nwhile true do pcall(velmora.log, s) end", text, 16},
             {mebibyte + "\nwhile true do velmora.run(s) end", text, 16},
             {mebibyte + "\nwhile true do print(s) end", text, 16},
             {"\nwhile true do velmora.log('') end", tooLong, 10'000},
             {"\nwhile true do velmora.run('No/Such') end", tooLong, 10'000},
             {"\nwhile true do velmora.menu() end", tooLong, 10'000},
             {"\nstring.gsub(('x'):rep(1e6), 'x', velmora.processName)", tooLong, 10'000},
         }) {
        host_.calls.clear();
        const auto error = run(row.source);
        ASSERT_TRUE(error) << row.source;
        EXPECT_EQ(error->message, row.message) << row.source;
        EXPECT_EQ(error->line, 2) << row.source;
        EXPECT_LE(host_.asked, row.most) << row.source;
        host_.asked = 0;
    }
    EXPECT_FALSE(run("for i = 1, 1000 do velmora.beep() end velmora.type(('x'):rep(16 << 20))"));
}

TEST_F(LuaScriptTest, SlowFunctionsOfTheLibraryEndInTimeToo) {
    const std::string sorted = "local t = {} for i = 1, 1e6 do t[i] = i end ";
    const std::string texts = "local s = {} for i = 1, 1e5 do s[i] = ('x'):rep(1000) .. i end ";
    const std::string large = "local a, b = ('x'):rep(3e7) .. 'a', ('x'):rep(3e7) .. 'b' ";
    for (const std::string& source : std::vector<std::string>{
             sorted + "while true do table.sort(t) end",
             sorted + "while true do pcall(table.sort, t) end",
             sorted + "while true do coroutine.wrap(table.sort)(t) end",
             sorted + "while true do table.concat(t) end",
             sorted + "while true do select('#', table.unpack(t, 1, 9e5)) end",
             texts + "while true do table.sort(s) end",
             large + "while true do local x = a < b end",
             large + "while true do a:find('b', 1, true) end",
             large + "a = nil while true do local x = b .. 'c' end",
             "local s = ('x'):rep(1e7) local t = {} for i = 1, 1000 do t[i] = s end table.sort(t)",
             "table.move({}, 1, 1e12, 2)",
         }) {
        const std::clock_t begin = std::clock();
        const auto error = run(source, {.instructions = 8'000'000});
        const std::clock_t took = std::clock() - begin;
        ASSERT_TRUE(error) << source;
        EXPECT_THAT(error->message, testing::AnyOf("the script has run for too long",
                                                   HasSubstr("too many elements to move")))
            << source;
        // Processor time, of which the budget is 0.4 seconds; the rest is for what is slower
        // than usual, as under a sanitizer.
        EXPECT_LT(took, 10 * CLOCKS_PER_SEC) << source;
    }
}

}  // namespace
}  // namespace velmora
