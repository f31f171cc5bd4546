#include "Platform/OpenableUrl.h"

#include <algorithm>
#include <array>

namespace brimquill::platform {
namespace {

bool startsWithIgnoringCase(std::string_view text, std::string_view lowerCasePrefix) {
    if (text.size() < lowerCasePrefix.size()) return false;
    return std::equal(lowerCasePrefix.begin(), lowerCasePrefix.end(), text.begin(), [](char expected, char given) {
        return expected == (given >= 'A' && given <= 'Z' ? static_cast<char>(given - 'A' + 'a') : given);
    });
}

}  // namespace

bool isOpenableUrl(std::string_view url) {
    constexpr std::array<std::string_view, 3> schemes = {"http://", "https://", "file:///"};
    const bool known = std::any_of(schemes.begin(), schemes.end(), [&](std::string_view scheme) {
        return startsWithIgnoringCase(url, scheme) && url.size() > scheme.size();
    });
    return known && std::none_of(url.begin(), url.end(),
                                 [](char c) { return static_cast<unsigned char>(c) <= ' ' || c == '\x7f'; });
}

}  // namespace brimquill::platform
