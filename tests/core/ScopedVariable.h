#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace brimquill::test {

/// Sets an environment variable and puts back what was there.
class ScopedVariable final {
public:
    ScopedVariable(const char* name, const char* value) : name_(name) {
        if (const char* const before = std::getenv(name)) before_ = before;
        ::setenv(name, value, 1);
    }
    ~ScopedVariable() {
        if (before_) {
            ::setenv(name_, before_->c_str(), 1);
        } else {
            ::unsetenv(name_);
        }
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    const char* name_;
    std::optional<std::string> before_;
};

}  // namespace brimquill::test
