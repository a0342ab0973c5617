// A host whose actions have shortcuts of every kind. What happens in it is printed, a line an
// event: which action ran and in which window, each key and mouse button that reached the host, and
// the shortcuts that its actions have when a window closes and when it quits. What it is to do is
// read from standard input, a line a command:
//
//   window            opens one more window
//   close             closes the active window as its user would
//   refuse on|off     whether windows refuse to close
//   shortcuts         says what the actions of every window have
//   rebuild           replaces the actions of the first menu by new ones
//   add TITLE         adds an action to the first menu
//   reset             gives every action the shortcuts again that it began with
//   disable TITLE, enable TITLE
//   insist TITLE      from now on each change of that action is followed by that at once
//   give TITLE KEYS   gives that action a shortcut of the host's own
//   once TITLE        the action does not repeat with its key
//   bar on|off        shows or hides the menu bar of every window
//   dialog            opens a modal dialog with a field
//   greedy            the field with the focus wants every key for itself
//   unfocus           takes the keyboard focus from the field that has it
//   text              says what stands in the field with the focus
//   quit

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QToolBar>
#include <QVBoxLayout>

#include "Console.h"

namespace {

QString textOf(const QList<QKeySequence>& shortcuts) {
    return QKeySequence::listToString(shortcuts, QKeySequence::PortableText);
}

class Window : public QMainWindow {
public:
    explicit Window(int number) : number_(number) {
        setWindowTitle(QString("Window %1").arg(number));
        first_ = menuBar()->addMenu("&File");
        fill();
        QMenu* lazy = menuBar()->addMenu("&Lazy");
        connect(lazy, &QMenu::aboutToShow, this, [this, lazy] {
            if (lazy->isEmpty()) add(*lazy, "Late", {});
        });
        auto* bar = addToolBar("tools");
        auto* tool = new QAction("Tool", this);
        give(*tool, {QKeySequence("Ctrl+T"), QKeySequence("Alt+T")});
        bar->addAction(tool);
        for (const char* keys : {"Ctrl+Y", "Alt+Y"}) {
            auto* shortcut = new QShortcut(QKeySequence(keys), this);
            connect(shortcut, &QShortcut::activated, this, [this, keys] { ran(keys); });
        }
        auto* centre = new QWidget(this);
        auto* column = new QVBoxLayout(centre);
        auto* line = new QLineEdit;
        column->addWidget(line);
        column->addWidget(new QPlainTextEdit);
        column->addWidget(new QLabel("A place where a click does nothing."));
        setCentralWidget(centre);
        line->setFocus();
        resize(400, 300);
    }

    void fill() {
        first_->clear();
        add(*first_, "&New", {QKeySequence("Ctrl+N")})->setObjectName("actionNew");
        add(*first_, "&Open...",
            {QKeySequence("Ctrl+O"), QKeySequence("Ctrl+Shift+O"), QKeySequence("Alt+O")});
        add(*first_, "&Save", {QKeySequence("Ctrl+S"), QKeySequence("Ctrl+K, Ctrl+S")});
        add(*first_, "Key\tCtrl+E", {QKeySequence("Ctrl+E")});
        for (const char* title : {"One", "Two", "Three", "Four", "Five", "Six", "Seven", "Eight"})
            add(*first_, title, {});
    }

    QAction* add(QMenu& menu, const QString& title, const QList<QKeySequence>& shortcuts) {
        auto* action = menu.addAction(title);
        give(*action, shortcuts);
        return action;
    }

    void addLater(const QString& title) { add(*first_, title, {}); }

    void sayShortcuts(const QString& when) const {
        for (const QAction* action : actions_()) {
            say(QString("%1 %2 %3: %4")
                    .arg(when)
                    .arg(number_)
                    .arg(action->text().replace('\t', "\\t").remove('&'),
                         textOf(action->shortcuts())));
        }
    }

    void reset() {
        for (QAction* action : actions_()) action->setShortcuts(own(*action));
    }

    void setActionEnabled(const QString& title, bool enabled) {
        for (QAction* action : called(title)) action->setEnabled(enabled);
    }

    void giveTo(const QString& title, const QString& keys) {
        for (QAction* action : called(title)) action->setShortcut(QKeySequence(keys));
    }

    void stopRepeating(const QString& title) {
        for (QAction* action : called(title)) action->setAutoRepeat(false);
    }

    void insist(const QString& title) {
        for (QAction* action : called(title)) {
            connect(action, &QAction::changed, action, [action] {
                const auto wanted = own(*action);
                if (action->shortcuts() == wanted) return;
                say("insists");
                action->setShortcuts(wanted);
            });
        }
    }

    bool refuses = false;

protected:
    void closeEvent(QCloseEvent* event) override {
        sayShortcuts("closing");
        event->setAccepted(!refuses);
    }

private:
    static QList<QKeySequence> own(const QAction& action) {
        return QKeySequence::listFromString(action.property("own").toString(),
                                            QKeySequence::PortableText);
    }

