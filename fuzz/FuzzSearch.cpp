// What is typed into the search field, on a store of a few clips.
#include "BrimquillCore/ClipStore.h"
#include "tests/core/TemporaryDirectory.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

using namespace brimquill;

namespace {

struct World {
    World() {
        for (const char* text : {"the quick brown fox", "\"quoted\" AND (NEAR) * -x:y", "50% of a_b \\ 'it''s'",
                                 "Grüße aus Łódź", "日本語のテキスト", "🙂 emoji\nsecond line", ""}) {
            store.insert(text, ClipKind::text);
        }
        store.createSnippet("Näme", "snippet text", ";kéy");
        store.setTags(store.insert("tagged", ClipKind::text)->id, {"work", "ünï"});
        store.deleteClip(store.insert("deleted fox", ClipKind::text)->id);
    }
    test::TemporaryDirectory directory;
    NotificationCenter center;
    ClipStore store{directory.path(), center};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static auto* const world = new World;
    const std::string query(reinterpret_cast<const char*>(data), size);
    const auto found = world->store.search(query, 200);
    std::vector<std::int64_t> ids;
    for (const auto& clip : found) {
        if (clip.deleted) std::abort();
        ids.push_back(clip.id);
    }
    std::sort(ids.begin(), ids.end());
    if (std::adjacent_find(ids.begin(), ids.end()) != ids.end()) std::abort();
    return 0;
}
