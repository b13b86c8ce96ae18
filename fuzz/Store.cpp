// A support store of any bytes: whatever is asked of it, the answer is an error that names the file or a record as the
// file holds it; what the check calls whole is read whole.
#include "fuzz/Fuzz.hpp"
#include "fuzz/StoreInput.hpp"
#include "standalone/database/DatabaseFile.hpp"
#include "standalone/files/Descriptor.hpp"
#include "standalone/store/SupportStore.hpp"
#include "standalone/store/SupportStoreCheck.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <sys/mman.h>
#include <tuple>
#include <unistd.h>
#include <vector>

// In place of a mapping, a copy that is as long as the file to the byte: reading beyond it is seen.
extern "C" {
void* __real_mmap(void* at, std::size_t size, int protection, int flags, int descriptor, off_t offset);
int __real_munmap(void* at, std::size_t size);
}
static std::map<void*, std::unique_ptr<char[]>> copies; // NOLINT: what was mapped, for the two functions below

extern "C" void* __wrap_mmap(void* at, std::size_t size, int protection, int flags, int descriptor, off_t offset) {
    if (descriptor < 0) {
        return __real_mmap(at, size, protection, flags, descriptor, offset);
    }
    std::unique_ptr<char[]> copy(new char[size]); // NOLINT
    void* const begin = copy.get();
    if (pread(descriptor, begin, size, offset) != static_cast<ssize_t>(size)) {
        return MAP_FAILED;
    }
    copies.emplace(begin, std::move(copy));
    return begin;
}

extern "C" int __wrap_munmap(void* at, std::size_t size) {
    return copies.erase(at) == 1 ? 0 : __real_munmap(at, size);
}

namespace {

using namespace tessgen;
using fuzz::require;
using tessapp::internal::screener::meta::SupportEntry;

class MemoryFile {
public:
    explicit MemoryFile(std::string_view bytes) : descriptor_(memfd_create("store", MFD_CLOEXEC)) {
        require(write(descriptor_.get(), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()), "memory");
    }
    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_.get()); }

private:
    standalone::Descriptor descriptor_;
};

// Nothing when it is an error, which names the file.
template <typename Ask>
auto answerOf(const std::string& file, Ask ask) -> std::optional<decltype(ask())> {
    try {
        return ask();
    } catch (const std::runtime_error& error) {
        require(fuzz::namesPlace(error.what(), file, 0), "an error names the file", error.what());
        return std::nullopt;
    }
}

bool same(const SupportEntry& a, const SupportEntry& b) {
    return std::tie(a.supportFlags, a.isBuiltin, a.isRedirect, a.symbol, a.path, a.unsupportedSymbols)
           == std::tie(b.supportFlags, b.isBuiltin, b.isRedirect, b.symbol, b.path, b.unsupportedSymbols);
}

using Records = std::vector<standalone::SupportStore::Record>;
using Walked = std::map<std::u16string, std::vector<SupportEntry>>; // the records of a walk by what finds them

// Asks for everything that a walk meets. `isWhole`: nothing may fail, and look-ups find what the walk does.
void ask(const std::string& file, const standalone::SupportStore& store, bool isWhole) {
    Walked byPath = {{u"", {}}, {u"/w/f.vk", {}}};
    Walked byName = {{u"", {}}, {u"f", {}}};
    const auto visit = [&](const standalone::SupportRecord& record) {
        if (!record.entry.isBuiltin) {
            byPath[record.entry.path].push_back(record.entry);
        }
        for (const auto& name : record.names) {
            byName[name].push_back(record.entry);
        }
    };
    require(answerOf(file, [&] { return store.forEachRecord(visit), true; }) || !isWhole,
            "what is whole is read whole");
    const auto compare = [&](const std::optional<Records>& found, const std::vector<SupportEntry>& expected) {
        const auto isSame = [](const auto& record, const auto& entry) { return same(*record, entry); };
        require(!isWhole
                    || (found && std::equal(found->begin(), found->end(), expected.begin(), expected.end(), isSame)),
                "what is whole is found as it is read");
    };
    for (const auto& [path, expected] : byPath) {
        const auto found = answerOf(file, [&, &path = path] {
            const auto record = store.findByPath(path);
            return record ? Records{*record} : Records();
        });
        require(!found || found->empty() || (found->front()->path == path && !found->front()->isBuiltin),
                "a path finds its own record");
        compare(found, expected);
    }
    for (const auto& [name, expected] : byName) {
        compare(answerOf(file, [&, &name = name] { return store.findBySymbol(name); }), expected);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryFile memory(fuzz::StoreInput(fuzz::textOf(data, size)).file());
    const auto file = memory.path();
    const auto store = answerOf(file, [&] { return standalone::SupportStore(file); });
    const auto check = answerOf(file, [&] { return standalone::checkSupportStore(file); });
    require(store.has_value() == check.has_value(), "what can be opened can be checked");
    if (store) {
        ask(file, *store, check->damages == 0);
    }
    return 0;
}
