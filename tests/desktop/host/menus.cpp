// A host with menus, windows and context menus of all kinds. What happens in it is printed, a line
// an event; what it is to do is read from standard input, a line a command:
//
//   window              opens one more window
//   close WINDOW        closes and destroys it
//   rename TITLE=TITLE  gives an action another text, in every window
//   disable TITLE, enable TITLE
//   rebuild             empties the first menu of every window and fills it anew
//   wipe                the same, deleting whatever stands in it
//   bar                 gives every window a new menu bar
//   places              says where the areas of every window are: the middles, on the screen
//   items               says where the items of the open menus are: the same
//   quit

#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QDockWidget>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QToolButton>
#include <QTreeWidget>
#include <functional>
#include <stdexcept>

#include "Console.h"

namespace {

/// An area that answers a context-menu event by code of its own.
class Area : public QLabel {
public:
    using Answer = std::function<void(Area&, QPoint)>;
    Area(const QString& name, Answer answer) : QLabel(name), answer_(std::move(answer)) {
        setObjectName(name);
        setFrameShape(QFrame::Box);
    }

protected:
    void contextMenuEvent(QContextMenuEvent* event) override {
        if (!answer_) return QLabel::contextMenuEvent(event);
        answer_(*this, event->globalPos());
    }
    void mousePressEvent(QMouseEvent* event) override {
        say(QString("press %1 %2").arg(objectName()).arg(event->button()));
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        say(QString("release %1 %2").arg(objectName()).arg(event->button()));
    }

private:
    Answer answer_;
};

class Window : public QMainWindow {
public:
    explicit Window(int number) : number_(number) {
        setWindowTitle(QString("Window %1").arg(number));
        setAttribute(Qt::WA_DeleteOnClose);
        makeBar();
        makeAreas();
        resize(520, 420);
    }

    void makeBar() {
        auto* bar = new QMenuBar(this);
        file_ = bar->addMenu("&File");
        fillFile();
        makeFilledMenus(*bar);
        makeToolsMenu(*bar);
        makeDeepMenu(*bar);
        setMenuBar(bar);
    }

    void fillFile() {
        file_->clear();
        add(*file_, "&New")->setObjectName("actionNew");
        add(*file_, "&Open...")->setObjectName("actionOpen");
        file_->addSeparator();
        add(*file_, QString("Only in %1").arg(number_));
        file_->addSeparator();
        add(*file_, "&Quit")->setObjectName("actionQuit");
    }

    void wipe() {
        qDeleteAll(file_->actions());
        fillFile();
    }

    int number() const { return number_; }

    void sayPlaces() const {
        for (const QWidget* area : areas_) {
            const QPoint middle = area->mapToGlobal(area->rect().center());
            say(QString("place %1 %2 %3 %4")
                    .arg(number_)
                    .arg(area->objectName())
                    .arg(middle.x())
                    .arg(middle.y()));
        }
    }

protected:
    void changeEvent(QEvent* event) override {
        if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
            say(QString("active %1").arg(number_));
        }
        QMainWindow::changeEvent(event);
    }
    void showEvent(QShowEvent* event) override {
        QMainWindow::showEvent(event);
        QMetaObject::invokeMethod(
            this, [this] { say(QString("ready %1").arg(number_)); }, Qt::QueuedConnection);
    }

private:
    QAction* add(QMenu& menu, const QString& text) {
        QAction* action = menu.addAction(text);
        connect(action, &QAction::triggered, this, [this, action] { ran(*action); });
        return action;
    }

    void ran(const QAction& action) {
        const QString state = action.isCheckable() ? action.isChecked() ? " on" : " off" : "";
        say(QString("ran %1 %2%3").arg(number_).arg(action.text(), state));
    }

