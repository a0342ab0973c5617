// A host that ends in one of many ways, when the test tells it to: "end" on standard input.
//
// usage: host-ending WAY          the ways are the rows of the table below
//
// It says "ends" before it does, and what of its own is still told after that. "dialog" opens a
// second window, "close" destroys it.

#include <csignal>
#include <cstdlib>
#include <exception>
#include <functional>
#include <memory>
#include <thread>

#include <unistd.h>

#include <QtCore/QTimer>
#include <QtGui/QPixmapCache>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QPlainTextEdit>

#include "Console.h"

namespace {

/// Who has the application object: main's own frame, nobody (it is left behind), or a variable that
/// is destroyed while the process ends; perhaps one that only points to it, or another one that has
/// the window.
enum class Holder { frame, nobody, variable, pointer, variables };

struct Way {
    const char* name;
    Holder holder;
    std::function<void()> end;
    /// What main does after the application's loop; returns the status.
    std::function<int(int status)> after = [](int status) { return status; };
};

/// Tells that the variables of the process are being destroyed.
struct LastWords {
    ~LastWords() { say("last words"); }
};

void quit() {
    QCoreApplication::quit();
}

void exitNow() {
    std::exit(6);
}

void exitByThread() {
    std::thread([] { std::exit(7); }).detach();
    for (;;) ::pause();
}

void abortHandled() {
    std::signal(SIGABRT, [](int) { ::_exit(8); });
    std::abort();
}

void terminateHandled() {
    std::set_terminate([] { std::exit(9); });
    std::terminate();
}

void quickly() {
    std::at_quick_exit([] { say("quick words"); });
    std::quick_exit(10);
}

void deleteApplication() {
    delete QCoreApplication::instance();
}

int deleteAfterwards(int status) {
    deleteApplication();
    return status;
}

void deleteAtExit() {
    std::atexit(deleteApplication);
    std::exit(11);
}

void deleteAndExit() {
    deleteApplication();
    std::exit(12);
}

void becomeOther() {
    ::execl("/bin/sh", "sh", "-c", "echo other; exit 13", nullptr);
}

int again(int) {
    QTimer::singleShot(100, [] { QCoreApplication::exit(14); });
    return QApplication::exec();
}

const Way ways[] = {
    {"quit", Holder::frame, quit},
    {"status", Holder::frame, [] { QCoreApplication::exit(5); }},
    {"close", Holder::frame, [] { QApplication::closeAllWindows(); }},
    {"exit", Holder::frame, exitNow},
    {"thread", Holder::frame, exitByThread},
    {"quick", Holder::frame, quickly},
    {"at-once", Holder::frame, [] { ::_exit(15); }},
    {"abort", Holder::frame, [] { std::abort(); }},
    {"abort-handled", Holder::frame, abortHandled},
    {"terminate-handled", Holder::frame, terminateHandled},
    {"killed", Holder::frame, [] { std::raise(SIGTERM); }},
    {"other", Holder::frame, becomeOther},
    {"again", Holder::frame, quit, again},
    {"left", Holder::nobody, quit},
    {"left-exit", Holder::nobody, exitNow},
    {"left-thread", Holder::nobody, exitByThread},
    {"left-quick", Holder::nobody, quickly},
    {"deleted", Holder::nobody, quit, deleteAfterwards},
    {"deleted-exit", Holder::nobody, deleteAndExit},
    {"deleted-at-exit", Holder::nobody, deleteAtExit},
    {"static", Holder::variable, quit},
    {"static-exit", Holder::variable, exitNow},
    {"static-pointer", Holder::pointer, quit},
    {"static-window", Holder::variables, quit},
    {"static-window-exit", Holder::variables, exitNow},
};

void fill(QMainWindow& window) {
    window.setWindowTitle("Window 1");
    // As pictures on buttons do, it begins a timer of the toolkit's that lasts.
    QPixmapCache::insert("picture", QPixmap(16, 16));
    window.setCentralWidget(new QPlainTextEdit("a line\n"));
    window.menuBar()->addMenu("&File")->addAction("&Say", [] { say("command"); });
    window.setGeometry(60, 60, 500, 400);
    window.show();
}

int run(const Way& way, std::unique_ptr<QMainWindow> window) {
    fill(*window);
    std::unique_ptr<QDialog> dialog;
    Console console([&way, &dialog](const QString& command, const QString&) {
        if (command == "dialog") {
            dialog = std::make_unique<QDialog>();
            dialog->setWindowTitle("Dialog");
            dialog->setGeometry(700, 100, 200, 100);
            dialog->show();
        }
        if (command == "close") dialog.reset();
        if (command != "end") return;
        QTimer::singleShot(0, [&way] {
            say("ends");
            way.end();
        });
    });
    if (way.holder == Holder::nobody) window.release();
    if (way.holder == Holder::variables) {
        static const std::unique_ptr<QMainWindow> kept = std::move(window);
    }
    QTimer::singleShot(0, [] { say("ready 1"); });
    return way.after(QApplication::exec());
}

}  // namespace

int main(int argc, char** argv) {
    static LastWords lastWords;
    for (const Way& way : ways) {
        if (argc < 2 || std::string(argv[1]) != way.name) continue;
        if (way.holder == Holder::variable || way.holder == Holder::variables) {
            static QApplication application(argc, argv);
            return run(way, std::make_unique<QMainWindow>());
        }
        auto application = std::make_unique<QApplication>(argc, argv);
        if (way.holder == Holder::nobody) {
            application.release();
        } else if (way.holder == Holder::pointer) {
            static const std::unique_ptr<QApplication> kept = std::move(application);
        }
        return run(way, std::make_unique<QMainWindow>());
    }
    say("no such way");
    return 1;
}
