#pragma once

#include "BrimquillCore/ClipStore.h"
#include "Platform/OpenPanel.h"

#include <functional>
#include <memory>

namespace brimquill {

/// Lets the user choose an export of another text expander and brings in its snippets. Main thread.
class SnippetImportFlow final {
public:
    /// Both must outlive it.
    SnippetImportFlow(platform::OpenPanel& openPanel, ClipStore& store) : openPanel_(openPanel), store_(store) {}

    /// The completion gets the number of snippets created: 0 when the user cancelled, or nothing could be read.
    void run(std::function<void(int)> completion);

private:
    platform::OpenPanel& openPanel_;
    ClipStore& store_;
    /// Gone with this object; a dialog that is answered later finds nobody.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace brimquill
