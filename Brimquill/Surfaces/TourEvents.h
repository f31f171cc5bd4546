#pragma once

/// The names of the notifications that the welcome tour listens to; the live program posts them as things happen.
namespace brimquill::TourEvents {

/// A clip was captured; user info: "kind" (the raw value of its kind) and "preview".
inline constexpr const char* didCapture = "BrimquillDidCapture";
inline constexpr const char* paletteDidShow = "BrimquillPaletteDidShow";
inline constexpr const char* paletteDidSearch = "BrimquillPaletteDidSearch";
/// A clip was put on the pasteboard to be pasted, by ourselves or, without the right to press keys, by the user.
inline constexpr const char* didPaste = "BrimquillDidPaste";
inline constexpr const char* explorerDidOpen = "BrimquillExplorerDidOpen";
/// A typed keyword was replaced; user info: "keyword".
inline constexpr const char* didExpandSnippet = "BrimquillDidExpandSnippet";
inline constexpr const char* popoverDidShow = "BrimquillPopoverDidShow";

}  // namespace brimquill::TourEvents
