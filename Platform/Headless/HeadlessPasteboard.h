#pragma once

#include "Platform/Pasteboard.h"
#include "Platform/RunLoop.h"

#include <map>
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
    bool setChangeHandler(std::function<void()> handler) override;

private:
    void put(ForeignCopy copy);

    RunLoop& runLoop_;
    ForeignCopy current_;
    std::vector<PasteboardContents> written_;
    int changeCount_ = 1;
    bool announces_ = true;
    std::shared_ptr<std::function<void()>> handler_;
};

}  // namespace brimquill::platform
