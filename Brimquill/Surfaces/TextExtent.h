#pragma once

#include <QStringView>

namespace brimquill {

/// How much of a text hangs together, in UTF-16 units: laying out a text takes time by its paragraphs, and breaking one
/// between words by what has no blank in it.
struct TextExtent {
    qsizetype length = 0, longestParagraph = 0, longestWord = 0;

    static TextExtent of(QStringView text);

    /// Whether each key in an editor of the text can be answered without a wait.
    bool isEditable() const { return length <= 500'000 && longestParagraph <= 100'000; }
    /// Whether its lines can be broken between words alone.
    bool hasWords() const { return longestWord <= 2'000; }
};

}  // namespace brimquill
