#include "BrimquillCore/HoardArchive.h"
#include "tests/core/StoreFixture.h"

#include <gmock/gmock.h>
#include <unistd.h>

namespace brimquill::test {
namespace {

using HoardArchive::Scope;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using ::testing::UnorderedElementsAreArray;

class HoardArchiveTest : public StoreTest {
protected:
    TemporaryDirectory archive;
    Clock clock = [this] { return now; };

    HoardArchive::ExportSummary exported(Scope scope) {
        return HoardArchive::exportArchive(store, scope, archive.path(), clock);
    }
    HoardArchive::ImportSummary imported() {
        advance(1);
        return HoardArchive::importArchive(archive.path(), store, clock);
    }
    HoardArchive::Manifest manifest() const { return HoardArchive::readManifest(archive.path()); }
    std::vector<std::string> manifestTexts() const {
        std::vector<std::string> texts;
        for (const auto& clip : manifest().clips)
            texts.push_back(clip.text);
        return texts;
    }
    std::vector<std::string> manifestFolders() const {
        std::vector<std::string> names;
        for (const auto& folder : manifest().folders)
            names.push_back(folder.name);
        return names;
    }
    /// Puts an archive of these folders and clips in place.
    void write(std::vector<HoardArchive::Folder> folders, std::vector<HoardArchive::Clip> clips) const {
        HoardArchive::Manifest manifest;
        manifest.folders = std::move(folders);
        manifest.clips = std::move(clips);
        std::filesystem::create_directories(archive / "images");
        writeFile(archive / HoardArchive::manifestFileName, encode(manifest));
    }
    std::vector<std::string> paths() {
        std::vector<std::string> paths;
        for (const auto& folder : store.folders())
            paths.push_back(store.path(folder));
        return paths;
    }
    std::vector<std::string> files(const std::filesystem::path& place) const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(place))
            names.push_back(entry.path().filename());
        return names;
    }
};

TEST_F(HoardArchiveTest, ExportsAnEmptyStore) {
    EXPECT_EQ(exported(Scope::everything), (HoardArchive::ExportSummary{0, 0, 0}));
    EXPECT_THAT(files(archive.path()), UnorderedElementsAre("images", "manifest.json"));
    EXPECT_THAT(files(archive / "images"), IsEmpty());
    EXPECT_EQ(manifest().exportedAt, now.seconds);
    EXPECT_EQ(modeOf(archive / "manifest.json"), 0600U);
    EXPECT_EQ(modeOf(archive / "images"), 0700U);
    EXPECT_EQ(imported(), HoardArchive::ImportSummary{});
}

TEST_F(HoardArchiveTest, ExportsWhatMayTravelInEachScope) {
    const auto outer = store.folder("Outer").id;
    const auto inner = store.folder("Outer/Inner").id;
    const auto ofSecret = store.folder("Secret").id;
    store.folder("Unused");
    insertText("plain");
    store.setPinned(insertText("pinned"), true);
    store.setFolder(insertText("filed"), inner);
    store.createSnippet("Name", "snippet");
    store.deleteClip(insertText("deleted"));
    const auto secret = store.insert("secret", ClipKind::text, {}, {}, now + 60);
    store.setPinned(secret->id, true);
    store.setFolder(secret->id, ofSecret);
    store.setPinned(store.insert("/a/file", ClipKind::file)->id, true);
    database.run(
        "INSERT INTO clips (text, created_at, pinned, uuid) VALUES ('nameless', 1, 1, ''), ('null', 1, 1, NULL)");

    EXPECT_EQ(exported(Scope::snippetsAndPinboards), (HoardArchive::ExportSummary{3, 2, 0}));
    EXPECT_THAT(manifestTexts(), UnorderedElementsAre("snippet", "filed", "pinned"));
    EXPECT_THAT(manifestFolders(), ElementsAre("Inner", "Outer"));
    EXPECT_EQ(manifest().folders[0].parentUuid, manifest().folders[1].uuid);
    EXPECT_EQ(manifest().scope, "snippetsAndPinboards");

    EXPECT_EQ(exported(Scope::everything), (HoardArchive::ExportSummary{4, 4, 0}));
    EXPECT_THAT(manifestTexts(), UnorderedElementsAre("snippet", "filed", "pinned", "plain"));
    EXPECT_THAT(manifestFolders(), ElementsAre("Inner", "Outer", "Secret", "Unused"));

    store.deleteFolder(outer);
    exported(Scope::snippetsAndPinboards);
    EXPECT_THAT(manifestFolders(), ElementsAre("Inner"));
    EXPECT_EQ(manifest().folders[0].parentUuid, std::nullopt);
}

