// What ScenarioPlayer looks at.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <sstream>

#include "platform/foundation/files/FileHistory.h"
#include "platform/foundation/files/PropertyListFile.h"
#include "platform/headless/windows/HeadlessScrollView.h"
#include "platform/headless/windows/HeadlessText.h"
#include "replay/PanelUser.h"
#include "replay/ScenarioPlayer.h"
#include "replay/ScenarioTables.h"

namespace velmora {

namespace {

/// Lines of thirds of a point do not add up exactly.
constexpr float scrollTolerance = 0.01F;

std::string list(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) all += (all.empty() ? "\"" : " \"") + text + '"';
    return all.empty() ? "nothing" : all;
}

std::string milliseconds(Time time) {
    return std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(time).count()) +
           " ms";
}

std::string coordinates(NSPoint point) {
    std::ostringstream text;
    text << "at " << point.x << ' ' << point.y;
    return text.str();
}

std::string frameText(NSRect frame) {
    std::ostringstream text;
    text << coordinates(frame.origin) << " size " << frame.size.width << ' ' << frame.size.height;
    return text.str();
}

/// Whether the dictionary has all entries of the other.
bool holdsEntries(const PropertyList& value, const PropertyList& entries) {
    const NSDictionary* dictionary = value.dictionary();
    const NSDictionary* wanted = entries.dictionary();
    if (!dictionary || !wanted) return false;
    return std::all_of(wanted->entries().begin(), wanted->entries().end(), [&](const auto& entry) {
        const PropertyList* found = dictionary->objectForKey(entry.first);
        return found && *found == entry.second;
    });
}

}  // namespace

void ScenarioPlayer::failed(const std::string& wanted, const std::string& got) {
    fail(statement_->text + "\n    wanted: " + wanted + "\n    got:    " + got);
}

void ScenarioPlayer::act(const HappenedExpectation& expected) {
    std::size_t& seen = seen_[{process().name(), expected.kind}];
    const std::vector<std::string> got =
        session_.transcript().texts(expected.kind, process().name(), seen);
    seen = session_.transcript().entries().size();
    if (got == expected.wanted) return;
    if (expected.kind == Transcript::Kind::beep) {
        failed(std::to_string(expected.wanted.size()), std::to_string(got.size()));
    } else {
        failed(list(expected.wanted), list(got));
    }
}

void ScenarioPlayer::act(const OrderExpectation& expected) {
    std::size_t& seen = seen_[{process().name(), std::nullopt}];
    const std::vector<std::string> got = session_.transcript().happenings(process().name(), seen);
    seen = session_.transcript().entries().size();
    if (got != expected.wanted) failed(list(expected.wanted), list(got));
}

void ScenarioPlayer::act(const FileExpectation& expected) {
    using Check = FileExpectation::Check;
    const std::string path = pathOf(expected.name);
    if (expected.check == Check::reads) {
        const int reads = session_.files().readsOf(path);
        if (reads != expected.reads) {
            failed(std::to_string(expected.reads), std::to_string(reads));
        }
        return;
    }
    if (expected.check == Check::kept) {
        if (FileHistory(session_.files(), path).versions().empty()) failed("a version", "none");
        return;
    }
    const auto contents = session_.files().memory().contentsOfFile(path, SIZE_MAX);
    if (expected.check == Check::missing) {
        if (contents) failed("no file", *contents);
    } else if (!contents) {
        failed("a file", "no file " + path);
    } else if (expected.check == Check::text) {
        if (*contents != expected.text) failed(expected.text, *contents);
    } else if (expected.check != Check::exists) {
        const auto value = propertyListFromData(*contents);
        const bool holds =
            value && (expected.check == Check::entries ? holdsEntries(*value, expected.value)
                                                       : *value == expected.value);
        if (!holds)
            failed(describeValue(expected.value), value ? describeValue(*value) : *contents);
    }
}

void ScenarioPlayer::act(const MenuExpectation& expected) {
    const NSMenuRef menu = menuAt(expected.path);
    if (!menu) {
        failed(list(expected.titles), "no menu " + expected.path);
        return;
    }
    std::vector<std::string> titles;
    for (const NSMenuItemRef& item : menu->itemArray()) {
        titles.push_back(item->isSeparatorItem() ? "-" : item->title());
    }
    if (titles != expected.titles) failed(list(expected.titles), list(titles));
}

