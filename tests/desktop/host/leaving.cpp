// A host whose window goes, or that ends, a moment after a key was pressed: while a stroke is
// drawn.
//
// usage: host-leaving MODE
//   quit    the application leaves its loop                        (status 0)
//   exit    it leaves it with a status                             (status 5)
//   end     the process ends at once                               (status 6)
//   close   the last window closes                                 (status 0)
//   delete  the window is destroyed; the other one stays, and "q" there ends the host (status 8)
//   hide    the window is hidden; the other one stays, as before
//
// "g" starts the moment. It says each press and release of a mouse button that reaches it, each
// context-menu event, and each command of its menu.

#include <cstdlib>

#include <QtCore/QTextStream>
#include <QtCore/QTimer>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>

namespace {

constexpr int MOMENT_MS = 250;

void say(const QString& line) {
    QTextStream(stdout) << line << Qt::endl;
}

class Window : public QMainWindow {
public:
    Window(const QString& mode, const QString& title) : mode_(mode) {
        setWindowTitle(title);
        menuBar()->addMenu(QStringLiteral("&File"))->addAction(QStringLiteral("&Say"), [title] {
            say(QStringLiteral("command ") + title);
        });
    }

protected:
    void mousePressEvent(QMouseEvent* event) override {
        say(QStringLiteral("press %1").arg(int(event->button())));
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        say(QStringLiteral("release %1").arg(int(event->button())));
    }
    void contextMenuEvent(QContextMenuEvent*) override { say(QStringLiteral("context menu")); }
    void keyPressEvent(QKeyEvent* event) override {
        say(QStringLiteral("key %1").arg(event->text()));
        if (event->text() == QLatin1String("q")) QCoreApplication::exit(8);
        if (event->text() == QLatin1String("g"))
            QTimer::singleShot(MOMENT_MS, this, [this] { go(); });
    }

private:
    void go() {
        say(QStringLiteral("gone"));
        if (mode_ == QLatin1String("quit")) QCoreApplication::quit();
        if (mode_ == QLatin1String("exit")) QCoreApplication::exit(5);
        if (mode_ == QLatin1String("end")) std::exit(6);
        if (mode_ == QLatin1String("close")) close();
        if (mode_ == QLatin1String("hide")) hide();
        if (mode_ == QLatin1String("delete")) delete this;
    }

    QString mode_;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QString mode = QApplication::arguments().value(1);

    auto* first = new Window(mode, QStringLiteral("first"));
    first->setGeometry(60, 60, 500, 400);
    first->show();
    if (mode == QLatin1String("delete") || mode == QLatin1String("hide")) {
        auto* second = new Window(QString(), QStringLiteral("second"));
        second->setGeometry(640, 60, 500, 400);
        second->show();
    }
    return QApplication::exec();
}
