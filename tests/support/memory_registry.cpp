#include "support/memory_registry.h"

#include <algorithm>
#include <utility>

namespace orvane::test {

namespace {

using platform::RegistryKey;
using platform::ResultCode;

constexpr ResultCode kNotFound{platform::kErrorFileNotFound};
constexpr ResultCode kDenied{platform::kErrorAccessDenied};
constexpr ResultCode kInvalidHandle{platform::kErrorInvalidHandle};
constexpr ResultCode kHasChildren{platform::kErrorKeyHasChildren};
constexpr const char16_t* kClasses = u"software\\classes\\";

std::u16string folded(std::u16string text) {
    for (char16_t& unit : text) {
        if (unit >= u'A' && unit <= u'Z') unit = static_cast<char16_t>(unit + 32);
    }
    return text;
}

bool isBelow(const std::u16string& path, const std::u16string& top) {
    return path.starts_with(top + u"\\");
}

}  // namespace

MemoryRegistry::MemoryRegistry()
    : open_(platform::advapi32.RegOpenKeyExW,
            [this](RegistryKey root, const std::u16string& path, std::uint32_t, std::uint32_t,
                   RegistryKey& key) { return open(root, path, key); }),
      create_(platform::advapi32.RegCreateKeyExW,
              [this](RegistryKey root, const std::u16string& path, std::uint32_t, std::uint32_t,
                     RegistryKey& key,
                     platform::KeyDisposition&) { return create(root, path, key); }),
      query_(platform::advapi32.RegQueryValueExW,
             [this](RegistryKey key, const std::u16string& name, std::uint32_t& type,
                    std::vector<std::uint8_t>& data) { return query(key, name, type, data); }),
      write_(platform::advapi32.RegSetValueExW,
             [this](RegistryKey key, const std::u16string& name, std::uint32_t type,
                    std::span<const std::uint8_t> data) { return write(key, name, type, data); }),
      close_(platform::advapi32.RegCloseKey, [this](RegistryKey key) { return close(key); }),
      removeTree_(platform::shlwapi.SHDeleteKeyW,
                  [this](RegistryKey root, const std::u16string& path) {
                      return remove(root, path, false);
                  }),
      removeEmpty_(platform::shlwapi.SHDeleteEmptyKeyA,
                   [this](RegistryKey root, const std::string& path) {
                       return remove(root, std::u16string(path.begin(), path.end()), true);
                   }),
      begin_(platform::registryTransactions.Begin,
             [this] {
                 before_ = keys_;
                 return ResultCode::success;
             }),
      commit_(platform::registryTransactions.Commit,
              [this] {
                  before_.reset();
                  return ResultCode::success;
              }),
      rollback_(platform::registryTransactions.Rollback, [this] {
          if (before_) keys_ = *std::exchange(before_, std::nullopt);
          return ResultCode::success;
      }) {}

std::map<std::u16string, std::u16string> MemoryRegistry::texts(RegistryKey root) const {
    std::map<std::u16string, std::u16string> texts;
    for (const auto& [place, key] : keys_) {
        if (place.first != root) continue;
        if (key.values.empty()) texts[key.path + u"\\"] = u"";
        for (const auto& [name, value] : key.values) {
            std::u16string text(value.data.size() / 2, u'\0');
            for (std::size_t i = 0; i < text.size(); ++i)
                text[i] = static_cast<char16_t>(value.data[2 * i] | value.data[2 * i + 1] << 8);
            texts[key.path + u"\\" + value.name] = text.substr(0, text.size() - 1);
        }
    }
    return texts;
}

void MemoryRegistry::set(RegistryKey root, const std::u16string& path, const std::u16string& name,
                         const std::u16string& text) {
    RegistryKey key{};
    create(root, path, key);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.c_str());
    write(key, name, platform::kRegSz, {bytes, 2 * (text.size() + 1)});
    close(key);
}

MemoryRegistry::Place MemoryRegistry::placeOf(RegistryKey root, const std::u16string& path) const {
    if (root != platform::kHkeyClassesRoot) return {root, folded(path)};
    const Place user{platform::kHkeyCurrentUser, kClasses + folded(path)};
    if (keys_.contains(user)) return user;
    return {platform::kHkeyLocalMachine, kClasses + folded(path)};
}

RegistryKey MemoryRegistry::handleOf(const Place& place) {
    const RegistryKey key{next_++};
    handles_.emplace(key, place);
    return key;
}

ResultCode MemoryRegistry::open(RegistryKey root, const std::u16string& path, RegistryKey& key) {
    const Place place = placeOf(root, path);
    if (!keys_.contains(place)) return kNotFound;
    key = handleOf(place);
    return ResultCode::success;
}

ResultCode MemoryRegistry::create(RegistryKey root, const std::u16string& path, RegistryKey& key) {
    if (denied_.contains(root)) return kDenied;
    // With all that lack on the way to it.
    for (std::size_t end = 0; end != std::u16string::npos;) {
        end = path.find(u'\\', end + 1);
        const std::u16string part = path.substr(0, end);
        keys_.try_emplace(placeOf(root, part), Key{part, {}});
    }
    key = handleOf(placeOf(root, path));
    return ResultCode::success;
}

ResultCode MemoryRegistry::query(RegistryKey key, const std::u16string& name, std::uint32_t& type,
                                 std::vector<std::uint8_t>& data) const {
    const auto handle = handles_.find(key);
    if (handle == handles_.end()) return kInvalidHandle;
    const auto& values = keys_.at(handle->second).values;
    const auto value = values.find(folded(name));
    if (value == values.end()) return kNotFound;
    type = value->second.type;
    data = value->second.data;
    return ResultCode::success;
}

ResultCode MemoryRegistry::write(RegistryKey key, const std::u16string& name, std::uint32_t type,
                                 std::span<const std::uint8_t> data) {
    const auto handle = handles_.find(key);
    if (handle == handles_.end()) return kInvalidHandle;
    keys_.at(handle->second)
        .values.insert_or_assign(folded(name), Value{name, type, {data.begin(), data.end()}});
    return ResultCode::success;
}

ResultCode MemoryRegistry::close(RegistryKey key) {
    return handles_.erase(key) == 1 ? ResultCode::success : kInvalidHandle;
}

ResultCode MemoryRegistry::remove(RegistryKey root, const std::u16string& path, bool onlyEmpty) {
    if (denied_.contains(root)) return kDenied;
    const Place top = placeOf(root, path);
    if (!keys_.contains(top)) return kNotFound;
    const auto goes = [&top](const Place& each) {
        return each.first == top.first && isBelow(each.second, top.second);
    };
    if (onlyEmpty && std::ranges::any_of(keys_, goes, &std::pair<const Place, Key>::first)) {
        return kHasChildren;
    }
    std::erase_if(keys_, [&](const auto& each) { return each.first == top || goes(each.first); });
    return ResultCode::success;
}

}  // namespace orvane::test
