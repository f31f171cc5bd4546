#pragma once

#include "Brimquill/Paste/PasteFiles.h"
#include "Brimquill/Surfaces/HUD.h"
#include "BrimquillCore/ClipItem.h"
#include "BrimquillCore/Foundation/NotificationCenter.h"
#include "Platform/Accessibility.h"
#include "Platform/Pasteboard.h"
#include "Platform/RunLoop.h"
#include "Platform/SyntheticKeys.h"
#include "Platform/Workspace.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>

namespace brimquill {

/// Puts clips back on the pasteboard, each in the form that suits its kind, and has the program in front paste them.
/// Main thread.
class PasteService final {
public:
    /// What it works with; everything must outlive it. `expand` turns a snippet's stored text into what is pasted.
    struct Environment {
        platform::Pasteboard& pasteboard;
        platform::Workspace& workspace;
        platform::Accessibility& accessibility;
        platform::SyntheticKeys& syntheticKeys;
        platform::RunLoop& runLoop;
        HUD& hud;
        NotificationCenter& center;
        std::function<std::string(const std::string&)> expand;
    };

    /// A clip that has a date to go, and whose text goes with it wherever we put it.
    struct Secret {
        std::int64_t clipId = 0;
        Date expiresAt;
    };
    /// The one among `items` that expires first; nothing when none does.
    static std::optional<Secret> soonestSecret(std::span<const ClipItem> items);

    /// Programs that cannot take a picture, and that copy whatever is selected in them.
    static const std::set<std::string>& terminalBundleIds();

    explicit PasteService(Environment environment);

    /// How a paste went. With `troubleTold` it did not go as it was asked for, and the HUD says so: who has something
    /// to say of a success keeps silent.
    enum class Outcome { asAsked, troubleTold };
    using Done = std::function<void(Outcome)>;

    /// Puts `item` on the pasteboard; with `thenPaste`, pastes it too as soon as the user's program has the keyboard,
    /// or tells the user to, where the system does not let us press keys. What cannot be put there changes nothing, but
    /// a picture that cannot be read leaves the pasteboard empty.
    ///
    /// A clip without files is there at once. One with files is there as soon as they were looked at; a file whose disk
    /// does not answer in time counts as gone. What is asked for meanwhile waits its turn. `done` is called when the
    /// item has had its turn, whether it could be put there or not.
    void paste(const ClipItem& item, bool thenPaste, Done done = {});

    /// The same for a text that is no clip. `secret` is what it holds of a clip that expires.
    void pasteText(const std::string& text, bool thenPaste, std::optional<Secret> secret = {}, Done done = {});

    /// Puts `contents` on the pasteboard as a change of our own, so that it is not captured. `secret` is what it holds
    /// of a clip that expires.
    void write(const platform::PasteboardContents& contents, std::optional<Secret> secret = {});

    /// The pasteboard's change count after our last write; 0 before the first.
    int selfWriteChangeCount() const { return selfWriteChangeCount_; }
    /// What our last write holds of a clip that expires; nothing when no clip in it does.
    const std::optional<Secret>& selfWriteSecret() const { return selfWriteSecret_; }

private:
    using Turn = std::function<void()>;
    void inTurn(Turn turn);
    void endTurn(const Done& done, Outcome outcome);
    void begin(const ClipItem& item, bool thenPaste, const Done& done);
    Outcome pasteItemText(const ClipItem& item, bool thenPaste);
    void pasteFiles(const ClipItem& item, bool thenPaste, const Done& done);
    void pastePicture(const ClipItem& item, bool thenPaste, const Done& done);
    bool isTerminalInFront() const;
    Outcome pasteBytes(const std::string& path, const platform::SharedBytes& bytes, bool thenPaste);
    void pasteConverted(const std::string& path, const platform::SharedBytes& bytes, bool thenPaste);
    Outcome finish(const platform::PasteboardContents& contents, bool thenPaste, std::optional<Secret> secret = {});
    Outcome sendCmdVIfAllowed();
    void sendCmdV();

    Environment environment_;
    PasteFiles files_;
    /// What came while a file was looked at, in its order.
    std::deque<Turn> waiting_;
    bool isWaitingForFiles_ = false;
    int selfWriteChangeCount_ = 0;
    std::optional<Secret> selfWriteSecret_;
    /// Counts calls of `paste`: a picture that is converted late must not replace what was pasted since.
    std::uint64_t pasteCount_ = 0;
    /// Gone with this object; what comes later finds nobody.
    std::shared_ptr<PasteService*> self_ = std::make_shared<PasteService*>(this);
};

}  // namespace brimquill
