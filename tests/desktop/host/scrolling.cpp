// A host with things that scroll, side by side. It says where they are and where they have scrolled
// to; what it is to do is read from standard input, a line a command:
//
//   bars           "bars NAME X Y" for each: the values of its scroll bars
//   places         "place NAME X Y" for each: its middle, on the screen
//   reset          scrolls all to their beginnings
//   middle         scrolls all half way
//   end            scrolls all to their ends
//   later dialog   half a second from now, opens a dialog
//   later delete   or deletes the window, and opens another one
//   cursor         "cursor N": the number of cursors in force above those of the widgets
//   grab           "grab NAME": what holds the mouse; "none"
//   watch          from here on "scrolled Y NANOSECONDS" whenever the area has scrolled down, with
//                  the time of the steady clock
//   throw          lets the next scrolling of the area throw an exception
//   vanish         lets it delete the area; only the window can go after that
//   quit

#include <QApplication>
#include <QDialog>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>
#include <QTableWidget>
#include <QTimer>
#include <QWheelEvent>
#include <chrono>
#include <stdexcept>
#include <utility>

#include "Console.h"

namespace {

/// Takes no part in scrolling but for the wheel.
class Plain : public QLabel {
public:
    Plain() : QLabel("plain") { setFrameShape(QFrame::Box); }

protected:
    void wheelEvent(QWheelEvent* event) override { turned_ += event->angleDelta(); }
    void mousePressEvent(QMouseEvent* event) override {
        say(QString("press %1").arg(event->button()));
    }

public:
    QPoint turned_;
};

/// Shows nothing of a document that is longer than most numbers are, from right to left.
class Far : public QAbstractScrollArea {
public:
    Far() {
        setLayoutDirection(Qt::RightToLeft);
        for (QScrollBar* bar : {horizontalScrollBar(), verticalScrollBar()}) {
            bar->setRange(1'000'000'000, 2'000'000'000);
            bar->setSingleStep(7);
        }
    }
};

class Window : public QWidget {
public:
    explicit Window(int number) {
        setWindowTitle(QString("Window %1").arg(number));
        setAttribute(Qt::WA_DeleteOnClose);
        auto* grid = new QGridLayout(this);
        auto* bar = new QMenuBar(this);
        bar->addMenu("&File")->addAction("&Quit", qApp, &QApplication::quit);
        grid->setMenuBar(bar);
        add(*grid, makeList(), "list");
        add(*grid, makeTable(), "table");
        add(*grid, makeArea(new QLabel), "area");
        auto* reversed = makeArea(new QLabel);
        reversed->setLayoutDirection(Qt::RightToLeft);
        add(*grid, reversed, "reversed");
        add(*grid, makeNest(), "nest");
        auto* disabled = makeArea(new QLabel);
        disabled->setEnabled(false);
        add(*grid, disabled, "disabled");
        add(*grid, new Far, "far");
        plain_ = new Plain;
        plain_->setFocusPolicy(Qt::ClickFocus);
        grid->addWidget(plain_, 3, 1);
        resize(700, 620);
        QTimer::singleShot(0, this, [number] { say(QString("ready %1").arg(number)); });
    }

    void sayBars() const {
        for (const QAbstractScrollArea* area : areas_) {
            say(QString("bars %1 %2 %3")
                    .arg(area->objectName())
                    .arg(area->horizontalScrollBar()->value())
                    .arg(area->verticalScrollBar()->value()));
        }
        say(QString("bars plain %1 %2").arg(plain_->turned_.x()).arg(plain_->turned_.y()));
    }

    void sayPlaces() const {
        for (const QAbstractScrollArea* area : areas_) {
            sayPlace(area->objectName(), *area->viewport());
        }
        sayPlace("plain", *plain_);
    }

    void watchArea() {
        connect(areaBar(), &QScrollBar::valueChanged, this, [](int value) {
            const auto now = std::chrono::steady_clock::now().time_since_epoch();
            say(QString("scrolled %1 %2").arg(value).arg(std::chrono::nanoseconds(now).count()));
        });
    }

