#include "tests/core/ScopedVariable.h"
#include "tests/core/StoreFixture.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

namespace brimquill::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::SizeIs;

constexpr auto tablesAndTriggers =
    "SELECT type || ' ' || name FROM sqlite_master WHERE name IN ('clips', 'folders', 'sync_meta', 'clips_fts', "
    "'clips_ai', 'clips_ad') ORDER BY name";

/// What each version added, as the program of that time would have left it.
constexpr const char* versionScripts[] = {
    // 0: never opened by any program
    "",
    // 1
    "CREATE TABLE clips (id INTEGER PRIMARY KEY AUTOINCREMENT, text TEXT NOT NULL, created_at REAL NOT NULL, "
    "source_app TEXT, pinned INTEGER NOT NULL DEFAULT 0);",
    // 2
    "ALTER TABLE clips ADD COLUMN kind TEXT NOT NULL DEFAULT 'text'; ALTER TABLE clips ADD COLUMN image_path TEXT; "
    "ALTER TABLE clips ADD COLUMN name TEXT; ALTER TABLE clips ADD COLUMN keyword TEXT; "
    "ALTER TABLE clips ADD COLUMN folder_id INTEGER; ALTER TABLE clips ADD COLUMN expires_at REAL; "
    "CREATE TABLE folders (id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL UNIQUE);",
    // 3
    "ALTER TABLE clips ADD COLUMN tags TEXT;",
    // 4
    "DROP TABLE folders; CREATE TABLE folders (id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL, "
    "parent_id INTEGER);",
    // 5
    "ALTER TABLE clips ADD COLUMN uuid TEXT; ALTER TABLE clips ADD COLUMN modified_at REAL; "
    "ALTER TABLE clips ADD COLUMN deleted INTEGER NOT NULL DEFAULT 0; ALTER TABLE folders ADD COLUMN uuid TEXT;",
    // 6
    "ALTER TABLE folders ADD COLUMN modified_at REAL; "
    "ALTER TABLE folders ADD COLUMN deleted INTEGER NOT NULL DEFAULT 0; "
    "CREATE TABLE sync_meta (uuid TEXT PRIMARY KEY, record BLOB);",
    // 7
    "ALTER TABLE clips ADD COLUMN source_bundle_id TEXT; ALTER TABLE folders ADD COLUMN color TEXT;",
};

class OldDatabase : public ::testing::TestWithParam<int> {
protected:
    /// A database of the version, with two clips, and a folder of id 7 once there are folders.
    void build(int version) {
        const Database database(directory / "brimquill.db");
        for (int step = 0; step <= version; ++step)
            database.run(versionScripts[step]);
        if (version >= 1) {
            database.run("INSERT INTO clips (text, created_at, pinned) VALUES ('old words', 100.125, 1)");
            database.run("INSERT INTO clips (text, created_at) VALUES ('newer words', 200.5)");
        }
        if (version >= 2) database.run("INSERT INTO folders (id, name) VALUES (7, 'Work')");
        if (version >= 2) database.run("UPDATE clips SET folder_id = 7 WHERE id = 2");
        if (version >= 5) database.run("UPDATE clips SET uuid = 'kept-' || id, modified_at = 300 + id");
        if (version >= 5) database.run("UPDATE folders SET uuid = 'kept'");
        if (version >= 6) database.run("UPDATE folders SET modified_at = 400");
        database.run("PRAGMA user_version = " + std::to_string(version));
    }

    TemporaryDirectory directory;
};

