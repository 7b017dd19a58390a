#pragma once
// Wishes from outside that the program end: SIGINT and SIGTERM, on Windows the events of a console. The program sees one within a frame and
// ends in order; a second one of the same kind ends it at once.
namespace arena::platform {

// From here on they are noted. What cannot be written (a closed pipe, a file beyond its limit) is an error of the write, not the end.
void watch_end_requests();
// 0: there was none; else the status to end with: 130 when it was interrupted, 143 when it was told to end.
int end_request();
// From here on they end the program at once: while it waits for somebody to close a dialog.
void stop_watching_end_requests();
#ifndef _WIN32
// Ready to be read once there was a request: for poll(). -1: there is none.
int end_request_descriptor();
#endif

}  // namespace arena::platform
