#include "OrvaneShell/CommandLine/CommandLine.h"
#include "Platform/StandardDescriptors.h"

int main(int count, char** words) {
    orvane::StandardDescriptors::reserve();
    return orvane::runCommandLine({words + 1, words + count});
}
