#include "BrimquillCore/Foundation/Uuid.h"

#include <array>
#include <cstdint>
#include <random>

namespace brimquill {
namespace {

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool isDashPosition(std::size_t index) {
    return index == 8 || index == 13 || index == 18 || index == 23;
}

}  // namespace

std::string makeUuid() {
    static constexpr char digits[] = "0123456789abcdef";
    std::random_device random;
    std::array<std::uint32_t, 4> words{random(), random(), random(), random()};
    words[1] = (words[1] & 0xFFFF0FFFU) | 0x00004000U;  // version 4
    words[2] = (words[2] & 0x3FFFFFFFU) | 0x80000000U;  // variant of RFC 9562
    std::string uuid;
    uuid.reserve(36);
    for (const std::uint32_t word : words) {
        for (int shift = 28; shift >= 0; shift -= 4) {
            if (isDashPosition(uuid.size())) uuid += '-';
            uuid += digits[(word >> shift) & 0xFU];
        }
    }
    return uuid;
}

bool isUuid(std::string_view text) {
    if (text.size() != 36) return false;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (isDashPosition(index) ? text[index] != '-' : !isHexDigit(text[index])) return false;
    }
    return true;
}

}  // namespace brimquill
