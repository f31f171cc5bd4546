#include "Brimquill/Paste/StackManager.h"
#include "tests/app/AppFixture.h"

#include <gmock/gmock.h>

namespace brimquill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class StackManagerTest : public AppFixture {
protected:
    std::int64_t clip(const std::string& text) {
        world.advance(1);
        return store.insert(text, ClipKind::text)->id;
    }
    StackManager stack{store, pasteService, hud, world.defaults()};
};

TEST_F(StackManagerTest, PastesWhatWasAddedFirstAndCountsDown) {
    for (const char* text : {"one", "two", "three"})
        stack.add(clip(text));
    hud.lines.clear();
    std::vector<std::string> pasted;
    for (int i = 0; i < 3; ++i) {
        stack.pasteNext();
        pasted.push_back(world.pasteboard().string().value_or("nothing"));
    }
    EXPECT_THAT(pasted, ElementsAre("one", "two", "three"));
    stack.pasteNext();
    EXPECT_THAT(hud.lines, ElementsAre(Pair("Pasted — 2 left in stack", "square.stack.3d.up"),
                                       Pair("Pasted — 1 left in stack", "square.stack.3d.up"),
                                       Pair("Stack finished", "square.stack.3d.up"),
                                       Pair("Paste stack is empty", "square.stack.3d.up.slash")));
}

TEST_F(StackManagerTest, AddsAClipOnce) {
    const auto id = clip("one");
    stack.add(id);
    stack.add(id);
    EXPECT_THAT(stack.itemIds(), ElementsAre(id));
    EXPECT_THAT(hud.lines, ElementsAre(Pair("Added to stack (1)", "square.stack.3d.up")));
    EXPECT_TRUE(stack.contains(id));
    stack.remove(id);
    EXPECT_FALSE(stack.contains(id));
    EXPECT_EQ(hud.lines.size(), 1U) << "removing says nothing";
}

TEST_F(StackManagerTest, SkipsClipsThatAreGone) {
    const auto gone = clip("gone"), live = clip("live");
    stack.add(gone);
    stack.add(12345);
    stack.add(live);
    store.deleteClip(gone);
    hud.lines.clear();
    stack.pasteNext();
    EXPECT_EQ(world.pasteboard().string(), "live");
    EXPECT_THAT(hud.lines, ElementsAre(Pair("Stack finished", "square.stack.3d.up")));
    stack.add(gone);
    hud.lines.clear();
    stack.pasteNext();
    EXPECT_THAT(hud.lines, ElementsAre(Pair("Paste stack is empty", "square.stack.3d.up.slash")));
    EXPECT_THAT(stack.itemIds(), IsEmpty());
}

TEST_F(StackManagerTest, SaysHowToPasteWhereItMayNot) {
    world.accessibility().setTrusted(false);
    stack.add(clip("copied alone"));
    hud.lines.clear();
    stack.pasteNext();
    EXPECT_EQ(world.pasteboard().string(), "copied alone");
    EXPECT_THAT(hud.lines, ElementsAre(Pair("Copied — press ⌘V (grant Accessibility to auto-paste)", "hand.raised")));
}

TEST_F(StackManagerTest, MovesOnPastFilesThatAreNoMore) {
    stack.add(store.insert("/no/such/file", ClipKind::file)->id);
    stack.add(clip("next"));
    hud.lines.clear();
    stack.pasteNext();
    world.run();
    EXPECT_THAT(hud.lines, ElementsAre(Pair("Original file no longer exists", "questionmark.folder")))
        << "it is not said to be pasted";
    stack.pasteNext();
    EXPECT_EQ(world.pasteboard().string(), "next");
    EXPECT_EQ(*world.defaults().stringArray("pasteStackIds"), std::vector<std::string>{});
}

TEST_F(StackManagerTest, OutlivesARestartButForWhatCannotBeParsed) {
    stack.add(clip("one"));
    stack.add(clip("two"));
    auto stored = *world.defaults().stringArray("pasteStackIds");
    EXPECT_EQ(stored.size(), 2U);
    for (const char* broken : {"", "x", "7x", "99999999999999999999", " 7"})
        stored.emplace_back(broken);
    world.defaults().set("pasteStackIds", stored);
    const StackManager again(store, pasteService, hud, world.defaults());
    EXPECT_EQ(again.itemIds(), stack.itemIds());
}

}  // namespace
}  // namespace brimquill
