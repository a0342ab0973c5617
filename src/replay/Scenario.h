#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/appkit/drawing/NSColor.h"
#include "platform/foundation/files/PropertyList.h"
#include "platform/headless/HeadlessTask.h"
#include "platform/headless/Transcript.h"
#include "platform/headless/input/InputNames.h"
#include "platform/headless/windows/HostDescription.h"
#include "platform/port/FileSystem.h"
#include "platform/port/Time.h"

namespace velmora {

struct Statement;

// What can stand in a scenario, one struct a kind of statement.

/// Starts the host of that name, which the statements that follow are about.
struct LaunchStep {
    std::shared_ptr<const HostDescription> host;
};

struct QuitStep {
    std::string host;
};

/// Statements about another host than the one around them.
struct InStep {
    std::string host;
    std::vector<Statement> statements;
};

struct ActivationStep {
    bool active = true;
};

struct ButtonStep {
    int button = 0;
    bool press = true;
};

/// Holds the modifier keys of these flags, or lets go of them; of all that are held without flags.
struct ModifierStep {
    std::vector<std::uint32_t> flags;
    bool hold = true;
};

struct MoveStep {
    NSPoint point;
    bool relative = false;
    Time duration{};
};

struct KeyStep {
    Key key;
    bool down = true;
    bool up = true;
};

/// Presses of these keys, one after the other.
struct TypeStep {
    std::vector<Key> keys;
};

/// Gives the keys to a text view.
struct FocusTextStep {
    std::string textView;
};

/// Closes the panel of ours that takes the keys, as its title bar's button does.
struct ClosePanelStep {};

/// Clicks a button in the panel of ours that takes the keys.
struct ClickButtonStep {
    std::string title;
};

/// What the user does in the panel of ours that takes the keys.
struct PanelStep {
    enum class Act {
        selectRows,  ///< these rows of the table, and no others
        clickCell,   ///< of the table: the row and the column of that name
        doubleClickCell,
        chooseInCell,  ///< the item of that path, in the cell's menu
        typeInCell,    ///< the text takes the place of the cell's
        dragRows,      ///< to before the row of that number, or onto it
        pressInTable,  ///< the mouse button of that number
        clickMatrix,   ///< the cell with that tag, in the matrix of that name
        moveSlider,
        typeInControl,  ///< the text takes the place of the field's or the text area's
        focus,
        movePanel
    };
    Act act = Act::selectRows;
    std::string name;
    std::string text;
    std::vector<int> rows;
    int number = 0;
    double value = 0;
    NSPoint point;
    bool onto = false;
};

struct ScrollStep {
    float deltaX = 0;
    float deltaY = 0;
};

struct WaitStep {
    Time duration{};
};

struct ChooseStep {
    std::string path;
    /// In the context menu of the view under the pointer, instead of the menu bar.
    bool inContextMenu = false;
};

/// A change of a file from outside the host. Names without a slash at the start are those of the
/// settings directory.
struct FileStep {
    enum class Change {
        write,
        remove,
        touch,
        writingFails,
        writingWorks,
        readingFails,
        readingForbidden,
        readingWorks
    };
    Change change = Change::write;
    std::string name;
    std::string contents;
    std::optional<NSDate> date;
};

/// What the host's own code does to its menus.
struct MenuStep {
    enum class Change { rename, enable, disable, remove, replaceItems, appendItems, replaceBar };
    Change change = Change::rename;
    std::string path;
    std::string title;
    std::vector<ItemDescription> items;
};

struct WindowStep {
    enum class Change { open, close, focus };
    Change change = Change::open;
    WindowDescription window;
};

/// What becomes of the processes that the host starts from here on.
struct ProcessStep {
    ProcessEnd end;
};

/// What happened since the last expectation of the same kind: exactly these, in this order.
struct HappenedExpectation {
    Transcript::Kind kind = Transcript::Kind::command;
    std::vector<std::string> wanted;
};

/// What is expected of all kinds together, as Transcript::happenings gives them.
struct OrderExpectation {
    std::vector<std::string> wanted;
};

struct FileExpectation {
    enum class Check { missing, exists, text, value, entries, reads, kept };
    Check check = Check::exists;
    std::string name;
    std::string text;
    /// For `value`: the whole file. For `entries`: a dictionary whose entries the file has too.
    PropertyList value;
    int reads = 0;
};

/// The titles of a menu's items; "-" is a separator. The menu bar has the path "".
struct MenuExpectation {
    std::string path;
    std::vector<std::string> titles;
};

/// Whether the user can choose it.
enum class Presence { enabled, disabled, missing };

struct ItemExpectation {
    Presence presence = Presence::enabled;
    std::string path;
};

struct KeyWindowExpectation {
    std::optional<std::string> title;
};

/// The panel of ours that takes the keys; none without a title.
struct PanelExpectation {
    std::optional<std::string> title;
    std::optional<NSPoint> origin;
};

/// A button in the panel of ours that takes the keys.
struct ButtonExpectation {
    Presence presence = Presence::enabled;
    std::string title;
};

/// What is to be seen in the panel of ours that takes the keys.
struct PanelStateExpectation {
    enum class Check {
        rows,  ///< of the table: the texts of each row's cells, with "|" between them
        selectedRows,
        columns,     ///< their titles
        control,     ///< the control of that name: its text or number, or on or off
        matrixCell,  ///< the cell with that tag in the matrix of that name: the same
        color,       ///< of its text
        drawer       ///< open or closed
    };
    Check check = Check::rows;
    std::string name;
    int number = 0;
    NSColor color;
    std::vector<std::string> wanted;
};

/// The window of ours that is only drawn, the trace of a stroke; none without a frame.
struct TraceWindowExpectation {
    std::optional<NSRect> frame;
    std::optional<double> alpha;
};

/// The text of a text view; without one, of the field in the panel that takes the keys.
struct TextExpectation {
    std::optional<std::string> textView;
    std::string text;
};

/// What the scroll view shows begins there, in the document's coordinates.
struct ScrollExpectation {
    std::string scrollView;
    NSPoint origin;
};

struct CursorExpectation {
    bool shown = true;
};

struct TimeExpectation {
    Time at{};
};

struct Statement {
    int line = 0;
    /// The statement as it was written.
    std::string text;
    std::variant<LaunchStep, QuitStep, InStep, ActivationStep, ButtonStep, ModifierStep, MoveStep,
                 KeyStep, TypeStep, FocusTextStep, ClosePanelStep, ClickButtonStep, PanelStep,
                 ScrollStep, WaitStep, ChooseStep, FileStep, MenuStep, WindowStep, ProcessStep,
                 HappenedExpectation, OrderExpectation, FileExpectation, MenuExpectation,
                 ItemExpectation, KeyWindowExpectation, PanelExpectation, PanelStateExpectation,
                 ButtonExpectation, TraceWindowExpectation, TextExpectation, ScrollExpectation,
                 CursorExpectation, TimeExpectation>
        what;
};

/// A scenario: what there is, what the user does and what must hold, in the order of the file.
struct Scenario {
    std::vector<Statement> statements;
};

/// Why and where a scenario is malformed.
struct ScenarioError {
    int line = 0;
    std::string reason;
};

}  // namespace velmora
