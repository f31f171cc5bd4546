#pragma once

#include "Platform/Types.h"
#include "Platform/X11/X11PasteboardSnapshot.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// How other programs name and write what a clipboard holds. Pure functions over bytes that others wrote: total, any
/// thread.
namespace brimquill::platform::x11_formats {

enum class ContentKind { concealedHint, files, text, gif, png, tiff };

/// One way to ask an owner for one kind of content.
struct Target {
    const char* name;
    ContentKind kind;
};

/// All targets that are worth asking for, in the order in which they are tried: the hint before any content, files
/// before text, text before images, and in each kind the most exact form first.
const std::vector<Target>& targets();

/// The pasteboard type that a kind is presented as.
const char* typeName(ContentKind kind);

/// Whether the value of the password managers' hint marks a secret.
bool isSecretHint(const Bytes& value);

/// Text in UTF-8. Latin-1 for the target "STRING"; for "text/plain", which names no encoding, and "TEXT" UTF-8 when it
/// is that, else Latin-1; malformed UTF-8 is mended by U+FFFD. Zero bytes at the end are dropped.
std::string decodeText(std::string_view target, const Bytes& value);

/// The absolute paths of the local file URLs in a list, in order. Comments, other schemes, other hosts, the word "copy"
/// or "cut" on the first line and anything malformed are passed over.
std::vector<std::string> decodeFileList(const Bytes& value);

/// "file://" and the path, every byte that a URL may not hold escaped.
std::string fileUrl(std::string_view path);

/// UTF-8 as Latin-1, "?" for what Latin-1 lacks.
Bytes latin1(std::string_view text);

Bytes bytes(std::string_view text);

/// One form in which own contents are offered: the target's name, the type of the property that answers, and the value.
struct Offered {
    const char* target;
    const char* type;
    SharedBytes value;
};

/// Everything that other programs may ask for. Files that come without text and picture are offered as text as well,
/// one path a line, for the programs that take nothing else (terminals); beside a picture the path would win over it.
std::vector<Offered> encode(const PasteboardContents& contents);

/// Everything that can be offered of another program's copy by what was read of it.
std::vector<Offered> encode(const PasteboardSnapshot& snapshot);

/// The targets among `names`, an owner's own list, that hold more than `encode` makes of what was read already, in
/// their order: no text beside text, and one picture at most, which is the most exact one.
std::vector<std::string> furtherTargets(const std::vector<std::string>& names, const PasteboardSnapshot& snapshot);

/// What the program itself sees of its own contents.
PasteboardSnapshot snapshot(const PasteboardContents& contents);

}  // namespace brimquill::platform::x11_formats
