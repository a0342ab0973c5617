// A host that wants all keys of its application for itself: it filters every event, takes part in
// the delivery of each, and has shortcuts that are in force in all of its windows. The keys of its
// own window it lets be. What reaches it of other windows' is printed, and what its commands do;
// what it is to do is read from standard input, a line a command:
//
//   filter    from here on it takes what it sees of other windows' keys
//   quit

#include <QApplication>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenuBar>
#include <QWindow>

#include "Console.h"

namespace {

bool isKey(const QEvent& event) {
    return event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease ||
           event.type() == QEvent::ShortcutOverride || event.type() == QEvent::InputMethod;
}

class Hunter : public QApplication {
public:
    Hunter(int& argc, char** argv) : QApplication(argc, argv) { installEventFilter(this); }

    /// The window that is let alone.
    QWidget* own = nullptr;
    bool takes = false;

    bool notify(QObject* receiver, QEvent* event) override {
        if (isForeign(*receiver, *event)) say("notify");
        return QApplication::notify(receiver, event);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool foreign = isForeign(*watched, *event);
        if (foreign) say("filter");
        return foreign && takes;
    }

private:
    bool isForeign(const QObject& receiver, const QEvent& event) const {
        if (!isKey(event) || !own) return false;
        if (receiver.isWindowType()) return &receiver != own->windowHandle();
        return receiver.isWidgetType() && static_cast<const QWidget&>(receiver).window() != own;
    }
};

}  // namespace

int main(int argc, char** argv) {
    Hunter application(argc, argv);
    QMainWindow window;
    window.setWindowTitle("Window 1");
    QMenu* file = window.menuBar()->addMenu("&File");
    QObject::connect(file->addAction("Say"), &QAction::triggered, [] { say("ran Say"); });
    for (const char* text :
         {"Escape", "Return", "Tab", "Ctrl+A", "a", "b", "1", "Ctrl+V, Ctrl+W"}) {
        QAction* action = file->addAction(QString("Hunt ") + text);
        action->setShortcut(QKeySequence(text));
        action->setShortcutContext(Qt::ApplicationShortcut);
        QObject::connect(action, &QAction::triggered, [action] { say("ran " + action->text()); });
    }
    window.setCentralWidget(new QWidget);
    window.setGeometry(40, 60, 500, 300);
    window.show();
    application.own = &window;
    const Console console([&](const QString& command, const QString&) {
        if (command == "filter") application.takes = true;
        if (command == "quit") QApplication::quit();
    });
    QMetaObject::invokeMethod(
        &window, [] { say("ready 1"); }, Qt::QueuedConnection);
    return QApplication::exec();
}
