#include "BrimquillCore/ClipStoreStatement.h"

namespace brimquill::sqlite {
namespace {

// Each stage brings a database to the version it ends by writing. A stage that fails does not stop the next one, and
// each can run again: a column that is there already is passed over in silence.

int schemaVersion(const Connection& connection) {
    Statement statement(connection, "PRAGMA user_version");
    return statement.step() ? static_cast<int>(statement.integer(0)) : 0;
}

void migrateToVersion2(const Connection& connection) {
    for (const char* column : {"kind TEXT NOT NULL DEFAULT 'text'", "image_path TEXT", "name TEXT", "keyword TEXT",
                               "folder_id INTEGER", "expires_at REAL"}) {
        connection.execRaw(std::string("ALTER TABLE clips ADD COLUMN ") + column);
    }
    connection.exec(
        "CREATE TABLE IF NOT EXISTS folders (id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL UNIQUE);");
    connection.exec("PRAGMA user_version = 2;");
}

void migrateToVersion3(const Connection& connection) {
    connection.execRaw("ALTER TABLE clips ADD COLUMN tags TEXT");
    connection.exec("PRAGMA user_version = 3;");
}

/// Folders become a tree, in which a name may stand under two parents.
void migrateToVersion4(const Connection& connection) {
    connection.exec(
        "CREATE TABLE IF NOT EXISTS folders_v4 (\n"
        "    id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL, parent_id INTEGER\n"
        ");\n"
        "INSERT INTO folders_v4 (id, name) SELECT id, name FROM folders;\n"
        "DROP TABLE folders;\n"
        "ALTER TABLE folders_v4 RENAME TO folders;\n"
        "PRAGMA user_version = 4;");
}

void migrateToVersion5(const Connection& connection) {
    for (const char* column : {"uuid TEXT", "modified_at REAL", "deleted INTEGER NOT NULL DEFAULT 0"}) {
        connection.execRaw(std::string("ALTER TABLE clips ADD COLUMN ") + column);
    }
    connection.execRaw("ALTER TABLE folders ADD COLUMN uuid TEXT");
    connection.exec(
        "UPDATE clips SET uuid = lower(hex(randomblob(16))) WHERE uuid IS NULL;\n"
        "UPDATE clips SET modified_at = created_at WHERE modified_at IS NULL;\n"
        "UPDATE folders SET uuid = lower(hex(randomblob(16))) WHERE uuid IS NULL;\n"
        "PRAGMA user_version = 5;");
}

void migrateToVersion6(const Connection& connection) {
    for (const char* column : {"modified_at REAL", "deleted INTEGER NOT NULL DEFAULT 0"}) {
        connection.execRaw(std::string("ALTER TABLE folders ADD COLUMN ") + column);
    }
    connection.exec(
        "UPDATE folders SET modified_at = strftime('%s','now') WHERE modified_at IS NULL;\n"
        "CREATE TABLE IF NOT EXISTS sync_meta (uuid TEXT PRIMARY KEY, record BLOB);\n"
        "PRAGMA user_version = 6;");
}

void migrateToVersion7(const Connection& connection) {
    connection.execRaw("ALTER TABLE clips ADD COLUMN source_bundle_id TEXT");
    connection.execRaw("ALTER TABLE folders ADD COLUMN color TEXT");
    connection.exec("PRAGMA user_version = 7;");
}

/// Runs at every opening. There is no update trigger: whoever changes the text of a row rebuilds the index.
void ensureFullTextIndex(const Connection& connection) {
    const bool isIndexed =
        Statement(connection, "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = 'clips_fts'").step();
    connection.exec(
        "CREATE VIRTUAL TABLE IF NOT EXISTS clips_fts USING fts5(\n"
        "    text, content='clips', content_rowid='id'\n"
        ");");
    if (!isIndexed) rebuildFullTextIndex(connection);
    connection.exec(
        "CREATE TRIGGER IF NOT EXISTS clips_ai AFTER INSERT ON clips BEGIN\n"
        "    INSERT INTO clips_fts(rowid, text) VALUES (new.id, new.text);\n"
        "END;");
    connection.exec(
        "CREATE TRIGGER IF NOT EXISTS clips_ad AFTER DELETE ON clips BEGIN\n"
        "    INSERT INTO clips_fts(clips_fts, rowid, text) VALUES ('delete', old.id, old.text);\n"
        "END;");
}

}  // namespace

void rebuildFullTextIndex(const Connection& connection) {
    connection.exec("INSERT INTO clips_fts(clips_fts) VALUES ('rebuild');");
}

void migrate(const Connection& connection) {
    connection.exec(
        "CREATE TABLE IF NOT EXISTS clips (\n"
        "    id INTEGER PRIMARY KEY AUTOINCREMENT,\n"
        "    text TEXT NOT NULL,\n"
        "    created_at REAL NOT NULL,\n"
        "    source_app TEXT,\n"
        "    pinned INTEGER NOT NULL DEFAULT 0\n"
        ");");
    const int version = schemaVersion(connection);
    if (version < 2) migrateToVersion2(connection);
    if (version < 3) migrateToVersion3(connection);
    if (version < 4) migrateToVersion4(connection);
    if (version < 5) migrateToVersion5(connection);
    if (version < 6) migrateToVersion6(connection);
    if (version < 7) migrateToVersion7(connection);
    ensureFullTextIndex(connection);
}

}  // namespace brimquill::sqlite
