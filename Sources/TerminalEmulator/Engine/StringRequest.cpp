#include "TerminalEmulator/Engine/StringRequest.h"

namespace orvane {

void StringRequest::hook(std::string_view /*collect*/, const ParserParameters& parameters, char /*final*/) {
    parameter = parameters.values[0];
    data_.clear();
}

void StringRequest::put(std::string_view data) {
    data_.append(data.substr(0, limit_ - data_.size()));
}

}  // namespace orvane
