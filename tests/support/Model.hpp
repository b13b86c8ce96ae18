// The rules of resolution once more, as plainly as they can be written: whole lists, paths as lists of parts, one sort.
// Shares no code with the library.
#pragma once

#include "tests/support/World.hpp"

#include <algorithm>
#include <tuple>

namespace tessgen::test {

class Model {
public:
    Model(const World& world, const std::vector<Texts>& sourceCodeDirs) : world_(&world) {
        for (const auto& parts : sourceCodeDirs) {
            auto dir = world.orvakroot;
            for (const auto& part : parts) {
                dir += u"/" + part;
            }
            hostDirs_.push_back(dir);
        }
        if (world.spkgroot) {
            hostDirs_.push_back(*world.spkgroot);
        }
    }

    // How often there was what only drawn worlds have, so that they can be seen to have it.
    struct Counts {
        std::size_t chains; // redirects to a name that redirects
        std::size_t cycles; // back to where they came from
        std::size_t deepPackages;
        std::size_t files; // names that are a file with a record
    };
    static inline Counts counts; // of all models

    Results resolve(const std::u16string& name) const {
        auto all = ofTargets(name);
        const auto own = ordered(name);
        all.insert(all.end(), own.begin(), own.end());
        Results unique;
        for (const auto& result : all) {
            if (std::find(unique.begin(), unique.end(), result) == unique.end()) {
                unique.push_back(result);
            }
        }
        return unique;
    }

    Results ofTargets(const std::u16string& name) const {
        Results all;
        for (const auto& target : targets(name)) {
            const auto further = targets(target);
            counts.chains += further.empty() ? 0U : 1U;
            counts.cycles += std::count(further.begin(), further.end(), name) > 0 ? 1U : 0U;
            const auto results = ordered(target);
            all.insert(all.end(), results.begin(), results.end());
        }
        return all;
    }

    Results ordered(const std::u16string& name) const {
        auto results = gathered(name);
        std::stable_sort(results.begin(), results.end(),
                         [&](const WhichResult& a, const WhichResult& b) { return keys(a, name) < keys(b, name); });
        return results;
    }

    Results gathered(const std::u16string& name) const {
        Results results;
        for (const auto& record : records(name)) {
            const auto path = pathOf(*record);
            if (record->isBuiltin) {
                results.push_back({path, Type::KELBuiltin});
            } else if (world_->kelFiles.contains(path)) {
                results.push_back({path, Type::KELPath});
            } else if (plain(name) && !defines(path, name)) {
                results.push_back({path, Type::ORVAKPath});
            }
        }
        if (const auto answer = world_->hostAnswers.find(name); answer != world_->hostAnswers.end()) {
            results.insert(results.end(), answer->second.begin(), answer->second.end());
        }
        std::erase_if(results, [&](const WhichResult& result) {
            const auto parts = split(result.path);
            return !has(name, u'/') && isFile(result) && parts.size() > 1 && parts[parts.size() - 2] == u"private"
                   && classOf(parts).empty();
        });
        return results;
    }

    Texts recordPaths(const std::u16string& name) const {
        Texts paths;
        for (const auto& record : records(name)) {
            paths.push_back(pathOf(*record));
        }
        return paths;
    }

    bool supported(const WhichResult& result, const std::u16string& name) const {
        const auto record = !isBuiltin(result) ? recordOf(result.path) : nullptr;
        if (!record) {
            return result.type == Type::KELBuiltin;
        }
        const auto& flags = record->supportFlags;
        const auto& excluded = record->unsupportedSymbols;
        return std::count(excluded.begin(), excluded.end(), name) == 0
               && std::count(flags.begin(), flags.end(), true) > 0;
    }

    bool user(const WhichResult& result) const {
        return result.type == Type::ORVAKPath && std::none_of(hostDirs_.begin(), hostDirs_.end(), [&](const auto& dir) {
                   return starts(result.path, dir);
               });
    }

    // The smaller, the earlier: false before true.
    using Keys = std::tuple<bool, bool, bool, bool, int>;
    Keys keys(const WhichResult& result, const std::u16string& name) const {
        const auto dot = result.path.rfind(u'.');
        const auto extension = dot == std::u16string::npos ? u"" : result.path.substr(dot + 1);
        const bool source = isBuiltin(result) || extension == u"vk" || extension == u"vkx";
        const bool indirect =
            plain(name)
            && (result.type == Type::ORVAKBuiltinMethod || (!isBuiltin(result) && !defines(result.path, name)));
        const int kind = result.type == Type::KELBuiltin ? 0 : result.type == Type::KELPath ? 1 : 2;
        return {indirect, !user(result), !supported(result, name), !source, kind};
    }

