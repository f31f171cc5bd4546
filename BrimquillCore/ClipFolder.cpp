#include "BrimquillCore/ClipFolder.h"

namespace {

template <typename Value>
void feed(std::size_t& seed, const Value& value) {
    seed ^= std::hash<Value>()(value) + 0x9e3779b97f4a7c15ULL + (seed << 6U) + (seed >> 2U);
}

template <typename Value>
void feedOptional(std::size_t& seed, const std::optional<Value>& value) {
    feed(seed, value ? 1 : 0);
    if (value) feed(seed, *value);
}

}  // namespace

std::size_t std::hash<brimquill::ClipFolder>::operator()(const brimquill::ClipFolder& folder) const noexcept {
    std::size_t seed = 0;
    feed(seed, folder.id);
    feed(seed, folder.name);
    feedOptional(seed, folder.parentId);
    feed(seed, folder.uuid);
    feedOptional(seed, folder.color);
    return seed;
}
