// The services that are no functions of the host language: where things are, and the support records.
#include <fl/filesystem.hpp>
#include <tessapp/internal/screener/meta/search.hpp>
#include <tessapp/util/foundation.hpp>
#include <tessgen/datalists.hpp>

using Folders = std::vector<std::u16string>;

std::u16string fl::filesystem::get_install_path() {
    return u"/small/host";
}

void fl::filesystem::detail::concatenate_pathname(std::u16string& base, const std::u16string& component, bool) {
    if (!base.empty() && base.back() != u'/') {
        base.push_back(u'/');
    }
    base.append(component);
}

const Folders& tessgen::datalists::kelPathFolders() {
    static const Folders folders = {u"/small/host/kel"};
    return folders;
}

const std::vector<Folders>& tessapp::util::foundation::getORVAKSourceCodeDirs() {
    static const std::vector<Folders> folders = {{u"library"}};
    return folders;
}

namespace tessapp::internal::screener::meta {

namespace {

using Entry = std::shared_ptr<const SupportEntry>;

struct Record {
    std::u16string name; // what the record is found by; its `symbol` is another one when it redirects
    Entry entry;
};

const std::vector<Record>& records() {
    static const auto entry = [](bool supported, bool isBuiltin, bool isRedirect, const char16_t* symbol,
                                 const char16_t* path) {
        return std::make_shared<const SupportEntry>(SupportEntry{{supported}, isBuiltin, isRedirect, symbol, path, {}});
    };
    static const std::vector<Record> all = {
        {u"sum", entry(true, false, false, u"sum", u"/small/host/kel/sum.vk")},
        {u"sum", entry(true, true, false, u"sum", u"sum")},
        {u"modern", entry(true, false, false, u"modern", u"/small/host/kel/modern.vk")},
        {u"legacy", entry(false, false, true, u"modern", u"/small/host/kel/legacy.vk")},
        {u"tune", entry(true, false, false, u"tune", u"/small/host/library/radio/tune.vk")},
    };
    return all;
}

} // namespace

std::optional<Entry> searchByPath(const std::u16string& path) {
    for (const auto& record : records()) {
        if (!record.entry->isBuiltin && record.entry->path == path) {
            return record.entry;
        }
    }
    return std::nullopt;
}

std::vector<Entry> searchBySymbol(const std::u16string& symbol) {
    std::vector<Entry> found;
    for (const auto& record : records()) {
        if (record.name == symbol) {
            found.push_back(record.entry);
        }
    }
    return found;
}

} // namespace tessapp::internal::screener::meta
