#include "BrimquillCore/Foundation/Log.h"
#include "tests/core/StoreFixture.h"

#include <gmock/gmock.h>

#include <functional>
#include <random>
#include <thread>

namespace brimquill::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::SizeIs;

using StoreWrites = StoreTest;

TEST_F(StoreWrites, InsertStoresWhatItReturns) {
    const auto path = makeImage("clip-1.png");
    auto clip = store.insert("seen", ClipKind::image, {"Editor", "com.editor"}, path, now + 60);
    ASSERT_TRUE(clip);
    EXPECT_EQ(store.clip(clip->id), clip);
    EXPECT_EQ(clip->createdAt, now);
    EXPECT_EQ(clip->modifiedAt, now);
    EXPECT_EQ(clip->sourceBundleId, "com.editor");
    EXPECT_THAT(clip->uuid, MatchesRegex("[0-9a-f-]{36}"));
    EXPECT_EQ(store.clip(clip->uuid), clip);
}

TEST_F(StoreWrites, FailedInsertGivesTheIdOfNoClip) {
    std::vector<std::string> lines;
    const auto before = log::setSink([&lines](std::string_view line) { lines.emplace_back(line); });
    const auto kept = insertText("kept");
    for (const std::string table : {"clips", "folders"})
        database.run("CREATE TRIGGER refuse_" + table + " BEFORE INSERT ON " + table +
                     " BEGIN SELECT RAISE(ABORT, 'no room'); END");
    for (const auto id : {store.insert("", ClipKind::image)->id, store.createSnippet("name", "text", {}, {}),
                          store.folder("folder").id})
        EXPECT_EQ(id, 0);
    log::setSink(before);
    EXPECT_THAT(lines, Contains(HasSubstr("no room")));
    EXPECT_THAT(store.allClips(), ElementsAre(*store.clip(kept)));
}

TEST_F(StoreWrites, RepeatOfTheNewestTextOnlyMovesUpInSilence) {
    const auto id = insertText("caf\u00e9");
    const auto stored = now;
    changes.take();
    advance(10);
    store.retentionLimit = 1;
    EXPECT_EQ(store.insert("cafe\u0301", ClipKind::text), std::nullopt);  // canonically the same
    EXPECT_EQ(changes.take(), 0);
    ASSERT_THAT(store.allClips(), SizeIs(1));
    EXPECT_EQ(store.clip(id)->createdAt, now);
    EXPECT_EQ(store.clip(id)->modifiedAt, stored);
    EXPECT_EQ(store.clip(id)->text, "caf\u00e9");
}

TEST_F(StoreWrites, WhatCountsAsARepeat) {
    const auto pinned = insertText("pinned");
    store.setPinned(pinned, true);
    const auto newest = insertText("newest");
    EXPECT_NE(insertText("newest"), 0) << "the pinned clip stands first, so the newest is not compared";
    EXPECT_EQ(insertText("pinned"), 0);
    store.setPinned(pinned, false);
    EXPECT_EQ(insertText("pinned"), 0);
    EXPECT_NE(insertText("Pinned"), 0);
    store.deleteClip(pinned);
    store.deleteClip(newest);
    EXPECT_NE(insertText("newest"), 0) << "the first of the history is another text";

    store.clearUnpinned();
    EXPECT_NE(insertText("pinned"), 0) << "deleted clips are no history";
    store.createSnippet("name", "snippet");
    EXPECT_NE(insertText("snippet"), 0) << "snippets are no history";
    for (const auto kind : {ClipKind::image, ClipKind::ocr, ClipKind::file}) {
        EXPECT_TRUE(store.insert("same", kind));
        EXPECT_TRUE(store.insert("same", kind));
    }
}

