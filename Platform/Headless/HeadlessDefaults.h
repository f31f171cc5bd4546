#pragma once

#include "Platform/UserDefaults.h"

#include <map>

namespace brimquill::platform {

/// Preferences in memory.
class HeadlessDefaults final : public UserDefaults {
public:
    const std::map<std::string, Value>& values() const { return values_; }

    std::optional<Value> object(const std::string& key) const override {
        const auto found = values_.find(key);
        if (found == values_.end()) return std::nullopt;
        return found->second;
    }
    void set(const std::string& key, const Value& value) override { values_[key] = value; }
    void removeObject(const std::string& key) override { values_.erase(key); }

private:
    std::map<std::string, Value> values_;
};

}  // namespace brimquill::platform
