#include "benchmarks/SeededClips.h"

#include "BrimquillCore/ClipStoreStatement.h"

#include <random>

namespace brimquill::benchmarks {
namespace {

class TextMaker final {
public:
    std::string next() {
        std::string text;
        for (auto words = 4 + random_() % 27; words > 0; --words)
            text += word() + ' ';
        if (random_() % 5 < 2) text += "the ";
        if (random_() % 2000 == 0) text += "quokka";
        return text;
    }
    unsigned number() { return static_cast<unsigned>(random_()); }

private:
    /// One of 40,000 words, short numbers being the frequent ones; none begins with "the", "q" or "z".
    std::string word() {
        const auto rank = random_() % (1 + random_() % 40000);
        std::string word(1, "tabcdefghiklmnoprsuvw"[rank % 21]);
        for (auto rest = rank + 7; rest > 0; rest /= 20)
            word += "aeioubcdfgklmnprstvw"[rest % 20];
        return word;
    }

    std::mt19937 random_{20260101};
};

}  // namespace

void addSeededClips(const std::filesystem::path& database, int count) {
    const sqlite::Connection connection(database);
    TextMaker texts;
    connection.exec("BEGIN");
    for (int index = 0; index < count; ++index) {
        const bool isSnippet = index % 200 == 7;
        const auto number = std::to_string(index);
        sqlite::Statement(connection,
                          "INSERT INTO clips (text, created_at, source_app, pinned, name, keyword, tags, uuid, "
                          "modified_at) VALUES (?, ?, 'Editor', ?, ?, ?, ?, ?, ?)")
            .bind(texts.next())
            .bind(Date{1.6e9 + index})
            .bind(std::int64_t{index % 500 == 3})
            .bind(isSnippet ? std::optional("Snippet " + number) : std::nullopt)
            .bind(isSnippet ? std::optional(";s" + number) : std::nullopt)
            .bind(index % 20 == 1 ? std::optional<std::string>(texts.number() % 2 ? "work,later" : "home")
                                  : std::nullopt)
            .bind("seeded-" + number)
            .bind(Date{1.6e9 + index})
            .run();
    }
    connection.exec("COMMIT");
}

}  // namespace brimquill::benchmarks
