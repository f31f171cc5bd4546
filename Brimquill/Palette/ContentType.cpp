#include "Brimquill/Palette/ContentType.h"

#include "BrimquillCore/Foundation/Text.h"

namespace brimquill {
namespace {

constexpr const char* screenshotSource = "Screenshot";

bool isGif(const ClipItem& item) {
    return item.imagePath && text::lowercased(*item.imagePath).ends_with(".gif");
}

}  // namespace

std::string label(ContentType type) {
    switch (type) {
        case ContentType::text:
            return "Text";
        case ContentType::link:
            return "Links";
        case ContentType::image:
            return "Images";
        case ContentType::gif:
            return "GIFs";
        case ContentType::screenshot:
            return "Screenshots";
        case ContentType::file:
            return "Files";
    }
    return {};
}

std::string symbol(ContentType type) {
    switch (type) {
        case ContentType::text:
            return "text.alignleft";
        case ContentType::link:
            return "link";
        case ContentType::image:
            return "photo";
        case ContentType::gif:
            return "square.stack.3d.forward.dottedline";
        case ContentType::screenshot:
            return "camera.viewfinder";
        case ContentType::file:
            return "doc";
    }
    return {};
}

bool isLink(const ClipItem& item) {
    return item.text.starts_with("http://") || item.text.starts_with("https://");
}

bool matches(const ClipItem& item, std::optional<ContentType> type) {
    if (!type) return true;
    switch (*type) {
        case ContentType::text:
            return (item.kind == ClipKind::text || item.name) && !isLink(item);
        case ContentType::link:
            return isLink(item);
        case ContentType::image:
            return item.kind == ClipKind::image && item.sourceApp != screenshotSource && !isGif(item);
        case ContentType::gif:
            return isGif(item);
        case ContentType::screenshot:
            return item.kind == ClipKind::ocr || item.sourceApp == screenshotSource;
        case ContentType::file:
            return item.kind == ClipKind::file;
    }
    return false;
}

}  // namespace brimquill
