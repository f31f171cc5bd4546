#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace brimquill::platform {

struct X11FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
/// What the server answered; null on an error.
template <typename T>
using X11Reply = std::unique_ptr<T, X11FreeReply>;

/// A client of the X server of its own, apart from the user interface's: what is asked here waits for the server alone,
/// never for another program. Main thread.
class X11Connection final {
public:
    /// To the display of the environment.
    X11Connection();
    ~X11Connection();
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;

    bool isAlive() const { return xcb_connection_has_error(xcb_) == 0 && screen_ != nullptr; }
    xcb_connection_t* xcb() const { return xcb_; }
    xcb_window_t root() const { return screen_ == nullptr ? XCB_NONE : screen_->root; }
    const xcb_screen_t* screen() const { return screen_; }
    int screenNumber() const { return screenNumber_; }

    xcb_atom_t atom(const std::string& name);
    /// A property's bytes, no more than `limit`; empty when absent or of another type.
    std::string property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type, std::size_t limit = 1 << 16);
    /// The first values of a property of 32-bit numbers.
    std::vector<std::uint32_t> numbers(xcb_window_t window, const std::string& name, xcb_atom_t type,
                                       std::size_t limit = 64);
    /// Waits until the server has done everything asked so far.
    void sync();

private:
    xcb_connection_t* xcb_ = nullptr;
    xcb_screen_t* screen_ = nullptr;
    int screenNumber_ = 0;
    std::unordered_map<std::string, xcb_atom_t> atoms_;
};

}  // namespace brimquill::platform
