#include "Agents/Looks.h"

#include <fstream>
#include <sstream>

namespace orvane::testing {

std::string recordingText(const std::string& name) {
    std::ifstream file(std::string(ORVANE_SOURCE_DIR) + "/Tests/Recordings/" + name, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string Look::recorded() const {
    const std::string own = recordingText("Agents/" + recording + ".raw");
    return own.empty() ? recordingText(recording + ".raw") : own;
}

std::vector<Look> looks() {
    std::istringstream file(recordingText("Agents/looks.tsv"));
    std::vector<Look> looks;
    for (std::string line; std::getline(file, line);) {
        Look look;
        std::istringstream cells(line);
        for (std::string* cell : {&look.recording, &look.moment, &look.bytes, &look.title, &look.status, &look.question,
                                  &look.options, &look.keys})
            std::getline(cells, *cell, '\t');
        looks.push_back(look);
    }
    return looks;
}

}  // namespace orvane::testing
