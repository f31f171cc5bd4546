#include "Brimquill/Views/Symbols.h"

#include <algorithm>
#include <array>

namespace brimquill::Symbols {
namespace {

struct Symbol {
    std::string_view name;
    char16_t character;
};

/// Sorted by name.
constexpr std::array symbols = std::to_array<Symbol>({
    {"arrow.clockwise", 0xe5d5},
    {"arrow.up.right.square", 0xe89e},
    {"arrow.uturn.backward", 0xe166},
    {"bookmark", 0xe867},
    {"bookmark.fill", 0xe866},
    {"camera.viewfinder", 0xec08},
    {"character.cursor.ibeam", 0xe262},
    {"checkmark", 0xe5ca},
    {"checkmark.circle", 0xe92d},
    {"checkmark.circle.fill", 0xe86c},
    {"chevron.down", 0xe5cf},
    {"chevron.left", 0xe5cb},
    {"chevron.right", 0xe5cc},
    {"chevron.up", 0xe5ce},
    {"circle", 0xe836},
    {"clock", 0xe8b5},
    {"command", 0xeae7},
    {"doc", 0xe873},
    {"doc.on.clipboard", 0xe14f},
    {"doc.on.doc", 0xe14d},
    {"exclamationmark.triangle", 0xf083},
    {"exclamationmark.triangle.fill", 0xe002},
    {"eye", 0xe8f4},
    {"eye.slash", 0xe8f5},
    {"face.smiling", 0xea22},
    {"folder", 0xe2c8},
    {"folder.badge.minus", 0xeb34},
    {"folder.badge.plus", 0xe2cc},
    {"folder.fill", 0xe2c7},
    {"gear", 0xe8b8},
    {"gearshape", 0xe8b8},
    {"hand.raised", 0xe925},
    {"icloud", 0xe2c2},
    {"icloud.slash", 0xe2c1},
    {"info.circle", 0xe88e},
    {"keyboard", 0xe312},
    {"line.3.horizontal.decrease.circle", 0xe152},
    {"line.3.horizontal.decrease.circle.fill", 0xef4f},
    {"link", 0xe157},
    {"lock", 0xe898},
    {"lock.fill", 0xe897},
    {"magnifyingglass", 0xe8b6},
    {"menubar.arrow.up.rectangle", 0xe89d},
    {"minus.circle", 0xe15d},
    {"number", 0xe9ef},
    {"paintpalette", 0xe40a},
    {"pause", 0xe034},
    {"pause.circle", 0xe036},
    {"pause.circle.fill", 0xe035},
    {"pencil", 0xe3c9},
    {"photo", 0xe410},
    {"pin", 0xf10d},
    {"pin.slash", 0xf10d},
    {"play.circle", 0xe039},
    {"plus", 0xe145},
    {"plus.circle", 0xe148},
    {"questionmark.circle", 0xe8fd},
    {"questionmark.folder", 0xeb83},
    {"record.circle", 0xe061},
    {"rectangle.and.pencil.and.ellipsis", 0xe745},
    {"return", 0xe31b},
    {"square.and.arrow.down", 0xe2c4},
    {"square.and.arrow.up", 0xe2c6},
    {"square.stack.3d.forward.dottedline", 0xe7a3},
    {"square.stack.3d.up", 0xe53b},
    {"square.stack.3d.up.slash", 0xe53c},
    {"star", 0xe83a},
    {"star.fill", 0xe838},
    {"tag", 0xe893},
    {"tag.fill", 0xe892},
    {"text.alignleft", 0xe26c},
    {"text.insert", 0xe03b},
    {"text.viewfinder", 0xe5fa},
    {"textformat", 0xe262},
    {"timer", 0xe425},
    {"trash", 0xe92e},
    {"tray", 0xe156},
    {"tray.and.arrow.down", 0xe168},
    {"xmark", 0xe5cd},
    {"xmark.circle", 0xe888},
    {"xmark.circle.fill", 0xe5c9},
});
static_assert(std::is_sorted(symbols.begin(), symbols.end(),
                             [](const Symbol& a, const Symbol& b) { return a.name < b.name; }));

constexpr char16_t unknown = 0xe8fd;

char16_t character(std::string_view name) {
    const auto found =
        std::lower_bound(symbols.begin(), symbols.end(), name,
                         [](const Symbol& symbol, std::string_view wanted) { return symbol.name < wanted; });
    if (found != symbols.end() && found->name == name) return found->character;
    constexpr std::string_view filled = ".fill";
    return name.ends_with(filled) ? character(name.substr(0, name.size() - filled.size())) : unknown;
}

}  // namespace

QString glyph(std::string_view name) {
    return QString(QChar(character(name)));
}

}  // namespace brimquill::Symbols