TEST_F(StoreWrites, SnippetsKeepNoEmptyKeyword) {
    const auto id = store.createSnippet("", "body", "", 4);
    EXPECT_EQ(database.value("SELECT text, kind, name, keyword, folder_id, source_app, created_at = modified_at "
                             "FROM clips WHERE id = " +
                             std::to_string(id)),
              "body|text||NULL|4|NULL|1");
    EXPECT_TRUE(store.clip(id)->isSnippet());
    const auto clip = store.insert("code 1234", ClipKind::text, {}, {}, now + 5);
    store.promoteToSnippet(clip->id, "Code", ";c", 3);
    EXPECT_EQ(database.value("SELECT name, keyword, folder_id, expires_at FROM clips WHERE id = 2"), "Code|;c|3|NULL");
    store.promoteToSnippet(clip->id, "Code", "");
    EXPECT_EQ(database.value("SELECT name, keyword, folder_id FROM clips WHERE id = 2"), "Code|NULL|NULL");
}

TEST_F(StoreWrites, KeywordIsMatchedExactlyInTheOrderOfSnippets) {
    store.createSnippet("filed", "1", ";x", 2);
    store.createSnippet("b", "2", ";x");
    store.createSnippet("A", "3", ";x");
    store.createSnippet("caf\u00e9", "4", ";caf\u00e9");
    EXPECT_EQ(store.snippetForKeyword(";x")->text, "3");
    EXPECT_EQ(store.snippetForKeyword(";cafe\u0301")->text, "4");
    EXPECT_EQ(store.snippetForKeyword(";X"), std::nullopt);
    EXPECT_EQ(store.snippetForKeyword(""), std::nullopt);
}

TEST_F(StoreWrites, TagsAreNormalised) {
    const auto id = insertText("clip");
    struct Case {
        std::vector<std::string> tags;
        std::string stored;
    };
    for (const auto& [tags, stored] : {
             Case{{" Work ", "", "work"}, "work,work"},
             Case{{"\tÄRGER\t", "ΟΔΟΣ"}, "ärger,οδος"},
             Case{{"\nline"}, "\nline"},
             Case{{" ", "\t"}, "NULL"},
             Case{{}, "NULL"},
         }) {
        store.setTags(id, tags);
        EXPECT_EQ(database.value("SELECT tags FROM clips"), stored);
    }
    EXPECT_THAT(store.clip(id)->tags, IsEmpty());
}

TEST_F(StoreWrites, EditedTextIsFoundAtOnce) {
    const auto id = store.createSnippet("name", "before");
    store.updateText(id, "after");
    EXPECT_EQ(store.clip(id)->name, "name");
    EXPECT_THAT(textsOf(store.search("aft", 5)), ElementsAre("after"));
    EXPECT_THAT(store.search("before", 5), IsEmpty());
}

TEST_F(StoreWrites, TimesAreStoredToTheLastBit) {
    std::mt19937_64 random(20260101);
    std::uniform_real_distribution<double> moments(-2e9, 4e9);
    const auto id = insertText("clip");
    for (int round = 0; round < 2000; ++round) {
        now = {moments(random)};
        store.setPinned(id, true);
        ASSERT_EQ(store.clip(id)->modifiedAt.seconds, now.seconds) << round;
        ASSERT_THAT(store.clipsChangedSince(now), IsEmpty()) << round;
    }
}

struct Write {
    const char* name;
    std::function<void()> run;
    int notifications;
    /// Which row of what table must carry the present moment afterwards, and which must not.
    std::string stamped, unstamped;
};