TEST_F(HoardArchiveTest, ExportEndsInCyclesOfFolders) {
    const auto a = store.folder("A").id;
    const auto b = store.folder("A/B").id;
    database.run("UPDATE folders SET parent_id = " + std::to_string(b) + " WHERE id = " + std::to_string(a));
    store.setFolder(insertText("filed"), b);
    EXPECT_EQ(exported(Scope::snippetsAndPinboards), (HoardArchive::ExportSummary{1, 2, 0}));
}

TEST_F(HoardArchiveTest, ExportLeavesOutPicturesThatCannotBeCopied) {
    const auto insertImage = [this](const std::string& path) {
        advance(1);
        const auto clip = store.insert("", ClipKind::image, {}, path);
        return database.value("SELECT uuid FROM clips WHERE id = " + std::to_string(clip->id));
    };
    const auto jpeg = insertImage(makeImage("a.jpeg"));
    const auto bare = insertImage(makeImage("bare"));
    insertImage(makeImage("gone.png"));
    std::filesystem::remove(store.imagesDirectory / "gone.png");
    insertImage(store.imagesDirectory.string());
    insertImage(makeImage("stray.png"));
    database.run("UPDATE clips SET uuid = '../../stray' WHERE image_path LIKE '%stray.png'");
    std::filesystem::create_directories(archive / "images");
    writeFile(archive / "images" / (jpeg + ".jpeg"), "older and longer than the picture");

    EXPECT_EQ(exported(Scope::everything), (HoardArchive::ExportSummary{5, 0, 2}));
    EXPECT_THAT(files(archive / "images"), UnorderedElementsAre(jpeg + ".jpeg", bare + ".png"));
    EXPECT_EQ(fileBytes(archive / "images" / (jpeg + ".jpeg")), "picture");
    EXPECT_EQ(modeOf(archive / "images" / (jpeg + ".jpeg")), 0600U);
    const auto clips = manifest().clips;
    EXPECT_EQ(clips[4].image, "images/" + jpeg + ".jpeg");
    EXPECT_EQ(clips[3].image, "images/" + bare + ".png");
    EXPECT_EQ(clips[2].image, std::nullopt);
}

TEST_F(HoardArchiveTest, ExportFailsWhereItCannotWrite) {
    writeFile(archive / "images", "in the way");
    EXPECT_THROW(exported(Scope::everything), std::runtime_error);
    std::filesystem::remove(archive / "images");
    std::filesystem::create_directory(archive / "manifest.json");
    EXPECT_THROW(exported(Scope::everything), std::system_error);
    std::filesystem::remove(archive / "manifest.json");
    database.run("INSERT INTO clips (text, created_at, uuid) VALUES ('t', 9e999, 'u')");
    EXPECT_THROW(exported(Scope::everything), std::runtime_error);
    EXPECT_THAT(files(archive.path()), ElementsAre("images"));
}

