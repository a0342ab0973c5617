#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <functional>
#include <iostream>
#include <string>

#include <unistd.h>

/// Tells the test something: a line of standard output.
inline void say(const QString& line) {
    std::cout << line.toStdString() << std::endl;
}

/// Has the host do what the test tells it, a line of standard input a command, and says "did LINE"
/// when it has.
class Console : public QObject {
public:
    /// A command is one word; the rest of its line comes with it.
    using Obey = std::function<void(const QString& command, const QString& rest)>;

    explicit Console(Obey obey)
        : obey_(std::move(obey)), input_(STDIN_FILENO, QSocketNotifier::Read) {
        connect(&input_, &QSocketNotifier::activated, this, [this] { read(); });
    }

private:
    void read() {
        char bytes[1024];
        const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0) return input_.setEnabled(false);
        pending_.append(bytes, static_cast<std::size_t>(count));
        for (std::size_t end; (end = pending_.find('\n')) != std::string::npos;) {
            const QString line = QString::fromStdString(pending_.substr(0, end));
            pending_.erase(0, end + 1);
            obey_(line.section(' ', 0, 0), line.section(' ', 1));
            say("did " + line);
        }
    }

    Obey obey_;
    QSocketNotifier input_;
    std::string pending_;
};
