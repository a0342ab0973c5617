// The controls, columns, drawers and panels of an InterfaceFile.

#include <optional>
#include <vector>

#include "platform/appkit/controls/NSButton.h"
#include "platform/appkit/controls/NSImageView.h"
#include "platform/appkit/controls/NSMatrix.h"
#include "platform/appkit/controls/NSSlider.h"
#include "platform/appkit/controls/NSTableView.h"
#include "platform/appkit/controls/NSTextField.h"
#include "platform/appkit/controls/NSTextView.h"
#include "platform/appkit/panels/InterfaceFile.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

constexpr double largestImage = 1024;
constexpr double largestLength = 10'000;
constexpr double largestValue = 1e6;
constexpr int largestTag = 1'000'000;
constexpr int mostRows = 100;

std::optional<NSSize> imageSizeOf(InterfaceDescription& description) {
    const std::optional<double> points = description.number("imageSize", 1, largestImage);
    if (!points) return std::nullopt;
    return NSSize{static_cast<float>(*points), static_cast<float>(*points)};
}

float lengthOf(InterfaceDescription& description, std::string_view key, float otherwise) {
    return static_cast<float>(
        description.number(key, 1, largestLength).value_or(static_cast<double>(otherwise)));
}

NSMatrixMode modeOf(InterfaceDescription& description) {
    const std::string mode = description.text("mode");
    if (mode == "checks") return NSTrackModeMatrix;
    if (mode == "radio") return NSRadioModeMatrix;
    if (mode != "texts") description.fail("mode", "neither checks nor radio nor texts");
    return NSListModeMatrix;
}

void describeButton(InterfaceDescription& description, NSButton& button) {
    const std::string type = description.text("type");
    if (type == "switch") {
        button.setButtonType(NSSwitchButton);
    } else if (!type.empty() && type != "push") {
        description.fail("type", "neither push nor switch");
    }
    const std::string key = description.text("keyEquivalent");
    if (key == "return") {
        button.setKeyEquivalent("\r");
    } else if (key == "escape") {
        button.setKeyEquivalent("\x1B");
    } else if (!key.empty()) {
        description.fail("keyEquivalent", "neither return nor escape");
    }
    if (description.flag("imageOnly", false)) button.setImagePosition(NSImageOnly);
    if (const auto size = imageSizeOf(description)) button.setImageSize(*size);
    if (!description.flag("hidden", false)) return;
    button.setTransparent(true);
    button.setEnabled(false);
}

void describeSlider(InterfaceDescription& description, NSSlider& slider) {
    const double least = description.number("minValue", -largestValue, largestValue).value_or(0);
    slider.setMinValue(least);
    slider.setMaxValue(description.number("maxValue", least, largestValue).value_or(least + 1));
    slider.setDoubleValue(least);
    slider.setContinuous(description.flag("continuous", true));
}

std::vector<int> tagsOf(InterfaceDescription& description) {
    std::vector<int> tags;
    if (!description.has("tags")) return tags;
    for (const PropertyList& tag : description.array("tags")) {
        const std::optional<int> number = tag.intValue();
        if (!number) description.fail("tags", "not only numbers");
        tags.push_back(*number);
    }
    return tags;
}

void describeMatrix(InterfaceDescription& description, NSMatrix& matrix,
                    const InterfaceFile::Localize& localize) {
    const std::vector<int> tags = tagsOf(description);
    const std::vector<std::string> titles = description.texts("titles");
    const std::vector<NSCellRef>& cells = matrix.cells();
    if (!tags.empty() && tags.size() != cells.size()) {
        description.fail("tags", "not one for each cell");
    }
    const bool imageOnly = description.flag("imageOnly", false);
    const std::optional<NSSize> size = imageSizeOf(description);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (!tags.empty()) cells[i]->setTag(tags[i]);
        if (size) cells[i]->setImageSize(*size);
        const std::string title = titles.empty() ? "" : localize(titles[i % titles.size()]);
        if (auto* button = dynamic_cast<NSButtonCell*>(cells[i].get())) {
            button->setTitle(title);
            if (imageOnly) button->setImagePosition(NSImageOnly);
        } else {
            cells[i]->setStringValue(title);
        }
    }
}

}  // namespace

template <class Kind>
std::shared_ptr<Kind> InterfaceFile::objectOfKind(const std::string& name, const std::string& place,
                                                  const char* kind) {
    auto object = std::dynamic_pointer_cast<Kind>(objectNamed(name, place));
    if (!object) throw InterfaceError{place, "'" + name + "' is no " + kind};
    return object;
}

