// A host whose windows have no menu bar. What happens in it is printed, a line an event; what it is
// to do is read from standard input, a line a command:
//
//   window              opens one more window
//   document NAME       the titles of the windows name another document
//   bar                 gives every window a menu bar
//   menu                gives every window's bar at the side one more button with a menu
//   dialog              opens a modal dialog with a button
//   places              says where the areas of every window are: the middles, on the screen
//   items               says what the open menus hold and where: the middles, on the screen
//   contents            says what the views hold and where they are scrolled to
//   quit
//
// The argument says what it begins with: "buttons" (a window with buttons that have menus), "plain"
// (one with a tool bar alone), "login" (a dialog, and a window with a menu bar once it is accepted
// by a click), "tray" (no window).

#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "Console.h"

namespace {

class Area : public QLabel {
public:
    using QLabel::QLabel;

protected:
    void contextMenuEvent(QContextMenuEvent* event) override {
        QMenu menu(this);
        menu.addAction("Paint");
        menu.addAction("Varnish");
        const QAction* chosen = menu.exec(event->globalPos());
        say("chosen " + (chosen ? chosen->text() : QString("nothing")));
    }
    void mousePressEvent(QMouseEvent* event) override {
        say(QString("press %1").arg(int(event->button())));
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        say(QString("release %1").arg(int(event->button())));
    }
};

class Window : public QMainWindow {
public:
    Window(int number, bool buttons) : number_(number) {
        setAttribute(Qt::WA_DeleteOnClose);
        nameDocument("draft");
        addAction(make("Refresh", QKeySequence("F5")));
        bar_ = addToolBar("Tools");
        bar_->setObjectName("tools");
        if (buttons) addButtons();
        bar_->addAction(make("&Reload", QKeySequence("Ctrl+R")));
        auto* pictured = make(QString());
        pictured->setToolTip("Stop");
        pictured->setIcon(style()->standardIcon(QStyle::SP_BrowserStop));
        bar_->addAction(pictured);
        make("Disabled")->setEnabled(false);
        bar_->addAction(actions_.back());
        addContent(buttons);
        resize(520, 420);
    }

    void nameDocument(const QString& name) {
        setWindowTitle(QString("%1 - Window %2").arg(name).arg(number_));
    }

    void addBar() {
        QMenu* file = menuBar()->addMenu("&File");
        for (const char* text : {"New", "Open...", "Quit"}) file->addAction(make(text));
        file->insertSeparator(file->actions().at(1));
        file->insertSeparator(file->actions().at(3));
        menuBar()->addMenu("&Edit")->addAction(make("Find"));
    }

    void addMenu() {
        auto* button = new QPushButton("Late");
        auto* menu = new QMenu(button);
        menu->addAction(make("Comes Late"));
        button->setMenu(menu);
        centralWidget()->layout()->addWidget(button);
        button->show();
    }

