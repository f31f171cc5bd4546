#include "Brimquill/Palette/PickerActions.h"

#include "tests/app/AppFixture.h"

#include <gtest/gtest.h>

namespace brimquill {
namespace {

class PickerActionsTest : public AppFixture {
protected:
    PickerModel model{{store, center, world.runLoop(), world.defaults(), [] { return std::vector<std::int64_t>{}; }}};
    PickerActions actions{{model, store, pasteService, settings, world.workspace(), hud,
                           [](const std::string& text) { return "<" + text + ">"; }}};

    void copyTexts(const std::vector<std::string>& texts) {
        for (const auto& text : texts) {
            world.advance(1);
            store.insert(text, ClipKind::text);
        }
        model.reset();
    }
    std::vector<std::string> shown() const {
        std::vector<std::string> texts;
        for (const auto& item : model.items())
            texts.push_back(item.text);
        return texts;
    }
    using Texts = std::vector<std::string>;
};

TEST_F(PickerActionsTest, UndoesDeletionsInReverseAcrossAppearances) {
    copyTexts({"a", "b", "c", "d"});
    actions.deleteSelected();
    model.toggleSelection(0);
    model.toggleSelection(1);
    actions.deleteSelected();
    EXPECT_EQ(shown(), Texts{"a"});
    model.reset();
    actions.undoDelete();
    EXPECT_EQ(shown(), (Texts{"c", "b", "a"}));
    actions.undoDelete();
    EXPECT_EQ(shown(), (Texts{"d", "c", "b", "a"}));
    actions.undoDelete();
    Texts said;
    for (const auto& [text, symbol] : hud.lines)
        said.push_back(text);
    EXPECT_EQ(said, (Texts{"Deleted clip — ⌘Z to undo", "Deleted 2 clips — ⌘Z to undo", "Restored 2 clips",
                           "Restored clip", "Nothing to undo"}));
}

TEST_F(PickerActionsTest, JoinsSeveralInTheOrderOfTheStrip) {
    copyTexts({"e", "d", "c", "b", "a"});
    model.toggleSelection(2);
    model.toggleSelection(0);
    model.select(4);
    actions.deliver(model.selectedItems(), PickerActions::Delivery::copyOnly);
    EXPECT_EQ(world.pasteboard().string(), "a\nc\ne");
    ASSERT_EQ(hud.lines.size(), 1U);
    EXPECT_EQ(hud.lines[0].first, "Copied");
}

TEST_F(PickerActionsTest, OpensOnlyWhatCanBeOpened) {
    const struct {
        const char* text;
        Texts opened;
        ClipKind kind = ClipKind::text;
        std::optional<std::string> imagePath = {};
    } cases[] = {{" https://example.org/x \n", {"https://example.org/x"}},
                 {"HTTPS://example.org/X", {}},
                 {"httpsx://example.org", {}},
                 {"ftp://x", {}},
                 {"https://a b", {}},
                 {"https://a\nhttps://b", {}},
                 {"\n\n/tmp/a b#c.txt\n/tmp/second", {"file:///tmp/a%20b%23c.txt"}, ClipKind::file},
                 {"\n", {}, ClipKind::file},
                 {"words in it", {"file:///tmp/p.png"}, ClipKind::image, "/tmp/p.png"},
                 {"https://in.picture", {"https://in.picture"}, ClipKind::ocr, "/tmp/q.png"}};
    for (const auto& test : cases) {
        const auto before = world.workspace().openedUrls().size();
        world.advance(1);
        store.insert(test.text, test.kind, {}, test.imagePath);
        model.reset();
        EXPECT_EQ(actions.openSelected(), !test.opened.empty()) << test.text;
        const auto& all = world.workspace().openedUrls();
        EXPECT_EQ(Texts(all.begin() + static_cast<std::ptrdiff_t>(before), all.end()), test.opened) << test.text;
    }
}

TEST_F(PickerActionsTest, AnEmojiIsPastedAndNotDeletedThoughItIsSaidToBe) {
    copyTexts({"a"});
    model.showEmoji();
    actions.deleteSelected();
    EXPECT_EQ(hud.lines.back().first, "Deleted clip — ⌘Z to undo");
    EXPECT_LT(model.items().front().id, 0);
    actions.deliver(model.selectedItems(), PickerActions::Delivery::paste);
    EXPECT_EQ(world.pasteboard().string(), "<" + model.items().front().text + ">");
    actions.undoDelete();
    EXPECT_EQ(hud.lines.back().first, "Restored clip");
    model.showMostRecent();
    EXPECT_EQ(shown(), Texts{"a"});
    EXPECT_FALSE(actions.openSelected());
}

TEST_F(PickerActionsTest, AChangeOfTheStoreEndsAMultipleChoiceOnlyAfterItsPause) {
    copyTexts({"a", "b"});
    model.setActive(true);
    world.run();
    model.selectAll();
    store.insert("c", ClipKind::text);
    world.advance(0.2);
    EXPECT_EQ(model.selection().size(), 2U);
    world.advance(0.1);
    EXPECT_TRUE(model.selection().empty());
    EXPECT_EQ(shown().size(), 3U);
}

}  // namespace
}  // namespace brimquill