// What stamps a row and what tells of a change: sync and every view depend on it.
TEST_F(StoreWrites, EveryWriteStampsAndTellsAsAgreed) {
    std::int64_t id = 0, folder = 0, child = 0;
    const auto fresh = [&] {
        store.clearUnpinned();
        store.retentionLimit = 0;
        id = insertText("clip");
        folder = store.folder("Board").id;
        child = store.folder("Board/Child").id;
    };
    const auto remote = [&](double age, const std::string& uuid) {
        return ClipStore::RemoteClip{.uuid = uuid, .text = "remote", .createdAt = now, .modifiedAt = now + -age};
    };
    const std::string clip = "clips WHERE id = $clip", board = "folders WHERE id = $board";
    const std::string boardChild = "folders WHERE id = $child", newest = "clips WHERE id = (SELECT max(id) FROM clips)";
    const std::vector<Write> writes{
        {"insert", [&] { store.insert("new", ClipKind::text); }, 1, newest, clip},
        {"insert, repeated", [&] { store.insert("clip", ClipKind::text); }, 0, "", clip},
        {"insert with retention",
         [&] {
             store.retentionLimit = 1;
             store.insert("new", ClipKind::text);
         },
         1, clip, ""},
        {"createSnippet", [&] { store.createSnippet("n", "t"); }, 1, newest, clip},
        {"promoteToSnippet", [&] { store.promoteToSnippet(id, "n"); }, 1, clip, ""},
        {"setPinned", [&] { store.setPinned(id, false); }, 1, clip, ""},
        {"setFolder", [&] { store.setFolder(id, folder); }, 1, clip, ""},
        {"setFolder to none", [&] { store.setFolder(id, {}); }, 1, clip, ""},
        {"setTags", [&] { store.setTags(id, {"a"}); }, 1, clip, ""},
        {"updateText", [&] { store.updateText(id, "u"); }, 1, clip, ""},
        {"unknown id", [&] { store.setTags(999, {"a"}); }, 1, "", clip},
        {"delete", [&] { store.deleteClip(id); }, 1, clip, ""},
        {"delete, unknown", [&] { store.deleteClip(999); }, 1, "", clip},
        {"restore", [&] { store.restore(id); }, 1, clip, ""},
        {"clearUnpinned", [&] { store.clearUnpinned(); }, 1, clip, ""},
        {"enforceAgeRetention, none due", [&] { store.enforceAgeRetention(1); }, 0, "", clip},
        {"enforceAgeRetention, off", [&] { store.enforceAgeRetention(0); }, 0, "", clip},
        {"enforceAgeRetention",
         [&] {
             advance(86400 * 2);
             store.enforceAgeRetention(1);
         },
         1, clip, ""},
        {"sweepExpired, none due", [&] { store.sweepExpired(); }, 0, "", clip},
        {"sweepExpired",
         [&] {
             database.run("UPDATE clips SET expires_at = 5 WHERE deleted = 0 AND id = " + std::to_string(id));
             store.sweepExpired();
         },
         1, clip, ""},
        {"renameFolder", [&] { store.renameFolder(folder, "Board"); }, 1, board, boardChild},
        {"setFolderColor", [&] { store.setFolderColor(folder, "red"); }, 1, board, boardChild},
        {"moveFolder", [&] { store.moveFolder(child, {}); }, 1, boardChild, board},
        {"moveFolder, refused", [&] { store.moveFolder(folder, child); }, 0, "", board},
        {"deleteFolder", [&] { store.deleteFolder(folder); }, 1, board, clip},
        {"deleteFolder re-files", [&] { store.deleteFolder(folder); }, 1, boardChild, ""},
        {"folder, found", [&] { store.folder("board/CHILD"); }, 0, "", board},
        {"folder, created", [&] { store.folder("Board/Child/Two/Three"); }, 2,
         "folders WHERE id = (SELECT max(id) FROM folders)", board},
        {"applyRemoteClip, new", [&] { store.applyRemoteClip(remote(0, "r1")); }, 1, newest, clip},
        {"applyRemoteClip, older", [&] { store.applyRemoteClip(remote(100, store.clip(id)->uuid)); }, 0, "", clip},
        {"applyRemoteClip, newer", [&] { store.applyRemoteClip(remote(0, store.clip(id)->uuid)); }, 1, clip, ""},
        {"applyRemoteClipDeletion", [&] { store.applyRemoteClipDeletion(store.clip(id)->uuid); }, 1, clip, ""},
        {"applyRemoteClipDeletion, unknown", [&] { store.applyRemoteClipDeletion("r9"); }, 0, "", clip},
        {"applyRemoteFolder, new", [&] { store.applyRemoteFolder("f1", "F", {}, now); }, 1, "folders WHERE uuid = 'f1'",
         board},
        {"applyRemoteFolder, older", [&] { store.applyRemoteFolder("f1", "F", {}, {5}); }, 0, "", board},
        {"applyRemoteFolderDeletion", [&] { store.applyRemoteFolderDeletion("f1"); }, 1, "folders WHERE uuid = 'f1'",
         board},
        {"applyRemoteFolderDeletion, gone", [&] { store.applyRemoteFolderDeletion("f1"); }, 0, "", board},
        {"insertImported", [&] { store.insertImported({.uuid = "i1", .text = "t", .createdAt = {5}}); }, 1, newest,
         clip},
        {"insertImported, known", [&] { store.insertImported({.uuid = "i1", .text = "t", .createdAt = {5}}); }, 0, "",
         clip},
        {"setSyncRecordData", [&] { store.setSyncRecordData("bytes", "i1"); }, 0, "", clip},
    };
    for (const auto& write : writes) {
        SCOPED_TRACE(write.name);
        fresh();
        advance(60);
        changes.take();
        write.run();
        EXPECT_EQ(changes.take(), write.notifications);
        const auto stampOf = [&](std::string row) {
            for (const auto& [name, value] : {std::pair{"$clip", id}, {"$board", folder}, {"$child", child}}) {
                if (const auto at = row.find(name); at != std::string::npos) {
                    row.replace(at, std::string_view(name).size(), std::to_string(value));
                }
            }
            return std::stod("0" + database.value("SELECT modified_at FROM " + row));
        };
        if (!write.stamped.empty()) {
            EXPECT_EQ(stampOf(write.stamped), now.seconds);
        }
        if (!write.unstamped.empty()) {
            EXPECT_LT(stampOf(write.unstamped), now.seconds);
        }
    }
}

