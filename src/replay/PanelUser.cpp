#include "replay/PanelUser.h"

#include <algorithm>

#include "platform/appkit/controls/NSButton.h"
#include "platform/appkit/controls/NSMatrix.h"
#include "platform/appkit/controls/NSPopUpButtonCell.h"
#include "platform/appkit/controls/NSSlider.h"
#include "platform/appkit/controls/NSTableView.h"
#include "platform/appkit/panels/NSPanel.h"
#include "platform/headless/input/HeadlessUser.h"
#include "platform/headless/windows/HeadlessMenu.h"

namespace velmora {

namespace {

using Act = PanelStep::Act;
using Check = PanelStateExpectation::Check;

std::string onOrOff(int state) {
    return state != NSOffState ? "on" : "off";
}

std::string textOfCell(const NSCell& cell) {
    if (const auto* popUp = dynamic_cast<const NSPopUpButtonCell*>(&cell))
        return popUp->faceTitle();
    if (dynamic_cast<const NSButtonCell*>(&cell)) return onOrOff(cell.state());
    return cell.stringValue();
}

std::string textOfRow(const NSTableView& table, int row) {
    std::string text;
    for (int column = 0; column < static_cast<int>(table.tableColumns().size()); ++column) {
        const NSCellRef cell = table.preparedCell(column, row);
        text += (column == 0 ? "" : "|") + (cell ? textOfCell(*cell) : std::string());
    }
    return text;
}

std::string textOfControl(const NSControl& control) {
    if (const auto* area = dynamic_cast<const NSTextView*>(&control)) return area->string();
    if (dynamic_cast<const NSSlider*>(&control)) {
        return textOf(PropertyList(control.doubleValue()));
    }
    return textOfCell(*control.cell());
}

int columnOf(const NSTableView& table, const std::string& identifier) {
    const auto& columns = table.tableColumns();
    const auto found = std::find_if(columns.begin(), columns.end(), [&](const auto& column) {
        return column->identifier() == identifier;
    });
    return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

template <class Kind>
std::shared_ptr<Kind> named(const NSPanel& panel, const std::string& name) {
    return std::dynamic_pointer_cast<Kind>(panel.controlNamed(name));
}

}  // namespace

std::shared_ptr<NSTableView> PanelUser::table() const {
    for (const NSControlRef& control : panel_.controls()) {
        if (auto table = std::dynamic_pointer_cast<NSTableView>(control)) return table;
    }
    return nullptr;
}

std::string PanelUser::act(const PanelStep& step) {
    switch (step.act) {
        case Act::clickMatrix: return clickMatrix(step);
        case Act::typeInControl: return typeInControl(step);
        case Act::movePanel: panel_.setFrameOrigin(step.point); return {};
        case Act::moveSlider: {
            const auto slider = named<NSSlider>(panel_, step.name);
            if (!slider) return "there is no slider " + step.name;
            slider->userMovedTo(step.value, true);
            return {};
        }
        case Act::focus: {
            const NSControlRef control = panel_.controlNamed(step.name);
            if (!control) return "there is no control " + step.name;
            return panel_.makeFirstResponder(control) ? "" : step.name + " takes no keys";
        }
        default: return actInTable(step);
    }
}

std::string PanelUser::clickMatrix(const PanelStep& step) {
    const auto matrix = named<NSMatrix>(panel_, step.name);
    if (!matrix) return "there is no matrix " + step.name;
    const auto& cells = matrix->cells();
    const auto found = std::find_if(cells.begin(), cells.end(), [&](const NSCellRef& cell) {
        return cell->tag() == step.number;
    });
    if (found == cells.end()) return step.name + " has no such cell";
    const int index = static_cast<int>(found - cells.begin());
    matrix->userClicked(index / matrix->numberOfColumns(), index % matrix->numberOfColumns());
    return {};
}

std::string PanelUser::typeInControl(const PanelStep& step) {
    const NSControlRef control = panel_.controlNamed(step.name);
    const auto field = std::dynamic_pointer_cast<NSTextField>(control);
    const auto area = std::dynamic_pointer_cast<NSTextView>(control);
    if (!(field && field->isEditable()) && !(area && area->isEditable())) {
        return "nobody can type in " + step.name;
    }
    panel_.userFocused(control);
    if (area) {
        area->userChangedText(step.text);
    } else {
        field->userChangedText(step.text);
        field->userEndedEditing();
    }
    return {};
}

std::string PanelUser::actInTable(const PanelStep& step) {
    const auto table = this->table();
    if (!table) return "the panel has no table";
    for (const int row : step.rows) {
        if (row >= table->numberOfRows()) return "there is no row " + std::to_string(row);
    }
    panel_.userFocused(table);
    std::vector<int> rows = step.rows;
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    if (step.act == Act::selectRows) {
        table->userSelectedRows(rows, step.rows.empty() ? -1 : step.rows.back());
    } else if (step.act == Act::dragRows) {
        const auto where = step.onto ? NSTableViewDropOn : NSTableViewDropAbove;
        if (step.number > table->numberOfRows()) return "there is no such place";
        if (!table->userBeganDrag(rows)) return "these rows are not to be dragged";
        if (!table->userDropped(step.number, where)) return "the drop is refused";
    } else if (step.act != Act::pressInTable) {
        return actInCell(step, *table);
    }
    return {};
}

std::string PanelUser::actInCell(const PanelStep& step, NSTableView& table) {
    const int column = columnOf(table, step.name);
    if (column < 0) return "there is no column " + step.name;
    const int row = step.rows.front();
    if (!table.isRowSelected(row)) table.userSelectedRows({row}, row);
    if (step.act == Act::clickCell) {
        table.userClicked(column, row);
    } else if (step.act == Act::doubleClickCell) {
        table.userDoubleClicked(column, row, nullptr);
    } else if (step.act == Act::typeInCell) {
        table.userDoubleClicked(column, row, nullptr);
        if (table.editedRow() != row || table.editedColumn() != column) {
            return "this cannot be edited";
        }
        table.userEdited(column, row, step.text);
    } else {
        const auto cell =
            std::dynamic_pointer_cast<NSPopUpButtonCell>(table.preparedCell(column, row));
        // The first item of a menu that is pulled down is its face, which nobody can choose.
        const int first = cell && cell->pullsDown() ? 1 : 0;
        const NSMenuItemRef item =
            cell && cell->menu() ? menuItemAtPath(*cell->menu(), step.text, first) : nullptr;
        if (!item || item->hasSubmenu()) return "there is no item " + step.text;
        HeadlessUser::clickInMenu();
        table.userChose(*item, column, row);
    }
    return {};
}

std::vector<std::string> PanelUser::look(const PanelStateExpectation& expected) const {
    const auto table = this->table();
    std::vector<std::string> seen;
    if (expected.check == Check::rows && table) {
        for (int row = 0; row < table->numberOfRows(); ++row) {
            seen.push_back(textOfRow(*table, row));
        }
    } else if (expected.check == Check::selectedRows && table) {
        for (const int row : table->selectedRowEnumerator()) seen.push_back(std::to_string(row));
    } else if (expected.check == Check::columns && table) {
        for (const NSTableColumnRef& column : table->tableColumns()) {
            seen.push_back(column->headerCell()->stringValue());
        }
    } else if (expected.check == Check::control) {
        const NSControlRef control = panel_.controlNamed(expected.name);
        if (control) seen.push_back(textOfControl(*control));
    } else if (expected.check == Check::drawer && panel_.drawer()) {
        seen.emplace_back(panel_.drawer()->isOpen() ? "open" : "closed");
    } else if (const auto matrix = named<NSMatrix>(panel_, expected.name)) {
        const NSCellRef cell = matrix->cellWithTag(expected.number);
        const auto* text = dynamic_cast<const NSTextFieldCell*>(cell.get());
        if (expected.check == Check::matrixCell && cell) {
            seen.push_back(textOfCell(*cell));
        } else if (expected.check == Check::color && text) {
            const bool holds = text->textColor() == expected.color;
            seen.push_back(holds ? expected.wanted.front() : "another colour");
        }
    }
    return seen;
}

}  // namespace velmora