TEST_P(OldDatabase, ComesUpToDateWithItsDataAndWithoutAWord) {
    const int version = GetParam();
    build(version);
    ::testing::internal::CaptureStdout();
    NotificationCenter center;
    ClipStore store(directory.path(), center);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");

    const Database database(store.databaseURL);
    EXPECT_EQ(database.value("PRAGMA user_version"), "7");
    EXPECT_THAT(database.rows(tablesAndTriggers), ElementsAre("table clips", "trigger clips_ad", "trigger clips_ai",
                                                              "table clips_fts", "table folders", "table sync_meta"));
    EXPECT_THAT(database.rows("SELECT name FROM pragma_table_info('clips')"), SizeIs(16));
    EXPECT_THAT(database.rows("SELECT name || ' ' || type FROM pragma_table_info('folders')"),
                ElementsAre("id INTEGER", "name TEXT", "parent_id INTEGER", "uuid TEXT", "modified_at REAL",
                            "deleted INTEGER", "color TEXT"));
    if (version < 1) return;

    EXPECT_THAT(textsOf(store.fetchHistory(10)), ElementsAre("old words", "newer words"));
    EXPECT_THAT(textsOf(store.search("word", 10)), ElementsAre("old words", "newer words"));
    if (version < 5) {
        EXPECT_THAT(database.rows("SELECT uuid FROM clips"), Each(MatchesRegex("[0-9a-f]{32}")));
        EXPECT_THAT(database.rows("SELECT modified_at = created_at FROM clips"), Each("1"));
    } else {
        EXPECT_THAT(database.rows("SELECT uuid, modified_at FROM clips"), ElementsAre("kept-1|301.0", "kept-2|302.0"));
    }
    if (version < 2) return;

    EXPECT_EQ(store.clip(2)->folderId, 7);
    ASSERT_THAT(store.folders(), SizeIs(1));
    EXPECT_EQ(store.folders()[0].id, 7);
    EXPECT_EQ(store.folders()[0].parentId, std::nullopt);
    EXPECT_THAT(store.folders()[0].uuid, Not(IsEmpty()));
    // A migrated folder counts as changed at its migration, in whole seconds.
    EXPECT_EQ(database.value("SELECT modified_at > 1.7e9 AND modified_at = round(modified_at) FROM folders"),
              version < 6 ? "1" : "0");
    database.run("INSERT INTO folders (name) VALUES ('Work')");  // no longer unique
}

INSTANTIATE_TEST_SUITE_P(EveryVersion, OldDatabase, ::testing::Range(0, 8));

TEST_F(OldDatabase, HalfwayMigrationRunsAgain) {
    build(4);
    Database(directory / "brimquill.db").run("ALTER TABLE clips ADD COLUMN modified_at REAL");
    NotificationCenter center;
    ClipStore store(directory.path(), center);
    const Database database(store.databaseURL);
    EXPECT_EQ(database.value("PRAGMA user_version"), "7");
    EXPECT_EQ(database.value("SELECT count(*) FROM clips WHERE uuid IS NULL OR modified_at IS NULL"), "0");
}

TEST_F(OldDatabase, NewerVersionIsUsedAsItStands) {
    build(7);
    const Database database(directory / "brimquill.db");
    database.run("ALTER TABLE clips ADD COLUMN mood TEXT; PRAGMA user_version = 12;");
    NotificationCenter center;
    ClipStore store(directory.path(), center);
    EXPECT_EQ(database.value("PRAGMA user_version"), "12");
    EXPECT_TRUE(store.insert("fresh", ClipKind::text));
    EXPECT_THAT(textsOf(store.search("fresh", 5)), ElementsAre("fresh"));
}

TEST_F(OldDatabase, MissingIndexIsRebuiltDeletedRowsIncluded) {
    build(7);
    NotificationCenter center;
    {
        ClipStore store(directory.path(), center);
        store.deleteClip(1);
    }
    const Database database(directory / "brimquill.db");
    database.run("DROP TABLE clips_fts");
    const ClipStore store(directory.path(), center);
    EXPECT_THAT(database.rows("SELECT rowid FROM clips_fts WHERE clips_fts MATCH 'words' ORDER BY rowid"),
                ElementsAre("1", "2"));
}

TEST_F(OldDatabase, CorruptFileGivesEmptyReadsAndSaysSo) {
    const std::string garbage(8192, 'x');
    writeFile(directory / "brimquill.db", garbage);
    ::testing::internal::CaptureStdout();
    NotificationCenter center;
    ClipStore store(directory.path(), center);
    EXPECT_THAT(::testing::internal::GetCapturedStdout(), HasSubstr("SQLite error: file is not a database\n"));
    EXPECT_TRUE(store.insert("lost", ClipKind::text));
    EXPECT_THAT(store.fetchHistory(10), IsEmpty());
    EXPECT_THAT(store.search("x", 10), IsEmpty());
    EXPECT_THAT(store.folders(), IsEmpty());
    EXPECT_EQ(store.capturedTodayCount(), 0);
    EXPECT_EQ(fileBytes(directory / "brimquill.db"), garbage);
}