TEST_F(HoardArchiveTest, MovesAStoreAndAddsNothingTheSecondTime) {
    const auto inner = store.folder("Outer/Inner").id;
    store.setFolderColor(inner, "teal");
    store.folder("Empty");
    store.insert("plain é \"q\"", ClipKind::text, {"Editor", "org.editor"});
    const auto snippet = store.createSnippet("Name", "snippet", ";k", inner);
    store.setTags(snippet, {"One", "two"});
    store.setPinned(store.insert("words", ClipKind::image, {}, makeImage("p.png"))->id, true);
    store.insert("screen", ClipKind::ocr);
    exported(Scope::everything);

    const TemporaryDirectory other;
    ClipStore target(other.path(), center, clock);
    advance(100);
    const HoardArchive::ImportSummary all{4, 0, 3, 1}, none{0, 4, 0, 0};
    EXPECT_EQ(HoardArchive::importArchive(archive.path(), target, clock), all);
    EXPECT_EQ(HoardArchive::importArchive(archive.path(), target, clock), none);

    const std::string clipSql =
        "SELECT c.uuid, text, kind, created_at, source_app, source_bundle_id, pinned, c.name, keyword, tags, "
        "expires_at, c.deleted, f.uuid, image_path IS NULL FROM clips c LEFT JOIN folders f ON f.id = folder_id "
        "ORDER BY c.uuid";
    const std::string folderSql =
        "SELECT f.uuid, f.name, f.color, f.deleted, p.uuid FROM folders f LEFT JOIN folders p ON p.id = f.parent_id "
        "ORDER BY f.uuid";
    const Database targetDatabase(target.databaseURL);
    EXPECT_EQ(targetDatabase.rows(clipSql), database.rows(clipSql));
    EXPECT_EQ(targetDatabase.rows(folderSql), database.rows(folderSql));
    EXPECT_EQ(targetDatabase.value("SELECT min(modified_at) FROM clips"), database.value("SELECT 1700000100.25"));
    const auto image = target.search("words", 1).at(0);
    EXPECT_EQ(image.imagePath, target.imagesDirectory / ("import-" + image.uuid + ".png"));
    EXPECT_EQ(fileBytes(*image.imagePath), "picture");
    EXPECT_EQ(modeOf(*image.imagePath), 0600U);
}

TEST_F(HoardArchiveTest, ImportChangesNoClipThatIsThere) {
    const auto kept = insertText("kept"), deleted = insertText("deleted");
    exported(Scope::everything);
    store.updateText(kept, "edited");
    store.deleteClip(deleted);
    const auto before = database.rows("SELECT * FROM clips");
    changes.take();
    EXPECT_EQ(imported(), (HoardArchive::ImportSummary{0, 2, 0, 0}));
    EXPECT_EQ(database.rows("SELECT * FROM clips"), before);
    EXPECT_EQ(changes.take(), 0);
}

TEST_F(HoardArchiveTest, ImportAnnouncesEachClipAsALocalChange) {
    write({}, {{"a", "text", "1", 1}, {"b", "ocr", "2", 2}, {"a", "text", "again", 3}});
    EXPECT_EQ(imported(), (HoardArchive::ImportSummary{2, 1, 0, 0}));
    EXPECT_EQ(changes.take(), 2);
    EXPECT_EQ(changes.takeRemote(), 0);
}

TEST_F(HoardArchiveTest, ImportTakesAClipForPresentThatCameInMeanwhile) {
    write({}, {{"a", "text", "1", 1}, {"b", "text", "2", 2}});
    const auto observation = center.observe(ClipStore::didChangeNotification, &store, [this](const auto&) {
        if (!store.clip("b")) database.run("INSERT INTO clips (text, created_at, uuid) VALUES ('other', 1, 'b')");
    });
    EXPECT_EQ(imported(), (HoardArchive::ImportSummary{1, 1, 0, 0}));
    EXPECT_EQ(store.clip("b")->text, "other");
}

TEST_F(HoardArchiveTest, ImportKeepsNeitherLimitNorUnknownKinds) {
    store.retentionLimit = 1;
    write({{"f", "F"}}, {{"a", "text", "1", 1, {}, {}, false, {}, "", "f"},
                         {"b", "file", "/etc/passwd", 2},
                         {"c", "video", "3", 3},
                         {"d", "text", "4", 4, {}, {}, false, {}, {}, "unknown", {"x", "y"}}});
    EXPECT_EQ(imported(), (HoardArchive::ImportSummary{2, 0, 1, 0}));
    EXPECT_THAT(database.rows("SELECT text, keyword, folder_id IS NULL, tags FROM clips"),
                ElementsAre("1|NULL|0|NULL", "4|NULL|1|x,y"));
}

