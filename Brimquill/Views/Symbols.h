#pragma once

#include <QString>

#include <string_view>

/// The glyphs that stand for the system's named symbols.
namespace brimquill::Symbols {

/// The family of the font that has them.
inline constexpr const char* fontFamily = "Material Icons";

/// The character of `fontFamily` for a symbol such as "doc.on.clipboard"; a question mark in a circle for a name that
/// is not known. A name with ".fill" has the glyph of the name without where there is no other. Any thread.
QString glyph(std::string_view name);

}  // namespace brimquill::Symbols
