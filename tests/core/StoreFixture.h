#pragma once

#include "BrimquillCore/ClipStore.h"
#include "tests/core/TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace brimquill::test {

/// A connection beside the store's, to build databases and to look at stored values. An SQL error fails the test.
class Database final {
public:
    explicit Database(const std::filesystem::path& file) {
        EXPECT_EQ(sqlite3_open(file.c_str(), &handle_), SQLITE_OK) << file;
        sqlite3_busy_timeout(handle_, 10000);
    }
    ~Database() { sqlite3_close(handle_); }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// The rows of a script's results as text, columns joined by "|", NULL as "NULL".
    std::vector<std::string> rows(const std::string& sql) const {
        std::vector<std::string> result;
        char* error = nullptr;
        sqlite3_exec(handle_, sql.c_str(), &appendRow, &result, &error);
        EXPECT_EQ(error, nullptr) << error << " in " << sql;
        sqlite3_free(error);
        return result;
    }
    void run(const std::string& sql) const { rows(sql); }
    /// The first row, or "" without one.
    std::string value(const std::string& sql) const {
        const auto all = rows(sql);
        return all.empty() ? "" : all[0];
    }

private:
    static int appendRow(void* result, int count, char** values, char**) {
        std::string row;
        for (int column = 0; column < count; ++column) {
            if (column > 0) row += '|';
            row += values[column] ? values[column] : "NULL";
        }
        static_cast<std::vector<std::string>*>(result)->push_back(row);
        return 0;
    }

    sqlite3* handle_ = nullptr;
};

/// Counts the store's broadcasts, and how many of them came from applying a remote change.
class ChangeRecorder final {
public:
    ChangeRecorder(NotificationCenter& center, ClipStore& store)
        : observation_(center.observe(ClipStore::didChangeNotification, &store, [this, &store](const auto&) {
              ++count_;
              if (store.isApplyingRemoteChanges()) ++remoteCount_;
          })) {}

    /// How many came since the last call.
    int take() { return count_.exchange(0); }
    int takeRemote() { return remoteCount_.exchange(0); }

private:
    std::atomic<int> count_ = 0;
    std::atomic<int> remoteCount_ = 0;
    NotificationCenter::Observation observation_;
};

/// A fresh store in a directory of its own, with its own broadcasts and a clock that stands until a test moves it.
class StoreTest : public ::testing::Test {
protected:
    TemporaryDirectory directory;
    NotificationCenter center;
    Date now{1'700'000'000.25};
    ClipStore store{directory.path(), center, [this] { return now; }};
    ChangeRecorder changes{center, store};
    Database database{store.databaseURL};

    void advance(double seconds) { now = now + seconds; }

    /// Stores a text clip a second after the last thing that happened.
    std::int64_t insertText(const std::string& text) {
        advance(1);
        const auto clip = store.insert(text, ClipKind::text);
        return clip ? clip->id : 0;
    }

    /// An existing picture in the images directory.
    std::string makeImage(const std::string& name) const {
        const auto file = store.imagesDirectory / name;
        writeFile(file, "picture");
        return file.string();
    }
};

inline std::vector<std::string> textsOf(const std::vector<ClipItem>& clips) {
    std::vector<std::string> texts;
    for (const auto& clip : clips)
        texts.push_back(clip.text);
    return texts;
}

}  // namespace brimquill::test
