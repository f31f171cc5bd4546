#pragma once

#include "Brimquill/Palette/ContentType.h"
#include "Brimquill/Palette/PickerFilter.h"
#include "BrimquillCore/ClipStore.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brimquill {

/// What the palette is asked for: a text, a scope and a type, which always combine as intersection.
struct PickerQuery {
    std::string text;
    PickerFilter filter = scope::Clipboard{};
    std::optional<ContentType> type;
    friend bool operator==(const PickerQuery&, const PickerQuery&) = default;
};

/// How many cards the strip shows at most, but for emoji and the stack.
inline constexpr std::size_t cardLimit = 60;

/// The clips that answer a query, in display order. `stackIds` are the clips on the paste stack, `now` is the date of
/// cards that were never stored.
std::vector<ClipItem> pickerItems(ClipStore& store, const PickerQuery& query, const std::vector<std::int64_t>& stackIds,
                                  Date now);

/// The words for an empty strip.
struct EmptyState {
    std::string title, subtitle, symbol;
    friend bool operator==(const EmptyState&, const EmptyState&) = default;
};
EmptyState emptyState(const PickerQuery& query);

}  // namespace brimquill
