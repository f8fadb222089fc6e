#include "Orvane/Agents/CustomAgentStore.h"

#include <algorithm>
#include <utility>

#include "OrvaneCore/Agents/AgentSpecCatalog.h"

namespace orvane {

CustomAgentStore::CustomAgentStore(MainLoop& loop, SerialQueue& queue, PreferencesStore& preferences, std::string path,
                                   WholeFileWriter::ErrorCallback onError)
    : file_(loop, queue, std::move(path), std::move(onError)), tally_(preferences) {}

void CustomAgentStore::load() {
    specs_.clear();
    file_.load([this](const JsonValue& json) {
        specs_ = AgentSpecCatalog::decode(json);
        return json.is_array() && specs_.size() == json.get_array().size();
    });
}

std::optional<AgentSpec> CustomAgentStore::spec(const Uuid& id) const {
    const auto found = std::ranges::find(specs_, id, &AgentSpec::id);
    return found == specs_.end() ? std::nullopt : std::optional(*found);
}

std::expected<Uuid, CustomAgentStore::Error> CustomAgentStore::add(AgentSpec spec) {
    spec.id = Uuid::random();
    auto checked = AgentSpecCheck::checked(std::move(spec), specs_);
    if (!checked) return std::unexpected(std::move(checked.error()));
    const Uuid id = checked->id;
    specs_.push_back(*std::move(checked));
    tally_.raise("custom_agent_add");
    committed();
    return id;
}

std::expected<void, CustomAgentStore::Error> CustomAgentStore::edit(AgentSpec spec) {
    auto checked = AgentSpecCheck::checked(std::move(spec), specs_);
    if (!checked) return std::unexpected(std::move(checked.error()));
    const auto found = std::ranges::find(specs_, checked->id, &AgentSpec::id);
    if (found == specs_.end()) return {};
    *found = *std::move(checked);
    committed();
    return {};
}

void CustomAgentStore::remove(const Uuid& id) {
    if (std::erase_if(specs_, [&](const AgentSpec& each) { return each.id == id; }) > 0) committed();
}

void CustomAgentStore::restoreFile() {
    // Who never had an agent never had the file.
    if (!specs_.empty()) save();
}

void CustomAgentStore::committed() {
    save();
    changed.emit();
}

void CustomAgentStore::save() {
    file_.save(AgentSpecCatalog::encode(specs_));
}

}  // namespace orvane