NSControlRef InterfaceFile::makeControl(InterfaceDescription& description,
                                        const std::string& name) {
    const std::string kind = description.text("class");
    NSControlRef control;
    if (kind == "NSMatrix") {
        const NSMatrixMode mode = modeOf(description);
        const int rows = description.integer("rows", 1, mostRows, 1);
        control =
            std::make_shared<NSMatrix>(mode, rows, description.integer("columns", 1, mostRows, 1));
    } else {
        Class* named = Class::named(kind);
        control = std::dynamic_pointer_cast<NSControl>(named ? named->alloc() : nullptr);
    }
    if (!control) description.fail("class", "unknown class '" + kind + "'");
    control->setName(name);
    control->setTag(description.integer("tag", -largestTag, largestTag, 0));
    control->setEnabled(description.flag("enabled", true));
    Id target;
    control->setAction(actionOf(description, target));
    control->setTarget(target);
    describeKind(description, *control);
    return control;
}

void InterfaceFile::describeKind(InterfaceDescription& description, NSControl& control) {
    if (auto* button = dynamic_cast<NSButton*>(&control)) {
        button->setTitle(title(description));
        describeButton(description, *button);
    } else if (auto* field = dynamic_cast<NSTextField*>(&control)) {
        field->setStringValue(title(description, "text"));
        field->setEditable(description.flag("editable", true));
        if (const Id delegate = ownerFor(description, "delegate")) field->setDelegate(delegate);
    } else if (auto* area = dynamic_cast<NSTextView*>(&control)) {
        area->setEditable(description.flag("editable", true));
        area->setDelegate(ownerFor(description, "delegate"));
    } else if (auto* slider = dynamic_cast<NSSlider*>(&control)) {
        describeSlider(description, *slider);
    } else if (auto* matrix = dynamic_cast<NSMatrix*>(&control)) {
        describeMatrix(description, *matrix, localize_);
    } else if (auto* table = dynamic_cast<NSTableView*>(&control)) {
        for (const std::string& column : description.texts("columns")) {
            table->addTableColumn(
                objectOfKind<NSTableColumn>(column, description.place() + ".columns", "column"));
        }
        table->setDataSource(ownerFor(description, "dataSource"));
        table->setDelegate(ownerFor(description, "delegate"));
        table->setRowHeight(lengthOf(description, "rowHeight", table->rowHeight()));
        table->setAllowsMultipleSelection(description.flag("multipleSelection", true));
    } else if (dynamic_cast<NSImageView*>(&control)) {
        if (const auto size = imageSizeOf(description)) control.cell()->setImageSize(*size);
    }
}

NSTableColumnRef InterfaceFile::makeColumn(InterfaceDescription& description) {
    auto column = std::make_shared<NSTableColumn>(description.text("identifier"));
    if (column->identifier().empty()) description.fail("identifier", "no text");
    column->headerCell()->setStringValue(title(description));
    column->setMinWidth(lengthOf(description, "minWidth", column->minWidth()));
    column->setWidth(lengthOf(description, "width", column->width()));
    column->setEditable(description.flag("editable", true));
    column->setResizable(description.flag("resizable", true));
    return column;
}

NSContentDrawerRef InterfaceFile::makeDrawer(InterfaceDescription& description) {
    auto drawer = std::make_shared<NSContentDrawer>(objectOfKind<NSControl>(
        description.text("content"), description.place() + ".content", "control"));
    const NSSize size = drawer->contentSize();
    drawer->setContentSize(
        {lengthOf(description, "width", size.width), lengthOf(description, "height", size.height)});
    return drawer;
}

NSPanelRef InterfaceFile::makePanel(InterfaceDescription& description) {
    std::vector<NSPanel::Row> rows;
    for (const PropertyList& cells : description.array("rows")) {
        const std::string place =
            description.place() + ".rows[" + std::to_string(rows.size()) + "]";
        if (!cells.array()) throw InterfaceError{place, "no array"};
        rows.emplace_back();
        for (const PropertyList& cell : *cells.array()) {
            rows.back().push_back(makeCell(cell, place));
        }
    }
    auto panel = std::make_shared<NSPanel>(title(description), std::move(rows));
    panel->setDelegate(ownerFor(description, "delegate"));
    if (description.has("drawer")) {
        panel->setDrawer(objectOfKind<NSContentDrawer>(description.text("drawer"),
                                                       description.place() + ".drawer", "drawer"));
    }
    return panel;
}

NSPanel::Cell InterfaceFile::makeCell(const PropertyList& cell, const std::string& place) {
    if (cell.string()) return objectOfKind<NSControl>(*cell.string(), place, "control");
    if (!cell.dictionary())
        throw InterfaceError{place, "a cell that is neither a name nor a label"};
    InterfaceDescription description(&cell, place);
    if (!description.has("matrix")) {
        if (!description.has("label")) {
            throw InterfaceError{place, "a cell that is neither a name nor a label"};
        }
        NSPanel::Label label{title(description, "label")};
        description.end();
        return label;
    }
    auto matrix = objectOfKind<NSMatrix>(description.text("matrix"), place + ".matrix", "matrix");
    const int row = description.integer("row", 0, matrix->numberOfRows() - 1, 0);
    description.end();
    return NSPanel::MatrixRow(std::move(matrix), row);
}

}  // namespace velmora