    // Menus that their opening fills: once, each time anew, and only for as long as they are open.
    void makeFilledMenus(QMenuBar& bar) {
        QMenu* lazy = bar.addMenu("&Lazy");
        connect(lazy, &QMenu::aboutToShow, this, [this, lazy] {
            say("fills Lazy");
            if (!lazy->isEmpty()) return;
            add(*lazy, "First");
            add(*lazy->addMenu("Deeper"), "Second");
        });
        QMenu* recent = bar.addMenu("&Recent");
        connect(recent, &QMenu::aboutToShow, this, [this, recent] {
            recent->clear();
            add(*recent, "one.txt");
            add(*recent, "two.txt");
        });
        QMenu* fleeting = bar.addMenu("Fleeting");
        connect(fleeting, &QMenu::aboutToShow, this, [this, fleeting] { add(*fleeting, "Now"); });
        connect(fleeting, &QMenu::aboutToHide, fleeting, &QMenu::clear, Qt::QueuedConnection);
    }

    void makeDeepMenu(QMenuBar& bar) {
        QMenu* menu = bar.addMenu("Deep");
        for (int level = 2; level <= 40; ++level) {
            add(*menu, QString("Item %1").arg(level));
            menu = menu->addMenu(QString::number(level));
        }
    }

    void makeToolsMenu(QMenuBar& bar) {
        QMenu* tools = bar.addMenu(QString::fromUtf8("ツール(&T)"));
        add(*tools, "This && &That\tCtrl+T");
        add(*tools, "Either/Or");
        add(*tools, "Checked")->setCheckable(true);
        add(*tools, "Disabled")->setEnabled(false);
        add(*tools, "Hidden")->setVisible(false);
        add(*tools, QString());
        QAction* dialog = add(*tools, "Dialog...");
        connect(dialog, &QAction::triggered, this, [this] { runDialog("Dialog"); });
        // Like hosts that validate when a menu opens and let everything be used while it is closed.
        QAction* validated = add(*tools, "Validated");
        connect(tools, &QMenu::aboutToShow, this, [validated] { validated->setEnabled(false); });
        connect(tools, &QMenu::aboutToHide, this, [validated] { validated->setEnabled(true); });
        // Or the other way round.
        QAction* woken = add(*tools, "Woken");
        woken->setEnabled(false);
        connect(tools, &QMenu::aboutToShow, this, [woken] { woken->setEnabled(true); });
    }

    void runDialog(const QString& title) {
        QDialog dialog(this);
        dialog.setWindowTitle(title);
        dialog.resize(200, 100);
        say("opens " + title);
        dialog.exec();
        say("closes " + title);
    }

    void makeAreas() {
        auto* centre = new QWidget(this);
        auto* grid = new QGridLayout(centre);
        auto place = [&, index = 0](QWidget* widget, const QString& name) mutable {
            widget->setObjectName(name);
            areas_ << widget;
            grid->addWidget(widget, index / 2, index % 2);
            ++index;
        };
        place(new Area("exec", [this](Area& area, QPoint at) { execMenu(area, at); }), "exec");
        place(new Area("popup", [this](Area& area, QPoint at) { popUpMenu(area, at); }), "popup");
        place(new Area("throws", [](Area&, QPoint) { throw std::runtime_error("no menu today"); }),
              "throws");
        place(new Area("dialog", [this](Area&, QPoint) { runDialog("Instead"); }), "dialog");
        auto* actions = new Area("actions", nullptr);
        actions->setContextMenuPolicy(Qt::ActionsContextMenu);
        for (const char* text : {"Cut It", "Keep It", "Tick It"}) {
            auto* action = new QAction(text, actions);
            action->setCheckable(text == QByteArray("Tick It"));
            connect(action, &QAction::triggered, this, [this, action] { ran(*action); });
            actions->addAction(action);
        }
        place(actions, "actions");
        place(new QLineEdit("a line of text"), "line");
        place(new QPlainTextEdit("some text\nto choose from"), "text");
        auto* tree = new QTreeWidget;
        tree->setHeaderHidden(true);
        for (const char* name : {"leaf", "branch"})
            tree->addTopLevelItem(new QTreeWidgetItem({name}));
        tree->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(tree, &QWidget::customContextMenuRequested, this, [this, tree](QPoint at) {
            const QTreeWidgetItem* item = tree->itemAt(at);
            QMenu menu;
            add(menu, item ? "Prune " + item->text(0) : QString("Plant"));
            menu.exec(tree->viewport()->mapToGlobal(at));
        });
        place(tree, "tree");
        // One menu for a button and for the area beside it.
        auto* tool = new QToolButton;
        auto* tools = new QMenu(tool);
        add(*tools, "Hammer");
        tool->setMenu(tools);
        tool->setPopupMode(QToolButton::InstantPopup);
        place(tool, "tool");
        place(new Area("shared", [tools](Area&, QPoint at) { tools->popup(at); }), "shared");
        setCentralWidget(centre);
        auto* dock = new QDockWidget("Dock", this);
        dock->setWidget(new QPlainTextEdit);
        addDockWidget(Qt::BottomDockWidgetArea, dock);
        dock->setObjectName("dock");
    }

