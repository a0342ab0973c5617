"""A host in Python, for whichever binding of Qt the program that imports it has.

Its window "host" has one menu. "Show Environment" starts a program and says which of the variables
that load plug-ins that program has; "Quit" ends the host with status 4.
"""

import sys

SHOW = ('for name in QT_PLUGIN_PATH QT_QPA_GENERIC_PLUGINS VELMORA_ADDED; do '
        'if printenv $name >/dev/null; then echo $name=$(printenv $name); fi; done; echo shown')


def main(core, widgets):
    application = widgets.QApplication(sys.argv)
    window = widgets.QMainWindow()
    window.setWindowTitle("host")
    window.setGeometry(100, 100, 500, 400)

    def show_environment():
        process = core.QProcess(window)
        process.start("/bin/sh", ["-c", SHOW])
        process.waitForFinished()
        print(bytes(process.readAllStandardOutput()).decode(), end="", flush=True)

    menu = window.menuBar().addMenu("File")
    menu.addAction("Show Environment").triggered.connect(show_environment)
    menu.addAction("Quit").triggered.connect(lambda: application.exit(4))
    window.show()
    run = getattr(application, "exec", None) or application.exec_
    sys.exit(run())
