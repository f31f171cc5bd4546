#include "Brimquill/AppCapture.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace brimquill::AppCapture {

SharingType sharingType(const std::vector<std::string>& arguments) {
    const bool isCapturable = std::find(arguments.begin(), arguments.end(), "--capturable") != arguments.end();
    return isCapturable ? SharingType::readOnly : SharingType::none;
}

int initialPopoverTab(const std::vector<std::string>& arguments) {
    constexpr std::string_view prefix = "--popover-tab=";
    for (const std::string& argument : arguments) {
        if (!argument.starts_with(prefix)) continue;
        std::string_view digits = std::string_view(argument).substr(prefix.size());
        if (digits.starts_with("+")) digits.remove_prefix(1);
        int tab = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), tab);
        return error == std::errc() && end == digits.data() + digits.size() ? tab : 0;
    }
    return 0;
}

}  // namespace brimquill::AppCapture
