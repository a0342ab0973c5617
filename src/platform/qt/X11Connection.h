#pragma once

struct xcb_connection_t;

namespace velmora {

/// The host's own connection: it leads to the right server, its requests keep the order of the
/// toolkit's, and by the time of an answer all events from before it have been read. Null on
/// another display, and when it is broken.
xcb_connection_t* hostConnection();

/// Sends what the toolkit has left unsent, which it may do for long where nothing is painted and no
/// event comes.
void flushHostConnection();

}  // namespace velmora
