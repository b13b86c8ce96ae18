#include "cli/commands/Answering.hpp"
#include "cli/commands/Commands.hpp"
#include "cli/options/CommandLine.hpp"
#include "cli/options/Help.hpp"
#include "cli/output/Console.hpp"

#include <cstdlib>
#include <exception>

namespace {

using namespace tessgen::cli;

int run(const Request& request) {
    switch (request.action) {
    case Action::which:
        return request.from ? whichFrom(request) : which(request);
    case Action::batch:
        return batch(request);
    case Action::lsp:
        return lsp(request);
    case Action::explain:
        return explain(request);
    case Action::provides:
        return provides(request);
    case Action::storeBuild:
        return storeBuild(request);
    case Action::storeInfo:
        return storeInfo(request);
    case Action::storeVerify:
        return storeVerify(request);
    case Action::storeExport:
        return storeExport(request);
    case Action::indexBuild:
        return indexBuild(request);
    case Action::indexVerify:
        return indexVerify(request);
    case Action::config:
        config(request);
        noteOnName(request);
        return exitYes;
    case Action::init:
        return init(request);
    case Action::completeName:
        return completeName(request);
    case Action::lock:
        return lock(request);
    case Action::diff:
        return diff(request);
    case Action::doctor:
        return doctor(request);
    case Action::check:
        return check(request);
    case Action::help:
        writeOut(helpText(request.topic));
        noteOnName(request);
        return exitYes;
    case Action::version:
        writeOut("kelwhich " KELWHICH_VERSION "\n");
        return exitYes;
    }
    return exitFailed;
}

} // namespace

int main(int count, char** words) {
    // An exception where none may be thrown; most likely out of memory.
    std::set_terminate([] {
        reportFailure();
        flushErrors(exitFailed);
        std::_Exit(exitFailed);
    });
    int exitCode = exitFailed;
    try {
        prepareStreams();
        exitCode = run(readCommandLine(count, words));
    } catch (const ReaderGone&) {
        endByBrokenPipe();
    } catch (...) {
        reportFailure();
    }
    flushErrors(exitCode);
    return exitCode;
}
