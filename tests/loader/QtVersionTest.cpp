#include "loader/QtVersion.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "support/TemporaryFolder.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

/// Scripts with packages of their own. Debian's Python 3 reads them when somebody runs them.
class QtVersionTest : public ::testing::Test {
protected:
    void SetUp() override {
        ::unsetenv("QT_API");
        ::setenv("PYTHONPATH", path("packages").c_str(), 1);
        for (const char* binding : {"PyQt5", "PyQt6", "PySide2"}) {
            fs::create_directories(path("packages/") + binding);
        }
    }
    void TearDown() override {
        ::unsetenv("QT_API");
        ::unsetenv("PYTHONPATH");
    }

    std::string path(const std::string& name) const { return folder_.path(name); }

    std::string write(const std::string& name, const std::string& text) {
        fs::create_directories(fs::path(path(name)).parent_path());
        std::ofstream(path(name), std::ios::binary) << text;
        ::chmod(path(name).c_str(), 0755);
        return path(name);
    }

    QtVersion python(const std::string& text) {
        return qtVersionOf({write("program", "#!/usr/bin/python3\n" + text), "argument"});
    }
    QtVersion shell(const std::string& text) {
        return qtVersionOf({write("wrapper", "#!/bin/sh\nset -e\n" + text)});
    }

    TemporaryFolder folder_;
};

TEST_F(QtVersionTest, APythonProgramHasTheQtThatItImportsFirst) {
    struct {
        const char* text;
        QtVersion version;
    } const rows[] = {
        {"import os, sys\nfrom PyQt5.QtWidgets import QApplication\n", QtVersion::Five},
        {"import PyQt6.QtCore as core\n", QtVersion::Six},
        {"import sys, PySide2\n", QtVersion::Five},
        {"def main():\n\tfrom PyQt6 import QtWidgets  # from PyQt5\n", QtVersion::Six},
        {"# import PyQt5\nfrom PyQt6 import QtGui\n", QtVersion::Six},
        {"try:\n    import PySide6\nexcept ImportError:\n    import PyQt5\n", QtVersion::Five},
        {"import PySide6\n", QtVersion::Six},
        {"import PyQt55, myPyQt5\n", QtVersion::Unknown},
        {"print('import PyQt5')\n", QtVersion::Unknown},
        {"", QtVersion::Unknown},
    };
    for (const auto& row : rows) EXPECT_EQ(python(row.text), row.version) << row.text;
}

TEST_F(QtVersionTest, APackageThatTakesAnyBindingGetsTheWantedOrTheFirstThatIsThere) {
    EXPECT_EQ(python("from qtpy import QtWidgets\n"), QtVersion::Five);
    ::setenv("QT_API", "pyqt6", 1);
    EXPECT_EQ(python("from qtpy import QtWidgets\n"), QtVersion::Six);
}

TEST_F(QtVersionTest, TheImportsOfAPythonProgramsModulesAreItsOwn) {
    write("share/editor/app/__init__.py", "from app.window import *\n");
    write("share/editor/app/window.py", "from .parts import (Bar,\n    Menu)\n");
    write("share/editor/app/parts/__init__.py", "from ..base import Base\n");
    write("share/editor/app/base.py", "from PyQt6 import QtWidgets\n");
    write("packages/other/__init__.py", "import other\nfrom . import deep\n");
    write("packages/other/deep.py", "import PyQt5\n");
    const std::string stub = "import sys\nsys.path.insert(0, '" + path("share/editor") + "')\n";
    EXPECT_EQ(python(stub + "from app.main import main\nmain()\n"), QtVersion::Six);
    EXPECT_EQ(python("import other\n"), QtVersion::Five);
    EXPECT_EQ(python("from other import nothing\n"), QtVersion::Five);
    EXPECT_EQ(qtVersionOf({"python3", "-X", "dev", "-m", "other.deep"}), QtVersion::Five);
    EXPECT_EQ(qtVersionOf({"/usr/bin/python3", "-c", "import PyQt6"}), QtVersion::Six);
    EXPECT_EQ(qtVersionOf({"python3", path("share/editor/app/base.py"), "-m", "other"}),
              QtVersion::Six);
    // A link to a script has the modules beside the script.
    write("share/editor/start.py", "#!/usr/bin/env python3\nfrom app import base\n");
    fs::create_symlink(path("share/editor/start.py"), path("link"));
    EXPECT_EQ(qtVersionOf({path("link")}), QtVersion::Six);
    EXPECT_EQ(qtVersionOf({"python3"}), QtVersion::Unknown);
    EXPECT_EQ(qtVersionOf({"python3", "-m"}), QtVersion::Unknown);
}

TEST_F(QtVersionTest, AShellScriptHasTheQtOfTheProgramThatItStarts) {
    const std::string six = write("lib/six.py", "#!/usr/bin/env -S python3 -E\nimport PyQt6\n");
    const std::string five = write("lib/five.py", "import PyQt5\n");
    const std::string rows[] = {
        "exec " + six + " \"$@\"\n",
        "LIB=" + path("lib") + "\nif true; then exec env A=b \"$LIB/six.py\" ${1+\"$@\"} ; fi\n",
        "export HOME\n" + six + " 2>/dev/null \\\n  \"$@\" # exec " + five + "\n",
        "cd '" + path("lib") + "' && exec python3 six.py\n",
        "exec ${PYTHON:-python3} -E " + six + "\n",
        "/usr/bin/python3 " + five + "\nexec \"" + six + "\"\n",
        "/usr/bin/python3 " + five + "\n/usr/bin/python3 " + six + "\n",
        "exec bash -c 'A=1 exec " + six + "'\n",
    };
    for (const std::string& row : rows) EXPECT_EQ(shell(row), QtVersion::Six) << row;
    for (const std::string& row :
         {std::string("exec \"$@\"\n"), std::string("exec $UNKNOWN/six.py\n"), "echo " + six + "\n",
          "exec " + path("wrapper") + "\n", std::string("exec 3>&1 '\n${"), "#" + six}) {
        EXPECT_EQ(shell(row), QtVersion::Unknown) << row;
    }
}

TEST_F(QtVersionTest, ALargeOrTangledProgramIsReadAsFarAsTheBoundsGo) {
    // Every module imports the two after it, far more than are looked at.
    for (int i = 0; i < 400; ++i) {
        const std::string after = std::to_string(i + 1);
        write("packages/m" + std::to_string(i) + ".py", "import m" + after + "\nimport m0\n");
    }
    write("packages/m400.py", "import PyQt5\n");
    EXPECT_EQ(python("import m300\n"), QtVersion::Five);
    EXPECT_EQ(python("import m0\n"), QtVersion::Unknown);
    EXPECT_EQ(python(std::string(1U << 20U, '#') + "\nimport PyQt5\n"), QtVersion::Unknown);
    EXPECT_EQ(python(std::string("\0import \nfrom\nfrom .\nfrom . import a\nimport ,\n", 44)),
              QtVersion::Unknown);
}

}  // namespace
}  // namespace velmora