    struct Redirect {
        std::u16string path;
        std::u16string target;
        bool counts;
    };
    std::vector<Redirect> redirects(const std::u16string& name) const {
        std::vector<Redirect> all;
        for (const auto& record : records(name)) {
            if (record->isRedirect) {
                const auto path = pathOf(*record);
                all.push_back({path, record->symbol, !plain(name) || defines(path, name)});
            }
        }
        return all;
    }

    Texts targets(const std::u16string& name) const {
        Texts all;
        for (const auto& redirect : redirects(name)) {
            if (redirect.counts) {
                all.push_back(redirect.target);
            }
        }
        return all;
    }

    static bool plain(const std::u16string& name) { return !has(name, u'/') && !has(name, u'.'); }
    static bool isFile(const WhichResult& result) {
        return result.type == Type::KELPath || result.type == Type::ORVAKPath;
    }

    static std::u16string qualifiedName(const std::u16string& text) {
        auto parts = split(text);
        if (parts.size() == 1) {
            return text;
        }
        auto stem = parts.back().substr(0, parts.back().rfind(u'.'));
        const auto inClass = classOf(parts);
        if (!inClass.empty() && inClass != u"@" + stem) {
            return stem;
        }
        parts.pop_back();
        if (!inClass.empty()) {
            parts.resize(parts.size() - (parts.back() == u"private" ? 2 : 1));
        }
        auto name = std::move(stem);
        for (; !parts.empty() && (starts(parts.back(), u"+") || starts(parts.back(), u"@")); parts.pop_back()) {
            name.insert(0, parts.back().substr(1) + u".");
        }
        return name;
    }

private:
    using RecordPtr = std::shared_ptr<const SupportEntry>;

    static bool has(const std::u16string& text, char16_t unit) { return text.find(unit) != std::u16string::npos; }
    static bool isBuiltin(const WhichResult& result) {
        return result.type == Type::KELBuiltin || result.type == Type::ORVAKBuiltin
               || result.type == Type::ORVAKBuiltinMethod;
    }
    static bool starts(const std::u16string& text, const std::u16string& prefix) { return text.find(prefix) == 0; }

    static Texts split(const std::u16string& path) {
        Texts parts = {u""};
        for (const char16_t unit : path) {
            if (unit == u'/') {
                parts.emplace_back();
            } else {
                parts.back() += unit;
            }
        }
        return parts;
    }

    // The "@" folder that the file belongs to, with its "@"; empty when there is none.
    static std::u16string classOf(const Texts& parts) {
        auto last = parts.size() - 1;
        if (last >= 1 && parts[last - 1] == u"private") {
            --last;
        }
        return last >= 1 && starts(parts[last - 1], u"@") ? parts[last - 1] : u"";
    }

    // Whether the file is the definition of a plain name.
    static bool defines(const std::u16string& path, const std::u16string& name) {
        const auto inClass = classOf(split(path));
        return qualifiedName(path) == name && (inClass.empty() || inClass == u"@" + name);
    }

    static std::u16string moved(const std::u16string& path, const std::u16string& from, const std::u16string& to) {
        return starts(path, from) ? to + path.substr(from.size()) : path;
    }

    std::u16string pathOf(const SupportEntry& record) const {
        if (record.isBuiltin || !has(record.path, u'/') || !world_->spkgroot) {
            return record.path;
        }
        const auto inPackages = moved(record.path, world_->orvakroot, *world_->spkgroot);
        return world_->files.contains(inPackages) ? inPackages : record.path;
    }

    RecordPtr recordOf(const std::u16string& path) const {
        const auto query = world_->spkgroot ? moved(path, *world_->spkgroot, world_->orvakroot) : path;
        for (const auto& record : world_->records) {
            if (!record.entry->isBuiltin && record.entry->path == query) {
                return record.entry;
            }
        }
        return nullptr;
    }

    std::vector<RecordPtr> records(const std::u16string& name) const {
        std::vector<RecordPtr> found;
        if (world_->files.contains(name)) {
            if (auto record = recordOf(name)) {
                ++counts.files;
                found.push_back(record);
            }
            return found;
        }
        const auto symbol = qualifiedName(name);
        counts.deepPackages += std::count(symbol.begin(), symbol.end(), u'.') > 8 && symbol != name ? 1U : 0U;
        for (const auto& record : world_->records) {
            for (const auto& recorded : record.names) {
                if (recorded == symbol
                    && (!has(name, u'/') || pathOf(*record.entry).find(name) != std::u16string::npos)) {
                    found.push_back(record.entry);
                }
            }
        }
        return found;
    }

    const World* world_;
    Texts hostDirs_;
};

} // namespace tessgen::test
