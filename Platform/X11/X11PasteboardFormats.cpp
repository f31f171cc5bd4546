#include "Platform/X11/X11PasteboardFormats.h"

#include "BrimquillCore/Foundation/Text.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <set>

namespace brimquill::platform {

std::size_t PasteboardSnapshot::size() const {
    std::size_t total = string ? string->size() : 0;
    for (const std::string& path : filePaths)
        total += path.size();
    for (const SharedBytes& image : {gif, png, tiff})
        total += image ? image->size() : 0;
    return total;
}

namespace x11_formats {
namespace {

std::string_view view(const Bytes& value) {
    return {reinterpret_cast<const char*>(value.data()), value.size()};
}

std::string utf8FromLatin1(std::string_view value) {
    std::string result;
    result.reserve(value.size());
    for (const char character : value) {
        const auto code = static_cast<unsigned char>(character);
        if (code < 0x80) {
            result += character;
        } else {
            result += static_cast<char>(0xC0 | (code >> 6));
            result += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return result;
}

int hexDigit(char character) {
    if (character >= '0' && character <= '9') return character - '0';
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    return -1;
}

/// Nothing for a malformed escape and for a zero byte, which no path can hold.
std::optional<std::string> percentDecoded(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char character = text[i];
        if (character == '%') {
            if (text.size() - i < 3) return std::nullopt;
            const int high = hexDigit(text[i + 1]), low = hexDigit(text[i + 2]);
            if (high < 0 || low < 0) return std::nullopt;
            character = static_cast<char>(high * 16 + low);
            i += 2;
        }
        if (character == '\0') return std::nullopt;
        result += character;
    }
    return result;
}

bool isThisMachine(std::string_view host) {
    if (host.empty() || host == "localhost") return true;
    std::array<char, 256> name{};
    return gethostname(name.data(), name.size() - 1) == 0 && host == name.data();
}

std::optional<std::string> localPath(std::string_view line) {
    constexpr std::string_view scheme = "file:";
    if (line.size() < scheme.size()) return std::nullopt;
    for (std::size_t i = 0; i < scheme.size(); ++i)
        if ((line[i] | 0x20) != (scheme[i] | 0x20)) return std::nullopt;
    line.remove_prefix(scheme.size());
    if (line.starts_with("//")) {
        line.remove_prefix(2);
        const std::size_t slash = line.find('/');
        if (slash == std::string_view::npos || !isThisMachine(line.substr(0, slash))) return std::nullopt;
        line.remove_prefix(slash);
    }
    if (!line.starts_with('/')) return std::nullopt;
    return percentDecoded(line);
}

SharedBytes shared(Bytes value) {
    return std::make_shared<const Bytes>(std::move(value));
}

void encodeText(const std::string& text, std::vector<Offered>& offered) {
    const SharedBytes utf8 = shared(bytes(text));
    offered.push_back({"UTF8_STRING", "UTF8_STRING", utf8});
    offered.push_back({"text/plain;charset=utf-8", "text/plain;charset=utf-8", utf8});
    offered.push_back({"text/plain", "text/plain", utf8});
    offered.push_back({"TEXT", "UTF8_STRING", utf8});
    offered.push_back({"STRING", "STRING", shared(latin1(text))});
}

void encodeFiles(const std::vector<std::string>& paths, std::vector<Offered>& offered) {
    std::string list, copied = "copy";
    for (const std::string& path : paths) {
        const std::string url = fileUrl(path);
        list += url + "\r\n";
        copied += "\n" + url;
    }
    offered.push_back({"text/uri-list", "text/uri-list", shared(bytes(list))});
    offered.push_back({"x-special/gnome-copied-files", "x-special/gnome-copied-files", shared(bytes(copied))});
}

}  // namespace

const std::vector<Target>& targets() {
    using enum ContentKind;
    // Among the images that have to be converted, those that lose nothing come first.
    static const std::vector<Target> all = {
        {"x-kde-passwordManagerHint", concealedHint},
        {"text/uri-list", files},
        {"x-special/gnome-copied-files", files},
        {"text/plain;charset=utf-8", text},
        {"text/plain;charset=UTF-8", text},
        {"UTF8_STRING", text},
        {"text/plain", text},
        {"TEXT", text},
        {"STRING", text},
        {"image/gif", gif},
        {"image/png", png},
        {"image/tiff", tiff},
        {"image/bmp", tiff},
        {"image/x-bmp", tiff},
        {"image/x-MS-bmp", tiff},
        {"image/webp", tiff},
        {"image/jpeg", tiff},
        {"image/jpg", tiff},
    };
    return all;
}

const char* typeName(ContentKind kind) {
    switch (kind) {
        case ContentKind::concealedHint:
            return pasteboard_type::concealed;
        case ContentKind::files:
            return pasteboard_type::fileURL;
        case ContentKind::text:
            return pasteboard_type::string;
        case ContentKind::gif:
            return pasteboard_type::gif;
        case ContentKind::png:
            return pasteboard_type::png;
        case ContentKind::tiff:
            break;
    }
    return pasteboard_type::tiff;
}

bool isSecretHint(const Bytes& value) {
    std::string_view hint = view(value);
    while (hint.ends_with('\0') || hint.ends_with('\n'))
        hint.remove_suffix(1);
    return hint == "secret";
}

std::string decodeText(std::string_view target, const Bytes& value) {
    std::string_view raw = view(value);
    while (raw.ends_with('\0'))
        raw.remove_suffix(1);
    if (target == "STRING") return utf8FromLatin1(raw);
    std::string mended = text::validUtf8(raw);
    if ((target == "text/plain" || target == "TEXT") && mended != raw) return utf8FromLatin1(raw);
    return mended;
}

std::vector<std::string> decodeFileList(const Bytes& value) {
    std::vector<std::string> paths;
    std::string_view rest = view(value);
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find_first_of(std::string_view("\r\n\0", 3)), rest.size());
        if (auto path = localPath(rest.substr(0, end))) paths.push_back(std::move(*path));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return paths;
}

std::string fileUrl(std::string_view path) {
    constexpr std::string_view unescaped = "-._~/!$&'()*+,;=:@";
    constexpr char digits[] = "0123456789ABCDEF";
    std::string url = "file://";
    for (const char character : path) {
        const auto code = static_cast<unsigned char>(character);
        const bool plain = (code >= '0' && code <= '9') || (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z');
        if (plain || unescaped.find(character) != std::string_view::npos) {
            url += character;
        } else {
            url += '%';
            url += digits[code >> 4];
            url += digits[code & 15];
        }
    }
    return url;
}

Bytes latin1(std::string_view text) {
    Bytes result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto code = static_cast<unsigned char>(text[i]);
        if (code < 0x80) {
            result.push_back(code);
            continue;
        }
        if ((code & 0xC0) == 0x80) continue;  // the rest of a character that is already answered for
        const bool fits = (code == 0xC2 || code == 0xC3) && i + 1 < text.size();
        result.push_back(fits ? static_cast<std::uint8_t>(((code & 3) << 6) | (text[i + 1] & 0x3F)) : '?');
    }
    return result;
}

Bytes bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

std::vector<Offered> encode(const PasteboardContents& contents) {
    std::vector<Offered> offered;
    if (contents.png) offered.push_back({"image/png", "image/png", contents.png});
    if (contents.gif) offered.push_back({"image/gif", "image/gif", contents.gif});
    if (!contents.filePaths.empty()) encodeFiles(contents.filePaths, offered);
    if (contents.string)
        encodeText(*contents.string, offered);
    else if (!contents.filePaths.empty() && !contents.png && !contents.gif)
        encodeText(text::join(contents.filePaths, "\n"), offered);
    return offered;
}

std::vector<Offered> encode(const PasteboardSnapshot& snapshot) {
    std::vector<Offered> offered = encode(PasteboardContents{
        .string = snapshot.string, .filePaths = snapshot.filePaths, .png = snapshot.png, .gif = snapshot.gif});
    if (snapshot.tiff) offered.push_back({snapshot.tiffTarget, snapshot.tiffTarget, snapshot.tiff});
    return offered;
}

std::vector<std::string> furtherTargets(const std::vector<std::string>& names, const PasteboardSnapshot& snapshot) {
    // How the protocol talks of itself, what marks a secret, and a toolkit's own copy of the picture beside it.
    static const std::set<std::string_view> withoutContent = {"TARGETS",
                                                              "TIMESTAMP",
                                                              "MULTIPLE",
                                                              "SAVE_TARGETS",
                                                              "DELETE",
                                                              "INSERT_SELECTION",
                                                              "INSERT_PROPERTY",
                                                              "x-kde-passwordManagerHint",
                                                              "application/x-qt-image"};
    auto isPicture = [](std::string_view name) { return name.starts_with("image/") && name != "image/svg+xml"; };
    const Target* picture = nullptr;
    const bool hasPicture = snapshot.gif || snapshot.png || snapshot.tiff;
    for (const Target& target : targets())
        if (!hasPicture && !picture && isPicture(target.name) && std::ranges::count(names, target.name) > 0)
            picture = &target;
    std::set<std::string_view> known;
    for (const Offered& offered : encode(snapshot))
        known.insert(offered.target);
    // Of copied files the program's own form says, too, whether they were cut.
    known.erase("x-special/gnome-copied-files");
    if (snapshot.string) known.insert("text/plain;charset=UTF-8");
    std::vector<std::string> further;
    for (const std::string& name : names) {
        if (withoutContent.contains(name) || !known.insert(name).second) continue;
        if (!isPicture(name) || (picture && name == picture->name)) further.push_back(name);
    }
    return further;
}

PasteboardSnapshot snapshot(const PasteboardContents& contents) {
    PasteboardSnapshot own{.types = std::vector<std::string>{},
                           .string = contents.string,
                           .filePaths = contents.filePaths,
                           .gif = contents.gif,
                           .png = contents.png,
                           .tiff = nullptr,
                           .tiffTarget = "image/tiff"};
    if (!own.filePaths.empty()) own.types->push_back(pasteboard_type::fileURL);
    if (own.string) own.types->push_back(pasteboard_type::string);
    if (own.gif) own.types->push_back(pasteboard_type::gif);
    if (own.png) own.types->push_back(pasteboard_type::png);
    return own;
}

}  // namespace x11_formats
}  // namespace brimquill::platform
