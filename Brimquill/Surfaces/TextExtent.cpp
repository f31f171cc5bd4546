#include "Brimquill/Surfaces/TextExtent.h"

#include <algorithm>

namespace brimquill {
namespace {

/// A line separator does not: what follows it is laid out with what stands before.
bool endsParagraph(QChar character) {
    return character == QLatin1Char('\n') || character == QLatin1Char('\r') || character == QChar::ParagraphSeparator;
}

}  // namespace

TextExtent TextExtent::of(QStringView text) {
    TextExtent extent{.length = text.size()};
    qsizetype paragraph = 0, word = 0;
    for (const QChar character : text) {
        paragraph = endsParagraph(character) ? 0 : paragraph + 1;
        word = character.isSpace() ? 0 : word + 1;
        extent.longestParagraph = std::max(extent.longestParagraph, paragraph);
        extent.longestWord = std::max(extent.longestWord, word);
    }
    return extent;
}

}  // namespace brimquill
