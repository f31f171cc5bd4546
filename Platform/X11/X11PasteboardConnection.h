#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace brimquill::platform {

/// How patient the pasteboard is with other programs, and where its display is.
struct X11PasteboardOptions {
    /// Empty stands for the environment's DISPLAY.
    std::string display;
    /// An owner that gives nothing for so long is given up. Many make what they offer only when it is asked for: a GTK
    /// program takes about a second for a picture of 7 megapixels. Nobody but the clipboard's thread waits.
    std::chrono::milliseconds stepDeadline{5'000};
    /// After so long a read goes on only while it has brought `steadyBytesPerSecond` on the whole.
    std::chrono::milliseconds readBound{10'000};
    std::size_t steadyBytesPerSecond = 1 << 20;
    /// The most that is taken of one copy.
    std::size_t cap = std::size_t{256} << 20;
    /// Bytes that go through the server in one piece, both ways.
    std::size_t chunk = std::size_t{256} << 10;
    /// A program that pastes from us and takes nothing for so long is given up.
    std::chrono::milliseconds requestorDeadline{10'000};
    /// A copy whose owner is gone, or wants it saved, waits so long for the word whether it may be kept.
    std::chrono::milliseconds decisionDeadline{2'000};
    /// After so many reads in a row that a newer change cut off, the next waits for `restartPause`.
    int restartLimit = 8;
    std::chrono::milliseconds restartPause{500};
    /// Takes log lines, on any thread. Empty stands for the program's log.
    std::function<void(std::string_view)> log;
};

template <typename T>
struct FreeDeleter {
    void operator()(T* pointer) const { std::free(pointer); }
};
/// What xcb hands out to be freed.
template <typename T>
using XcbOwned = std::unique_ptr<T, FreeDeleter<T>>;

/// The pasteboard's own client of the X server with the one window that it asks and owns by. One thread at a time,
/// except `interrupt`.
class X11PasteboardConnection final {
public:
    using Clock = std::chrono::steady_clock;

    explicit X11PasteboardConnection(X11PasteboardOptions options);
    ~X11PasteboardConnection();
    X11PasteboardConnection(const X11PasteboardConnection&) = delete;
    X11PasteboardConnection& operator=(const X11PasteboardConnection&) = delete;

    /// False when there is no display, or no longer. Everything below then does nothing.
    bool alive() const { return xcb_connection_has_error(xcb_) == 0; }
    /// The event number of XFixes's owner changes; 0 when the server has no XFixes.
    int ownerChangeEvent() const { return ownerChangeEvent_; }
    /// Breaks off the call that another thread may be blocked in; the display counts as lost from then on.
    void interrupt();

    xcb_connection_t* xcb() const { return xcb_; }
    xcb_window_t window() const { return window_; }
    const X11PasteboardOptions& options() const { return options_; }
    /// `options().chunk`, or less on a server that takes only small requests.
    std::size_t chunk() const { return chunk_; }
    /// To wait on; -1 when there was no display.
    int descriptor() const { return descriptor_; }
    void log(const std::string& line) const;

    /// Asked once for each name, then remembered.
    xcb_atom_t atom(const std::string& name) const;
    /// Tells everybody who waits for a manager selection that it is ours since `time`.
    void announceManager(xcb_atom_t selection, xcb_timestamp_t time) const;
    /// 0 when nobody owns it.
    xcb_window_t owner(xcb_atom_t selection) const;

private:
    void createWindow(int screenNumber);
    void watchClipboard();

    X11PasteboardOptions options_;
    xcb_connection_t* xcb_ = nullptr;
    int descriptor_ = -1;
    xcb_window_t root_ = XCB_NONE, window_ = XCB_NONE;
    int ownerChangeEvent_ = 0;
    std::size_t chunk_ = 0;
    mutable std::unordered_map<std::string, xcb_atom_t> atoms_;
};

}  // namespace brimquill::platform
