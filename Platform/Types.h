#pragma once

#include <cstdint>
#include <memory>
#include <vector>

/// The words that the platform services share. Plain values; nothing here touches a system.
namespace brimquill::platform {

/// What is held stays in force; destroying it ends it: a timer, a monitor, a grab, an observation.
class Held {
public:
    Held() = default;
    virtual ~Held() = default;
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
};
using Token = std::unique_ptr<Held>;

using Bytes = std::vector<std::uint8_t>;
/// Bytes that may be large and are never copied; null when absent.
using SharedBytes = std::shared_ptr<const Bytes>;

/// In points: pixels divided by the screen's scale. y grows downwards.
struct Point {
    double x = 0, y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};
struct Rect {
    double x = 0, y = 0, width = 0, height = 0;
    bool contains(Point point) const {
        return point.x >= x && point.x < x + width && point.y >= y && point.y < y + height;
    }
    friend bool operator==(const Rect&, const Rect&) = default;
};

/// The modifier symbols; what each is on the keyboard at hand is the backend's business.
struct Modifiers {
    bool command = false, shift = false, option = false, control = false;
    bool none() const { return !command && !shift && !option && !control; }
    friend bool operator==(const Modifiers&, const Modifiers&) = default;
};

/// Virtual key codes, as used in every key event and hot key.
namespace key {
inline constexpr int a = 0, s = 1, d = 2, f = 3, h = 4, g = 5, z = 6, x = 7, c = 8, v = 9, b = 11, q = 12, w = 13,
                     e = 14, r = 15, y = 16, t = 17, one = 18, two = 19, three = 20, four = 21, six = 22, five = 23,
                     nine = 25, seven = 26, eight = 28, zero = 29, o = 31, u = 32, i = 34, p = 35, returnKey = 36,
                     l = 37, j = 38, k = 40, slash = 44, n = 45, m = 46, tab = 48, space = 49, deleteKey = 51,
                     escape = 53, left = 123, right = 124, down = 125, up = 126, other = -1;
}  // namespace key

/// Straight, unpremultiplied 8-bit RGBA, rows from the top without padding.
struct Image {
    int width = 0, height = 0;
    Bytes rgba;
};

}  // namespace brimquill::platform
