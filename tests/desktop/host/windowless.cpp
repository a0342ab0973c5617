// A host that draws its window itself: there is no QApplication, so a widget would end it.
//
// It says each press and release of a mouse button and each key, and ends with status 7 at "q".

#include <QtCore/QTextStream>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QRasterWindow>

namespace {

void say(const QString& line) {
    QTextStream(stdout) << line << Qt::endl;
}

class Window : public QRasterWindow {
protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(QRect(QPoint(), size()), Qt::darkCyan);
    }
    void mousePressEvent(QMouseEvent* event) override {
        say(QStringLiteral("press %1").arg(int(event->button())));
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        say(QStringLiteral("release %1").arg(int(event->button())));
    }
    void keyPressEvent(QKeyEvent* event) override {
        say(QStringLiteral("key %1").arg(event->text()));
        if (event->text() == QLatin1String("q")) QCoreApplication::exit(7);
    }
};

}  // namespace

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    Window window;
    window.setTitle(QStringLiteral("host"));
    window.resize(500, 400);
    window.show();
    return QGuiApplication::exec();
}
