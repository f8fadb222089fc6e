#include "OrvaneShell/CommandLine/CommandLine.h"

int main(int count, char** words) {
    return orvane::runCommandLine({words + 1, words + count});
}
