// Watches an X server for a program's first top-level window, as any other client of the server
// could: its mapping (MapNotify on the root window) and its first painting (a DAMAGE extension
// report on the window). Nothing runs inside the watched program.
#pragma once

#include <poll.h>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <vector>

namespace zorvel::bench {

class XWatcher {
 public:
  using Moment = std::chrono::steady_clock::time_point;
  struct Marks {
    Moment mapped;
    Moment painted;
  };

  XWatcher() {
    connection_ = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection_) != 0) return;
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    const uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &events);
    damageEvent_ = queryDamage();
  }
  ~XWatcher() { xcb_disconnect(connection_); }
  XWatcher(const XWatcher&) = delete;
  XWatcher& operator=(const XWatcher&) = delete;

  // The server can be watched: it is reachable and reports damage.
  bool ready() const { return xcb_connection_has_error(connection_) == 0 && damageEvent_ >= 0; }

  // Waits (up to timeoutS) for a window made on the root from now on to be mapped, and then
  // for one of them to be painted into. Events of windows made before are passed over.
  std::optional<Marks> awaitWindow(double timeoutS) {
    const Moment end = std::chrono::steady_clock::now() +
                       std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                           std::chrono::duration<double>(timeoutS));
    std::vector<xcb_window_t> made;
    const auto ours = [&made](xcb_window_t w) {
      return std::find(made.begin(), made.end(), w) != made.end();
    };
    std::optional<Moment> mapped;
    while (xcb_generic_event_t* event = nextEvent(end)) {
      const Moment now = std::chrono::steady_clock::now();
      const int type = event->response_type & 0x7f;
      std::optional<Marks> marks;
      if (type == XCB_CREATE_NOTIFY) {
        made.push_back(reinterpret_cast<xcb_create_notify_event_t*>(event)->window);
        watchDamage(made.back());
      } else if (type == XCB_MAP_NOTIFY && !mapped &&
                 ours(reinterpret_cast<xcb_map_notify_event_t*>(event)->window)) {
        mapped = now;
      } else if (type == damageEvent_ && mapped && ours(damagedDrawable(event))) {
        marks = Marks{*mapped, now};
      }
      std::free(event);
      if (marks) return marks;
    }
    return std::nullopt;
  }

 private:
  xcb_connection_t* connection_ = nullptr;
  xcb_window_t root_ = XCB_NONE;
  int damageEvent_ = -1;
  xcb_extension_t damageExtension_{"DAMAGE", 0};

  // A damage report names the drawable after its first four bytes.
  static xcb_window_t damagedDrawable(const xcb_generic_event_t* event) {
    xcb_window_t drawable = XCB_NONE;
    std::memcpy(&drawable, reinterpret_cast<const char*>(event) + 4, sizeof drawable);
    return drawable;
  }

  xcb_generic_event_t* nextEvent(Moment end) {
    for (;;) {
      if (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) return event;
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
          end - std::chrono::steady_clock::now());
      if (left.count() <= 0) return nullptr;
      pollfd fd{xcb_get_file_descriptor(connection_), POLLIN, 0};
      ::poll(&fd, 1, static_cast<int>(left.count()) + 1);
    }
  }

  // The DAMAGE extension's first event code, after agreeing its version; -1 without it.
  int queryDamage() {
    const char* name = "DAMAGE";
    xcb_query_extension_reply_t* extension = xcb_query_extension_reply(
        connection_, xcb_query_extension(connection_, std::strlen(name), name), nullptr);
    if (extension == nullptr || extension->present == 0) {
      std::free(extension);
      return -1;
    }
    const int firstEvent = extension->first_event;
    std::free(extension);
    struct {
      uint8_t major, minor;
      uint16_t length;
      uint32_t clientMajor, clientMinor;
    } version{0, 0, 0, 1, 1};
    const xcb_protocol_request_t request{2, &damageExtension_, 0, 0};
    const unsigned int sequence = send(request, &version, sizeof version);
    std::free(xcb_wait_for_reply(connection_, sequence, nullptr));
    return firstEvent;
  }

  // One report when the window is first drawn into (level "non-empty").
  void watchDamage(xcb_window_t window) {
    struct {
      uint8_t major, minor;
      uint16_t length;
      uint32_t damage, drawable;
      uint8_t level, pad[3];
    } create{0, 0, 0, xcb_generate_id(connection_), window, 3, {0, 0, 0}};
    const xcb_protocol_request_t request{2, &damageExtension_, 1, 1};
    send(request, &create, sizeof create);
    xcb_flush(connection_);
  }

  unsigned int send(const xcb_protocol_request_t& request, void* body, std::size_t size) {
    iovec parts[4];
    parts[2].iov_base = body;
    parts[2].iov_len = size;
    parts[3].iov_base = nullptr;
    parts[3].iov_len = -size & 3;
    return xcb_send_request(connection_, 0, parts + 2, &request);
  }
};

}  // namespace zorvel::bench
