#pragma once

// What only the store's own sources include: the connection, a statement on it, and the spelling of values in SQL.

#include "BrimquillCore/ClipItem.h"

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimquill::sqlite {

/// The columns of `clips`, as every statement selects them and `Statement::clip` reads them.
inline constexpr std::string_view clipColumns =
    "id, kind, text, created_at, source_app, pinned, image_path, name, keyword, folder_id, expires_at, tags, uuid, "
    "modified_at, deleted, source_bundle_id";

/// Their positions.
enum ClipColumn : int {
    idColumn,
    kindColumn,
    textColumn,
    createdAtColumn,
    sourceAppColumn,
    pinnedColumn,
    imagePathColumn,
    nameColumn,
    keywordColumn,
    folderIdColumn,
    expiresAtColumn,
    tagsColumn,
    uuidColumn,
    modifiedAtColumn,
    deletedColumn,
    sourceBundleIdColumn
};

/// "SELECT ", the columns, and `rest`, which begins with blank or line break.
std::string selectClips(std::string_view rest);

/// A moment as SQL text. Seventeen digits, since SQLite 3.40 reads some shorter forms back as a neighbouring double.
std::string sqlText(Date date);
inline std::string sqlText(std::int64_t number) {
    return std::to_string(number);
}
/// "NULL" for none.
std::string sqlText(std::optional<std::int64_t> number);

/// The texts of the two lists that more than one operation reads.
std::string historySql(int limit);
std::string snippetsSql();

/// Owns the one database handle.
class Connection final {
public:
    /// Ends the process with a message when the database cannot be opened.
    explicit Connection(const std::filesystem::path& file);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    sqlite3* handle() const { return handle_; }

    /// Runs a script. An error ends the script, prints one line on standard output, and goes unreported.
    void exec(const std::string& sql) const;
    /// The same in silence.
    void execRaw(const std::string& sql) const;

private:
    sqlite3* handle_ = nullptr;
};

/// One prepared statement. It keeps the connection to its thread from preparation to its end, so that a read is of one
/// state and a new row's id is its own. No notification may be posted while one lives. A statement that could not be
/// prepared has no rows.
class Statement final {
public:
    Statement(const Connection& connection, const std::string& sql);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    /// Binds the next parameter. Absent is NULL.
    Statement& bind(std::string_view text);
    Statement& bind(const std::string& text) { return bind(std::string_view(text)); }
    Statement& bind(const std::optional<std::string>& text);
    Statement& bind(std::int64_t number);
    Statement& bind(std::optional<std::int64_t> number);
    Statement& bind(Date date);
    Statement& bind(std::optional<Date> date);
    Statement& bindBlob(std::string_view bytes);

    /// Goes to the next row; false after the last one, or on an error. Errors of the database itself, such as a full
    /// disk, are logged.
    bool step();
    /// Steps a statement that writes. Its failure is not told to the caller.
    void run() { step(); }
    /// Runs an INSERT and gives the new row's id. 0, which no row has, when it failed: the last row's id would let the
    /// caller change what stands there in the belief that it is new.
    std::int64_t runInsert();

    // The current row. NULL reads as "", 0 or absent. Views last until the next step.
    bool isNull(int column) const;
    std::string_view textView(int column) const;
    std::string text(int column) const { return std::string(textView(column)); }
    std::optional<std::string> optionalText(int column) const;
    std::int64_t integer(int column) const;
    std::optional<std::int64_t> optionalInteger(int column) const;
    bool isOne(int column) const { return integer(column) == 1; }
    Date date(int column) const;
    std::optional<std::string> blob(int column) const;
    /// The row as a record; the statement must have selected `clipColumns`.
    ClipItem clip() const;

private:
    Statement& bindNull();
    sqlite3* handle_;
    sqlite3_stmt* statement_ = nullptr;
    int parameter_ = 0;
    bool isDone_ = false;
};

/// The rows that are left, and the first of them. An error reads as the end.
std::vector<ClipItem> clips(Statement& statement);
std::optional<ClipItem> firstClip(Statement& statement);

/// Needed whenever the text of a row that stands has changed: there is no update trigger.
void rebuildFullTextIndex(const Connection& connection);

/// Brings a database of any earlier version, or a new one, up to date.
void migrate(const Connection& connection);

}  // namespace brimquill::sqlite
