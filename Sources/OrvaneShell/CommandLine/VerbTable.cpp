#include "OrvaneShell/CommandLine/VerbTable.h"

#include <algorithm>
#include <array>

#include "OrvaneShell/CommandLine/Verbs/Verbs.h"

namespace orvane {

std::span<const Verb> verbTable() {
    static const std::array table = {
        Verbs::host(),   Verbs::open(), Verbs::list(),   Verbs::projects(),         Verbs::rename(),
        Verbs::color(),  Verbs::move(), Verbs::remove(), Verbs::layout(),           Verbs::close(),
        Verbs::events(), Verbs::quit(), Verbs::help(),   Verbs::activateExisting(),
    };
    return table;
}

const Verb* verbNamed(std::string_view name) {
    const auto found = std::ranges::find(verbTable(), name, &Verb::name);
    return found == verbTable().end() ? nullptr : &*found;
}

}  // namespace orvane
