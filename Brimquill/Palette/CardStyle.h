#pragma once

#include "Brimquill/Palette/PickerFilter.h"
#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/FolderTree.h"

#include <atomic>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimquill {

/// A colour of the interface: `fill` carries `onFill` as text; `ink` is for text and symbols on a dark card. "#RRGGBB".
struct CardColor {
    std::string fill, ink, onFill = "#FFFFFF";
    friend bool operator==(const CardColor&, const CardColor&) = default;
};

/// The shared colours, headers and words of cards and chips. Main thread.
class CardStyle final {
public:
    struct Header {
        std::string title;
        CardColor color;
        friend bool operator==(const Header&, const Header&) = default;
    };

    CardStyle(ClipStore& store, NotificationCenter& center);

    /// A colour by one of the eight names that a pinboard may have, "orange" to "indigo"; nothing for any other name.
    static std::optional<CardColor> named(std::string_view name);
    /// One of eight colours, always the same for the same text.
    static CardColor palette(std::string_view text);
    /// "#RRGGBB" of a hex code with three or six digits, "#" or not, blanks around it or not; nothing otherwise.
    static std::optional<std::string> hex(std::string_view code);
    /// A user's own colour, with white or near-black text on it, whichever contrasts more, or black where neither can
    /// be read.
    static CardColor custom(const std::string& hex);
    /// "now", "5m", "3h", "2d", "6w", "1y".
    static std::string age(Date created, Date now);

    /// The folder's own colour, else that of its top-level pinboard, else one by the name of that.
    CardColor folderColor(const ClipFolder& folder, const std::string& path);
    /// The slash path, without reading the store again.
    std::string path(const ClipFolder& folder);
    Header header(const ClipItem& item);
    CardColor color(const PickerFilter& filter);

private:
    const FolderTree& folders();

    ClipStore& store_;
    std::optional<FolderTree> folders_;
    /// Set on the thread that wrote.
    std::atomic<bool> foldersAreStale_ = false;
    NotificationCenter::Observation observation_;
};

}  // namespace brimquill
