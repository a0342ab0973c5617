// A host whose views offer to delete what is selected, as many do. What happens in it is printed, a
// line an event; what it is to do is read from standard input, a line a command:
//
//   way WAY        how the context menu comes from here on, with each view:
//                      event, custom, press, release, queued, or cursor (the item that is under the
//                      pointer by then), shift (the view moves then), followed by -exec or -popup;
//                      actions; or, at the press, dialog, throw or loop instead
//   decoy          selects the first item of each view
//   item VIEW N    says where the view's item is: a place on the screen; item tools: the tool bar
//   state          says what is pressed or grabbed in the toolkit's eyes
//   quit

#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QEventLoop>
#include <QGraphicsRectItem>
#include <QGraphicsView>
#include <QGridLayout>
#include <QListView>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QStandardItemModel>
#include <QTableView>
#include <QTextBlock>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>
#include <QTreeView>

#include <stdexcept>

#include "Console.h"

namespace {

constexpr int count = 5;

QString nameOf(int item) {
    return QString("item%1").arg(item);
}

/// What a view of any kind is asked by the menu.
class Contents {
public:
    virtual ~Contents() = default;
    virtual QString selected() const = 0;
    virtual QString at(QPoint place) const = 0;
    virtual void select(int item) = 0;
    virtual QPoint placeOf(int item) const = 0;
    /// By the right button.
    virtual void wasPressed(QPoint /*place*/) {}
};

/// Shows the context menu of a view, in the way that it is told.
class Menu : public QObject {
public:
    Menu(const QString& name, QAbstractScrollArea& view, Contents& contents)
        : view_(view), contents_(contents) {
        view.setObjectName(name);
        auto* act = new QAction("Delete", &view);
        connect(act, &QAction::triggered, this, [this] { remove(contents_.selected()); });
        view.addAction(act);
        connect(&view, &QWidget::customContextMenuRequested, this,
                [this](QPoint place) { answer("custom", place); });
    }

    void setWay(const QString& way) {
        way_ = way;
        view_.setContextMenuPolicy(way == "actions"           ? Qt::ActionsContextMenu
                                   : way.startsWith("custom") ? Qt::CustomContextMenu
                                                              : Qt::DefaultContextMenu);
    }

    /// At a moment when some hosts show theirs; the place is the viewport's.
    void answer(const QString& moment, QPoint place) {
        const QString way = way_.section('-', 0, 0);
        if (way == moment) open(place);
        if (moment == "press" && way == "dialog") runDialog();
        if (moment == "press" && way == "loop") loop_.exec();
        if (moment == "release" && loop_.isRunning()) loop_.quit();
        if (moment == "press" && way == "throw") throw std::runtime_error("no menu today");
        if (moment != "event") return;
        if (way == "shift") {
            open(place);
            // To make room for what tells more of the selected item.
            QLayout& layout = *view_.parentWidget()->layout();
            const bool isShifted = layout.contentsMargins().top() == 60;
            layout.setContentsMargins(0, isShifted ? 0 : 60, 0, 0);
        }
        if (way == "queued") QTimer::singleShot(0, this, [this, place] { open(place); });
        if (way == "cursor") open(view_.viewport()->mapFromGlobal(QCursor::pos()));
    }

    const QWidget& viewport() const { return *view_.viewport(); }
    Contents& contents() const { return contents_; }

private:
    void open(QPoint place) {
        say("opens");
        const QString under = contents_.at(place);
        const QPoint global = view_.viewport()->mapToGlobal(place);
        auto* menu = new QMenu(&view_);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        connect(menu->addAction("Delete"), &QAction::triggered, this,
                [this, under] { remove(contents_.selected() + " over " + under); });
        if (way_.endsWith("exec")) {
            menu->exec(global);
        } else {
            menu->popup(global);
        }
    }

    void remove(const QString& what) { say("deletes " + view_.objectName() + ' ' + what); }

    void runDialog() {
        QDialog dialog(&view_);
        dialog.setWindowTitle("Instead");
        dialog.resize(200, 100);
        dialog.exec();
        say("closes Instead");
    }

    QAbstractScrollArea& view_;
    Contents& contents_;
    QString way_;
    /// Runs from the press to the release, as a drag does.
    QEventLoop loop_;
};

template <class View>
class Hosted : public View, public Contents {
public:
    explicit Hosted(const char* name) : menu(name, *this, *this) {}
    Menu menu;

protected:
    void contextMenuEvent(QContextMenuEvent* event) override {
        say("context " + menu.contents().at(event->pos()));
        menu.answer("event", event->pos());
        event->accept();
    }
    void mousePressEvent(QMouseEvent* event) override {
        View::mousePressEvent(event);
        if (event->button() != Qt::RightButton) return;
        this->wasPressed(event->pos());
        answer("press", *event);
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        View::mouseReleaseEvent(event);
        // A release alone, as after any stroke, opens nothing.
        if (pressed_ && event->button() == Qt::RightButton) answer("release", *event);
    }
    void mouseDoubleClickEvent(QMouseEvent* event) override {
        say("double click");
        View::mouseDoubleClickEvent(event);
    }

private:
    void answer(const QString& moment, const QMouseEvent& event) {
        pressed_ = moment == "press";
        const bool fits = event.buttons() == QApplication::mouseButtons() &&
                          event.modifiers() == QApplication::keyboardModifiers();
        say(moment + (fits ? "" : " that the toolkit does not know of"));
        menu.answer(moment, event.pos());
    }

