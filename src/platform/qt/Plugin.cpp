#include <QApplication>
#include <QGenericPlugin>
#include <QTimer>
#include <cstdlib>

#include "platform/foundation/PosixUser.h"
#include "platform/qt/HostProcess.h"
#include "platform/qt/QtDesktop.h"
#include "platform/qt/QtGuard.h"

namespace velmora {

namespace {

/// Never destroyed: whatever of ours is destroyed at the end of the process may still ask it.
QtDesktop* desktopOfProcess = nullptr;

void closeDesktop() {
    desktopOfProcess->close();
}

/// A host without widgets has no menus that we know, and must never get a widget.
void begin() {
    if (desktopOfProcess || !qobject_cast<QApplication*>(QCoreApplication::instance())) return;
    if (!isOwnUsersProcess(userHomeDirectory())) return;
    guarded("The start", [] {
        desktopOfProcess = new QtDesktop();
        qAddPostRoutine(closeDesktop);
        // A host may leave its application object behind, or hold it in a static variable that
        // outlives those of ours.
        std::atexit(closeDesktop);
    });
}

}  // namespace

/// What the host loads, while it still makes its application object.
class Plugin final : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "velmora.json")
public:
    QObject* create(const QString& key, const QString& /*specification*/) override {
        if (key.compare(QLatin1String("velmora"), Qt::CaseInsensitive) != 0) return nullptr;
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
