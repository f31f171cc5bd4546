#pragma once

#include "Platform/Types.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brimquill::platform {

/// Names of what a pasteboard can hold.
namespace pasteboard_type {
inline constexpr const char* string = "public.utf8-plain-text";
inline constexpr const char* fileURL = "public.file-url";
inline constexpr const char* png = "public.png";
inline constexpr const char* tiff = "public.tiff";
inline constexpr const char* gif = "com.compuserve.gif";
inline constexpr const char* concealed = "org.nspasteboard.ConcealedType";
}  // namespace pasteboard_type

/// What is put on the pasteboard in one go; everything present is offered together.
struct PasteboardContents {
    std::optional<std::string> string = {};
    std::vector<std::string> filePaths = {};
    SharedBytes png = {}, gif = {};
};

/// The system's clipboard as a snapshot that was read beforehand, away from the main thread: no call here waits for
/// another program. Main thread.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Grows with every change; a change by another program counts once its snapshot stands.
    virtual int changeCount() const = 0;
    /// The types on offer; nothing when the owner told none. A concealed copy has only its marker read, no content.
    virtual std::optional<std::vector<std::string>> types() const = 0;
    /// Absolute paths of the files on offer, in order; empty when there are none.
    virtual std::vector<std::string> filePaths() const = 0;
    virtual std::optional<std::string> string() const = 0;
    /// The bytes of an image type; null when absent. An image type that has no name of its own is presented as `tiff`.
    virtual SharedBytes data(const std::string& type) const = 0;
    /// Empties the pasteboard and offers `contents` (which may be empty: then nothing is on it); the new change count.
    virtual int write(const PasteboardContents& contents) = 0;
    /// Lets another program's copy, that of the change `changeCount`, outlive that program: once it has quit,
    /// everything that was read of the copy is offered by us. That is no change: content and count stay. Until `keep`
    /// or `drop` is called a copy waits for the word, for a while; one that was there at the start never outlives its
    /// owner. Nothing happens when `changeCount` is no longer the present one.
    virtual void keep(int changeCount) = 0;
    /// Takes the content of the change `changeCount` off the pasteboard if we offer it, because we wrote it or took it
    /// over, which is a change; what another program still offers stays, but goes with that program. Nothing happens
    /// when `changeCount` is no longer the present one.
    virtual void drop(int changeCount) = 0;
    /// Called on the main thread after each change. False when changes cannot be announced: then poll `changeCount`.
    virtual bool setChangeHandler(std::function<void()> handler) = 0;
};

}  // namespace brimquill::platform
