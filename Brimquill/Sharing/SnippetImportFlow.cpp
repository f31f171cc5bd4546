#include "Brimquill/Sharing/SnippetImportFlow.h"

#include "BrimquillCore/SnippetImport.h"

#include <utility>

namespace brimquill {

void SnippetImportFlow::run(std::function<void(int)> completion) {
    platform::OpenPanel::Request request;
    request.message = "Choose a Raycast / Espanso / TextExpander export";
    request.allowedExtensions = {"json", "yml", "yaml", "txt"};
    openPanel_.run(request, [this, alive = std::weak_ptr(alive_),
                             completion = std::move(completion)](const std::optional<std::string>& path) {
        if (alive.expired()) return;
        completion(path ? SnippetImport::importFile(*path, store_) : 0);
    });
}

}  // namespace brimquill
