// What other programs put on the clipboard: lists of files and texts in any encoding.
#include "BrimquillCore/Foundation/Text.h"
#include "Platform/X11/X11PasteboardFormats.h"

#include <cstdint>
#include <cstdlib>

using namespace brimquill;
using namespace brimquill::platform;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes value(data, data + size);
    const auto paths = x11_formats::decodeFileList(value);
    std::string list;
    for (const std::string& path : paths) {
        if (!path.starts_with('/') || path.find('\0') != std::string::npos) std::abort();
        list += x11_formats::fileUrl(path) + "\r\n";
    }
    if (x11_formats::decodeFileList(x11_formats::bytes(list)) != paths) std::abort();
    for (const char* target : {"UTF8_STRING", "text/plain", "STRING"}) {
        const std::string decoded = x11_formats::decodeText(target, value);
        if (text::validUtf8(decoded) != decoded) std::abort();
        if (x11_formats::latin1(decoded).size() > decoded.size()) std::abort();
    }
    x11_formats::isSecretHint(value);
    return 0;
}
