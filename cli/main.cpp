#include "cli/CommandLine.hpp"
#include "cli/Commands.hpp"
#include "cli/Console.hpp"
#include "cli/Reason.hpp"

#include <cstdio>
#include <exception>
#include <new>

namespace {

using namespace tessgen::cli;

int run(const Request& request) {
    switch (request.action) {
    case Action::which:
        return request.from ? whichFrom(request) : which(request);
    case Action::batch:
        return batch(request);
    case Action::explain:
        return explain(request);
    case Action::storeBuild:
        return storeBuild(request);
    case Action::doctor:
        return doctor(request);
    case Action::help:
        writeOut(helpText());
        return exitYes;
    case Action::version:
        writeOut("kelwhich " KELWHICH_VERSION "\n");
        return exitYes;
    }
    return exitNothing;
}

} // namespace

int main(int count, char** words) {
    try {
        prepareStreams();
        return run(readCommandLine(count, words));
    } catch (const std::bad_alloc&) {
        static_cast<void>(std::fputs("kelwhich: out of memory\n", stderr));
    } catch (const std::exception& error) {
        complain(reasonOf(error));
    }
    return exitNothing;
}
