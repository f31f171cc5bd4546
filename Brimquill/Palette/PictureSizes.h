#pragma once

#include <QCache>
#include <QString>

#include <string>

namespace brimquill {

/// How large the pictures of the hoard are, from the heads of their files, which never change; remembers the last ones.
/// Main thread.
class PictureSizes final {
public:
    PictureSizes() : known_(1000) {}

    /// "640 × 480", in pixels; empty when the file is no picture.
    std::string describe(const std::string& path);

private:
    QCache<QString, std::string> known_;
};

}  // namespace brimquill
