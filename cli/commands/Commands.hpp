// The commands, one function each. Each returns the exit code; an exception ends the program with 2.
#pragma once

#include "cli/options/CommandLine.hpp"

namespace tessgen::cli {

enum ExitCode {
    exitYes = 0,     // every name has a candidate and meets --require; the task is done
    exitNo = 1,      // a name has no candidate or does not meet --require; there are findings or changes
    exitFailed = 2,  // nothing could be answered or done
    exitPartial = 3, // some names were answered, others rejected or failed; a folder was left out
};

// Prints the candidates of every name, all at once after the last name is answered.
int which(const Request& request);

// Answers an editor by the Language Server Protocol; exitNo when that ends without saying so.
int lsp(const Request& request);

// Prints the candidates of every name of a file as they are answered, all from one snapshot of the disk.
int whichFrom(const Request& request);

// Answers each name on standard input as it comes, from the disk as it is then.
int batch(const Request& request);

// Prints why the candidates of every name are ranked as they are, all at once.
int explain(const Request& request);

// Prints the names that reach every file, all at once.
int provides(const Request& request);

// Builds the support store.
int storeBuild(const Request& request);

// Prints the contents of a support store in figures.
int storeInfo(const Request& request);

// Prints each damage of a support store; exitFailed when there is one.
int storeVerify(const Request& request);

// Writes the records of a support store in the form that `storeBuild` reads.
int storeExport(const Request& request);

// Builds the search index.
int indexBuild(const Request& request);

// Prints each damage of the search index (exitFailed), or else each folder whose entry is stale (exitNo).
int indexVerify(const Request& request);

// Prints every setting in effect and its source.
int config(const Request& request);

// Writes a manifest for a tree of source files, and with --records also records for its KEL files.
int init(const Request& request);
int updateInstallation(const Request& request); // the form of init with --update

// Writes or checks the lock of the installation; exitNo when something differs from it.
int lock(const Request& request);

// Prints what changed between two locks or installations; exitNo when anything did.
int diff(const Request& request);

// Prints the names that begin as the operand does, for the completions of shells.
int completeName(const Request& request);

// Prints the findings about definitions and uses; exitNo when one is as grave as --fail-on says.
int check(const Request& request);

// Prints the findings about the installation; exitNo when there are any.
int doctor(const Request& request);

} // namespace tessgen::cli
