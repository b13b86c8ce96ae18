// What the program does, one function a command. Each returns the exit code; what it throws ends the program with 2.
#pragma once

#include "cli/options/CommandLine.hpp"

namespace tessgen::cli {

enum ExitCode {
    exitYes = 0,     // every name has a candidate; what was asked for is done
    exitNo = 1,      // a name has no candidate, or is not as required; the doctor has findings
    exitNothing = 2, // nothing could be answered or done
    exitPartly = 3,  // a name was refused or failed, others were answered
};

// Writes the candidates of every name to standard output, all at once after the last was answered.
int which(const Request& request);

// Writes the candidates of every name of a file as they are answered, all from one view of the disk.
int whichFrom(const Request& request);

// Answers the names on standard input, each as it comes, looking at the disk anew.
int batch(const Request& request);

// Writes why the candidates of every name stand as they do, all at once.
int explain(const Request& request);

// Writes the support store anew.
int storeBuild(const Request& request);

// Writes what a support store holds.
int storeInfo(const Request& request);

// Writes each damage of a support store; exitNothing when there is one.
int storeVerify(const Request& request);

// Writes the records of a support store as `storeBuild` reads them.
int storeExport(const Request& request);

// Writes the search index anew.
int indexBuild(const Request& request);

// Writes each damage of the search index (exitNothing when there is one) or each folder that it no longer holds for
// (exitNo).
int indexVerify(const Request& request);

// Prints every setting of the installation as it takes effect, and where it comes from.
int config(const Request& request);

// Writes a manifest for a tree of source files, and records for its KEL files when asked to.
int init(const Request& request);

// Writes what is wrong with the installation; exitNo when something is.
int doctor(const Request& request);

} // namespace tessgen::cli