    void fillContextMenu(QMenu& menu) {
        connect(&menu, &QMenu::aboutToShow, this, [] { say("context menu opens"); });
        menu.addAction("&Paint\tCtrl+P");
        menu.addSeparator();
        menu.addAction("Off")->setEnabled(false);
        QMenu* more = menu.addMenu("&More");
        connect(more, &QMenu::aboutToShow, more, [more] {
            if (more->isEmpty()) more->addAction("&Varnish");
        });
        menu.addAction("Ask...");
    }

    /// The host waits for the choice and acts on it then.
    void execMenu(Area& area, QPoint at) {
        QMenu menu(&area);
        fillContextMenu(menu);
        const QAction* chosen = menu.exec(at);
        say(QString("chosen %1 %2").arg(number_).arg(chosen ? chosen->text() : "nothing"));
        if (chosen && chosen->text() == "Ask...") runDialog("Asked");
    }

    /// One menu for all times, whose signal tells of the choice.
    void popUpMenu(Area& area, QPoint at) {
        if (!popUp_) {
            popUp_ = new QMenu(&area);
            fillContextMenu(*popUp_);
            connect(popUp_, &QMenu::triggered, this, [this](const QAction* action) {
                say(QString("triggered %1 %2").arg(number_).arg(action->text()));
                if (action->text() == "Ask...") runDialog("Asked");
            });
        }
        popUp_->popup(at);
    }

    int number_;
    QMenu* file_ = nullptr;
    QMenu* popUp_ = nullptr;
    QList<QWidget*> areas_;
};

class Host {
public:
    Host()
        : console_([this](const QString& command, const QString& rest) { obey(command, rest); }) {}

    void openWindow() {
        auto* window = new Window(++last_);
        window->move(40 + 560 * ((last_ - 1) % 2), 60 + 40 * ((last_ - 1) / 2));
        window->show();
    }

private:
    void obey(const QString& command, const QString& rest) {
        if (command == "window") return openWindow();
        if (command == "items") return sayItems();
        if (command == "quit") return QApplication::quit();
        for (Window* window : windows()) {
            if (command == "close" && window->number() == rest.toInt())
                delete window;
            else if (command == "rebuild")
                window->fillFile();
            else if (command == "wipe")
                window->wipe();
            else if (command == "bar")
                window->makeBar();
            else if (command == "places")
                window->sayPlaces();
            else
                change(*window, command, rest);
        }
    }

    void change(Window& window, const QString& command, const QString& rest) {
        for (QAction* action : window.menuBar()->findChildren<QAction*>()) {
            if (action->text() != rest.section('=', 0, 0)) continue;
            if (command == "rename") action->setText(rest.section('=', 1));
            if (command == "disable" || command == "enable")
                action->setEnabled(command == "enable");
        }
    }

    static void sayItems() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* menu = qobject_cast<QMenu*>(widget);
            if (!menu || !menu->isVisible()) continue;
            for (QAction* action : menu->actions()) {
                const QPoint middle = menu->mapToGlobal(menu->actionGeometry(action).center());
                say(QString("item %1 %2 %3")
                        .arg(middle.x())
                        .arg(middle.y())
                        .arg(action->text().section('\t', 0, 0)));
            }
        }
    }

    static QList<Window*> windows() {
        QList<Window*> windows;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* window = dynamic_cast<Window*>(widget)) windows << window;
        }
        return windows;
    }

    Console console_;
    int last_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    Host host;
    host.openWindow();
    return QApplication::exec();
}