TEST_F(StoreWrites, ObserverMayWriteAndSeesTheRowOfItsBroadcast) {
    std::vector<std::string> seen;
    const auto observation = center.observe(ClipStore::didChangeNotification, &store, [&](const auto&) {
        seen.push_back(store.fetchHistory(1)[0].text);
        if (seen.size() == 1) insertText("from the observer");
    });
    const auto clip = store.insert("first", ClipKind::text);
    EXPECT_THAT(seen, ElementsAre("first", "from the observer"));
    EXPECT_EQ(store.clip(clip->id)->text, "first");
}

TEST_F(StoreWrites, ThreadsEachGetTheirOwnRow) {
    std::vector<std::vector<ClipItem>> stored(3);
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < stored.size(); ++thread) {
        threads.emplace_back([&, thread] {
            for (int round = 0; round < 40; ++round) {
                const auto text = std::to_string(thread) + "/" + std::to_string(round);
                stored[thread].push_back(store.insert(text, ClipKind::ocr).value());
                store.search(std::to_string(round), 5);
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    for (const auto& clips : stored) {
        for (const auto& clip : clips)
            EXPECT_EQ(store.clip(clip.id)->text, clip.text);
    }
    EXPECT_EQ(store.allClips().size(), 120U);
}

TEST_F(StoreWrites, WaitForAnotherProgramThatHoldsTheDatabase) {
    database.run("CREATE TABLE other (x); BEGIN EXCLUSIVE");
    std::atomic<bool> isInserting = false;
    std::thread other([&] {
        while (!isInserting)
            std::this_thread::yield();
        database.run(
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 20000) "
            "INSERT INTO other SELECT i FROM n; COMMIT");
    });
    isInserting = true;
    insertText("not lost");
    other.join();
    EXPECT_THAT(textsOf(store.fetchHistory(10)), ElementsAre("not lost"));
}

}  // namespace
}  // namespace brimquill::test
