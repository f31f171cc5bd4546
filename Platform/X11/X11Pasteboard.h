#pragma once

#include "Platform/Pasteboard.h"
#include "Platform/RunLoop.h"
#include "Platform/X11/X11PasteboardConnection.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brimquill::platform {

class X11PasteboardWorker;

/// The X11 selection CLIPBOARD, watched, read and owned by a thread with a connection of its own. Main thread.
///
/// All that is seen here changes on the main thread only. A write counts and is seen at once, and a copy by another
/// program that the clipboard held before our claim of it is dropped, read or not, for the write has replaced it; one
/// that comes after the claim counts after the write. Without a display, or once it is lost, the pasteboard is empty
/// and writes do nothing. What was on the clipboard at the start is seen without having counted as a change.
class X11Pasteboard final : public Pasteboard {
public:
    explicit X11Pasteboard(RunLoop& runLoop, X11PasteboardOptions options = {});
    /// Ends the thread at once; what it owned goes.
    ~X11Pasteboard() override;

    int changeCount() const override;
    std::optional<std::vector<std::string>> types() const override;
    std::vector<std::string> filePaths() const override;
    std::optional<std::string> string() const override;
    SharedBytes data(const std::string& type) const override;
    int write(const PasteboardContents& contents) override;
    void keep(int changeCount) override;
    void drop(int changeCount) override;
    bool setChangeHandler(std::function<void()> handler) override;

    /// Offers the pasteboard's text as the PRIMARY selection as well, for terminals that paste nothing else by
    /// Shift+Insert. Waits until it is offered, a quarter of a second at most. False when there is no text or it was
    /// not offered in time.
    bool offerPrimary();

private:
    struct State;

    RunLoop& runLoop_;
    std::shared_ptr<State> state_;
    std::unique_ptr<X11PasteboardWorker> worker_;
};

}  // namespace brimquill::platform
