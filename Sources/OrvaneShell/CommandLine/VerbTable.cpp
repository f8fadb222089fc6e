#include "OrvaneShell/CommandLine/VerbTable.h"

#include <algorithm>
#include <array>

#include "OrvaneShell/CommandLine/Verbs/Verbs.h"

namespace orvane {

std::span<const Verb> verbTable() {
    static const std::array table = {
        Verbs::view(),
        Verbs::host(),
        Verbs::open(),
        Verbs::new_(),
        Verbs::list(),
        Verbs::screen(),
        Verbs::type(),
        Verbs::resize(),
        Verbs::send(),
        Verbs::approve(),
        Verbs::deny(),
        Verbs::answer(),
        Verbs::interrupt(),
        Verbs::clear(),
        Verbs::model(),
        Verbs::effort(),
        Verbs::mode(),
        Verbs::status(),
        Verbs::wait(),
        Verbs::projects(),
        Verbs::rename(),
        Verbs::color(),
        Verbs::move(),
        Verbs::remove(),
        Verbs::layout(),
        Verbs::close(),
        Verbs::agents(),
        Verbs::agentsAdd(),
        Verbs::agentsEdit(),
        Verbs::agentsRemove(),
        Verbs::history(),
        Verbs::historyShow(),
        Verbs::historyResume(),
        Verbs::trace(),
        Verbs::events(),
        Verbs::tools(),
        Verbs::toolsInstall(),
        Verbs::toolsUpdate(),
        Verbs::doctor(),
        Verbs::keys(),
        Verbs::keysSet(),
        Verbs::keysRemove(),
        Verbs::keysReset(),
        Verbs::settings(),
        Verbs::quit(),
        Verbs::terminalFeed(),
        Verbs::terminalRun(),
        Verbs::help(),
        Verbs::activateExisting(),
    };
    return table;
}

const Verb* verbNamed(std::string_view name) {
    const auto found = std::ranges::find(verbTable(), name, &Verb::name);
    return found == verbTable().end() ? nullptr : &*found;
}

namespace {

bool takesWords(const Verb& verb) {
    return !std::ranges::all_of(verb.parameters, &Parameter::isNamed);
}

}  // namespace

const Verb* verbOf(std::span<const std::string> words) {
    if (words.empty()) return nullptr;
    const Verb* const verb = verbNamed(words[0]);
    if (words.size() == 1) return verb;
    if (const Verb* longer = verbNamed(words[0] + ' ' + words[1])) return longer;
    if (verb == nullptr || words[1].starts_with('-') || takesWords(*verb)) return verb;
    return secondWords(words[0]).empty() ? verb : nullptr;
}

std::string secondWords(std::string_view firstWord) {
    std::string list;
    for (const Verb& verb : verbTable()) {
        const std::size_t space = verb.name.find(' ');
        if (verb.isHidden || space == std::string_view::npos || verb.name.substr(0, space) != firstWord) continue;
        list += list.empty() ? "" : ", ";
        list += verb.name.substr(space + 1);
    }
    return list;
}

}  // namespace orvane
