// Every public operation of the library, each as something that can be made anew, called, and called again.
#pragma once

#include "standalone/HostArrays.hpp"
#include "standalone/services/DataArrays.hpp"
#include "tessgen/kelwhich/Explanation.hpp"
#include "tessgen/kelwhich/ORVAKWhichResolver.hpp"
#include "tessgen/kelwhich/RealFileSystem.hpp"
#include "tessgen/kelwhich/invoke.hpp"
#include "tessgen/kelwhich/kelwhich.hpp"
#include "tests/support/RecordingHost.hpp"

#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::test {

// A name with redirects, records of every kind, files in support packages and all kinds of host answers.
inline World wideWorld() {
    World world;
    world.spkgroot = u"/s";
    world.files = {u"/s/tb/f.vk"};
    world.kelFiles = {u"/k/f.vk"};
    world.add({u"f"}, redirect(u"/h/tb/f.vk", u"g"));
    world.add({u"f"}, redirect(u"/w/other.vk", u"g"));
    world.add({u"f", u"g"}, supported(u"/k/f.vk"));
    world.add({u"g"}, builtin(u"g"));
    world.hostAnswers[u"f"] = {{u"/w/f.vk", Type::ORVAKPath},    {u"/w/private/f.vk", Type::ORVAKPath},
                               {u"/w/@C/f.vk", Type::ORVAKPath}, {u"/a/long/path/to/a/file/f.vk", Type::ORVAKPath},
                               {u"f", Type::ORVAKBuiltin},       {u"f", Type::ORVAKBuiltinMethod}};
    return world;
}

inline void resetHost() {
    auto& host = RecordingHost::reset();
    host.sourceCodeDirs = {{u"tb"}, {u"a long name of a folder", u"below"}};
    host.kelPath = {u"/k", u"/a/long/path/to/a/folder"};
    host.metadata = wideWorld();
    host.answer = [](const RecordingHost::Evaluation& evaluation) -> std::vector<foundation::orvakdata::Array> {
        if (evaluation.arguments.empty()) {
            return {standalone::makeCharArray(u"/s")};
        }
        return {standalone::makeStringColumn({u"/w/f.vk", u"a built-in", u"f is a method"}),
                standalone::makeStringColumn({u"", u"", u"table method"})};
    };
}

// The candidates that an explanation answers, and something of each reason.
inline Texts shown(const kelwhich::Explanation& explanation) {
    Texts texts;
    for (const auto& resolution : explanation.resolutions) {
        for (const auto& candidate : resolution.candidates) {
            texts.push_back(candidate.result.path + candidate.definedName + candidate.hostFolder);
        }
    }
    return texts;
}

// A call of the gateway, whose outputs are given back in the end.
struct GatewayCall {
    GatewayCall() = default;
    GatewayCall(const GatewayCall&) = delete;
    GatewayCall& operator=(const GatewayCall&) = delete;
    ~GatewayCall() {
        for (auto* output : outputs) {
            matrix::ArrayPtr(output).reset();
        }
    }

    void operator()(int outputCount, const matrix::ArrayPtr& input = standalone::makeText(u"f")) {
        auto* argument = input.get();
        kelwhich::invoke(outputCount, outputs.data(), 1, &argument);
    }

    std::array<qxArray*, 3> outputs{};
};

// Calls `visit(name, make)` for each operation. What `make()` returns holds all that the operation needs, and is
// called for an answer that can be compared.
template <typename Visit>
void forEachOperation(Visit visit) {
    const auto overWorld = [&visit](const std::string& name, auto operation) {
        for (const auto over : {Over::collaborators, Over::caches, Over::warmCaches}) {
            const char* const suffixes[] = {"", ", cached", ", warm"};
            visit(name + suffixes[static_cast<int>(over)], [operation, over] {
                resetHost();
                auto world = std::make_shared<World>(wideWorld());
                const std::shared_ptr<const kelwhich::KELWhichResolver> resolver(
                    new kelwhich::KELWhichResolver(makeResolver(*world, over)));
                if (over == Over::warmCaches) {
                    operation(*resolver);
                }
                return [world, resolver, operation] { return operation(*resolver); };
            });
        }
    };
    using Resolver = kelwhich::KELWhichResolver;
    const WhichResult file{u"/w/f.vk", Type::ORVAKPath};
    overWorld("resolve", [](const Resolver& resolver) { return resolver.resolve(u"f"); });
    overWorld("resolve a path", [](const Resolver& resolver) { return resolver.resolve(u"tb/f.vk"); });
    overWorld("resolveWithoutRedirect", [](const Resolver& resolver) { return resolver.resolveWithoutRedirect(u"f"); });
    overWorld("unorderedResolveWithoutRedirect",
              [](const Resolver& resolver) { return resolver.unorderedResolveWithoutRedirect(u"f"); });
    overWorld("explain", [](const Resolver& resolver) { return shown(resolver.explain(u"f")); });
    overWorld("isUserResult", [file](const Resolver& resolver) { return resolver.isUserResult(file); });
    overWorld("isSupportedForCodegen",
              [file](const Resolver& resolver) { return resolver.isSupportedForCodegen(file, u"f"); });
    overWorld("findByPath", [](const Resolver& resolver) { return resolver.findByPath(u"/s/tb/f.vk")->path; });
    overWorld("findBySymbol", [](const Resolver& resolver) { return resolver.findBySymbol(u"f").back().path; });
    overWorld("findSupportEntry and entryToWhichResult", [](const Resolver& resolver) {
        return resolver.entryToWhichResult(resolver.findSupportEntry(u"f").front());
    });
    overWorld("entryToBasicEntry", [](const Resolver& resolver) {
        return resolver.entryToBasicEntry(std::make_shared<SupportEntry>(supported(u"/h/tb/f.vk"))).path;
    });

    const auto overHost = [&visit](const std::string& name, auto operation) {
        visit(name, [operation] {
            resetHost();
            return operation;
        });
    };
    overHost("kelwhich", [] { return kelwhich::kelwhich(u"f"); });
    overHost("invoke", [] {
        GatewayCall call;
        call(2);
        return std::pair(standalone::textsOf(call.outputs[0]), standalone::membersOf(call.outputs[1]));
    });
    overHost("host look-up", [] { return kelwhich::ORVAKWhichResolver().which(u"f"); });
    overHost("real files", [] {
        const kelwhich::RealFileSystem files;
        return std::tuple(files.isOnKELPath(u"/a/long/path/to/a/folder/+p/f.vk"), files.spkgroot(), files.orvakroot(),
                          files.exists(u"/nowhere/a/long/path/to/a/file"));
    });
    overHost("class folder", [] { return std::u16string(kelwhich::getClassFolderInfo(u"/w/@C/f.vk")->className); });
}

} // namespace tessgen::test