TEST_F(HoardArchiveTest, ImportLinksFoldersWhateverTheirOrder) {
    using Folders = std::vector<HoardArchive::Folder>;
    const std::pair<Folders, std::vector<std::string>> table[] = {
        {{{"c", "C", "b"}, {"b", "B", "a"}, {"a", "A"}}, {"A", "A/B", "A/B/C"}},
        {{{"b", "B", "a"}, {"a", "A"}, {"c", "C", "a"}}, {"A", "A/B", "A/C"}},
        {{{"a", "A", "gone"}, {"b", "B"}}, {"A", "B"}},
        {{{"a", "A", "b"}, {"b", "B", "a"}}, {"A", "B"}},
        {{{"a", "A", "a"}}, {"A"}},
        // All that hang on a cycle or an orphan lose their parent with it.
        {{{"a", "A", "gone"}, {"b", "B", "a"}}, {"A", "B"}},
        // Of a folder that stands twice, the one that comes first counts.
        {{{"a", "A", "b"}, {"a", "Twin"}, {"b", "B"}}, {"B", "Twin"}},
        {{{"b", "B"}, {"a", "A", "b"}, {"a", "Twin"}}, {"B", "B/A"}},
    };
    for (const auto& [folders, expected] : table) {
        database.run("DELETE FROM folders");
        write(folders, {});
        EXPECT_EQ(imported().foldersAdded, static_cast<int>(expected.size()));
        EXPECT_THAT(paths(), UnorderedElementsAreArray(expected));
        EXPECT_EQ(imported().foldersAdded, 0);
    }
}

TEST_F(HoardArchiveTest, ImportLinksALongChainFromBelow) {
    constexpr int length = 2000;
    std::vector<HoardArchive::Folder> chain;
    for (int level = length; level > 0; --level)
        chain.push_back({std::to_string(level), "n", std::to_string(level - 1)});
    chain.push_back({"0", "root"});
    write(chain, {});
    EXPECT_EQ(imported().foldersAdded, length + 1);
    EXPECT_EQ(database.value("SELECT count(*) FROM folders WHERE parent_id IS NULL"), "1");
}

TEST_F(HoardArchiveTest, ImportBringsDeletedFoldersBackAndLeavesLiveOnes) {
    const auto live = store.folder("Live"), deleted = store.folder("Deleted");
    store.setFolderColor(live.id, "red");
    advance(1);
    store.deleteFolder(deleted.id);
    write({{live.uuid, "Other", {}, "blue"}, {deleted.uuid, "Back", live.uuid, "green"}},
          {{"c", "text", "t", 1, {}, {}, false, {}, {}, deleted.uuid}});
    EXPECT_EQ(imported(), (HoardArchive::ImportSummary{1, 0, 1, 0}));
    EXPECT_THAT(database.rows("SELECT name, color, deleted FROM folders"), ElementsAre("Live|red|0", "Back|green|0"));
    EXPECT_THAT(paths(), UnorderedElementsAre("Live", "Live/Back"));
    EXPECT_EQ(store.clip("c")->folderId, deleted.id);
}

