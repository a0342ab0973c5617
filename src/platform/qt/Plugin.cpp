#include <QApplication>
#include <QGenericPlugin>
#include <QOpenGLContext>
#include <QTimer>

#include "platform/foundation/AddedEnvironment.h"
#include "platform/foundation/files/PosixUser.h"
#include "platform/qt/QtDesktop.h"
#include "platform/qt/base/HostProcess.h"
#include "platform/qt/base/QtGuard.h"

namespace velmora {

namespace {

/// Never destroyed: whatever of ours is destroyed at the end of the process may still ask it.
QtDesktop* desktopOfProcess = nullptr;

/// Set on the thread of the user interface until the process begins to end.
thread_local bool hostGoesOn = false;

/// The first of all that is destroyed when the process ends on that thread: functions and variables
/// of the process come after those of its threads.
struct EndOfProcess {
    ~EndOfProcess() {
        hostGoesOn = false;
        desktopOfProcess->leave();
    }
};

void watchForEndOfProcess() {
    hostGoesOn = true;
    static thread_local EndOfProcess end;
}

/// The application object is being destroyed. Once the process ends, or on another thread, what Qt
/// keeps for all or for a thread may be gone already, and nothing of it is touched.
void applicationEnds() {
    if (hostGoesOn) guarded("The end", [] { desktopOfProcess->close(); });
}

/// A host without widgets has no menus that we know, and must never get a widget.
void begin() {
    if (desktopOfProcess || !qobject_cast<QApplication*>(QCoreApplication::instance())) return;
    if (!isOwnUsersProcess(userHomeDirectory())) return;
    guarded("The start", [] {
        desktopOfProcess = new QtDesktop();
        qAddPostRoutine(applicationEnds);
        watchForEndOfProcess();
    });
}

/// The programs that the host starts get what the session has, without what brought us into this
/// one. The variables of a process may be changed as long as nobody else reads them: here the host
/// is still making its application object, and the toolkit's threads read them under its lock.
void restoreEnvironment() {
    for (const AddedEnvironment::Change& change : AddedEnvironment::removal()) {
        if (change.value) {
            qputenv(change.variable.c_str(), QByteArray::fromStdString(*change.value));
        } else {
            qunsetenv(change.variable.c_str());
        }
    }
}

}  // namespace

/// What the host loads, while it still makes its application object.
class Plugin final : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "velmora.json")
public:
    QObject* create(const QString& key, const QString& /*specification*/) override {
        if (key.compare(QLatin1String("velmora"), Qt::CaseInsensitive) != 0) return nullptr;
        // Makes a variable of Qt's that the end of every window asks for. Made later, it would be
        // gone when an application object that is a variable itself destroys the windows that are
        // left.
        QOpenGLContext::currentContext();
        restoreEnvironment();
        auto* seat = new QObject();
        // Before any of the host's own that hear of it.
        connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, seat, [] {
            if (desktopOfProcess) guarded("The end", [] { desktopOfProcess->hostWillQuit(); });
        });
        // The first pass of the loop finds the application complete.
        QTimer::singleShot(0, seat, [] { begin(); });
        return seat;
    }
};

}  // namespace velmora

#include "Plugin.moc"
