// A small world for a resolver: what its three collaborators know, and a record of what they were asked.
#pragma once

#include "host/Paths.hpp"
#include "tessapp/internal/screener/meta/SupportEntry.hpp"
#include "tessgen/kelwhich/CachedFileSystemAdaptor.hpp"
#include "tessgen/kelwhich/CachedWhichResolverAdaptor.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <atomic>
#include <cstddef>
#include <exception>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::test {

using kelwhich::SupportEntry;
using kelwhich::WhichResult;
using Type = kelwhich::WhichResultType;
using Texts = std::vector<std::u16string>;
using Results = std::vector<WhichResult>;

inline std::string ascii(const std::u16string& text) {
    return {text.begin(), text.end()};
}

struct Record {
    Texts names;
    std::shared_ptr<const SupportEntry> entry;
};

// Every question to the fakes of a test, counted together, so that any one of them can be made to fail.
//
// Threads: any; set up while no other thread asks.
struct Faults {
    static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

    static inline std::atomic<std::size_t> asked = 0;
    static inline std::size_t failing = none; // the number of the question that fails, from 0
    static inline std::exception_ptr failure;

    static void ask() {
        if (asked++ == failing) {
            std::rethrow_exception(failure);
        }
    }

    // Counts anew; the question with this number throws.
    static void arm(std::size_t number, const std::exception_ptr& thrown) {
        asked = 0;
        failing = number;
        failure = thrown;
    }

    static void disarm() { failing = none; }
};

struct World {
    std::map<std::u16string, Results> hostAnswers;
    std::vector<Record> records;
    std::set<std::u16string> files;
    std::set<std::u16string> kelFiles; // those that are on the KEL path
    std::u16string orvakroot = u"/h";
    std::optional<std::u16string> spkgroot;

    bool isRecorded = true;
    Texts asked;                   // the questions, in order
    static inline std::mutex lock; // of what was asked, since worlds are copied

    void add(const Texts& names, const SupportEntry& entry) {
        records.push_back({names, std::make_shared<const SupportEntry>(entry)});
    }

    void ask(const char16_t* question, const std::u16string& argument = u"") {
        if (!isRecorded) {
            return;
        }
        Faults::ask();
        const std::lock_guard guard(lock);
        asked.push_back(argument.empty() ? question : std::u16string(question) + u" " + argument);
    }

    // What was asked since the last call of this.
    Texts questions() { return std::exchange(asked, {}); }
};

class FakeWhichResolver final : public kelwhich::WhichResolver {
public:
    explicit FakeWhichResolver(World& world) : world_(&world) {}
    Results which(const std::u16string& name) const override {
        world_->ask(u"which", name);
        const auto answer = world_->hostAnswers.find(name);
        return answer == world_->hostAnswers.end() ? Results() : answer->second;
    }
    ~FakeWhichResolver() override { world_->asked.emplace_back(u"~which"); }

private:
    World* world_;
};

class FakeMetadataResolver final : public kelwhich::MetadataResolver {
public:
    explicit FakeMetadataResolver(World& world) : world_(&world) {}
    std::optional<std::shared_ptr<const SupportEntry>> findByPath(const std::u16string& path) const override {
        world_->ask(u"findByPath", path);
        for (const auto& record : world_->records) {
            if (!record.entry->isBuiltin && record.entry->path == path) {
                return record.entry;
            }
        }
        return std::nullopt;
    }
    std::vector<std::shared_ptr<const SupportEntry>> findBySymbol(const std::u16string& symbol) const override {
        world_->ask(u"findBySymbol", symbol);
        std::vector<std::shared_ptr<const SupportEntry>> found;
        for (const auto& record : world_->records) {
            for (const auto& name : record.names) {
                if (name == symbol) {
                    found.push_back(record.entry);
                }
            }
        }
        return found;
    }
    ~FakeMetadataResolver() override { world_->asked.emplace_back(u"~metadata"); }

private:
    World* world_;
};

class FakeFileSystem final : public kelwhich::FileSystem {
public:
    explicit FakeFileSystem(World& world) : world_(&world) {}
    bool exists(const std::u16string& path) const override {
        world_->ask(u"exists", path);
        return world_->files.contains(path);
    }
    std::u16string orvakroot() const override {
        world_->ask(u"orvakroot");
        return world_->orvakroot;
    }
    std::optional<std::u16string> spkgroot() const override {
        world_->ask(u"spkgroot");
        return world_->spkgroot;
    }
    bool isOnKELPath(const std::u16string& path) const override {
        world_->ask(u"isOnKELPath", path);
        return world_->kelFiles.contains(path);
    }
    ~FakeFileSystem() override { world_->asked.emplace_back(u"~fileSystem"); }

private:
    World* world_;
};

// What the resolver is asked over.
enum class Over { collaborators, caches, warmCaches };

// The world outlives the resolver.
inline kelwhich::KELWhichResolver makeResolver(World& world, Over over = Over::collaborators) {
    auto which = std::make_unique<FakeWhichResolver>(world);
    auto files = std::make_unique<FakeFileSystem>(world);
    auto metadata = std::make_unique<FakeMetadataResolver>(world);
    if (over == Over::collaborators) {
        return {std::move(which), std::move(metadata), std::move(files)};
    }
    return {std::make_unique<kelwhich::CachedWhichResolverAdaptor>(std::move(which)), std::move(metadata),
            std::make_unique<kelwhich::CachedFileSystemAdaptor>(std::move(files))};
}

// A supported record of a file.
inline SupportEntry supported(const std::u16string& path) {
    return {.supportFlags = {true}, .symbol = u"s", .path = path, .unsupportedSymbols = {}};
}

inline SupportEntry builtin(const std::u16string& path) {
    return {.isBuiltin = true, .symbol = u"s", .path = path, .unsupportedSymbols = {}};
}

inline SupportEntry redirect(const std::u16string& path, const std::u16string& target) {
    return {.supportFlags = {true}, .isRedirect = true, .symbol = target, .path = path, .unsupportedSymbols = {}};
}

} // namespace tessgen::test