    void throwOnce() {
        connect(areaBar(), &QScrollBar::valueChanged, this, [thrown = false]() mutable {
            if (!std::exchange(thrown, true)) throw std::runtime_error("out of a slot");
        });
    }

    void vanishOnce() {
        connect(areaBar(), &QScrollBar::valueChanged, this, [this] { delete areas_.takeAt(2); });
    }

    void scrollTo(int percent) {
        for (QAbstractScrollArea* area : areas_) {
            for (QScrollBar* bar : {area->horizontalScrollBar(), area->verticalScrollBar()}) {
                bar->setValue(static_cast<int>(qint64{bar->maximum()} * percent / 100));
            }
        }
        plain_->turned_ = {};
    }

private:
    QScrollBar* areaBar() const { return areas_[2]->verticalScrollBar(); }

    static void sayPlace(const QString& name, const QWidget& widget) {
        const QPoint middle = widget.mapToGlobal(widget.rect().center());
        say(QString("place %1 %2 %3").arg(name).arg(middle.x()).arg(middle.y()));
    }

    void add(QGridLayout& grid, QAbstractScrollArea* area, const QString& name) {
        area->setObjectName(name);
        areas_ << area;
        const int index = static_cast<int>(areas_.size()) - 1;
        grid.addWidget(area, index / 2, index % 2);
    }

    static QAbstractScrollArea* makeList() {
        auto* list = new QListWidget;
        for (int i = 0; i < 400; ++i) list->addItem(QString("item %1 ").arg(i).repeated(30));
        list->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
        return list;
    }

    static QAbstractScrollArea* makeTable() {
        auto* table = new QTableWidget(200, 60);
        table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
        table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
        return table;
    }

    static QScrollArea* makeArea(QWidget* content) {
        auto* area = new QScrollArea;
        content->setFixedSize(4000, 4000);
        area->setWidget(content);
        return area;
    }

    /// One that has nothing to scroll inside one that does.
    static QAbstractScrollArea* makeNest() {
        auto* content = new QWidget;
        auto* inner = new QListWidget(content);
        inner->setGeometry(0, 0, 4000, 4000);
        inner->addItem("only");
        return makeArea(content);
    }

    QList<QAbstractScrollArea*> areas_;
    Plain* plain_;
};

class Host {
public:
    Host()
        : console_([this](const QString& command, const QString& rest) { obey(command, rest); }) {
        open();
    }

private:
    void open() {
        auto* window = new Window(++last_);
        window->move(60, 60);
        window->show();
        window_ = window;
    }

    void obey(const QString& command, const QString& rest) {
        if (command == "quit") return QApplication::quit();
        if (command == "later") return later(rest);
        if (command == "cursor") {
            say(QString("cursor %1").arg(QApplication::overrideCursor() ? 1 : 0));
        }
        if (command == "grab") {
            const bool grabbed = QWidget::mouseGrabber() || QApplication::mouseButtons();
            say(grabbed ? "grab something" : "grab none");
        }
        if (!window_) return;
        if (command == "bars") window_->sayBars();
        if (command == "places") window_->sayPlaces();
        if (command == "reset") window_->scrollTo(0);
        if (command == "middle") window_->scrollTo(50);
        if (command == "end") window_->scrollTo(100);
        if (command == "watch") window_->watchArea();
        if (command == "throw") window_->throwOnce();
        if (command == "vanish") window_->vanishOnce();
    }

    void later(const QString& what) {
        QTimer::singleShot(500, qApp, [this, what] {
            if (what == "delete") {
                delete window_;
                open();
            } else {
                QDialog dialog(window_);
                dialog.setWindowTitle("Dialog");
                dialog.resize(200, 100);
                dialog.exec();
            }
            say("done " + what);
        });
    }

    Console console_;
    QPointer<Window> window_;
    int last_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    Host host;
    return QApplication::exec();
}
