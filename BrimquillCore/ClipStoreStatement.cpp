#include "BrimquillCore/ClipStoreStatement.h"

#include "BrimquillCore/Foundation/Log.h"
#include "BrimquillCore/Foundation/Text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>

namespace brimquill::sqlite {
namespace {

/// How long a statement waits, in milliseconds, while another program that looks into the database holds it: a copy is
/// not to be lost for that, nor the interface to stand still for long.
constexpr int patience = 1000;

/// SQLite gives its journal the mode of the database, so the file is made beforehand. One that stands already is never
/// opened here: closing it would drop the locks of another connection in this process.
void makeDatabasePrivate(const std::filesystem::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor >= 0) {
        ::close(descriptor);
        return;
    }
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return;
    ::chmod(file.c_str(), status.st_mode & S_IRWXU);
}

/// A query that makes no sense to the full-text index is an everyday error; a full disk is not.
void logTrouble(sqlite3* handle) {
    if ((sqlite3_errcode(handle) & 0xff) == SQLITE_ERROR) return;
    log::write(std::string("the database of clips reports: ") + sqlite3_errmsg(handle));
}

}  // namespace

std::string selectClips(std::string_view rest) {
    std::string sql = "SELECT ";
    sql += clipColumns;
    sql += rest;
    return sql;
}

std::string historySql(int limit) {
    return selectClips(" FROM clips WHERE name IS NULL AND deleted = 0 ORDER BY pinned DESC, created_at DESC LIMIT " +
                       std::to_string(limit));
}

std::string snippetsSql() {
    return selectClips(" FROM clips WHERE name IS NOT NULL AND deleted = 0 ORDER BY folder_id, name COLLATE NOCASE");
}

std::string sqlText(Date date) {
    char buffer[32];
    const auto result =
        std::to_chars(std::begin(buffer), std::end(buffer), date.seconds, std::chars_format::general, 17);
    return {buffer, result.ptr};
}

std::string sqlText(std::optional<std::int64_t> number) {
    return number ? sqlText(*number) : "NULL";
}

Connection::Connection(const std::filesystem::path& file) {
    makeDatabasePrivate(file);
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;
    if (sqlite3_open_v2(file.c_str(), &handle_, flags, nullptr) == SQLITE_OK) {
        sqlite3_busy_timeout(handle_, patience);
        return;
    }
    std::fprintf(stderr, "Unable to open database at %s\n", file.c_str());
    std::exit(EXIT_FAILURE);
}

Connection::~Connection() {
    sqlite3_close(handle_);
}

void Connection::exec(const std::string& sql) const {
    char* error = nullptr;
    if (sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, &error) == SQLITE_OK || !error) return;
    std::printf("SQLite error: %s\n", error);
    std::fflush(stdout);
    sqlite3_free(error);
}

void Connection::execRaw(const std::string& sql) const {
    sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, nullptr);
}

Statement::Statement(const Connection& connection, const std::string& sql) : handle_(connection.handle()) {
    sqlite3_mutex_enter(sqlite3_db_mutex(handle_));
    sqlite3_prepare_v2(handle_, sql.c_str(), -1, &statement_, nullptr);
}

Statement::~Statement() {
    sqlite3_finalize(statement_);
    sqlite3_mutex_leave(sqlite3_db_mutex(handle_));
}

Statement& Statement::bind(std::string_view text) {
    const char* const bytes = text.data() ? text.data() : "";  // a null pointer would bind NULL
    sqlite3_bind_text64(statement_, ++parameter_, bytes, text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    return *this;
}

Statement& Statement::bind(const std::optional<std::string>& text) {
    return text ? bind(std::string_view(*text)) : bindNull();
}

Statement& Statement::bind(std::int64_t number) {
    sqlite3_bind_int64(statement_, ++parameter_, number);
    return *this;
}

Statement& Statement::bind(std::optional<std::int64_t> number) {
    return number ? bind(*number) : bindNull();
}

Statement& Statement::bind(Date date) {
    sqlite3_bind_double(statement_, ++parameter_, date.seconds);
    return *this;
}

Statement& Statement::bind(std::optional<Date> date) {
    return date ? bind(*date) : bindNull();
}

Statement& Statement::bindBlob(std::string_view bytes) {
    const char* const data = bytes.data() ? bytes.data() : "";
    sqlite3_bind_blob64(statement_, ++parameter_, data, bytes.size(), SQLITE_TRANSIENT);
    return *this;
}

Statement& Statement::bindNull() {
    sqlite3_bind_null(statement_, ++parameter_);
    return *this;
}

bool Statement::step() {
    if (!statement_) return false;
    const int result = sqlite3_step(statement_);
    isDone_ = result == SQLITE_DONE;
    if (result != SQLITE_ROW && !isDone_) logTrouble(handle_);
    return result == SQLITE_ROW;
}

std::int64_t Statement::runInsert() {
    run();
    return isDone_ ? sqlite3_last_insert_rowid(handle_) : 0;
}

bool Statement::isNull(int column) const {
    return sqlite3_column_type(statement_, column) == SQLITE_NULL;
}

std::string_view Statement::textView(int column) const {
    const auto* const bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    if (!bytes) return {};
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

std::optional<std::string> Statement::optionalText(int column) const {
    if (isNull(column)) return std::nullopt;
    return text(column);
}

std::int64_t Statement::integer(int column) const {
    return sqlite3_column_int64(statement_, column);
}

std::optional<std::int64_t> Statement::optionalInteger(int column) const {
    if (isNull(column)) return std::nullopt;
    return integer(column);
}

Date Statement::date(int column) const {
    return {sqlite3_column_double(statement_, column)};
}

std::optional<std::string> Statement::blob(int column) const {
    if (isNull(column)) return std::nullopt;
    const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(statement_, column));
    if (!bytes) return std::string();
    return std::string(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column)));
}

ClipItem Statement::clip() const {
    ClipItem clip;
    clip.id = integer(idColumn);
    clip.kind = clipKind(textView(kindColumn)).value_or(ClipKind::text);
    clip.text = text(textColumn);
    clip.createdAt = date(createdAtColumn);
    clip.sourceApp = optionalText(sourceAppColumn);
    clip.pinned = isOne(pinnedColumn);
    clip.imagePath = optionalText(imagePathColumn);
    clip.name = optionalText(nameColumn);
    clip.keyword = optionalText(keywordColumn);
    clip.folderId = optionalInteger(folderIdColumn);
    if (!isNull(expiresAtColumn)) clip.expiresAt = date(expiresAtColumn);
    if (!isNull(tagsColumn)) clip.tags = text::split(textView(tagsColumn), ',');
    clip.uuid = text(uuidColumn);
    clip.modifiedAt = date(modifiedAtColumn);
    clip.deleted = isOne(deletedColumn);
    clip.sourceBundleId = optionalText(sourceBundleIdColumn);
    return clip;
}

std::vector<ClipItem> clips(Statement& statement) {
    std::vector<ClipItem> clips;
    while (statement.step())
        clips.push_back(statement.clip());
    return clips;
}

std::optional<ClipItem> firstClip(Statement& statement) {
    return statement.step() ? std::optional(statement.clip()) : std::nullopt;
}

}  // namespace brimquill::sqlite
