#pragma once

#include "Platform/Pasteboard.h"
#include "Platform/RunLoop.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace brimquill::platform {

/// What another program puts on the pasteboard.
struct ForeignCopy {
    PasteboardContents contents;
    /// Bytes of further types (`public.tiff`, say) by type.
    std::map<std::string, SharedBytes> data;
    /// Types without content, such as the markers of password managers.
    std::vector<std::string> markers;
    /// Carries the concealed marker: the types are told, no content is.
    bool isConcealed = false;
    /// The owner tells no types at all.
    bool tellsTypes = true;
};

/// A pasteboard in memory that keeps what was written to it.
class HeadlessPasteboard final : public Pasteboard {
public:
    explicit HeadlessPasteboard(RunLoop& runLoop) : runLoop_(runLoop) {}

    /// Another program copies.
    void copy(const ForeignCopy& copy);
    /// The program that copied last quits; nothing happens when the content is ours already.
    void quitOwner();
    /// What another program that pastes now gets; nothing when nobody offers anything.
    const std::optional<PasteboardContents>& offered() const { return offered_; }
    /// Whether it is us who offers it.
    bool isOurs() const { return owner_ == Owner::us; }
    /// What the program itself wrote, oldest first.
    const std::vector<PasteboardContents>& written() const { return written_; }
    /// Off: changes are found by polling only.
    void setAnnouncesChanges(bool announces) { announces_ = announces; }

    int changeCount() const override { return changeCount_; }
    std::optional<std::vector<std::string>> types() const override;
    std::vector<std::string> filePaths() const override;
    std::optional<std::string> string() const override;
    SharedBytes data(const std::string& type) const override;
    int write(const PasteboardContents& contents) override;
    void keep(int changeCount) override;
    void drop(int changeCount) override;
    bool setChangeHandler(std::function<void()> handler) override;

private:
    enum class Owner { another, gone, us };
    enum class Decision { none, keep, drop };

    void put(ForeignCopy copy, Owner owner);
    void empty();

    RunLoop& runLoop_;
    ForeignCopy current_;
    std::optional<PasteboardContents> offered_;
    Owner owner_ = Owner::gone;
    Decision decision_ = Decision::drop;
    std::vector<PasteboardContents> written_;
    int changeCount_ = 1;
    bool announces_ = true;
    std::shared_ptr<std::function<void()>> handler_;
};

}  // namespace brimquill::platform