    void runDialog() {
        QDialog dialog(this);
        dialog.setWindowTitle("Dialog");
        auto* layout = new QVBoxLayout(&dialog);
        layout->addWidget(new QPushButton("Fine"));
        dialog.resize(200, 100);
        say("opens");
        dialog.exec();
        say("closes");
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

    void sayContents() const {
        say(QString("line %1 %2").arg(number_).arg(line_->text()));
        say(QString("scrolled %1 %2").arg(number_).arg(text_->verticalScrollBar()->value()));
    }

protected:
    void showEvent(QShowEvent* event) override {
        QMainWindow::showEvent(event);
        QMetaObject::invokeMethod(
            this, [this] { say(QString("ready %1").arg(number_)); }, Qt::QueuedConnection);
    }

private:
    QAction* make(const QString& text, const QKeySequence& shortcut = {}) {
        auto* action = new QAction(text, this);
        action->setShortcut(shortcut);
        actions_ << action;
        connect(action, &QAction::triggered, this, [this, action] {
            const QString name = action->text().isEmpty() ? action->toolTip() : action->text();
            say(QString("ran %1 %2").arg(number_).arg(name));
        });
        return action;
    }

    /// The menu of the application is not the first of the buttons, and is filled when it opens.
    void addButtons() {
        auto* sort = new QToolButton;
        sort->setText("Sort");
        sort->setObjectName("sort");
        sort->setMenu(new QMenu(sort));
        sort->setPopupMode(QToolButton::InstantPopup);
        sort->menu()->addAction(make("By Name"));
        sort->menu()->addAction(make("By Date"));
        bar_->addWidget(sort);
        auto* recent = make("Recent");
        recent->setMenu(new QMenu(this));
        recent->menu()->addAction(make("one.txt"));
        bar_->addAction(recent);
        auto* hamburger = new QToolButton;
        hamburger->setText(QString::fromUtf8("☰"));
        hamburger->setToolTip("Main menu");
        hamburger->setObjectName("hamburgerButton");
        hamburger->setPopupMode(QToolButton::InstantPopup);
        auto* menu = new QMenu(hamburger);
        connect(menu, &QMenu::aboutToShow, this, [this, menu] {
            if (menu->isEmpty()) fillMenu(*menu);
        });
        hamburger->setMenu(menu);
        bar_->addWidget(hamburger);
        areas_ << hamburger;
    }

    void fillMenu(QMenu& menu) {
        menu.addAction(make("New"));
        menu.addAction(make("Open..."));
        menu.addSeparator();
        menu.addMenu("More")->addAction(make("Deeper"));
        menu.addSeparator();
        menu.addAction(make("Quit"));
    }

    void addContent(bool buttons) {
        auto* centre = new QWidget(this);
        auto* layout = new QVBoxLayout(centre);
        auto* area = new Area("area");
        area->setFrameShape(QFrame::Box);
        area->setObjectName("area");
        area->setMinimumHeight(150);
        layout->addWidget(area);
        line_ = new QLineEdit;
        line_->setObjectName("line");
        layout->addWidget(line_);
        text_ = new QPlainTextEdit;
        text_->setObjectName("text");
        for (int i = 0; i < 200; ++i) text_->appendPlainText(QString("line %1").arg(i));
        text_->moveCursor(QTextCursor::Start);
        layout->addWidget(text_);
        areas_ << area << line_ << text_;
        if (buttons) {
            auto* zoom = new QToolButton;
            zoom->setDefaultAction(make("Zoom In"));
            layout->addWidget(zoom);
        }
        setCentralWidget(centre);
        line_->setFocus();
    }

    int number_;
    QToolBar* bar_;
    QLineEdit* line_ = nullptr;
    QPlainTextEdit* text_ = nullptr;
    QList<QAction*> actions_;
    QList<QWidget*> areas_;
};

class Host {
public:
    explicit Host(QString mode)
        : console_([this](const QString& command, const QString& rest) { obey(command, rest); }),
          mode_(std::move(mode)) {}

    void begin() {
        if (mode_ == "login") return logIn();
        if (mode_ == "tray") return say("ready");
        openWindow();
    }

private:
    Window* openWindow() {
        auto* window = new Window(++last_, mode_ == "buttons");
        window->move(40 + 560 * ((last_ - 1) % 2), 60 + 40 * ((last_ - 1) / 2));
        window->show();
        return window;
    }

    void logIn() {
        auto* dialog = new QDialog;
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setWindowTitle("Login");
        auto* layout = new QVBoxLayout(dialog);
        layout->addWidget(new QLineEdit);
        auto* button = new QPushButton("Go");
        layout->addWidget(button);
        QObject::connect(button, &QPushButton::clicked, dialog,
                         [this, dialog] { dialog->close(); });
        // For a while nothing is left that anybody could look at, though the bar is there.
        const auto goOn = [this] {
            Window* window = openWindow();
            window->hide();
            window->addBar();
            QTimer::singleShot(100, window, &QWidget::show);
        };
        QObject::connect(dialog, &QObject::destroyed, qApp, goOn, Qt::QueuedConnection);
        dialog->setGeometry(60, 60, 300, 200);
        dialog->show();
    }

    void obey(const QString& command, const QString& rest) {
        if (command == "window") return void(openWindow());
        if (command == "items") return sayItems();
        if (command == "quit") return QApplication::quit();
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* window = dynamic_cast<Window*>(widget);
            if (!window) continue;
            if (command == "document") window->nameDocument(rest);
            if (command == "bar") window->addBar();
            if (command == "menu") window->addMenu();
            if (command == "places") window->sayPlaces();
            if (command == "contents") window->sayContents();
            if (command == "dialog" && window->number() == 1) {
                QMetaObject::invokeMethod(
                    window, [window] { window->runDialog(); }, Qt::QueuedConnection);
            }
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
                        .arg(action->isSeparator() ? QString("-") : action->text()));
            }
        }
    }

    Console console_;
    QString mode_;
    int last_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationDisplayName("Barless");
    QApplication::setQuitOnLastWindowClosed(false);
    Host host(argc > 1 ? argv[1] : "buttons");
    host.begin();
    return QApplication::exec();
}