/// Runs `body` in a process whose user may not write what this one owns; its standard output comes back.
std::string outputOfUnprivileged(const std::function<void()>& body) {
    int ends[2];
    EXPECT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(ends[1], STDOUT_FILENO);
        ::close(ends[0]);
        ::close(ends[1]);
        if (::geteuid() == 0 && ::setuid(65534) != 0) ::_exit(2);
        body();
        std::fflush(stdout);
        ::_exit(0);
    }
    ::close(ends[1]);
    std::string output;
    char buffer[4096];
    for (ssize_t count; (count = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        output.append(buffer, static_cast<std::size_t>(count));
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << output;
    return output;
}

TEST_F(OldDatabase, ReadOnlyFileIsReadAndItsWritesFailAloud) {
    {
        NotificationCenter center;
        build(7);
        ClipStore store(directory.path(), center);
        store.insert("kept", ClipKind::text);
    }
    ::chmod((directory / "brimquill.db").c_str(), 0444);
    ::chmod((directory / "images").c_str(), 0555);
    ::chmod(directory.path().c_str(), 0555);
    const auto output = outputOfUnprivileged([this] {
        NotificationCenter center;
        ClipStore store(directory.path(), center);
        store.setPinned(1, false);
        store.insert("refused", ClipKind::image);
        for (const auto& text : textsOf(store.search("kept", 5)))
            std::printf("found %s\n", text.c_str());
        std::printf("pinned %d, clips %zu\n", store.clip(1)->pinned, store.allClips().size());
    });
    ::chmod(directory.path().c_str(), 0755);
    EXPECT_THAT(output, HasSubstr("SQLite error: attempt to write a readonly database\n"));
    EXPECT_THAT(output, HasSubstr("found kept\npinned 1, clips 3\n"));
}

TEST(StoreDirectory, IsPrivateToTheUser) {
    const TemporaryDirectory base;
    const mode_t mask = ::umask(0);
    const auto directory = base / "deep/er/store";
    NotificationCenter center;
    ClipStore store(directory, center);
    ::umask(mask);
    for (const auto& path : {base / "deep", base / "deep/er", directory, store.imagesDirectory}) {
        EXPECT_EQ(modeOf(path), 0700U) << path;
    }
    EXPECT_EQ(modeOf(store.databaseURL), 0600U);

    const Database other(store.databaseURL);
    other.run("BEGIN; INSERT INTO clips (text, created_at) VALUES ('x', 1)");
    EXPECT_EQ(modeOf(directory / "brimquill.db-journal"), 0600U);
    other.run("COMMIT");
}

TEST(StoreDirectory, DatabaseIsClosedToOthersWhileAUsedDirectoryKeepsItsMode) {
    const TemporaryDirectory base;
    writeFile(base / "note.txt", "the user's");
    writeFile(base / "brimquill.db", "");
    ::chmod((base / "brimquill.db").c_str(), 0664);
    ::chmod(base.path().c_str(), 0755);
    NotificationCenter center;
    const ClipStore store(base.path(), center);
    EXPECT_EQ(modeOf(store.databaseURL), 0600U);
    EXPECT_EQ(modeOf(base.path()), 0755U);
}

TEST(StoreDirectory, ComesFromTheEnvironment) {
    struct Case {
        const char *dataDirectory, *dataHome;
        std::string expected;
    };
    const ScopedVariable home("HOME", "/home/somebody"), data("BRIMQUILL_DATA_DIR", ""), xdg("XDG_DATA_HOME", "");
    for (const auto& [dataDirectory, dataHome, expected] : {
             Case{"/tmp/given", "/xdg", "/tmp/given"},
             Case{"given", "/xdg", "given"},
             Case{"", "/xdg", "/xdg/Brimquill"},
             Case{"", "", "/home/somebody/.local/share/Brimquill"},
             Case{"", "not/absolute", "/home/somebody/.local/share/Brimquill"},
         }) {
        ::setenv("BRIMQUILL_DATA_DIR", dataDirectory, 1);
        ::setenv("XDG_DATA_HOME", dataHome, 1);
        EXPECT_EQ(ClipStore::defaultDirectory(), expected);
    }
    ::unsetenv("BRIMQUILL_DATA_DIR");
    EXPECT_EQ(ClipStore::defaultDirectory(), "/home/somebody/.local/share/Brimquill");
}

TEST(StoreDirectoryDeathTest, DatabaseThatCannotBeOpenedEndsTheProcess) {
    const TemporaryDirectory base;
    std::filesystem::create_directory(base / "brimquill.db");
    EXPECT_EXIT(ClipStore(base.path()), ::testing::ExitedWithCode(1),
                "Unable to open database at " + (base / "brimquill.db").string());
    writeFile(base / "file", "");
    EXPECT_EXIT(ClipStore(base / "file"), ::testing::ExitedWithCode(1), "Unable to open database at .*brimquill.db");
}

}  // namespace
}  // namespace brimquill::test
