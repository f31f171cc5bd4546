#include "Brimquill/Palette/PictureSizes.h"

#include <QImageReader>

namespace brimquill {

std::string PictureSizes::describe(const std::string& path) {
    const auto file = QString::fromStdString(path);
    if (const auto* known = known_.object(file)) return *known;
    QImageReader reader(file);
    const auto size = reader.size();
    if (!size.isValid()) return {};
    auto description = std::to_string(size.width()) + " × " + std::to_string(size.height());
    known_.insert(file, new std::string(description));
    return description;
}

}  // namespace brimquill
