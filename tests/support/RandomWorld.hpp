// Small worlds made by chance, in which names, folders and prefixes collide as often as possible.
#pragma once

#include "tests/support/World.hpp"

#include <cstddef>
#include <functional>
#include <random>
#include <utility>

namespace tessgen::test {

struct RandomWorld {
    World world;
    std::vector<Texts> sourceCodeDirs;
    Texts names; // to ask for
};

class WorldMaker {
public:
    using Draw = std::function<std::size_t(std::size_t)>; // some number below the given one

    explicit WorldMaker(Draw draw) : draw_(std::move(draw)) {}
    explicit WorldMaker(unsigned seed)
        : WorldMaker([random = std::mt19937(seed)](std::size_t bound) mutable {
              return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random);
          }) {}

    RandomWorld make() {
        RandomWorld made;
        auto& world = made.world;
        world.orvakroot = any({u"/h", u"/h", u"/hx", u"/", u""});
        if (chance(2)) {
            world.spkgroot = any({u"/s", u"/h/s", u"/hx", u"/", u""});
        }
        for (auto count = below(3); count > 0; --count) {
            made.sourceCodeDirs.push_back(chance(4) ? Texts() : Texts{any({u"t", u"tx", u"@f", u"private"})});
        }
        for (auto count = 1 + below(5); count > 0; --count) {
            made.names.push_back(name());
        }
        Texts paths;
        for (auto count = 3 + below(8); count > 0; --count) {
            paths.push_back(path());
            mark(world, paths.back());
            // The other side of the rewrites.
            mark(world, kelwhich::replacePrefix(paths.back(), world.orvakroot, world.spkgroot.value_or(u"/s")));
        }
        if (chance(2)) {
            made.names.push_back(any(paths));
        }
        for (auto count = below(7); count > 0; --count) {
            world.add({any(made.names), name()}, record(paths, made.names));
        }
        for (const auto& asked : made.names) {
            auto& answers = world.hostAnswers[asked];
            for (auto count = below(6); count > 0; --count) {
                const bool isFile = chance(2);
                answers.push_back({isFile ? any(paths) : asked, isFile      ? Type::ORVAKPath
                                                                : chance(2) ? Type::ORVAKBuiltin
                                                                            : Type::ORVAKBuiltinMethod});
            }
        }
        return made;
    }

private:
    std::size_t below(std::size_t bound) { return draw_(bound); }
    bool chance(std::size_t oneIn) { return below(oneIn) == 0; }
    std::u16string any(const Texts& texts) { return texts[below(texts.size())]; }

    std::u16string name() {
        return any({u"f", u"f", u"f", u"g", u"C", u"p.f", u"p.C", u"C.f", u"p.p.p.p.p.p.p.p.p.f", u"", u".", u"f.vk",
                    u"p/f", u"f.vk/", u"/", u"\xD83D\xDE00", u"\xDC00", path(), path()});
    }

    std::u16string path() {
        auto text = any({u"/h", u"/h", u"/hx", u"/s", u"/w", u"/k", u"", u"h"});
        if (chance(20)) {
            text += u"/+p/+p/+p/+p/+p/+p/+p/+p/+p";
        }
        for (auto count = below(4); count > 0; --count) {
            text += u"/"
                    + any({u"+p", u"+q", u"@C", u"@f", u"@", u"+", u"private", u"private", u"Private", u"t", u"tx",
                           u"d.vk", u"\xDC00"});
        }
        return text + u"/" + any({u"f", u"f", u"f", u"g", u"C", u"", u"f.p", u"\xD83D\xDE00"})
               + any({u".vk", u".vk", u".vkx", u".VK", u".vkxx", u"", u"."});
    }

    void mark(World& world, const std::u16string& path) {
        if (chance(2)) {
            world.files.insert(path);
        }
        if (chance(3)) {
            world.kelFiles.insert(path);
        }
    }

    SupportEntry record(const Texts& paths, const Texts& names) {
        SupportEntry entry;
        entry.supportFlags.at(below(6)) = chance(2);
        entry.isBuiltin = chance(4);
        entry.isRedirect = chance(3);
        entry.path = entry.isBuiltin && chance(2) ? any(names) : any(paths);
        entry.symbol = any(names);
        if (chance(3)) {
            entry.unsupportedSymbols = {u"other", any(names)};
        }
        return entry;
    }

    Draw draw_;
};

} // namespace tessgen::test