TEST_F(HoardArchiveTest, ImportTakesPicturesFromWithinTheArchiveOnly) {
    const TemporaryDirectory outside;
    writeFile(outside / "secret.png", "secret");
    writeFile(archive / "beside.gif", "beside");
    std::filesystem::create_directories(archive / "images/sub");
    writeFile(archive / "images/sub/in.png", "in");
    writeFile(archive / "images/hidden.png", "hidden");
    std::filesystem::create_symlink(outside / "secret.png", archive / "images/link.png");
    std::filesystem::create_symlink("hidden.png", archive / "images/near.png");
    std::filesystem::create_directory_symlink(outside.path(), archive / "images/linked");
    ASSERT_EQ(::mkfifo((archive / "images/pipe.png").c_str(), 0600), 0);
    const auto up = "../" + outside.path().filename().string();

    const std::pair<std::string, std::string> table[] = {
        {"images/sub/in.png", "in"},
        {"images/./sub/../sub//in.png", "in"},
        {"beside.gif", "beside"},
        {"images/missing.png", ""},
        {"", ""},
        {".", ""},
        {"images", ""},
        {"images/sub/", ""},
        {"..", ""},
        {up + "/secret.png", ""},
        {"images/../" + up + "/secret.png", ""},
        {outside / "secret.png", ""},
        {"/" + (archive / "beside.gif").string(), ""},
        {"images/link.png", ""},
        {"images/near.png", ""},
        {"images/linked/secret.png", ""},
        {"images/pipe.png", ""},
        {std::string("beside.gif\0.png", 15), ""},
        {std::string(100'000, 'x'), ""},
        {"images/" + std::string(300, 'y') + ".png", ""},
    };
    for (const auto& [path, bytes] : table) {
        database.run("DELETE FROM clips");
        write({}, {{"u", "image", "", 1, {}, {}, false, {}, {}, {}, {}, path}});
        EXPECT_EQ(imported(), (HoardArchive::ImportSummary{1, 0, 0, bytes.empty() ? 0 : 1})) << path;
        const auto image = store.clip("u")->imagePath;
        EXPECT_EQ(image.has_value(), !bytes.empty()) << path;
        EXPECT_EQ(image ? fileBytes(*image) : "", bytes);
    }
    EXPECT_THAT(files(store.imagesDirectory), UnorderedElementsAre("import-u.png", "import-u.gif"));
}

TEST_F(HoardArchiveTest, ImportSeesNoPictureBehindALinkedImagesDirectory) {
    const TemporaryDirectory outside;
    writeFile(outside / "u.png", "secret");
    write({}, {{"u", "image", "", 1, {}, {}, false, {}, {}, {}, {}, "images/u.png"}});
    std::filesystem::remove(archive / "images");
    std::filesystem::create_directory_symlink(outside.path(), archive / "images");
    EXPECT_EQ(imported(), (HoardArchive::ImportSummary{1, 0, 0, 0}));
}

TEST_F(HoardArchiveTest, ImportWritesPicturesIntoTheStoreOnly) {
    writeFile(directory / "target", "untouched");
    std::filesystem::create_symlink(directory / "target", store.imagesDirectory / "import-linked.png");
    std::filesystem::create_directory(store.imagesDirectory / "import-taken.png");
    std::filesystem::create_directory(store.imagesDirectory / "import-");
    std::vector<HoardArchive::Clip> clips;
    for (const auto& uuid : {std::string("../x"), std::string("/x"), std::string("nul\0", 4), std::string(400, 'z'),
                             std::string("taken"), std::string("linked")}) {
        clips.push_back({uuid, "image", "", 1, {}, {}, false, {}, {}, {}, {}, "images/a.png"});
    }
    write({}, clips);
    writeFile(archive / "images/a.png", "picture");
    EXPECT_EQ(imported(), (HoardArchive::ImportSummary{6, 0, 0, 1}));
    EXPECT_EQ(fileBytes(directory / "target"), "untouched");
    EXPECT_EQ(fileBytes(store.imagesDirectory / "import-linked.png"), "picture");
    EXPECT_THAT(files(directory.path()), UnorderedElementsAre("brimquill.db", "images", "target"));
    EXPECT_THAT(files(store.imagesDirectory), UnorderedElementsAre("import-linked.png", "import-taken.png", "import-"));
}

TEST_F(HoardArchiveTest, ImportOfNoArchiveChangesNothing) {
    insertText("mine");
    const auto before = database.rows("SELECT * FROM clips");
    writeFile(archive / "manifest.json",
              R"({"format":"brimquill-export","version":2,"exportedAt":1,"scope":"everything",
        "folders":[{"uuid":"f","name":"n"}],"clips":[]})");
    EXPECT_THROW(imported(), HoardArchive::ArchiveError);
    EXPECT_EQ(database.rows("SELECT * FROM clips"), before);
    EXPECT_EQ(database.value("SELECT count(*) FROM folders"), "0");
}

}  // namespace
}  // namespace brimquill::test
