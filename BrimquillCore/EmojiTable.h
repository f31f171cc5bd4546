#pragma once

#include <cstddef>

namespace brimquill {

/// A row of the emoji table as it is written: the keywords in one string, divided by blanks.
struct EmojiRow {
    const char* character;
    const char* name;
    const char* keywords;
};

inline constexpr std::size_t emojiCount = 481;
/// The rows in the order in which they are shown.
extern const EmojiRow emojiTable[emojiCount];

}  // namespace brimquill
