#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace brimquill::platform {

/// One suite of preferences. Values are typed; one of another type than asked for counts as absent. A change is written
/// at once and replaces the file as a whole; a file that cannot be parsed is set aside under another name. Main thread.
class UserDefaults {
public:
    using Value = std::variant<bool, std::int64_t, double, std::string, std::vector<std::string>>;

    virtual ~UserDefaults() = default;
    virtual std::optional<Value> object(const std::string& key) const = 0;
    virtual void set(const std::string& key, const Value& value) = 0;
    virtual void removeObject(const std::string& key) = 0;

    std::optional<bool> boolean(const std::string& key) const { return get<bool>(key); }
    std::optional<std::int64_t> integer(const std::string& key) const { return get<std::int64_t>(key); }
    std::optional<std::string> string(const std::string& key) const { return get<std::string>(key); }
    std::optional<std::vector<std::string>> stringArray(const std::string& key) const {
        return get<std::vector<std::string>>(key);
    }

private:
    template <typename T>
    std::optional<T> get(const std::string& key) const {
        const auto value = object(key);
        if (value && std::holds_alternative<T>(*value)) return std::get<T>(*value);
        return std::nullopt;
    }
};

}  // namespace brimquill::platform