    void give(QAction& action, const QList<QKeySequence>& shortcuts) {
        action.setShortcuts(shortcuts);
        action.setProperty("own", textOf(shortcuts));
        connect(&action, &QAction::triggered, this,
                [this, &action] { ran(action.text().section('\t', 0, 0).remove('&')); });
    }

    QList<QAction*> actions_() const {
        QList<QAction*> found;
        for (QAction* action : findChildren<QAction*>()) {
            if (action->property("own").isValid()) found << action;
        }
        return found;
    }

    QList<QAction*> called(const QString& title) const {
        QList<QAction*> found;
        for (QAction* action : actions_()) {
            if (action->text().remove('&') == title) found << action;
        }
        return found;
    }

    void ran(const QString& what) { say(QString("ran %1 %2").arg(number_).arg(what)); }

    int number_;
    QMenu* first_ = nullptr;
};

QList<Window*> windows() {
    QList<Window*> windows;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* window = dynamic_cast<Window*>(widget)) windows << window;
    }
    return windows;
}

/// Tells of the input that the host gets.
class Witness : public QObject {
protected:
    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
            case QEvent::ShortcutOverride: sayKey("override", *event); break;
            case QEvent::KeyPress: sayKey("press", *event); break;
            case QEvent::KeyRelease: sayKey("release", *event); break;
            case QEvent::MouseButtonPress: sayButton("press", *event); break;
            case QEvent::MouseButtonRelease: sayButton("release", *event); break;
            default: break;
        }
        return false;
    }

private:
    static void sayKey(const QString& what, const QEvent& event) {
        const auto& key = static_cast<const QKeyEvent&>(event);
        const QString again =
            key.isAutoRepeat() && key.type() == QEvent::KeyRelease ? "repeated " : "";
        say(again + what + " key " + QKeySequence(key.key()).toString(QKeySequence::PortableText));
    }
    static void sayButton(const QString& what, const QEvent& event) {
        const auto& mouse = static_cast<const QMouseEvent&>(event);
        say(what + QString(" button %1").arg(int(mouse.button())));
    }
};

class Host {
public:
    Host()
        : console_([this](const QString& command, const QString& rest) { obey(command, rest); }) {}

    void openWindow() {
        auto* window = new Window(++last_);
        window->move(40 + 460 * (last_ - 1), 60);
        window->show();
        say(QString("ready %1").arg(last_));
    }

private:
    void obey(const QString& command, const QString& rest) {
        if (command == "window") return openWindow();
        if (command == "quit") return QApplication::quit();
        if (command == "close") QApplication::activeWindow()->close();
        if (command == "text") sayText();
        // The window's own, which need not be active again yet.
        if (command == "greedy") windows().front()->focusWidget()->installEventFilter(&greed_);
        if (command == "unfocus") QApplication::focusWidget()->clearFocus();
        if (command == "dialog") openDialog();
        for (Window* window : windows()) {
            if (command == "refuse") window->refuses = rest == "on";
            if (command == "shortcuts") window->sayShortcuts("has");
            if (command == "rebuild") window->fill();
            if (command == "add") window->addLater(rest);
            if (command == "reset") window->reset();
            if (command == "disable") window->setActionEnabled(rest, false);
            if (command == "enable") window->setActionEnabled(rest, true);
            if (command == "insist") window->insist(rest);
            if (command == "give") window->giveTo(rest.section(' ', 0, 0), rest.section(' ', 1));
            if (command == "once") window->stopRepeating(rest);
            if (command == "bar") window->menuBar()->setVisible(rest == "on");
        }
    }

    static void openDialog() {
        auto* dialog = new QDialog(windows().first());
        dialog->setWindowTitle("Dialog");
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        (new QVBoxLayout(dialog))->addWidget(new QLineEdit);
        dialog->open();
    }

    static void sayText() {
        QString text;
        QWidget* widget = QApplication::focusWidget();
        if (const auto* line = qobject_cast<QLineEdit*>(widget)) text = line->text();
        if (const auto* view = qobject_cast<QPlainTextEdit*>(widget)) text = view->toPlainText();
        say("text " + text.replace('\n', "\\n"));
    }

    /// Takes every key from the shortcuts, as a terminal does.
    class Greed : public QObject {
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() != QEvent::ShortcutOverride) return false;
            event->accept();
            return true;
        }
    };

    Greed greed_;
    Console console_;
    int last_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    Witness witness;
    application.installEventFilter(&witness);
    QObject::connect(&application, &QApplication::aboutToQuit, [] {
        for (const Window* window : windows()) window->sayShortcuts("quitting");
    });
    Host host;
    host.openWindow();
    return QApplication::exec();
}