void ScenarioPlayer::expectPresence(Presence wanted, Presence got) {
    const auto name = [](Presence presence) {
        return presence == Presence::enabled    ? "enabled"
               : presence == Presence::disabled ? "disabled"
                                                : "missing";
    };
    if (got != wanted) failed(name(wanted), name(got));
}

void ScenarioPlayer::act(const ItemExpectation& expected) {
    const NSMenuItemRef item = itemAt(expected.path);
    expectPresence(expected.presence, !item               ? Presence::missing
                                      : item->isEnabled() ? Presence::enabled
                                                          : Presence::disabled);
}

void ScenarioPlayer::act(const ButtonExpectation& expected) {
    const HeadlessPanel* panel = host().frontPanel();
    const NSButtonRef button = panel ? panel->buttonTitled(expected.title) : nullptr;
    expectPresence(expected.presence, !button               ? Presence::missing
                                      : button->isEnabled() ? Presence::enabled
                                                            : Presence::disabled);
}

void ScenarioPlayer::act(const KeyWindowExpectation& expected) {
    const NSWindowRef window = host().keyWindow();
    std::optional<std::string> title;
    if (const auto* panel = dynamic_cast<const NSPanel*>(window.get())) {
        title = panel->title();
    } else if (window) {
        title = static_cast<const HeadlessWindow&>(*window).title();
    }
    if (title != expected.title) {
        failed(expected.title.value_or("no key window"), title.value_or("no key window"));
    }
}

void ScenarioPlayer::act(const PanelExpectation& expected) {
    HeadlessPanel* panel = host().frontPanel();
    if (panel ? panel->title() != expected.title : expected.title.has_value()) {
        failed(expected.title.value_or("no panel"), panel ? panel->title() : "no panel");
    } else if (panel && expected.origin && panel->frame().origin != *expected.origin) {
        failed(coordinates(*expected.origin), coordinates(panel->frame().origin));
    }
}

void ScenarioPlayer::act(const PanelStateExpectation& expected) {
    HeadlessPanel* panel = host().frontPanel();
    if (!panel) return failed(list(expected.wanted), "no panel");
    const std::vector<std::string> seen = PanelUser(panel->panel()).look(expected);
    if (seen != expected.wanted) failed(list(expected.wanted), list(seen));
}

void ScenarioPlayer::act(const TraceWindowExpectation& expected) {
    constexpr double accuracy = 1e-4;
    const HeadlessDrawnWindow* window = host().drawnWindow();
    const std::string got = window ? frameText(window->frame()) : "no trace window";
    if (expected.frame ? !window || window->frame() != *expected.frame : window != nullptr) {
        failed(expected.frame ? frameText(*expected.frame) : "no trace window", got);
    } else if (window && expected.alpha &&
               std::abs(static_cast<double>(window->alphaValue()) - *expected.alpha) > accuracy) {
        failed("alpha " + std::to_string(*expected.alpha),
               "alpha " + std::to_string(window->alphaValue()));
    }
}

void ScenarioPlayer::act(const TextExpectation& expected) {
    std::optional<std::string> text;
    if (expected.textView) {
        const HeadlessTextView* view = host().textViewNamed(*expected.textView);
        if (view) text = view->text();
    } else if (const HeadlessPanel* panel = host().frontPanel(); panel && panel->field()) {
        text = panel->field()->stringValue();
    }
    if (text != expected.text) {
        failed('"' + expected.text + '"', text ? '"' + *text + '"' : "nothing of that name");
    }
}

void ScenarioPlayer::act(const ScrollExpectation& expected) {
    HeadlessScrollView* view = host().scrollViewNamed(expected.scrollView);
    const NSPoint got = view ? view->documentVisibleRect().origin : NSPoint();
    const bool holds = view && std::abs(got.x - expected.origin.x) < scrollTolerance &&
                       std::abs(got.y - expected.origin.y) < scrollTolerance;
    if (!holds) {
        failed(coordinates(expected.origin), view ? coordinates(got) : "nothing of that name");
    }
}

void ScenarioPlayer::act(const CursorExpectation& expected) {
    const auto name = [](bool shown) {
        return shown ? "a pushed cursor" : "the host's own cursor";
    };
    const bool shown = host().showsCursor();
    if (shown != expected.shown) failed(name(expected.shown), name(shown));
}

void ScenarioPlayer::act(const TimeExpectation& expected) {
    const Time now = session_.clock().now();
    if (now != expected.at) failed(milliseconds(expected.at), milliseconds(now));
}

}  // namespace velmora