    bool pressed_ = false;
};

template <class View>
class ItemView : public Hosted<View> {
public:
    explicit ItemView(const char* name) : Hosted<View>(name) {
        for (int item = 0; item < count; ++item) model_.appendRow(new QStandardItem(nameOf(item)));
        this->setModel(&model_);
        this->setEditTriggers(QAbstractItemView::NoEditTriggers);
    }
    QString selected() const override {
        QStringList names;
        for (const QModelIndex& index : this->selectionModel()->selectedIndexes())
            names << index.data().toString();
        return names.join(',');
    }
    QString at(QPoint place) const override { return this->indexAt(place).data().toString(); }
    void select(int item) override { this->setCurrentIndex(model_.index(item, 0)); }
    QPoint placeOf(int item) const override {
        return this->visualRect(model_.index(item, 0)).center();
    }

private:
    QStandardItemModel model_;
};

class Text : public Hosted<QTextEdit> {
public:
    Text() : Hosted("text") {
        for (int item = 0; item < count; ++item) append(nameOf(item));
    }
    QString selected() const override { return textCursor().selectedText(); }
    QString at(QPoint place) const override { return cursorForPosition(place).block().text(); }
    void select(int item) override {
        QTextCursor cursor(document()->findBlockByNumber(item));
        cursor.select(QTextCursor::BlockUnderCursor);
        setTextCursor(cursor);
    }
    QPoint placeOf(int item) const override {
        return cursorRect(QTextCursor(document()->findBlockByNumber(item))).center() +
               QPoint(12, 0);
    }
};

/// Selects the shape under a right press, which the toolkit leaves to its hosts.
class Shapes : public Hosted<QGraphicsView> {
public:
    Shapes() : Hosted("graphics") {
        for (int item = 0; item < count; ++item) {
            shapes_[item] = scene_.addRect(0, 20 * item, 80, 16);
            shapes_[item]->setFlag(QGraphicsItem::ItemIsSelectable);
            shapes_[item]->setData(0, nameOf(item));
        }
        setScene(&scene_);
    }
    QString selected() const override {
        QStringList names;
        for (const QGraphicsItem* item : scene_.selectedItems()) names << item->data(0).toString();
        return names.join(',');
    }
    QString at(QPoint place) const override {
        const QGraphicsItem* item = itemAt(place);
        return item ? item->data(0).toString() : QString();
    }
    void select(int item) override {
        scene_.clearSelection();
        shapes_[item]->setSelected(true);
    }
    QPoint placeOf(int item) const override {
        return mapFromScene(shapes_[item]->sceneBoundingRect().center());
    }
    void wasPressed(QPoint place) override {
        scene_.clearSelection();
        if (QGraphicsItem* item = itemAt(place)) item->setSelected(true);
    }

private:
    QGraphicsScene scene_;
    QGraphicsRectItem* shapes_[count];
};

class Window : public QMainWindow {
public:
    Window()
        : console_([this](const QString& command, const QString& rest) { obey(command, rest); }) {
        setWindowTitle("Window 1");
        QMenu* file = menuBar()->addMenu("&File");
        for (const char* title : {"&Rest", "&Quit"}) file->addAction(title);
        tools_ = addToolBar("Tools");
        tools_->addAction("Tool");
        list_.setViewMode(QListView::IconMode);
        table_.setSelectionBehavior(QAbstractItemView::SelectRows);
        auto* centre = new QWidget;
        auto* grid = new QGridLayout(centre);
        QWidget* views[] = {&tree_, &list_, &table_, &text_, &graphics_};
        for (int view = 0; view < 5; ++view) grid->addWidget(views[view], view / 2, view % 2);
        setCentralWidget(centre);
        resize(600, 700);
        for (Menu* menu : menus_) menu->setWay("event-exec");
    }

protected:
    void showEvent(QShowEvent* event) override {
        QMainWindow::showEvent(event);
        QMetaObject::invokeMethod(
            this, [] { say("ready 1"); }, Qt::QueuedConnection);
    }

private:
    void obey(const QString& command, const QString& rest) {
        if (command == "quit") return QApplication::quit();
        if (command == "state") return sayState();
        if (command == "item") return sayPlace(rest.section(' ', 0, 0), rest.section(' ', 1));
        for (Menu* menu : menus_) {
            if (command == "way") menu->setWay(rest);
            if (command == "decoy") menu->contents().select(0);
        }
    }

    void sayPlace(const QString& view, const QString& item) {
        const Menu* menu = menus_[view];
        const QWidget& widget = menu ? menu->viewport() : *tools_;
        const QPoint place =
            widget.mapToGlobal(menu ? menu->contents().placeOf(item.toInt()) : QPoint(20, 15));
        say(QString("place %1 %2").arg(place.x()).arg(place.y()));
    }

    void sayState() {
        if (tools_->isHidden()) say("the tool bar is hidden");
        if (QApplication::mouseButtons()) say("a button is down");
        if (QWidget::mouseGrabber()) say("a widget has the mouse");
        if (QWidget::keyboardGrabber()) say("a widget has the keyboard");
        if (QApplication::activePopupWidget()) say("a menu is open");
        if (graphics_.scene()->mouseGrabberItem()) say("a shape has the mouse");
    }

    ItemView<QTreeView> tree_{"tree"};
    ItemView<QListView> list_{"list"};
    ItemView<QTableView> table_{"table"};
    Text text_;
    Shapes graphics_;
    QToolBar* tools_ = nullptr;
    const QMap<QString, Menu*> menus_{{"tree", &tree_.menu},
                                      {"list", &list_.menu},
                                      {"table", &table_.menu},
                                      {"text", &text_.menu},
                                      {"graphics", &graphics_.menu}};
    Console console_;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    Window window;
    window.show();
    return QApplication::exec();
}
