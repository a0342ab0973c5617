#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

struct xcb_connection_t;

namespace velmora {

/// The host's own connection: it leads to the right server, its requests keep the order of the
/// toolkit's, and by the time of an answer all events from before it have been read. Null on
/// another display, and when it is broken.
xcb_connection_t* hostConnection();

/// Sends what the toolkit has left unsent, which it may do for long where nothing is painted and no
/// event comes.
void flushHostConnection();

/// What libxcb hands out, which the receiver frees.
template <class Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply* reply) {
    return {reply, &std::free};
}

/// A connection of our own to the server that the host is connected to, which need not be the one
/// that the environment names. Closed on another display, and when the server does not take it.
class X11OwnConnection {
public:
    X11OwnConnection();

    /// Null once it is closed or broken.
    xcb_connection_t* server() const;
    /// The number of the host's screen there, and its root window.
    int screen() const { return screen_; }
    std::uint32_t root() const { return root_; }

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const;
    };
    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    int screen_ = 0;
    std::uint32_t root_ = 0;
};

}  // namespace velmora
