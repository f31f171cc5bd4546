#include "tests/core/StoreFixture.h"

#include <gmock/gmock.h>

#include <functional>
#include <random>
#include <set>

namespace brimquill::test {
namespace {

class StoreRetention : public StoreTest {
protected:
    bool isKept(std::int64_t id) { return !store.clip(id)->deleted; }
    std::int64_t insertImage(const std::string& path, std::optional<Date> expiresAt = {}) {
        advance(1);
        return store.insert("", ClipKind::image, {}, path, expiresAt)->id;
    }
};

TEST_F(StoreRetention, CountLimitDropsTheOldestOrdinaryClipAndLeavesItsPicture) {
    store.retentionLimit = 3;
    const auto path = makeImage("clip-1.png");
    const auto oldest = insertImage(path);
    store.setFolder(oldest, 5);
    for (int count = 0; count < 3; ++count)
        store.setPinned(insertText("pinned " + std::to_string(count)), true);
    store.createSnippet("n", "snippet");
    insertText("b");
    insertText("c");
    EXPECT_TRUE(isKept(oldest));
    insertText("d");
    EXPECT_FALSE(isKept(oldest));
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ(store.allClips().size(), 7U);
}

TEST_F(StoreRetention, NoLimitBelowOne) {
    for (const int limit : {0, -3}) {
        store.retentionLimit = limit;
        for (int count = 0; count < 4; ++count)
            store.insert("clip", ClipKind::ocr);
    }
    EXPECT_EQ(store.allClips().size(), 8U);
}

TEST_F(StoreRetention, AgeLimitIsStrictAndRemovesPictures) {
    const auto path = makeImage("clip-1.png");
    const auto due = insertImage(path);
    const auto missing = insertImage("/nonexistent/clip.png");
    const auto young = insertText("young");
    now = store.clip(young)->createdAt + 86400;
    store.enforceAgeRetention(1);
    EXPECT_FALSE(isKept(due));
    EXPECT_FALSE(isKept(missing));
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_TRUE(isKept(young)) << "exactly of the limit's age";
    advance(0.001);
    store.enforceAgeRetention(1);
    EXPECT_FALSE(isKept(young));
}

TEST_F(StoreRetention, ExpiryIsStrictAndOutranksPinsAndBoards) {
    const auto path = makeImage("clip-1.png");
    const auto due = insertImage(path, now + 10);
    store.setPinned(due, true);
    store.setFolder(due, 5);
    const auto promoted = store.insert("123456", ClipKind::text, {}, {}, now + 9)->id;
    store.promoteToSnippet(promoted, "kept");
    now = *store.clip(due)->expiresAt;
    changes.take();
    EXPECT_FALSE(store.sweepExpired());
    EXPECT_EQ(changes.take(), 0);
    advance(0.001);
    EXPECT_TRUE(store.sweepExpired());
    EXPECT_FALSE(isKept(due));
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_TRUE(isKept(promoted));
    EXPECT_FALSE(store.sweepExpired());
    store.restore(due);
    EXPECT_TRUE(isKept(due));
    EXPECT_TRUE(store.sweepExpired()) << "restored, but still past its expiry";

    for (int count = 0; count < 3; ++count)
        store.insert("secret", ClipKind::ocr, {}, {}, now);
    advance(1);
    changes.take();
    EXPECT_TRUE(store.sweepExpired());
    EXPECT_EQ(changes.take(), 3) << "one broadcast for each";
}

TEST_F(StoreRetention, DeletingRemovesThePictureAndRestoringDoesNotBringItBack) {
    const auto path = makeImage("clip-1.png");
    const auto id = insertImage(path);
    store.deleteClip(id);
    EXPECT_FALSE(std::filesystem::exists(path));
    store.restore(id);
    EXPECT_EQ(store.clip(id)->imagePath, path);
    std::filesystem::create_directory(path);
    store.deleteClip(id);
    EXPECT_TRUE(std::filesystem::exists(path)) << "only files are removed";
}

TEST_F(StoreRetention, ClearingSparesOnlyPinsAndSnippets) {
    const auto ordinary = makeImage("clip-1.png"), kept = makeImage("clip-2.png"), snippet = makeImage("clip-3.png");
    const auto filed = insertImage(ordinary);
    store.setFolder(filed, 5);
    const auto pinned = insertImage(kept);
    store.setPinned(pinned, true);
    const auto promoted = insertImage(snippet);
    store.promoteToSnippet(promoted, "n");
    store.clearUnpinned();
    EXPECT_FALSE(isKept(filed));
    EXPECT_FALSE(std::filesystem::exists(ordinary));
    EXPECT_TRUE(isKept(pinned) && isKept(promoted));
    EXPECT_TRUE(std::filesystem::exists(kept) && std::filesystem::exists(snippet));
}

struct Protection {
    const char* name;
    std::function<void(ClipStore&)> run;
    bool sparesPinned, sparesSnippets, sparesFiled;
};

class RetentionProtects : public StoreRetention, public ::testing::WithParamInterface<Protection> {};

// Whatever the population: what a path protects is as it was, and what falls was ordinary to it.
TEST_P(RetentionProtects, WhatItMustWhateverTheClips) {
    const auto& path = GetParam();
    std::mt19937 random(7);
    const auto chance = [&random](int percent) { return static_cast<int>(random() % 100) < percent; };
    store.retentionLimit = 0;
    for (int round = 0; round < 8; ++round) {
        for (int count = 0; count < 25; ++count) {
            advance(static_cast<double>(random() % 40000));
            const auto expiry = chance(30) ? std::optional(now + static_cast<double>(random() % 400000)) : std::nullopt;
            const auto id = store.insert("clip", ClipKind::ocr, {}, {}, expiry)->id;
            if (chance(25)) store.promoteToSnippet(id, "name");
            if (chance(25)) store.setFolder(id, 3);
            if (chance(25)) store.setPinned(id, true);
        }
        const auto before = store.allClips();
        path.run(store);
        std::set<std::int64_t> left;
        for (const auto& clip : store.allClips())
            left.insert(clip.id);
        int fallen = 0;
        for (const auto& clip : before) {
            const bool isProtected = (path.sparesPinned && clip.pinned) || (path.sparesSnippets && clip.isSnippet()) ||
                                     (path.sparesFiled && clip.folderId);
            EXPECT_TRUE(!isProtected || left.contains(clip.id)) << clip.id;
            if (!left.contains(clip.id)) ++fallen;
        }
        EXPECT_GT(fallen, 0);
    }
}

INSTANTIATE_TEST_SUITE_P(
    EachPath, RetentionProtects,
    ::testing::Values(Protection{"count",
                                 [](ClipStore& store) {
                                     store.retentionLimit = 4;
                                     store.insert("one more", ClipKind::ocr);
                                     store.retentionLimit = 0;
                                 },
                                 true, true, false},
                      Protection{"age", [](ClipStore& store) { store.enforceAgeRetention(2); }, true, true, true},
                      Protection{"expiry", [](ClipStore& store) { store.sweepExpired(); }, false, true, false},
                      Protection{"clear", [](ClipStore& store) { store.clearUnpinned(); }, true, true, false}),
    [](const auto& instance) { return instance.param.name; });

}  // namespace
}  // namespace brimquill::test
