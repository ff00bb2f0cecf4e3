#include "app/output_names.h"

#include "support/paths.h"

namespace reelvane {
std::string OutputNames::keyOf(const std::filesystem::path& path) {
    return path.lexically_normal().native();
}

std::uint64_t OutputNames::firstNumberFor(const std::string& key) const {
    const std::lock_guard lock(mutex_);
    const auto known = numbers_.find(key);
    return known == numbers_.end() ? 0 : known->second;
}

std::filesystem::path OutputNames::takeFreePath(const std::filesystem::path& folder,
                                                std::string_view inputName,
                                                std::string_view extension) {
    auto name = std::filesystem::path(inputName).stem();
    name += ".";
    name += extension;
    const auto wished = folder / name;
    const auto key = keyOf(wished);
    auto number = firstNumberFor(key);
    // Asked only of a place where nothing lies, and promised with the asking.
    auto path = Fennimar::uniqueFile(
        wished,
        [this](const std::filesystem::path& candidate) { return !promiseIfFree(candidate); },
        &number);
    const std::lock_guard lock(mutex_);
    if (number > 0) numbers_[key] = number;
    return path;
}

void OutputNames::promise(const std::filesystem::path& path) {
    const std::lock_guard lock(mutex_);
    ++promises_[keyOf(path)];
}

bool OutputNames::promiseIfFree(const std::filesystem::path& path) {
    const std::lock_guard lock(mutex_);
    return promises_.emplace(keyOf(path), 1).second;
}

void OutputNames::release(const std::filesystem::path& path) {
    const std::lock_guard lock(mutex_);
    const auto found = promises_.find(keyOf(path));
    if (found != promises_.end() && --found->second <= 0) promises_.erase(found);
    numbers_.clear();
}

}  // namespace reelvane
