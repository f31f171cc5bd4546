#pragma once

#include "Platform/Types.h"

#include <functional>
#include <optional>
#include <string>

namespace brimquill::platform {

/// A program as the desktop knows it. `bundleIdentifier` is the known id of a program that has one, else its
/// desktop-file id, else its lower-cased window class.
struct RunningApplication {
    int processIdentifier = 0;
    std::optional<std::string> bundleIdentifier;
    std::optional<std::string> localizedName;
    friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

/// The desktop: which program is in front, what it looks like, and how things are opened. Main thread.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// The program whose window is active; nothing when none is, or it cannot be known.
    virtual std::optional<RunningApplication> frontmostApplication() = 0;
    /// This program itself.
    virtual RunningApplication currentApplication() const = 0;
    /// The icon of a program, about `size` pixels square; nothing when it has none. Reads a file: any thread.
    virtual std::optional<Image> icon(const std::string& bundleIdentifier, int size) = 0;
    /// The icon that files of this one's kind have on the desktop, about `size` pixels square; nothing when there is
    /// none. Looks at the disk: any thread.
    virtual std::optional<Image> iconForFile(const std::string& path, int size) = 0;
    /// Opens an http(s) or file URL with the desktop's own opener, without waiting; false if that could not be started
    /// or the URL is of another kind. Nothing is ever executed by its content.
    virtual bool open(const std::string& url) = 0;
};

}  // namespace brimquill::platform
