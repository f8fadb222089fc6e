#include "OrvaneCore/Agents/Signals/CodexPicker.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <utility>

#include "OrvaneCore/Support/JSONObject.h"

namespace orvane::CodexPicker {

namespace {

/// The picker takes one digit for one entry.
constexpr std::size_t highestPosition = 9;
/// Chosen by a switch of its own, not by a number.
constexpr std::string_view unnumberedEffort = "ultra";

/// Models by priority, those of one priority as they came.
using RankedModels = std::multimap<std::int64_t, CodexModel>;

std::string firstString(const JSONObject& object, std::initializer_list<std::string_view> keys) {
    for (const std::string_view key : keys) {
        if (auto text = object.optionalString(key); text && !text->empty()) return *text;
    }
    return {};
}

/// An effort is a text, or an object that names it beside its description.
std::optional<std::string> effortOf(const JsonValue& value) {
    if (const auto* text = value.if_string()) return std::string(*text);
    std::string effort = firstString(JSONObject(value), {"effort", "reasoning_effort"});
    return effort.empty() ? std::nullopt : std::optional(std::move(effort));
}

std::optional<RankedModels::value_type> modelOf(const JsonValue& value) {
    const JSONObject object(value);
    CodexModel model;
    model.slug = firstString(object, {"slug", "id", "model"});
    if (model.slug.empty()) return std::nullopt;
    model.visible = object.string("visibility", "list") == "list";
    model.defaultEffort = firstString(object, {"default_reasoning_level", "default_reasoning_effort"});
    const char* key =
        object.contains("supported_reasoning_levels") ? "supported_reasoning_levels" : "supported_reasoning_efforts";
    model.efforts = object.list(key, effortOf);
    return RankedModels::value_type(object.integer("priority", std::numeric_limits<std::int64_t>::max()),
                                    std::move(model));
}

bool isInPicker(const CodexModel& model) {
    return model.visible && !model.slug.starts_with("codex-auto-");
}

/// The place among those that count, from 1; nothing beyond what a digit reaches.
template <typename Range, typename Counts, typename Is>
std::optional<int> positionOf(const Range& range, Counts counts, Is is) {
    std::size_t position = 0;
    for (const auto& each : range) {
        if (!counts(each)) continue;
        ++position;
        if (position > highestPosition) return std::nullopt;
        if (is(each)) return static_cast<int>(position);
    }
    return std::nullopt;
}

}  // namespace

std::optional<Catalog> parse(std::string_view json) {
    const auto document = Json::parse(json);
    if (!document) return std::nullopt;
    const JSONObject root(*document);
    const JsonValue* models = root.find("models");
    if (models == nullptr || !models->is_array()) return std::nullopt;
    RankedModels ranked;
    for (const JsonValue& value : models->get_array()) {
        if (auto model = modelOf(value)) ranked.insert(std::move(*model));
    }
    Catalog catalog;
    catalog.reserve(ranked.size());
    for (auto& [priority, model] : ranked)
        catalog.push_back(std::move(model));
    return catalog;
}

std::vector<std::string> efforts(std::string_view forModel, const Catalog& catalog) {
    const auto found = std::ranges::find(catalog, forModel, &CodexModel::slug);
    return found == catalog.end() ? std::vector<std::string>() : found->efforts;
}

std::optional<std::vector<int>> digits(std::string_view model, std::string_view effort, const Catalog& catalog) {
    const auto modelDigit = positionOf(catalog, isInPicker, [&](const CodexModel& each) { return each.slug == model; });
    const auto effortDigit = positionOf(
        efforts(model, catalog), [](const std::string& each) { return each != unnumberedEffort; },
        [&](const std::string& each) { return each == effort; });
    if (!modelDigit || !effortDigit) return std::nullopt;
    return std::vector{*modelDigit, *effortDigit};
}

}  // namespace orvane::CodexPicker
